#include "shell/defaultcar.h"

namespace slipbook::shell {

void SetDefaultCar(store::Database& db, qint64 carId) {
    if (!db.FieldExists(QStringLiteral("tblcars"), QStringLiteral("bDefault_fl"))) {
        return;
    }
    store::Database::Transaction tx(db);
    db.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False"));
    db.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = True WHERE lCar_id = ") +
               QString::number(carId));
    tx.Commit();
}

}  // namespace slipbook::shell
