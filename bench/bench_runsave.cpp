// Saving runs into a small and a large logbook: the run window on a main window that lists every
// run of the car. Each save is the whole path after the user's last key: the checks, the air
// figures, the run's statements, the car's tune-up, the maintenance counters and the list's row.
//
// Its floor is the same durable commit made straight through SQLite on a copy of the same
// logbook, under the journal settings the program's store uses: one prepared INSERT of the whole
// run row (the row just saved, so both write as much) and one UPDATE of the car's tune-up
// columns, in one transaction. Floor and save alternate, each first every other time.
//
// Each logbook size runs in a process of its own, as the program holds one logbook, so that the
// memory of a large list does not weigh on the small one; the processes take their turns by
// blocks of saves, so the drift of a shared machine hits every size alike.
//
// Prints, per size, the time of one save and of one raw commit (median, 95th percentile,
// worst) and their ratio, the total for entering the runs with Save and New, and an edit of the
// newest run against the same floor; then the cost of a save at the largest size against the
// smallest. Exits with 2 when a target is missed: a save at most 2 times its floor, and the same
// cost (within 20%) at every size.
//   build/bench/bench_runsave [RUNS[,RUNS...]] [ENTERED]     (default 2000,100000 1000)
#include "logbookgen.h"

#include "run/fieldtable.h"
#include "run/ui/frmRun.h"
#include "shell/ui/frmMain.h"
#include "store/database.h"

#include <sqlite3.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

using namespace slipbook;

namespace {

void Put(run::frmRun& window, const char* control, const QString& text) {
    if (auto* box = qobject_cast<QLineEdit*>(window.Control(QString::fromLatin1(control)))) {
        box->setText(text);
    }
}

// What a racer types for one pass. The list shows all events, so the event is picked.
void TypeRun(run::frmRun& window, int n) {
    if (auto* events = qobject_cast<QComboBox*>(window.Control(QStringLiteral("cboEvents")))) {
        events->setCurrentIndex(n % events->count());
    }
    const double et = 9.8 + (n % 37) * 0.01;
    Put(window, "txtTemp", QString::number(70 + n % 20));
    Put(window, "txtHumidity", QString::number(30 + n % 40));
    Put(window, "txtBarometricPressure", QStringLiteral("29.%1").arg(50 + n % 40));
    Put(window, "txtDialIn", QString::number(et + 0.05, 'f', 3));
    Put(window, "txtReactionTime", QStringLiteral("0.5%1").arg(n % 90, 2, 10, QLatin1Char('0')));
    Put(window, "txt60Foot_et", QStringLiteral("1.402"));
    Put(window, "txt330Foot_et", QStringLiteral("4.012"));
    Put(window, "txt18Mile_et", QStringLiteral("6.303"));
    Put(window, "txt18Mile_mph", QStringLiteral("108.250"));
    Put(window, "txt1000Foot_et", QStringLiteral("8.211"));
    Put(window, "txt14Mile_et", QString::number(et, 'f', 3));
    Put(window, "txt14Mile_mph", QStringLiteral("135.010"));
    Put(window, "txtJet(0)", QStringLiteral("72"));
    Put(window, "txtCustom1", QStringLiteral("O'Neil's \"pass\" %1").arg(n));
}

struct Stats {
    double median = 0;
    double p95 = 0;
    double worst = 0;
};

Stats Summarise(std::vector<double> ms) {
    if (ms.empty()) {
        return {};
    }
    std::sort(ms.begin(), ms.end());
    const auto at = [&](double q) { return ms[static_cast<size_t>(q * (ms.size() - 1))]; };
    return {at(0.5), at(0.95), ms.back()};
}

double Ms(const QElapsedTimer& t) {
    return t.nsecsElapsed() / 1e6;
}

void Check(int rc, sqlite3* db, const char* what) {
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
        throw std::runtime_error(std::string(what) + ": " + sqlite3_errmsg(db));
    }
}

QByteArray PragmaText(sqlite3* db, const char* pragma) {
    sqlite3_stmt* stmt = nullptr;
    Check(sqlite3_prepare_v2(db, (QByteArray("PRAGMA ") + pragma).constData(), -1, &stmt, nullptr),
          db, pragma);
    QByteArray value;
    if (sqlite3_step(stmt) == SQLITE_ROW) {
        value = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
    }
    sqlite3_finalize(stmt);
    return value;
}

// The durable commit without the program: SQLite's C API on a copy of the logbook.
class RawCommit {
public:
    RawCommit(const QString& path, sqlite3* store) {
        Check(sqlite3_open_v2(path.toUtf8().constData(), &db_, SQLITE_OPEN_READWRITE, nullptr), db_,
              "open");
        // The journal settings are read from the program's own connection, so the floor follows
        // whatever the store chooses. Locking first: it decides where the WAL index lives.
        settings_ = "locking_mode=" + PragmaText(store, "locking_mode") +
                    ", journal_mode=" + PragmaText(store, "journal_mode") +
                    ", synchronous=" + PragmaText(store, "synchronous") +
                    ", wal_autocheckpoint=" + PragmaText(store, "wal_autocheckpoint");
        for (const QByteArray& pragma : settings_.split(',')) {
            Check(sqlite3_exec(db_, ("PRAGMA " + pragma.trimmed()).constData(), nullptr, nullptr,
                               nullptr),
                  db_, "pragma");
        }

        QStringList names;
        QStringList marks;
        sqlite3_stmt* info = Prepare("SELECT * FROM tblRuns LIMIT 0");
        for (int i = 0; i < sqlite3_column_count(info); ++i) {
            const QString name = QString::fromUtf8(sqlite3_column_name(info, i));
            if (name.compare(u"lRun_id", Qt::CaseInsensitive) != 0) {
                names << name;
                marks << QStringLiteral("?");
                runColumns_.push_back(i);
            }
        }
        sqlite3_finalize(info);
        insert_ = Prepare(QStringLiteral("INSERT INTO tblRuns (%1) VALUES (%2)")
                              .arg(names.join(u','), marks.join(u','))
                              .toUtf8());
        // The car takes what the save gives it: the tune-up, notes and custom columns.
        QStringList sets;
        for (const run::RunField& f : run::RunFields()) {
            const int at = static_cast<int>(names.indexOf(f.column));
            if (!f.carColumn.isEmpty() && at >= 0) {
                sets << f.carColumn + QStringLiteral(" = ?");
                carFrom_.push_back(at);
            }
        }
        carUpdate_ =
            Prepare((QStringLiteral("UPDATE tblCars SET ") + sets.join(QStringLiteral(", ")) +
                     QStringLiteral(" WHERE lCar_id = ?"))
                        .toUtf8());
        begin_ = Prepare("BEGIN");
        commit_ = Prepare("COMMIT");
    }
    ~RawCommit() {
        for (sqlite3_stmt* s : {insert_, carUpdate_, begin_, commit_}) {
            sqlite3_finalize(s);
        }
        for (sqlite3_value* v : row_) {
            sqlite3_value_free(v);
        }
        sqlite3_close(db_);
    }

    const QByteArray& settings() const { return settings_; }

    // The row to write: a copy of a run of the program's logbook, by its id.
    void TakeRow(sqlite3* store, qint64 runId) {
        sqlite3_stmt* q = nullptr;
        Check(sqlite3_prepare_v2(store, "SELECT * FROM tblRuns WHERE lRun_id = ?", -1, &q, nullptr),
              store, "row");
        sqlite3_bind_int64(q, 1, runId);
        if (sqlite3_step(q) == SQLITE_ROW) {
            for (sqlite3_value* v : row_) {
                sqlite3_value_free(v);
            }
            row_.clear();
            for (int column : runColumns_) {
                row_.push_back(sqlite3_value_dup(sqlite3_column_value(q, column)));
            }
            const int car = ColumnOf(q, "lCar_id");
            carId_ = car >= 0 ? sqlite3_column_int64(q, car) : 1;
        }
        sqlite3_finalize(q);
    }

    // One commit; the time it took in ms.
    double Commit() {
        QElapsedTimer t;
        t.start();
        Step(begin_);
        for (size_t i = 0; i < row_.size(); ++i) {
            sqlite3_bind_value(insert_, static_cast<int>(i + 1), row_[i]);
        }
        Step(insert_);
        for (size_t i = 0; i < carFrom_.size(); ++i) {
            sqlite3_bind_value(carUpdate_, static_cast<int>(i + 1), row_[carFrom_[i]]);
        }
        sqlite3_bind_int64(carUpdate_, static_cast<int>(carFrom_.size() + 1), carId_);
        Step(carUpdate_);
        Step(commit_);
        return Ms(t);
    }

private:
    sqlite3_stmt* Prepare(const QByteArray& sql) {
        sqlite3_stmt* stmt = nullptr;
        Check(
            sqlite3_prepare_v3(db_, sql.constData(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr),
            db_, sql.constData());
        return stmt;
    }
    void Step(sqlite3_stmt* stmt) {
        const int rc = sqlite3_step(stmt);
        sqlite3_reset(stmt);
        Check(rc, db_, "commit");
    }
    static int ColumnOf(sqlite3_stmt* q, const char* name) {
        for (int i = 0; i < sqlite3_column_count(q); ++i) {
            if (qstricmp(sqlite3_column_name(q, i), name) == 0) {
                return i;
            }
        }
        return -1;
    }

    sqlite3* db_ = nullptr;
    QByteArray settings_;
    std::vector<int> runColumns_;  // of SELECT * FROM tblRuns, without the key
    std::vector<int> carFrom_;     // for each car column, its place in the row
    std::vector<sqlite3_value*> row_;
    qint64 carId_ = 1;
    sqlite3_stmt* insert_ = nullptr;
    sqlite3_stmt* carUpdate_ = nullptr;
    sqlite3_stmt* begin_ = nullptr;
    sqlite3_stmt* commit_ = nullptr;
};

void FreshCopy(const QString& from, const QString& to) {
    for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
        QFile::remove(to + QString::fromLatin1(suffix));
    }
    if (!QFile::copy(from, to)) {
        throw std::runtime_error("cannot copy " + from.toStdString());
    }
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner);
}

// One logbook size: the program on one copy, the raw commit on another.
struct Logbook {
    int runs = 0;
    store::Database db;
    bench::PrintedMessages messages;
    store::LogbookEvents events;
    SystemClock clock;
    std::unique_ptr<shell::frmMain> main;
    run::frmRun* window = nullptr;
    std::unique_ptr<RawCommit> raw;
    double loadMs = 0;
    int rowsBefore = 0;
    std::vector<double> saves, floors, edits, editFloors;
    double enteringMs = 0;  // typing, saving and New, without the floor
    qint64 lastRun = 0;

    explicit Logbook(int n) : runs(n) {
        // A pristine logbook is generated once per size; each run of the benchmark works on
        // copies of it.
        const QString dir =
            QCoreApplication::applicationDirPath() + QStringLiteral("/runsave-%1").arg(runs);
        QDir().mkpath(dir);
        const QString pristine = dir + QStringLiteral("/pristine.db");
        if (!QFileInfo::exists(pristine)) {
            bench::GenerateLogbook(bench::BuiltTemplatePath(), pristine, runs, 1, 1);
        }
        const QString logbook = dir + QStringLiteral("/Slipbook.db");
        const QString floor = dir + QStringLiteral("/raw.db");
        FreshCopy(pristine, logbook);
        FreshCopy(pristine, floor);

        db.Open(logbook);
        raw = std::make_unique<RawCommit>(floor, db.handle());
        main = std::make_unique<shell::frmMain>(db, messages, events, clock, QString(),
                                                QCoreApplication::applicationDirPath());
        QElapsedTimer load;
        load.start();
        main->FormLoadStuff();
        loadMs = Ms(load);
        rowsBefore = main->grid().RowCount();
        lastRun = main->grid().RowCount() > 0
                      ? main->grid().Cell(main->grid().RowCount() - 1, 0).toLongLong()
                      : 0;
        raw->TakeRow(db.handle(), lastRun);
        OpenNew();
    }
    ~Logbook() { CloseWindow(); }

    void OpenNew() {
        main->state().storedTool = QStringLiteral("ID_New");
        window = new run::frmRun(main->context(), main.get());
    }
    void OpenNewest() {
        CloseWindow();
        main->state().storedTool.clear();
        main->SelectRow(main->grid().RowCount() - 1);
        window = new run::frmRun(main->context(), main.get());
    }
    void CloseWindow() {
        if (window != nullptr) {
            window->SetDataChanged(false);
            window->close();
            delete window;
            window = nullptr;
        }
    }

    // Typing one run, saving it (timed alone) and going on to a new one.
    bool Enter(int n) {
        QElapsedTimer all;
        all.start();
        TypeRun(*window, n);
        QElapsedTimer one;
        one.start();
        // The tune-up button's save: the maintenance window waits, so no window is raised per
        // run.
        if (!window->RunSaveRecord(false)) {
            std::fprintf(stderr, "%d runs: save %d failed\n", runs, n);
            return false;
        }
        saves.push_back(Ms(one));
        lastRun = window->RunId();
        window->tool(QStringLiteral("ID_New"))->trigger();
        enteringMs += Ms(all);
        raw->TakeRow(db.handle(), lastRun);
        return true;
    }
    bool Edit(int n) {
        Put(*window, "txtJet(1)", QString::number(70 + n));
        QElapsedTimer one;
        one.start();
        if (!window->RunSaveRecord(false)) {
            std::fprintf(stderr, "%d runs: edit %d failed\n", runs, n);
            return false;
        }
        edits.push_back(Ms(one));
        return true;
    }

    // One turn: the floor and the save, each first every other time.
    bool Turn(int n, bool edit) {
        std::vector<double>& floor = edit ? editFloors : floors;
        if (n % 2 == 0) {
            floor.push_back(raw->Commit());
        }
        if (!(edit ? Edit(n) : Enter(n))) {
            return false;
        }
        if (n % 2 == 1) {
            floor.push_back(raw->Commit());
        }
        return true;
    }

    void Report(int entered) {
        const Stats s = Summarise(saves);
        const Stats f = Summarise(floors);
        const Stats e = Summarise(edits);
        const Stats ef = Summarise(editFloors);
        std::printf("\n%d runs:\n", runs);
        std::printf(
            "  one save (run, car, counters, list row): median %.2f ms, 95%% %.2f ms, "
            "worst %.2f ms\n",
            s.median, s.p95, s.worst);
        std::printf(
            "  raw durable commit (run row + car):       median %.2f ms, 95%% %.2f ms, "
            "worst %.2f ms\n",
            f.median, f.p95, f.worst);
        std::printf("  save / raw commit: %.2f (target <= 2)\n", s.median / f.median);
        std::printf("  %d runs entered with Save and New: %.0f ms in all, %.2f ms a run\n", entered,
                    enteringMs, enteringMs / entered);
        std::printf("  list rows: %d before, %d after\n", rowsBefore, main->grid().RowCount());
        QElapsedTimer check;
        check.start();
        for (int n = 0; n < 20; ++n) {
            run::IsNewestRun(db, window->RunId());
        }
        std::printf("  newest-run check alone: %.3f ms\n", Ms(check) / 20);
        std::printf(
            "  one edit of the newest run: median %.2f ms, worst %.2f ms; raw commit "
            "median %.2f ms; ratio %.2f\n",
            e.median, e.worst, ef.median, e.median / ef.median);
        // For the comparison between sizes.
        std::printf("medians %d %.6f %.6f\n", runs, s.median, f.median);
    }
};

// A logbook in a process of its own, doing what the driver asks one line at a time.
int Worker(int runs, int entered) {
    Logbook book(runs);
    std::printf("logbook: %d runs; list of the car: %d rows x %d columns, loaded in %.0f ms\n",
                runs, book.main->grid().RowCount(), book.main->grid().ColumnCount(), book.loadMs);
    std::printf(
        "floor: prepared INSERT of the whole run row + UPDATE of the car, one "
        "transaction, %s\n",
        book.raw->settings().constData());
    std::printf("ready\n");
    std::fflush(stdout);
    char line[64];
    while (std::fgets(line, sizeof line, stdin) != nullptr) {
        const QByteArray command = QByteArray(line).trimmed();
        bool ok = true;
        const QList<QByteArray> words = command.split(' ');
        if (words.size() == 3 && (words[0] == "enter" || words[0] == "edit")) {
            // A block of turns: runs from the first number, as many as the second.
            const int from = words[1].toInt();
            for (int n = from; ok && n < from + words[2].toInt(); ++n) {
                ok = book.Turn(n, words[0] == "edit");
            }
        } else if (command == "newest") {
            book.OpenNewest();
        } else if (command == "report") {
            book.Report(entered);
            std::printf("end\n");
            std::fflush(stdout);
            return 0;
        }
        std::printf(ok ? "ok\n" : "failed\n");
        std::fflush(stdout);
    }
    return 1;
}

// The driver's side of one worker.
class WorkerProcess {
public:
    WorkerProcess(int runs, int entered) {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(
            QCoreApplication::applicationFilePath(),
            {QStringLiteral("--worker"), QString::number(runs), QString::number(entered)});
    }
    ~WorkerProcess() {
        if (process_.state() != QProcess::NotRunning) {
            process_.kill();
            process_.waitForFinished();
        }
    }
    // The lines up to the one that ends the answer; nothing when the worker is gone.
    std::optional<QList<QByteArray>> Await(const QByteArray& last) {
        QList<QByteArray> lines;
        for (;;) {
            while (process_.canReadLine()) {
                const QByteArray line = process_.readLine().trimmed();
                if (line == last) {
                    return lines;
                }
                if (line == "failed") {
                    return std::nullopt;
                }
                lines << line;
            }
            if (!process_.waitForReadyRead(600000)) {
                return std::nullopt;
            }
        }
    }
    std::optional<QList<QByteArray>> Ask(const QByteArray& command, const QByteArray& last) {
        process_.write(command + '\n');
        return Await(last);
    }

private:
    QProcess process_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc > 3 && std::strcmp(argv[1], "--worker") == 0) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        QApplication app(argc, argv);
        return Worker(std::atoi(argv[2]), std::atoi(argv[3]));
    }
    QCoreApplication app(argc, argv);
    std::vector<int> sizes;
    for (const QString& s : QString::fromLocal8Bit(argc > 1 ? argv[1] : "2000,100000")
                                .split(u',', Qt::SkipEmptyParts)) {
        if (s.toInt() > 0) {
            sizes.push_back(s.toInt());
        }
    }
    const int entered = argc > 2 ? std::max(1, std::atoi(argv[2])) : 1000;
    if (sizes.empty()) {
        std::fprintf(stderr, "usage: bench_runsave [RUNS[,RUNS...]] [ENTERED]\n");
        return 1;
    }

    std::vector<std::unique_ptr<WorkerProcess>> workers;
    for (int runs : sizes) {
        workers.push_back(std::make_unique<WorkerProcess>(runs, entered));
        const auto lines = workers.back()->Await("ready");
        if (!lines) {
            std::fprintf(stderr, "the worker for %d runs did not start\n", runs);
            return 1;
        }
        for (const QByteArray& line : *lines) {
            // The floor's settings are the same for every size.
            if (workers.size() == 1 || !line.startsWith("floor:")) {
                std::printf("%s\n", line.constData());
            }
        }
        std::fflush(stdout);
    }
    // The sizes take turns by blocks of saves: within a block the caches are the worker's own,
    // as a save's are in a program that runs alone.
    const auto turns = [&](const char* command, int count) {
        const int block = std::clamp(count / 10, 1, 50);
        for (int n = 0; n < count; n += block) {
            const int size = std::min(block, count - n);
            for (auto& w : workers) {
                if (!w->Ask(QByteArray(command) + ' ' + QByteArray::number(n) + ' ' +
                                QByteArray::number(size),
                            "ok")) {
                    return false;
                }
            }
        }
        return true;
    };
    if (!turns("enter", entered)) {
        return 1;
    }
    for (auto& w : workers) {
        w->Ask("newest", "ok");
    }
    if (!turns("edit", std::max(10, entered / 20))) {
        return 1;
    }

    bool met = true;
    std::vector<std::pair<double, double>> medians;  // save, floor
    for (size_t i = 0; i < workers.size(); ++i) {
        const auto lines = workers[i]->Ask("report", "end");
        if (!lines) {
            return 1;
        }
        for (const QByteArray& line : *lines) {
            if (line.startsWith("medians ")) {
                const QList<QByteArray> parts = line.split(' ');
                medians.emplace_back(parts.value(2).toDouble(), parts.value(3).toDouble());
            } else {
                std::printf("%s\n", line.constData());
            }
        }
    }
    for (const auto& [save, floor] : medians) {
        met = met && save <= 2.0 * floor;
    }
    if (medians.size() > 1 && medians.size() == sizes.size()) {
        const double save = medians.back().first / medians.front().first;
        const double floor = medians.back().second / medians.front().second;
        met = met && save >= 1 / 1.2 && save <= 1.2;
        std::printf(
            "\nsave at %d runs / save at %d runs: %.2f (target 0.83 to 1.20); raw commit "
            "%.2f\n",
            sizes.back(), sizes.front(), save, floor);
    }
    return met ? 0 : 2;
}
