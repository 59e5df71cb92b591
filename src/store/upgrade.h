#pragma once

// The upgrade ladder: brings an older logbook up to the current level on every start. Each step
// tests whether it is still needed, so a logbook at the current level passes through unchanged.

#include "store/database.h"

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
};

// The ladder's steps in the order they run.
const std::vector<UpgradeStep>& UpgradeSteps();

// Runs each needed step in a transaction of its own: a step that fails leaves no trace, and the
// steps before it stay done. The failure is thrown on.
void RunUpgradeSteps(Database& db, const std::vector<UpgradeStep>& steps);

void UpgradeLadder(Database& db);

}  // namespace slipbook::store
