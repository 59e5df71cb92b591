#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace slipbook::store::jet {

// The program writes its statements in the desktop engine's SQL dialect; this layer maps each
// statement onto SQLite so the statement texts can stay as they are written.

struct ColumnDecl {
    QString name;
    QString declType;  // as SQLite declares it: "INTEGER", "REAL", "VARCHAR(255)", ...
};

// What the translator needs to know of the schema: a table's columns in their order, or
// nothing when there is no such table. Names are compared without case.
class SchemaLookup {
public:
    virtual ~SchemaLookup() = default;
    virtual std::optional<std::vector<ColumnDecl>> columns(const QString& table) const = 0;
};

enum class StatementKind {
    Select,
    SelectInto,
    Insert,
    Update,
    Delete,
    CreateTable,
    AlterTable,
    DropTable,
    CreateIndex,
    DropIndex,
    Other
};

struct Translated {
    StatementKind kind = StatementKind::Other;
    // SQLite text. For SelectInto: the SELECT with its INTO clause taken out.
    QString sql;
    // SelectInto: the table to create.
    QString intoTable;
    // The first table the statement names: after FROM for Select, INTO for Insert,
    // UPDATE for Update, FROM for Delete, the table of DDL.
    QString baseTable;
};

// Translates one statement. Throws DbError (err::Syntax) on text it cannot read: an open
// string, a '#' literal that is no date. `schema` may be null; the rewrites that need it
// (INSERT ... SELECT * between tables, empty text into number columns) are then skipped.
Translated Translate(const QString& jetSql, const SchemaLookup* schema);

// Maps a column type of the data-definition language to its SQLite declaration:
// COUNTER -> "INTEGER PRIMARY KEY AUTOINCREMENT", Number -> "REAL", Integer/Long -> "INTEGER",
// YesNo -> "BOOLEAN", Text(n) -> "VARCHAR(n) COLLATE NOCASE", Text -> "VARCHAR(255) COLLATE
// NOCASE", Memo -> "TEXT COLLATE NOCASE", DateTime -> "DATETIME", Currency -> "CURRENCY".
QString MapDdlType(const QString& jetType);

// For an updatable row set: inserts `, "<base>".rowid AS "<alias>"` before the top-level FROM
// of a translated SELECT. Empty when the statement has no top-level FROM.
std::optional<QString> InjectRowid(const QString& sqliteSelect, const QString& baseTable,
                                   const QString& alias);

// Splits a script into statements at ';' outside literals and comments ("--" to line end).
// Blank statements are dropped.
QStringList SplitScript(const QString& text);

}  // namespace slipbook::store::jet
