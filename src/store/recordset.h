#pragma once

#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

struct sqlite3_stmt;

namespace slipbook::store {

class Database;

enum class RecordsetType { Dynaset = 2, Snapshot = 4 };
enum class EditMode { None, Edit, AddNew };

// How a result column converts: by the declared type of the table column behind it.
enum class ColumnKind { Any, Integer, Real, Boolean, Text, DateTime, Currency };

struct ColumnInfo {
    QString name;      // as the statement names it (alias, else column)
    QString declType;  // declared type of the table column behind it, if any
    QString table;     // table of origin, if any
    QString origin;    // column of origin, if any
    ColumnKind kind = ColumnKind::Any;
};

// Converts a stored value for a column: Null stays an invalid QVariant; Integer and Boolean
// columns give qint64 (a true flag is -1); Real gives double; DateTime gives QDateTime;
// Currency gives store::Currency; text gives QString.
ColumnKind KindOfDeclType(const QString& declType);

// A result column of a prepared statement.
ColumnInfo ColumnInfoOf(sqlite3_stmt* stmt, int index);

using Bookmark = qint64;

// A row set over the result of a SELECT, held in memory in the statement's order. A snapshot is
// read-only; a dynaset writes its edits through to the first table of the statement, row by row
// (by rowid). Field values are QVariants (Null is an invalid QVariant). Misuse throws DbError
// with the engine's numbers: no current row 3021, update without edit 3020, field not in the set
// 3265.
class Recordset {
public:
    Recordset(Database& db, const QString& jetSql, RecordsetType type);
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    RecordsetType Type() const { return type_; }
    bool Updatable() const { return type_ == RecordsetType::Dynaset && !baseTable_.isEmpty(); }

    // Position
    bool Eof() const;
    bool Bof() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    int RecordCount() const;
    // 0-based position of the current row; negative when there is none.
    int AbsolutePosition() const;
    void SetAbsolutePosition(int position);
    Bookmark GetBookmark() const;
    void SetBookmark(Bookmark bookmark);

    // Finds the first (next) row, in the set's own order, that meets a criterion written as a
    // WHERE condition ("lLVC_id = 12", "sFieldName = 'Custom1'"), compared as the engine
    // compares (text without case). On no match the position stays and NoMatch() is true.
    void FindFirst(const QString& criterion);
    void FindNext(const QString& criterion);
    bool NoMatch() const { return noMatch_; }

    // Fields
    int FieldCount() const { return static_cast<int>(columns_.size()); }
    const ColumnInfo& Field(int index) const;
    int FieldIndex(const QString& name) const;  // -1 when absent; without case
    QVariant Value(int index) const;
    QVariant Value(const QString& name) const;
    // Sets a field of the pending edit (after Edit or AddNew).
    void SetValue(int index, const QVariant& value);
    void SetValue(const QString& name, const QVariant& value);

    // Editing (dynaset only)
    void AddNew();
    void Edit();
    // Writes the pending edit. After AddNew the new row joins the end of the set and the
    // position goes back to where it was before AddNew, as the engine does.
    void Update();
    void CancelUpdate();
    EditMode Mode() const { return mode_; }
    void Delete();  // removes the current row from the table and the set

    void Close();
    bool IsOpen() const { return open_; }

private:
    void Load(const QString& jetSql);
    void RequireCurrent() const;
    void RequireOpen() const;
    int ColumnOrThrow(const QString& name) const;
    const std::vector<QVariant>& CurrentRow() const;
    void Find(const QString& criterion, int from, int step);
    void ReloadRow(int row);

    Database& db_;
    RecordsetType type_;
    bool open_ = true;
    QString baseTable_;
    std::vector<ColumnInfo> columns_;
    std::vector<std::vector<QVariant>> rows_;
    std::vector<qint64> rowids_;  // dynaset: rowid of each row in the base table
    std::vector<bool> deleted_;
    int pos_ = -1;  // -1 before first / empty; rows_.size() at EOF
    bool bof_ = true;
    bool noMatch_ = false;
    EditMode mode_ = EditMode::None;
    std::vector<QVariant> buffer_;
    std::vector<bool> dirty_;
    int positionBeforeAdd_ = -1;
};

}  // namespace slipbook::store
