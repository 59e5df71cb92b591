#pragma once

// The cars of the logbook without a window: when a car may be deleted, its delete with every row
// that belongs to it, and the default flag.

#include "common/records.h"
#include "store/database.h"

#include <QString>

namespace slipbook::garage {

// A car with runs or expenses stays; an empty table has nothing to delete.
DeleteRule CarDeleteRule();

// The rows a car's delete took, table by table.
struct CarRowsDeleted {
    int runs = 0;
    int expenses = 0;
    int setupRuns = 0;
    int maintenance = 0;
};

// Deletes the car with its runs, expenses, setup runs and maintenance items, in ONE transaction:
// a statement that fails leaves every row in place and is thrown.
CarRowsDeleted DeleteCar(store::Database& db, qint64 carId);

// The car's stored default flag; false in a logbook from before the flag.
bool IsDefaultCar(store::Database& db, qint64 carId);
// On: this car alone is the default. Off: this car is no longer the default, and none is until
// the next pick of a car.
void WriteDefaultCar(store::Database& db, qint64 carId, bool on);

}  // namespace slipbook::garage
