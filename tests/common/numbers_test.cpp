#include "common/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using slipbook::CheckedMath;
using slipbook::FormatNumber;
using slipbook::LeadingNumber;
using slipbook::PlainNumberText;
using slipbook::RoundPlaces;
using slipbook::StrictNumber;

namespace {

double Leading(const char* text) {
    const auto v = LeadingNumber(QString::fromUtf8(text));
    EXPECT_TRUE(v.has_value()) << text;
    return v.value_or(std::nan(""));
}

QString Fmt(double value, const char* format) {
    return FormatNumber(value, QString::fromUtf8(format));
}

}  // namespace

TEST(LeadingNumber, TakesTheLongestLeadingNumberElseZero) {
    EXPECT_EQ(Leading("12abc"), 12);
    EXPECT_EQ(Leading(" -3.5e2x"), -350);
    EXPECT_EQ(Leading(".5"), 0.5);
    EXPECT_EQ(Leading("+7"), 7);
    EXPECT_EQ(Leading("1.2.3"), 1.2);
    // A comma is no part of a number; blanks, tabs and line feeds vanish wherever they stand.
    EXPECT_EQ(Leading("1,000"), 1);
    EXPECT_EQ(Leading("1 000"), 1000);
    EXPECT_EQ(Leading("\t- 4\n2"), -42);
    // An exponent needs digits, and "D" serves as well as "E".
    EXPECT_EQ(Leading("1e"), 1);
    EXPECT_EQ(Leading("2D3"), 2000);
    EXPECT_EQ(Leading("1e-400"), 0);
    for (const char* none : {"", "-", "+", ".", "abc", "--5", "$5", "e5", "\xc2\xbd"}) {
        EXPECT_EQ(Leading(none), 0) << none;
    }
    // Radix prefixes wrap as the classic integers do.
    EXPECT_EQ(Leading("&H10"), 16);
    EXPECT_EQ(Leading("&HFFFF"), -1);
    EXPECT_EQ(Leading("&H8000"), -32768);
    EXPECT_EQ(Leading("&H10000"), 65536);
    EXPECT_EQ(Leading("&HFFFFFFFF"), -1);
    EXPECT_EQ(Leading("&O17"), 15);
    // Beyond a double, or beyond 32 bits, the original stops with an overflow.
    EXPECT_FALSE(LeadingNumber(u"1e400").has_value());
    EXPECT_FALSE(LeadingNumber(u"&H100000000").has_value());
}

TEST(StrictNumber, AcceptsOnlyAWholeNumberText) {
    struct Case {
        const char* text;
        double value;
    };
    const Case good[] = {
        {"29.92", 29.92},        {"\t75\r\n", 75}, {"1,000", 1000}, {"1,2", 12},
        {"-12,345.5", -12345.5}, {"+5", 5},        {"5-", -5},      {"(5)", -5},
        {"$1,234.50", 1234.5},   {"$-5", -5},      {"($5)", -5},    {"1,000.5e-1-", -100.05},
        {"1e3", 1000},           {".5", 0.5},      {"5.", 5},       {"&H10", 16},
        {"1e-400", 0},
    };
    for (const auto& c : good) {
        const auto v = StrictNumber(QString::fromUtf8(c.text));
        ASSERT_TRUE(v.has_value()) << c.text;
        EXPECT_EQ(*v, c.value) << c.text;
    }
    for (const char* bad :
         {"",    " ",   "-",       "+",     ".",     ",",  "12abc", "abc", "1 000",       "--5",
          "(5",  "5)",  "1.000,5", "1.2.3", "1e400", "&H", "5--",   "e5",  "&H100000000", "- 5",
          "5 -", "+-5", "-5+",     "(-5)",  "-(5)",  ",5", "1e",    "1e+", "( 5)"}) {
        EXPECT_FALSE(StrictNumber(QString::fromUtf8(bad)).has_value()) << bad;
    }
}

TEST(FormatNumber, RoundsHalfAwayFromZeroOnFifteenDigits) {
    // Binary values just below the half round up, because their 15-digit form is the half.
    EXPECT_EQ(Fmt(2.675, "0.00"), "2.68");
    EXPECT_EQ(Fmt(-2.675, "0.00"), "-2.68");
    EXPECT_EQ(Fmt(1.0005, "0.000"), "1.001");
    EXPECT_EQ(Fmt(0.045 * 100, "0"), "5");
    EXPECT_EQ(Fmt(1.4999999999999, "0"), "1");
    EXPECT_EQ(Fmt(2.5, "0"), "3");
    EXPECT_EQ(Fmt(-2.5, "0"), "-3");
    EXPECT_EQ(Fmt(62.25, "##0.0"), "62.3");
    EXPECT_EQ(Fmt(999.9995, "###,##0.000"), "1,000.000");
    EXPECT_EQ(Fmt(9.9999999999999999, "0.0"), "10.0");
    // Past 15 digits the form has zeros only.
    EXPECT_EQ(Fmt(0.1, "0.00000000000000000000"), "0.10000000000000000000");
    EXPECT_EQ(Fmt(123456789012345678.0, "0"), "123456789012346000");
    // An exact tie in the sixteenth digit goes away from zero too.
    EXPECT_EQ(Fmt(1234567890123465.0, "0"), "1234567890123470");
    EXPECT_EQ(Fmt(123456789012344.5, "0.0"), "123456789012345.0");
}

TEST(FormatNumber, PlacesGroupingSignsAndSections) {
    EXPECT_EQ(Fmt(1234567.891, "###,##0.000"), "1,234,567.891");
    EXPECT_EQ(Fmt(1e20, "###,##0"), "100,000,000,000,000,000,000");
    EXPECT_EQ(Fmt(-1893, "###,##0"), "-1,893");
    EXPECT_EQ(Fmt(-999, "###,##0"), "-999");
    EXPECT_EQ(Fmt(1000, "###,##0"), "1,000");
    EXPECT_EQ(Fmt(0, "###,##0.00"), "0.00");
    EXPECT_EQ(Fmt(-0.0, "###,##0.00"), "0.00");
    EXPECT_EQ(Fmt(1.5, "0000"), "0002");
    EXPECT_EQ(Fmt(3, "0,000"), "0,003");
    // A negative that rounds to zero keeps its sign.
    EXPECT_EQ(Fmt(-0.001, "0.00"), "-0.00");
    // Optional places: a leading zero and trailing decimal zeros vanish, the point stays.
    EXPECT_EQ(Fmt(0.5, "#.00"), ".50");
    EXPECT_EQ(Fmt(5, "#.##"), "5.");
    EXPECT_EQ(Fmt(12.5, "###.###"), "12.5");
    EXPECT_EQ(Fmt(0.4, "###"), "");
    EXPECT_EQ(Fmt(1.2, "0.0#"), "1.2");
    EXPECT_EQ(Fmt(1.234, "0.0#"), "1.23");
    // Sections, percent, thousands scaling, literals and named formats.
    EXPECT_EQ(Fmt(-5, "0;(0);\"zero\""), "(5)");
    EXPECT_EQ(Fmt(0, "0;(0);\"zero\""), "zero");
    EXPECT_EQ(Fmt(-5, "0;;z"), "-5");
    EXPECT_EQ(Fmt(0.1234, "0.0%"), "12.3%");
    EXPECT_EQ(Fmt(1234567, "#,##0,"), "1,235");
    EXPECT_EQ(Fmt(1234.5, "$#,##0.00"), "$1,234.50");
    EXPECT_EQ(Fmt(-1234.5, "$#,##0.00"), "-$1,234.50");
    EXPECT_EQ(Fmt(7, "0\" ft\""), "7 ft");
    EXPECT_EQ(Fmt(7, "\\#0"), "#7");
    EXPECT_EQ(Fmt(1234.5, "Standard"), "1,234.50");
    EXPECT_EQ(Fmt(-5, "Currency"), "($5.00)");
    EXPECT_EQ(Fmt(11.5, ""), "11.5");
    EXPECT_EQ(Fmt(std::numeric_limits<double>::infinity(), "0"), "");
}

TEST(PlainNumberText, FifteenDigitsWithoutTrailingZeros) {
    EXPECT_EQ(PlainNumberText(0), "0");
    EXPECT_EQ(PlainNumberText(-0.0), "0");
    EXPECT_EQ(PlainNumberText(-0.5), "-0.5");
    EXPECT_EQ(PlainNumberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(PlainNumberText(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(PlainNumberText(0.0001), "0.0001");
    EXPECT_EQ(PlainNumberText(0.00001), "1E-05");
    EXPECT_EQ(PlainNumberText(1.5e-7), "1.5E-07");
    EXPECT_EQ(PlainNumberText(123456789012345), "123456789012345");
    EXPECT_EQ(PlainNumberText(1e15), "1E+15");
    EXPECT_EQ(PlainNumberText(999999999999999.9), "1E+15");
    EXPECT_EQ(PlainNumberText(-1.23456e22), "-1.23456E+22");
    EXPECT_EQ(PlainNumberText(5e-324), "4.94065645841247E-324");
}

TEST(RoundPlaces, FloorsAfterAddingTheHalf) {
    EXPECT_EQ(RoundPlaces(1.23456, 2), 1.23);
    EXPECT_EQ(RoundPlaces(1.235, 1), 1.2);
    EXPECT_EQ(RoundPlaces(2.5, 0), 3);
    // Halves of negatives go up, not away from zero.
    EXPECT_EQ(RoundPlaces(-1.5, 0), -1);
    EXPECT_EQ(RoundPlaces(-1.2345, 3), -1.234);
    EXPECT_EQ(RoundPlaces(1250, -2), 1300);
}

TEST(CheckedMath, StopsAtTheFirstFloatingPointFailure) {
    CheckedMath ok;
    EXPECT_EQ(ok.pow(-2, 3), -8);
    EXPECT_EQ(ok.pow(0, 5.2561), 0);
    EXPECT_EQ(ok.div(1, 4), 0.25);
    EXPECT_FALSE(ok.failed());

    const auto failure = [](auto step) {
        CheckedMath m;
        step(m);
        return m.error();
    };
    EXPECT_EQ(failure([](CheckedMath& m) { m.div(1, 0); }), "Division by zero");
    EXPECT_EQ(failure([](CheckedMath& m) { m.div(0, 0); }), "Overflow");
    EXPECT_EQ(failure([](CheckedMath& m) { m.mul(1e200, 1e200); }), "Overflow");
    EXPECT_EQ(failure([](CheckedMath& m) { m.pow(10, 400); }), "Overflow");
    EXPECT_EQ(failure([](CheckedMath& m) { m.pow(0, -1); }), "Division by zero");
    EXPECT_EQ(failure([](CheckedMath& m) { m.pow(-0.5, 5.2561); }),
              "Invalid procedure call or argument");
    EXPECT_EQ(failure([](CheckedMath& m) { m.sqrt(-1); }), "Invalid procedure call or argument");
    // The first failure is the one reported.
    EXPECT_EQ(failure([](CheckedMath& m) { m.sqrt(m.div(1, 0) - 1e308); }), "Division by zero");
}
