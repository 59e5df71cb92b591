#include "store/database.h"

#include "store/dberror.h"
#include "store/jetdate.h"
#include "store/logbookcopy.h"
#include "store/logbookfile.h"
#include "store/sqlitememory.h"

#include <sqlite3.h>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStringEncoder>

#include <algorithm>
#include <cstring>
#include <utility>

namespace slipbook::store {

namespace {

const QString kSource = QStringLiteral("Slipbook.Database");
const QString kRowidAlias = QStringLiteral("__slipbook_rowid");

// The tables every logbook has had since its oldest level; a file without them is no logbook.
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
    UseSqliteMemoryPool();
    // One thread uses the connection, so the engine's own locking is only cost.
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* db = nullptr;
    const QString name = path == u":memory:" ? path : QFileInfo(path).absoluteFilePath();
    const int rc = sqlite3_open_v2(name.toUtf8().constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString why =
            db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        sqlite3_close(db);
        throw DbError(err::CannotOpen, kSource,
                      QStringLiteral("Cannot open the file %1: %2.").arg(path, why));
    }
    db_ = db;
    path_ = name;
    sqlite3_extended_result_codes(db_, 1);
    RegisterFunctions(db_);
    schemaVersion_ = -1;
    cache_ = std::make_shared<StatementCache>(db_);
    cacheSchemaVersion_ = -1;
    sqlite3_update_hook(db_, &Database::OnRowChange, this);
    AllTablesChanged();
}

void Database::Open(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() || !info.isFile()) {
        throw DbError(err::CannotOpen, kSource,
                      QStringLiteral("The logbook %1 does not exist.").arg(path));
    }
    Close();
    // A lock of the program's own beside the logbook keeps a second copy out, while other
    // programs may still read the file. The system frees it with the process, killed or not.
    auto lock = std::make_unique<QLockFile>(info.absoluteFilePath() + QStringLiteral(".lock"));
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        if (lock->error() == QLockFile::LockFailedError) {
            throw DbError(
                err::InUse, kSource,
                QStringLiteral("The logbook %1 is open in another copy of Slipbook.").arg(path));
        }
        throw DbError(err::CannotOpen, kSource,
                      QStringLiteral("The folder of the logbook %1 can't be written: Slipbook "
                                     "keeps its lock and journal beside the logbook.")
                          .arg(path));
    }
    // Nothing is written, nor any journal beside it applied, before the file has passed.
    const OpenCheck check = CheckBeforeOpen(path);
    QStringList notices;
    if (!check.foreign.isEmpty()) {
        const QStringList moved = SetAside(check.foreign, QDateTime::currentDateTime());
        QStringList kept;
        for (qsizetype i = 0; i < moved.size(); ++i) {
            if (moved[i].isEmpty()) {
                throw DbError(err::CannotOpen, kSource,
                              QStringLiteral("The file %1 beside the logbook does not belong to "
                                             "it and can't be moved out of the way.")
                                  .arg(QDir::toNativeSeparators(check.foreign[i])));
            }
            kept << QStringLiteral("    ") + QDir::toNativeSeparators(moved[i]);
        }
        notices << QStringLiteral(
                       "A journal file beside the logbook did not belong to it and "
                       "was not applied; the logbook is as it was last saved whole. "
                       "The file is kept as:\n") +
                       kept.join(u'\n');
    }
    OpenRaw(path, false);
    try {
        ApplyPragmas();
    } catch (...) {
        Close();
        throw;
    }
    lock_ = std::move(lock);
    notices_ = notices;
    moved_ = false;
}

void Database::ApplyPragmas() {
    // Every save goes straight into the logbook file through a rollback journal, synced at each
    // commit: a copy of the file taken between saves holds every run, and a crash or power cut
    // loses no saved run. A reader of another program delays a save by at most the timeout.
    sqlite3_busy_timeout(db_, 5000);
    char* msg = nullptr;
    int rc = sqlite3_exec(db_, "PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL;", nullptr,
                          nullptr, &msg);
    sqlite3_free(msg);
    if (rc != SQLITE_OK) {
        Throw(rc, kSource);
    }
}

QStringList Database::TakeOpenNotices() {
    return std::exchange(notices_, QStringList());
}

void Database::BeforeWrite() {
    if (db_ == nullptr || lock_ == nullptr || sqlite3_get_autocommit(db_) == 0) {
        return;
    }
    int moved = 0;
    if (!moved_ && sqlite3_file_control(db_, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
        moved != 0) {
        moved_ = true;
        rescue_ = Rescue();
    }
    if (moved_) {
        throw DbError(err::Moved, kSource, MovedText());
    }
}

QString Database::MovedText() const {
    QString text = QStringLiteral(
                       "The logbook %1 was moved, replaced or deleted while Slipbook "
                       "had it open, so nothing more is saved to it.")
                       .arg(QDir::toNativeSeparators(path_));
    if (!rescue_.isEmpty()) {
        text += QStringLiteral(" Everything saved until then is kept as %1.")
                    .arg(QDir::toNativeSeparators(rescue_));
    }
    return text + QStringLiteral(" Close Slipbook and start it again.");
}

bool Database::CheckStillInPlace() {
    try {
        BeforeWrite();
    } catch (const DbError&) {
        return false;
    }
    return !moved_;
}

QString Database::Rescue() {
    // The open connection still reads the file it opened: its whole content is written out
    // beside the path, under a name nobody else uses.
    const QFileInfo info(path_);
    const QString target = DatedBackupPath(
        info.dir().filePath(info.completeBaseName() + QStringLiteral("-rescued.") + info.suffix()),
        QDateTime::currentDateTime());
    try {
        CopyLogbookTo(*this, target);
    } catch (const DbError&) {
        return QString();
    }
    return target;
}

void Database::Close() {
    if (db_ != nullptr) {
        // Statements still lent out are finalized as they come back; the connection waits.
        cache_->Detach();
        cache_.reset();
        sqlite3_finalize(versionStmt_);
        versionStmt_ = nullptr;
        sqlite3_finalize(realStmt_);
        realStmt_ = nullptr;
        for (sqlite3_stmt* stmt : std::as_const(transactStmts_)) {
            sqlite3_finalize(stmt);
        }
        transactStmts_.clear();
        sqlite3_update_hook(db_, nullptr, nullptr);
        sqlite3_close_v2(db_);
        db_ = nullptr;
        lock_.reset();
    }
    path_.clear();
    schema_.clear();
    schemaVersion_ = -1;
    cacheSchemaVersion_ = -1;
    savepointDepth_ = 0;
    AllTablesChanged();
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
    // Anything may change here, a rollback or a DELETE that SQLite does not report row by row.
    AllTablesChanged();
    Transact(sqliteSql);
}

void Database::Transact(const QString& sql) {
    if (db_ == nullptr) {
        throw DbError(err::Generic, kSource, QStringLiteral("No logbook is open."));
    }
    // The same few savepoint statements begin and end every save: each is prepared once.
    sqlite3_stmt*& stmt = transactStmts_[sql];
    if (stmt == nullptr) {
        stmt = Prepare(sql);
    }
    const int rc = sqlite3_step(stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) {
        sqlite3_reset(stmt);
        Throw(rc, kSource);
    }
    sqlite3_reset(stmt);
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
    BeforeWrite();
    if (Statement s = Take(jetSql, Use::Execute)) {
        int rc;
        while ((rc = sqlite3_step(s.get())) == SQLITE_ROW) {
        }
        if (s.plan().kind == jet::StatementKind::Delete) {
            // A DELETE of every row is not reported row by row.
            TableChanged(s.plan().baseTable);
        }
        if (rc != SQLITE_DONE) {
            Throw(rc, kSource);
        }
        return sqlite3_changes(db_);
    }
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
    AllTablesChanged();
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
    return Query(this, Take(jetSql, Use::Query));
}

std::shared_ptr<StatementPlan> Database::MakePlan(const jet::Translated& t, Use use) const {
    auto plan = std::make_shared<StatementPlan>();
    plan->kind = t.kind;
    plan->sql = t.sql;
    plan->baseTable = t.baseTable;
    plan->params = t.params;
    if (use == Use::Dynaset && t.kind == jet::StatementKind::Select && !t.baseTable.isEmpty()) {
        if (const TableDef* def = FindTable(t.baseTable)) {
            if (auto injected = jet::InjectRowid(t.sql, t.baseTable, kRowidAlias)) {
                plan->sql = *injected;
                plan->rowidTable = def->name;
            }
        }
    }
    return plan;
}

void Database::ReadColumns(StatementPlan& plan, sqlite3_stmt* stmt) const {
    const int n = sqlite3_column_count(stmt) - (plan.rowidTable.isEmpty() ? 0 : 1);
    plan.columns.clear();
    plan.columns.reserve(n);
    for (int i = 0; i < n; ++i) {
        plan.columns.push_back(ColumnInfoOf(stmt, i));
    }
}

Statement Database::TakeAsWritten(const QString& jetSql, Use use, const QString& given) {
    const jet::Translated t = Translate(jetSql);
    if ((use == Use::Snapshot || use == Use::Dynaset) && t.kind != jet::StatementKind::Select) {
        throw DbError(err::Syntax, QStringLiteral("Slipbook.Recordset"),
                      QStringLiteral("A row set needs a SELECT statement: %1").arg(given));
    }
    auto plan = MakePlan(t, use);
    sqlite3_stmt* stmt = Prepare(plan->sql);
    ReadColumns(*plan, stmt);
    return Statement(stmt, std::move(plan));
}

Statement Database::Take(const QString& jetSql, Use use, const QString& given) {
    if (db_ == nullptr) {
        throw DbError(err::Generic, kSource, QStringLiteral("No logbook is open."));
    }
    CheckSchema();
    auto shape = jet::ShapeOf(jetSql);
    if (!shape) {
        return use == Use::Execute ? Statement() : TakeAsWritten(jetSql, use, given);
    }
    const bool rowSet = use == Use::Snapshot || use == Use::Dynaset;
    if (rowSet && !shape->select) {
        return TakeAsWritten(jetSql, use, given);
    }
    // A dynaset's statement carries the rowid; the others are alike.
    shape->key += use == Use::Dynaset ? u'd' : u'p';
    const QString& key = shape->key;
    StatementCache::Entry* entry = cache_->Find(key);
    if (entry == nullptr) {
        std::shared_ptr<StatementPlan> plan;
        sqlite3_stmt* fresh = nullptr;
        try {
            plan = MakePlan(jet::TranslateShape(*shape, this), use);
            fresh = Prepare(plan->sql);
            ReadColumns(*plan, fresh);
        } catch (const DbError&) {
            // The statement as written gives its own error, or runs where the shape can't.
            plan.reset();
        }
        entry = &cache_->Add(key, plan);
        entry->idle = fresh;
    }
    if (!entry->plan) {
        return TakeAsWritten(jetSql, use, given);
    }
    Statement s = cache_->Lend(key, *entry);
    if (!s) {
        s = cache_->Lend(key, *entry, Prepare(entry->plan->sql));
    }
    if (!shape->literals.empty()) {
        const auto values = jet::ParamValues(*shape, s.plan().params);
        if (!values) {
            return TakeAsWritten(jetSql, use, given);
        }
        Bind(s, *values);
    }
    return s;
}

void Database::Bind(Statement& s, const std::vector<jet::ParamValue>& values) {
    // The texts go into one block that the statement reads in place.
    qsizetype room = 0;
    for (const jet::ParamValue& v : values) {
        if (v.type == jet::ParamValue::Type::Text) {
            room += 3 * v.text().size();
        }
    }
    char* at = room > 0 ? s.TextRoom(room) : nullptr;
    QStringEncoder utf8(QStringEncoder::Utf8);
    sqlite3_stmt* stmt = s.get();
    for (size_t i = 0; i < values.size(); ++i) {
        const jet::ParamValue& v = values[i];
        const int index = static_cast<int>(i + 1);
        switch (v.type) {
            case jet::ParamValue::Type::Null:
                sqlite3_bind_null(stmt, index);
                break;
            case jet::ParamValue::Type::Integer:
                sqlite3_bind_int64(stmt, index, v.integer);
                break;
            case jet::ParamValue::Type::Real: {
                const double value = SqliteReal(v.text());
                sqlite3_bind_double(stmt, index, v.negate ? -value : value);
                break;
            }
            case jet::ParamValue::Type::Text: {
                if (at == nullptr) {
                    // Only empty texts here; a null pointer would bind Null, not ''.
                    sqlite3_bind_text(stmt, index, "", 0, SQLITE_STATIC);
                    break;
                }
                char* end = utf8.appendToBuffer(at, v.text());
                sqlite3_bind_text(stmt, index, at, static_cast<int>(end - at), SQLITE_STATIC);
                at = end;
                break;
            }
        }
    }
}

double Database::SqliteReal(QStringView text) {
    // SQLite's own reading of the number, the one it gives the number written in a statement.
    if (realStmt_ == nullptr) {
        realStmt_ = Prepare(QStringLiteral("SELECT CAST(?1 AS REAL)"));
    }
    // A number is written in plain ASCII, and short.
    char ascii[64];
    QByteArray utf8;
    const char* bytes = ascii;
    int size = static_cast<int>(text.size());
    if (text.size() <= qsizetype(sizeof ascii)) {
        for (qsizetype i = 0; i < text.size() && bytes == ascii; ++i) {
            if (text[i].unicode() >= 0x80) {
                bytes = nullptr;
            }
            ascii[i] = static_cast<char>(text[i].unicode());
        }
    } else {
        bytes = nullptr;
    }
    if (bytes == nullptr) {
        utf8 = text.toUtf8();
        bytes = utf8.constData();
        size = static_cast<int>(utf8.size());
    }
    sqlite3_bind_text(realStmt_, 1, bytes, size, SQLITE_STATIC);
    double value = 0;
    if (sqlite3_step(realStmt_) == SQLITE_ROW) {
        value = sqlite3_column_double(realStmt_, 0);
    }
    sqlite3_reset(realStmt_);
    sqlite3_clear_bindings(realStmt_);
    return value;
}

int Database::SchemaVersion() const {
    if (versionStmt_ == nullptr) {
        versionStmt_ = Prepare(QStringLiteral("PRAGMA schema_version"));
    }
    int version = 0;
    if (sqlite3_step(versionStmt_) == SQLITE_ROW) {
        version = sqlite3_column_int(versionStmt_, 0);
    }
    sqlite3_reset(versionStmt_);
    return version;
}

void Database::CheckSchema() const {
    const int version = SchemaVersion();
    if (version != cacheSchemaVersion_) {
        cache_->Clear();
        cacheSchemaVersion_ = version;
        baseStamp_ = ++serial_;
    }
}

quint64 Database::TableStamp(const QString& table) {
    if (db_ != nullptr) {
        CheckSchema();
    }
    const auto it = stamps_.find(table.toLower().toStdString());
    return it == stamps_.end() ? baseStamp_ : std::max(baseStamp_, it->second);
}

void Database::TableChanged(const QString& table) {
    stamps_[table.toLower().toStdString()] = ++serial_;
}

void Database::AllTablesChanged() {
    stamps_.clear();
    lastChanged_ = nullptr;
    baseStamp_ = ++serial_;
}

void Database::OnRowChange(void* self, int, const char*, const char* table, long long) {
    auto* db = static_cast<Database*>(self);
    // A statement changes one table row after row.
    if (db->lastChanged_ != nullptr && std::strcmp(db->lastChangedName_.c_str(), table) == 0) {
        *db->lastChanged_ = ++db->serial_;
        return;
    }
    db->TableChanged(QString::fromUtf8(table));
    db->lastChangedName_ = table;
    db->lastChanged_ = &db->stamps_[QString::fromUtf8(table).toLower().toStdString()];
}

// Transactions nest through savepoints, so a save can call routines that keep their own.
Database::Transaction::Transaction(Database& db) : db_(db) {
    if (db_.savepointDepth_ == 0) {
        db_.BeforeWrite();
    }
    name_ = QStringLiteral("sp%1").arg(db_.savepointDepth_ + 1);
    db_.Transact(QStringLiteral("SAVEPOINT ") + name_);
    ++db_.savepointDepth_;
}

Database::Transaction::~Transaction() {
    if (!done_ && db_.db_ != nullptr) {
        const QByteArray sql =
            (QStringLiteral("ROLLBACK TO ") + name_ + QStringLiteral("; RELEASE ") + name_)
                .toUtf8();
        sqlite3_exec(db_.db_, sql.constData(), nullptr, nullptr, nullptr);
        --db_.savepointDepth_;
        // What was read inside is gone, and so may be a table or column made inside.
        db_.AllTablesChanged();
        db_.cache_->Clear();
        db_.cacheSchemaVersion_ = -1;
    }
}

void Database::Transaction::Commit() {
    if (done_) {
        return;
    }
    db_.Transact(QStringLiteral("RELEASE ") + name_);
    done_ = true;
    --db_.savepointDepth_;
}

void Database::LoadSchema() const {
    const int version = SchemaVersion();
    if (version == schemaVersion_) {
        return;
    }
    schema_.clear();
    sqlite3_stmt* stmt = Prepare(QStringLiteral(
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

const TableDef* Database::FindTable(const QString& table) const {
    LoadSchema();
    for (const TableDef& def : schema_) {
        if (def.name.compare(table, Qt::CaseInsensitive) == 0) {
            return &def;
        }
    }
    return nullptr;
}

std::optional<TableDef> Database::TableDefinition(const QString& table) {
    if (const TableDef* def = FindTable(table)) {
        return *def;
    }
    return std::nullopt;
}

bool Database::TableExists(const QString& table) {
    return FindTable(table) != nullptr;
}

bool Database::FieldExists(const QString& table, const QString& field) {
    const TableDef* def = FindTable(table);
    return def != nullptr && def->field(field) != nullptr;
}

void Database::SetAllowZeroLength(const QString&, const QString&, bool) {}

qint64 Database::LastInsertRowId() const {
    return db_ ? sqlite3_last_insert_rowid(db_) : 0;
}

std::optional<std::vector<jet::ColumnDecl>> Database::columns(const QString& table) const {
    const TableDef* def = FindTable(table);
    if (def == nullptr) {
        return std::nullopt;
    }
    std::vector<jet::ColumnDecl> out;
    out.reserve(def->fields.size());
    for (const FieldDef& f : def->fields) {
        out.push_back({f.name, f.declType});
    }
    return out;
}

}  // namespace slipbook::store
