#pragma once

// Figures of a car's runs: reaction times, ETs, consistency against the dial-in, bests per track.
// The runs are those the main list shows; each figure counts the runs it could use and names
// how many it left out and why, and never divides by zero.

#include "analysis/distance.h"
#include "common/textgrid.h"
#include "store/database.h"

#include <QDateTime>
#include <QHash>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace slipbook::analysis {

// What of the main window's state decides which runs it lists.
struct RunSelection {
    qint64 carId = 0;
    qint64 eventId = 0;  // 0: all events
    qint64 trackId = 0;  // 0: all tracks
    bool filterActive = false;
    QString filterSql;
};
// The main list's own statement for the selection.
QString SelectionSql(const RunSelection& selection);

// A run as the figures read it; an empty optional is a Null column.
struct RunRecord {
    qint64 id = 0;
    qint64 eventId = 0;
    std::optional<double> runNumber;
    QDateTime date;
    QDateTime time;
    // The stored texts of date and time: their order is the list's order, Nulls first.
    QString dateKey;
    QString timeKey;
    std::optional<double> reaction;
    std::optional<double> dialIn;
    std::array<std::optional<double>, 2> et;   // by Distance
    std::array<std::optional<double>, 2> mph;  // by Distance
    std::optional<double> temp;
    std::optional<double> humidity;
    std::optional<double> barometer;
    std::optional<double> densityAlt;
    std::optional<double> corrFactor;

    // The time or speed at the distance's mark, when above 0.
    std::optional<double> Et(Distance d) const;
    std::optional<double> Mph(Distance d) const;
    // Where the run finished: the quarter mile when it has a quarter-mile ET, else the eighth
    // mile when it has an eighth-mile one.
    std::optional<Distance> Finish() const;
    // A dial-in above 0.
    std::optional<double> DialIn() const;
    // A correction factor above 0 and a density altitude: what the prediction programs need.
    bool HasWeather() const;
    // Before the other run in the list's order: date, time, then id.
    bool Before(const RunRecord& other) const;
};

// Seconds with their sign, "+0.012", "-0.005", and "0.000" for what rounds to none.
QString SignedSecondsText(double seconds);

// A run's date, time and number as the run list shows them.
QString RunDateText(const RunRecord& r);
QString RunTimeText(const RunRecord& r);
QString RunNumberText(const RunRecord& r);

// The runs of a statement over tblRuns, in its order, read without a value object per cell.
std::vector<RunRecord> ReadRuns(store::Database& db, const QString& sql);

// A number of runs a figure left out, and why ("without dial-in").
struct LeftOut {
    int count = 0;
    QString why;
};
// "2 without dial-in, 1 red light"; empty when nothing was left out.
QString LeftOutText(const std::vector<LeftOut>& leftOut);

struct Figure {
    QString caption;               // with its unit: "Average reaction time (s)"
    std::optional<double> value;   // none when the runs were too few
    QString text;                  // the value as shown, or why there is none
    int counted = 0;               // the runs it was taken from
    std::vector<LeftOut> leftOut;  // only reasons that left runs out
};

// The best ET or MPH of the runs at one track and distance, with the run that made it.
struct TrackBest {
    QString track;
    Distance distance = Distance::Quarter;
    bool mph = false;  // the best speed, else the best ET
    double value = 0;
    RunRecord run;
};

struct Statistics {
    int runs = 0;
    std::vector<Figure> figures;
    std::vector<TrackBest> bests;  // by track name, quarter mile first, ET before MPH
    // The figure with this caption, or null.
    const Figure* Find(QStringView caption) const;
};

// The mean of the values, and their standard deviation as a sample (n - 1); none with too few.
std::optional<double> Mean(const std::vector<double>& values);
std::optional<double> SampleDeviation(const std::vector<double>& values);

// The runs' figures. `trackOfEvent` names the track of each event; a run whose event has none
// is counted under "(No track)".
Statistics ComputeStatistics(const std::vector<RunRecord>& runs,
                             const QHash<qint64, QString>& trackOfEvent);

// The track name of every event that has a track.
QHash<qint64, QString> ReadTrackOfEvent(store::Database& db);

// A table of texts, as a window shows it and its printout prints it.
struct TextTable {
    std::vector<GridColumn> columns;
    std::vector<QStringList> rows;
};

// The figures: caption, value, runs counted, runs left out and why.
TextTable FiguresTable(const Statistics& s);
// The bests per track, each with its run's date, number and weather.
TextTable BestsTable(const Statistics& s);

// The figures of the runs the main list shows for the selection. Throws store::DbError when
// the statement can't be run (a filter gone stale).
Statistics ReadStatistics(store::Database& db, const RunSelection& selection);

}  // namespace slipbook::analysis
