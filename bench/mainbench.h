#pragma once

// The main window over a benchmark's logbook, as the list benchmarks measure it.

#include "common/clock.h"
#include "logbookgen.h"
#include "shell/ui/frmMain.h"
#include "store/database.h"
#include "store/logbookevents.h"

#include <QCoreApplication>

namespace slipbook::bench {

// The logbook is open before the window that reads it is made.
struct OpenLogbook {
    explicit OpenLogbook(const QString& path) { db.Open(path); }
    store::Database db;
};

struct MainOnLogbook : OpenLogbook {
    explicit MainOnLogbook(const QString& path)
        : OpenLogbook(path),
          main(db, messages, events, clock, QString(), QCoreApplication::applicationDirPath()) {}

    PrintedMessages messages;
    store::LogbookEvents events;
    SystemClock clock;
    shell::frmMain main;
};

}  // namespace slipbook::bench
