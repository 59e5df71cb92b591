// The weather log on a fresh logbook: readings written and read back, the reading nearest a
// moment at the edges of its window, the rule that keeps steady air from filling the log, the
// ranges of a day and an event, and the look-up window kept beside the logbook.

#include "weather/weatherlog.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

#include <QFile>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using namespace slipbook::weather;

namespace {

QDateTime At(int year, int month, int day, int h, int m, int s = 0) {
    return QDateTime(QDate(year, month, day), QTime(h, m, s), Qt::UTC);
}

// A reading as the weather window shows one; the temperature tells readings apart.
WeatherReading Reading(const QDateTime& at, const QString& temperature,
                       QStringView source = kSourceStation) {
    return ReadingFromTexts(at, {temperature, "50", "29.92", "1"},
                            {"1.0294", "1,468", "95.80", "0.438", "29.48", "55", "62.5"}, source);
}

struct WeatherLog : ::testing::Test {
    qint64 Rows() {
        store::Query q = db().OpenQuery("SELECT Count(*) FROM tblWeatherLog");
        q.Next();
        return q.Integer(0);
    }
    void Write(const QDateTime& at, const QString& temperature) {
        ASSERT_EQ(RecordReading(db(), Reading(at, temperature)), LogResult::Written);
    }
    // "75 @ 14:05:00", or "none".
    QString Nearest(const QDateTime& at, int minutes) {
        const auto r = NearestReading(db(), at, minutes);
        return r ? QStringLiteral("%1 @ %2")
                       .arg(r->temperature)
                       .arg(r->time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
                 : QStringLiteral("none");
    }
    store::Database& db() { return logbook.db(); }
    test::TempLogbook logbook;
};

}  // namespace

TEST_F(WeatherLog, AReadingIsWrittenAsTheWindowShowsItAndReadBack) {
    EXPECT_EQ(Rows(), 0);
    // The window's texts: untrimmed station fields, grouped thousands, a humidity that is gone.
    const WeatherReading typed = ReadingFromTexts(
        At(2026, 7, 4, 14, 15, 9).addMSecs(750), {" 75.5", "", "29.92", "-1,234"},
        {"1.0294", "1,468", "95.80", "0.438", "29.48", "55", "62.5"}, kSourceTyped);
    ASSERT_EQ(RecordReading(db(), typed), LogResult::Written);

    store::Query raw = db().OpenQuery(
        "SELECT dtReading_dt, iHumidity_val, iDensityAlt_val, sSource_nm FROM tblWeatherLog");
    ASSERT_TRUE(raw.Next());
    EXPECT_EQ(raw.Text(0), "2026-07-04 14:15:09");  // to the second, as the index orders it
    EXPECT_TRUE(raw.IsNull(1));
    EXPECT_EQ(raw.Real(2), 1468);
    EXPECT_EQ(raw.Text(3), "Typed");

    const auto all = ReadingsBetween(db(), At(2026, 7, 4, 0, 0), At(2026, 7, 4, 23, 59, 59));
    ASSERT_EQ(all.size(), 1u);
    const WeatherReading& r = all[0];
    EXPECT_GT(r.id, 0);
    EXPECT_EQ(r.time, At(2026, 7, 4, 14, 15, 9));
    EXPECT_EQ(r.temperature, 75.5);
    EXPECT_FALSE(HasFigure(r.humidity));
    EXPECT_EQ(r.barometer, 29.92);
    EXPECT_EQ(r.pressureAltitude, -1234);
    EXPECT_EQ(r.corrFactor(), 1.0294);
    EXPECT_EQ(r.densityAltitude(), 1468);
    EXPECT_EQ(r.air[2], 95.8);
    EXPECT_EQ(r.air[4], 29.48);  // dry barometer before dew point, as the windows list them
    EXPECT_EQ(r.air[5], 55);
    EXPECT_EQ(r.air[6], 62.5);
    EXPECT_EQ(r.source, "Typed");
    EXPECT_TRUE(r.SameFigures(typed));

    // An apostrophe in the source can't break the statement.
    EXPECT_EQ(RecordReading(db(), Reading(At(2026, 7, 5, 9, 0), "70", u"Pit's")),
              LogResult::Written);
    EXPECT_EQ(NearestReading(db(), At(2026, 7, 5, 9, 0), 1)->source, "Pit's");
}

TEST_F(WeatherLog, TheNearestReadingCountsBothEdgesOfTheWindowAndNothingBeyond) {
    EXPECT_EQ(Nearest(At(2026, 7, 4, 14, 15), 10), "none");  // an empty log

    Write(At(2026, 7, 4, 14, 5), "70");
    Write(At(2026, 7, 4, 14, 25), "80");
    const QDateTime run = At(2026, 7, 4, 14, 15);
    // Exactly ten minutes either side: a tie, and the earlier reading is taken.
    EXPECT_EQ(Nearest(run, 10), "70 @ 2026-07-04 14:05:00");
    // Nine minutes reach neither.
    EXPECT_EQ(Nearest(run, 9), "none");
    // One second later the later reading is the nearer; one second earlier, the earlier.
    EXPECT_EQ(Nearest(run.addSecs(1), 10), "80 @ 2026-07-04 14:25:00");
    EXPECT_EQ(Nearest(run.addSecs(-1), 10), "70 @ 2026-07-04 14:05:00");

    // Ten minutes and one second away is out, on either side.
    EXPECT_EQ(Nearest(At(2026, 7, 4, 13, 54, 59), 10), "none");
    EXPECT_EQ(Nearest(At(2026, 7, 4, 13, 55, 0), 10), "70 @ 2026-07-04 14:05:00");
    EXPECT_EQ(Nearest(At(2026, 7, 4, 14, 35, 0), 10), "80 @ 2026-07-04 14:25:00");
    EXPECT_EQ(Nearest(At(2026, 7, 4, 14, 35, 1), 10), "none");

    // A reading at the very moment is nearest of all, and found with a window of one minute.
    Write(At(2026, 7, 4, 14, 15), "75");
    EXPECT_EQ(Nearest(run, 1), "75 @ 2026-07-04 14:15:00");
    EXPECT_EQ(Nearest(run, 10), "75 @ 2026-07-04 14:15:00");

    // Across midnight: a run just after it finds the reading just before.
    Write(At(2026, 7, 4, 23, 56), "60");
    EXPECT_EQ(Nearest(At(2026, 7, 5, 0, 5), 10), "60 @ 2026-07-04 23:56:00");
    EXPECT_EQ(Nearest(At(2026, 7, 5, 0, 6, 1), 10), "none");
    Write(At(2026, 7, 5, 0, 2), "62");
    EXPECT_EQ(Nearest(At(2026, 7, 4, 23, 59, 30), 10), "62 @ 2026-07-05 00:02:00");
    EXPECT_EQ(Nearest(At(2026, 7, 4, 23, 59), 10), "60 @ 2026-07-04 23:56:00");  // a tie

    // Readings of other days, as near in the time of day, are not taken.
    EXPECT_EQ(Nearest(At(2026, 7, 3, 14, 15), 10), "none");
    EXPECT_EQ(Nearest(At(2025, 7, 4, 14, 15), 10), "none");
}

TEST_F(WeatherLog, SteadyAirIsWrittenOnceAMinuteAndEveryChangeAtOnce) {
    const QDateTime t0 = At(2026, 7, 4, 14, 0);
    Write(t0, "75");
    // The station's next reads, 15 seconds apart, bring the same air.
    for (int s : {15, 30, 45, 59}) {
        EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(s), "75")), LogResult::SameAsLast) << s;
    }
    // A minute after the last row written it is written again, so any window finds it.
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(60), "75")), LogResult::Written);
    // A change is written at once, and so is the return to the figures before it.
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(75), "75.1")), LogResult::Written);
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(90), "75")), LogResult::Written);
    // Typed the same as the station showed: still the same air.
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(95), "75", kSourceTyped)),
              LogResult::SameAsLast);
    // The clock set back a little does not make a copy either; set back further, it is a new
    // moment.
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(40), "75")), LogResult::SameAsLast);
    EXPECT_EQ(RecordReading(db(), Reading(t0.addSecs(-3600), "75")), LogResult::Written);
    EXPECT_EQ(Rows(), 5);

    // A figure gone on one side only is a change.
    WeatherReading noHumidity = Reading(t0.addSecs(-3590), "75");
    noHumidity.humidity = kNoFigure;
    EXPECT_EQ(RecordReading(db(), noHumidity), LogResult::Written);
    noHumidity.time = noHumidity.time.addSecs(10);
    EXPECT_EQ(RecordReading(db(), noHumidity), LogResult::SameAsLast);
}

TEST_F(WeatherLog, ADayAndAnEventSpanTheirWholeDays) {
    Write(At(2026, 7, 3, 23, 59, 59), "1");
    Write(At(2026, 7, 4, 0, 0, 0), "2");
    Write(At(2026, 7, 4, 12, 0, 0), "3");
    Write(At(2026, 7, 4, 23, 59, 59), "4");
    Write(At(2026, 7, 5, 0, 0, 0), "5");
    Write(At(2026, 7, 6, 8, 0, 0), "6");

    const auto temperatures = [](const std::vector<WeatherReading>& readings) {
        QStringList t;
        for (const WeatherReading& r : readings) {
            t << QString::number(r.temperature);
        }
        return t.join(' ');
    };
    const TimeRange day = DayRange(QDate(2026, 7, 4));
    EXPECT_EQ(temperatures(ReadingsBetween(db(), day.from, day.to)), "2 3 4");
    EXPECT_EQ(temperatures(ReadingsBetween(db(), At(2026, 7, 7, 0, 0), At(2026, 7, 8, 0, 0))), "");

    // The template's event 1 falls on 04/05/2003 alone.
    auto one = EventRange(db(), 1);
    ASSERT_TRUE(one);
    EXPECT_EQ(one->from, At(2003, 4, 5, 0, 0));
    EXPECT_EQ(one->to, At(2003, 4, 5, 23, 59, 59));

    db().Execute(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, dtEventStart_dt, dtEventEnd_dt) "
        "VALUES (7, 'Summer Nationals', #07/04/2026#, #07/05/2026#)");
    const auto nationals = EventRange(db(), 7);
    ASSERT_TRUE(nationals);
    EXPECT_EQ(temperatures(ReadingsBetween(db(), nationals->from, nationals->to)), "2 3 4 5");
    // An end before the start, or none, is the start day alone; an end alone is that day.
    db().Execute(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, dtEventStart_dt, dtEventEnd_dt) "
        "VALUES (8, 'Backwards', #07/06/2026#, #07/01/2026#)");
    db().Execute(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, dtEventEnd_dt) "
        "VALUES (9, 'End Only', #07/03/2026#)");
    db().Execute("INSERT INTO tblEvents (lEvent_id, sEvent_nm) VALUES (10, 'Undated')");
    EXPECT_EQ(
        temperatures(ReadingsBetween(db(), EventRange(db(), 8)->from, EventRange(db(), 8)->to)),
        "6");
    EXPECT_EQ(EventRange(db(), 9)->from, At(2026, 7, 3, 0, 0));
    EXPECT_FALSE(EventRange(db(), 10));
    EXPECT_FALSE(EventRange(db(), 999));
}

TEST(RunMomentText, TheRunsBoxesGiveAMomentOnlyWhenBothAreWhole) {
    EXPECT_EQ(RunMoment(u"07/04/2026", u"02:15 PM"), At(2026, 7, 4, 14, 15));
    EXPECT_EQ(RunMoment(u"07/04/2026", u"12:05 AM"), At(2026, 7, 4, 0, 5));
    EXPECT_FALSE(RunMoment(u"__/__/____", u"02:15 PM"));
    EXPECT_FALSE(RunMoment(u"07/04/2026", u"__:__ __"));
    EXPECT_FALSE(RunMoment(u"07/04/____", u"02:15 PM"));  // half a date is no date here
    EXPECT_FALSE(RunMoment(u"07/04/2026", u"02:1_ PM"));
    EXPECT_FALSE(RunMoment(u"13/45/2026", u"02:15 PM"));
    EXPECT_FALSE(RunMoment(u"07/04/2026", u"14:15 PM"));
    EXPECT_FALSE(RunMoment(u"02:15 PM", u"07/04/2026"));

    EXPECT_EQ(NoReadingText(10, At(2026, 7, 4, 14, 15)),
              "No weather reading within 10 minutes of 07/04/2026 02:15 PM.");
    EXPECT_EQ(NoReadingText(1, At(2026, 7, 4, 0, 5)),
              "No weather reading within 1 minute of 07/04/2026 12:05 AM.");
}

TEST_F(WeatherLog, TheLookUpWindowIsKeptBesideTheLogbook) {
    EXPECT_EQ(LookupMinutes(db()), kDefaultLookupMinutes);
    EXPECT_TRUE(SetLookupMinutes(db(), 25));
    EXPECT_EQ(LookupMinutes(db()), 25);
    EXPECT_TRUE(QFile::exists(logbook.dir() + "/Slipbook.ini"));
    // Out of range is held to the range; a file spoiled by hand gives the default.
    EXPECT_TRUE(SetLookupMinutes(db(), 0));
    EXPECT_EQ(LookupMinutes(db()), kMinLookupMinutes);
    QFile ini(logbook.dir() + "/Slipbook.ini");
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write("[WeatherLog]\nLookupMinutes=lots\n");
    ini.close();
    EXPECT_EQ(LookupMinutes(db()), kDefaultLookupMinutes);

    store::Database closed;
    EXPECT_EQ(LookupMinutes(closed), kDefaultLookupMinutes);
    EXPECT_FALSE(SetLookupMinutes(closed, 5));
}
