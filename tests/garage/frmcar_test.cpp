// The car window: a new car and its checks, the one default car, the delete with everything the
// car owns, and the set-up buttons' save question.

#include "garage/ui/frmCar.h"
#include "common/tools.h"
#include "store/recordset.h"
#include "support/gui.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

using namespace slipbook;
using namespace slipbook::test;
using garage::frmCar;

namespace {

const QString kSetupTitle = QStringLiteral("Loading Tune-Up Setup Window");
const QString kSetupText = QStringLiteral(
    "The Car information you've entered so far must be saved before continuing.  Save it now?");

struct CarWindow : WindowTest {
    std::unique_ptr<frmCar> Open() {
        auto window = std::make_unique<frmCar>(Context());
        name = Child<QLineEdit>(*window, "txtCar_nm");
        number = Child<QLineEdit>(*window, "txtCar_num");
        weight = Child<QLineEdit>(*window, "txtCar_weight");
        carry = Child<QCheckBox>(*window, "chkCarryForward");
        isDefault = Child<QCheckBox>(*window, "chkDefault_fl");
        notes = Child<QPlainTextEdit>(*window, "rtbCarNotes_tx");
        list = Child<QListWidget>(*window, "lstCars");
        ShowActive(*window);
        return window;
    }
    void ClickEntry(const QString& text) {
        const auto found = list->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << text.toStdString();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(found.first()).center());
    }
    // On the box itself: a check box's row is wider than what answers a click.
    static void Click(QCheckBox* box) {
        QStyleOptionButton option;
        option.initFrom(box);
        const QRect mark = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
        QTest::mouseClick(box, Qt::LeftButton, {}, mark.center());
    }
    void Click(QWidget& window, const char* button) {
        QTest::mouseClick(Child<QPushButton>(window, QString::fromLatin1(button)), Qt::LeftButton);
    }
    QVariant Column(qint64 carId, const char* column) {
        return Scalar(
            QStringLiteral("SELECT %1 FROM tblCars WHERE lCar_id = %2").arg(column).arg(carId));
    }
    // The ids of the cars flagged default, "1,2".
    QString DefaultCars() {
        return Scalar(QStringLiteral(
                          "SELECT group_concat(lCar_id) FROM tblCars WHERE bDefault_fl = True"))
            .toString();
    }
    qint64 Count(const QString& table, qint64 carId) {
        return Scalar(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE lCar_id = %2")
                          .arg(table)
                          .arg(carId))
            .toLongLong();
    }
    void AddDragster() {
        logbook.db().Execute(QStringLiteral(
            "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, 'Dragster', '2')"));
    }

    QLineEdit* name = nullptr;
    QLineEdit* number = nullptr;
    QLineEdit* weight = nullptr;
    QCheckBox* carry = nullptr;
    QCheckBox* isDefault = nullptr;
    QPlainTextEdit* notes = nullptr;
    QListWidget* list = nullptr;
};

TEST_F(CarWindow, ANewCarIsCheckedThenSavedWithItsDefaults) {
    main.state.storedTool = tools::kNew;
    auto window = Open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("New - Car"));
    EXPECT_HINT(notes, "<Type notes here>");

    // Each check in turn, with the focus on its box; nothing is written meanwhile.
    Type(weight, QStringLiteral("3-0"));
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.last().text, QStringLiteral("Car Name Must Be Filled In"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtCar_nm"));
    Type(name, QStringLiteral("Blue Bird"));
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.last().text, QStringLiteral("Car Number Must Be Filled In"));
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtCar_num"));
    Type(number, QStringLiteral("427"));
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.last().text, QStringLiteral("Weight Must Be a Number"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtCar_weight"));
    Type(weight, QStringLiteral("40000"));
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Weight Must Be a Whole Number From -32,768 To 32,767"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblCars")).toLongLong(), 1);
    EXPECT_EQ(messages.shown.size(), 4u);

    Type(weight, QStringLiteral("3150"));
    Click(carry);
    Type(notes, QStringLiteral("Runs on 'race' gas"));
    main.calls.clear();
    Press(*window, tools::kSave);
    ASSERT_EQ(messages.shown.size(), 4u) << messages.last().text.toStdString();
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblCars"}));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Blue Bird - Car"));
    const qint64 id = window->CurrentRecordId();
    ASSERT_GT(id, 1);
    EXPECT_EQ(Column(id, "iCarWeight_val").toLongLong(), 3150);
    EXPECT_EQ(Column(id, "sCarCarb_typ").toString(), QStringLiteral("CARB"));
    EXPECT_EQ(Column(id, "sCarFuel_typ").toString(), QStringLiteral("GAS"));
    EXPECT_EQ(Column(id, "sCarNotes_tx").toString(), QStringLiteral("Runs on 'race' gas"));
    EXPECT_NE(Column(id, "lCarryForward_info").toLongLong(), 0);
    EXPECT_TRUE(Column(id, "sBaseJet").isNull());
    EXPECT_EQ(DefaultCars(), QStringLiteral("1"));
    Grab(*window, QStringLiteral("frmCar"));
}

TEST_F(CarWindow, TheDefaultFlagMovesFromOneCarToAnother) {
    AddDragster();
    auto window = Open();
    EXPECT_EQ(name->text(), QStringLiteral("My Race Car"));
    EXPECT_TRUE(isDefault->isChecked());
    ClickEntry(QStringLiteral("Dragster"));
    EXPECT_FALSE(isDefault->isChecked());
    EXPECT_FALSE(window->tool(tools::kSave)->isEnabled());

    Click(isDefault);
    EXPECT_TRUE(window->DataChanged());
    Press(*window, tools::kSave);
    EXPECT_EQ(DefaultCars(), QStringLiteral("2"));
    ClickEntry(QStringLiteral("My Race Car"));
    EXPECT_FALSE(isDefault->isChecked());

    // A pick in the main window while a car is shown moves the flag; saving other fields of
    // that car leaves it there.
    logbook.db().Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False"));
    logbook.db().Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = True WHERE lCar_id = 1"));
    ClickEntry(QStringLiteral("Dragster"));
    Type(weight, QStringLiteral("2100"));
    Press(*window, tools::kSave);
    EXPECT_EQ(DefaultCars(), QStringLiteral("1"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(CarWindow, ACarWithAnOddNameIsDeletedWithItsRowsAllTogetherOrNotAtAll) {
    // A car with runs keeps its delete tool off.
    logbook.db().Execute(QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id) VALUES (1, 1)"));
    auto window = Open();
    EXPECT_FALSE(window->tool(tools::kDelete)->isEnabled());

    const QString odd = QStringLiteral("O'Brien's \"Rail\"; --");
    Press(*window, tools::kNew);
    Type(name, odd);
    Type(number, QStringLiteral("7'"));
    Press(*window, tools::kSave);
    const qint64 id = window->CurrentRecordId();
    EXPECT_EQ(Column(id, "sCar_nm").toString(), odd);
    for (const char* row : {"INSERT INTO tblCarSetup (lRun_id, lCar_id) VALUES (900, %1)",
                            "INSERT INTO tblMaintenance (lCar_id) VALUES (%1)"}) {
        logbook.db().Execute(QString::fromLatin1(row).arg(id));
    }
    ASSERT_TRUE(window->tool(tools::kDelete)->isEnabled());

    // The setup runs go, then the maintenance refuses: nothing goes, and the window goes on.
    logbook.db().ExecRaw(
        QStringLiteral("CREATE TRIGGER keep BEFORE DELETE ON tblMaintenance "
                       "BEGIN SELECT RAISE(ABORT, 'kept'); END"));
    main.calls.clear();
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.last().title, QStringLiteral("Error"));
    for (const char* table : {"tblCars", "tblCarSetup", "tblMaintenance"}) {
        EXPECT_EQ(Count(QString::fromLatin1(table), id), 1) << table;
    }
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_EQ(name->text(), odd);
    Type(weight, QStringLiteral("1800"));
    Press(*window, tools::kSave);
    EXPECT_EQ(Column(id, "iCarWeight_val").toLongLong(), 1800);

    logbook.db().ExecRaw(QStringLiteral("DROP TRIGGER keep"));
    main.calls.clear();
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.last().title, QStringLiteral("Delete"));
    EXPECT_EQ(messages.last().text, QStringLiteral("Delete The ") + odd +
                                        QStringLiteral(" - Car Record For '") + odd + u'\'');
    EXPECT_EQ(messages.last().defaultAnswer, MsgAnswer::No);
    for (const char* table : {"tblCars", "tblCarSetup", "tblMaintenance"}) {
        EXPECT_EQ(Count(QString::fromLatin1(table), id), 0) << table;
    }
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblCarSetup",
                                       "recordsChanged tblMaintenance", "recordsChanged tblCars"}));
    EXPECT_EQ(list->count(), 1);
    EXPECT_EQ(name->text(), QStringLiteral("My Race Car"));
}

TEST_F(CarWindow, SetupButtonsSaveAChangedCarFirst) {
    auto window = Open();
    // Unchanged: straight on.
    Click(*window, "sscmdDASetup");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(main.calls, (QStringList{"ShowWindow CarSetupDA 1"}));

    main.calls.clear();
    Type(weight, QStringLiteral("2950"));
    messages.answer(MsgAnswer::Cancel);
    Click(*window, "sscmdBaseSetup");
    EXPECT_EQ(messages.last().title, kSetupTitle);
    EXPECT_EQ(messages.last().text, kSetupText);
    EXPECT_EQ(messages.last().buttons, MsgButtons::OkCancel);
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_TRUE(window->DataChanged());
    EXPECT_EQ(Column(1, "iCarWeight_val").toLongLong(), 3000);

    messages.answer(MsgAnswer::Ok);
    Click(*window, "sscmdBaseSetup");
    EXPECT_EQ(Column(1, "iCarWeight_val").toLongLong(), 2950);
    EXPECT_FALSE(window->DataChanged());
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblCars", "ShowWindow CarTuneUp 1"}));

    // A new car that fails its checks opens nothing.
    main.calls.clear();
    Press(*window, tools::kNew);
    messages.answer(MsgAnswer::Ok);
    Click(*window, "sscmdTSSetup");
    EXPECT_EQ(messages.last().text, QStringLiteral("Car Name Must Be Filled In"));
    EXPECT_TRUE(main.calls.isEmpty());
}

}  // namespace
