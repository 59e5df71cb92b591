// Older logbooks made from the template by taking out what each step adds, with a racer's rows in
// them, brought up by the ladder and compared with the template: shape, catalogue, views, and
// every row the racer kept.

#include "store/upgrade.h"
#include "store/dberror.h"
#include "support/logbook.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace slipbook;
using namespace slipbook::store;

namespace {

enum class Level {
    Oldest,        // before the first step
    NoSegments,    // set-up runs, no segment times, custom fields or maintenance
    HoldingTable,  // as NoSegments, with the base values in their old holding table
    NoOwnTables,   // the current level before the import layouts and the weather log
};

QString Rows(Database& db, const QString& sql) {
    QStringList out;
    sqlite3_stmt* stmt = nullptr;
    // A table that is not there yet reads as the engine's words for that.
    if (sqlite3_prepare_v2(db.handle(), sql.toUtf8().constData(), -1, &stmt, nullptr) !=
        SQLITE_OK) {
        return QString::fromUtf8(sqlite3_errmsg(db.handle()));
    }
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        QStringList cells;
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
            cells << (text != nullptr ? QString::fromUtf8(text) : QStringLiteral("<null>"));
        }
        out << cells.join(u'|');
    }
    sqlite3_finalize(stmt);
    return out.join(u'\n');
}

// Tables with their columns in order and declared types, and the indexes.
QString Shape(Database& db) {
    return Rows(db, QStringLiteral("SELECT m.name, p.cid, p.name, p.type FROM sqlite_master m, "
                                   "pragma_table_info(m.name) p WHERE m.type = 'table' AND m.name "
                                   "NOT LIKE 'sqlite%' ORDER BY m.name COLLATE NOCASE, p.cid")) +
           u'\n' +
           Rows(db, QStringLiteral("SELECT name, tbl_name FROM sqlite_master WHERE type = "
                                   "'index' AND sql IS NOT NULL ORDER BY name"));
}

// What the program ships in its lists: the catalogue, the four views, the maintenance examples.
QString ShippedRows(Database& db) {
    QString out;
    for (const char* sql : {"SELECT * FROM tblListViewColumns ORDER BY lLVC_id",
                            "SELECT * FROM tbl14MileView ORDER BY lLVC_id",
                            "SELECT * FROM tbl18MileView ORDER BY lLVC_id",
                            "SELECT * FROM tblThrottleStopView ORDER BY lLVC_id",
                            "SELECT * FROM tblProView ORDER BY lLVC_id",
                            "SELECT * FROM tblMaintenance ORDER BY lMaintenance_id"}) {
        out += Rows(db, QString::fromLatin1(sql)) + u'\n';
    }
    return out;
}

const QStringList kSegments = {"i60to330Foot_et", "i330to660Foot_et", "i660to1000Foot_et",
                               "i1000to1320Foot_et"};
const QStringList kCustom = {"Custom1", "Custom2", "Custom3", "Custom4", "Custom5", "Custom6"};
const QStringList kBase = {"sBaseADR",        "sBaseJet",   "sBaseJetDiameter",
                           "sBaseBypassPill", "sBaseBoost", "sNozzleArea"};

void DropColumns(Database& db, const QString& table, const QStringList& columns) {
    for (const QString& c : columns) {
        db.ExecRaw(QStringLiteral("ALTER TABLE %1 DROP COLUMN %2").arg(table, c));
    }
}

void DeleteListRows(Database& db, const QString& ids) {
    for (const char* table : {"tblListViewColumns", "tbl14MileView", "tbl18MileView",
                              "tblThrottleStopView", "tblProView"}) {
        db.ExecRaw(QStringLiteral("DELETE FROM %1 WHERE lLVC_id IN (%2)")
                       .arg(QString::fromLatin1(table), ids));
    }
}

// The template taken back to an older level, as the steps' traces say it was.
void TakeBack(Database& db, Level level) {
    db.ExecRaw(QStringLiteral("DROP TABLE tblImportLayout"));
    db.ExecRaw(QStringLiteral("DROP TABLE tblWeatherLog"));
    if (level == Level::NoOwnTables) {
        return;
    }
    DropColumns(db, QStringLiteral("tblRuns"), kSegments + kCustom + kBase);
    DropColumns(db, QStringLiteral("tblCarSetup"),
                kSegments + kCustom + kBase + QStringList{QStringLiteral("bEighthNotQuarter")});
    DropColumns(db, QStringLiteral("tblCars"), kBase + kCustom);
    db.ExecRaw(QStringLiteral("DROP TABLE tblMaintenance"));
    DeleteListRows(db, QStringLiteral("201,202,203,204,211,212,213,214,215,216"));
    if (level == Level::HoldingTable) {
        db.ExecRaw(QStringLiteral(
            "CREATE TABLE tblCarBase (lCar_id INTEGER, sBaseADR VARCHAR(8), sBaseJet VARCHAR(8), "
            "sBaseJetDiameter VARCHAR(8), sBaseBypassPill VARCHAR(8), sBaseBoost VARCHAR(8), "
            "sNozzleArea VARCHAR(8))"));
        db.ExecRaw(QStringLiteral(
            "INSERT INTO tblCarBase VALUES (2, '1.2', 'O''Neil', '0.09', '31', '14', '2.5'), "
            "(3, NULL, '88', NULL, NULL, NULL, '1.5')"));
    }
    if (level != Level::Oldest) {
        return;
    }
    db.ExecRaw(QStringLiteral("DROP TABLE tblCarSetup"));
    DropColumns(db, QStringLiteral("tblRuns"), {"sBlowerNozzle7_val", "sBlowerNozzle8_val"});
    DropColumns(db, QStringLiteral("tblCars"),
                {"lCarryForward_info", "sBlowerNozzle7_val", "sBlowerNozzle8_val", "iCarWeight_val",
                 "bDefault_fl"});
    DeleteListRows(db, QStringLiteral("8675309"));
    // The throttle-stop view's ids before their renumbering.
    db.ExecRaw(
        QStringLiteral("UPDATE tblThrottleStopView SET lLVC_id = lLVC_id + 10000 WHERE "
                       "lLVC_id IN (181,195,196,197,198)"));
    for (const auto& [from, to] :
         {std::pair{10181, 192}, {10195, 193}, {10196, 194}, {10197, 195}, {10198, 196}}) {
        db.ExecRaw(QStringLiteral("UPDATE tblThrottleStopView SET lLVC_id = %1 WHERE lLVC_id = %2")
                       .arg(to)
                       .arg(from));
    }
    db.ExecRaw(
        QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = NULL WHERE lLVC_id "
                       "IN (76,185,181,195,180,184)"));
    db.ExecRaw(
        QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = '###,##0.00' WHERE "
                       "lLVC_id = 186"));
    db.ExecRaw(QStringLiteral(
        "UPDATE tblListViewColumns SET bVisible_fl = 0 WHERE sFieldName IN ('sEngine_desc', "
        "'sJet1_val')"));
}

// The racer's own rows: cars with and without nozzles, runs, an expense.
void RacerRows(Database& db) {
    db.ExecRaw(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sBlowerNozzle1_val) VALUES "
        "(2, 'O''Hara''s Rail', '22', '0.5'), (3, 'Blue Bird', '7', NULL)"));
    db.ExecRaw(QStringLiteral(
        "INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, i14Mile_et, sJet1_val, "
        "sRunNotes_tx) VALUES (500, 2, 1, 3, 9.876, '88', 'It''s \"fast\"'), (501, 3, 1, 1, "
        "10.5, NULL, NULL)"));
    db.ExecRaw(QStringLiteral("INSERT INTO tblExpenses (lCar_id, cExpense_amt) VALUES (2, 12.5)"));
    db.ExecRaw(QStringLiteral("DELETE FROM tblRuns WHERE lRun_id = 501"));
}

QString RacerRunsAndExpenses(Database& db) {
    return Rows(db, QStringLiteral("SELECT lRun_id, lCar_id, lEvent_id, lRun_num, i14Mile_et, "
                                   "sJet1_val, sRunNotes_tx FROM tblRuns ORDER BY lRun_id")) +
           Rows(db, QStringLiteral("SELECT * FROM tblExpenses"));
}

}  // namespace

TEST(Ladder, EveryOlderLevelComesUpToTheTemplateAndKeepsTheRacersRows) {
    test::TempLogbook current;
    const QString shape = Shape(current.db());
    const QString shipped = ShippedRows(current.db());
    for (const Level level :
         {Level::Oldest, Level::NoSegments, Level::HoldingTable, Level::NoOwnTables}) {
        SCOPED_TRACE(static_cast<int>(level));
        test::TempLogbook lb;
        Database& db = lb.db();
        RacerRows(db);
        const QString racer = RacerRunsAndExpenses(db);
        TakeBack(db, level);
        ASSERT_TRUE(UpgradeWouldChange(db, UpgradeSteps()));

        const QString backup = UpgradeLadder(db, QDateTime(QDate(2026, 11, 23), QTime(9, 30)));
        ASSERT_FALSE(backup.isEmpty());
        EXPECT_TRUE(QFileInfo::exists(backup));
        EXPECT_EQ(QFileInfo(backup).dir(), QFileInfo(lb.path()).dir());
        EXPECT_EQ(QFile::permissions(backup), QFile::permissions(lb.path()));
        EXPECT_EQ(Shape(db), shape);
        EXPECT_EQ(ShippedRows(db), shipped);
        EXPECT_EQ(RacerRunsAndExpenses(db), racer);
        // The pages of the tables rebuilt are handed back: no more than a few stay free.
        EXPECT_LE(Rows(db, QStringLiteral("PRAGMA freelist_count")).toInt() * 4,
                  Rows(db, QStringLiteral("PRAGMA page_count")).toInt());
        // The key counter survives the rebuild: a deleted run's key is never given again.
        db.Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id) VALUES (2)"));
        EXPECT_GT(db.LastInsertRowId(), 501);
        EXPECT_FALSE(UpgradeWouldChange(db, UpgradeSteps()));

        const QString cars =
            Rows(db, QStringLiteral("SELECT lCar_id, lCarryForward_info, iCarWeight_val, "
                                    "bDefault_fl, sBaseADR, sBaseJet, sNozzleArea, "
                                    "sBlowerNozzle1_val FROM tblCars ORDER BY lCar_id"));
        switch (level) {
            case Level::Oldest:
                // The new car columns take the steps' values; the holding table made on the way
                // held no base values, which arrive as empty texts.
                EXPECT_EQ(cars, QStringLiteral("1|-1|0|0||||<null>\n"
                                               "2|-1|0|0||||0.5\n"
                                               "3|-1|0|0||||<null>"));
                break;
            case Level::NoSegments:
                EXPECT_EQ(cars, QStringLiteral("1|-1|3000|-1||||<null>\n"
                                               "2|<null>|<null>|<null>||||0.5\n"
                                               "3|<null>|<null>|<null>||||<null>"));
                break;
            case Level::HoldingTable:
                // Moved as texts, a missing one as the empty text; a car with no nozzle gets the
                // one its area makes: 2 * sqrt(1.5 / pi) = 1.382.
                EXPECT_EQ(cars, QStringLiteral("1|-1|3000|-1|<null>|<null>|<null>|<null>\n"
                                               "2|<null>|<null>|<null>|1.2|O'Neil|2.5|0.5\n"
                                               "3|<null>|<null>|<null>||88|1.5|1.382"));
                break;
            case Level::NoOwnTables:
                // Only the two new tables are made; the cars are not touched.
                EXPECT_EQ(cars,
                          QStringLiteral("1|-1|3000|-1|<null>|<null>|<null>|<null>\n"
                                         "2|<null>|<null>|<null>|<null>|<null>|<null>|0.5\n"
                                         "3|<null>|<null>|<null>|<null>|<null>|<null>|<null>"));
                break;
        }
    }
}

TEST(Ladder, ACurrentLogbookIsOnlyReadAndAFailingStepLeavesItAsItWas) {
    {
        test::TempLogbook lb;
        Database& db = lb.db();
        const int before = sqlite3_total_changes(db.handle());
        EXPECT_EQ(UpgradeLadder(db, QDateTime::currentDateTime()), QString());
        EXPECT_EQ(sqlite3_total_changes(db.handle()), before);
        EXPECT_EQ(QDir(QFileInfo(lb.path()).path())
                      .entryList({QStringLiteral("*.db")}, QDir::Files)
                      .size(),
                  1);
    }

    test::TempLogbook lb;
    Database& db = lb.db();
    RacerRows(db);
    TakeBack(db, Level::Oldest);
    const QString before = Shape(db) + ShippedRows(db) + RacerRunsAndExpenses(db);
    // The seventh step stops half-way, at its sixth catalogue row.
    db.ExecRaw(QStringLiteral(
        "CREATE TRIGGER tgStop BEFORE INSERT ON tblListViewColumns WHEN NEW.lLVC_id = 212 BEGIN "
        "SELECT RAISE(ABORT, 'the disk said no'); END"));
    QString message;
    try {
        UpgradeLadder(db, QDateTime(QDate(2026, 11, 23), QTime(9, 30)));
    } catch (const DbError& e) {
        message = e.description();
    }
    EXPECT_TRUE(message.contains(QStringLiteral("step 7"))) << message.toStdString();
    EXPECT_TRUE(message.contains(QStringLiteral("the disk said no"))) << message.toStdString();
    // Steps 1 to 6 stay done; nothing of step 7 is left.
    EXPECT_TRUE(db.TableExists(QStringLiteral("tblCarSetup")));
    EXPECT_FALSE(db.TableExists(QStringLiteral("tblMaintenance")));
    EXPECT_FALSE(db.FieldExists(QStringLiteral("tblRuns"), QStringLiteral("Custom1")));
    EXPECT_EQ(Rows(db, QStringLiteral("SELECT COUNT(*) FROM tblListViewColumns WHERE lLVC_id "
                                      "BETWEEN 201 AND 216")),
              QStringLiteral("0"));
    // The copy from before the update is the logbook as it was.
    const QString backupPath =
        QFileInfo(lb.path()).dir().filePath(QStringLiteral("Slipbook-2026-11-23-093000.db"));
    ASSERT_TRUE(message.contains(QDir::toNativeSeparators(backupPath))) << message.toStdString();
    Database backup;
    backup.Open(backupPath);
    EXPECT_EQ(Shape(backup) + ShippedRows(backup) + RacerRunsAndExpenses(backup), before);

    // A logbook short of a part no step adds is refused as it is, with no copy made.
    {
        test::TempLogbook short_;
        short_.db().ExecRaw(QStringLiteral("DROP TABLE tblMaintenance"));
        const QString shape = Shape(short_.db());
        try {
            UpgradeLadder(short_.db(), QDateTime::currentDateTime());
            ADD_FAILURE() << "a logbook without its maintenance table was taken";
        } catch (const DbError& e) {
            EXPECT_TRUE(e.description().contains(QStringLiteral("it has no table tblMaintenance")))
                << e.description().toStdString();
        }
        EXPECT_EQ(Shape(short_.db()), shape);
        EXPECT_EQ(QDir(QFileInfo(short_.path()).path())
                      .entryList({QStringLiteral("*.db")}, QDir::Files)
                      .size(),
                  1);
    }

    // Put right, the next start finishes the climb.
    db.ExecRaw(QStringLiteral("DROP TRIGGER tgStop"));
    EXPECT_FALSE(UpgradeLadder(db, QDateTime(QDate(2026, 11, 24), QTime(9, 30))).isEmpty());
    EXPECT_TRUE(db.TableExists(QStringLiteral("tblMaintenance")));
    EXPECT_FALSE(UpgradeWouldChange(db, UpgradeSteps()));
}
