#include "common/forms.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace slipbook {

namespace {

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

QDateTime Make(QDate date, QTime time) {
    return QDateTime(date, time, Qt::UTC);
}

// A hand-written reader rather than regular expressions: the grid sort reads every cell of a
// column through it, 100,000 of them at a time.
class Reader {
public:
    explicit Reader(QStringView s) : s_(s) {}

    bool AtEnd() const { return i_ >= s_.size(); }
    QChar Peek() const { return AtEnd() ? QChar() : s_[i_]; }
    void Skip() { ++i_; }
    qsizetype Pos() const { return i_; }
    void Seek(qsizetype pos) { i_ = pos; }
    void SkipBlanks() {
        while (!AtEnd() && IsBlank(s_[i_])) {
            ++i_;
        }
    }

    // Reads up to nine digits; the count read is 0 when none stands here.
    int Number(int& value) {
        value = 0;
        int count = 0;
        while (!AtEnd() && IsDigit(s_[i_])) {
            if (count == 9) {
                return 10;  // too long for any part of a date
            }
            value = value * 10 + (s_[i_].unicode() - u'0');
            ++count;
            ++i_;
        }
        return count;
    }

    // "AM", "PM", "A" or "P" in either case: 1 for AM, 2 for PM, 0 when none stands here.
    int Half() {
        const QChar c = Peek().toUpper();
        if (c != u'A' && c != u'P') {
            return 0;
        }
        Skip();
        if (Peek().toUpper() == u'M') {
            Skip();
        }
        return c == u'A' ? 1 : 2;
    }

private:
    QStringView s_;
    qsizetype i_ = 0;
};

// h[:mm[:ss]] [AM|PM]; a lone hour needs its AM or PM.
std::optional<QTime> ReadTime(Reader& r) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    const int hourDigits = r.Number(hour);
    if (hourDigits == 0 || hourDigits > 2) {
        return std::nullopt;
    }
    bool hasMinutes = false;
    if (r.Peek() == u':') {
        r.Skip();
        const int n = r.Number(minute);
        if (n == 0 || n > 2) {
            return std::nullopt;
        }
        hasMinutes = true;
        if (r.Peek() == u':') {
            r.Skip();
            const int s = r.Number(second);
            if (s == 0 || s > 2) {
                return std::nullopt;
            }
        }
    }
    r.SkipBlanks();
    const int half = r.Half();
    if (!hasMinutes && half == 0) {
        return std::nullopt;
    }
    if (half != 0) {
        if (hour > 12) {
            return std::nullopt;
        }
        hour %= 12;
        if (half == 2) {
            hour += 12;
        }
    }
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return QTime(hour, minute, second);
}

// Numeric date: m/d/y, m-d-y, y-m-d (a first part of three or four digits), m/d in the
// current year, or m/yyyy (a second part that cannot be a day) on the first of the month.
std::optional<QDate> ReadDate(Reader& r, QDate today) {
    int parts[3] = {0, 0, 0};
    int digits[3] = {0, 0, 0};
    digits[0] = r.Number(parts[0]);
    const QChar sep = r.Peek();
    if (digits[0] == 0 || digits[0] > 4 || (sep != u'/' && sep != u'-')) {
        return std::nullopt;
    }
    int count = 1;
    while (count < 3 && r.Peek() == sep) {
        r.Skip();
        digits[count] = r.Number(parts[count]);
        if (digits[count] == 0 || digits[count] > 4) {
            return std::nullopt;
        }
        ++count;
    }
    if (r.Peek() == u'/' || r.Peek() == u'-') {
        return std::nullopt;
    }
    if (count == 3) {
        if (digits[0] >= 3) {
            if (digits[1] > 2 || digits[2] > 2) {
                return std::nullopt;
            }
            const QDate date(parts[0], parts[1], parts[2]);
            if (parts[0] < 100 || !date.isValid()) {
                return std::nullopt;
            }
            return date;
        }
        if (digits[1] > 2) {
            return std::nullopt;
        }
        return MonthFirstDate(parts[0], parts[1], WindowYear(parts[2], digits[2]));
    }
    if (digits[0] > 2) {
        return std::nullopt;
    }
    if (digits[1] >= 3 || parts[1] > 31) {
        return MonthFirstDate(parts[0], 1, WindowYear(parts[1], digits[1]));
    }
    if (!today.isValid()) {
        today = QDate::currentDate();
    }
    return MonthFirstDate(parts[0], parts[1], today.year());
}

std::optional<QDateTime> ReadDateTime(QStringView text, QDate today) {
    Reader r(text);
    r.SkipBlanks();
    if (r.AtEnd()) {
        return std::nullopt;
    }
    const qsizetype start = r.Pos();
    QDate date = DayZero();
    QTime time(0, 0);
    if (const auto d = ReadDate(r, today)) {
        date = *d;
        r.SkipBlanks();
        if (!r.AtEnd()) {
            const auto t = ReadTime(r);
            if (!t) {
                return std::nullopt;
            }
            time = *t;
        }
    } else {
        r.Seek(start);
        const auto t = ReadTime(r);
        if (!t) {
            return std::nullopt;
        }
        time = *t;
    }
    r.SkipBlanks();
    if (!r.AtEnd()) {
        return std::nullopt;
    }
    return Make(date, time);
}

QString MonthDayYear(QDate d) {
    return QString::asprintf("%02d/%02d/%04d", d.month(), d.day(), d.year());
}

QString HalfText(QTime t) {
    return t.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM");
}

int Hour12(QTime t) {
    const int h = t.hour() % 12;
    return h == 0 ? 12 : h;
}

// Whether the seconds are shown, and with or without a leading zero.
enum class Seconds { None, Short, Padded };

QString TimeText(QTime t, Seconds seconds) {
    QString s = QString::asprintf("%02d:%02d", Hour12(t), t.minute());
    if (seconds == Seconds::Short) {
        s += QString::asprintf(":%d", t.second());
    } else if (seconds == Seconds::Padded) {
        s += QString::asprintf(":%02d", t.second());
    }
    return s + u' ' + HalfText(t);
}

// A date as the classic CStr writes it: "7/4/2003", "10:30:00 AM", or both.
QString PlainDateText(const QDateTime& v) {
    const QDate d = v.date();
    const QTime t = v.time();
    const QString dateText = QString::asprintf("%d/%d/%d", d.month(), d.day(), d.year());
    const QString timeText =
        QString::asprintf("%d:%02d:%02d ", Hour12(t), t.minute(), t.second()) + HalfText(t);
    if (d == DayZero()) {
        return timeText;
    }
    if (t == QTime(0, 0)) {
        return dateText;
    }
    return dateText + u' ' + timeText;
}

}  // namespace

QString ValueText(const QVariant& value) {
    switch (value.metaType().id()) {
        case QMetaType::QDateTime:
        case QMetaType::QDate:
        case QMetaType::QTime:
            if (const auto dt = DateValue(value)) {
                return PlainDateText(*dt);
            }
            return QString();
        case QMetaType::Double:
        case QMetaType::Float:
            return PlainNumberText(value.toDouble());
        case QMetaType::Bool:
            return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
        default:
            return value.toString();
    }
}

QString NumberOrEmptyText(const QVariant& value) {
    return value.isNull() ? QString() : PlainNumberText(value.toDouble());
}

namespace {

bool IsNullValue(const QVariant& value) {
    return !value.isValid() || value.isNull();
}

// The classic IsNumeric: numbers, flags, and texts the strict parse accepts.
std::optional<double> NumericValue(const QVariant& value) {
    switch (value.metaType().id()) {
        case QMetaType::Bool:
            return value.toBool() ? -1.0 : 0.0;
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::ULong:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Double:
        case QMetaType::Float:
            return value.toDouble();
        case QMetaType::QString:
            return StrictNumber(value.toString());
        case QMetaType::QDateTime:
        case QMetaType::QDate:
        case QMetaType::QTime:
            return std::nullopt;
        default: {
            bool ok = false;
            const double d = value.toDouble(&ok);
            if (ok) {
                return d;
            }
            return StrictNumber(value.toString());
        }
    }
}

}  // namespace

QStringView TrimSpaces(QStringView s) {
    qsizetype from = 0;
    qsizetype to = s.size();
    while (from < to && s[from] == u' ') {
        ++from;
    }
    while (to > from && s[to - 1] == u' ') {
        --to;
    }
    return s.sliced(from, to - from);
}

std::optional<QDateTime> DateValue(const QVariant& value, QDate today) {
    if (IsNullValue(value)) {
        return std::nullopt;
    }
    switch (value.metaType().id()) {
        case QMetaType::QDateTime: {
            const QDateTime dt = value.toDateTime();
            if (!dt.isValid()) {
                return std::nullopt;
            }
            return Make(dt.date(), dt.time());
        }
        case QMetaType::QDate:
            if (!value.toDate().isValid()) {
                return std::nullopt;
            }
            return Make(value.toDate(), QTime(0, 0));
        case QMetaType::QTime:
            if (!value.toTime().isValid()) {
                return std::nullopt;
            }
            return Make(DayZero(), value.toTime());
        case QMetaType::QString:
            return ReadDateTime(value.toString(), today);
        default:
            return std::nullopt;
    }
}

QString DateTextParse(QStringView text, QDate today) {
    qsizetype n = 0;
    while (n < text.size() && (IsDigit(text[n]) || text[n] == u'/')) {
        ++n;
    }
    const auto dt = ReadDateTime(text.first(n), today);
    if (!dt || dt->date().year() <= 1000) {
        return QString();
    }
    return MonthDayYear(dt->date());
}

QString DateMaskValue(const QVariant& value) {
    const auto dt = DateValue(value);
    if (!dt) {
        return kDateMaskEmpty.toString();
    }
    return DateTextParse(MonthDayYear(dt->date()));
}

QString TimeMaskValue(const QVariant& value, bool withSeconds) {
    if (IsNullValue(value)) {
        return (withSeconds ? kLongTimeMaskEmpty : kTimeMaskEmpty).toString();
    }
    if (const auto dt = DateValue(value)) {
        return TimeText(dt->time(), withSeconds ? Seconds::Short : Seconds::None);
    }
    return ValueText(value);
}

QString MaskClipValue(const QVariant& value, QStringView mask) {
    if (IsNullValue(value) ||
        (value.metaType().id() == QMetaType::QString && value.toString().isEmpty())) {
        QString pattern = mask.toString();
        pattern.replace(u'#', u'_');
        return pattern;
    }
    return ValueText(value);
}

QString TimeTextFormat(const QString& text, bool withSeconds) {
    const auto dt = ReadDateTime(text, QDate());
    if (!dt) {
        return text;
    }
    return TimeText(dt->time(), withSeconds ? Seconds::Padded : Seconds::None);
}

bool KeyAllowedSigned(int key) {
    return (key >= '0' && key <= '9') || key == '.' || key == kKeyBackspace || key == '-';
}

bool KeyAllowedDecimal(int key) {
    return (key >= '0' && key <= '9') || key == '.';
}

KeyVerdict KeyNumericFilter(int key, QStringView text, int selStart, int selLength, int decimals) {
    if (key == kKeyEnter) {
        return KeyVerdict::NextField;
    }
    if (!KeyAllowedSigned(key)) {
        return KeyVerdict::Swallow;
    }
    // Backspace and minus are let through without the tests on the text.
    if (key == kKeyBackspace || key == '-') {
        return KeyVerdict::Accept;
    }
    if (!KeyAllowedDecimal(key)) {
        return KeyVerdict::Swallow;
    }
    if (decimals < 0) {
        return KeyVerdict::Accept;
    }
    const qsizetype start = std::clamp<qsizetype>(selStart, 0, text.size());
    const qsizetype end = std::clamp<qsizetype>(start + std::max(selLength, 0), start, text.size());
    QString after;
    after.reserve(text.size() + 1);
    after += text.first(start);
    after += QChar(key);
    after += text.sliced(end);
    const qsizetype point = after.indexOf(u'.');
    if (point < 0) {
        return KeyVerdict::Accept;
    }
    if (after.indexOf(u'.', point + 1) >= 0) {
        return KeyVerdict::Swallow;
    }
    if (after.size() - point - 1 > decimals) {
        return KeyVerdict::Swallow;
    }
    return KeyVerdict::Accept;
}

std::optional<QString> NumberEntryProblem(const QString& fieldName, QStringView text,
                                          StoredNumber column) {
    if (TrimSpaces(text).isEmpty()) {
        return std::nullopt;
    }
    auto value = StrictNumber(text);
    if (!value) {
        // A number past any double's range is still a number, only too large.
        QByteArray digits = TrimSpaces(text).toLatin1();
        digits.replace(',', "");
        const char* first = digits.constData();
        const char* last = first + digits.size();
        if (first != last && *first == '+') {
            ++first;
        }
        double parsed = 0;
        const auto [end, error] = std::from_chars(first, last, parsed);
        if (end != last || error != std::errc::result_out_of_range) {
            return fieldName + QStringLiteral(" Must Be a Number");
        }
        value = std::numeric_limits<double>::infinity();
    }
    const double whole = std::nearbyint(*value);
    switch (column) {
        case StoredNumber::Integer:
            if (!(whole >= -32768.0 && whole <= 32767.0)) {
                return fieldName + QStringLiteral(" Must Be a Whole Number From -32,768 To 32,767");
            }
            return std::nullopt;
        case StoredNumber::Long:
            if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) {
                return fieldName + QStringLiteral(
                                       " Must Be a Whole Number From -2,147,483,648 To "
                                       "2,147,483,647");
            }
            return std::nullopt;
        case StoredNumber::Currency:
            // Ten-thousandths in 64 bits.
            if (std::isfinite(*value) && std::fabs(*value) < 922337203685477.0) {
                return std::nullopt;
            }
            break;
        case StoredNumber::Single:
            if (std::isfinite(*value) && std::fabs(*value) <= 3.402823466e38) {
                return std::nullopt;
            }
            break;
        case StoredNumber::Double:
            if (std::isfinite(*value)) {
                return std::nullopt;
            }
            break;
    }
    return fieldName + QStringLiteral(" Is Too Large a Number");
}

bool IsBlankOrDate(QStringView text, QStringView emptyMask) {
    return text == emptyMask || DateValue(QVariant(text.toString())).has_value();
}

std::optional<QString> NumericPad(QStringView text, int decimals) {
    QString padded = TrimSpaces(text).toString();
    qsizetype point = padded.indexOf(u'.');
    if (point < 0) {
        padded += u'.';
        point = padded.size() - 1;
    }
    const qsizetype missing = decimals - (padded.size() - point - 1);
    if (missing <= 0) {
        return std::nullopt;
    }
    padded += QString(missing, u'0');
    return padded;
}

QString NameCase(const QString& text) {
    if (!IsAlphaStart(text)) {
        return text;
    }
    // Whether the `n` characters before `i` spell `prefix` at the start or after a blank.
    auto behind = [&text](qsizetype i, QStringView prefix) {
        const qsizetype n = prefix.size();
        if (i < n || QStringView(text).sliced(i - n, n).compare(prefix, Qt::CaseInsensitive) != 0) {
            return false;
        }
        return i == n || text[i - n - 1] == u' ';
    };
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        bool up = i == 0;
        if (!up) {
            const QChar before = text[i - 1];
            up = before == u' ' || before == u'\r' || before == u'\n' || before == u'.' ||
                 before == u'-' || before == u'\'';
        }
        up = up || behind(i, u"MC") || behind(i, u"MAC");
        result[i] = up ? text[i].toUpper() : text[i].toLower();
    }
    return result;
}

bool IsAlphaStart(QStringView text) {
    if (text.isEmpty()) {
        return false;
    }
    const QChar c = text[0];
    return c.toUpper() != c.toLower() && !c.isDigit();
}

const QStringList& NotesHints() {
    static const QStringList hints = {QStringLiteral("<Type notes here>"),
                                      QStringLiteral("<Type directions here>"),
                                      QStringLiteral("<Type maintenance description here>")};
    return hints;
}

bool IsNotesHint(QStringView text) {
    const QStringView trimmed = text.trimmed();
    return std::any_of(NotesHints().begin(), NotesHints().end(),
                       [trimmed](const QString& hint) { return trimmed == hint; });
}

QString QuoteDouble(const QString& text) {
    if (IsNotesHint(text)) {
        return QString();
    }
    QString quoted = text;
    quoted.replace(u'\'', QStringLiteral("''"));
    return quoted;
}

QString TextReplace(const QString& text, QStringView search, QStringView replacement) {
    if (search.isEmpty()) {
        return text;
    }
    QString result = text;
    result.replace(search.toString(), replacement.toString());
    return result;
}

QVariant DateOrNull(const QVariant& value) {
    if (const auto dt = DateValue(value)) {
        return *dt;
    }
    return QVariant();
}

CalcResult<int> IntOrZero(const QVariant& value) {
    if (IsNullValue(value)) {
        return 0;
    }
    const auto number = NumericValue(value);
    if (!number) {
        return 0;
    }
    // Whole-number conversion rounds half to even, as the classic CInt does.
    const double rounded = std::nearbyint(*number);
    if (!std::isfinite(rounded) || rounded > 32767.0 || rounded < -32768.0) {
        return CalcResult<int>::failure(QStringLiteral("Overflow"));
    }
    return static_cast<int>(rounded);
}

QVariant TextOrNull(const QString& text) {
    if (text.isEmpty()) {
        return QVariant();
    }
    return TrimSpaces(text).toString();
}

int ListStep(int count, int index) {
    if (count <= 0) {
        return -1;
    }
    if (index + 1 >= count - 1) {
        return count - 1;
    }
    return index > 0 ? index : 0;
}

qint64 GridDateKey(QDate date, QTime time) {
    qint64 key = date.year();
    key = key * 12 + date.month();
    key = key * 31 + date.day();
    if (date.year() == 1899) {
        key = 0;
    }
    key = key * 24 + time.hour();
    key = key * 60 + time.minute();
    key = key * 60 + time.second();
    return key;
}

std::optional<qint64> GridDateKey(QStringView text) {
    const auto dt = ReadDateTime(text, QDate());
    if (!dt) {
        return std::nullopt;
    }
    return GridDateKey(dt->date(), dt->time());
}

double GridNumberKey(QStringView text) {
    return StrictNumber(text).value_or(0.0);
}

}  // namespace slipbook
