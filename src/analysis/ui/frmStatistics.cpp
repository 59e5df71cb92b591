#include "analysis/ui/frmStatistics.h"

#include "analysis/statistics.h"
#include "common/ui/formhelpers.h"
#include "store/dberror.h"

#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

namespace slipbook::analysis {

namespace {

const QString kFiguresHeading = QStringLiteral("Figures");
const QString kBestsHeading = QStringLiteral("Best ET and MPH per track");

}  // namespace

frmStatistics::frmStatistics(const shell::WindowContext& ctx, QWidget* parent)
    : FigureWindow(
          ctx,
          {QStringLiteral("tblEvents"), QStringLiteral("tblTracks"), QStringLiteral("tblCars")},
          parent) {
    setObjectName(QStringLiteral("frmStatistics"));
    setWindowTitle(QStringLiteral("Statistics"));
    lblSelection = MakeLabel("lblSelection", true);
    lblHelp = MakeLabel("lblHelp", false);
    lblHelp->setText(QStringLiteral(
        "The runs the main list shows. Reaction times leave out red lights (below 0), counted "
        "apart. ET figures take every run with a time at that mark; the dial-in figures only "
        "the runs that finished there with a dial-in: a breakout is an ET under the dial-in. "
        "Standard deviations are of a sample (n - 1). Times in seconds."));
    lblStatus = MakeLabel("lblStatus", false);
    lblStatus->hide();
    grdFigures = MakeGrid("grdFigures", new TextGridModel(this));
    grdBests = MakeGrid("grdBests", new TextGridModel(this));
    QVBoxLayout* l = body();
    l->addWidget(lblSelection);
    l->addWidget(lblHelp);
    l->addWidget(lblStatus);
    QLabel* figures = MakeLabel("lblFigures", true);
    figures->setText(kFiguresHeading);
    l->addWidget(figures);
    l->addWidget(grdFigures, 3);
    QLabel* bests = MakeLabel("lblBests", true);
    bests->setText(kBestsHeading);
    l->addWidget(bests);
    l->addWidget(grdBests, 2);
    resize(1120, 780);
    Reload();
}

void frmStatistics::Refresh() {
    BusyCursor busy;
    lblSelection->setText(SelectionText());
    RunSelection selection;
    selection.carId = ctx_.state.car.id;
    selection.eventId = ctx_.state.event.id;
    selection.trackId = ctx_.state.track.id;
    selection.filterActive = ctx_.state.filter.active;
    selection.filterSql = ctx_.state.filter.sql;
    Statistics s;
    try {
        s = ReadStatistics(ctx_.db, selection);
        lblStatus->clear();
        lblStatus->hide();
    } catch (const store::DbError& e) {
        // A filter whose statement no longer runs: the figures of no runs, and why.
        s = ComputeStatistics({}, {});
        lblStatus->setText(QStringLiteral("The runs could not be read: ") + e.description());
        lblStatus->show();
    }
    Show(grdFigures, FiguresTable(s));
    Show(grdBests, BestsTable(s));
}

Report frmStatistics::MakeReport() {
    Report r = NewReport(windowTitle());
    r.lines = {lblSelection->text(), lblHelp->text()};
    if (!lblStatus->text().isEmpty()) {
        r.lines << lblStatus->text();
    }
    r.sections = {
        {kFiguresHeading, QString(), static_cast<const TextGridModel*>(grdFigures->model())},
        {kBestsHeading, QString(), static_cast<const TextGridModel*>(grdBests->model())}};
    return r;
}

}  // namespace slipbook::analysis
