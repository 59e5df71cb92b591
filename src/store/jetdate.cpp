#include "store/jetdate.h"

#include <QRegularExpression>

namespace slipbook::store {

namespace {

// Stored values are wall-clock times without a zone. They come back as UTC so that no
// daylight-saving gap of the local zone can shift or void them.
QDateTime Make(QDate date, QTime time) {
    return QDateTime(date, time, Qt::UTC);
}

std::optional<QTime> ReadTime(const QString& text) {
    static const QRegularExpression re(
        QStringLiteral(R"(^(\d{1,2})(?::(\d{1,2}))?(?::(\d{1,2}))?\s*([AaPp][Mm])?$)"));
    const auto m = re.match(text);
    if (!m.hasMatch()) {
        return std::nullopt;
    }
    const bool hasMinutes = m.capturedLength(2) > 0;
    const QString half = m.captured(4).toUpper();
    // A lone number is no time unless it carries AM or PM ("10 AM").
    if (!hasMinutes && half.isEmpty()) {
        return std::nullopt;
    }
    int hour = m.captured(1).toInt();
    const int minute = hasMinutes ? m.captured(2).toInt() : 0;
    const int second = m.capturedLength(3) > 0 ? m.captured(3).toInt() : 0;
    if (!half.isEmpty()) {
        if (hour > 12) {
            return std::nullopt;
        }
        if (hour == 12) {
            hour = 0;
        }
        if (half == QLatin1String("PM")) {
            hour += 12;
        }
    }
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return QTime(hour, minute, second);
}

std::optional<QDateTime> WithOptionalTime(QDate date, const QString& rest) {
    if (rest.isEmpty()) {
        return Make(date, QTime(0, 0));
    }
    const auto time = ReadTime(rest);
    if (!time) {
        return std::nullopt;
    }
    return Make(date, *time);
}

}  // namespace

QString DateTimeToStorage(const QDateTime& value) {
    if (!value.isValid()) {
        return QString();
    }
    const QDate d = value.date();
    const QTime t = value.time();
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", d.year(), d.month(), d.day(),
                             t.hour(), t.minute(), t.second());
}

std::optional<QDateTime> DateTimeFromStorage(QStringView text) {
    static const QRegularExpression re(QStringLiteral(
        R"(^(\d{4})-(\d{2})-(\d{2})(?:[ T](\d{2}):(\d{2})(?::(\d{2})(?:\.\d+)?)?)?$)"));
    const auto m = re.match(text.trimmed().toString());
    if (!m.hasMatch()) {
        return std::nullopt;
    }
    const QDate date(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    QTime time(0, 0);
    if (m.capturedLength(4) > 0) {
        time = QTime(m.captured(4).toInt(), m.captured(5).toInt(),
                     m.capturedLength(6) > 0 ? m.captured(6).toInt() : 0);
    }
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return Make(date, time);
}

std::optional<QDateTime> ParseJetDateText(QStringView text) {
    const QString s = text.trimmed().toString();
    if (s.isEmpty()) {
        return std::nullopt;
    }

    static const QRegularExpression iso(
        QStringLiteral(R"(^(\d{4})-(\d{1,2})-(\d{1,2})(?:(?:\s+|T)(.+))?$)"));
    if (const auto m = iso.match(s); m.hasMatch()) {
        const QDate date(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        if (!date.isValid()) {
            return std::nullopt;
        }
        return WithOptionalTime(date, m.captured(4));
    }

    static const QRegularExpression monthFirst(
        QStringLiteral(R"(^(\d{1,2})([/-])(\d{1,2})\2(\d{1,4})(?:\s+(.+))?$)"));
    if (const auto m = monthFirst.match(s); m.hasMatch()) {
        const auto date = MonthFirstDate(
            m.captured(1).toInt(), m.captured(3).toInt(),
            WindowYear(m.captured(4).toInt(), static_cast<int>(m.captured(4).size())));
        if (!date) {
            return std::nullopt;
        }
        return WithOptionalTime(*date, m.captured(5));
    }

    if (const auto time = ReadTime(s)) {
        return Make(DayZero(), *time);
    }
    return std::nullopt;
}

}  // namespace slipbook::store
