// The template logbook is what every new logbook starts as: these tests read the built template
// through the store, the way the program reads it.

#include "store/database.h"
#include "store/recordset.h"
#include "support/logbook.h"

#include <gtest/gtest.h>
#include <QDate>
#include <QDateTime>
#include <QSet>
#include <QString>
#include <QStringList>
#include <map>
#include <set>

namespace slipbook::store {
namespace {

using test::TempLogbook;

qint64 Count(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    EXPECT_FALSE(rs->Eof()) << sql.toStdString();
    return rs->Eof() ? -1 : rs->Value(0).toLongLong();
}

QString Text(const QVariant& v) {
    return v.toString();
}

bool Flag(const QVariant& v) {
    return v.isValid() && v.toLongLong() != 0;
}

QStringList FieldNames(Database& db, const QString& table) {
    QStringList names;
    const auto def = db.TableDefinition(table);
    EXPECT_TRUE(def.has_value()) << table.toStdString();
    if (def) {
        for (const FieldDef& f : def->fields) {
            names << f.name;
        }
    }
    return names;
}

const QStringList kViewTables = {"tbl14MileView", "tbl18MileView", "tblThrottleStopView",
                                 "tblProView"};

TEST(Template, HoldsEveryTableAndNoHoldingTable) {
    TempLogbook book;
    Database& db = book.db();
    for (const char* table :
         {"tblCars", "tblEvents", "tblEventClass", "tblTracks", "tblExpenses", "tblExpenseCategory",
          "tblRunType", "tblOpponent", "tblMaintenance", "tblRuns", "tblCarSetup",
          "tblListViewColumns", "tblViews", "tbl14MileView", "tbl18MileView", "tblThrottleStopView",
          "tblProView"}) {
        EXPECT_TRUE(db.TableExists(QString::fromLatin1(table))) << table;
    }
    EXPECT_FALSE(db.TableExists("tblCarBase"));

    const auto runs = db.TableDefinition("tblRuns");
    const auto setup = db.TableDefinition("tblCarSetup");
    const auto maintenance = db.TableDefinition("tblMaintenance");
    ASSERT_TRUE(runs && setup && maintenance);
    // Keys the store assigns, and the one key it must not (set-up rows share their run's id).
    EXPECT_TRUE(runs->field("lRun_id")->primaryKey);
    EXPECT_FALSE(setup->field("lRun_id")->primaryKey);
    EXPECT_TRUE(maintenance->field("lMaintenance_id")->primaryKey);
    // The upcoming rule divides the run counts and needs a floating division.
    EXPECT_EQ(maintenance->field("iScheduledRuns")->type, fieldtype::Double);
    EXPECT_EQ(runs->field("sBlowerNozzle8_val")->size, 15);
}

TEST(Template, CatalogueHasOneRowPerRunColumn) {
    TempLogbook book;
    Database& db = book.db();
    const QStringList runColumns = FieldNames(db, "tblRuns");
    ASSERT_FALSE(runColumns.isEmpty());

    std::map<QString, int> seen;  // lower-case field name -> rows
    std::set<qint64> ids;
    auto rs = db.OpenRecordset("SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_Runs'",
                               RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        const QString field = Text(rs->Value("sFieldName"));
        const QString what = field + " (" + Text(rs->Value("lLVC_id")) + ")";
        ++seen[field.toLower()];
        EXPECT_TRUE(ids.insert(rs->Value("lLVC_id").toLongLong()).second) << what.toStdString();
        EXPECT_TRUE(runColumns.contains(field, Qt::CaseInsensitive)) << what.toStdString();
        EXPECT_FALSE(Text(rs->Value("sColumnHeader")).trimmed().isEmpty()) << what.toStdString();
        EXPECT_TRUE(QStringList({"Text", "Number", "Date", "Time", "Boolean"})
                        .contains(Text(rs->Value("sDataType"))))
            << what.toStdString();
        EXPECT_TRUE(QStringList({"L", "R", "C"}).contains(Text(rs->Value("sAlignment"))))
            << what.toStdString();
        const qint64 width = rs->Value("lColumnWidth").toLongLong();
        EXPECT_TRUE(width >= 500 && width <= 3000) << what.toStdString();
        // The hidden key is never offered; everything else is.
        EXPECT_EQ(Flag(rs->Value("bVisible_fl")), field != "lRun_id") << what.toStdString();
        if (Flag(rs->Value("bLookup_fl"))) {
            const QString table = Text(rs->Value("sLookupTable_nm"));
            EXPECT_TRUE(db.FieldExists(table, field)) << what.toStdString();
            EXPECT_TRUE(db.FieldExists(table, Text(rs->Value("sLookupField_nm"))))
                << what.toStdString();
        }
    }
    for (const QString& column : runColumns) {
        EXPECT_EQ(seen[column.toLower()], 1) << column.toStdString();
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(runColumns.size()));

    // The keys the grid shows by name.
    const std::map<QString, QString> lookups = {{"lEvent_id", "tblEvents.sEvent_nm"},
                                                {"lCar_id", "tblCars.sCar_nm"},
                                                {"lOpponent_id", "tblOpponent.sOpponent_nm"},
                                                {"lRunType_id", "tblRunType.sRunType_nm"}};
    auto lk = db.OpenRecordset("SELECT * FROM tblListViewColumns WHERE bLookup_fl",
                               RecordsetType::Snapshot);
    std::map<QString, QString> found;
    for (; !lk->Eof(); lk->MoveNext()) {
        found[Text(lk->Value("sFieldName"))] =
            Text(lk->Value("sLookupTable_nm")) + "." + Text(lk->Value("sLookupField_nm"));
    }
    EXPECT_EQ(found, lookups);

    // The set-up windows' own list holds the one type column.
    auto setup = db.OpenRecordset("SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_CarSetup'",
                                  RecordsetType::Snapshot);
    ASSERT_EQ(setup->RecordCount(), 1);
    EXPECT_EQ(setup->Value("lLVC_id").toLongLong(), 8675309);
    EXPECT_EQ(Text(setup->Value("sFieldName")), "sSetup_cat");
    EXPECT_EQ(Text(setup->Value("sColumnHeader")), "Type");
}

TEST(Template, NamedIdsCarryTheirColumns) {
    TempLogbook book;
    Database& db = book.db();
    struct Named {
        int id;
        const char* field;
        const char* format;  // null: any
    };
    const char* et = "###,##0.000";
    const char* two = "###,##0.00";
    const Named named[] = {
        {67, "lRun_num", nullptr},        {70, "dtRun_dt", nullptr},
        {76, "i60Foot_et", et},           {186, "iVehicleReactionTime_val", et},
        {197, "sThrottleStop4_val", two}, {182, "i14Mile_mph", two},
        {204, "i1000to1320Foot_et", et},  {216, "Custom6", ""},
        {8675309, "sSetup_cat", nullptr},
    };
    auto rs = db.OpenRecordset("SELECT * FROM tblListViewColumns", RecordsetType::Snapshot);
    for (const Named& n : named) {
        rs->FindFirst(QStringLiteral("lLVC_id = %1").arg(n.id));
        ASSERT_FALSE(rs->NoMatch()) << n.id;
        EXPECT_EQ(Text(rs->Value("sFieldName")), n.field) << n.id;
        if (n.format != nullptr) {
            EXPECT_EQ(Text(rs->Value("sDisplayFormat")), n.format) << n.id;
        }
    }

    rs->FindFirst("lLVC_id = 73");
    EXPECT_EQ(Text(rs->Value("sColumnHeader")), "Full Run");
    EXPECT_EQ(rs->Value("lOrder").toLongLong(), 65);
    // The rows the upgrade seeds, as it seeds them.
    const struct {
        int id, order;
        const char* header;
        int width;
    } seeded[] = {{201, 1246, "60-330' et", 500}, {204, 1249, "1000-1320' et", 700}};
    for (const auto& s : seeded) {
        rs->FindFirst(QStringLiteral("lLVC_id = %1").arg(s.id));
        EXPECT_EQ(rs->Value("lOrder").toLongLong(), s.order);
        EXPECT_EQ(Text(rs->Value("sColumnHeader")), s.header);
        EXPECT_EQ(rs->Value("lColumnWidth").toLongLong(), s.width);
        EXPECT_EQ(Text(rs->Value("sAlignment")), "R");
    }
    for (int i = 1; i <= 6; ++i) {
        rs->FindFirst(QStringLiteral("sFieldName = 'custom%1'").arg(i));
        ASSERT_FALSE(rs->NoMatch());
        EXPECT_EQ(rs->Value("lLVC_id").toLongLong(), 210 + i);
        EXPECT_EQ(rs->Value("lOrder").toLongLong(), 1300 + i);
        EXPECT_EQ(Text(rs->Value("sColumnHeader")), QStringLiteral("Custom%1").arg(i));
        EXPECT_EQ(rs->Value("lColumnWidth").toLongLong(), 1500);
    }

    // The set-up windows read ten columns of the set-up table at either distance.
    const QStringList setupColumns = FieldNames(db, "tblCarSetup");
    for (const char* distanceEt : {"190", "187"}) {
        auto cols =
            db.OpenRecordset(QStringLiteral("SELECT * FROM tblListViewColumns WHERE lLVC_id IN "
                                            "(67,70,71,83,84,181,%1,195,196,197) ORDER BY lOrder")
                                 .arg(QString::fromLatin1(distanceEt)),
                             RecordsetType::Snapshot);
        EXPECT_EQ(cols->RecordCount(), 10);
        for (; !cols->Eof(); cols->MoveNext()) {
            EXPECT_TRUE(
                setupColumns.contains(Text(cols->Value("sFieldName")), Qt::CaseInsensitive));
        }
    }
}

TEST(Template, ShippedViewsReadTheCatalogue) {
    TempLogbook book;
    Database& db = book.db();

    auto views = db.OpenRecordset("SELECT * FROM tblViews ORDER BY bReadOnlyView_fl, sView_desc",
                                  RecordsetType::Snapshot);
    EXPECT_EQ(views->RecordCount(), 4);
    QStringList tables;
    int defaults = 0;
    for (; !views->Eof(); views->MoveNext()) {
        EXPECT_TRUE(Flag(views->Value("bReadOnlyView_fl")));
        EXPECT_FALSE(Text(views->Value("sView_desc")).isEmpty());
        tables << Text(views->Value("sTable_nm"));
        if (Flag(views->Value("bDefault_fl"))) {
            ++defaults;
            EXPECT_EQ(Text(views->Value("sTable_nm")), "tbl14MileView");
        }
    }
    EXPECT_EQ(defaults, 1);
    EXPECT_EQ(QSet<QString>(tables.begin(), tables.end()),
              QSet<QString>(kViewTables.begin(), kViewTables.end()));

    auto catalogue = db.OpenRecordset("SELECT * FROM tblListViewColumns WHERE sView_id = 'ID_Runs'",
                                      RecordsetType::Snapshot);
    for (const QString& table : kViewTables) {
        // The grid's own statement: every shipped row is visible.
        auto rows =
            db.OpenRecordset("SELECT * FROM " + table + " WHERE bVisible_fl ORDER BY lOrder",
                             RecordsetType::Snapshot);
        EXPECT_EQ(rows->RecordCount(), Count(db, "SELECT COUNT(*) FROM " + table));
        EXPECT_GT(rows->RecordCount(), 20) << table.toStdString();
        std::map<qint64, qint64> orderOf;
        for (; !rows->Eof(); rows->MoveNext()) {
            const qint64 id = rows->Value("lLVC_id").toLongLong();
            const std::string what = table.toStdString() + " " + std::to_string(id);
            EXPECT_TRUE(orderOf.emplace(id, rows->Value("lOrder").toLongLong()).second) << what;
            EXPECT_EQ(Text(rows->Value("sView_id")), "ID_Runs") << what;
            catalogue->FindFirst(QStringLiteral("lLVC_id = %1").arg(id));
            ASSERT_FALSE(catalogue->NoMatch()) << what;
            EXPECT_EQ(Text(rows->Value("sColumnHeader")), Text(catalogue->Value("sColumnHeader")))
                << what;
            EXPECT_NE(Text(catalogue->Value("sFieldName")), "lRun_id") << what;
        }
        for (int i = 0; i < 6; ++i) {
            EXPECT_EQ(orderOf[211 + i], 911 + i) << table.toStdString();
        }
        const bool eighth = table == "tbl18MileView";
        const int segmentBase = table == "tblProView" ? 142 : eighth ? 122 : 152;
        for (int i = 0; i < (eighth ? 2 : 4); ++i) {
            EXPECT_EQ(orderOf[201 + i], segmentBase + 2 * i) << table.toStdString();
        }
        if (eighth) {
            EXPECT_EQ(orderOf.count(190), 0u);
            EXPECT_EQ(orderOf.count(189), 0u);
            EXPECT_EQ(orderOf.count(203), 0u);
        }
    }

    // A custom view, made the way the view window makes one, reads like a shipped one.
    db.Execute(
        "SELECT lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl INTO tblCustomView1 FROM "
        "tblListViewColumns WHERE lLVC_id = 70 OR lLVC_id = 190");
    const auto custom = db.TableDefinition("tblCustomView1");
    const auto shipped = db.TableDefinition("tbl14MileView");
    ASSERT_TRUE(custom && shipped);
    ASSERT_EQ(custom->fields.size(), shipped->fields.size());
    for (size_t i = 0; i < custom->fields.size(); ++i) {
        EXPECT_EQ(custom->fields[i].name, shipped->fields[i].name);
        EXPECT_EQ(custom->fields[i].type, shipped->fields[i].type) << i;
    }
}

TEST(Template, CarSetupKeepsCopiesOfRuns) {
    TempLogbook book;
    Database& db = book.db();
    QStringList expected = FieldNames(db, "tblRuns");
    expected << "sSetup_cat"
             << "bEighthNotQuarter";
    EXPECT_EQ(FieldNames(db, "tblCarSetup"), expected);

    db.Execute(
        "INSERT INTO tblRuns (lEvent_id, lCar_id, lRun_num, dtRun_dt, i14Mile_et, "
        "iDensityAlt_val, sThrottleStop1_val, Custom6) "
        "VALUES (1, 1, 1, #07/04/2003#, 10.512, 2150, '1.25', 'last column')");
    const qint64 run = db.LastInsertRowId();
    EXPECT_GT(run, 0);
    // One run may be kept as a density-altitude and a throttle-stop set-up at once.
    for (const char* category : {"DA", "TS"}) {
        EXPECT_EQ(db.Execute(QStringLiteral("INSERT INTO tblCarSetup SELECT * FROM tblRuns "
                                            "WHERE lRun_id = %1")
                                 .arg(run)),
                  1);
        EXPECT_EQ(db.Execute(QStringLiteral("UPDATE tblCarSetup SET sSetup_cat = '%1', "
                                            "bEighthNotQuarter = 0 WHERE lRun_id = %2 AND "
                                            "sSetup_cat IS Null")
                                 .arg(QString::fromLatin1(category))
                                 .arg(run)),
                  1);
    }
    auto rs = db.OpenRecordset(
        QStringLiteral("SELECT * FROM tblCarSetup WHERE lCar_id = 1 AND sSetup_cat = 'TS' AND "
                       "bEighthNotQuarter = 0 ORDER BY sSetup_cat, dtRun_dt, dtRun_tm"),
        RecordsetType::Snapshot);
    ASSERT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->Value("lRun_id").toLongLong(), run);
    EXPECT_DOUBLE_EQ(rs->Value("i14Mile_et").toDouble(), 10.512);
    EXPECT_DOUBLE_EQ(rs->Value("iDensityAlt_val").toDouble(), 2150);
    EXPECT_EQ(Text(rs->Value("sThrottleStop1_val")), "1.25");
    EXPECT_EQ(Text(rs->Value("Custom6")), "last column");
    EXPECT_EQ(rs->Value("dtRun_dt").toDateTime().date(), QDate(2003, 7, 4));
}

TEST(Template, UpgradeFindsEveryTraceAndChangesNothing) {
    TempLogbook book;
    Database& db = book.db();
    // The guards of the ladder's steps, each of which must see the template as current.
    EXPECT_TRUE(db.TableExists("tblCarSetup"));
    EXPECT_GT(Count(db,
                    "SELECT COUNT(lLVC_Id) As Records FROM tblListViewColumns WHERE sFieldName = "
                    "'i60to330Foot_et'"),
              0);
    EXPECT_GT(Count(db, "SELECT COUNT(*) as Records FROM tblThrottleStopView WHERE lLVC_id = 181"),
              0);
    EXPECT_TRUE(db.FieldExists("tblCars", "bDefault_fl"));
    EXPECT_GT(Count(db,
                    "SELECT COUNT(lLVC_Id) As Records FROM tblListViewColumns WHERE sView_Id = "
                    "'ID_CarSetup'"),
              0);
    auto engine =
        db.OpenRecordset("SELECT * FROM tblListViewColumns WHERE sFieldName = 'sEngine_desc'",
                         RecordsetType::Snapshot);
    ASSERT_FALSE(engine->Eof());
    EXPECT_TRUE(Flag(engine->Value("bVisible_fl")));
    for (const char* column : {"sBlowerNozzle8_val", "i1000to1320Foot_et"}) {
        EXPECT_TRUE(db.FieldExists("tblRuns", QString::fromLatin1(column))) << column;
        EXPECT_TRUE(db.FieldExists("tblCarSetup", QString::fromLatin1(column))) << column;
    }
    for (const char* column : {"sBaseADR", "lCarryForward_info", "iCarWeight_val"}) {
        EXPECT_TRUE(db.FieldExists("tblCars", QString::fromLatin1(column))) << column;
    }
}

TEST(Template, StarterRows) {
    TempLogbook book;
    Database& db = book.db();

    auto car = db.OpenRecordset("SELECT * FROM tblCars WHERE bDefault_fl", RecordsetType::Snapshot);
    ASSERT_EQ(car->RecordCount(), 1);
    EXPECT_EQ(car->Value("lCar_id").toLongLong(), 1);
    EXPECT_FALSE(Text(car->Value("sCar_nm")).isEmpty());
    EXPECT_FALSE(Text(car->Value("sCar_num")).isEmpty());
    EXPECT_TRUE(QStringList({"CARB", "PRECCARB", "FI"}).contains(Text(car->Value("sCarCarb_typ"))));
    EXPECT_EQ(Text(car->Value("sCarFuel_typ")), "GAS");
    EXPECT_TRUE(Flag(car->Value("lCarryForward_info")));

    EXPECT_EQ(Count(db,
                    "SELECT COUNT(*) FROM tblEvents, tblTracks WHERE tblEvents.lEvent_id = 1 "
                    "AND tblTracks.lTrack_id = tblEvents.lTrack_id"),
              1);
    for (const char* table : {"tblRunType", "tblEventClass", "tblExpenseCategory", "tblOpponent"}) {
        EXPECT_GT(
            Count(db, QStringLiteral("SELECT COUNT(*) FROM %1").arg(QString::fromLatin1(table))), 2)
            << table;
    }

    const struct {
        int id;
        bool completed;
        int made;
        const char* notes;
    } samples[] = {{1, false, 21, "Example Upcoming or Due Maintenance A"},
                   {2, false, 20, "Example Upcoming or Due Maintenance B"},
                   {3, false, 18, "Example Upcoming or Due Maintenance C"},
                   {4, false, 0, "Example Future Maintenance"},
                   {5, true, 19, "Example Completed Maintenance"}};
    auto rs = db.OpenRecordset("SELECT * FROM tblMaintenance ORDER BY lMaintenance_id",
                               RecordsetType::Snapshot);
    ASSERT_EQ(rs->RecordCount(), 5);
    for (const auto& s : samples) {
        ASSERT_FALSE(rs->Eof());
        EXPECT_EQ(rs->Value("lMaintenance_id").toLongLong(), s.id);
        EXPECT_EQ(rs->Value("lCar_id").toDouble(), 1.0);
        EXPECT_EQ(Flag(rs->Value("bCompleted")), s.completed) << s.id;
        EXPECT_EQ(rs->Value("iScheduledRuns").toDouble(), 20.0) << s.id;
        EXPECT_EQ(rs->Value("iRunsMade").toDouble(), s.made) << s.id;
        EXPECT_EQ(Text(rs->Value("sMaintenanceNotes_tx")), s.notes);
        if (s.completed) {
            EXPECT_EQ(rs->Value("dtMaintenance_dt").toDateTime().date(), QDate(2003, 7, 4));
        } else {
            EXPECT_FALSE(rs->Value("dtMaintenance_dt").isValid()) << s.id;
        }
        rs->MoveNext();
    }

    // New rows get keys after the starter rows.
    db.Execute("INSERT INTO tblRunType (sRunType_nm) VALUES ('Grudge')");
    EXPECT_GT(db.LastInsertRowId(), 4);
}

}  // namespace
}  // namespace slipbook::store
