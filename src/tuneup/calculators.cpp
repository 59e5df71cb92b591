#include "tuneup/calculators.h"

#include <cmath>

namespace slipbook::tuneup {

namespace {

const QString kOldJetOutOfRange = QStringLiteral("Old Jet Out Of Range: #50 - #100 Only");
const QString kNewJetOutOfRange = QStringLiteral("New Jet Out of Range");
const QString kNotEnoughFuel = QStringLiteral("Not Enough Fuel");

// A band of a jet table: strictly above `above` and strictly below `below`.
struct Band {
    double above;
    double below;
    double base;   // the band's starting value on the other side
    double step;   // flow per jet number
    double start;  // its starting value on this side
};

// Jet number to flow number.
constexpr Band kJetBands[] = {
    {49, 55, 186, 8.9, 50},    {54, 60, 230, 10.8, 55}, {59, 65, 285, 14, 60},
    {64, 70, 357, 18, 65},     {69, 76, 448, 23.8, 70}, {75, 90, 587, 30.5, 76},
    {89, 101, 1014, 62.6, 90},
};
// Flow number back to jet number; not the exact inverse at the edges.
constexpr Band kFlowBands[] = {
    {185, 230, 50, 8.9, 186},     {229, 285, 55, 10.8, 230}, {284, 357, 60, 14, 285},
    {356, 448, 65, 18, 357},      {447, 587, 70, 23.8, 448}, {586, 1014, 76, 30.5, 587},
    {1013, 1700, 90, 62.6, 1014},
};
constexpr double kFlowLow = 185;
constexpr double kFlowHigh = 1700;

// π (d / 2)², the square by the power function.
double CircleArea(CalcSteps& s, double diameter) {
    return s.mul(kPi, s.pow(s.div(diameter, 2), 2));
}

// |T| above the limit: the message, and the result is withheld.
QString TuneAdjustMessage(double tuneAdjust, bool& error) {
    if (std::abs(tuneAdjust) > kTuneAdjustLimit) {
        error = true;
        return TooMuchChangeText();
    }
    return QString();
}

// (new ÷ base + T ÷ 100): the percentage is added to the ratio.
double AdjustedRatio(CalcSteps& s, double newAdr, double baseAdr, double tuneAdjust) {
    const double ratio = s.div(newAdr, baseAdr);
    return s.add(ratio, s.div(tuneAdjust, 100));
}

bool LeadingNonZero(QStringView text) {
    const auto value = LeadingNumber(text);
    return value && *value != 0;
}

template <typename T>
CalcResult<T> Checked(const CalcSteps& s, T result) {
    if (s.failed()) {
        return CalcResult<T>::failure(s.error());
    }
    return result;
}

}  // namespace

QString TooMuchChangeText() {
    return QStringLiteral("Too Much Change: No More Than 10%");
}

bool IsNumeric(QStringView text) {
    return StrictNumber(text).has_value();
}

// --- Holley jet ---------------------------------------------------------------------------------

bool HolleyReady(const HolleyInputs& in) {
    const bool numeric = IsNumeric(in.baseAdr) && IsNumeric(in.newAdr) && IsNumeric(in.baseJet) &&
                         IsNumeric(in.tuneAdjust);
    return numeric && LeadingNonZero(in.baseAdr);
}

double HolleyFlowNumber(double jet) {
    double flow = 0;
    for (const Band& b : kJetBands) {
        if (jet > b.above && jet < b.below) {
            flow = (jet - b.start) * b.step + b.base;
        }
    }
    return flow;
}

namespace {

// The flow number's jet; 0 in no band. The flow is in range here, so nothing can overflow.
double JetOfFlow(double flow) {
    double jet = 0;
    for (const Band& b : kFlowBands) {
        if (flow > b.above && flow < b.below) {
            jet = (flow - b.start) / b.step + b.base;
        }
    }
    return jet;
}

}  // namespace

CalcResult<HolleyResult> CalcHolleyJet(const HolleyInputs& in) {
    CalcSteps s;
    const double baseAdr = s.Strict(in.baseAdr);
    const double newAdr = s.Strict(in.newAdr);
    const double jet = s.Strict(in.baseJet);
    const double tuneAdjust = s.Strict(in.tuneAdjust);
    if (s.failed()) {
        return CalcResult<HolleyResult>::failure(s.error());
    }

    HolleyResult out;
    bool error = false;
    const double oldFlow = HolleyFlowNumber(jet);
    out.tuneAdjustMessage = TuneAdjustMessage(tuneAdjust, error);
    const double flow = s.mul(AdjustedRatio(s, newAdr, baseAdr, tuneAdjust), oldFlow);
    if (s.failed()) {
        return CalcResult<HolleyResult>::failure(s.error());
    }

    if (flow >= kFlowLow && flow < kFlowHigh) {
        if (!(jet >= 50 && jet <= 100)) {
            out.newJetMessage = kOldJetOutOfRange;
            error = true;
        }
    } else {
        out.newJetMessage = kNewJetOutOfRange;
        error = true;
    }

    const double newJet = s.Round(JetOfFlow(flow), 10);
    if (!error) {
        out.newJet = PlainNumberText(newJet);
    }
    return Checked(s, out);
}

// --- Precision jet ------------------------------------------------------------------------------

bool PrecisionReady(const PrecisionInputs& in) {
    const bool numeric = IsNumeric(in.baseAdr) && IsNumeric(in.newAdr) && IsNumeric(in.baseJet) &&
                         IsNumeric(in.tuneAdjust);
    return numeric && LeadingNonZero(in.baseAdr);
}

CalcResult<PrecisionResult> CalcPrecisionJet(const PrecisionInputs& in) {
    CalcSteps s;
    const double baseAdr = s.Strict(in.baseAdr);
    const double newAdr = s.Strict(in.newAdr);
    const double diameter = s.Strict(in.baseJet);
    const double tuneAdjust = s.Strict(in.tuneAdjust);
    if (s.failed()) {
        return CalcResult<PrecisionResult>::failure(s.error());
    }

    PrecisionResult out;
    bool error = false;
    const double area = CircleArea(s, diameter);
    out.tuneAdjustMessage = TuneAdjustMessage(tuneAdjust, error);
    const double newArea = s.mul(AdjustedRatio(s, newAdr, baseAdr, tuneAdjust), area);
    const double newDiameter = s.Round(s.mul(2, s.sqrt(s.div(newArea, kPi))), 1000);
    if (!error) {
        out.newJet = PlainNumberText(newDiameter);
    }
    return Checked(s, out);
}

// --- Fuel injection -----------------------------------------------------------------------------

bool FuelInjectionReady(const FuelInjectionInputs& in) {
    const bool numeric = IsNumeric(in.area) && IsNumeric(in.newArea) && IsNumeric(in.baseBoost) &&
                         IsNumeric(in.basePill) && IsNumeric(in.newAdr) && IsNumeric(in.baseAdr) &&
                         IsNumeric(in.newBoost) && IsNumeric(in.tuneAdjust);
    return numeric && LeadingNonZero(in.area);
}

namespace {

double BoostFactor(CalcSteps& s, double b) {
    double g = s.add(s.mul(-0.00349462, s.pow(b, 2)), s.sub(s.mul(0.0571645, b), 0.000491801));
    g = s.add(g, s.mul(0.00013143, s.pow(b, 3)));
    g = s.add(g, s.mul(-2.47833e-06, s.pow(b, 4)));
    return s.add(g, s.mul(1.79025e-08, s.pow(b, 5)));
}

}  // namespace

double BoostFactor(double boost) {
    CalcSteps s;
    return BoostFactor(s, boost);
}

CalcResult<FuelInjectionResult> CalcFuelInjection(const FuelInjectionInputs& in) {
    CalcSteps s;
    const double area = s.Strict(in.area);
    const double pill = s.Strict(in.basePill);
    const double baseAdr = s.Strict(in.baseAdr);
    const double newAdr = s.Strict(in.newAdr);
    const double baseBoost = s.Strict(in.baseBoost);
    const double newBoost = s.Strict(in.newBoost);
    const double tuneAdjust = s.Strict(in.tuneAdjust);
    s.Strict(in.newArea);
    if (s.failed()) {
        return CalcResult<FuelInjectionResult>::failure(s.error());
    }

    FuelInjectionResult out;
    bool error = false;
    const double pillArea = CircleArea(s, pill);
    out.tuneAdjustMessage = TuneAdjustMessage(tuneAdjust, error);
    // The ADRs are differenced, so this relies on their being in percent.
    const double airTerm = s.div(s.sub(s.sub(baseAdr, newAdr), tuneAdjust), 100);
    double z = s.add(s.mul(airTerm, s.add(area, pillArea)), pillArea);
    const double gb = BoostFactor(s, baseBoost);
    const double gn = BoostFactor(s, newBoost);
    z = s.add(s.mul(s.div(s.sub(gb, gn), gb), s.add(s.mul(z, gb), area)), z);
    // The nozzle areas here by their leading numbers, as the boxes read.
    const double nozzleRatio = s.div(s.Lenient(in.newArea), s.Lenient(in.area));
    z = s.mul(nozzleRatio, z);
    if (s.failed()) {
        return CalcResult<FuelInjectionResult>::failure(s.error());
    }

    if (z < 0) {
        out.newPillMessage = kNotEnoughFuel;
        error = true;
    }
    if (error) {
        return out;
    }
    const double newPill = s.Round(s.mul(2, s.sqrt(s.div(z, kPi))), 1000);
    out.newPill = PlainNumberText(newPill);
    return Checked(s, out);
}

// --- Nozzles ------------------------------------------------------------------------------------

QString NozzleColumn(int position, int nozzle) {
    static const char* const kPrefixes[] = {"sBlowerNozzle", "sHatNozzle", "sHeadNozzle",
                                            "sManifoldNozzle"};
    return QLatin1String(kPrefixes[position - 1]) + QString::number(nozzle) + QLatin1String("_val");
}

QString NozzlePositionCaption(int position) {
    static const char* const kCaptions[] = {"Blower Nozzles", "Hat Nozzles", "Head Nozzles",
                                            "Manifold Nozzles"};
    return QLatin1String(kCaptions[position - 1]);
}

CalcResult<NozzleAreas> CalcNozzleArea(const NozzleTable& table, int position) {
    constexpr double kAreaScale = 10000000;
    CalcSteps s;
    NozzleAreas out;
    double total = 0;
    for (int t = 1; t <= kNozzlePositions; ++t) {
        double subtotal = 0;
        for (const QString& text : table[t - 1]) {
            const double d = s.Lenient(text);
            if (d != 0) {
                subtotal = s.add(subtotal, CircleArea(s, d));
            }
        }
        if (t == position) {
            const double shown = s.Round(subtotal, kAreaScale);
            out.typeArea = PlainNumberText(shown);
            out.typeDiameter = PlainNumberText(s.mul(2, s.pow(s.div(shown, kPi), 0.5)));
        }
        total = s.add(total, subtotal);
    }
    total = s.Round(total, kAreaScale);
    out.totalArea = PlainNumberText(total);
    out.totalDiameter = PlainNumberText(s.Round(s.mul(2, s.pow(s.div(total, kPi), 0.5)), 1000));
    return Checked(s, out);
}

}  // namespace slipbook::tuneup
