#pragma once

// A car's base tune-up: the six columns of tblCars that the tune-up programs start from, as the
// base window checks and writes them.

#include <QString>
#include <QStringView>

#include <span>

namespace slipbook::tuneup {

struct BaseColumn {
    const char* column;   // of tblCars
    const char* message;  // when its box holds no number
};

// The six columns in the order they are checked and written: sBaseADR, sBaseJet,
// sBaseJetDiameter, sBaseBypassPill, sBaseBoost, sNozzleArea.
std::span<const BaseColumn> BaseColumns();

// What a base box may hold: nothing (no base yet), or a whole number the tune-up programs can
// compute with.
bool BaseValueAccepted(QStringView text);

}  // namespace slipbook::tuneup
