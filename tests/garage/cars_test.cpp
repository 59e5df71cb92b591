// A car's delete without a window: everything that belongs to the car, all or nothing.

#include "garage/cars.h"
#include "store/dberror.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

using namespace slipbook;

namespace {

struct Cars : ::testing::Test {
    qint64 Count(const QString& table, qint64 carId) {
        store::Query q = db().OpenQuery(
            QStringLiteral("SELECT COUNT(*) FROM %1 WHERE lCar_id = %2").arg(table).arg(carId));
        return q.Next() ? q.Value(0).toLongLong() : -1;
    }
    // Every table a car has rows in, as counts.
    QList<qint64> Rows(qint64 carId) {
        QList<qint64> counts;
        for (const char* table :
             {"tblCars", "tblRuns", "tblExpenses", "tblCarSetup", "tblMaintenance"}) {
            counts << Count(QString::fromLatin1(table), carId);
        }
        return counts;
    }
    // A second car with one row in every table that holds a car's rows.
    void AddCarWithRows(qint64 carId) {
        db().Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES "
                                    "(%1, 'O''Hara''s \"Rail\"', '7')")
                         .arg(carId));
        db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id) VALUES (1, %1)").arg(carId));
        db().Execute(
            QStringLiteral("INSERT INTO tblExpenses (lEvent_id, lCar_id, cExpense_amt) VALUES "
                           "(1, %1, 5)")
                .arg(carId));
        db().Execute(QStringLiteral("INSERT INTO tblCarSetup (lRun_id, lCar_id, sSetup_cat) "
                                    "VALUES (900, %1, 'DA')")
                         .arg(carId));
        db().Execute(QStringLiteral("INSERT INTO tblMaintenance (lCar_id, iScheduledRuns) VALUES "
                                    "(%1, 10)")
                         .arg(carId));
    }
    store::Database& db() { return logbook.db(); }

    test::TempLogbook logbook;
};

TEST_F(Cars, DeleteTakesEveryRowOfTheCarAtOnceOrNone) {
    AddCarWithRows(2);
    const QList<qint64> firstCar = Rows(1);
    // The runs go first; the expenses refuse: nothing goes.
    db().ExecRaw(
        QStringLiteral("CREATE TRIGGER keep BEFORE DELETE ON tblExpenses BEGIN "
                       "SELECT RAISE(ABORT, 'kept'); END"));
    EXPECT_THROW(garage::DeleteCar(db(), 2), store::DbError);
    EXPECT_EQ(Rows(2), (QList<qint64>{1, 1, 1, 1, 1}));

    db().ExecRaw(QStringLiteral("DROP TRIGGER keep"));
    const garage::CarRowsDeleted deleted = garage::DeleteCar(db(), 2);
    EXPECT_EQ(deleted.runs + deleted.expenses + deleted.setupRuns + deleted.maintenance, 4);
    EXPECT_EQ(Rows(2), (QList<qint64>{0, 0, 0, 0, 0}));
    EXPECT_EQ(Rows(1), firstCar);
}

}  // namespace
