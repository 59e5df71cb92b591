#pragma once

// The run views as the logbook keeps them: tblViews lists each view and names its table, and a
// view's table holds the catalogue rows (tblListViewColumns) it shows, in its lOrder. The
// shipped views are read-only; the racer's own are made, replaced and deleted here, each change
// in one transaction.

#include "store/database.h"

#include <QList>
#include <QString>

#include <optional>

namespace slipbook::views {

// The entry of the custom-view list that stands for a view not saved yet.
QString NewViewName();  // "<New User Defined View>"
// The whole catalogue as a source of fields, offered after the views.
QString AllFieldsName();  // "<All Fields>"
inline constexpr qint64 kAllFieldsId = -1;
inline constexpr QStringView kCatalogueTable = u"tblListViewColumns";

struct ViewEntry {
    qint64 id = 0;
    QString name;   // sView_desc
    QString table;  // sTable_nm
};
// The views in stored order; only the racer's own with `customOnly`.
QList<ViewEntry> ReadViews(store::Database& db, bool customOnly);
// The table of a view, or the catalogue for kAllFieldsId; empty when the view is gone.
QString ViewTable(store::Database& db, qint64 viewId);

// Flags the view whose table is `table` as the one the program starts with, and no other.
void DefaultViewSet(store::Database& db, const QString& table);

// A field a view shows: its catalogue row, its field and the header it was saved with.
struct ViewField {
    qint64 id = 0;  // lLVC_id
    QString fieldName;
    QString header;
};
// The fields of a view's table (or of the catalogue) for a list mode, in lOrder.
QList<ViewField> ReadViewFields(store::Database& db, const QString& table, const QString& mode);

// Why a name can't be a new view's: empty, taken by another view, the name of a logbook table,
// or holding a character a table name can't (. ! ` [ ] or a control character). None when it
// can.
std::optional<QString> ViewNameProblem(store::Database& db, const QString& name);

// Saves the fields as the view `viewId`, or as a new view named `name` when it is 0: the view's
// table is made anew from the catalogue rows, ordered as given; with `setDefault` it becomes the
// default view. All or nothing. Returns the view's key.
qint64 SaveView(store::Database& db, qint64 viewId, const QString& name,
                const QList<qint64>& fieldIds, bool setDefault);
// Writes the fields' order into the view's table (rows it lacks are passed over), and makes it
// the default with `setDefault`.
void RecallView(store::Database& db, qint64 viewId, const QList<qint64>& fieldIds, bool setDefault);
// Drops the view's table and its entry, together.
void DeleteView(store::Database& db, qint64 viewId);

// A row of the column catalogue as its editor shows it; the width as text.
struct CatalogueRow {
    qint64 id = 0;      // lLVC_id
    QString header;     // sColumnHeader
    QString format;     // sDisplayFormat
    QString dataType;   // sDataType
    QString alignment;  // sAlignment
    QString width;      // lColumnWidth
};
QList<CatalogueRow> ReadCatalogue(store::Database& db);
// Writes the row as edited, every text as typed; a width that is no whole number is refused
// with the reason and nothing is written. An empty width is Null.
std::optional<QString> WriteCatalogueRow(store::Database& db, const CatalogueRow& row);

}  // namespace slipbook::views
