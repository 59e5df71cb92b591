#include "exchange/listexport.h"
#include "exchange/csv.h"
#include "support/logbook.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::exchange;

namespace {

std::vector<QStringList> ReadBack(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<QStringList> rows;
    const csv::ReadResult r = csv::ReadAll(file.readAll(), rows);
    EXPECT_TRUE(r.ok) << r.error.toStdString();
    return rows;
}

// A run list as the main window holds it: the hidden key, columns named after the runs' fields,
// and a looked-up car name, with the texts the list shows.
struct RunList {
    TextGridModel model;
    explicit RunList(store::Database& db) {
        db.Execute(QStringLiteral(
            "INSERT INTO tblRuns (lRun_id, lCar_id, lRun_num, dtRun_dt, dtRun_tm, bFullRun_fl, "
            "iVehicleReactionTime_val) VALUES (7, 1, 3, #07/04/2003#, #10:30 AM#, True, "
            "0.123456789012345)"));
        db.Execute(QStringLiteral(
            "INSERT INTO tblRuns (lRun_id, lCar_id, lRun_num, dtRun_dt, bFullRun_fl, "
            "iVehicleReactionTime_val) VALUES (9, 1, 1, #12/31/2004#, False, -0.01)"));
        const auto column = [](const char* caption, const char* name, bool visible = true) {
            GridColumn c;
            c.caption = QString::fromLatin1(caption);
            c.name = QString::fromLatin1(name);
            c.visible = visible;
            return c;
        };
        model.SetColumns({column("Key", "lRun_id", false), column("Run", "lRun_num"),
                          column("Date", "dtRun_dt"), column("Time", "dtRun_tm"),
                          column("Full Run", "bFullRun_fl"),
                          column("R/T", "iVehicleReactionTime_val"), column("Car", "")});
        model.AddRow(
            QStringList{"7", "3", "07/04/2003", "10:30 AM", "Yes", "0.123", "=Red, \"fast\""});
        model.AddRow(QStringList{"9", "1", "12/31/2004", "", "No", "-0.010", "Blue"});
    }
};

}  // namespace

TEST(ListExport, RawValuesAreTheStoredOnesAndShownAreTheCells) {
    test::TempLogbook logbook;
    RunList list(logbook.db());
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("runs.csv"));
    const ListSource source = StoredSource(logbook.db(), list.model, QStringLiteral("tblRuns"),
                                           QStringLiteral("lRun_id"));

    ExportResult r = ExportList(logbook.db(), source, path, {.mode = ExportMode::Shown});
    ASSERT_EQ(r.status, ExportResult::Status::Done) << r.error.toStdString();
    std::vector<QStringList> rows = ReadBack(path);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], (QStringList{"Run", "Date", "Time", "Full Run", "R/T", "Car"}));
    EXPECT_EQ(rows[1],
              (QStringList{"3", "07/04/2003", "10:30 AM", "Yes", "0.123", "'=Red, \"fast\""}));
    EXPECT_EQ(rows[2][4], QStringLiteral("-0.010"));

    // Sorted by run number, the file follows the list's order.
    list.model.GridSort(1);
    r = ExportList(logbook.db(), source, path, {.mode = ExportMode::Raw, .byteOrderMark = true});
    ASSERT_EQ(r.status, ExportResult::Status::Done) << r.error.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.read(3) == "\xEF\xBB\xBF");
    rows = ReadBack(path);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1], (QStringList{"1", "2004-12-31", "", "false", "-0.01", "Blue"}));
    EXPECT_EQ(rows[2], (QStringList{"3", "2003-07-04", "10:30:00", "true", "0.123456789012345",
                                    "'=Red, \"fast\""}));
    EXPECT_EQ(rows[2][4].toDouble(), 0.123456789012345);
}

TEST(ListExport, MoneyIsExactAndDatesWithTimesKeepBoth) {
    test::TempLogbook logbook;
    store::Database& db = logbook.db();
    db.Execute(
        QStringLiteral("INSERT INTO tblExpenses (lExpense_id, dtExpense_dt, cExpense_amt) "
                       "VALUES (1, #03/09/2021 14:05:09#, 1234567.89)"));
    db.Execute(
        QStringLiteral("INSERT INTO tblExpenses (lExpense_id, cExpense_amt) VALUES (2, -0.0001)"));
    TextGridModel model;
    GridColumn key{.caption = "Key", .name = "lExpense_id", .visible = false};
    GridColumn date{.caption = "Date", .name = "dtExpense_dt"};
    GridColumn amount{.caption = "Amount", .name = "cExpense_amt"};
    model.SetColumns({key, date, amount});
    model.AddRow(QStringList{"2", "", "($0.00)"});
    model.AddRow(QStringList{"1", "03/09/2021", "$1,234,567.89"});
    model.AddRow(QStringList{"99", "gone", "$1.00"});  // deleted since the list was made
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("expenses.csv"));
    const ExportResult r = ExportList(db, StoredSource(db, model, "tblExpenses", "lExpense_id"),
                                      path, {.mode = ExportMode::Raw});
    ASSERT_EQ(r.status, ExportResult::Status::Done) << r.error.toStdString();
    const std::vector<QStringList> rows = ReadBack(path);
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[1], (QStringList{"", "-0.0001"}));
    EXPECT_EQ(rows[2], (QStringList{"2021-03-09T14:05:09", "1234567.89"}));
    EXPECT_EQ(rows[3], (QStringList{"gone", "$1.00"}));
}

TEST(ListExport, CancelOrAFailedWriteLeavesNoFile) {
    test::TempLogbook logbook;
    TextGridModel model;
    model.SetColumns({GridColumn{.caption = "Key", .visible = false}, GridColumn{.caption = "A"}});
    for (int i = 0; i < 10000; ++i) {
        model.AddRow(QStringList{QString::number(i), QStringLiteral("x")});
    }
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("list.csv"));
    int calls = 0;
    ExportResult r =
        ExportList(logbook.db(), {.model = &model}, path, {}, [&calls](int done, int total) {
            EXPECT_EQ(total, 10000);
            ++calls;
            return done < 4000;
        });
    EXPECT_EQ(r.status, ExportResult::Status::Cancelled);
    EXPECT_GE(calls, 2);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList());

    r = ExportList(logbook.db(), {.model = &model},
                   dir.filePath(QStringLiteral("no/such/folder/list.csv")), {});
    EXPECT_EQ(r.status, ExportResult::Status::Failed);
    EXPECT_TRUE(r.error.contains(QStringLiteral("list.csv could not be written")))
        << r.error.toStdString();
}

TEST(ListExport, PlainNumbersReadBackTheSame) {
    for (double v : {0.1, -12.5, 1e-7, 123456789.123456789, 1e21, -0.0}) {
        EXPECT_EQ(PlainNumber(v).toDouble(), v);
        EXPECT_FALSE(PlainNumber(v).contains(u'e'));
    }
}
