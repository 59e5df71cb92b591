#pragma once

// A window's tools made into actions from its table: their keys, their menus and their tool
// bar.

#include "common/tools.h"

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>
#include <span>

class QAction;
class QMenu;
class QToolBar;

namespace slipbook {

// The keys of a tool, the one menus and tips show first: its portable keys, then its standard
// key as the platform binds it. A standard key the platform leaves unbound gives none.
QList<QKeySequence> ToolKeys(const tools::Tool& tool);

// The window's action of a tool id.
using ToolLookup = std::function<QAction*(const QString& id)>;

// Adds to `menu` the tools of `table` that stand in the menu `menuId`, in table order, each
// separated one after a separator line.
void FillMenu(QMenu* menu, tools::ToolId menuId, std::span<const tools::Tool> table,
              const ToolLookup& action);

// Adds to `bar` the tools of `table` that are on the tool bar, group after group with a
// separator between groups. A tool with a submenu opens it from the arrow beside its button.
void FillToolBar(QToolBar* bar, std::span<const tools::Tool> table, const ToolLookup& action);

}  // namespace slipbook
