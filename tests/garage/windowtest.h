#pragma once

// Record windows driven offscreen: one application object for the test program, the windows'
// tools pressed as the user would, and fields left as the user would leave them.

#include "common/tools.h"
#include "common/ui/recordwindow.h"
#include "support/fakemain.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFocusEvent>
#include <QTest>

namespace slipbook::test {

inline QApplication& GuiApp() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    static int argc = 1;
    static char name[] = "garage_tests";
    static char* argv[] = {name, nullptr};
    static auto* app = new QApplication(argc, argv);
    return *app;
}

// A tool pressed as the user can: never one that is disabled.
inline void Press(RecordWindow& window, const QString& toolId) {
    QAction* tool = window.tool(toolId);
    ASSERT_NE(tool, nullptr) << qPrintable(toolId);
    ASSERT_TRUE(tool->isEnabled()) << qPrintable(toolId) << " is disabled";
    tool->trigger();
}

// An empty notes pane showing its hint, which is no text of the pane.
#define EXPECT_HINT(pane, hint)                                     \
    do {                                                            \
        EXPECT_EQ((pane)->toPlainText(), QString());                \
        EXPECT_EQ((pane)->placeholderText(), QStringLiteral(hint)); \
    } while (false)

template <typename T>
T* Child(QWidget& window, const QString& name) {
    T* child = window.findChild<T*>(name);
    EXPECT_NE(child, nullptr) << qPrintable(name);
    return child;
}

// The focus leaving a field by Tab, with what the window does on that.
inline void Leave(QWidget* field) {
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(field, &out);
}

inline void ShowActive(QWidget& window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

inline QString FocusName(QWidget& window) {
    return window.focusWidget() != nullptr ? window.focusWidget()->objectName() : QString();
}

// With SLIPBOOK_GRAB_DIR set, keeps a picture of the window there.
inline void Grab(QWidget& window, const QString& name) {
    const QString dir = qEnvironmentVariable("SLIPBOOK_GRAB_DIR");
    if (!dir.isEmpty()) {
        window.grab().save(QDir(dir).filePath(name + QStringLiteral(".png")));
    }
}

struct WindowTest : ::testing::Test {
    WindowTest() { GuiApp(); }

    QVariant Scalar(const QString& sql) {
        auto rs = logbook.db().OpenRecordset(sql, store::RecordsetType::Snapshot);
        return rs->Eof() ? QVariant() : rs->Value(0);
    }

    shell::WindowContext Context() { return main.Context(logbook.db(), messages); }

    TempLogbook logbook;
    ScriptedMessages messages;
    FakeMain main;
};

}  // namespace slipbook::test
