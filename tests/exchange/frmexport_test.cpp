#include "app/windows.h"
#include "common/clock.h"
#include "exchange/csv.h"
#include "shell/ui/frmMain.h"
#include "store/logbookevents.h"
#include "support/gui.h"
#include "support/logbook.h"
#include "support/program.h"
#include "support/scriptedmessages.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>
#include <optional>

using namespace slipbook;

namespace {

struct ExportWindow : test::ProgramTest {
    // Presses File > Export... and, in the dialog it opens, types the file name, picks the
    // values and presses Export.
    void ExportThroughMenu(const QString& path, bool raw) {
        bool driven = false;
        QTimer::singleShot(0, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
            test::Grab(*dialog, QStringLiteral("frmExport"));
            test::Type(test::Child<QLineEdit>(*dialog, "txtFileName"), path);
            if (raw) {
                auto* option = test::Child<QRadioButton>(*dialog, "optRaw");
                QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
                EXPECT_TRUE(option->isChecked());
            }
            QTest::mouseClick(test::Child<QPushButton>(*dialog, "cmdExport"), Qt::LeftButton);
            driven = true;
        });
        test::Press(*main, "ID_Export");
        EXPECT_TRUE(driven);
    }

    std::vector<QStringList> Read(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        std::vector<QStringList> rows;
        EXPECT_TRUE(exchange::csv::ReadAll(file.readAll(), rows).ok);
        return rows;
    }
};

}  // namespace

TEST_F(ExportWindow, RunListGoesOutInItsSortOrderAsShownAndRaw) {
    for (int run : {2, 3, 1}) {
        lb.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id, lRun_num, "
                           "dtRun_dt, i14Mile_et) VALUES (1, 1, %1, #07/0%1/2003#, %2)")
                .arg(run)
                .arg(QStringLiteral("10.") + QString::number(run) + QStringLiteral("234567891")));
    }
    shell::frmMain& window = Start();
    TextGridModel& grid = window.grid();
    ASSERT_EQ(grid.RowCount(), 3);
    const int runColumn = grid.ColumnIndex(u"lRun_num");
    const int etColumn = grid.ColumnIndex(u"i14Mile_et");
    ASSERT_GT(runColumn, 0);
    ASSERT_GT(etColumn, 0);

    // The racer sorts by run number with a click on its heading.
    auto* view = test::Child<QTableView>(window, "ssdbgMain");
    QHeaderView* header = view->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(runColumn) + 4, header->height() / 2));
    ASSERT_EQ(grid.Cell(0, runColumn), QStringLiteral("1"));

    QTemporaryDir dir;
    const QString shown = dir.filePath(QStringLiteral("shown.csv"));
    ExportThroughMenu(shown, false);
    std::vector<QStringList> rows = Read(shown);
    ASSERT_EQ(rows.size(), 4u);
    int visibleBefore = 0;  // the run column's place among the visible ones
    for (int c = 0; c < runColumn; ++c) {
        visibleBefore += grid.Column(c).visible ? 1 : 0;
    }
    EXPECT_EQ(rows[0][visibleBefore], grid.Column(runColumn).caption);
    for (int r = 0; r < 3; ++r) {
        EXPECT_EQ(rows[r + 1][visibleBefore], QString::number(r + 1));
    }

    const QString raw = dir.filePath(QStringLiteral("raw"));
    ExportThroughMenu(raw, true);
    rows = Read(raw + QStringLiteral(".csv"));
    ASSERT_EQ(rows.size(), 4u);
    int etAt = 0;
    for (int c = 0; c < etColumn; ++c) {
        etAt += grid.Column(c).visible ? 1 : 0;
    }
    EXPECT_EQ(rows[1][etAt], QStringLiteral("10.1234567891"));
    EXPECT_EQ(rows[3][etAt], QStringLiteral("10.3234567891"));
    EXPECT_TRUE(messages.shown.empty());
}
