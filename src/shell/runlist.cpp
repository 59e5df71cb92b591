#include "shell/runlist.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/tools.h"
#include "shell/valueformat.h"
#include "store/access.h"
#include "store/dberror.h"

#include <cstring>

namespace slipbook::shell {

namespace {

ListColumn Fixed(const char* caption, const char* name, int width = -1, const char* type = "Text",
                 const char* format = "") {
    ListColumn c;
    c.caption = QString::fromLatin1(caption);
    c.name = QString::fromLatin1(name);
    c.width = width;
    c.typeName = QString::fromLatin1(type);
    c.typeCode = TextGridModel::TypeCode(c.typeName);
    c.format = QString::fromLatin1(format);
    // Dates and numbers of the fixed lists stand right, header and cells alike.
    c.alignment = c.typeCode == gridtype::Text ? 0 : 1;
    c.headerFollowsCells = c.alignment != 0;
    return c;
}

ListColumn Hidden(const char* name) {
    ListColumn c = Fixed("Key", name);
    c.visible = false;
    return c;
}

ListColumn Lookup(const char* caption, const char* name, const char* table, const char* field,
                  int width = -1) {
    ListColumn c = Fixed(caption, name, width);
    c.lookup = true;
    c.lookupTable = QString::fromLatin1(table);
    c.lookupField = QString::fromLatin1(field);
    return c;
}

// A column of the runs list from its catalogue row.
ListColumn FromCatalogue(const store::Recordset& cat) {
    ListColumn c;
    c.caption = cat.Value(QStringLiteral("sColumnHeader")).toString();
    c.name = cat.Value(QStringLiteral("sFieldName")).toString();
    c.typeName = cat.Value(QStringLiteral("sDataType")).toString();
    c.typeCode = TextGridModel::TypeCode(c.typeName);
    c.alignment = TextGridModel::AlignmentCode(cat.Value(QStringLiteral("sAlignment")).toString());
    const QVariant width = cat.Value(QStringLiteral("lColumnWidth"));
    if (width.isValid() && width.toDouble() > 0) {
        c.width = static_cast<int>(width.toDouble() * 1.2);
    }
    c.format = cat.Value(QStringLiteral("sDisplayFormat")).toString();
    c.lookup = cat.Value(QStringLiteral("bLookup_fl")).toLongLong() != 0;
    c.lookupTable = cat.Value(QStringLiteral("sLookupTable_nm")).toString();
    c.lookupField = cat.Value(QStringLiteral("sLookupField_nm")).toString();
    return c;
}

bool HasColumn(const ListLayout& layout, const QString& name) {
    for (const ListColumn& c : layout.columns) {
        if (c.name.compare(name, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
}

void RunColumns(store::Database& db, const ListContext& ctx, ListLayout& layout,
                Messages& messages) {
    layout.columns.push_back(Hidden("lRun_id"));
    const QString table =
        ctx.viewId != 0
            ? store::TableLookup(db, QStringLiteral("tblViews"), QStringLiteral("lView_id"),
                                 QStringLiteral("sTable_nm"), ctx.viewId, messages)
                  .toString()
            : QString();
    // The catalogue read once, each column found by its id or its field name; the first row of
    // either wins, as a search from the top would find it.
    QHash<qint64, ListColumn> byId;
    QHash<QString, qint64> idByName;
    {
        auto catalogue = db.OpenRecordset(
            QStringLiteral("SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_Runs'"),
            store::RecordsetType::Snapshot);
        for (; !catalogue->Eof(); catalogue->MoveNext()) {
            const QVariant id = catalogue->Value(QStringLiteral("lLVC_id"));
            if (!id.isValid() || byId.contains(id.toLongLong())) {
                continue;
            }
            byId.insert(id.toLongLong(), FromCatalogue(*catalogue));
            const QString name =
                catalogue->Value(QStringLiteral("sFieldName")).toString().toLower();
            if (!idByName.contains(name)) {
                idByName.insert(name, id.toLongLong());
            }
        }
    }
    // A view table that has gone lists the runs under the key alone rather than stopping the load.
    if (!table.isEmpty() && db.TableExists(table)) {
        auto view = db.OpenRecordset(
            QStringLiteral("SELECT * FROM %1 WHERE bVisible_fl ORDER BY lOrder ").arg(table),
            store::RecordsetType::Snapshot);
        for (; !view->Eof(); view->MoveNext()) {
            const QVariant id = view->Value(QStringLiteral("lLVC_id"));
            if (!id.isValid()) {
                continue;
            }
            if (const auto it = byId.constFind(id.toLongLong()); it != byId.constEnd()) {
                layout.columns.push_back(*it);
            }
        }
    }
    if (ctx.filterActive) {
        for (const char* name : {"lRun_num", "dtEvent_dt", "dtEvent_tm", "lEvent_id"}) {
            const QString field = QString::fromLatin1(name);
            if (HasColumn(layout, field)) {
                continue;
            }
            if (const auto it = idByName.constFind(field.toLower()); it != idByName.constEnd()) {
                layout.columns.push_back(byId.value(*it));
            }
        }
    }
}

// The columns a reader matches a printed line to its row by.
void MarkIdentifyingColumns(ListLayout& layout) {
    static const QHash<QString, QStringList> names = {
        {tools::kRuns,
         {QStringLiteral("dtRun_dt"), QStringLiteral("dtRun_tm"), QStringLiteral("lRun_num")}},
        {tools::kEvents, {QStringLiteral("sEvent_nm"), QStringLiteral("dtEventStart_dt")}},
        {tools::kTracks, {QStringLiteral("sTrack_nm")}},
        {tools::kCars, {QStringLiteral("sCar_nm"), QStringLiteral("sCar_num")}},
        {tools::kExpenses,
         {QStringLiteral("dtExpense_dt"), QStringLiteral("lExpenseCategory_id")}}};
    const QStringList wanted = names.value(layout.mode);
    for (ListColumn& c : layout.columns) {
        c.identifiesRow = c.visible && wanted.contains(c.name, Qt::CaseInsensitive);
    }
}

}  // namespace

QString RunListSql(const ListContext& ctx) {
    QString sql;
    if (ctx.filterActive) {
        sql = ctx.filterSql;
    } else {
        sql = QStringLiteral("SELECT tblRuns.* FROM tblRuns");
        if (ctx.trackId != 0) {
            sql += QStringLiteral(",tblEvents ");
        }
        sql += QStringLiteral(" WHERE ");
        if (ctx.eventId != 0) {
            sql += QStringLiteral(" tblRuns.lEvent_id = ") + QString::number(ctx.eventId) +
                   QStringLiteral(" AND ");
        }
        if (ctx.trackId != 0) {
            sql += QStringLiteral(" tblEvents.lEvent_id=tblRuns.lEvent_id AND ");
            sql += QStringLiteral(" tblEvents.lTrack_id = ") + QString::number(ctx.trackId) +
                   QStringLiteral(" AND ");
        }
        sql += QStringLiteral(" lCar_id = ") + QString::number(ctx.carId);
    }
    return sql + QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm");
}

ListLayout BuildListLayout(store::Database& db, const QString& mode, const ListContext& ctx,
                           Messages& messages) {
    ListLayout layout;
    layout.mode = mode;
    if (mode == tools::kEvents) {
        layout.columns = {Hidden("lEvent_id"),
                          Fixed("Description", "sEvent_nm", 3000),
                          Lookup("Track", "lTrack_id", "tblTracks", "sTrack_nm"),
                          Fixed("Start", "dtEventStart_dt", 1600, "Date"),
                          Fixed("End", "dtEventEnd_dt", 1600, "Date"),
                          Lookup("Class", "lEventClass_id", "tblEventClass", "sEventClass_nm"),
                          Fixed("Purse", "cPurse_amt", 1000, "Number", "###,###,##0")};
        layout.columns[5].alignment = 1;
        layout.sql = QStringLiteral(
            "SELECT lEvent_id,  sEvent_nm,  lTrack_id,  dtEventStart_dt,  dtEventEnd_dt,  "
            "lEventClass_id,  cPurse_amt,  "
            "sEventNotes_tx  FROM tblEvents  ORDER BY dtEventStart_dt DESC");
    } else if (mode == tools::kTracks) {
        layout.columns = {Hidden("lTrack_id"),
                          Fixed("Name", "sTrack_nm", 2000),
                          Fixed("Address", ""),
                          Fixed("Contact", "sTrackContact_nm", 1400),
                          Fixed("Phone", "sTrackPhone", 1250),
                          Fixed("Internet", ""),
                          Fixed("Notes", "", 3000)};
        layout.sql = QStringLiteral(
            "SELECT lTrack_id,  sTrack_nm,  sTrackAddress_tx,  sTrackContact_nm,  sTrackPhone,  "
            "sTrackInternet_url,  "
            "sTrackDirections_tx,  sTrackNotes_tx  FROM tblTracks");
    } else if (mode == tools::kCars) {
        layout.columns = {Hidden("lCar_id"), Fixed("Name", "sCar_nm", 3000),
                          Fixed("Number", "sCar_num", 1500), Fixed("Carb", "sCarCarb_typ", 1500),
                          Fixed("Fuel", "sCarFuel_typ", 1000)};
        layout.sql = QStringLiteral(
            "SELECT lCar_id,  sCar_nm,  sCar_num,  sCarCarb_typ,  sCarFuel_typ,  sCarNotes_tx  "
            "FROM tblCars");
    } else if (mode == tools::kExpenses) {
        layout.columns = {
            Hidden("lExpense_id"),
            Fixed("Date", "dtExpense_dt", 1000, "Date"),
            Lookup("Category", "lExpenseCategory_id", "tblExpenseCategory", "sExpenseCategory_nm"),
            Fixed("Amount", "cExpense_amt", -1, "Number", "###,###,##0.00"),
            Lookup("Car", "lCar_id", "tblCars", "sCar_nm", 2000),
            Lookup("Event", "lEvent_id", "tblEvents", "sEvent_nm", 2000)};
        layout.sql = QStringLiteral(
            "SELECT lExpense_id,  dtExpense_dt,  lExpenseCategory_id,  cExpense_amt,  lCar_id,  "
            "lEvent_id,  "
            "sExpenseNotes_tx  FROM tblExpenses");
    } else if (mode == tools::kRuns) {
        RunColumns(db, ctx, layout, messages);
        layout.sql = RunListSql(ctx);
    } else {
        layout.known = false;
        messages.inform(QStringLiteral("Unknown Key: ") + mode);
    }
    MarkIdentifyingColumns(layout);
    return layout;
}

ListLayout CatalogueListLayout(store::Database& db, const QList<qint64>& catalogueIds,
                               ColumnOrder order) {
    ListLayout layout;
    layout.mode = tools::kRuns;
    layout.columns.push_back(Hidden("lRun_id"));
    if (!catalogueIds.isEmpty()) {
        QStringList ids;
        for (qint64 id : catalogueIds) {
            ids << QString::number(id);
        }
        auto catalogue = db.OpenRecordset(
            QStringLiteral("SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_Runs' AND "
                           "lLVC_id IN (%1) ORDER BY lOrder, lLVC_id")
                .arg(ids.join(u',')),
            store::RecordsetType::Snapshot);
        QHash<qint64, ListColumn> byId;
        while (!catalogue->Eof()) {
            const qint64 id = catalogue->Value(QStringLiteral("lLVC_id")).toLongLong();
            if (order == ColumnOrder::Catalogue) {
                layout.columns.push_back(FromCatalogue(*catalogue));
            } else {
                byId.insert(id, FromCatalogue(*catalogue));
            }
            catalogue->MoveNext();
        }
        for (qint64 id : catalogueIds) {
            if (const auto it = byId.constFind(id); it != byId.constEnd()) {
                layout.columns.push_back(*it);
                byId.erase(it);
            }
        }
    }
    MarkIdentifyingColumns(layout);
    return layout;
}

QString LookupKey(const QVariant& value) {
    switch (value.metaType().id()) {
        case QMetaType::LongLong:
        case QMetaType::Int:
        case QMetaType::Double:
            return PlainNumberText(value.toDouble());
        default:
            return value.toString().trimmed().toLower();
    }
}

RowBuilder::RowBuilder(store::Database& db, const ListLayout& layout) : db_(db), layout_(layout) {}

const QHash<QString, QString>* RowBuilder::LookupTable(const QString& table, const QString& key,
                                                       const QString& text) {
    const QString id = (table + u'\n' + key + u'\n' + text).toLower();
    if (auto it = lookupIndex_.constFind(id); it != lookupIndex_.constEnd()) {
        return it.value();
    }
    auto lookup = std::make_unique<Lookup>();
    lookup->table = table;
    lookup->key = key;
    lookup->text = text;
    ReadLookup(*lookup);
    lookups_.push_back(std::move(lookup));
    lookupIndex_.insert(id, &lookups_.back()->texts);
    return &lookups_.back()->texts;
}

void RowBuilder::ReadLookup(Lookup& lookup) {
    lookup.stamp = db_.TableStamp(lookup.table);
    lookup.texts.clear();
    // A look-up that names what is not there shows empty cells, as a key without its row does.
    if (db_.FieldExists(lookup.table, lookup.key) && db_.FieldExists(lookup.table, lookup.text)) {
        store::Query q = db_.OpenQuery(
            QStringLiteral("SELECT %1, %2 FROM %3").arg(lookup.key, lookup.text, lookup.table));
        while (q.Next()) {
            const QString k = LookupKey(q.Value(0));
            if (!lookup.texts.contains(k)) {
                lookup.texts.insert(k, FormatValue(q.Value(1), QString()));
            }
        }
    }
}

void RowBuilder::RefreshLookups() {
    for (const auto& lookup : lookups_) {
        if (db_.TableStamp(lookup->table) != lookup->stamp) {
            ReadLookup(*lookup);
        }
    }
}

void RowBuilder::Bind(const store::Query& query) {
    cells_.clear();
    const bool runs = layout_.mode == tools::kRuns;
    for (size_t i = 0; i < layout_.columns.size(); ++i) {
        const ListColumn& c = layout_.columns[i];
        Cell cell;
        if (i == 0) {
            cell.kind = Cell::Kind::Key;
            cell.field = 0;
        } else if (layout_.mode == tools::kTracks) {
            // The tracks list reads its cells by position, some without a column name.
            static const int kFields[] = {0, 1, 2, 3, 4, 5, 7};
            cell.field = kFields[i];
            cell.kind = i == 2 ? Cell::Kind::Address : i == 4 ? Cell::Kind::Phone : Cell::Kind::Raw;
        } else {
            cell.field = query.FieldIndex(c.name);
            if (cell.field < 0) {
                cell.kind = Cell::Kind::Empty;
            } else if (c.lookup) {
                cell.kind = Cell::Kind::Lookup;
                cell.lookup = LookupTable(c.lookupTable, c.name, c.lookupField);
            } else if (!runs && c.typeCode == gridtype::Date) {
                cell.kind = Cell::Kind::DateMask;
            } else if (query.Field(cell.field).kind == store::ColumnKind::Boolean) {
                // A flag reads as the words, as a Yes/No value converts to text.
                cell.kind = Cell::Kind::Flag;
            } else if (!c.format.isEmpty()) {
                cell.kind = Cell::Kind::Formatted;
                cell.format = c.format;
                cell.number = std::make_shared<NumberFormat>(c.format);
            } else {
                cell.kind = Cell::Kind::Raw;
            }
        }
        if (cell.field >= 0) {
            cell.columnKind = query.Field(cell.field).kind;
        }
        cells_.push_back(cell);
    }
}

namespace {

constexpr qsizetype kCacheLimit = 20000;
// After this many look-ups a cache that found fewer than half of them is dropped: searching a
// large table of distinct values costs more than making the text again.
constexpr int kCacheTrial = 4096;

quint64 BitsOf(double v) {
    quint64 bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

template <class Cell, class Key, class Make>
const QString& Cached(Cell& cell, QHash<Key, QString>& cache, const Key& key, Make make,
                      QString& scratch) {
    if (cell.caching) {
        ++cell.probes;
        if (auto it = cache.constFind(key); it != cache.constEnd()) {
            ++cell.hits;
            return it.value();
        }
        if (cell.probes >= kCacheTrial && cell.hits * 2 < cell.probes) {
            cell.caching = false;
            cache = {};
        }
    }
    if (cell.caching && cache.size() < kCacheLimit) {
        return *cache.insert(key, make());
    }
    scratch = make();
    return scratch;
}

}  // namespace

void RowBuilder::AppendCell(Cell& cell, const store::Query& query, QString& out) {
    using Storage = store::Query::Storage;
    using Kind = store::ColumnKind;
    QString scratch;
    switch (cell.kind) {
        case Cell::Kind::Empty:
            return;
        case Cell::Kind::Key:
        case Cell::Kind::Raw:
        case Cell::Kind::Formatted: {
            const Storage storage = query.StorageOf(cell.field);
            if (storage == Storage::Null) {
                return;
            }
            const bool formatted = cell.kind == Cell::Kind::Formatted;
            if (cell.columnKind == Kind::DateTime || cell.columnKind == Kind::Currency ||
                storage == Storage::Blob) {
                out += Cached(
                    cell, cell.byText, query.Text(cell.field),
                    [&] {
                        return FormatValue(query.Value(cell.field),
                                           formatted ? cell.format : QString());
                    },
                    scratch);
                return;
            }
            if (storage == Storage::Text) {
                const QString text = query.Text(cell.field);
                out += formatted ? Cached(
                                       cell, cell.byText, text,
                                       [&] { return FormatValue(text, cell.format); }, scratch)
                                 : text;
                return;
            }
            const double v = storage == Storage::Integer
                                 ? static_cast<double>(query.Integer(cell.field))
                                 : query.Real(cell.field);
            if (cell.columnKind == Kind::Text) {
                // A number stored in a text column reads back as the engine's text of it.
                out += formatted ? FormatValue(query.Text(cell.field), cell.format)
                                 : query.Text(cell.field);
                return;
            }
            if (storage == Storage::Integer && !formatted) {
                out += QString::number(query.Integer(cell.field));
                return;
            }
            out += Cached(
                cell, cell.byNumber, BitsOf(v),
                [&] { return formatted ? cell.number->Apply(v) : PlainNumberText(v); }, scratch);
            return;
        }
        case Cell::Kind::Flag: {
            if (!query.IsNull(cell.field)) {
                out += query.Integer(cell.field) != 0 ? QStringLiteral("True")
                                                      : QStringLiteral("False");
            }
            return;
        }
        case Cell::Kind::Lookup: {
            const Storage storage = query.StorageOf(cell.field);
            if (storage == Storage::Null) {
                return;
            }
            out += cell.lookup->value(storage == Storage::Integer
                                          ? QString::number(query.Integer(cell.field))
                                          : LookupKey(query.Value(cell.field)));
            return;
        }
        case Cell::Kind::DateMask:
            out += DateMaskValue(query.Value(cell.field));
            return;
        case Cell::Kind::Address: {
            QString text = query.Text(cell.field);
            text.replace(QStringLiteral("\r\n"), QStringLiteral(", "));
            // Line ends typed on this system are single line feeds.
            text.replace(u'\n', QStringLiteral(", "));
            out += text;
            return;
        }
        case Cell::Kind::Phone: {
            const QString text = query.Text(cell.field);
            if (!text.contains(u'_')) {
                out += text;
            }
            return;
        }
    }
}

QStringList RowBuilder::Build(const store::Query& query) {
    return BuildText(query).split(TextGridModel::kSeparator);
}

QString RowBuilder::BuildText(const store::Query& query) {
    QString& row = row_;
    row.resize(0);
    for (size_t i = 0; i < cells_.size(); ++i) {
        if (i > 0) {
            row += TextGridModel::kSeparator;
        }
        const qsizetype at = row.size();
        AppendCell(cells_[i], query, row);
        // A tab inside a cell would split it.
        QChar* const data = row.data();
        for (qsizetype k = at; k < row.size(); ++k) {
            if (data[k] == TextGridModel::kSeparator) {
                data[k] = u' ';
            }
        }
    }
    // A copy of its own, exactly as long as the row.
    return QString(row.constData(), row.size());
}

std::vector<GridColumn> ListLayout::GridColumns() const {
    return std::vector<GridColumn>(columns.begin(), columns.end());
}

QString LoadNotes(store::Database& db, const QString& mode, const QString& keyText) {
    struct Source {
        tools::ToolId mode;
        const char* table;
        const char* key;
        const char* notes;
    };
    static const Source kSources[] = {
        {tools::kEvents, "tblEvents", "lEvent_id", "sEventNotes_tx"},
        {tools::kRuns, "tblRuns", "lRun_id", "sRunNotes_tx"},
        {tools::kCars, "tblCars", "lCar_id", "sCarNotes_tx"},
        {tools::kTracks, "tblTracks", "lTrack_id", "sTrackDirections_tx"},
        {tools::kExpenses, "tblExpenses", "lExpense_id", "sExpenseNotes_tx"}};
    const auto key = StrictNumber(keyText);
    if (!key) {
        return QString();
    }
    for (const Source& s : kSources) {
        if (mode == s.mode) {
            store::Query q = db.OpenQuery(QStringLiteral("SELECT %1, %2 FROM %3 WHERE %1 = %4")
                                              .arg(QLatin1String(s.key), QLatin1String(s.notes),
                                                   QLatin1String(s.table), PlainNumberText(*key)));
            return q.Next() ? q.Text(1) : QString();
        }
    }
    return QString();
}

namespace {

std::unique_ptr<ListLayout> RunRowLayout(store::Database& db, const QStringList& columnNames) {
    auto layout = std::make_unique<ListLayout>();
    layout->mode = tools::kRuns;
    QHash<QString, ListColumn> catalogue;
    {
        store::Query q = db.OpenQuery(QStringLiteral(
            "SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_Runs' ORDER BY lOrder"));
        const int name = q.FieldIndex(QStringLiteral("sFieldName"));
        while (q.Next()) {
            const QString key = q.Text(name).toLower();
            if (catalogue.contains(key)) {
                continue;
            }
            ListColumn c;
            c.name = q.Text(name);
            c.format = q.Text(q.FieldIndex(QStringLiteral("sDisplayFormat")));
            c.typeCode = TextGridModel::TypeCode(q.Text(q.FieldIndex(QStringLiteral("sDataType"))));
            const int lookup = q.FieldIndex(QStringLiteral("bLookup_fl"));
            c.lookup = !q.IsNull(lookup) && q.Integer(lookup) != 0;
            c.lookupTable = q.Text(q.FieldIndex(QStringLiteral("sLookupTable_nm")));
            c.lookupField = q.Text(q.FieldIndex(QStringLiteral("sLookupField_nm")));
            catalogue.insert(key, c);
        }
    }
    for (qsizetype i = 0; i < columnNames.size(); ++i) {
        ListColumn c;
        c.name = columnNames[i];
        if (i > 0) {
            c = catalogue.value(columnNames[i].toLower(), c);
        }
        layout->columns.push_back(c);
    }
    return layout;
}

}  // namespace

QString RunGridRow(store::Database& db, const QStringList& columnNames, qint64 runId) {
    return RunGridRowMaker(db).Row(columnNames, runId);
}

RunGridRowMaker::RunGridRowMaker(store::Database& db) : db_(db) {}

RunGridRowMaker::~RunGridRowMaker() = default;

QString RunGridRowMaker::Row(const QStringList& columnNames, qint64 runId) {
    // A change of the schema changes every table's stamp, the catalogue's with them.
    const quint64 stamp = db_.TableStamp(QStringLiteral("tblListViewColumns"));
    if (!layout_ || stamp != catalogueStamp_ || columnNames != names_) {
        builder_.reset();
        layout_ = RunRowLayout(db_, columnNames);
        names_ = columnNames;
        catalogueStamp_ = stamp;
    }
    store::Query q = db_.OpenQuery(QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = ") +
                                   QString::number(runId));
    if (!q.Next()) {
        return QString();
    }
    if (builder_) {
        builder_->RefreshLookups();
    } else {
        builder_ = std::make_unique<RowBuilder>(db_, *layout_);
        builder_->Bind(q);
    }
    return builder_->BuildText(q);
}

}  // namespace slipbook::shell
