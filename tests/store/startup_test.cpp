// The start-up sequence, driven with a fake window layer and a fake clock over real files in
// temporary folders.

#include "store/startup.h"
#include "store/dberror.h"
#include "store/upgrade.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <stdexcept>

using namespace slipbook;
using namespace slipbook::store;

namespace {

const QString kLoadingStatus =
    QStringLiteral("Loading your view and associated run information...");
const QString kUpdatingStatus = QStringLiteral("Updating Slipbook Database...");

class FakeClock : public Clock {
public:
    qint64 now = 50'000;
    qint64 NowMs() override { return now; }
};

// Records the calls in order (a run of yields as one entry) and moves the fake clock on each
// yield, as real time would pass.
class FakeUi : public StartupUi {
public:
    explicit FakeUi(FakeClock& clock) : clock_(clock) {}

    QStringList calls;
    qint64 yieldStep = 100;
    int keyAfterYields = -1;
    int yields = 0;
    qint64 splashAt = -1;
    qint64 formLoadAt = -1;
    std::function<void()> onLoadMain;

    void SetBusy(bool busy) override { calls << (busy ? "busy on" : "busy off"); }
    void ShowSplash(const QString& version, const QString& status) override {
        calls << "splash " + version + " | " + status;
        splashAt = clock_.now;
    }
    void SetSplashStatus(const QString& status) override { calls << "status " + status; }
    void LoadMainWindow() override {
        calls << "load main";
        if (onLoadMain) {
            onLoadMain();
        }
    }
    void FormLoadStuff() override {
        calls << "form load stuff";
        formLoadAt = clock_.now;
    }
    void ShowMainWindow() override { calls << "show main"; }
    void CloseSplash() override { calls << "close splash"; }
    void YieldToEvents() override {
        if (calls.isEmpty() || calls.last() != "yield") {
            calls << "yield";
        }
        ++yields;
        clock_.now += yieldStep;
        if (yields == keyAfterYields) {
            key_ = true;
        }
    }
    bool SplashClosedByKey() const override { return key_; }

private:
    FakeClock& clock_;
    bool key_ = false;
};

// A program folder holding the template, and a separate data folder.
struct Places {
    QTemporaryDir app;
    QTemporaryDir data;

    Places() {
        EXPECT_TRUE(QDir(app.path()).mkpath(QStringLiteral("Upgrade")));
        EXPECT_TRUE(QFile::copy(test::TemplatePath(), TemplatePath(app.path())));
    }
    QString logbook() const { return LogbookPath(data.path()); }
};

QByteArray Bytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList Entries(const QString& dir) {
    return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                               QDir::NoDotAndDotDot);
}

QString ExpectedInstallBox(const QString& source, const QString& target) {
    return "Error installing database for the first time.\rFailed to copy file:\r    " + source +
           "\rto:\r    " + target + "\r\rProgram Ending.";
}

const QStringList kStartOrder = {
    "busy on",   "splash Version 1.0 | " + kLoadingStatus,
    "load main", "status " + kUpdatingStatus,
    "yield",     "form load stuff",
    "show main", "close splash",
    "busy off",
};

}  // namespace

TEST(Startup, FirstStartInstallsTheTemplateAndLaterStartsUseTheLogbook) {
    Places places;
    {
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Running);
        EXPECT_TRUE(messages.shown.empty());
        EXPECT_EQ(ui.calls, kStartOrder);
        ASSERT_TRUE(db.IsOpen());
        EXPECT_EQ(QFileInfo(db.Name()), QFileInfo(places.logbook()));
        EXPECT_TRUE(db.TableExists(QStringLiteral("tblRuns")));
        // Nothing but the logbook (and its journal while open) in the data folder.
        for (const QString& name : Entries(places.data.path())) {
            EXPECT_TRUE(name.startsWith(LogbookFileName())) << name.toStdString();
        }
        db.Execute(QStringLiteral("INSERT INTO tblTracks (sTrack_nm) VALUES ('Marker Strip')"));
    }

    // The template is not needed once the logbook is there, and is not copied over it.
    ASSERT_TRUE(QDir(places.app.filePath(QStringLiteral("Upgrade"))).removeRecursively());
    {
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Running);
        EXPECT_TRUE(messages.shown.empty());
        EXPECT_EQ(ui.calls, kStartOrder);
        auto rs = db.OpenRecordset(
            QStringLiteral("SELECT * FROM tblTracks WHERE sTrack_nm = 'Marker Strip'"),
            RecordsetType::Snapshot);
        EXPECT_FALSE(rs->Eof());
    }

    // A deleted logbook is a first start again; now without a template that ends the start.
    ASSERT_TRUE(QFile::remove(places.logbook()));
    {
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().text,
                  ExpectedInstallBox(TemplatePath(places.app.path()), places.logbook()));
        EXPECT_EQ(messages.last().title, QString());
        EXPECT_EQ(messages.last().icon, MsgIcon::Critical);
        EXPECT_TRUE(ui.calls.isEmpty());  // the splash never came up
        EXPECT_FALSE(db.IsOpen());
        EXPECT_FALSE(QFileInfo::exists(places.logbook()));
    }
}

TEST(Startup, AFailedInstallLeavesNothingBehind) {
    // The data folder cannot be made: its parent is a plain file.
    {
        Places places;
        const QString blocker = places.data.filePath(QStringLiteral("not-a-folder"));
        QFile file(blocker);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.close();
        const QString dataDir = blocker + QStringLiteral("/data");
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), dataDir),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().text,
                  ExpectedInstallBox(TemplatePath(places.app.path()), LogbookPath(dataDir)));
        EXPECT_TRUE(ui.calls.isEmpty());
        EXPECT_EQ(Entries(places.data.path()), QStringList{QStringLiteral("not-a-folder")});
        EXPECT_EQ(Bytes(TemplatePath(places.app.path())), Bytes(test::TemplatePath()));
    }

    // A folder without write permission (not effective for the super-user, who may write
    // anywhere; then only the case above applies).
    {
        Places places;
        QFile::setPermissions(places.data.path(), QFile::ReadOwner | QFile::ExeOwner);
        QFile probe(places.data.filePath(QStringLiteral("probe")));
        if (probe.open(QIODevice::WriteOnly)) {
            probe.remove();
        } else {
            Database db;
            test::ScriptedMessages messages;
            FakeClock clock;
            FakeUi ui(clock);
            EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                      StartupOutcome::Ended);
            ASSERT_EQ(messages.shown.size(), 1u);
            EXPECT_EQ(messages.last().text,
                      ExpectedInstallBox(TemplatePath(places.app.path()), places.logbook()));
            EXPECT_TRUE(Entries(places.data.path()).isEmpty());
        }
        QFile::setPermissions(places.data.path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST(Startup, ALogbookThatCannotBeOpenedIsReportedAndLeftAsItWas) {
    // Random bytes where the logbook should be: DataOpen's box, and not a byte changed.
    {
        Places places;
        QByteArray noise(64 * 1024, '\0');
        for (char& c : noise) {
            c = static_cast<char>(QRandomGenerator::global()->bounded(256));
        }
        {
            QFile file(places.logbook());
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(noise);
        }
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().title, QStringLiteral("DataOpen()"));
        EXPECT_TRUE(
            messages.last().text.startsWith(QStringLiteral("Error # %1\n").arg(err::CannotOpen)))
            << messages.last().text.toStdString();
        EXPECT_TRUE(ui.calls.isEmpty());
        EXPECT_EQ(Bytes(places.logbook()), noise);
        EXPECT_EQ(Entries(places.data.path()), QStringList{LogbookFileName()});
    }

    // A second copy of the program while the first holds the logbook.
    {
        Places places;
        ASSERT_TRUE(InstallLogbook(TemplatePath(places.app.path()), places.logbook()));
        Database first;
        first.Open(places.logbook());
        const QByteArray before = Bytes(places.logbook());

        Database second;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        EXPECT_EQ(RunStartup(second, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().title, QStringLiteral("DataOpen()"));
        EXPECT_TRUE(messages.last().text.startsWith(QStringLiteral("Error # %1\n").arg(err::InUse)))
            << messages.last().text.toStdString();
        EXPECT_TRUE(ui.calls.isEmpty());
        EXPECT_EQ(Bytes(places.logbook()), before);
        // The first copy goes on working.
        EXPECT_EQ(first.Execute(QStringLiteral("UPDATE tblCars SET sCar_nm = sCar_nm")), 1);
    }
}

TEST(Startup, TheSplashStaysMoreThanThreeSecondsUnlessAKeyClosesIt) {
    Places places;
    ASSERT_TRUE(InstallLogbook(TemplatePath(places.app.path()), places.logbook()));
    auto start = [&](FakeUi& ui, FakeClock& clock) {
        Database db;
        test::ScriptedMessages messages;
        const StartupOutcome outcome =
            RunStartup(db, messages, ui, clock, places.app.path(), places.data.path());
        EXPECT_TRUE(messages.shown.empty());
        return outcome;
    };

    // Exactly 3000 ms is not enough; the first look past it ends the wait.
    {
        FakeClock clock;
        FakeUi ui(clock);
        ui.yieldStep = 1;
        EXPECT_EQ(start(ui, clock), StartupOutcome::Running);
        EXPECT_EQ(ui.formLoadAt - ui.splashAt, 3001);
        EXPECT_EQ(ui.calls, kStartOrder);
    }
    // A key in the splash ends the wait at once.
    {
        FakeClock clock;
        FakeUi ui(clock);
        ui.keyAfterYields = 5;
        EXPECT_EQ(start(ui, clock), StartupOutcome::Running);
        EXPECT_EQ(ui.yields, 5);
        EXPECT_EQ(ui.formLoadAt - ui.splashAt, 500);
        EXPECT_EQ(ui.calls, kStartOrder);
    }
    // A slow load is not padded: the time is already up when the ladder is done.
    {
        FakeClock clock;
        FakeUi ui(clock);
        ui.onLoadMain = [&clock] { clock.now += 4000; };
        EXPECT_EQ(start(ui, clock), StartupOutcome::Running);
        EXPECT_EQ(ui.yields, 0);
        EXPECT_FALSE(ui.calls.contains(QStringLiteral("yield")));
    }
    // A start late in the day waits the same three seconds: the clock does not wrap.
    {
        FakeClock clock;
        clock.now = 86'399'000;
        FakeUi ui(clock);
        EXPECT_EQ(start(ui, clock), StartupOutcome::Running);
        EXPECT_EQ(ui.formLoadAt - ui.splashAt, 3100);
    }
}

TEST(Startup, AFailureAfterTheOpenEndsTheStartWithABox) {
    const DbError boom(err::Generic, QStringLiteral("frmMain"), QStringLiteral("boom"));
    const QStringList cleanUp = {"busy on", "splash Version 1.0 | " + kLoadingStatus, "load main",
                                 "close splash", "busy off"};

    // During a first start the install box stays armed, for the store's errors and others.
    for (int kind = 0; kind < 2; ++kind) {
        Places places;
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        ui.onLoadMain = [&] {
            if (kind == 0) {
                throw boom;
            }
            throw std::runtime_error("out of range");
        };
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().text,
                  ExpectedInstallBox(TemplatePath(places.app.path()), places.logbook()));
        EXPECT_EQ(messages.last().title, QString());
        EXPECT_EQ(ui.calls, cleanUp);
        EXPECT_FALSE(db.IsOpen());
    }

    // On a later start the error itself is reported.
    {
        Places places;
        ASSERT_TRUE(InstallLogbook(TemplatePath(places.app.path()), places.logbook()));
        Database db;
        test::ScriptedMessages messages;
        FakeClock clock;
        FakeUi ui(clock);
        ui.onLoadMain = [&] { throw boom; };
        EXPECT_EQ(RunStartup(db, messages, ui, clock, places.app.path(), places.data.path()),
                  StartupOutcome::Ended);
        ASSERT_EQ(messages.shown.size(), 1u);
        EXPECT_EQ(messages.last().text, QStringLiteral("Error # 3000\nSource   frmMain\n\nboom"));
        EXPECT_EQ(messages.last().title, QStringLiteral("Error"));
        EXPECT_EQ(ui.calls, cleanUp);
        EXPECT_FALSE(db.IsOpen());
    }
}

TEST(Startup, DataAndResourceFoldersFollowTheEnvironmentAndTheInstalledLayout) {
    const QByteArray saved = qgetenv("SLIPBOOK_DIR");
    const bool wasSet = qEnvironmentVariableIsSet("SLIPBOOK_DIR");
    QStandardPaths::setTestModeEnabled(true);
    QTemporaryDir app;
    QTemporaryDir chosen;

    const QString nested = chosen.filePath(QStringLiteral("a/b"));
    qputenv("SLIPBOOK_DIR", nested.toUtf8());
    EXPECT_EQ(DataFolder(app.path()), nested);
    EXPECT_TRUE(QFileInfo(nested).isDir());

    qunsetenv("SLIPBOOK_DIR");
    EXPECT_EQ(DataFolder(app.path()), QDir(app.path()).absolutePath());
    EXPECT_TRUE(Entries(app.path()).isEmpty());  // the write probe is gone

    const QString nowhere = app.filePath(QStringLiteral("missing"));
    const QString userData = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    EXPECT_EQ(DataFolder(nowhere), userData);
    EXPECT_TRUE(QFileInfo(userData).isDir());

    // Installed under a prefix: the template and help come from the prefix's shared folder and the
    // logbook goes to the user's data folder, though bin/ takes files.
    QTemporaryDir prefix;
    const QString bin = prefix.filePath(QStringLiteral("bin"));
    const QString share = InstalledResourceFolder(bin);
    ASSERT_TRUE(share.startsWith(prefix.path() + u'/')) << share.toStdString();
    ASSERT_TRUE(QDir().mkpath(bin));
    ASSERT_TRUE(QDir().mkpath(share + QStringLiteral("/Upgrade")));
    ASSERT_TRUE(QFile::copy(test::TemplatePath(), TemplatePath(share)));
    EXPECT_EQ(ResourceFolder(bin), share);
    EXPECT_EQ(DataFolder(bin), userData);
    // A program with its template beside it is a build or a copied folder, whatever is around.
    ASSERT_TRUE(QDir().mkpath(bin + QStringLiteral("/Upgrade")));
    ASSERT_TRUE(QFile::copy(test::TemplatePath(), TemplatePath(bin)));
    EXPECT_EQ(ResourceFolder(bin), bin);
    EXPECT_EQ(DataFolder(bin), QDir(bin).absolutePath());
    EXPECT_EQ(ResourceFolder(nowhere), nowhere);

    if (wasSet) {
        qputenv("SLIPBOOK_DIR", saved);
    }
    QStandardPaths::setTestModeEnabled(false);
}

TEST(UpgradeLadder, StepsRunWhenNeededEachInATransactionOfItsOwn) {
    test::TempLogbook lb;
    Database& db = lb.db();
    int skippedRuns = 0;
    const std::vector<UpgradeStep> steps = {
        {QStringLiteral("add tblA"),
         [](Database& d) { return !d.TableExists(QStringLiteral("tblA")); },
         [](Database& d) { d.Execute(QStringLiteral("CREATE TABLE tblA (lA_id COUNTER)")); }},
        {QStringLiteral("not needed"), [](Database&) { return false; },
         [&skippedRuns](Database&) { ++skippedRuns; }},
        {QStringLiteral("half done"), [](Database&) { return true; },
         [](Database& d) {
             d.Execute(QStringLiteral("INSERT INTO tblTracks (sTrack_nm) VALUES ('Half')"));
             throw DbError(err::Generic, QStringLiteral("ladder"), QStringLiteral("stop"));
         }},
    };
    EXPECT_THROW(RunUpgradeSteps(db, steps), DbError);
    EXPECT_TRUE(db.TableExists(QStringLiteral("tblA")));
    EXPECT_EQ(skippedRuns, 0);
    auto rs = db.OpenRecordset(QStringLiteral("SELECT * FROM tblTracks WHERE sTrack_nm = 'Half'"),
                               RecordsetType::Snapshot);
    EXPECT_TRUE(rs->Eof());

    // A logbook at the current level passes the shipped ladder untouched, and needs no copy.
    EXPECT_FALSE(UpgradeWouldChange(db, UpgradeSteps()));
    EXPECT_EQ(UpgradeLadder(db, QDateTime::currentDateTime()), QString());
}
