// The run list of a large logbook: 100,000 runs of one car in the widest shipped view, loaded into
// the main window, against raw SQLite reading the same rows; then a sort by a text and by a number
// column. Prints wall times, the ratio and the peak memory.
//   build/bench/bench_runlist [RUNS] [--shot FILE.png]
#include "logbookgen.h"
#include "mainbench.h"

#include "shell/ui/frmMain.h"
#include "store/database.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <cstdio>

using namespace slipbook;

namespace {

double PeakMb() {
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
        }
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    int runs = 100000;
    QString shot;
    for (int i = 1; i < argc; ++i) {
        if (QString::fromLocal8Bit(argv[i]) == u"--shot" && i + 1 < argc) {
            shot = QString::fromLocal8Bit(argv[++i]);
        } else {
            runs = std::atoi(argv[i]);
        }
    }
    const QString logbook = bench::OneCarLogbook(QStringLiteral("runlist"), runs);
    bench::MainOnLogbook program(logbook);
    store::Database& db = program.db;
    shell::frmMain& main = program.main;
    main.FormLoadStuff();

    QComboBox* views = main.selector(QStringLiteral("ID_Views"));
    views->setCurrentIndex(views->findData(QVariant::fromValue(bench::WidestShippedView(db))));

    int rawRows = 0;
    double raw = 1e9;
    double load = 1e9;
    for (int round = 0; round < 3; ++round) {
        raw = std::min(
            raw,
            bench::RawReadMs(
                db,
                QStringLiteral(
                    "SELECT tblRuns.* FROM tblRuns WHERE  lCar_id = 1 ORDER BY dtRun_dt, dtRun_tm"),
                &rawRows));
        QElapsedTimer t;
        t.start();
        main.ToolClick(QStringLiteral("ID_Runs"));
        load = std::min(load, t.nsecsElapsed() / 1e6);
    }
    const TextGridModel& grid = main.grid();
    std::printf("run list: %d rows x %d columns (view %s)\n", grid.RowCount(), grid.ColumnCount(),
                qPrintable(views->currentText()));
    std::printf("raw SQLite read of the same rows: %.0f ms (%d rows)\n", raw, rawRows);
    std::printf("list load into the main window: %.0f ms, ratio %.2f (target <= 2)\n", load,
                load / raw);

    auto sortBy = [&](const char* name) {
        const int column = grid.ColumnIndex(QString::fromLatin1(name));
        main.SelectRow(grid.RowCount() / 2);
        QElapsedTimer t;
        t.start();
        main.HeadClick(column);
        std::printf("sort by %s: %.0f ms (target < 300 ms)\n", name, t.nsecsElapsed() / 1e6);
    };
    sortBy("lEvent_id");
    sortBy("i14Mile_et");
    std::printf("peak memory: %.0f MB (target < 400 MB)\n", PeakMb());

    if (!shot.isEmpty()) {
        main.resize(1280, 760);
        main.show();
        QCoreApplication::processEvents();
        main.grab().save(shot);
    }
    return 0;
}
