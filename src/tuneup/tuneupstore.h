#pragma once

// Where the tune-up window's old tune-up comes from and where its new one goes: a car's saved
// tune-up or a run's, read with the car's number, name and types; the new tune-up written back
// to the car or to one run. Each save is one transaction: all of it lands or nothing does.

#include "store/database.h"
#include "tuneup/calculators.h"

#include <QString>

#include <utility>
#include <vector>

namespace slipbook::tuneup {

// Where the old tune-up comes from; the index of the window's "old tune-up" lists.
enum class OldSource { Car = 0, Run = 1, WhatIf = 2 };

struct TuneUpCar {
    qint64 id = 0;
    QString number;    // sCar_num
    QString name;      // sCar_nm
    QString carbType;  // sCarCarb_typ: "CARB", "PRECCARB", "FI"
    QString fuelType;  // sCarFuel_typ: "GAS", "METHANOL", "NITRO"
};

// A saved tune-up as the old side's boxes show it; Null reads as the empty text. The old
// nozzle area is not read: it is recomputed from the nozzles.
struct TuneUpBase {
    QString adr;          // sBaseADR
    QString jet;          // sBaseJet
    QString jetDiameter;  // sBaseJetDiameter
    QString bypassPill;   // sBaseBypassPill
    QString boost;        // sBaseBoost
    NozzleTable nozzles;
};

// Why an old tune-up could not be read, numbered as the window's messages number them.
enum class LoadFailure {
    None = 0,
    Error = 1,          // no run to read, or the logbook failed
    CarMissing = 2,     // the car's row is gone
    RunMissing = 3,     // the run's row is gone
    RunCarMissing = 4,  // the run's car is gone
};
// "Error loading old tune-up (n).  ..."; empty for None.
QString LoadFailureText(LoadFailure failure);

struct OldTuneUp {
    LoadFailure failure = LoadFailure::None;
    TuneUpCar car;  // for a run, the run's car
    TuneUpBase base;
    qint64 runId = 0;  // the run read
};

// The car's saved tune-up (source Car, by `carId`) or the run's (source Run, by `runId`, which
// must not be 0) with its car. Nothing is read for WhatIf. Never throws: a failure is named.
OldTuneUp ReadOldTuneUp(store::Database& db, OldSource source, qint64 carId, qint64 runId);

// The new tune-up as the window holds it: texts as typed or calculated.
struct NewTuneUp {
    QString carbType = QStringLiteral("CARB");
    QString fuelType = QStringLiteral("GAS");
    QString adr;          // txtNewADR
    QString jet;          // txtNewJet
    QString jetDiameter;  // txtPreNewJet
    QString bypassPill;   // txtFINewPill
    QString boost;        // txtFINewBoost
    QString nozzleArea;   // txtNewFIArea
    NozzleTable nozzles;
};

// Column and value, in the order they are written. A value is its box's text without leading
// and trailing blanks; an empty box gives the empty text, not Null.
using Assignments = std::vector<std::pair<QString, QString>>;

// The car's one statement: types, base values and the 32 nozzles (Blower, Hat, Head, Manifold).
Assignments CarSaveAssignments(const NewTuneUp& tuneUp);
// The run's two statements: the base values and nozzles as for the car without the types, then
// the 32 nozzles again in the order Hat, Manifold, Blower, Head.
std::vector<Assignments> RunSaveGroups(const NewTuneUp& tuneUp);

enum class SaveOutcome { Saved, Missing };

// Writes the new tune-up to the car, in one transaction. Missing, with nothing written, when
// the car's row is gone; the store's error is thrown, with nothing written, when a write fails.
SaveOutcome SaveTuneUpToCar(store::Database& db, qint64 carId, const NewTuneUp& tuneUp);
// The same for one run.
SaveOutcome SaveTuneUpToRun(store::Database& db, qint64 runId, const NewTuneUp& tuneUp);

}  // namespace slipbook::tuneup
