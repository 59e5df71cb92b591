#pragma once

#include "store/database.h"

#include <QDateTime>
#include <QString>

namespace slipbook::store {

// Copies the open logbook to a file through the engine's online backup, so the copy is whole and
// consistent while the logbook stays open. An existing file at `path` is replaced only once the
// copy is complete. Throws DbError.
void CopyLogbookTo(Database& db, const QString& path);

// The name a replaced logbook is kept under, beside it: "Slipbook-2026-11-23-013000.db".
QString DatedBackupPath(const QString& logbookPath, const QDateTime& now);

// Replaces the open logbook with a copy of `source`: checks that `source` is a logbook, keeps
// the current file as a dated backup beside it, puts the copy in place and reopens. On any
// failure the current logbook is back in place and open. Returns the backup's path; throws
// DbError with the cause.
QString ReplaceLogbook(Database& db, const QString& source, const QDateTime& now);

}  // namespace slipbook::store
