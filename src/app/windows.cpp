#include "app/windows.h"

#include "garage/ui/frmEvent.h"
#include "garage/ui/frmMaintenance.h"
#include "garage/ui/frmTrack.h"
#include "run/ui/frmRun.h"
#include "shell/ui/frmMain.h"
#include "weather/ui/frmWeather.h"

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
    w->SetAboutHandler([&main] { main.ClickTool(QStringLiteral("ID_About")); });
    return w;
}

template <class W>
QWidget* Record(const shell::WindowContext& ctx, QWidget* owner) {
    return WithHelp(Owned(new W(ctx, owner)), ctx.main);
}

}  // namespace

QWidget* ShowMaintenanceAlert(const shell::WindowContext& ctx, QWidget* /*owner*/, qint64 carId) {
    auto* window = qobject_cast<garage::frmMaintenance*>(
        ctx.main.ToolWindow(QStringLiteral("ID_Maintenance")));
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
    main.RegisterWindow(QStringLiteral("ID_Runs"),
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return WithHelp(Owned(new run::frmRun(ctx, owner)), ctx.main);
                        });
    main.RegisterDelete(QStringLiteral("ID_Runs"), run::DeleteRunFromList);
    main.RegisterWindow(QStringLiteral("ID_Events"), Record<garage::frmEvent>);
    main.RegisterWindow(QStringLiteral("ID_Tracks"), Record<garage::frmTrack>);
    main.RegisterWindow(QStringLiteral("ID_Maintenance"), Record<garage::frmMaintenance>);
    main.RegisterShow(shell::windows::kMaintenanceAlert, ShowMaintenanceAlert);
    main.RegisterWindow(QStringLiteral("ID_Weather"),
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            return Owned(new weather::frmWeather(ctx, {}, owner));
                        });
}

}  // namespace slipbook::app
