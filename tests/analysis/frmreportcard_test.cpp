// The prediction report card window over a small history: the scores of each method for all
// runs and the last runs, the distance, the reasons behind empty predictions, and the printout.

#include "analysis/ui/frmReportCard.h"
#include "common/tools.h"
#include "support/gui.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

using namespace slipbook;
using namespace slipbook::test;
using analysis::frmReportCard;

namespace {

struct ReportCardWindow : WindowTest {
    ReportCardWindow() {
        main.state.car = {1, QStringLiteral("My Race Car")};
        // The history of the report card's own tests: runs 1-5 at the quarter mile.
        Run(1, "07/01/2024", "10:00", "1.00", "1000", "10.000", "10.05");
        Run(3, "07/02/2024", "10:00", "1.04", "3000", "10.200", "10.21");
        Run(5, "07/03/2024", "09:00", "1.01", "1500", "10.040", "10.03");
        Run(2, "07/01/2024", "14:00", "1.02", "2000", "10.100", "10.08");
        Run(4, "07/02/2024", "12:00", "1.03", "2500", "10.160", "Null");
        Run(6, "07/02/2024", "11:30", "1.03", "2500", "Null", "6.40", "6.41");
    }
    void Run(int id, const char* date, const char* time, const char* corr, const char* da,
             const char* et14, const char* dial, const char* et18 = "6.5") {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "dtRun_tm, iCorrFactor_val, iDensityAlt_val, i14Mile_et, iDialIn_val, "
                           "i18Mile_et) VALUES (%1, 1, 1, %1, #%2#, #%3#, %4, %5, %6, %7, %8)")
                .arg(id)
                .arg(QLatin1String(date), QLatin1String(time), QLatin1String(corr),
                     QLatin1String(da), QLatin1String(et14), QLatin1String(dial),
                     QLatin1String(et18)));
    }
    std::unique_ptr<frmReportCard> Open() {
        auto w = std::make_unique<frmReportCard>(Context());
        ShowActive(*w);
        return w;
    }
    static QStringList Row(frmReportCard& w, const char* grid, int row,
                           int role = Qt::DisplayRole) {
        const QAbstractItemModel* m = Child<QTableView>(w, grid)->model();
        QStringList cells;
        for (int c = 0; c < m->columnCount(); ++c) {
            cells << m->index(row, c).data(role).toString();
        }
        return cells;
    }
    static int Rows(frmReportCard& w, const char* grid) {
        return Child<QTableView>(w, grid)->model()->rowCount();
    }
};

TEST_F(ReportCardWindow, ScoresEachMethodOverAllAndTheLastRuns) {
    auto w = Open();
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Prediction Report Card"));
    EXPECT_EQ(Child<QLabel>(*w, "lblCar")->text(), QStringLiteral("Car: My Race Car"));
    EXPECT_EQ(Child<QLabel>(*w, "lblSummary")->text(),
              QStringLiteral("5 runs of this car finished at 1/4 mile with weather. Left off: 1 "
                             "finished at 1/8 mile."));
    EXPECT_EQ(Child<QSpinBox>(*w, "spnLastRuns")->value(), 10);

    // Run 4: dial-in none; standard 10.167 from run 3; density altitude 10.15 along runs 1-3;
    // the line through runs 1-3 also 10.15.
    ASSERT_EQ(Rows(*w, "grdCard"), 5);
    EXPECT_EQ(Row(*w, "grdCard", 3),
              (QStringList{"07/02/2024", "12:00 PM", "4", "10.160", "", "", "10.167", "+0.007",
                           "10.150", "-0.010", "10.150", "-0.010", "earlier runs"}));
    EXPECT_EQ(Row(*w, "grdCard", 3, Qt::ToolTipRole).value(4), QStringLiteral("no dial-in"));
    EXPECT_EQ(Row(*w, "grdCard", 1, Qt::ToolTipRole).value(8),
              QStringLiteral("needs 3 setup runs or 3 earlier runs"));

    // Four methods over all runs, then over the last 10 (all five again).
    ASSERT_EQ(Rows(*w, "grdScores"), 8);
    EXPECT_EQ(Row(*w, "grdScores", 0),
              (QStringList{"All runs", "Racer's dial-in", "4 of 5", "1 no dial-in", "0.023",
                           "+0.008", "50.0 %", "75.0 %"}));
    EXPECT_EQ(Row(*w, "grdScores", 1),
              (QStringList{"All runs", "Standard", "4 of 5", "1 no earlier run", "0.032", "-0.002",
                           "25.0 %", "25.0 %"}));
    EXPECT_EQ(Row(*w, "grdScores", 4).value(0), QStringLiteral("Last 10 runs"));
    Grab(*w, QStringLiteral("reportcard"));

    // The last two runs: run 4 has no dial-in, run 5 missed it by 0.01.
    Type(Child<QSpinBox>(*w, "spnLastRuns"), QStringLiteral("2"));
    EXPECT_EQ(Row(*w, "grdScores", 4),
              (QStringList{"Last 2 runs", "Racer's dial-in", "1 of 2", "1 no dial-in", "0.010",
                           "-0.010", "100.0 %", "100.0 %"}));
    EXPECT_EQ(Row(*w, "grdScores", 6).value(3), QString());  // density altitude: both predicted

    // The eighth mile: the one eighth-mile race, with nothing before it.
    QTest::mouseClick(Child<QRadioButton>(*w, "opt18Mile"), Qt::LeftButton);
    EXPECT_EQ(Child<QLabel>(*w, "lblSummary")->text(),
              QStringLiteral("1 run of this car finished at 1/8 mile with weather. Left off: 5 "
                             "finished at 1/4 mile."));
    EXPECT_EQ(Row(*w, "grdScores", 1),
              (QStringList{"All runs", "Standard", "0 of 1", "1 no earlier run", "no runs",
                           "no runs", "no runs", "no runs"}));

    // Another car in the main window, with no runs: the card says so on Refresh.
    QTest::mouseClick(Child<QRadioButton>(*w, "opt14Mile"), Qt::LeftButton);
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, 'Spare', '2')"));
    main.state.car = {2, QStringLiteral("Spare")};
    Press(*w, tools::kRefresh);
    EXPECT_EQ(Child<QLabel>(*w, "lblSummary")->text(),
              QStringLiteral("No run of this car finished at 1/4 mile with weather."));
    EXPECT_EQ(Rows(*w, "grdCard"), 0);
    EXPECT_EQ(Row(*w, "grdScores", 0).value(2), QStringLiteral("0 of 0"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ReportCardWindow, FollowsSetupRunsAndPrints) {
    auto w = Open();
    // Three setup runs saved elsewhere, older than every run: the line can read run 1.
    for (const char* values : {"101, 1, #06/01/2024#, 1000, 10.0, 6.5, 'DA', 0",
                               "102, 1, #06/02/2024#, 2000, 10.1, 6.5, 'DA', 0",
                               "103, 1, #06/03/2024#, 3000, 10.2, 6.5, 'DA', 0"}) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblCarSetup (lRun_id, lCar_id, dtRun_dt, iDensityAlt_val, "
                           "i14Mile_et, i18Mile_et, sSetup_cat, bEighthNotQuarter) VALUES (%1)")
                .arg(QLatin1String(values)));
    }
    main.events.recordsChanged(QStringLiteral("tblCarSetup"));
    QApplication::processEvents();
    EXPECT_EQ(Row(*w, "grdCard", 0).value(10), QStringLiteral("10.000"));
    EXPECT_EQ(Row(*w, "grdCard", 0).value(12), QStringLiteral("line: setup runs"));

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("card.pdf"));
    ASSERT_TRUE(PrintFromPreview(*w, tools::kPrint, pdf));
    if (const QString keep = qEnvironmentVariable("SLIPBOOK_GRAB_DIR"); !keep.isEmpty()) {
        QFile::remove(QDir(keep).filePath(QStringLiteral("reportcard.pdf")));
        QFile::copy(pdf, QDir(keep).filePath(QStringLiteral("reportcard.pdf")));
    }
    QProcess p;
    p.start(QStandardPaths::findExecutable(QStringLiteral("pdftotext")),
            {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished(20000);
    const QString text = QString::fromUtf8(p.readAllStandardOutput());
    EXPECT_TRUE(text.contains(QStringLiteral("How each method did")));
    EXPECT_TRUE(text.contains(QStringLiteral("Run by run")));
    EXPECT_TRUE(text.contains(QStringLiteral("Least squares")));
    EXPECT_TRUE(text.contains(QStringLiteral("07/03/2024")));
    EXPECT_TRUE(text.contains(QStringLiteral("Printed 7/4/2024 2:35:00 PM"))) << text.toStdString();
}

}  // namespace

namespace {

TEST_F(ReportCardWindow, ALongCardRunsOnAcrossPagesUnderItsHeaders) {
    for (int i = 0; i < 80; ++i) {
        const QByteArray date =
            QDate(2024, 8, 1).addDays(i).toString(QStringLiteral("MM/dd/yyyy")).toLatin1();
        const QByteArray da = QByteArray::number(1000 + (i % 7) * 250);
        const QByteArray et = QByteArray::number(10.0 + (i % 7) * 0.025 + (i % 3) * 0.004, 'f', 3);
        Run(100 + i, date.constData(), "10:00", "1.01", da.constData(), et.constData(),
            et.constData());
    }
    auto w = Open();
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("long.pdf"));
    ASSERT_TRUE(w->PrintToPdf(pdf));
    if (const QString keep = qEnvironmentVariable("SLIPBOOK_GRAB_DIR"); !keep.isEmpty()) {
        QFile::remove(QDir(keep).filePath(QStringLiteral("reportcard-long.pdf")));
        QFile::copy(pdf, QDir(keep).filePath(QStringLiteral("reportcard-long.pdf")));
    }
    QProcess p;
    p.start(QStandardPaths::findExecutable(QStringLiteral("pdftotext")),
            {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    p.waitForFinished(20000);
    const QStringList pages =
        QString::fromUtf8(p.readAllStandardOutput()).split(u'\f', Qt::SkipEmptyParts);
    ASSERT_GE(pages.size(), 3);
    // Every page: its number, the column headers of the run table, the stamp; the last run on
    // the last page.
    int runs = 0;
    for (int i = 0; i < pages.size(); ++i) {
        EXPECT_TRUE(pages[i].contains(QStringLiteral("Page %1").arg(i + 1))) << i;
        EXPECT_TRUE(pages[i].contains(QStringLiteral("Printed 7/4/2024 2:35:00 PM"))) << i;
        if (i > 0) {
            EXPECT_TRUE(pages[i].contains(QStringLiteral("Least sq. - ET"))) << i;
        }
        runs += static_cast<int>(pages[i].count(QStringLiteral("10:00 AM")));
    }
    EXPECT_TRUE(pages.last().contains(QStringLiteral("10/19/2024")));
    // Every run once: the 80 at 10:00 and runs 1 and 3 of the history.
    EXPECT_EQ(runs, 82);
}

}  // namespace
