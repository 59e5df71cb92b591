#pragma once

// A car's setup runs: whole copies of runs in tblCarSetup, one list per category ("DA" density
// altitude, "TS" throttle stop) and distance, from which the density altitude and throttle stop
// programs work. Later edits of a run don't reach its copy.

#include "store/database.h"

#include <QList>
#include <QString>
#include <QStringView>

namespace slipbook::prediction {

inline constexpr QStringView kDensityAltitudeSetup = u"DA";
inline constexpr QStringView kThrottleStopSetup = u"TS";

// The run list's catalogue rows (lLVC_id) that both setup grids show: run #, date, time,
// correction factor, density altitude, the four throttle stops, and the ET of the distance.
QList<qint64> SetupColumnIds(bool eighth);

// The car's setup runs of the category and distance, oldest first.
QString SetupRunsSql(qint64 carId, const QString& setupType, bool eighth);

// The car's runs with an ET at the distance that are not among `setupRunIds`, oldest first. An
// empty list excludes nothing.
QString AvailableRunsSql(qint64 carId, const QList<qint64>& setupRunIds, bool eighth);

// Copies the run into the category's list at the distance, in one transaction. Returns the rows
// added: 0 when the run is no longer in tblRuns. Throws store::DbError, leaving the table as it
// was.
int AddSetupRun(store::Database& db, qint64 runId, const QString& setupType, bool eighth);

// Takes the run off the category's list at the distance, in one transaction; other lists that
// hold it keep it. Returns the rows removed. Throws store::DbError, leaving the table as it was.
int RemoveSetupRun(store::Database& db, qint64 runId, const QString& setupType, bool eighth);

}  // namespace slipbook::prediction
