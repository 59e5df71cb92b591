#pragma once

#include "common/messages.h"
#include "store/database.h"

#include <QString>
#include <cstdio>

namespace slipbook::bench {

// Makes a logbook of `runs` runs from the template: several cars, tracks and events, and runs with
// realistic time slips, weather and tune-ups. The same seed gives the same logbook.
// `runCars` of the cars share the runs (1 puts every run on car 1).
void GenerateLogbook(const QString& templatePath, const QString& outPath, int runs,
                     unsigned seed = 1, int runCars = 5);

// Boxes of a benchmark go to standard error and take their default answer.
class PrintedMessages : public Messages {
public:
    MsgAnswer show(const Message& m) override {
        std::fprintf(stderr, "box: %s: %s\n", qPrintable(m.title), qPrintable(m.text));
        return m.defaultAnswer;
    }
};

// Reads every column of every row of the statement as the engine gives them, and returns the
// milliseconds taken: what a list load is measured against.
double RawReadMs(store::Database& db, const QString& jetSql, int* rows);

// A logbook of `runs` runs, all of car 1, kept beside the benchmark in a folder named after it
// and the count, and made only when it is not there yet.
QString OneCarLogbook(const QString& name, int runs);

// The key of the shipped view that shows the most columns.
qint64 WidestShippedView(store::Database& db);

// The template beside the built program.
QString BuiltTemplatePath();

}  // namespace slipbook::bench
