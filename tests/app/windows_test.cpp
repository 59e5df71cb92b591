// The start-up windows and the application object, offscreen. The one QApplication of this test
// program is the real application object, so that its error trap is what the events go through.

#include "app/windows.h"
#include "app/application.h"
#include "common/tools.h"
#include "shell/pageleadin.h"
#include "shell/ui/frmMain.h"
#include "shell/ui/qtmessages.h"
#include "store/dberror.h"
#include "store/ui/frmSplash.h"
#include "support/gui.h"
#include "support/logbook.h"
#include "support/program.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableView>

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <functional>
#include <optional>
#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;

namespace {

const test::UseApplication kProgramsOwn([](int& argc, char** argv) -> QApplication* {
    return new app::Application(argc, argv);
});

app::Application& App() {
    return *static_cast<app::Application*>(QCoreApplication::instance());
}

struct SeenBox {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QStringList buttons;
    QString defaultButton;
};

// Runs `trigger`, which opens a modal box; the box is read and answered by pressing `key`.
SeenBox AnswerBox(const std::function<void()>& trigger, int key) {
    SeenBox seen;
    QTimer poll;
    poll.setInterval(5);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) {
            return;
        }
        poll.stop();
        seen.title = box->windowTitle();
        seen.text = box->text();
        seen.icon = box->icon();
        for (QAbstractButton* b : box->buttons()) {
            seen.buttons << b->text().remove(u'&');
        }
        if (box->defaultButton() != nullptr) {
            seen.defaultButton = box->defaultButton()->text().remove(u'&');
        }
        QTest::keyClick(box, static_cast<Qt::Key>(key));
    });
    poll.start();
    trigger();
    return seen;
}

class Thrower : public QObject {
public:
    bool event(QEvent* e) override {
        if (e->type() == QEvent::User) {
            throw store::DbError(store::err::DuplicateKey, QStringLiteral("tblRuns"),
                                 QStringLiteral("twice"));
        }
        return QObject::event(e);
    }
};

}  // namespace

using Program = test::ProgramTest;

TEST(Windows, SplashShowsVersionAndStatusAndAnyKeyClosesIt) {
    store::frmSplash splash;
    EXPECT_FALSE(splash.testAttribute(Qt::WA_QuitOnClose));
    splash.setVersion(QStringLiteral("Version 1.0"));
    splash.setStatus(QStringLiteral("Loading your view and associated run information..."));
    splash.showCentred();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&splash));

    auto* drag = splash.findChild<QWidget*>(QStringLiteral("SSPanelDrag"));
    auto* pro = splash.findChild<QWidget*>(QStringLiteral("SSPanelPro"));
    auto* version = splash.findChild<QLabel*>(QStringLiteral("SSRibbonVersion"));
    auto* status = splash.findChild<QLabel*>(QStringLiteral("SSRibbonStatus"));
    ASSERT_TRUE(drag && pro && version && status);
    EXPECT_FALSE(drag->isVisible());
    EXPECT_TRUE(pro->isVisible());
    EXPECT_EQ(version->text(), QStringLiteral("Version 1.0"));
    EXPECT_EQ(status->text(),
              QStringLiteral("Loading your view and associated run information..."));
    bool named = false;
    for (const QLabel* label : pro->findChildren<QLabel*>()) {
        named = named || label->text() == QStringLiteral("Slipbook Pro");
    }
    EXPECT_TRUE(named);

    QSignalSpy closed(&splash, &store::frmSplash::closedByKey);
    QTest::keyClick(&splash, Qt::Key_Space);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(splash.isVisible());
    // A late status write goes to the closed splash without bringing it back.
    splash.setStatus(QStringLiteral("Please wait..."));
    EXPECT_FALSE(splash.isVisible());
}

TEST(Windows, MainWindowLoadsItsStateAndOffersHelp) {
    test::TempLogbook lb;
    test::ScriptedMessages messages;
    QTemporaryDir appDir;
    store::LogbookEvents notifier;
    SystemClock clock;
    shell::frmMain main(lb.db(), messages, notifier, clock,
                        QStringLiteral("-x dir=/srv/station later"), appDir.path());

    EXPECT_EQ(main.windowTitle(), QStringLiteral("Slipbook Pro - Version 1.0"));
    EXPECT_EQ(main.applicationTitle(), QStringLiteral("Slipbook Pro"));
    EXPECT_EQ(main.state().weatherDir, QStringLiteral("/srv/station"));
    EXPECT_EQ(main.helpPath(), QDir(appDir.path()).filePath(QStringLiteral("help/index.html")));
    EXPECT_TRUE(main.isLoading());
    EXPECT_EQ(main.lockCount(), 0);
    EXPECT_FALSE(main.isVisible());

    QStringList menus;
    for (QAction* a : main.menuBar()->actions()) {
        menus << a->objectName() + ':' + a->text();
    }
    EXPECT_EQ(menus, (QStringList{"ID_mnuFile:&File", "ID_mnuEdit:&Edit", "ID_mnuView:&View",
                                  "ID_Utilities:&Utilities", "ID_mnuAnalysis:&Analysis",
                                  "ID_mnuHelp:&Help"}));
    auto* help = main.findChild<QMenu*>(tools::kMnuHelp);
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->actions().contains(main.tool(tools::kContents)));
    EXPECT_TRUE(help->actions().contains(main.tool(tools::kAbout)));
    auto* file = main.findChild<QMenu*>(tools::kMnuFile);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->actions().contains(main.tool(tools::kExit)));

    QStringList reported;
    main.setStatusReporter([&](const QString& s) { reported << s; });
    main.FormLoadStuff();
    EXPECT_FALSE(main.isLoading());
    EXPECT_EQ(reported,
              (QStringList{QStringLiteral("Loading Views..."), QStringLiteral("Loading Events..."),
                           QStringLiteral("Loading Tracks..."), QStringLiteral("Loading Cars..."),
                           QStringLiteral("Loading Runs..."), QStringLiteral("Updating Notes..."),
                           QStringLiteral("Please wait...")}));

    // Help: absent pages are a plain message; present ones go to the viewer.
    QList<QUrl> opened;
    bool opens = true;
    main.setUrlOpener([&](const QUrl& url) {
        opened << url;
        return opens;
    });
    test::Press(main, "ID_Contents");
    EXPECT_TRUE(opened.isEmpty());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(messages.last().text.contains(QDir::toNativeSeparators(main.helpPath())));

    ASSERT_TRUE(QDir(appDir.path()).mkpath(QStringLiteral("help")));
    QFile page(main.helpPath());
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.close();
    test::Press(main, "ID_Contents");
    EXPECT_EQ(opened, QList<QUrl>{QUrl::fromLocalFile(main.helpPath())});
    EXPECT_EQ(messages.shown.size(), 1u);
    opens = false;
    test::Press(main, "ID_Contents");
    EXPECT_EQ(messages.shown.size(), 2u);

    // About is a modal window with the name and the version.
    QString aboutText;
    QTimer::singleShot(0, [&] {
        QWidget* about = QApplication::activeModalWidget();
        ASSERT_NE(about, nullptr);
        for (QLabel* l : about->findChildren<QLabel*>()) {
            aboutText += l->text() + u'\n';
        }
        about->close();
    });
    test::Press(main, "ID_About");
    EXPECT_TRUE(aboutText.contains(QStringLiteral("Slipbook Pro")));
    EXPECT_TRUE(aboutText.contains(QStringLiteral("Version 1.0")));

    // Exit closes the window, which ends the program.
    main.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&main));
    test::Press(main, "ID_Exit");
    EXPECT_FALSE(main.isVisible());
}

TEST(Windows, MessageBoxesCarryTextTitleIconButtonsAndDefault) {
    shell::QtMessages messages;
    MsgAnswer answer = MsgAnswer::Ok;

    SeenBox box = AnswerBox(
        [&] {
            answer = messages.ask(QStringLiteral("Save changes?"), QStringLiteral("Run"),
                                  MsgButtons::YesNoCancel, MsgAnswer::No);
        },
        Qt::Key_Return);
    EXPECT_EQ(box.title, QStringLiteral("Run"));
    EXPECT_EQ(box.text, QStringLiteral("Save changes?"));
    EXPECT_EQ(box.icon, QMessageBox::Question);
    EXPECT_EQ(box.buttons.size(), 3);
    EXPECT_EQ(box.defaultButton, QStringLiteral("No"));
    EXPECT_EQ(answer, MsgAnswer::No);

    // Escape is Cancel where there is one; a carriage return breaks the line on screen.
    box = AnswerBox(
        [&] {
            answer = messages.show({QStringLiteral("first\rsecond <All Events>"), QString(),
                                    MsgIcon::Critical, MsgButtons::OkCancel, MsgAnswer::Ok});
        },
        Qt::Key_Escape);
    EXPECT_EQ(box.text, QStringLiteral("first\nsecond <All Events>"));
    EXPECT_EQ(box.icon, QMessageBox::Critical);
    EXPECT_EQ(box.defaultButton, QStringLiteral("OK"));
    EXPECT_EQ(answer, MsgAnswer::Cancel);

    box = AnswerBox([&] { answer = messages.ask({}, {}, MsgButtons::YesNo, MsgAnswer::Ok); },
                    Qt::Key_Return);
    EXPECT_EQ(answer, MsgAnswer::Yes);
}

TEST(Windows, AnErrorInAnEventHandlerIsReportedAndTheProgramGoesOn) {
    app::Application& application = App();
    Thrower thrower;
    const SeenBox box = AnswerBox(
        [&] {
            QCoreApplication::postEvent(&thrower, new QEvent(QEvent::User));
            QCoreApplication::sendPostedEvents(&thrower, QEvent::User);
        },
        Qt::Key_Return);
    EXPECT_EQ(box.title, QStringLiteral("Error"));
    EXPECT_EQ(box.text, QStringLiteral("Error # 3022\nSource   tblRuns\n\ntwice"));
    EXPECT_EQ(box.icon, QMessageBox::Warning);
    // Still dispatching.
    bool ran = false;
    QTimer::singleShot(0, &application, [&] { ran = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return ran; }, 1000));
}

TEST_F(Program, MainWindowToolsSayWhatTheyDoAndMenusHaveDistinctMnemonics) {
    shell::frmMain& main = Start(false);

    // Every tool has its window now, and says what it does in more words than its caption.
    const QString notYet = QStringLiteral("Not available yet");
    QList<QAction*> tools;
    for (QMenu* menu : main.findChildren<QMenu*>()) {
        tools << menu->actions();
    }
    for (QToolBar* bar : main.findChildren<QToolBar*>()) {
        tools << bar->actions();
    }
    int checked = 0;
    for (QAction* a : tools) {
        if (a->isSeparator() || a->menu() != nullptr || a->objectName().isEmpty() ||
            a->objectName().endsWith(QStringLiteral("Tool"))) {
            continue;
        }
        const QString id = a->objectName();
        ++checked;
        EXPECT_NE(a->toolTip(), notYet) << qPrintable(id);
        EXPECT_NE(a->statusTip(), notYet) << qPrintable(id);
        EXPECT_NE(a->toolTip(), a->text().remove(u'&')) << qPrintable(id);
        EXPECT_EQ(a->statusTip(), a->toolTip()) << qPrintable(id);
    }
    EXPECT_GT(checked, 30);

    // No two entries of one menu, nor two menus of the bar, answer the same Alt letter.
    static const QRegularExpression mnemonic(QStringLiteral("&([^&])"));
    auto checkDistinct = [](const QString& where, const QList<QAction*>& actions) {
        QHash<QChar, QString> seen;
        for (QAction* a : actions) {
            const QRegularExpressionMatch m = mnemonic.match(QString(a->text()).replace("&&", ""));
            if (a->isSeparator() || !a->isVisible() || !m.hasMatch()) {
                continue;
            }
            const QChar key = m.captured(1).at(0).toLower();
            EXPECT_FALSE(seen.contains(key)) << qPrintable(where) << ": " << qPrintable(a->text())
                                             << " and " << qPrintable(seen.value(key));
            seen.insert(key, a->text());
        }
    };
    checkDistinct(QStringLiteral("menu bar"), main.menuBar()->actions());
    const QList<QMenu*> menus = main.findChildren<QMenu*>();
    EXPECT_GE(menus.size(), 6);
    for (QMenu* menu : menus) {
        checkDistinct(menu->objectName(), menu->actions());
    }
}

TEST_F(Program, PredictionWindowsAreOnePerCarAndFollowTheWeather) {
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, 'Dragster', '22')"));
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblRuns (lCar_id, lRun_num, iCorrFactor_val, i14Mile_et) VALUES (1, 1, "
        "1.05, 11.5)"));
    shell::frmMain& main = Start();
    const auto predictions = [&main] {
        return main.findChildren<QWidget*>(QStringLiteral("frmETPrediction"));
    };

    test::Press(main, "ID_ETTS");
    ASSERT_EQ(predictions().size(), 1);
    QWidget* first = predictions().first();
    EXPECT_EQ(first->windowTitle(), QStringLiteral("Car #1 (My Race Car) Prediction"));
    test::Press(main, "ID_ETTS");
    EXPECT_EQ(predictions().size(), 1);

    // Another car opens another window; the first stays on its car.
    test::Pick(main.selector(tools::kCarList), QStringLiteral("Dragster"));
    test::Press(main, "ID_ETTS");
    ASSERT_EQ(predictions().size(), 2);

    // A reading reaches both: each showing its standard program adds its line; one with no
    // run to start from adds none.
    main.state().leadin.Clear();
    main.CalcAllETPrediction(QStringLiteral("1.1"), QStringLiteral("2500"));
    EXPECT_EQ(main.state().leadin.Get(), shell::FormatPageLeadin("1", "ET: 11.68"));
    EXPECT_EQ(first->findChild<QLineEdit*>(QStringLiteral("txtNewDA"))->text(),
              QStringLiteral("2500"));
    // The push raises no box; the first window, when it is activated on the other car, may have
    // said why its distance is locked.
    for (const Message& m : messages.shown) {
        EXPECT_TRUE(m.text.startsWith(QStringLiteral("Please note: Because")))
            << qPrintable(m.text);
    }
    for (QWidget* w : predictions()) {
        w->close();
    }
}

TEST_F(Program, TheCarSelectorFollowsTheCarWindowAndItsSetupButtonsOpenTheirWindows) {
    shell::frmMain& main = Start();
    QComboBox* cars = main.selector(tools::kCarList);
    const auto entries = [cars] {
        QStringList texts;
        for (int i = 0; i < cars->count(); ++i) {
            texts << cars->itemText(i);
        }
        return texts;
    };
    const auto defaults = [this] {
        store::Query q = lb.db().OpenQuery(
            QStringLiteral("SELECT group_concat(lCar_id) FROM tblCars WHERE bDefault_fl = True"));
        return q.Next() ? q.Value(0).toString() : QString();
    };

    test::Press(main, "ID_Cars");
    auto* w = main.findChild<QWidget*>(QStringLiteral("frmCar"));
    ASSERT_NE(w, nullptr);
    test::ShowActive(*w);
    auto* list = w->findChild<QListWidget*>(QStringLiteral("lstCars"));
    const auto entry = [list](const char* text) {
        QListWidgetItem* item =
            list->findItems(QString::fromLatin1(text), Qt::MatchExactly).value(0);
        ASSERT_NE(item, nullptr) << text;
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(item).center());
    };

    // A new car is in the selector at once, the current car kept; picked there, it is current.
    test::Press(*w, "ID_New");
    test::Type(w->findChild<QLineEdit*>(QStringLiteral("txtCar_nm")), QStringLiteral("Blue Bird"));
    test::Type(w->findChild<QLineEdit*>(QStringLiteral("txtCar_num")), QStringLiteral("427"));
    test::Press(*w, "ID_Save");
    EXPECT_EQ(entries(), (QStringList{"Blue Bird", "My Race Car"}));
    EXPECT_EQ(cars->currentText(), QStringLiteral("My Race Car"));
    EXPECT_EQ(main.state().car.id, 1);
    test::Pick(cars, QStringLiteral("Blue Bird"));
    const qint64 blueBird = main.state().car.id;
    EXPECT_GT(blueBird, 1);
    EXPECT_EQ(defaults(), QString::number(blueBird));

    // The window makes another car the default; the selector stays on its car.
    entry("My Race Car");
    auto* isDefault = w->findChild<QCheckBox*>(QStringLiteral("chkDefault_fl"));
    EXPECT_FALSE(isDefault->isChecked());
    isDefault->setFocus();
    QTest::keyClick(isDefault, Qt::Key_Space);
    test::Press(*w, "ID_Save");
    EXPECT_EQ(defaults(), QStringLiteral("1"));
    EXPECT_EQ(cars->currentText(), QStringLiteral("Blue Bird"));
    EXPECT_EQ(main.state().car.id, blueBird);

    // The current car deleted, the default one takes its place.
    entry("Blue Bird");
    messages.answer(MsgAnswer::Yes);
    test::Press(*w, "ID_Delete");
    EXPECT_EQ(entries(), (QStringList{"My Race Car"}));
    EXPECT_EQ(main.state().car.id, 1);

    // The set-up buttons: the shared tune-up window in manual set-up, and the setup runs.
    QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("sscmdBaseSetup")), Qt::LeftButton);
    auto* tuneUp = main.findChild<QWidget*>(QStringLiteral("frmTuneUp"));
    ASSERT_NE(tuneUp, nullptr);
    EXPECT_TRUE(tuneUp->isVisible());
    EXPECT_EQ(tuneUp->windowTitle(), QStringLiteral("Car #1 (My Race Car) Tune-Up"));
    EXPECT_TRUE(tuneUp->findChild<QCheckBox*>(QStringLiteral("chkHolleyManual"))->isChecked());
    tuneUp->close();
    EXPECT_EQ(main.lockCount(), 0);
    QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("sscmdTSSetup")), Qt::LeftButton);
    auto* setup = main.findChild<QWidget*>(QStringLiteral("frmCarSetup"));
    ASSERT_NE(setup, nullptr);
    EXPECT_EQ(setup->windowTitle(), QStringLiteral("Throttle Stop Setup"));
    setup->close();
    // The delete question alone.
    ASSERT_EQ(messages.shown.size(), 1u) << qPrintable(messages.last().text);
    EXPECT_EQ(messages.last().title, QStringLiteral("Delete"));
    w->close();
}

TEST_F(Program, TestAndTuneIsOneWindowOnThePickedRun) {
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblRuns (lCar_id, lRun_num, iCorrFactor_val, i14Mile_et, i14Mile_mph) VALUES "
        "(1, 1, 1.05, 10.00, 130)"));
    shell::frmMain& main = Start();

    test::Press(main, "ID_TestTune");
    auto* w = main.findChild<QWidget*>(QStringLiteral("frmTestTune"));
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("cmdCalc0")), Qt::LeftButton);
    EXPECT_EQ(w->findChild<QLineEdit*>(QStringLiteral("txtStdStdET"))->text(),
              QStringLiteral("9.839"));
    // Pressed again, the same window comes forward with what it shows.
    test::Press(main, "ID_TestTune");
    EXPECT_EQ(main.findChildren<QWidget*>(QStringLiteral("frmTestTune")).size(), 1);
    EXPECT_EQ(w->findChild<QLineEdit*>(QStringLiteral("txtStdStdET"))->text(),
              QStringLiteral("9.839"));
    w->close();
}

TEST_F(Program, TuneUpWindowsAreOnePerCarFollowTheWeatherAndTheRunWindowSharesOne) {
    lb.db().Execute(
        QStringLiteral("UPDATE tblCars SET sBaseADR = '100', sBaseJet = '72' WHERE lCar_id = 1"));
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ, sBaseADR, sBaseBypassPill, "
        "sBaseBoost, sHatNozzle1_val) VALUES (2, 'Dragster', '22', 'FI', '100', '0.08', '10', "
        "'0.2')"));
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblRuns (lCar_id, lRun_num, sBaseADR, sBaseJet) VALUES (1, 1, '97', '70')"));
    shell::frmMain& main = Start();
    const auto tuneUps = [&main] {
        return main.findChildren<QWidget*>(QStringLiteral("frmTuneUp"));
    };

    test::Press(main, "ID_TuneUp");
    ASSERT_EQ(tuneUps().size(), 1);
    QWidget* first = tuneUps().first();
    EXPECT_EQ(first->windowTitle(), QStringLiteral("Car #1 (My Race Car) Tune-Up"));
    EXPECT_EQ(main.lockCount(), 1);
    test::Press(main, "ID_TuneUp");
    EXPECT_EQ(tuneUps().size(), 1);
    test::Pick(main.selector(tools::kCarList), QStringLiteral("Dragster"));
    test::Press(main, "ID_TuneUp");
    ASSERT_EQ(tuneUps().size(), 2);

    // A reading reaches both: each recalculates and adds its line.
    main.state().leadin.Clear();
    main.CalcAllTuneUp(QStringLiteral("95"));
    EXPECT_EQ(first->findChild<QLineEdit*>(QStringLiteral("txtNewJet"))->text(),
              QStringLiteral("71"));
    EXPECT_TRUE(main.state().leadin.Get().startsWith(shell::FormatPageLeadin("1", "Jet: 71")));
    EXPECT_TRUE(main.state().leadin.Get().contains(QStringLiteral("Pill: 0.")));
    EXPECT_TRUE(messages.shown.empty());

    // The run window's tune-up is one more window, shared, not in the table.
    store::Query last = lb.db().OpenQuery(QStringLiteral("SELECT max(lRun_id) FROM tblRuns"));
    ASSERT_TRUE(last.Next());
    const qint64 run = last.Value(0).toLongLong();
    QWidget* shared = main.ShowWindow(shell::windows::kRunTuneUp, run);
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(tuneUps().size(), 3);
    EXPECT_EQ(main.ShowWindow(shell::windows::kRunTuneUp, run), shared);
    EXPECT_EQ(shared->findChild<QLineEdit*>(QStringLiteral("txtBaseADR"))->text(),
              QStringLiteral("97"));
    EXPECT_EQ(main.lockCount(), 3);
    for (QWidget* w : tuneUps()) {
        w->close();
    }
    EXPECT_EQ(main.lockCount(), 0);
}

TEST_F(Program, FilterNarrowsTheRunListAndItsToolAndTitleFollow) {
    for (const char* et : {"9.5", "10.5", "11.5"}) {
        lb.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, lRun_num, dtRun_dt, "
                           "i14Mile_et) VALUES (1, 1, 1, #07/04/2003#, %1)")
                .arg(QLatin1String(et)));
    }
    shell::frmMain& main = Start();
    QAction* tool = main.tool(tools::kFilter);
    ASSERT_EQ(main.grid().RowCount(), 3);

    test::Press(main, "ID_Filter");
    EXPECT_TRUE(tool->isChecked());
    auto* w = main.findChild<QWidget*>(QStringLiteral("frmFilter"));
    ASSERT_NE(w, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(w));
    auto* grid = w->findChild<QTableView*>(QStringLiteral("ssdbgFilter"));
    int row = 0;
    while (row < grid->model()->rowCount() &&
           grid->model()->index(row, 2).data().toString() != u"1/4 et") {
        ++row;
    }
    ASSERT_LT(row, grid->model()->rowCount());
    // The range of the list as it stands, its lower end raised.
    EXPECT_EQ(grid->model()->index(row, 4).data().toString(), QStringLiteral("9.500"));
    const QModelIndex value = grid->model()->index(row, 4);
    grid->scrollTo(value);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(value).center());
    auto* box = qobject_cast<QLineEdit*>(grid->indexWidget(value));
    ASSERT_NE(box, nullptr);
    test::Type(box, QStringLiteral("10"));
    QTest::keyClick(box, Qt::Key_Return);
    QCoreApplication::processEvents();
    QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("sscmdApply")), Qt::LeftButton);

    EXPECT_TRUE(messages.shown.empty());
    EXPECT_FALSE(w->isVisible());
    EXPECT_TRUE(tool->isChecked());
    EXPECT_EQ(main.grid().RowCount(), 2);
    EXPECT_EQ(main.titleText(), QStringLiteral(" My Race Car Runs (Filter Active)"));
    EXPECT_EQ(tool->toolTip(), QStringLiteral("1/4 et Between 10 AND 11.500"));

    // The tool up takes the filter off.
    test::Press(main, "ID_Filter");
    EXPECT_FALSE(tool->isChecked());
    EXPECT_FALSE(main.state().filter.active);
    EXPECT_EQ(main.grid().RowCount(), 3);
    EXPECT_EQ(tool->toolTip(), QStringLiteral("Filter Run Data"));

    // Closed without applying, the window leaves the tool as the filter is: up.
    test::Press(main, "ID_Filter");
    w = main.findChild<QWidget*>(QStringLiteral("frmFilter"));
    ASSERT_NE(w, nullptr);
    QTest::mouseClick(w->findChild<QPushButton*>(QStringLiteral("sscmdClose")), Qt::LeftButton);
    EXPECT_FALSE(tool->isChecked());
    EXPECT_EQ(main.grid().RowCount(), 3);
}

TEST_F(Program, StatisticsFollowTheEventPickedInTheMainWindow) {
    lb.db().Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id, dtEventStart_dt) VALUES (2, "
        "'Summer Series', 1, #08/01/2003#)"));
    for (int event : {1, 2, 2}) {
        lb.db().Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lEvent_id, lRun_num, "
                                       "dtRun_dt, i14Mile_et) VALUES (1, %1, 1, #07/04/2003#, "
                                       "10.5)")
                            .arg(event));
    }
    shell::frmMain& main = Start();
    test::Press(main, "ID_Statistics");
    auto* w = main.findChild<QWidget*>(QStringLiteral("frmStatistics"));
    ASSERT_NE(w, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(w));
    const auto runs = [w] {
        return w->findChild<QTableView*>(QStringLiteral("grdFigures"))
            ->model()
            ->index(0, 1)
            .data()
            .toString();
    };
    EXPECT_EQ(runs(), QStringLiteral("3"));

    // The racer picks an event in the main window, then comes back.
    test::ShowActive(main);
    test::Pick(main.selector(tools::kEventList), QStringLiteral("Summer Series"));
    test::ShowActive(*w);
    EXPECT_EQ(runs(), QStringLiteral("2"));
    EXPECT_TRUE(w->findChild<QLabel*>(QStringLiteral("lblSelection"))
                    ->text()
                    .contains(QStringLiteral("Event: Summer Series")));
    test::Press(main, "ID_ReportCard");
    EXPECT_NE(main.findChild<QWidget*>(QStringLiteral("frmReportCard")), nullptr);
    EXPECT_TRUE(messages.shown.empty());
}
