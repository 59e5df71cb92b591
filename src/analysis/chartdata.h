#pragma once

// The series the charts draw, and the least-squares line through them.

#include "analysis/distance.h"
#include "store/database.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace slipbook::analysis {

// Which runs are charted: the car's, and, when following the main list, only those its event,
// track and filter let through.
struct ChartScope {
    qint64 carId = 0;
    bool followList = true;
    qint64 eventId = 0;  // 0: all events
    qint64 trackId = 0;  // 0: all tracks
    bool filterActive = false;
    QString filterSql;  // the filter's whole statement, as the main list runs it
    bool operator==(const ChartScope&) const = default;
};

// One run as the charts read it; an empty optional is a value the run doesn't have.
struct RunFigures {
    qint64 id = 0;
    QDateTime when;  // invalid without a date; midnight without a time
    std::optional<double> quarterEt;
    std::optional<double> eighthEt;
    std::optional<double> quarterMph;
    std::optional<double> eighthMph;
    std::optional<double> sixtyFoot;
    std::optional<double> reaction;  // negative for a red light
    std::optional<double> densityAlt;
    std::optional<double> corrFactor;
};

// The runs of the scope in the list's order (date, time). Values the run window leaves at its
// blank "0" read as missing: ETs, speeds, reaction time and correction factor of 0, and a
// density altitude of 0 from a run whose air figures were never calculated (no correction
// factor). A filter's statement may still name the car it was made for: only the scope's car's
// runs are kept. Throws store::DbError.
std::vector<RunFigures> ReadRunFigures(store::Database& db, const ChartScope& scope);

struct ChartPoint {
    double x = 0;
    double y = 0;
    qint64 runId = 0;
    bool operator==(const ChartPoint&) const = default;
};

// Runs left out of a series for one reason ("without density altitude").
struct SeriesLeftOut {
    QString reason;
    int runs = 0;
    bool operator==(const SeriesLeftOut&) const = default;
};

struct Series {
    std::vector<ChartPoint> points;
    // Each run left out counts once, under the first value it lacks, in the order the series
    // names them; reasons without runs are not listed.
    std::vector<SeriesLeftOut> leftOut;
};

// "Left out: 3 runs without density altitude, 1 run without a 1/4 mile ET."; with `of`, "Left
// out of the speeds: ..."; empty when none.
QString LeftOutText(const Series& series, const QString& of = {});

// A line through points by least squares: none with fewer than two points or when every x is
// the same.
struct Line {
    double intercept = 0;
    double slope = 0;
};
std::optional<Line> LeastSquaresLine(const std::vector<std::pair<double, double>>& points);

// The sums a line is fitted from, kept as points come, so that a line through every run before
// each run of a long card costs one step a run. Taken about the first point: density altitudes
// in thousands of feet would otherwise drown the ETs' last digits.
class LineSums {
public:
    void Add(double x, double y);
    int Count() const { return n_; }
    std::optional<Line> Fit() const;
    // The share of the spread of y the line explains; none without a line or a spread of y.
    std::optional<double> RSquared() const;

private:
    int n_ = 0;
    double x0_ = 0;
    double y0_ = 0;
    double sx_ = 0;
    double sy_ = 0;
    double sxx_ = 0;
    double sxy_ = 0;
    double syy_ = 0;
    // The plain sums, for the means the line passes through.
    double sumX_ = 0;
    double sumY_ = 0;
};

// The least-squares line y = intercept + slope * x, as the charts draw and caption it.
struct LineFit {
    int n = 0;
    // Fewer than 2 points, or all at one x: there is no line, and nothing is divided by zero.
    bool ok = false;
    double slope = 0;
    double intercept = 0;
    // The share of the spread of y the line explains; empty when y doesn't vary (no spread to
    // explain).
    std::optional<double> r2;
};

LineFit FitLeastSquares(const std::vector<ChartPoint>& points);

struct HistogramBin {
    double from = 0;  // seconds; the bin holds from <= t < from + width
    std::vector<qint64> runIds;
};

// Reaction times in bins of 0.01 s, or a wider step of 1, 2 or 5 times a power of ten when the
// lights spread over more than kMaxBins of them. Bins run without a gap from the lowest light to
// the highest. Red lights (negative) are kept apart and never in a bin.
struct Histogram {
    static constexpr int kMaxBins = 30;
    double width = 0.01;
    std::vector<HistogramBin> bins;
    std::vector<qint64> redLights;
    std::vector<SeriesLeftOut> leftOut;
    int Lights() const;  // the runs counted, red lights included
};

struct ChartSet {
    Distance distance = Distance::Quarter;
    int runs = 0;  // runs read, with or without the values a chart needs
    Series etByDensityAlt;
    LineFit densityAltFit;
    Series etByCorrFactor;
    LineFit corrFactorFit;
    // x: milliseconds since the epoch (local time), oldest first.
    Series etOverTime;
    Series mphOverTime;
    // x: the ET, y: the 60' time.
    Series sixtyFootByEt;
    Histogram reaction;
};

ChartSet BuildCharts(const std::vector<RunFigures>& runs, Distance distance);

// The distance with more ETs among the runs; the quarter mile on a tie.
Distance LikelyDistance(const std::vector<RunFigures>& runs);

// What the labels under the charts say: the line's slope and fit, or why there is none.
QString DensityAltFitText(const LineFit& fit);
QString CorrFactorFitText(const LineFit& fit);

// "12 lights in bins of 0.01 s; 2 red lights, counted apart.", then what was left out.
QString ReactionSummaryText(const Histogram& histogram);

// The text shown instead of an empty chart.
QString NoDensityAltText(Distance distance);
QString NoCorrFactorText(Distance distance);
QString NoOverTimeText(Distance distance);
QString NoSixtyFootText(Distance distance);
QString NoReactionText();

}  // namespace slipbook::analysis
