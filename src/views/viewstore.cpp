#include "views/viewstore.h"

#include "store/dberror.h"

namespace slipbook::views {

namespace {

QString Quoted(const QString& text) {
    QString s = text;
    s.replace(u'\'', QStringLiteral("''"));
    return u'\'' + s + u'\'';
}

QString IdText(qint64 id) {
    return QString::number(id);
}

// The fields' order written into a view's table: shown, ten apart.
void WriteOrder(store::Database& db, const QString& table, const QList<qint64>& fieldIds) {
    for (int i = 0; i < fieldIds.size(); ++i) {
        db.Execute(
            QStringLiteral("UPDATE %1 SET bVisible_fl = True, lOrder = %2 WHERE lLVC_id = %3")
                .arg(table)
                .arg(i * 10)
                .arg(fieldIds[i]));
    }
}

// The first tblCustomView<n> the logbook has no table of.
QString FreeTableName(store::Database& db) {
    for (int n = 1;; ++n) {
        const QString name = QStringLiteral("tblCustomView") + QString::number(n);
        if (!db.TableExists(name)) {
            return name;
        }
    }
}

}  // namespace

QString NewViewName() {
    return QStringLiteral("<New User Defined View>");
}

QString AllFieldsName() {
    return QStringLiteral("<All Fields>");
}

QList<ViewEntry> ReadViews(store::Database& db, bool customOnly) {
    QString sql = QStringLiteral("SELECT lView_id, sView_desc, sTable_nm FROM tblViews");
    if (customOnly) {
        sql += QStringLiteral(" WHERE bReadOnlyView_fl = False");
    }
    store::Query q = db.OpenQuery(sql + QStringLiteral(" ORDER BY rowid"));
    QList<ViewEntry> views;
    while (q.Next()) {
        views.append({q.Value(0).toLongLong(), q.Text(1), q.Text(2)});
    }
    return views;
}

QString ViewTable(store::Database& db, qint64 viewId) {
    if (viewId == kAllFieldsId) {
        return kCatalogueTable.toString();
    }
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT sTable_nm FROM tblViews WHERE lView_id = ") + IdText(viewId));
    return q.Next() ? q.Text(0) : QString();
}

void DefaultViewSet(store::Database& db, const QString& table) {
    store::Database::Transaction tx(db);
    store::Query q = db.OpenQuery(QStringLiteral("SELECT lView_id, sTable_nm FROM tblViews"));
    QList<std::pair<qint64, bool>> flags;
    while (q.Next()) {
        // Compared exactly, as the name was written.
        flags.append({q.Value(0).toLongLong(), q.Text(1) == table});
    }
    for (const auto& [id, on] : flags) {
        db.Execute(QStringLiteral("UPDATE tblViews SET bDefault_fl = %1 WHERE lView_id = %2")
                       .arg(on ? QStringLiteral("True") : QStringLiteral("False"))
                       .arg(id));
    }
    tx.Commit();
}

QList<ViewField> ReadViewFields(store::Database& db, const QString& table, const QString& mode) {
    QList<ViewField> fields;
    if (table.isEmpty() || !db.TableExists(table)) {
        return fields;
    }
    QString sql;
    if (table.compare(kCatalogueTable, Qt::CaseInsensitive) == 0) {
        sql = QStringLiteral(
                  "SELECT lLVC_id, sFieldName, sColumnHeader FROM tblListViewColumns WHERE "
                  "sView_id = %1 ORDER BY lOrder")
                  .arg(Quoted(mode));
    } else {
        // The header is the one the view was saved with; the field is the catalogue's.
        sql = QStringLiteral(
                  "SELECT %1.lLVC_id, tblListViewColumns.sFieldName, %1.sColumnHeader FROM %1, "
                  "tblListViewColumns WHERE %1.lLVC_id = tblListViewColumns.lLVC_id AND "
                  "%1.sView_id = %2 ORDER BY %1.lOrder")
                  .arg(table, Quoted(mode));
    }
    store::Query q = db.OpenQuery(sql);
    while (q.Next()) {
        fields.append({q.Value(0).toLongLong(), q.Text(1), q.Text(2)});
    }
    return fields;
}

std::optional<QString> ViewNameProblem(store::Database& db, const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        return QStringLiteral("View Name must be entered.");
    }
    for (const QChar c : trimmed) {
        if (c.category() == QChar::Other_Control || QStringView(u".!`[]").contains(c)) {
            return QStringLiteral("A view name can't hold the character \"%1\".")
                .arg(c.category() == QChar::Other_Control ? QStringLiteral("line break or tab")
                                                          : QString(c));
        }
    }
    if (db.TableExists(trimmed)) {
        return QStringLiteral("\"%1\" is the name of a table of the logbook; choose another name.")
            .arg(trimmed);
    }
    for (const ViewEntry& v : ReadViews(db, false)) {
        if (v.name.trimmed().compare(trimmed, Qt::CaseInsensitive) == 0) {
            return QStringLiteral(
                       "There is a view named \"%1\" already. Choose it in the list to replace "
                       "it, or type another name.")
                .arg(v.name.trimmed());
        }
    }
    return std::nullopt;
}

qint64 SaveView(store::Database& db, qint64 viewId, const QString& name,
                const QList<qint64>& fieldIds, bool setDefault) {
    if (fieldIds.isEmpty()) {
        return viewId;  // a view shows at least one field
    }
    store::Database::Transaction tx(db);
    qint64 id = viewId;
    if (id == 0) {
        db.Execute(QStringLiteral("INSERT INTO tblViews (sView_desc, sTable_nm, bReadOnlyView_fl, "
                                  "bDefault_fl) VALUES (%1, %2, False, False)")
                       .arg(Quoted(name), Quoted(FreeTableName(db))));
        id = db.LastInsertRowId();
    }
    const QString table = ViewTable(db, id);
    if (table.isEmpty()) {
        throw store::DbError(store::err::ItemNotFound, QStringLiteral("SaveView"),
                             QStringLiteral("The view is no longer in the logbook."));
    }
    if (db.TableExists(table)) {
        db.Execute(QStringLiteral("DROP TABLE ") + table);
    }
    QStringList terms;
    for (qint64 field : fieldIds) {
        terms << QStringLiteral("lLVC_id = ") + IdText(field);
    }
    db.Execute(
        QStringLiteral("SELECT lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl INTO ") +
        table + QStringLiteral(" FROM tblListViewColumns WHERE ") +
        terms.join(QStringLiteral(" OR ")));
    if (setDefault) {
        DefaultViewSet(db, table);
    }
    WriteOrder(db, table, fieldIds);
    tx.Commit();
    return id;
}

void RecallView(store::Database& db, qint64 viewId, const QList<qint64>& fieldIds,
                bool setDefault) {
    const QString table = ViewTable(db, viewId);
    if (table.isEmpty() || !db.TableExists(table)) {
        return;
    }
    store::Database::Transaction tx(db);
    if (setDefault) {
        DefaultViewSet(db, table);
    }
    WriteOrder(db, table, fieldIds);
    tx.Commit();
}

void DeleteView(store::Database& db, qint64 viewId) {
    store::Database::Transaction tx(db);
    const QString table = ViewTable(db, viewId);
    if (!table.isEmpty() && db.TableExists(table)) {
        db.Execute(QStringLiteral("DROP TABLE ") + table);
    }
    db.Execute(QStringLiteral("DELETE * FROM tblViews WHERE lView_id = ") + IdText(viewId));
    tx.Commit();
}

QList<CatalogueRow> ReadCatalogue(store::Database& db) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lLVC_id, sColumnHeader, sDisplayFormat, sDataType, sAlignment, "
                       "lColumnWidth FROM tblListViewColumns ORDER BY rowid"));
    QList<CatalogueRow> rows;
    while (q.Next()) {
        rows.append({q.Value(0).toLongLong(), q.Text(1), q.Text(2), q.Text(3), q.Text(4),
                     q.IsNull(5) ? QString() : QString::number(q.Value(5).toLongLong())});
    }
    return rows;
}

std::optional<QString> WriteCatalogueRow(store::Database& db, const CatalogueRow& row) {
    QVariant width;
    if (!row.width.trimmed().isEmpty()) {
        bool ok = false;
        const qint64 w = row.width.trimmed().toLongLong(&ok);
        if (!ok || w < 0 || w > 2147483647) {
            return QStringLiteral("The column width must be a whole number of 0 or more.");
        }
        width = QVariant::fromValue<qint64>(w);
    }
    store::Database::Transaction tx(db);
    auto rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tblListViewColumns WHERE lLVC_id = ") +
                               IdText(row.id));
    if (rs->Eof()) {
        return QStringLiteral("This column is no longer in the logbook.");
    }
    rs->Edit();
    rs->SetValue(QStringLiteral("sColumnHeader"), row.header);
    rs->SetValue(QStringLiteral("sDisplayFormat"), row.format);
    rs->SetValue(QStringLiteral("sDataType"), row.dataType);
    rs->SetValue(QStringLiteral("sAlignment"), row.alignment);
    rs->SetValue(QStringLiteral("lColumnWidth"), width);
    rs->Update();
    tx.Commit();
    return std::nullopt;
}

}  // namespace slipbook::views
