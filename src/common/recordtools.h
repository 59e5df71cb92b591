#pragma once

// The tools of the record windows: the menus, the tool bar and the keys every record window
// (events, tracks, maintenance, runs) is built with. A window that offers less takes tools off
// after it is built.

#include "common/tools.h"

#include <span>

namespace slipbook {

// Every tool, in the order of its menu. A tip names the window's record where it says "%1"
// ("Save this %1" is "Save this run").
std::span<const tools::Tool> RecordTools();
// The menus, those of the menu bar in its order; a submenu names the tool that opens it.
std::span<const tools::Menu> RecordMenus();

}  // namespace slipbook
