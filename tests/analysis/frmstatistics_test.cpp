// The statistics window over a small logbook: the figures of the main window's selection,
// following saves and the selection, and printed.

#include "analysis/ui/frmStatistics.h"
#include "common/tools.h"
#include "support/gui.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

using namespace slipbook;
using namespace slipbook::test;
using analysis::frmStatistics;

namespace {

// The text a PDF holds, as pdftotext reads it.
QString PdfText(const QString& pdf) {
    QProcess p;
    p.start(QStandardPaths::findExecutable(QStringLiteral("pdftotext")),
            {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished(20000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

// With SLIPBOOK_GRAB_DIR set, keeps the printout there to be looked at.
void KeepPrintout(const QString& pdf, const QString& name) {
    const QString dir = qEnvironmentVariable("SLIPBOOK_GRAB_DIR");
    if (!dir.isEmpty()) {
        const QString to = QDir(dir).filePath(name + QStringLiteral(".pdf"));
        QFile::remove(to);
        QFile::copy(pdf, to);
    }
}

struct StatisticsWindow : WindowTest {
    StatisticsWindow() {
        main.state.car = {1, QStringLiteral("My Race Car")};
        main.state.event = {0, QStringLiteral("<All Events>")};
        main.state.track = {0, QStringLiteral("<All Tracks>")};
        logbook.db().Execute(QStringLiteral(
            "INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (2, 'Dragway 42')"));
        logbook.db().Execute(QStringLiteral(
            "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Summer', 2)"));
        Run(1, 1, "#07/04/2003#, #10:00#, 0.510, 10.20, 128.5, 10.22, 85, 40, 29.92, 2500, 1.02");
        Run(2, 2, "#07/05/2003#, #11:00#, -0.030, 10.05, 130.25, 10.00, 70, 55, 30.01, 900, 0.99");
        Run(3, 2, "#07/06/2003#, #09:30#, 0.480, 10.10, 131.00, 10.10, 75, 50, 29.95, 1400, 1.00");
    }
    void Run(int id, int event, const char* rest) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "dtRun_tm, iReactionTime_val, i14Mile_et, i14Mile_mph, iDialIn_val, "
                           "iTemp_val, iHumidity_val, iBarometricPressure_val, iDensityAlt_val, "
                           "iCorrFactor_val) VALUES (%1, 1, %2, %1, %3)")
                .arg(id)
                .arg(event)
                .arg(QLatin1String(rest)));
    }
    std::unique_ptr<frmStatistics> Open() {
        auto w = std::make_unique<frmStatistics>(Context());
        ShowActive(*w);
        return w;
    }
    // The value shown beside a figure's caption, then its runs and what it left out.
    static QString Figure(frmStatistics& w, const char* caption) {
        const QAbstractItemModel* m = Child<QTableView>(w, "grdFigures")->model();
        for (int r = 0; r < m->rowCount(); ++r) {
            if (m->index(r, 0).data().toString() == QLatin1String(caption)) {
                return QStringList{m->index(r, 1).data().toString(),
                                   m->index(r, 2).data().toString(),
                                   m->index(r, 3).data().toString()}
                    .join(QStringLiteral(" | "));
            }
        }
        return QStringLiteral("no such figure");
    }
    static QStringList BestRow(frmStatistics& w, int row) {
        const QAbstractItemModel* m = Child<QTableView>(w, "grdBests")->model();
        QStringList cells;
        for (int c = 0; c < m->columnCount(); ++c) {
            cells << m->index(row, c).data().toString();
        }
        return cells;
    }
};

TEST_F(StatisticsWindow, ShowsTheFiguresOfTheSelectionAndFollowsIt) {
    auto w = Open();
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Statistics"));
    EXPECT_EQ(Child<QLabel>(*w, "lblSelection")->text(),
              QStringLiteral("Car: My Race Car    Event: <All Events>    Track: <All Tracks>"));
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("3 | 3 | "));
    EXPECT_EQ(Figure(*w, "Average reaction time (s)"), QStringLiteral("0.495 | 2 | 1 red light"));
    EXPECT_EQ(Figure(*w, "1/4 mile: average ET minus dial-in (s)"),
              QStringLiteral("+0.010 | 3 | "));
    EXPECT_EQ(Figure(*w, "1/4 mile: breakouts (ET under dial-in)"),
              QStringLiteral("1 of 3 (33.3 %) | 3 | "));
    EXPECT_EQ(Figure(*w, "1/8 mile: best ET (s)"),
              QStringLiteral("no runs | 0 | 3 without 1/8 mile ET"));
    EXPECT_EQ(BestRow(*w, 0),
              (QStringList{"Dragway 42", "1/4 mile", "ET", "10.050", "07/05/2003", "11:00 AM", "2",
                           "70.0", "55", "30.01", "900", "0.9900"}));
    Grab(*w, QStringLiteral("statistics"));

    // A run saved elsewhere is counted as soon as the notice comes.
    Run(4, 1, "#07/07/2003#, #10:00#, 0.450, 10.15, 129.0, 10.15, 80, 45, 29.90, 2000, 1.01");
    main.events.runSaved(4, true);
    QApplication::processEvents();
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("4 | 4 | "));

    // The main window moves to an event: the figures follow when the racer comes back here.
    main.state.event = {2, QStringLiteral("Summer")};
    QWidget other;
    ShowActive(other);
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("4 | 4 | "));
    ShowActive(*w);
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("2 | 2 | "));
    EXPECT_EQ(Child<QLabel>(*w, "lblSelection")->text(),
              QStringLiteral("Car: My Race Car    Event: Summer    Track: <All Tracks>"));

    // A filter, then Refresh; a filter whose statement no longer runs leaves no figures, and
    // says why.
    main.state.event = {0, QStringLiteral("<All Events>")};
    main.state.filter = {true, QStringLiteral("1/4 et > 10.1"),
                         QStringLiteral("SELECT * from tblRuns WHERE lCar_id = 1 AND "
                                        "i14Mile_et > 10.1")};
    Press(*w, tools::kRefresh);
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("2 | 2 | "));
    EXPECT_TRUE(Child<QLabel>(*w, "lblSelection")->text().endsWith(u"Filter: 1/4 et > 10.1"));
    main.state.filter.sql = QStringLiteral("SELECT * from tblRuns WHERE lNoSuchColumn = 1");
    Press(*w, tools::kRefresh);
    EXPECT_EQ(Figure(*w, "Runs"), QStringLiteral("0 | 0 | "));
    EXPECT_TRUE(Child<QLabel>(*w, "lblStatus")
                    ->text()
                    .startsWith(QStringLiteral("The runs could not be read: ")));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(StatisticsWindow, PrintsTheFiguresFromThePreview) {
    auto w = Open();
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("statistics.pdf"));
    ASSERT_TRUE(PrintFromPreview(*w, tools::kPrint, pdf));
    KeepPrintout(pdf, QStringLiteral("statistics"));
    const QString text = PdfText(pdf);
    EXPECT_TRUE(text.contains(QStringLiteral("Quadrumex Slipbook Drag Electronic Logbook")));
    EXPECT_TRUE(text.contains(QStringLiteral("Best ET and MPH per track")));
    EXPECT_TRUE(text.contains(QStringLiteral("1/4 mile: breakouts (ET under dial-in)")));
    EXPECT_TRUE(text.contains(QStringLiteral("1 of 3 (33.3 %)")));
    EXPECT_TRUE(text.contains(QStringLiteral("Dragway 42")));
    EXPECT_TRUE(text.contains(QStringLiteral("Printed 7/4/2024 2:35:00 PM"))) << text.toStdString();

    // The same pages straight to a file.
    const QString direct = dir.filePath(QStringLiteral("direct.pdf"));
    ASSERT_TRUE(w->PrintToPdf(direct));
    EXPECT_TRUE(PdfText(direct).contains(QStringLiteral("Average reaction time (s)")));
}

}  // namespace
