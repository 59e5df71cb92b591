#include "common/ui/formhelpers.h"
#include "common/tools.h"

#include "store/recordset.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

class FormHelpers : public ::testing::Test {};

QList<QAction*> EditTools(QObject* owner) {
    QList<QAction*> tools;
    for (tools::ToolId id : {tools::kCut, tools::kCopy, tools::kPaste, tools::kSelectAll}) {
        auto* action = new QAction(owner);
        action->setObjectName(id);
        tools << action;
    }
    return tools;
}

void Fill(QComboBox& combo, const QStringList& texts) {
    for (int i = 0; i < texts.size(); ++i) {
        combo.addItem(texts[i], QVariant::fromValue(qint64(10 * (i + 1))));
    }
}

// A window with three boxes in tab order, shown and active.
struct Form {
    QWidget window;
    QLineEdit* first = new QLineEdit;
    QLineEdit* second = new QLineEdit;
    QLineEdit* third = new QLineEdit;
    Form() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(first);
        layout->addWidget(second);
        layout->addWidget(third);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
};

}  // namespace

TEST_F(FormHelpers, SavePromptRestoresTheWindowAndAsks) {
    test::ScriptedMessages messages;
    QWidget window;
    window.showMinimized();
    ASSERT_TRUE(window.isMinimized());

    messages.answer(MsgAnswer::No);
    EXPECT_EQ(SavePrompt(&window, QStringLiteral("Save Event"), messages), MsgAnswer::No);
    EXPECT_FALSE(window.isMinimized());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, "Data Has Been Changed\nSave Changes ?");
    EXPECT_EQ(messages.last().title, "Save Event");
    EXPECT_EQ(messages.last().buttons, MsgButtons::YesNoCancel);
    EXPECT_EQ(messages.last().icon, MsgIcon::Question);
}

TEST_F(FormHelpers, FindsEntriesByDataAndByPrefix) {
    QComboBox combo;
    Fill(combo, {"Bracket Race", "Points Race", "Brackets", "Test and Tune"});
    EXPECT_EQ(ListFindData(&combo, 30), 2);
    EXPECT_EQ(ListFindData(&combo, 31), -1);

    QListWidget list;
    for (qint64 id : {5, 7, 7}) {
        auto* item = new QListWidgetItem(QString::number(id), &list);
        item->setData(Qt::UserRole, QVariant::fromValue(id));
    }
    EXPECT_EQ(ListFindData(&list, 7), 1);
    EXPECT_EQ(ListFindData(&list, 0), -1);

    EXPECT_EQ(ListFindPrefix(&combo, QStringLiteral("  brack ")), 0);
    EXPECT_EQ(ListFindPrefix(&combo, QStringLiteral("TEST")), 3);
    EXPECT_EQ(ListFindPrefix(&combo, QStringLiteral("Race")), -1);
    EXPECT_EQ(ComboFindPrefix(&combo, QStringLiteral("points")), 1);
    // A locked combo answers with its own selection.
    combo.setCurrentIndex(1);
    combo.setProperty("Locked", true);
    EXPECT_EQ(ListFindPrefix(&combo, QStringLiteral("Test")), 1);
    EXPECT_EQ(ComboFindPrefix(&combo, QStringLiteral("Test")), 3);
}

TEST_F(FormHelpers, ComboAutoCompleteSelectsTheUntypedPart) {
    QComboBox combo;
    combo.setEditable(true);
    combo.setCompleter(nullptr);
    Fill(combo, {"Apple", "Banana", "Bandit"});
    combo.setCurrentIndex(-1);
    QLineEdit* edit = combo.lineEdit();

    combo.setEditText(QStringLiteral("ban"));
    ComboAutoComplete(&combo, Qt::Key_N);
    EXPECT_EQ(combo.currentIndex(), 1);
    EXPECT_EQ(combo.currentText(), "Banana");
    EXPECT_EQ(edit->selectionStart(), 3);
    EXPECT_EQ(edit->selectedText(), "ana");

    // The entry already current: the half-typed text is still completed.
    combo.setEditText(QStringLiteral("b"));
    ComboAutoComplete(&combo, Qt::Key_B);
    EXPECT_EQ(combo.currentText(), "Banana");
    EXPECT_EQ(edit->selectedText(), "anana");

    // Digits and other keys below "A" leave the text alone, as does a miss.
    combo.setEditText(QStringLiteral("ap"));
    ComboAutoComplete(&combo, Qt::Key_1);
    EXPECT_EQ(combo.currentText(), "ap");
    combo.setEditText(QStringLiteral("cherry"));
    ComboAutoComplete(&combo, Qt::Key_Y);
    EXPECT_EQ(combo.currentText(), "cherry");
    EXPECT_EQ(combo.currentIndex(), 1);

    // Enter completes the text and selects all of it.
    combo.setEditText(QStringLiteral("bAnd"));
    ComboAutoComplete(&combo, Qt::Key_Return);
    EXPECT_EQ(combo.currentIndex(), 2);
    EXPECT_EQ(edit->selectedText(), "Bandit");
    combo.setEditText(QString());
    ComboAutoComplete(&combo, Qt::Key_Return);
    EXPECT_EQ(combo.currentText(), "");

    // A non-editable combo has no text to complete.
    QComboBox fixed;
    Fill(fixed, {"Apple"});
    ComboAutoComplete(&fixed, Qt::Key_A);
    EXPECT_EQ(fixed.currentIndex(), 0);
}

TEST_F(FormHelpers, FillsListsFromATableAndAddsNames) {
    test::TempLogbook logbook;
    store::Database& db = logbook.db();

    QStringList names;
    QList<qint64> ids;
    auto rs = db.OpenRecordset(QStringLiteral("SELECT lEventClass_id, sEventClass_nm FROM "
                                              "tblEventClass"),
                               store::RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        ids << rs->Value(0).toLongLong();
        names << rs->Value(1).toString();
    }
    ASSERT_FALSE(names.isEmpty());

    QComboBox combo;
    combo.addItem(QStringLiteral("stale"));
    QSignalSpy changes(&combo, &QComboBox::currentIndexChanged);
    ListFillFromTable(&combo, QStringLiteral("lEventClass_id"), QStringLiteral("sEventClass_nm"),
                      QStringLiteral("tblEventClass"), QStringLiteral("<None>"), db);
    ASSERT_EQ(combo.count(), names.size() + 1);
    EXPECT_EQ(combo.itemText(0), "<None>");
    EXPECT_EQ(combo.itemData(0).toLongLong(), 0);
    for (int i = 0; i < names.size(); ++i) {
        EXPECT_EQ(combo.itemText(i + 1), names[i]);
        EXPECT_EQ(combo.itemData(i + 1).toLongLong(), ids[i]);
    }
    EXPECT_EQ(combo.currentIndex(), -1);
    EXPECT_EQ(changes.count(), 0);

    const qint64 added = NameAdd(db, QStringLiteral("tblEventClass"),
                                 QStringLiteral("sEventClass_nm"), QStringLiteral("Index Race"));
    EXPECT_GT(added, *std::max_element(ids.begin(), ids.end()));
    const qint64 next = NameAdd(db, QStringLiteral("tblEventClass"),
                                QStringLiteral("sEventClass_nm"), QStringLiteral("Heads Up"));
    EXPECT_EQ(next, added + 1);

    QListWidget list;
    ListFillFromTable(&list, QStringLiteral("lEventClass_id"), QStringLiteral("sEventClass_nm"),
                      QStringLiteral("tblEventClass"), QString(), db);
    ASSERT_EQ(list.count(), names.size() + 2);
    EXPECT_EQ(list.item(0)->text(), names[0]);
    EXPECT_EQ(ListFindData(&list, added), names.size());
    EXPECT_EQ(list.item(names.size())->text(), "Index Race");
    EXPECT_EQ(list.item(names.size() + 1)->text(), "Heads Up");
}

TEST_F(FormHelpers, EditToolsCutCopyAndPaste) {
    QWidget owner;
    const QList<QAction*> tools = EditTools(&owner);
    QAction* cut = tools[0];
    QAction* copy = tools[1];
    QAction* paste = tools[2];
    QClipboard* clipboard = QApplication::clipboard();

    QLineEdit edit(QStringLiteral("hello world"));
    edit.setSelection(6, 5);
    EditToolsRefresh(tools, &edit);
    EXPECT_TRUE(cut->isEnabled());
    EXPECT_TRUE(copy->isEnabled());

    EditToolClick(tools::kCut, &edit, tools);
    EXPECT_EQ(clipboard->text(), "world");
    EXPECT_EQ(edit.text(), "hello ");
    EXPECT_FALSE(cut->isEnabled());
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_TRUE(paste->isEnabled());

    edit.setCursorPosition(0);
    EditToolClick(tools::kPaste, &edit, tools);
    EXPECT_EQ(edit.text(), "worldhello ");

    EditToolClick(tools::kSelectAll, &edit, tools);
    EXPECT_EQ(edit.selectedText(), "worldhello ");
    EXPECT_TRUE(copy->isEnabled());
    edit.setSelection(0, 5);
    EditToolClick(tools::kCopy, &edit, tools);
    EXPECT_EQ(clipboard->text(), "world");
    EXPECT_EQ(edit.text(), "worldhello ");

    // Pasting over a selection replaces it.
    edit.setSelection(5, 6);
    EditToolClick(tools::kPaste, &edit, tools);
    EXPECT_EQ(edit.text(), "worldworld");

    // A read-only box gives its text away but keeps it.
    QLineEdit locked(QStringLiteral("1.0234"));
    locked.setReadOnly(true);
    locked.selectAll();
    EditToolClick(tools::kCut, &locked, tools);
    EXPECT_EQ(clipboard->text(), "1.0234");
    EXPECT_EQ(locked.text(), "1.0234");

    // Notes boxes take plain text.
    QPlainTextEdit notes(QStringLiteral("line one\nline two"));
    notes.selectAll();
    EditToolClick(tools::kCut, &notes, tools);
    EXPECT_EQ(clipboard->text(), "line one\nline two");
    EXPECT_EQ(notes.toPlainText(), "");

    // Anything else is left alone, and offers nothing to cut.
    QPushButton button;
    cut->setEnabled(true);
    EditToolClick(tools::kPaste, &button, tools);
    EXPECT_FALSE(cut->isEnabled());
    clipboard->clear();
    EditToolsRefresh(tools, &edit);
    EXPECT_FALSE(paste->isEnabled());
}

TEST_F(FormHelpers, NumberBoxesFilterKeysPadAndMoveOn) {
    Form form;
    InstallNumericKeyFilter(form.first, 3);
    InstallNumericPad(form.first, 3);
    InstallNumericKeyFilter(form.second, -1);
    InstallSelectAllOnFocus(form.third);

    form.first->setFocus();
    // The "-" counts among the places behind the point once it stands there.
    QTest::keyClicks(form.first, QStringLiteral("1a2.3-4.56"));
    EXPECT_EQ(form.first->text(), "12.3-4");
    QTest::keyClick(form.first, Qt::Key_Backspace);
    EXPECT_EQ(form.first->text(), "12.3-");
    // With the whole text selected a new first digit is taken.
    form.first->selectAll();
    QTest::keyClick(form.first, Qt::Key_7);
    EXPECT_EQ(form.first->text(), "7");
    // Enter moves on, and leaving pads the number.
    QTest::keyClick(form.first, Qt::Key_Return);
    EXPECT_TRUE(form.second->hasFocus());
    EXPECT_EQ(form.first->text(), "7.000");

    QTest::keyClicks(form.second, QStringLiteral("1.2.345x"));
    EXPECT_EQ(form.second->text(), "1.2.345");
    form.third->setText(QStringLiteral("notes"));
    QTest::keyClick(form.second, Qt::Key_Enter);
    EXPECT_TRUE(form.third->hasFocus());
    QCoreApplication::processEvents();
    EXPECT_EQ(form.third->selectedText(), "notes");
    // A click selects the whole text too, though it places the cursor after the focus came.
    form.second->setFocus();
    form.third->deselect();
    QTest::mouseClick(form.third, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_TRUE(form.third->hasFocus());
    EXPECT_EQ(form.third->selectedText(), "notes");

    // The padding acts only when something is missing.
    form.first->setFocus();
    form.first->setText(QStringLiteral("1.2345"));
    form.third->setFocus();
    EXPECT_EQ(form.first->text(), "1.2345");
}

TEST_F(FormHelpers, EnteringABoxSelectsItsTextButFocusComingBackDoesNot) {
    Form form;
    InstallSelectAllOnFocus(form.second);
    InstallSelectAllOnFocus(form.third);
    form.second->setText(QStringLiteral("12"));
    form.third->setText(QStringLiteral("34"));
    QWidget other;
    const auto activate = [](QWidget* window) {
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window);
    };

    QTest::mouseClick(form.second, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.second->selectedText(), "12");
    QTest::keyClick(form.second, Qt::Key_End);

    // A context menu or another window takes the focus and gives it back: the cursor stays.
    QMenu menu;
    menu.addAction(QStringLiteral("Copy"));
    menu.popup(form.second->mapToGlobal(QPoint(0, 0)));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
    menu.close();
    QCoreApplication::processEvents();
    ASSERT_TRUE(form.second->hasFocus());
    EXPECT_FALSE(form.second->hasSelectedText());
    ASSERT_TRUE(activate(&other));
    ASSERT_TRUE(activate(&form.window));
    ASSERT_TRUE(form.second->hasFocus());
    EXPECT_FALSE(form.second->hasSelectedText());

    // Focus put on a box while its window is inactive, as a message box closes, arrives with
    // the activation but enters the box; so does a box left that way before.
    form.second->setCursorPosition(0);
    ASSERT_TRUE(activate(&other));
    form.third->setFocus();
    ASSERT_TRUE(activate(&form.window));
    EXPECT_EQ(form.third->selectedText(), "34");
    ASSERT_TRUE(activate(&other));
    form.second->setFocus();
    ASSERT_TRUE(activate(&form.window));
    EXPECT_EQ(form.second->selectedText(), "12");
}

TEST_F(FormHelpers, EnterMovesOnFromAnyBox) {
    Form form;
    InstallEnterAsTab(form.first);
    form.first->setFocus();
    QTest::keyClicks(form.first, QStringLiteral("Any text 1"));
    EXPECT_EQ(form.first->text(), "Any text 1");
    QTest::keyClick(form.first, Qt::Key_Return);
    EXPECT_TRUE(form.second->hasFocus());

    form.third->setText(QStringLiteral("  "));
    form.third->setCursorPosition(0);
    SelectAllText(form.third);
    EXPECT_FALSE(form.third->hasSelectedText());
    form.third->setText(QStringLiteral("x"));
    SelectAllText(form.third);
    EXPECT_EQ(form.third->selectedText(), "x");
}
