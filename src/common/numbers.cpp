#include "common/numbers.h"

#include <QList>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace slipbook {

namespace {

const QString kOverflow = QStringLiteral("Overflow");
const QString kDivisionByZero = QStringLiteral("Division by zero");
const QString kInvalidCall = QStringLiteral("Invalid procedure call or argument");

// Non-ASCII characters never belong to a number; mapping them to DEL keeps the scanners on
// plain chars.
std::string AsciiOf(QStringView text) {
    std::string s;
    s.reserve(static_cast<size_t>(text.size()));
    for (QChar c : text) {
        s.push_back(c.unicode() < 0x80 ? static_cast<char>(c.unicode()) : '\x7f');
    }
    return s;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexValue(char c) {
    if (IsDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

// The parts of a decimal number as scanned; the exponent is clamped, which only ever decides
// between overflow and underflow.
struct Scanned {
    bool negative = false;
    std::string whole;
    std::string fraction;
    long exponent = 0;
};

std::optional<double> ToDouble(const Scanned& n) {
    const std::string text = (n.whole.empty() ? std::string("0") : n.whole) + "." + n.fraction +
                             "e" + std::to_string(n.exponent);
    double value = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), value);
    if (r.ec == std::errc::result_out_of_range) {
        // Tell overflow from underflow by the decimal order of the first significant digit.
        const std::string digits = n.whole + n.fraction;
        const auto first = digits.find_first_not_of('0');
        if (first == std::string::npos) {
            value = 0;
        } else {
            const long order = static_cast<long>(n.whole.size()) - static_cast<long>(first);
            if (order + n.exponent > 0) {
                return std::nullopt;
            }
            value = 0;
        }
    } else if (r.ec != std::errc()) {
        return std::nullopt;
    }
    return n.negative ? -value : value;
}

// Reads an exponent's digits from s[i]; huge exponents saturate.
long ScanExponentDigits(const std::string& s, size_t& i) {
    long e = 0;
    while (i < s.size() && IsDigit(s[i])) {
        if (e < 100000) {
            e = e * 10 + (s[i] - '0');
        }
        ++i;
    }
    return e;
}

// "&H" and "&O" numbers: beyond 32 bits they overflow; up to FFFF they are 16-bit integers and
// up to FFFFFFFF 32-bit ones, both signed, as the classic integer literals are.
struct RadixResult {
    bool overflow = false;
    int digits = 0;
    double value = 0;
};

RadixResult ScanRadix(const std::string& s, size_t& i, int radix) {
    RadixResult r;
    std::uint64_t v = 0;
    while (i < s.size()) {
        const int d = HexValue(s[i]);
        if (d < 0 || d >= radix) {
            break;
        }
        v = v * static_cast<unsigned>(radix) + static_cast<unsigned>(d);
        if (v > 0xFFFFFFFFu) {
            r.overflow = true;
            v = 0xFFFFFFFFu;
        }
        ++r.digits;
        ++i;
    }
    if (v <= 0xFFFFu) {
        r.value = static_cast<std::int16_t>(static_cast<std::uint16_t>(v));
    } else {
        r.value = static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
    }
    return r;
}

// Returns the radix of an "&H" or "&O" prefix at s[i], or 0.
int RadixPrefix(const std::string& s, size_t i) {
    if (i + 1 >= s.size() || s[i] != '&') {
        return 0;
    }
    if (s[i + 1] == 'H' || s[i + 1] == 'h') {
        return 16;
    }
    if (s[i + 1] == 'O' || s[i + 1] == 'o') {
        return 8;
    }
    return 0;
}

bool IsWhite(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// A value's first 15 significant digits: value = 0.digits * 10^exponent, digits without
// trailing zeros and empty for zero.
struct Digits15 {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

// Rounds half away from zero on the exact binary value, which is how the classic runtime turns
// a double into decimal digits.
Digits15 SignificantDigits(double value) {
    Digits15 d;
    d.negative = value < 0;
    if (value == 0 || !std::isfinite(value)) {
        return d;
    }
    const double magnitude = std::fabs(value);
    // 30 digits settle the rounding unless they look like an exact tie; then the exact
    // expansion (at most 767 significant digits) decides.
    char shortBuf[64];
    auto r = std::to_chars(shortBuf, shortBuf + sizeof shortBuf, magnitude,
                           std::chars_format::scientific, 29);
    std::string text(shortBuf, r.ptr);
    auto mantissaOf = [](const std::string& t) {
        std::string m;
        for (char c : t) {
            if (c == 'e') {
                break;
            }
            if (c != '.') {
                m.push_back(c);
            }
        }
        return m;
    };
    std::string mantissa = mantissaOf(text);
    if (mantissa[15] == '5' && mantissa.find_first_not_of('0', 16) == std::string::npos) {
        std::vector<char> longBuf(900);
        r = std::to_chars(longBuf.data(), longBuf.data() + longBuf.size(), magnitude,
                          std::chars_format::scientific, 780);
        text.assign(longBuf.data(), r.ptr);
        mantissa = mantissaOf(text);
    }
    int exponent = std::stoi(text.substr(text.find('e') + 1));
    std::string digits = mantissa.substr(0, 15);
    if (mantissa[15] >= '5') {
        int i = 14;
        while (i >= 0 && digits[static_cast<size_t>(i)] == '9') {
            digits[static_cast<size_t>(i)] = '0';
            --i;
        }
        if (i < 0) {
            digits.insert(digits.begin(), '1');
            digits.pop_back();
            ++exponent;
        } else {
            ++digits[static_cast<size_t>(i)];
        }
    }
    const auto last = digits.find_last_not_of('0');
    digits.resize(last + 1);
    d.digits = digits;
    d.exponent = exponent + 1;
    return d;
}

// ---- format texts ----

struct FormatToken {
    enum Kind { Literal, Digit, Point } kind = Literal;
    QString text;            // Literal
    char placeholder = '0';  // Digit: '0' or '#'
    bool whole = true;       // Digit: before the decimal point
    int index = 0;           // Digit: whole places from the right, fraction from the left
};

struct FormatSection {
    std::vector<FormatToken> tokens;
    int wholePlaces = 0;
    int fractionPlaces = 0;
    bool grouping = false;
    int thousandsScale = 0;
    bool percent = false;
    bool empty = true;
};

FormatSection ParseSection(QStringView text) {
    FormatSection sec;
    sec.empty = text.isEmpty();
    bool afterPoint = false;
    int pendingCommas = 0;
    auto literal = [&sec](const QString& s) {
        if (!sec.tokens.empty() && sec.tokens.back().kind == FormatToken::Literal) {
            sec.tokens.back().text += s;
        } else {
            FormatToken t;
            t.kind = FormatToken::Literal;
            t.text = s;
            sec.tokens.push_back(t);
        }
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'"') {
            const qsizetype end = text.indexOf(u'"', i + 1);
            const qsizetype stop = end < 0 ? text.size() : end;
            literal(text.mid(i + 1, stop - i - 1).toString());
            i = stop;
        } else if (c == u'\\') {
            if (i + 1 < text.size()) {
                literal(QString(text[++i]));
            }
        } else if (c == u'0' || c == u'#') {
            FormatToken t;
            t.kind = FormatToken::Digit;
            t.placeholder = static_cast<char>(c.unicode());
            t.whole = !afterPoint;
            if (afterPoint) {
                t.index = sec.fractionPlaces++;
            } else {
                if (pendingCommas > 0) {
                    sec.grouping = true;
                    pendingCommas = 0;
                }
                ++sec.wholePlaces;
            }
            sec.tokens.push_back(t);
        } else if (c == u'.' && !afterPoint) {
            afterPoint = true;
            sec.thousandsScale += pendingCommas;
            pendingCommas = 0;
            FormatToken t;
            t.kind = FormatToken::Point;
            sec.tokens.push_back(t);
        } else if (c == u',' && !afterPoint && sec.wholePlaces > 0) {
            ++pendingCommas;
        } else {
            if (c == u'%') {
                sec.percent = true;
            }
            literal(QString(c));
        }
    }
    sec.thousandsScale += pendingCommas;
    // Whole places count from the right.
    int fromRight = sec.wholePlaces;
    for (auto& t : sec.tokens) {
        if (t.kind == FormatToken::Digit && t.whole) {
            t.index = --fromRight;
        }
    }
    return sec;
}

// Splits at ";" outside quotes and escapes.
QList<QStringView> SplitSections(QStringView format) {
    QList<QStringView> parts;
    qsizetype start = 0;
    bool quoted = false;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format[i];
        if (c == u'"') {
            quoted = !quoted;
        } else if (c == u'\\' && !quoted) {
            ++i;
        } else if (c == u';' && !quoted) {
            parts.append(format.mid(start, i - start));
            start = i + 1;
        }
    }
    parts.append(format.mid(start));
    return parts;
}

QString RenderSection(const FormatSection& sec, double magnitude, bool withSign) {
    Digits15 d = SignificantDigits(magnitude);
    int exponent = d.exponent + (sec.percent ? 2 : 0) - 3 * sec.thousandsScale;
    const std::string& sig = d.digits;

    // Whole and fraction digits of the decimal form, then rounded half away from zero.
    std::string whole;
    std::string fraction;
    if (exponent > 0) {
        const size_t n = static_cast<size_t>(exponent);
        whole = sig.substr(0, std::min(n, sig.size()));
        if (sig.size() < n) {
            whole.append(n - sig.size(), '0');
        } else {
            fraction = sig.substr(n);
        }
    } else {
        fraction = std::string(static_cast<size_t>(-exponent), '0') + sig;
    }
    const size_t places = static_cast<size_t>(sec.fractionPlaces);
    if (fraction.size() > places) {
        const bool up = fraction[places] >= '5';
        fraction.resize(places);
        if (up) {
            std::string all = whole + fraction;
            int i = static_cast<int>(all.size()) - 1;
            while (i >= 0 && all[static_cast<size_t>(i)] == '9') {
                all[static_cast<size_t>(i)] = '0';
                --i;
            }
            if (i < 0) {
                all.insert(all.begin(), '1');
            } else {
                ++all[static_cast<size_t>(i)];
            }
            whole = all.substr(0, all.size() - places);
            fraction = all.substr(all.size() - places);
        }
    }
    fraction.append(places - fraction.size(), '0');
    whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));

    // Optional fraction places drop their trailing zeros.
    size_t shownFraction = places;
    std::vector<char> fractionKinds(places, '0');
    for (const auto& t : sec.tokens) {
        if (t.kind == FormatToken::Digit && !t.whole) {
            fractionKinds[static_cast<size_t>(t.index)] = t.placeholder;
        }
    }
    while (shownFraction > 0 && fractionKinds[shownFraction - 1] == '#' &&
           fraction[shownFraction - 1] == '0') {
        --shownFraction;
    }

    QString out;
    if (withSign) {
        out += u'-';
    }
    const int wholeCount = static_cast<int>(whole.size());
    auto emitWhole = [&](int position, char placeholder) {
        char digit = 0;
        if (position < wholeCount) {
            digit = whole[static_cast<size_t>(wholeCount - 1 - position)];
        } else if (placeholder == '0') {
            digit = '0';
        }
        if (digit == 0) {
            return;
        }
        out += QChar::fromLatin1(digit);
        if (sec.grouping && position > 0 && position % 3 == 0) {
            out += u',';
        }
    };
    for (const auto& t : sec.tokens) {
        switch (t.kind) {
            case FormatToken::Literal:
                out += t.text;
                break;
            case FormatToken::Point:
                // Without whole places the whole digits still show, before the point.
                if (sec.wholePlaces == 0) {
                    for (int p = wholeCount - 1; p >= 0; --p) {
                        emitWhole(p, '#');
                    }
                }
                out += u'.';
                break;
            case FormatToken::Digit:
                if (t.whole) {
                    // The leftmost place takes every digit the format has no place for.
                    const int top = t.index == sec.wholePlaces - 1
                                        ? std::max(wholeCount - 1, t.index)
                                        : t.index;
                    for (int p = top; p >= t.index; --p) {
                        emitWhole(p, t.placeholder);
                    }
                } else if (static_cast<size_t>(t.index) < shownFraction) {
                    out += QChar::fromLatin1(fraction[static_cast<size_t>(t.index)]);
                }
                break;
        }
    }
    return out;
}

QStringView NamedFormat(QStringView format) {
    struct Named {
        const char16_t* name;
        const char16_t* format;
    };
    static const Named kNamed[] = {
        {u"Currency", u"$#,##0.00;($#,##0.00)"},
        {u"Fixed", u"0.00"},
        {u"Standard", u"#,##0.00"},
        {u"Percent", u"0.00%"},
    };
    for (const auto& n : kNamed) {
        if (format.compare(QStringView(n.name), Qt::CaseInsensitive) == 0) {
            return QStringView(n.format);
        }
    }
    return format;
}

}  // namespace

std::optional<double> LeadingNumber(QStringView text) {
    std::string s;
    for (char c : AsciiOf(text)) {
        if (c != ' ' && c != '\t' && c != '\n') {
            s.push_back(c);
        }
    }
    size_t i = 0;
    if (const int radix = RadixPrefix(s, 0)) {
        i = 2;
        const RadixResult r = ScanRadix(s, i, radix);
        if (r.overflow) {
            return std::nullopt;
        }
        return r.value;
    }
    Scanned n;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
        n.negative = s[i] == '-';
        ++i;
    }
    while (i < s.size() && IsDigit(s[i])) {
        n.whole.push_back(s[i++]);
    }
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && IsDigit(s[i])) {
            n.fraction.push_back(s[i++]);
        }
    }
    if (n.whole.empty() && n.fraction.empty()) {
        return 0.0;
    }
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        // An exponent counts only with digits behind it.
        size_t j = i + 1;
        bool negativeExponent = false;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) {
            negativeExponent = s[j] == '-';
            ++j;
        }
        if (j < s.size() && IsDigit(s[j])) {
            const long e = ScanExponentDigits(s, j);
            n.exponent = negativeExponent ? -e : e;
        }
    }
    return ToDouble(n);
}

std::optional<double> StrictNumber(QStringView text) {
    const std::string s = AsciiOf(text);
    size_t i = 0;
    while (i < s.size() && IsWhite(s[i])) {
        ++i;
    }
    // One sign, a currency sign and an opening parenthesis, in any order and touching the
    // number: "- 5", "+-5" and "(-5)" are typing slips, not numbers.
    char sign = 0;
    bool currency = false;
    bool paren = false;
    for (;; ++i) {
        if (i < s.size() && (s[i] == '+' || s[i] == '-') && sign == 0) {
            sign = s[i];
        } else if (i < s.size() && s[i] == '$' && !currency) {
            currency = true;
        } else if (i < s.size() && s[i] == '(' && !paren) {
            paren = true;
        } else {
            break;
        }
    }
    if (paren && sign != 0) {
        return std::nullopt;
    }

    std::optional<double> value;
    if (const int radix = RadixPrefix(s, i)) {
        i += 2;
        const RadixResult r = ScanRadix(s, i, radix);
        if (r.overflow || r.digits == 0) {
            return std::nullopt;
        }
        value = r.value;
    } else {
        Scanned n;
        // Grouping commas stand among the whole digits, after the first.
        while (i < s.size() && (IsDigit(s[i]) || (s[i] == ',' && !n.whole.empty()))) {
            if (s[i] != ',') {
                n.whole.push_back(s[i]);
            }
            ++i;
        }
        if (i < s.size() && s[i] == '.') {
            ++i;
            while (i < s.size() && IsDigit(s[i])) {
                n.fraction.push_back(s[i++]);
            }
        }
        if (n.whole.empty() && n.fraction.empty()) {
            return std::nullopt;
        }
        if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
            ++i;
            bool negativeExponent = false;
            if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
                negativeExponent = s[i] == '-';
                ++i;
            }
            const size_t digitsAt = i;
            const long e = ScanExponentDigits(s, i);
            if (i == digitsAt) {
                return std::nullopt;
            }
            n.exponent = negativeExponent ? -e : e;
        }
        value = ToDouble(n);
        if (!value) {
            return std::nullopt;
        }
    }

    if (paren) {
        if (i >= s.size() || s[i] != ')') {
            return std::nullopt;
        }
        ++i;
    } else if (i < s.size() && (s[i] == '+' || s[i] == '-') && sign == 0) {
        sign = s[i++];
    }
    while (i < s.size() && IsWhite(s[i])) {
        ++i;
    }
    if (i != s.size()) {
        return std::nullopt;
    }
    return (sign == '-' || paren) ? -*value : *value;
}

struct NumberFormat::Sections {
    bool plain = false;
    FormatSection positive;
    std::optional<FormatSection> negative;
    std::optional<FormatSection> zero;
};

NumberFormat::NumberFormat(QStringView format) : sections_(std::make_unique<Sections>()) {
    format = NamedFormat(format);
    if (format.isEmpty() || format.compare(u"General Number", Qt::CaseInsensitive) == 0) {
        sections_->plain = true;
        return;
    }
    const QList<QStringView> parts = SplitSections(format);
    sections_->positive = ParseSection(parts[0]);
    if (parts.size() >= 2) {
        sections_->negative = ParseSection(parts[1]);
    }
    if (parts.size() >= 3) {
        sections_->zero = ParseSection(parts[2]);
    }
}

NumberFormat::~NumberFormat() = default;
NumberFormat::NumberFormat(NumberFormat&&) noexcept = default;
NumberFormat& NumberFormat::operator=(NumberFormat&&) noexcept = default;

QString NumberFormat::Apply(double value) const {
    if (!std::isfinite(value)) {
        return {};
    }
    const Sections& s = *sections_;
    if (s.plain) {
        return PlainNumberText(value);
    }
    if (value < 0 && s.negative && !s.negative->empty) {
        return RenderSection(*s.negative, -value, false);
    }
    if (value == 0 && s.zero && !s.zero->empty) {
        return RenderSection(*s.zero, 0, false);
    }
    if (s.positive.empty) {
        return PlainNumberText(value);
    }
    return RenderSection(s.positive, std::fabs(value), value < 0);
}

QString FormatNumber(double value, QStringView format) {
    return NumberFormat(format).Apply(value);
}

QString PlainNumberText(double value) {
    if (!std::isfinite(value)) {
        return {};
    }
    const Digits15 d = SignificantDigits(value);
    if (d.digits.empty()) {
        return QStringLiteral("0");
    }
    std::string out = d.negative ? "-" : "";
    const std::string& sig = d.digits;
    const int x = d.exponent - 1;
    if (x < -4 || x >= 15) {
        out += sig[0];
        if (sig.size() > 1) {
            out += '.';
            out += sig.substr(1);
        }
        out += x < 0 ? "E-" : "E+";
        const std::string e = std::to_string(std::abs(x));
        out += (e.size() < 2 ? "0" : "") + e;
    } else if (x >= 0) {
        const size_t n = static_cast<size_t>(x) + 1;
        if (sig.size() <= n) {
            out += sig + std::string(n - sig.size(), '0');
        } else {
            out += sig.substr(0, n) + "." + sig.substr(n);
        }
    } else {
        out += "0." + std::string(static_cast<size_t>(-x - 1), '0') + sig;
    }
    return QString::fromLatin1(out.data(), static_cast<qsizetype>(out.size()));
}

double RoundPlaces(double x, int places) {
    const double scale = std::pow(10.0, places);
    return std::floor(x * scale + 0.5) / scale;
}

QString ResultText(double value, QStringView format) {
    QString text = FormatNumber(value, format);
    const bool anyDigit =
        std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit(); });
    return anyDigit ? text : QString();
}

double CheckedMath::check(double result) {
    if (std::isnan(result)) {
        fail(kInvalidCall);
    } else if (std::isinf(result)) {
        fail(kOverflow);
    }
    return result;
}

void CheckedMath::fail(const QString& reason) {
    if (error_.isEmpty()) {
        error_ = reason;
    }
}

double CheckedMath::div(double a, double b) {
    if (b == 0) {
        // 0/0 is an overflow in the original, any other quotient by zero a division by zero.
        fail(a == 0 ? kOverflow : kDivisionByZero);
        return std::numeric_limits<double>::quiet_NaN();
    }
    return check(a / b);
}

double CheckedMath::pow(double base, double exponent) {
    if (base == 0 && exponent < 0) {
        fail(kDivisionByZero);
        return std::numeric_limits<double>::quiet_NaN();
    }
    return check(std::pow(base, exponent));
}

double CheckedMath::sqrt(double x) {
    if (x < 0) {
        fail(kInvalidCall);
        return std::numeric_limits<double>::quiet_NaN();
    }
    return check(std::sqrt(x));
}

double CheckedMath::floor(double x) {
    return check(std::floor(x));
}

double CalcSteps::Strict(QStringView text) {
    const auto value = StrictNumber(text);
    if (!value) {
        fail(LeadingNumber(text) ? QStringLiteral("Type mismatch") : kOverflow);
        return 0;
    }
    return *value;
}

double CalcSteps::Lenient(QStringView text) {
    const auto value = LeadingNumber(text);
    if (!value) {
        fail(kOverflow);
        return 0;
    }
    return *value;
}

}  // namespace slipbook
