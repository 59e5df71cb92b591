#pragma once

#include "common/messages.h"
#include "common/numbers.h"
#include "common/textgrid.h"
#include "store/database.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace slipbook::shell {

// What of the main window's state decides the list it shows.
struct ListContext {
    qint64 carId = 0;
    qint64 eventId = 0;  // 0: all events
    qint64 trackId = 0;  // 0: all tracks
    qint64 viewId = 0;   // item data of the chosen view
    bool filterActive = false;
    QString filterSql;
};

// A grid column, and how a run cell of it is made (from the column's catalogue row).
struct ListColumn : GridColumn {
    bool lookup = false;
    QString lookupTable;
    QString lookupField;
};

struct ListLayout {
    QString mode;  // ID_Runs, ID_Events, ID_Cars, ID_Tracks, ID_Expenses
    bool known = true;
    std::vector<ListColumn> columns;  // the first is the hidden key
    QString sql;
    std::vector<GridColumn> GridColumns() const;
};

QString RunListSql(const ListContext& ctx);

// Runs shown in fixed columns of the run list: the catalogue rows of ID_Runs with these ids, in
// the catalogue's lOrder or in the order given, behind the hidden lRun_id key, made as the run
// list makes them. Ids without a catalogue row are left out. The statement is the caller's to
// set.
enum class ColumnOrder { Catalogue, Given };
ListLayout CatalogueListLayout(store::Database& db, const QList<qint64>& catalogueIds,
                               ColumnOrder order = ColumnOrder::Catalogue);

// The columns and statement of a list mode. An unknown mode shows "Unknown Key: " and the key and
// gives an empty layout. A view that names catalogue rows that are gone skips them; a view table
// that is gone, or a chosen view that is no longer there, leaves only the key column.
ListLayout BuildListLayout(store::Database& db, const QString& mode, const ListContext& ctx,
                           Messages& messages);

// Turns rows of a list's statement into the grid's cell texts. Look-ups are read once per
// load, so a row never costs a query of its own.
class RowBuilder {
public:
    RowBuilder(store::Database& db, const ListLayout& layout);
    // Call once with the statement's query before the first row.
    void Bind(const store::Query& query);
    QStringList Build(const store::Query& query);
    // The row as the grid holds it: cells joined by tabs.
    QString BuildText(const store::Query& query);
    // Reads again each look-up table that has changed since it was read, so that a builder kept
    // for rows made one at a time shows what a new one would.
    void RefreshLookups();

private:
    struct Cell {
        enum class Kind { Key, Lookup, Formatted, Raw, Flag, DateMask, Address, Phone, Empty };
        Kind kind = Kind::Raw;
        int field = -1;
        store::ColumnKind columnKind = store::ColumnKind::Any;
        QString format;
        std::shared_ptr<NumberFormat> number;
        const QHash<QString, QString>* lookup = nullptr;
        // Texts already made for a value: a list repeats its values a great deal.
        QHash<quint64, QString> byNumber;
        QHash<QString, QString> byText;
        // How the cache has paid so far; a column whose values rarely repeat stops using it.
        int probes = 0;
        int hits = 0;
        bool caching = true;
    };
    struct Lookup {
        QString table;
        QString key;
        QString text;
        quint64 stamp = 0;  // the table's when it was read
        QHash<QString, QString> texts;
    };
    void AppendCell(Cell& cell, const store::Query& query, QString& out);
    const QHash<QString, QString>* LookupTable(const QString& table, const QString& key,
                                               const QString& text);
    void ReadLookup(Lookup& lookup);

    store::Database& db_;
    const ListLayout& layout_;
    std::vector<Cell> cells_;
    QString row_;  // the row being made, keeping its room from one row to the next
    std::vector<std::unique_ptr<Lookup>> lookups_;
    QHash<QString, const QHash<QString, QString>*> lookupIndex_;
};

// The notes of a row: the notes column of the mode's table for the key, or the empty text.
QString LoadNotes(store::Database& db, const QString& mode, const QString& keyText);

// The text a key takes in a look-up: numbers in their plain form, text without case.
QString LookupKey(const QVariant& value);

// The main list's row of one run: cells joined by tabs, for the list's own columns (the first
// being the key), made the way the list makes its rows. Empty when the run is not there.
QString RunGridRow(store::Database& db, const QStringList& columnNames, qint64 runId);

// Makes such rows one after another, as RunGridRow does, keeping between rows what it read of
// the column catalogue and the look-up tables while those tables stay unchanged.
class RunGridRowMaker {
public:
    explicit RunGridRowMaker(store::Database& db);
    ~RunGridRowMaker();
    RunGridRowMaker(const RunGridRowMaker&) = delete;
    RunGridRowMaker& operator=(const RunGridRowMaker&) = delete;

    QString Row(const QStringList& columnNames, qint64 runId);

private:
    store::Database& db_;
    QStringList names_;
    quint64 catalogueStamp_ = 0;
    std::unique_ptr<ListLayout> layout_;
    std::unique_ptr<RowBuilder> builder_;
};

}  // namespace slipbook::shell
