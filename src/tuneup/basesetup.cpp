#include "tuneup/basesetup.h"

#include "tuneup/calculators.h"

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
    // The programs' own test of a number, so that a saved base is one they can compute with.
    return text.isEmpty() || IsNumeric(text);
}

}  // namespace slipbook::tuneup
