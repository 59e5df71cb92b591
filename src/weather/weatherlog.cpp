#include "weather/weatherlog.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "store/jetdate.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>

#include <algorithm>
#include <cstdlib>

namespace slipbook::weather {

namespace {

const QString kValueColumns = QStringLiteral(
    "dtReading_dt, iTemp_val, iHumidity_val, iBarometricPressure_val, iPressureAltitude_val, "
    "iCorrFactor_val, iDensityAlt_val, iAirDensity_val, iVaporPressure_val, iDryBarometer_val, "
    "iDewPoint_val, iWetBulbTemp_val, sSource_nm");
const QString kColumns = QStringLiteral("lWeatherLog_id, ") + kValueColumns;
// Where the figures stand in kColumns: the four inputs, then the seven in kAirFields' order.
constexpr int kFirstFigure = 2;

const QLocale& UsLocale() {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

QDateTime ToSecond(const QDateTime& at) {
    const QTime t = at.time();
    return QDateTime(at.date(), QTime(t.hour(), t.minute(), t.second()), Qt::UTC);
}

QString Literal(const QDateTime& at) {
    return u'#' + store::DateTimeToStorage(at) + u'#';
}

QString NumberLiteral(double value) {
    return HasFigure(value) ? PlainNumberText(value) : QStringLiteral("Null");
}

double Figure(QStringView text) {
    return StrictNumber(text).value_or(kNoFigure);
}

int Digits(QStringView s, qsizetype at, qsizetype count) {
    int value = 0;
    for (qsizetype i = at; i < at + count; ++i) {
        const char16_t c = s[i].unicode();
        if (c < u'0' || c > u'9') {
            return -1;
        }
        value = value * 10 + (c - u'0');
    }
    return value;
}

// The store's "YYYY-MM-DD HH:MM:SS", read without a pattern match: a day's list reads thousands.
QDateTime StoredTime(const QString& text) {
    if (text.size() == 19 && text[4] == u'-' && text[7] == u'-' && text[10] == u' ' &&
        text[13] == u':' && text[16] == u':') {
        const QDate d(Digits(text, 0, 4), Digits(text, 5, 2), Digits(text, 8, 2));
        const QTime t(Digits(text, 11, 2), Digits(text, 14, 2), Digits(text, 17, 2));
        if (d.isValid() && t.isValid()) {
            return QDateTime(d, t, Qt::UTC);
        }
    }
    return store::DateTimeFromStorage(text).value_or(QDateTime());
}

WeatherReading ReadRow(const store::Query& q) {
    WeatherReading r;
    r.id = q.Integer(0);
    r.time = StoredTime(q.Text(1));
    const auto figure = [&q](int column) { return q.IsNull(column) ? kNoFigure : q.Real(column); };
    r.temperature = figure(kFirstFigure);
    r.humidity = figure(kFirstFigure + 1);
    r.barometer = figure(kFirstFigure + 2);
    r.pressureAltitude = figure(kFirstFigure + 3);
    for (size_t i = 0; i < r.air.size(); ++i) {
        r.air[i] = figure(kFirstFigure + 4 + static_cast<int>(i));
    }
    r.source = q.Text(kFirstFigure + 11);
    return r;
}

std::optional<WeatherReading> FirstRow(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    if (!q.Next()) {
        return std::nullopt;
    }
    return ReadRow(q);
}

bool SameFigure(double a, double b) {
    return HasFigure(a) ? a == b : !HasFigure(b);
}

QString SettingsPath(const store::Database& db) {
    if (db.Name().isEmpty()) {
        return QString();
    }
    return QFileInfo(db.Name()).absoluteDir().filePath(QStringLiteral("Slipbook.ini"));
}

const QString kLookupKey = QStringLiteral("WeatherLog/LookupMinutes");

}  // namespace

bool WeatherReading::SameFigures(const WeatherReading& other) const {
    if (!SameFigure(temperature, other.temperature) || !SameFigure(humidity, other.humidity) ||
        !SameFigure(barometer, other.barometer) ||
        !SameFigure(pressureAltitude, other.pressureAltitude)) {
        return false;
    }
    for (size_t i = 0; i < air.size(); ++i) {
        if (!SameFigure(air[i], other.air[i])) {
            return false;
        }
    }
    return true;
}

WeatherReading ReadingFromTexts(const QDateTime& time, const std::array<QString, 4>& inputs,
                                const AirTexts& figures, QStringView source) {
    WeatherReading r;
    r.time = ToSecond(time);
    r.temperature = Figure(inputs[0]);
    r.humidity = Figure(inputs[1]);
    r.barometer = Figure(inputs[2]);
    r.pressureAltitude = Figure(inputs[3]);
    for (size_t i = 0; i < r.air.size(); ++i) {
        r.air[i] = Figure(figures[i]);
    }
    r.source = source.toString();
    return r;
}

LogResult RecordReading(store::Database& db, const WeatherReading& reading) {
    const QDateTime at = ToSecond(reading.time);
    const auto last = FirstRow(db, QStringLiteral("SELECT ") + kColumns +
                                       QStringLiteral(" FROM tblWeatherLog ORDER BY "
                                                      "lWeatherLog_id DESC LIMIT 1"));
    if (last && last->time.isValid() && std::abs(last->time.secsTo(at)) < 60 &&
        last->SameFigures(reading)) {
        return LogResult::SameAsLast;
    }
    QString sql = QStringLiteral("INSERT INTO tblWeatherLog (") + kValueColumns +
                  QStringLiteral(") VALUES (") + Literal(at);
    for (double v :
         {reading.temperature, reading.humidity, reading.barometer, reading.pressureAltitude}) {
        sql += QStringLiteral(", ") + NumberLiteral(v);
    }
    for (double v : reading.air) {
        sql += QStringLiteral(", ") + NumberLiteral(v);
    }
    sql += QStringLiteral(", '") + QuoteDouble(reading.source) + QStringLiteral("')");
    db.Execute(sql);
    return LogResult::Written;
}

std::optional<WeatherReading> NearestReading(store::Database& db, const QDateTime& at,
                                             int minutes) {
    const QDateTime moment = ToSecond(at);
    const qint64 window = qint64{std::max(minutes, 0)} * 60;
    const QString select = QStringLiteral("SELECT ") + kColumns +
                           QStringLiteral(" FROM tblWeatherLog WHERE dtReading_dt ");
    const auto before = FirstRow(db, select + QStringLiteral("<= ") + Literal(moment) +
                                         QStringLiteral(" AND dtReading_dt >= ") +
                                         Literal(moment.addSecs(-window)) +
                                         QStringLiteral(" ORDER BY dtReading_dt DESC LIMIT 1"));
    const auto after =
        FirstRow(db, select + QStringLiteral("> ") + Literal(moment) +
                         QStringLiteral(" AND dtReading_dt <= ") + Literal(moment.addSecs(window)) +
                         QStringLiteral(" ORDER BY dtReading_dt LIMIT 1"));
    if (!before || !after) {
        return before ? before : after;
    }
    // A tie goes to the earlier reading: the air the car ran in had been measured.
    return before->time.secsTo(moment) <= moment.secsTo(after->time) ? before : after;
}

std::vector<WeatherReading> ReadingsBetween(store::Database& db, const QDateTime& from,
                                            const QDateTime& to) {
    std::vector<WeatherReading> readings;
    store::Query q = db.OpenQuery(QStringLiteral("SELECT ") + kColumns +
                                  QStringLiteral(" FROM tblWeatherLog WHERE dtReading_dt >= ") +
                                  Literal(ToSecond(from)) +
                                  QStringLiteral(" AND dtReading_dt <= ") + Literal(ToSecond(to)) +
                                  QStringLiteral(" ORDER BY dtReading_dt, lWeatherLog_id"));
    while (q.Next()) {
        readings.push_back(ReadRow(q));
    }
    return readings;
}

TimeRange DayRange(QDate day) {
    return {QDateTime(day, QTime(0, 0), Qt::UTC), QDateTime(day, QTime(23, 59, 59), Qt::UTC)};
}

std::optional<TimeRange> EventRange(store::Database& db, qint64 eventId) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT dtEventStart_dt, dtEventEnd_dt FROM tblEvents WHERE lEvent_id = ") +
        QString::number(eventId));
    if (!q.Next()) {
        return std::nullopt;
    }
    const QDate start = q.IsNull(0) ? QDate() : StoredTime(q.Text(0)).date();
    const QDate end = q.IsNull(1) ? QDate() : StoredTime(q.Text(1)).date();
    if (!start.isValid() && !end.isValid()) {
        return std::nullopt;
    }
    const QDate first = start.isValid() ? start : end;
    const QDate last = end.isValid() && end > first ? end : first;
    return TimeRange{DayRange(first).from, DayRange(last).to};
}

std::optional<QDate> RunDate(QStringView dateText) {
    if (dateText.contains(u'_')) {
        return std::nullopt;
    }
    // A date box holds a date alone.
    const auto date = store::ParseJetDateText(dateText.trimmed());
    if (!date || date->time() != QTime(0, 0) || date->date() == DayZero()) {
        return std::nullopt;
    }
    return date->date();
}

std::optional<QTime> RunTime(QStringView timeText) {
    if (timeText.contains(u'_')) {
        return std::nullopt;
    }
    // A bare time stands on the engine's day zero.
    const auto time = store::ParseJetDateText(timeText.trimmed());
    if (!time || time->date() != DayZero()) {
        return std::nullopt;
    }
    return time->time();
}

std::optional<QDateTime> RunMoment(QStringView dateText, QStringView timeText) {
    const auto date = RunDate(dateText);
    const auto time = RunTime(timeText);
    if (!date || !time) {
        return std::nullopt;
    }
    return QDateTime(*date, *time, Qt::UTC);
}

QString MomentText(const QDateTime& at) {
    return UsLocale().toString(at.date(), QStringLiteral("MM/dd/yyyy")) + u' ' +
           UsLocale().toString(at.time(), QStringLiteral("hh:mm AP"));
}

QString NoReadingText(int minutes, const QDateTime& at) {
    return QStringLiteral("No weather reading within %1 %2 of %3.")
        .arg(minutes)
        .arg(minutes == 1 ? QStringLiteral("minute") : QStringLiteral("minutes"))
        .arg(MomentText(at));
}

int LookupMinutes(const store::Database& db) {
    const QString path = SettingsPath(db);
    if (path.isEmpty()) {
        return kDefaultLookupMinutes;
    }
    const QSettings settings(path, QSettings::IniFormat);
    bool ok = false;
    const int minutes = settings.value(kLookupKey).toInt(&ok);
    if (!ok || minutes < kMinLookupMinutes || minutes > kMaxLookupMinutes) {
        return kDefaultLookupMinutes;
    }
    return minutes;
}

bool SetLookupMinutes(const store::Database& db, int minutes) {
    const QString path = SettingsPath(db);
    if (path.isEmpty()) {
        return false;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(kLookupKey, std::clamp(minutes, kMinLookupMinutes, kMaxLookupMinutes));
    settings.sync();
    return settings.status() == QSettings::NoError;
}

}  // namespace slipbook::weather
