#pragma once

// The log of weather readings: every reading the weather window works out, kept with its time,
// and the reading nearest a moment.
//
// Times are wall-clock times without a zone, to the second, held as QDateTime in UTC the way
// the store hands dates out (only .date() and .time() count), so that no daylight-saving gap
// shifts a reading.

#include "store/database.h"
#include "weather/airproperties.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringView>

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace slipbook::weather {

inline constexpr QStringView kSourceStation = u"Station";
inline constexpr QStringView kSourceTyped = u"Typed";

// How far from a run's time the run window looks for a reading, unless the racer says otherwise.
inline constexpr int kDefaultLookupMinutes = 10;
inline constexpr int kMinLookupMinutes = 1;
inline constexpr int kMaxLookupMinutes = 720;

// A figure the row holds no value for.
inline constexpr double kNoFigure = std::numeric_limits<double>::quiet_NaN();
inline bool HasFigure(double value) {
    return !std::isnan(value);
}

struct WeatherReading {
    qint64 id = 0;  // 0 until written
    QDateTime time;
    double temperature = kNoFigure;       // degrees F
    double humidity = kNoFigure;          // percent
    double barometer = kNoFigure;         // in Hg
    double pressureAltitude = kNoFigure;  // feet
    std::array<double, 7> air{kNoFigure, kNoFigure, kNoFigure, kNoFigure,
                              kNoFigure, kNoFigure, kNoFigure};  // in the order of kAirFields
    QString source;

    double corrFactor() const { return air[0]; }
    double densityAltitude() const { return air[1]; }
    // The same figures, a Null where the other holds one too; id, time and source aside.
    bool SameFigures(const WeatherReading& other) const;
};

// A reading as the weather window shows it: the four input texts (temperature, humidity,
// barometer, pressure altitude) and the seven figure texts, each read as the number it shows
// ("1,468" is 1468); a text that is no number is no figure. The time is taken to the second.
WeatherReading ReadingFromTexts(const QDateTime& time, const std::array<QString, 4>& inputs,
                                const AirTexts& figures, QStringView source);

// The station's file is read every 15 seconds while readings come, and a typed reading is worked
// out again each time the racer leaves a box, so steady air would add thousands of identical rows
// a day. A reading whose figures match the last row written, and whose time lies less than a
// minute from that row's, is therefore not written: steady air keeps one row a minute, which any
// look-up window of a minute or more still finds, and every change is written as it comes.
enum class LogResult { Written, SameAsLast };
// One INSERT, after a look at the last row by its key. Throws store::DbError.
LogResult RecordReading(store::Database& db, const WeatherReading& reading);

// The reading nearest `at` within `minutes` either side, both ends included; of two equally near,
// the earlier. Two probes of the time index, each one row: the latest at or before `at`, the
// earliest after it. Empty when none lies within the window.
std::optional<WeatherReading> NearestReading(store::Database& db, const QDateTime& at, int minutes);

// The readings from `from` to `to`, both included, in time order.
std::vector<WeatherReading> ReadingsBetween(store::Database& db, const QDateTime& from,
                                            const QDateTime& to);

struct TimeRange {
    QDateTime from;
    QDateTime to;  // included
};
// A whole day, from midnight to its last second.
TimeRange DayRange(QDate day);
// The days of an event, from its start date to its end date (the start alone when it has no
// end, or an end before the start). Empty when the event is gone or has no date.
std::optional<TimeRange> EventRange(store::Database& db, qint64 eventId);

// The date of a run's date box ("07/04/2026") and the time of its time box ("02:15 PM"); empty
// when the box is blank, half filled or holds no valid date or time.
std::optional<QDate> RunDate(QStringView dateText);
std::optional<QTime> RunTime(QStringView timeText);
// Both together; empty when either is.
std::optional<QDateTime> RunMoment(QStringView dateText, QStringView timeText);
// "07/04/2026 02:15 PM"
QString MomentText(const QDateTime& at);
// "No weather reading within 10 minutes of 07/04/2026 02:15 PM."
QString NoReadingText(int minutes, const QDateTime& at);

// The look-up window the racer set, in minutes, within kMinLookupMinutes..kMaxLookupMinutes. It
// is kept in "Slipbook.ini" beside the logbook; a missing or unreadable file gives the default.
int LookupMinutes(const store::Database& db);
// False when the file could not be written; the window in use stays as given.
bool SetLookupMinutes(const store::Database& db, int minutes);

}  // namespace slipbook::weather
