#include "weather/station.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <ostream>
#include <tuple>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook::weather;

namespace {

// "count: t | h | b" for the fields a record fills.
QString Fields(const char* record) {
    const StationFields f = ParseStationRecord(QString::fromUtf8(record));
    QString shown = QString::number(f.count) + u':';
    for (int i = 0; i < f.count; ++i) {
        shown += (i ? QStringLiteral(" | ") : QStringLiteral(" ")) + f.texts[i];
    }
    return shown;
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<absent>");
}

}  // namespace

TEST(StationRecord, FieldsSplitAtCommaBlankAndShortRecordsHandTheLastFieldOn) {
    EXPECT_EQ(Fields("x, 70, 50, 29.92"), "3: 70 | 50 | 29.92");
    EXPECT_EQ(Fields("07/04/2005 10:30:00, 75.5, 48, 29.87, 310, 12"), "3: 75.5 | 48 | 29.87");
    // The leading field is skipped whatever it holds, and nothing is trimmed.
    EXPECT_EQ(Fields("a,b, 70 , 50,29.92"), "3: 70  | 50 | 50");
    EXPECT_EQ(Fields("x, 70"), "3: 70 | 70 | 70");
    EXPECT_EQ(Fields("x, 70, 50"), "3: 70 | 50 | 50");
    // No comma-blank after the leading field: nothing at all.
    EXPECT_EQ(Fields("x,70,50,29.92"), "0:");
    EXPECT_EQ(Fields(""), "0:");
    // A comma-blank with nothing behind it ends the split there.
    EXPECT_EQ(Fields("x, "), "0:");
    EXPECT_EQ(Fields("x, 70, "), "1: 70");
    EXPECT_EQ(Fields("x, 70, 50, "), "2: 70 | 50");
    // A comma directly at a field's start runs the field to the end of the line.
    EXPECT_EQ(Fields("x, ,5, 6"), "3: ,5, 6 | ,5, 6 | ,5, 6");
    EXPECT_EQ(Fields("x, 70, , 29.92"), "3: 70 | , 29.92 | , 29.92");
}

TEST(StationRecord, DerivedPressureAltitudeAndBarometerTexts) {
    // The station's humidity in the barometer: through the polynomial, no range test.
    ASSERT_TRUE(PressureAltitudeText(u"70").ok());
    EXPECT_EQ(PressureAltitudeText(u"").error(), "barometric pressure is empty");
    EXPECT_EQ(PressureAltitudeText(u"1e300").error(),
              "barometric pressure 1e300 is out of range (20-31.5)");
    EXPECT_EQ(BarometerText(u" 1e90").error(), "pressure altitude 1e90 is out of range");
}

TEST(StationFiles, ReadingTakesLineTwoOrTheOnlyLineAndDeletesOnlyWhenAsked) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString latest = StationFilePath(dir.path(), kLatestReadingFile);
    const QString chosen = StationFilePath(dir.path(), kChosenReadingFile);
    struct Case {
        QByteArray bytes;
        const char* record;
    } cases[] = {
        {"Date, Temp, Hum, Baro\r\nx, 70, 50, 29.92\r\n", "x, 70, 50, 29.92"},
        {"x, 70, 50, 29.92\r\n", "x, 70, 50, 29.92"},  // one line is the record
        {"x, 70, 50, 29.92", "x, 70, 50, 29.92"},      // without its line ending
        {"head\r\nline2\r\nline3\r\n", "line2"},
        {"head\nline2\n", "line2"},
        {"head\rline2", "line2"},
        {"head\r\nx, 7", "x, 7"},  // half-written: read as far as it goes
        {"head\r\n\r\nx, 70\r\n", ""},
        {"", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes.toStdString());
        WriteFile(latest, c.bytes);
        const StationRead read = ReadLatestReading(dir.path());
        EXPECT_TRUE(read.opened);
        EXPECT_EQ(read.record, QString::fromLatin1(c.record));
        EXPECT_FALSE(QFile::exists(latest));
    }

    WriteFile(chosen, "head\r\nx, 80, 40, 30.01\r\n");
    EXPECT_EQ(ReadChosenReading(dir.path()).record, "x, 80, 40, 30.01");
    EXPECT_TRUE(QFile::exists(chosen));
    EXPECT_EQ(ReadChosenReading(dir.path()).record, "x, 80, 40, 30.01");
    ClearChosenReading(dir.path());
    EXPECT_FALSE(QFile::exists(chosen));
    ClearChosenReading(dir.path());  // nothing there: no complaint
}

TEST(StationFiles, NothingToOpenIsNoNewReading) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    EXPECT_FALSE(ReadLatestReading(dir.path()).opened);
    EXPECT_FALSE(ReadLatestReading(dir.filePath("no/such/dir")).opened);
    EXPECT_FALSE(ReadChosenReading(dir.filePath("no/such/dir")).opened);
    // A name that can't be opened as a file stands for one the station still holds.
    ASSERT_TRUE(QDir(dir.path()).mkdir(kLatestReadingFile.toString()));
    const StationRead held = ReadLatestReading(dir.path());
    EXPECT_FALSE(held.opened);
    EXPECT_TRUE(held.record.isEmpty());
}

TEST(StationFiles, PageFileHoldsPrefixAndLeadInAndIsReplacedEachTime) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString page = StationFilePath(dir.path(), kPageFile);
    ASSERT_TRUE(WritePageFile(dir.path(), "Camaro       #12\n 11.234"));
    ASSERT_TRUE(WritePageFile(dir.path(), ""));
    EXPECT_EQ(ReadFile(page), "PREFIX_REGULAR_BAROMETRIX_PAGING \r\n");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"Barometrix_Page.txt"});

    EXPECT_FALSE(WritePageFile(dir.filePath("missing"), "x"));
}

TEST(WeatherWindowLogic, RecalculationShowsZerosOrSaysWhy) {
    // Temperature or barometer not above zero: zeros, and nothing to push; humidity
    // takes no part in that test.
    for (auto [t, h, b] : {std::tuple{u"0", u"50", u"29.92"}, std::tuple{u"75", u"", u"0"},
                           std::tuple{u"abc", u"x", u"29.92"}, std::tuple{u"-5", u"50", u"30"}}) {
        const Recalculation r = PlanRecalculation(t, h, b);
        EXPECT_EQ(r.kind, Recalculation::Kind::Zeros);
        EXPECT_FALSE(r.pushes());
        EXPECT_EQ(QStringList(r.texts.begin(), r.texts.end()).join(' '), "0 0 0 0 0 0 0");
    }

    EXPECT_EQ(PlanRecalculation(u"75x", u"50", u"29.92").reason,
              "temperature \"75x\" is not a number");
    // Past the arithmetic's limits the reason names the inputs outside the window's ranges.
    EXPECT_EQ(PlanRecalculation(u"1e999", u"50", u"29.92").reason,
              "temperature 1e999 is out of range (32-120)");
    EXPECT_EQ(PlanRecalculation(u"75", u"50", u"1e3").reason,
              "barometric pressure 1e3 is out of range (20-31.5)");
}

TEST(WeatherWindowLogic, TimeStampAfterMidnight) {
    EXPECT_EQ(WeatherTimeText(QDateTime(QDate(2005, 7, 4), QTime(0, 30, 0))),
              "Mon 07/04/2005 at 12:30:00 AM");
}
