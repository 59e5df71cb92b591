#include "common/ui/toolactions.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <vector>

namespace slipbook {

namespace {

QKeySequence::StandardKey Standard(tools::StandardKey key) {
    using K = tools::StandardKey;
    switch (key) {
        case K::New:
            return QKeySequence::New;
        case K::Open:
            return QKeySequence::Open;
        case K::Save:
            return QKeySequence::Save;
        case K::Print:
            return QKeySequence::Print;
        case K::Close:
            return QKeySequence::Close;
        case K::Quit:
            return QKeySequence::Quit;
        case K::HelpContents:
            return QKeySequence::HelpContents;
        case K::Cut:
            return QKeySequence::Cut;
        case K::Copy:
            return QKeySequence::Copy;
        case K::Paste:
            return QKeySequence::Paste;
        case K::SelectAll:
            return QKeySequence::SelectAll;
        case K::None:
            break;
    }
    return QKeySequence::UnknownKey;
}

}  // namespace

QList<QKeySequence> ToolKeys(const tools::Tool& tool) {
    QList<QKeySequence> keys;
    if (tool.keys != nullptr) {
        keys = QKeySequence::listFromString(QString::fromLatin1(tool.keys),
                                            QKeySequence::PortableText);
    }
    // The first binding, as a QAction given the standard key alone would take.
    if (tool.standardKey != tools::StandardKey::None) {
        keys << QKeySequence(Standard(tool.standardKey));
    }
    keys.removeAll(QKeySequence());
    return keys;
}

void FillMenu(QMenu* menu, tools::ToolId menuId, std::span<const tools::Tool> table,
              const ToolLookup& action) {
    for (const tools::Tool& tool : table) {
        if (tool.menu != menuId || tool.menu.isEmpty()) {
            continue;
        }
        if (tool.separated && !menu->actions().isEmpty()) {
            menu->addSeparator();
        }
        menu->addAction(action(tool.id));
    }
}

void FillToolBar(QToolBar* bar, std::span<const tools::Tool> table, const ToolLookup& action) {
    std::vector<const tools::Tool*> onBar;
    for (const tools::Tool& tool : table) {
        if (tool.barGroup > 0) {
            onBar.push_back(&tool);
        }
    }
    std::stable_sort(onBar.begin(), onBar.end(), [](const tools::Tool* a, const tools::Tool* b) {
        return a->barGroup < b->barGroup;
    });
    for (size_t i = 0; i < onBar.size(); ++i) {
        if (i > 0 && onBar[i]->barGroup != onBar[i - 1]->barGroup) {
            bar->addSeparator();
        }
        QAction* a = action(onBar[i]->id);
        bar->addAction(a);
        if (a->menu() != nullptr) {
            if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(a))) {
                button->setPopupMode(QToolButton::MenuButtonPopup);
            }
        }
    }
}

}  // namespace slipbook
