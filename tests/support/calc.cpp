#include "support/calc.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>

namespace slipbook::test {

QString CalcFolder() {
    QString folder = qEnvironmentVariable("SLIPBOOK_BIN");
    if (folder.isEmpty()) {
        folder = QStringLiteral(SLIPBOOK_BIN_DIR);
    }
    return QFileInfo::exists(folder + QStringLiteral("/slipbook-calc")) ? folder : QString();
}

CalcRun RunCalc(const QString& folder, const QStringList& args) {
    QProcess p;
    p.start(folder + QStringLiteral("/slipbook-calc"), args);
    EXPECT_TRUE(p.waitForFinished(30000)) << args.join(u' ').toStdString();
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

QString CalcLine(const QString& folder, const QStringList& args, int status) {
    const CalcRun r = RunCalc(folder, args);
    EXPECT_EQ(r.exitCode, status) << args.join(u' ').toStdString();
    EXPECT_EQ(r.err.count(u'\n'), status == 0 ? 0 : 1) << args.join(u' ').toStdString();
    return status == 0 ? r.out.chopped(r.out.endsWith(u'\n') ? 1 : 0) : r.out;
}

}  // namespace slipbook::test
