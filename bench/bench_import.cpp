// Runs read back from a CSV file: the widest shipped view of a car's runs exported raw, then
// checked and imported into another car of the same logbook, each pass timed. The floor is the
// same number of rows copied by one INSERT ... SELECT in one transaction: what writing the rows
// costs the engine alone.
//   build/bench/bench_import [RUNS]
#include "logbookgen.h"
#include "mainbench.h"

#include "common/tools.h"
#include "exchange/listexport.h"
#include "exchange/runimport.h"
#include "shell/ui/frmMain.h"
#include "store/database.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>

using namespace slipbook;

namespace {

double Seconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::atoi(argv[1]) : 20000;
    // The import writes: it works on a copy, so that the generated logbook stays as made.
    QTemporaryDir work;
    const QString logbook = work.filePath(QStringLiteral("Slipbook.db"));
    QFile::copy(bench::OneCarLogbook(QStringLiteral("import"), runs), logbook);
    std::printf("logbook: %s\n", qPrintable(logbook));
    std::fflush(stdout);
    bench::MainOnLogbook program(logbook);
    store::Database& db = program.db;
    shell::frmMain& main = program.main;
    main.FormLoadStuff();
    QComboBox* views = main.selector(QStringLiteral("ID_Views"));
    views->setCurrentIndex(views->findData(QVariant::fromValue(bench::WidestShippedView(db))));
    main.ToolClick(tools::kRuns);
    const TextGridModel& grid = main.grid();

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("runs.csv"));
    exchange::ListSource source =
        exchange::StoredSource(db, grid, QStringLiteral("tblRuns"), QStringLiteral("lRun_id"));
    if (exchange::ExportList(db, source, path, {.mode = exchange::ExportMode::Raw}).status !=
        exchange::ExportResult::Status::Done) {
        std::fprintf(stderr, "export failed\n");
        return 1;
    }
    std::printf("file: %d runs x %d columns, %.1f MB\n", grid.RowCount(), grid.ColumnCount(),
                static_cast<double>(QFileInfo(path).size()) / 1e6);

    db.Execute(QStringLiteral("INSERT INTO tblCars (sCar_nm) VALUES ('Imported')"));
    exchange::ImportPlan plan;
    plan.carId = db.LastInsertRowId();
    plan.eventId = 1;
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        const exchange::ImportPreview preview =
            exchange::ReadPreview(file, 1, exchange::csv::Delimiter::Guess);
        plan.mapping = exchange::GuessMapping(preview.rows.front(), exchange::ImportFields(db));
    }

    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QElapsedTimer timer;
    timer.start();
    const exchange::ImportCheck check = exchange::CheckImport(db, file, plan);
    const double checkSeconds = Seconds(timer);
    for (size_t i = 0; i < check.rejects.size() && i < 3; ++i) {
        std::printf("refused, line %d: %s\n", check.rejects[i].line,
                    qPrintable(check.rejects[i].reason));
    }
    file.close();
    file.open(QIODevice::ReadOnly);
    timer.restart();
    const exchange::ImportResult result =
        exchange::ImportRuns(db, file, plan, exchange::DuplicateRule::Import);
    const double importSeconds = Seconds(timer);
    if (result.status != exchange::ImportResult::Status::Done) {
        std::fprintf(stderr, "import failed: %s\n", qPrintable(result.error));
        return 1;
    }

    // The floor: the same rows written by the engine alone, in one transaction.
    timer.restart();
    db.ExecRaw(QStringLiteral("BEGIN"));
    db.ExecRaw(
        QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, lRun_num, dtRun_dt, dtRun_tm, "
                       "i14Mile_et, sRunNotes_tx) SELECT lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                       "dtRun_tm, i14Mile_et, sRunNotes_tx FROM tblRuns WHERE lCar_id = %1")
            .arg(plan.carId));
    db.ExecRaw(QStringLiteral("COMMIT"));
    const double floorSeconds = Seconds(timer);

    std::printf("check:  %d rows (%d passing, %d rejected) in %.3f s, %.0f rows/s\n", check.rows,
                check.passing, static_cast<int>(check.rejects.size()), checkSeconds,
                check.rows / checkSeconds);
    std::printf("import: %d runs in %.3f s, %.0f runs/s (the engine alone: %.3f s)\n",
                result.imported, importSeconds, result.imported / importSeconds, floorSeconds);
    return 0;
}
