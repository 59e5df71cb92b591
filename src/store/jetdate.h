#pragma once

#include "common/dates.h"

#include <QDateTime>
#include <QString>
#include <optional>

namespace slipbook::store {

// Dates and times are stored as text "YYYY-MM-DD HH:MM:SS"; a bare time sits on 1899-12-30,
// the engine's day zero, and a bare date at midnight, so that text order is time order.
QString DateTimeToStorage(const QDateTime& value);
std::optional<QDateTime> DateTimeFromStorage(QStringView text);

// The day a bare time stands on.
using ::slipbook::DayZero;

// Reads the text between the '#' of a date literal, or a date text assigned to a date column:
// month first ("7/4/2003", "07/04/2003 10:30:00 PM"), a bare time ("10:30 AM", "22:15"),
// or ISO ("2003-07-04", "2003-07-04 10:30:00"). Empty when the text is no date or time.
std::optional<QDateTime> ParseJetDateText(QStringView text);

}  // namespace slipbook::store
