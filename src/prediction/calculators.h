#pragma once

// The four prediction programs: standard dial-in, density altitude dial-in, throttle stop timer
// and run completer. Each takes the texts of its window's boxes as they stand and gives back
// what the window shows: the result boxes, the information line, the boxes it raises and, where
// the arithmetic itself fails (a text that is no number, a division by zero, a Null read as a
// number), the reason instead of a result. No state, no windows, no database.

#include "common/messages.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace slipbook::prediction {

// The ET-to-power law: P = 1 / (ET / 5.825)^3 and back with this exponent, not a third.
inline constexpr double kEtPowerBase = 5.825;
inline constexpr double kEtPowerRoot = 0.33333333334;

// Methanol responds to 58 percent of a change in the air; no fuel picked gives back the old ET.
enum class Fuel { None, Gas, Methanol };
double FuelFactor(Fuel fuel);

// Whether a program's Calculate button is on, and the reason shown beside it when not.
struct Check {
    bool enabled = false;
    QString reason;  // empty when enabled
    // The check itself stopped on a number beyond a double; the reason says so.
    bool failed = false;
};

// What one calculation shows.
struct Outcome {
    QStringList results;          // the result boxes, empty texts when not calculated
    std::optional<QString> info;  // the information line, when the calculation wrote it
    QList<Message> messages;      // the boxes raised, in order
    QString error;                // where the arithmetic stopped; empty when it did not
    bool failed() const { return !error.isEmpty(); }
};

// A stored setup run as the prediction programs read it; an empty optional is a Null column.
struct SetupRow {
    std::optional<double> densityAlt;  // iDensityAlt_val
    std::optional<double> quarterEt;   // i14Mile_et
    std::optional<double> eighthEt;    // i18Mile_et
    std::optional<double> corrFactor;  // iCorrFactor_val
    std::optional<QString> timer;      // sThrottleStop2_val
};
using SetupRows = std::vector<SetupRow>;  // in stored order

// The message boxes of the programs.
Message EnterAllValuesMessage();
Message NeedSetupMessage();

// The lenient parses of the texts all differ from zero, as the automatic recalculation asks
// before it calculates; fails only on a number beyond a double.
std::optional<bool> AllNonZero(std::initializer_list<QStringView> texts);

// A number read from a row as a box shows it: its text, and with a blank added when the
// program adds one, so that a Null shows as the blank alone.
QString ValueText(const std::optional<double>& value);
QString PaddedText(const std::optional<double>& value);
QString PaddedText(const std::optional<QString>& value);

// --- Standard dial-in --------------------------------------------------------------------------

struct StandardInputs {
    QString oldCorr;  // txtOldCorr
    QString oldEt;    // txtOldET
    QString newCorr;  // txtNewCorr
};
Check StandardCheck(const StandardInputs& in);
// results: txtDialIn.
Outcome StandardDialIn(const StandardInputs& in, Fuel fuel);

// --- Density altitude dial-in ------------------------------------------------------------------

struct DensityAltInputs {
    std::array<QString, 3> da;  // txtDA1..3
    std::array<QString, 3> et;  // txtET1..3
    QString lastRunDa;          // txtLastRunDA
    QString lastRunEt;          // txtLastRunET
    QString newDa;              // txtNewDA
};

// The six setup boxes as the check fills them from the first three stored rows; `tooFew` when
// there are not three rows, and the boxes stay empty.
struct DensityAltSetupBoxes {
    std::array<QString, 3> da;
    std::array<QString, 3> et;
    bool tooFew = false;
};
DensityAltSetupBoxes DensityAltSetupBoxTexts(const SetupRows& rows, bool eighthMile);

Check DensityAltCheck(const DensityAltInputs& in);

struct Slope {
    double value = 0;
    std::optional<QString> info;
    QList<Message> messages;
    QString error;
};
// The average slope of ET over density altitude over every pair of rows, sorted by density
// altitude. `quarterMile` is the quarter-mile option of the program (it only decides whether a
// missing quarter-mile ET is complained about).
Slope DensityAltSlope(const SetupRows& rows, bool quarterMile);

// results: txtDADialIn; info: lbInfo.
Outcome DensityAltDialIn(const DensityAltInputs& in, const SetupRows& rows, bool quarterMile);

// --- Throttle stop timer -----------------------------------------------------------------------

struct ThrottleStopInputs {
    QString oldTimer;              // txtTSOldTimer
    QString oldCorr;               // txtTSOldCorr
    QString oldEt;                 // txtTSOldET
    QString newCorr;               // txtTSNewCorr
    QString desiredEt;             // txtTSDesiredET
    std::array<QString, 2> corr;   // txtTSR1Corr, txtTSR2Corr
    std::array<QString, 2> et;     // txtTSR1ET, txtTSR2ET
    std::array<QString, 2> timer;  // txtTSR1Timer, txtTSR2Timer
};

struct ThrottleStopSetupBoxes {
    std::array<QString, 2> corr;
    std::array<QString, 2> et;
    std::array<QString, 2> timer;
    bool tooFew = false;
};
// The ETs follow the density altitude program's distance option, as the window has it.
ThrottleStopSetupBoxes ThrottleStopSetupBoxTexts(const SetupRows& rows, bool eighthMileDa);

Check ThrottleStopCheck(const ThrottleStopInputs& in, int setupRowCount);
// Seconds of ET per unit of timer between the first two rows sorted by correction factor.
Slope ThrottleStopSlope(const SetupRows& rows, bool quarterMile, bool methanol);
// results: txtTSNewTimer; info: lbTSInfo.
Outcome ThrottleStopTimer(const ThrottleStopInputs& in, const SetupRows& rows, bool quarterMile,
                          bool methanol);

// --- Run completer -----------------------------------------------------------------------------

struct RunCompleterInputs {
    QString oldInterimEt;  // txtOldInterimET
    QString oldFullEt;     // txtOldRCET
    QString oldFullMph;    // txtRCOldFullMPH
    QString newInterimEt;  // txtRCNewInterimET
};
Check RunCompleterCheck(const RunCompleterInputs& in);
// results: txtRCEstET, txtRCEstMPH.
Outcome RunCompleter(const RunCompleterInputs& in);

}  // namespace slipbook::prediction
