#pragma once

// The three tune-up programs: Holley jet change, precision jet change and fuel-injection pill
// change, with the nozzle areas behind the last. Each takes the texts of its window's boxes as
// they stand and gives back what the window shows; where the arithmetic itself fails (a text
// that is no number, a division by zero, the root of a negative number) the reason instead. No
// state, no windows, no database.

#include "common/numbers.h"

#include <QString>
#include <QStringView>

#include <array>

namespace slipbook::tuneup {

// Not the full-precision value: every tune-up figure is computed with this one.
inline constexpr double kPi = 3.14159265358979;
// The tuner's correction may be at most this many percent either way.
inline constexpr double kTuneAdjustLimit = 10;

QString TooMuchChangeText();  // "Too Much Change: No More Than 10%"

// A text the programs accept as a number: sign, point, grouping commas, exponent; not empty.
bool IsNumeric(QStringView text);

// --- Holley jet ---------------------------------------------------------------------------------

struct HolleyInputs {
    QString baseAdr;     // txtBaseADR
    QString newAdr;      // txtNewADR
    QString baseJet;     // txtBaseJet
    QString tuneAdjust;  // txtTuneAdjust
};
struct HolleyResult {
    QString newJet;             // txtNewJet
    QString tuneAdjustMessage;  // lblHolleyTuneAdjust
    QString newJetMessage;      // lblNewJet
};
// Whether the calculation may run; manual set-up is left to the window.
bool HolleyReady(const HolleyInputs& in);
// The flow number of a jet by the band table; 0 outside every band.
double HolleyFlowNumber(double jet);
CalcResult<HolleyResult> CalcHolleyJet(const HolleyInputs& in);

// --- Precision jet ------------------------------------------------------------------------------

struct PrecisionInputs {
    QString baseAdr;     // txtPreBaseADR
    QString newAdr;      // txtPreNewADR
    QString baseJet;     // txtPreBaseJet, a diameter
    QString tuneAdjust;  // txtPreTuneAdjust
};
struct PrecisionResult {
    QString newJet;             // txtPreNewJet
    QString tuneAdjustMessage;  // lblPreTuneAdjust
};
bool PrecisionReady(const PrecisionInputs& in);
CalcResult<PrecisionResult> CalcPrecisionJet(const PrecisionInputs& in);

// --- Fuel injection -----------------------------------------------------------------------------

struct FuelInjectionInputs {
    QString area;        // txtFIArea, the old total nozzle area
    QString basePill;    // txtFIBasePill
    QString baseAdr;     // txtFIBaseADR
    QString newAdr;      // txtFINewADR
    QString baseBoost;   // txtFIBaseBoost
    QString newBoost;    // txtFINewBoost
    QString tuneAdjust;  // txtFITuneAdjust
    QString newArea;     // txtNewFIArea
};
struct FuelInjectionResult {
    QString newPill;            // txtFINewPill
    QString tuneAdjustMessage;  // lblFITuneAdjust
    QString newPillMessage;     // lblFINewPill
};
bool FuelInjectionReady(const FuelInjectionInputs& in);
// The fuel flow factor of a boost, the fifth-degree polynomial summed in its fixed order.
double BoostFactor(double boost);
CalcResult<FuelInjectionResult> CalcFuelInjection(const FuelInjectionInputs& in);

// --- Nozzles ------------------------------------------------------------------------------------

// Positions as the nozzle list numbers them; the table's index is the position less one.
enum class NozzlePosition { Blower = 1, Hat = 2, Head = 3, Manifold = 4 };
inline constexpr int kNozzlePositions = 4;
inline constexpr int kNozzlesPerPosition = 8;
// Diameters as typed, by position and nozzle.
using NozzleTable = std::array<std::array<QString, kNozzlesPerPosition>, kNozzlePositions>;

// The column of a nozzle: "sBlowerNozzle1_val" for position 1, nozzle 1.
QString NozzleColumn(int position, int nozzle);
// The nozzle list's entry for a position: "Blower Nozzles" ...
QString NozzlePositionCaption(int position);

struct NozzleAreas {
    QString typeArea;       // txtTypeArea / txtNewTypeArea
    QString typeDiameter;   // txtTypeDiameter / txtNewTypeDiameter
    QString totalArea;      // txtFIArea / txtNewFIArea
    QString totalDiameter;  // txtDiameter / txtNewDiameter
};
// The areas of the table, with the subtotal of `position` (1 to 4).
CalcResult<NozzleAreas> CalcNozzleArea(const NozzleTable& table, int position);

}  // namespace slipbook::tuneup
