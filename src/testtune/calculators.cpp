#include "testtune/calculators.h"

#include "common/forms.h"

namespace slipbook::testtune {

namespace {

constexpr double kMethanolFactor = 0.58;

bool Filled(QStringView text) {
    return !TrimSpaces(text).isEmpty();
}

// P = 1 / (ET / 5.825)^3.
double PowerIndex(CalcSteps& s, double et) {
    return s.div(1, s.pow(s.div(et, kEtPowerBase), 3));
}

// The ET of a power index: (1 / P)^0.33333333334 * 5.825.
double EtOfPower(CalcSteps& s, double power) {
    return s.mul(s.pow(s.div(1, power), kEtPowerRoot), kEtPowerBase);
}

// The change of the power index that the fuel takes up.
double FuelCorrected(CalcSteps& s, double corrected, double uncorrected, double fuel) {
    return s.add(s.mul(s.sub(corrected, uncorrected), fuel), uncorrected);
}

}  // namespace

double FuelFactor(bool methanol) {
    return methanol ? kMethanolFactor : 1.0;
}

// --- Standard day correction --------------------------------------------------------------------

bool IsStandardDayEnabled(const StandardDayInputs& in) {
    return Filled(in.corr) && Filled(in.et) && Filled(in.mph);
}

CalcResult<StandardDayResult> CalcStandardDay(const StandardDayInputs& in, bool methanol) {
    CalcSteps s;
    const double corr = s.Strict(in.corr);
    const double et = s.Strict(in.et);
    const double mph = s.Strict(in.mph);
    if (s.failed()) {
        return CalcResult<StandardDayResult>::failure(s.error());
    }
    const double p1 = PowerIndex(s, et);
    // Twice the reciprocal: the factor differs from the text's in the last bit, as it always has.
    const double k = s.div(1, s.div(1, corr));
    const double p2 = FuelCorrected(s, s.mul(k, p1), p1, FuelFactor(methanol));
    const double stdEt = EtOfPower(s, p2);
    const double stdMph = s.div(s.mul(et, mph), stdEt);
    const double etShown = s.Round(stdEt, 1000);
    // Rounded to the hundredth here and to the tenth by the format: both roundings show.
    const double mphShown = s.Round(stdMph, 100);
    if (s.failed()) {
        return CalcResult<StandardDayResult>::failure(s.error());
    }
    return StandardDayResult{ResultText(etShown, u"###.###"), ResultText(mphShown, u"###.#")};
}

// --- Intermediate time analysis -----------------------------------------------------------------

CalcResult<double> CorrectTime(double corr, double time, bool methanol) {
    CalcSteps s;
    const double p1 = PowerIndex(s, time);
    const double p2 = FuelCorrected(s, s.mul(corr, p1), p1, FuelFactor(methanol));
    const double result = s.Round(EtOfPower(s, p2), 1000);
    if (s.failed()) {
        return CalcResult<double>::failure(s.error());
    }
    return result;
}

bool IsIntermediateEnabled(const IntermediateInputs& in) {
    for (const QString& t : in.times) {
        if (!Filled(t)) {
            return false;
        }
    }
    // By number: compared as text, a 1000 ft time under 10 s sorted after a quarter over 10 s.
    for (int i = 0; i + 1 < kTimingPoints; ++i) {
        const auto a = LeadingNumber(in.times[i]);
        const auto b = LeadingNumber(in.times[i + 1]);
        if (!a || !b || !(*a < *b)) {
            return false;
        }
    }
    return true;
}

IntermediateResult CalcIntermediateTimes(const IntermediateInputs& in, bool methanol) {
    IntermediateResult out;
    for (int i = 0; i < kTimingPoints; ++i) {
        CalcSteps s;
        const double corr = s.Strict(in.corr);
        const double time = s.Strict(in.times[i]);
        if (s.failed()) {
            out.error = s.error();
            return out;
        }
        const CalcResult<double> r = CorrectTime(corr, time, methanol);
        if (!r) {
            out.error = r.error();
            return out;
        }
        out.times[i] = PlainNumberText(*r);
    }
    return out;
}

// --- Estimated horsepower -----------------------------------------------------------------------

bool IsEstimatedHPEnabled(const EstimatedHpInputs& in) {
    return Filled(in.corr) && Filled(in.et) && Filled(in.weight) &&
           (in.eighthMile || Filled(in.quarterMph));
}

CalcResult<EstimatedHpResult> CalcEstimatedHP(const EstimatedHpInputs& in) {
    CalcSteps s;
    double et = s.Strict(in.et);
    const double weight = s.Strict(in.weight);
    const double corr = s.Strict(in.corr);
    const double mph = in.eighthMile ? 0 : s.Strict(in.quarterMph);
    if (s.failed()) {
        return CalcResult<EstimatedHpResult>::failure(s.error());
    }
    if (in.eighthMile) {
        et = s.div(et, kEighthEtRatio);
    }
    const double hp = s.floor(s.div(weight, s.pow(s.div(et, kEtPowerBase), 3)));
    // The factor acts on the floored figure, and the product is floored again.
    const double corrected = s.floor(s.mul(corr, hp));
    const double mphHp = in.eighthMile ? 0 : s.mul(s.pow(s.div(mph, kMphPowerBase), 3), weight);
    if (s.failed()) {
        return CalcResult<EstimatedHpResult>::failure(s.error());
    }
    EstimatedHpResult out;
    out.estimatedHp = ResultText(hp, u"###");
    out.correctedHp = ResultText(corrected, u"###");
    if (!in.eighthMile) {
        // Rounded by the format, where the other two were floored.
        out.mphHp = ResultText(mphHp, u"###");
    }
    return out;
}

// --- Estimated ET -------------------------------------------------------------------------------

bool IsEstimatedETEnabled(const EstimatedEtInputs& in) {
    return Filled(in.hp) && Filled(in.weight);
}

EstimatedEtResult CalcEstimatedET(const EstimatedEtInputs& in) {
    EstimatedEtResult out;
    CalcSteps s;
    const double hp = s.Strict(in.hp);
    const double weight = s.Strict(in.weight);
    // Each figure goes to its box and the next step reads the box back, so the eighth-mile
    // figures come from the quarter-mile texts before those are rounded. A failing step leaves
    // the boxes written before it.
    const auto write = [&s](double value, QString& box) {
        if (!s.failed()) {
            box = PlainNumberText(value);
        }
    };
    const auto read = [&s](const QString& box) { return s.Strict(box); };
    write(s.mul(s.pow(s.div(weight, hp), kEtPowerRoot), kEtPowerBase), out.quarterEt);
    write(s.mul(read(out.quarterEt), kEighthEtRatio), out.eighthEt);
    write(s.Round(read(out.quarterEt), 100), out.quarterEt);
    write(s.Round(read(out.eighthEt), 100), out.eighthEt);
    write(s.mul(s.pow(s.div(hp, weight), kEtPowerRoot), kMphPowerBase), out.quarterMph);
    write(s.mul(read(out.quarterMph), kEighthMphRatio), out.eighthMph);
    write(s.Round(read(out.quarterMph), 100), out.quarterMph);
    write(s.Round(read(out.eighthMph), 100), out.eighthMph);
    out.error = s.error();
    return out;
}

}  // namespace slipbook::testtune
