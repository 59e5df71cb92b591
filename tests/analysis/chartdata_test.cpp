// The charts' series read from a logbook, and the least-squares line through them.

#include "analysis/chartdata.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::analysis;

namespace {

std::vector<qint64> Ids(const std::vector<ChartPoint>& points) {
    std::vector<qint64> ids;
    for (const ChartPoint& p : points) {
        ids.push_back(p.runId);
    }
    return ids;
}

std::vector<ChartPoint> Points(std::initializer_list<std::pair<double, double>> xy) {
    std::vector<ChartPoint> points;
    qint64 id = 0;
    for (const auto& [x, y] : xy) {
        points.push_back({x, y, ++id});
    }
    return points;
}

double At(int year, int month, int day, int hour, int minute) {
    return static_cast<double>(
        QDateTime(QDate(year, month, day), QTime(hour, minute)).toMSecsSinceEpoch());
}

RunFigures Light(qint64 id, std::optional<double> reaction) {
    RunFigures r;
    r.id = id;
    r.reaction = reaction;
    return r;
}

}  // namespace

TEST(LeastSquares, MatchesSumsWorkedByHand) {
    // x 1 2 3, y 2 3 5: means 2 and 10/3; Sxx 2, Sxy 3, Syy 14/3.
    LineFit fit = FitLeastSquares(Points({{1, 2}, {2, 3}, {3, 5}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_EQ(fit.n, 3);
    EXPECT_DOUBLE_EQ(fit.slope, 1.5);
    EXPECT_DOUBLE_EQ(fit.intercept, 1.0 / 3.0);
    ASSERT_TRUE(fit.r2.has_value());
    EXPECT_NEAR(*fit.r2, 27.0 / 28.0, 1e-12);

    // ETs at four density altitudes: means 2500 ft and 10.5325 s; Sxx 5,000,000, Sxy 105,
    // Syy 0.002275.
    fit = FitLeastSquares(Points({{1000, 10.50}, {2000, 10.52}, {3000, 10.55}, {4000, 10.56}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_NEAR(fit.slope, 0.000021, 1e-15);
    EXPECT_NEAR(fit.intercept, 10.48, 1e-12);
    EXPECT_NEAR(*fit.r2, 11025.0 / 11375.0, 1e-12);
    EXPECT_EQ(DensityAltFitText(fit).toStdString(),
              "Least-squares line over 4 runs: 0.0210 s per 1000 ft (0.01 s = 476 ft); "
              "10.480 s at 0 ft; r² 0.969.");

    // Five points on y = 3 - 2x, in no order; two points are their own line.
    fit = FitLeastSquares(Points({{4, -5}, {0, 3}, {2, -1}, {-1, 5}, {10, -17}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_NEAR(fit.slope, -2, 1e-12);
    EXPECT_NEAR(fit.intercept, 3, 1e-12);
    EXPECT_NEAR(*fit.r2, 1, 1e-12);
    fit = FitLeastSquares(Points({{0, 1}, {2, 0}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_DOUBLE_EQ(fit.slope, -0.5);
    EXPECT_DOUBLE_EQ(fit.intercept, 1);

    // Large, close x values: sums about the means keep the slope.
    fit = FitLeastSquares(
        Points({{100000000.0, 1}, {100000001.0, 2}, {100000002.0, 3}, {100000003.0, 4}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_NEAR(fit.slope, 1, 1e-9);
}

TEST(LeastSquares, NoLineWithoutTwoDistinctXAndAFlatOneForEqualY) {
    // A vertical set: every run at one density altitude.
    LineFit fit = FitLeastSquares(Points({{2150, 10.5}, {2150, 10.6}, {2150, 10.4}}));
    EXPECT_FALSE(fit.ok);
    EXPECT_EQ(fit.n, 3);
    EXPECT_EQ(DensityAltFitText(fit).toStdString(),
              "No least-squares line: all 3 runs are at the same density altitude.");
    EXPECT_EQ(CorrFactorFitText(fit).toStdString(),
              "No least-squares line: all 3 runs are at the same correction factor.");

    fit = FitLeastSquares(Points({{2150, 10.5}}));
    EXPECT_FALSE(fit.ok);
    EXPECT_EQ(fit.n, 1);
    EXPECT_EQ(DensityAltFitText(fit).toStdString(),
              "No least-squares line: it needs 2 runs at different density altitudes at least, "
              "and there is 1 run.");
    EXPECT_FALSE(FitLeastSquares({}).ok);

    // Equal ETs, even ones whose mean is not exactly their value: a flat line and no r².
    fit = FitLeastSquares(Points({{1.01, 10.1}, {1.02, 10.1}, {1.04, 10.1}}));
    ASSERT_TRUE(fit.ok);
    EXPECT_EQ(fit.slope, 0);
    EXPECT_EQ(fit.intercept, 10.1);
    EXPECT_FALSE(fit.r2.has_value());
    EXPECT_EQ(CorrFactorFitText(fit).toStdString(),
              "Least-squares line over 3 runs: 0.0000 s per 0.01 of correction factor; 10.100 s "
              "at a factor of 1.0000; every ET is the same, so there is no r².");
}

TEST(ReactionHistogram, BinsByHundredthsRedLightsApartAndWidensForAWideSpread) {
    ChartSet c = BuildCharts({Light(1, 0.450), Light(2, 0.449), Light(3, 0.4599), Light(4, -0.001),
                              Light(5, std::nullopt), Light(6, 0.481), Light(7, -0.2)},
                             Distance::Quarter);
    const Histogram& h = c.reaction;
    EXPECT_DOUBLE_EQ(h.width, 0.01);
    ASSERT_EQ(h.bins.size(), 5u);  // 0.44 to 0.48 without a gap
    const std::vector<std::vector<qint64>> expected = {{2}, {1}, {3}, {}, {6}};
    for (size_t i = 0; i < h.bins.size(); ++i) {
        EXPECT_NEAR(h.bins[i].from, 0.44 + 0.01 * static_cast<double>(i), 1e-12);
        EXPECT_EQ(h.bins[i].runIds, expected[i]) << i;
    }
    EXPECT_EQ(h.redLights, (std::vector<qint64>{4, 7}));
    EXPECT_EQ(h.leftOut, (std::vector<SeriesLeftOut>{{"without a reaction time", 1}}));
    EXPECT_EQ(h.Lights(), 6);
    EXPECT_EQ(ReactionSummaryText(h).toStdString(),
              "4 lights in bins of 0.01 s; 2 red lights, counted apart. Left out: 1 run without a "
              "reaction time.");

    // From 0.40 to 1.20 would be 81 bins of 0.01 s and 41 of 0.02 s: 17 of 0.05 s.
    const Histogram wide =
        BuildCharts({Light(1, 0.40), Light(2, 1.20), Light(3, 0.449), Light(4, 0.45)},
                    Distance::Quarter)
            .reaction;
    EXPECT_DOUBLE_EQ(wide.width, 0.05);
    ASSERT_EQ(wide.bins.size(), 17u);
    EXPECT_DOUBLE_EQ(wide.bins.front().from, 0.40);
    EXPECT_DOUBLE_EQ(wide.bins.back().from, 1.20);
    EXPECT_EQ(wide.bins[0].runIds, (std::vector<qint64>{1, 3}));
    EXPECT_EQ(wide.bins[1].runIds, (std::vector<qint64>{4}));
    EXPECT_EQ(wide.bins[16].runIds, (std::vector<qint64>{2}));
    // A light of half a minute still fits in the bins it is allowed.
    EXPECT_LE(BuildCharts({Light(1, 0.4), Light(2, 31.7)}, Distance::Quarter).reaction.bins.size(),
              static_cast<size_t>(Histogram::kMaxBins));

    // Only red lights, or no lights: no bins.
    EXPECT_TRUE(BuildCharts({Light(1, -0.1)}, Distance::Quarter).reaction.bins.empty());
    EXPECT_TRUE(BuildCharts({}, Distance::Quarter).reaction.bins.empty());
}

namespace {

struct ChartLogbook : ::testing::Test {
    ChartLogbook() {
        store::Database& db = lb.db();
        db.Execute("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, 'Other', '2')");
        db.Execute("INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (2, 'Far Track')");
        db.Execute("INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Away', 2)");
        // id, car, event, date, time, 1/4 ET, MPH, 1/8 ET, MPH, 60', R/T, DA, CF. A "0" is what
        // the run window leaves in a field nobody filled.
        Run(1, 1, 1, "#05/01/2024#", "#10:00 AM#", "10.50", "130.10", "6.70", "105.2", "1.40",
            "0.452", "1000", "1.0100");
        Run(2, 1, 1, "#05/01/2024#", "#11:30 AM#", "10.52", "130.00", "6.72", "Null", "1.41",
            "0.461", "2000", "1.0200");
        Run(3, 1, 2, "#05/02/2024#", "#09:15 AM#", "10.55", "Null", "Null", "Null", "0", "-0.012",
            "3000", "1.0300");
        Run(4, 1, 2, "#05/02/2024#", "#09:45 AM#", "10.56", "129.50", "Null", "Null", "1.43",
            "0.459", "4000", "Null");
        Run(5, 1, 1, "Null", "Null", "0", "0", "Null", "Null", "1.45", "0.475", "2500", "1.0150");
        Run(6, 1, 1, "#05/03/2024#", "#08:00 AM#", "10.60", "129.00", "Null", "Null", "1.44", "0",
            "0", "0");
        Run(7, 2, 1, "#05/01/2024#", "#10:30 AM#", "9.90", "140.00", "6.30", "110", "1.30", "0.500",
            "1500", "1.0050");
    }

    void Run(int id, int car, int event, const char* date, const char* time, const char* et14,
             const char* mph14, const char* et18, const char* mph18, const char* et60,
             const char* rt, const char* da, const char* cf) {
        lb.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "dtRun_tm, i14Mile_et, i14Mile_mph, i18Mile_et, i18Mile_mph, "
                           "i60Foot_et, iReactionTime_val, iDensityAlt_val, iCorrFactor_val) "
                           "VALUES (%1, %2, %3, %1, %4, %5, %6, %7, %8, %9, %10, %11, %12, %13)")
                .arg(id)
                .arg(car)
                .arg(event)
                .arg(QLatin1String(date), QLatin1String(time), QLatin1String(et14),
                     QLatin1String(mph14), QLatin1String(et18), QLatin1String(mph18),
                     QLatin1String(et60), QLatin1String(rt), QLatin1String(da))
                .arg(QLatin1String(cf)));
    }

    std::vector<qint64> RunIds(const ChartScope& scope) {
        std::vector<qint64> ids;
        for (const RunFigures& r : ReadRunFigures(lb.db(), scope)) {
            ids.push_back(r.id);
        }
        return ids;
    }

    test::TempLogbook lb;
};

}  // namespace

TEST_F(ChartLogbook, EachSeriesHoldsTheCarsRunsAndCountsThoseLeftOut) {
    ChartScope scope;
    scope.carId = 1;
    const std::vector<RunFigures> runs = ReadRunFigures(lb.db(), scope);
    ASSERT_EQ(runs.size(), 6u);
    EXPECT_EQ(LikelyDistance(runs), Distance::Quarter);

    const ChartSet q = BuildCharts(runs, Distance::Quarter);
    EXPECT_EQ(q.runs, 6);
    // Run 5 has no ET; run 6's air figures were never calculated.
    EXPECT_EQ(q.etByDensityAlt.points,
              (std::vector<ChartPoint>{
                  {1000, 10.50, 1}, {2000, 10.52, 2}, {3000, 10.55, 3}, {4000, 10.56, 4}}));
    EXPECT_EQ(LeftOutText(q.etByDensityAlt).toStdString(),
              "Left out: 1 run without a 1/4 mile ET, 1 run without density altitude.");
    EXPECT_NEAR(q.densityAltFit.slope * 1000, 0.021, 1e-12);

    EXPECT_EQ(q.etByCorrFactor.points,
              (std::vector<ChartPoint>{{1.01, 10.50, 1}, {1.02, 10.52, 2}, {1.03, 10.55, 3}}));
    EXPECT_EQ(q.etByCorrFactor.leftOut,
              (std::vector<SeriesLeftOut>{{"without a 1/4 mile ET", 1},
                                          {"without a correction factor", 2}}));
    // Means 1.02 and 10.52333...: Sxx 0.0002, Sxy 0.0005, Syy 0.00126666...
    EXPECT_NEAR(q.corrFactorFit.slope, 2.5, 1e-9);
    EXPECT_EQ(CorrFactorFitText(q.corrFactorFit).toStdString(),
              "Least-squares line over 3 runs: 0.0250 s per 0.01 of correction factor; 10.473 s "
              "at a factor of 1.0000; r² 0.987.");

    EXPECT_EQ(q.etOverTime.points, (std::vector<ChartPoint>{{At(2024, 5, 1, 10, 0), 10.50, 1},
                                                            {At(2024, 5, 1, 11, 30), 10.52, 2},
                                                            {At(2024, 5, 2, 9, 15), 10.55, 3},
                                                            {At(2024, 5, 2, 9, 45), 10.56, 4},
                                                            {At(2024, 5, 3, 8, 0), 10.60, 6}}));
    EXPECT_EQ(LeftOutText(q.etOverTime).toStdString(), "Left out: 1 run without a date.");
    EXPECT_EQ(Ids(q.mphOverTime.points), (std::vector<qint64>{1, 2, 4, 6}));
    EXPECT_EQ(q.mphOverTime.points[0].y, 130.10);
    EXPECT_EQ(LeftOutText(q.mphOverTime, QStringLiteral("speeds")).toStdString(),
              "Left out of the speeds: 1 run without a date, 1 run without a 1/4 mile speed.");

    EXPECT_EQ(q.sixtyFootByEt.points,
              (std::vector<ChartPoint>{
                  {10.50, 1.40, 1}, {10.52, 1.41, 2}, {10.56, 1.43, 4}, {10.60, 1.44, 6}}));
    EXPECT_EQ(LeftOutText(q.sixtyFootByEt).toStdString(),
              "Left out: 1 run without a 1/4 mile ET, 1 run without a 60' time.");

    ASSERT_EQ(q.reaction.bins.size(), 3u);
    EXPECT_EQ(q.reaction.bins[0].runIds, (std::vector<qint64>{1, 4}));  // 0.452, 0.459
    EXPECT_EQ(q.reaction.bins[1].runIds, (std::vector<qint64>{2}));
    EXPECT_EQ(q.reaction.bins[2].runIds, (std::vector<qint64>{5}));
    EXPECT_EQ(q.reaction.redLights, (std::vector<qint64>{3}));
    EXPECT_EQ(ReactionSummaryText(q.reaction).toStdString(),
              "4 lights in bins of 0.01 s; 1 red light, counted apart. Left out: 1 run without a "
              "reaction time.");

    // The eighth mile: two runs have its ET, so its lines have two points.
    const ChartSet e = BuildCharts(runs, Distance::Eighth);
    EXPECT_EQ(Ids(e.etByDensityAlt.points), (std::vector<qint64>{1, 2}));
    EXPECT_EQ(e.etByDensityAlt.leftOut, (std::vector<SeriesLeftOut>{{"without a 1/8 mile ET", 4}}));
    EXPECT_NEAR(e.densityAltFit.slope * 1000, 0.02, 1e-12);
    EXPECT_EQ(Ids(e.mphOverTime.points), (std::vector<qint64>{1}));
    EXPECT_EQ(LeftOutText(e.mphOverTime).toStdString(),
              "Left out: 1 run without a date, 4 runs without a 1/8 mile speed.");
    EXPECT_EQ(NoDensityAltText(Distance::Eighth).toStdString(),
              "No runs with a 1/8 mile ET and density altitude for this car.");

    // Nothing read: every series is empty, and nothing is divided by zero.
    const ChartSet none = BuildCharts({}, Distance::Quarter);
    EXPECT_EQ(none.runs, 0);
    EXPECT_TRUE(none.etByDensityAlt.points.empty());
    EXPECT_TRUE(none.etByDensityAlt.leftOut.empty());
    EXPECT_FALSE(none.densityAltFit.ok);
    EXPECT_EQ(LeftOutText(none.etByDensityAlt), QString());
}

TEST_F(ChartLogbook, FollowsTheListsEventTrackAndFilterButKeepsToTheCar) {
    ChartScope scope;
    scope.carId = 1;
    scope.eventId = 2;
    EXPECT_EQ(RunIds(scope), (std::vector<qint64>{3, 4}));
    scope.eventId = 0;
    scope.trackId = 1;
    EXPECT_EQ(RunIds(scope), (std::vector<qint64>{5, 1, 2, 6}));

    // Not following the list: all of the car's runs, whatever the list shows.
    scope.followList = false;
    EXPECT_EQ(RunIds(scope), (std::vector<qint64>{5, 1, 2, 3, 4, 6}));

    // A filter as the filter window writes it.
    scope.followList = true;
    scope.trackId = 0;
    scope.filterActive = true;
    scope.filterSql = QStringLiteral(
        "SELECT * from tblRuns WHERE i14Mile_et >= 10.5 AND i14Mile_et <= 10.55 AND lCar_id = 1");
    EXPECT_EQ(RunIds(scope), (std::vector<qint64>{1, 2, 3}));
    // After a change of car the list still runs the filter made for the other one; the charts
    // don't take that car's runs for this one's.
    scope.carId = 2;
    EXPECT_TRUE(RunIds(scope).empty());
    scope.filterActive = false;
    EXPECT_EQ(RunIds(scope), (std::vector<qint64>{7}));
}

TEST_F(ChartLogbook, ZerosNobodyEnteredAreMissingButARealSeaLevelAltitudeIsKept) {
    Run(8, 1, 1, "#05/04/2024#", "Null", "10.40", "131", "Null", "Null", "1.39", "0.470", "0",
        "0.9990");
    ChartScope scope;
    scope.carId = 1;
    const std::vector<RunFigures> runs = ReadRunFigures(lb.db(), scope);
    const auto find = [&runs](qint64 id) {
        return *std::find_if(runs.begin(), runs.end(),
                             [id](const RunFigures& r) { return r.id == id; });
    };
    const RunFigures eight = find(8);
    ASSERT_TRUE(eight.densityAlt.has_value());
    EXPECT_EQ(*eight.densityAlt, 0);
    EXPECT_EQ(eight.when, QDateTime(QDate(2024, 5, 4), QTime(0, 0)));  // no time: midnight
    const RunFigures six = find(6);
    EXPECT_FALSE(six.densityAlt.has_value());
    EXPECT_FALSE(six.corrFactor.has_value());
    EXPECT_FALSE(six.reaction.has_value());
    EXPECT_FALSE(find(5).quarterEt.has_value());
    EXPECT_FALSE(find(5).when.isValid());
    ASSERT_TRUE(find(3).reaction.has_value());
    EXPECT_EQ(*find(3).reaction, -0.012);
}
