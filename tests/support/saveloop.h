#pragma once

// The runs that slipbook-saveloop saves until it is killed, and what the kill test expects to
// find of them: run n carries the notes "kill-loop n" and the jet 1 value n, both of which the
// save also gives to the car.

#include "run/fieldtable.h"

#include <QString>
#include <QTime>

namespace slipbook::test {

// The runs of the loop, in the program's LIKE dialect.
inline const QString kLoopRunsWhere = QStringLiteral("sRunNotes_tx LIKE 'kill-loop *'");

inline QString LoopNotes(qint64 n) {
    return QStringLiteral("kill-loop %1").arg(n);
}

// One minute apart, so each run has a time of its own within the day.
inline QTime LoopTime(qint64 n) {
    return QTime(0, 0).addSecs(static_cast<int>(n % 1440) * 60);
}

inline run::RunValues LoopRun(qint64 n) {
    run::RunValues v;
    v.ids.insert(QStringLiteral("lEvent_id"), qint64{1});
    v.ids.insert(QStringLiteral("lCar_id"), qint64{1});
    v.ids.insert(QStringLiteral("lRunType_id"), qint64{4});
    v.ids.insert(QStringLiteral("lOpponent_id"), qint64{1});
    v.texts.insert(QStringLiteral("lRun_num"), QString::number(n));
    v.texts.insert(QStringLiteral("dtRun_dt"), QStringLiteral("07/04/2024"));
    v.texts.insert(QStringLiteral("dtRun_tm"), LoopTime(n).toString(QStringLiteral("hh:mm AP")));
    v.texts.insert(QStringLiteral("iTemp_val"), QStringLiteral("75"));
    v.texts.insert(QStringLiteral("iHumidity_val"), QStringLiteral("50"));
    v.texts.insert(QStringLiteral("iBarometricPressure_val"), QStringLiteral("29.92"));
    v.texts.insert(QStringLiteral("i14Mile_et"), QStringLiteral("9.870"));
    v.texts.insert(QStringLiteral("sJet1_val"), QString::number(n));
    v.texts.insert(QStringLiteral("sRunNotes_tx"), LoopNotes(n));
    return v;
}

}  // namespace slipbook::test
