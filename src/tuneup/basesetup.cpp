#include "tuneup/basesetup.h"

#include "common/numbers.h"

namespace slipbook::tuneup {

namespace {

constexpr BaseColumn kColumns[] = {
    {"sBaseADR", "ADR must be numeric"},
    {"sBaseJet", "Jet must be numeric"},
    {"sBaseJetDiameter", "Jet Diameter must be numeric"},
    {"sBaseBypassPill", "Bypass Pill must be numeric"},
    {"sBaseBoost", "Boost must be numeric"},
    {"sNozzleArea", "Nozzle Area must be numeric"},
};

}  // namespace

std::span<const BaseColumn> BaseColumns() {
    return kColumns;
}

bool BaseValueAccepted(QStringView text) {
    // The programs read these with the strict parse, so that is the test.
    return text.isEmpty() || StrictNumber(text).has_value();
}

}  // namespace slipbook::tuneup
