// What the racer types into the record windows and how the keyboard drives them: notes behind
// their hints, notes that start with "<", impossible dates, numbers their columns can't hold,
// shortcuts, mnemonics, Tab and Enter, and the tools' tips.

#include "common/recordtools.h"
#include "common/tools.h"
#include "garage/ui/frmEvent.h"
#include "garage/ui/frmMaintenance.h"
#include "garage/ui/frmTrack.h"
#include "support/gui.h"
#include "support/tooltable.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>

using namespace slipbook;
using namespace slipbook::test;

namespace {

struct Entry : WindowTest {
    template <class W>
    std::unique_ptr<W> Open() {
        auto window = std::make_unique<W>(Context());
        ShowActive(*window);
        return window;
    }
    QString Text(const QString& sql) { return Scalar(sql).toString(); }
    void ClickInto(QWidget* field) {
        auto* pane = qobject_cast<QPlainTextEdit*>(field);
        QTest::mouseClick(pane != nullptr ? pane->viewport() : field, Qt::LeftButton, {},
                          QPoint(4, 4));
        // What the program does after the click, before the next key comes.
        QApplication::processEvents();
        EXPECT_TRUE(field->hasFocus()) << field->objectName().toStdString();
    }
    void Key(QWidget& window, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = window.focusWidget() != nullptr ? window.focusWidget() : &window;
        QTest::keyClick(target, static_cast<Qt::Key>(key), modifiers);
    }
    QStringList Shown() const {
        QStringList texts;
        for (const Message& m : messages.shown) {
            texts << m.text;
        }
        return texts;
    }
};

TEST_F(Entry, NotesTypedBehindTheirHintAreKeptToTheLetter) {
    // By mouse, into an empty event note.
    main.state.event.id = 1;
    auto event = Open<garage::frmEvent>();
    auto* notes = Child<QPlainTextEdit>(*event, "rtbEventNotes_tx");
    EXPECT_EQ(notes->placeholderText(), QStringLiteral("<Type notes here>"));
    ClickInto(notes);
    QTest::keyClicks(notes, QStringLiteral("Clean pass"));
    Key(*event, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Text(QStringLiteral("SELECT sEventNotes_tx FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Clean pass"));

    // By Tab from the box before it.
    Type(notes, QString());
    Key(*event, Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(Scalar(QStringLiteral("SELECT sEventNotes_tx FROM tblEvents")).isNull());
    ClickInto(Child<QLineEdit>(*event, "txtPurse_amt"));
    Key(*event, Qt::Key_Tab);
    ASSERT_TRUE(notes->hasFocus());
    QTest::keyClicks(notes, QStringLiteral("'tow strap'"));
    Key(*event, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Text(QStringLiteral("SELECT sEventNotes_tx FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("'tow strap'"));

    // By a click on the track's tab, then into its pane; and text that starts with "<".
    main.state.track.id = 1;
    auto track = Open<garage::frmTrack>();
    auto* tabs = Child<QTabWidget>(*track, "sstabTrack");
    QTabBar* bar = tabs->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
    auto* address = Child<QPlainTextEdit>(*track, "txtTrackAddress_tx");
    ClickInto(address);
    QTest::keyClicks(address, QStringLiteral("1 Strip Rd"));
    auto* trackNotes = Child<QPlainTextEdit>(*track, "rtbTrackNotes_tx");
    ClickInto(trackNotes);
    QTest::keyClicks(trackNotes, QStringLiteral("<3 psi on the left rear"));
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(0).center());
    auto* directions = Child<QPlainTextEdit>(*track, "rtbTrackDirections_tx");
    ClickInto(directions);
    QTest::keyClicks(directions, QStringLiteral("<b>bold</b> left at the light"));
    Key(*track, Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(messages.shown.empty()) << Shown().join(u'|').toStdString();
    EXPECT_EQ(Text(QStringLiteral("SELECT sTrackNotes_tx FROM tblTracks WHERE lTrack_id = 1")),
              QStringLiteral("<3 psi on the left rear"));
    EXPECT_EQ(Text(QStringLiteral("SELECT sTrackDirections_tx FROM tblTracks WHERE lTrack_id = 1")),
              QStringLiteral("<b>bold</b> left at the light"));
    track.reset();
    auto again = Open<garage::frmTrack>();
    EXPECT_EQ(Child<QPlainTextEdit>(*again, "rtbTrackNotes_tx")->toPlainText(),
              QStringLiteral("<3 psi on the left rear"));

    // A hint an older logbook stored shows as no note, and is not written back.
    logbook.db().Execute(
        QStringLiteral("UPDATE tblEvents SET sEventNotes_tx = '<Type notes here>'"));
    event.reset();
    event = Open<garage::frmEvent>();
    notes = Child<QPlainTextEdit>(*event, "rtbEventNotes_tx");
    EXPECT_HINT(notes, "<Type notes here>");
}

TEST_F(Entry, AnImpossibleDateIsKeptAndNamed) {
    main.state.storedTool = tools::kNew;
    auto event = Open<garage::frmEvent>();
    auto* start = Child<QLineEdit>(*event, "mebEventStart_dt");
    auto* end = Child<QLineEdit>(*event, "mebEventEnd_dt");
    ClickInto(start);
    QTest::keyClicks(start, QStringLiteral("13452026"));
    Key(*event, Qt::Key_Tab);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, QStringLiteral("Invalid Start Date, Use MM/DD/YYYY Format"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(start->displayText(), QStringLiteral("13/45/2026"));
    EXPECT_TRUE(start->hasFocus());
    EXPECT_EQ(end->displayText(), QStringLiteral("__/__/____"));  // not copied on

    // Put right, it is copied to the end date as usual and nothing more is said.
    start->selectAll();
    QTest::keyClicks(start, QStringLiteral("07042026"));
    Key(*event, Qt::Key_Tab);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(end->displayText(), QStringLiteral("07/04/2026"));

    auto maintenance = Open<garage::frmMaintenance>();
    auto* date = Child<QLineEdit>(*maintenance, "mebMaintenance_dt");
    ClickInto(date);
    QTest::keyClicks(date, QStringLiteral("02302026"));
    Key(*maintenance, Qt::Key_Tab);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Invalid Maintenance Date, Use MM/DD/YYYY Format"));
    EXPECT_EQ(date->displayText(), QStringLiteral("02/30/2026"));
}

TEST_F(Entry, NumbersBeyondTheirColumnsAreRefusedByName) {
    main.state.event.id = 1;
    auto event = Open<garage::frmEvent>();
    auto* purse = Child<QLineEdit>(*event, "txtPurse_amt");
    ClickInto(purse);
    QTest::keyClicks(purse, QStringLiteral("99999999999999999999"));
    Key(*event, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(messages.last().text, QStringLiteral("Purse Is Too Large a Number"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_TRUE(purse->hasFocus());
    EXPECT_EQ(
        Scalar(QStringLiteral("SELECT cPurse_amt FROM tblEvents WHERE lEvent_id = 1")).toDouble(),
        0.0);
    EXPECT_TRUE(event->DataChanged());

    auto maintenance = Open<garage::frmMaintenance>();
    auto* scheduled = Child<QLineEdit>(*maintenance, "txtScheduledRuns");
    const double before =
        Scalar(QStringLiteral("SELECT iScheduledRuns FROM tblMaintenance WHERE lMaintenance_id = "
                              "%1")
                   .arg(maintenance->CurrentRecordId()))
            .toDouble();
    ClickInto(scheduled);
    QTest::keyClicks(scheduled, QStringLiteral("40000"));
    Key(*maintenance, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Scheduled Runs Must Be a Whole Number From -32,768 To 32,767"));
    EXPECT_EQ(Scalar(QStringLiteral(
                         "SELECT iScheduledRuns FROM tblMaintenance WHERE lMaintenance_id = %1")
                         .arg(maintenance->CurrentRecordId()))
                  .toDouble(),
              before);
}

TEST_F(Entry, TheKeyboardSavesClosesAndMovesOn) {
    main.state.event.id = 1;
    auto window = Open<garage::frmEvent>();
    auto* name = Child<QLineEdit>(*window, "txtEvent_nm");
    ClickInto(name);
    QTest::keyClicks(name, QStringLiteral("Spring Nationals"));
    // Enter moves on from a one-line box, as Tab does.
    Key(*window, Qt::Key_Return);
    EXPECT_EQ(FocusName(*window), QStringLiteral("cboTracks"));
    Key(*window, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Text(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Spring Nationals"));
    EXPECT_FALSE(window->DataChanged());

    // Escape asks first; Cancel stays, No closes without saving.
    QPointer<QWidget> alive = window.get();
    ClickInto(name);
    QTest::keyClicks(name, QStringLiteral(" Day 2"));
    messages.answer(MsgAnswer::Cancel);
    Key(*window, Qt::Key_Escape);
    EXPECT_EQ(messages.last().text, QStringLiteral("Data Has Been Changed\nSave Changes ?"));
    EXPECT_TRUE(window->isVisible());
    messages.answer(MsgAnswer::No);
    Key(*window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Text(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Spring Nationals"));

    // Ctrl+Enter saves and closes.
    window = Open<garage::frmEvent>();
    name = Child<QLineEdit>(*window, "txtEvent_nm");
    ClickInto(name);
    QTest::keyClicks(name, QStringLiteral("Fall Classic"));
    Key(*window, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Text(QStringLiteral("SELECT sEvent_nm FROM tblEvents WHERE lEvent_id = 1")),
              QStringLiteral("Fall Classic"));

    // Tab leaves a description pane instead of typing a tab into it.
    auto maintenance = Open<garage::frmMaintenance>();
    auto* description = Child<QPlainTextEdit>(*maintenance, "rtbMaintenanceNotes_tx");
    ClickInto(description);
    Key(*maintenance, Qt::Key_Tab);
    EXPECT_FALSE(description->hasFocus());
    EXPECT_FALSE(description->toPlainText().contains(u'\t'));
    // Ctrl+Enter in a pane saves and closes too, rather than breaking the line.
    const qint64 item = maintenance->CurrentRecordId();
    ClickInto(description);
    QTest::keyClicks(description, QStringLiteral(" soon"));
    Key(*maintenance, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(maintenance->isVisible());
    EXPECT_TRUE(Text(QStringLiteral("SELECT sMaintenanceNotes_tx FROM tblMaintenance WHERE "
                                    "lMaintenance_id = %1")
                         .arg(item))
                    .contains(QStringLiteral(" soon")));
}

TEST_F(Entry, MenusHaveOneMnemonicEachAndToolsSayWhatTheyDo) {
    main.state.event.id = 1;
    std::vector<std::unique_ptr<RecordWindow>> windows;
    windows.push_back(Open<garage::frmEvent>());
    windows.push_back(Open<garage::frmTrack>());
    windows.push_back(Open<garage::frmMaintenance>());
    for (const auto& window : windows) {
        const std::string name = window->objectName().toStdString();
        for (QMenu* menu : window->findChildren<QMenu*>()) {
            QHash<QChar, QString> taken;
            for (QAction* action : menu->actions()) {
                const QString text = action->text();
                const qsizetype amp = text.indexOf(u'&');
                if (action->isSeparator() || amp < 0 || amp + 1 >= text.size()) {
                    continue;
                }
                const QChar key = text[amp + 1].toLower();
                EXPECT_FALSE(taken.contains(key))
                    << name << ": " << text.toStdString() << " and "
                    << taken.value(key).toStdString() << " share one mnemonic";
                taken.insert(key, text);
            }
        }
        for (QAction* action : window->toolBar()->actions()) {
            if (!action->isSeparator()) {
                EXPECT_FALSE(action->toolTip().isEmpty()) << name;
                EXPECT_NE(action->toolTip(), QStringLiteral("Not available yet")) << name;
                EXPECT_NE(action->toolTip(), action->text().remove(u'&')) << name;
            }
        }
    }
    EXPECT_EQ(windows[0]->tool(tools::kSaveandClose)->statusTip(),
              QStringLiteral("Save this event and close the window"));
}

TEST_F(Entry, RecordWindowsAreBuiltFromTheirToolTable) {
    main.state.event.id = 1;
    std::vector<std::pair<std::unique_ptr<RecordWindow>, QString>> windows;
    windows.emplace_back(Open<garage::frmEvent>(), QStringLiteral("event"));
    windows.emplace_back(Open<garage::frmTrack>(), QStringLiteral("track"));
    windows.emplace_back(Open<garage::frmMaintenance>(), QStringLiteral("maintenance item"));
    for (const auto& [window, noun] : windows) {
        SCOPED_TRACE(window->objectName().toStdString());
        test::ExpectBuiltFromTable(*window, window->findChild<QMenuBar*>(), window->toolBar(),
                                   RecordTools(), RecordMenus(),
                                   [&w = *window](const QString& id) { return w.tool(id); });
        // Tips name the window's record and the tool's first key; nothing typed, nothing to save.
        for (const tools::Tool& t : RecordTools()) {
            QAction* a = window->tool(t.id);
            ASSERT_NE(a, nullptr);
            if (t.startsDisabled) {
                EXPECT_FALSE(a->isEnabled()) << qPrintable(a->objectName());
            }
            if (t.tip == nullptr) {
                continue;
            }
            const QString tip = QString::fromUtf8(t.tip).replace(QStringLiteral("%1"), noun);
            EXPECT_EQ(a->statusTip(), tip);
            EXPECT_EQ(a->toolTip(),
                      a->shortcuts().isEmpty()
                          ? tip
                          : tip + QStringLiteral(" (") +
                                a->shortcuts().first().toString(QKeySequence::NativeText) + u')');
        }
    }
}

}  // namespace
