// The weather log at a million readings: the station's rhythm of one reading every 20 seconds
// from 8 AM to 8 PM, some 460 days of it, written straight into the logbook in one transaction.
//
// Times the reading nearest a moment, as the run window asks for it (10 minutes either side), at
// random moments of the whole span, nights included, where nothing is found; and the read of a
// day's readings, as the history window lists them. Each against its floor: the same statements
// prepared once and run straight through SQLite, every column read.
//
// Exits with 2 when the nearest reading takes 1 ms or more on average.
//   build/bench/bench_weatherlog [READINGS [PROBES]]     (default 1000000 10000)
#include "logbookgen.h"

#include "weather/weatherlog.h"

#include <sqlite3.h>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

using namespace slipbook;

namespace {

const QDateTime kFirstDay(QDate(2024, 3, 1), QTime(0, 0), Qt::UTC);
constexpr int kPerDay = 12 * 3600 / 20;

QDateTime ReadingTime(int n) {
    return kFirstDay.addDays(n / kPerDay).addSecs(8 * 3600 + (n % kPerDay) * 20);
}

QByteArray Stored(const QDateTime& t) {
    return t.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1();
}

void Fill(const QString& path, int readings) {
    sqlite3* h = nullptr;
    sqlite3_open(path.toUtf8().constData(), &h);
    sqlite3_exec(h, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(h,
                       "INSERT INTO tblWeatherLog (dtReading_dt, iTemp_val, iHumidity_val, "
                       "iBarometricPressure_val, iPressureAltitude_val, iCorrFactor_val, "
                       "iDensityAlt_val, iAirDensity_val, iVaporPressure_val, iDryBarometer_val, "
                       "iDewPoint_val, iWetBulbTemp_val, sSource_nm) VALUES "
                       "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 'Station')",
                       -1, &insert, nullptr);
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> wobble(-1, 1);
    for (int n = 0; n < readings; ++n) {
        const QByteArray at = Stored(ReadingTime(n));
        const double hour = (n % kPerDay) / 180.0;
        const double temp = 70 + 15 * std::sin(hour / 12 * 3.14159) + wobble(rng);
        sqlite3_bind_text(insert, 1, at.constData(), static_cast<int>(at.size()), SQLITE_TRANSIENT);
        const double figures[] = {temp,
                                  50 + 10 * wobble(rng),
                                  29.92 + 0.05 * wobble(rng),
                                  10,
                                  1.03 + 0.01 * wobble(rng),
                                  1500 + 400 * wobble(rng),
                                  95.8,
                                  0.44,
                                  29.48,
                                  55,
                                  62.5};
        for (int i = 0; i < 11; ++i) {
            sqlite3_bind_double(insert, i + 2, figures[i]);
        }
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_exec(h, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(h);
}

struct Stats {
    double mean = 0;
    double p99 = 0;
    double max = 0;
};

Stats Of(std::vector<double> us) {
    std::sort(us.begin(), us.end());
    double sum = 0;
    for (double u : us) {
        sum += u;
    }
    return {sum / static_cast<double>(us.size()), us[us.size() * 99 / 100], us.back()};
}

// Steps a prepared statement to its end, reading every column.
int StepAll(sqlite3_stmt* s) {
    int rows = 0;
    while (sqlite3_step(s) == SQLITE_ROW) {
        for (int i = 0; i < sqlite3_column_count(s); ++i) {
            sqlite3_column_value(s, i);
            if (sqlite3_column_type(s, i) == SQLITE_TEXT) {
                sqlite3_column_text(s, i);
            }
        }
        ++rows;
    }
    sqlite3_reset(s);
    return rows;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int readings = argc > 1 ? std::max(1000, std::atoi(argv[1])) : 1000000;
    const int probes = argc > 2 ? std::max(100, std::atoi(argv[2])) : 10000;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Slipbook.db"));
    QFile::copy(bench::BuiltTemplatePath(), path);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    QElapsedTimer t;
    t.start();
    Fill(path, readings);
    const QDateTime last = ReadingTime(readings - 1);
    std::printf("weather log: %d readings, %s to %s, written in %.1f s (%.0f MB)\n", readings,
                Stored(kFirstDay.addSecs(8 * 3600)).constData(), Stored(last).constData(),
                t.nsecsElapsed() / 1e9, QFileInfo(path).size() / 1e6);

    store::Database db;
    db.Open(path);
    sqlite3* raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr);
    const char* columns =
        "SELECT lWeatherLog_id, dtReading_dt, iTemp_val, iHumidity_val, iBarometricPressure_val, "
        "iPressureAltitude_val, iCorrFactor_val, iDensityAlt_val, iAirDensity_val, "
        "iVaporPressure_val, iDryBarometer_val, iDewPoint_val, iWetBulbTemp_val, sSource_nm FROM "
        "tblWeatherLog WHERE ";
    const auto prepare = [&](const char* rest) {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(raw, (QByteArray(columns) + rest).constData(), -1, &s, nullptr);
        return s;
    };
    sqlite3_stmt* before =
        prepare("dtReading_dt <= ?1 AND dtReading_dt >= ?2 ORDER BY dtReading_dt DESC LIMIT 1");
    sqlite3_stmt* after =
        prepare("dtReading_dt > ?1 AND dtReading_dt <= ?2 ORDER BY dtReading_dt LIMIT 1");
    sqlite3_stmt* day =
        prepare("dtReading_dt >= ?1 AND dtReading_dt <= ?2 ORDER BY dtReading_dt, lWeatherLog_id");

    // Moments at any second of the span, day or night.
    std::mt19937 rng(11);
    const qint64 span = kFirstDay.secsTo(last.addSecs(4 * 3600));
    std::uniform_int_distribution<qint64> second(0, span);
    std::vector<QDateTime> moments;
    for (int i = 0; i < probes; ++i) {
        moments.push_back(kFirstDay.addSecs(second(rng)));
    }

    int found = 0;
    std::vector<double> lookups;
    std::vector<double> floors;
    for (const QDateTime& at : moments) {
        t.start();
        found += weather::NearestReading(db, at, weather::kDefaultLookupMinutes) ? 1 : 0;
        lookups.push_back(t.nsecsElapsed() / 1e3);

        const QByteArray a = Stored(at);
        const QByteArray from = Stored(at.addSecs(-600));
        const QByteArray to = Stored(at.addSecs(600));
        t.start();
        sqlite3_bind_text(before, 1, a.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(before, 2, from.constData(), -1, SQLITE_STATIC);
        StepAll(before);
        sqlite3_bind_text(after, 1, a.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(after, 2, to.constData(), -1, SQLITE_STATIC);
        StepAll(after);
        floors.push_back(t.nsecsElapsed() / 1e3);
    }
    // The first look-up of a session prepares its two statements; the rest find them kept.
    const double firstLookup = lookups.front();
    const double firstFloor = floors.front();
    lookups.erase(lookups.begin());
    floors.erase(floors.begin());
    const Stats n = Of(lookups);
    const Stats f = Of(floors);

    // Days of the span, each read whole.
    std::vector<double> dayReads;
    std::vector<double> dayFloors;
    std::uniform_int_distribution<qint64> dayOf(0, kFirstDay.daysTo(last));
    size_t dayRows = 0;
    for (int i = 0; i < 50; ++i) {
        const weather::TimeRange range = weather::DayRange(kFirstDay.addDays(dayOf(rng)).date());
        t.start();
        dayRows = weather::ReadingsBetween(db, range.from, range.to).size();
        dayReads.push_back(t.nsecsElapsed() / 1e6);
        const QByteArray from = Stored(range.from);
        const QByteArray to = Stored(range.to);
        t.start();
        sqlite3_bind_text(day, 1, from.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(day, 2, to.constData(), -1, SQLITE_STATIC);
        StepAll(day);
        dayFloors.push_back(t.nsecsElapsed() / 1e6);
    }
    const Stats d = Of(dayReads);
    const Stats df = Of(dayFloors);

    for (sqlite3_stmt* s : {before, after, day}) {
        sqlite3_finalize(s);
    }
    sqlite3_close(raw);

    std::printf("\n%-34s %10s %10s %10s %8s\n", "", "mean", "p99", "max", "ratio");
    std::printf("%-34s %7.1f us %7.1f us %7.1f us %8.2f\n", "nearest reading (10 min)", n.mean,
                n.p99, n.max, n.mean / f.mean);
    std::printf("%-34s %7.1f us %7.1f us %7.1f us\n", "  floor: the two probes in SQLite", f.mean,
                f.p99, f.max);
    std::printf("%-34s %7.1f us (floor %.1f us)\n", "first look-up, statements prepared",
                firstLookup, firstFloor);
    std::printf("%-34s %7.2f ms %7.2f ms %7.2f ms %8.2f\n",
                QStringLiteral("a day's readings (%1 rows)").arg(dayRows).toLatin1().constData(),
                d.mean, d.p99, d.max, d.mean / df.mean);
    std::printf("%-34s %7.2f ms %7.2f ms %7.2f ms\n", "  floor: the same read in SQLite", df.mean,
                df.p99, df.max);
    std::printf("\n%d probes, %d found a reading; target under 1 ms a look-up: %s\n", probes, found,
                n.mean < 1000 ? "met" : "MISSED");
    return n.mean < 1000 ? 0 : 2;
}
