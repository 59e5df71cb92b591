#pragma once

// The upgrade ladder: brings an older logbook up to the current level on every start. Each step
// tests whether it is still needed, so a logbook at the current level passes through unchanged.

#include "store/database.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace slipbook::store {

struct UpgradeStep {
    QString name;
    std::function<bool(Database&)> needed;
    std::function<void(Database&)> run;
    // The tables ("tblX") and columns ("tblX.sY") the step makes: a logbook that predates the
    // step may lack them and is still opened, for the step to add them.
    QStringList adds;
    // For a step that always runs: whether it would change anything now. Unset, a step that is
    // needed changes the logbook.
    std::function<bool(Database&)> changes;
};

// The ladder's steps in the order they run.
const std::vector<UpgradeStep>& UpgradeSteps();

// Runs each needed step in a transaction of its own: a step that fails leaves no trace, and the
// steps before it stay done. The failure is thrown on.
void RunUpgradeSteps(Database& db, const std::vector<UpgradeStep>& steps);

// Whether any step would change the logbook now.
bool UpgradeWouldChange(Database& db, const std::vector<UpgradeStep>& steps);

// Brings the open logbook up to the current level. Before the first change, the logbook is
// copied beside itself under a dated name; returns that copy's path, or the empty text when
// nothing needed changing. A failed step is thrown on, naming the step and the copy.
QString UpgradeLadder(Database& db, const QDateTime& now);

}  // namespace slipbook::store
