#include "app/windows.h"

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

}  // namespace

void RegisterWindows(shell::frmMain& main) {
    main.RegisterWindow(QStringLiteral("ID_Weather"), [](shell::frmMain& m) -> QWidget* {
        return Owned(new weather::frmWeather(m, m.messages(), {}, {}, &m));
    });
}

}  // namespace slipbook::app
