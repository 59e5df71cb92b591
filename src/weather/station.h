#pragma once

// The link to the weather station program. The two programs share nothing but a directory and
// three small text files in it: the station leaves its latest reading and the reading the user
// pointed at, and the logbook leaves a text for the station to page out. A file's existence is
// the message; a missing directory, a missing file or one the station still holds is simply no
// new reading.
//
// Beside the files, the decisions of the weather window that don't need a widget: what a
// recalculation shows and whether it is pushed on, and the rhythm of the polling.

#include "common/numbers.h"
#include "weather/airproperties.h"

#include <QDateTime>
#include <QString>
#include <QStringView>

#include <array>

namespace slipbook::weather {

// The latest reading, for live weather; the weather window deletes it after each read.
inline constexpr QStringView kLatestReadingFile = u"Barometrix_Weather.txt";
// The reading the user pointed at in the station program, for the run window.
inline constexpr QStringView kChosenReadingFile = u"Barometrix_GetWeather.txt";
// What the station is to page out.
inline constexpr QStringView kPageFile = u"Barometrix_Page.txt";
inline constexpr QStringView kPagePrefix = u"PREFIX_REGULAR_BAROMETRIX_PAGING";

QString StationFilePath(const QString& directory, QStringView fileName);

// One look at a station file.
struct StationRead {
    // False when the file could not be opened: absent, held by the station, no directory.
    bool opened = false;
    // Line 2 of the file, or line 1 when the file has one line only; empty for an empty file.
    QString record;
};

enum class AfterRead { Keep, Delete };

// Reads the record of a reading file. A half-written file is read as far as it goes. A failed
// delete is ignored: the next look finds the same reading again.
StationRead ReadStationRecord(const QString& path, AfterRead after);
// The latest reading, deleted after it was read.
StationRead ReadLatestReading(const QString& directory);
// The chosen reading; it stays in place.
StationRead ReadChosenReading(const QString& directory);
// Removes an old chosen reading before a new request, so it can't be taken for the answer.
void ClearChosenReading(const QString& directory);

// The fields of a record, in order temperature, humidity, barometric pressure, as untrimmed
// texts. `count` tells how many of them the record filled before the split stopped; a record
// with too few fields hands its last field on, so "x, 70" gives 70 three times.
struct StationFields {
    int count = 0;
    std::array<QString, 3> texts;
    bool complete() const { return count == 3; }
};
StationFields ParseStationRecord(QStringView record);

// The pressure altitude text derived from a barometer text, as the windows write it: the
// barometer strictly converted and re-texted, through the polynomial, as plain number text.
CalcResult<QString> PressureAltitudeText(QStringView barometerText);
// The barometer text derived from a pressure altitude text, as plain number text.
CalcResult<QString> BarometerText(QStringView altitudeText);

// The text paged out: the prefix, a blank, the lead-in, and a line ending.
QString PageRecord(const QString& leadin);
// Replaces the page file. False when it could not be written; callers stay silent about it.
bool WritePageFile(const QString& directory, const QString& leadin);

// Brings the station program's window to the front where the platform allows it; elsewhere it
// does nothing.
void BringStationForward();

// What a recalculation of the weather window does with its three input texts.
struct Recalculation {
    enum class Kind {
        Zeros,     // temperature or barometer not above zero: seven "0", nothing pushed
        Computed,  // the seven figures, to be pushed to the other windows
        Failed,    // not calculated: the figures stay, `reason` names the input at fault
    };
    Kind kind = Kind::Zeros;
    AirTexts texts;
    QString reason;

    bool failed() const { return kind == Kind::Failed; }
    bool pushes() const { return kind == Kind::Computed; }
};
Recalculation PlanRecalculation(QStringView temperatureText, QStringView humidityText,
                                QStringView barometerText);

// What the weather window does with a station record. A reading is used whole or not at all,
// so the inputs never stand beside figures that were not calculated from them.
struct StationReading {
    enum class Kind {
        Nothing,  // no field in the record: no input changes, silently
        NotUsed,  // inputs and figures stay as they were; `reason` says why
        Used,     // the four inputs, then the recalculation from them
    };
    Kind kind = Kind::Nothing;
    std::array<QString, 4> inputs;  // temperature, humidity, barometer, pressure altitude
    Recalculation recalculation;
    QString reason;
};
StationReading PlanStationReading(QStringView record);

// Why a field's text can't be used: "humidity is empty", "barometric pressure "x" is not a
// number".
QString NotANumberReason(QStringView fieldName, QStringView text);

// The polling rhythm, in milliseconds.
inline constexpr int kPollFast = 1000;
inline constexpr int kPollSlow = 15000;

// The interval that follows a tick. After a good read the next look comes 15 seconds later;
// while the file stays away the wait alternates between 15 seconds and 1 second. A tick in
// manual mode, which doesn't look, sets 15 seconds.
int NextPollInterval(int previousInterval, bool liveWeather, bool fileOpened);

// "Mon 07/04/2005 at 03:05:09 PM": when the weather was last recalculated.
QString WeatherTimeText(const QDateTime& now);
// The time as "hh:mm" (24-hour), then the eleven box texts, joined by tabs.
QString WeatherRecordText(const QDateTime& now, const std::array<QString, 11>& boxTexts);

}  // namespace slipbook::weather
