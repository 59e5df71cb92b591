#include "store/logbookcopy.h"

#include "store/dberror.h"
#include "store/logbookfile.h"

#include <sqlite3.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace slipbook::store {

namespace {

const QString kSource = QStringLiteral("Slipbook.Copy");

[[noreturn]] void Fail(const QString& text) {
    throw DbError(err::Generic, kSource, text);
}

// The engine's online backup from an open connection into a new file.
void Backup(sqlite3* from, const QString& path) {
    sqlite3* to = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK) {
        const QString why = to ? QString::fromUtf8(sqlite3_errmsg(to)) : QString();
        sqlite3_close(to);
        Fail(QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), why));
    }
    sqlite3_backup* b = sqlite3_backup_init(to, "main", from, "main");
    int rc = b ? sqlite3_backup_step(b, -1) : sqlite3_errcode(to);
    if (b) {
        sqlite3_backup_finish(b);
    }
    // The copy is a plain single file, whatever journal the logbook keeps.
    if (rc == SQLITE_DONE) {
        rc = sqlite3_exec(to, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
    }
    const QString why = QString::fromUtf8(sqlite3_errmsg(to));
    sqlite3_close(to);
    if (rc != SQLITE_OK && rc != SQLITE_DONE) {
        QFile::remove(path);
        Fail(QStringLiteral("The copy to %1 failed: %2").arg(QDir::toNativeSeparators(path), why));
    }
}

QString TempBeside(const QString& path) {
    return path + QStringLiteral(".part");
}

}  // namespace

void CopyLogbookTo(Database& db, const QString& path) {
    if (!db.IsOpen()) {
        Fail(QStringLiteral("No logbook is open."));
    }
    if (SameFile(path, db.Name())) {
        Fail(QStringLiteral("%1 is the logbook in use.").arg(QDir::toNativeSeparators(path)));
    }
    const QString temp = TempBeside(path);
    QFile::remove(temp);
    Backup(db.handle(), temp);
    // A copy of the racer's logbook is as private as the logbook.
    QFile::setPermissions(temp, QFile::permissions(db.Name()));
    // The file at `path` is the old copy or the new one at every moment, never none.
    if (const QString why = ReplaceFile(temp, path); !why.isEmpty()) {
        QFile::remove(temp);
        Fail(QStringLiteral("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), why));
    }
}

QString DatedBackupPath(const QString& logbookPath, const QDateTime& now) {
    const QFileInfo info(logbookPath);
    return info.dir().filePath(info.completeBaseName() + u'-' +
                               now.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) + u'.' +
                               info.suffix());
}

QString ReplaceLogbook(Database& db, const QString& source, const QDateTime& now) {
    const QString problem = FileProblem(source);
    if (!problem.isEmpty()) {
        Fail(problem);
    }
    const QString logbook = db.Name();
    if (SameFile(source, logbook)) {
        Fail(QStringLiteral("That file is the logbook in use."));
    }
    // The incoming copy is made first, beside the logbook, so nothing is touched if it fails.
    const QString incoming = TempBeside(logbook);
    QFile::remove(incoming);
    if (!QFile::copy(source, incoming)) {
        QFile::remove(incoming);
        Fail(QStringLiteral("Cannot copy %1 beside the logbook.")
                 .arg(QDir::toNativeSeparators(source)));
    }
    QFile::setPermissions(incoming, QFile::ReadOwner | QFile::WriteOwner);
    const QString backup = DatedBackupPath(logbook, now);
    try {
        CopyLogbookTo(db, backup);
    } catch (...) {
        QFile::remove(incoming);
        throw;
    }
    db.Close();
    // Closed cleanly, the logbook has no journal left; any file of an older way of keeping it
    // would be applied to the copy.
    for (const QString& side : SideFilePaths(logbook)) {
        QFile::remove(side);
    }
    const bool placed = ReplaceFile(incoming, logbook).isEmpty();
    try {
        if (!placed) {
            Fail(QStringLiteral("Cannot put the copy in place of %1.")
                     .arg(QDir::toNativeSeparators(logbook)));
        }
        db.Open(logbook);
    } catch (const DbError& e) {
        // Back to the logbook as it was.
        db.Close();
        QFile::remove(incoming);
        QFile::copy(backup, incoming);
        QFile::setPermissions(incoming, QFile::ReadOwner | QFile::WriteOwner);
        ReplaceFile(incoming, logbook);
        db.Open(logbook);
        throw DbError(e.number(), kSource,
                      e.description() + QStringLiteral(" The logbook is as it was."));
    }
    return backup;
}

}  // namespace slipbook::store
