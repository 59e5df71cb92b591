#pragma once

#include "store/jetsql.h"
#include "store/recordset.h"
#include "store/statementcache.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;
class QLockFile;

namespace slipbook::store {

// Column type codes as the table definitions report them (the desktop engine's numbers, which
// the upgrade steps test: 10 text, 12 memo).
namespace fieldtype {
constexpr int Boolean = 1;
constexpr int Integer = 3;
constexpr int Long = 4;
constexpr int Currency = 5;
constexpr int Double = 7;
constexpr int Date = 8;
constexpr int Text = 10;
constexpr int Memo = 12;
}  // namespace fieldtype

struct FieldDef {
    QString name;
    QString declType;  // SQLite declaration
    int type = fieldtype::Text;
    int size = 0;  // characters, for text
    bool allowZeroLength = true;
    bool primaryKey = false;
};

struct TableDef {
    QString name;
    int attributes = 0;  // 0 for an ordinary table
    std::vector<FieldDef> fields;
    const FieldDef* field(const QString& name) const;  // without case; null when absent
};

class Query;

// A name between double quotes, as SQLite reads an identifier whatever it holds.
QString QuoteIdent(const QString& name);

// The one open logbook. Every statement of the program goes through it, in the desktop
// engine's dialect (see jetsql.h). Errors are thrown as DbError.
class Database : public jet::SchemaLookup {
public:
    Database();
    ~Database() override;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Opens an existing logbook for this copy of the program; other programs may read it. The
    // file is checked whole and a logbook before anything is written to it. Throws DbError:
    // err::CannotOpen with the cause in plain words (missing, empty, damaged, not a logbook, a
    // table or column missing), err::InUse when another copy of the program holds it. The file
    // is never changed when the open fails.
    void Open(const QString& path);
    // What the user should know of the last open (a journal beside the logbook set aside), once.
    QStringList TakeOpenNotices();
    // Before a write outside a transaction, and at the start of one: throws err::Moved when the
    // logbook's file is no longer at its path (moved, replaced by another file, deleted). The
    // first time, what the connection holds is written out beside the path (see MovedText).
    void BeforeWrite();
    // False when the logbook's file is no longer at its path; for the close.
    bool CheckStillInPlace();
    QString MovedText() const;
    // Opens (or creates) a plain database without the logbook check or the lock; for the
    // template generator and tests.
    void OpenRaw(const QString& path, bool create);
    void Close();
    bool IsOpen() const { return db_ != nullptr; }
    QString Name() const { return path_; }
    sqlite3* handle() const { return db_; }

    // Runs one statement; returns the rows it changed.
    int Execute(const QString& jetSql);
    // Runs every statement of a script (separated by ';') in one transaction.
    void ExecuteScript(const QString& script);

    std::unique_ptr<Recordset> OpenRecordset(const QString& jetSql,
                                             RecordsetType type = RecordsetType::Dynaset);
    // A forward-only read of a SELECT, for long lists that must not be held in memory whole.
    Query OpenQuery(const QString& jetSql);

    // All statements between begin and commit land together or not at all. Nests.
    class Transaction {
    public:
        explicit Transaction(Database& db);
        ~Transaction();  // rolls back unless committed
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void Commit();

    private:
        Database& db_;
        QString name_;
        bool done_ = false;
    };

    // Table definitions, read anew when the schema has changed. System tables are left out.
    std::vector<TableDef> TableDefs();
    std::optional<TableDef> TableDefinition(const QString& table);
    bool TableExists(const QString& table);
    bool FieldExists(const QString& table, const QString& field);
    // Sets the zero-length rule of a text column (kept for the upgrade steps; every text column
    // of this store accepts the empty text, so this records the wish and changes nothing).
    void SetAllowZeroLength(const QString& table, const QString& field, bool allow);

    qint64 LastInsertRowId() const;

    // A number that changes whenever rows of the table may have changed (a statement, a row set's
    // write, a rollback) or the schema did, and never comes back to an earlier value: what was
    // read from the table may be kept while its stamp stays the same.
    quint64 TableStamp(const QString& table);

    // jet::SchemaLookup
    std::optional<std::vector<jet::ColumnDecl>> columns(const QString& table) const override;

    // Used by Recordset and Query.
    sqlite3_stmt* Prepare(const QString& sqliteSql) const;
    // The statement of a text in the program's dialect, prepared and bound: from the cache when
    // one of the same shape ran before. Execute gets an empty handle for a statement that runs
    // as written (definitions, SELECT ... INTO); a row set's is a SELECT or an error, and a
    // dynaset's ends each row with the rowid of its table when it has one.
    // `given` is the text a row set was opened with, for its error.
    enum class Use { Execute, Query, Snapshot, Dynaset };
    Statement Take(const QString& jetSql, Use use, const QString& given = QString());
    [[noreturn]] void Throw(int rc, const QString& source) const;
    // Runs SQLite text as it stands, without the dialect layer.
    void ExecRaw(const QString& sqliteSql);
    jet::Translated Translate(const QString& jetSql) const;

private:
    void ApplyPragmas();
    QString Rescue();
    void LoadSchema() const;
    const TableDef* FindTable(const QString& table) const;
    void RunSelectInto(const jet::Translated& t);
    int SchemaVersion() const;
    // Forgets what depends on the schema when it has changed since the last look.
    void CheckSchema() const;
    void TableChanged(const QString& table);
    void AllTablesChanged();
    std::shared_ptr<StatementPlan> MakePlan(const jet::Translated& t, Use use) const;
    void ReadColumns(StatementPlan& plan, sqlite3_stmt* stmt) const;
    Statement TakeAsWritten(const QString& jetSql, Use use, const QString& given);
    void Bind(Statement& stmt, const std::vector<jet::ParamValue>& values);
    double SqliteReal(QStringView text);
    void Transact(const QString& sql);
    static void OnRowChange(void* self, int op, const char* database, const char* table,
                            long long rowid);

    sqlite3* db_ = nullptr;
    QString path_;
    std::unique_ptr<QLockFile> lock_;
    QStringList notices_;
    bool moved_ = false;
    QString rescue_;  // where the content went when the file was found moved
    int savepointDepth_ = 0;
    mutable std::vector<TableDef> schema_;
    mutable int schemaVersion_ = -1;
    std::shared_ptr<StatementCache> cache_;
    mutable sqlite3_stmt* versionStmt_ = nullptr;
    sqlite3_stmt* realStmt_ = nullptr;
    mutable int cacheSchemaVersion_ = -1;
    // Change stamps: one counter for the life of the object, so a stamp never repeats.
    mutable quint64 serial_ = 0;
    mutable quint64 baseStamp_ = 0;
    std::unordered_map<std::string, quint64> stamps_;  // by table name in lower case
    std::string lastChangedName_;                      // as SQLite names it
    quint64* lastChanged_ = nullptr;                   // its stamp
    QHash<QString, sqlite3_stmt*> transactStmts_;
    friend class Transaction;
};

// A forward-only cursor over the rows of a SELECT. Values convert as Recordset's do.
class Query {
public:
    Query(Query&& other) noexcept = default;
    Query& operator=(Query&& other) noexcept = default;
    ~Query() = default;

    bool Next();  // moves to the next row; false at the end
    int FieldCount() const;
    QString FieldName(int index) const;
    const ColumnInfo& Field(int index) const { return stmt_.plan().columns.at(index); }
    int FieldIndex(const QString& name) const;  // -1 when absent
    QVariant Value(int index) const;
    QVariant Value(const QString& name) const;
    // The raw text of a cell, UTF-8, without conversion; empty view for Null.
    QString Text(int index) const;
    bool IsNull(int index) const;
    // The cell as stored, for readers that must not pay for a QVariant per cell.
    enum class Storage { Null, Integer, Real, Text, Blob };
    Storage StorageOf(int index) const;
    qint64 Integer(int index) const;
    double Real(int index) const;
    // The cell as a number: a stored whole number or real, or a text that reads as a number
    // (an old logbook may keep one so); none for Null, other text, or an index of -1.
    std::optional<double> Number(int index) const;

private:
    friend class Database;
    Query(const Database* db, Statement stmt);
    const Database* db_ = nullptr;
    Statement stmt_;
};

}  // namespace slipbook::store
