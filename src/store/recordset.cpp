#include "store/recordset.h"

#include "common/numbers.h"

#include "store/currency.h"
#include "store/database.h"
#include "store/dberror.h"
#include "store/jetdate.h"

#include <sqlite3.h>

#include <cmath>
#include <unordered_set>

namespace slipbook::store {

namespace {

const QString kSource = QStringLiteral("Slipbook.Recordset");

QString Utf8(const unsigned char* text, int bytes) {
    return QString::fromUtf8(reinterpret_cast<const char*>(text), bytes);
}

QVariant ReadValue(sqlite3_stmt* stmt, int i, ColumnKind kind) {
    const int type = sqlite3_column_type(stmt, i);
    switch (type) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER: {
            const qint64 v = sqlite3_column_int64(stmt, i);
            switch (kind) {
                case ColumnKind::Boolean:
                    return QVariant::fromValue<qint64>(v != 0 ? -1 : 0);
                case ColumnKind::Real:
                    return QVariant(static_cast<double>(v));
                case ColumnKind::Currency:
                    return QVariant::fromValue(Currency{v * 10000});
                case ColumnKind::Text:
                    return QVariant(QString::number(v));
                default:
                    return QVariant::fromValue<qint64>(v);
            }
        }
        case SQLITE_FLOAT: {
            const double v = sqlite3_column_double(stmt, i);
            switch (kind) {
                case ColumnKind::Currency:
                    return QVariant::fromValue(Currency::fromDouble(v));
                case ColumnKind::Boolean:
                    return QVariant::fromValue<qint64>(v != 0 ? -1 : 0);
                default:
                    return QVariant(v);
            }
        }
        case SQLITE_TEXT: {
            const QString text = Utf8(sqlite3_column_text(stmt, i), sqlite3_column_bytes(stmt, i));
            if (kind == ColumnKind::DateTime) {
                if (auto dt = DateTimeFromStorage(text)) {
                    return QVariant(*dt);
                }
            } else if (kind == ColumnKind::Currency) {
                if (auto c = Currency::fromText(text)) {
                    return QVariant::fromValue(*c);
                }
            }
            return QVariant(text);
        }
        default:
            return QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(stmt, i)),
                                       sqlite3_column_bytes(stmt, i)));
    }
}

bool IsBlankText(const QVariant& v) {
    return v.metaType().id() == QMetaType::QString && v.toString().trimmed().isEmpty();
}

std::optional<double> NumberOf(const QVariant& v) {
    switch (v.metaType().id()) {
        case QMetaType::QString: {
            QString t = v.toString().trimmed();
            bool ok = false;
            const double d = t.toDouble(&ok);
            if (ok) {
                return d;
            }
            if (t.compare(u"True", Qt::CaseInsensitive) == 0) {
                return -1.0;
            }
            if (t.compare(u"False", Qt::CaseInsensitive) == 0) {
                return 0.0;
            }
            return std::nullopt;
        }
        case QMetaType::Bool:
            return v.toBool() ? -1.0 : 0.0;
        default:
            if (v.metaType() == QMetaType::fromType<Currency>()) {
                return v.value<Currency>().toDouble();
            }
            bool ok = false;
            const double d = v.toDouble(&ok);
            return ok ? std::optional<double>(d) : std::nullopt;
    }
}

[[noreturn]] void Mismatch(const QString& column, const QVariant& v) {
    throw DbError(err::TypeMismatch, kSource,
                  QStringLiteral("Data type mismatch: '%1' cannot be stored in %2.")
                      .arg(v.toString(), column));
}

// Binds a value the way the target column stores it: empty text into a number or date column
// is Null, never a broken row.
void BindValue(sqlite3_stmt* stmt, int index, const QVariant& v, ColumnKind kind,
               const QString& column) {
    if (!v.isValid() || v.isNull() ||
        (kind != ColumnKind::Text && kind != ColumnKind::Any && IsBlankText(v))) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    switch (kind) {
        case ColumnKind::Integer: {
            const auto d = NumberOf(v);
            if (!d || !std::isfinite(*d) || std::fabs(*d) > 9.2e18) {
                Mismatch(column, v);
            }
            // Whole-number columns round half to even, as the engine's conversion does.
            sqlite3_bind_int64(stmt, index, static_cast<qint64>(std::nearbyint(*d)));
            return;
        }
        case ColumnKind::Boolean: {
            const auto d = NumberOf(v);
            QString t = v.toString().trimmed();
            if (d) {
                sqlite3_bind_int64(stmt, index, *d != 0 ? -1 : 0);
            } else if (t.compare(u"Yes", Qt::CaseInsensitive) == 0 ||
                       t.compare(u"On", Qt::CaseInsensitive) == 0) {
                sqlite3_bind_int64(stmt, index, -1);
            } else if (t.compare(u"No", Qt::CaseInsensitive) == 0 ||
                       t.compare(u"Off", Qt::CaseInsensitive) == 0) {
                sqlite3_bind_int64(stmt, index, 0);
            } else {
                Mismatch(column, v);
            }
            return;
        }
        case ColumnKind::Real:
        case ColumnKind::Currency: {
            const auto d = NumberOf(v);
            if (!d || !std::isfinite(*d)) {
                Mismatch(column, v);
            }
            if (kind == ColumnKind::Currency) {
                // Past the ten-thousandths a 64-bit count holds: refused, never a silent 0.
                if (std::fabs(*d) >= 922337203685477.0) {
                    throw DbError(err::Overflow, kSource, QStringLiteral("Overflow"));
                }
                const Currency c =
                    v.metaType() == QMetaType::fromType<Currency>()
                        ? v.value<Currency>()
                        : Currency::fromText(v.toString()).value_or(Currency::fromDouble(*d));
                sqlite3_bind_double(stmt, index, c.toDouble());
            } else {
                sqlite3_bind_double(stmt, index, *d);
            }
            return;
        }
        case ColumnKind::DateTime: {
            std::optional<QDateTime> dt;
            switch (v.metaType().id()) {
                case QMetaType::QDateTime:
                    dt = v.toDateTime();
                    break;
                case QMetaType::QDate:
                    dt = QDateTime(v.toDate(), QTime(0, 0));
                    break;
                case QMetaType::QTime:
                    dt = QDateTime(DayZero(), v.toTime());
                    break;
                default:
                    dt = ParseJetDateText(v.toString());
            }
            if (!dt || !dt->isValid()) {
                Mismatch(column, v);
            }
            const QByteArray text = DateTimeToStorage(*dt).toUtf8();
            sqlite3_bind_text(stmt, index, text.constData(), static_cast<int>(text.size()),
                              SQLITE_TRANSIENT);
            return;
        }
        default:
            break;
    }
    switch (v.metaType().id()) {
        case QMetaType::LongLong:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
            if (kind == ColumnKind::Any) {
                sqlite3_bind_int64(stmt, index, v.toLongLong());
                return;
            }
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            if (kind == ColumnKind::Any) {
                sqlite3_bind_double(stmt, index, v.toDouble());
                return;
            }
            break;
        default:
            break;
    }
    QString text;
    if (v.metaType() == QMetaType::fromType<Currency>()) {
        if (kind == ColumnKind::Any) {
            sqlite3_bind_double(stmt, index, v.value<Currency>().toDouble());
            return;
        }
        text = v.value<Currency>().toText();
    } else if (v.metaType().id() == QMetaType::QDateTime) {
        text = DateTimeToStorage(v.toDateTime());
    } else if (v.metaType().id() == QMetaType::Bool) {
        text = v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    } else {
        text = v.toString();
    }
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(stmt, index, utf8.constData(), static_cast<int>(utf8.size()),
                      SQLITE_TRANSIENT);
}

struct Stmt {
    sqlite3_stmt* s = nullptr;
    explicit Stmt(sqlite3_stmt* stmt) : s(stmt) {}
    ~Stmt() { sqlite3_finalize(s); }
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;
};

}  // namespace

ColumnInfo ColumnInfoOf(sqlite3_stmt* stmt, int i) {
    ColumnInfo c;
    c.name = QString::fromUtf8(sqlite3_column_name(stmt, i));
    if (const char* decl = sqlite3_column_decltype(stmt, i)) {
        c.declType = QString::fromUtf8(decl);
    }
    if (const char* table = sqlite3_column_table_name(stmt, i)) {
        c.table = QString::fromUtf8(table);
    }
    if (const char* origin = sqlite3_column_origin_name(stmt, i)) {
        c.origin = QString::fromUtf8(origin);
    }
    c.kind = KindOfDeclType(c.declType);
    return c;
}

ColumnKind KindOfDeclType(const QString& declType) {
    const QString t = declType.trimmed().toUpper();
    if (t.isEmpty()) {
        return ColumnKind::Any;
    }
    if (t.startsWith(u"BOOLEAN")) {
        return ColumnKind::Boolean;
    }
    if (t.startsWith(u"DATETIME")) {
        return ColumnKind::DateTime;
    }
    if (t.startsWith(u"CURRENCY")) {
        return ColumnKind::Currency;
    }
    if (t.contains(u"INT")) {
        return ColumnKind::Integer;
    }
    if (t.contains(u"CHAR") || t.contains(u"TEXT") || t.contains(u"CLOB")) {
        return ColumnKind::Text;
    }
    if (t.contains(u"REAL") || t.contains(u"DOUB") || t.contains(u"FLOA")) {
        return ColumnKind::Real;
    }
    return ColumnKind::Any;
}

// ---------------------------------------------------------------------------------------------
// Query

Query::Query(const Database* db, Statement stmt) : db_(db), stmt_(std::move(stmt)) {}

bool Query::Next() {
    if (!stmt_) {
        return false;
    }
    const int rc = sqlite3_step(stmt_.get());
    if (rc == SQLITE_ROW) {
        return true;
    }
    if (rc != SQLITE_DONE) {
        db_->Throw(rc, kSource);
    }
    return false;
}

int Query::FieldCount() const {
    return stmt_ ? static_cast<int>(stmt_.plan().columns.size()) : 0;
}

QString Query::FieldName(int index) const {
    return Field(index).name;
}

int Query::FieldIndex(const QString& name) const {
    for (int i = 0; i < FieldCount(); ++i) {
        if (Field(i).name.compare(name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

QVariant Query::Value(int index) const {
    return ReadValue(stmt_.get(), index, Field(index).kind);
}

QVariant Query::Value(const QString& name) const {
    const int i = FieldIndex(name);
    if (i < 0) {
        throw DbError(err::ItemNotFound, kSource,
                      QStringLiteral("Item not found in this collection: %1.").arg(name));
    }
    return Value(i);
}

QString Query::Text(int index) const {
    const unsigned char* text = sqlite3_column_text(stmt_.get(), index);
    return text ? Utf8(text, sqlite3_column_bytes(stmt_.get(), index)) : QString();
}

bool Query::IsNull(int index) const {
    return sqlite3_column_type(stmt_.get(), index) == SQLITE_NULL;
}

Query::Storage Query::StorageOf(int index) const {
    switch (sqlite3_column_type(stmt_.get(), index)) {
        case SQLITE_NULL:
            return Storage::Null;
        case SQLITE_INTEGER:
            return Storage::Integer;
        case SQLITE_FLOAT:
            return Storage::Real;
        case SQLITE_TEXT:
            return Storage::Text;
        default:
            return Storage::Blob;
    }
}

qint64 Query::Integer(int index) const {
    return sqlite3_column_int64(stmt_.get(), index);
}

double Query::Real(int index) const {
    return sqlite3_column_double(stmt_.get(), index);
}

std::optional<double> Query::Number(int index) const {
    if (index < 0 || IsNull(index)) {
        return std::nullopt;
    }
    switch (StorageOf(index)) {
        case Storage::Integer:
            return static_cast<double>(Integer(index));
        case Storage::Real:
            return Real(index);
        default:
            return StrictNumber(Text(index));
    }
}

// ---------------------------------------------------------------------------------------------
// Recordset

Recordset::Recordset(Database& db, const QString& jetSql, RecordsetType type)
    : db_(db), type_(type) {
    Load(jetSql);
}

Recordset::~Recordset() = default;

void Recordset::Load(const QString& jetSql) {
    QString source = jetSql.trimmed();
    // A bare table name opens the whole table.
    if (!source.isEmpty() && !source.contains(u' ') && db_.TableExists(source)) {
        source = QStringLiteral("SELECT * FROM [") + source + u']';
    }
    const Statement stmt = db_.Take(
        source, type_ == RecordsetType::Dynaset ? Database::Use::Dynaset : Database::Use::Snapshot,
        jetSql);
    const bool withRowid = !stmt.plan().rowidTable.isEmpty();
    if (withRowid) {
        baseTable_ = stmt.plan().rowidTable;
    }
    columns_ = stmt.plan().columns;
    const int n = static_cast<int>(columns_.size());
    int rc;
    while ((rc = sqlite3_step(stmt.get())) == SQLITE_ROW) {
        std::vector<QVariant> row;
        row.reserve(n);
        for (int i = 0; i < n; ++i) {
            row.push_back(ReadValue(stmt.get(), i, columns_[i].kind));
        }
        rows_.push_back(std::move(row));
        if (withRowid) {
            rowids_.push_back(sqlite3_column_int64(stmt.get(), n));
        }
    }
    if (rc != SQLITE_DONE) {
        db_.Throw(rc, kSource);
    }
    deleted_.assign(rows_.size(), false);
    pos_ = rows_.empty() ? -1 : 0;
    bof_ = rows_.empty();
}

void Recordset::RequireOpen() const {
    if (!open_) {
        throw DbError(err::Generic, kSource,
                      QStringLiteral("Operation is not allowed on a closed row set."));
    }
}

void Recordset::RequireCurrent() const {
    RequireOpen();
    if (pos_ < 0 || pos_ >= static_cast<int>(rows_.size()) || deleted_[pos_]) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
    }
}

bool Recordset::Eof() const {
    return pos_ < 0 ? RecordCount() == 0 : pos_ >= static_cast<int>(rows_.size());
}

bool Recordset::Bof() const {
    return pos_ < 0;
}

void Recordset::MoveFirst() {
    RequireOpen();
    pos_ = 0;
    while (pos_ < static_cast<int>(rows_.size()) && deleted_[pos_]) {
        ++pos_;
    }
    if (pos_ >= static_cast<int>(rows_.size())) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
    }
}

void Recordset::MoveLast() {
    RequireOpen();
    pos_ = static_cast<int>(rows_.size()) - 1;
    while (pos_ >= 0 && deleted_[pos_]) {
        --pos_;
    }
    if (pos_ < 0) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
    }
}

void Recordset::MoveNext() {
    RequireOpen();
    if (Eof()) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
    }
    do {
        ++pos_;
    } while (pos_ < static_cast<int>(rows_.size()) && deleted_[pos_]);
}

void Recordset::MovePrevious() {
    RequireOpen();
    if (pos_ < 0) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
    }
    do {
        --pos_;
    } while (pos_ >= 0 && deleted_[pos_]);
}

int Recordset::RecordCount() const {
    return static_cast<int>(std::count(deleted_.begin(), deleted_.end(), false));
}

int Recordset::AbsolutePosition() const {
    if (pos_ < 0 || pos_ >= static_cast<int>(rows_.size()) || deleted_[pos_]) {
        return -1;
    }
    return static_cast<int>(std::count(deleted_.begin(), deleted_.begin() + pos_, false));
}

void Recordset::SetAbsolutePosition(int position) {
    RequireOpen();
    int seen = -1;
    for (int i = 0; i < static_cast<int>(rows_.size()); ++i) {
        if (!deleted_[i] && ++seen == position) {
            pos_ = i;
            return;
        }
    }
    throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("No current record."));
}

Bookmark Recordset::GetBookmark() const {
    RequireCurrent();
    return pos_;
}

void Recordset::SetBookmark(Bookmark bookmark) {
    RequireOpen();
    if (bookmark < 0 || bookmark >= static_cast<Bookmark>(rows_.size()) || deleted_[bookmark]) {
        throw DbError(err::NoCurrentRecord, kSource, QStringLiteral("Not a valid bookmark."));
    }
    pos_ = static_cast<int>(bookmark);
}

void Recordset::FindFirst(const QString& criterion) {
    Find(criterion, 0, 1);
}

void Recordset::FindNext(const QString& criterion) {
    Find(criterion, pos_ < 0 ? 0 : pos_ + 1, 1);
}

// The criterion is evaluated by the engine itself over each row's values, bound as columns of a
// one-row subquery with the text columns' case-blind collation, so that comparisons come out as
// they would in the table.
void Recordset::Find(const QString& criterion, int from, int step) {
    RequireOpen();
    noMatch_ = true;
    if (rows_.empty()) {
        return;
    }
    QStringList cols;
    for (int i = 0; i < FieldCount(); ++i) {
        const ColumnInfo& c = columns_[i];
        QString expr = QStringLiteral("?%1").arg(i + 1);
        if (c.kind == ColumnKind::Text) {
            expr = QStringLiteral("CAST(%1 AS TEXT) COLLATE NOCASE").arg(expr);
        }
        cols << expr + QStringLiteral(" AS ") + QuoteIdent(c.name);
    }
    // The criterion is written in the program's dialect: let the layer translate it in a
    // statement of its own, then wrap the row.
    const jet::Translated where =
        db_.Translate(QStringLiteral("SELECT 1 FROM x WHERE ") + criterion);
    const qsizetype at = where.sql.indexOf(QStringLiteral("WHERE"), 0, Qt::CaseInsensitive);
    const QString condition = at >= 0 ? where.sql.mid(at + 5) : criterion;
    Stmt stmt(db_.Prepare(QStringLiteral("SELECT CASE WHEN (%1) THEN 1 ELSE 0 END FROM (SELECT %2)")
                              .arg(condition, cols.join(QStringLiteral(", ")))));
    for (int r = from; r >= 0 && r < static_cast<int>(rows_.size()); r += step) {
        if (deleted_[r]) {
            continue;
        }
        sqlite3_reset(stmt.s);
        for (int i = 0; i < FieldCount(); ++i) {
            BindValue(stmt.s, i + 1, rows_[r][i], ColumnKind::Any, columns_[i].name);
        }
        const int rc = sqlite3_step(stmt.s);
        if (rc != SQLITE_ROW) {
            db_.Throw(rc, kSource);
        }
        if (sqlite3_column_int(stmt.s, 0) != 0) {
            pos_ = r;
            noMatch_ = false;
            return;
        }
    }
}

const ColumnInfo& Recordset::Field(int index) const {
    if (index < 0 || index >= FieldCount()) {
        throw DbError(err::ItemNotFound, kSource,
                      QStringLiteral("Item not found in this collection: %1.").arg(index));
    }
    return columns_[index];
}

int Recordset::FieldIndex(const QString& name) const {
    for (int i = 0; i < FieldCount(); ++i) {
        if (columns_[i].name.compare(name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

int Recordset::ColumnOrThrow(const QString& name) const {
    const int i = FieldIndex(name);
    if (i < 0) {
        throw DbError(err::ItemNotFound, kSource,
                      QStringLiteral("Item not found in this collection: %1.").arg(name));
    }
    return i;
}

QVariant Recordset::Value(int index) const {
    Field(index);
    if (mode_ != EditMode::None) {
        return buffer_[index];
    }
    RequireCurrent();
    return rows_[pos_][index];
}

QVariant Recordset::Value(const QString& name) const {
    return Value(ColumnOrThrow(name));
}

void Recordset::SetValue(int index, const QVariant& value) {
    Field(index);
    if (mode_ == EditMode::None) {
        throw DbError(err::UpdateWithoutEdit, kSource,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
    }
    const ColumnInfo& c = columns_[index];
    if (c.origin.isEmpty() || c.table.compare(baseTable_, Qt::CaseInsensitive) != 0) {
        throw DbError(3164, kSource, QStringLiteral("Field '%1' cannot be updated.").arg(c.name));
    }
    buffer_[index] = value;
    dirty_[index] = true;
}

void Recordset::SetValue(const QString& name, const QVariant& value) {
    SetValue(ColumnOrThrow(name), value);
}

void Recordset::AddNew() {
    RequireOpen();
    if (!Updatable()) {
        throw DbError(err::ReadOnly, kSource,
                      QStringLiteral("Cannot update. Database or object is read-only."));
    }
    positionBeforeAdd_ = pos_;
    buffer_.assign(columns_.size(), QVariant());
    dirty_.assign(columns_.size(), false);
    mode_ = EditMode::AddNew;
}

void Recordset::Edit() {
    if (!Updatable()) {
        throw DbError(err::ReadOnly, kSource,
                      QStringLiteral("Cannot update. Database or object is read-only."));
    }
    RequireCurrent();
    buffer_ = rows_[pos_];
    dirty_.assign(columns_.size(), false);
    mode_ = EditMode::Edit;
}

void Recordset::CancelUpdate() {
    mode_ = EditMode::None;
    buffer_.clear();
    dirty_.clear();
}

void Recordset::Update() {
    RequireOpen();
    if (mode_ == EditMode::None) {
        throw DbError(err::UpdateWithoutEdit, kSource,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."));
    }
    const auto def = db_.TableDefinition(baseTable_);
    if (!def) {
        throw DbError(err::NoSuchTable, kSource,
                      QStringLiteral("The table '%1' no longer exists.").arg(baseTable_));
    }
    QStringList names;
    std::vector<int> indexes;
    std::vector<ColumnKind> kinds;
    for (int i = 0; i < FieldCount(); ++i) {
        if (!dirty_[i]) {
            continue;
        }
        const FieldDef* f = def->field(columns_[i].origin);
        if (f == nullptr) {
            throw DbError(
                err::ItemNotFound, kSource,
                QStringLiteral("Item not found in this collection: %1.").arg(columns_[i].origin));
        }
        names << QuoteIdent(f->name);
        indexes.push_back(i);
        kinds.push_back(KindOfDeclType(f->declType));
    }
    QString sql;
    if (mode_ == EditMode::AddNew) {
        if (names.isEmpty()) {
            sql = QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(QuoteIdent(baseTable_));
        } else {
            QStringList marks;
            for (int i = 0; i < names.size(); ++i) {
                marks << QStringLiteral("?");
            }
            sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(QuoteIdent(baseTable_), names.join(u", "), marks.join(u", "));
        }
    } else {
        if (names.isEmpty()) {
            CancelUpdate();
            return;
        }
        QStringList sets;
        for (const QString& n : names) {
            sets << n + QStringLiteral(" = ?");
        }
        sql = QStringLiteral("UPDATE %1 SET %2 WHERE rowid = ?")
                  .arg(QuoteIdent(baseTable_), sets.join(u", "));
    }
    {
        Stmt stmt(db_.Prepare(sql));
        for (size_t k = 0; k < indexes.size(); ++k) {
            BindValue(stmt.s, static_cast<int>(k) + 1, buffer_[indexes[k]], kinds[k],
                      columns_[indexes[k]].name);
        }
        if (mode_ == EditMode::Edit) {
            sqlite3_bind_int64(stmt.s, static_cast<int>(indexes.size()) + 1, rowids_[pos_]);
        }
        db_.BeforeWrite();
        const int rc = sqlite3_step(stmt.s);
        if (rc != SQLITE_DONE) {
            db_.Throw(rc, kSource);
        }
    }
    if (mode_ == EditMode::AddNew) {
        rowids_.push_back(db_.LastInsertRowId());
        rows_.emplace_back(columns_.size());
        deleted_.push_back(false);
        ReloadRow(static_cast<int>(rows_.size()) - 1);
        pos_ = positionBeforeAdd_;
    } else {
        ReloadRow(pos_);
    }
    CancelUpdate();
}

// Reads a row back from its table, so the set shows what was stored (the new key, converted
// values).
void Recordset::ReloadRow(int row) {
    QStringList cols;
    std::vector<int> indexes;
    for (int i = 0; i < FieldCount(); ++i) {
        if (!columns_[i].origin.isEmpty() &&
            columns_[i].table.compare(baseTable_, Qt::CaseInsensitive) == 0) {
            cols << QuoteIdent(columns_[i].origin);
            indexes.push_back(i);
        }
    }
    if (cols.isEmpty()) {
        return;
    }
    Stmt stmt(db_.Prepare(QStringLiteral("SELECT %1 FROM %2 WHERE rowid = ?")
                              .arg(cols.join(u", "), QuoteIdent(baseTable_))));
    sqlite3_bind_int64(stmt.s, 1, rowids_[row]);
    if (sqlite3_step(stmt.s) == SQLITE_ROW) {
        for (size_t k = 0; k < indexes.size(); ++k) {
            rows_[row][indexes[k]] =
                ReadValue(stmt.s, static_cast<int>(k), columns_[indexes[k]].kind);
        }
    }
}

void Recordset::Delete() {
    RequireCurrent();
    if (!Updatable()) {
        throw DbError(err::ReadOnly, kSource,
                      QStringLiteral("Cannot update. Database or object is read-only."));
    }
    Stmt stmt(
        db_.Prepare(QStringLiteral("DELETE FROM %1 WHERE rowid = ?").arg(QuoteIdent(baseTable_))));
    sqlite3_bind_int64(stmt.s, 1, rowids_[pos_]);
    db_.BeforeWrite();
    const int rc = sqlite3_step(stmt.s);
    if (rc != SQLITE_DONE) {
        db_.Throw(rc, kSource);
    }
    deleted_[pos_] = true;
}

void Recordset::Close() {
    open_ = false;
    rows_.clear();
    rowids_.clear();
    deleted_.clear();
    pos_ = -1;
    CancelUpdate();
}

}  // namespace slipbook::store
