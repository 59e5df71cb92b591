// The old tune-up read from a car or a run, and the new one written back in one transaction.

#include "tuneup/tuneupstore.h"
#include "store/dberror.h"
#include "support/logbook.h"

#include <gtest/gtest.h>
#include <QStringList>

using namespace slipbook;
using namespace slipbook::tuneup;

namespace {

struct TuneUpStore : ::testing::Test {
    store::Database& db() { return logbook.db(); }
    QVariant Value(const QString& sql) {
        auto rs = db().OpenRecordset(sql, store::RecordsetType::Snapshot);
        return rs->Eof() ? QVariant() : rs->Value(0);
    }
    // Every column of a row, joined, to see that nothing of it changed.
    QString Row(const QString& table, const QString& key, qint64 id) {
        auto rs = db().OpenRecordset(
            QStringLiteral("SELECT * FROM %1 WHERE %2 = %3").arg(table, key).arg(id),
            store::RecordsetType::Snapshot);
        QStringList cells;
        if (rs->Eof()) {
            return QStringLiteral("<no row>");
        }
        for (int i = 0; i < rs->FieldCount(); ++i) {
            const QVariant v = rs->Value(i);
            cells << (v.isValid() ? v.toString() : QStringLiteral("<Null>"));
        }
        return cells.join(u'|');
    }
    qint64 AddRun(qint64 carId, const QString& adr) {
        db().Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lRun_num, sBaseADR, sBaseJet, "
                                    "sHatNozzle2_val, sHeadNozzle8_val) VALUES (%1, 1, '%2', "
                                    "'68', '0.041', '0.033')")
                         .arg(carId)
                         .arg(adr));
        return Value(QStringLiteral("SELECT max(lRun_id) FROM tblRuns")).toLongLong();
    }
    static NewTuneUp Sample() {
        NewTuneUp t;
        t.carbType = QStringLiteral("FI");
        t.fuelType = QStringLiteral("METHANOL");
        t.adr = QStringLiteral(" 95.5 ");
        t.jet = QString();  // out of range: written as the empty text
        t.jetDiameter = QStringLiteral("0.074");
        t.bypassPill = QStringLiteral("0.161");
        t.boost = QStringLiteral("10");
        t.nozzleArea = QStringLiteral("0.3");
        for (int p = 0; p < kNozzlePositions; ++p) {
            for (int n = 0; n < kNozzlesPerPosition; ++n) {
                t.nozzles[p][n] = QStringLiteral("%1.%2").arg(p + 1).arg(n + 1);
            }
        }
        t.nozzles[1][0] = QStringLiteral("0.040 Bob's");
        return t;
    }

    test::TempLogbook logbook;
};

TEST_F(TuneUpStore, ReadsTheCarsOrTheRunsTuneUpAndNamesWhatIsMissing) {
    db().Execute(QStringLiteral(
        "UPDATE tblCars SET sBaseADR = '100', sBaseJet = '72', sBaseJetDiameter = Null, "
        "sBaseBypassPill = '0.08', sBaseBoost = '10', sBlowerNozzle1_val = '0.05', "
        "sManifoldNozzle8_val = '0.06' WHERE lCar_id = 1"));
    OldTuneUp car = ReadOldTuneUp(db(), OldSource::Car, 1, 0);
    EXPECT_EQ(car.failure, LoadFailure::None);
    EXPECT_EQ(car.car.number, QStringLiteral("1"));
    EXPECT_EQ(car.car.name, QStringLiteral("My Race Car"));
    EXPECT_EQ(car.car.carbType, QStringLiteral("CARB"));
    EXPECT_EQ(car.car.fuelType, QStringLiteral("GAS"));
    EXPECT_EQ(car.base.adr, QStringLiteral("100"));
    EXPECT_EQ(car.base.jet, QStringLiteral("72"));
    EXPECT_TRUE(car.base.jetDiameter.isEmpty());
    EXPECT_EQ(car.base.bypassPill, QStringLiteral("0.08"));
    EXPECT_EQ(car.base.nozzles[0][0], QStringLiteral("0.05"));  // Blower 1
    EXPECT_EQ(car.base.nozzles[3][7], QStringLiteral("0.06"));  // Manifold 8
    EXPECT_TRUE(car.base.nozzles[1][0].isEmpty());

    // A run's tune-up comes with its own car, whatever car was asked.
    db().Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ) "
                       "VALUES (2, 'Dragster', '22', 'FI')"));
    const qint64 run = AddRun(2, QStringLiteral("97"));
    OldTuneUp fromRun = ReadOldTuneUp(db(), OldSource::Run, 1, run);
    EXPECT_EQ(fromRun.failure, LoadFailure::None);
    EXPECT_EQ(fromRun.car.id, 2);
    EXPECT_EQ(fromRun.car.number, QStringLiteral("22"));
    EXPECT_EQ(fromRun.car.carbType, QStringLiteral("FI"));
    EXPECT_EQ(fromRun.base.adr, QStringLiteral("97"));
    EXPECT_EQ(fromRun.base.nozzles[1][1], QStringLiteral("0.041"));  // Hat 2
    EXPECT_EQ(fromRun.base.nozzles[2][7], QStringLiteral("0.033"));  // Head 8

    EXPECT_EQ(ReadOldTuneUp(db(), OldSource::Run, 1, 0).failure, LoadFailure::Error);
    EXPECT_EQ(ReadOldTuneUp(db(), OldSource::Car, 99, 0).failure, LoadFailure::CarMissing);
    EXPECT_EQ(ReadOldTuneUp(db(), OldSource::Run, 1, run + 1).failure, LoadFailure::RunMissing);
    db().Execute(QStringLiteral("DELETE FROM tblCars WHERE lCar_id = 2"));
    EXPECT_EQ(ReadOldTuneUp(db(), OldSource::Run, 1, run).failure, LoadFailure::RunCarMissing);

    EXPECT_EQ(LoadFailureText(LoadFailure::Error),
              QStringLiteral("Error loading old tune-up (1).  Perhaps no runs on file."));
    EXPECT_EQ(LoadFailureText(LoadFailure::CarMissing),
              QStringLiteral("Error loading old tune-up (2).  Contact Quadrumex."));
    EXPECT_EQ(LoadFailureText(LoadFailure::RunMissing),
              QStringLiteral("Error loading old tune-up (3).  Contact Quadrumex."));
    EXPECT_EQ(LoadFailureText(LoadFailure::RunCarMissing),
              QStringLiteral("Error loading old tune-up (4).  Contact Quadrumex."));
    EXPECT_TRUE(LoadFailureText(LoadFailure::None).isEmpty());
}

TEST_F(TuneUpStore, SavesToTheCarWholeOrNotAtAll) {
    const qint64 run = AddRun(1, QStringLiteral("97"));
    const QString runRow = Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), run);
    ASSERT_EQ(SaveTuneUpToCar(db(), 1, Sample()), SaveOutcome::Saved);
    EXPECT_EQ(Value("SELECT sCarCarb_typ FROM tblCars WHERE lCar_id = 1").toString(), "FI");
    EXPECT_EQ(Value("SELECT sCarFuel_typ FROM tblCars WHERE lCar_id = 1").toString(), "METHANOL");
    EXPECT_EQ(Value("SELECT sHatNozzle1_val FROM tblCars WHERE lCar_id = 1").toString(),
              QStringLiteral("0.040 Bob's"));
    // An empty box is the empty text, not Null.
    EXPECT_EQ(Value("SELECT count(*) FROM tblCars WHERE lCar_id = 1 AND sBaseJet IS NOT NULL AND "
                    "length(sBaseJet) = 0")
                  .toInt(),
              1);
    EXPECT_EQ(Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), run), runRow);

    // Read back, it is the old tune-up the window shows next.
    const OldTuneUp back = ReadOldTuneUp(db(), OldSource::Car, 1, 0);
    EXPECT_EQ(back.base.adr, QStringLiteral("95.5"));
    EXPECT_EQ(back.base.jetDiameter, QStringLiteral("0.074"));
    EXPECT_EQ(back.base.boost, QStringLiteral("10"));
    EXPECT_EQ(back.base.nozzles, Sample().nozzles);

    // A car deleted meanwhile is missing, and nothing is written anywhere.
    const QString car = Row(QStringLiteral("tblCars"), QStringLiteral("lCar_id"), 1);
    EXPECT_EQ(SaveTuneUpToCar(db(), 7, Sample()), SaveOutcome::Missing);
    EXPECT_EQ(Row(QStringLiteral("tblCars"), QStringLiteral("lCar_id"), 1), car);
    EXPECT_EQ(Value("SELECT count(*) FROM tblCars").toInt(), 1);
}

TEST_F(TuneUpStore, SavesToTheRunInTwoWritesOfOneTransaction) {
    db().Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, "
                       "'Dragster', '22')"));
    const qint64 run = AddRun(2, QStringLiteral("97"));
    const qint64 other = AddRun(2, QStringLiteral("98"));
    const QString car = Row(QStringLiteral("tblCars"), QStringLiteral("lCar_id"), 2);
    const QString otherRow = Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), other);

    ASSERT_EQ(SaveTuneUpToRun(db(), run, Sample()), SaveOutcome::Saved);
    const OldTuneUp back = ReadOldTuneUp(db(), OldSource::Run, 0, run);
    EXPECT_EQ(back.base.adr, QStringLiteral("95.5"));
    EXPECT_EQ(back.base.jet, QString());
    EXPECT_EQ(back.base.bypassPill, QStringLiteral("0.161"));
    EXPECT_EQ(back.base.nozzles, Sample().nozzles);
    EXPECT_EQ(Value(QStringLiteral("SELECT sNozzleArea FROM tblRuns WHERE lRun_id = %1").arg(run))
                  .toString(),
              QStringLiteral("0.3"));
    // Nothing of the car, nor of another run.
    EXPECT_EQ(Row(QStringLiteral("tblCars"), QStringLiteral("lCar_id"), 2), car);
    EXPECT_EQ(Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), other), otherRow);

    EXPECT_EQ(SaveTuneUpToRun(db(), run + 100, Sample()), SaveOutcome::Missing);

    // The second write refused: the first is taken back with it.
    const QString before = Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), other);
    db().ExecRaw(QStringLiteral(
        "CREATE TRIGGER tuneupRefused BEFORE UPDATE ON tblRuns WHEN OLD.sBaseADR = 'boom' "
        "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    NewTuneUp boom = Sample();
    boom.adr = QStringLiteral("boom");
    EXPECT_THROW(SaveTuneUpToRun(db(), other, boom), store::DbError);
    EXPECT_EQ(Row(QStringLiteral("tblRuns"), QStringLiteral("lRun_id"), other), before);
}

}  // namespace
