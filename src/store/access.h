#pragma once

// The access layer the windows use: opening the logbook, two look-up helpers and the error
// boxes. Every box goes through the Messages seam.

#include "common/messages.h"
#include "store/database.h"
#include "store/dberror.h"

#include <QString>
#include <QVariant>

namespace slipbook::store {

// Prepares the engine. Always true with this store; kept as the first start-up step.
bool DataInit(Database& db, Messages& messages);
// Opens the logbook; on failure shows ErrorReport titled "DataOpen()" and returns false.
bool DataOpen(Database& db, const QString& path, Messages& messages);

// True when the row set of `sql` holds no row that meets `criterion`.
bool TableDelCheck(Database& db, const QString& sql, const QString& criterion, Messages& messages);
// The `strFind` column of the first row of `strTable` whose `strLook` equals the value, or the
// empty text. An invalid (never assigned) value counts as empty.
QVariant TableLookup(Database& db, const QString& strTable, const QString& strLook,
                     const QString& strFind, const QVariant& vntSearchVal, Messages& messages);

void ErrorReport(const DbError& error, const QString& title, Messages& messages);
// The failure path of every save: the duplicate-key box, or ErrorReport. Cancels the pending
// update of `rs` for a duplicate key, when a row set is given.
void IsDuplicate(const DbError& error, Recordset* rs, Messages& messages);

// Wraps any exception into the store's error object, so that every failure can be reported
// with ErrorReport.
DbError AsDbError(const std::exception& e);

}  // namespace slipbook::store
