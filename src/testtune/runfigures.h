#pragma once

// What the test-and-tune window reads from the logbook: the car's fuel and weight, and the
// figures of one run, as the window's boxes take them.

#include "store/database.h"

#include <QString>

#include <optional>

namespace slipbook::testtune {

// Each value followed by one blank, as the boxes get it, so a Null shows as the blank alone.
struct CarFigures {
    bool methanol = false;  // sCarFuel_typ is "METHANOL"
    QString weight;         // iCarWeight_val
};
std::optional<CarFigures> ReadCarFigures(store::Database& db, qint64 carId);

struct RunFigures {
    QString corr;        // iCorrFactor_val
    QString sixtyEt;     // i60Foot_et
    QString e330Et;      // i330Foot_et
    QString eighthEt;    // i18Mile_et
    QString e1000Et;     // i1000Foot_et
    QString quarterEt;   // i14Mile_et
    QString quarterMph;  // i14Mile_mph
};
std::optional<RunFigures> ReadRunFigures(store::Database& db, qint64 runId);

}  // namespace slipbook::testtune
