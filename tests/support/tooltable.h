#pragma once

// A window built from a table of tools, held against the table: every tool there once, with its
// caption and keys, in its menu after its separator, on the tool bar in its group; every menu in
// its place; and nothing in a menu or on the bar that the table does not put there.

#include "common/tools.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QStringList>
#include <QToolBar>

#include <functional>
#include <set>
#include <span>
#include <string>

namespace slipbook::test {

// The standard keys as the platform binds them, spelt out apart from the windows' own mapping.
inline QKeySequence StandardKeyOf(tools::StandardKey key) {
    using K = tools::StandardKey;
    static const std::pair<K, QKeySequence::StandardKey> kKeys[] = {
        {K::New, QKeySequence::New},
        {K::Open, QKeySequence::Open},
        {K::Save, QKeySequence::Save},
        {K::Print, QKeySequence::Print},
        {K::Close, QKeySequence::Close},
        {K::Quit, QKeySequence::Quit},
        {K::HelpContents, QKeySequence::HelpContents},
        {K::Cut, QKeySequence::Cut},
        {K::Copy, QKeySequence::Copy},
        {K::Paste, QKeySequence::Paste},
        {K::SelectAll, QKeySequence::SelectAll},
    };
    for (const auto& [ours, qt] : kKeys) {
        if (ours == key) {
            return QKeySequence(qt);
        }
    }
    return {};
}

inline std::string KeysText(const QList<QKeySequence>& keys) {
    QStringList texts;
    for (const QKeySequence& key : keys) {
        texts << key.toString(QKeySequence::PortableText);
    }
    return texts.join(QStringLiteral(", ")).toStdString();
}

// Where a tool of the table stands in it; -1 for an action the table does not hold.
inline qsizetype TableIndex(std::span<const tools::Tool> table, const QString& id) {
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].id == id) {
            return static_cast<qsizetype>(i);
        }
    }
    return -1;
}

inline void ExpectBuiltFromTable(QWidget& window, QMenuBar* menuBar, QToolBar* bar,
                                 std::span<const tools::Tool> table,
                                 std::span<const tools::Menu> menus,
                                 const std::function<QAction*(const QString&)>& toolOf) {
    std::set<QString> ids;
    for (const tools::Menu& m : menus) {
        EXPECT_TRUE(ids.insert(m.id).second) << "twice: " << qPrintable(QString(m.id));
    }
    for (const tools::Tool& t : table) {
        const QString id = t.id;
        EXPECT_TRUE(ids.insert(id).second) << "twice: " << qPrintable(id);
        QAction* action = toolOf(id);
        if (action == nullptr) {
            ADD_FAILURE() << "no action " << qPrintable(id);
            continue;
        }
        EXPECT_EQ(action->objectName(), id);
        EXPECT_EQ(action->text(), QString::fromUtf8(t.caption)) << qPrintable(id);
        QList<QKeySequence> keys;
        if (t.keys != nullptr) {
            keys = QKeySequence::listFromString(QString::fromLatin1(t.keys));
        }
        if (const QKeySequence standard = StandardKeyOf(t.standardKey); !standard.isEmpty()) {
            keys << standard;
        }
        EXPECT_EQ(KeysText(action->shortcuts()), KeysText(keys)) << qPrintable(id);
        EXPECT_EQ(action->isCheckable(), t.checkable) << qPrintable(id);
        if (!t.menu.isEmpty()) {
            auto* menu = window.findChild<QMenu*>(t.menu);
            if (menu == nullptr) {
                ADD_FAILURE() << "no menu " << qPrintable(QString(t.menu));
                continue;
            }
            const QList<QAction*> entries = menu->actions();
            const qsizetype at = entries.indexOf(action);
            EXPECT_GE(at, 0) << qPrintable(id) << " is not in " << qPrintable(QString(t.menu));
            EXPECT_EQ(at > 0 && entries[at - 1]->isSeparator(), t.separated && at > 0)
                << qPrintable(id);
        }
        EXPECT_EQ(bar->actions().contains(action), t.barGroup > 0) << qPrintable(id);
    }

    // The menu bar holds the table's menus in order; a submenu hangs on its tool.
    QList<QAction*> top = menuBar->actions();
    qsizetype next = 0;
    for (const tools::Menu& m : menus) {
        auto* menu = window.findChild<QMenu*>(m.id);
        if (menu == nullptr) {
            ADD_FAILURE() << "no menu " << qPrintable(QString(m.id));
            continue;
        }
        if (m.under.isEmpty()) {
            ASSERT_LT(next, top.size());
            EXPECT_EQ(top[next++], menu->menuAction()) << qPrintable(QString(m.id));
            EXPECT_EQ(menu->title(), QString::fromUtf8(m.caption));
        } else {
            QAction* opener = toolOf(m.under);
            ASSERT_NE(opener, nullptr);
            EXPECT_EQ(opener->menu(), menu) << qPrintable(QString(m.id));
        }
        // Only the menu's own tools, in table order, a separator only between two of them.
        qsizetype last = -1;
        const QList<QAction*> entries = menu->actions();
        for (qsizetype i = 0; i < entries.size(); ++i) {
            if (entries[i]->isSeparator()) {
                EXPECT_TRUE(i > 0 && i + 1 < entries.size() && !entries[i + 1]->isSeparator())
                    << qPrintable(QString(m.id));
                continue;
            }
            const qsizetype index = TableIndex(table, entries[i]->objectName());
            ASSERT_GE(index, 0) << qPrintable(entries[i]->objectName());
            EXPECT_EQ(table[index].menu, m.id) << qPrintable(entries[i]->objectName());
            EXPECT_GT(index, last) << qPrintable(entries[i]->objectName());
            last = index;
        }
    }
    EXPECT_EQ(next, top.size()) << "menus the table does not name";

    // The bar: group after group, a separator exactly where one ends, each in table order.
    const tools::Tool* previous = nullptr;
    bool separated = false;
    for (QAction* action : bar->actions()) {
        if (action->isSeparator()) {
            EXPECT_NE(previous, nullptr) << "the bar starts with a separator";
            separated = true;
            continue;
        }
        const qsizetype index = TableIndex(table, action->objectName());
        ASSERT_GE(index, 0) << qPrintable(action->objectName());
        const tools::Tool& t = table[index];
        if (previous != nullptr) {
            EXPECT_EQ(separated, t.barGroup != previous->barGroup) << qPrintable(QString(t.id));
            EXPECT_TRUE(t.barGroup > previous->barGroup ||
                        (t.barGroup == previous->barGroup && &t > previous))
                << qPrintable(QString(t.id));
        }
        previous = &t;
        separated = false;
    }
}

}  // namespace slipbook::test
