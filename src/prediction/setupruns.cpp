#include "prediction/setupruns.h"

#include "common/forms.h"

namespace slipbook::prediction {

namespace {

QString Flag(bool eighth) {
    return eighth ? QStringLiteral("-1") : QStringLiteral("0");
}

QString Id(qint64 id) {
    return QString::number(id);
}

}  // namespace

QList<qint64> SetupColumnIds(bool eighth) {
    return {67, 70, 71, 83, 84, 181, eighth ? 187 : 190, 195, 196, 197};
}

QString SetupRunsSql(qint64 carId, const QString& setupType, bool eighth) {
    return QStringLiteral("SELECT * FROM tblCarSetup ") + QStringLiteral(" WHERE lCar_id = ") +
           Id(carId) + QStringLiteral(" AND sSetup_cat = '") + QuoteDouble(setupType) +
           QStringLiteral("'") + QStringLiteral(" AND bEighthNotQuarter = ") + Flag(eighth) +
           QStringLiteral(" ORDER BY sSetup_cat, dtRun_dt, dtRun_tm");
}

QString AvailableRunsSql(qint64 carId, const QList<qint64>& setupRunIds, bool eighth) {
    // The 0 keeps the list well formed when there is nothing to exclude; no run has that id.
    QString excluded = QStringLiteral("0");
    for (qint64 id : setupRunIds) {
        excluded += u',' + Id(id);
    }
    return QStringLiteral("SELECT * FROM tblRuns ") + QStringLiteral(" WHERE lCar_id = ") +
           Id(carId) + QStringLiteral(" AND lRun_id NOT IN (") + excluded + QStringLiteral(")") +
           (eighth ? QStringLiteral(" AND i18Mile_et > 0")
                   : QStringLiteral(" AND i14Mile_et > 0")) +
           QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm");
}

int AddSetupRun(store::Database& db, qint64 runId, const QString& setupType, bool eighth) {
    store::Database::Transaction transaction(db);
    const int added = db.Execute(
        QStringLiteral("INSERT INTO tblCarSetup SELECT * FROM tblRuns WHERE lRun_id = ") +
        Id(runId));
    // The fresh copy is the run's one row without a category yet.
    db.Execute(QStringLiteral("UPDATE tblCarSetup SET sSetup_cat = '") + QuoteDouble(setupType) +
               QStringLiteral("', bEighthNotQuarter = ") + Flag(eighth) +
               QStringLiteral(" WHERE lRun_id = ") + Id(runId) +
               QStringLiteral(" AND sSetup_cat IS Null"));
    transaction.Commit();
    return added;
}

int RemoveSetupRun(store::Database& db, qint64 runId, const QString& setupType, bool eighth) {
    store::Database::Transaction transaction(db);
    const int removed =
        db.Execute(QStringLiteral("DELETE * FROM tblCarSetup WHERE lRun_id = ") + Id(runId) +
                   QStringLiteral(" AND sSetup_cat = '") + QuoteDouble(setupType) +
                   QStringLiteral("' AND bEighthNotQuarter = ") + Flag(eighth));
    transaction.Commit();
    return removed;
}

}  // namespace slipbook::prediction
