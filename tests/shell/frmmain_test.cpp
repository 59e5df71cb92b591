#include "shell/ui/frmMain.h"
#include "common/tools.h"
#include "shell/maintools.h"
#include "shell/ui/frozentableview.h"
#include "shell/ui/gridprint.h"
#include "store/database.h"
#include "support/gui.h"
#include "support/logbook.h"
#include "support/modelcheck.h"
#include "support/scriptedmessages.h"
#include "support/tooltable.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPointer>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QProxyStyle>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QStyleOptionHeader>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QXmlStreamReader>

#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

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
    Fixture() : main(lb.db(), box, notifier, clock, QString(), QStringLiteral("/nonexistent")) {}
    test::TempLogbook lb;
    test::ScriptedMessages box;
    store::LogbookEvents notifier;
    test::FixedClock clock;
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

struct PdfWord {
    QString text;
    QRectF box;  // points, y downwards
};
using PdfLine = std::vector<PdfWord>;
using PdfPage = std::vector<PdfLine>;

// The words of each page as pdftotext places them, in lines top to bottom, each left to right.
std::vector<PdfPage> PdfPages(const QString& pdf) {
    QProcess p;
    p.start(QStandardPaths::findExecutable(QStringLiteral("pdftotext")),
            {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
    p.waitForFinished(20000);
    QXmlStreamReader xml(p.readAllStandardOutput());
    std::vector<std::vector<PdfWord>> words;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement()) {
            continue;
        }
        if (xml.name() == u"page") {
            words.emplace_back();
        } else if (xml.name() == u"word" && !words.empty()) {
            const QXmlStreamAttributes a = xml.attributes();
            const QRectF box(QPointF(a.value(QLatin1String("xMin")).toDouble(),
                                     a.value(QLatin1String("yMin")).toDouble()),
                             QPointF(a.value(QLatin1String("xMax")).toDouble(),
                                     a.value(QLatin1String("yMax")).toDouble()));
            words.back().push_back({xml.readElementText(), box});
        }
    }
    std::vector<PdfPage> pages;
    for (std::vector<PdfWord>& page : words) {
        std::sort(page.begin(), page.end(),
                  [](const PdfWord& a, const PdfWord& b) { return a.box.top() < b.box.top(); });
        pages.emplace_back();
        for (const PdfWord& w : page) {
            if (pages.back().empty() || w.box.top() - pages.back().back()[0].box.top() > 2) {
                pages.back().emplace_back();
            }
            pages.back().back().push_back(w);
        }
        for (PdfLine& line : pages.back()) {
            std::sort(line.begin(), line.end(), [](const PdfWord& a, const PdfWord& b) {
                return a.box.left() < b.box.left();
            });
        }
    }
    return pages;
}

QStringList Texts(const PdfLine& line) {
    QStringList out;
    for (const PdfWord& w : line) {
        out << w.text;
    }
    return out;
}

// The box around the first word of each text, looked for from the top of the page.
QRectF BoxOf(const PdfPage& page, const QStringList& texts) {
    QRectF box;
    for (const QString& text : texts) {
        for (const PdfLine& line : page) {
            auto it = std::find_if(line.begin(), line.end(),
                                   [&](const PdfWord& w) { return w.text == text; });
            if (it != line.end()) {
                box = box.isNull() ? it->box : box.united(it->box);
                break;
            }
        }
    }
    return box;
}

// Runs under an event whose name is far wider than its column, as racers name them.
void AddRaceDay(store::Database& db, int runs) {
    db.Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Rock ''n'' Roll "
        "Summer Nationals at Thunder Valley Raceway', 1)"));
    for (int i = 1; i <= runs; ++i) {
        db.Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                                  "dtRun_tm, lRunType_id, lOpponent_id, i14Mile_et, i60Foot_et, "
                                  "sTiming_val) VALUES (1, 2, %1, #07/%2/2003#, #%3:15 PM#, 2, 1, "
                                  "10.%1, 1.4%1, '36 degrees total')")
                       .arg(i)
                       .arg(1 + i / 12)
                       .arg(1 + i % 12));
    }
}

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
    test::ShowActive(f.main);

    // Two cars flagged: the last by name wins; a key above 32767 is no trouble.
    QComboBox* cars = f.main.selector(tools::kCarList);
    EXPECT_EQ(cars->currentText(), QStringLiteral("Zephyr"));
    EXPECT_EQ(f.main.state().car.id, 40000);
    EXPECT_EQ(f.main.grid().RowCount(), 1);
    EXPECT_EQ(f.main.statusMessage(), QStringLiteral("1 Record(s)"));
    EXPECT_EQ(f.main.notesText(), QStringLiteral("notes of 900"));
    EXPECT_EQ(f.main.titleText(), QStringLiteral(" Zephyr Runs for <All Events> at <All Tracks>"));
    EXPECT_EQ(f.main.selector(tools::kEventList)->itemText(0), QStringLiteral("<All Events>"));

    // Picking a car makes it the only default and lists its runs.
    test::Pick(cars, QStringLiteral("Alpha"));
    EXPECT_EQ(f.main.state().car.id, 7);
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
    QComboBox* views = f.main.selector(tools::kViews);
    ASSERT_GE(views->count(), 4);
    EXPECT_EQ(views->itemText(0), views->itemText(0).toUpper());
    const int pro = views->findText(QStringLiteral("PRO"), Qt::MatchContains);
    ASSERT_GE(pro, 0);
    test::Pick(views, views->itemText(pro));
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
    EXPECT_EQ(f.main.state().car.desc, cars->itemText(0));
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

TEST(MainWindow, RunListKeepsTheItemModelContractThroughLoadSortPutAndRemove) {
    Fixture f;
    TextGridModel& grid = f.main.grid();
    test::ModelCheck check(&grid);
    store::Database& db = f.lb.db();
    AddRun(db, 41, 1, "07/01/2003", "10:00 AM", "10.5");
    AddRun(db, 42, 1, "07/02/2003", "10:00 AM", "9.25");
    AddRun(db, 43, 1, "07/03/2003", "10:00 AM", "9.75");
    f.main.FormLoadStuff();
    test::ShowActive(f.main);
    ASSERT_EQ(grid.RowCount(), 3);

    // Sorted by a click on the quarter-mile header, the selected run selected still.
    QHeaderView* header = f.main.gridView()->horizontalHeader();
    const int et = grid.ColumnIndex(u"i14Mile_et");
    ASSERT_GE(et, f.main.gridView()->frozenColumns());
    shell::FrozenTableView* view = f.main.gridView();
    view->scrollTo(grid.index(2, et));
    Settle();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(grid.index(2, et)).center());
    ASSERT_EQ(f.main.SelectedKeyText(), QStringLiteral("43"));
    ClickSection(header, et);
    EXPECT_EQ(grid.Cell(0, 0), QStringLiteral("42"));
    EXPECT_EQ(f.main.SelectedKeyText(), QStringLiteral("43"));

    // A saved run's row put in place and added, then removed, as the run window does.
    QStringList cells(grid.ColumnCount());
    cells[0] = QStringLiteral("42");
    cells[et] = QStringLiteral("9.200");
    f.main.GridRowPut(QStringLiteral("42"), TextGridModel::JoinCells(cells));
    EXPECT_EQ(grid.RowCount(), 3);
    EXPECT_EQ(grid.Cell(grid.GridFindRow(u"42"), et), QStringLiteral("9.200"));
    cells[0] = QStringLiteral("44");
    f.main.GridRowPut(QStringLiteral("44"), TextGridModel::JoinCells(cells));
    EXPECT_EQ(grid.RowCount(), 4);
    EXPECT_EQ(f.main.SelectedKeyText(), QStringLiteral("44"));
    f.main.GridRowRemove(QStringLiteral("42"));
    f.main.GridRowRemove(QStringLiteral("44"));
    EXPECT_EQ(grid.RowCount(), 2);
    EXPECT_EQ(f.main.statusMessage(), QStringLiteral("2 Record(s)"));

    // And loaded anew by the tool.
    test::Press(f.main, "ID_Runs");
    EXPECT_EQ(grid.RowCount(), 3);
}

TEST(MainWindow, LogbookCopiesOutAndInAndRefusesWhatIsNoLogbook) {
    Fixture f;
    store::Database& db = f.lb.db();
    f.main.FormLoadStuff();
    QTemporaryDir out;
    QString chosen = out.path();
    f.main.setPathChooser([&](const QString&, bool) { return chosen; });

    AddRun(db, 21, 1, "07/01/2003", "10:00 AM", "10.5");
    // The logbook's own folder reached through a link is still the logbook's folder.
    const QString link = out.filePath(QStringLiteral("stick"));
    ASSERT_TRUE(QFile::link(f.lb.dir(), link));
    chosen = link;
    const QByteArray live = [&] {
        QFile l(f.lb.path());
        l.open(QIODevice::ReadOnly);
        return l.readAll();
    }();
    test::Press(f.main, "ID_CopyToDiskette");
    EXPECT_TRUE(f.box.last().text.contains(QStringLiteral("holds the logbook in use")));
    QFile l(f.lb.path());
    ASSERT_TRUE(l.open(QIODevice::ReadOnly));
    EXPECT_EQ(l.readAll(), live);
    chosen = out.path();
    test::Press(f.main, "ID_CopyToDiskette");
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
    test::Press(f.main, "ID_CopyFromDiskette");
    ASSERT_EQ(f.box.shown.size(), before + 1);
    EXPECT_TRUE(f.box.last().text.contains(QStringLiteral("not a Slipbook logbook")));
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) AS n FROM tblRuns")).toInt(), 2);

    // The copy comes back in, the replaced logbook kept beside it, and the list follows.
    chosen = copy;
    f.box.answer(MsgAnswer::Yes);
    test::Press(f.main, "ID_CopyFromDiskette");
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
    QAction* weather = f.main.tool(tools::kWeather);
    EXPECT_FALSE(weather->isEnabled());
    EXPECT_EQ(weather->toolTip(), QStringLiteral("Not available yet"));
    int made = 0;
    f.main.RegisterWindow(tools::kWeather, [&](const shell::WindowContext&, QWidget*) {
        ++made;
        return new QWidget;
    });
    EXPECT_TRUE(weather->isEnabled());
    test::Press(f.main, "ID_Weather");
    test::Press(f.main, "ID_Weather");
    EXPECT_EQ(made, 1);
    delete f.main.OpenWindow(tools::kWeather);

    // One prediction window per car; the 101st car is refused with no window lost.
    std::vector<std::unique_ptr<FakePrediction>> windows;
    int next = 0;
    f.main.RegisterPrediction([&](const shell::WindowContext&, QWidget*) {
        windows.push_back(std::make_unique<FakePrediction>(QString::number(next)));
        return windows.back().get();
    });
    store::Database& db = f.lb.db();
    for (int car = 0; car < 101; ++car) {
        next = car;
        db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '%1' WHERE lCar_id = 1").arg(car));
        test::Press(f.main, "ID_ETTS");
    }
    EXPECT_EQ(windows.size(), 100u);
    EXPECT_EQ(f.box.last().text, QStringLiteral("Can't load another ET Prediction window!"));
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '5' WHERE lCar_id = 1"));
    test::Press(f.main, "ID_ETTS");
    EXPECT_EQ(windows.size(), 100u);
    EXPECT_EQ(windows[5]->reloads, 1);
    f.main.CalcAllETPrediction(QStringLiteral("1.0294"), QStringLiteral("1,468"));
    EXPECT_EQ(windows[99]->weather, QStringList{QStringLiteral("1.0294 1,468")});
    // A closed window's slot is free again.
    delete windows[3]->Widget();
    next = 200;
    db.Execute(QStringLiteral("UPDATE tblCars SET sCar_num = '200' WHERE lCar_id = 1"));
    test::Press(f.main, "ID_ETTS");
    EXPECT_EQ(windows.size(), 101u);

    // The lock on the grid nests.
    f.main.ForbidSelectDifferentRun();
    f.main.ForbidSelectDifferentRun();
    f.main.AllowSelectDifferentRun();
    EXPECT_FALSE(f.main.gridView()->isEnabled());
    f.main.AllowSelectDifferentRun();
    EXPECT_TRUE(f.main.gridView()->isEnabled());
}

TEST(MainWindow, IsBuiltFromItsToolTable) {
    Fixture f;
    test::ExpectBuiltFromTable(
        f.main, f.main.menuBar(), f.main.findChild<QToolBar*>(QStringLiteral("atbMain")),
        shell::MainTools(), shell::MainMenus(), [&](const QString& id) { return f.main.tool(id); });
    // Before any window is registered: the tools of windows to come wait and say so; every
    // other tool says what it does, as its tip and in the status line.
    for (const tools::Tool& t : shell::MainTools()) {
        QAction* a = f.main.tool(t.id);
        ASSERT_NE(a, nullptr);
        EXPECT_EQ(a->isEnabled(), !t.startsDisabled) << qPrintable(a->objectName());
        if (t.tip != nullptr) {
            const QString tip =
                t.startsDisabled ? QStringLiteral("Not available yet") : QString::fromUtf8(t.tip);
            EXPECT_EQ(a->toolTip(), tip);
            EXPECT_EQ(a->statusTip(), tip);
        }
    }
    // Each selector with its label is one tool of the selector bar, under both ids.
    for (const shell::Selector& s : shell::MainSelectors()) {
        const QString id = s.id;
        EXPECT_EQ(tools::FindTool(shell::MainTools(), id), nullptr) << qPrintable(id);
        QComboBox* box = f.main.selector(id);
        ASSERT_NE(box, nullptr) << qPrintable(id);
        EXPECT_EQ(box->toolTip(), QString::fromUtf8(s.tip));
        EXPECT_EQ(box->statusTip(), QString::fromUtf8(s.tip));
        QAction* tool = f.main.tool(id);
        ASSERT_NE(tool, nullptr) << qPrintable(id);
        EXPECT_TRUE(tool->associatedObjects().contains(box->parentWidget()->parentWidget()));
        if (!s.label.isEmpty()) {
            auto* label = f.main.findChild<QLabel*>(s.label);
            ASSERT_NE(label, nullptr) << qPrintable(QString(s.label));
            EXPECT_EQ(label->text(), QString::fromUtf8(s.caption));
            EXPECT_EQ(label->buddy(), box);
            EXPECT_EQ(f.main.tool(s.label), tool);
        }
    }
}

TEST(MainWindow, CalculatorWebPageAndRunsTitle) {
    Fixture f;
    f.main.FormLoadStuff();
    QStringList started;
    f.main.setProgramStarter([&](const QString& program, const QStringList&) {
        started << program;
        return false;
    });
    test::Press(f.main, "ID_Calculator");
    EXPECT_EQ(f.box.last().text, QStringLiteral("Can't locate calc.exe on your computer!"));

    QList<QUrl> opened;
    f.main.setUrlOpener([&](const QUrl& url) {
        opened << url;
        return true;
    });
    test::Press(f.main, "ID_Quadrumex");
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0].scheme(), QStringLiteral("https"));
    EXPECT_EQ(f.main.state().storedTool, tools::kQuadrumex);

    // A filter in force shows in the title and the filter tool's tip.
    f.main.state().filter.active = true;
    f.main.state().filter.text = QStringLiteral("1/4 et Between 9 AND 11");
    f.main.state().filter.sql =
        QStringLiteral("SELECT * from tblRuns WHERE i14Mile_et >= 9 AND lCar_id = 1");
    test::Press(f.main, "ID_Runs");
    EXPECT_EQ(f.main.titleText(), QStringLiteral(" My Race Car Runs (Filter Active)"));
    EXPECT_EQ(f.main.tool(tools::kFilter)->toolTip(), QStringLiteral("1/4 et Between 9 AND 11"));
    // The list of a filter keeps the run number and event columns in view.
    EXPECT_TRUE(f.main.grid().GridColumnExists(u"lRun_num"));
    EXPECT_TRUE(f.main.grid().GridColumnExists(u"lEvent_id"));
}

TEST(MainWindow, PrintedListReadsWholeOnEveryBand) {
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()) {
        GTEST_SKIP() << "no pdftotext to read the printed list";
    }
    Fixture f;
    AddRaceDay(f.lb.db(), 60);
    f.clock.now = QDateTime(QDate(2003, 7, 4), QTime(21, 47, 30));
    f.main.FormLoadStuff();
    test::ShowActive(f.main);
    QComboBox* events = f.main.selector(tools::kEventList);
    test::Pick(events,
               events->itemText(events->findText(QStringLiteral("Rock"), Qt::MatchStartsWith)));
    const QString title = f.main.titleText().trimmed();
    ASSERT_TRUE(title.contains(QStringLiteral("Thunder Valley Raceway")));
    QTemporaryDir dir;

    // The quarter-mile view: the page header's parts keep apart although the title is long.
    const QString quarter = dir.filePath(QStringLiteral("quarter.pdf"));
    ASSERT_TRUE(f.main.PrintToPdf(quarter));
    std::vector<PdfPage> pages = PdfPages(quarter);
    ASSERT_FALSE(pages.empty());
    const QRectF page = BoxOf(pages[0], {QStringLiteral("Page"), QStringLiteral("1")});
    const QRectF program =
        BoxOf(pages[0], shell::PrintHeaderProgramLine().split(u' ', Qt::SkipEmptyParts));
    const QRectF titleBox = BoxOf(pages[0], title.split(u' ', Qt::SkipEmptyParts));
    ASSERT_FALSE(page.isNull() || program.isNull() || titleBox.isNull());
    EXPECT_FALSE(page.intersects(program));
    EXPECT_FALSE(program.intersects(titleBox))
        << "program ends at " << program.right() << ", title starts at " << titleBox.left();
    EXPECT_FALSE(page.intersects(titleBox));

    // A run number and the event beside it, the event and the run type after it, keep a gap
    // between them; the event's name is cut short within its column.
    const QRegularExpression date(QStringLiteral("^\\d\\d/\\d\\d/\\d{4}$"));
    int rowsSeen = 0;
    qreal gapAfterRun = 100;
    qreal gapAfterEvent = 100;
    for (const PdfLine& line : pages[0]) {
        const QStringList words = Texts(line);
        const qsizetype type = words.indexOf(QStringLiteral("Qualifying"));
        if (!date.match(words[0]).hasMatch() || type < 5 || words[4] != u"Rock") {
            continue;
        }
        ++rowsSeen;
        gapAfterRun = std::min(gapAfterRun, line[4].box.left() - line[3].box.right());
        gapAfterEvent = std::min(gapAfterEvent, line[type].box.left() - line[type - 1].box.right());
        EXPECT_TRUE(words[type - 1].endsWith(u'…')) << words.join(u' ').toStdString();
    }
    EXPECT_GT(rowsSeen, 10);
    EXPECT_GE(gapAfterRun, 2.5);
    EXPECT_GE(gapAfterEvent, 2.5);

    // The widest view goes on in bands; each band's pages start with the date, time and run
    // number of each row, every caption is printed whole, and every page is stamped.
    QComboBox* views = f.main.selector(tools::kViews);
    test::Pick(views, views->itemText(views->findText(QStringLiteral("PRO"), Qt::MatchContains)));
    const TextGridModel& grid = f.main.grid();
    QSet<QString> runs;
    QSet<QString> cellWords;
    for (int r = 0; r < grid.RowCount(); ++r) {
        runs << grid.Cell(r, grid.ColumnIndex(u"dtRun_dt")) + u' ' +
                    grid.Cell(r, grid.ColumnIndex(u"dtRun_tm")) + u' ' +
                    grid.Cell(r, grid.ColumnIndex(u"lRun_num"));
        for (int c = 0; c < grid.ColumnCount(); ++c) {
            for (const QString& w : grid.Cell(r, c).split(u' ')) {
                cellWords << w;
            }
        }
    }
    const QString pro = dir.filePath(QStringLiteral("pro.pdf"));
    ASSERT_TRUE(f.main.PrintToPdf(pro));
    pages = PdfPages(pro);
    ASSERT_GE(pages.size(), 6u);
    const QStringList keys{QStringLiteral("Date"), QStringLiteral("Time"), QStringLiteral("Run"),
                           QStringLiteral("#")};
    QSet<QString> printedWords;
    int pagesWithoutKeys = 0;
    int rowsWithoutKeys = 0;
    int printedRows = 0;
    for (const PdfPage& sheet : pages) {
        for (const PdfLine& line : sheet) {
            for (const PdfWord& w : line) {
                printedWords << w.text;
            }
        }
        EXPECT_EQ(Texts(sheet.back()).join(u' ').toStdString(), "Printed 7/4/2003 9:47:30 PM");
        auto captions = std::find_if(sheet.begin(), sheet.end(), [&](const PdfLine& line) {
            return Texts(line).mid(0, 4) == keys;
        });
        if (captions == sheet.end()) {
            ++pagesWithoutKeys;
            continue;
        }
        for (auto line = captions + 1; line != sheet.end() - 1; ++line) {
            ++printedRows;
            rowsWithoutKeys += runs.contains(Texts(*line).mid(0, 4).join(u' ')) ? 0 : 1;
        }
    }
    EXPECT_EQ(pagesWithoutKeys, 0);
    EXPECT_EQ(rowsWithoutKeys, 0);
    EXPECT_EQ(printedRows % grid.RowCount(), 0);
    EXPECT_GT(printedRows, grid.RowCount());
    // A caption word that is no cell's word can only have come from the caption.
    for (int c = 0; c < grid.ColumnCount(); ++c) {
        if (!grid.Column(c).visible) {
            continue;
        }
        for (const QString& word : grid.Column(c).caption.split(u' ', Qt::SkipEmptyParts)) {
            if (!cellWords.contains(word)) {
                EXPECT_TRUE(printedWords.contains(word)) << word.toStdString();
            }
        }
    }
}

TEST(MainWindow, PrintFromThePreviewIsStampedWhenItPrints) {
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()) {
        GTEST_SKIP() << "no pdftotext to read the printed list";
    }
    Fixture f;
    AddRaceDay(f.lb.db(), 3);
    f.clock.now = QDateTime(QDate(2003, 7, 4), QTime(9, 15, 0));
    f.main.FormLoadStuff();
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("printed.pdf"));

    // The preview opens at 9:15; the racer reads it a while and prints at 9:47, to a file.
    ASSERT_TRUE(f.main.tool(tools::kPrint)->isEnabled());
    ASSERT_TRUE(test::PrintFromPreview(f.main, tools::kPrint, pdf,
                                       [&] { f.clock.now = f.clock.now.addSecs(32 * 60 + 30); }));
    const std::vector<PdfPage> pages = PdfPages(pdf);
    ASSERT_FALSE(pages.empty());
    for (const PdfPage& sheet : pages) {
        EXPECT_EQ(Texts(sheet.back()).join(u' ').toStdString(), "Printed 7/4/2003 9:47:30 AM");
    }
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

    const QStringList selectors = {tools::kCarsLabel, tools::kCarList,     tools::kEventsLabel,
                                   tools::kEventList, tools::kTracksLabel, tools::kTrackList,
                                   tools::kViews};
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
        {tools::kCarsLabel, tools::kCarList},
        {tools::kEventsLabel, tools::kEventList},
        {tools::kTracksLabel, tools::kTrackList}};
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
    QComboBox* events = f.main.selector(tools::kEventList);
    events->setFocus();
    QTest::keyClicks(events, QStringLiteral("Thirty"));
    Settle();
    ASSERT_EQ(f.main.state().event.id, 90);
    EXPECT_EQ(f.main.size(), QSize(800, 600));
    QComboBox* tracks = f.main.selector(tools::kTrackList);
    tracks->setFocus();
    QTest::keyClicks(tracks, QStringLiteral("Greater"));
    Settle();
    ASSERT_EQ(f.main.state().track.id, 90);
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
    test::Press(f.main, "ID_Runs");
    EXPECT_FALSE(header->isSortIndicatorShown() && header->sortIndicatorSection() >= 0);
    EXPECT_FALSE(frozen->isSortIndicatorShown() && frozen->sortIndicatorSection() >= 0);
    header->setStyle(nullptr);
}

TEST(MainWindow, FollowsTheChangeNotifier) {
    Fixture f;
    store::Database& db = f.lb.db();
    db.Execute(
        QStringLiteral("INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES "
                       "(7, 'Spring Nationals', 1)"));
    f.main.FormLoadStuff();
    QComboBox* events = f.main.selector(tools::kEventList);
    events->setFocus();
    QTest::keyClicks(events, QStringLiteral("Spring"));
    ASSERT_EQ(f.main.state().event.id, 7);

    // A renamed event is listed under its new name and stays picked; a deleted one gives way to
    // every event.
    db.Execute(
        QStringLiteral("UPDATE tblEvents SET sEvent_nm = 'Fall Nationals' WHERE "
                       "lEvent_id = 7"));
    Q_EMIT f.notifier.recordsChanged(QStringLiteral("tblEvents"));
    EXPECT_EQ(events->currentText(), QStringLiteral("Fall Nationals"));
    EXPECT_EQ(f.main.state().event.id, 7);
    EXPECT_TRUE(f.main.titleText().contains(QStringLiteral("Fall Nationals")));
    db.Execute(QStringLiteral("DELETE FROM tblEvents WHERE lEvent_id = 7"));
    Q_EMIT f.notifier.recordsChanged(QStringLiteral("tblEvents"));
    EXPECT_EQ(events->currentText(), QStringLiteral("<All Events>"));
    EXPECT_EQ(f.main.state().event.id, 0);

    db.Execute(QStringLiteral("INSERT INTO tblTracks (lTrack_id, sTrack_nm) VALUES (5, 'Oak')"));
    Q_EMIT f.notifier.recordsChanged(QStringLiteral("tblTracks"));
    EXPECT_GE(f.main.selector(tools::kTrackList)->findText(QStringLiteral("Oak")), 0);

    // A saved run's row is put in the list and selected; a second save rewrites it in place.
    AddRun(db, 41, 1, "07/04/2003", "10:30 AM", "10.5");
    Q_EMIT f.notifier.runSaved(41, true);
    ASSERT_EQ(f.main.grid().RowCount(), 1);
    EXPECT_EQ(f.main.SelectedKeyText(), QStringLiteral("41"));
    db.Execute(QStringLiteral("UPDATE tblRuns SET i14Mile_et = 9.75 WHERE lRun_id = 41"));
    Q_EMIT f.notifier.runSaved(41, false);
    ASSERT_EQ(f.main.grid().RowCount(), 1);
    EXPECT_EQ(f.main.grid().Cell(0, f.main.grid().ColumnIndex(u"i14Mile_et")),
              QStringLiteral("9.750"));
    EXPECT_EQ(f.main.statusMessage(), QStringLiteral("1 Record(s)"));

    // Another list shown: run news leave it alone.
    f.main.ListLoad(tools::kEvents);
    const int eventRows = f.main.grid().RowCount();
    AddRun(db, 42, 1, "07/05/2003", "11:30 AM", "10.1");
    Q_EMIT f.notifier.runSaved(42, true);
    Q_EMIT f.notifier.runDeleted(41);
    EXPECT_EQ(f.main.grid().RowCount(), eventRows);

    f.main.ToolClick(tools::kRuns);
    ASSERT_EQ(f.main.grid().RowCount(), 2);
    Q_EMIT f.notifier.runDeleted(41);
    EXPECT_EQ(f.main.grid().RowCount(), 1);
    EXPECT_EQ(f.main.SelectedKeyText(), QStringLiteral("42"));
}
