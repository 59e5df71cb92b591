// The cars without a window: the delete with everything that belongs to a car, all or nothing,
// and the one default car.

#include "garage/cars.h"
#include "store/dberror.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

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

TEST_F(Cars, DeleteTakesEveryRowOfTheCarAndNoOtherCarsRows) {
    AddCarWithRows(2);
    const QList<qint64> firstCar = Rows(1);
    ASSERT_EQ(Rows(2), (QList<qint64>{1, 1, 1, 1, 1}));

    const garage::CarRowsDeleted deleted = garage::DeleteCar(db(), 2);
    EXPECT_EQ(deleted.runs, 1);
    EXPECT_EQ(deleted.expenses, 1);
    EXPECT_EQ(deleted.setupRuns, 1);
    EXPECT_EQ(deleted.maintenance, 1);
    EXPECT_EQ(Rows(2), (QList<qint64>{0, 0, 0, 0, 0}));
    EXPECT_EQ(Rows(1), firstCar);
}

TEST_F(Cars, ADeleteThatFailsHalfWayLeavesEveryRow) {
    AddCarWithRows(2);
    // The runs go first; the expenses refuse.
    db().ExecRaw(
        QStringLiteral("CREATE TRIGGER keep BEFORE DELETE ON tblExpenses BEGIN "
                       "SELECT RAISE(ABORT, 'kept'); END"));
    EXPECT_THROW(garage::DeleteCar(db(), 2), store::DbError);
    EXPECT_EQ(Rows(2), (QList<qint64>{1, 1, 1, 1, 1}));

    // The logbook takes the next delete as if nothing had happened.
    db().ExecRaw(QStringLiteral("DROP TRIGGER keep"));
    garage::DeleteCar(db(), 2);
    EXPECT_EQ(Rows(2), (QList<qint64>{0, 0, 0, 0, 0}));
}

TEST_F(Cars, ACarWithRunsOrExpensesCannotBeDeletedNorOneOfAnEmptyTable) {
    test::ScriptedMessages messages;
    const DeleteRule rule = garage::CarDeleteRule();
    EXPECT_TRUE(DeleteAllowed(db(), messages, rule, 1));
    db().Execute(QStringLiteral("INSERT INTO tblExpenses (lCar_id, cExpense_amt) VALUES (1, 5)"));
    EXPECT_FALSE(DeleteAllowed(db(), messages, rule, 1));
    db().Execute(QStringLiteral("DELETE * FROM tblExpenses WHERE lCar_id = 1"));
    db().Execute(QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id) VALUES (1, 1)"));
    EXPECT_FALSE(DeleteAllowed(db(), messages, rule, 1));
    db().Execute(QStringLiteral("DELETE * FROM tblRuns"));
    db().Execute(QStringLiteral("DELETE * FROM tblCars"));
    EXPECT_FALSE(DeleteAllowed(db(), messages, rule, 1));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Cars, OneCarAtMostIsTheDefault) {
    AddCarWithRows(2);
    AddCarWithRows(3);
    EXPECT_TRUE(garage::IsDefaultCar(db(), 1));
    garage::WriteDefaultCar(db(), 3, true);
    EXPECT_EQ(garage::IsDefaultCar(db(), 1), false);
    EXPECT_TRUE(garage::IsDefaultCar(db(), 3));
    store::Query flagged =
        db().OpenQuery(QStringLiteral("SELECT COUNT(*) FROM tblCars WHERE bDefault_fl = True"));
    ASSERT_TRUE(flagged.Next());
    EXPECT_EQ(flagged.Value(0).toLongLong(), 1);

    // Taken off one that isn't the default, nothing moves; off the default, none is left.
    garage::WriteDefaultCar(db(), 2, false);
    EXPECT_TRUE(garage::IsDefaultCar(db(), 3));
    garage::WriteDefaultCar(db(), 3, false);
    for (qint64 car : {1, 2, 3}) {
        EXPECT_FALSE(garage::IsDefaultCar(db(), car)) << car;
    }
    EXPECT_FALSE(garage::IsDefaultCar(db(), 99));
}

}  // namespace
