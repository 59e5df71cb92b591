// Figures of the runs listed, against values worked out by hand on small sets, and the runs
// the main list's selection gives.

#include "analysis/statistics.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

#include <cmath>

using namespace slipbook;
using namespace slipbook::analysis;

namespace {

struct Slip {
    std::optional<double> rt;
    std::optional<double> et14;
    std::optional<double> mph14;
    std::optional<double> et18;
    std::optional<double> mph18;
    std::optional<double> dial;
    qint64 event = 0;
};

std::vector<RunRecord> Runs(const std::vector<Slip>& slips) {
    std::vector<RunRecord> runs;
    qint64 id = 0;
    for (const Slip& s : slips) {
        RunRecord r;
        r.id = ++id;
        r.eventId = s.event;
        r.dateKey = QStringLiteral("2024-07-%1 00:00:00").arg(id, 2, 10, QChar(u'0'));
        r.date = QDateTime(QDate(2024, 7, static_cast<int>(id)), QTime(0, 0));
        r.reaction = s.rt;
        r.et = {s.et14, s.et18};
        r.mph = {s.mph14, s.mph18};
        r.dialIn = s.dial;
        runs.push_back(r);
    }
    return runs;
}

// The figure's value as shown, what it counted, and what it left out.
std::string Shown(const Statistics& s, const QString& caption) {
    const Figure* f = s.Find(caption);
    if (f == nullptr) {
        return "missing: " + caption.toStdString();
    }
    QString text = f->text + QStringLiteral(" | %1").arg(f->counted);
    if (!f->leftOut.empty()) {
        text += QStringLiteral(" | ") + LeftOutText(f->leftOut);
    }
    return text.toStdString();
}

const QHash<qint64, QString> kTracks = {{1, QStringLiteral("Home Track")},
                                        {2, QStringLiteral("Dragway 42")}};

TEST(Statistics, FiguresOfASmallSetWorkedByHand) {
    // A quarter-mile run with its eighth-mile time, a red light, an eighth-mile race, a run
    // with no time at all.
    const Statistics s = ComputeStatistics(Runs({{0.500, 10.00, 130.00, 6.40, {}, 10.02, 1},
                                                 {0.400, 10.10, 131.50, {}, {}, 10.10, 1},
                                                 {-0.020, 10.20, 129.00, {}, {}, 10.15, 2},
                                                 {{}, {}, {}, 6.50, 105.00, 6.55, 2},
                                                 {0.600, {}, {}, {}, {}, 10.00, 0}}),
                                           kTracks);
    EXPECT_EQ(s.runs, 5);
    EXPECT_EQ(Shown(s, "Runs"), "5 | 5");
    EXPECT_EQ(Shown(s, "Best reaction time (s)"),
              "0.400 | 3 | 1 without reaction time, 1 red light");
    EXPECT_EQ(Shown(s, "Average reaction time (s)"),
              "0.500 | 3 | 1 without reaction time, 1 red light");
    EXPECT_EQ(Shown(s, "Red lights"), "1 of 4 (25.0 %) | 4 | 1 without reaction time");

    // ETs 10.00, 10.10, 10.20: mean 10.1, deviations -0.1, 0, 0.1, sample variance 0.02 / 2.
    EXPECT_EQ(Shown(s, "1/4 mile: best ET (s)"), "10.000 | 3 | 2 without 1/4 mile ET");
    EXPECT_EQ(Shown(s, "1/4 mile: average ET (s)"), "10.100 | 3 | 2 without 1/4 mile ET");
    EXPECT_NEAR(*s.Find(u"1/4 mile: ET standard deviation (s)")->value, 0.1, 1e-12);
    EXPECT_EQ(Shown(s, "1/4 mile: best MPH"), "131.50 | 3 | 2 without 1/4 mile MPH");
    // ET minus dial-in: -0.02, 0, +0.05; mean 0.01, sample variance (0.0009 + 0.0001 + 0.0016) / 2.
    EXPECT_EQ(Shown(s, "1/4 mile: average ET minus dial-in (s)"),
              "+0.010 | 3 | 2 without 1/4 mile ET");
    EXPECT_NEAR(*s.Find(u"1/4 mile: standard deviation of ET minus dial-in (s)")->value,
                std::sqrt(0.0013), 1e-12);
    EXPECT_EQ(Shown(s, "1/4 mile: standard deviation of ET minus dial-in (s)"),
              "0.036 | 3 | 2 without 1/4 mile ET");
    EXPECT_EQ(Shown(s, "1/4 mile: breakouts (ET under dial-in)"),
              "1 of 3 (33.3 %) | 3 | 2 without 1/4 mile ET");
    EXPECT_EQ(Shown(s, "1/4 mile: over dial-in (ET above dial-in)"),
              "1 of 3 (33.3 %) | 3 | 2 without 1/4 mile ET");
    EXPECT_EQ(Shown(s, "1/4 mile: on the dial-in"), "1 of 3 (33.3 %) | 3 | 2 without 1/4 mile ET");

    // The eighth-mile time of the quarter-mile run counts as a time, but not against its
    // quarter-mile dial-in.
    EXPECT_EQ(Shown(s, "1/8 mile: average ET (s)"), "6.450 | 2 | 3 without 1/8 mile ET");
    EXPECT_EQ(Shown(s, "1/8 mile: ET standard deviation (s)"), "0.071 | 2 | 3 without 1/8 mile ET");
    EXPECT_EQ(Shown(s, "1/8 mile: best MPH"), "105.00 | 1 | 4 without 1/8 mile MPH");
    EXPECT_EQ(Shown(s, "1/8 mile: average ET minus dial-in (s)"),
              "-0.050 | 1 | 3 without 1/8 mile ET, 1 finished at 1/4 mile");
    EXPECT_EQ(Shown(s, "1/8 mile: standard deviation of ET minus dial-in (s)"),
              "needs 2 runs | 1 | 3 without 1/8 mile ET, 1 finished at 1/4 mile");
    EXPECT_EQ(Shown(s, "1/8 mile: breakouts (ET under dial-in)"),
              "1 of 1 (100.0 %) | 1 | 3 without 1/8 mile ET, 1 finished at 1/4 mile");

    // Bests by track name, the quarter mile first, ET before MPH; the run without a time at
    // no track gives no line.
    std::vector<std::string> bests;
    for (const TrackBest& b : s.bests) {
        bests.push_back(QStringLiteral("%1 %2 %3 %4 run %5")
                            .arg(b.track, DistanceName(b.distance),
                                 b.mph ? QStringLiteral("MPH") : QStringLiteral("ET"))
                            .arg(b.value)
                            .arg(b.run.id)
                            .toStdString());
    }
    EXPECT_EQ(bests, (std::vector<std::string>{
                         "Dragway 42 1/4 mile ET 10.2 run 3", "Dragway 42 1/4 mile MPH 129 run 3",
                         "Dragway 42 1/8 mile ET 6.5 run 4", "Dragway 42 1/8 mile MPH 105 run 4",
                         "Home Track 1/4 mile ET 10 run 1", "Home Track 1/4 mile MPH 131.5 run 2",
                         "Home Track 1/8 mile ET 6.4 run 1"}));
}

TEST(Statistics, TooFewRunsSaySoAndNothingDividesByZero) {
    const Statistics none = ComputeStatistics({}, kTracks);
    EXPECT_EQ(Shown(none, "Runs"), "0 | 0");
    for (const Figure& f : none.figures) {
        if (f.caption == u"Runs") {
            continue;
        }
        EXPECT_FALSE(f.value.has_value()) << f.caption.toStdString();
        const bool deviation = f.caption.contains(u"standard deviation");
        EXPECT_EQ(f.text, deviation ? QStringLiteral("needs 2 runs") : QStringLiteral("no runs"))
            << f.caption.toStdString();
    }
    EXPECT_TRUE(none.bests.empty());

    // One run: a mean, but no deviation.
    const Statistics one = ComputeStatistics(Runs({{0.45, 9.876, 140.0, {}, {}, 9.9, 1}}), kTracks);
    EXPECT_EQ(Shown(one, "1/4 mile: average ET (s)"), "9.876 | 1");
    EXPECT_EQ(Shown(one, "1/4 mile: ET standard deviation (s)"), "needs 2 runs | 1");
    EXPECT_EQ(Shown(one, "1/4 mile: average ET minus dial-in (s)"), "-0.024 | 1");

    // No dial-in anywhere: the ET figures stand, the dial-in ones name why they are empty.
    const Statistics noDial = ComputeStatistics(
        Runs({{-0.1, 10.0, {}, {}, {}, {}, 1}, {-0.2, 10.2, {}, {}, {}, 0.0, 1}}), kTracks);
    EXPECT_EQ(Shown(noDial, "1/4 mile: ET standard deviation (s)"), "0.141 | 2");
    EXPECT_EQ(Shown(noDial, "1/4 mile: average ET minus dial-in (s)"),
              "no runs | 0 | 2 without dial-in");
    EXPECT_EQ(Shown(noDial, "1/4 mile: breakouts (ET under dial-in)"),
              "no runs | 0 | 2 without dial-in");
    // Every reaction time a red light.
    EXPECT_EQ(Shown(noDial, "Average reaction time (s)"), "no runs | 0 | 2 red lights");
    EXPECT_EQ(Shown(noDial, "Red lights"), "2 of 2 (100.0 %) | 2");

    // A mean of differences that cancel shows no sign.
    EXPECT_EQ(SignedSecondsText(-0.05 + 0.05 - 1e-17), QStringLiteral("0.000"));
    EXPECT_EQ(SignedSecondsText(-0.0051), QStringLiteral("-0.005"));
    EXPECT_EQ(SignedSecondsText(0.0125), QStringLiteral("+0.013"));

    // Equal best ETs: the first run keeps it.
    const Statistics tie = ComputeStatistics(
        Runs({{{}, 10.0, {}, {}, {}, {}, 1}, {{}, 10.0, {}, {}, {}, {}, 1}}), kTracks);
    ASSERT_EQ(tie.bests.size(), 1u);
    EXPECT_EQ(tie.bests[0].run.id, 1);
}

TEST(Statistics, TheRunsOfTheMainListsSelection) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    db.Execute(
        QStringLiteral("INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (2, 'Dragway 42')"));
    db.Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Summer Series', 2)"));
    const auto run = [&db](int id, int car, int event, const char* rest) {
        db.Execute(QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, dtRun_dt, "
                                  "dtRun_tm, iReactionTime_val, i14Mile_et, i14Mile_mph, "
                                  "iTemp_val, iHumidity_val, iBarometricPressure_val, "
                                  "iDensityAlt_val, iCorrFactor_val) VALUES (%1, %2, %3, %4)")
                       .arg(id)
                       .arg(car)
                       .arg(event)
                       .arg(QLatin1String(rest)));
    };
    run(1, 1, 1, "#07/04/2003#, #10:00#, 0.510, 10.20, 128.5, 85, 40, 29.92, 2500, 1.02");
    run(2, 1, 2, "#07/05/2003#, #11:00#, -0.030, 10.05, 130.25, 70, 55, 30.01, 900, 0.99");
    run(3, 1, 2, "#07/06/2003#, #09:30#, 0.480, 10.10, 131.00, 75, 50, 29.95, 1400, 1.00");
    run(4, 2, 1, "#07/04/2003#, #12:00#, 0.400, 9.50, 140.0, 85, 40, 29.92, 2500, 1.02");

    RunSelection sel;
    sel.carId = 1;
    Statistics s = ReadStatistics(db, sel);
    EXPECT_EQ(s.runs, 3);
    EXPECT_EQ(Shown(s, "Red lights"), "1 of 3 (33.3 %) | 3");
    ASSERT_EQ(s.bests.size(), 4u);
    // The best ET at Dragway 42 with the date and weather of its run.
    const TrackBest& best = s.bests[0];
    EXPECT_EQ(best.track, QStringLiteral("Dragway 42"));
    EXPECT_EQ(best.run.id, 2);
    EXPECT_EQ(best.run.date.date(), QDate(2003, 7, 5));
    EXPECT_EQ(best.run.time.time(), QTime(11, 0));
    EXPECT_EQ(best.run.temp, 70);
    EXPECT_EQ(best.run.humidity, 55);
    EXPECT_EQ(best.run.barometer, 30.01);
    EXPECT_EQ(best.run.densityAlt, 900);
    EXPECT_EQ(best.run.corrFactor, 0.99);
    EXPECT_EQ(s.bests[1].run.id, 3);  // its best speed
    EXPECT_EQ(s.bests[2].track, QStringLiteral("Home Track"));

    sel.eventId = 2;
    EXPECT_EQ(ReadStatistics(db, sel).runs, 2);
    sel.eventId = 0;
    sel.trackId = 1;
    EXPECT_EQ(ReadStatistics(db, sel).runs, 1);
    // The filter's own statement, as the main list takes it.
    sel.filterActive = true;
    sel.filterSql =
        QStringLiteral("SELECT * from tblRuns WHERE lCar_id = 1 AND i14Mile_et > 10.06");
    s = ReadStatistics(db, sel);
    EXPECT_EQ(s.runs, 2);
    EXPECT_EQ(Shown(s, "1/4 mile: average ET (s)"), "10.150 | 2");
}

}  // namespace
