// Kills a process that is saving runs, again and again at random moments, and after each kill
// opens the logbook as the next start would: no half run, no lost run that was reported saved,
// no damage, and nothing left behind that stops the next open.
//
// SLIPBOOK_KILLS sets the number of kills (50), SLIPBOOK_KILL_SEED repeats a failed sequence.

#include "store/database.h"
#include "store/dberror.h"
#include "support/logbook.h"
#include "support/saveloop.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <ostream>
#include <random>
#include <vector>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

const QString kLoop = QStringLiteral(SLIPBOOK_SAVELOOP);

int Kills() {
    bool ok = false;
    const int kills = qEnvironmentVariableIntValue("SLIPBOOK_KILLS", &ok);
    return ok && kills > 0 ? kills : 50;
}

std::uint32_t Seed() {
    bool ok = false;
    const uint seed = qEnvironmentVariable("SLIPBOOK_KILL_SEED").toUInt(&ok);
    return ok ? seed : std::random_device{}();
}

qint64 Count(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    return q.Next() ? q.Integer(0) : -1;
}

// The run counts of car 1's open maintenance items, by id.
std::map<qint64, double> OpenItems(store::Database& db) {
    std::map<qint64, double> items;
    store::Query q = db.OpenQuery(QStringLiteral(
        "SELECT lMaintenance_id, iRunsMade FROM tblMaintenance WHERE lCar_id = 1 AND "
        "bCompleted = 0"));
    while (q.Next()) {
        items[q.Integer(0)] = q.Value(1).toDouble();
    }
    return items;
}

struct Before {
    std::map<qint64, double> items;
    qint64 runs = 0;  // runs of the template, none of them the loop's
};

// Starts the loop, lets it save for `delayMs` once it is ready, kills it and returns the runs it
// reported saved.
void SaveAndKill(const QString& logbook, int delayMs, std::vector<qint64>& saved) {
    QProcess child;
    child.start(kLoop, {logbook});
    ASSERT_TRUE(child.waitForStarted(10'000)) << child.errorString().toStdString();
    const QDeadlineTimer readyBy(60'000);
    while (!child.canReadLine()) {
        ASSERT_TRUE(child.waitForReadyRead(readyBy.remainingTime()))
            << "the loop did not open the logbook: " << child.readAllStandardError().toStdString();
    }
    ASSERT_EQ(child.readLine(), QByteArray("ready\n"));

    const QDeadlineTimer killAt(delayMs);
    while (!killAt.hasExpired() && child.state() == QProcess::Running) {
        child.waitForReadyRead(killAt.remainingTime());
    }
    child.kill();
    ASSERT_TRUE(child.waitForFinished(10'000));
    ASSERT_EQ(child.exitStatus(), QProcess::CrashExit)
        << "the loop stopped by itself: " << child.readAllStandardError().toStdString();

    // One write per line: a kill loses a line whole or not at all.
    const QByteArray out = child.readAllStandardOutput();
    ASSERT_TRUE(out.isEmpty() || out.endsWith('\n')) << out.toStdString();
    for (const QByteArray& line : out.split('\n')) {
        if (line.isEmpty()) {
            continue;
        }
        ASSERT_TRUE(line.startsWith("saved ")) << line.toStdString();
        saved.push_back(line.mid(6).toLongLong());
    }
}

// Opens the logbook as the next start would and checks it through; `runs` is the number of the
// loop's runs found.
void Inspect(const QString& path, const Before& before, qint64& runs) {
    store::Database db;
    try {
        db.Open(path);
    } catch (const store::DbError& e) {
        FAIL() << "the logbook does not open after a kill: " << e.description().toStdString();
    }
    {
        store::Query check = db.OpenQuery(QStringLiteral("PRAGMA quick_check"));
        ASSERT_TRUE(check.Next());
        ASSERT_EQ(check.Text(0), QStringLiteral("ok"));
    }

    // Runs 1 to n, each once and whole.
    runs = 0;
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lRun_num, sRunNotes_tx, sJet1_val, lEvent_id, lCar_id, "
                       "lRunType_id, lOpponent_id, dtRun_dt, dtRun_tm, iTemp_val, iHumidity_val, "
                       "iBarometricPressure_val, i14Mile_et FROM tblRuns WHERE ") +
        test::kLoopRunsWhere + QStringLiteral(" ORDER BY lRun_num, lRun_id"));
    while (q.Next()) {
        const qint64 n = ++runs;
        ASSERT_EQ(q.Integer(0), n) << "a run missing or twice";
        SCOPED_TRACE(testing::Message() << "run " << n);
        EXPECT_EQ(q.Text(1), test::LoopNotes(n));
        EXPECT_EQ(q.Text(2), QString::number(n));
        EXPECT_EQ(q.Integer(3), 1);
        EXPECT_EQ(q.Integer(4), 1);
        EXPECT_EQ(q.Integer(5), 4);
        EXPECT_EQ(q.Integer(6), 1);
        EXPECT_EQ(q.Value(7).toDateTime().date(), QDate(2024, 7, 4));
        EXPECT_EQ(q.Value(8).toDateTime().time(), test::LoopTime(n));
        EXPECT_EQ(q.Value(9).toDouble(), 75);
        EXPECT_EQ(q.Value(10).toDouble(), 50);
        EXPECT_EQ(q.Value(11).toDouble(), 29.92);
        EXPECT_EQ(q.Value(12).toDouble(), 9.87);
        if (testing::Test::HasFailure()) {
            return;  // one broken run says enough
        }
    }
    // A run that lost its notes would not carry the mark: no other row may have come.
    EXPECT_EQ(Count(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns")), before.runs + runs);

    // The car and the counters land in the same transaction as the run.
    if (runs > 0) {
        store::Query car = db.OpenQuery(
            QStringLiteral("SELECT sJet1_val, sCarNotes_tx FROM tblCars WHERE lCar_id = 1"));
        ASSERT_TRUE(car.Next());
        EXPECT_EQ(car.Text(0), QString::number(runs));
        EXPECT_EQ(car.Text(1), test::LoopNotes(runs));
    }
    std::map<qint64, double> counted = before.items;
    for (auto& [id, made] : counted) {
        made += static_cast<double>(runs);
    }
    EXPECT_EQ(OpenItems(db), counted);
    db.Close();
}

}  // namespace

TEST(KillLoop, AKilledSaveLeavesNoHalfRunLosesNoReportedRunAndKeepsTheLogbookWhole) {
    ASSERT_TRUE(QFileInfo(kLoop).isExecutable()) << kLoop.toStdString();
    const int kills = Kills();
    const std::uint32_t seed = Seed();
    SCOPED_TRACE(testing::Message() << "SLIPBOOK_KILL_SEED=" << seed);

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("Slipbook.db"));
    ASSERT_TRUE(QFile::copy(test::TemplatePath(), path));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);

    Before before;
    {
        store::Database db;
        db.Open(path);
        if (OpenItems(db).empty()) {
            db.Execute(QStringLiteral(
                "INSERT INTO tblMaintenance (lCar_id, bCompleted, iScheduledRuns, iRunsMade) "
                "VALUES (1, False, 20, 0)"));
        }
        before.items = OpenItems(db);
        before.runs = Count(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns"));
        ASSERT_EQ(
            Count(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns WHERE ") + test::kLoopRunsWhere),
            0);
        db.Close();
    }

    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delay(5, 150);
    qint64 runs = 0;
    qint64 reportedInAll = 0;
    int landedUnreported = 0;
    for (int round = 1; round <= kills; ++round) {
        SCOPED_TRACE(testing::Message() << "kill " << round);
        std::vector<qint64> saved;
        SaveAndKill(path, delay(random), saved);
        if (HasFatalFailure()) {
            return;
        }
        // Each start goes on from the runs it finds.
        for (size_t i = 0; i < saved.size(); ++i) {
            ASSERT_EQ(saved[i], runs + 1 + static_cast<qint64>(i));
        }
        const qint64 reported = runs + static_cast<qint64>(saved.size());

        qint64 found = 0;
        Inspect(path, before, found);
        if (HasFailure()) {
            return;
        }
        ASSERT_GE(found, reported) << "a run reported saved is gone";
        // The save the kill interrupted may have landed whole, no more.
        ASSERT_LE(found, reported + 1);
        landedUnreported += static_cast<int>(found - reported);
        reportedInAll += static_cast<qint64>(saved.size());
        runs = found;
    }
    // Kills that come before any save prove nothing.
    EXPECT_GT(reportedInAll, 0);
    std::printf("%d kills, %lld runs reported saved, %d more landed unreported, seed %u\n", kills,
                static_cast<long long>(reportedInAll), landedUnreported, seed);
}
