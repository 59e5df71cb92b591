#include "shell/ui/frmMain.h"
#include "shell/ui/frozentableview.h"
#include "store/database.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace slipbook;

namespace {

QApplication& App() {
    static int argc = 1;
    static char name[] = "shell_ui_tests";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}

QVariant Scalar(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    return q.Next() ? q.Value(0) : QVariant();
}

void AddRun(store::Database& db, int id, int car, const char* date, const char* time,
            const char* et) {
    db.Execute(QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, "
                              "dtRun_dt, dtRun_tm, i14Mile_et, "
                              "sRunNotes_tx) VALUES (%1, %2, 1, 1, #%3#, #%4#, %5, 'notes of %1')")
                   .arg(id)
                   .arg(car)
                   .arg(QLatin1String(date), QLatin1String(time), QLatin1String(et)));
}

struct Fixture {
    Fixture() : main((App(), lb.db()), box, QString(), QStringLiteral("/nonexistent")) {}
    test::TempLogbook lb;
    test::ScriptedMessages box;
    shell::frmMain main;
};

class FakePrediction : public shell::PredictionWindow {
public:
    explicit FakePrediction(QString car) : car_(std::move(car)), widget_(new QWidget) {}
    ~FakePrediction() override { delete widget_.data(); }
    QWidget* Widget() override { return widget_; }
    QString CarNumber() const override { return car_; }
    void FormReLoad() override { ++reloads; }
    void ApplyWeather(const QString& corr, const QString& da) override {
        weather << corr + u' ' + da;
    }
    int reloads = 0;
    QStringList weather;

private:
    QString car_;
    QPointer<QWidget> widget_;
};

}  // namespace

TEST(MainWindow, SelectorsHonourAndWriteTheDefaults) {
    Fixture f;
    store::Database& db = f.lb.db();
    db.Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, bDefault_fl) VALUES "
                       "(40000, 'Zephyr', '9', True)"));
    db.Execute(
        QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, bDefault_fl) VALUES (7, "
                       "'Alpha', '7', True)"));
    AddRun(db, 900, 40000, "07/04/2003", "10:30 AM", "9.5");
    f.main.FormLoadStuff();

    // Two cars flagged: the last by name wins; a key above 32767 is no trouble.
    QComboBox* cars = f.main.selector(QStringLiteral("ID_CarList"));
    EXPECT_EQ(cars->currentText(), QStringLiteral("Zephyr"));
    EXPECT_EQ(f.main.CurrentCarId(), 40000);
    EXPECT_EQ(f.main.grid().RowCount(), 1);
    EXPECT_EQ(f.main.statusMessage(), QStringLiteral("1 Record(s)"));
    EXPECT_EQ(f.main.notesText(), QStringLiteral("notes of 900"));
    EXPECT_EQ(f.main.titleText(), QStringLiteral(" Zephyr Runs for <All Events> at <All Tracks>"));
    EXPECT_EQ(f.main.selector(QStringLiteral("ID_EventList"))->itemText(0),
              QStringLiteral("<All Events>"));

    // Picking a car makes it the only default and lists its runs.
    cars->setCurrentIndex(cars->findText(QStringLiteral("Alpha")));
    Q_EMIT cars->activated(cars->currentIndex());
    EXPECT_EQ(f.main.CurrentCarId(), 7);
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblCars WHERE bDefault_fl")).toInt(),
        1);
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT bDefault_fl FROM tblCars WHERE lCar_id = 7")).toInt(),
        -1);
    EXPECT_EQ(f.main.grid().RowCount(), 0);
    EXPECT_EQ(f.main.statusMessage(), QStringLiteral("0 Record(s)"));
    EXPECT_EQ(f.main.notesText(), QString());

    // The shipped views stand first, in capitals; picking one makes it the default.
    QComboBox* views = f.main.selector(QStringLiteral("ID_Views"));
    ASSERT_GE(views->count(), 4);
    EXPECT_EQ(views->itemText(0), views->itemText(0).toUpper());
    const int pro = views->findText(QStringLiteral("PRO"), Qt::MatchContains);
    ASSERT_GE(pro, 0);
    views->setCurrentIndex(pro);
    Q_EMIT views->activated(pro);
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sTable_nm FROM tblViews WHERE bDefault_fl")).toString(),
        QStringLiteral("tblProView"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblViews WHERE bDefault_fl")).toInt(),
        1);

    // No car flagged: the first by name opens.
    db.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False"));
    f.main.CarsLoad();
    EXPECT_EQ(cars->currentIndex(), 0);
    EXPECT_EQ(f.main.CurrentCarDesc(), cars->itemText(0));
}

TEST(MainWindow, SortKeepsTheSelectedRowAndPrintsEveryRow) {
    Fixture f;
    store::Database& db = f.lb.db();
    AddRun(db, 11, 1, "07/01/2003", "10:00 AM", "10.5");
    AddRun(db, 12, 1, "07/02/2003", "10:00 AM", "Null");
    AddRun(db, 13, 1, "07/03/2003", "10:00 AM", "9.25");
    AddRun(db, 14, 1, "07/04/2003", "10:00 AM", "10.5");
    f.main.FormLoadStuff();
    TextGridModel& grid = f.main.grid();
    ASSERT_EQ(grid.RowCount(), 4);
    const int et = grid.ColumnIndex(u"i14Mile_et");
    ASSERT_GT(et, 0);
    EXPECT_EQ(f.main.gridView()->frozenColumns(), 4);

    f.main.SelectRow(3);  // run 14
    f.main.HeadClick(et);
    // Blanks first, then ascending, ties in their old order; the selection stays on run 14.
    QStringList keys;
    for (int r = 0; r < grid.RowCount(); ++r) {
        keys << grid.Cell(r, 0);
    }
    EXPECT_EQ(keys, (QStringList{QStringLiteral("12"), QStringLiteral("13"), QStringLiteral("11"),
                                 QStringLiteral("14")}));
    EXPECT_EQ(f.main.SelectedKeyText(), QStringLiteral("14"));
    EXPECT_EQ(f.main.notesText(), QStringLiteral("notes of 14"));

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("list.pdf"));
    ASSERT_TRUE(f.main.PrintToPdf(pdf));
    const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
    if (pdftotext.isEmpty()) {
        GTEST_SKIP() << "no pdftotext to read the printed list";
    }
    QProcess p;
    p.start(pdftotext, {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    ASSERT_TRUE(p.waitForFinished(20000));
    const QString text = QString::fromUtf8(p.readAllStandardOutput());
    EXPECT_TRUE(text.contains(QStringLiteral("Page 1")));
    EXPECT_TRUE(text.contains(QStringLiteral("Quadrumex Slipbook Drag Electronic Logbook")));
    EXPECT_TRUE(text.contains(f.main.titleText().trimmed()));
    EXPECT_TRUE(text.contains(QStringLiteral("Printed ")));
    EXPECT_TRUE(text.contains(QStringLiteral("9.250")));
    EXPECT_TRUE(text.contains(grid.Column(et).caption));
}

TEST(MainWindow, LogbookCopiesOutAndInAndRefusesWhatIsNoLogbook) {
    Fixture f;
    store::Database& db = f.lb.db();
    f.main.FormLoadStuff();
    QTemporaryDir out;
    QString chosen = out.path();
    f.main.setPathChooser([&](const QString&, bool) { return chosen; });

    AddRun(db, 21, 1, "07/01/2003", "10:00 AM", "10.5");
    f.main.ToolClick(QStringLiteral("ID_CopyToDiskette"));
    const QString copy = out.filePath(QStringLiteral("Slipbook.db"));
    ASSERT_TRUE(QFileInfo::exists(copy));
    // The logbook in use goes on after the copy.
    AddRun(db, 22, 1, "07/02/2003", "10:00 AM", "10.5");
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), 2);

    // A file that is no logbook is refused, and the logbook in use is untouched.
    const QString junk = out.filePath(QStringLiteral("junk.db"));
    QFile j(junk);
    ASSERT_TRUE(j.open(QIODevice::WriteOnly));
    j.write("not a logbook at all");
    j.close();
    chosen = junk;
    const size_t before = f.box.shown.size();
    f.main.ToolClick(QStringLiteral("ID_CopyFromDiskette"));
    ASSERT_EQ(f.box.shown.size(), before + 1);
    EXPECT_TRUE(f.box.last().text.contains(QStringLiteral("not a Slipbook logbook")));
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), 2);

    // The copy comes back in, the replaced logbook kept beside it, and the list follows.
    chosen = copy;
    f.box.answer(MsgAnswer::Yes);
    f.main.ToolClick(QStringLiteral("ID_CopyFromDiskette"));
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), 1);
    EXPECT_EQ(f.main.grid().RowCount(), 1);
    const QStringList kept = QDir(f.lb.dir()).entryList({QStringLiteral("Slipbook-*.db")});
    ASSERT_EQ(kept.size(), 1);
    store::Database old;
    old.Open(QDir(f.lb.dir()).filePath(kept[0]));
    EXPECT_EQ(Scalar(old, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), 2);
}

TEST(MainWindow, ToolsWaitForTheirWindowsAndProgramWindowsAreOnePerCar) {
    Fixture f;
    f.main.FormLoadStuff();
    QAction* weather = f.main.tool(QStringLiteral("ID_Weather"));
    EXPECT_FALSE(weather->isEnabled());
    EXPECT_EQ(weather->toolTip(), QStringLiteral("Not available yet"));
    int made = 0;
    f.main.RegisterWindow(QStringLiteral("ID_Weather"), [&](shell::frmMain&) {
        ++made;
        return new QWidget;
    });
    EXPECT_TRUE(weather->isEnabled());
    weather->trigger();
    weather->trigger();
    EXPECT_EQ(made, 1);
    delete f.main.OpenWindow(QStringLiteral("ID_Weather"));

    // One prediction window per car; the 101st car is refused with no window lost.
    std::vector<std::unique_ptr<FakePrediction>> windows;
    int next = 0;
    f.main.RegisterPrediction([&](shell::frmMain&) {
        windows.push_back(std::make_unique<FakePrediction>(QString::number(next)));
        return windows.back().get();
    });
    store::Database& db = f.lb.db();
    for (int car = 0; car < 101; ++car) {
        next = car;
        db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '%1' WHERE lCar_id = 1").arg(car));
        f.main.ToolClick(QStringLiteral("ID_ETTS"));
    }
    EXPECT_EQ(windows.size(), 100u);
    EXPECT_EQ(f.box.last().text, QStringLiteral("Can't load another ET Prediction window!"));
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '5' WHERE lCar_id = 1"));
    f.main.ToolClick(QStringLiteral("ID_ETTS"));
    EXPECT_EQ(windows.size(), 100u);
    EXPECT_EQ(windows[5]->reloads, 1);
    f.main.CalcAllETPrediction(QStringLiteral("1.0294"), QStringLiteral("1,468"));
    EXPECT_EQ(windows[99]->weather, QStringList{QStringLiteral("1.0294 1,468")});
    // A closed window's slot is free again.
    delete windows[3]->Widget();
    next = 200;
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '200' WHERE lCar_id = 1"));
    f.main.ToolClick(QStringLiteral("ID_ETTS"));
    EXPECT_EQ(windows.size(), 101u);

    // The lock on the grid nests.
    f.main.ForbidSelectDifferentRun();
    f.main.ForbidSelectDifferentRun();
    f.main.AllowSelectDifferentRun();
    EXPECT_FALSE(f.main.gridView()->isEnabled());
    f.main.AllowSelectDifferentRun();
    EXPECT_TRUE(f.main.gridView()->isEnabled());
}

TEST(MainWindow, CalculatorWebPageAndRunsTitle) {
    Fixture f;
    f.main.FormLoadStuff();
    QStringList started;
    f.main.setProgramStarter([&](const QString& program, const QStringList&) {
        started << program;
        return false;
    });
    f.main.ToolClick(QStringLiteral("ID_Calculator"));
    EXPECT_EQ(f.box.last().text, QStringLiteral("Can't locate calc.exe on your computer!"));

    QList<QUrl> opened;
    f.main.setUrlOpener([&](const QUrl& url) {
        opened << url;
        return true;
    });
    f.main.ToolClick(QStringLiteral("ID_Quadrumex"));
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0].scheme(), QStringLiteral("https"));
    EXPECT_EQ(f.main.StoredToolId(), QStringLiteral("ID_Quadrumex"));

    // A filter in force shows in the title and the filter tool's tip.
    f.main.SetRunFilterActive(true);
    f.main.SetRunFilterString(QStringLiteral("1/4 et Between 9 AND 11"));
    f.main.SetRunFilterSQL(
        QStringLiteral("SELECT * from tblRuns WHERE i14Mile_et >= 9 AND lCar_id = 1"));
    f.main.ToolClick(QStringLiteral("ID_Runs"));
    EXPECT_EQ(f.main.titleText(), QStringLiteral(" My Race Car Runs (Filter Active)"));
    EXPECT_EQ(f.main.tool(QStringLiteral("ID_Filter"))->toolTip(),
              QStringLiteral("1/4 et Between 9 AND 11"));
    // The list of a filter keeps the run number and event columns in view.
    EXPECT_TRUE(f.main.grid().GridColumnExists(u"lRun_num"));
    EXPECT_TRUE(f.main.grid().GridColumnExists(u"lEvent_id"));
}
