// The run filter on a large logbook: 100,000 runs of one car in the widest shipped view. The filter
// window is filled and Apply pressed; the time runs until the main window shows the filtered list
// (the statement built, the check for runs, the list loaded). Against it, raw SQLite reading every
// column of the same rows in the same order. A broad and a narrow filter; prints both times and
// the ratio.
//   build/bench/bench_filter [RUNS]
#include "logbookgen.h"
#include "mainbench.h"

#include "common/tools.h"
#include "shell/ui/frmMain.h"
#include "store/database.h"
#include "views/runfilter.h"
#include "views/ui/frmFilter.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTableView>
#include <cstdio>
#include <utility>
#include <vector>

using namespace slipbook;

namespace {

// A condition as the racer sets it in the window: the row of the caption, its operator and values.
struct Condition {
    const char* caption;
    const char* op;
    const char* value1;
    const char* value2;
};

views::frmFilter* OpenFilter(shell::frmMain& main) {
    QAction* tool = main.tool(tools::kFilter);
    if (tool->isChecked()) {
        tool->trigger();
    }
    tool->trigger();
    return qobject_cast<views::frmFilter*>(main.OpenWindow(tools::kFilter));
}

bool Fill(views::frmFilter& w, const std::vector<Condition>& conditions) {
    QAbstractItemModel* model = w.findChild<QTableView*>(QStringLiteral("ssdbgFilter"))->model();
    for (const Condition& c : conditions) {
        int row = 0;
        while (row < model->rowCount() &&
               model->index(row, views::frmFilter::Field).data().toString() !=
                   QLatin1String(c.caption)) {
            ++row;
        }
        if (row == model->rowCount()) {
            std::fprintf(stderr, "no row %s in the filter\n", c.caption);
            return false;
        }
        model->setData(model->index(row, views::frmFilter::Operator), QString::fromLatin1(c.op));
        model->setData(model->index(row, views::frmFilter::Value), QString::fromLatin1(c.value1));
        if (c.value2 != nullptr) {
            model->setData(model->index(row, views::frmFilter::Value2),
                           QString::fromLatin1(c.value2));
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::atoi(argv[1]) : 100000;
    const QString logbook = bench::OneCarLogbook(QStringLiteral("filter"), runs);
    bench::MainOnLogbook program(logbook);
    store::Database& db = program.db;
    shell::frmMain& main = program.main;
    main.RegisterWindow(tools::kFilter,
                        [](const shell::WindowContext& ctx, QWidget* owner) -> QWidget* {
                            auto* w = new views::frmFilter(ctx, owner);
                            w->setAttribute(Qt::WA_DeleteOnClose, true);
                            return w;
                        });
    main.FormLoadStuff();

    QComboBox* views = main.selector(QStringLiteral("ID_Views"));
    views->setCurrentIndex(views->findData(QVariant::fromValue(bench::WidestShippedView(db))));
    main.ToolClick(tools::kRuns);
    std::printf("run list: %d rows x %d columns (view %s)\n", main.grid().RowCount(),
                main.grid().ColumnCount(), qPrintable(views->currentText()));

    const std::vector<std::pair<const char*, std::vector<Condition>>> filters = {
        {"broad", {{"1/4 et", "Between", "8", "9.5"}, {"Full Run", "=", "Yes", nullptr}}},
        {"narrow",
         {{"Event", "=", "Event 17", nullptr},
          {"1/4 et", "<", "8.5", nullptr},
          {"Date", ">=", "01/01/1998", nullptr}}},
    };
    bool same = true;
    for (const auto& [name, conditions] : filters) {
        double raw = 1e9;
        double apply = 1e9;
        double logic = 1e9;
        double reload = 1e9;
        int rawRows = 0;
        int shown = 0;
        QString text;
        for (int round = 0; round < 3; ++round) {
            // Each round starts from the whole list, as the racer does.
            views::frmFilter* w = OpenFilter(main);
            if (w == nullptr || !Fill(*w, conditions)) {
                return 1;
            }
            {
                QElapsedTimer t;
                t.start();
                const auto built = views::BuildRunFilter(
                    db, w->form().rows(), {1, 0, QDate(2024, 7, 4)}, program.messages);
                if (!views::FilterHasRuns(db, built.sql)) {
                    std::fprintf(stderr, "%s: no runs\n", name);
                    return 1;
                }
                logic = std::min(logic, t.nsecsElapsed() / 1e6);
            }
            QElapsedTimer t;
            t.start();
            w->findChild<QPushButton*>(QStringLiteral("sscmdApply"))->click();
            apply = std::min(apply, t.nsecsElapsed() / 1e6);
            // The main window's share: the same filtered list loaded again.
            {
                QElapsedTimer t2;
                t2.start();
                main.ToolClick(tools::kRuns);
                reload = std::min(reload, t2.nsecsElapsed() / 1e6);
            }
            shown = main.grid().RowCount();
            text = main.state().filter.text;
            raw = std::min(raw, bench::RawReadMs(db,
                                                 main.state().filter.sql +
                                                     QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm"),
                                                 &rawRows));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        const double ratio = apply / raw;
        std::printf("\n%s filter: %s\n", name, qPrintable(text));
        std::printf("raw SQLite read of the same rows: %.0f ms (%d rows)\n", raw, rawRows);
        std::printf("statement and check alone: %.1f ms\n", logic);
        std::printf("the filtered list loaded again by the main window: %.0f ms\n", reload);
        std::printf(
            "Apply to the filtered list shown: %.0f ms (%d rows), ratio %.2f (target <= 2)\n",
            apply, shown, ratio);
        if (shown != rawRows) {
            std::printf("the list shows %d rows, SQLite reads %d\n", shown, rawRows);
            same = false;
        }
    }
    return same ? 0 : 1;
}
