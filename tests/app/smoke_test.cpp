// Starts the real program offscreen, the way a user would, and checks that it comes up.

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace {

struct Outcome {
    bool finished = false;
    int exitCode = -1;
    QString out;
    QString err;
};

// The built program's folder; SLIPBOOK_BIN points elsewhere, at an installed copy for instance.
QString BinDir() {
    return qEnvironmentVariable("SLIPBOOK_BIN", QStringLiteral(SLIPBOOK_BIN_DIR));
}

QString ProgramPath() {
#ifdef Q_OS_WIN
    return QDir(BinDir()).filePath(QStringLiteral("slipbook.exe"));
#else
    return QDir(BinDir()).filePath(QStringLiteral("slipbook"));
#endif
}

Outcome RunProgram(const QString& dataDir) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("SLIPBOOK_SMOKE"), QStringLiteral("1"));
    env.insert(QStringLiteral("SLIPBOOK_DIR"), dataDir);
    process.setProcessEnvironment(env);
    process.start(ProgramPath(), {});
    Outcome outcome;
    outcome.finished = process.waitForFinished(20'000);
    if (!outcome.finished) {
        process.kill();
        process.waitForFinished();
    }
    outcome.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

}  // namespace

TEST(Smoke, TheProgramInstallsItsLogbookAndShowsTheMainWindow) {
    ASSERT_TRUE(QFileInfo(ProgramPath()).isExecutable()) << ProgramPath().toStdString();
    QTemporaryDir data;
    const QString logbook = QDir(data.path()).filePath(QStringLiteral("Slipbook.db"));

    const Outcome first = RunProgram(data.path());
    ASSERT_TRUE(first.finished) << first.err.toStdString();
    EXPECT_EQ(first.exitCode, 0) << first.err.toStdString();
    EXPECT_EQ(first.out, QStringLiteral("shown: Slipbook Pro - Version 1.0\n"));
    EXPECT_TRUE(QFileInfo(logbook).isFile());
    EXPECT_GT(QFileInfo(logbook).size(), 0);

    // A second start opens what the first installed.
    const Outcome second = RunProgram(data.path());
    EXPECT_EQ(second.exitCode, 0) << second.err.toStdString();
    EXPECT_EQ(second.out, QStringLiteral("shown: Slipbook Pro - Version 1.0\n"));
}

TEST(Smoke, AStartThatFailsEndsWithoutAWindow) {
    QTemporaryDir data;
    const QString logbook = QDir(data.path()).filePath(QStringLiteral("Slipbook.db"));
    QFile file(logbook);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is no logbook at all");
    file.close();

    const Outcome outcome = RunProgram(data.path());
    ASSERT_TRUE(outcome.finished) << outcome.err.toStdString();
    EXPECT_NE(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.out.isEmpty()) << outcome.out.toStdString();
    EXPECT_TRUE(outcome.err.contains(QStringLiteral("box: DataOpen(): Error # 3049")))
        << outcome.err.toStdString();
}
