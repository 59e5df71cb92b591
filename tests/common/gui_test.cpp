// The window test support itself: what Press counts as within the user's reach, and that a
// failed press fails the test.

#include "support/gui.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <QComboBox>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QToolBar>

namespace {

using slipbook::test::ToolWithinReach;

QAction* Tool(QWidget* owner, const char* id) {
    auto* a = new QAction(QString::fromLatin1(id), owner);
    a->setObjectName(QString::fromLatin1(id));
    return a;
}

TEST(GuiSupport, PressesOnlyWhatTheUserCanReach) {
    QMainWindow window;
    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    QToolBar* bar = window.addToolBar(QStringLiteral("Tools"));
    int pressed = 0;
    const auto reach = [&](const char* id) {
        return ToolWithinReach(window, QString::fromLatin1(id)) != nullptr;
    };

    QAction* onBar = Tool(&window, "ID_OnBar");
    bar->addAction(onBar);
    QObject::connect(onBar, &QAction::triggered, [&] { ++pressed; });
    file->addAction(Tool(&window, "ID_InMenu"));
    QMenu* more = file->addMenu(QStringLiteral("More"));
    more->addAction(Tool(&window, "ID_InSubmenu"));
    QAction* keyed = Tool(&window, "ID_Keyed");
    keyed->setShortcut(QKeySequence::Save);
    window.addAction(keyed);
    QAction* loose = Tool(&window, "ID_Loose");
    QAction* keyless = Tool(&window, "ID_Keyless");
    window.addAction(keyless);
    EXPECT_TRUE(reach("ID_OnBar"));
    EXPECT_TRUE(reach("ID_InMenu"));
    EXPECT_TRUE(reach("ID_InSubmenu"));
    EXPECT_TRUE(reach("ID_Keyed"));
    EXPECT_FALSE(reach("ID_Loose"));
    EXPECT_FALSE(reach("ID_Keyless"));  // on the window, but no key reaches it
    EXPECT_FALSE(reach("ID_Nowhere"));
    (void)loose;

    // A disabled submenu, a hidden bar, a disabled or hidden tool: out of reach.
    more->menuAction()->setEnabled(false);
    EXPECT_FALSE(reach("ID_InSubmenu"));
    bar->hide();
    EXPECT_FALSE(reach("ID_OnBar"));
    file->addAction(onBar);
    EXPECT_TRUE(reach("ID_OnBar"));  // the menu still shows it
    onBar->setEnabled(false);
    QString why;
    EXPECT_EQ(ToolWithinReach(window, QStringLiteral("ID_OnBar"), &why), nullptr);
    EXPECT_EQ(why, QStringLiteral("the tool is disabled"));
    onBar->setEnabled(true);
    onBar->setVisible(false);
    EXPECT_FALSE(reach("ID_OnBar"));
    onBar->setVisible(true);

    // A tool of another window, even one parented to this one, is not this window's.
    QWidget other(&window, Qt::Window);
    other.addAction(Tool(&other, "ID_Other"));
    other.actions().constFirst()->setShortcut(QKeySequence::Open);
    EXPECT_FALSE(reach("ID_Other"));
    EXPECT_NE(ToolWithinReach(other, QStringLiteral("ID_Other")), nullptr);

    slipbook::test::Press(window, "ID_OnBar");
    EXPECT_EQ(pressed, 1);
    onBar->setEnabled(false);
    EXPECT_NONFATAL_FAILURE(slipbook::test::Press(window, "ID_OnBar"), "disabled");
    EXPECT_NONFATAL_FAILURE(slipbook::test::Press(window, "ID_Loose"), "out of reach");
    EXPECT_EQ(pressed, 1);
}

TEST(GuiSupport, PickAndTypeGoThroughTheControlsAsAPersonDoes) {
    QTabWidget tabs;
    auto* first = new QWidget;
    auto* second = new QWidget;
    tabs.addTab(first, QStringLiteral("First"));
    tabs.addTab(second, QStringLiteral("Second"));
    auto* combo = new QComboBox(second);
    combo->addItems({QStringLiteral("Alpha"), QStringLiteral("Bravo"), QStringLiteral("Charlie")});
    combo->setEditable(true);
    slipbook::test::ShowActive(tabs);
    QList<int> activated;
    QObject::connect(combo, &QComboBox::activated, [&](int i) { activated << i; });

    // The page comes forward by its tab; the entry is chosen, and chosen again.
    slipbook::test::Pick(combo, QStringLiteral("Charlie"));
    EXPECT_EQ(tabs.currentIndex(), 1);
    slipbook::test::Pick(combo, QStringLiteral("Charlie"));
    slipbook::test::Pick(combo, QStringLiteral("Alpha"));
    EXPECT_EQ(activated, (QList<int>{2, 2, 0}));
    EXPECT_NONFATAL_FAILURE(slipbook::test::Pick(combo, QStringLiteral("alpha")), "no entry");

    slipbook::test::Type(combo, QStringLiteral("Delta"));
    EXPECT_EQ(combo->currentText(), QStringLiteral("Delta"));
    EXPECT_TRUE(combo->hasFocus());
    slipbook::test::Type(combo, QString());
    EXPECT_EQ(combo->currentText(), QString());
    combo->setEnabled(false);
    EXPECT_NONFATAL_FAILURE(slipbook::test::Type(combo, QStringLiteral("x")), "disabled");
    tabs.setTabVisible(1, false);
    tabs.setCurrentIndex(0);
    EXPECT_NONFATAL_FAILURE(slipbook::test::Pick(combo, QStringLiteral("Bravo")), "hidden");
}

}  // namespace
