#pragma once

// The checks a run passes before it is saved, in their order, with the message each failure
// shows and the field that then takes the focus; and the ranges of the typed weather.

#include "run/fieldtable.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace slipbook::run {

// What the checks read of the window.
struct RunCheckInput {
    QString runNumber;
    bool eventSelected = false;
    bool carSelected = false;
    QString date;  // as the masked box shows it
    QString time;
    bool runTypeSelected = false;
    bool opponentSelected = false;
    QString temperature;
    QString humidity;
    QString barometer;
};

struct RunCheck {
    const char* message;
    const char* focus;  // the control that takes the focus
};

// The ten checks in order. The first, a missing run number, also fills in the next number.
const std::array<RunCheck, 10>& RunChecks();
inline constexpr int kCheckRunNumber = 0;

// The index of the first check that fails; empty when the run may be saved.
std::optional<int> FirstFailedCheck(const RunCheckInput& input);

// A number field whose text the logbook can't keep: no number at all, or beyond what its column
// holds (a whole number of 32 bits, a single, a finite double). The message names the field.
struct NumberProblem {
    const RunField* field;
    QString message;
};
// Checked after the ten checks, over every number field in the window's order.
std::optional<NumberProblem> FirstBadNumber(const RunValues& values);
// The field's caption as a message names it: "Points" for "Points:".
QString FieldName(const RunField& field);

// The range a typed weather value must lie in, bounds included; 0 stands for not entered.
struct WeatherRange {
    const char* control;
    double low;
    double high;
    const char* message;
};
const std::array<WeatherRange, 3>& WeatherRanges();
const WeatherRange* WeatherRangeOf(QStringView control);
// True when the leading number of the text is not 0 and lies outside the range.
bool OutOfRange(const WeatherRange& range, QStringView text);

}  // namespace slipbook::run
