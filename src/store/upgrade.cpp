#include "store/upgrade.h"

namespace slipbook::store {

const std::vector<UpgradeStep>& UpgradeSteps() {
    static const std::vector<UpgradeStep> steps;
    return steps;
}

void RunUpgradeSteps(Database& db, const std::vector<UpgradeStep>& steps) {
    for (const UpgradeStep& step : steps) {
        if (!step.needed(db)) {
            continue;
        }
        Database::Transaction transaction(db);
        step.run(db);
        transaction.Commit();
    }
}

void UpgradeLadder(Database& db) {
    RunUpgradeSteps(db, UpgradeSteps());
}

}  // namespace slipbook::store
