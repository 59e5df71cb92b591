// The charts window: a car's runs charted, a click on a point opening its run, printed and
// exported.

#include "analysis/ui/frmCharts.h"
#include "support/gui.h"

#include <QApplication>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QLineSeries>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScatterSeries>
#include <QStackedBarSeries>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

using namespace slipbook;
using namespace slipbook::test;
using analysis::frmCharts;

namespace {

struct ChartsWindow : WindowTest {
    ChartsWindow() {
        main.state.car = {1, QStringLiteral("My Race Car")};
        main.state.event = {0, QStringLiteral("<All Events>")};
        main.state.track = {0, QStringLiteral("<All Tracks>")};
        store::Database& db = logbook.db();
        db.Execute("INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (2, 'Far Track')");
        db.Execute("INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Away', 2)");
        // id, car, event, date, time, 1/4 ET, MPH, 1/8 ET, 60', R/T, DA, CF; "0" is the run
        // window's blank.
        Run(1, 1, 1, "#05/01/2024#", "#10:00 AM#", "10.50", "130.10", "6.70", "1.40", "0.452",
            "1000", "1.0100");
        Run(2, 1, 1, "#05/01/2024#", "#11:30 AM#", "10.52", "130.00", "6.72", "1.41", "0.461",
            "2000", "1.0200");
        Run(3, 1, 2, "#05/02/2024#", "#09:15 AM#", "10.55", "Null", "Null", "0", "-0.012", "3000",
            "1.0300");
        Run(4, 1, 2, "#05/02/2024#", "#09:45 AM#", "10.56", "129.50", "Null", "1.43", "0.459",
            "4000", "Null");
        Run(5, 1, 1, "Null", "Null", "0", "0", "Null", "1.45", "0.475", "2500", "1.0150");
        Run(6, 1, 1, "#05/03/2024#", "#08:00 AM#", "10.60", "129.00", "Null", "1.44", "0", "0",
            "0");
        Run(7, 2, 1, "#05/01/2024#", "#10:30 AM#", "9.90", "140.00", "6.30", "1.30", "0.500",
            "1500", "1.0050");
    }
    ~ChartsWindow() override { delete window.data(); }

    void Run(int id, int car, int event, const char* date, const char* time, const char* et14,
             const char* mph14, const char* et18, const char* et60, const char* rt, const char* da,
             const char* cf) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "dtRun_tm, i14Mile_et, i14Mile_mph, i18Mile_et, i60Foot_et, "
                           "iReactionTime_val, iDensityAlt_val, iCorrFactor_val) VALUES (%1, %2, "
                           "%3, %1, %4, %5, %6, %7, %8, %9, %10, %11, %12)")
                .arg(id)
                .arg(car)
                .arg(event)
                .arg(QLatin1String(date), QLatin1String(time), QLatin1String(et14),
                     QLatin1String(mph14), QLatin1String(et18), QLatin1String(et60),
                     QLatin1String(rt), QLatin1String(da), QLatin1String(cf)));
    }

    frmCharts& Open() {
        window = new frmCharts(Context());
        window->setAttribute(Qt::WA_DeleteOnClose);
        ShowActive(*window);
        return *window;
    }

    QTabWidget* Tabs() { return Child<QTabWidget>(*window, "tabCharts"); }

    // Brings the tab forward with a click on it, as the racer does.
    void ShowTab(int index) {
        QTabBar* bar = Tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
        ASSERT_EQ(Tabs()->currentIndex(), index);
    }

    QChartView* View(const char* name) {
        return Child<QChartView>(*window, QStringLiteral("cv") + QLatin1String(name));
    }
    QString Info(const char* name) {
        return Child<QLabel>(*window, QStringLiteral("lblInfo") + QLatin1String(name))->text();
    }
    QLabel* Empty(const char* name) {
        return Child<QLabel>(*window, QStringLiteral("lblEmpty") + QLatin1String(name));
    }

    template <class S>
    QList<S*> SeriesOf(const char* view) {
        QList<S*> found;
        for (QAbstractSeries* s : View(view)->chart()->series()) {
            if (auto* typed = qobject_cast<S*>(s)) {
                found << typed;
            }
        }
        return found;
    }

    // The scatter's points, and the two ends of its least-squares line.
    std::pair<QList<QPointF>, QList<QPointF>> Scatter(const char* view) {
        const QList<QScatterSeries*> points = SeriesOf<QScatterSeries>(view);
        QList<QPointF> line;
        for (QLineSeries* l : SeriesOf<QLineSeries>(view)) {
            if (qobject_cast<QScatterSeries*>(l) == nullptr) {
                line = l->points();
            }
        }
        return {points.size() == 1 ? points[0]->points() : QList<QPointF>(), line};
    }

    void Click(const char* name) {
        auto* button = Child<QAbstractButton>(*window, QString::fromLatin1(name));
        ASSERT_TRUE(button->isVisible() && button->isEnabled()) << name;
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }

    // A click on the point of this value, where the view draws it.
    void ClickPoint(const char* view, QXYSeries* series, QPointF value) {
        QChartView* v = View(view);
        QChart* chart = v->chart();
        const QPoint at = v->mapFromScene(chart->mapToScene(chart->mapToPosition(value, series)));
        QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, at);
    }

    // Presses the export button and saves under this name in the file dialog.
    void ExportAs(const char* button, const QString& path) {
        bool driven = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(name, nullptr);
            Type(name, path);
            QTest::keyClick(name, Qt::Key_Return);
            driven = true;
        });
        Click(button);
        EXPECT_TRUE(driven);
    }

    QPointer<frmCharts> window;
};

}  // namespace

TEST_F(ChartsWindow, ChartsEachFigureOfTheCarAtTheChosenDistance) {
    frmCharts& w = Open();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Charts - My Race Car"));
    EXPECT_EQ(Child<QLabel>(w, "lblScope")->text(),
              QStringLiteral("6 runs of My Race Car as the list narrows them: all events, all "
                             "tracks."));
    QStringList captions;
    for (int i = 0; i < Tabs()->count(); ++i) {
        captions << Tabs()->tabText(i);
    }
    EXPECT_EQ(captions, (QStringList{"ET / Density Altitude", "ET / Correction Factor",
                                     "ET and MPH over Time", "60' / ET", "Reaction Times"}));
    EXPECT_TRUE(Child<QRadioButton>(w, "optQuarter")->isChecked());

    // ET against density altitude: four runs and the line 10.48 s + 0.021 s per 1000 ft.
    auto [points, line] = Scatter("DensityAlt");
    EXPECT_EQ(points, (QList<QPointF>{{1000, 10.50}, {2000, 10.52}, {3000, 10.55}, {4000, 10.56}}));
    ASSERT_EQ(line.size(), 2);
    EXPECT_DOUBLE_EQ(line[0].x(), 1000);
    EXPECT_NEAR(line[0].y(), 10.501, 1e-9);
    EXPECT_NEAR(line[1].y(), 10.564, 1e-9);
    EXPECT_EQ(Info("DensityAlt"),
              QStringLiteral("Least-squares line over 4 runs: 0.0210 s per 1000 ft (0.01 s = 476 "
                             "ft); 10.480 s at 0 ft; r² 0.969.\nLeft out: 1 run without a 1/4 mile "
                             "ET, 1 run without density altitude."));
    Grab(w, QStringLiteral("frmCharts-densityalt"));

    ShowTab(1);
    EXPECT_EQ(Scatter("CorrFactor").first.size(), 3);
    EXPECT_TRUE(Info("CorrFactor").startsWith("Least-squares line over 3 runs: 0.0250 s per 0.01"));

    ShowTab(2);
    const QList<QLineSeries*> lines = SeriesOf<QLineSeries>("OverTime");
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0]->name(), QStringLiteral("1/4 mile ET (s)"));
    EXPECT_EQ(lines[0]->count(), 5);
    EXPECT_EQ(lines[1]->name(), QStringLiteral("1/4 mile speed (mph)"));
    EXPECT_EQ(lines[1]->count(), 4);
    EXPECT_EQ(
        lines[0]->at(0),
        QPointF(static_cast<double>(QDateTime(QDate(2024, 5, 1), QTime(10, 0)).toMSecsSinceEpoch()),
                10.50));
    EXPECT_EQ(Info("OverTime"), QStringLiteral("Left out of the ETs: 1 run without a date.\nLeft "
                                               "out of the speeds: 1 run without a date, 1 run "
                                               "without a 1/4 mile speed."));
    Grab(w, QStringLiteral("frmCharts-overtime"));

    ShowTab(3);
    EXPECT_EQ(Scatter("SixtyFoot").first,
              (QList<QPointF>{{10.50, 1.40}, {10.52, 1.41}, {10.56, 1.43}, {10.60, 1.44}}));
    EXPECT_TRUE(Scatter("SixtyFoot").second.isEmpty());

    ShowTab(4);
    const QList<QStackedBarSeries*> bars = SeriesOf<QStackedBarSeries>("Reaction");
    ASSERT_EQ(bars.size(), 1);
    ASSERT_EQ(bars[0]->count(), 2);
    // The red light stands apart in a bar of its own, left of the 0.45, 0.46 and 0.47 bins.
    QList<qreal> runs;
    QList<qreal> red;
    for (int i = 0; i < bars[0]->barSets()[0]->count(); ++i) {
        runs << bars[0]->barSets()[0]->at(i);
        red << bars[0]->barSets()[1]->at(i);
    }
    EXPECT_EQ(runs, (QList<qreal>{0, 2, 1, 1}));  // 0.452 and 0.459 share a bin
    EXPECT_EQ(red, (QList<qreal>{1, 0, 0, 0}));
    EXPECT_EQ(Info("Reaction"),
              QStringLiteral("4 lights in bins of 0.01 s; 1 red light, counted apart. Left out: 1 "
                             "run without a reaction time."));
    Grab(w, QStringLiteral("frmCharts-reaction"));

    // The eighth mile: only runs 1 and 2 have its ET; the choice holds for every tab.
    Click("optEighth");
    ASSERT_TRUE(Child<QRadioButton>(w, "optEighth")->isChecked());
    EXPECT_EQ(Scatter("DensityAlt").first, (QList<QPointF>{{1000, 6.70}, {2000, 6.72}}));
    EXPECT_EQ(SeriesOf<QLineSeries>("OverTime").size(), 1);  // no eighth-mile speeds
    EXPECT_EQ(Scatter("SixtyFoot").first.size(), 2);
    Click("optQuarter");
    EXPECT_EQ(Scatter("DensityAlt").first.size(), 4);
}

TEST_F(ChartsWindow, AClickOnAPointOpensItsRun) {
    frmCharts& w = Open();
    QScatterSeries* runs = SeriesOf<QScatterSeries>("DensityAlt").value(0);
    ASSERT_NE(runs, nullptr);
    ClickPoint("DensityAlt", runs, {3000, 10.55});
    EXPECT_EQ(main.calls, QStringList{"ShowWindow Run 3"});

    // On a line a click falls between points: the nearest one as drawn opens.
    ShowTab(2);
    QLineSeries* speeds = SeriesOf<QLineSeries>("OverTime").value(1);
    ASSERT_NE(speeds, nullptr);
    const QPointF fourth = speeds->at(2);  // run 4, the morning after runs 1 and 2
    main.calls.clear();
    ClickPoint("OverTime", speeds, fourth);
    EXPECT_EQ(main.calls, QStringList{"ShowWindow Run 4"});
    // The series' own word for a click a little off the point.
    main.calls.clear();
    Q_EMIT speeds->clicked(QPointF(fourth.x() + 60000, fourth.y() + 0.01));
    EXPECT_EQ(main.calls, QStringList{"ShowWindow Run 4"});
    (void)w;
}

TEST_F(ChartsWindow, FollowsTheListOrTheWholeCarAndNewRuns) {
    main.state.event = {2, QStringLiteral("Away")};
    frmCharts& w = Open();
    EXPECT_EQ(Child<QLabel>(w, "lblScope")->text(),
              QStringLiteral("2 runs of My Race Car as the list narrows them: event Away, all "
                             "tracks."));
    EXPECT_EQ(Scatter("DensityAlt").first.size(), 2);

    Click("chkFollowList");
    EXPECT_EQ(Child<QLabel>(w, "lblScope")->text(),
              QStringLiteral("6 runs of My Race Car, all events and tracks."));
    EXPECT_EQ(Scatter("DensityAlt").first.size(), 4);
    Click("chkFollowList");
    EXPECT_EQ(Scatter("DensityAlt").first.size(), 2);

    // The main window moved on to all events while the charts stood open: Refresh follows.
    main.state.event = {0, QStringLiteral("<All Events>")};
    Click("cmdRefresh");
    EXPECT_EQ(Scatter("DensityAlt").first.size(), 4);

    // The racer picks another car in the main window and comes back to the charts.
    QWidget mainWindow;
    ShowActive(mainWindow);
    main.state.car = {2, QStringLiteral("Other Car")};
    ShowActive(w);
    const QString otherCar =
        QStringLiteral("1 run of Other Car as the list narrows them: all events, all tracks.");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return Child<QLabel>(w, "lblScope")->text() == otherCar; }, 1000))
        << Child<QLabel>(w, "lblScope")->text().toStdString();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Charts - Other Car"));
    main.state.car = {1, QStringLiteral("My Race Car")};
    Click("cmdRefresh");

    // A run saved elsewhere shows once the notifier tells of it.
    Run(8, 1, 1, "#05/04/2024#", "#10:00 AM#", "10.45", "131", "Null", "1.39", "0.448", "800",
        "1.0050");
    Q_EMIT main.events.runSaved(8, true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Scatter("DensityAlt").first.size() == 5; }, 1000));
    EXPECT_TRUE(Scatter("DensityAlt").first.contains(QPointF(800, 10.45)));
}

TEST_F(ChartsWindow, SaysWhatIsMissingInsteadOfAnEmptyChart) {
    main.state.car = {3, QStringLiteral("New Car")};
    logbook.db().Execute(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (3, 'New Car', '3')");
    frmCharts& w = Open();
    EXPECT_EQ(Child<QLabel>(w, "lblScope")->text(),
              QStringLiteral("0 runs of New Car as the list narrows them: all events, all "
                             "tracks."));
    const std::pair<const char*, const char*> empties[] = {
        {"DensityAlt", "No runs with a 1/4 mile ET and density altitude for this car."},
        {"CorrFactor", "No runs with a 1/4 mile ET and a correction factor for this car."},
        {"OverTime", "No runs with a date and a 1/4 mile ET or speed for this car."},
        {"SixtyFoot", "No runs with a 60' time and a 1/4 mile ET for this car."},
        {"Reaction", "No runs with a reaction time for this car."}};
    for (int i = 0; i < 5; ++i) {
        ShowTab(i);
        const auto [name, text] = empties[i];
        EXPECT_TRUE(Empty(name)->isVisible()) << name;
        EXPECT_FALSE(View(name)->isVisible()) << name;
        EXPECT_EQ(Empty(name)->text(), QString::fromUtf8(text));
    }

    // One run: a point, and why there is no line.
    Run(9, 3, 1, "#05/05/2024#", "#10:00 AM#", "11.20", "120", "Null", "1.50", "0.500", "1800",
        "1.0000");
    Click("cmdRefresh");
    ShowTab(0);
    EXPECT_TRUE(View("DensityAlt")->isVisible());
    EXPECT_EQ(Scatter("DensityAlt").first, QList<QPointF>{QPointF(1800, 11.20)});
    EXPECT_TRUE(Scatter("DensityAlt").second.isEmpty());
    EXPECT_EQ(Info("DensityAlt"),
              QStringLiteral("No least-squares line: it needs 2 runs at different density "
                             "altitudes at least, and there is 1 run."));
    Grab(w, QStringLiteral("frmCharts-onerun"));
}

TEST_F(ChartsWindow, ExportsTheShownChartAsPngAndPdfAndPrintsIt) {
    Open();
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());

    ExportAs("cmdExportPng", dir.filePath(QStringLiteral("density")));  // the suffix is added
    QImage image(dir.filePath(QStringLiteral("density.png")));
    ASSERT_FALSE(image.isNull());
    EXPECT_GT(image.width(), 1000);

    ShowTab(2);
    ExportAs("cmdExportPdf", dir.filePath(QStringLiteral("overtime.pdf")));
    QFile pdf(dir.filePath(QStringLiteral("overtime.pdf")));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5).startsWith("%PDF-"));
    EXPECT_TRUE(messages.shown.empty());

    if (!qEnvironmentVariable("SLIPBOOK_GRAB_DIR").isEmpty()) {
        const QDir grabs(qEnvironmentVariable("SLIPBOOK_GRAB_DIR"));
        QFile::remove(grabs.filePath(QStringLiteral("frmCharts-export.png")));
        QFile::copy(dir.filePath(QStringLiteral("density.png")),
                    grabs.filePath(QStringLiteral("frmCharts-export.png")));
        QFile::remove(grabs.filePath(QStringLiteral("frmCharts-export.pdf")));
        QFile::copy(pdf.fileName(), grabs.filePath(QStringLiteral("frmCharts-export.pdf")));
    }

    // The print preview opens on the shown chart.
    QString previewTitle;
    QTimer::singleShot(0, [&] {
        QWidget* preview = QApplication::activeModalWidget();
        ASSERT_NE(preview, nullptr);
        previewTitle = preview->windowTitle();
        preview->close();
    });
    Click("cmdPrint");
    EXPECT_EQ(previewTitle, QStringLiteral("Print Preview"));
}
