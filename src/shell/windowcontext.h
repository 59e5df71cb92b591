#pragma once

// The one thing a window of the program is built from.

#include "common/clock.h"
#include "common/messages.h"
#include "shell/maincontext.h"
#include "shell/mainstate.h"
#include "store/database.h"
#include "store/logbookevents.h"

namespace slipbook::shell {

// The application's logbook, boxes, change notifier and clock, and the main window's state and
// behaviours. Every reference outlives every window made from it.
struct WindowContext {
    store::Database& db;
    Messages& messages;
    store::LogbookEvents& events;
    const WallClock& clock;
    MainState& state;
    MainContext& main;
};

}  // namespace slipbook::shell
