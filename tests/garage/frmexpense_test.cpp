// The expense window driven as a racer drives it: entering, checking and saving expenses, the
// grid's filters and its exact total, new categories, and amounts the logbook can't keep.

#include "garage/ui/frmExpense.h"
#include "common/tools.h"
#include "store/recordset.h"
#include "support/gui.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace slipbook;
using namespace slipbook::test;
using garage::frmExpense;

namespace {

const QString kCaptionLead = QStringLiteral(
    "Expense Detail for selected Date(s), Category(ies), Car(s), and Event(s)            TOTAL = ");

struct ExpenseWindow : WindowTest {
    std::unique_ptr<frmExpense> Open() {
        auto window = std::make_unique<frmExpense>(Context());
        grid = Child<QTableView>(*window, "ssdbgExpenses");
        caption = Child<QLabel>(*window, "lblGridCaption");
        date = Child<QLineEdit>(*window, "mebExpense_dt");
        amount = Child<QLineEdit>(*window, "txtExpense_amt");
        category = Child<QComboBox>(*window, "cboExpenseCategory");
        car = Child<QComboBox>(*window, "cboCar");
        event = Child<QComboBox>(*window, "cboEvent");
        notes = Child<QPlainTextEdit>(*window, "rtbExpenseNotes_tx");
        from = Child<QLineEdit>(*window, tools::kEfDateFrom);
        to = Child<QLineEdit>(*window, tools::kEfDateTo);
        filterCategory = Child<QComboBox>(*window, tools::kEfCategory);
        filterCar = Child<QComboBox>(*window, tools::kEfCar);
        filterEvent = Child<QComboBox>(*window, tools::kEfEvent);
        ShowActive(*window);
        return window;
    }
    void Insert(int id, const char* date, int category, const char* amountText, const char* carId,
                const char* eventId, const char* note) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblExpenses (lExpense_id, dtExpense_dt, "
                           "lExpenseCategory_id, cExpense_amt, lCar_id, lEvent_id, "
                           "sExpenseNotes_tx) VALUES (%1, #%2#, %3, %4, %5, %6, '%7')")
                .arg(id)
                .arg(QString::fromLatin1(date))
                .arg(category)
                .arg(QString::fromLatin1(amountText), QString::fromLatin1(carId),
                     QString::fromLatin1(eventId), QString::fromLatin1(note)));
    }
    QString Cell(int row, int column) const {
        return grid->model()->index(row, column).data().toString();
    }
    QStringList Ids() const {
        QStringList ids;
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            ids << Cell(row, 0);
        }
        return ids;
    }
    QString Total() const { return caption->text().mid(kCaptionLead.size()); }
    int Count() { return Scalar(QStringLiteral("SELECT COUNT(*) FROM tblExpenses")).toInt(); }
    void SaveFails(QWidget& window, const char* message, const char* focus) {
        messages.shown.clear();
        Press(window, tools::kSave);
        ASSERT_EQ(messages.shown.size(), 1u) << message;
        EXPECT_EQ(messages.last().text, QString::fromUtf8(message));
        EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
        EXPECT_EQ(FocusName(window), QString::fromUtf8(focus));
    }

    QTableView* grid = nullptr;
    QLabel* caption = nullptr;
    QLineEdit* date = nullptr;
    QLineEdit* amount = nullptr;
    QComboBox* category = nullptr;
    QComboBox* car = nullptr;
    QComboBox* event = nullptr;
    QPlainTextEdit* notes = nullptr;
    QLineEdit* from = nullptr;
    QLineEdit* to = nullptr;
    QComboBox* filterCategory = nullptr;
    QComboBox* filterCar = nullptr;
    QComboBox* filterEvent = nullptr;
};

TEST_F(ExpenseWindow, ATypedExpenseIsCheckedSavedAndTotalled) {
    auto window = Open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Expenses"));
    EXPECT_EQ(caption->text(), kCaptionLead + QStringLiteral("0.00"));
    QStringList captions;
    for (int c = 1; c < grid->model()->columnCount(); ++c) {
        captions << grid->model()->headerData(c, Qt::Horizontal).toString();
    }
    EXPECT_EQ(captions, (QStringList{"Date", "Amount", "Category", "Car", "Event", "Description"}));
    EXPECT_TRUE(grid->isColumnHidden(0));
    for (QWidget* filter :
         std::initializer_list<QWidget*>{from, to, filterCategory, filterCar, filterEvent}) {
        EXPECT_FALSE(filter->toolTip().isEmpty()) << filter->objectName().toStdString();
    }
    EXPECT_EQ(filterCategory->itemText(0), QStringLiteral("<All Categories>"));
    EXPECT_EQ(filterCategory->itemText(1), QStringLiteral("Entry Fees"));  // by name
    EXPECT_EQ(filterCar->itemText(0), QStringLiteral("<All Cars>"));
    EXPECT_EQ(filterEvent->itemText(0), QStringLiteral("<All Events>"));
    EXPECT_EQ(car->itemText(0), QStringLiteral("<None>"));
    EXPECT_EQ(event->itemText(0), QStringLiteral("<None>"));

    // An empty logbook starts on a new expense of today.
    EXPECT_TRUE(window->RecordAdd());
    EXPECT_EQ(date->displayText(), QStringLiteral("07/04/2024"));
    EXPECT_HINT(notes, "<Type notes here>");
    EXPECT_FALSE(window->tool(tools::kDelete)->isEnabled());
    Type(date, QStringLiteral("13/45/2024"));
    SaveFails(*window, "Invalid Expense Date, Use MM/DD/YYYY Format", "mebExpense_dt");
    Type(date, QStringLiteral("03/15/2024"));
    SaveFails(*window, "Expense Amount Must Be Filled In", "txtExpense_amt");
    Type(amount, QStringLiteral("1x234.5y6"));  // keys filtered: digits and the point
    EXPECT_EQ(amount->text(), QStringLiteral("1234.56"));
    Leave(amount);
    EXPECT_EQ(amount->text(), QStringLiteral("1,234.56"));
    SaveFails(*window, "Expense Category Must Be Selected", "cboExpenseCategory");
    Pick(category, QStringLiteral("Fuel"));
    Pick(car, QStringLiteral("My Race Car"));
    Pick(event, QStringLiteral("<None>"));
    Type(notes, QStringLiteral("Race gas, 5 gal"));

    messages.shown.clear();
    Press(*window, tools::kSave);
    ASSERT_TRUE(messages.shown.empty());
    const qint64 id = window->CurrentRecordId();
    ASSERT_GT(id, 0);
    EXPECT_EQ(Ids(), (QStringList{QString::number(id)}));
    EXPECT_EQ(grid->currentIndex().row(), 0);
    EXPECT_EQ(Cell(0, 1), QStringLiteral("03/15/2024"));
    EXPECT_EQ(Cell(0, 2), QStringLiteral("1,234.56"));
    EXPECT_EQ(Cell(0, 3), QStringLiteral("Fuel"));
    EXPECT_EQ(Cell(0, 4), QStringLiteral("My Race Car"));
    EXPECT_EQ(Cell(0, 5), QString());
    EXPECT_EQ(Cell(0, 6), QStringLiteral("Race gas, 5 gal"));
    EXPECT_EQ(Total(), QStringLiteral("1,234.56"));
    EXPECT_TRUE(main.calls.contains(QStringLiteral("recordsChanged tblExpenses")));
    auto rs = logbook.db().OpenRecordset(
        QStringLiteral("SELECT * FROM tblExpenses WHERE lExpense_id = %1").arg(id));
    EXPECT_EQ(rs->Value(QStringLiteral("cExpense_amt")).value<store::Currency>().units, 12345600);
    EXPECT_EQ(rs->Value(QStringLiteral("lExpenseCategory_id")).toLongLong(), 1);
    EXPECT_EQ(rs->Value(QStringLiteral("lCar_id")).toLongLong(), 1);
    EXPECT_EQ(rs->Value(QStringLiteral("lEvent_id")).toLongLong(), 0);

    // An edited expense rewrites its own line, and the total follows at once.
    Type(amount, QStringLiteral("99.9"));
    Press(*window, tools::kSave);
    EXPECT_EQ(Cell(0, 2), QStringLiteral("99.90"));
    EXPECT_EQ(Total(), QStringLiteral("99.90"));
    Grab(*window, QStringLiteral("frmExpense"));

    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.last().text, QStringLiteral("Delete The Expenses Record For (Fuel)"));
    EXPECT_TRUE(Ids().isEmpty());
    EXPECT_EQ(Total(), QStringLiteral("0.00"));
    EXPECT_EQ(Count(), 0);
    EXPECT_TRUE(window->RecordAdd());
}

TEST_F(ExpenseWindow, TheTotalOfThousandsOfAmountsIsExactToTheCent) {
    const char* amounts[] = {"0.10", "0.20", "19.99"};
    const int cents[] = {10, 20, 1999};
    qint64 expected = 0;
    qint64 fuel = 0;
    {
        store::Database::Transaction transaction(logbook.db());
        for (int i = 0; i < 5000; ++i) {
            Insert(i + 1, "06/01/2024", 1 + i % 2, amounts[i % 3], "1", "0", "");
            expected += cents[i % 3];
            fuel += i % 2 == 0 ? cents[i % 3] : 0;
        }
        transaction.Commit();
    }
    const auto money = [](qint64 c) {
        return QLocale(QLocale::English).toString(c / 100) +
               QStringLiteral(".%1").arg(c % 100, 2, 10, QLatin1Char('0'));
    };
    ASSERT_EQ(money(expected), QStringLiteral("33,803.44"));  // where a double sum drifts
    auto window = Open();
    EXPECT_EQ(grid->model()->rowCount(), 5000);
    EXPECT_EQ(Total(), money(expected));
    Pick(filterCategory, QStringLiteral("Fuel"));
    EXPECT_EQ(grid->model()->rowCount(), 2500);
    EXPECT_EQ(Total(), money(fuel));
}

TEST_F(ExpenseWindow, FiltersAloneAndTogether) {
    logbook.db().Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (2, 'Street Car')"));
    logbook.db().Execute(
        QStringLiteral("INSERT INTO tblEvents (lEvent_id, sEvent_nm) VALUES (40, 'Opener')"));
    Insert(1, "03/01/2024", 1, "10.00", "1", "40", "gas at the opener");
    Insert(2, "04/01/2024", 2, "55.50", "2", "0", "entry");
    Insert(3, "05/01/2024", 1, "7.25", "0", "0", "no car");
    Insert(4, "06/01/2024", 4, "300", "1", "77", "event gone");
    auto window = Open();
    EXPECT_EQ(Ids(), (QStringList{"1", "2", "3", "4"}));
    EXPECT_EQ(Total(), QStringLiteral("372.75"));
    EXPECT_EQ(window->CurrentRecordId(), 1);
    // No car stays under all cars, with an empty car; a gone event says so.
    EXPECT_EQ(Cell(2, 4), QString());
    EXPECT_EQ(Cell(3, 5), QStringLiteral("(Event was deleted)"));
    EXPECT_EQ(Cell(0, 5), QStringLiteral("Opener"));

    Pick(filterCar, QStringLiteral("Street Car"));
    EXPECT_EQ(Ids(), (QStringList{"2"}));
    EXPECT_EQ(window->CurrentRecordId(), 2);  // the shown expense follows
    Pick(filterCar, QStringLiteral("<All Cars>"));
    Pick(filterCategory, QStringLiteral("Fuel"));
    EXPECT_EQ(Ids(), (QStringList{"1", "3"}));
    EXPECT_EQ(Total(), QStringLiteral("17.25"));
    Pick(filterCategory, QStringLiteral("<All Categories>"));
    Pick(filterEvent, QStringLiteral("Opener"));
    EXPECT_EQ(Ids(), (QStringList{"1"}));
    Pick(filterEvent, QStringLiteral("<All Events>"));

    Type(from, QStringLiteral("04/01/2024"));
    EXPECT_EQ(Ids().size(), 4);  // dates count once the box is left
    Leave(from);
    EXPECT_EQ(Ids(), (QStringList{"2", "3", "4"}));
    Type(to, QStringLiteral("05/01/2024"));
    Leave(to);
    EXPECT_EQ(Ids(), (QStringList{"2", "3"}));

    Pick(filterCar, QStringLiteral("My Race Car"));  // with the dates: nothing
    EXPECT_TRUE(Ids().isEmpty());
    EXPECT_EQ(Total(), QStringLiteral("0.00"));
    Pick(filterCategory, QStringLiteral("Fuel"));
    Type(from, QString());
    Leave(from);
    EXPECT_EQ(Ids(), (QStringList{"1"}));
    EXPECT_EQ(Total(), QStringLiteral("10.00"));
}

TEST_F(ExpenseWindow, ATypedCategoryIsAddedAndAnotherLineAsksToSave) {
    Insert(1, "03/01/2024", 1, "10", "1", "0", "first");
    Insert(2, "03/02/2024", 2, "20", "1", "0", "second");
    auto window = Open();
    Type(category, QStringLiteral("Safety Gear"));
    messages.answer(MsgAnswer::Yes);
    Leave(category);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, QStringLiteral("Add Safety Gear"));
    EXPECT_EQ(messages.last().buttons, MsgButtons::YesNo);
    const qint64 added = Scalar(QStringLiteral("SELECT lExpenseCategory_id FROM "
                                               "tblExpenseCategory WHERE sExpenseCategory_nm = "
                                               "'Safety Gear'"))
                             .toLongLong();
    ASSERT_GT(added, 10);
    EXPECT_EQ(category->currentData().toLongLong(), added);
    EXPECT_GE(filterCategory->findText(QStringLiteral("Safety Gear")), 0);

    messages.answer(MsgAnswer::Yes);
    const QRect line = grid->visualRect(grid->model()->index(1, 2));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, line.center());
    EXPECT_EQ(messages.last().title, QStringLiteral("Different Expense Line Selected"));
    EXPECT_EQ(window->CurrentRecordId(), 2);
    EXPECT_EQ(
        Scalar(QStringLiteral("SELECT lExpenseCategory_id FROM tblExpenses WHERE lExpense_id = 1")),
        added);
    EXPECT_EQ(Cell(0, 3), QStringLiteral("Safety Gear"));
}

TEST_F(ExpenseWindow, AnAmountTheLogbookCantKeepIsRefused) {
    auto window = Open();
    Pick(category, QStringLiteral("Parts"));
    // Past the cents the logbook keeps, and past the currency itself.
    for (const char* typed : {"98765432109876.54", "99999999999999999999"}) {
        Type(amount, QString::fromLatin1(typed));
        Leave(amount);
        EXPECT_EQ(amount->text(), QString::fromLatin1(typed));  // left as typed
        SaveFails(*window, "Expense Amount Is Too Large a Number", "txtExpense_amt");
    }
    // No number at all, pasted.
    QApplication::clipboard()->setText(QStringLiteral("12.3.4"));
    Type(amount, QString());
    QTest::keyClick(amount, Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(amount->text(), QStringLiteral("12.3.4"));
    SaveFails(*window, "Expense Amount Must Be a Number", "txtExpense_amt");
    EXPECT_EQ(Count(), 0);
    EXPECT_TRUE(window->RecordAdd());

    Type(amount, QStringLiteral("9999999999.99"));
    Press(*window, tools::kSave);
    EXPECT_EQ(Total(), QStringLiteral("9,999,999,999.99"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT cExpense_amt FROM tblExpenses"))
                  .value<store::Currency>()
                  .units,
              99999999999900);
}

}  // namespace

TEST_F(ExpenseWindow, FileExportWritesTheListAsShownOrWithItsStoredValues) {
    Insert(1, "03/15/2024", 10, "1234567.89", "1", "0", "Engine, \"fresh\"");
    Insert(2, "03/16/2024", 10, "0.1", "0", "0", "=SUM(A1)");
    auto window = Open();
    QTemporaryDir dir;
    const auto exportAs = [&](const QString& name, bool raw) {
        bool driven = false;
        QTimer::singleShot(0, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            Type(Child<QLineEdit>(*dialog, "txtFileName"), dir.filePath(name));
            if (raw) {
                auto* option = Child<QRadioButton>(*dialog, "optRaw");
                QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
            }
            QTest::mouseClick(Child<QCheckBox>(*dialog, "chkByteOrderMark"), Qt::LeftButton);
            QTest::mouseClick(Child<QPushButton>(*dialog, "cmdExport"), Qt::LeftButton);
            driven = true;
        });
        Press(*window, tools::kExport);
        EXPECT_TRUE(driven);
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
    };
    const QStringList shown = exportAs(QStringLiteral("shown.csv"), false);
    EXPECT_EQ(shown.value(0), QStringLiteral("Date,Amount,Category,Car,Event,Description"));
    EXPECT_EQ(
        shown.value(1),
        QStringLiteral("03/15/2024,\"1,234,567.89\",Other,My Race Car,,\"Engine, \"\"fresh\"\"\""));
    // A cell a spreadsheet would take for a formula is written so that it never runs.
    EXPECT_EQ(shown.value(2), QStringLiteral("03/16/2024,0.10,Other,,,'=SUM(A1)"));
    const QStringList raw = exportAs(QStringLiteral("raw.csv"), true);
    EXPECT_EQ(raw.value(1),
              QStringLiteral("2024-03-15,1234567.89,Other,My Race Car,,\"Engine, \"\"fresh\"\"\""));
    EXPECT_EQ(raw.value(2), QStringLiteral("2024-03-16,0.1,Other,,,'=SUM(A1)"));
}
