#include "logbookgen.h"

#include "store/database.h"

#include <sqlite3.h>
#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <random>
#include <stdexcept>

namespace slipbook::bench {

namespace {

constexpr int kCars = 5;
constexpr int kTracks = 12;
constexpr int kEvents = 240;

void Check(int rc, sqlite3* db) {
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
        throw std::runtime_error(sqlite3_errmsg(db));
    }
}

void Exec(sqlite3* db, const QString& sql) {
    Check(sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr), db);
}

}  // namespace

QString BuiltTemplatePath() {
    return QStringLiteral(SLIPBOOK_BIN_DIR "/Upgrade/Slipbook.db");
}

void GenerateLogbook(const QString& templatePath, const QString& outPath, int runs, unsigned seed,
                     int runCars) {
    QFile::remove(outPath);
    if (!QFile::copy(templatePath, outPath)) {
        throw std::runtime_error("cannot copy the template to " + outPath.toStdString());
    }
    QFile::setPermissions(outPath, QFile::ReadOwner | QFile::WriteOwner);
    store::Database db;
    db.OpenRaw(outPath, false);
    sqlite3* h = db.handle();
    std::mt19937 rng(seed);
    auto uniform = [&](double lo, double hi) {
        return std::uniform_real_distribution<double>(lo, hi)(rng);
    };
    auto pick = [&](int n) { return std::uniform_int_distribution<int>(1, n)(rng); };

    Exec(h, QStringLiteral("BEGIN"));
    Exec(h, QStringLiteral("DELETE FROM tblRuns"));
    Exec(h, QStringLiteral("DELETE FROM tblEvents"));
    Exec(h, QStringLiteral("DELETE FROM tblTracks"));
    Exec(h, QStringLiteral("DELETE FROM tblCars WHERE lCar_id > 1"));
    const char* carbs[] = {"Carburetor", "Fuel Injection", "Carburetor", "Blower",
                           "Fuel Injection"};
    const char* fuels[] = {"GAS", "METHANOL", "GAS", "NITRO", "METHANOL"};
    for (int c = 2; c <= kCars; ++c) {
        Exec(h, QStringLiteral(
                    "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ, sCarFuel_typ, "
                    "iCarWeight_val, lCarryForward_info, bDefault_fl) VALUES (%1, 'Car %1', '%2', "
                    "'%3', '%4', %5, -1, 0)")
                    .arg(c)
                    .arg(100 + c)
                    .arg(QString::fromLatin1(carbs[c - 1]), QString::fromLatin1(fuels[c - 1]))
                    .arg(2400 + 100 * c));
    }
    for (int t = 1; t <= kTracks; ++t) {
        Exec(h, QStringLiteral(
                    "INSERT INTO tblTracks (lTrack_id, sTrack_nm, sTrackAddress_tx, sTrackPhone) "
                    "VALUES (%1, 'Raceway %1', '%1 Strip Road\r\nSpeedville', '(555) 010-%2')")
                    .arg(t)
                    .arg(1000 + t));
    }
    const QDate first(1998, 3, 1);
    for (int e = 1; e <= kEvents; ++e) {
        const QDate start = first.addDays(e * 14);
        Exec(h, QStringLiteral("INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id, "
                               "dtEventStart_dt, dtEventEnd_dt, "
                               "lEventClass_id, cPurse_amt) VALUES (%1, 'Event %1', %2, '%3 "
                               "00:00:00', '%4 00:00:00', 1, %5)")
                    .arg(e)
                    .arg(1 + e % kTracks)
                    .arg(start.toString(Qt::ISODate), start.addDays(2).toString(Qt::ISODate))
                    .arg(500 * (e % 7)));
    }

    // One insert statement over every column, values chosen by the column's name.
    const auto def = db.TableDefinition(QStringLiteral("tblRuns"));
    QStringList names;
    QStringList marks;
    for (const auto& f : def->fields) {
        if (f.name.compare(u"lRun_id", Qt::CaseInsensitive) != 0) {
            names << f.name;
            marks << QStringLiteral("?");
        }
    }
    sqlite3_stmt* ins = nullptr;
    const QByteArray sql = QStringLiteral("INSERT INTO tblRuns (%1) VALUES (%2)")
                               .arg(names.join(u','), marks.join(u','))
                               .toUtf8();
    Check(sqlite3_prepare_v2(h, sql.constData(), -1, &ins, nullptr), h);
    std::vector<QByteArray> keep;
    for (int r = 0; r < runs; ++r) {
        const int car = 1 + r % std::clamp(runCars, 1, kCars);
        const int event = 1 + (r / 40) % kEvents;
        const QDate day = first.addDays(event * 14 + (r % 3));
        const double sixty = uniform(1.15, 1.6);
        const double et = sixty * 6.4 + uniform(-0.2, 0.2);
        const double temp = uniform(40, 100);
        keep.clear();
        auto text = [&](int index, const QString& value) {
            keep.push_back(value.toUtf8());
            sqlite3_bind_text(ins, index, keep.back().constData(),
                              static_cast<int>(keep.back().size()), SQLITE_STATIC);
        };
        for (int i = 0; i < names.size(); ++i) {
            const QString& n = names[i];
            const int at = i + 1;
            if (n == u"lCar_id") {
                sqlite3_bind_int(ins, at, car);
            } else if (n == u"lEvent_id") {
                sqlite3_bind_int(ins, at, event);
            } else if (n == u"lRun_num") {
                sqlite3_bind_int(ins, at, 1 + r % 8);
            } else if (n == u"dtRun_dt") {
                text(at, day.toString(Qt::ISODate) + QStringLiteral(" 00:00:00"));
            } else if (n == u"dtRun_tm") {
                text(at, QStringLiteral("1899-12-30 %1:%2:00")
                             .arg(9 + r % 12, 2, 10, QLatin1Char('0'))
                             .arg(r % 60, 2, 10, QLatin1Char('0')));
            } else if (n == u"lOpponent_id") {
                sqlite3_bind_int(ins, at, pick(3));
            } else if (n == u"lRunType_id") {
                sqlite3_bind_int(ins, at, pick(3));
            } else if (n == u"bFullRun_fl") {
                sqlite3_bind_int(ins, at, r % 10 == 0 ? 0 : -1);
            } else if (n == u"iTemp_val") {
                sqlite3_bind_double(ins, at, std::round(temp));
            } else if (n == u"iHumidity_val") {
                sqlite3_bind_double(ins, at, std::round(uniform(10, 95)));
            } else if (n == u"iBarometricPressure_val") {
                sqlite3_bind_double(ins, at, std::round(uniform(28.6, 30.4) * 100) / 100);
            } else if (n == u"iCorrFactor_val") {
                sqlite3_bind_double(ins, at, std::round(uniform(0.96, 1.05) * 10000) / 10000);
            } else if (n == u"iDensityAlt_val") {
                sqlite3_bind_double(ins, at, std::floor(uniform(-1500, 5000)));
            } else if (n.startsWith(u'i') && n.endsWith(u"_et")) {
                const double scale = n.contains(u"60Foot") && !n.contains(u"to")     ? sixty
                                     : n.contains(u"330Foot") && !n.contains(u"to")  ? sixty * 2.6
                                     : n.contains(u"18Mile")                         ? et * 0.64
                                     : n.contains(u"1000Foot") && !n.contains(u"to") ? et * 0.84
                                     : n.contains(u"14Mile")                         ? et
                                                             : uniform(0.8, 2.0);
                sqlite3_bind_double(ins, at, std::round(scale * 1000) / 1000);
            } else if (n.endsWith(u"_mph")) {
                sqlite3_bind_double(ins, at, std::round(uniform(90, 180) * 100) / 100);
            } else if (n == u"iReactionTime_val" || n == u"iVehicleReactionTime_val") {
                sqlite3_bind_double(ins, at, std::round(uniform(0.4, 0.6) * 1000) / 1000);
            } else if (n == u"iDialIn_val") {
                sqlite3_bind_double(ins, at, std::round((et + 0.05) * 100) / 100);
            } else if (n.startsWith(u'i')) {
                sqlite3_bind_double(ins, at, std::round(uniform(0, 100) * 100) / 100);
            } else if (n == u"sRunNotes_tx") {
                if (r % 4 == 0) {
                    text(at, QStringLiteral("Good launch, a little loose past half track. Run %1.")
                                 .arg(r));
                } else {
                    sqlite3_bind_null(ins, at);
                }
            } else if (n.startsWith(u's') || n.startsWith(u"Custom")) {
                text(at, QString::number(pick(99)));
            } else {
                sqlite3_bind_null(ins, at);
            }
        }
        const int rc = sqlite3_step(ins);
        if (rc != SQLITE_DONE) {
            sqlite3_finalize(ins);
            Check(rc, h);
        }
        sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    Exec(h, QStringLiteral("COMMIT"));
    Exec(h, QStringLiteral("ANALYZE"));
    db.Close();
}

double RawReadMs(store::Database& db, const QString& jetSql, int* rows) {
    const QString sql = db.Translate(jetSql).sql;
    QElapsedTimer t;
    t.start();
    sqlite3_stmt* stmt = db.Prepare(sql);
    const int n = sqlite3_column_count(stmt);
    *rows = 0;
    qint64 sink = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int i = 0; i < n; ++i) {
            switch (sqlite3_column_type(stmt, i)) {
                case SQLITE_INTEGER:
                    sink += sqlite3_column_int64(stmt, i);
                    break;
                case SQLITE_FLOAT:
                    sink += static_cast<qint64>(sqlite3_column_double(stmt, i));
                    break;
                case SQLITE_TEXT:
                    sink += sqlite3_column_bytes(stmt, i);
                    break;
                default:
                    break;
            }
        }
        ++*rows;
    }
    sqlite3_finalize(stmt);
    const double ms = t.nsecsElapsed() / 1e6;
    return sink == 42 ? ms + 0 : ms;
}

qint64 WidestShippedView(store::Database& db) {
    qint64 widest = 0;
    int most = -1;
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lView_id, sTable_nm FROM tblViews WHERE bReadOnlyView_fl"));
    while (q.Next()) {
        store::Query c = db.OpenQuery(
            QStringLiteral("SELECT COUNT(*) AS n FROM %1 WHERE bVisible_fl").arg(q.Text(1)));
        c.Next();
        if (c.Value(0).toInt() > most) {
            most = c.Value(0).toInt();
            widest = q.Value(0).toLongLong();
        }
    }
    return widest;
}

QString OneCarLogbook(const QString& name, int runs) {
    const QString dir =
        QCoreApplication::applicationDirPath() + QStringLiteral("/%1-%2").arg(name).arg(runs);
    QDir().mkpath(dir);
    const QString logbook = dir + QStringLiteral("/Slipbook.db");
    if (!QFileInfo::exists(logbook)) {
        GenerateLogbook(BuiltTemplatePath(), logbook, runs, 1, 1);
    }
    return logbook;
}

}  // namespace slipbook::bench
