// Start-up on a large logbook: from the first step to the main window shown, without the settled
// splash (the clock says the splash has had its time as soon as it is up).
//   build/bench/bench_startup [RUNS]      (default 100000 runs; the logbook is made once and kept)
#include "logbookgen.h"

#include "shell/ui/frmMain.h"
#include "store/startup.h"
#include "store/ui/frmSplash.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace slipbook;

namespace {

class SettledClock : public store::Clock {
public:
    qint64 NowMs() override { return calls_++ == 0 ? 0 : store::kSplashMs + 1; }

private:
    int calls_ = 0;
};

class BenchUi : public store::StartupUi {
public:
    BenchUi(store::Database& db, Messages& messages) : db_(db), messages_(messages) {}
    void SetBusy(bool) override {}
    void ShowSplash(const QString& version, const QString& status) override {
        splash = std::make_unique<store::frmSplash>();
        splash->setVersion(version);
        splash->setStatus(status);
        splash->showCentred();
    }
    void SetSplashStatus(const QString& status) override {
        if (splash) {
            splash->setStatus(status);
        }
    }
    void LoadMainWindow() override {
        main = std::make_unique<shell::frmMain>(db_, messages_, events_, clock_, QString(),
                                                QCoreApplication::applicationDirPath());
        main->setStatusReporter([this](const QString& s) { SetSplashStatus(s); });
    }
    void FormLoadStuff() override {
        QElapsedTimer t;
        t.start();
        main->FormLoadStuff();
        fillMs = t.nsecsElapsed() / 1e6;
    }
    void ShowMainWindow() override {
        main->show();
        QCoreApplication::processEvents();
    }
    void CloseSplash() override { splash.reset(); }
    void YieldToEvents() override { QCoreApplication::processEvents(); }
    bool SplashClosedByKey() const override { return false; }

    std::unique_ptr<store::frmSplash> splash;
    std::unique_ptr<shell::frmMain> main;
    double fillMs = 0;

private:
    store::LogbookEvents events_;
    SystemClock clock_;
    store::Database& db_;
    Messages& messages_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? QByteArray("offscreen")
                                                                    : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::atoi(argv[1]) : 100000;
    const QString dir =
        QCoreApplication::applicationDirPath() + QStringLiteral("/startup-%1").arg(runs);
    QDir().mkpath(dir);
    const QString logbook = store::LogbookPath(dir);
    if (!QFileInfo::exists(logbook)) {
        QElapsedTimer gen;
        gen.start();
        bench::GenerateLogbook(bench::BuiltTemplatePath(), logbook, runs);
        std::printf("generated %d runs in %.1f s\n", runs, gen.elapsed() / 1000.0);
    }
    std::printf("logbook: %s (%.1f MB)\n", qPrintable(logbook),
                QFileInfo(logbook).size() / 1048576.0);

    bench::PrintedMessages messages;
    std::vector<double> times;
    std::vector<double> steps;
    int rows = 0;
    for (int i = 0; i < 11; ++i) {
        store::Database db;
        BenchUi ui(db, messages);
        SettledClock clock;
        QElapsedTimer t;
        t.start();
        const auto outcome =
            store::RunStartup(db, messages, ui, clock, QCoreApplication::applicationDirPath(), dir);
        const double ms = t.nsecsElapsed() / 1e6;
        if (outcome != store::StartupOutcome::Running) {
            std::fprintf(stderr, "start-up ended early\n");
            return 1;
        }
        if (i > 0) {  // the first run warms the file cache
            times.push_back(ms);
            steps.push_back(ms - ui.fillMs);
        }
        rows = ui.main->grid().RowCount();
    }
    std::sort(times.begin(), times.end());
    std::sort(steps.begin(), steps.end());
    std::printf(
        "start-up steps without the first fill of selectors and list: median %.1f ms, min %.1f ms, "
        "max %.1f ms\n",
        steps[steps.size() / 2], steps.front(), steps.back());
    std::printf(
        "start-up to the main window with its list filled (%d rows of the default car), %d runs, "
        "splash wait excluded: median %.1f ms, min %.1f ms, max %.1f ms\n",
        rows, runs, times[times.size() / 2], times.front(), times.back());
    return 0;
}
