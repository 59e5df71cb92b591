#include "shell/valueformat.h"

#include "common/numbers.h"
#include "store/currency.h"

namespace slipbook {

namespace {

const char* const kMonths[] = {"January",   "February", "March",    "April",
                               "May",       "June",     "July",     "August",
                               "September", "October",  "November", "December"};
const char* const kDays[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                             "Friday", "Saturday", "Sunday"};

bool IsDayZero(const QDate& d) {
    return d == QDate(1899, 12, 30);
}

QString Two(int v) {
    return QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0'));
}

int Hour12(int h) {
    return h % 12 == 0 ? 12 : h % 12;
}

}  // namespace

QString PlainDateText(const QDateTime& value) {
    const QDate d = value.date();
    const QTime t = value.time();
    const QString date = QStringLiteral("%1/%2/%3").arg(d.month()).arg(d.day()).arg(d.year());
    const QString time = QStringLiteral("%1:%2:%3 %4")
                             .arg(Hour12(t.hour()))
                             .arg(Two(t.minute()), Two(t.second()),
                                  t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
    if (IsDayZero(d)) {
        return time;
    }
    if (t == QTime(0, 0)) {
        return date;
    }
    return date + u' ' + time;
}

QString FormatDateTime(const QDateTime& value, const QString& format) {
    const QString named = format.trimmed().toLower();
    if (named.isEmpty() || named == u"general date") {
        return PlainDateText(value);
    }
    if (named == u"short date") {
        return FormatDateTime(value, QStringLiteral("m/d/yyyy"));
    }
    if (named == u"long date") {
        return FormatDateTime(value, QStringLiteral("dddd, mmmm dd, yyyy"));
    }
    if (named == u"short time") {
        return FormatDateTime(value, QStringLiteral("hh:nn"));
    }
    if (named == u"medium time") {
        return FormatDateTime(value, QStringLiteral("hh:nn AM/PM"));
    }
    if (named == u"long time") {
        return FormatDateTime(value, QStringLiteral("h:nn:ss AM/PM"));
    }
    const QDate d = value.date();
    const QTime t = value.time();
    // With an AM/PM marker anywhere, hours run 1 to 12.
    const QString upper = format.toUpper();
    const bool twelve =
        upper.contains(u"AMPM") || upper.contains(u"AM/PM") || upper.contains(u"A/P");
    QString out;
    bool afterHour = false;
    for (qsizetype i = 0; i < format.size();) {
        const QChar c = format[i];
        const QChar lc = c.toLower();
        auto run = [&](QChar ch) {
            qsizetype n = 0;
            while (i + n < format.size() && format[i + n].toLower() == ch) {
                ++n;
            }
            return n;
        };
        if (c == u'"') {
            const qsizetype end = format.indexOf(u'"', i + 1);
            out += format.mid(i + 1, (end < 0 ? format.size() : end) - i - 1);
            i = end < 0 ? format.size() : end + 1;
            continue;
        }
        if (c == u'\\' && i + 1 < format.size()) {
            out += format[i + 1];
            i += 2;
            continue;
        }
        if (format.mid(i, 4).toUpper() == u"AMPM") {
            out += t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
            i += 4;
            continue;
        }
        if (format.mid(i, 5).compare(u"AM/PM", Qt::CaseInsensitive) == 0) {
            const bool lower = format[i].isLower();
            const QString mark = t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
            out += lower ? mark.toLower() : mark;
            i += 5;
            continue;
        }
        if (format.mid(i, 3).compare(u"A/P", Qt::CaseInsensitive) == 0) {
            const QChar mark = t.hour() < 12 ? u'A' : u'P';
            out += format[i].isLower() ? mark.toLower() : mark;
            i += 3;
            continue;
        }
        if (lc == u'd') {
            const qsizetype n = run(u'd');
            if (n == 1) {
                out += QString::number(d.day());
            } else if (n == 2) {
                out += Two(d.day());
            } else if (n == 3) {
                out += QString::fromLatin1(kDays[d.dayOfWeek() - 1]).left(3);
            } else {
                out += QString::fromLatin1(kDays[d.dayOfWeek() - 1]);
            }
            i += n;
            continue;
        }
        if (lc == u'm') {
            const qsizetype n = run(u'm');
            if (afterHour && n <= 2) {
                out += n == 1 ? QString::number(t.minute()) : Two(t.minute());
            } else if (n == 1) {
                out += QString::number(d.month());
            } else if (n == 2) {
                out += Two(d.month());
            } else if (n == 3) {
                out += QString::fromLatin1(kMonths[d.month() - 1]).left(3);
            } else {
                out += QString::fromLatin1(kMonths[d.month() - 1]);
            }
            afterHour = false;
            i += n;
            continue;
        }
        if (lc == u'y') {
            const qsizetype n = run(u'y');
            out += n <= 2 ? Two(d.year() % 100) : QString::number(d.year());
            i += n;
            continue;
        }
        if (lc == u'h') {
            const qsizetype n = run(u'h');
            const int h = twelve ? Hour12(t.hour()) : t.hour();
            out += n == 1 ? QString::number(h) : Two(h);
            afterHour = true;
            i += n;
            continue;
        }
        if (lc == u'n') {
            const qsizetype n = run(u'n');
            out += n == 1 ? QString::number(t.minute()) : Two(t.minute());
            i += n;
            continue;
        }
        if (lc == u's') {
            const qsizetype n = run(u's');
            out += n == 1 ? QString::number(t.second()) : Two(t.second());
            i += n;
            continue;
        }
        if (c != u':' && c != u' ') {
            afterHour = false;
        }
        out += c;
        ++i;
    }
    return out;
}

QString FormatValue(const QVariant& value, const QString& format) {
    if (!value.isValid() || value.isNull()) {
        return QString();
    }
    const int type = value.metaType().id();
    if (type == QMetaType::QDateTime) {
        return FormatDateTime(value.toDateTime(), format);
    }
    if (value.metaType() == QMetaType::fromType<store::Currency>()) {
        const double v = value.value<store::Currency>().toDouble();
        return format.isEmpty() ? value.value<store::Currency>().toText() : FormatNumber(v, format);
    }
    if (type == QMetaType::Bool) {
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    }
    if (type == QMetaType::QString) {
        const QString text = value.toString();
        if (format.isEmpty()) {
            return text;
        }
        if (const auto n = StrictNumber(text)) {
            return FormatNumber(*n, format);
        }
        return text;
    }
    if (type == QMetaType::LongLong || type == QMetaType::Int || type == QMetaType::Double) {
        const double v = value.toDouble();
        return format.isEmpty() ? PlainNumberText(v) : FormatNumber(v, format);
    }
    return value.toString();
}

}  // namespace slipbook
