#include "support/gui.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QDir>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSet>
#include <QStackedWidget>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

#include <algorithm>

namespace slipbook::test {

namespace {

ApplicationMaker& Maker() {
    static ApplicationMaker maker = nullptr;
    return maker;
}

std::string Name(const QWidget* w) {
    return (w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className())
                                      : w->objectName())
        .toStdString();
}

// Shown once the window is: the window itself, or a widget inside it hidden nowhere on the way.
bool VisibleIn(const QWidget& window, const QWidget* w) {
    return w == &window || (window.isAncestorOf(w) && w->isVisibleTo(&window));
}

// The window an action belongs to: the window of its nearest widget owner.
QWidget* WindowOf(const QAction* action) {
    for (QObject* o = action->parent(); o != nullptr; o = o->parent()) {
        if (auto* w = qobject_cast<QWidget*>(o)) {
            // A menu pops up as a window of its own; it belongs to the window it hangs from.
            if (qobject_cast<QMenu*>(w) == nullptr) {
                return w->window();
            }
        }
    }
    return nullptr;
}

bool ShortcutServes(const QWidget& window, const QAction* action, const QWidget* w) {
    if (action->shortcuts().isEmpty()) {
        return false;
    }
    switch (action->shortcutContext()) {
        case Qt::WindowShortcut:
        case Qt::ApplicationShortcut:
            return VisibleIn(window, w);
        case Qt::WidgetWithChildrenShortcut:
            return w == &window;
        default:
            return false;
    }
}

bool WithinReach(const QWidget& window, QAction* action, QSet<QAction*>& seen) {
    if (!action->isEnabled() || !action->isVisible() || seen.contains(action)) {
        return false;
    }
    seen.insert(action);
    for (QObject* o : action->associatedObjects()) {
        auto* w = qobject_cast<QWidget*>(o);
        if (w == nullptr) {
            continue;
        }
        if (auto* menu = qobject_cast<QMenu*>(w)) {
            if (menu->menuAction() != nullptr && WithinReach(window, menu->menuAction(), seen)) {
                return true;
            }
            continue;
        }
        if (!w->isEnabled()) {
            continue;
        }
        if (qobject_cast<QMenuBar*>(w) != nullptr || qobject_cast<QToolBar*>(w) != nullptr) {
            if (VisibleIn(window, w)) {
                return true;
            }
            continue;
        }
        if (ShortcutServes(window, action, w)) {
            return true;
        }
    }
    return false;
}

// Brings forward, by a click on its tab, every tab page the widget stands on. False, with the
// reason, when a tab it needs is hidden or disabled, or the click did not bring it.
bool ShowPagesOf(QWidget* w, std::string* why) {
    for (QWidget* p = w; p != nullptr && !p->isWindow(); p = p->parentWidget()) {
        auto* stack = qobject_cast<QStackedWidget*>(p->parentWidget());
        auto* tabs = stack != nullptr ? qobject_cast<QTabWidget*>(stack->parentWidget()) : nullptr;
        const int page = tabs != nullptr ? tabs->indexOf(p) : -1;
        if (page < 0 || tabs->currentIndex() == page) {
            continue;
        }
        const std::string tab = "the tab " + tabs->tabText(page).toStdString() + " of " +
                                Name(tabs) + ", which holds " + Name(w);
        if (!tabs->isTabVisible(page) || !tabs->isTabEnabled(page) || !tabs->isEnabled()) {
            *why = tab + ", is hidden or disabled";
            return false;
        }
        QTabBar* bar = tabs->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(page).center());
        if (tabs->currentIndex() != page) {
            *why = tab + ", did not come forward when clicked";
            return false;
        }
    }
    return true;
}

// The box can take a click and keys now: enabled and, once its page is forward, visible in its
// window. Fails the test when not.
bool Reachable(QWidget* box) {
    if (box == nullptr) {
        ADD_FAILURE() << "no box to reach";
        return false;
    }
    std::string why;
    if (!ShowPagesOf(box, &why)) {
        ADD_FAILURE() << why;
        return false;
    }
    if (!box->isEnabled() || !VisibleIn(*box->window(), box)) {
        ADD_FAILURE() << Name(box) << " is " << (box->isEnabled() ? "hidden" : "disabled")
                      << ": no user can reach it";
        return false;
    }
    return true;
}

}  // namespace

UseApplication::UseApplication(ApplicationMaker make) {
    Maker() = make;
}

ApplicationMaker ApplicationMakerInUse() {
    return Maker();
}

QAction* ToolWithinReach(QWidget& window, const QString& toolId, QString* why) {
    QList<QAction*> tools;
    for (QAction* a : window.findChildren<QAction*>(toolId)) {
        if (WindowOf(a) == &window) {
            tools << a;
        }
    }
    QString reason;
    QAction* tool = tools.size() == 1 ? tools[0] : nullptr;
    if (tools.isEmpty()) {
        reason = QStringLiteral("the window has no such tool");
    } else if (tool == nullptr) {
        reason = QStringLiteral("the window has %1 tools of that name").arg(tools.size());
    } else if (!tool->isEnabled()) {
        reason = QStringLiteral("the tool is disabled");
    } else if (!tool->isVisible()) {
        reason = QStringLiteral("the tool is hidden");
    } else {
        QSet<QAction*> seen;
        if (!WithinReach(window, tool, seen)) {
            reason = QStringLiteral(
                "the tool is out of reach: in no visible tool bar or menu, and no shortcut "
                "serves it");
        }
    }
    if (why != nullptr) {
        *why = reason;
    }
    return reason.isEmpty() ? tool : nullptr;
}

void Press(QWidget& window, const QString& toolId) {
    QString why;
    QAction* tool = ToolWithinReach(window, toolId, &why);
    if (tool == nullptr) {
        ADD_FAILURE() << "Press " << toolId.toStdString() << " in " << Name(&window) << ": "
                      << why.toStdString();
        return;
    }
    tool->trigger();
}

void Type(QWidget* box, const QString& text) {
    if (!Reachable(box)) {
        return;
    }
    QWidget* clickOn = box;
    if (auto* combo = qobject_cast<QComboBox*>(box)) {
        if (combo->lineEdit() == nullptr) {
            ADD_FAILURE() << Name(box) << " takes no typing: pick from it instead";
            return;
        }
        clickOn = combo->lineEdit();
    } else if (auto* area = qobject_cast<QAbstractScrollArea*>(box)) {
        clickOn = area->viewport();
    }
    QTest::mouseClick(clickOn, Qt::LeftButton);
    // What the window does on the click (selecting the text) comes before the next key.
    QApplication::processEvents();
    // The old text selected from its end to its start: Ctrl+A would also do in a box, but in a
    // typed list a letter with Ctrl is taken for typing.
    const bool pane =
        qobject_cast<QPlainTextEdit*>(box) != nullptr || qobject_cast<QTextEdit*>(box) != nullptr;
    QTest::keyClick(box, Qt::Key_End, pane ? Qt::ControlModifier : Qt::NoModifier);
    QTest::keyClick(box, Qt::Key_Home,
                    pane ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ShiftModifier);
    if (text.isEmpty()) {
        QTest::keyClick(box, Qt::Key_Delete);
        return;
    }
    // Lines are broken with Enter.
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0) {
            QTest::keyClick(box, Qt::Key_Return);
        }
        QTest::keyClicks(box, lines[i]);
    }
}

void Pick(QComboBox* combo, const QString& text) {
    if (!Reachable(combo)) {
        return;
    }
    const int entry = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry < 0) {
        ADD_FAILURE() << Name(combo) << " has no entry " << text.toStdString();
        return;
    }
    QWidget* window = combo->window();
    const bool wasActive = QApplication::activeWindow() == window;
    // A click on the arrow opens the list, in a typed box as in a plain one.
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    option.subControls = QStyle::SC_All;
    const QRect arrow = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxArrow, combo);
    QTest::mouseClick(combo, Qt::LeftButton, {}, arrow.center());
    QAbstractItemView* list = combo->view();
    if (!list->isVisible()) {
        ADD_FAILURE() << "a click did not open the list of " << Name(combo);
        return;
    }
    int at = list->currentIndex().isValid() ? list->currentIndex().row() : -1;
    if (at < 0) {
        QTest::keyClick(list, Qt::Key_Home);
        at = list->currentIndex().row();
    }
    for (; at < entry; ++at) {
        QTest::keyClick(list, Qt::Key_Down);
    }
    for (; at > entry; --at) {
        QTest::keyClick(list, Qt::Key_Up);
    }
    if (list->currentIndex().row() != entry) {
        ADD_FAILURE() << "the arrow keys did not reach " << text.toStdString() << " in "
                      << Name(combo);
        QTest::keyClick(list, Qt::Key_Escape);
        return;
    }
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_FALSE(list->isVisible()) << "the list of " << Name(combo) << " stayed open";
    // The offscreen platform leaves the activation with the closed list (once its events are
    // in); a window system hands it back to the window the list came from.
    QCoreApplication::processEvents();
    if (wasActive && QApplication::activeWindow() != window) {
        window->activateWindow();
        // The list counts as part of the window: qWaitForWindowActive would not wait.
        EXPECT_TRUE(QTest::qWaitFor([window] { return QApplication::activeWindow() == window; }));
    }
    EXPECT_EQ(combo->currentIndex(), entry)
        << Name(combo) << " did not take " << text.toStdString();
}

void Leave(QWidget* field) {
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(field, &out);
}

void ShowActive(QWidget& window) {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

QString FocusName(QWidget& window) {
    return window.focusWidget() != nullptr ? window.focusWidget()->objectName() : QString();
}

void Grab(QWidget& window, const QString& name) {
    const QString dir = qEnvironmentVariable("SLIPBOOK_GRAB_DIR");
    if (!dir.isEmpty()) {
        window.grab().save(QDir(dir).filePath(name + QStringLiteral(".png")));
    }
}

QVariant WindowTest::Scalar(const QString& sql) {
    auto rs = logbook.db().OpenRecordset(sql, store::RecordsetType::Snapshot);
    return rs->Eof() ? QVariant() : rs->Value(0);
}

bool PrintFromPreview(QWidget& window, const QString& toolId, const QString& pdf,
                      const std::function<void()>& inPreview) {
    bool printed = false;
    QTimer::singleShot(0, [&] {
        auto* preview = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(preview, nullptr);
        preview->printer()->setOutputFileName(pdf);
        if (inPreview) {
            inPreview();
        }
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            dialog->accept();
            printed = true;
        });
        const QList<QAction*> actions = preview->findChildren<QAction*>();
        auto print = std::find_if(actions.begin(), actions.end(),
                                  [](QAction* a) { return a->text() == QStringLiteral("Print"); });
        ASSERT_NE(print, actions.end());
        (*print)->trigger();
    });
    Press(window, toolId);
    return printed;
}

}  // namespace slipbook::test
