// The setup runs window: picking a car's setup runs out of its runs, per program and distance.

#include "prediction/ui/frmCarSetup.h"
#include "exchange/csv.h"
#include "support/gui.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

using namespace slipbook;
using namespace slipbook::test;
using prediction::frmCarSetup;

namespace {

struct CarSetupWindow : WindowTest {
    ~CarSetupWindow() override {
        for (const QPointer<frmCarSetup>& w : windows) {
            delete w.data();
        }
    }

    // A run of 07/04/2003 at the hour given; "Null" leaves an ET out.
    void Run(qint64 id, qint64 car, int hour, const char* et14, const char* et18) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "dtRun_tm, i14Mile_et, i18Mile_et, iCorrFactor_val, iDensityAlt_val, "
                           "sThrottleStop1_val, sThrottleStop2_val) VALUES (%1, %2, 1, %3, "
                           "#07/04/2003#, #%4:05#, %5, %6, 1.01234, 2150, '1.5', '2.125')")
                .arg(id)
                .arg(car)
                .arg(id % 100)
                .arg(hour)
                .arg(QLatin1String(et14), QLatin1String(et18)));
    }

    // Made as the prediction window makes it, and shown.
    frmCarSetup* Open(const QString& type, bool quarterMile, bool updateOwner = false,
                      qint64 car = 1) {
        auto* w = new frmCarSetup(Context());
        windows << w;
        if (car != 0) {
            w->SetCarId(car);
        }
        w->SetSetupType(type);
        w->PreShow(quarterMile, updateOwner);
        ShowActive(*w);
        return w;
    }

    static QTableView* SetupGrid(frmCarSetup* w) { return Child<QTableView>(*w, "ssdbgMain"); }
    static QTableView* AvailableGrid(frmCarSetup* w) {
        return Child<QTableView>(*w, "ssdbgAvailableRuns");
    }

    // The run ids a grid lists, top to bottom.
    static QList<qint64> Keys(QTableView* grid) {
        QList<qint64> keys;
        for (int r = 0; r < grid->model()->rowCount(); ++r) {
            keys << grid->model()->index(r, 0).data().toLongLong();
        }
        return keys;
    }

    static QStringList Captions(QTableView* grid) {
        QStringList captions;
        for (int c = 0; c < grid->model()->columnCount(); ++c) {
            if (!grid->isColumnHidden(c)) {
                captions << grid->model()->headerData(c, Qt::Horizontal).toString();
            }
        }
        return captions;
    }

    static QPoint CellPoint(QTableView* grid, qint64 run) {
        const int row = static_cast<int>(Keys(grid).indexOf(run));
        EXPECT_GE(row, 0) << "run " << run << " is not listed";
        return grid->visualRect(grid->model()->index(std::max(row, 0), 2)).center();
    }

    static void ClickRow(QTableView* grid, qint64 run) {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, CellPoint(grid, run));
    }

    static void DoubleClickRow(QTableView* grid, qint64 run) {
        const QPoint at = CellPoint(grid, run);
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
    }

    // Presses a button the user can press now.
    static void Click(frmCarSetup* w, const char* name) {
        auto* button = Child<QAbstractButton>(*w, QString::fromLatin1(name));
        ASSERT_TRUE(button->isVisible() && button->isEnabled()) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    // The setup rows of the table as "run category distance", sorted.
    QStringList SetupRows() {
        QStringList rows;
        store::Query q = logbook.db().OpenQuery(
            QStringLiteral("SELECT lRun_id, sSetup_cat, bEighthNotQuarter FROM tblCarSetup"));
        while (q.Next()) {
            rows << QStringLiteral("%1 %2 %3")
                        .arg(q.Value(0).toLongLong())
                        .arg(q.Value(1).toString())
                        .arg(q.Value(2).toLongLong() != 0 ? "1/8" : "1/4");
        }
        rows.sort();
        return rows;
    }

    QList<QPointer<frmCarSetup>> windows;
};

TEST_F(CarSetupWindow, AddByDoubleClickOrButtonAndRemoveByButton) {
    Run(101, 1, 9, "10.5", "6.5");
    Run(102, 1, 10, "10.25", "6.4");
    Run(103, 1, 11, "10.75", "6.6");
    frmCarSetup* w = Open(QStringLiteral("DA"), true);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Density Altitude Setup"));
    EXPECT_TRUE(Child<QLineEdit>(*w, "txtCarId")->isHidden());
    EXPECT_TRUE(Child<QLineEdit>(*w, "txtSetupType")->isHidden());
    QTableView* setup = SetupGrid(w);
    QTableView* available = AvailableGrid(w);
    EXPECT_EQ(Keys(setup), QList<qint64>());
    EXPECT_EQ(Keys(available), (QList<qint64>{101, 102, 103}));
    // Nothing is highlighted yet, so there is nothing to add or remove.
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdSaveSetup")->isEnabled());
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdDelete")->isEnabled());

    main.calls.clear();
    DoubleClickRow(available, 102);
    EXPECT_EQ(Keys(setup), (QList<qint64>{102}));
    EXPECT_EQ(Keys(available), (QList<qint64>{101, 103}));
    EXPECT_EQ(SetupRows(), (QStringList{"102 DA 1/4"}));
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblCarSetup"}));

    ClickRow(available, 103);
    Click(w, "sscmdSaveSetup");
    EXPECT_EQ(Keys(setup), (QList<qint64>{102, 103}));
    EXPECT_EQ(Keys(available), (QList<qint64>{101}));

    ClickRow(setup, 102);
    Click(w, "sscmdDelete");
    EXPECT_EQ(Keys(setup), (QList<qint64>{103}));
    EXPECT_EQ(Keys(available), (QList<qint64>{101, 102}));
    EXPECT_EQ(SetupRows(), (QStringList{"103 DA 1/4"}));
    EXPECT_EQ(main.calls.count(QStringLiteral("recordsChanged tblCarSetup")), 3);
    EXPECT_TRUE(messages.shown.empty());

    // From the keyboard: the run just taken off stays highlighted below, so Enter puts it back,
    // and the Delete key takes it off again.
    QTest::keyClick(available, Qt::Key_Return);
    EXPECT_EQ(Keys(setup), (QList<qint64>{102, 103}));
    Grab(*w, QStringLiteral("frmCarSetup"));
    QTest::keyClick(setup, Qt::Key_Delete);
    EXPECT_EQ(Keys(setup), (QList<qint64>{103}));
    EXPECT_EQ(SetupRows(), (QStringList{"103 DA 1/4"}));

    // The window the next prediction window opens reads the same list.
    Click(w, "sscmdClose");
    EXPECT_FALSE(w->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(windows.first().isNull());
    frmCarSetup* again = Open(QStringLiteral("DA"), true);
    EXPECT_EQ(Keys(SetupGrid(again)), (QList<qint64>{103}));
}

TEST_F(CarSetupWindow, ARunStandsInEveryProgramAndDistanceAtOnce) {
    Run(201, 1, 9, "10.5", "6.5");
    Run(202, 1, 10, "10.25", "6.4");
    frmCarSetup* da = Open(QStringLiteral("DA"), true);
    frmCarSetup* ts = Open(QStringLiteral("TS"), true);
    EXPECT_EQ(ts->windowTitle(), QStringLiteral("Throttle Stop Setup"));

    DoubleClickRow(AvailableGrid(da), 201);
    // The throttle stop list doesn't have it, and still offers it.
    EXPECT_EQ(Keys(SetupGrid(ts)), QList<qint64>());
    EXPECT_EQ(Keys(AvailableGrid(ts)), (QList<qint64>{201, 202}));
    DoubleClickRow(AvailableGrid(ts), 201);
    EXPECT_EQ(Keys(SetupGrid(ts)), (QList<qint64>{201}));
    EXPECT_EQ(Keys(SetupGrid(da)), (QList<qint64>{201}));

    // And in the eighth-mile list beside the quarter-mile one.
    QTest::mouseClick(Child<QRadioButton>(*da, "rdo18MileSetup"), Qt::LeftButton);
    EXPECT_EQ(Keys(SetupGrid(da)), QList<qint64>());
    EXPECT_EQ(Keys(AvailableGrid(da)), (QList<qint64>{201, 202}));
    DoubleClickRow(AvailableGrid(da), 201);
    EXPECT_EQ(Keys(SetupGrid(da)), (QList<qint64>{201}));
    EXPECT_EQ(SetupRows(), (QStringList{"201 DA 1/4", "201 DA 1/8", "201 TS 1/4"}));

    // Removing it from one list leaves the others.
    ClickRow(SetupGrid(da), 201);
    Click(da, "sscmdDelete");
    EXPECT_EQ(SetupRows(), (QStringList{"201 DA 1/4", "201 TS 1/4"}));
    EXPECT_EQ(Keys(SetupGrid(ts)), (QList<qint64>{201}));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(CarSetupWindow, EmptyListOffersEveryRunOfTheCarAtTheDistance) {
    Run(301, 1, 12, "10.5", "Null");
    Run(302, 1, 9, "Null", "6.4");
    Run(303, 1, 10, "0", "0");
    Run(304, 2, 11, "10.1", "6.3");
    frmCarSetup* quarter = Open(QStringLiteral("TS"), true);
    EXPECT_EQ(Keys(AvailableGrid(quarter)), (QList<qint64>{301}));
    frmCarSetup* eighth = Open(QStringLiteral("TS"), false);
    EXPECT_TRUE(Child<QRadioButton>(*eighth, "rdo18MileSetup")->isChecked());
    EXPECT_FALSE(Child<QRadioButton>(*eighth, "rdo14MileSetup")->isChecked());
    EXPECT_EQ(Keys(AvailableGrid(eighth)), (QList<qint64>{302}));

    // Without a car of its own the window lists the main window's car.
    main.state.car.id = 2;
    auto* own = new frmCarSetup(Context());
    windows << own;
    own->SetSetupType(QStringLiteral("TS"));
    own->PreShow(true, false);
    EXPECT_EQ(Keys(AvailableGrid(own)), (QList<qint64>{304}));
}

TEST_F(CarSetupWindow, ColumnsFollowTheDistanceAndTheOwnerHearsOfAChange) {
    Run(401, 1, 9, "10.5", "6.5");
    frmCarSetup* w = Open(QStringLiteral("DA"), true, true);
    QSignalSpy changed(w, &frmCarSetup::DistanceChanged);
    const QStringList common = {"Date", "Time", "Run #"};
    const QStringList rest = {"Corr Factor",     "Density Alt",     "Throttle Stop 1",
                              "Throttle Stop 2", "Throttle Stop 3", "Throttle Stop 4"};
    for (QTableView* grid : {SetupGrid(w), AvailableGrid(w)}) {
        EXPECT_EQ(Captions(grid), common + QStringList{"1/4 et"} + rest);
        EXPECT_TRUE(grid->isColumnHidden(0));
        EXPECT_EQ(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Key"));
    }
    // Cells read as in the run list.
    QAbstractItemModel* model = AvailableGrid(w)->model();
    QStringList cells;
    for (int c = 1; c < model->columnCount(); ++c) {
        cells << model->index(0, c).data().toString();
    }
    EXPECT_EQ(cells, (QStringList{"07/04/2003", "09:05 AM", "1", "10.500", "1.0123", "2,150",
                                  "1.50", "2.13", "", ""}));
    EXPECT_EQ(
        model->index(0, 4).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight,
        Qt::AlignRight);

    QTest::mouseClick(Child<QRadioButton>(*w, "rdo18MileSetup"), Qt::LeftButton);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.takeFirst().at(0).toBool(), false);
    EXPECT_FALSE(w->QuarterMile());
    for (QTableView* grid : {SetupGrid(w), AvailableGrid(w)}) {
        EXPECT_EQ(Captions(grid), common + QStringList{"1/8 et"} + rest);
    }
    EXPECT_EQ(AvailableGrid(w)->model()->index(0, 4).data().toString(), QStringLiteral("6.500"));
    // A click on the distance already shown changes nothing.
    QTest::mouseClick(Child<QRadioButton>(*w, "rdo18MileSetup"), Qt::LeftButton);
    EXPECT_EQ(changed.count(), 0);
    QTest::mouseClick(Child<QRadioButton>(*w, "rdo14MileSetup"), Qt::LeftButton);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.takeFirst().at(0).toBool(), true);

    // Without `updateOwner` the lists follow the distance and nobody is told.
    frmCarSetup* quiet = Open(QStringLiteral("DA"), true, false);
    QSignalSpy quietChanged(quiet, &frmCarSetup::DistanceChanged);
    QTest::mouseClick(Child<QRadioButton>(*quiet, "rdo18MileSetup"), Qt::LeftButton);
    EXPECT_EQ(Captions(SetupGrid(quiet)), common + QStringList{"1/8 et"} + rest);
    EXPECT_EQ(quietChanged.count(), 0);
}

TEST_F(CarSetupWindow, ADeletedRunStaysOnTheListAndNewRunsShowUp) {
    Run(501, 1, 9, "10.5", "6.5");
    Run(502, 1, 10, "10.25", "6.4");
    frmCarSetup* w = Open(QStringLiteral("TS"), true);
    DoubleClickRow(AvailableGrid(w), 501);
    ClickRow(AvailableGrid(w), 502);

    // The run window deletes one run and saves another.
    logbook.db().Execute(QStringLiteral("DELETE * FROM tblRuns WHERE lRun_id = 501"));
    Q_EMIT main.events.runDeleted(501);
    Run(503, 1, 11, "10.75", "6.6");
    Q_EMIT main.events.runSaved(503, true);
    EXPECT_EQ(Keys(SetupGrid(w)), (QList<qint64>{501}));
    EXPECT_EQ(Keys(AvailableGrid(w)), (QList<qint64>{502, 503}));
    // What the user had highlighted stays so.
    Click(w, "sscmdSaveSetup");
    EXPECT_EQ(Keys(SetupGrid(w)), (QList<qint64>{501, 502}));
    EXPECT_EQ(SetupRows(), (QStringList{"501 TS 1/4", "502 TS 1/4"}));
}

TEST_F(CarSetupWindow, AFailedAddSaysSoAndLeavesEverythingUsable) {
    Run(601, 1, 9, "10.5", "6.5");
    Run(602, 1, 10, "10.25", "6.4");
    frmCarSetup* w = Open(QStringLiteral("DA"), true);
    logbook.db().ExecRaw(
        QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON tblCarSetup "
                       "BEGIN SELECT RAISE(ABORT, 'disk trouble'); END"));
    main.calls.clear();
    DoubleClickRow(AvailableGrid(w), 601);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(messages.last().text.startsWith(
        QStringLiteral("The run could not be added to the List of Setup Runs.")));
    EXPECT_TRUE(messages.last().text.contains(QStringLiteral("disk trouble")));
    EXPECT_EQ(messages.last().title, QStringLiteral("Density Altitude Setup"));
    EXPECT_EQ(SetupRows(), QStringList());
    EXPECT_EQ(Keys(SetupGrid(w)), QList<qint64>());
    EXPECT_EQ(Keys(AvailableGrid(w)), (QList<qint64>{601, 602}));
    EXPECT_TRUE(main.calls.isEmpty());

    logbook.db().ExecRaw(QStringLiteral("DROP TRIGGER refuse"));
    Click(w, "sscmdSaveSetup");
    EXPECT_EQ(SetupRows(), (QStringList{"601 DA 1/4"}));

    logbook.db().ExecRaw(
        QStringLiteral("CREATE TRIGGER refuse BEFORE DELETE ON tblCarSetup "
                       "BEGIN SELECT RAISE(ABORT, 'disk trouble'); END"));
    ClickRow(SetupGrid(w), 601);
    Click(w, "sscmdDelete");
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_TRUE(messages.last().text.startsWith(
        QStringLiteral("The run could not be removed from the List of Setup Runs.")));
    EXPECT_EQ(SetupRows(), (QStringList{"601 DA 1/4"}));
    EXPECT_EQ(Keys(SetupGrid(w)), (QList<qint64>{601}));
}

}  // namespace

TEST_F(CarSetupWindow, TheSetupRunsGoToACsvFileWithTheirStoredValues) {
    Run(101, 1, 9, "10.5", "6.5");
    Run(102, 1, 10, "10.25", "6.4");
    frmCarSetup* w = Open(QStringLiteral("TS"), true);
    DoubleClickRow(AvailableGrid(w), 102);
    ASSERT_EQ(Keys(SetupGrid(w)), (QList<qint64>{102}));

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("setup.csv"));
    bool driven = false;
    QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        Type(Child<QLineEdit>(*dialog, "txtFileName"), path);
        auto* raw = Child<QRadioButton>(*dialog, "optRaw");
        QTest::mouseClick(raw, Qt::LeftButton, {}, QPoint(8, raw->height() / 2));
        QTest::mouseClick(Child<QPushButton>(*dialog, "cmdExport"), Qt::LeftButton);
        driven = true;
    });
    Click(w, "cmdExport");
    ASSERT_TRUE(driven);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<QStringList> rows;
    ASSERT_TRUE(exchange::csv::ReadAll(file.readAll(), rows).ok);
    ASSERT_EQ(rows.size(), 2u);
    // Only the run on the list, the throttle stop as stored and the date in ISO form.
    EXPECT_TRUE(rows[1].contains(QStringLiteral("2.125")));
    EXPECT_TRUE(rows[1].contains(QStringLiteral("2003-07-04")));
    EXPECT_TRUE(rows[1].contains(QStringLiteral("10.25")));
}
