#pragma once

// What each dial-in method would have predicted for each run, beside what happened.
//
// The card holds the car's runs that finished at the distance with weather (a correction factor
// and a density altitude), oldest first by date, time and id. For each of them, from what was
// known before it:
//  - Standard: the standard dial-in program from the run before it on the card (its correction
//    factor and ET) to this run's correction factor, with the car's fuel.
//  - Density altitude: the density altitude program with the car's setup runs of the distance
//    that were made before this run, when there are three; else the three runs before it on
//    the card stand in as setup runs. The last run is the run before it on the card, the new
//    density altitude this run's.
//  - Least squares: the line of ET over density altitude through those setup runs (the ones
//    with a density altitude and an ET), when there are three; else through every run before it
//    on the card; read at this run's density altitude and rounded to thousandths.
//  - The racer's own dial-in of the run.
// The programs are the prediction window's own, fed the texts its boxes would hold, so a
// prediction is the number the racer would have seen, and a program that would have stopped or
// refused gives none, with its reason.

#include "analysis/chartdata.h"
#include "analysis/statistics.h"
#include "store/database.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace slipbook::analysis {

enum class Method { Standard, DensityAlt, LeastSquares, RacerDialIn };
inline constexpr std::array<Method, 4> kMethods = {Method::Standard, Method::DensityAlt,
                                                   Method::LeastSquares, Method::RacerDialIn};
// "Standard", "Density altitude", "Least squares", "Racer's dial-in".
QString MethodName(Method m);

struct Prediction {
    std::optional<double> et;
    QString why;           // when there is none
    qint64 lastRunId = 0;  // the run it went on from (standard, density altitude)
    // How many runs its slope or line was taken from, and which, in the order given to the
    // program; a line through every run before it on the card names none (they are the card's
    // first `slopeRuns` rows).
    int slopeRuns = 0;
    std::vector<qint64> slopeRunIds;
    bool fromSetup = false;  // those are the car's setup runs, else runs from the card
};

struct CardRow {
    RunRecord run;
    double actual = 0;  // the ET at the distance
    std::array<Prediction, 4> predictions;
    const Prediction& operator[](Method m) const { return predictions[static_cast<int>(m)]; }
};

struct ReportCard {
    Distance distance = Distance::Quarter;
    std::vector<CardRow> rows;
    // The car's runs left off the card.
    std::vector<LeftOut> leftOff;
};

// A setup run as stored for the density altitude program, with the moment of its run.
struct SetupRun {
    qint64 runId = 0;
    QString dateKey;  // the stored texts, as RunRecord keeps them
    QString timeKey;
    std::optional<double> densityAlt;
    std::optional<double> quarterEt;
    std::optional<double> eighthEt;
    std::optional<double> corrFactor;
};

// The card of a car's runs (in the list's order) with its setup runs of the distance (in
// stored order).
ReportCard BuildReportCard(const std::vector<RunRecord>& runs, const std::vector<SetupRun>& setup,
                           bool methanol, Distance distance);

// The same from the logbook. An unknown car gives an empty card.
ReportCard ReadReportCard(store::Database& db, qint64 carId, Distance distance);

// How a method did over rows of the card.
struct MethodScore {
    int runs = 0;       // rows looked at
    int predicted = 0;  // rows it predicted
    std::vector<LeftOut> leftOut;
    std::optional<double> meanAbsError;
    std::optional<double> bias;      // mean of prediction minus ET: above 0 predicted slower
    std::optional<double> within01;  // percent of predictions within 0.01 s of the ET
    std::optional<double> within02;
};
// Over the last `lastRuns` rows, or all of them when 0.
MethodScore Score(const std::vector<CardRow>& rows, Method m, int lastRuns = 0);

// The card's runs: date, time, run #, ET, and each prediction beside its difference from the
// ET, then where the slope came from.
TextTable CardTable(const ReportCard& card);
// Cell by cell of CardTable, why a prediction's cell is empty; empty texts elsewhere.
std::vector<QStringList> CardReasons(const ReportCard& card);
// How each method did over all the card's runs and over its last runs.
TextTable ScoreTable(const ReportCard& card, int lastRuns);
// How many runs the card holds and which of the car's runs it left off, or that it has none.
QString CardSummaryText(const ReportCard& card);

}  // namespace slipbook::analysis
