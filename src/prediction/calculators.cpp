#include "prediction/calculators.h"

#include "common/forms.h"
#include "common/numbers.h"

#include <algorithm>

namespace slipbook::prediction {

namespace {

const QString kInvalidNull = QStringLiteral("Invalid use of Null");
const QString kOverflow = QStringLiteral("Overflow");
const QString kSomeQuarterMissing =
    QStringLiteral("Invalid setup information.  Some quarter mile info is missing.");
const QString kDifferentDa =
    QStringLiteral("Invalid setup information.  Runs must have different density altitudes.");

// The calculators' steps, with the stored rows' Nulls.
class Steps : public CalcSteps {
public:
    // A Null column read straight into a number.
    double Read(const std::optional<double>& value) {
        if (!value) {
            fail(kInvalidNull);
            return 0;
        }
        return *value;
    }
    // a * a < b * b.
    bool IsSmaller(double a, double b) { return mul(a, a) < mul(b, b); }
};

// The power index of an ET, and back.
double PowerOf(Steps& s, double et) {
    return s.div(1, s.pow(s.div(et, kEtPowerBase), 3.0));
}
double EtOf(Steps& s, double power) {
    return s.mul(s.pow(s.div(1, power), kEtPowerRoot), kEtPowerBase);
}

// The ET of `et` at corrections c1 then c2: the reciprocals are kept before they are divided.
double CorrectedEt(Steps& s, double et, double c1, double c2, double factor) {
    const double p1 = PowerOf(s, et);
    const double r2 = s.div(1, c2);
    const double r1 = s.div(1, c1);
    const double r = s.div(r2, r1);
    double p2 = s.mul(p1, r);
    p2 = s.add(s.mul(s.sub(p2, p1), factor), p1);
    return EtOf(s, p2);
}

Check Passed() {
    return {true, QString(), false};
}
Check Failing(const QString& reason) {
    return {false, reason, false};
}
Check CheckStopped(const QString& reason) {
    return {false, reason, true};
}

// The lenient parse of the trimmed text, as the checks take it.
double TrimmedValue(Steps& s, const QString& text) {
    return s.Lenient(TrimSpaces(text));
}
bool TrimmedEmpty(const QString& text) {
    return TrimSpaces(text).isEmpty();
}

// Rows in the order of a query sorted on one column: Nulls first, ties as stored.
SetupRows SortedBy(const SetupRows& rows, std::optional<double> SetupRow::*column) {
    SetupRows sorted = rows;
    std::stable_sort(sorted.begin(), sorted.end(), [column](const SetupRow& a, const SetupRow& b) {
        const auto& x = a.*column;
        const auto& y = b.*column;
        if (!x || !y) {
            return !x && y;
        }
        return *x < *y;
    });
    return sorted;
}

Outcome Stopped(Outcome out, const QString& reason) {
    out.error = reason;
    return out;
}

}  // namespace

double FuelFactor(Fuel fuel) {
    switch (fuel) {
        case Fuel::Gas:
            return 1.0;
        case Fuel::Methanol:
            return 0.58;
        case Fuel::None:
            break;
    }
    return 0;
}

Message EnterAllValuesMessage() {
    return {QStringLiteral("Enter all values before continuing!"), QStringLiteral("Error"),
            MsgIcon::Exclamation};
}

Message NeedSetupMessage() {
    return {QStringLiteral("You must enter setup information for this car before continuing")};
}

std::optional<bool> AllNonZero(std::initializer_list<QStringView> texts) {
    bool all = true;
    for (QStringView text : texts) {
        const auto value = LeadingNumber(text);
        if (!value) {
            return std::nullopt;
        }
        all = all && *value != 0;
    }
    return all;
}

QString ValueText(const std::optional<double>& value) {
    return value ? PlainNumberText(*value) : QString();
}

QString PaddedText(const std::optional<double>& value) {
    return ValueText(value) + u' ';
}

QString PaddedText(const std::optional<QString>& value) {
    return value.value_or(QString()) + u' ';
}

// --- Standard dial-in --------------------------------------------------------------------------

Check StandardCheck(const StandardInputs& in) {
    Steps s;
    const auto check = [&](const QString& text, const char* reason) -> std::optional<Check> {
        const double v = TrimmedValue(s, text);
        if (s.failed()) {
            return CheckStopped(s.error());
        }
        if (v <= 0) {
            return Failing(QString::fromLatin1(reason));
        }
        return std::nullopt;
    };
    if (auto c = check(in.oldCorr, "Oops! Old correction factor is missing")) {
        return *c;
    }
    if (auto c = check(in.oldEt, "Oops! Old ET is missing")) {
        return *c;
    }
    if (auto c = check(in.newCorr, "Oops! Please provide nonzero new correction factor")) {
        return *c;
    }
    return Passed();
}

Outcome StandardDialIn(const StandardInputs& in, Fuel fuel) {
    Outcome out;
    out.results = {QString()};
    const auto entered = AllNonZero({in.oldCorr, in.oldEt, in.newCorr});
    if (!entered) {
        return Stopped(out, kOverflow);
    }
    if (!*entered) {
        out.messages << EnterAllValuesMessage();
        return out;
    }
    Steps s;
    const double c1 = s.Strict(in.oldCorr);
    const double e1 = s.Strict(in.oldEt);
    const double c2 = s.Strict(in.newCorr);
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    const double e2 = s.Round(CorrectedEt(s, e1, c1, c2, FuelFactor(fuel)), 1000);
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    out.results[0] = PlainNumberText(e2);
    return out;
}

// --- Density altitude dial-in ------------------------------------------------------------------

DensityAltSetupBoxes DensityAltSetupBoxTexts(const SetupRows& rows, bool eighthMile) {
    DensityAltSetupBoxes boxes;
    if (rows.size() < 3) {
        boxes.tooFew = true;
        return boxes;
    }
    for (size_t i = 0; i < 3; ++i) {
        // A Null density altitude or quarter-mile ET leaves its box empty, which the check then
        // names, rather than stopping the window.
        boxes.da[i] = ValueText(rows[i].densityAlt);
        boxes.et[i] = eighthMile ? PaddedText(rows[i].eighthEt) : ValueText(rows[i].quarterEt);
    }
    return boxes;
}

Check DensityAltCheck(const DensityAltInputs& in) {
    if (TrimmedEmpty(in.da[0]) || TrimmedEmpty(in.da[1]) || TrimmedEmpty(in.da[2])) {
        return Failing(QStringLiteral("Oops! Three setup runs with nonzero DA required"));
    }
    Steps s;
    const double et1 = TrimmedValue(s, in.et[0]);
    const double et2 = TrimmedValue(s, in.et[1]);
    const double et3 = TrimmedValue(s, in.et[2]);
    if (s.failed()) {
        return CheckStopped(s.error());
    }
    if (et1 <= 0 || et2 <= 0 || et3 <= 0) {
        return Failing(QStringLiteral("Oops! A setup run has no ET"));
    }
    if (TrimmedEmpty(in.lastRunDa)) {
        return Failing(QStringLiteral("Oops! Last run has no DA"));
    }
    const double lastEt = TrimmedValue(s, in.lastRunEt);
    if (s.failed()) {
        return CheckStopped(s.error());
    }
    if (lastEt <= 0) {
        return Failing(QStringLiteral("Oops! Last run has no ET"));
    }
    if (TrimmedEmpty(in.newDa)) {
        return Failing(QStringLiteral("Oops! Please provide new DA"));
    }
    const double newDa = s.Lenient(in.newDa);
    if (s.failed()) {
        return CheckStopped(s.error());
    }
    if (newDa == 0) {
        return Failing(QStringLiteral("Oops! Please provide nonzero new DA"));
    }
    return Passed();
}

namespace {

// The ETs the slope is taken from: the quarter-mile ETs, unless one of them is missing; then
// every row takes its eighth-mile ET, complaining once a row when the quarter mile was asked for.
struct WorkingEts {
    std::vector<double> et;
    std::vector<double> first;  // the column the rows were sorted by
    std::vector<double> timer;
};

WorkingEts ReadWorkingEts(Steps& s, const SetupRows& sorted,
                          std::optional<double> SetupRow::*sortColumn, bool withTimer,
                          bool quarterMile, QList<Message>& messages) {
    WorkingEts w;
    std::vector<double> e14;
    std::vector<double> e18;
    bool quarterMissing = false;
    for (const SetupRow& row : sorted) {
        w.first.push_back(s.Read(row.*sortColumn));
        e14.push_back(s.Read(row.quarterEt));
        e18.push_back(s.Strict(PaddedText(row.eighthEt)));
        if (withTimer) {
            w.timer.push_back(row.timer ? s.Strict(*row.timer) : s.Read(std::nullopt));
        }
        if (s.failed()) {
            return w;
        }
        if (s.Lenient(PlainNumberText(e14.back())) <= 0) {
            quarterMissing = true;
        }
    }
    for (size_t i = 0; i < sorted.size(); ++i) {
        if (quarterMissing) {
            if (quarterMile) {
                messages << Message{kSomeQuarterMissing};
            }
            w.et.push_back(e18[i]);
        } else {
            w.et.push_back(e14[i]);
        }
    }
    return w;
}

// The rows a slope is taken from, sorted on `sortColumn`; none, with the box or the failure in
// `slope`, when there are fewer than two or one can't be read.
std::optional<WorkingEts> ReadSetup(Steps& s, const SetupRows& rows,
                                    std::optional<double> SetupRow::*sortColumn, bool withTimer,
                                    bool quarterMile, Slope& slope) {
    if (rows.size() < 2) {
        slope.messages << NeedSetupMessage();
        return std::nullopt;
    }
    WorkingEts w = ReadWorkingEts(s, SortedBy(rows, sortColumn), sortColumn, withTimer, quarterMile,
                                  slope.messages);
    if (s.failed()) {
        slope.error = s.error();
        return std::nullopt;
    }
    return w;
}

}  // namespace

Slope DensityAltSlope(const SetupRows& rows, bool quarterMile) {
    Slope slope;
    Steps s;
    const auto w = ReadSetup(s, rows, &SetupRow::densityAlt, false, quarterMile, slope);
    if (!w) {
        return slope;
    }
    const std::vector<double>& da = w->first;
    double sum = 0;
    int pairs = 0;
    for (size_t i = 0; i < da.size(); ++i) {
        for (size_t j = i + 1; j < da.size(); ++j) {
            const double d = s.sub(da[i], da[j]);
            const double pairSlope =
                s.IsSmaller(d, 0.001) ? 0 : s.div(s.sub(w->et[i], w->et[j]), d);
            sum = s.add(sum, pairSlope);
            ++pairs;
        }
    }
    const double avg = s.div(sum, pairs);
    double n = 0;
    if (s.IsSmaller(avg, 0.0001)) {
        if (!s.failed()) {
            slope.messages << Message{kDifferentDa};
        }
    } else {
        n = s.div(0.01, avg);
    }
    n = s.floor(n);
    if (s.failed()) {
        slope.error = s.error();
        return slope;
    }
    slope.info = QStringLiteral(".01 sec = ") + PlainNumberText(n) + QStringLiteral("Ft.");
    slope.value = avg;
    return slope;
}

Outcome DensityAltDialIn(const DensityAltInputs& in, const SetupRows& rows, bool quarterMile) {
    Outcome out;
    out.results = {QString()};
    const auto entered = AllNonZero({in.lastRunDa, in.lastRunEt, in.newDa});
    if (!entered) {
        return Stopped(out, kOverflow);
    }
    if (!*entered) {
        out.messages << EnterAllValuesMessage();
        return out;
    }
    Steps s;
    // The boxes' order is the stored order; the slope of the information line sorts its own.
    const auto pairSlope = [&](size_t a, size_t b) {
        const double eta = s.Strict(in.et[a]);
        const double etb = s.Strict(in.et[b]);
        const double daa = s.Strict(in.da[a]);
        const double dab = s.Strict(in.da[b]);
        return s.div(s.sub(eta, etb), s.sub(daa, dab));
    };
    const double s12 = pairSlope(0, 1);
    const double s13 = pairSlope(0, 2);
    const double s23 = pairSlope(1, 2);
    const double m = s.div(s.add(s.add(s12, s13), s23), 3);
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    const Slope avg = DensityAltSlope(rows, quarterMile);
    out.messages << avg.messages;
    if (!avg.error.isEmpty()) {
        return Stopped(out, avg.error);
    }
    out.info = avg.info;
    const double n = s.floor(s.div(0.01, avg.value));
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    out.info = QStringLiteral(".01 sec = ") + PlainNumberText(n) + QStringLiteral("Ft.");
    const double lastEt = s.Strict(in.lastRunEt);
    const double newDa = s.Strict(in.newDa);
    const double lastDa = s.Strict(in.lastRunDa);
    const double dialIn = s.add(lastEt, s.mul(s.sub(newDa, lastDa), m));
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    out.results[0] = ResultText(dialIn, u"###.###");
    return out;
}

// --- Throttle stop timer -----------------------------------------------------------------------

ThrottleStopSetupBoxes ThrottleStopSetupBoxTexts(const SetupRows& rows, bool eighthMileDa) {
    ThrottleStopSetupBoxes boxes;
    if (rows.size() < 2) {
        boxes.tooFew = true;
        return boxes;
    }
    for (size_t i = 0; i < 2; ++i) {
        boxes.corr[i] = PaddedText(rows[i].corrFactor);
        boxes.timer[i] = PaddedText(rows[i].timer);
        boxes.et[i] = ValueText(eighthMileDa ? rows[i].eighthEt : rows[i].quarterEt);
    }
    return boxes;
}

Check ThrottleStopCheck(const ThrottleStopInputs& in, int setupRowCount) {
    Steps s;
    // Empty, or no number, or zero.
    const auto missing = [&](const QString& text) {
        const bool empty = TrimmedEmpty(text);
        return TrimmedValue(s, text) == 0 || empty;
    };
    const auto stopped = [&] { return s.failed(); };
    if (missing(in.oldCorr)) {
        return stopped() ? CheckStopped(s.error())
                         : Failing(QStringLiteral("Oops! Old correction factor is missing or 0"));
    }
    if (missing(in.newCorr)) {
        return stopped() ? CheckStopped(s.error())
                         : Failing(QStringLiteral("Oops! New correction factor is missing or 0"));
    }
    if (stopped()) {
        return CheckStopped(s.error());
    }
    if (TrimmedEmpty(in.oldTimer)) {
        return Failing(QStringLiteral("Oops! Old timer value is missing"));
    }
    if (missing(in.oldEt)) {
        return stopped() ? CheckStopped(s.error())
                         : Failing(QStringLiteral("Oops! Old ET is missing or 0"));
    }
    if (missing(in.desiredEt)) {
        return stopped() ? CheckStopped(s.error())
                         : Failing(QStringLiteral("Oops! Please provide nonzero desired ET"));
    }
    if (stopped()) {
        return CheckStopped(s.error());
    }
    const double et1 = s.Lenient(in.et[0]);
    const double et2 = s.Lenient(in.et[1]);
    if (stopped()) {
        return CheckStopped(s.error());
    }
    if (et1 <= 0 || et2 <= 0 || setupRowCount < 2) {
        return Failing(QStringLiteral("Oops! Two setup runs with nonzero ET required"));
    }
    const double timer1 = s.Lenient(in.timer[0]);
    const double timer2 = s.Lenient(in.timer[1]);
    if (stopped()) {
        return CheckStopped(s.error());
    }
    if (timer1 == timer2) {
        return Failing(QStringLiteral("Oops! Setup runs must have different timer values"));
    }
    return Passed();
}

Slope ThrottleStopSlope(const SetupRows& rows, bool quarterMile, bool methanol) {
    Slope slope;
    Steps s;
    const auto w = ReadSetup(s, rows, &SetupRow::corrFactor, true, quarterMile, slope);
    if (!w) {
        return slope;
    }
    const double factor = FuelFactor(methanol ? Fuel::Methanol : Fuel::Gas);
    // Each of the first two runs' ET as it would have been at a correction factor of 1.0.
    std::array<double, 2> adjusted{};
    for (size_t i = 0; i < 2; ++i) {
        const double p1 = PowerOf(s, w->et[i]);
        const double q = s.div(1, w->first[i]);
        const double z = s.div(1, 1);
        const double r = s.div(z, q);
        double p2 = s.mul(p1, r);
        p2 = s.add(s.mul(s.sub(p2, p1), factor), p1);
        adjusted[i] = EtOf(s, p2);
    }
    const double dE = s.sub(adjusted[0], adjusted[1]);
    const double dT = s.sub(w->timer[0], w->timer[1]);
    const double value = dT == 0 ? 99999 : s.div(dE, dT);
    const double info = s.Round(s.div(dT, s.mul(dE, 100)), 10000);
    if (s.failed()) {
        slope.error = s.error();
        return slope;
    }
    slope.info = QStringLiteral(".01 ET= ") + PlainNumberText(info);
    slope.value = value;
    return slope;
}

Outcome ThrottleStopTimer(const ThrottleStopInputs& in, const SetupRows& rows, bool quarterMile,
                          bool methanol) {
    Outcome out;
    out.results = {QString()};
    const auto entered = AllNonZero({in.oldTimer, in.oldCorr, in.oldEt, in.newCorr, in.desiredEt});
    if (!entered) {
        return Stopped(out, kOverflow);
    }
    if (!*entered) {
        out.messages << EnterAllValuesMessage();
        return out;
    }
    Steps s;
    // Only a test that the setup boxes hold numbers; their values are not used.
    for (size_t i = 0; i < 2; ++i) {
        s.Strict(in.corr[i]);
        s.Strict(in.et[i]);
        s.Strict(in.timer[i]);
    }
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    const Slope slope = ThrottleStopSlope(rows, quarterMile, methanol);
    out.messages << slope.messages;
    if (!slope.error.isEmpty()) {
        return Stopped(out, slope.error);
    }
    out.info = slope.info;
    const double e1 = s.Strict(in.oldEt);
    const double c1 = s.Strict(in.oldCorr);
    const double c2 = s.Strict(in.newCorr);
    const double t1 = s.Strict(in.oldTimer);
    const double desired = s.Strict(in.desiredEt);
    const double e2 = CorrectedEt(s, e1, c1, c2, FuelFactor(methanol ? Fuel::Methanol : Fuel::Gas));
    const double x = s.div(s.sub(desired, e2), slope.value);
    double t2 = s.add(t1, x);
    // Always one thousandth above the rounded timer.
    t2 = s.add(s.Round(t2, 1000), 0.001);
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    out.results[0] = PlainNumberText(t2);
    return out;
}

// --- Run completer -----------------------------------------------------------------------------

Check RunCompleterCheck(const RunCompleterInputs& in) {
    Steps s;
    const std::pair<const QString*, const char*> order[] = {
        {&in.oldInterimEt, "Oops! Old interim ET is missing"},
        {&in.oldFullEt, "Oops! Old full ET is missing"},
        {&in.oldFullMph, "Oops! Old full MPH is missing"},
        {&in.newInterimEt, "Oops! Please provide nonzero new interim ET"},
    };
    for (const auto& [text, reason] : order) {
        const double v = TrimmedValue(s, *text);
        if (s.failed()) {
            return CheckStopped(s.error());
        }
        if (v <= 0) {
            return Failing(QString::fromLatin1(reason));
        }
    }
    return Passed();
}

Outcome RunCompleter(const RunCompleterInputs& in) {
    Outcome out;
    out.results = {QString(), QString()};
    Steps s;
    const double oi = s.Strict(in.oldInterimEt);
    const double of = s.Strict(in.oldFullEt);
    const double mph = s.Strict(in.oldFullMph);
    const double ni = s.Strict(in.newInterimEt);
    const double et = s.Round(s.mul(s.div(of, oi), ni), 1000);
    const double estMph = s.Round(s.div(s.mul(of, mph), et), 100);
    if (s.failed()) {
        return Stopped(out, s.error());
    }
    out.results[0] = ResultText(et, u"###.###");
    out.results[1] = ResultText(estMph, u"###.##");
    return out;
}

}  // namespace slipbook::prediction
