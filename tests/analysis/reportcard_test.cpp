// The prediction report card on small histories whose predictions are worked out by hand, and
// checked against the prediction programs fed the inputs each method should have taken.

#include "analysis/reportcard.h"
#include "prediction/calculators.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using namespace slipbook::analysis;

namespace {

TEST(ReportCard, LeastSquaresLineByHand) {
    // Means 2000 ft and 10.11667 s; Sxx = 2,000,000, Sxy = 250.
    const auto line = LeastSquaresLine({{1000, 10.0}, {2000, 10.1}, {3000, 10.25}});
    ASSERT_TRUE(line);
    EXPECT_NEAR(line->slope, 0.000125, 1e-15);
    EXPECT_NEAR(line->intercept, 10.116666666666667 - 0.25, 1e-12);
    EXPECT_FALSE(LeastSquaresLine({{1000, 10.0}}));
    EXPECT_FALSE(LeastSquaresLine({{1000, 10.0}, {1000, 10.2}, {1000, 10.1}}));
}

struct Card : ::testing::Test {
    // A run of car 1 (gas) at the quarter mile unless the values say otherwise.
    void Run(int id, const char* date, const char* time, const char* corr, const char* da,
             const char* et14, const char* dial, const char* et18 = "6.5", int car = 1) {
        db().Execute(QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, "
                                    "dtRun_dt, dtRun_tm, iCorrFactor_val, iDensityAlt_val, "
                                    "i14Mile_et, iDialIn_val, i18Mile_et) VALUES (%1, %2, 1, %1, "
                                    "#%3#, #%4#, %5, %6, %7, %8, %9)")
                         .arg(id)
                         .arg(car)
                         .arg(QLatin1String(date), QLatin1String(time), QLatin1String(corr),
                              QLatin1String(da), QLatin1String(et14), QLatin1String(dial),
                              QLatin1String(et18)));
    }
    // A density altitude setup row at the quarter mile, of a run no longer in the list.
    void Setup(int runId, const char* date, const char* da, const char* et14,
               const char* time = "09:00") {
        db().Execute(QStringLiteral("INSERT INTO tblCarSetup (lRun_id, lCar_id, dtRun_dt, "
                                    "dtRun_tm, iDensityAlt_val, i14Mile_et, i18Mile_et, "
                                    "sSetup_cat, bEighthNotQuarter) VALUES (%1, 1, #%2#, #%3#, "
                                    "%4, %5, 6.5, 'DA', 0)")
                         .arg(runId)
                         .arg(QLatin1String(date), QLatin1String(time), QLatin1String(da),
                              QLatin1String(et14)));
    }
    // The five runs of the car with weather, and three it leaves off, entered out of order.
    void History() {
        Run(1, "07/01/2024", "10:00", "1.00", "1000", "10.000", "10.05");
        Run(3, "07/02/2024", "10:00", "1.04", "3000", "10.200", "10.21");
        Run(5, "07/03/2024", "09:00", "1.01", "1500", "10.040", "10.03");
        Run(2, "07/01/2024", "14:00", "1.02", "2000", "10.100", "10.08");
        Run(4, "07/02/2024", "12:00", "1.03", "2500", "10.160", "Null");
        Run(6, "07/02/2024", "11:00", "Null", "Null", "10.300", "10.30");        // no weather
        Run(7, "07/02/2024", "11:30", "1.03", "2500", "Null", "6.40", "6.41");   // eighth mile
        Run(8, "07/02/2024", "11:45", "1.03", "2500", "Null", "10.10", "Null");  // no ET
        Run(9, "07/02/2024", "11:50", "1.03", "2500", "9.000", "9.00", "Null", 2);
    }

    static std::optional<double> Et(const CardRow& row, Method m) { return row[m].et; }

    store::Database& db() { return lb.db(); }
    test::TempLogbook lb;
};

TEST_F(Card, EachMethodFromTheRunsBeforeIt) {
    History();
    const ReportCard card = ReadReportCard(db(), 1, Distance::Quarter);
    ASSERT_EQ(card.rows.size(), 5u);
    std::vector<qint64> ids;
    for (const CardRow& r : card.rows) {
        ids.push_back(r.run.id);
    }
    EXPECT_EQ(ids, (std::vector<qint64>{1, 2, 3, 4, 5}));
    EXPECT_EQ(LeftOutText(card.leftOff),
              QStringLiteral("1 without ET, 1 finished at 1/8 mile, 1 without weather"));

    // Standard: from the run before on the card (run 6 between 3 and 4 has no weather):
    // 10 * (1.02 / 1.00)^(1/3) = 10.066, then 10.166, 10.167, 10.094.
    EXPECT_EQ(card.rows[0][Method::Standard].why, QStringLiteral("no earlier run"));
    const std::vector<double> standard = {10.066, 10.166, 10.167, 10.094};
    for (size_t i = 1; i < 5; ++i) {
        EXPECT_EQ(card.rows[i][Method::Standard].lastRunId, card.rows[i - 1].run.id);
        EXPECT_EQ(Et(card.rows[i], Method::Standard), standard[i - 1]) << i;
    }
    // The program as the prediction window runs it, with the boxes filled from run 3 for run 4.
    const prediction::Outcome window = prediction::StandardDialIn(
        {QStringLiteral("1.04 "), QStringLiteral("10.2 "), QStringLiteral("1.03")},
        prediction::Fuel::Gas);
    EXPECT_EQ(window.results, QStringList{QStringLiteral("10.167")});

    // Density altitude: no setup runs, so the three runs before stand in. Run 4: slope 0.0001
    // s/ft from runs 1-3, last run 3 at 3000 ft and 10.2 s: 10.2 - 500 * 0.0001 = 10.15. Run 5:
    // slopes 0.0001, 0.00012, 0.00008 from runs 2-4, from run 4: 10.16 - 1000 * 0.0001 = 10.06.
    EXPECT_EQ(card.rows[0][Method::DensityAlt].why, QStringLiteral("no earlier run"));
    EXPECT_EQ(card.rows[2][Method::DensityAlt].why,
              QStringLiteral("needs 3 setup runs or 3 earlier runs"));
    EXPECT_EQ(Et(card.rows[3], Method::DensityAlt), 10.15);
    EXPECT_EQ(card.rows[3][Method::DensityAlt].slopeRunIds, (std::vector<qint64>{1, 2, 3}));
    EXPECT_EQ(card.rows[3][Method::DensityAlt].lastRunId, 3);
    EXPECT_FALSE(card.rows[3][Method::DensityAlt].fromSetup);
    EXPECT_EQ(Et(card.rows[4], Method::DensityAlt), 10.06);
    EXPECT_EQ(card.rows[4][Method::DensityAlt].slopeRunIds, (std::vector<qint64>{2, 3, 4}));

    // Least squares through every run before: run 4 on the exact line 9.9 + 0.0001 DA; run 5
    // through four points, slope 222.5 / 2,187,500 = 0.00010171, read at 1500 ft: 10.051.
    EXPECT_EQ(Et(card.rows[3], Method::LeastSquares), 10.15);
    EXPECT_EQ(Et(card.rows[4], Method::LeastSquares), 10.051);
    EXPECT_EQ(card.rows[4][Method::LeastSquares].slopeRuns, 4);
    EXPECT_FALSE(card.rows[4][Method::LeastSquares].fromSetup);

    EXPECT_EQ(Et(card.rows[0], Method::RacerDialIn), 10.05);
    EXPECT_EQ(card.rows[3][Method::RacerDialIn].why, QStringLiteral("no dial-in"));

    // The racer: errors +0.05, -0.02, +0.01, -0.01 over four runs, one without a dial-in.
    MethodScore s = Score(card.rows, Method::RacerDialIn);
    EXPECT_EQ(s.runs, 5);
    EXPECT_EQ(s.predicted, 4);
    EXPECT_EQ(LeftOutText(s.leftOut), QStringLiteral("1 no dial-in"));
    EXPECT_NEAR(*s.meanAbsError, 0.0225, 1e-12);
    EXPECT_NEAR(*s.bias, 0.0075, 1e-12);
    EXPECT_EQ(*s.within01, 50.0);
    EXPECT_EQ(*s.within02, 75.0);

    // Standard: errors -0.034, -0.034, +0.007, +0.054.
    s = Score(card.rows, Method::Standard);
    EXPECT_NEAR(*s.meanAbsError, 0.129 / 4, 1e-12);
    EXPECT_NEAR(*s.bias, -0.007 / 4, 1e-12);
    EXPECT_EQ(*s.within01, 25.0);
    EXPECT_EQ(*s.within02, 25.0);

    // Density altitude: -0.01 and +0.02, right on the edges of both windows.
    s = Score(card.rows, Method::DensityAlt);
    EXPECT_EQ(s.predicted, 2);
    EXPECT_EQ(LeftOutText(s.leftOut),
              QStringLiteral("1 no earlier run, 2 needs 3 setup runs or 3 earlier runs"));
    EXPECT_NEAR(*s.meanAbsError, 0.015, 1e-12);
    EXPECT_NEAR(*s.bias, 0.005, 1e-12);
    EXPECT_EQ(*s.within01, 50.0);
    EXPECT_EQ(*s.within02, 100.0);

    // The last two runs: 4 (no dial-in) and 5 (-0.01).
    s = Score(card.rows, Method::RacerDialIn, 2);
    EXPECT_EQ(s.runs, 2);
    EXPECT_EQ(s.predicted, 1);
    EXPECT_NEAR(*s.meanAbsError, 0.01, 1e-12);
    EXPECT_NEAR(*s.bias, -0.01, 1e-12);
    EXPECT_EQ(*s.within01, 100.0);
    // More runs asked for than the card holds: all of them.
    EXPECT_EQ(Score(card.rows, Method::RacerDialIn, 10).runs, 5);
}

TEST_F(Card, SetupRunsMadeBeforeTheRunComeFirst) {
    History();
    // Three setup runs of runs since deleted, older than the card, on the line 9.9 + 0.0001 DA;
    // a fourth made after run 3.
    Setup(101, "06/01/2024", "1000", "10.0");
    Setup(102, "06/02/2024", "2000", "10.1");
    Setup(103, "06/03/2024", "3000", "10.2");
    Setup(104, "07/02/2024", "2000", "10.3", "11:00");
    const ReportCard card = ReadReportCard(db(), 1, Distance::Quarter);
    ASSERT_EQ(card.rows.size(), 5u);

    // Run 1 has no last run for the density altitude program, but the line needs none.
    EXPECT_EQ(card.rows[0][Method::DensityAlt].why, QStringLiteral("no earlier run"));
    EXPECT_EQ(Et(card.rows[0], Method::LeastSquares), 10.0);
    EXPECT_TRUE(card.rows[0][Method::LeastSquares].fromSetup);
    // Run 2 from run 1 (1000 ft, 10.0 s) to 2000 ft along 0.0001 s/ft.
    EXPECT_EQ(Et(card.rows[1], Method::DensityAlt), 10.1);
    EXPECT_EQ(card.rows[1][Method::DensityAlt].slopeRunIds, (std::vector<qint64>{101, 102, 103}));
    EXPECT_TRUE(card.rows[1][Method::DensityAlt].fromSetup);
    // Run 4 comes after the fourth: the program's boxes take the first three, as stored.
    const Prediction& da4 = card.rows[3][Method::DensityAlt];
    EXPECT_EQ(da4.slopeRunIds, (std::vector<qint64>{101, 102, 103, 104}));
    const prediction::SetupRows rows = {{1000, 10.0, 6.5, {}, {}},
                                        {2000, 10.1, 6.5, {}, {}},
                                        {3000, 10.2, 6.5, {}, {}},
                                        {2000, 10.3, 6.5, {}, {}}};
    const prediction::DensityAltSetupBoxes boxes = prediction::DensityAltSetupBoxTexts(rows, false);
    const prediction::Outcome window =
        prediction::DensityAltDialIn({boxes.da, boxes.et, QStringLiteral("3000 "),
                                      QStringLiteral("10.2 "), QStringLiteral("2500")},
                                     rows, true);
    ASSERT_FALSE(window.failed());
    EXPECT_EQ(window.results, QStringList{QStringLiteral("10.15")});
    EXPECT_EQ(da4.et, 10.15);
    // The line through all four setup runs at 2500 ft: means 2000 ft and 10.15 s, Sxy = 200,
    // Sxx = 2,000,000: 10.15 + 500 * 0.0001.
    EXPECT_EQ(Et(card.rows[3], Method::LeastSquares), 10.2);
}

TEST_F(Card, WhereTheProgramsStopAndEmptyCards) {
    // Eighth-mile races: the standard program works on their ETs; the density altitude
    // program stops as the prediction window does, since a setup run of an eighth-mile race
    // has no quarter-mile ET.
    Run(1, "07/01/2024", "10:00", "1.00", "1000", "Null", "6.40", "6.400");
    Run(2, "07/01/2024", "11:00", "1.02", "2000", "Null", "6.45", "6.450");
    Run(3, "07/01/2024", "12:00", "1.04", "3000", "Null", "6.50", "6.500");
    Run(4, "07/01/2024", "13:00", "1.03", "2500", "Null", "6.48", "6.480");
    Run(5, "07/01/2024", "14:00", "1.03", "2500", "10.1", "10.1", "6.480");
    ReportCard card = ReadReportCard(db(), 1, Distance::Eighth);
    ASSERT_EQ(card.rows.size(), 4u);
    EXPECT_EQ(LeftOutText(card.leftOff), QStringLiteral("1 finished at 1/4 mile"));
    EXPECT_EQ(Et(card.rows[1], Method::Standard), 6.442);
    EXPECT_EQ(card.rows[3][Method::DensityAlt].why,
              QStringLiteral("Oops! Can't calculate: Invalid use of Null"));
    EXPECT_EQ(Et(card.rows[3], Method::LeastSquares), 6.475);

    // Quarter-mile runs without their eighth-mile time: the same program stops on the blank
    // it reads for the time.
    Run(11, "07/02/2024", "10:00", "1.00", "1000", "10.000", "10.0", "Null");
    Run(12, "07/02/2024", "11:00", "1.02", "2000", "10.100", "10.1", "Null");
    Run(13, "07/02/2024", "12:00", "1.04", "3000", "10.200", "10.2", "Null");
    Run(14, "07/02/2024", "13:00", "1.03", "2500", "10.160", "10.2", "Null");
    card = ReadReportCard(db(), 1, Distance::Quarter);
    ASSERT_EQ(card.rows.size(), 5u);
    EXPECT_EQ(card.rows[4][Method::DensityAlt].why,
              QStringLiteral("Oops! Can't calculate: Type mismatch"));

    // A car without runs, and one that doesn't exist.
    const MethodScore empty = Score({}, Method::Standard, 10);
    EXPECT_EQ(empty.runs, 0);
    EXPECT_FALSE(empty.meanAbsError || empty.bias || empty.within01 || empty.within02);
    EXPECT_TRUE(ReadReportCard(db(), 99, Distance::Quarter).rows.empty());
    db().Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (3, 'Spare')"));
    EXPECT_TRUE(ReadReportCard(db(), 3, Distance::Quarter).rows.empty());
}

}  // namespace
