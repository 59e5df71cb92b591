#pragma once

#include "store/database.h"

namespace slipbook::shell {

// Makes this car the one the next start opens on: it alone carries the default flag. A logbook
// from before the flag is left as it is. One transaction, or part of the caller's.
void SetDefaultCar(store::Database& db, qint64 carId);

}  // namespace slipbook::shell
