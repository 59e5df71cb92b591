// The event window, and through it the record window pattern: opening, validation, saving,
// deleting, closing, and what the main window is told.

#include "garage/ui/frmEvent.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "store/currency.h"
#include "store/recordset.h"
#include "support/gui.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>

using namespace slipbook;
using namespace slipbook::test;
using garage::frmEvent;

namespace {

struct EventWindow : WindowTest {
    std::unique_ptr<frmEvent> Open() {
        auto window = std::make_unique<frmEvent>(Context());
        name = Child<QLineEdit>(*window, "txtEvent_nm");
        tracks = Child<QComboBox>(*window, "cboTracks");
        start = Child<QLineEdit>(*window, "mebEventStart_dt");
        end = Child<QLineEdit>(*window, "mebEventEnd_dt");
        classes = Child<QComboBox>(*window, "cboEventClass");
        purse = Child<QLineEdit>(*window, "txtPurse_amt");
        notes = Child<QPlainTextEdit>(*window, "rtbEventNotes_tx");
        list = Child<QListWidget>(*window, "lstEvents");
        return window;
    }
    // Fills every required field of a new event.
    void FillValid(const QString& eventName) {
        Type(name, eventName);
        Pick(tracks, "Home Track");
        Type(start, QStringLiteral("06/01/2024"));
        Type(end, QStringLiteral("06/02/2024"));
        Pick(classes, "Bracket Race");
    }

    QLineEdit* name = nullptr;
    QComboBox* tracks = nullptr;
    QLineEdit* start = nullptr;
    QLineEdit* end = nullptr;
    QComboBox* classes = nullptr;
    QLineEdit* purse = nullptr;
    QPlainTextEdit* notes = nullptr;
    QListWidget* list = nullptr;
};

TEST_F(EventWindow, OpensOnTheCurrentEventOrANewOne) {
    main.state.event.id = 1;
    auto window = Open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Test and Tune Day - Event"));
    EXPECT_EQ(name->text(), QStringLiteral("Test and Tune Day"));
    EXPECT_EQ(tracks->currentText(), QStringLiteral("Home Track"));
    EXPECT_EQ(start->displayText(), QStringLiteral("04/05/2003"));
    EXPECT_EQ(classes->currentText(), QStringLiteral("Test and Tune"));
    EXPECT_EQ(purse->text(), QStringLiteral("0"));
    EXPECT_HINT(notes, "<Type notes here>");
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_TRUE(window->tool(tools::kDelete)->isEnabled());
    EXPECT_FALSE(window->tool(tools::kSave)->isEnabled());
    EXPECT_FALSE(window->DataChanged());
    for (tools::ToolId id : {tools::kPrevious, tools::kNext, tools::kPrevItem, tools::kFirstItem,
                             tools::kNextItem, tools::kLastItem, tools::kContents, tools::kAbout}) {
        Press(*window, id);  // offered, and nothing happens
    }
    EXPECT_EQ(name->text(), QStringLiteral("Test and Tune Day"));
    EXPECT_TRUE(messages.shown.empty());
    ShowActive(*window);
    Grab(*window, QStringLiteral("frmEvent"));

    main.state.storedTool = tools::kNew;
    auto fresh = Open();
    EXPECT_TRUE(fresh->RecordAdd());
    EXPECT_EQ(fresh->windowTitle(), QStringLiteral("New - Event"));
    EXPECT_EQ(start->displayText(), QStringLiteral("__/__/____"));
    EXPECT_EQ(tracks->currentIndex(), -1);
    EXPECT_FALSE(fresh->tool(tools::kDelete)->isEnabled());
    EXPECT_TRUE(main.state.storedTool.isEmpty());
}

TEST_F(EventWindow, ValidatesInOrderAndFocusesTheField) {
    main.state.storedTool = tools::kNew;
    auto window = Open();
    ShowActive(*window);
    Type(notes, QStringLiteral("Typed first"));
    const auto save = [&](const char* message, const char* focus) {
        messages.shown.clear();
        Press(*window, tools::kSave);
        ASSERT_EQ(messages.shown.size(), 1u) << message;
        EXPECT_EQ(messages.last().text, QString::fromUtf8(message));
        EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
        EXPECT_EQ(messages.last().icon, MsgIcon::Critical);
        EXPECT_EQ(FocusName(*window), QString::fromUtf8(focus));
        EXPECT_TRUE(window->RecordAdd());
    };
    Type(name, QStringLiteral("   "));
    save("Event Description Must Be Filled In", "txtEvent_nm");
    Type(name, QStringLiteral("Spring Fling"));
    save("Track Must Be Selected", "cboTracks");
    Pick(tracks, "Home Track");
    save("Invalid Start Date, Use MM/DD/YYYY Format", "mebEventStart_dt");
    Type(start, QStringLiteral("13/45/2024"));
    save("Invalid Start Date, Use MM/DD/YYYY Format", "mebEventStart_dt");
    Type(start, QStringLiteral("04/13/2024"));
    save("Invalid End Date, Use MM/DD/YYYY Format", "mebEventEnd_dt");
    Type(end, QStringLiteral("04/14/2024"));
    save("Event Class Must Be Selected", "cboEventClass");

    Pick(classes, "Match Race");
    messages.shown.clear();
    Press(*window, tools::kSave);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(window->RecordAdd());
    EXPECT_FALSE(window->DataChanged());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Spring Fling - Event"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblEvents")).toInt(), 2);
}

TEST_F(EventWindow, NewWithChangesSavesFirstAndStaysWhenThatFails) {
    main.state.event.id = 1;
    auto window = Open();
    Type(name, QString());
    Press(*window, "ID_New");
    EXPECT_EQ(messages.last().text, QStringLiteral("Event Description Must Be Filled In"));
    EXPECT_FALSE(window->RecordAdd());
    EXPECT_TRUE(window->DataChanged());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Test and Tune Day - Event"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Test and Tune Day"));

    Type(name, QStringLiteral("Renamed Day"));
    Press(*window, "ID_New");
    EXPECT_TRUE(window->RecordAdd());
    EXPECT_FALSE(window->DataChanged());
    EXPECT_TRUE(name->text().isEmpty());
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Renamed Day"));
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("Renamed Day"));
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblEvents"}));
}

TEST_F(EventWindow, SaveAndReopenKeepEveryFieldExactly) {
    main.state.storedTool = tools::kNew;
    auto window = Open();
    window->SetShowEditsInRed(true);
    const QString eventName = QStringLiteral("Bob's \"Big\" Bracket Bash");
    const QString longNote =
        QStringLiteral("It's the 'final' round; \"quoted\"\nsecond line  ") + QString(4000, u'x');
    Type(name, eventName);
    EXPECT_EQ(name->palette().color(QPalette::Text), QColor(Qt::red));
    Pick(tracks, "Home Track");
    Type(start, QStringLiteral("06/01/2024"));
    Leave(start);
    EXPECT_EQ(end->displayText(), QStringLiteral("06/01/2024"));  // the end follows the start
    Type(end, QStringLiteral("06/03/2024"));
    Leave(start);
    EXPECT_EQ(end->displayText(), QStringLiteral("06/03/2024"));  // but only into an empty end
    Pick(classes, "Championship");
    QTest::keyClicks(purse, QStringLiteral("12a,5.0-0"));
    EXPECT_EQ(purse->text(), QStringLiteral("12500"));  // digits only
    Type(notes, longNote);
    Press(*window, "ID_Save");
    ASSERT_TRUE(messages.shown.empty()) << messages.last().text.toStdString();
    EXPECT_NE(name->palette().color(QPalette::Text), QColor(Qt::red));

    const qint64 id = Scalar(QStringLiteral("SELECT MAX(lEvent_id) FROM tblEvents")).toLongLong();
    auto rs = logbook.db().OpenRecordset(
        QStringLiteral("SELECT * FROM tblEvents WHERE lEvent_id = %1").arg(id));
    EXPECT_EQ(rs->Value(QStringLiteral("sEvent_nm")).toString(), eventName);
    EXPECT_EQ(rs->Value(QStringLiteral("lTrack_id")).toLongLong(), 1);
    EXPECT_EQ(rs->Value(QStringLiteral("dtEventStart_dt")).toDateTime().date(), QDate(2024, 6, 1));
    EXPECT_EQ(rs->Value(QStringLiteral("dtEventEnd_dt")).toDateTime().date(), QDate(2024, 6, 3));
    EXPECT_EQ(rs->Value(QStringLiteral("lEventClass_id")).toLongLong(), 5);
    EXPECT_EQ(rs->Value(QStringLiteral("cPurse_amt")).value<store::Currency>().toDouble(), 12500);
    EXPECT_EQ(rs->Value(QStringLiteral("sEventNotes_tx")).toString(), longNote);
    EXPECT_EQ(list->currentItem()->text(), eventName);

    window.reset();
    main.state.event.id = id;
    auto again = Open();
    EXPECT_EQ(again->windowTitle(), eventName + QStringLiteral(" - Event"));
    EXPECT_EQ(name->text(), eventName);
    EXPECT_EQ(start->displayText(), QStringLiteral("06/01/2024"));
    EXPECT_EQ(end->displayText(), QStringLiteral("06/03/2024"));
    EXPECT_EQ(classes->currentText(), QStringLiteral("Championship"));
    EXPECT_EQ(purse->text(), QStringLiteral("12,500"));
    EXPECT_EQ(notes->toPlainText(), longNote);

    // A purse typed with its grouping is a number again.
    Type(purse, QStringLiteral("1,500"));
    Press(*again, "ID_Save");
    EXPECT_EQ(
        Scalar(QStringLiteral("SELECT cPurse_amt FROM tblEvents WHERE lEvent_id = %1").arg(id))
            .value<store::Currency>()
            .toDouble(),
        1500);
}

TEST_F(EventWindow, ATypedClassIsOfferedForAddingBeforeTheSave) {
    main.state.storedTool = tools::kNew;
    auto window = Open();
    FillValid(QStringLiteral("Sportsman Day"));
    Type(classes, QStringLiteral("Sportsman Series"));
    messages.answer(MsgAnswer::No);
    Press(*window, tools::kSave);
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Add Sportsman Series"));
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(messages.shown[1].text, QStringLiteral("Event Class Must Be Selected"));
    EXPECT_TRUE(window->RecordAdd());

    messages.shown.clear();
    messages.answer(MsgAnswer::Yes);
    Leave(classes);
    const qint64 classId = Scalar(QStringLiteral("SELECT lEventClass_id FROM tblEventClass WHERE "
                                                 "sEventClass_nm = 'Sportsman Series'"))
                               .toLongLong();
    ASSERT_GT(classId, 5);
    EXPECT_EQ(classes->currentData().toLongLong(), classId);
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Scalar(QStringLiteral(
                  "SELECT lEventClass_id FROM tblEvents WHERE sEvent_nm = 'Sportsman Day'")),
              classId);

    // A typed name of a class in the list, in another case, is that class.
    Press(*window, tools::kNew);
    FillValid(QStringLiteral("Second Day"));
    Type(classes, QStringLiteral("match race"));
    Press(*window, "ID_Save");
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Scalar(QStringLiteral(
                  "SELECT lEventClass_id FROM tblEvents WHERE sEvent_nm = 'Second Day'")),
              4);
}

TEST_F(EventWindow, DeleteFollowsUseAndAsksFirst) {
    logbook.db().Execute(QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id) VALUES (1, 1)"));
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id, lEventClass_id) VALUES (2, "
        "'Fall Classic', 1, 1)"));
    main.state.event.id = 1;
    auto window = Open();
    EXPECT_FALSE(window->tool(tools::kDelete)->isEnabled());
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_TRUE(messages.shown.empty());

    list->setCurrentRow(1);
    EXPECT_EQ(name->text(), QStringLiteral("Fall Classic"));
    ASSERT_TRUE(window->tool(tools::kDelete)->isEnabled());
    messages.answer(MsgAnswer::No);  // the default
    QTest::keyClick(list, Qt::Key_Delete);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Delete The Fall Classic - Event Record For (Fall Classic)"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Delete"));
    EXPECT_EQ(messages.last().buttons, MsgButtons::YesNo);
    EXPECT_EQ(messages.last().defaultAnswer, MsgAnswer::No);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblEvents")).toInt(), 2);

    // Used since the tool was set up: the check runs again and nothing is asked.
    logbook.db().Execute(
        QStringLiteral("INSERT INTO tblExpenses (lEvent_id, cExpense_amt) VALUES (2, 10)"));
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_FALSE(window->tool(tools::kDelete)->isEnabled());
    logbook.db().Execute(QStringLiteral("DELETE * FROM tblExpenses"));

    list->setCurrentRow(0);
    list->setCurrentRow(1);
    main.calls.clear();
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblEvents")).toInt(), 1);
    EXPECT_EQ(list->count(), 1);
    EXPECT_EQ(name->text(), QStringLiteral("Test and Tune Day"));
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblEvents"}));
}

TEST_F(EventWindow, ClosingAsksToSaveAndActsOnTheAnswer) {
    main.state.event.id = 1;
    auto window = Open();
    ShowActive(*window);
    Type(name, QStringLiteral("Edited"));

    messages.answer(MsgAnswer::Cancel);
    EXPECT_FALSE(window->close());
    EXPECT_EQ(messages.last().text, QStringLiteral("Data Has Been Changed\nSave Changes ?"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Form Unload"));
    EXPECT_EQ(messages.last().buttons, MsgButtons::YesNoCancel);

    Type(name, QString());
    messages.answer(MsgAnswer::Yes);  // fails validation: the window stays
    EXPECT_FALSE(window->close());
    EXPECT_EQ(messages.last().text, QStringLiteral("Event Description Must Be Filled In"));

    Type(name, QStringLiteral("Saved On Closing"));
    messages.answer(MsgAnswer::Yes);
    EXPECT_TRUE(window->close());
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Saved On Closing"));

    auto other = Open();
    ShowActive(*other);
    Type(name, QStringLiteral("Thrown Away"));
    messages.answer(MsgAnswer::No);
    EXPECT_TRUE(other->close());
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Saved On Closing"));
}

TEST_F(EventWindow, AFailedSaveKeepsTheTypedRecordAndSaysWhy) {
    logbook.db().Execute(
        QStringLiteral("CREATE UNIQUE INDEX ixEventName ON tblEvents (sEvent_nm)"));
    main.state.storedTool = tools::kNew;
    auto window = Open();
    FillValid(QStringLiteral("Test and Tune Day"));
    Press(*window, tools::kSaveandClose);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, QStringLiteral("Duplicates Existing Record, Cannot Save"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Duplicate Record Error"));
    EXPECT_TRUE(window->RecordAdd());
    EXPECT_TRUE(window->DataChanged());
    EXPECT_EQ(name->text(), QStringLiteral("Test and Tune Day"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblEvents")).toInt(), 1);

    Type(name, QStringLiteral("Another Day"));
    Press(*window, "ID_Save");
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(list->count(), 2);
}

TEST_F(EventWindow, AnEntryWithoutARowIsNotFound) {
    main.state.event.id = 1;
    auto window = Open();
    auto* ghost = new QListWidgetItem(QStringLiteral("Ghost"), list);
    ghost->setData(Qt::UserRole, QVariant::fromValue(qint64{99}));
    list->setCurrentItem(ghost);
    EXPECT_EQ(messages.last().text, QStringLiteral("Record id 99 NOT Found"));
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_EQ(name->text(), QStringLiteral("Test and Tune Day"));

    // Insert in the list means New.
    QTest::keyClick(list, Qt::Key_Insert);
    EXPECT_TRUE(window->RecordAdd());
}

}  // namespace
