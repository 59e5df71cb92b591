#include "store/upgrade.h"

#include "common/numbers.h"
#include "store/dberror.h"
#include "store/logbookcopy.h"
#include "store/logbookfile.h"

#include "store/schematext.h"

#include <sqlite3.h>
#include <QDir>
#include <QRegularExpression>

#include <algorithm>

#include <cmath>

namespace slipbook::store {

namespace {

// The first row's `Records`, as the guards count.
qint64 Records(Database& db, const QString& sql) {
    Query q = db.OpenQuery(sql);
    return q.Next() ? q.Value(QStringLiteral("Records")).toLongLong() : 0;
}

QString Quoted(const QString& text) {
    QString doubled = text;
    doubled.replace(u'\'', QStringLiteral("''"));
    return u'\'' + doubled + u'\'';
}

void ExecuteAll(Database& db, const QStringList& statements) {
    for (const QString& sql : statements) {
        db.Execute(sql);
    }
}

const QString kSegmentCount = QStringLiteral(
    "SELECT COUNT(lLVC_Id) As Records FROM tblListViewColumns WHERE sFieldName = "
    "'i60to330Foot_et'");

const QStringList kBaseColumns = {
    QStringLiteral("sBaseADR"),         QStringLiteral("sBaseJet"),
    QStringLiteral("sBaseJetDiameter"), QStringLiteral("sBaseBypassPill"),
    QStringLiteral("sBaseBoost"),       QStringLiteral("sNozzleArea")};

const QStringList kSegmentColumns = {
    QStringLiteral("i60to330Foot_et"), QStringLiteral("i330to660Foot_et"),
    QStringLiteral("i660to1000Foot_et"), QStringLiteral("i1000to1320Foot_et")};

QStringList CustomColumns() {
    QStringList names;
    for (int i = 1; i <= 6; ++i) {
        names << QStringLiteral("Custom%1").arg(i);
    }
    return names;
}

// Every text and memo column of every ordinary table may hold the empty text.
void TextFieldsAllowEmpty(Database& db) {
    for (const TableDef& table : db.TableDefs()) {
        if (table.attributes != 0) {
            continue;
        }
        for (const FieldDef& field : table.fields) {
            if (field.type == fieldtype::Text || field.type == fieldtype::Memo) {
                db.SetAllowZeroLength(table.name, field.name, true);
            }
        }
    }
}

void StepSetupRuns(Database& db) {
    ExecuteAll(db, {
                       QStringLiteral("ALTER TABLE tblRuns ADD COLUMN sBlowerNozzle7_val Text(15)"),
                       QStringLiteral("ALTER TABLE tblRuns ADD COLUMN sBlowerNozzle8_val Text(15)"),
                       QStringLiteral("SELECT * INTO tblCarSetup FROM tblRuns WHERE False"),
                       QStringLiteral("ALTER TABLE tblCarSetup ADD COLUMN sSetup_cat Text(15)"),
                       QStringLiteral("ALTER TABLE tblCars ADD COLUMN lCarryForward_info YesNo"),
                       QStringLiteral("UPDATE tblCars SET lCarryForward_info = True"),
                       QStringLiteral("ALTER TABLE tblCars ADD COLUMN sBlowerNozzle7_val Text(15)"),
                       QStringLiteral("ALTER TABLE tblCars ADD COLUMN sBlowerNozzle8_val Text(15)"),
                       QStringLiteral("ALTER TABLE tblCars ADD COLUMN iCarWeight_val Integer"),
                       QStringLiteral("UPDATE tblCars SET iCarWeight_val = 0"),
                       QStringLiteral("ALTER TABLE tblCars ADD COLUMN bDefault_fl YesNo"),
                       QStringLiteral("UPDATE tblCars SET bDefault_fl = False"),
                   });
    TextFieldsAllowEmpty(db);
}

void StepCarBase(Database& db) {
    db.Execute(QStringLiteral("SELECT lCar_id INTO tblCarBase FROM tblCars"));
    for (const QString& column : kBaseColumns) {
        db.Execute(QStringLiteral("ALTER TABLE tblCarBase ADD COLUMN ") + column +
                   QStringLiteral(" Text(8)"));
    }
}

// Through the free ids 1 to 4, so that no id is overwritten on the way.
void StepThrottleStopIds(Database& db) {
    const int moves[][2] = {{192, 1}, {193, 2}, {194, 3}, {195, 4}, {196, 198},
                            {1, 181}, {2, 195}, {3, 196}, {4, 197}};
    for (const auto& [from, to] : moves) {
        db.Execute(QStringLiteral("UPDATE tblThrottleStopView SET lLVC_id = %1 WHERE lLVC_id = %2")
                       .arg(to)
                       .arg(from));
    }
}

void StepFormats(Database& db) {
    ExecuteAll(
        db, {
                QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = '###,##0.000' WHERE "
                               "lLVC_id IN (76,185,187,189,190) AND (sDisplayFormat IS NULL OR "
                               "Trim(sDisplayFormat) = '')"),
                QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = '###,##0.00' WHERE "
                               "lLVC_id IN (181,195,196,197,182) AND (sDisplayFormat IS NULL OR "
                               "Trim(sDisplayFormat) = '')"),
                QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = '###,##0.000' WHERE "
                               "lLVC_id IN (180,184,186,188,191) AND (sDisplayFormat IS NULL OR "
                               "Trim(sDisplayFormat) = '' OR Trim(sDisplayFormat) = '###,##0.00')"),
            });
}

// Whether the format repairs would change a row: a logbook they leave alone needs no copy.
bool FormatsWouldChange(Database& db) {
    return Records(db, QStringLiteral(
                           "SELECT COUNT(*) AS Records FROM tblListViewColumns WHERE (lLVC_id IN "
                           "(76,185,187,189,190,181,195,196,197,182) AND (sDisplayFormat IS NULL "
                           "OR Trim(sDisplayFormat) = '')) OR (lLVC_id IN (180,184,186,188,191) "
                           "AND (sDisplayFormat IS NULL OR Trim(sDisplayFormat) = '' OR "
                           "Trim(sDisplayFormat) = '###,##0.00'))")) > 0;
}

void StepDefaultCar(Database& db) {
    db.Execute(QStringLiteral("ALTER TABLE tblCars ADD COLUMN bDefault_fl YesNo"));
    db.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False"));
}

void StepSetupTypeColumn(Database& db) {
    db.Execute(QStringLiteral(
        "INSERT INTO tblListViewColumns  (lLVC_id,lorder, sView_id, sFieldName, sColumnHeader, "
        "sDataType, sAlignment, lColumnWidth, bVisible_fl) VALUES(8675309,0,'ID_CarSetup', "
        "'sSetup_cat','Type','Text','L',500,True)"));
}

// The car's base values out of the holding table, and a nozzle for a car that has none but an
// area: the diameter of a circle of that area.
void MoveBaseValues(Database& db) {
    struct Car {
        qint64 id;
        double nozzles;
    };
    std::vector<Car> cars;
    {
        Query q = db.OpenQuery(QStringLiteral("SELECT * from tblCars ORDER BY sCar_nm"));
        while (q.Next()) {
            double sum = 0;
            for (const char* family :
                 {"sBlowerNozzle", "sHatNozzle", "sHeadNozzle", "sManifoldNozzle"}) {
                for (int n = 1; n <= 8; ++n) {
                    const QString name =
                        QString::fromLatin1(family) + QString::number(n) + QStringLiteral("_val");
                    if (q.FieldIndex(name) < 0) {
                        continue;
                    }
                    if (const auto v = StrictNumber(q.Value(name).toString() + u' ')) {
                        sum += *v;
                    }
                }
            }
            cars.push_back({q.Value(QStringLiteral("lCar_id")).toLongLong(), sum});
        }
    }
    for (const Car& car : cars) {
        const QString key = QString::number(car.id);
        QStringList sets;
        QString area;
        {
            Query base =
                db.OpenQuery(QStringLiteral("SELECT * FROM tblCarBase WHERE lCar_id = ") + key);
            if (!base.Next()) {
                continue;
            }
            // A Null goes in as the empty text, as joining it to the apostrophes makes it.
            for (const QString& column : kBaseColumns) {
                sets << column + QStringLiteral(" = ") + Quoted(base.Value(column).toString());
            }
            area = base.Value(QStringLiteral("sNozzleArea")).toString();
        }
        db.Execute(QStringLiteral("UPDATE tblCars SET ") + sets.join(QStringLiteral(", ")) +
                   QStringLiteral(" WHERE lCar_id = ") + key);
        const auto areaValue = StrictNumber(area + u' ');
        if (car.nozzles == 0 && areaValue && *areaValue != 0) {
            const double diameter = 2 * std::sqrt(*areaValue / 3.14159265358979);
            const double rounded = std::floor(diameter * 1000 + 0.5) / 1000;
            db.Execute(QStringLiteral("UPDATE tblCars SET sBlowerNozzle1_val = ") +
                       Quoted(PlainNumberText(rounded)) + QStringLiteral(" WHERE lCar_id = ") +
                       key);
        }
    }
}

void StepSegmentsCustomAndMaintenance(Database& db) {
    const QString catalogue = QStringLiteral(
        "INSERT INTO tblListViewColumns  (lLVC_id,lorder, sView_id, sColumnHeader, sFieldName, "
        "sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl) VALUES ");
    const QStringList segmentRows = {
        QStringLiteral("(201, 1246, 'ID_Runs', \"60-330' et\", 'i60to330Foot_et', '###,##0.000', "
                       "'Number', 'R', 500, True);"),
        QStringLiteral("(202, 1247, 'ID_Runs', \"330-660' et\", 'i330to660Foot_et', "
                       "'###,##0.000', 'Number', 'R', 575, True);"),
        QStringLiteral("(203, 1248, 'ID_Runs', \"660-1000' et\", 'i660to1000Foot_et', "
                       "'###,##0.000', 'Number', 'R', 650, True);"),
        QStringLiteral("(204, 1249, 'ID_Runs', \"1000-1320' et\", 'i1000to1320Foot_et', "
                       "'###,##0.000', 'Number', 'R', 700, True);"),
    };
    for (const QString& row : segmentRows) {
        db.Execute(catalogue + row);
    }
    for (const char* table : {"tblRuns", "tblCarSetup"}) {
        for (const QString& column : kSegmentColumns) {
            db.Execute(QStringLiteral("ALTER TABLE ") + QString::fromLatin1(table) +
                       QStringLiteral(" ADD COLUMN ") + column + QStringLiteral(" Number"));
        }
    }
    for (int i = 0; i < 4; ++i) {
        db.Execute(QStringLiteral("UPDATE tblThrottleStopView SET lOrder = %1 WHERE "
                                  "sColumnHeader = 'Throttle Stop %2'")
                       .arg(42 + 2 * i)
                       .arg(i + 1));
    }
    const QStringList segmentHeaders = {
        QStringLiteral("\"60-330' et\""), QStringLiteral("\"330-660' et\""),
        QStringLiteral("\"660-1000' et\""), QStringLiteral("\"1000-1320' et\"")};
    const auto viewRow = [](const QString& table, int id, int order, const QString& header) {
        return QStringLiteral("INSERT INTO ") + table +
               QStringLiteral(" (lLVC_id,lorder, sView_id, sColumnHeader, bVisible_fl) VALUES ") +
               QStringLiteral("(%1, %2, 'ID_Runs', %3, True)").arg(id).arg(order).arg(header);
    };
    const struct {
        const char* table;
        int firstOrder;
        int count;
    } segmentViews[] = {{"tblThrottleStopView", 152, 4},
                        {"tblProView", 142, 4},
                        {"tbl18MileView", 122, 2},
                        {"tbl14MileView", 152, 4}};
    for (const auto& view : segmentViews) {
        for (int i = 0; i < view.count; ++i) {
            db.Execute(viewRow(QString::fromLatin1(view.table), 201 + i, view.firstOrder + 2 * i,
                               segmentHeaders[i]));
        }
    }
    const QStringList customs = CustomColumns();
    for (int i = 0; i < 6; ++i) {
        db.Execute(catalogue +
                   QStringLiteral("(%1, %2, 'ID_Runs', '%3', '%3', '', 'Text', 'L', 1500, True);")
                       .arg(211 + i)
                       .arg(1301 + i)
                       .arg(customs[i]));
    }
    for (const char* table : {"tblRuns", "tblCarSetup", "tblCars"}) {
        for (const QString& column : customs) {
            db.Execute(QStringLiteral("ALTER TABLE ") + QString::fromLatin1(table) +
                       QStringLiteral(" ADD COLUMN ") + column + QStringLiteral(" Text"));
        }
    }
    const auto customViewRows = [&](const char* table) {
        for (int i = 0; i < 6; ++i) {
            db.Execute(
                viewRow(QString::fromLatin1(table), 211 + i, 911 + i, u'\'' + customs[i] + u'\''));
        }
    };
    for (const char* table : {"tbl14MileView", "tbl18MileView", "tblProView"}) {
        customViewRows(table);
    }
    db.Execute(QStringLiteral(
        "UPDATE tblProView SET lorder=35 WHERE sColumnHeader = 'Full Run' AND lLVC_id=73"));
    db.Execute(
        QStringLiteral("UPDATE tblListViewColumns SET lorder=65, bVisible_fl=True WHERE "
                       "sColumnHeader = 'Full Run' AND lLVC_id=73"));
    customViewRows("tblThrottleStopView");

    ExecuteAll(
        db, {
                QStringLiteral("CREATE TABLE tblMaintenance (lMaintenance_id COUNTER CONSTRAINT "
                               "PrimaryKey PRIMARY KEY)"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN lCar_id Number"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN bCompleted YesNo"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN iScheduledRuns Number"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN iRunsMade Number"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN dtMaintenance_dt DateTime"),
                QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN sMaintenanceNotes_tx Memo"),
            });
    const QString maintenance = QStringLiteral(
        "INSERT INTO tblMaintenance  (lMaintenance_id,lCar_id, bCompleted, iScheduledRuns, "
        "iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx) VALUES ");
    for (const char* row :
         {"(1, 1, False, 20, 21, Null, 'Example Upcoming or Due Maintenance A')",
          "(2, 1, False, 20, 20, Null, 'Example Upcoming or Due Maintenance B')",
          "(3, 1, False, 20, 18, Null, 'Example Upcoming or Due Maintenance C')",
          "(4, 1, False, 20, 0, Null, 'Example Future Maintenance')",
          "(5, 1, True, 20, 19, #07/04/2003#, 'Example Completed Maintenance')"}) {
        db.Execute(maintenance + QString::fromLatin1(row));
    }

    for (const QString& column : kBaseColumns) {
        db.Execute(QStringLiteral("ALTER TABLE tblCars ADD COLUMN ") + column +
                   QStringLiteral(" Text"));
    }
    MoveBaseValues(db);
    db.Execute(QStringLiteral("DROP TABLE tblCarBase"));
    for (const char* table : {"tblRuns", "tblCarSetup"}) {
        for (const QString& column : kBaseColumns) {
            db.Execute(QStringLiteral("ALTER TABLE ") + QString::fromLatin1(table) +
                       QStringLiteral(" ADD COLUMN ") + column + QStringLiteral(" Text"));
        }
    }
    db.Execute(QStringLiteral("ALTER TABLE tblCarSetup ADD COLUMN bEighthNotQuarter YesNo"));
    db.Execute(QStringLiteral("UPDATE tblCarSetup SET bEighthNotQuarter=0"));
}

bool EngineColumnHidden(Database& db) {
    Query q = db.OpenQuery(
        QStringLiteral("SELECT * FROM tblListViewColumns WHERE sFieldName = 'sEngine_desc'"));
    return q.Next() && !q.Value(QStringLiteral("bVisible_fl")).toBool();
}

// ---------------------------------------------------------------------------------------------
// The template's own shape: every table in its column order and declared types, with its indexes.

struct ShapeTable {
    QString name;
    QString createSql;                       // as the engine keeps it
    QList<QPair<QString, QString>> columns;  // name, declared type
    QStringList indexSql;
};

QList<QPair<QString, QString>> ColumnsOf(sqlite3* db, const QString& table) {
    QList<QPair<QString, QString>> columns;
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = "SELECT name, type FROM pragma_table_info(?1)";
    if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) == SQLITE_OK) {
        const QByteArray name = table.toUtf8();
        sqlite3_bind_text(stmt, 1, name.constData(), -1, SQLITE_TRANSIENT);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            columns.append(
                {QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))),
                 QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)))});
        }
    }
    sqlite3_finalize(stmt);
    return columns;
}

const std::vector<ShapeTable>& TemplateShape() {
    static const std::vector<ShapeTable> shape = [] {
        std::vector<ShapeTable> tables;
        Database made;
        made.OpenRaw(QStringLiteral(":memory:"), true);
        made.ExecuteScript(QString::fromUtf8(LogbookSchemaScript()));
        sqlite3* db = made.handle();
        sqlite3_stmt* stmt = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT name, sql FROM sqlite_master WHERE type = 'table' AND name NOT "
                           "LIKE 'sqlite%' ORDER BY rowid",
                           -1, &stmt, nullptr);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            ShapeTable t;
            t.name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
            t.createSql =
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
            tables.push_back(t);
        }
        sqlite3_finalize(stmt);
        for (ShapeTable& t : tables) {
            t.columns = ColumnsOf(db, t.name);
            sqlite3_prepare_v2(db,
                               "SELECT sql FROM sqlite_master WHERE type = 'index' AND tbl_name = "
                               "?1 AND sql IS NOT NULL ORDER BY rowid",
                               -1, &stmt, nullptr);
            const QByteArray name = t.name.toUtf8();
            sqlite3_bind_text(stmt, 1, name.constData(), -1, SQLITE_TRANSIENT);
            while (sqlite3_step(stmt) == SQLITE_ROW) {
                t.indexSql << QString::fromUtf8(
                    reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
            }
            sqlite3_finalize(stmt);
        }
        return tables;
    }();
    return shape;
}

bool SameColumns(const QList<QPair<QString, QString>>& a, const QList<QPair<QString, QString>>& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i].first.compare(b[i].first, Qt::CaseInsensitive) != 0 ||
            a[i].second.compare(b[i].second, Qt::CaseInsensitive) != 0) {
            return false;
        }
    }
    return true;
}

// Columns that steps append stand at the end of an upgraded table; the template has them where
// they belong. Only a table holding every template column, and no other, is rebuilt: one that
// lacks a column is left for the level check to name.
bool Rebuildable(const QList<QPair<QString, QString>>& have, const ShapeTable& t) {
    if (have.size() != t.columns.size() || SameColumns(have, t.columns)) {
        return false;
    }
    for (const auto& [name, type] : t.columns) {
        const bool present = std::any_of(have.begin(), have.end(), [&](const auto& c) {
            return c.first.compare(name, Qt::CaseInsensitive) == 0;
        });
        if (!present) {
            return false;
        }
    }
    return true;
}

// One-off engine statements of the rebuild: ExecRaw keeps each statement prepared for reuse,
// which suits the few savepoint statements and not a hundred table texts run once.
void Raw(Database& db, const QString& sql) {
    char* error = nullptr;
    if (sqlite3_exec(db.handle(), sql.toUtf8().constData(), nullptr, nullptr, &error) !=
        SQLITE_OK) {
        const QString why = QString::fromUtf8(error != nullptr ? error : "unknown error");
        sqlite3_free(error);
        throw DbError(err::Generic, QStringLiteral("Upgrade"),
                      why + QStringLiteral(" (") + sql + QStringLiteral(")"));
    }
}

qint64 RawScalar(Database& db, const QString& sql) {
    sqlite3_stmt* stmt = nullptr;
    qint64 value = -1;
    if (sqlite3_prepare_v2(db.handle(), sql.toUtf8().constData(), -1, &stmt, nullptr) ==
            SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_type(stmt, 0) != SQLITE_NULL) {
        value = sqlite3_column_int64(stmt, 0);
    }
    sqlite3_finalize(stmt);
    return value;
}

bool IndexMissing(Database& db, const QString& createIndexSql) {
    static const QRegularExpression name(QStringLiteral("^CREATE (?:UNIQUE )?INDEX (\\S+)"));
    const auto m = name.match(createIndexSql);
    return m.hasMatch() &&
           RawScalar(db, QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' "
                                        "AND name = '%1'")
                             .arg(m.captured(1))) == 0;
}

bool ShapeDiffers(Database& db) {
    for (const ShapeTable& t : TemplateShape()) {
        const auto have = ColumnsOf(db.handle(), t.name);
        if (have.isEmpty()) {
            continue;
        }
        if (Rebuildable(have, t)) {
            return true;
        }
        for (const QString& index : t.indexSql) {
            if (IndexMissing(db, index)) {
                return true;
            }
        }
    }
    return false;
}

// Each table in the template's column order and types, its rows and its key counter kept, so
// that no key is ever given twice; and every index of the template in place.
void ConformToTemplate(Database& db) {
    for (const ShapeTable& t : TemplateShape()) {
        const auto have = ColumnsOf(db.handle(), t.name);
        if (have.isEmpty()) {
            continue;
        }
        if (Rebuildable(have, t)) {
            const QString temp = t.name + QStringLiteral("_reordered");
            QString create = t.createSql;
            static const QRegularExpression head(
                QStringLiteral("^CREATE TABLE\\s+(\"?)[A-Za-z0-9_]+\\1"));
            create.replace(head, QStringLiteral("CREATE TABLE \"") + temp + u'"');
            QStringList names;
            for (const auto& column : t.columns) {
                names << QuoteIdent(column.first);
            }
            const QString list = names.join(QStringLiteral(", "));
            const qint64 counter = RawScalar(
                db,
                QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = '%1'").arg(t.name));
            Raw(db, create);
            Raw(db, QStringLiteral("INSERT INTO \"%1\" (%2) SELECT %2 FROM \"%3\"")
                        .arg(temp, list, t.name));
            Raw(db, QStringLiteral("DROP TABLE \"%1\"").arg(t.name));
            Raw(db, QStringLiteral("ALTER TABLE \"%1\" RENAME TO \"%2\"").arg(temp, t.name));
            if (counter > 0) {
                Raw(db, QStringLiteral("UPDATE sqlite_sequence SET seq = MAX(seq, %1) WHERE name "
                                       "= '%2'")
                            .arg(counter)
                            .arg(t.name));
            }
        }
        for (const QString& index : t.indexSql) {
            if (IndexMissing(db, index)) {
                Raw(db, index);
            }
        }
    }
}

// A table of this program's own made as the template makes it, with its indexes.
void AddTemplateTable(Database& db, const QString& table) {
    for (const ShapeTable& t : TemplateShape()) {
        if (t.name.compare(table, Qt::CaseInsensitive) == 0) {
            Raw(db, t.createSql);
            for (const QString& index : t.indexSql) {
                Raw(db, index);
            }
            return;
        }
    }
}

UpgradeStep TableStep(const QString& name, const QString& table) {
    return {name, [table](Database& db) { return !db.TableExists(table); },
            [table](Database& db) { AddTemplateTable(db, table); }, QStringList{table}};
}

QStringList Columns(const QString& table, const QStringList& names) {
    QStringList out;
    for (const QString& name : names) {
        out << table + u'.' + name;
    }
    return out;
}

}  // namespace

const std::vector<UpgradeStep>& UpgradeSteps() {
    static const std::vector<UpgradeStep> steps = [] {
        std::vector<UpgradeStep> s;
        s.push_back({QStringLiteral("1 (set-up runs table)"),
                     [](Database& db) { return !db.TableExists(QStringLiteral("tblCarSetup")); },
                     StepSetupRuns,
                     QStringList{QStringLiteral("tblCarSetup"),
                                 QStringLiteral("tblRuns.sBlowerNozzle7_val"),
                                 QStringLiteral("tblRuns.sBlowerNozzle8_val"),
                                 QStringLiteral("tblCars.lCarryForward_info"),
                                 QStringLiteral("tblCars.sBlowerNozzle7_val"),
                                 QStringLiteral("tblCars.sBlowerNozzle8_val"),
                                 QStringLiteral("tblCars.iCarWeight_val"),
                                 QStringLiteral("tblCars.bDefault_fl")}});
        s.push_back({QStringLiteral("2 (holding table of the base values)"),
                     [](Database& db) {
                         return !db.TableExists(QStringLiteral("tblCarBase")) &&
                                Records(db, kSegmentCount) == 0;
                     },
                     StepCarBase,
                     {}});
        s.push_back(
            {QStringLiteral("3 (throttle-stop view ids)"),
             [](Database& db) {
                 return Records(db, QStringLiteral("SELECT COUNT(*) as Records FROM "
                                                   "tblThrottleStopView WHERE lLVC_id = 181")) == 0;
             },
             StepThrottleStopIds,
             {}});
        s.push_back({QStringLiteral("4 (list formats)"),
                     [](Database&) { return true; },
                     StepFormats,
                     {},
                     FormatsWouldChange});
        s.push_back({QStringLiteral("5 (default car)"),
                     [](Database& db) {
                         return !db.FieldExists(QStringLiteral("tblCars"),
                                                QStringLiteral("bDefault_fl"));
                     },
                     StepDefaultCar,
                     {}});
        s.push_back({QStringLiteral("6 (set-up list type column)"),
                     [](Database& db) {
                         return Records(db, QStringLiteral("SELECT COUNT(lLVC_Id) As Records FROM "
                                                           "tblListViewColumns WHERE sView_Id = "
                                                           "'ID_CarSetup'")) == 0;
                     },
                     StepSetupTypeColumn,
                     {}});
        QStringList adds = {QStringLiteral("tblMaintenance"),
                            QStringLiteral("tblCarSetup.bEighthNotQuarter")};
        for (const char* table : {"tblRuns", "tblCarSetup"}) {
            adds << Columns(QString::fromLatin1(table), kSegmentColumns)
                 << Columns(QString::fromLatin1(table), kBaseColumns);
        }
        for (const char* table : {"tblRuns", "tblCarSetup", "tblCars"}) {
            adds << Columns(QString::fromLatin1(table), CustomColumns());
        }
        adds << Columns(QStringLiteral("tblCars"), kBaseColumns);
        s.push_back({QStringLiteral("7 (segment times, custom fields, maintenance, base values)"),
                     [](Database& db) { return Records(db, kSegmentCount) == 0; },
                     StepSegmentsCustomAndMaintenance, adds});
        s.push_back({QStringLiteral("8 (every field shown)"),
                     EngineColumnHidden,
                     [](Database& db) {
                         db.Execute(
                             QStringLiteral("UPDATE tblListViewColumns SET "
                                            "bVisible_fl=True WHERE sFieldName<>'lRun_id'"));
                     },
                     {}});
        // The steps of this program's own tables and columns come after this one; each makes
        // its part in the template's shape, so this one runs once per older logbook.
        s.push_back({QStringLiteral("9 (columns in the current order, indexes)"),
                     ShapeDiffers,
                     ConformToTemplate,
                     {}});
        s.push_back(
            TableStep(QStringLiteral("10 (import layouts)"), QStringLiteral("tblImportLayout")));
        s.push_back(TableStep(QStringLiteral("11 (weather log)"), QStringLiteral("tblWeatherLog")));
        return s;
    }();
    return steps;
}

void RunUpgradeSteps(Database& db, const std::vector<UpgradeStep>& steps) {
    for (const UpgradeStep& step : steps) {
        if (!step.needed(db)) {
            continue;
        }
        try {
            Database::Transaction transaction(db);
            step.run(db);
            transaction.Commit();
        } catch (const DbError& e) {
            throw DbError(e.number(), e.source(),
                          QStringLiteral("Updating the logbook stopped at step %1: %2\nThe "
                                         "logbook is as it was before that step.")
                              .arg(step.name, e.description()));
        }
    }
}

bool UpgradeWouldChange(Database& db, const std::vector<UpgradeStep>& steps) {
    for (const UpgradeStep& step : steps) {
        if (step.needed(db) && (!step.changes || step.changes(db))) {
            return true;
        }
    }
    return false;
}

QString UpgradeLadder(Database& db, const QDateTime& now) {
    const std::vector<UpgradeStep>& steps = UpgradeSteps();
    QString backup;
    // The racer can always go back to the logbook as it was before this version touched it.
    if (UpgradeWouldChange(db, steps)) {
        backup = DatedBackupPath(db.Name(), now);
        CopyLogbookTo(db, backup);
    }
    try {
        RunUpgradeSteps(db, steps);
    } catch (const DbError& e) {
        if (backup.isEmpty()) {
            throw;
        }
        throw DbError(
            e.number(), e.source(),
            e.description() + QStringLiteral("\nA copy of the logbook from before the update is "
                                             "at %1.")
                                  .arg(QDir::toNativeSeparators(backup)));
    }
    // A table rebuilt leaves its old pages free: handed back, the file is its own size again.
    // Only room is at stake, so a logbook that can't be compacted now is left as it is.
    if (!backup.isEmpty()) {
        const qint64 pages = RawScalar(db, QStringLiteral("PRAGMA page_count"));
        const qint64 free = RawScalar(db, QStringLiteral("PRAGMA freelist_count"));
        if (pages > 0 && free * 4 > pages) {
            sqlite3_exec(db.handle(), "VACUUM", nullptr, nullptr, nullptr);
        }
    }
    // A part missing that no step adds: the logbook is neither current nor of an older level.
    if (const QString lacks = LevelProblem(db.handle()); !lacks.isEmpty()) {
        throw DbError(err::CannotOpen, QStringLiteral("Startup"),
                      QStringLiteral("The file %1 is not a Slipbook logbook: %2.")
                          .arg(QDir::toNativeSeparators(db.Name()), lacks));
    }
    return backup;
}

}  // namespace slipbook::store
