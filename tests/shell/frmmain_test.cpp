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
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QProcess>
#include <QProxyStyle>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QStyleOptionHeader>
#include <QTemporaryDir>
#include <QTest>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

QApplication& App() {
    static int argc = 1;
    static char name[] = "shell_ui_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: the input devices that QTest makes outlive it otherwise, and crash the exit.
    static auto* app = new QApplication(argc, argv);
    return *app;
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

// Lets posted layout requests run, as the event loop would between two user actions.
void Settle() {
    QTest::qWait(20);
}

// Every caption a header paints, as the style is handed it.
class HeaderRecorder : public QProxyStyle {
public:
    HeaderRecorder() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (const auto* h = qstyleoption_cast<const QStyleOptionHeader*>(option);
            h != nullptr && element == CE_Header) {
            painted.push_back({h->section, h->text, h->sortIndicator,
                               subElementRect(SE_HeaderLabel, h, widget).width(),
                               h->fontMetrics.horizontalAdvance(h->text)});
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }
    struct Section {
        int column;
        QString text;
        QStyleOptionHeader::SortIndicator arrow;
        int room;
        int textWidth;
    };
    mutable std::vector<Section> painted;
};

void ClickSection(QHeaderView* header, int column) {
    const QPoint at(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                    header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
}

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

TEST(MainWindow, FitsAnEightHundredPixelScreenAndKeepsItsSizeForLongNames) {
    Fixture f;
    store::Database& db = f.lb.db();
    const QString longEvent = QStringLiteral(
        "Thirty-Second Annual Mid-Summer Nationals Presented By Everyone Who Ever "
        "Sponsored Anything At All");
    db.Execute(QStringLiteral("INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES "
                              "(90, '%1', 1)")
                   .arg(longEvent));
    db.Execute(
        QStringLiteral("INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (90, "
                       "'Greater Northwestern International Motorsports Park and Dragway')"));
    f.main.FormLoadStuff();
    f.main.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&f.main));
    f.main.resize(800, 600);
    Settle();
    ASSERT_EQ(f.main.size(), QSize(800, 600));

    const QStringList selectors = {QStringLiteral("ID_CarsLabel"),   QStringLiteral("ID_CarList"),
                                   QStringLiteral("ID_EventsLabel"), QStringLiteral("ID_EventList"),
                                   QStringLiteral("ID_TracksLabel"), QStringLiteral("ID_TrackList"),
                                   QStringLiteral("ID_Views")};
    // Shown whole: at least as wide as it asks to be, and inside the window.
    auto checkWhole = [&](const char* when) {
        for (const QString& name : selectors) {
            auto* w = f.main.findChild<QWidget*>(name);
            ASSERT_NE(w, nullptr) << qPrintable(name);
            EXPECT_TRUE(w->isVisible()) << when << ' ' << qPrintable(name);
            EXPECT_GE(w->width(), w->sizeHint().width()) << when << ' ' << qPrintable(name);
            EXPECT_LE(w->mapTo(&f.main, QPoint(w->width(), 0)).x(), f.main.width())
                << when << ' ' << qPrintable(name);
        }
        for (QWidget* w : f.main.findChildren<QWidget*>()) {
            if ((qobject_cast<QLabel*>(w) != nullptr || qobject_cast<QComboBox*>(w) != nullptr) &&
                w->isVisible()) {
                EXPECT_GE(w->width(), w->minimumSizeHint().width())
                    << when << ' ' << qPrintable(w->objectName());
            }
        }
    };
    checkWhole("at 800 x 600");

    // A narrower window puts selectors into the bar's overflow, each with its label.
    const std::vector<std::pair<QString, QString>> pairs = {
        {QStringLiteral("ID_CarsLabel"), QStringLiteral("ID_CarList")},
        {QStringLiteral("ID_EventsLabel"), QStringLiteral("ID_EventList")},
        {QStringLiteral("ID_TracksLabel"), QStringLiteral("ID_TrackList")}};
    for (int width = 780; width >= 300; width -= 10) {
        f.main.resize(width, 600);
        Settle();
        for (const auto& [label, box] : pairs) {
            EXPECT_EQ(f.main.findChild<QWidget*>(label)->isVisible(),
                      f.main.findChild<QWidget*>(box)->isVisible())
                << "at " << width << ' ' << qPrintable(label);
        }
    }
    f.main.resize(800, 600);
    Settle();

    // Picking the longest names by keyboard leaves the window as it was.
    QComboBox* events = f.main.selector(QStringLiteral("ID_EventList"));
    events->setFocus();
    QTest::keyClicks(events, QStringLiteral("Thirty"));
    Settle();
    ASSERT_EQ(f.main.CurrentEventId(), 90);
    EXPECT_EQ(f.main.size(), QSize(800, 600));
    QComboBox* tracks = f.main.selector(QStringLiteral("ID_TrackList"));
    tracks->setFocus();
    QTest::keyClicks(tracks, QStringLiteral("Greater"));
    Settle();
    ASSERT_EQ(f.main.CurrentTrackId(), 90);
    EXPECT_EQ(f.main.size(), QSize(800, 600));
    EXPECT_TRUE(f.main.titleText().contains(longEvent));
    checkWhole("with the long names");
}

TEST(MainWindow, HeadersShowTheSortArrowAndElideCaptionsThatDoNotFit) {
    Fixture f;
    store::Database& db = f.lb.db();
    AddRun(db, 31, 1, "07/01/2003", "10:00 AM", "10.5");
    AddRun(db, 32, 1, "07/02/2003", "10:00 AM", "9.25");
    AddRun(db, 33, 1, "07/03/2003", "10:00 AM", "9.75");
    // Columns far narrower than their captions.
    db.Execute(QStringLiteral("UPDATE tblListViewColumns SET lColumnWidth = 300"));
    f.main.FormLoadStuff();
    f.main.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&f.main));
    shell::FrozenTableView* view = f.main.gridView();
    QHeaderView* header = view->horizontalHeader();
    QHeaderView* frozen = view->frozenView()->horizontalHeader();
    HeaderRecorder recorder;
    header->setStyle(&recorder);

    // Every caption painted fits its section: whole, or cut short with an ellipsis.
    header->grab();
    ASSERT_FALSE(recorder.painted.empty());
    int elided = 0;
    for (const auto& p : recorder.painted) {
        const QString caption = f.main.grid().Column(p.column).caption;
        EXPECT_LE(p.textWidth, p.room) << qPrintable(caption);
        if (p.text != caption) {
            ++elided;
            EXPECT_TRUE(p.text.endsWith(QChar(0x2026))) << qPrintable(p.text);
            EXPECT_TRUE(caption.startsWith(p.text.chopped(1))) << qPrintable(p.text);
        }
    }
    EXPECT_GT(elided, 0);

    // A click on a header sorts by it and puts the arrow there, ascending however often it is
    // clicked.
    const int et = f.main.grid().ColumnIndex(u"i14Mile_et");
    ASSERT_GE(et, view->frozenColumns());
    view->scrollTo(f.main.grid().index(0, et));
    Settle();
    ClickSection(header, et);
    EXPECT_EQ(f.main.grid().Cell(0, 0), QStringLiteral("32"));
    EXPECT_TRUE(header->isSortIndicatorShown());
    EXPECT_EQ(header->sortIndicatorSection(), et);
    ClickSection(header, et);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
    recorder.painted.clear();
    header->grab();
    for (const auto& p : recorder.painted) {
        EXPECT_EQ(p.arrow != QStyleOptionHeader::None, p.column == et) << p.column;
    }

    // The columns that stay in view have their own header on top, which shows it alike.
    const int date = f.main.grid().ColumnIndex(u"dtRun_dt");
    ASSERT_LT(date, view->frozenColumns());
    ClickSection(frozen, date);
    EXPECT_EQ(f.main.grid().Cell(0, 0), QStringLiteral("31"));
    EXPECT_EQ(frozen->sortIndicatorSection(), date);
    EXPECT_TRUE(frozen->isSortIndicatorShown());
    EXPECT_EQ(header->sortIndicatorSection(), date);

    // A reload comes in the list's own order, with no arrow.
    f.main.ToolClick(QStringLiteral("ID_Runs"));
    EXPECT_FALSE(header->isSortIndicatorShown() && header->sortIndicatorSection() >= 0);
    EXPECT_FALSE(frozen->isSortIndicatorShown() && frozen->sortIndicatorSection() >= 0);
    header->setStyle(nullptr);
}
