#include "shell/runlist.h"
#include "common/tools.h"
#include "shell/pageleadin.h"
#include "shell/valueformat.h"
#include "store/database.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::shell;

namespace {

qint64 ViewId(store::Database& db, const QString& table) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lView_id FROM tblViews WHERE sTable_nm = '%1'").arg(table));
    return q.Next() ? q.Value(0).toLongLong() : 0;
}

std::vector<QStringList> Rows(store::Database& db, const ListLayout& layout) {
    std::vector<QStringList> rows;
    store::Query q = db.OpenQuery(layout.sql);
    RowBuilder b(db, layout);
    b.Bind(q);
    while (q.Next()) {
        rows.push_back(b.Build(q));
    }
    return rows;
}

int Column(const ListLayout& layout, const char* name) {
    for (size_t i = 0; i < layout.columns.size(); ++i) {
        if (layout.columns[i].name == QLatin1String(name)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

}  // namespace

TEST(RunList, StatementForEachContext) {
    ListContext ctx;
    ctx.carId = 3;
    EXPECT_EQ(RunListSql(ctx),
              QStringLiteral(
                  "SELECT tblRuns.* FROM tblRuns WHERE  lCar_id = 3 ORDER BY dtRun_dt, dtRun_tm"));
    ctx.eventId = 7;
    EXPECT_EQ(RunListSql(ctx),
              QStringLiteral("SELECT tblRuns.* FROM tblRuns WHERE  tblRuns.lEvent_id = 7 AND  "
                             "lCar_id = 3 ORDER BY dtRun_dt, dtRun_tm"));
    ctx.trackId = 2;
    EXPECT_EQ(
        RunListSql(ctx),
        QStringLiteral(
            "SELECT tblRuns.* FROM tblRuns,tblEvents  WHERE  tblRuns.lEvent_id = 7 AND  "
            "tblEvents.lEvent_id=tblRuns.lEvent_id AND  tblEvents.lTrack_id = 2 AND  lCar_id = 3 "
            "ORDER BY dtRun_dt, dtRun_tm"));
    ctx.eventId = 0;
    EXPECT_EQ(
        RunListSql(ctx),
        QStringLiteral(
            "SELECT tblRuns.* FROM tblRuns,tblEvents  WHERE  tblEvents.lEvent_id=tblRuns.lEvent_id "
            "AND  tblEvents.lTrack_id = 2 AND  lCar_id = 3 ORDER BY dtRun_dt, dtRun_tm"));
    ctx.filterActive = true;
    ctx.filterSql = QStringLiteral("SELECT * from tblRuns WHERE i14Mile_et >= 10 AND lCar_id = 3");
    EXPECT_EQ(RunListSql(ctx), ctx.filterSql + QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm"));
}

TEST(RunList, ColumnsAndCellsOfTheRunsList) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    test::ScriptedMessages box;
    db.Execute(QStringLiteral(
        "INSERT INTO tblOpponent (lOpponent_id, sOpponent_nm) VALUES (77, 'Jim O''Neil')"));
    db.Execute(
        QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                       "dtRun_tm, lOpponent_id, bFullRun_fl, "
                       "i14Mile_et, i14Mile_mph, sRunNotes_tx) VALUES (501, 1, 1, 2, #07/04/2003#, "
                       "#1:05 PM#, 77, True, 10.1235, 131.456, 'Loose')"));
    db.Execute(
        QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                       "dtRun_tm, lOpponent_id) "
                       "VALUES (502, 1, 1, 3, #07/04/2003#, #9:00 AM#, 999)"));

    ListContext ctx;
    ctx.carId = 1;
    ctx.viewId = ViewId(db, QStringLiteral("tblProView"));
    ListLayout layout = BuildListLayout(db, tools::kRuns, ctx, box);
    ASSERT_GT(layout.columns.size(), 4u);
    EXPECT_EQ(layout.columns[0].caption, QStringLiteral("Key"));
    EXPECT_FALSE(layout.columns[0].visible);
    EXPECT_TRUE(box.shown.empty());

    const auto rows = Rows(db, layout);
    ASSERT_EQ(rows.size(), 2u);
    // Oldest first: the morning run of the same day comes first.
    EXPECT_EQ(rows[0][0], QStringLiteral("502"));
    EXPECT_EQ(rows[1][0], QStringLiteral("501"));
    const int opponent = Column(layout, "lOpponent_id");
    const int full = Column(layout, "bFullRun_fl");
    const int et = Column(layout, "i14Mile_et");
    if (opponent > 0) {
        EXPECT_EQ(rows[1][opponent], QStringLiteral("Jim O'Neil"));
        EXPECT_EQ(rows[0][opponent], QString());  // a key without its row shows empty
    }
    if (full > 0) {
        EXPECT_EQ(rows[1][full], QStringLiteral("True"));
    }
    if (et > 0) {
        EXPECT_EQ(rows[1][et], QStringLiteral("10.124"));
        EXPECT_EQ(rows[0][et], QString());
    }
    EXPECT_EQ(LoadNotes(db, tools::kRuns, QStringLiteral("501")), QStringLiteral("Loose"));
    EXPECT_EQ(LoadNotes(db, tools::kRuns, QStringLiteral("502")), QString());

    // A view whose catalogue rows are all gone leaves the key column, and still lists the runs.
    db.Execute(QStringLiteral("DELETE * FROM tblListViewColumns WHERE sView_id = 'ID_Runs'"));
    layout = BuildListLayout(db, tools::kRuns, ctx, box);
    ASSERT_EQ(layout.columns.size(), 1u);
    EXPECT_EQ(Rows(db, layout).size(), 2u);
    // So does a view table that is gone.
    db.Execute(QStringLiteral("DROP TABLE tblProView"));
    layout = BuildListLayout(db, tools::kRuns, ctx, box);
    EXPECT_EQ(layout.columns.size(), 1u);
    EXPECT_TRUE(box.shown.empty());

    BuildListLayout(db, QStringLiteral("ID_Nope"), ctx, box);
    ASSERT_EQ(box.shown.size(), 1u);
    EXPECT_EQ(box.last().text, QStringLiteral("Unknown Key: ID_Nope"));
}

TEST(RunList, FixedListsShowAddressesPhonesDatesAndLookups) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    test::ScriptedMessages box;
    db.Execute(
        QStringLiteral("UPDATE tblTracks SET sTrackAddress_tx = '1 Strip Rd' & Chr(13) & Chr(10) & "
                       "'Speedville', "
                       "sTrackPhone = '(___) ___-____', sTrackNotes_tx = 'n' WHERE lTrack_id = 1")
            .replace(QStringLiteral(" & Chr(13) & Chr(10) & "),
                     QStringLiteral(" || char(13) || char(10) || ")));
    ListLayout tracks = BuildListLayout(db, tools::kTracks, {}, box);
    auto rows = Rows(db, tracks);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows[0][2], QStringLiteral("1 Strip Rd, Speedville"));
    EXPECT_EQ(rows[0][4], QString());
    EXPECT_EQ(rows[0][6], QStringLiteral("n"));

    db.Execute(QStringLiteral(
        "UPDATE tblEvents SET dtEventEnd_dt = Null, cPurse_amt = 12500 WHERE lEvent_id = 1"));
    ListLayout events = BuildListLayout(db, tools::kEvents, {}, box);
    rows = Rows(db, events);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows[0][4], QStringLiteral("__/__/____"));
    EXPECT_EQ(rows[0][6], QStringLiteral("12,500"));
    EXPECT_FALSE(rows[0][2].isEmpty());  // the track's name
    EXPECT_EQ(events.columns[3].alignment, 1);
}

TEST(RunList, FixedCatalogueColumnsInTheCataloguesOrder) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    db.Execute(
        QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lRun_num, dtRun_dt, "
                       "i14Mile_et, iDensityAlt_val) VALUES (601, 1, 4, #07/04/2003#, "
                       "10.1235, 2150)"));
    db.Execute(
        QStringLiteral("UPDATE tblListViewColumns SET sColumnHeader = 'ET' WHERE lLVC_id = 190"));
    // Asked for out of order, with an id the catalogue doesn't have.
    ListLayout layout = CatalogueListLayout(db, {84, 190, 99999, 67, 70});
    QStringList names;
    for (const ListColumn& c : layout.columns) {
        names << c.name + u'=' + c.caption;
    }
    EXPECT_EQ(names, (QStringList{"lRun_id=Key", "dtRun_dt=Date", "lRun_num=Run #", "i14Mile_et=ET",
                                  "iDensityAlt_val=Density Alt"}));
    EXPECT_FALSE(layout.columns[0].visible);
    EXPECT_EQ(layout.columns[3].alignment, 1);
    EXPECT_GT(layout.columns[3].width, 0);
    layout.sql = QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = 601");
    EXPECT_EQ(Rows(db, layout),
              (std::vector<QStringList>{{"601", "07/04/2003", "4", "10.124", "2,150"}}));
    EXPECT_EQ(CatalogueListLayout(db, {}).columns.size(), 1u);
}

TEST(ValueFormat, DatesTimesNumbersAndFlags) {
    const QDateTime day(QDate(2003, 7, 4), QTime(0, 0), Qt::UTC);
    const QDateTime time(QDate(1899, 12, 30), QTime(13, 5, 9), Qt::UTC);
    EXPECT_EQ(FormatValue(day, QStringLiteral("mm/dd/yyyy")), QStringLiteral("07/04/2003"));
    EXPECT_EQ(FormatValue(time, QStringLiteral("hh:mm AMPM")), QStringLiteral("01:05 PM"));
    EXPECT_EQ(FormatValue(time, QStringLiteral("h:nn:ss")), QStringLiteral("13:05:09"));
    EXPECT_EQ(FormatValue(day, QString()), QStringLiteral("7/4/2003"));
    EXPECT_EQ(FormatValue(time, QString()), QStringLiteral("1:05:09 PM"));
    EXPECT_EQ(FormatValue(QVariant::fromValue<qint64>(1234567), QStringLiteral("###,##0.00")),
              QStringLiteral("1,234,567.00"));
    EXPECT_EQ(FormatValue(QStringLiteral("78"), QStringLiteral("###,##0.00")),
              QStringLiteral("78.00"));
    EXPECT_EQ(FormatValue(QStringLiteral("78 main"), QStringLiteral("###,##0.00")),
              QStringLiteral("78 main"));
    EXPECT_EQ(FormatValue(QVariant(0.1 + 0.2), QString()), QStringLiteral("0.3"));
    EXPECT_EQ(FormatValue(QVariant(), QStringLiteral("0.00")), QString());
}

TEST(PageLeadin, LinesAndCarHeadings) {
    PageLeadin leadin;
    leadin.Add(QStringLiteral("a"));
    leadin.Add(QStringLiteral("b"));
    EXPECT_EQ(leadin.Get(), QStringLiteral("a\nb"));
    leadin.Clear();
    EXPECT_EQ(leadin.Get(), QString());
    // Name and number fit on one 17-character line with at least one blank between.
    EXPECT_EQ(FormatPageLeadin(QStringLiteral("12"), QStringLiteral("ET: 10.52")),
              QStringLiteral("ET: 10.52     #12"));
    EXPECT_EQ(FormatPageLeadin(QStringLiteral("123"), QStringLiteral("ET: 10.5234")),
              QStringLiteral("ET: 10.5234  #123"));
    // Too long: the name alone, then the number at the right end of the next line.
    EXPECT_EQ(FormatPageLeadin(QStringLiteral("123"), QStringLiteral("Jet: 78 and more")),
              QStringLiteral("Jet: 78 and more\n") + QString(13, u' ') + QStringLiteral("#123"));
}
