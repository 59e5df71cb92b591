// slipbook-mktemplate OUT.db file1.sql file2.sql ...
//
// Builds the template logbook from SQL scripts written in the program's own dialect. Running
// them through the store (rather than the sqlite3 shell) makes the template's column types
// exactly what the store declares at run time.

#include "store/database.h"
#include "store/dberror.h"

#include <sqlite3.h>

#include <QFile>
#include <QString>
#include <cstdio>
#include <exception>

namespace {

using slipbook::store::Database;
using slipbook::store::DbError;

void Report(const QString& where, const QString& what) {
    std::fprintf(stderr, "slipbook-mktemplate: %s: %s\n", qPrintable(where), qPrintable(what));
}

bool ReadScript(const QString& path, QString* text) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Report(path, file.errorString());
        return false;
    }
    *text = QString::fromUtf8(file.readAll());
    return true;
}

// The template is copied as a bare file, so it must not depend on a write-ahead log beside it;
// the journal is set to a plain rollback file and the pages are compacted.
bool Finish(Database& db, const QString& out) {
    for (const char* sql : {"PRAGMA journal_mode=DELETE", "VACUUM"}) {
        char* message = nullptr;
        if (sqlite3_exec(db.handle(), sql, nullptr, nullptr, &message) != SQLITE_OK) {
            Report(out, QStringLiteral("%1: %2").arg(QString::fromUtf8(sql),
                                                     QString::fromUtf8(message ? message : "")));
            sqlite3_free(message);
            return false;
        }
    }
    return true;
}

bool Build(const QString& out, const QStringList& scripts) {
    Database db;
    QString current = out;
    try {
        db.OpenRaw(out, true);
        for (const QString& path : scripts) {
            current = path;
            QString text;
            if (!ReadScript(path, &text)) {
                return false;
            }
            db.ExecuteScript(text);
        }
        current = out;
        if (!Finish(db, out)) {
            return false;
        }
        db.Close();
        return true;
    } catch (const DbError& e) {
        Report(
            current,
            QStringLiteral("error %1 (%2): %3").arg(e.number()).arg(e.source(), e.description()));
    } catch (const std::exception& e) {
        Report(current, QString::fromUtf8(e.what()));
    }
    return false;
}

void RemoveDatabase(const QString& path) {
    for (const QString& suffix :
         {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")}) {
        QFile::remove(path + suffix);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: slipbook-mktemplate OUT.db SCRIPT.sql...\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    QStringList scripts;
    for (int i = 2; i < argc; ++i) {
        scripts << QString::fromLocal8Bit(argv[i]);
    }

    // A template is always built from nothing, never added to.
    RemoveDatabase(out);
    if (!Build(out, scripts)) {
        // The database is closed by now; a half-made template must not be taken for a good one.
        RemoveDatabase(out);
        return 1;
    }
    return 0;
}
