// A weather reading pushed to 20 open prediction windows, one per car, as the weather window
// does in live mode: each takes the new correction factor and density altitude, checks its
// programs again from the car's setup runs and recalculates the program it shows, adding its line
// to the page. The cars show the density altitude, throttle stop and standard programs in turn.
//
// Its floor is the logbook work alone, done straight through SQLite: reading each car's setup
// runs as often as a push reads them.
//
// Prints the time of one push to all windows (median, 95th percentile, worst) and the floor.
// Exits with 2 when a push takes 20 ms or more at the median.
//   build/bench/bench_predictionpush [PUSHES]     (default 300)
#include "logbookgen.h"

#include "prediction/ui/frmETPrediction.h"
#include "support/fakemain.h"

#include <sqlite3.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace slipbook;

namespace {

constexpr int kCars = 20;

struct Stats {
    double median = 0;
    double p95 = 0;
    double worst = 0;
};

Stats Of(std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    return {ms[ms.size() / 2], ms[ms.size() * 95 / 100], ms.back()};
}

// Cars 101.. with a run each to start from and five setup runs: three for the density
// altitude program, two for the throttle stop.
void AddCars(store::Database& db) {
    for (int c = 0; c < kCars; ++c) {
        const int car = 101 + c;
        db.Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarFuel_typ) "
                                  "VALUES (%1, 'Car %1', '%1', '%2')")
                       .arg(car)
                       .arg(c % 2 ? QStringLiteral("METHANOL") : QStringLiteral("GAS")));
        for (int r = 0; r < 6; ++r) {
            db.Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lRun_num, iCorrFactor_val, "
                                      "iDensityAlt_val, i14Mile_et, i18Mile_et, i1000Foot_et, "
                                      "i14Mile_mph, sThrottleStop2_val) VALUES (%1, %2, %3, %4, "
                                      "%5, %6, 7.9, 131.5, '%7')")
                           .arg(car)
                           .arg(r + 1)
                           .arg(0.98 + 0.01 * r)
                           .arg(1000 + 700 * r)
                           .arg(9.8 + 0.07 * r + 0.01 * c)
                           .arg(6.2 + 0.04 * r)
                           .arg(2.0 + 0.1 * r));
            if (r < 5) {
                db.Execute(
                    QStringLiteral("INSERT INTO tblCarSetup SELECT * FROM tblRuns WHERE "
                                   "lRun_id = (SELECT max(lRun_id) FROM tblRuns)"));
                db.Execute(QStringLiteral("UPDATE tblCarSetup SET sSetup_cat = '%1', "
                                          "bEighthNotQuarter = 0 WHERE sSetup_cat IS Null")
                               .arg(r < 3 ? QStringLiteral("DA") : QStringLiteral("TS")));
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int pushes = argc > 1 ? std::max(10, std::atoi(argv[1])) : 300;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Slipbook.db"));
    bench::GenerateLogbook(bench::BuiltTemplatePath(), path, 2000);
    store::Database db;
    db.Open(path);
    AddCars(db);

    bench::PrintedMessages messages;
    test::FakeMain main;
    main.state.view = QStringLiteral("ID_Runs");
    main.weather.insert(QStringLiteral("txtCorrFactor"), QStringLiteral("1.0312"));
    main.weather.insert(QStringLiteral("txtDensityAlt"), QStringLiteral("2,140"));
    std::vector<std::unique_ptr<prediction::frmETPrediction>> windows;
    const char* tabs[] = {"cmdDA", "cmdTS", "cmdStd"};
    for (int c = 0; c < kCars; ++c) {
        main.state.car.id = 101 + c;
        {
            store::Query q = db.OpenQuery(
                QStringLiteral("SELECT max(lRun_id) FROM tblRuns WHERE lCar_id = %1").arg(101 + c));
            q.Next();
            main.keyText = QString::number(q.Integer(0));
        }
        auto w = std::make_unique<prediction::frmETPrediction>(main.Context(db, messages));
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        w->show();
        // The throttle stop program needs a desired ET; the racer types it once.
        if (auto* desired = w->findChild<QLineEdit*>(QStringLiteral("txtTSDesiredET"))) {
            desired->setText(QStringLiteral("10.00"));
        }
        if (auto* tab = w->findChild<QAbstractButton*>(QString::fromLatin1(tabs[c % 3]))) {
            tab->click();
        }
        windows.push_back(std::move(w));
    }
    QCoreApplication::processEvents();

    // The floor: each window reads its DA and TS setup rows about four times a push.
    sqlite3* raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(raw,
                       "SELECT * FROM tblCarSetup WHERE lCar_Id = ? AND sSetup_cat = ? AND "
                       "bEighthNotQuarter = 0 ORDER BY rowid",
                       -1, &stmt, nullptr);
    const auto floor = [&] {
        for (int c = 0; c < kCars; ++c) {
            for (const char* cat : {"DA", "TS", "DA", "TS"}) {
                sqlite3_bind_int(stmt, 1, 101 + c);
                sqlite3_bind_text(stmt, 2, cat, -1, SQLITE_STATIC);
                while (sqlite3_step(stmt) == SQLITE_ROW) {
                    for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                        sqlite3_column_value(stmt, i);
                    }
                }
                sqlite3_reset(stmt);
            }
        }
    };

    std::vector<double> push;
    std::vector<double> raws;
    QElapsedTimer t;
    for (int i = 0; i < pushes; ++i) {
        const QString corr = QString::number(1.0 + (i % 50) * 0.001, 'f', 4);
        const QString da = QString::number(1500 + (i % 70) * 10);
        main.state.leadin.Clear();
        t.start();
        for (auto& w : windows) {
            w->ApplyWeather(corr, da);
        }
        push.push_back(t.nsecsElapsed() / 1e6);
        t.start();
        floor();
        raws.push_back(t.nsecsElapsed() / 1e6);
    }
    sqlite3_finalize(stmt);
    sqlite3_close(raw);
    const int lines = static_cast<int>(main.state.leadin.Get().count(QLatin1String("#")));

    const Stats p = Of(push);
    const Stats f = Of(raws);
    std::printf(
        "push to %d prediction windows (%d page lines): median %.2f ms, p95 %.2f ms, "
        "worst %.2f ms\n",
        kCars, lines, p.median, p.p95, p.worst);
    std::printf("floor (their setup rows read straight from SQLite): median %.3f ms\n", f.median);
    std::printf("target: under 20 ms a push: %s\n", p.median < 20 ? "met" : "MISSED");
    return p.median < 20 && lines >= kCars - 1 ? 0 : 2;
}
