#include "store/database.h"
#include "store/access.h"
#include "store/currency.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

using namespace slipbook;
using namespace slipbook::store;

namespace {

QVariant Scalar(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    return rs->Eof() ? QVariant() : rs->Value(0);
}

qint64 AddRun(Database& db, int car, int event, const QString& date, const QString& time) {
    db.Execute(
        QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, lRun_num, dtRun_dt, dtRun_tm) "
                       "VALUES (%1, %2, 1, #%3#, #%4#)")
            .arg(car)
            .arg(event)
            .arg(date, time));
    return db.LastInsertRowId();
}

}  // namespace

// The statement shapes the windows send, run against the real template.
TEST(Database, DialectStatementsActOnTheTemplate) {
    test::TempLogbook lb;
    Database& db = lb.db();

    // Counts come back under their alias; names ignore case.
    EXPECT_GE(Scalar(db, QStringLiteral("SELECT COUNT(lLVC_Id) As Records FROM tblListViewColumns "
                                        "WHERE sFieldName = 'i60to330Foot_et'"))
                  .toInt(),
              1);
    auto rs = db.OpenRecordset(QStringLiteral("SELECT COUNT(*) as Records FROM tblcars"),
                               RecordsetType::Snapshot);
    EXPECT_EQ(rs->Field(0).name, QStringLiteral("Records"));

    // Text compares without case; an apostrophe doubled in a literal.
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = 'Joe''s Dragster' WHERE lCar_id = 1"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT lCar_id FROM tblCars WHERE sCar_nm = 'JOE''S DRAGSTER'"))
            .toInt(),
        1);
}

TEST(Database, DefinitionStatementsKeepTypesAndCollation) {
    test::TempLogbook lb;
    Database& db = lb.db();

    db.Execute(QStringLiteral("SELECT * INTO tblCopy FROM tblRuns WHERE False"));
    auto copy = db.TableDefinition(QStringLiteral("tblcopy"));
    auto runs = db.TableDefinition(QStringLiteral("tblRuns"));
    ASSERT_TRUE(copy && runs);
    ASSERT_EQ(copy->fields.size(), runs->fields.size());
    for (size_t i = 0; i < runs->fields.size(); ++i) {
        EXPECT_EQ(copy->fields[i].type, runs->fields[i].type) << runs->fields[i].name.toStdString();
        EXPECT_FALSE(copy->fields[i].primaryKey);
    }
    // The copied id is a plain number, so the same id may stand twice.
    db.Execute(
        QStringLiteral("INSERT INTO tblCopy (lRun_id, sEngine_desc) VALUES (7, 'Big Block')"));
    db.Execute(QStringLiteral("INSERT INTO tblCopy (lRun_id, sEngine_desc) VALUES (7, 'other')"));
    EXPECT_EQ(Scalar(db, QStringLiteral(
                             "SELECT COUNT(*) AS n FROM tblCopy WHERE sEngine_desc = 'BIG BLOCK'"))
                  .toInt(),
              1);

    db.Execute(QStringLiteral(
        "CREATE TABLE tblThing (lThing_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY)"));
    db.Execute(QStringLiteral("ALTER TABLE tblThing ADD COLUMN sName Text"));
    db.Execute(QStringLiteral("ALTER TABLE tblThing ADD COLUMN bDone YesNo"));
    EXPECT_TRUE(db.FieldExists(QStringLiteral("TBLTHING"), QStringLiteral("sname")));
    auto thing = db.TableDefinition(QStringLiteral("tblThing"));
    EXPECT_EQ(thing->field(QStringLiteral("sName"))->type, fieldtype::Text);
    EXPECT_EQ(thing->field(QStringLiteral("bDone"))->type, fieldtype::Boolean);
    db.Execute(QStringLiteral("DROP TABLE tblThing"));
    EXPECT_FALSE(db.TableExists(QStringLiteral("tblThing")));
}

TEST(Database, RowSetsMoveFindAndEdit) {
    test::TempLogbook lb;
    Database& db = lb.db();

    auto empty = db.OpenRecordset(QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = -5"));
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->Eof());
    EXPECT_LT(empty->AbsolutePosition(), 0);
    EXPECT_THROW(empty->Value(0), DbError);

    // Finds go in the set's own order and compare text without case.
    auto cat = db.OpenRecordset(QStringLiteral("SELECT * FROM tblListViewColumns ORDER BY lOrder"),
                                RecordsetType::Snapshot);
    cat->FindFirst(QStringLiteral("sFieldName = 'custom1'"));
    ASSERT_FALSE(cat->NoMatch());
    EXPECT_EQ(cat->Value(QStringLiteral("lLVC_id")).toInt(), 211);
    const Bookmark mark = cat->GetBookmark();
    cat->FindFirst(QStringLiteral("lLVC_id = 123456"));
    EXPECT_TRUE(cat->NoMatch());
    EXPECT_EQ(cat->GetBookmark(), mark);
    cat->MoveFirst();
    cat->SetBookmark(mark);
    EXPECT_EQ(cat->Value(QStringLiteral("sFieldName")).toString(), QStringLiteral("Custom1"));
    EXPECT_THROW(cat->Edit(), DbError);

    // Add a row, go to it by MoveLast, with its new key.
    auto types = db.OpenRecordset(QStringLiteral("SELECT * FROM tblRunType"));
    const int before = types->RecordCount();
    EXPECT_THROW(types->SetValue(QStringLiteral("sRunType_nm"), QStringLiteral("x")), DbError);
    types->AddNew();
    types->SetValue(QStringLiteral("sRunType_nm"), QStringLiteral("Qualifying \"Q1\" ' o"));
    types->Update();
    types->MoveLast();
    EXPECT_EQ(types->RecordCount(), before + 1);
    const qint64 id = types->Value(QStringLiteral("lRunType_id")).toLongLong();
    EXPECT_GT(id, 0);
    EXPECT_EQ(
        Scalar(db,
               QStringLiteral("SELECT sRunType_nm FROM tblRunType WHERE lRunType_id = %1").arg(id))
            .toString(),
        QStringLiteral("Qualifying \"Q1\" ' o"));

    // Edit writes through by key; CancelUpdate leaves the row alone.
    types->Edit();
    types->SetValue(QStringLiteral("sRunType_nm"), QStringLiteral("Final"));
    types->CancelUpdate();
    EXPECT_EQ(types->Value(QStringLiteral("sRunType_nm")).toString(),
              QStringLiteral("Qualifying \"Q1\" ' o"));
    types->Edit();
    types->SetValue(QStringLiteral("sRunType_nm"), QStringLiteral("Final"));
    types->Update();
    EXPECT_EQ(
        Scalar(db,
               QStringLiteral("SELECT sRunType_nm FROM tblRunType WHERE lRunType_id = %1").arg(id))
            .toString(),
        QStringLiteral("Final"));

    // Types follow the column: empty text into a number is Null, a date text is a date, money
    // exact.
    auto events = db.OpenRecordset(QStringLiteral("SELECT * FROM tblEvents"));
    events->AddNew();
    events->SetValue(QStringLiteral("sEvent_nm"), QStringLiteral("Summer Nationals"));
    events->SetValue(QStringLiteral("lTrack_id"), QStringLiteral(""));
    events->SetValue(QStringLiteral("dtEventStart_dt"), QStringLiteral("07/04/2003"));
    events->SetValue(QStringLiteral("cPurse_amt"), QStringLiteral("1500.10"));
    events->Update();
    events->MoveLast();
    EXPECT_FALSE(events->Value(QStringLiteral("lTrack_id")).isValid());
    EXPECT_EQ(events->Value(QStringLiteral("dtEventStart_dt")).toDateTime().date(),
              QDate(2003, 7, 4));
    EXPECT_EQ(events->Value(QStringLiteral("cPurse_amt")).value<Currency>().units, 15001000);
    events->Edit();
    events->SetValue(QStringLiteral("lTrack_id"), QStringLiteral("abc"));
    EXPECT_THROW(events->Update(), DbError);
}

TEST(Database, SaveIsAllOrNothing) {
    test::TempLogbook lb;
    Database& db = lb.db();
    const int runs = Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt();
    try {
        Database::Transaction tx(db);
        AddRun(db, 1, 1, QStringLiteral("07/04/2003"), QStringLiteral("10:30 AM"));
        db.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = 'changed' WHERE lCar_id = 1"));
        db.Execute(QStringLiteral("UPDATE tblNoSuchTable SET x = 1"));
        tx.Commit();
        FAIL() << "the third statement should fail";
    } catch (const DbError& e) {
        EXPECT_EQ(e.number(), err::NoSuchTable);
    }
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), runs);
    EXPECT_NE(
        Scalar(db, QStringLiteral("SELECT sCar_nm FROM tblCars WHERE lCar_id = 1")).toString(),
        QStringLiteral("changed"));

    // Money sums exactly.
    Currency sum;
    for (const char* amount : {"0.1", "0.2", "1234.5678"}) {
        db.Execute(QStringLiteral("INSERT INTO tblExpenses (cExpense_amt, lCar_id) VALUES (%1, 1)")
                       .arg(QString::fromLatin1(amount)));
    }
    auto rs = db.OpenRecordset(QStringLiteral("SELECT cExpense_amt FROM tblExpenses"),
                               RecordsetType::Snapshot);
    while (!rs->Eof()) {
        sum = sum + rs->Value(0).value<Currency>();
        rs->MoveNext();
    }
    EXPECT_EQ(sum.toText(), QStringLiteral("1234.8678"));
}

TEST(Database, OpenRefusesWhatIsNoLogbookAndASecondCopy) {
    QTemporaryDir dir;
    const QString junk = dir.filePath(QStringLiteral("junk.db"));
    QFile f(junk);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    const QByteArray bytes(8192, 'x');
    f.write(bytes);
    f.close();
    Database db;
    try {
        db.Open(junk);
        FAIL();
    } catch (const DbError& e) {
        EXPECT_EQ(e.number(), err::CannotOpen);
        EXPECT_TRUE(e.description().contains(QStringLiteral("not a Slipbook logbook")));
    }
    QFile g(junk);
    ASSERT_TRUE(g.open(QIODevice::ReadOnly));
    EXPECT_EQ(g.readAll(), bytes);

    // A database of something else is no logbook either, and stays as it was.
    const QString other = dir.filePath(QStringLiteral("other.db"));
    {
        Database raw;
        raw.OpenRaw(other, true);
        raw.ExecRaw(QStringLiteral("CREATE TABLE t (x)"));
    }
    const QByteArray otherBefore = [&] {
        QFile h(other);
        h.open(QIODevice::ReadOnly);
        return h.readAll();
    }();
    EXPECT_THROW(db.Open(other), DbError);
    QFile h(other);
    h.open(QIODevice::ReadOnly);
    EXPECT_EQ(h.readAll(), otherBefore);

    test::TempLogbook lb;
    Database second;
    try {
        second.Open(lb.path());
        FAIL();
    } catch (const DbError& e) {
        EXPECT_EQ(e.number(), err::InUse);
    }
    EXPECT_EQ(Scalar(lb.db(), QStringLiteral("SELECT COUNT(*) AS n FROM tblCars")).toInt(), 1);
}

TEST(Database, AccessHelpersAndTheirMessages) {
    test::TempLogbook lb;
    Database& db = lb.db();
    test::ScriptedMessages box;

    EXPECT_FALSE(TableDelCheck(db, QString(), QStringLiteral("lCar_id = 1"), box));
    ASSERT_EQ(box.shown.size(), 1u);
    EXPECT_EQ(box.last().text, QStringLiteral("TableDelCheck() Parameter Error"));
    EXPECT_EQ(box.last().title, QStringLiteral("TableDelCheck()"));
    EXPECT_EQ(box.last().icon, MsgIcon::Exclamation);

    EXPECT_FALSE(TableDelCheck(db, QStringLiteral("SELECT lTrack_id from tblEvents"),
                               QStringLiteral("lTrack_id = 1"), box));
    EXPECT_TRUE(TableDelCheck(db, QStringLiteral("SELECT lTrack_id from tblEvents"),
                              QStringLiteral("lTrack_id = 999"), box));

    EXPECT_EQ(TableLookup(db, QStringLiteral("TBLTRACKS"), QStringLiteral("ltrack_id"),
                          QStringLiteral("sTrack_nm"), 1, box)
                  .toString(),
              Scalar(db, QStringLiteral("SELECT sTrack_nm FROM tblTracks WHERE lTrack_id = 1"))
                  .toString());
    EXPECT_EQ(TableLookup(db, QStringLiteral("tblTracks"), QStringLiteral("lTrack_id"),
                          QStringLiteral("sTrack_nm"), 999, box),
              QVariant(QString()));
    EXPECT_EQ(TableLookup(db, QStringLiteral("tblViews"), QStringLiteral("sTable_nm"),
                          QStringLiteral("lView_id"), QStringLiteral("TBL14MILEVIEW"), box)
                  .toInt(),
              Scalar(db, QStringLiteral(
                             "SELECT lView_id FROM tblViews WHERE sTable_nm = 'tbl14MileView'"))
                  .toInt());
    const size_t quiet = box.shown.size();
    EXPECT_EQ(quiet, 1u);

    TableLookup(db, QStringLiteral("tblNope"), QStringLiteral("a"), QStringLiteral("b"), 1, box);
    EXPECT_EQ(box.last().text,
              QStringLiteral("The following parameters are in error\n    strTable: tblNope"));
    EXPECT_EQ(box.last().title, QStringLiteral("TableLookup()"));
    EXPECT_EQ(box.last().icon, MsgIcon::Critical);
    TableLookup(db, QStringLiteral("tblTracks"), QStringLiteral("nope"),
                QStringLiteral("sTrack_nm"), 1, box);
    EXPECT_EQ(box.last().text,
              QStringLiteral("The following parameters are in error\n     strLook: nope\n"));
    TableLookup(db, QStringLiteral("tblTracks"), QStringLiteral("lTrack_id"),
                QStringLiteral("nope"), 1, box);
    EXPECT_EQ(box.last().text,
              QStringLiteral("The following parameters are in error\n     strFind: nope"));
    TableLookup(db, QStringLiteral("tblTracks"), QStringLiteral("lTrack_id"),
                QStringLiteral("sTrack_nm"), QVariant(), box);
    EXPECT_EQ(box.last().text,
              QStringLiteral("The following parameters are in error\nvntSearchVal: "));

    // A duplicate key is the one error a save reports in its own words.
    auto views = db.OpenRecordset(QStringLiteral("SELECT * FROM tblViews"));
    views->AddNew();
    views->SetValue(QStringLiteral("lView_id"),
                    Scalar(db, QStringLiteral("SELECT MIN(lView_id) AS m FROM tblViews")));
    try {
        views->Update();
        FAIL();
    } catch (const DbError& e) {
        IsDuplicate(e, views.get(), box);
    }
    EXPECT_EQ(box.last().text, QStringLiteral("Duplicates Existing Record, Cannot Save"));
    EXPECT_EQ(box.last().title, QStringLiteral("Duplicate Record Error"));
    EXPECT_EQ(views->Mode(), EditMode::None);

    IsDuplicate(DbError(3075, QStringLiteral("src"), QStringLiteral("what")), nullptr, box);
    EXPECT_EQ(box.last().text, QStringLiteral("Error # 3075\nSource   src\n\nwhat"));
    EXPECT_EQ(box.last().title, QStringLiteral("Error"));
}

TEST(Database, QueryReadsForwardWithConvertedValues) {
    test::TempLogbook lb;
    Database& db = lb.db();
    AddRun(db, 1, 1, QStringLiteral("07/04/2003"), QStringLiteral("10:30 AM"));
    Query q = db.OpenQuery(QStringLiteral(
        "SELECT tblRuns.* FROM tblRuns WHERE  lCar_id = 1 ORDER BY dtRun_dt, dtRun_tm"));
    ASSERT_TRUE(q.Next());
    EXPECT_EQ(q.Value(QStringLiteral("DTRUN_DT")).toDateTime().date(), QDate(2003, 7, 4));
    EXPECT_TRUE(q.IsNull(q.FieldIndex(QStringLiteral("i14Mile_et"))));
    EXPECT_EQ(q.FieldIndex(QStringLiteral("nope")), -1);
}

namespace {

// Each row of the table as SQLite holds it: the storage class and the literal of every cell.
QStringList Contents(Database& db, const QString& table) {
    QStringList rows;
    sqlite3_stmt* stmt = db.Prepare(QStringLiteral("SELECT * FROM %1 ORDER BY rowid").arg(table));
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        QStringList cells;
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
            const int type = sqlite3_column_type(stmt, i);
            cells << QString::number(type) + u':' +
                         (type == SQLITE_FLOAT
                              ? QString::number(sqlite3_column_double(stmt, i), 'g', 17)
                              : QString::fromUtf8(
                                    reinterpret_cast<const char*>(sqlite3_column_text(stmt, i))));
        }
        rows << cells.join(u'|');
    }
    sqlite3_finalize(stmt);
    return rows;
}

// The statement as written, translated and run once without the kept statements.
void RunAsWritten(Database& db, const QString& jet) {
    sqlite3_stmt* stmt = db.Prepare(db.Translate(jet).sql);
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE) {
        db.Throw(rc, QStringLiteral("Slipbook.Database"));
    }
}

QString Outcome(const std::function<void()>& run) {
    try {
        run();
        return QStringLiteral("ok");
    } catch (const DbError& e) {
        return QString::number(e.number()) + u' ' + e.description();
    }
}

}  // namespace

// The values are taken out of a statement and bound to one prepared for its shape; whatever the
// values, the rows and the errors are those of the statement as written.
TEST(Database, StatementsOfOneShapeGiveWhatTheirTextGives) {
    QTemporaryDir dir;
    Database kept;
    Database written;
    kept.OpenRaw(dir.filePath(QStringLiteral("kept.db")), true);
    written.OpenRaw(dir.filePath(QStringLiteral("written.db")), true);
    const QString table = QStringLiteral(
        "CREATE TABLE t (id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, n Number, i Integer, "
        "s Text(50), d DateTime, b YesNo, m Memo)");
    kept.Execute(table);
    written.Execute(table);

    const QStringList statements = {
        "INSERT INTO t (n, i, s, d, b, m) VALUES (1.402, 72, 'O''Neil''s', #07/04/2003#, True, "
        "\"a \"\"quote\"\"\")",
        "INSERT INTO t (n, i, s, d, b, m) VALUES (70, 3.7, '1.50', #10:30 AM#, False, '')",
        // Texts into numbers, dates and flags are converted; an empty one is Null.
        "INSERT INTO t (n, i, s, d, b, m) VALUES ('1,234.5', '', 'x', '07/05/2003', 'True', "
        "'-2.5e3')",
        "INSERT INTO t (n, i, s, d, b, m) VALUES ('-0.0', '12345678901234567890', '', '2.25', "
        "'0', Null)",
        "INSERT INTO t (n, i) VALUES (.5, 9223372036854775807)",
        "INSERT INTO t (n, i) VALUES (1e5, 00012)",
        "UPDATE t SET n = -1.5, s = 'It''s', d = #12/31/1999 11:59 PM# WHERE (id = 2)",
        "UPDATE t SET n = '-2.5e3', i = ' -12 ', b = 'False', m = x'41' WHERE id = 3",
        "UPDATE t SET n = n + 1, m = m & '-' & 7 WHERE id IN (1, 3) AND s <> 'zz'",
        "UPDATE t SET s = 'like' WHERE s LIKE 'O*' OR m LIKE '%?'",
        "UPDATE t SET b = -1 WHERE id = (SELECT MAX(id) FROM t WHERE n > 0.5)",
        // An empty text alone in a statement is still a text.
        "UPDATE t SET m = '' WHERE id = 1",
        "UPDATE t SET i = 5 WHERE d >= #01/01/2000# AND d < #1/1/2100#",
        "DELETE * FROM t WHERE n = 1e5",
        // Errors: the same number and text as the statement as written gives.
        "UPDATE t SET n = 'abc' WHERE id = 1",
        "UPDATE t SET d = #13/45/2000# WHERE id = 1",
        "UPDATE t SET n = 5 5 WHERE id = 1",
        "UPDATE t SET nope = 1 WHERE id = 1",
        "DELETE FROM t",
    };
    for (int round = 0; round < 2; ++round) {
        // The second round runs every shape from what was kept in the first.
        for (const QString& sql : statements) {
            const QString here = Outcome([&] { kept.Execute(sql); });
            const QString there = Outcome([&] { RunAsWritten(written, sql); });
            EXPECT_EQ(here, there) << sql.toStdString();
            ASSERT_EQ(Contents(kept, QStringLiteral("t")), Contents(written, QStringLiteral("t")))
                << sql.toStdString();
        }
    }

    // Reads bind the same way: a value in the WHERE of a SELECT.
    for (const QString& sql : statements.mid(0, 6)) {
        kept.Execute(sql);
    }
    for (const char* where :
         {"i = 72", "i = 00072", "s = 'O''NEIL''S'", "d = #07/04/2003#", "n > 1.4 AND n < 1.5",
          "b = True", "s IN ('x', '1.50')", "m = '-2.5e3'", "i > -1", "m = ''"}) {
        const QString sql = QStringLiteral("SELECT id FROM t WHERE ") + QLatin1String(where);
        QStringList expected;
        sqlite3_stmt* stmt = kept.Prepare(kept.Translate(sql).sql);
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            expected << QString::number(sqlite3_column_int64(stmt, 0));
        }
        sqlite3_finalize(stmt);
        for (int round = 0; round < 2; ++round) {
            Query q = kept.OpenQuery(sql);
            QStringList ids;
            while (q.Next()) {
                ids << q.Text(0);
            }
            EXPECT_EQ(ids, expected) << where;
            auto rs = kept.OpenRecordset(sql, RecordsetType::Snapshot);
            EXPECT_EQ(rs->RecordCount(), expected.size()) << where;
        }
        EXPECT_FALSE(expected.isEmpty()) << where;
    }
}

TEST(Database, KeptStatementsSurviveNestingSchemaChangesAndClosing) {
    test::TempLogbook lb;
    Database& db = lb.db();
    for (int n = 1; n <= 3; ++n) {
        AddRun(db, 1, n, QStringLiteral("07/0%1/2003").arg(n), QStringLiteral("10:30 AM"));
    }
    // The same statement open twice at once: each reads its own rows.
    const QString sql = QStringLiteral("SELECT lEvent_id FROM tblRuns WHERE lCar_id = 1");
    int pairs = 0;
    for (Query outer = db.OpenQuery(sql); outer.Next();) {
        Query inner = db.OpenQuery(sql);
        while (inner.Next()) {
            ++pairs;
        }
    }
    EXPECT_EQ(pairs, 9);

    // A new column shows in the statement run before it was there.
    const QString all = QStringLiteral("SELECT * FROM tblEvents WHERE lEvent_id = 1");
    const int columns = db.OpenQuery(all).FieldCount();
    db.Execute(QStringLiteral("ALTER TABLE tblEvents ADD COLUMN sExtra Text(10)"));
    EXPECT_EQ(db.OpenQuery(all).FieldCount(), columns + 1);
    db.Execute(QStringLiteral("UPDATE tblEvents SET sExtra = 'x' WHERE lEvent_id = 1"));
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT sExtra FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("x"));

    // A statement still open when the logbook closes is let go when its reader goes.
    {
        Query open = db.OpenQuery(sql);
        ASSERT_TRUE(open.Next());
        db.Close();
    }
    db.Open(lb.path());
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns WHERE lCar_id = 1")), 3);
}

TEST(Database, TableStampsFollowEveryWrite) {
    test::TempLogbook lb;
    Database& db = lb.db();
    const QString cars = QStringLiteral("tblCars");
    const QString events = QStringLiteral("TBLEVENTS");
    quint64 car = db.TableStamp(cars);
    quint64 event = db.TableStamp(events);
    const auto carChanged = [&] {
        const quint64 now = db.TableStamp(cars);
        const bool changed = now != car;
        car = now;
        return changed;
    };

    Scalar(db, QStringLiteral("SELECT * FROM tblCars"));
    EXPECT_FALSE(carChanged());
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = 'a' WHERE lCar_id = 1"));
    EXPECT_TRUE(carChanged());
    EXPECT_EQ(db.TableStamp(events), event);
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = 'b' WHERE lCar_id = 1"));
    EXPECT_TRUE(carChanged());

    auto rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tblCars"));
    rs->Edit();
    rs->SetValue(QStringLiteral("sCar_nm"), QStringLiteral("c"));
    rs->Update();
    EXPECT_TRUE(carChanged());

    // A rollback takes back what was read in between.
    {
        Database::Transaction tx(db);
        db.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = 'd' WHERE lCar_id = 1"));
        EXPECT_TRUE(carChanged());
    }
    EXPECT_TRUE(carChanged());

    // Emptying a table is a change, though SQLite does it without visiting the rows.
    db.Execute(QStringLiteral("DELETE * FROM tblEvents"));
    EXPECT_NE(db.TableStamp(events), event);
    event = db.TableStamp(events);
    db.Execute(QStringLiteral("ALTER TABLE tblTracks ADD COLUMN sMore Text(5)"));
    EXPECT_NE(db.TableStamp(events), event);
}
