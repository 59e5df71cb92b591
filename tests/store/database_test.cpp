#include "store/database.h"
#include "store/access.h"
#include "store/currency.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

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
