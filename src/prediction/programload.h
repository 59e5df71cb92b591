#pragma once

// What the prediction window reads from the logbook: the bound car, the figures of the run it
// starts from, and a car's stored setup runs for one program and distance.

#include "prediction/calculators.h"
#include "store/database.h"

#include <QString>

#include <optional>

namespace slipbook::prediction {

struct CarRecord {
    qint64 id = 0;
    QString number;  // sCar_num
    QString name;    // sCar_nm
    bool methanol = false;
};
std::optional<CarRecord> ReadCar(store::Database& db, qint64 carId);

// The run's figures as the window's boxes take them: each value followed by one blank, so a
// Null shows as the blank alone.
struct RunBoxes {
    QString oldCorr;     // txtOldCorr
    QString oldEt;       // txtOldET: the quarter-mile ET, else the eighth-mile one
    QString densityAlt;  // txtLastRunDA
    QString quarterEt;   // txtLastRunET / txtTSOldET on the quarter mile
    QString eighthEt;    // ... on the eighth mile
    QString timer;       // txtTSOldTimer
    QString interimEt;   // txtOldInterimET: 1000 ft, or 330 ft with the eighth-mile set
    QString fullEt;      // txtOldRCET
    QString fullMph;     // txtRCOldFullMPH
};
std::optional<RunBoxes> ReadRunBoxes(store::Database& db, qint64 runId);

// The car's setup runs of a category ("DA", "TS") and distance, in stored order.
SetupRows ReadSetupRows(store::Database& db, qint64 carId, QStringView category, bool eighthMile);

}  // namespace slipbook::prediction
