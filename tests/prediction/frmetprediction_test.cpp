// The prediction window of a car: loaded from the picked run, driven by clicks and typing, and
// recalculated by the weather without a box.

#include "prediction/ui/frmETPrediction.h"
#include "common/tools.h"
#include "shell/pageleadin.h"
#include "support/gui.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace slipbook;
using namespace slipbook::test;
using prediction::frmETPrediction;

namespace {

struct PredictionWindow : WindowTest {
    PredictionWindow() {
        main.state.view = tools::kRuns;
        main.weather.insert(QStringLiteral("txtCorrFactor"), QStringLiteral("1.1"));
        main.weather.insert(QStringLiteral("txtDensityAlt"), QStringLiteral("2500"));
    }

    qint64 AddRun(const QString& values) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lCar_id, lRun_num, iCorrFactor_val, "
                           "iDensityAlt_val, i14Mile_et, i18Mile_et, i1000Foot_et, i14Mile_mph, "
                           "sThrottleStop2_val) VALUES (1, ") +
            values + u')');
        return Scalar(QStringLiteral("SELECT max(lRun_id) FROM tblRuns")).toLongLong();
    }
    void AddSetup(qint64 runId, const char* category) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblCarSetup (lRun_id, lCar_id, iCorrFactor_val, "
                           "iDensityAlt_val, i14Mile_et, i18Mile_et, sThrottleStop2_val, "
                           "sSetup_cat, bEighthNotQuarter) SELECT lRun_id, lCar_id, "
                           "iCorrFactor_val, iDensityAlt_val, i14Mile_et, i18Mile_et, "
                           "sThrottleStop2_val, '%1', 0 FROM tblRuns WHERE lRun_id = %2")
                .arg(QLatin1String(category))
                .arg(runId));
    }

    std::unique_ptr<frmETPrediction> Open(qint64 runId) {
        main.keyText = runId == 0 ? QString() : QString::number(runId);
        auto w = std::make_unique<frmETPrediction>(Context());
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        return w;
    }
    static QString Text(frmETPrediction& w, const char* name) {
        return Child<QLineEdit>(w, name)->text();
    }
    static QString Label(frmETPrediction& w, const char* name) {
        return Child<QLabel>(w, name)->text();
    }
    static void Click(frmETPrediction& w, const char* name) {
        auto* b = Child<QAbstractButton>(w, name);
        ASSERT_TRUE(b->isVisible() && b->isEnabled()) << name;
        QTest::mouseClick(b, Qt::LeftButton);
    }
};

TEST_F(PredictionWindow, LoadsTheRunAndCalculatesEachProgram) {
    const qint64 run = AddRun(QStringLiteral("7, 1.05, 1500, 11.5, 7.2, 9.1, 120, '2.10'"));
    auto w = Open(run);
    ShowActive(*w);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Car #1 (My Race Car) Prediction"));
    EXPECT_EQ(w->CarNumber(), QStringLiteral("1"));
    EXPECT_EQ(Text(*w, "txtOldCorr"), QStringLiteral("1.05 "));
    EXPECT_EQ(Text(*w, "txtOldET"), QStringLiteral("11.5 "));
    EXPECT_EQ(Text(*w, "txtNewCorr"), QStringLiteral("1.1"));
    EXPECT_TRUE(Child<QRadioButton>(*w, "optGas")->isChecked());
    Click(*w, "cmdCalc0");
    EXPECT_EQ(Text(*w, "txtDialIn"), QStringLiteral("11.68"));
    Click(*w, "optMethanol");
    EXPECT_EQ(Text(*w, "txtDialIn"), QString());
    Click(*w, "cmdCalc0");
    EXPECT_EQ(Text(*w, "txtDialIn"), QStringLiteral("11.603"));
    Type(Child<QLineEdit>(*w, "txtOldCorr"), QStringLiteral("0"));
    EXPECT_EQ(Text(*w, "txtDialIn"), QString());
    EXPECT_EQ(Label(*w, "lblWhyNoSTDCalculate"),
              QStringLiteral("Oops! Old correction factor is missing"));
    EXPECT_FALSE(Child<QPushButton>(*w, "cmdCalc0")->isEnabled());

    // The run completer takes the run's 1000 ft and quarter-mile figures.
    Click(*w, "cmdRC");
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdSetup")->isVisible());
    EXPECT_EQ(Text(*w, "txtOldInterimET"), QStringLiteral("9.1 "));
    EXPECT_EQ(Label(*w, "lblWhyNoRCCalculate"),
              QStringLiteral("Oops! Please provide nonzero new interim ET"));
    Type(Child<QLineEdit>(*w, "txtRCNewInterimET"), QStringLiteral("9"));
    Click(*w, "cmdCalc3");
    EXPECT_EQ(Text(*w, "txtRCEstET"), QStringLiteral("11.374"));
    EXPECT_EQ(Text(*w, "txtRCEstMPH"), QStringLiteral("121.33"));

    // Throttle stop: two setup runs, the desired ET typed, the new corr from the weather.
    AddSetup(AddRun(QStringLiteral("1, 1.0, 1000, 9.90, 6.2, 7.7, 140, '2.00'")), "TS");
    AddSetup(AddRun(QStringLiteral("2, 1.0, 1000, 10.10, 6.3, 7.8, 139, '2.20'")), "TS");
    Click(*w, "cmdTS");
    EXPECT_TRUE(Child<QPushButton>(*w, "sscmdSetup")->isVisible());
    EXPECT_EQ(Text(*w, "txtTSR2Timer"), QStringLiteral("2.20 "));
    Type(Child<QLineEdit>(*w, "txtTSOldCorr"), QStringLiteral("1.0"));
    Type(Child<QLineEdit>(*w, "txtTSOldET"), QStringLiteral("10.00"));
    Type(Child<QLineEdit>(*w, "txtTSNewCorr"), QStringLiteral("1.05"));
    Type(Child<QLineEdit>(*w, "txtTSDesiredET"), QStringLiteral("10"));
    EXPECT_EQ(Label(*w, "lblWhyNoTSCalculate"), QString());
    Click(*w, "cmdCalc2");
    EXPECT_EQ(Text(*w, "txtTSNewTimer"), QStringLiteral("1.937"));
    EXPECT_EQ(Label(*w, "lbTSInfo"), QStringLiteral(".01 ET= 0.01"));
    Grab(*w, QStringLiteral("prediction-ts"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(PredictionWindow, DensityAltitudeFromSetupRunsWithItsBoxesOnClicksOnly) {
    const qint64 last = AddRun(QStringLiteral("9, 1.0, 1500, 10.05, 6.4, 8, 130, Null"));
    auto w = Open(last);
    ShowActive(*w);
    // Too few setup runs: the click says so in a box, the reason stays beside the button.
    Click(*w, "cmdDA");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("You must enter setup information for this car before continuing"));
    EXPECT_EQ(Label(*w, "lblWhyNoDACalculate"),
              QStringLiteral("Oops! Three setup runs with nonzero DA required"));
    // A weather reading then raises nothing.
    main.CalcAllETPrediction(QStringLiteral("1.1"), QStringLiteral("2500"));
    w->ApplyWeather(QStringLiteral("1.1"), QStringLiteral("2500"));
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(main.state.leadin.Get().isEmpty());

    AddSetup(AddRun(QStringLiteral("1, 1.0, 1000, 10.00, 6, 7, 130, Null")), "DA");
    AddSetup(AddRun(QStringLiteral("2, 1.0, 2000, 10.10, 6, 7, 130, Null")), "DA");
    AddSetup(AddRun(QStringLiteral("3, 1.0, 3000, 10.20, 6, 7, 130, Null")), "DA");
    main.events.recordsChanged(QStringLiteral("tblCarSetup"));
    EXPECT_EQ(Text(*w, "txtDA3"), QStringLiteral("3000"));
    EXPECT_TRUE(Child<QPushButton>(*w, "cmdCalc1")->isEnabled());

    // The worked setup: a push computes the dial-in, its slope note goes beside it, no box.
    w->ApplyWeather(QStringLiteral("1.1"), QStringLiteral("2500"));
    EXPECT_EQ(Text(*w, "txtDADialIn"), QStringLiteral("10.15"));
    EXPECT_EQ(Label(*w, "lbInfo"), QStringLiteral(".01 sec = 100Ft."));
    EXPECT_EQ(Label(*w, "lblWhyNoDACalculate"),
              QStringLiteral("Invalid setup information.  Runs must have different density "
                             "altitudes."));
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(main.state.leadin.Get(), shell::FormatPageLeadin("1", "ET: 10.15"));
    Grab(*w, QStringLiteral("prediction-da"));
    // The click shows the same note as a box.
    Click(*w, "cmdCalc1");
    EXPECT_EQ(messages.shown.size(), 2u);

    // The last run's ET is shown to three places when the box is left.
    Type(Child<QLineEdit>(*w, "txtLastRunET"), QStringLiteral("10.1"));
    Leave(Child<QLineEdit>(*w, "txtLastRunET"));
    EXPECT_EQ(Text(*w, "txtLastRunET"), QStringLiteral("10.100"));

    // Clear Setup asks, then empties the boxes and turns Calculate off.
    messages.answer(MsgAnswer::Yes);
    Click(*w, "sscmdClearSetup");
    EXPECT_EQ(messages.last().text, QStringLiteral("Clear DA Setup Information?"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Confirm"));
    EXPECT_EQ(Text(*w, "txtDA1"), QString());
    EXPECT_FALSE(Child<QPushButton>(*w, "cmdCalc1")->isEnabled());

    // The distance of one program is the other's too.
    Click(*w, "opt18MileDA");
    EXPECT_TRUE(Child<QRadioButton>(*w, "opt18MileTS")->isChecked());
}

TEST_F(PredictionWindow, FocusTakesTheWeatherAndTheWindowStaysOnItsCar) {
    auto w = Open(0);
    ShowActive(*w);
    // A car without a picked run opens with blank figures.
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Car #1 (My Race Car) Prediction"));
    EXPECT_EQ(Text(*w, "txtOldET"), QString());
    Click(*w, "cmdDA");
    messages.shown.clear();
    Child<QLineEdit>(*w, "txtNewDA")->clear();
    main.weather.insert(QStringLiteral("txtDensityAlt"), QStringLiteral("1,234"));
    QTest::mouseClick(Child<QLineEdit>(*w, "txtNewDA"), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(Text(*w, "txtNewDA"), QStringLiteral("1,234"));
    EXPECT_EQ(Child<QLineEdit>(*w, "txtNewDA")->selectedText(), QStringLiteral("1,234"));

    // Another car in the main window: the distance is locked, the note shown once.
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num) VALUES (2, 'Other', '22')"));
    main.state.car.id = 2;
    QWidget other;
    ShowActive(other);
    ShowActive(*w);
    ShowActive(other);
    ShowActive(*w);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_TRUE(messages.last().text.startsWith(QStringLiteral("Please note: Because")));
    EXPECT_FALSE(Child<QRadioButton>(*w, "opt14MileDA")->isEnabled());
    // Reloading on the other car closes this window, not the program.
    w->FormReLoad();
    EXPECT_TRUE(messages.last().text.endsWith(QStringLiteral("Goodbye.")));
    EXPECT_FALSE(w->isVisible());
}

TEST_F(PredictionWindow, AFailedLoadSaysSoAndCloses) {
    auto w = Open(424242);
    w->show();
    QApplication::setActiveWindow(w.get());
    for (int i = 0; i < 100 && w->isVisible(); ++i) {
        QTest::qWait(10);
    }
    EXPECT_EQ(messages.last().text,
              QStringLiteral(
                  "You must enter 'TS Setup' and run information for this car before continuing"));
    EXPECT_FALSE(w->isVisible());
}

}  // namespace
