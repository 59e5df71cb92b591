#include "garage/cars.h"

#include "shell/defaultcar.h"

namespace slipbook::garage {

namespace {

bool HasDefaultFlag(store::Database& db) {
    return db.FieldExists(QStringLiteral("tblcars"), QStringLiteral("bDefault_fl"));
}

int DeleteCarRows(store::Database& db, const QString& table, qint64 carId) {
    return db.Execute(QStringLiteral("DELETE * FROM %1 WHERE lCar_id = %2").arg(table).arg(carId));
}

}  // namespace

DeleteRule CarDeleteRule() {
    return {{{QStringLiteral("SELECT lCar_id from tblRuns"), QStringLiteral("lCar_id")},
             {QStringLiteral("SELECT lCar_id from tblExpenses"), QStringLiteral("lCar_id")}},
            QStringLiteral("SELECT COUNT(lCar_id) as Car_Count from tblCars")};
}

CarRowsDeleted DeleteCar(store::Database& db, qint64 carId) {
    CarRowsDeleted deleted;
    store::Database::Transaction tx(db);
    deleted.runs = DeleteCarRows(db, QStringLiteral("tblRuns"), carId);
    deleted.expenses = DeleteCarRows(db, QStringLiteral("tblExpenses"), carId);
    // Rows of a car that is gone would be listed nowhere, yet kept for ever.
    if (db.TableExists(QStringLiteral("tblCarSetup"))) {
        deleted.setupRuns = DeleteCarRows(db, QStringLiteral("tblCarSetup"), carId);
    }
    if (db.TableExists(QStringLiteral("tblMaintenance"))) {
        deleted.maintenance = DeleteCarRows(db, QStringLiteral("tblMaintenance"), carId);
    }
    DeleteCarRows(db, QStringLiteral("tblCars"), carId);
    tx.Commit();
    return deleted;
}

bool IsDefaultCar(store::Database& db, qint64 carId) {
    if (!HasDefaultFlag(db)) {
        return false;
    }
    store::Query q =
        db.OpenQuery(QStringLiteral("SELECT bDefault_fl FROM tblCars WHERE lCar_id = ") +
                     QString::number(carId));
    return q.Next() && q.Value(0).toLongLong() != 0;
}

void WriteDefaultCar(store::Database& db, qint64 carId, bool on) {
    if (on) {
        shell::SetDefaultCar(db, carId);
    } else if (HasDefaultFlag(db)) {
        db.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False WHERE lCar_id = ") +
                   QString::number(carId));
    }
}

}  // namespace slipbook::garage
