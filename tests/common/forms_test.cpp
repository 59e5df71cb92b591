#include "common/forms.h"

#include <gtest/gtest.h>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

QDateTime At(int y, int m, int d, int h = 0, int min = 0, int s = 0) {
    return QDateTime(QDate(y, m, d), QTime(h, min, s), Qt::UTC);
}

QDateTime TimeOnly(int h, int min, int s = 0) {
    return At(1899, 12, 30, h, min, s);
}

QVariant Text(const char* s) {
    return QVariant(QString::fromUtf8(s));
}

KeyVerdict Key(char key, const char* text, int selStart, int selLength, int decimals) {
    return KeyNumericFilter(key, QString::fromUtf8(text), selStart, selLength, decimals);
}

}  // namespace

TEST(DateTextParse, TakesTheLeadingDateAndRefusesOldYears) {
    const QDate today(2010, 5, 1);
    auto parse = [&](const char* text) { return DateTextParse(QString::fromUtf8(text), today); };
    EXPECT_EQ(parse("07/04/2003"), "07/04/2003");
    EXPECT_EQ(parse("7/4/2003 10:30 AM"), "07/04/2003");
    EXPECT_EQ(parse("7/4/03"), "07/04/2003");
    EXPECT_EQ(parse("7/4/45"), "07/04/1945");
    EXPECT_EQ(parse("25/12/2003"), "12/25/2003");  // cannot be month first: read day first
    EXPECT_EQ(parse("7/4"), "07/04/2010");
    EXPECT_EQ(parse("12/2003"), "12/01/2003");
    EXPECT_EQ(parse("1/1/1001"), "01/01/1001");
    // No date at all.
    EXPECT_EQ(parse("__/__/____"), "");
    EXPECT_EQ(parse(""), "");
    EXPECT_EQ(parse("abc"), "");
    EXPECT_EQ(parse("02/30/2003"), "");
    EXPECT_EQ(parse("07-04-2003"), "");  // "-" ends the leading run
    // A date, but of a year of 1000 or below.
    EXPECT_EQ(parse("1/1/1000"), "");
}

TEST(DateMaskValue, ShowsDatesAndTheEmptyMask) {
    EXPECT_EQ(DateMaskValue(QVariant()), "__/__/____");
    EXPECT_EQ(DateMaskValue(QVariant(12.0)), "__/__/____");
    EXPECT_EQ(DateMaskValue(At(2003, 7, 4)), "07/04/2003");
    EXPECT_EQ(DateMaskValue(At(2003, 7, 4, 22, 15)), "07/04/2003");
    EXPECT_EQ(DateMaskValue(Text("7/4/2003")), "07/04/2003");
    EXPECT_EQ(DateMaskValue(TimeOnly(10, 30)), "12/30/1899");
    // A date that the parse refuses gives the empty text, not the mask.
    EXPECT_EQ(DateMaskValue(At(999, 1, 1)), "");
    // Only date and time count, not the zone the value carries.
    EXPECT_EQ(DateMaskValue(QDateTime(QDate(2003, 7, 4), QTime(23, 30), Qt::OffsetFromUTC, -36000)),
              "07/04/2003");
}

TEST(TimeMaskValue, ShowsTwelveHourTimes) {
    EXPECT_EQ(TimeMaskValue(QVariant(), false), "__:__ __");
    EXPECT_EQ(TimeMaskValue(QVariant(), true), "__:__:__ __");
    EXPECT_EQ(TimeMaskValue(TimeOnly(10, 30), false), "10:30 AM");
    EXPECT_EQ(TimeMaskValue(TimeOnly(22, 5, 7), false), "10:05 PM");
    EXPECT_EQ(TimeMaskValue(TimeOnly(22, 5, 7), true), "10:05:7 PM");
    EXPECT_EQ(TimeMaskValue(TimeOnly(0, 0), false), "12:00 AM");
    EXPECT_EQ(TimeMaskValue(TimeOnly(12, 1), false), "12:01 PM");
    EXPECT_EQ(TimeMaskValue(At(2003, 7, 4, 9, 5), false), "09:05 AM");
    EXPECT_EQ(TimeMaskValue(Text("22:15"), false), "10:15 PM");
    EXPECT_EQ(TimeMaskValue(Text("late"), false), "late");
}

TEST(MaskClipValue, EmptyValuesGiveTheMasksPattern) {
    EXPECT_EQ(MaskClipValue(QVariant(), u"##/##/####"), "__/__/____");
    EXPECT_EQ(MaskClipValue(Text(""), u"##:## ??"), "__:__ ??");
    EXPECT_EQ(MaskClipValue(Text("07/04/2003"), u"##/##/####"), "07/04/2003");
    EXPECT_EQ(MaskClipValue(QVariant(1.5), u"##"), "1.5");
    EXPECT_EQ(MaskClipValue(At(2003, 7, 4), u"##/##/####"), "7/4/2003");
}

TEST(TimeTextFormat, ReformatsTimesAndLeavesOtherTexts) {
    EXPECT_EQ(TimeTextFormat("22:15:05", true), "10:15:05 PM");
    EXPECT_EQ(TimeTextFormat("9:05 am", false), "09:05 AM");
    EXPECT_EQ(TimeTextFormat("12 PM", true), "12:00:00 PM");
    EXPECT_EQ(TimeTextFormat("7/4/2003 13:00", false), "01:00 PM");
    EXPECT_EQ(TimeTextFormat("25:00", false), "25:00");
    EXPECT_EQ(TimeTextFormat("", false), "");
}

TEST(KeyNumericFilter, AcceptsNumbersWithinTheirDecimals) {
    EXPECT_TRUE(KeyAllowedSigned('0') && KeyAllowedSigned('9') && KeyAllowedSigned('.') &&
                KeyAllowedSigned(kKeyBackspace) && KeyAllowedSigned('-'));
    EXPECT_FALSE(KeyAllowedSigned('a') || KeyAllowedSigned('+') || KeyAllowedSigned(' '));
    EXPECT_TRUE(KeyAllowedDecimal('5') && KeyAllowedDecimal('.'));
    EXPECT_FALSE(KeyAllowedDecimal('-') || KeyAllowedDecimal(kKeyBackspace));

    EXPECT_EQ(KeyNumericFilter(kKeyEnter, u"12", 2, 0, 3), KeyVerdict::NextField);
    EXPECT_EQ(Key('a', "12", 2, 0, 3), KeyVerdict::Swallow);
    EXPECT_EQ(Key('4', "12", 2, 0, 3), KeyVerdict::Accept);
    EXPECT_EQ(Key('.', "12", 2, 0, 3), KeyVerdict::Accept);
    // A second point, wherever it would stand.
    EXPECT_EQ(Key('.', "1.2", 3, 0, 3), KeyVerdict::Swallow);
    // Typing over the point with a point is no second point.
    EXPECT_EQ(Key('.', "1.2", 1, 1, 3), KeyVerdict::Accept);
    // Places behind the point.
    EXPECT_EQ(Key('5', "1.23", 4, 0, 3), KeyVerdict::Accept);
    EXPECT_EQ(Key('5', "1.234", 5, 0, 3), KeyVerdict::Swallow);
    EXPECT_EQ(Key('5', "1.234", 0, 0, 3), KeyVerdict::Accept);
    EXPECT_EQ(Key('.', "12345", 1, 0, 3), KeyVerdict::Swallow);  // "1.2345"
    EXPECT_EQ(Key('5', "1.234", 4, 1, 3), KeyVerdict::Accept);   // replaces the "4"
    // The whole text selected: the new digit replaces it.
    EXPECT_EQ(Key('7', "12.345", 0, 6, 3), KeyVerdict::Accept);
    // Backspace and minus pass without the tests on the text.
    EXPECT_EQ(Key(kKeyBackspace, "1.234", 5, 0, 3), KeyVerdict::Accept);
    EXPECT_EQ(Key('-', "1.234", 5, 0, 3), KeyVerdict::Accept);
    // No decimals: a point is allowed, a digit behind it is not.
    EXPECT_EQ(Key('.', "12", 2, 0, 0), KeyVerdict::Accept);
    EXPECT_EQ(Key('1', "12.", 3, 0, 0), KeyVerdict::Swallow);
    // No limit at all.
    EXPECT_EQ(Key('.', "1.2", 3, 0, -1), KeyVerdict::Accept);
    EXPECT_EQ(Key('9', "1.23456", 7, 0, -1), KeyVerdict::Accept);
    // A selection reaching past the text is cut at its end.
    EXPECT_EQ(Key('5', "1.2", 2, 10, 3), KeyVerdict::Accept);
}

TEST(NumericPad, PadsToTheDecimalsOnlyWhenShort) {
    EXPECT_EQ(NumericPad(u"12", 3), "12.000");
    EXPECT_EQ(NumericPad(u"", 3), ".000");
    EXPECT_EQ(NumericPad(u"1.2", 3), "1.200");
    EXPECT_EQ(NumericPad(u"1.", 4), "1.0000");
    EXPECT_EQ(NumericPad(u"1.234", 3), std::nullopt);
    EXPECT_EQ(NumericPad(u"12", 0), std::nullopt);
    // A stored value shows with a blank behind it; the pad works on the number alone.
    EXPECT_EQ(NumericPad(u"10.9 ", 3), "10.900");
    EXPECT_EQ(NumericPad(u"10.900 ", 3), std::nullopt);
}

TEST(NumberEntryProblem, NamesTheFieldWhenItsColumnCantKeepTheNumber) {
    const QString points = QStringLiteral("Points");
    EXPECT_EQ(NumberEntryProblem(points, u"", StoredNumber::Long), std::nullopt);
    EXPECT_EQ(NumberEntryProblem(points, u"2,147,483,647", StoredNumber::Long), std::nullopt);
    EXPECT_EQ(NumberEntryProblem(points, u"99999999999999999999", StoredNumber::Long),
              "Points Must Be a Whole Number From -2,147,483,648 To 2,147,483,647");
    EXPECT_EQ(NumberEntryProblem(points, u"32767.4", StoredNumber::Integer), std::nullopt);
    EXPECT_EQ(NumberEntryProblem(points, u"-32769", StoredNumber::Integer),
              "Points Must Be a Whole Number From -32,768 To 32,767");
    EXPECT_EQ(NumberEntryProblem(points, u"1-2", StoredNumber::Double), "Points Must Be a Number");
    EXPECT_EQ(NumberEntryProblem(points, u"10.9 0", StoredNumber::Double),
              "Points Must Be a Number");
    EXPECT_EQ(NumberEntryProblem(points, QString(310, u'9'), StoredNumber::Double),
              "Points Is Too Large a Number");
    EXPECT_EQ(NumberEntryProblem(points, u"1e308", StoredNumber::Double), std::nullopt);
    EXPECT_EQ(NumberEntryProblem(points, u"1e308", StoredNumber::Single),
              "Points Is Too Large a Number");
    EXPECT_EQ(NumberEntryProblem(points, u"1000000000000000", StoredNumber::Currency),
              "Points Is Too Large a Number");
}

TEST(NameCase, CapitalisesNames) {
    EXPECT_EQ(NameCase("mcdonald"), "McDonald");
    EXPECT_EQ(NameCase("o'brien-smith"), "O'Brien-Smith");
    EXPECT_EQ(NameCase("MACARTHUR"), "MacArthur");
    EXPECT_EQ(NameCase("john MACDONALD"), "John MacDonald");
    EXPECT_EQ(NameCase("EMCEE"), "Emcee");          // MC neither at the start nor after a blank
    EXPECT_EQ(NameCase("smith-mcd"), "Smith-Mcd");  // after "-" the MC rule does not apply
    EXPECT_EQ(NameCase("st. louis raceway"), "St. Louis Raceway");
    EXPECT_EQ(NameCase("first\nsecond"), "First\nSecond");
    // Texts that do not start with a letter stay as they are.
    EXPECT_EQ(NameCase("3rd street"), "3rd street");
    EXPECT_EQ(NameCase(" john"), " john");
    EXPECT_EQ(NameCase(""), "");

    EXPECT_TRUE(IsAlphaStart(u"a1"));
    EXPECT_TRUE(IsAlphaStart(u"\u00e9t\u00e9"));
    EXPECT_FALSE(IsAlphaStart(u"1a"));
    EXPECT_FALSE(IsAlphaStart(u""));
}

TEST(QuoteDouble, DoublesApostrophesAndDropsOnlyTheHints) {
    EXPECT_EQ(QuoteDouble("O'Brien's"), "O''Brien''s");
    EXPECT_EQ(QuoteDouble("''"), "''''");
    EXPECT_EQ(QuoteDouble(""), "");
    EXPECT_EQ(QuoteDouble("<Type notes here>"), "");
    EXPECT_EQ(QuoteDouble("   <Type maintenance description here>"), "");
    EXPECT_EQ(QuoteDouble("1 < 2 isn't news"), "1 < 2 isn''t news");
    // Anything else the racer types is a note, "<" or not.
    EXPECT_EQ(QuoteDouble("<3 psi on the left rear"), "<3 psi on the left rear");
    EXPECT_EQ(QuoteDouble(" <b>bold</b>"), " <b>bold</b>");
    EXPECT_EQ(QuoteDouble("<Type notes here>Clean pass"), "<Type notes here>Clean pass");
}

TEST(TextReplace, ReplacesLeftToRight) {
    EXPECT_EQ(TextReplace("1 Main St\r\nSpringfield\r\n", u"\r\n", u", "),
              "1 Main St, Springfield, ");
    EXPECT_EQ(TextReplace("aaa", u"aa", u"b"), "ba");
    EXPECT_EQ(TextReplace("abc", u"", u"x"), "abc");
}

TEST(FieldConversions, DatesNumbersAndTextsForSaving) {
    EXPECT_EQ(DateOrNull(Text("07/04/2003")), QVariant(At(2003, 7, 4)));
    EXPECT_EQ(DateOrNull(Text("10:30 PM")), QVariant(TimeOnly(22, 30)));
    EXPECT_EQ(DateOrNull(QDate(2003, 7, 4)), QVariant(At(2003, 7, 4)));
    EXPECT_EQ(DateOrNull(At(2003, 7, 4, 1, 2, 3)).toDateTime().timeSpec(), Qt::UTC);
    EXPECT_FALSE(DateOrNull(Text("__/__/____")).isValid());
    EXPECT_FALSE(DateOrNull(QVariant()).isValid());
    EXPECT_FALSE(DateOrNull(QVariant(37000)).isValid());

    auto intOf = [](const QVariant& v) {
        const auto r = IntOrZero(v);
        EXPECT_TRUE(r.ok()) << v.toString().toStdString();
        return r.ok() ? *r : -99999;
    };
    EXPECT_EQ(intOf(QVariant()), 0);
    EXPECT_EQ(intOf(Text("abc")), 0);
    EXPECT_EQ(intOf(Text("12abc")), 0);
    EXPECT_EQ(intOf(Text(" 12 ")), 12);
    EXPECT_EQ(intOf(QVariant(2.5)), 2);  // half to even
    EXPECT_EQ(intOf(QVariant(3.5)), 4);
    EXPECT_EQ(intOf(Text("-2.5")), -2);
    EXPECT_EQ(intOf(QVariant(true)), -1);
    EXPECT_EQ(intOf(QVariant(qint64(-32768))), -32768);
    EXPECT_EQ(intOf(Text("32767")), 32767);
    EXPECT_EQ(intOf(At(2003, 7, 4)), 0);
    for (const QVariant& big : {Text("32768"), QVariant(32767.5), QVariant(-32769), Text("1E10")}) {
        const auto r = IntOrZero(big);
        EXPECT_FALSE(r.ok()) << big.toString().toStdString();
        EXPECT_EQ(r.error(), "Overflow");
    }

    EXPECT_FALSE(TextOrNull("").isValid());
    EXPECT_EQ(TextOrNull("  Main St  "), QVariant(QStringLiteral("Main St")));
    EXPECT_EQ(TextOrNull("   "), QVariant(QString()));
    EXPECT_EQ(TextOrNull("line\n"), QVariant(QStringLiteral("line\n")));
}

TEST(ListStep, KeepsThePlaceOrMovesToTheLastEntry) {
    EXPECT_EQ(ListStep(0, 0), -1);  // the one row of the list was removed
    EXPECT_EQ(ListStep(1, 0), 0);
    // Five entries left after a removal.
    EXPECT_EQ(ListStep(5, 2), 2);
    EXPECT_EQ(ListStep(5, 3), 4);  // index + 1 reaches the last entry
    EXPECT_EQ(ListStep(5, 5), 4);  // the removed entry was the last
    EXPECT_EQ(ListStep(5, -1), 0);
}

TEST(GridKeys, DatesAndNumbersOfCells) {
    EXPECT_EQ(GridDateKey(QDate(2003, 7, 4), QTime(10, 30, 15)),
              ((((2003LL * 12 + 7) * 31 + 4) * 24 + 10) * 60 + 30) * 60 + 15);
    // A bare time sorts by the time of day alone.
    EXPECT_EQ(GridDateKey(QDate(1899, 12, 30), QTime(1, 0)), 3600);
    EXPECT_EQ(GridDateKey(u"01:00 AM"), 3600);
    EXPECT_EQ(GridDateKey(u"12:00 PM"), 43200);
    EXPECT_LT(*GridDateKey(u"12/31/2002"), *GridDateKey(u"01/01/2003"));
    EXPECT_LT(*GridDateKey(u"7/4/2003"), *GridDateKey(u"7/4/2003 00:00:01"));
    EXPECT_EQ(GridDateKey(u"__/__/____"), std::nullopt);
    EXPECT_EQ(GridDateKey(u"soon"), std::nullopt);

    EXPECT_EQ(GridNumberKey(u"1,234.500"), 1234.5);
    EXPECT_EQ(GridNumberKey(u"-3"), -3);
    EXPECT_EQ(GridNumberKey(u"abc"), 0);
    EXPECT_EQ(GridNumberKey(u"12abc"), 0);
}
