// A car's setup runs: the two list statements and the copies in tblCarSetup.

#include "prediction/setupruns.h"
#include "store/dberror.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::prediction;

namespace {

struct SetupRuns : ::testing::Test {
    // A run of the car on 07/04/2003 at the hour given (oldest first is by date and time).
    void Run(qint64 id, qint64 car, int hour, const char* et14, const char* et18) {
        db().Execute(QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, "
                                    "dtRun_dt, dtRun_tm, i14Mile_et, i18Mile_et, iCorrFactor_val, "
                                    "iDensityAlt_val, sThrottleStop1_val, sRunNotes_tx) VALUES "
                                    "(%1, %2, 1, %1, #07/04/2003#, #%3:00#, %4, %5, 1.0123, 2150, "
                                    "'1.25', 'Run %1')")
                         .arg(id)
                         .arg(car)
                         .arg(hour)
                         .arg(QLatin1String(et14), QLatin1String(et18)));
    }

    // The lRun_id of each row of a statement, in its order.
    QList<qint64> Ids(const QString& sql) {
        QList<qint64> ids;
        store::Query q = db().OpenQuery(sql);
        while (q.Next()) {
            ids << q.Value(QStringLiteral("lRun_id")).toLongLong();
        }
        return ids;
    }

    QList<qint64> Setup(const QString& type, bool eighth, qint64 car = 1) {
        return Ids(SetupRunsSql(car, type, eighth));
    }

    QList<qint64> Available(const QString& type, bool eighth, qint64 car = 1) {
        return Ids(AvailableRunsSql(car, Setup(type, eighth, car), eighth));
    }

    qint64 SetupRows() {
        store::Query q = db().OpenQuery(QStringLiteral("SELECT COUNT(*) FROM tblCarSetup"));
        q.Next();
        return q.Value(0).toLongLong();
    }

    store::Database& db() { return logbook.db(); }

    test::TempLogbook logbook;
    const QString da = kDensityAltitudeSetup.toString();
    const QString ts = kThrottleStopSetup.toString();
};

}  // namespace

TEST_F(SetupRuns, StatementsReadAsTheProgramWritesThem) {
    EXPECT_EQ(SetupRunsSql(3, da, false),
              QStringLiteral("SELECT * FROM tblCarSetup  WHERE lCar_id = 3 AND sSetup_cat = 'DA' "
                             "AND bEighthNotQuarter = 0 ORDER BY sSetup_cat, dtRun_dt, dtRun_tm"));
    EXPECT_EQ(SetupRunsSql(3, ts, true),
              QStringLiteral("SELECT * FROM tblCarSetup  WHERE lCar_id = 3 AND sSetup_cat = 'TS' "
                             "AND bEighthNotQuarter = -1 ORDER BY sSetup_cat, dtRun_dt, dtRun_tm"));
    EXPECT_EQ(AvailableRunsSql(3, {12, 40}, false),
              QStringLiteral("SELECT * FROM tblRuns  WHERE lCar_id = 3 AND lRun_id NOT IN "
                             "(0,12,40) AND i14Mile_et > 0 ORDER BY dtRun_dt, dtRun_tm"));
    // An empty list excludes nothing and still makes a statement that runs.
    EXPECT_EQ(AvailableRunsSql(3, {}, true),
              QStringLiteral("SELECT * FROM tblRuns  WHERE lCar_id = 3 AND lRun_id NOT IN (0) "
                             "AND i18Mile_et > 0 ORDER BY dtRun_dt, dtRun_tm"));
    EXPECT_EQ(SetupColumnIds(false), (QList<qint64>{67, 70, 71, 83, 84, 181, 190, 195, 196, 197}));
    EXPECT_EQ(SetupColumnIds(true), (QList<qint64>{67, 70, 71, 83, 84, 181, 187, 195, 196, 197}));
}

TEST_F(SetupRuns, CopyIsTheWholeRunFrozenAndKeptPerCategoryAndDistance) {
    Run(21, 1, 10, "10.25", "6.5");
    Run(22, 1, 11, "10.5", "6.6");
    EXPECT_EQ(AddSetupRun(db(), 22, da, false), 1);
    EXPECT_EQ(AddSetupRun(db(), 22, ts, false), 1);
    EXPECT_EQ(AddSetupRun(db(), 22, da, true), 1);
    EXPECT_EQ(Setup(da, false), (QList<qint64>{22}));
    EXPECT_EQ(Available(da, false), (QList<qint64>{21}));

    // Later edits of the run, even its deletion, don't reach the copy.
    db().Execute(QStringLiteral("UPDATE tblRuns SET i14Mile_et = 9.5 WHERE lRun_id = 22"));
    db().Execute(QStringLiteral("DELETE * FROM tblRuns WHERE lRun_id = 22"));
    auto copy = db().OpenRecordset(SetupRunsSql(1, da, true), store::RecordsetType::Snapshot);
    ASSERT_FALSE(copy->Eof());
    EXPECT_EQ(copy->Value(QStringLiteral("lRun_num")).toLongLong(), 22);
    EXPECT_DOUBLE_EQ(copy->Value(QStringLiteral("i14Mile_et")).toDouble(), 10.5);
    EXPECT_DOUBLE_EQ(copy->Value(QStringLiteral("iCorrFactor_val")).toDouble(), 1.0123);
    EXPECT_EQ(copy->Value(QStringLiteral("sThrottleStop1_val")).toString(), QStringLiteral("1.25"));
    EXPECT_EQ(copy->Value(QStringLiteral("sRunNotes_tx")).toString(), QStringLiteral("Run 22"));
    EXPECT_EQ(copy->Value(QStringLiteral("dtRun_tm")).toDateTime().time(), QTime(11, 0));
    // A run that is gone can't be added again; nothing is written.
    EXPECT_EQ(AddSetupRun(db(), 22, QStringLiteral("D'A"), false), 0);

    // Removing takes the run off one list only.
    EXPECT_EQ(RemoveSetupRun(db(), 22, da, false), 1);
    EXPECT_EQ(Setup(da, false), QList<qint64>());
    EXPECT_EQ(Setup(ts, false), (QList<qint64>{22}));
    EXPECT_EQ(Setup(da, true), (QList<qint64>{22}));
    EXPECT_EQ(SetupRows(), 2);

    // A category with an apostrophe breaks no statement.
    const QString odd = QStringLiteral("D'A");
    EXPECT_EQ(AddSetupRun(db(), 21, odd, false), 1);
    EXPECT_EQ(Setup(odd, false), (QList<qint64>{21}));
    EXPECT_EQ(RemoveSetupRun(db(), 21, odd, false), 1);
}

TEST_F(SetupRuns, FailedStatementLeavesTheTableAsItWas) {
    Run(41, 1, 10, "10.25", "6.5");
    AddSetupRun(db(), 41, da, false);
    // The copy lands, then its category can't be set: the copy must not stay behind without one.
    db().ExecRaw(
        QStringLiteral("CREATE TRIGGER refuseCategory BEFORE UPDATE ON tblCarSetup "
                       "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    EXPECT_THROW(AddSetupRun(db(), 41, ts, false), store::DbError);
    EXPECT_EQ(SetupRows(), 1);
    EXPECT_EQ(Setup(ts, false), QList<qint64>());

    db().ExecRaw(
        QStringLiteral("CREATE TRIGGER refuseRemove BEFORE DELETE ON tblCarSetup "
                       "BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    EXPECT_THROW(RemoveSetupRun(db(), 41, da, false), store::DbError);
    EXPECT_EQ(Setup(da, false), (QList<qint64>{41}));

    db().ExecRaw(QStringLiteral("DROP TRIGGER refuseCategory"));
    db().ExecRaw(QStringLiteral("DROP TRIGGER refuseRemove"));
    EXPECT_EQ(AddSetupRun(db(), 41, ts, false), 1);
    EXPECT_EQ(Setup(ts, false), (QList<qint64>{41}));
}
