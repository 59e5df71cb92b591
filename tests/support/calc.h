#pragma once

// The command-line calculator under test: the build's, or the one in the folder $SLIPBOOK_BIN
// names, so that an installed program can be checked with the same tests.

#include <QString>
#include <QStringList>

namespace slipbook::test {

// The folder holding slipbook-calc; empty when there is none to run.
QString CalcFolder();

struct CalcRun {
    int exitCode = -1;
    QString out;
    QString err;
};
CalcRun RunCalc(const QString& folder, const QStringList& args);

// Its one line of output without the line end, checking the exit status and that a failure
// says why in one line on standard error.
QString CalcLine(const QString& folder, const QStringList& args, int status = 0);

}  // namespace slipbook::test
