#include "store/jetdate.h"

#include <gtest/gtest.h>

namespace slipbook::store {
namespace {

QString Stored(const char* text) {
    const auto value = ParseJetDateText(QString::fromUtf8(text));
    return value ? DateTimeToStorage(*value) : QStringLiteral("<none>");
}

TEST(JetDate, ReadsTheFormsTheProgramWrites) {
    EXPECT_EQ(Stored("07/04/2003"), "2003-07-04 00:00:00");
    EXPECT_EQ(Stored("7/4/2003"), "2003-07-04 00:00:00");
    EXPECT_EQ(Stored(" 7-4-2003 "), "2003-07-04 00:00:00");
    EXPECT_EQ(Stored("7/4/2003 10:30:15 PM"), "2003-07-04 22:30:15");
    EXPECT_EQ(Stored("2003-07-04"), "2003-07-04 00:00:00");
    EXPECT_EQ(Stored("2003-07-04 10:30:00"), "2003-07-04 10:30:00");

    // A bare time stands on day zero.
    EXPECT_EQ(Stored("10:30 AM"), "1899-12-30 10:30:00");
    EXPECT_EQ(Stored("10:30:15 pm"), "1899-12-30 22:30:15");
    EXPECT_EQ(Stored("22:15"), "1899-12-30 22:15:00");
    EXPECT_EQ(Stored("12:00 AM"), "1899-12-30 00:00:00");
    EXPECT_EQ(Stored("12:05 PM"), "1899-12-30 12:05:00");
    EXPECT_EQ(Stored("9 PM"), "1899-12-30 21:00:00");

    // Two-digit years: 00-29 in this century, 30-99 in the last.
    EXPECT_EQ(Stored("1/2/29"), "2029-01-02 00:00:00");
    EXPECT_EQ(Stored("1/2/30"), "1930-01-02 00:00:00");
    EXPECT_EQ(Stored("1/2/03"), "2003-01-02 00:00:00");

    // A month above 12 is read day first, as the engine does.
    EXPECT_EQ(Stored("13/4/2003"), "2003-04-13 00:00:00");
}

TEST(JetDate, RefusesWhatIsNoDate) {
    for (const char* text :
         {"", "  ", "13/45/2003", "2/30/2003", "0/1/2003", "7/4", "7/4/2003 25:00", "24:00",
          "10:60", "13:00 PM", "10", "abc", "7/4/2003 x", "2003-13-01", "7/4-2003"}) {
        EXPECT_FALSE(ParseJetDateText(QString::fromUtf8(text))) << text;
    }
}

TEST(JetDate, StorageTextRoundTripsAndSortsInTimeOrder) {
    const QStringList texts = {"1899-12-30 08:00:00", "1899-12-30 21:59:59", "2003-07-04 00:00:00",
                               "2003-07-04 10:30:00", "2003-11-01 00:00:00"};
    for (const QString& text : texts) {
        const auto value = DateTimeFromStorage(text);
        ASSERT_TRUE(value) << text.toStdString();
        EXPECT_EQ(DateTimeToStorage(*value), text);
    }
    // Text order is time order.
    for (qsizetype i = 1; i < texts.size(); ++i) {
        EXPECT_LT(*DateTimeFromStorage(texts[i - 1]), *DateTimeFromStorage(texts[i]));
    }

    EXPECT_EQ(DateTimeToStorage(*DateTimeFromStorage(u"2003-07-04")), "2003-07-04 00:00:00");
    EXPECT_FALSE(DateTimeFromStorage(u"07/04/2003"));
    EXPECT_FALSE(DateTimeFromStorage(u"2003-02-30 00:00:00"));
    EXPECT_TRUE(DateTimeToStorage(QDateTime()).isEmpty());
    EXPECT_EQ(DayZero(), QDate(1899, 12, 30));
}

}  // namespace
}  // namespace slipbook::store
