#pragma once

// The program's main window over a logbook of the test's own, with every window registered, for
// tests that drive the whole program. Link slipbook_app.

#include "app/windows.h"
#include "common/clock.h"
#include "shell/ui/frmMain.h"
#include "store/logbookevents.h"
#include "support/gui.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <optional>

namespace slipbook::test {

struct ProgramTest : ::testing::Test {
    // The main window loaded over the logbook as the test has filled it, and shown.
    shell::frmMain& Start(bool show = true) {
        main.emplace(lb.db(), messages, notifier, clock, QString(), QStringLiteral("/nonexistent"));
        app::RegisterWindows(*main);
        main->FormLoadStuff();
        if (show) {
            ShowActive(*main);
        }
        return *main;
    }

    TempLogbook lb;
    ScriptedMessages messages;
    store::LogbookEvents notifier;
    SystemClock clock;
    std::optional<shell::frmMain> main;
};

}  // namespace slipbook::test
