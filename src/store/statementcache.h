#pragma once

// Prepared statements kept for reuse. The program writes its statements as text with the values
// in them; the database takes the values out (jet::ShapeOf), so that every statement of one
// shape is translated and prepared once and then only bound and stepped.

#include "store/jetsql.h"
#include "store/recordset.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <list>
#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace slipbook::store {

// What is made once for a statement shape.
struct StatementPlan {
    jet::StatementKind kind = jet::StatementKind::Other;
    QString sql;  // SQLite text
    QString baseTable;
    // A row set that writes through: its table, whose rowid follows the columns of each row.
    QString rowidTable;
    std::vector<jet::ParamRule> params;
    std::vector<ColumnInfo> columns;  // of the result, without the rowid
};

class StatementCache;

// A prepared statement with its parameters bound. One lent by the cache goes back to it, reset,
// when the handle goes; any other is finalized.
class Statement {
public:
    Statement() = default;
    Statement(sqlite3_stmt* stmt, std::shared_ptr<const StatementPlan> plan);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    explicit operator bool() const { return stmt_ != nullptr; }
    sqlite3_stmt* get() const { return stmt_; }
    const StatementPlan& plan() const { return *plan_; }
    // Room for the texts bound to the statement, which it reads in place until it is reset.
    char* TextRoom(qsizetype bytes);

private:
    friend class StatementCache;
    void Release();

    sqlite3_stmt* stmt_ = nullptr;
    std::shared_ptr<const StatementPlan> plan_;
    std::shared_ptr<StatementCache> cache_;  // null when not lent
    QString key_;
    quint64 generation_ = 0;
    QByteArray texts_;
};

// The plans of the shapes met last, each with one idle prepared statement, for one connection.
class StatementCache : public std::enable_shared_from_this<StatementCache> {
public:
    struct Entry {
        std::shared_ptr<const StatementPlan> plan;  // null: the shape runs as written
        sqlite3_stmt* idle = nullptr;
    };

    explicit StatementCache(sqlite3* db, int capacity = 200);
    ~StatementCache();
    StatementCache(const StatementCache&) = delete;
    StatementCache& operator=(const StatementCache&) = delete;

    // The entry of a key, now the most recently used; null when there is none.
    Entry* Find(const QString& key);
    Entry& Add(const QString& key, std::shared_ptr<const StatementPlan> plan);
    // A handle on the entry's idle statement; null when it is lent already.
    Statement Lend(const QString& key, Entry& entry);
    // A handle on a statement prepared for the entry while its own is lent.
    Statement Lend(const QString& key, Entry& entry, sqlite3_stmt* fresh);

    // Forgets every plan; statements lent out are finalized when they come back.
    void Clear();
    // The connection is closing: nothing may stay prepared on it.
    void Detach();
    int Size() const { return static_cast<int>(entries_.size()); }

private:
    friend class Statement;
    void Return(const QString& key, quint64 generation, sqlite3_stmt* stmt);
    void Drop(QHash<QString, std::pair<Entry, std::list<QString>::iterator>>::iterator it);

    sqlite3* db_;
    int capacity_;
    quint64 generation_ = 1;
    std::list<QString> order_;  // most recent first
    QHash<QString, std::pair<Entry, std::list<QString>::iterator>> entries_;
};

}  // namespace slipbook::store
