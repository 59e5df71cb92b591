// The weather window offscreen, driven through its controls, a hand-fired timer and a fixed
// clock, with the station's files in a temporary folder.

#include "weather/ui/frmWeather.h"
#include "support/fakemain.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"
#include "weather/weatherlog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using weather::frmWeather;

namespace {

class FakeTimer : public weather::PollTimer {
public:
    void start(int ms) override {
        interval_ = ms;
        active_ = true;
        starts << ms;
    }
    void stop() override { active_ = false; }
    bool isActive() const override { return active_; }
    int interval() const override { return interval_; }
    void tick() { fire(); }

    QList<int> starts;

private:
    int interval_ = 0;
    bool active_ = false;
};

// Open prediction and tune-up windows add their lines to the lead-in as they calculate.
class PagingMain : public test::FakeMain {
public:
    void CalcAllETPrediction(const QString& corr, const QString& da) override {
        FakeMain::CalcAllETPrediction(corr, da);
        state.leadin.Add("ET " + corr + " " + da);
    }
    void CalcAllTuneUp(const QString& adr) override {
        FakeMain::CalcAllTuneUp(adr);
        state.leadin.Add("ADR " + adr);
    }
};

bool Activate(QWidget* window) {
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

// When `modal`, each box behaves as the window system shows it: it takes the activation while it
// is up, and the window it came from is activated again only after the box is gone.
class ModalMessages : public test::ScriptedMessages {
public:
    MsgAnswer show(const Message& message) override {
        const MsgAnswer answer = ScriptedMessages::show(message);
        if (!modal) {
            return answer;
        }
        if (!box) {
            box = std::make_unique<QWidget>();
        }
        EXPECT_TRUE(Activate(box.get()));
        box->hide();
        return answer;
    }
    bool modal = false;
    std::unique_ptr<QWidget> box;
};

const QString kWaiting = "( ... waiting for weather ... )";
const QString kStamp = "Mon 07/04/2005 at 03:05:09 PM";
const QStringList kGoodPushes = {"CalcAllETPrediction 1.0294 1,468", "CalcAllTuneUp 95.80"};

class WeatherWindow : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        main.state.weatherDir = dir.path();
        main.clock.now = QDateTime(QDate(2005, 7, 4), QTime(15, 5, 9));
        auto fake = std::make_unique<FakeTimer>();
        timer = fake.get();
        w = std::make_unique<frmWeather>(main.Context(logbook.db(), messages), std::move(fake));
        w->show();
        w->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(w.get()));
    }

    QLineEdit* Box(const char* name) { return w->findChild<QLineEdit*>(name); }
    QString Text(const char* name) { return Box(name)->text(); }
    QString Caption(const char* name) { return w->findChild<QLabel*>(name)->text(); }
    void Click(const char* name) {
        QTest::mouseClick(w->findChild<QPushButton*>(name), Qt::LeftButton);
    }
    QString Inputs() {
        return QStringList{Text("txtTemp"), Text("txtHumidity"), Text("txtBarometricPressure"),
                           Text("txtPressureAltitude")}
            .join(' ');
    }
    QString Figures() {
        QStringList texts;
        for (const char* name :
             {"txtCorrFactor", "txtDensityAlt", "txtAirDensity", "txtVaporPressure",
              "txtDryBarometer", "txtDewPoint", "txtWetBulbTemp"}) {
            texts << Text(name);
        }
        return texts.join(' ');
    }

    void Station(const QByteArray& bytes) {
        QFile file(dir.filePath("Barometrix_Weather.txt"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    bool StationFileThere() { return QFile::exists(dir.filePath("Barometrix_Weather.txt")); }
    QByteArray Page() {
        QFile file(dir.filePath("Barometrix_Page.txt"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
    }

    // Types into an input as the user does: focus (which selects the text), keys, Enter.
    void Type(const char* name, const QString& keys) {
        QLineEdit* box = Box(name);
        box->setFocus(Qt::TabFocusReason);
        QCoreApplication::processEvents();
        QTest::keyClicks(box, keys);
        QTest::keyClick(box, Qt::Key_Return);
    }
    void Erase(const char* name) {
        QLineEdit* box = Box(name);
        box->setFocus(Qt::TabFocusReason);
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClick(box, Qt::Key_Return);
    }

    QTemporaryDir dir;
    PagingMain main;
    ModalMessages messages;
    FakeTimer* timer = nullptr;
    test::TempLogbook logbook;  // where the window logs its readings
    std::unique_ptr<frmWeather> w;
};

TEST_F(WeatherWindow, OpensLiveWaitingForTheStationWithEveryControlNamed) {
    EXPECT_EQ(w->windowTitle(), "Weather Calculator - Quadrumex");
    EXPECT_EQ(w->property("helpContext").toInt(), 310);
    EXPECT_EQ(w->findChild<QGroupBox*>("ssfra1")->title(), "Input");

    EXPECT_EQ(Inputs(), "0 0 0 0");
    EXPECT_EQ(Figures(), "0 0 0 0 0 0 0");
    EXPECT_EQ(Caption("WeatherType"), "Live Weather as of");
    EXPECT_EQ(Caption("WeatherTime"), kWaiting);
    EXPECT_TRUE(w->LiveWeather());
    EXPECT_TRUE(Box("txtTemp")->isReadOnly());
    EXPECT_EQ(Box("txtTemp")->focusPolicy(), Qt::ClickFocus);
    EXPECT_EQ(QApplication::focusWidget(), w->findChild<QPushButton*>("cmdLiveWeather"));
    EXPECT_EQ(timer->starts, QList<int>{1000});
    EXPECT_TRUE(timer->isActive());
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_EQ(Page(), "<none>");

    QSignalSpy closed(w.get(), &frmWeather::closed);
    w->close();
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(WeatherWindow, GoodReadingIsComputedPushedPagedAndDeleted) {
    main.state.leadin.Add("stale line");
    Station("Time, Temp, Humidity, Baro\r\nx, 75, 50, 29.92\r\n");
    timer->tick();

    EXPECT_EQ(Inputs(), "75 50 29.92 1");
    EXPECT_EQ(Figures(), "1.0294 1,468 95.80 0.438 29.48 55 62.5");
    EXPECT_EQ(Caption("WeatherTime"), kStamp);
    EXPECT_EQ(main.calls, kGoodPushes);
    EXPECT_EQ(main.state.leadin.Get(), "ET 1.0294 1,468\nADR 95.80");
    EXPECT_EQ(Page(), "PREFIX_REGULAR_BAROMETRIX_PAGING ET 1.0294 1,468\nADR 95.80\r\n");
    EXPECT_FALSE(StationFileThere());
    EXPECT_EQ(timer->interval(), 15000);
    EXPECT_EQ(w->WeatherRecord(),
              "15:05\t75\t50\t29.92\t1\t1.0294\t1,468\t95.80\t0.438\t29.48\t55\t62.5");
    EXPECT_EQ(w->FieldText("txtNoSuchBox"), "");

    // A short record hands its last field on; the station's figures are not range-checked.
    Station("x, 70");
    timer->tick();
    EXPECT_EQ(Inputs(), "70 70 70 1457");
    EXPECT_EQ(main.calls.size(), 4);
    Station("x, 80, 150, 29.92");
    timer->tick();
    EXPECT_EQ(Text("txtWetBulbTemp"), "80.0");
    EXPECT_EQ(main.calls.size(), 6);
    EXPECT_TRUE(messages.shown.empty());

    // A record without a comma-blank changes nothing, and is deleted all the same.
    const QString before = Inputs() + Figures();
    Station("x,70,50,29.92");
    timer->tick();
    EXPECT_EQ(Inputs() + Figures(), before);
    EXPECT_EQ(main.calls.size(), 6);
    EXPECT_FALSE(StationFileThere());

    // Clearing zeroes three inputs and pushes nothing from the zeros.
    w->ClearWeather();
    EXPECT_EQ(Inputs(), "0 0 0 " + Text("txtPressureAltitude"));
    EXPECT_EQ(Figures(), "0 0 0 0 0 0 0");
    EXPECT_EQ(main.calls.size(), 6);
}

TEST_F(WeatherWindow, PollingLooksAt15Then1SecondWhileTheFileStaysAway) {
    for (int i = 0; i < 4; ++i) {
        timer->tick();
    }
    EXPECT_EQ(timer->starts, (QList<int>{1000, 15000, 1000, 15000, 1000}));
    EXPECT_EQ(Caption("WeatherTime"), kWaiting);
    EXPECT_TRUE(main.calls.isEmpty());

    // The directory itself gone: the same, silently.
    main.state.weatherDir = dir.filePath("gone");
    timer->tick();
    timer->tick();
    EXPECT_EQ(timer->starts.mid(5), (QList<int>{15000, 1000}));
    main.state.weatherDir = dir.path();
}

TEST_F(WeatherWindow, ManualModeTypesLeavesTheFilesAloneAndLiveWipesTheInputs) {
    Station("x, 75, 50, 29.92");
    timer->tick();
    main.calls.clear();

    Click("cmdManualWeather");
    EXPECT_FALSE(w->LiveWeather());
    EXPECT_EQ(Caption("WeatherType"), "MANUAL WEATHER as of");
    EXPECT_EQ(Inputs(), "75 50 29.92 1");  // the figures stay
    EXPECT_EQ(Caption("WeatherTime"), kStamp);
    EXPECT_EQ(QApplication::focusWidget(), Box("txtTemp"));
    EXPECT_EQ(Box("txtTemp")->selectedText(), "75");

    // The timer ticks on but doesn't look.
    Station("x, 60, 40, 30.1");
    timer->tick();
    EXPECT_TRUE(StationFileThere());
    EXPECT_EQ(timer->interval(), 15000);
    EXPECT_EQ(Inputs(), "75 50 29.92 1");

    // Keys other than digits, "." and "-" are dropped; Enter moves on, the last input back to
    // the first.
    main.clock.now = main.clock.now.addSecs(60);
    Type("txtTemp", "8a0");
    EXPECT_EQ(Text("txtTemp"), "80");
    EXPECT_EQ(QApplication::focusWidget(), Box("txtHumidity"));
    EXPECT_EQ(Caption("WeatherTime"), "Mon 07/04/2005 at 03:06:09 PM");
    EXPECT_EQ(main.calls, (QStringList{"CalcAllETPrediction 1.0369 1,873", "CalcAllTuneUp 94.70"}));
    Type("txtHumidity", "50");
    Type("txtBarometricPressure", "28");
    EXPECT_EQ(Text("txtPressureAltitude"), "1825");
    EXPECT_EQ(QApplication::focusWidget(), Box("txtPressureAltitude"));
    Type("txtPressureAltitude", "1000");
    EXPECT_EQ(Text("txtBarometricPressure"), "28.86");
    EXPECT_EQ(QApplication::focusWidget(), Box("txtTemp"));
    // Manual pushes add to the lead-in without clearing it, and write no page.
    EXPECT_EQ(main.calls.size(), 8);
    EXPECT_EQ(main.state.leadin.Get().count(u'\n'), 2 + 8 - 1);
    EXPECT_EQ(Page(), "PREFIX_REGULAR_BAROMETRIX_PAGING ET 1.0294 1,468\nADR 95.80\r\n");

    // Back to live: inputs wiped, waiting again; then the reading left there is taken.
    Click("cmdLiveWeather");
    EXPECT_EQ(Inputs(), "0 0 0 0");
    EXPECT_EQ(Figures(), "0 0 0 0 0 0 0");
    EXPECT_EQ(Caption("WeatherTime"), kWaiting);
    timer->tick();
    EXPECT_EQ(Inputs(), "60 40 30.1 -165");
    EXPECT_FALSE(StationFileThere());

    // A second click while live keeps the figures.
    Click("cmdLiveWeather");
    EXPECT_EQ(Inputs(), "60 40 30.1 -165");
}

TEST_F(WeatherWindow, TypedInputsAreRangeCheckedOnLeavingAndZeroDoesNothing) {
    Click("cmdManualWeather");

    Type("txtTemp", "0");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Caption("WeatherTime"), kWaiting);  // not even recalculated

    Type("txtTemp", "130");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, "Valid Temperature Range 32-120");
    EXPECT_EQ(messages.last().title, "");
    EXPECT_EQ(messages.last().buttons, MsgButtons::Ok);
    EXPECT_EQ(Text("txtTemp"), "0");
    EXPECT_EQ(QApplication::focusWidget(), Box("txtTemp"));
    EXPECT_EQ(Caption("WeatherTime"), kWaiting);

    Type("txtTemp", "31.9");
    EXPECT_EQ(messages.shown.size(), 2u);
    Type("txtTemp", "120");
    EXPECT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(Caption("WeatherTime"), kStamp);
    // With no barometer yet the figures are zeros and nothing is pushed.
    EXPECT_EQ(Figures(), "0 0 0 0 0 0 0");
    EXPECT_TRUE(main.calls.isEmpty());

    Type("txtHumidity", "100.5");
    EXPECT_EQ(messages.last().text, "Valid Humidity Range 0-100");
    EXPECT_EQ(QApplication::focusWidget(), Box("txtHumidity"));
    Type("txtHumidity", "100");
    Type("txtBarometricPressure", "31.51");
    EXPECT_EQ(messages.last().text, "Valid Air Pressure Range 20-31.5");
    EXPECT_EQ(Text("txtPressureAltitude"), "0");
    Type("txtBarometricPressure", "19.99");
    EXPECT_EQ(messages.shown.size(), 5u);
    Type("txtBarometricPressure", "20");
    EXPECT_EQ(messages.shown.size(), 5u);
    EXPECT_EQ(main.calls.size(), 2);
    // Every move between the inputs recalculates: leaving the pressure altitude, the
    // temperature, the humidity and the barometer.
    Type("txtTemp", "32");
    Type("txtBarometricPressure", "31.5");
    EXPECT_EQ(messages.shown.size(), 5u);
    EXPECT_EQ(main.calls.size(), 10);
}

TEST_F(WeatherWindow, FailedCalculationKeepsTheFiguresPushesNothingAndSaysWhy) {
    Click("cmdManualWeather");
    Type("txtTemp", "75");
    Type("txtHumidity", "50");
    Type("txtBarometricPressure", "29.92");
    ASSERT_EQ(main.calls, kGoodPushes);
    const QString good = Figures();
    EXPECT_EQ(Caption("lblStatus"), "");

    // An empty humidity counts as zero on leaving it: nothing happens yet.
    Erase("txtHumidity");
    EXPECT_EQ(Caption("lblStatus"), "");
    const qsizetype pushed = main.calls.size();
    Type("txtTemp", "80");
    EXPECT_EQ(Figures(), good);
    EXPECT_EQ(Caption("lblStatus"), "Not calculated: humidity is empty.");
    Type("txtHumidity", "-");
    Type("txtTemp", "81");
    EXPECT_EQ(Caption("lblStatus"), "Not calculated: humidity \"-\" is not a number.");
    EXPECT_EQ(Figures(), good);
    EXPECT_EQ(main.calls.size(), pushed);
    EXPECT_TRUE(messages.shown.empty());

    Type("txtHumidity", "50");
    EXPECT_EQ(Caption("lblStatus"), "");
    EXPECT_EQ(main.calls.size(), pushed + 2);

    // An emptied pressure altitude can't be converted: the barometer stays.
    Erase("txtPressureAltitude");
    EXPECT_EQ(Caption("lblStatus"), "Not calculated: pressure altitude is empty.");
    EXPECT_EQ(Text("txtBarometricPressure"), "29.92");
    EXPECT_EQ(main.calls.size(), pushed + 4);
}

TEST_F(WeatherWindow, TypingOverTheZeroLeftByARangeMessageReplacesIt) {
    messages.modal = true;
    Click("cmdManualWeather");
    QLineEdit* temp = Box("txtTemp");
    QTest::mouseClick(temp, Qt::LeftButton);
    QCoreApplication::processEvents();
    QTest::keyClicks(temp, "130");
    QTest::keyClick(temp, Qt::Key_Tab);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(Text("txtTemp"), "0");
    // The box is gone and the window system hands the activation back.
    ASSERT_TRUE(Activate(w.get()));
    ASSERT_EQ(QApplication::focusWidget(), temp);
    QTest::keyClicks(temp, "80");
    QTest::keyClick(temp, Qt::Key_Tab);
    EXPECT_EQ(Text("txtTemp"), "80");
    EXPECT_EQ(messages.shown.size(), 1u);

    // Coming back from another window is no new entry: typing goes on where it was.
    QLineEdit* humidity = Box("txtHumidity");
    ASSERT_EQ(QApplication::focusWidget(), humidity);
    QTest::keyClicks(humidity, "5");
    QWidget other;
    ASSERT_TRUE(Activate(&other));
    ASSERT_TRUE(Activate(w.get()));
    QTest::keyClicks(humidity, "0");
    EXPECT_EQ(Text("txtHumidity"), "50");
}

TEST_F(WeatherWindow, UnusableStationReadingLeavesTheInputsWithTheirFigures) {
    Station("x, 75, 50, 29.92");
    timer->tick();
    main.calls.clear();
    const QByteArray page = Page();
    const QString good = Inputs() + " / " + Figures();
    main.clock.now = main.clock.now.addSecs(60);

    const auto notUsed = [&](const QByteArray& record, const QString& why) {
        SCOPED_TRACE(record.toStdString());
        Station(record);
        timer->tick();
        EXPECT_EQ(Caption("lblStatus"), "Station reading not used: " + why + ".");
        EXPECT_EQ(Inputs() + " / " + Figures(), good);
        EXPECT_FALSE(StationFileThere());
    };
    notUsed("x, 99999, 50, 29.92", "temperature 99999 is out of range (32-120)");
    notUsed("x, 250, 150, 29.92",
            "temperature 250 is out of range (32-120) and humidity 150 is out of range (0-100)");
    notUsed("x, 75, 50, abc", "barometric pressure \"abc\" is not a number");
    notUsed("x, 75, zz, 29.92", "humidity \"zz\" is not a number");
    notUsed("x, 75, 50, 1e80", "barometric pressure 1e80 is out of range (20-31.5)");
    // A record that stops after the temperature.
    notUsed("x, 80, ", "humidity is empty");
    EXPECT_EQ(Caption("WeatherTime"), kStamp);
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_EQ(Page(), page);
    EXPECT_TRUE(messages.shown.empty());

    // A zero temperature is used, with the figures cleared beside it.
    Station("x, 0, 50, 29.92");
    timer->tick();
    EXPECT_EQ(Inputs() + " / " + Figures(), "0 50 29.92 1 / 0 0 0 0 0 0 0");
    EXPECT_EQ(Caption("lblStatus"), "");
    EXPECT_TRUE(main.calls.isEmpty());

    // Far beyond any weather and with no humidity to speak of, the reading is taken as it
    // comes (the arithmetic's tests hold its search to a few dozen rounds).
    Station("x, 30000000, -50, 29.92");
    timer->tick();
    EXPECT_EQ(Text("txtTemp"), "30000000");
    EXPECT_EQ(Text("txtWetBulbTemp"), "0.0");
    EXPECT_EQ(Caption("lblStatus"), "");

    Station("x, 75, 50, 29.92");
    timer->tick();
    EXPECT_EQ(Inputs() + " / " + Figures(), good);
    EXPECT_EQ(Caption("WeatherTime"), "Mon 07/04/2005 at 03:06:09 PM");
}

TEST_F(WeatherWindow, EveryComputedReadingIsLoggedWithTheClocksTimeAndItsSource) {
    const auto logged = [this] {
        QStringList rows;
        store::Query q = logbook.db().OpenQuery(
            "SELECT dtReading_dt, iTemp_val, iHumidity_val, iBarometricPressure_val, "
            "iPressureAltitude_val, iCorrFactor_val, iDensityAlt_val, iWetBulbTemp_val, "
            "sSource_nm FROM tblWeatherLog ORDER BY lWeatherLog_id");
        while (q.Next()) {
            QStringList cells;
            for (int i = 0; i < q.FieldCount(); ++i) {
                cells << q.Text(i);
            }
            rows << cells.join(' ');
        }
        return rows;
    };

    // Opening, and the zeros of going live, are no reading.
    EXPECT_TRUE(logged().isEmpty());
    Station("x, 75, 50, 29.92");
    timer->tick();
    EXPECT_EQ(logged(), QStringList{"2005-07-04 15:05:09 75.0 50.0 29.92 1.0 1.0294 1468.0 62.5 "
                                    "Station"});

    // The station's next reading 15 seconds on is the same air: not written again.
    main.clock.now = main.clock.now.addSecs(15);
    Station("x, 75, 50, 29.92");
    timer->tick();
    EXPECT_EQ(logged().size(), 1);
    main.clock.now = main.clock.now.addSecs(15);
    Station("x, 76, 50, 29.92");
    timer->tick();
    EXPECT_EQ(logged().size(), 2);
    EXPECT_TRUE(logged().last().startsWith("2005-07-04 15:05:39 76.0 "));

    // Typed readings, each as it is worked out; a temperature of 0 computes nothing to keep.
    Click("cmdManualWeather");
    main.clock.now = main.clock.now.addSecs(120);
    Type("txtTemp", "80");
    EXPECT_EQ(logged().size(), 3);
    EXPECT_EQ(logged().last(), "2005-07-04 15:07:39 80.0 50.0 29.92 1.0 1.0369 1873.0 66.5 Typed");
    Type("txtTemp", "0");
    Type("txtHumidity", "40");
    EXPECT_EQ(Figures(), "0 0 0 0 0 0 0");
    EXPECT_EQ(logged().size(), 3);

    // A log that can't be written costs the reading its row, nothing else: no box, the figures
    // shown, pushed and paged as always, and the status line says so.
    logbook.db().Execute("DROP TABLE tblWeatherLog");
    Click("cmdLiveWeather");
    main.calls.clear();
    Station("x, 75, 50, 29.92");
    timer->tick();
    EXPECT_EQ(Figures(), "1.0294 1,468 95.80 0.438 29.48 55 62.5");
    EXPECT_EQ(main.calls, kGoodPushes);
    EXPECT_EQ(Page(), "PREFIX_REGULAR_BAROMETRIX_PAGING ET 1.0294 1,468\nADR 95.80\r\n");
    EXPECT_TRUE(Caption("lblStatus").startsWith("Not kept in the weather log: "))
        << Caption("lblStatus").toStdString();
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(w->isVisible());
    EXPECT_TRUE(timer->isActive());
}

}  // namespace
