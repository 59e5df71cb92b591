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
QWidget* Record(shell::frmMain& m) {
    W* w = Owned(new W(m.database(), m.messages(), m, &m));
    w->SetHelpHandler([&m] { m.HelpContents(); });
    w->SetAboutHandler([&m] { m.ToolClick(QStringLiteral("ID_About")); });
    return w;
}

}  // namespace

void RegisterWindows(shell::frmMain& main) {
    main.RegisterWindow(QStringLiteral("ID_Runs"), run::OpenRunWindow);
    main.RegisterDelete(QStringLiteral("ID_Runs"),
                        [&main](const QString& key) { run::DeleteRunFromList(main, key); });
    main.RegisterWindow(QStringLiteral("ID_Events"), Record<garage::frmEvent>);
    main.RegisterWindow(QStringLiteral("ID_Tracks"), Record<garage::frmTrack>);
    main.RegisterWindow(QStringLiteral("ID_Maintenance"), Record<garage::frmMaintenance>);
    main.RegisterWindow(QStringLiteral("ID_Weather"), [](shell::frmMain& m) -> QWidget* {
        return Owned(new weather::frmWeather(m, m.messages(), {}, {}, &m));
    });
}

}  // namespace slipbook::app
