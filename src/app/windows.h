#pragma once

namespace slipbook::shell {
class frmMain;
}

namespace slipbook::app {

// Hands the main window the windows of every subsystem that has one, so its tools open them.
void RegisterWindows(shell::frmMain& main);

}  // namespace slipbook::app
