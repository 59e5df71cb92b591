// Installs the build into a temporary prefix and starts the installed program with a fresh home,
// as a user's first start after an install: the template and the help come from the prefix, the
// logbook goes to the user's data folder.

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace {

const QString kAppId = QStringLiteral("org.slipbook.Slipbook");

struct Outcome {
    bool finished = false;
    int exitCode = -1;
    QString out;
    QString err;
};

Outcome Execute(const QString& program, const QStringList& args,
                const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(program, args);
    Outcome outcome;
    outcome.finished = process.waitForFinished(60'000);
    if (!outcome.finished) {
        process.kill();
        process.waitForFinished();
    }
    outcome.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

QString FileText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A home of its own and no SLIPBOOK_DIR, so the program picks its folders itself.
QProcessEnvironment FreshHome(const QString& home) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("SLIPBOOK_DIR"));
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_DATA_HOME"), QDir(home).filePath(QStringLiteral("data")));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), QDir(home).filePath(QStringLiteral("config")));
    env.insert(QStringLiteral("XDG_CACHE_HOME"), QDir(home).filePath(QStringLiteral("cache")));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("SLIPBOOK_SMOKE"), QStringLiteral("1"));
    return env;
}

}  // namespace

TEST(Install, TheInstalledProgramStartsFromItsPrefixAndKeepsItsLogbookInTheUsersDataFolder) {
    QTemporaryDir prefix;
    QTemporaryDir home;
    const Outcome install =
        Execute(QStringLiteral(SLIPBOOK_CMAKE),
                {QStringLiteral("--install"), QStringLiteral(SLIPBOOK_BUILD_DIR),
                 QStringLiteral("--prefix"), prefix.path()});
    ASSERT_TRUE(install.finished);
    ASSERT_EQ(install.exitCode, 0) << install.out.toStdString() << install.err.toStdString();

    const QDir root(prefix.path());
    const QDir bin(root.filePath(QStringLiteral(SLIPBOOK_INSTALL_BINDIR)));
    const QDir share(root.filePath(QStringLiteral(SLIPBOOK_INSTALL_DATADIR)));
    // Tests, benchmarks and build tools stay in the build.
    EXPECT_EQ(bin.entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{QStringLiteral("slipbook"), QStringLiteral("slipbook-calc")}));
    EXPECT_GT(QFileInfo(share.filePath(QStringLiteral("slipbook/Upgrade/Slipbook.db"))).size(), 0);
    EXPECT_TRUE(QFileInfo(share.filePath(QStringLiteral("slipbook/help/index.html"))).isFile());

    const QString desktop = FileText(share.filePath("applications/" + kAppId + ".desktop"));
    EXPECT_TRUE(desktop.contains(QStringLiteral("\nExec=slipbook\n"))) << desktop.toStdString();
    EXPECT_TRUE(desktop.contains("\nIcon=" + kAppId + "\n")) << desktop.toStdString();
    EXPECT_TRUE(FileText(share.filePath("icons/hicolor/scalable/apps/" + kAppId + ".svg"))
                    .startsWith(QStringLiteral("<svg")));
    const QString metainfo = FileText(share.filePath("metainfo/" + kAppId + ".metainfo.xml"));
    EXPECT_TRUE(metainfo.contains("<id>" + kAppId + "</id>")) << metainfo.toStdString();
    EXPECT_TRUE(metainfo.contains("<launchable type=\"desktop-id\">" + kAppId + ".desktop<"));

    const QProcessEnvironment env = FreshHome(home.path());
    const QString logbook = home.filePath(QStringLiteral("data/Slipbook/Slipbook.db"));
    const QString program = bin.filePath(QStringLiteral("slipbook"));
    const Outcome first = Execute(program, {}, env);
    ASSERT_TRUE(first.finished) << first.err.toStdString();
    EXPECT_EQ(first.exitCode, 0) << first.err.toStdString();
    EXPECT_EQ(first.out, QStringLiteral("shown: Slipbook Pro - Version 1.0\n"))
        << first.err.toStdString();
    EXPECT_GT(QFileInfo(logbook).size(), 0);
    // Nothing is written beside the installed program, though its folder takes files.
    EXPECT_EQ(bin.entryList(QDir::Files | QDir::Hidden).size(), 2);

    // The second start opens that logbook, with the template out of reach.
    ASSERT_TRUE(QFile::remove(share.filePath(QStringLiteral("slipbook/Upgrade/Slipbook.db"))));
    const Outcome second = Execute(program, {}, env);
    EXPECT_EQ(second.exitCode, 0) << second.err.toStdString();
    EXPECT_EQ(second.out, QStringLiteral("shown: Slipbook Pro - Version 1.0\n"));

    const Outcome calc =
        Execute(bin.filePath(QStringLiteral("slipbook-calc")), {QStringLiteral("--help")}, env);
    EXPECT_EQ(calc.exitCode, 0) << calc.err.toStdString();
    EXPECT_FALSE(calc.out.isEmpty());
}
