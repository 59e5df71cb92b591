#pragma once

// Windows driven offscreen as a person drives them: tools pressed only where the user can press
// them, entries picked from their lists, text typed key by key, fields left as the user leaves
// them. Every GUI test program links guimain.cpp, which makes the one application object.

#include "support/fakemain.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QString>
#include <QTest>
#include <QWidget>

#include <functional>

class QComboBox;

namespace slipbook::test {

// A test program whose application object must be more than a QApplication (the program's own,
// with its error trap) names it with one of these at namespace scope; main makes it.
using ApplicationMaker = QApplication* (*)(int& argc, char** argv);
struct UseApplication {
    explicit UseApplication(ApplicationMaker make);
};
ApplicationMaker ApplicationMakerInUse();

// The tool with this id, when a user could press it now; else null, with why in `why`.
//
// Within reach means: the window holds exactly one action named `toolId`, the action is enabled
// and not hidden, and at least one of these shows it to the user:
//  - a tool bar or menu bar inside the window that is not hidden in it (visible once the window
//    is shown);
//  - a menu whose own entry is within reach by this same rule (a menu of the menu bar, a
//    submenu, or the drop-down menu of a tool bar button);
//  - a shortcut: the action has one, its context is the window or the application, and it is
//    added to the window itself or to a widget that is not hidden in it.
// A context menu alone does not count, nor does a tool only the code can reach (an action in no
// menu, bar or widget).
QAction* ToolWithinReach(QWidget& window, const QString& toolId, QString* why = nullptr);

// Presses the tool as the user can: fails the test, and presses nothing, when the window has no
// such tool or the user can't reach it now (see ToolWithinReach).
void Press(QWidget& window, const QString& toolId);

// Clicks into the box and types the text key by key in place of what it held (End, Shift+Home,
// then the keys; an empty text deletes the selection; a line break is Enter). A box on a tab page
// behind another is brought forward by a click on its tab first; a disabled or hidden box fails
// the test. The box stays focused: Leave it, or type into the next.
void Type(QWidget* box, const QString& text);

// Picks the entry with exactly this text as a person does: a click opens the list, the arrow
// keys walk to the entry, Enter takes it (QComboBox::activated, even for the entry already
// shown). Reaching the combo follows Type's rule.
void Pick(QComboBox* combo, const QString& text);

// An empty notes pane showing its hint, which is no text of the pane.
#define EXPECT_HINT(pane, hint)                                     \
    do {                                                            \
        EXPECT_EQ((pane)->toPlainText(), QString());                \
        EXPECT_EQ((pane)->placeholderText(), QStringLiteral(hint)); \
    } while (false)

template <typename T>
T* Child(QWidget& window, const QString& name) {
    T* child = window.findChild<T*>(name);
    EXPECT_NE(child, nullptr) << name.toStdString();
    return child;
}

// The focus leaving a field by Tab, with what the window does on that.
void Leave(QWidget* field);

void ShowActive(QWidget& window);

QString FocusName(QWidget& window);

// Presses the window's print tool and, in the preview it opens, prints to the PDF file through
// the print dialog, as the racer would to a printer; `inPreview` runs while the preview is up.
// False when the preview or the print dialog did not come.
bool PrintFromPreview(QWidget& window, const QString& toolId, const QString& pdf,
                      const std::function<void()>& inPreview = {});

// With SLIPBOOK_GRAB_DIR set, keeps a picture of the window there.
void Grab(QWidget& window, const QString& name);

// A record window's test: a fresh logbook, scripted boxes and a main window that writes down
// what it is told.
struct WindowTest : ::testing::Test {
    QVariant Scalar(const QString& sql);
    shell::WindowContext Context() { return main.Context(logbook.db(), messages); }

    TempLogbook logbook;
    ScriptedMessages messages;
    FakeMain main;
};

}  // namespace slipbook::test
