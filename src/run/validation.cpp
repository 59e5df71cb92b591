#include "run/validation.h"

#include "common/forms.h"
#include "common/numbers.h"

#include <QVariant>

namespace slipbook::run {

namespace {

bool RangeFails(const char* control, const QString& text) {
    return OutOfRange(*WeatherRangeOf(QString::fromLatin1(control)), text);
}

}  // namespace

const std::array<RunCheck, 10>& RunChecks() {
    static const std::array<RunCheck, 10> checks = {{
        {"Run Number Must Be Entered", "txtRunNumber"},
        {"Event Must Be Selected", "cboEvents"},
        {"Car Must Be Selected", "cboCars"},
        {"Invalid Date, Use MM/DD/YYYY Format", "mebRun_dt"},
        {"Invalid Time, Use HH:MM am/pm Format", "mebRun_tm"},
        {"Run Type Must Be Selected", "cboRunTypes"},
        {"Opponent Must Be Selected", "cboOpponents"},
        {"Valid Temperature Range 32-120", "txtTemp"},
        {"Valid Humidity Range 0-100", "txtHumidity"},
        {"Valid Air Pressure Range 20-31.5", "txtBarometricPressure"},
    }};
    return checks;
}

std::optional<int> FirstFailedCheck(const RunCheckInput& in) {
    // A number too large for the lenient parse is no run number either.
    const bool fails[] = {
        LeadingNumber(in.runNumber).value_or(0) <= 0,
        !in.eventSelected,
        !in.carSelected,
        !IsBlankOrDate(in.date, kDateMaskEmpty),
        !IsBlankOrDate(in.time, kTimeMaskEmpty),
        !in.runTypeSelected,
        !in.opponentSelected,
        RangeFails("txtTemp", in.temperature),
        RangeFails("txtHumidity", in.humidity),
        RangeFails("txtBarometricPressure", in.barometer),
    };
    for (int i = 0; i < static_cast<int>(std::size(fails)); ++i) {
        if (fails[i]) {
            return i;
        }
    }
    return std::nullopt;
}

const std::array<WeatherRange, 3>& WeatherRanges() {
    static const std::array<WeatherRange, 3> ranges = {{
        {"txtTemp", 32, 120, "Valid Temperature Range 32-120"},
        {"txtHumidity", 0, 100, "Valid Humidity Range 0-100"},
        {"txtBarometricPressure", 20, 31.5, "Valid Air Pressure Range 20-31.5"},
    }};
    return ranges;
}

const WeatherRange* WeatherRangeOf(QStringView control) {
    for (const WeatherRange& r : WeatherRanges()) {
        if (control == QLatin1String(r.control)) {
            return &r;
        }
    }
    return nullptr;
}

bool OutOfRange(const WeatherRange& range, QStringView text) {
    const auto value = LeadingNumber(text);
    if (!value) {
        return true;  // beyond any number
    }
    return *value != 0 && (*value < range.low || *value > range.high);
}

namespace {

StoredNumber ColumnOf(const RunField& f) {
    // Whole-number columns carry the "l" of a long.
    if (f.save == SaveForm::Long || f.column.startsWith(u'l')) {
        return StoredNumber::Long;
    }
    return f.save == SaveForm::Single ? StoredNumber::Single : StoredNumber::Double;
}

bool IsNumberField(const RunField& f) {
    return !f.control.isEmpty() &&
           (f.save == SaveForm::Num || f.save == SaveForm::Long || f.save == SaveForm::Single);
}

}  // namespace

QString FieldName(const RunField& field) {
    QString name = field.caption;
    name.remove(u'&');
    name = name.simplified();
    if (name.endsWith(u':')) {
        name.chop(1);
    }
    return name;
}

std::optional<NumberProblem> FirstBadNumber(const RunValues& values) {
    for (const RunField& f : RunFields()) {
        if (!IsNumberField(f)) {
            continue;
        }
        if (auto message = NumberEntryProblem(FieldName(f), values.text(f.column), ColumnOf(f))) {
            return NumberProblem{&f, *message};
        }
    }
    return std::nullopt;
}

}  // namespace slipbook::run
