#pragma once

// The logbook as a file: what is checked before the engine may write a byte of it, the files the
// engine keeps beside it, and the moves that must never leave the logbook missing.

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>

struct sqlite3;

namespace slipbook::store {

// The files the engine keeps beside a logbook (its rollback journal, and the write-ahead log
// and its index of a logbook kept that way): they belong to that one file.
QStringList SideFilePaths(const QString& logbook);

// True when both paths name one file: the same real path through any link, or the same file on
// disk under two names.
bool SameFile(const QString& a, const QString& b);

// Puts `from` in the place of `to` in one step, so that `to` is at every moment either the old
// file or the new one, never missing. The folder's entry is made durable too. Empty on success,
// else the cause.
QString ReplaceFile(const QString& from, const QString& to);

// What is wrong with the open database at `path` as a logbook, in plain words: the first damage
// a quick check finds, or the tables and columns the program needs that it lacks (less those
// the upgrade ladder adds). Empty when it is a whole logbook.
QString LogbookProblem(sqlite3* db, const QString& path);

// After the upgrade ladder: what the open logbook still lacks of the current level, in plain
// words ("it has no table tblX"); empty when it has every table and column of the template.
QString LevelProblem(sqlite3* db);

// Empty when the file on its own (without anything beside it) is a whole logbook; else the
// cause in plain words. Reads only.
QString FileProblem(const QString& path);

// What the checks before an open found.
struct OpenCheck {
    // Side files that do not belong to the logbook: applying them would damage it.
    QStringList foreign;
};

// Checks the file at `path` and its side files before the engine opens it for writing: the file
// is a database, whole, and a logbook; a journal or log beside it is tried on a copy first and
// is reported foreign when the logbook would not come out of it whole. Reads only. Throws
// DbError (err::CannotOpen) with the cause.
OpenCheck CheckBeforeOpen(const QString& path);

// Moves side files out of the way under a dated name beside them; returns the new names. A file
// that can't be moved is left and reported by an empty name.
QStringList SetAside(const QStringList& files, const QDateTime& now);

}  // namespace slipbook::store
