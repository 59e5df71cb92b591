#pragma once

// Number texts as the windows hold them, and the arithmetic of the calculators.
//
// Two parses exist and must not be mixed: LeadingNumber, lenient, for guards and checks, and
// StrictNumber, which fails on anything that is not a number, for arithmetic. Texts for display
// come from FormatNumber (format texts such as "###,##0.000") and PlainNumberText (a number
// converted to text without a format). All of them work in the US conventions: "." is the
// decimal point and "," the grouping, whatever the machine's locale.

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>
#include <utility>

namespace slipbook {

// The leading number of a text, in the manner of the classic Val: blanks, tabs and line feeds
// are dropped wherever they stand ("1 000" is 1000), then the longest leading number is taken:
// an optional sign, digits with one decimal point, an exponent with "E" or "D"; "&H" and "&O"
// take hexadecimal and octal digits, which wrap to a signed 16-bit value up to FFFF and a signed
// 32-bit value up to FFFFFFFF. No number gives 0 ("", "-", "abc"); a comma ends the number
// ("1,000" is 1). Empty only where the original stops with an overflow: a number beyond the
// range of a double, or more than 32 bits of hexadecimal or octal digits.
std::optional<double> LeadingNumber(QStringView text);

// The whole text as a number, in the manner of the classic CDbl under a US locale: leading and
// trailing white space, one sign ("+" or "-", leading or trailing) or parentheses for a negative,
// a "$", all touching the digits; grouping commas anywhere among the whole digits after the first
// ("1,000", "1,2" is 12), a decimal point, an exponent with "E" and at least one digit, "&H" and
// "&O" as LeadingNumber has them. Empty for anything else, the empty text, "-", "- 5", "+-5",
// "(-5)", ",5", "1e" and "12abc" included, and for a number beyond the range of a double.
std::optional<double> StrictNumber(QStringView text);

// The value in a format text: "0" a required digit, "#" an optional one, "," between digit
// places groups by thousands and after the last whole place divides by 1000, "." the decimal
// point (always shown when the format has one), "%" multiplies by 100. Up to three sections
// separated by ";" serve positive, negative (shown without its sign) and zero values; an empty
// section falls back to the first. Other characters, quoted texts and characters after "\" are
// copied as they stand. The value is rounded half away from zero on its 15-significant-digit
// decimal form, so 2.675 in "0.00" gives "2.68". A negative value that rounds to zero keeps its
// sign ("-0.00"), as the classic runtime shows it. The names "General Number", "Fixed",
// "Standard", "Percent" and "Currency" stand for their usual formats; the empty format gives
// PlainNumberText. A value that is not finite gives the empty text.
QString FormatNumber(double value, QStringView format);

// FormatNumber with the format read once, for lists that format many values alike.
class NumberFormat {
public:
    explicit NumberFormat(QStringView format);
    ~NumberFormat();
    NumberFormat(NumberFormat&&) noexcept;
    NumberFormat& operator=(NumberFormat&&) noexcept;
    QString Apply(double value) const;  // the same text as FormatNumber(value, format)

private:
    struct Sections;
    std::unique_ptr<Sections> sections_;
};

// A calculator's result in a format of optional digits: FormatNumber, but a value that keeps no
// digit at all (a zero in "###.###", which would show "." or "-.") is the empty text.
QString ResultText(double value, QStringView format);

// The text a double converts to without a format: up to 15 significant digits without trailing
// zeros or grouping, "0.5" rather than ".5", and the scientific form "1E+15", "1.5E-05" when
// the decimal exponent is 15 or above or below -4. Zero of either sign is "0".
QString PlainNumberText(double value);

// floor(x * 10^places + 0.5) / 10^places: the calculators' rounding.
double RoundPlaces(double x, int places);

// A calculation's result, or the run-time error on which the original program would stop.
template <typename T>
class CalcResult {
public:
    // Implicit, so that a calculation returns its value as it is.
    CalcResult(T value) : value_(std::move(value)) {}
    static CalcResult failure(QString reason) {
        CalcResult r;
        r.error_ = std::move(reason);
        return r;
    }

    bool ok() const { return value_.has_value(); }
    explicit operator bool() const { return ok(); }
    const T& value() const { return *value_; }
    const T& operator*() const { return *value_; }
    const T* operator->() const { return &*value_; }
    const QString& error() const { return error_; }

private:
    CalcResult() = default;
    std::optional<T> value_;
    QString error_;
};

// Floating-point steps that fail as the original's arithmetic does: an overflow, a division by
// zero or an invalid operation is a run-time error. The first failure is kept and later steps
// go on harmlessly, so a formula can be written out in full and checked once at its end.
class CheckedMath {
public:
    double add(double a, double b) { return check(a + b); }
    double sub(double a, double b) { return check(a - b); }
    double mul(double a, double b) { return check(a * b); }
    double div(double a, double b);
    double pow(double base, double exponent);
    double sqrt(double x);
    double floor(double x);

    bool failed() const { return !error_.isEmpty(); }
    const QString& error() const { return error_; }
    void fail(const QString& reason);

private:
    double check(double result);
    QString error_;
};

// CheckedMath with the two conversions of box texts: a calculation's steps read as they are
// written and are checked once at the end.
class CalcSteps : public CheckedMath {
public:
    // The whole text as a number; a text that is none is a type mismatch, a number beyond a
    // double an overflow.
    double Strict(QStringView text);
    // The leading number; one beyond a double is an overflow.
    double Lenient(QStringView text);
    // floor(x * scale + 0.5) / scale, scale being 10 to the places kept.
    double Round(double x, double scale) { return div(floor(add(mul(x, scale), 0.5)), scale); }
};

}  // namespace slipbook
