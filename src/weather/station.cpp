#include "weather/station.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QStringList>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace slipbook::weather {

namespace {

// InStr: the 1-based position of `find` in `s` from `start`; 0 when absent or when `start` lies
// beyond the text.
qsizetype InStr(qsizetype start, QStringView s, QStringView find) {
    if (start < 1 || start > s.size()) {
        return 0;
    }
    const qsizetype at = s.indexOf(find, start - 1);
    return at < 0 ? 0 : at + 1;
}

// Mid(s, start[, length]), 1-based; empty past the end.
QString Mid(QStringView s, qsizetype start, qsizetype length = -1) {
    if (start > s.size()) {
        return QString();
    }
    const QStringView rest = s.sliced(start - 1);
    return (length < 0 ? rest : rest.first(std::min(length, rest.size()))).toString();
}

// The field that starts after the comma-blank at `p`. `e` becomes where the search for the
// next comma-blank starts. A comma directly at the field's start runs it to the end.
QString FieldAfter(QStringView line, qsizetype p, qsizetype& e) {
    p += 2;
    const qsizetype q = InStr(p, line, u",");
    if (q > p) {
        e = q;
        return Mid(line, p, q - p);
    }
    e = line.size();
    return Mid(line, p);
}

// Where the line that starts at `from` ends, and where the next one starts; a line ends at
// CR LF, a lone CR or a lone LF.
qsizetype LineEnd(const QString& text, qsizetype from, qsizetype& next) {
    for (qsizetype i = from; i < text.size(); ++i) {
        if (text[i] == u'\n') {
            next = i + 1;
            return i;
        }
        if (text[i] == u'\r') {
            next = (i + 1 < text.size() && text[i + 1] == u'\n') ? i + 2 : i + 1;
            return i;
        }
    }
    next = text.size();
    return text.size();
}

// The ranges the window holds typed figures to. Inside all three the calculation can't fail,
// so a failure names the inputs outside theirs.
struct InputRange {
    QStringView name;
    double low;
    double high;
};
constexpr InputRange kTemperatureRange{u"temperature", 32, 120};
constexpr InputRange kHumidityRange{u"humidity", 0, 100};
constexpr InputRange kBarometerRange{u"barometric pressure", 20, 31.5};

QString OutOfRange(const InputRange& range, QStringView text) {
    return QStringLiteral("%1 %2 is out of range (%3-%4)")
        .arg(range.name, text.trimmed(), PlainNumberText(range.low), PlainNumberText(range.high));
}

const QLocale& UsLocale() {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

}  // namespace

QString StationFilePath(const QString& directory, QStringView fileName) {
    return QDir(directory).filePath(fileName.toString());
}

StationRead ReadStationRecord(const QString& path, AfterRead after) {
    StationRead read;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return read;
    }
    read.opened = true;
    const QString text = QString::fromLocal8Bit(file.readAll());
    file.close();

    // Line 2 replaces line 1 when there is one; a file that ends after line 1 (with or
    // without its line ending) leaves line 1.
    if (!text.isEmpty()) {
        qsizetype next = 0;
        const qsizetype end1 = LineEnd(text, 0, next);
        read.record = text.first(end1);
        if (next < text.size()) {
            qsizetype afterLine2 = 0;
            const qsizetype end2 = LineEnd(text, next, afterLine2);
            read.record = text.sliced(next, end2 - next);
        }
    }
    if (after == AfterRead::Delete) {
        QFile::remove(path);
    }
    return read;
}

StationRead ReadLatestReading(const QString& directory) {
    return ReadStationRecord(StationFilePath(directory, kLatestReadingFile), AfterRead::Delete);
}

StationRead ReadChosenReading(const QString& directory) {
    return ReadStationRecord(StationFilePath(directory, kChosenReadingFile), AfterRead::Keep);
}

void ClearChosenReading(const QString& directory) {
    QFile::remove(StationFilePath(directory, kChosenReadingFile));
}

StationFields ParseStationRecord(QStringView record) {
    StationFields fields;
    const qsizetype first = InStr(1, record, u", ");
    if (first == 0) {
        return fields;
    }
    qsizetype e = 0;
    QString f = FieldAfter(record, first, e);
    // The field text is not cleared between fields: a record that runs out hands its last
    // field on to the boxes that follow.
    for (int i = 0; i < 3; ++i) {
        if (i > 0) {
            const qsizetype p = InStr(e, record, u", ");
            if (p > 0) {
                f = FieldAfter(record, p, e);
            }
        }
        if (f.isEmpty()) {
            return fields;
        }
        fields.texts[i] = f;
        fields.count = i + 1;
    }
    return fields;
}

CalcResult<QString> PressureAltitudeText(QStringView barometerText) {
    const auto b = StrictNumber(barometerText);
    if (!b) {
        return CalcResult<QString>::failure(
            NotANumberReason(u"barometric pressure", barometerText));
    }
    const auto altitude = BarometerToPressureAltitude(PlainNumberText(*b));
    if (!altitude) {
        return CalcResult<QString>::failure(OutOfRange(kBarometerRange, barometerText));
    }
    return PlainNumberText(*altitude);
}

CalcResult<QString> BarometerText(QStringView altitudeText) {
    if (!StrictNumber(altitudeText)) {
        return CalcResult<QString>::failure(NotANumberReason(u"pressure altitude", altitudeText));
    }
    const auto barometer = PressureAltitudeToBarometer(altitudeText);
    if (!barometer) {
        return CalcResult<QString>::failure(
            QStringLiteral("pressure altitude %1 is out of range").arg(altitudeText.trimmed()));
    }
    return PlainNumberText(*barometer);
}

QString PageRecord(const QString& leadin) {
    return kPagePrefix.toString() + u' ' + leadin + QStringLiteral("\r\n");
}

bool WritePageFile(const QString& directory, const QString& leadin) {
    // Written aside and put in place whole, so the station never pages half a text.
    QSaveFile file(StationFilePath(directory, kPageFile));
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(PageRecord(leadin).toLocal8Bit());
    return file.commit();
}

void BringStationForward() {
#ifdef Q_OS_WIN
    if (HWND station = FindWindowA("ThunderForm", "Quadrumex Barometrix")) {
        ShowWindow(station, 9);  // restore
    }
#endif
}

QString NotANumberReason(QStringView fieldName, QStringView text) {
    if (text.trimmed().isEmpty()) {
        return fieldName.toString() + QStringLiteral(" is empty");
    }
    return QStringLiteral("%1 \"%2\" is not a number").arg(fieldName, text);
}

Recalculation PlanRecalculation(QStringView temperatureText, QStringView humidityText,
                                QStringView barometerText) {
    Recalculation r;
    const auto t = LeadingNumber(temperatureText);
    const auto b = LeadingNumber(barometerText);
    if (!t || !b) {
        r.kind = Recalculation::Kind::Failed;
        r.reason = !t ? OutOfRange(kTemperatureRange, temperatureText)
                      : OutOfRange(kBarometerRange, barometerText);
        return r;
    }
    if (!(*t > 0 && *b > 0)) {
        r.texts.fill(QStringLiteral("0"));
        return r;
    }
    const auto p = CalcAirProperties(temperatureText, humidityText, barometerText);
    if (!p) {
        r.kind = Recalculation::Kind::Failed;
        // The conversions come in the order temperature, humidity, barometer.
        const std::pair<const InputRange&, QStringView> inputs[] = {
            {kTemperatureRange, temperatureText},
            {kHumidityRange, humidityText},
            {kBarometerRange, barometerText}};
        for (const auto& [range, text] : inputs) {
            if (!StrictNumber(text)) {
                r.reason = NotANumberReason(range.name, text);
                return r;
            }
        }
        QStringList outside;
        for (const auto& [range, text] : inputs) {
            const double value = *StrictNumber(text);
            if (value < range.low || value > range.high) {
                outside << OutOfRange(range, text);
            }
        }
        r.reason = outside.isEmpty()
                       ? QStringLiteral("the air figures can't be calculated from these inputs")
                       : outside.join(QStringLiteral(" and "));
        return r;
    }
    r.kind = Recalculation::Kind::Computed;
    r.texts = AirPropertyTexts(*p);
    return r;
}

StationReading PlanStationReading(QStringView record) {
    StationReading reading;
    const StationFields fields = ParseStationRecord(record);
    if (fields.count == 0) {
        return reading;
    }
    reading.kind = StationReading::Kind::NotUsed;
    if (!fields.complete()) {
        reading.reason = NotANumberReason(
            fields.count == 1 ? kHumidityRange.name : kBarometerRange.name, QStringView());
        return reading;
    }
    const auto& [temperature, humidity, barometer] = fields.texts;
    const auto altitude = PressureAltitudeText(barometer);
    if (!altitude) {
        reading.reason = altitude.error();
        return reading;
    }
    reading.recalculation = PlanRecalculation(temperature, humidity, barometer);
    if (reading.recalculation.failed()) {
        reading.reason = reading.recalculation.reason;
        return reading;
    }
    reading.kind = StationReading::Kind::Used;
    reading.inputs = {temperature, humidity, barometer, *altitude};
    return reading;
}

int NextPollInterval(int previousInterval, bool liveWeather, bool fileOpened) {
    if (liveWeather && !fileOpened && previousInterval == kPollSlow) {
        return kPollFast;
    }
    return kPollSlow;
}

QString WeatherTimeText(const QDateTime& now) {
    return UsLocale().toString(now, QStringLiteral("ddd MM/dd/yyyy")) + QStringLiteral(" at ") +
           UsLocale().toString(now.time(), QStringLiteral("hh:mm:ss AP"));
}

QString WeatherRecordText(const QDateTime& now, const std::array<QString, 11>& boxTexts) {
    QString line = now.time().toString(QStringLiteral("HH:mm")).toLower();
    for (const QString& text : boxTexts) {
        line += u'\t' + text;
    }
    return line;
}

}  // namespace slipbook::weather
