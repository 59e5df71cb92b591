#include "store/logbookfile.h"

#include "store/database.h"
#include "store/dberror.h"
#include "store/schematext.h"
#include "store/upgrade.h"

#include <sqlite3.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <system_error>

#if defined(Q_OS_UNIX)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace slipbook::store {

namespace {

const QString kSource = QStringLiteral("Slipbook.Open");

[[noreturn]] void Refuse(const QString& text) {
    throw DbError(err::CannotOpen, kSource, text);
}

std::filesystem::path FsPath(const QString& path) {
    return std::filesystem::path(path.toStdU16String());
}

// A table the program needs, and its columns: lower-cased (as the engine compares names) to
// spelled as the template spells them.
struct RequiredTable {
    QString name;
    std::map<QString, QString> columns;
};
using Schema = std::map<QString, RequiredTable>;

// The tables and columns of the template; with `beforeLadder`, less what the ladder adds, which
// an older logbook may lack.
Schema MakeSchema(bool beforeLadder) {
    Schema s;
    {
        Database made;
        made.OpenRaw(QStringLiteral(":memory:"), true);
        made.ExecuteScript(QString::fromUtf8(LogbookSchemaScript()));
        for (const TableDef& table : made.TableDefs()) {
            RequiredTable& t = s[table.name.toLower()];
            t.name = table.name;
            for (const FieldDef& field : table.fields) {
                t.columns[field.name.toLower()] = field.name;
            }
        }
    }
    if (!beforeLadder) {
        return s;
    }
    for (const UpgradeStep& step : UpgradeSteps()) {
        for (const QString& added : step.adds) {
            const qsizetype dot = added.indexOf(u'.');
            if (dot < 0) {
                s.erase(added.toLower());
            } else if (auto it = s.find(added.left(dot).toLower()); it != s.end()) {
                it->second.columns.erase(added.mid(dot + 1).toLower());
            }
        }
    }
    return s;
}

const Schema& RequiredSchema(bool beforeLadder) {
    static const Schema before = MakeSchema(true);
    static const Schema after = MakeSchema(false);
    return beforeLadder ? before : after;
}

// Every row of a one-column statement; false when the statement fails.
bool Column(sqlite3* db, const QByteArray& sql, QStringList* rows, int* rc) {
    sqlite3_stmt* stmt = nullptr;
    *rc = sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr);
    if (*rc != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return false;
    }
    while ((*rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        rows->append(
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))));
    }
    sqlite3_finalize(stmt);
    return *rc == SQLITE_DONE;
}

// A connection that reads the file as it lies, with no lock and no side file: nothing is
// written, nothing beside it is applied.
sqlite3* OpenAsItLies(const QString& path) {
    const QByteArray uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath())
                               .toString(QUrl::FullyEncoded)
                               .toUtf8() +
                           "?immutable=1";
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(uri.constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    return db;
}

qint64 SizeOf(const QString& path) {
    const QFileInfo info(path);
    return info.exists() ? info.size() : -1;
}

// A rollback journal that the engine would play back: one with its header still in place.
bool IsLiveJournal(const QString& path) {
    static const QByteArray kMagic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && f.read(8) == kMagic;
}

// What the engine would apply to the logbook when it opens it.
QStringList PendingSideFiles(const QString& path) {
    QStringList pending;
    if (SizeOf(path + QStringLiteral("-wal")) > 0) {
        pending << path + QStringLiteral("-wal");
    }
    if (SizeOf(path + QStringLiteral("-journal")) > 0 &&
        IsLiveJournal(path + QStringLiteral("-journal"))) {
        pending << path + QStringLiteral("-journal");
    }
    return pending;
}

struct Problem {
    enum Kind { None, NotALogbook, Damaged, Lacks, Unreadable };
    Kind kind = None;
    QString detail;
};

QString Join(const QStringList& names) {
    return names.join(QStringLiteral(", "));
}

// The tables and columns the logbook lacks; before the ladder, less what it adds.
Problem SchemaProblemOf(sqlite3* db, bool beforeLadder);

Problem ProblemOf(sqlite3* db) {
    QStringList check;
    int rc = SQLITE_OK;
    if (!Column(db, "PRAGMA quick_check(1)", &check, &rc)) {
        const int primary = rc & 0xff;
        if (primary == SQLITE_NOTADB) {
            return {Problem::NotALogbook, QString()};
        }
        return {Problem::Damaged, QString::fromUtf8(sqlite3_errmsg(db))};
    }
    if (check != QStringList{QStringLiteral("ok")}) {
        return {Problem::Damaged, check.value(0)};
    }
    return SchemaProblemOf(db, true);
}

Problem SchemaProblemOf(sqlite3* db, bool beforeLadder) {
    int rc = SQLITE_OK;
    QStringList tables;
    if (!Column(db, "SELECT name FROM sqlite_master WHERE type = 'table'", &tables, &rc)) {
        return {Problem::Damaged, QString::fromUtf8(sqlite3_errmsg(db))};
    }
    std::set<QString> have;
    for (const QString& t : tables) {
        have.insert(t.toLower());
    }
    QStringList missingTables;
    QStringList missingColumns;
    for (const auto& [lower, table] : RequiredSchema(beforeLadder)) {
        if (!have.contains(lower)) {
            missingTables << table.name;
            continue;
        }
        QStringList names;
        Column(db, "SELECT name FROM pragma_table_info('" + lower.toUtf8() + "')", &names, &rc);
        std::set<QString> present;
        for (const QString& n : names) {
            present.insert(n.toLower());
        }
        for (const auto& [column, spelled] : table.columns) {
            if (!present.contains(column)) {
                missingColumns << table.name + u'.' + spelled;
            }
        }
    }
    if (!missingTables.isEmpty()) {
        return {Problem::Lacks, QStringLiteral("it has no table %1").arg(Join(missingTables))};
    }
    if (!missingColumns.isEmpty()) {
        return {Problem::Lacks, QStringLiteral("it lacks the column %1").arg(Join(missingColumns))};
    }
    return {};
}

// The problem of the logbook after its pending side files are applied, on copies of them all
// in a folder beside it (the same disk, so a large logbook fits; else the temporary folder).
Problem ProblemAfterApplying(const QString& path, const QStringList& pending) {
    const QFileInfo info(path);
    std::optional<QTemporaryDir> trial;
    trial.emplace(info.dir().filePath(QStringLiteral(".slipbook-check-XXXXXX")));
    if (!trial->isValid()) {
        trial.emplace();
    }
    const Problem noRoom{Problem::Unreadable, QStringLiteral("no room to try the journal")};
    if (!trial->isValid()) {
        return noRoom;
    }
    const QString copy = trial->filePath(info.fileName());
    if (!QFile::copy(path, copy)) {
        return noRoom;
    }
    for (const QString& side : pending) {
        if (!QFile::copy(side, copy + side.mid(path.size()))) {
            return noRoom;
        }
    }
    sqlite3* db = nullptr;
    Problem problem{Problem::Unreadable, QString()};
    if (sqlite3_open_v2(copy.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) ==
        SQLITE_OK) {
        problem = ProblemOf(db);
    }
    sqlite3_close(db);
    return problem;
}

}  // namespace

QStringList SideFilePaths(const QString& logbook) {
    return {logbook + QStringLiteral("-journal"), logbook + QStringLiteral("-wal"),
            logbook + QStringLiteral("-shm")};
}

bool SameFile(const QString& a, const QString& b) {
    const auto real = [](const QString& path) {
        const QFileInfo info(path);
        if (info.exists()) {
            return info.canonicalFilePath();
        }
        const QString folder = info.dir().canonicalPath();
        return folder.isEmpty() ? info.absoluteFilePath() : QDir(folder).filePath(info.fileName());
    };
    if (real(a) == real(b)) {
        return true;
    }
    std::error_code error;
    return std::filesystem::equivalent(FsPath(a), FsPath(b), error) && !error;
}

QString ReplaceFile(const QString& from, const QString& to) {
    std::error_code error;
    std::filesystem::rename(FsPath(from), FsPath(to), error);
    if (error) {
        return QString::fromStdString(error.message());
    }
#if defined(Q_OS_UNIX)
    // The rename itself lives in the folder: without this a power cut may undo it.
    const int dir = ::open(QFileInfo(to).absolutePath().toLocal8Bit().constData(), O_RDONLY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
#endif
    return QString();
}

QString LogbookProblem(sqlite3* db, const QString& path) {
    const Problem p = ProblemOf(db);
    switch (p.kind) {
        case Problem::None:
            return QString();
        case Problem::NotALogbook:
            return QStringLiteral("The file %1 is not a Slipbook logbook.").arg(path);
        case Problem::Damaged:
            return QStringLiteral("The logbook %1 is damaged (%2).").arg(path, p.detail);
        case Problem::Lacks:
            return QStringLiteral("The file %1 is not a Slipbook logbook: %2.").arg(path, p.detail);
        case Problem::Unreadable:
            break;
    }
    return QStringLiteral("The logbook %1 cannot be read.").arg(path);
}

QString LevelProblem(sqlite3* db) {
    const Problem p = SchemaProblemOf(db, false);
    return p.kind == Problem::None ? QString() : p.detail;
}

QString FileProblem(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) {
        return QStringLiteral("The logbook %1 does not exist.").arg(path);
    }
    if (info.size() == 0) {
        return QStringLiteral("The logbook %1 is empty (0 bytes): it holds nothing to open.")
            .arg(path);
    }
    {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly)) {
            return QStringLiteral("The logbook %1 cannot be read.").arg(path);
        }
        if (f.read(16) != QByteArray("SQLite format 3\0", 16)) {
            return QStringLiteral("The file %1 is not a Slipbook logbook.").arg(path);
        }
    }
    sqlite3* db = OpenAsItLies(path);
    if (db == nullptr) {
        return QStringLiteral("The logbook %1 cannot be read.").arg(path);
    }
    const QString problem = LogbookProblem(db, path);
    sqlite3_close(db);
    return problem;
}

OpenCheck CheckBeforeOpen(const QString& path) {
    OpenCheck check;
    const QStringList pending = PendingSideFiles(path);
    if (pending.isEmpty()) {
        if (const QString problem = FileProblem(path); !problem.isEmpty()) {
            Refuse(problem);
        }
        return check;
    }
    // A journal left by a crash of this logbook brings it back whole; one from another file, or
    // from a later state of an older copy, would damage it.
    const Problem applied = ProblemAfterApplying(path, pending);
    if (applied.kind == Problem::None) {
        return check;
    }
    if (applied.kind == Problem::Unreadable) {
        // Untried, a journal may be the only way back to a whole logbook: nothing is moved.
        Refuse(QStringLiteral("Slipbook can't check the journal beside the logbook %1 (%2), so "
                              "the logbook is left as it is.")
                   .arg(path, applied.detail.isEmpty() ? QStringLiteral("it cannot be read")
                                                       : applied.detail));
    }
    if (const QString problem = FileProblem(path); !problem.isEmpty()) {
        Refuse(problem);
    }
    for (const QString& side : SideFilePaths(path)) {
        if (QFileInfo::exists(side)) {
            check.foreign << side;
        }
    }
    return check;
}

QStringList SetAside(const QStringList& files, const QDateTime& now) {
    QStringList moved;
    for (const QString& file : files) {
        const QString to = file + u'.' + now.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) +
                           QStringLiteral(".not-applied");
        moved << (QFile::rename(file, to) ? to : QString());
    }
    return moved;
}

}  // namespace slipbook::store
