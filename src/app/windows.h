#pragma once

#include <QtGlobal>

class QWidget;

namespace slipbook::shell {
class frmMain;
struct WindowContext;
}  // namespace slipbook::shell

namespace slipbook::app {

// Hands the main window the windows of every subsystem that has one, so its tools open them.
void RegisterWindows(shell::frmMain& main);

// The one maintenance window, filtered on the car's coming items with its alert: an open one is
// used again, since two could edit the same items.
QWidget* ShowMaintenanceAlert(const shell::WindowContext& ctx, QWidget* owner, qint64 carId);

}  // namespace slipbook::app
