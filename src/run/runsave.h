#pragma once

// What happens between a filled run window and the logbook: the run's statements, the car's
// tune-up, the custom field names, the maintenance counters, run numbering, the row set the
// window opens and the main list's row of a saved run. A save is one transaction: the run, the
// car, the counters and the names land together or not at all.

#include "common/messages.h"
#include "run/fieldtable.h"
#include "shell/runlist.h"
#include "store/database.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>

namespace slipbook::run {

using CustomNames = std::array<QString, 6>;

// Where the main window's list stands when the run window opens.
struct RunListState {
    bool filterActive = false;
    QString filterSql;
    qint64 eventId = 0;  // 0: all events
};

// The row set of the run window: the list's statement (the filter's, or the event's runs)
// narrowed to the run with this id. A new run, id 0, has no row until it is saved.
QString RunRecordsSql(const RunListState& list, qint64 runId);

// The number after the highest of the event's runs of the car; 1 for the first. Numbers run per
// event and car and gaps are never filled.
qint64 RunNextNumber(store::Database& db, qint64 eventId, qint64 carId);

// The statements of a run: the values of its nine groups (summary, weather, engine, carburetion,
// drive train, chassis, launch, results, custom values) in order, in one statement, since a save
// is one transaction and the groups land together anyway. A new run is one INSERT, with the base
// set-up and the nozzles it takes from the car; an edit is one UPDATE, which leaves those alone.
// Every text is quoted with its apostrophes doubled; an empty number is Null.
QString RunInsertStatement(const RunValues& values);
QString RunStatement(const RunValues& values, qint64 runId);
// The UPDATE that gives the run's tune-up, notes, throttle stops and custom values to the car,
// its seven groups in order.
QString CarStatement(const RunValues& values, qint64 carId);
// The six statements that rename the custom fields in the column catalogue.
QStringList CustomNameStatements(const CustomNames& names);

// The names of the six custom fields, as the column catalogue holds them.
CustomNames ReadCustomNames(store::Database& db);

// True when no run is later by date and time than this one (a run without a date or time is
// earlier than any with one): a saved edit of it changes the car.
bool IsNewestRun(store::Database& db, qint64 runId);

// Counts one run more on the car's open maintenance items.
void CountRunOnMaintenance(store::Database& db, qint64 carId);
// True when open items of the car are within a tenth of their schedule or past it.
bool MaintenanceDue(store::Database& db, qint64 carId);

struct RunSaveRequest {
    RunValues values;
    qint64 runId = 0;  // 0 adds a run
    // The names, when they were opened for editing in the window.
    std::optional<CustomNames> customNames;
};

struct RunSaveOutcome {
    qint64 runId = 0;
    bool added = false;
    bool carUpdated = false;
    bool maintenanceDue = false;  // an added run brought open items of its car due
};

// Writes the run, and for a run added or the newest of all the car's tune-up, the custom names
// when given, and for an added run the maintenance count, in one transaction. Throws the
// store's error, with nothing written, when any statement fails.
RunSaveOutcome SaveRun(store::Database& db, const RunSaveRequest& request);

// The car's saved tune-up for a new run, by column of the run, each text followed by one
// blank; nothing when the car is not found or does not carry its tune-up forward.
std::optional<QHash<QString, QString>> CarTuneUp(store::Database& db, qint64 carId);

// The fuel and carburetion types of a car, which decide the tabs shown.
struct CarTypes {
    QString fuel;
    QString carburetion;
    bool fuelInjected() const;  // the Fuel Setup tab in place of the Carb Setup tab
    bool nitro() const;         // the nitro box shown
};
CarTypes ReadCarTypes(store::Database& db, qint64 carId, Messages& messages);

}  // namespace slipbook::run
