#include "app/windows.h"

#include "analysis/ui/frmCharts.h"
#include "analysis/ui/frmReportCard.h"
#include "analysis/ui/frmStatistics.h"
#include "exchange/ui/frmImport.h"

#include "common/tools.h"
#include "garage/ui/frmCar.h"
#include "garage/ui/frmEvent.h"
#include "garage/ui/frmExpense.h"
#include "garage/ui/frmMaintenance.h"
#include "garage/ui/frmTrack.h"
#include "prediction/ui/frmCarSetup.h"
#include "prediction/ui/frmETPrediction.h"
#include "run/ui/frmRun.h"
#include "shell/ui/frmMain.h"
#include "testtune/ui/frmTestTune.h"
#include "tuneup/ui/frmTuneUp.h"
#include "views/ui/frmFilter.h"
#include "views/ui/frmView.h"
#include "weather/ui/frmWeather.h"
#include "weather/ui/frmWeatherHistory.h"

namespace slipbook::app {

namespace {

// A window of the program: its own top-level window, owned by the main window, gone when closed.
template <class W>
W* Owned(W* window) {
    window->setWindowFlag(Qt::Window, true);
    window->setAttribute(Qt::WA_DeleteOnClose, true);
    return window;
}

// A record window, with the main window's help and about.
template <class W>
W* WithHelp(W* w, shell::MainContext& main) {
    w->SetHelpHandler([&main] { main.HelpContents(); });
    w->SetAboutHandler([&main] { main.ClickTool(tools::kAbout); });
    return w;
}

template <class W>
QWidget* Record(const shell::WindowContext& ctx, QWidget* owner) {
    return WithHelp(Owned(new W(ctx, owner)), ctx.main);
}

}  // namespace

QWidget* ShowMaintenanceAlert(const shell::WindowContext& ctx, QWidget* /*owner*/, qint64 carId) {
    auto* window = qobject_cast<garage::frmMaintenance*>(ctx.main.ToolWindow(tools::kMaintenance));
    if (window == nullptr) {
        return nullptr;
    }
    window->ShowParameters(carId, 1);
    window->Alert();
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

void RegisterWindows(shell::frmMain& main) {
    main.RegisterWindow(tools::kRuns,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return WithHelp(Owned(new run::frmRun(ctx, owner)), ctx.main);
                        });
    main.RegisterDelete(tools::kRuns, run::DeleteRunFromList);
    main.RegisterShow(
        shell::windows::kRun,
        [](const shell::WindowContext& ctx, QWidget* owner, qint64 runId) -> QWidget* {
            // One run window at a time: the open one goes first, with its question.
            if (QWidget* open = ctx.main.OpenWindow(tools::kRuns)) {
                if (!open->close()) {
                    return nullptr;
                }
            }
            QWidget* w = WithHelp(Owned(new run::frmRun(ctx, runId, owner)), ctx.main);
            w->show();
            return w;
        });
    main.RegisterWindow(tools::kEvents, Record<garage::frmEvent>);
    main.RegisterWindow(tools::kTracks, Record<garage::frmTrack>);
    main.RegisterWindow(tools::kCars, Record<garage::frmCar>);
    main.RegisterWindow(tools::kMaintenance, Record<garage::frmMaintenance>);
    main.RegisterShow(shell::windows::kMaintenanceAlert, ShowMaintenanceAlert);
    main.RegisterWindow(tools::kExpenses, Record<garage::frmExpense>);
    main.RegisterWindow(tools::kWeather,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new weather::frmWeather(ctx, {}, owner));
                        });
    main.RegisterWindow(tools::kViewSetup,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            auto* w = Owned(new views::frmView(ctx, owner));
                            // The main list waits while its columns are being chosen.
                            w->setWindowModality(Qt::ApplicationModal);
                            return w;
                        });
    main.RegisterWindow(tools::kTestTune,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new testtune::frmTestTune(ctx, owner));
                        });
    main.RegisterWindow(tools::kFilter,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new views::frmFilter(ctx, owner));
                        });
    main.RegisterWindow(tools::kImportRuns,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            auto* w = Owned(new exchange::frmImport(ctx, owner));
                            w->setWindowModality(Qt::WindowModal);
                            return w;
                        });
    main.RegisterWindow(tools::kWeatherHistory,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new weather::frmWeatherHistory(ctx, owner));
                        });
    main.RegisterWindow(tools::kCharts,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new analysis::frmCharts(ctx, owner));
                        });
    main.RegisterWindow(tools::kStatistics,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new analysis::frmStatistics(ctx, owner));
                        });
    main.RegisterWindow(tools::kReportCard,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new analysis::frmReportCard(ctx, owner));
                        });
    main.RegisterPrediction(
        [](const shell::WindowContext& ctx, QWidget* owner) -> shell::PredictionWindow* {
            return new prediction::frmETPrediction(ctx, owner);
        });
    main.RegisterTuneUp(
        [](const shell::WindowContext& ctx, QWidget* owner) -> shell::TuneUpWindow* {
            return new tuneup::frmTuneUp(ctx, owner);
        });
    main.RegisterShow(shell::windows::kRunTuneUp, tuneup::ShowRunTuneUp);
    main.RegisterShow(shell::windows::kCarTuneUp, tuneup::ShowCarTuneUp);
    main.RegisterShow(shell::windows::kCarSetupDA,
                      [](const shell::WindowContext& ctx, QWidget* owner, qint64 carId) {
                          return prediction::ShowCarSetup(ctx, owner, carId, QStringLiteral("DA"));
                      });
    main.RegisterShow(shell::windows::kCarSetupTS,
                      [](const shell::WindowContext& ctx, QWidget* owner, qint64 carId) {
                          return prediction::ShowCarSetup(ctx, owner, carId, QStringLiteral("TS"));
                      });
}

}  // namespace slipbook::app
