// The maintenance window on the template's five examples: the grid, its colours and filters,
// editing, completing and deleting items, and the run window's way in.

#include "garage/ui/frmMaintenance.h"
#include "common/tools.h"
#include "store/recordset.h"
#include "support/gui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

using namespace slipbook;
using namespace slipbook::test;
using garage::frmMaintenance;

namespace {

struct MaintenanceWindow : WindowTest {
    std::unique_ptr<frmMaintenance> Open() {
        main.clock.now = QDateTime(QDate(2024, 5, 6), QTime(9, 0));
        auto window = std::make_unique<frmMaintenance>(Context());
        grid = Child<QTableView>(*window, "ssdbgMaintenances");
        car = Child<QComboBox>(*window, "cboCar");
        notes = Child<QPlainTextEdit>(*window, "rtbMaintenanceNotes_tx");
        scheduled = Child<QLineEdit>(*window, "txtScheduledRuns");
        made = Child<QLineEdit>(*window, "txtRunsMade");
        completed = Child<QCheckBox>(*window, "chkCompleted");
        date = Child<QLineEdit>(*window, "mebMaintenance_dt");
        filterCar = Child<QComboBox>(*window, tools::kEfCar);
        filterStatus = Child<QComboBox>(*window, tools::kEfStatus);
        from = Child<QLineEdit>(*window, tools::kEfDateFrom);
        to = Child<QLineEdit>(*window, tools::kEfDateTo);
        return window;
    }
    QString Cell(int row, int column) const {
        return grid->model()->index(row, column).data().toString();
    }
    QStringList Column(int column) const {
        QStringList cells;
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            cells << Cell(row, column);
        }
        return cells;
    }
    // The user's click on a line.
    void Click(int row) {
        grid->selectionModel()->setCurrentIndex(
            grid->model()->index(row, 2),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    int SelectedRow() const { return grid->currentIndex().row(); }

    QTableView* grid = nullptr;
    QComboBox* car = nullptr;
    QPlainTextEdit* notes = nullptr;
    QLineEdit* scheduled = nullptr;
    QLineEdit* made = nullptr;
    QCheckBox* completed = nullptr;
    QLineEdit* date = nullptr;
    QComboBox* filterCar = nullptr;
    QComboBox* filterStatus = nullptr;
    QLineEdit* from = nullptr;
    QLineEdit* to = nullptr;
};

TEST_F(MaintenanceWindow, GridShowsTheExamplesWithTheirStates) {
    auto window = Open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Maintenance"));
    EXPECT_EQ(Child<QLabel>(*window, "lblGridCaption")->text(),
              QStringLiteral("Maintenance Detail for selected Car(s)"));
    QStringList captions;
    for (int c = 0; c < grid->model()->columnCount(); ++c) {
        captions << grid->model()->headerData(c, Qt::Horizontal).toString();
    }
    EXPECT_EQ(captions, (QStringList{"Key", "Car", "Maintenance Description", "RUNS: Scheduled",
                                     "...Made", "...Remaining", "Completed", "...Date"}));
    EXPECT_TRUE(grid->isColumnHidden(0));

    EXPECT_EQ(Column(0), (QStringList{"5", "1", "2", "3", "4"}));
    EXPECT_EQ(Column(5), (QStringList{" ", "(PAST DUE) -1", "(due NOW) ", "2", "20"}));
    EXPECT_EQ(Cell(1, 1), QStringLiteral("My Race Car"));

    const auto background = [&](int row) {
        return grid->model()->index(row, 5).data(Qt::BackgroundRole);
    };
    const auto foreground = [&](int row) {
        return grid->model()->index(row, 5).data(Qt::ForegroundRole);
    };
    EXPECT_EQ(background(1).value<QColor>(), QColor(Qt::red));  // past due
    EXPECT_EQ(foreground(1).value<QColor>(), QColor(Qt::yellow));
    EXPECT_EQ(background(3).value<QColor>(), QColor(Qt::yellow));  // 2 of 20: upcoming
    EXPECT_EQ(foreground(3).value<QColor>(), QColor(Qt::red));
    EXPECT_TRUE(grid->model()->index(3, 5).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(background(4).isValid());  // 20 to go
    EXPECT_FALSE(background(0).isValid());  // completed

    // The first line is shown below the grid.
    EXPECT_EQ(SelectedRow(), 0);
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("Example Completed Maintenance"));
    EXPECT_TRUE(completed->isChecked());
    EXPECT_EQ(date->displayText(), QStringLiteral("07/04/2003"));
    EXPECT_EQ(made->text(), QStringLiteral("19"));
    ShowActive(*window);
    Grab(*window, QStringLiteral("frmMaintenance"));
}

TEST_F(MaintenanceWindow, FiltersByDateCarAndStatus) {
    logbook.db().Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (2, 'Another Car')"));
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, "
        "iRunsMade, sMaintenanceNotes_tx) VALUES (6, 2, False, 10, 10, 'Other car item')"));
    auto window = Open();
    ShowActive(*window);
    EXPECT_EQ(filterCar->itemText(0), QStringLiteral("<All Cars>"));
    EXPECT_EQ(filterCar->itemText(1), QStringLiteral("Another Car"));  // by name
    EXPECT_EQ(filterStatus->currentText(), QStringLiteral("<All Maintenance>"));
    EXPECT_EQ(Column(0).size(), 6);

    Pick(filterCar, QStringLiteral("Another Car"));
    EXPECT_EQ(Column(0), (QStringList{"6"}));
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("Other car item"));  // the shown item follows
    Pick(filterCar, QStringLiteral("My Race Car"));
    EXPECT_EQ(Column(0), (QStringList{"5", "1", "2", "3", "4"}));
    Pick(filterStatus, QStringLiteral("<Upcoming Maintenance>"));
    EXPECT_EQ(Column(0), (QStringList{"1", "2", "3"}));
    Pick(filterStatus, QStringLiteral("<All Maintenance>"));

    Type(from, QStringLiteral("07/04/2003"));
    EXPECT_EQ(Column(0).size(), 5);  // dates count once the box is left
    Leave(from);
    EXPECT_EQ(Column(0), (QStringList{"5"}));
    Type(from, QString());
    Type(to, QStringLiteral("07/03/2003"));
    Leave(to);
    EXPECT_TRUE(Column(0).isEmpty());
    Type(to, QStringLiteral("99/99/2003"));  // no date: no filter
    Leave(to);
    EXPECT_EQ(Column(0).size(), 5);
}

TEST_F(MaintenanceWindow, ValidatesAndSavesANewItem) {
    auto window = Open();
    ShowActive(*window);
    window->ShowParameters(0, 0);
    Press(*window, tools::kNew);
    EXPECT_EQ(car->currentIndex(), -1);  // all cars: no default
    EXPECT_HINT(notes, "<Type maintenance description here>");
    const auto save = [&](const char* message, const char* focus) {
        messages.shown.clear();
        Press(*window, tools::kSave);
        ASSERT_EQ(messages.shown.size(), 1u) << message;
        EXPECT_EQ(messages.last().text, QString::fromUtf8(message));
        EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
        EXPECT_EQ(FocusName(*window), QString::fromUtf8(focus));
    };
    Type(notes, QStringLiteral("Change the oil's filter"));
    save("Please select a car", "cboCar");
    Pick(car, QStringLiteral("My Race Car"));
    save("Scheduled number of runs is required (enter 1 or more)", "txtScheduledRuns");
    Type(scheduled, QStringLiteral("30"));
    Type(made, QStringLiteral("-1"));
    save("Runs made so far cannot be negative (enter 0 or more)", "txtRunsMade");
    Type(made, QStringLiteral("3"));
    completed->click();
    EXPECT_EQ(date->displayText(), QStringLiteral("05/06/2024"));
    Type(date, QString());
    save("Invalid Maintenance Date, Use MM/DD/YYYY Format", "mebMaintenance_dt");
    completed->click();
    EXPECT_EQ(date->displayText(), QStringLiteral("__/__/____"));

    messages.shown.clear();
    Press(*window, tools::kSave);
    ASSERT_TRUE(messages.shown.empty());
    const qint64 id = window->CurrentRecordId();
    EXPECT_EQ(Cell(SelectedRow(), 0), QString::number(id));
    EXPECT_EQ(Cell(SelectedRow(), 2), QStringLiteral("Change the oil's filter"));
    EXPECT_EQ(Cell(SelectedRow(), 5), QStringLiteral("27"));
    auto rs = logbook.db().OpenRecordset(
        QStringLiteral("SELECT * FROM tblMaintenance WHERE lMaintenance_id = %1").arg(id));
    EXPECT_EQ(rs->Value(QStringLiteral("lCar_id")).toLongLong(), 1);
    EXPECT_EQ(rs->Value(QStringLiteral("bCompleted")).toLongLong(), 0);
    EXPECT_EQ(rs->Value(QStringLiteral("iScheduledRuns")).toDouble(), 30);
    EXPECT_TRUE(rs->Value(QStringLiteral("dtMaintenance_dt")).isNull());
}

TEST_F(MaintenanceWindow, MarkCompletedTodaySavesAtOnce) {
    auto window = Open();
    Click(3);  // item 3, upcoming
    ASSERT_EQ(window->CurrentRecordId(), 3);
    Child<QPushButton>(*window, "btnMarkCompleted")->click();
    EXPECT_TRUE(messages.shown.empty());
    auto rs = logbook.db().OpenRecordset(
        QStringLiteral("SELECT * FROM tblMaintenance WHERE lMaintenance_id = 3"));
    EXPECT_EQ(rs->Value(QStringLiteral("bCompleted")).toLongLong(), -1);
    EXPECT_EQ(rs->Value(QStringLiteral("dtMaintenance_dt")).toDateTime().date(), QDate(2024, 5, 6));
    // Completed and newest: the first line now, and still the current one.
    EXPECT_EQ(Column(0), (QStringList{"3", "5", "1", "2", "4"}));
    EXPECT_EQ(SelectedRow(), 0);
    EXPECT_EQ(Cell(0, 7), QStringLiteral("05/06/2024"));
    EXPECT_FALSE(window->DataChanged());
}

TEST_F(MaintenanceWindow, AnotherLineAsksToSaveTheShownOne) {
    auto window = Open();
    Click(1);  // item 1
    Type(notes, QStringLiteral("Edited A"));

    messages.answer(MsgAnswer::Cancel);
    Click(4);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().title, QStringLiteral("Different Maintenance Line Selected"));
    EXPECT_EQ(messages.last().text, QStringLiteral("Data Has Been Changed\nSave Changes ?"));
    EXPECT_EQ(SelectedRow(), 1);
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("Edited A"));
    EXPECT_TRUE(window->DataChanged());

    messages.answer(MsgAnswer::No);
    Click(4);
    EXPECT_EQ(window->CurrentRecordId(), 4);
    EXPECT_EQ(Scalar(QStringLiteral(
                  "SELECT sMaintenanceNotes_tx FROM tblMaintenance WHERE lMaintenance_id = 1")),
              QStringLiteral("Example Upcoming or Due Maintenance A"));

    Type(notes, QStringLiteral("Edited Future"));
    messages.answer(MsgAnswer::Yes);
    ShowActive(*window);
    // A real click: the grid reloads under the view while it handles the press.
    const QRect line = grid->visualRect(grid->model()->index(2, 2));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, line.center());
    EXPECT_EQ(window->CurrentRecordId(), 2);
    EXPECT_EQ(Cell(SelectedRow(), 0), QStringLiteral("2"));
    EXPECT_EQ(Scalar(QStringLiteral(
                  "SELECT sMaintenanceNotes_tx FROM tblMaintenance WHERE lMaintenance_id = 4")),
              QStringLiteral("Edited Future"));
}

TEST_F(MaintenanceWindow, DeleteRemovesTheLine) {
    auto window = Open();
    Click(4);
    ASSERT_TRUE(window->tool(tools::kDelete)->isEnabled());
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Delete The Maintenance Record For (Example Future Maintenance)"));
    EXPECT_EQ(Column(0), (QStringList{"5", "1", "2", "3"}));
    EXPECT_EQ(window->CurrentRecordId(), 3);  // the last line, where the removed one stood
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblMaintenance")).toInt(), 4);
}

TEST_F(MaintenanceWindow, ShowParametersAndAlertForTheRunWindow) {
    auto plain = Open();
    plain->Alert();  // opened from the main window: says nothing
    EXPECT_TRUE(messages.shown.empty());

    auto window = Open();
    window->ShowParameters(1, 1);
    EXPECT_EQ(filterCar->currentText(), QStringLiteral("My Race Car"));
    EXPECT_EQ(filterStatus->currentText(), QStringLiteral("<Upcoming Maintenance>"));
    EXPECT_EQ(Column(0), (QStringList{"1", "2", "3"}));
    EXPECT_EQ(window->CurrentRecordId(), 1);
    window->Alert();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("NOTE: Upcoming or Critical Maintenance Items exist for this car"));

    // A new item starts on the filter's car.
    Press(*window, tools::kNew);
    EXPECT_EQ(car->currentText(), QStringLiteral("My Race Car"));
}

}  // namespace
