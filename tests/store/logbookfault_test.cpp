// Faults a logbook meets outside the program: damaged and foreign files, journals left beside
// it, the file moved under the running program, copies onto itself. Each case ends with the
// logbook whole, or refused with its bytes unchanged.
#include "store/access.h"
#include "store/database.h"
#include "store/dberror.h"
#include "store/logbookcopy.h"
#include "store/logbookfile.h"
#include "store/startup.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <filesystem>
#include <optional>

using namespace slipbook;
using namespace slipbook::store;

namespace {

QByteArray Sha256(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256).toHex();
}

QStringList Entries(const QString& dir) {
    return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                               QDir::NoDotAndDotDot);
}

// The engine's own connection, outside the program's store.
class Raw {
public:
    explicit Raw(const QString& path) {
        EXPECT_EQ(sqlite3_open(path.toUtf8().constData(), &db_), SQLITE_OK);
    }
    ~Raw() { sqlite3_close(db_); }
    void Exec(const char* sql) {
        char* msg = nullptr;
        EXPECT_EQ(sqlite3_exec(db_, sql, nullptr, nullptr, &msg), SQLITE_OK) << (msg ? msg : "");
        sqlite3_free(msg);
    }
    qint64 Count(const char* sql) {
        sqlite3_stmt* s = nullptr;
        qint64 n = -1;
        if (sqlite3_prepare_v2(db_, sql, -1, &s, nullptr) == SQLITE_OK &&
            sqlite3_step(s) == SQLITE_ROW) {
            n = sqlite3_column_int64(s, 0);
        }
        sqlite3_finalize(s);
        return n;
    }

private:
    sqlite3* db_ = nullptr;
};

// A logbook of `runs` runs in `dir`, closed.
QString MakeLogbook(const QString& dir, int runs, const QString& name = "Slipbook.db") {
    const QString path = QDir(dir).filePath(name);
    EXPECT_TRUE(QFile::copy(test::TemplatePath(), path));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    Database db;
    db.Open(path);
    Database::Transaction t(db);
    for (int n = 1; n <= runs; ++n) {
        db.Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, sRunNotes_tx) "
                                  "VALUES (1, 1, 'run %1')")
                       .arg(n));
    }
    t.Commit();
    return path;
}

qint64 Runs(Database& db) {
    auto q = db.OpenQuery(QStringLiteral("SELECT COUNT(*) FROM tblRuns"));
    return q.Next() ? q.Integer(0) : -1;
}

// Opening through the start's own routine; the box it shows, if any.
std::optional<Message> RefusedBox(const QString& path) {
    Database db;
    test::ScriptedMessages box;
    if (DataOpen(db, path, box)) {
        return std::nullopt;
    }
    EXPECT_EQ(box.shown.size(), 1u);
    return box.shown.empty() ? std::nullopt : std::optional(box.last());
}

}  // namespace

TEST(LogbookFault, DamagedEmptyAndIncompleteFilesAreRefusedUntouched) {
    QTemporaryDir dir;
    const QStringList before = [&] {
        MakeLogbook(dir.path(), 200);
        return Entries(dir.path());
    }();
    const QString path = QDir(dir.path()).filePath("Slipbook.db");
    const QByteArray whole = [&] {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }();
    const auto refused = [&](const QString& what, const QByteArray& bytes, const QString& words) {
        SCOPED_TRACE(what.toStdString());
        {
            QFile f(path);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(bytes);
        }
        const QByteArray sum = Sha256(path);
        const auto box = RefusedBox(path);
        ASSERT_TRUE(box.has_value());
        EXPECT_EQ(box->title, QStringLiteral("DataOpen()"));
        EXPECT_TRUE(box->text.startsWith(QStringLiteral("Error # %1\n").arg(err::CannotOpen)))
            << box->text.toStdString();
        EXPECT_TRUE(box->text.contains(words)) << box->text.toStdString();
        EXPECT_EQ(Sha256(path), sum);
        EXPECT_EQ(Entries(dir.path()), before) << "nothing left beside it";
    };

    // One page of the runs overwritten with noise.
    QByteArray noisy = whole;
    const int page = 4096;
    QRandomGenerator noise(11);
    for (int i = 0; i < page; ++i) {
        noisy[noisy.size() - 3 * page + i] = static_cast<char>(noise.generate() & 0xff);
    }
    refused("a page of noise", noisy, QStringLiteral("is damaged"));
    refused("no bytes", QByteArray(), QStringLiteral("is empty (0 bytes)"));
    refused("not a database", QByteArray(8192, 'x'), QStringLiteral("not a Slipbook logbook"));

    // Tables the saves need, each missing in turn, and one column.
    const QString scratch = QDir(dir.path()).filePath("scratch.db");
    const auto without = [&](const char* sql) {
        QFile::remove(scratch);
        QFile f(scratch);
        f.open(QIODevice::WriteOnly);
        f.write(whole);
        f.close();
        Raw(scratch).Exec(sql);
        QFile g(scratch);
        g.open(QIODevice::ReadOnly);
        const QByteArray bytes = g.readAll();
        g.close();
        QFile::remove(scratch);
        return bytes;
    };
    for (const char* table : {"tblOpponent", "tblExpenses", "tbl14MileView"}) {
        refused(table, without(("DROP TABLE " + QByteArray(table)).constData()),
                QStringLiteral("it has no table %1").arg(QLatin1String(table)));
    }
    refused("a column", without("ALTER TABLE tblRuns DROP COLUMN sJet1_val"),
            QStringLiteral("it lacks the column tblRuns.sJet1_val"));

    // The file as it was opens with every run.
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(whole);
    }
    Database db;
    db.Open(path);
    EXPECT_EQ(Runs(db), 200);
}

TEST(LogbookFault, AJournalIsAppliedOnlyWhenTheLogbookComesOutOfItWhole) {
    // A log from another database altogether, beside a whole logbook.
    {
        QTemporaryDir dir;
        const QString path = MakeLogbook(dir.path(), 2000);
        const QByteArray sum = Sha256(path);
        const QString other = QDir(dir.path()).filePath("other.db");
        {
            Raw raw(other);
            raw.Exec(
                "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0; CREATE TABLE t(x);"
                "INSERT INTO t VALUES (1);");
            ASSERT_TRUE(QFile::copy(other + "-wal", path + "-wal"));
        }
        test::ScriptedMessages box;
        Database db;
        ASSERT_TRUE(DataOpen(db, path, box));
        EXPECT_EQ(Runs(db), 2000);
        ASSERT_EQ(box.shown.size(), 1u);
        EXPECT_TRUE(box.last().text.contains("did not belong to it and was not applied"));
        EXPECT_FALSE(QFileInfo::exists(path + "-wal"));
        const QStringList kept = QDir(dir.path()).entryList({"Slipbook.db-wal.*.not-applied"});
        EXPECT_EQ(kept.size(), 1);
        EXPECT_TRUE(box.last().text.contains(kept.value(0)));
        db.Close();
        EXPECT_EQ(Sha256(path), sum);
    }
    // An older copy put back after a crash, with the crash's log still beside it; and the same
    // log beside the logbook it was written for.
    {
        QTemporaryDir dir;
        const QString path = MakeLogbook(dir.path(), 100);
        const QString older = QDir(dir.path()).filePath("older.db");
        ASSERT_TRUE(QFile::copy(path, older));
        const QString crashed = QDir(dir.path()).filePath("crashed");
        QDir().mkpath(crashed);
        {
            Raw raw(path);
            raw.Exec("PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0");
            for (int n = 0; n < 300; ++n) {
                raw.Exec(
                    "INSERT INTO tblRuns (lCar_id, sRunNotes_tx) VALUES (1, "
                    "'before the crash, checkpointed')");
            }
            raw.Exec("PRAGMA wal_checkpoint(TRUNCATE)");
            for (int n = 0; n < 50; ++n) {
                raw.Exec("INSERT INTO tblRuns (lCar_id, sRunNotes_tx) VALUES (1, 'in the log')");
            }
            // What a crash leaves: the file and its log, copied while the writer still runs.
            ASSERT_TRUE(QFile::copy(path, crashed + "/Slipbook.db"));
            ASSERT_TRUE(QFile::copy(path + "-wal", crashed + "/Slipbook.db-wal"));
        }
        const QString log = QDir(dir.path()).filePath("crash.log");
        ASSERT_TRUE(QFile::copy(crashed + "/Slipbook.db-wal", log));
        const QString own = crashed + "/Slipbook.db";
        {
            Database db;
            db.Open(own);
            EXPECT_EQ(Runs(db), 450) << "the log of the logbook's own crash is applied";
            EXPECT_TRUE(db.TakeOpenNotices().isEmpty());
        }
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_TRUE(QFile::copy(older, path));
        ASSERT_TRUE(QFile::copy(log, path + "-wal"));
        const QByteArray sum = Sha256(path);
        Database db;
        db.Open(path);
        EXPECT_EQ(Runs(db), 100) << "the older copy, as it was";
        EXPECT_EQ(db.TakeOpenNotices().size(), 1);
        auto q = db.OpenQuery("PRAGMA quick_check");
        ASSERT_TRUE(q.Next());
        EXPECT_EQ(q.Text(0), QStringLiteral("ok"));
        db.Close();
        EXPECT_EQ(Sha256(path), sum);
    }
}

TEST(LogbookFault, ALogbookMovedReplacedOrDeletedWhileOpenTakesNoMoreSaves) {
    const auto saveRefused = [](Database& db) {
        try {
            db.Execute("INSERT INTO tblRuns (lCar_id, sRunNotes_tx) VALUES (1, 'after')");
        } catch (const DbError& e) {
            EXPECT_EQ(e.number(), err::Moved);
            return e.description();
        }
        ADD_FAILURE() << "the save went into a file nobody will see";
        return QString();
    };
    const auto rescued = [](const QString& text, qint64 runs) {
        const qsizetype at = text.indexOf(" is kept as ");
        ASSERT_GE(at, 0) << text.toStdString();
        const QString copy = text.mid(at + 12).section(QStringLiteral(". Close"), 0, 0);
        Raw raw(copy);
        EXPECT_EQ(raw.Count("SELECT COUNT(*) FROM tblRuns"), runs);
    };

    // Replaced by rename, as a sync or backup tool does.
    {
        QTemporaryDir dir;
        const QString path = MakeLogbook(dir.path(), 30);
        const QString other = MakeLogbook(dir.path(), 5, "incoming.db");
        Database db;
        db.Open(path);
        db.Execute("INSERT INTO tblRuns (lCar_id, sRunNotes_tx) VALUES (1, 'saved')");
        const QByteArray sum = Sha256(other);
        ASSERT_TRUE(ReplaceFile(other, path).isEmpty());
        const QString text = saveRefused(db);
        EXPECT_TRUE(text.contains("was moved, replaced or deleted")) << text.toStdString();
        rescued(text, 31);
        EXPECT_FALSE(db.CheckStillInPlace());
        EXPECT_EQ(Sha256(path), sum) << "the file put in its place is not written";
        // A save in a transaction is refused before it begins.
        EXPECT_THROW(Database::Transaction t(db), DbError);
    }
    // Deleted; the next start finds no logbook but its journal, and installs none beside it.
    {
        QTemporaryDir app;
        QTemporaryDir data;
        QDir(app.path()).mkpath("Upgrade");
        ASSERT_TRUE(QFile::copy(test::TemplatePath(), TemplatePath(app.path())));
        const QString path = MakeLogbook(data.path(), 12);
        Database db;
        db.Open(path);
        ASSERT_TRUE(QFile::remove(path));
        rescued(saveRefused(db), 12);
        db.Close();
        QFile journal(path + "-journal");
        ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
        journal.write(QByteArray(1024, '\0'));
        journal.close();
        Database next;
        test::ScriptedMessages box;
        EXPECT_TRUE(DataInit(next, box));
        EXPECT_FALSE(QFileInfo::exists(path));
        struct NoUi : StartupUi {
            void SetBusy(bool) override {}
            void ShowSplash(const QString&, const QString&) override { ADD_FAILURE(); }
            void SetSplashStatus(const QString&) override {}
            void LoadMainWindow() override {}
            void FormLoadStuff() override {}
            void ShowMainWindow() override {}
            void CloseSplash() override {}
            void YieldToEvents() override {}
            bool SplashClosedByKey() const override { return true; }
        } ui;
        struct NoClock : Clock {
            qint64 NowMs() override { return 0; }
        } clock;
        EXPECT_EQ(RunStartup(next, box, ui, clock, app.path(), data.path()), StartupOutcome::Ended);
        EXPECT_FALSE(QFileInfo::exists(path)) << "no template beside an old journal";
        ASSERT_FALSE(box.shown.empty());
        EXPECT_TRUE(box.last().text.contains("does not start a new logbook beside them"))
            << box.last().text.toStdString();
    }
}

TEST(LogbookFault, CopiesNeverLandOnTheLogbookAndOthersMayReadIt) {
    QTemporaryDir dir;
    const QString path = MakeLogbook(dir.path(), 40);
    Database db;
    db.Open(path);
    const QByteArray sum = Sha256(path);

    // The logbook's own folder under another name: a link to it, and a second name of the file.
    const QString link = QDir(dir.path()).filePath("stick");
    ASSERT_TRUE(QFile::link(dir.path(), link));
    EXPECT_TRUE(SameFile(link + "/Slipbook.db", path));
    EXPECT_THROW(CopyLogbookTo(db, link + "/Slipbook.db"), DbError);
    EXPECT_THROW(ReplaceLogbook(db, link + "/Slipbook.db", QDateTime::currentDateTime()), DbError);
    const QString second = QDir(dir.path()).filePath("second-name.db");
    std::filesystem::create_hard_link(path.toStdString(), second.toStdString());
    EXPECT_TRUE(SameFile(second, path));
    EXPECT_THROW(CopyLogbookTo(db, second), DbError);
    EXPECT_FALSE(SameFile(QDir(dir.path()).filePath("plain-copy.db"), path));
    EXPECT_EQ(Sha256(path), sum);
    EXPECT_EQ(Runs(db), 40);

    // A copy over an older copy replaces it whole.
    ASSERT_TRUE(QDir(dir.path()).mkpath("x"));
    const QString target = QDir(dir.path()).filePath("x/Slipbook.db");
    QFile old(target);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("an older copy");
    old.close();
    CopyLogbookTo(db, target);
    EXPECT_EQ(Raw(target).Count("SELECT COUNT(*) FROM tblRuns"), 40);

    // Between saves, the file alone holds every save, and another program may read it while
    // the logbook is open; a second copy of the program may not open it.
    db.Execute("INSERT INTO tblRuns (lCar_id, sRunNotes_tx) VALUES (1, 'just saved')");
    const QString plain = QDir(dir.path()).filePath("plain-copy.db");
    ASSERT_TRUE(QFile::copy(path, plain));
    EXPECT_EQ(Raw(plain).Count("SELECT COUNT(*) FROM tblRuns"), 41);
    EXPECT_EQ(Raw(path).Count("SELECT COUNT(*) FROM tblRuns"), 41);
    Database again;
    try {
        again.Open(path);
        ADD_FAILURE();
    } catch (const DbError& e) {
        EXPECT_EQ(e.number(), err::InUse);
    }
    EXPECT_EQ(Runs(db), 41);
}
