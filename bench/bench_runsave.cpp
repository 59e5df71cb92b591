// Saving runs into a large logbook: the run window on a main window that lists 100,000 runs of
// the car. Each save is the whole path after the user's last key: the checks, the air figures,
// the run's statements, the car's tune-up, the maintenance counters and the list's row. Prints
// the time of one save (median, 95th percentile, worst), of an edit of the newest run, and the
// total for entering 1,000 runs with Save and New.
//   build/bench/bench_runsave [RUNS] [ENTERED]
#include "logbookgen.h"

#include "run/ui/frmRun.h"
#include "shell/ui/frmMain.h"
#include "store/database.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace slipbook;

namespace {

void Put(run::frmRun& window, const char* control, const QString& text) {
    if (auto* box = qobject_cast<QLineEdit*>(window.Control(QString::fromLatin1(control)))) {
        box->setText(text);
    }
}

// What a racer types for one pass. The list shows all events, so the event is picked.
void TypeRun(run::frmRun& window, int n) {
    if (auto* events = qobject_cast<QComboBox*>(window.Control(QStringLiteral("cboEvents")))) {
        events->setCurrentIndex(n % events->count());
    }
    const double et = 9.8 + (n % 37) * 0.01;
    Put(window, "txtTemp", QString::number(70 + n % 20));
    Put(window, "txtHumidity", QString::number(30 + n % 40));
    Put(window, "txtBarometricPressure", QStringLiteral("29.%1").arg(50 + n % 40));
    Put(window, "txtDialIn", QString::number(et + 0.05, 'f', 3));
    Put(window, "txtReactionTime", QStringLiteral("0.5%1").arg(n % 90, 2, 10, QLatin1Char('0')));
    Put(window, "txt60Foot_et", QStringLiteral("1.402"));
    Put(window, "txt330Foot_et", QStringLiteral("4.012"));
    Put(window, "txt18Mile_et", QStringLiteral("6.303"));
    Put(window, "txt18Mile_mph", QStringLiteral("108.250"));
    Put(window, "txt1000Foot_et", QStringLiteral("8.211"));
    Put(window, "txt14Mile_et", QString::number(et, 'f', 3));
    Put(window, "txt14Mile_mph", QStringLiteral("135.010"));
    Put(window, "txtJet(0)", QStringLiteral("72"));
    Put(window, "txtCustom1", QStringLiteral("O'Neil's \"pass\" %1").arg(n));
}

struct Stats {
    double median;
    double p95;
    double worst;
};

Stats Summarise(std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    const auto at = [&](double q) { return ms[static_cast<size_t>(q * (ms.size() - 1))]; };
    return {at(0.5), at(0.95), ms.back()};
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int entered = argc > 2 ? std::atoi(argv[2]) : 1000;

    // A pristine logbook is generated once; each round works on a copy of it.
    const QString dir =
        QCoreApplication::applicationDirPath() + QStringLiteral("/runsave-%1").arg(runs);
    QDir().mkpath(dir);
    const QString pristine = dir + QStringLiteral("/pristine.db");
    if (!QFileInfo::exists(pristine)) {
        bench::GenerateLogbook(bench::BuiltTemplatePath(), pristine, runs, 1, 1);
    }
    const QString logbook = dir + QStringLiteral("/Slipbook.db");
    for (const char* suffix : {"", "-wal", "-shm"}) {
        QFile::remove(logbook + QString::fromLatin1(suffix));
    }
    QFile::copy(pristine, logbook);
    QFile::setPermissions(logbook, QFile::ReadOwner | QFile::WriteOwner);

    store::Database db;
    db.Open(logbook);
    bench::PrintedMessages messages;
    shell::frmMain main(db, messages, QString(), QCoreApplication::applicationDirPath());
    QElapsedTimer load;
    load.start();
    main.FormLoadStuff();
    std::printf("logbook: %d runs; list of the car: %d rows x %d columns, loaded in %.0f ms\n",
                runs, main.grid().RowCount(), main.grid().ColumnCount(), load.nsecsElapsed() / 1e6);

    main.SetStoredToolId(QStringLiteral("ID_New"));
    auto* window = static_cast<run::frmRun*>(run::OpenRunWindow(main));
    const int before = main.grid().RowCount();

    std::vector<double> saves;
    saves.reserve(entered);
    QElapsedTimer total;
    total.start();
    for (int n = 0; n < entered; ++n) {
        TypeRun(*window, n);
        QElapsedTimer one;
        one.start();
        // The tune-up button's save: the maintenance window waits, so no window is raised per run.
        if (!window->RunSaveRecord(false)) {
            std::fprintf(stderr, "save %d failed\n", n);
            window->SetDataChanged(false);
            window->close();
            return 1;
        }
        saves.push_back(one.nsecsElapsed() / 1e6);
        window->tool(QStringLiteral("ID_New"))->trigger();
    }
    const double totalMs = total.nsecsElapsed() / 1e6;
    const Stats s = Summarise(saves);
    std::printf(
        "one save (run, car, counters, list row): median %.2f ms, 95%% %.2f ms, worst "
        "%.2f ms (target < 20 ms)\n",
        s.median, s.p95, s.worst);
    std::printf("%d runs entered with Save and New: %.0f ms in all, %.2f ms a run\n", entered,
                totalMs, totalMs / entered);
    std::printf("list rows: %d before, %d after\n", before, main.grid().RowCount());

    // An edit of the newest run, which also gives its tune-up back to the car.
    window->close();
    delete window;
    main.SetStoredToolId(QString());
    main.SelectRow(main.grid().RowCount() - 1);
    window = static_cast<run::frmRun*>(run::OpenRunWindow(main));
    std::vector<double> edits;
    for (int n = 0; n < 50; ++n) {
        Put(*window, "txtJet(1)", QString::number(70 + n));
        QElapsedTimer one;
        one.start();
        if (!window->RunSaveRecord(false)) {
            std::fprintf(stderr, "edit %d failed\n", n);
            return 1;
        }
        edits.push_back(one.nsecsElapsed() / 1e6);
    }
    const Stats e = Summarise(edits);
    QElapsedTimer check;
    check.start();
    for (int n = 0; n < 20; ++n) {
        run::IsNewestRun(db, window->RunId());
    }
    std::printf("newest-run check alone: %.2f ms\n", check.nsecsElapsed() / 1e6 / 20);
    std::printf("one edit of the newest run: median %.2f ms, worst %.2f ms (target < 20 ms)\n",
                e.median, e.worst);
    window->SetDataChanged(false);
    window->close();
    delete window;
    return s.median < 20 && e.median < 20 ? 0 : 2;
}
