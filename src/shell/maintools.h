#pragma once

// The tools of the main window: its menus, its tool bar and the selectors beside it. The window
// is built by walking these tables, and its tips are read from them.

#include "common/tools.h"

#include <span>

namespace slipbook::shell {

// Every tool. Each menu takes its tools in this order, and so does each group of the tool bar;
// the tools of a window still to come start disabled.
std::span<const tools::Tool> MainTools();
// The menus of the menu bar, in its order.
std::span<const tools::Menu> MainMenus();

// A list box of the selector bar, with its label.
struct Selector {
    tools::ToolId id;
    tools::ToolId label;  // none for a box without a label
    const char* caption = "";
    int characters = 12;     // the width it keeps, in characters
    bool stretches = false;  // takes the room the bar has to spare
    const char* tip = "";
};
std::span<const Selector> MainSelectors();

}  // namespace slipbook::shell
