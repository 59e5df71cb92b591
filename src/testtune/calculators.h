#pragma once

// The four test-and-tune programs: standard day correction, intermediate time analysis,
// estimated horsepower and estimated ET. Each takes the texts of its window's boxes as they
// stand and gives back the texts the window shows; where the arithmetic itself fails (a text
// that is no number, a division by zero, a result beyond a double) the reason instead. No state,
// no windows, no database.

#include "common/numbers.h"

#include <QString>
#include <QStringView>

#include <array>

namespace slipbook::testtune {

// The ET-to-power law: P = 1 / (ET / 5.825)^3 and back with this exponent, not a third.
inline constexpr double kEtPowerBase = 5.825;
inline constexpr double kEtPowerRoot = 0.33333333334;
// The MPH law: MPH = 234 (HP / weight)^(1/3).
inline constexpr double kMphPowerBase = 234;
// Eighth mile to quarter mile.
inline constexpr double kEighthEtRatio = 0.635;
inline constexpr double kEighthMphRatio = 0.82;

// Methanol responds to 58 percent of a change in the air.
double FuelFactor(bool methanol);

// --- Standard day correction --------------------------------------------------------------------

struct StandardDayInputs {
    QString corr;  // txtStdCorr
    QString et;    // txtStdET
    QString mph;   // txtStdMPH
};
struct StandardDayResult {
    QString et;   // txtStdStdET
    QString mph;  // txtStdStdMPH
};
bool IsStandardDayEnabled(const StandardDayInputs& in);
CalcResult<StandardDayResult> CalcStandardDay(const StandardDayInputs& in, bool methanol);

// --- Intermediate time analysis -----------------------------------------------------------------

inline constexpr int kTimingPoints = 5;  // 60', 330', 660', 1000', 1320'

struct IntermediateInputs {
    QString corr;                              // txtITCorr
    std::array<QString, kTimingPoints> times;  // txtIT60 ... txtIT1320
};
// One point corrected to the standard day, rounded to the thousandth.
CalcResult<double> CorrectTime(double corr, double time, bool methanol);
// Every box filled and each time below the next, by their leading numbers.
bool IsIntermediateEnabled(const IntermediateInputs& in);
// The points are done one by one: a point that fails leaves the ones before it written.
struct IntermediateResult {
    std::array<QString, kTimingPoints> times;  // txtIT60Result ...; empty from the failure on
    QString error;                             // empty when every point was done
};
IntermediateResult CalcIntermediateTimes(const IntermediateInputs& in, bool methanol);

// --- Estimated horsepower -----------------------------------------------------------------------

struct EstimatedHpInputs {
    QString et;               // txtEHPET
    QString quarterMph;       // txtEHP14MPH, read on the quarter mile only
    QString weight;           // txtEHPWeight
    QString corr;             // txtEHPCorr
    bool eighthMile = false;  // opt18Mile: the ET is an eighth-mile one
};
struct EstimatedHpResult {
    QString estimatedHp;  // txtEHPEstimatedHP
    QString correctedHp;  // txtEHPCorrectedHP
    QString mphHp;        // txtEHPMPHHP, empty on the eighth mile
};
bool IsEstimatedHPEnabled(const EstimatedHpInputs& in);
CalcResult<EstimatedHpResult> CalcEstimatedHP(const EstimatedHpInputs& in);

// --- Estimated ET -------------------------------------------------------------------------------

struct EstimatedEtInputs {
    QString hp;      // txtEETEstHP
    QString weight;  // txtEETEstWeight
};
// The four boxes, written one after the other; a step that fails leaves the earlier ones.
struct EstimatedEtResult {
    QString quarterEt;   // txtEET14MileEt
    QString eighthEt;    // txtEET18MileEt
    QString quarterMph;  // txtEET14MileMPH
    QString eighthMph;   // txtEET18MileMPH
    QString error;       // empty when all were written
};
bool IsEstimatedETEnabled(const EstimatedEtInputs& in);
EstimatedEtResult CalcEstimatedET(const EstimatedEtInputs& in);

}  // namespace slipbook::testtune
