#pragma once

// What the main window shows and the other windows read, kept apart from any window: the car,
// event and track whose runs are listed, the list, the filter, the last tool, the page lead-in
// and the weather station's folder.

#include "shell/pageleadin.h"

#include <QString>

namespace slipbook::shell {

// A selector's pick: the row's key (0 for "<All Events>" and "<All Tracks>") and its text.
struct Pick {
    qint64 id = 0;
    QString desc;
};

struct RunFilter {
    bool active = false;
    QString text;  // what the filter tool's tip says
    QString sql;   // the criterion added to the run list's statement
};

class MainState {
public:
    Pick car;
    Pick event;
    Pick track;
    QString view = QStringLiteral("ID_Runs");  // the list shown: ID_Runs, ID_Events, ...
    RunFilter filter;
    // The last tool clicked: how a record window learns that a new record is asked for.
    QString storedTool;
    PageLeadin leadin;
    QString weatherDir;

    // True when the last tool asked for a new record; the ask is used up.
    bool TakeNewRecordAsked();
};

// Where the weather station program leaves its files unless the command line says otherwise.
QString DefaultWeatherDir();

// The weather directory for this run: the `dir=` value of the command line, else the default.
QString WeatherDirInit(const QString& commandLine);

}  // namespace slipbook::shell
