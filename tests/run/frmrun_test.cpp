// The run window driven offscreen as the user drives it: a new run typed and saved, the checks,
// the intervals and number boxes while typing, the weather and the station's reading, carrying
// the car's tune-up forward, the car and the counters after a save, numbering, deleting, and
// the window opened by a real main window.

#include "run/ui/frmRun.h"
#include "app/windows.h"
#include "common/tools.h"
#include "garage/ui/frmMaintenance.h"
#include "run/runsave.h"
#include "shell/runlist.h"
#include "shell/ui/frmMain.h"
#include "shell/ui/frozentableview.h"
#include "support/gui.h"
#include "weather/station.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace slipbook;
using namespace slipbook::test;
using run::frmRun;

namespace {

// The main window's run list as the notifier keeps it: while it shows runs, a saved run's row
// is put in it and a deleted run's row taken out.
class FakeGrid {
public:
    FakeGrid(FakeMain& main, store::Database& db) {
        QObject::connect(
            &main.events, &store::LogbookEvents::runSaved, [&main, &db, this](qint64 id) {
                if (main.state.view == tools::kRuns) {
                    puts << QString::number(id) + u'|' + shell::RunGridRow(db, columns, id);
                }
            });
        QObject::connect(&main.events, &store::LogbookEvents::runDeleted, [&main, this](qint64 id) {
            if (main.state.view == tools::kRuns) {
                removed << QString::number(id);
            }
        });
    }

    QStringList columns;
    QStringList puts;
    QStringList removed;
};

class FakeTimer : public weather::PollTimer {
public:
    void start(int ms) override { interval_ = ms, active_ = true; }
    void stop() override { active_ = false; }
    bool isActive() const override { return active_; }
    int interval() const override { return interval_; }
    void tick() { fire(); }

private:
    int interval_ = 0;
    bool active_ = false;
};

struct RunWindow : WindowTest {
    RunWindow() {
        // The main window's one maintenance window, made when first asked for.
        main.toolWindow = [this](const QString& id) -> QWidget* {
            if (id == tools::kMaintenance && !maintenance) {
                maintenance = new garage::frmMaintenance(Context());
                maintenance->setAttribute(Qt::WA_DeleteOnClose, true);
            }
            return id == tools::kMaintenance ? maintenance.data() : nullptr;
        };
        // The alert as the program shows it.
        main.showWindow = [this](QStringView name, qint64 id) -> QWidget* {
            return name == shell::windows::kMaintenanceAlert
                       ? app::ShowMaintenanceAlert(Context(), nullptr, id)
                       : nullptr;
        };
        grid = std::make_unique<FakeGrid>(main, logbook.db());
    }
    std::unique_ptr<frmRun> Open() {
        grid->puts.clear();
        grid->removed.clear();
        grid->columns = ListColumns();
        auto window = std::make_unique<frmRun>(Context());
        auto fakeTimer = std::make_unique<FakeTimer>();
        timer = fakeTimer.get();
        window->SetWeatherTimer(std::move(fakeTimer));
        return window;
    }
    std::unique_ptr<frmRun> OpenNew(qint64 event = 1) {
        main.state.storedTool = tools::kNew;
        main.state.event.id = event;
        return Open();
    }
    std::unique_ptr<frmRun> OpenRun(qint64 id) {
        main.state.storedTool.clear();
        main.keyText = QString::number(id);
        return Open();
    }
    // The quarter-mile list's columns.
    QStringList ListColumns() {
        shell::ListContext ctx;
        ctx.carId = 1;
        ctx.viewId = Scalar(QStringLiteral("SELECT lView_id FROM tblViews WHERE sTable_nm = "
                                           "'tbl14MileView'"))
                         .toLongLong();
        QStringList names;
        for (const auto& c :
             shell::BuildListLayout(logbook.db(), tools::kRuns, ctx, messages).columns) {
            names << c.name;
        }
        return names;
    }
    template <typename T = QLineEdit>
    T* F(frmRun& window, const char* name) {
        T* control = qobject_cast<T*>(window.Control(QString::fromLatin1(name)));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    // Replaces the text as typed, key by key, then leaves the box.
    void Type(QWidget* field, const QString& text) {
        test::Type(field, text);
        Leave(field);
    }
    QStringList Shown() const {
        QStringList texts;
        for (const Message& m : messages.shown) {
            texts << m.text;
        }
        return texts;
    }
    // The maintenance windows a save raised; closed and counted.
    int TakeAlerts() {
        QList<QPointer<QWidget>> alerts;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (qobject_cast<garage::frmMaintenance*>(w) != nullptr) {
                alerts << w;
            }
        }
        for (const QPointer<QWidget>& w : alerts) {
            delete w.data();
        }
        return static_cast<int>(alerts.size());
    }
    QHash<QString, QVariant> RunRow(qint64 id) {
        QHash<QString, QVariant> row;
        store::Query q = logbook.db().OpenQuery(
            QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = %1").arg(id));
        if (q.Next()) {
            for (int i = 0; i < q.FieldCount(); ++i) {
                row.insert(q.FieldName(i), q.Value(i));
            }
        }
        return row;
    }
    qint64 LastRunId() {
        return Scalar(QStringLiteral("SELECT MAX(lRun_id) FROM tblRuns")).toLongLong();
    }
    double RunsMade(int item) {
        return Scalar(QStringLiteral("SELECT iRunsMade FROM tblMaintenance WHERE lMaintenance_id "
                                     "= %1")
                          .arg(item))
            .toDouble();
    }

    std::unique_ptr<FakeGrid> grid;
    FakeTimer* timer = nullptr;
    QPointer<garage::frmMaintenance> maintenance;
};

}  // namespace

TEST_F(RunWindow, ANewRunTypedEndToEnd) {
    logbook.db().Execute(QStringLiteral(
        "UPDATE tblCars SET sCarNotes_tx = Null, sBaseJet = '76', sHatNozzle2_val = '0.040' "
        "WHERE lCar_id = 1"));
    auto w = OpenNew();
    ShowActive(*w);
    EXPECT_EQ(main.lockCount, 1);
    EXPECT_TRUE(main.state.storedTool.isEmpty());
    EXPECT_TRUE(w->RecordAdd());
    EXPECT_FALSE(w->DataChanged());
    auto* events = F<QComboBox>(*w, "cboEvents");
    auto* cars = F<QComboBox>(*w, "cboCars");
    EXPECT_EQ(events->currentText(), QStringLiteral("Test and Tune Day"));
    EXPECT_FALSE(events->isEnabled());  // the main window's event, locked
    EXPECT_EQ(cars->currentText(), QStringLiteral("My Race Car"));
    EXPECT_FALSE(cars->isEnabled());
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));
    EXPECT_EQ(F(*w, "mebRun_dt")->displayText(), QStringLiteral("07/04/2024"));
    EXPECT_EQ(F(*w, "mebRun_tm")->displayText(), QStringLiteral("02:35 PM"));
    EXPECT_EQ(F<QComboBox>(*w, "cboOpponents")->currentText(), QStringLiteral("<None>"));
    EXPECT_EQ(F<QComboBox>(*w, "cboRunTypes")->currentText(), QStringLiteral("Time Trial"));
    EXPECT_TRUE(F<QCheckBox>(*w, "SSChkFullRun_fl")->isChecked());
    EXPECT_TRUE(F<QRadioButton>(*w, "ssoptLeft")->isChecked());
    EXPECT_EQ(F(*w, "txt60to330foot_et")->text(), QString());
    // The car carries forward: its Null notes come as none, with the hint.
    EXPECT_HINT(F<QPlainTextEdit>(*w, "rtbRunNotes_tx"), "<Type notes here>");
    EXPECT_FALSE(w->tool(tools::kDelete)->isEnabled());
    EXPECT_FALSE(w->tool(tools::kSave)->isEnabled());

    Type(F(*w, "txtRunNumber"), QStringLiteral("3"));
    EXPECT_TRUE(w->DataChanged());
    EXPECT_TRUE(w->tool(tools::kSave)->isEnabled());
    EXPECT_EQ(F(*w, "txtRunNumber")->palette().color(QPalette::Text), QColor(Qt::red));
    Type(F(*w, "mebRun_tm"), QStringLiteral("10:05 AM"));
    Pick(F<QComboBox>(*w, "cboOpponents"), "Bye Run");
    Pick(F<QComboBox>(*w, "cboRunTypes"), "Eliminations");
    F<QCheckBox>(*w, "SSChkFullRun_fl")->click();
    Type(F(*w, "txtPoints"), QStringLiteral("1234"));
    EXPECT_EQ(F(*w, "txtPoints")->text(), QStringLiteral("1,234"));
    Type(F(*w, "txtLogFile"), QStringLiteral("C:\\logs\\O'Neil \"run\" #3.log"));
    Type(F(*w, "txtTemp"), QStringLiteral("75"));
    Type(F(*w, "txtHumidity"), QStringLiteral("50"));
    Type(F(*w, "txtBarometricPressure"), QStringLiteral("29.92"));
    Type(F(*w, "txtDialIn"), QStringLiteral("10.9"));
    F<QRadioButton>(*w, "ssoptRight")->click();
    Type(F(*w, "txtReactionTime"), QStringLiteral(".512"));
    Type(F(*w, "txt60Foot_et"), QStringLiteral("1.402"));
    Type(F(*w, "txt330Foot_et"), QStringLiteral("4.012"));
    Type(F(*w, "txt1000Foot_et"), QStringLiteral("8.211"));
    Type(F(*w, "txt14Mile_et"), QStringLiteral("9.87"));
    Type(F(*w, "txt14Mile_mph"), QStringLiteral("135.01"));
    auto* notes = F<QPlainTextEdit>(*w, "rtbRunNotes_tx");
    notes->selectAll();
    QTest::keyClicks(notes, QStringLiteral("Pulled left, 'lifted' at \"1/8\""));
    Type(F(*w, "txtJet(0)"), QStringLiteral("72 O'Neil's"));
    Type(F(*w, "txtThrottleStop(0)"), QStringLiteral("1.5"));
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), QStringLiteral("1.0294"));
    EXPECT_EQ(F(*w, "txt60to330foot_et")->text(), QStringLiteral("2.61 "));

    const double made = RunsMade(3);
    Press(*w, tools::kSaveandClose);
    EXPECT_TRUE(w->isHidden());
    EXPECT_EQ(main.lockCount, 0);
    const qint64 id = LastRunId();
    const auto row = RunRow(id);
    EXPECT_EQ(row.value("lEvent_id").toLongLong(), 1);
    EXPECT_EQ(row.value("lRun_num").toLongLong(), 3);
    EXPECT_EQ(row.value("dtRun_dt").toDateTime().date(), QDate(2024, 7, 4));
    EXPECT_EQ(row.value("dtRun_tm").toDateTime().time(), QTime(10, 5));
    EXPECT_EQ(row.value("lOpponent_id").toLongLong(), 2);
    EXPECT_EQ(row.value("bFullRun_fl").toLongLong(), 0);
    EXPECT_EQ(row.value("lRunType_id").toLongLong(), 3);
    EXPECT_EQ(row.value("lPoints_val").toLongLong(), 1234);
    EXPECT_EQ(row.value("sLogFile_nm").toString(),
              QStringLiteral("C:\\logs\\O'Neil \"run\" #3.log"));
    EXPECT_DOUBLE_EQ(row.value("iBarometricPressure_val").toDouble(), 29.92);
    EXPECT_DOUBLE_EQ(row.value("iPressureAltitude_val").toDouble(), 1);
    EXPECT_DOUBLE_EQ(row.value("iCorrFactor_val").toDouble(), 1.0294);
    EXPECT_DOUBLE_EQ(row.value("iDensityAlt_val").toDouble(), 1468);
    EXPECT_DOUBLE_EQ(row.value("iWetBulbTemp_val").toDouble(), 62.5);
    EXPECT_DOUBLE_EQ(row.value("iDialIn_val").toDouble(), 10.9);
    EXPECT_EQ(row.value("sLane_nm").toString(), QStringLiteral("R"));
    EXPECT_DOUBLE_EQ(row.value("iReactionTime_val").toDouble(), 0.512);
    EXPECT_DOUBLE_EQ(row.value("i14Mile_et").toDouble(), 9.87);
    EXPECT_DOUBLE_EQ(row.value("i60to330Foot_et").toDouble(), 2.61);
    EXPECT_DOUBLE_EQ(row.value("i1000to1320Foot_et").toDouble(), 1.659);
    EXPECT_EQ(row.value("sRunNotes_tx").toString(),
              QStringLiteral("Pulled left, 'lifted' at \"1/8\""));
    EXPECT_EQ(row.value("sJet1_val").toString(), QStringLiteral("72 O'Neil's"));
    EXPECT_EQ(row.value("sThrottleStop1_val").toString(), QStringLiteral("1.500"));
    EXPECT_EQ(row.value("sBaseJet").toString(), QStringLiteral("76"));  // from the car, unseen
    EXPECT_EQ(row.value("sHatNozzle2_val").toString(), QStringLiteral("0.040"));
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sJet1_val FROM tblCars WHERE lCar_id = 1")).toString(),
              QStringLiteral("72 O'Neil's"));

    // The list gets the run's row as the list itself would build it.
    ASSERT_EQ(grid->puts.size(), 1);
    EXPECT_EQ(grid->puts[0],
              QString::number(id) + u'|' + shell::RunGridRow(logbook.db(), grid->columns, id));
    // The car's due items counted the run and raised the maintenance window.
    EXPECT_EQ(RunsMade(3), made + 1);
    EXPECT_TRUE(Shown().contains(
        QStringLiteral("NOTE: Upcoming or Critical Maintenance Items exist for this car")));
    EXPECT_EQ(TakeAlerts(), 1);

    // Shown again, every text comes back as it was stored.
    auto again = OpenRun(id);
    EXPECT_EQ(again->windowTitle(), QStringLiteral("Run"));
    EXPECT_FALSE(again->RecordAdd());
    EXPECT_EQ(F(*again, "txtLogFile")->text(), QStringLiteral("C:\\logs\\O'Neil \"run\" #3.log "));
    EXPECT_EQ(F(*again, "txtJet(0)")->text(), QStringLiteral("72 O'Neil's "));
    EXPECT_EQ(F(*again, "txtDensityAlt")->text(), QStringLiteral("1,468"));
    EXPECT_EQ(F(*again, "txtDryBarometer")->text(), QStringLiteral("29.48 "));
    EXPECT_EQ(F(*again, "txt60to330foot_et")->text(), QStringLiteral("2.61 "));
    EXPECT_TRUE(F<QRadioButton>(*again, "ssoptRight")->isChecked());
    EXPECT_TRUE(again->tool(tools::kDelete)->isEnabled());
    EXPECT_FALSE(again->DataChanged());
}

TEST_F(RunWindow, ChecksInOrderWithTheirMessagesAndFocus) {
    auto w = OpenNew(0);  // no current event: the list is open and unselected
    ShowActive(*w);
    EXPECT_TRUE(F<QComboBox>(*w, "cboEvents")->isEnabled());
    const auto save = [&](const char* message, const char* focus) {
        messages.shown.clear();
        Press(*w, tools::kSave);
        ASSERT_FALSE(messages.shown.empty()) << message;
        EXPECT_EQ(messages.shown[0].text, QString::fromLatin1(message));
        EXPECT_EQ(messages.shown[0].title, QStringLiteral("Data Entry Error"));
        EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
        EXPECT_EQ(FocusName(*w), QString::fromLatin1(focus));
        EXPECT_TRUE(w->RecordAdd());
    };
    test::Type(F(*w, "txtRunNumber"), QString());
    save("Run Number Must Be Entered", "txtRunNumber");
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));  // filled in for the user
    save("Event Must Be Selected", "cboEvents");
    Pick(F<QComboBox>(*w, "cboEvents"), "Test and Tune Day");
    test::Type(F(*w, "mebRun_dt"), QStringLiteral("13/45/2024"));
    save("Invalid Date, Use MM/DD/YYYY Format", "mebRun_dt");
    test::Type(F(*w, "mebRun_dt"), QString());  // no date at all is allowed
    test::Type(F(*w, "mebRun_tm"), QStringLiteral("25:99 PM"));
    save("Invalid Time, Use HH:MM am/pm Format", "mebRun_tm");
    test::Type(F(*w, "mebRun_tm"), QStringLiteral("09:15 AM"));
    test::Type(F<QComboBox>(*w, "cboRunTypes"), QString());
    save("Run Type Must Be Selected", "cboRunTypes");
    Pick(F<QComboBox>(*w, "cboRunTypes"), "Qualifying");
    test::Type(F<QComboBox>(*w, "cboOpponents"), QString());
    save("Opponent Must Be Selected", "cboOpponents");
    Pick(F<QComboBox>(*w, "cboOpponents"), "Solo Pass");
    test::Type(F(*w, "txtTemp"), QStringLiteral("121"));
    save("Valid Temperature Range 32-120", "txtTemp");
    test::Type(F(*w, "txtTemp"), QStringLiteral("120"));
    test::Type(F(*w, "txtHumidity"), QStringLiteral("100.5"));
    save("Valid Humidity Range 0-100", "txtHumidity");
    test::Type(F(*w, "txtHumidity"), QStringLiteral("100"));
    test::Type(F(*w, "txtBarometricPressure"), QStringLiteral("31.51"));
    save("Valid Air Pressure Range 20-31.5", "txtBarometricPressure");
    test::Type(F(*w, "txtBarometricPressure"), QStringLiteral("31.5"));
    // A humidity box emptied can't give the figures: said in words, nothing written.
    test::Type(F(*w, "txtHumidity"), QString());
    save("The air figures can't be calculated: humidity is empty", "txtHumidity");
    test::Type(F(*w, "txtHumidity"), QStringLiteral("0"));

    // Save and New with a failed check stays on the run; with a good one it starts the next.
    test::Type(F(*w, "txtRunNumber"), QStringLiteral("0"));
    messages.shown.clear();
    Press(*w, tools::kNew);
    EXPECT_EQ(Shown(), QStringList{QStringLiteral("Run Number Must Be Entered")});
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), 0);
    Press(*w, tools::kNew);
    const auto row = RunRow(LastRunId());
    EXPECT_TRUE(row.value("dtRun_dt").isNull());
    EXPECT_DOUBLE_EQ(row.value("iHumidity_val").toDouble(), 0);
    EXPECT_GT(row.value("iCorrFactor_val").toDouble(), 0);  // computed at the save
    EXPECT_TRUE(w->RecordAdd());
    EXPECT_FALSE(w->DataChanged());
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));  // of the main window's event
    EXPECT_EQ(F(*w, "txtTemp")->text(), QStringLiteral("0"));
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), QStringLiteral("0"));
    TakeAlerts();
}

TEST_F(RunWindow, IntervalsAndNumberBoxesWhileTyping) {
    auto w = OpenNew();
    ShowActive(*w);
    QLineEdit* sixty = F(*w, "txt60Foot_et");
    QLineEdit* three30 = F(*w, "txt330Foot_et");
    QLineEdit* split = F(*w, "txt60to330foot_et");
    QLineEdit* next = F(*w, "txt330to660foot_et");
    sixty->selectAll();
    QTest::keyClicks(sixty, QStringLiteral("1."));
    EXPECT_EQ(split->text(), QStringLiteral(" "));   // 0 - 1: negative shows the blank
    QTest::keyClicks(three30, QStringLiteral("4"));  // "04": after the new run's 0
    EXPECT_EQ(split->text(), QStringLiteral("3 "));
    QTest::keyClicks(three30, QStringLiteral(".5"));
    EXPECT_EQ(split->text(), QStringLiteral("3.5 "));
    EXPECT_EQ(next->text(), QStringLiteral(" "));  // 1/8 still 0
    QTest::keyClick(sixty, Qt::Key_Backspace);
    QTest::keyClick(sixty, Qt::Key_Backspace);
    EXPECT_EQ(sixty->text(), QString());
    EXPECT_EQ(split->text(), QStringLiteral("3.5 "));  // a blank mark keeps what was shown
    QTest::keyClicks(sixty, QStringLiteral("4.5"));
    EXPECT_EQ(split->text(), QStringLiteral("0 "));
    QTest::keyClicks(sixty, QStringLiteral("1"));
    EXPECT_EQ(split->text(), QStringLiteral(" "));
    Leave(sixty);
    EXPECT_EQ(sixty->text(), QStringLiteral("4.510"));

    // Three places at most, one point, no letters; Enter moves on.
    QLineEdit* dial = F(*w, "txtDialIn");
    dial->selectAll();
    QTest::keyClicks(dial, QStringLiteral("1x0.9.8765"));
    EXPECT_EQ(dial->text(), QStringLiteral("10.987"));
    Leave(dial);
    EXPECT_EQ(dial->text(), QStringLiteral("10.987"));
    Type(dial, QStringLiteral("12"));
    EXPECT_EQ(dial->text(), QStringLiteral("12.000"));
    dial->selectAll();
    QTest::keyClick(dial, Qt::Key_Delete);
    Leave(dial);
    EXPECT_EQ(dial->text(), QStringLiteral(".000"));
    dial->setFocus();
    QTest::keyClick(dial, Qt::Key_Return);
    EXPECT_NE(FocusName(*w), QStringLiteral("txtDialIn"));
    Type(F(*w, "txtDelayBox"), QStringLiteral(".12345"));
    EXPECT_EQ(F(*w, "txtDelayBox")->text(), QStringLiteral(".123"));
    // The VRT takes four places, and typing it alone changes nothing to save.
    w.reset();
    auto v = OpenNew();
    ShowActive(*v);
    Type(F(*v, "txtVRT"), QStringLiteral("0.01234"));
    EXPECT_EQ(F(*v, "txtVRT")->text(), QStringLiteral("0.0123"));
    Type(F(*v, "txtVRT"), QStringLiteral(".5"));
    EXPECT_EQ(F(*v, "txtVRT")->text(), QStringLiteral(".5000"));
    EXPECT_FALSE(v->DataChanged());
    // A number box takes any count of places and points; the store refuses what is no number,
    // and the window stays as typed.
    Type(F(*v, "txtMarginOfVictory_ft"), QStringLiteral("1.2.3x"));
    EXPECT_EQ(F(*v, "txtMarginOfVictory_ft")->text(), QStringLiteral("1.2.3"));
    messages.shown.clear();
    Press(*v, tools::kSaveandClose);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), 0);
    EXPECT_FALSE(v->isHidden());
    EXPECT_TRUE(v->RecordAdd());
    EXPECT_TRUE(v->DataChanged());
    EXPECT_EQ(F(*v, "txtMarginOfVictory_ft")->text(), QStringLiteral("1.2.3"));
    EXPECT_EQ(F(*v, "txtVRT")->text(), QStringLiteral(".5000"));
    EXPECT_TRUE(grid->puts.isEmpty());
}

TEST_F(RunWindow, WeatherChecksConversionsAndTheStationsReading) {
    QTemporaryDir station;
    main.state.weatherDir = station.path();
    auto w = OpenNew();
    ShowActive(*w);
    QLineEdit* temp = F(*w, "txtTemp");
    QLineEdit* humidity = F(*w, "txtHumidity");
    QLineEdit* baro = F(*w, "txtBarometricPressure");
    QLineEdit* altitude = F(*w, "txtPressureAltitude");
    const auto leaveWith = [&](QLineEdit* box, const char* text) {
        messages.shown.clear();
        box->setFocus();
        Type(box, QString::fromLatin1(text));
        return messages.shown.empty() ? QString() : messages.last().text;
    };
    EXPECT_EQ(leaveWith(temp, "120.1"), QStringLiteral("Valid Temperature Range 32-120"));
    EXPECT_EQ(messages.last().title, QString());
    EXPECT_EQ(temp->text(), QStringLiteral("0"));
    EXPECT_EQ(FocusName(*w), QStringLiteral("txtTemp"));
    EXPECT_EQ(leaveWith(temp, "32"), QString());
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), QStringLiteral("0"));  // no pressure yet
    EXPECT_EQ(leaveWith(humidity, "101"), QStringLiteral("Valid Humidity Range 0-100"));
    EXPECT_EQ(leaveWith(humidity, "50"), QString());
    EXPECT_EQ(leaveWith(baro, "19.9"), QStringLiteral("Valid Air Pressure Range 20-31.5"));
    EXPECT_EQ(baro->text(), QStringLiteral("0"));
    EXPECT_EQ(altitude->text(), QStringLiteral("0"));  // left as it was
    EXPECT_EQ(leaveWith(baro, "30"), QString());
    EXPECT_EQ(altitude->text(), *weather::PressureAltitudeText(u"30"));
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), QStringLiteral("0.9730"));  // 32 F, 50 %, 30 in
    EXPECT_EQ(F(*w, "txtDensityAlt")->text(), QStringLiteral("-1,893"));
    EXPECT_EQ(F(*w, "txtWetBulbTemp")->text(), QStringLiteral("0.0"));

    // The altitude typed gives the barometer, and the barometer gives the altitude back.
    EXPECT_EQ(leaveWith(altitude, "1000"), QString());
    EXPECT_EQ(baro->text(), QStringLiteral("28.86"));
    EXPECT_EQ(leaveWith(baro, "28.86"), QString());
    EXPECT_EQ(altitude->text(), *weather::PressureAltitudeText(u"28.86"));
    EXPECT_NEAR(altitude->text().toDouble(), 1000, 10);
    EXPECT_EQ(leaveWith(altitude, "0"), QString());  // exactly "0" converts nothing
    EXPECT_EQ(baro->text(), QStringLiteral("28.86"));
    const QString corr = F(*w, "txtCorrFactor")->text();
    EXPECT_EQ(leaveWith(altitude, ""), QString());  // a blank altitude is no number: kept
    EXPECT_EQ(baro->text(), QStringLiteral("28.86"));
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), corr);
    EXPECT_EQ(leaveWith(temp, "0"), QString());
    for (const char* figure :
         {"txtCorrFactor", "txtDensityAlt", "txtAirDensity", "txtVaporPressure", "txtDryBarometer",
          "txtDewPoint", "txtWetBulbTemp"}) {
        EXPECT_EQ(F(*w, figure)->text(), QStringLiteral("0")) << figure;
    }

    // The station's chosen reading, asked for and found on the timer.
    const QString file = weather::StationFilePath(station.path(), weather::kChosenReadingFile);
    QFile stale(file);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("old\r\nx, 99, 99, 29\r\n");
    stale.close();
    messages.shown.clear();
    F<QPushButton>(*w, "GetWeather")->click();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(messages.last().text.startsWith(QStringLiteral("Go to Barometrix, point")));
    EXPECT_FALSE(QFile::exists(file));  // an old answer is not taken for the new one
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 1000);
    EXPECT_EQ(F<QPushButton>(*w, "GetWeather")->palette().color(QPalette::ButtonText),
              QColor(Qt::red));
    timer->tick();  // nothing yet: it keeps looking
    EXPECT_TRUE(timer->isActive());
    QFile answer(file);
    ASSERT_TRUE(answer.open(QIODevice::WriteOnly));
    answer.write("Time, Temp, Hum, Baro\r\n14:35, 75, 50, 29.92, 3\r\n");
    answer.close();
    timer->tick();
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(temp->text(), QStringLiteral("75"));
    EXPECT_EQ(humidity->text(), QStringLiteral("50"));
    EXPECT_EQ(baro->text(), QStringLiteral("29.92"));
    EXPECT_EQ(altitude->text(), QStringLiteral("1"));
    EXPECT_EQ(F(*w, "txtCorrFactor")->text(), QStringLiteral("1.0294"));
    EXPECT_EQ(F(*w, "txtDensityAlt")->text(), QStringLiteral("1,468"));
    EXPECT_EQ(FocusName(*w), QStringLiteral("txtTemp"));
    EXPECT_NE(F<QPushButton>(*w, "GetWeather")->palette().color(QPalette::ButtonText),
              QColor(Qt::red));
    EXPECT_TRUE(w->WeatherFetched());

    // A fetched reading counts as a change when the window closes.
    w->SetDataChanged(false);
    messages.shown.clear();
    messages.answer(MsgAnswer::No);
    EXPECT_TRUE(w->close());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().title, QStringLiteral("Form Unload"));
    TakeAlerts();
}

TEST_F(RunWindow, CarryForwardOnAndOff) {
    logbook.db().Execute(QStringLiteral(
        "UPDATE tblCars SET sCarNotes_tx = 'Car''s notes', sJet1_val = '72', sNitro_val = Null, "
        "sTrans2_val = '1.76', sDelayBox_val = '.250', sThrottleStop1_val = '1.9', Custom3 = "
        "'C3', sEngine_desc = 'BBC 540' WHERE lCar_id = 1"));
    auto w = OpenNew();
    EXPECT_EQ(F<QPlainTextEdit>(*w, "rtbRunNotes_tx")->toPlainText(),
              QStringLiteral("Car's notes "));
    EXPECT_EQ(F(*w, "txtJet(0)")->text(), QStringLiteral("72 "));
    EXPECT_EQ(F(*w, "txtNitro")->text(), QStringLiteral(" "));
    EXPECT_EQ(F(*w, "txtDelayBox")->text(), QStringLiteral(".250 "));
    EXPECT_EQ(F(*w, "txtThrottleStop(0)")->text(), QStringLiteral("0"));  // never carried
    EXPECT_EQ(F(*w, "txtCustom3")->text(), QStringLiteral("C3 "));
    EXPECT_EQ(F(*w, "txtTemp")->text(), QStringLiteral("0"));
    EXPECT_FALSE(w->DataChanged());
    EXPECT_TRUE(w->close());  // a carried-forward run untouched asks nothing
    EXPECT_TRUE(messages.shown.empty());

    // Save and New: the next run's tabs start blank although the car has the values.
    w = OpenNew();
    Type(F(*w, "txtJet(1)"), QStringLiteral("74"));
    Press(*w, tools::kSaveandNew);
    TakeAlerts();
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sJet2_val FROM tblCars")).toString(),
              QStringLiteral("74"));
    EXPECT_EQ(F(*w, "txtJet(0)")->text(), QString());
    EXPECT_EQ(F(*w, "txtJet(1)")->text(), QString());
    EXPECT_HINT(F<QPlainTextEdit>(*w, "rtbRunNotes_tx"), "<Type notes here>");
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("2"));

    // Off: the defaults, and saving gives the car those blanks all the same.
    logbook.db().Execute(QStringLiteral("UPDATE tblCars SET lCarryForward_info = 0"));
    auto off = OpenNew();
    EXPECT_EQ(F(*off, "txtJet(0)")->text(), QString());
    EXPECT_EQ(F(*off, "txtLaunchRPM")->text(), QStringLiteral("0"));
    EXPECT_HINT(F<QPlainTextEdit>(*off, "rtbRunNotes_tx"), "<Type notes here>");
    Type(F(*off, "txtRunNumber"), QStringLiteral("9"));
    Press(*off, tools::kSaveandClose);
    TakeAlerts();
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sJet1_val FROM tblCars")).toString(), QString());
    // The hint is no note, for the car either.
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sCarNotes_tx FROM tblCars")).toString(), QString());
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sBaseJet FROM tblRuns WHERE lRun_num = 9")).toString(),
              QString());

    // A fuel-injected nitro car shows the Fuel Setup tab with the nitro box.
    logbook.db().Execute(
        QStringLiteral("UPDATE tblCars SET sCarCarb_typ = 'FI', sCarFuel_typ = 'NITRO'"));
    auto fi = OpenNew();
    auto* tabs = Child<QTabWidget>(*fi, "sstabSetup");
    EXPECT_FALSE(tabs->isTabVisible(run::kTabCarb));
    EXPECT_TRUE(tabs->isTabVisible(run::kTabFuel));
    EXPECT_FALSE(F(*fi, "txtNitro")->isHidden());
}

TEST_F(RunWindow, TheCarFollowsOnlyTheNewestRunAndTheCountersOnlyNewRuns) {
    run::RunValues v;
    v.ids = {{QStringLiteral("lEvent_id"), qint64{1}},
             {QStringLiteral("lCar_id"), qint64{1}},
             {QStringLiteral("lOpponent_id"), qint64{1}},
             {QStringLiteral("lRunType_id"), qint64{1}}};
    v.texts = {{QStringLiteral("lRun_num"), QStringLiteral("1")},
               {QStringLiteral("dtRun_dt"), QStringLiteral("06/01/2024")},
               {QStringLiteral("dtRun_tm"), QStringLiteral("10:00 AM")}};
    const qint64 older = run::SaveRun(logbook.db(), {v, 0, std::nullopt}).runId;
    v.texts[QStringLiteral("dtRun_tm")] = QStringLiteral("11:00 AM");
    const qint64 newer = run::SaveRun(logbook.db(), {v, 0, std::nullopt}).runId;
    logbook.db().Execute(QStringLiteral("UPDATE tblCars SET sSlicks_val = 'car'"));
    const double made = RunsMade(1);

    auto w = OpenRun(older);
    Type(F(*w, "txtSlicks"), QStringLiteral("older"));
    Press(*w, tools::kSave);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sSlicks_val FROM tblCars")).toString(),
              QStringLiteral("car"));
    EXPECT_EQ(RunsMade(1), made);  // an edit counts nothing
    EXPECT_EQ(TakeAlerts(), 0);
    EXPECT_EQ(grid->puts.size(), 1);  // the edited row rewritten in the list
    EXPECT_TRUE(grid->puts[0].startsWith(QString::number(older) + u'|'));

    w = OpenRun(newer);
    Type(F(*w, "txtSlicks"), QStringLiteral("newest"));
    Press(*w, tools::kSaveandClose);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sSlicks_val FROM tblCars")).toString(),
              QStringLiteral("newest"));

    // The list shows another view now: it is left alone.
    w = OpenRun(newer);
    main.state.view = tools::kEvents;
    Type(F(*w, "txtSlicks"), QStringLiteral("again"));
    Press(*w, tools::kSaveandClose);
    EXPECT_TRUE(grid->puts.isEmpty());
    main.state.view = tools::kRuns;

    // The tune-up button saves a new run first and holds the maintenance alert until closing;
    // the run is counted once.
    w = OpenNew();
    messages.shown.clear();
    messages.answer(MsgAnswer::Ok);
    F<QPushButton>(*w, "btnTuneUpSetup(0)")->click();
    ASSERT_GE(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Loading Tune-Up Setup Window"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("The Run information you've entered so far "
                                                     "must be saved before continuing.  Save it "
                                                     "now?"));
    EXPECT_EQ(messages.last().text, QStringLiteral("The tune-up window is not available yet."));
    EXPECT_FALSE(w->RecordAdd());
    EXPECT_TRUE(w->MaintenanceAlertPending());
    EXPECT_EQ(TakeAlerts(), 0);
    EXPECT_EQ(RunsMade(1), made + 1);
    qint64 opened = -1;
    main.showWindow = [&, alert = main.showWindow](QStringView name, qint64 id) -> QWidget* {
        if (name != shell::windows::kRunTuneUp) {
            return alert(name, id);
        }
        opened = id;
        return w.get();
    };
    F<QPushButton>(*w, "btnTuneUpSetup(1)")->click();  // a saved run asks nothing
    EXPECT_EQ(opened, LastRunId());
    EXPECT_TRUE(w->close());
    EXPECT_EQ(TakeAlerts(), 1);
    EXPECT_EQ(RunsMade(1), made + 1);
    EXPECT_FALSE(w->MaintenanceAlertPending());

    // Cancel at the question saves nothing.
    w = OpenNew();
    const int runs = Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt();
    messages.answer(MsgAnswer::Cancel);
    F<QPushButton>(*w, "btnTuneUpSetup(0)")->click();
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), runs);
    EXPECT_TRUE(w->RecordAdd());
}

TEST_F(RunWindow, NumbersOpponentsNamesAndShowingAStoredRow) {
    logbook.db().Execute(
        QStringLiteral("INSERT INTO tblEvents (lEvent_id, sEvent_nm) VALUES (2, 'Summer Nats')"));
    auto w = OpenNew(0);
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));
    Pick(F<QComboBox>(*w, "cboEvents"), "Summer Nats");
    // A typed opponent is offered for adding, in name case.
    auto* opponents = F<QComboBox>(*w, "cboOpponents");
    test::Type(opponents, QStringLiteral("jim o'neil"));
    messages.answer(MsgAnswer::Yes);
    Leave(opponents);
    EXPECT_EQ(messages.last().text, QStringLiteral("Add Jim O'Neil"));
    EXPECT_EQ(opponents->currentText(), QStringLiteral("Jim O'Neil"));
    const qint64 jim = Scalar(QStringLiteral("SELECT lOpponent_id FROM tblOpponent WHERE "
                                             "sOpponent_nm = 'Jim O''Neil'"))
                           .toLongLong();
    EXPECT_GT(jim, 0);
    // The custom names, opened for editing, are saved with the run.
    F<QPushButton>(*w, "cmdEditCustomFieldNames")->click();
    EXPECT_FALSE(F(*w, "txtCustomName1")->isHidden());
    EXPECT_TRUE(F<QLabel>(*w, "CustomCaption1")->isHidden());
    Type(F(*w, "txtCustomName2"), QStringLiteral("Tire's \"Brand\""));
    Press(*w, tools::kSaveandNew);
    TakeAlerts();
    EXPECT_EQ(Scalar(QStringLiteral("SELECT sColumnHeader FROM tblListViewColumns WHERE "
                                    "sFieldName = 'Custom2'"))
                  .toString(),
              QStringLiteral("Tire's \"Brand\""));
    EXPECT_TRUE(main.calls.contains(QStringLiteral("recordsChanged tblListViewColumns")));
    EXPECT_EQ(F<QLabel>(*w, "CustomCaption2")->text(), QStringLiteral("Tire's \"Brand\""));
    const qint64 first = LastRunId();
    EXPECT_EQ(RunRow(first).value("lEvent_id").toLongLong(), 2);
    EXPECT_EQ(RunRow(first).value("lOpponent_id").toLongLong(), jim);
    // Numbers run per event and car.
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));  // the main window's event 0
    Pick(F<QComboBox>(*w, "cboEvents"), "Summer Nats");
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("2"));
    Pick(F<QComboBox>(*w, "cboEvents"), "Test and Tune Day");
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));
    Type(F(*w, "txtRunNumber"), QStringLiteral("-"));
    EXPECT_EQ(F(*w, "txtRunNumber")->text(), QStringLiteral("1"));
    // A typed opponent declined stays typed, and the save refuses it.
    test::Type(opponents, QStringLiteral("Nobody"));
    messages.answer(MsgAnswer::No);
    messages.shown.clear();
    Press(*w, tools::kSave);
    EXPECT_EQ(Shown(), (QStringList{QStringLiteral("Add Nobody"),
                                    QStringLiteral("Opponent Must Be Selected")}));

    // A stored row with Nulls and an odd lane opens.
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblRuns (lRun_id, lEvent_id, lCar_id, lRun_num, sLane_nm) VALUES (50, 1, "
        "1, 4, 'X')"));
    auto shown = OpenRun(50);
    EXPECT_FALSE(Shown().contains(QStringLiteral("False")));
    EXPECT_EQ(F(*shown, "txtExhaustTemp")->text(), QString());
    EXPECT_EQ(F(*shown, "txtTemp")->text(), QStringLiteral(" "));
    EXPECT_EQ(F(*shown, "mebRun_dt")->displayText(), QStringLiteral("__/__/____"));
    EXPECT_FALSE(F<QRadioButton>(*shown, "ssoptLeft")->isChecked());
    EXPECT_FALSE(F<QRadioButton>(*shown, "ssoptRight")->isChecked());
    EXPECT_HINT(F<QPlainTextEdit>(*shown, "rtbRunNotes_tx"), "<Type notes here>");
    EXPECT_EQ(F<QComboBox>(*shown, "cboOpponents")->currentIndex(), -1);
    EXPECT_EQ(F<QLabel>(*shown, "CustomCaption2")->text(), QStringLiteral("Tire's \"Brand\""));
    // Through a filter: its statement narrowed to the run.
    main.state.filter.active = true;
    main.state.filter.sql =
        QStringLiteral("SELECT * from tblRuns WHERE lRun_num >= 4 AND lCar_id = 1");
    EXPECT_EQ(F(*OpenRun(50), "txtRunNumber")->text(), QStringLiteral("4"));
    messages.shown.clear();
    auto missing = OpenRun(first);  // run number 1: outside the filter
    EXPECT_EQ(Shown(), QStringList{QStringLiteral("False")});
    EXPECT_FALSE(missing->tool(tools::kDelete)->isEnabled());
}

TEST_F(RunWindow, DeleteFromTheRunWindow) {
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblRuns (lRun_id, lEvent_id, lCar_id, lRun_num, dtRun_dt) VALUES (60, 1, 1, "
        "1, #07/04/2024#)"));
    auto w = OpenRun(60);
    w->setWindowTitle(QStringLiteral("07/04/2024 - Run "));
    messages.answer(MsgAnswer::No);
    Press(*w, tools::kDelete);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Delete The 07/04/2024 - Run  Record For (07/04/2024)"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Delete"));
    EXPECT_EQ(messages.last().buttons, MsgButtons::YesNo);
    EXPECT_EQ(messages.last().defaultAnswer, MsgAnswer::No);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), 1);
    messages.answer(MsgAnswer::Yes);
    Press(*w, tools::kDelete);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), 0);
    EXPECT_EQ(grid->removed, QStringList{QStringLiteral("60")});
    EXPECT_EQ(main.lockCount, 0);  // closed and the list freed
}

TEST(RunWindowInMain, OpenedSavedAndDeletedThroughTheMainWindow) {
    TempLogbook logbook;
    ScriptedMessages messages;
    store::LogbookEvents notifier;
    SystemClock clock;
    shell::frmMain main(logbook.db(), messages, notifier, clock, QString(),
                        QStringLiteral("/nonexistent"));
    app::RegisterWindows(main);
    main.FormLoadStuff();
    ShowActive(main);
    ASSERT_EQ(main.grid().RowCount(), 0);

    Press(main, "ID_New");
    auto* w = qobject_cast<frmRun*>(main.OpenWindow(tools::kRuns));
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("New - Run "));
    EXPECT_EQ(main.lockCount(), 1);
    EXPECT_FALSE(main.gridView()->isEnabled());
    // All events listed: the run's event is the user's pick.
    Pick(qobject_cast<QComboBox*>(w->Control(QStringLiteral("cboEvents"))),
         QStringLiteral("Test and Tune Day"));
    auto* dial = qobject_cast<QLineEdit*>(w->Control(QStringLiteral("txtDialIn")));
    dial->selectAll();
    QTest::keyClicks(dial, QStringLiteral("11.25"));
    Press(*w, "ID_SaveandClose");
    QApplication::processEvents();
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (qobject_cast<garage::frmMaintenance*>(top) != nullptr) {
            top->close();
        }
    }
    EXPECT_EQ(main.lockCount(), 0);
    ASSERT_EQ(main.grid().RowCount(), 1);
    EXPECT_EQ(main.SelectedRow(), 0);
    const QString key = main.SelectedKeyText();
    EXPECT_EQ(main.grid().Cell(0, main.grid().ColumnIndex(u"iDialIn_val")),
              QStringLiteral("11.250"));
    EXPECT_EQ(main.grid().Cell(0, main.grid().ColumnIndex(u"dtRun_dt")),
              QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy")));
    EXPECT_EQ(main.statusMessage(), QStringLiteral("1 Record(s)"));

    // Opened on the row, shown with the row's caption.
    Press(main, "ID_Open");
    w = qobject_cast<frmRun*>(main.OpenWindow(tools::kRuns));
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(qobject_cast<QLineEdit*>(w->Control(QStringLiteral("txtDialIn")))->text(),
              QStringLiteral("11.25 "));
    w->close();
    QApplication::processEvents();

    // Deleted from the list: the question names the run, and the row goes.
    messages.answer(MsgAnswer::Yes);
    Press(main, "ID_Delete");
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Delete The Run Record For (") +
                  QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy")) + u')');
    EXPECT_EQ(main.grid().RowCount(), 0);
    store::Query left =
        logbook.db().OpenQuery(QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = ") + key);
    EXPECT_FALSE(left.Next());
    EXPECT_EQ(main.lockCount(), 0);
    EXPECT_TRUE(main.gridView()->isEnabled());
}

TEST(RunWindowInMain, AlertsShareTheOneMaintenanceWindowAndRenamedFieldsHeadTheList) {
    TempLogbook logbook;
    ScriptedMessages messages;
    store::LogbookEvents notifier;
    SystemClock clock;
    shell::frmMain main(logbook.db(), messages, notifier, clock, QString(),
                        QStringLiteral("/nonexistent"));
    app::RegisterWindows(main);
    main.FormLoadStuff();
    main.show();
    // Every open item of the car is due, and the racer has the maintenance window open.
    logbook.db().Execute(QStringLiteral(
        "UPDATE tblMaintenance SET iRunsMade = iScheduledRuns WHERE bCompleted = 0"));
    Press(main, "ID_Maintenance");
    QPointer<QWidget> open = main.OpenWindow(tools::kMaintenance);
    ASSERT_NE(open, nullptr);

    const auto saveRun = [&](const QString& customName) {
        Press(main, "ID_New");
        auto* w = qobject_cast<frmRun*>(main.OpenWindow(tools::kRuns));
        ASSERT_NE(w, nullptr);
        Pick(qobject_cast<QComboBox*>(w->Control(QStringLiteral("cboEvents"))),
             QStringLiteral("Test and Tune Day"));
        if (!customName.isEmpty()) {
            qobject_cast<QPushButton*>(w->Control(QStringLiteral("cmdEditCustomFieldNames")))
                ->click();
            auto* name = qobject_cast<QLineEdit*>(w->Control(QStringLiteral("txtCustomName1")));
            name->selectAll();
            QTest::keyClicks(name, customName);
        }
        auto* dial = qobject_cast<QLineEdit*>(w->Control(QStringLiteral("txtDialIn")));
        dial->selectAll();
        QTest::keyClicks(dial, QStringLiteral("11.25"));
        Press(*w, "ID_SaveandClose");
        QApplication::processEvents();
    };
    saveRun(QString());
    saveRun(QStringLiteral("Tire Temp"));

    // Two alerts, one window: the one that was open, filtered anew for the car.
    int windows = 0;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        windows += qobject_cast<garage::frmMaintenance*>(top) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(windows, 1);
    EXPECT_EQ(main.OpenWindow(tools::kMaintenance), open.data());
    EXPECT_EQ(std::count_if(messages.shown.begin(), messages.shown.end(),
                            [](const Message& m) {
                                return m.text == QStringLiteral(
                                                     "NOTE: Upcoming or Critical "
                                                     "Maintenance Items exist for "
                                                     "this car");
                            }),
              2);
    EXPECT_EQ(open->findChild<QComboBox*>(tools::kEfCar)->currentText(),
              QStringLiteral("My Race Car"));

    // The renamed field heads its column in the list at once, and the saved run stays selected.
    const int column = main.grid().ColumnIndex(u"Custom1");
    ASSERT_GE(column, 0);
    EXPECT_EQ(main.grid().Column(column).caption, QStringLiteral("Tire Temp"));
    EXPECT_EQ(main.grid().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
              QStringLiteral("Tire Temp"));
    EXPECT_EQ(main.grid().RowCount(), 2);
    store::Query last = logbook.db().OpenQuery(QStringLiteral("SELECT MAX(lRun_id) FROM tblRuns"));
    ASSERT_TRUE(last.Next());
    EXPECT_EQ(main.SelectedKeyText(), last.Text(0));
    EXPECT_EQ(main.lockCount(), 0);
    delete open.data();
}

TEST_F(RunWindow, WhatTheRacerTypesIsKeptOrRefusedByName) {
    const auto runs = [&] { return Scalar(QStringLiteral("SELECT COUNT(*) FROM tblRuns")); };
    const QVariant before = runs();
    auto w = OpenNew();
    ShowActive(*w);
    const auto click = [](QWidget* field) {
        QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(4, 4));
        QApplication::processEvents();
    };
    const auto key = [&](int k, Qt::KeyboardModifiers m = Qt::NoModifier) {
        QTest::keyClick(w->focusWidget(), static_cast<Qt::Key>(k), m);
        QApplication::processEvents();
    };

    // Notes reached through their tab: the hint is no part of what is typed.
    QTabBar* bar = Child<QTabWidget>(*w, "sstabSetup")->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(run::kTabCarb).center());
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(run::kTabNotes).center());
    QApplication::processEvents();
    auto* notes = F<QPlainTextEdit>(*w, "rtbRunNotes_tx");
    ASSERT_TRUE(notes->hasFocus());
    QTest::keyClicks(notes, QStringLiteral("Clean pass"));

    // An impossible date or time stays as typed, with a word.
    auto* date = F(*w, "mebRun_dt");
    click(date);
    QTest::keyClicks(date, QStringLiteral("13452026"));
    key(Qt::Key_Tab);
    EXPECT_EQ(messages.last().text, QStringLiteral("Invalid Run Date, Use MM/DD/YYYY Format"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(date->displayText(), QStringLiteral("13/45/2026"));
    ASSERT_TRUE(date->hasFocus());
    QTest::keyClicks(date, QStringLiteral("07042026"));
    auto* time = F(*w, "mebRun_tm");
    click(time);
    QTest::keyClicks(time, QStringLiteral("9999XX"));
    key(Qt::Key_Tab);
    EXPECT_EQ(messages.last().text, QStringLiteral("Invalid Run Time, Use HH:MM am/pm Format"));
    EXPECT_EQ(time->displayText(), QStringLiteral("99:99 XX"));
    QTest::keyClicks(time, QStringLiteral("1005AM"));
    const size_t said = messages.shown.size();
    key(Qt::Key_Tab);
    EXPECT_EQ(messages.shown.size(), said);

    // Numbers their columns can't keep are refused by name; nothing is stored.
    auto* points = F(*w, "txtPoints");
    click(points);
    QTest::keyClicks(points, QStringLiteral("99999999999999999999"));
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Points Must Be a Whole Number From -2,147,483,648 To 2,147,483,647"));
    EXPECT_TRUE(points->hasFocus());
    EXPECT_EQ(runs(), before);
    key(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(points, QStringLiteral("12"));
    auto* dialIn = F(*w, "txtDialIn");
    click(dialIn);
    QTest::keyClicks(dialIn, QString(310, u'9'));
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(messages.last().text, QStringLiteral("Dial In Is Too Large a Number"));
    EXPECT_EQ(runs(), before);
    key(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(dialIn, QStringLiteral("10.9"));

    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_FALSE(w->DataChanged()) << messages.last().text.toStdString();
    TakeAlerts();
    const qint64 id = LastRunId();
    auto row = RunRow(id);
    EXPECT_EQ(row.value("sRunNotes_tx").toString(), QStringLiteral("Clean pass"));
    EXPECT_EQ(row.value("dtRun_dt").toDateTime().date(), QDate(2026, 7, 4));
    EXPECT_EQ(row.value("dtRun_tm").toDateTime().time(), QTime(10, 5));
    EXPECT_EQ(row.value("lPoints_val").toLongLong(), 12);

    // The stored 10.9 shows with its blank; leaving the box pads the number, not the blank.
    w->close();
    w = OpenRun(id);
    ShowActive(*w);
    dialIn = F(*w, "txtDialIn");
    EXPECT_EQ(dialIn->text(), QStringLiteral("10.9 "));
    click(dialIn);
    key(Qt::Key_Tab);
    EXPECT_EQ(dialIn->text(), QStringLiteral("10.900"));
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(w->DataChanged()) << messages.last().text.toStdString();
    EXPECT_DOUBLE_EQ(RunRow(id).value("iDialIn_val").toDouble(), 10.9);
}

TEST_F(RunWindow, SmallWindowsScrollRatherThanSqueeze) {
    auto w = OpenNew();
    ShowActive(*w);
    for (const QSize size : {QSize(800, 600), QSize(700, 500)}) {
        w->resize(size);
        QApplication::processEvents();
        Grab(*w, QStringLiteral("frmRun-%1").arg(size.width()));
        Child<QTabWidget>(*w, "sstabSetup")->setCurrentIndex(run::kTabCarb);
        QApplication::processEvents();
        Grab(*w, QStringLiteral("frmRun-%1-carb").arg(size.width()));
        Child<QTabWidget>(*w, "sstabSetup")->setCurrentIndex(run::kTabNotes);
        for (QWidget* child : w->findChildren<QWidget*>()) {
            const bool field = qobject_cast<QLineEdit*>(child) != nullptr ||
                               qobject_cast<QComboBox*>(child) != nullptr ||
                               qobject_cast<QLabel*>(child) != nullptr ||
                               qobject_cast<QAbstractButton*>(child) != nullptr;
            // A combo's or a spin box's own line edit is sized by its owner.
            if (!field || !child->isVisible() ||
                qobject_cast<QComboBox*>(child->parentWidget()) != nullptr ||
                qobject_cast<QAbstractSpinBox*>(child->parentWidget()) != nullptr) {
                continue;
            }
            const QSize least = child->minimumSizeHint().expandedTo(child->minimumSize());
            EXPECT_GE(child->width(), least.width())
                << child->objectName().toStdString() << " at " << size.width();
            EXPECT_GE(child->height(), least.height())
                << child->metaObject()->className() << " " << child->objectName().toStdString()
                << " at " << size.width();
        }
    }
    EXPECT_TRUE(Child<QScrollArea>(*w, "scrBody")->verticalScrollBar()->maximum() > 0);
}

TEST_F(RunWindow, Screenshot) {
    auto w = OpenNew();
    Type(F(*w, "txtTemp"), QStringLiteral("75"));
    Type(F(*w, "txtHumidity"), QStringLiteral("50"));
    Type(F(*w, "txtBarometricPressure"), QStringLiteral("29.92"));
    ShowActive(*w);
    Grab(*w, QStringLiteral("frmRun-notes"));
    Child<QTabWidget>(*w, "sstabSetup")->setCurrentIndex(run::kTabCarb);
    Grab(*w, QStringLiteral("frmRun-carb"));
    Child<QTabWidget>(*w, "sstabSetup")->setCurrentIndex(run::kTabCustom);
    Grab(*w, QStringLiteral("frmRun-custom"));
}
