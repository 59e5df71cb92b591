#include "common/commandline.h"
#include "shell/help.h"
#include "shell/mainstate.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace slipbook;

TEST(CommandLine, CommandValueTakesTheFirstKeyUpToABlank) {
    const QString dir = QStringLiteral("dir=");
    EXPECT_EQ(CommandValue(QStringLiteral("dir=C:\\Station"), dir), QStringLiteral("C:\\Station"));
    // Anywhere in the line, even inside another word; the first occurrence wins.
    EXPECT_EQ(CommandValue(QStringLiteral("/x -v dir=/srv/wx -q dir=/other"), dir),
              QStringLiteral("/srv/wx"));
    EXPECT_EQ(CommandValue(QStringLiteral("subdir=abc"), dir), QStringLiteral("abc"));
    // Cut at the first blank: a folder with a blank in its name cannot be given.
    EXPECT_EQ(CommandValue(QStringLiteral("dir=C:\\My Station"), dir), QStringLiteral("C:\\My"));
    // An "=" still in the piece: what follows the first one.
    EXPECT_EQ(CommandValue(QStringLiteral("dir=a=b=c next"), dir), QStringLiteral("b=c"));
    EXPECT_EQ(CommandValue(QStringLiteral("dir==x"), dir), QStringLiteral("x"));
    // A key given without its "=" finds the value all the same.
    EXPECT_EQ(CommandValue(QStringLiteral("dir=/wx"), QStringLiteral("dir")),
              QStringLiteral("/wx"));
    // Absent or empty.
    EXPECT_EQ(CommandValue(QStringLiteral("-v /x"), dir), QString());
    EXPECT_EQ(CommandValue(QString(), dir), QString());
    EXPECT_EQ(CommandValue(QStringLiteral("dir= /wx"), dir), QString());
    EXPECT_EQ(CommandValue(QStringLiteral("x dir="), dir), QString());
    // The key is matched as written.
    EXPECT_EQ(CommandValue(QStringLiteral("DIR=/wx"), dir), QString());
}

TEST(CommandLine, ArgumentsJoinIntoOneLine) {
    EXPECT_EQ(CommandLineFromArguments({QStringLiteral("/opt/slipbook"), QStringLiteral("-x"),
                                        QStringLiteral("dir=/srv/wx")}),
              QStringLiteral("-x dir=/srv/wx"));
    EXPECT_EQ(CommandLineFromArguments({QStringLiteral("/opt/slipbook")}), QString());
    EXPECT_EQ(CommandLineFromArguments({}), QString());
    // An argument that held a blank is split again by the value rule, as on the original
    // platform's single command line.
    const QString line =
        CommandLineFromArguments({QStringLiteral("slipbook"), QStringLiteral("dir=/srv/my wx")});
    EXPECT_EQ(CommandValue(line, QStringLiteral("dir=")), QStringLiteral("/srv/my"));
}

TEST(MainState, WeatherDirectoryComesFromTheCommandLineElseTheDefault) {
#ifdef Q_OS_WIN
    EXPECT_EQ(shell::DefaultWeatherDir(), QStringLiteral("C:\\Barometrix"));
#else
    EXPECT_EQ(shell::DefaultWeatherDir(), QDir::homePath() + QStringLiteral("/Barometrix"));
#endif
    EXPECT_EQ(shell::WeatherDirInit(QString()), shell::DefaultWeatherDir());
    EXPECT_EQ(shell::WeatherDirInit(QStringLiteral("-v")), shell::DefaultWeatherDir());
    EXPECT_EQ(shell::WeatherDirInit(QStringLiteral("dir= other")), shell::DefaultWeatherDir());
    EXPECT_EQ(shell::WeatherDirInit(QStringLiteral("-v dir=/srv/wx now")),
              QStringLiteral("/srv/wx"));
}

TEST(Help, ThePagesLieBesideTheProgram) {
    QTemporaryDir app;
    shell::HelpState help = shell::HelpInit(app.path());
    EXPECT_EQ(help.path, app.path() + QStringLiteral("/help/index.html"));
    EXPECT_FALSE(help.available());
    // A trailing separator does not double up.
    EXPECT_EQ(shell::HelpInit(app.path() + u'/').path, help.path);

    ASSERT_TRUE(QDir(app.path()).mkpath(QStringLiteral("help")));
    QFile page(help.path);
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.close();
    EXPECT_TRUE(help.available());
}
