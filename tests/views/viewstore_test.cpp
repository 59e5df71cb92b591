#include "views/viewstore.h"
#include "store/dberror.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::views;

namespace {

QList<qint64> Ids(const QList<ViewField>& fields) {
    QList<qint64> ids;
    for (const ViewField& f : fields) {
        ids << f.id;
    }
    return ids;
}

QVariant Scalar(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    return q.Next() ? q.Value(0) : QVariant();
}

}  // namespace

TEST(ViewStore, SaveRecallDefaultAndDeleteAViewOfOnesOwn) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    EXPECT_EQ(ReadViews(db, true).size(), 0);
    ASSERT_EQ(ReadViews(db, false).size(), 4);
    // The shipped quarter-mile view in its order, and the whole catalogue.
    const QList<ViewField> quarter = ReadViewFields(db, QStringLiteral("tbl14MileView"), "ID_Runs");
    ASSERT_GE(quarter.size(), 3);
    EXPECT_EQ(quarter[0].id, 70);
    EXPECT_EQ(quarter[0].header, QStringLiteral("Date"));
    EXPECT_GT(ReadViewFields(db, ViewTable(db, kAllFieldsId), "ID_Runs").size(), quarter.size());

    // A new view takes the first free table name and keeps the order given.
    const qint64 id = SaveView(db, 0, QStringLiteral("O'Brien's \"tune\""), {190, 70, 84}, true);
    EXPECT_EQ(ViewTable(db, id), QStringLiteral("tblCustomView1"));
    EXPECT_EQ(Ids(ReadViewFields(db, QStringLiteral("tblCustomView1"), "ID_Runs")),
              QList<qint64>({190, 70, 84}));
    EXPECT_EQ(ReadViews(db, true).value(0).name, QStringLiteral("O'Brien's \"tune\""));
    EXPECT_EQ(Scalar(db, "SELECT count(*) FROM tblViews WHERE bDefault_fl = True").toInt(), 1);
    EXPECT_EQ(Scalar(db, "SELECT sTable_nm FROM tblViews WHERE bDefault_fl = True").toString(),
              QStringLiteral("tblCustomView1"));

    // Saved again, the table is made anew under its name; recalled, it takes the order given.
    EXPECT_EQ(SaveView(db, id, QString(), {84, 67}, false), id);
    EXPECT_EQ(Ids(ReadViewFields(db, QStringLiteral("tblCustomView1"), "ID_Runs")),
              QList<qint64>({84, 67}));
    RecallView(db, id, {67, 84, 190}, false);
    EXPECT_EQ(Ids(ReadViewFields(db, QStringLiteral("tblCustomView1"), "ID_Runs")),
              QList<qint64>({67, 84}));
    EXPECT_EQ(SaveView(db, 0, QStringLiteral("Second"), {70}, false), id + 1);
    EXPECT_EQ(ViewTable(db, id + 1), QStringLiteral("tblCustomView2"));

    // Deleting the default view leaves none flagged, and its table goes with it.
    DeleteView(db, id);
    EXPECT_FALSE(db.TableExists(QStringLiteral("tblCustomView1")));
    EXPECT_EQ(ViewTable(db, id), QString());
    EXPECT_EQ(Scalar(db, "SELECT count(*) FROM tblViews WHERE bDefault_fl = True").toInt(), 0);
    DefaultViewSet(db, QStringLiteral("tbl18MileView"));
    EXPECT_EQ(Scalar(db, "SELECT sView_desc FROM tblViews WHERE bDefault_fl = True").toString(),
              QStringLiteral("Eighth Mile"));
}

TEST(ViewStore, ASaveThatFailsLeavesNoViewWithoutItsTable) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const qint64 id = SaveView(db, 0, QStringLiteral("Mine"), {70, 84}, false);
    // The view's entry now names a table that can't be made: nothing of the save stays.
    db.Execute(QStringLiteral("UPDATE tblViews SET sTable_nm = 'tbl Broken' WHERE lView_id = ") +
               QString::number(id));
    const int views = ReadViews(db, false).size();
    EXPECT_THROW(SaveView(db, id, QString(), {67}, true), store::DbError);
    EXPECT_EQ(ReadViews(db, false).size(), views);
    EXPECT_EQ(Scalar(db, "SELECT sTable_nm FROM tblViews WHERE bDefault_fl = True").toString(),
              QStringLiteral("tbl14MileView"));
    EXPECT_THROW(SaveView(db, 4242, QString(), {67}, false), store::DbError);
    EXPECT_EQ(ReadViews(db, false).size(), views);

    // Names: empty, taken, a table's, or holding what a table name can't.
    EXPECT_EQ(ViewNameProblem(db, QStringLiteral("  ")),
              QStringLiteral("View Name must be entered."));
    EXPECT_TRUE(ViewNameProblem(db, QStringLiteral("mine")));
    EXPECT_TRUE(ViewNameProblem(db, QStringLiteral("QUARTER MILE")));
    EXPECT_TRUE(ViewNameProblem(db, QStringLiteral("tblRuns")));
    EXPECT_TRUE(ViewNameProblem(db, QStringLiteral("Std. Day")));
    EXPECT_TRUE(ViewNameProblem(db, QStringLiteral("two\nlines")));
    EXPECT_FALSE(ViewNameProblem(db, QStringLiteral("O'Brien's 1/4 mile")));
}

TEST(ViewStore, TheCatalogueEditorWritesARowAsTypedOrSaysWhyNot) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    QList<CatalogueRow> rows = ReadCatalogue(db);
    ASSERT_FALSE(rows.isEmpty());
    CatalogueRow row = rows.first();
    row.header = QStringLiteral("Driver's \"Notes\"");
    row.width = QStringLiteral("1500");
    EXPECT_FALSE(WriteCatalogueRow(db, row));
    EXPECT_EQ(ReadCatalogue(db).first().header, row.header);
    EXPECT_EQ(ReadCatalogue(db).first().width, QStringLiteral("1500"));
    row.header = QStringLiteral("Changed");
    row.width = QStringLiteral("wide");
    EXPECT_TRUE(WriteCatalogueRow(db, row));
    EXPECT_EQ(ReadCatalogue(db).first().header, QStringLiteral("Driver's \"Notes\""));
    row.width = QString();
    EXPECT_FALSE(WriteCatalogueRow(db, row));
    EXPECT_EQ(ReadCatalogue(db).first().width, QString());
}
