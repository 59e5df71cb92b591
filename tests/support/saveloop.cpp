// Saves marked runs into a logbook, one after another, until it is killed. Prints "ready" once
// the logbook is open and "saved <n>" each time a save has returned, so that whoever kills it
// knows which saves were reported done.

#include "support/saveloop.h"
#include "run/runsave.h"
#include "store/database.h"
#include "store/dberror.h"

#include <cstdio>

using namespace slipbook;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: slipbook-saveloop LOGBOOK\n");
        return 2;
    }
    try {
        store::Database db;
        db.Open(QString::fromLocal8Bit(argv[1]));
        qint64 n = 0;
        {
            store::Query q = db.OpenQuery(QStringLiteral("SELECT COUNT(*) FROM tblRuns WHERE ") +
                                          test::kLoopRunsWhere);
            if (q.Next()) {
                n = q.Integer(0);
            }
        }
        std::printf("ready\n");
        std::fflush(stdout);
        for (;;) {
            ++n;
            run::SaveRun(db, {test::LoopRun(n), 0, std::nullopt});
            std::printf("saved %lld\n", static_cast<long long>(n));
            std::fflush(stdout);
        }
    } catch (const store::DbError& e) {
        std::fprintf(stderr, "error %d: %s\n", e.number(), qPrintable(e.description()));
        return 1;
    }
}
