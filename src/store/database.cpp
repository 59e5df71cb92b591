#include "store/database.h"

#include "store/dberror.h"
#include "store/jetdate.h"

#include <sqlite3.h>
#include <QFileInfo>

#include <algorithm>

namespace slipbook::store {

namespace {

const QString kSource = QStringLiteral("Slipbook.Database");

// The tables every logbook has had since its oldest level; a file without them is no logbook.
const char* const kLogbookTables[] = {
    "tblRuns", "tblCars", "tblEvents", "tblTracks", "tblListViewColumns", "tblViews"};

int FieldTypeOf(const QString& declType, bool primaryKey) {
    const QString t = declType.toUpper();
    if (t.startsWith(u"VARCHAR") || t.startsWith(u"CHAR")) {
        return fieldtype::Text;
    }
    if (t.startsWith(u"TEXT") || t.contains(u"CLOB")) {
        return fieldtype::Memo;
    }
    if (t.startsWith(u"BOOLEAN")) {
        return fieldtype::Boolean;
    }
    if (t.startsWith(u"DATETIME")) {
        return fieldtype::Date;
    }
    if (t.startsWith(u"CURRENCY")) {
        return fieldtype::Currency;
    }
    if (t.startsWith(u"INT")) {
        return primaryKey ? fieldtype::Long : fieldtype::Long;
    }
    if (t.startsWith(u"REAL") || t.startsWith(u"DOUBLE") || t.startsWith(u"FLOAT")) {
        return fieldtype::Double;
    }
    return fieldtype::Text;
}

int TextSize(const QString& declType) {
    const qsizetype open = declType.indexOf(u'(');
    const qsizetype close = declType.indexOf(u')');
    if (open > 0 && close > open) {
        return declType.mid(open + 1, close - open - 1).trimmed().toInt();
    }
    return 0;
}

// Functions of the desktop engine's SQL that SQLite lacks under these names.
void Ucase(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const QString s = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(argv[0])));
    const QByteArray out = s.toUpper().toUtf8();
    sqlite3_result_text(ctx, out.constData(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}

void Lcase(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const QString s = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(argv[0])));
    const QByteArray out = s.toLower().toUtf8();
    sqlite3_result_text(ctx, out.constData(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}

void Nz(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) != SQLITE_NULL) {
        sqlite3_result_value(ctx, argv[0]);
    } else if (argc > 1) {
        sqlite3_result_value(ctx, argv[1]);
    } else {
        sqlite3_result_int(ctx, 0);
    }
}

void RegisterFunctions(sqlite3* db) {
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3_create_function(db, "UCASE", 1, flags, nullptr, Ucase, nullptr, nullptr);
    sqlite3_create_function(db, "LCASE", 1, flags, nullptr, Lcase, nullptr, nullptr);
    sqlite3_create_function(db, "NZ", 1, flags, nullptr, Nz, nullptr, nullptr);
    sqlite3_create_function(db, "NZ", 2, flags, nullptr, Nz, nullptr, nullptr);
}

}  // namespace

QString QuoteIdent(const QString& name) {
    QString quoted = name;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

const FieldDef* TableDef::field(const QString& fieldName) const {
    for (const FieldDef& f : fields) {
        if (f.name.compare(fieldName, Qt::CaseInsensitive) == 0) {
            return &f;
        }
    }
    return nullptr;
}

Database::Database() = default;

Database::~Database() {
    Close();
}

void Database::OpenRaw(const QString& path, bool create) {
    Close();
    // One thread uses the connection, so the engine's own locking is only cost.
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(QFileInfo(path).absoluteFilePath().toUtf8().constData(), &db,
                                   flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString why =
            db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        sqlite3_close(db);
        throw DbError(err::CannotOpen, kSource,
                      QStringLiteral("Cannot open the file %1: %2.").arg(path, why));
    }
    db_ = db;
    path_ = QFileInfo(path).absoluteFilePath();
    sqlite3_extended_result_codes(db_, 1);
    RegisterFunctions(db_);
    schemaVersion_ = -1;
}

void Database::Open(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) {
        throw DbError(err::CannotOpen, kSource,
                      QStringLiteral("The logbook %1 does not exist.").arg(path));
    }
    OpenRaw(path, false);
    try {
        ApplyPragmas(true);
    } catch (...) {
        Close();
        throw;
    }
}

void Database::ApplyPragmas(bool exclusive) {
    if (exclusive) {
        // The lock is taken and kept for the life of the connection: a second copy of the
        // program is refused at once instead of writing the same file.
        sqlite3_exec(db_, "PRAGMA locking_mode=EXCLUSIVE", nullptr, nullptr, nullptr);
        int rc = sqlite3_exec(db_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK) {
            const int primary = rc & 0xff;
            if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) {
                throw DbError(err::InUse, kSource,
                              QStringLiteral("The logbook %1 is open in another copy of Slipbook.")
                                  .arg(path_));
            }
            if (primary == SQLITE_NOTADB) {
                throw DbError(err::CannotOpen, kSource,
                              QStringLiteral("The file %1 is not a Slipbook logbook.").arg(path_));
            }
            if (primary == SQLITE_CORRUPT) {
                throw DbError(err::CannotOpen, kSource,
                              QStringLiteral("The logbook %1 is damaged.").arg(path_));
            }
            Throw(rc, kSource);
        }
        // Reading the table list proves the file is a readable database and a logbook, before
        // anything is written to it.
        QStringList missing;
        try {
            for (const char* table : kLogbookTables) {
                if (!TableExists(QString::fromLatin1(table))) {
                    missing << QString::fromLatin1(table);
                }
            }
        } catch (const DbError& e) {
            sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
            const bool notADatabase = e.description().contains(u"not a database");
            throw DbError(err::CannotOpen, kSource,
                          notADatabase
                              ? QStringLiteral("The file %1 is not a Slipbook logbook.").arg(path_)
                              : QStringLiteral("The logbook %1 is damaged (%2).")
                                    .arg(path_, e.description()));
        }
        sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr);
        if (!missing.isEmpty()) {
            throw DbError(
                err::CannotOpen, kSource,
                QStringLiteral("The file %1 is not a Slipbook logbook: it has no table %2.")
                    .arg(path_, missing.join(QStringLiteral(", "))));
        }
    }
    // A crash or power cut must never lose a saved run nor corrupt the file.
    char* msg = nullptr;
    int rc = sqlite3_exec(db_, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;", nullptr,
                          nullptr, &msg);
    sqlite3_free(msg);
    if (rc != SQLITE_OK) {
        Throw(rc, kSource);
    }
}

void Database::Close() {
    if (db_ != nullptr) {
        sqlite3_close_v2(db_);
        db_ = nullptr;
    }
    path_.clear();
    schema_.clear();
    schemaVersion_ = -1;
    savepointDepth_ = 0;
}

void Database::Throw(int rc, const QString& source) const {
    const QString message = db_ ? QString::fromUtf8(sqlite3_errmsg(db_)) : QString();
    const int primary = rc & 0xff;
    int number = err::Generic;
    QString text = message;
    if (rc == SQLITE_CONSTRAINT_UNIQUE || rc == SQLITE_CONSTRAINT_PRIMARYKEY) {
        number = err::DuplicateKey;
        text = QStringLiteral("The change would create a duplicate key (%1).").arg(message);
    } else if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED) {
        number = err::InUse;
    } else if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) {
        number = err::CannotOpen;
    } else if (primary == SQLITE_FULL) {
        number = err::DiskFull;
    } else if (primary == SQLITE_READONLY) {
        number = err::ReadOnly;
    } else if (message.startsWith(u"no such table")) {
        number = err::NoSuchTable;
    } else if (message.contains(u"syntax error") || message.startsWith(u"incomplete input")) {
        number = err::Syntax;
    } else if (message.contains(u"already exists")) {
        number = err::TableExists;
    } else if (message.startsWith(u"datatype mismatch")) {
        number = err::TypeMismatch;
    }
    throw DbError(number, source,
                  text.isEmpty() ? QStringLiteral("Database error %1").arg(rc) : text);
}

void Database::ExecRaw(const QString& sqliteSql) {
    if (db_ == nullptr) {
        throw DbError(err::Generic, kSource, QStringLiteral("No logbook is open."));
    }
    const QByteArray utf8 = sqliteSql.toUtf8();
    const int rc = sqlite3_exec(db_, utf8.constData(), nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        Throw(rc, kSource);
    }
}

jet::Translated Database::Translate(const QString& jetSql) const {
    return jet::Translate(jetSql, this);
}

sqlite3_stmt* Database::Prepare(const QString& sqliteSql) const {
    if (db_ == nullptr) {
        throw DbError(err::Generic, kSource, QStringLiteral("No logbook is open."));
    }
    sqlite3_stmt* stmt = nullptr;
    const QByteArray utf8 = sqliteSql.toUtf8();
    const int rc =
        sqlite3_prepare_v2(db_, utf8.constData(), static_cast<int>(utf8.size()), &stmt, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt);
        Throw(rc, kSource);
    }
    return stmt;
}

int Database::Execute(const QString& jetSql) {
    const jet::Translated t = Translate(jetSql);
    if (t.kind == jet::StatementKind::SelectInto) {
        RunSelectInto(t);
        return sqlite3_changes(db_);
    }
    sqlite3_stmt* stmt = Prepare(t.sql);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    }
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE) {
        Throw(rc, kSource);
    }
    return sqlite3_changes(db_);
}

void Database::ExecuteScript(const QString& script) {
    Transaction tx(*this);
    for (const QString& statement : jet::SplitScript(script)) {
        try {
            Execute(statement);
        } catch (const DbError& e) {
            throw DbError(e.number(), e.source(),
                          e.description() + QStringLiteral("\nin: ") + statement.trimmed());
        }
    }
    tx.Commit();
}

void Database::RunSelectInto(const jet::Translated& t) {
    if (TableExists(t.intoTable)) {
        throw DbError(err::TableExists, kSource,
                      QStringLiteral("Table '%1' already exists.").arg(t.intoTable));
    }
    Transaction tx(*this);
    sqlite3_stmt* stmt = Prepare(t.sql);
    QStringList columnDefs;
    const int n = sqlite3_column_count(stmt);
    for (int i = 0; i < n; ++i) {
        QString def = QuoteIdent(QString::fromUtf8(sqlite3_column_name(stmt, i)));
        const char* table = sqlite3_column_table_name(stmt, i);
        const char* origin = sqlite3_column_origin_name(stmt, i);
        const char* decl = sqlite3_column_decltype(stmt, i);
        if (decl != nullptr) {
            QString type = QString::fromUtf8(decl);
            // A copied key is a plain number: the new table has no key of its own.
            if (type.toUpper() == u"INTEGER PRIMARY KEY AUTOINCREMENT") {
                type = QStringLiteral("INTEGER");
            }
            def += u' ' + type;
        }
        if (table != nullptr && origin != nullptr) {
            const char* coll = nullptr;
            if (sqlite3_table_column_metadata(db_, sqlite3_column_database_name(stmt, i), table,
                                              origin, nullptr, &coll, nullptr, nullptr,
                                              nullptr) == SQLITE_OK &&
                coll != nullptr && QByteArray(coll).toUpper() != "BINARY") {
                def += QStringLiteral(" COLLATE ") + QString::fromUtf8(coll);
            }
        }
        columnDefs << def;
    }
    sqlite3_finalize(stmt);
    ExecRaw(QStringLiteral("CREATE TABLE %1 (%2)")
                .arg(QuoteIdent(t.intoTable), columnDefs.join(u", ")));
    stmt = Prepare(QStringLiteral("INSERT INTO %1 %2").arg(QuoteIdent(t.intoTable), t.sql));
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE) {
        Throw(rc, kSource);
    }
    tx.Commit();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& jetSql, RecordsetType type) {
    return std::make_unique<Recordset>(*this, jetSql, type);
}

Query Database::OpenQuery(const QString& jetSql) {
    const jet::Translated t = Translate(jetSql);
    return Query(this, Prepare(t.sql));
}

// Transactions nest through savepoints, so a save can call routines that keep their own.
Database::Transaction::Transaction(Database& db) : db_(db) {
    name_ = QStringLiteral("sp%1").arg(db_.savepointDepth_ + 1);
    db_.ExecRaw(QStringLiteral("SAVEPOINT ") + name_);
    ++db_.savepointDepth_;
}

Database::Transaction::~Transaction() {
    if (!done_ && db_.db_ != nullptr) {
        const QByteArray sql =
            (QStringLiteral("ROLLBACK TO ") + name_ + QStringLiteral("; RELEASE ") + name_)
                .toUtf8();
        sqlite3_exec(db_.db_, sql.constData(), nullptr, nullptr, nullptr);
        --db_.savepointDepth_;
    }
}

void Database::Transaction::Commit() {
    if (done_) {
        return;
    }
    db_.ExecRaw(QStringLiteral("RELEASE ") + name_);
    done_ = true;
    --db_.savepointDepth_;
}

void Database::LoadSchema() const {
    sqlite3_stmt* stmt = Prepare(QStringLiteral("PRAGMA schema_version"));
    int version = 0;
    if (sqlite3_step(stmt) == SQLITE_ROW) {
        version = sqlite3_column_int(stmt, 0);
    }
    sqlite3_finalize(stmt);
    if (version == schemaVersion_) {
        return;
    }
    schema_.clear();
    stmt = Prepare(QStringLiteral(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
        "ESCAPE '\\' ORDER BY name"));
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        TableDef def;
        def.name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        schema_.push_back(std::move(def));
    }
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE) {
        Throw(rc, kSource);
    }
    for (TableDef& def : schema_) {
        sqlite3_stmt* info =
            Prepare(QStringLiteral("PRAGMA table_info(%1)").arg(QuoteIdent(def.name)));
        while (sqlite3_step(info) == SQLITE_ROW) {
            FieldDef f;
            f.name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(info, 1)));
            const unsigned char* decl = sqlite3_column_text(info, 2);
            f.declType = decl ? QString::fromUtf8(reinterpret_cast<const char*>(decl)) : QString();
            f.primaryKey = sqlite3_column_int(info, 5) != 0;
            f.type = FieldTypeOf(f.declType, f.primaryKey);
            f.size = f.type == fieldtype::Text ? TextSize(f.declType) : 0;
            def.fields.push_back(std::move(f));
        }
        sqlite3_finalize(info);
    }
    schemaVersion_ = version;
}

std::vector<TableDef> Database::TableDefs() {
    LoadSchema();
    return schema_;
}

std::optional<TableDef> Database::TableDefinition(const QString& table) {
    LoadSchema();
    for (const TableDef& def : schema_) {
        if (def.name.compare(table, Qt::CaseInsensitive) == 0) {
            return def;
        }
    }
    return std::nullopt;
}

bool Database::TableExists(const QString& table) {
    return TableDefinition(table).has_value();
}

bool Database::FieldExists(const QString& table, const QString& field) {
    const auto def = TableDefinition(table);
    return def && def->field(field) != nullptr;
}

void Database::SetAllowZeroLength(const QString&, const QString&, bool) {}

qint64 Database::LastInsertRowId() const {
    return db_ ? sqlite3_last_insert_rowid(db_) : 0;
}

std::optional<std::vector<jet::ColumnDecl>> Database::columns(const QString& table) const {
    LoadSchema();
    for (const TableDef& def : schema_) {
        if (def.name.compare(table, Qt::CaseInsensitive) == 0) {
            std::vector<jet::ColumnDecl> out;
            out.reserve(def.fields.size());
            for (const FieldDef& f : def.fields) {
                out.push_back({f.name, f.declType});
            }
            return out;
        }
    }
    return std::nullopt;
}

}  // namespace slipbook::store
