// The test-and-tune window: loaded from the picked run at either distance, the two fuel
// choices kept as one, each program calculated from what is typed, and a failed load.

#include "testtune/ui/frmTestTune.h"
#include "common/tools.h"
#include "support/gui.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace slipbook;
using namespace slipbook::test;
using testtune::frmTestTune;

namespace {

struct TestTuneWindow : WindowTest {
    TestTuneWindow() {
        main.state.view = tools::kRuns;
        logbook.db().Execute(
            QStringLiteral("UPDATE tblCars SET sCarFuel_typ = 'METHANOL', iCarWeight_val = 2450 "
                           "WHERE lCar_id = 1"));
        run = AddRun(QStringLiteral("1.05, 1.30, 4.00, 6.50, 131.5, 8.50, 10.20, 130"));
    }
    // Factor, 60', 330', 1/8 ET, 1/8 MPH, 1000', 1/4 ET, 1/4 MPH.
    qint64 AddRun(const QString& values) {
        logbook.db().Execute(
            QStringLiteral("INSERT INTO tblRuns (lCar_id, lRun_num, iCorrFactor_val, i60Foot_et, "
                           "i330Foot_et, i18Mile_et, i18Mile_mph, i1000Foot_et, i14Mile_et, "
                           "i14Mile_mph) VALUES (1, 1, ") +
            values + u')');
        return Scalar(QStringLiteral("SELECT max(lRun_id) FROM tblRuns")).toLongLong();
    }
    std::unique_ptr<frmTestTune> Open(const QString& key) {
        main.keyText = key;
        auto w = std::make_unique<frmTestTune>(Context());
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        if (key.isEmpty()) {
            // It closes as it is activated.
            w->show();
            QApplication::setActiveWindow(w.get());
            for (int i = 0; i < 100 && w->isVisible(); ++i) {
                QTest::qWait(10);
            }
        } else {
            ShowActive(*w);
        }
        return w;
    }
    static QString Text(frmTestTune& w, const char* name) {
        return Child<QLineEdit>(w, name)->text();
    }
    static QStringList Texts(frmTestTune& w, std::initializer_list<const char*> names) {
        QStringList out;
        for (const char* n : names) {
            out << Text(w, n);
        }
        return out;
    }
    static bool On(frmTestTune& w, const char* name) {
        return Child<QAbstractButton>(w, name)->isChecked();
    }
    static bool Enabled(frmTestTune& w, const char* name) {
        return Child<QWidget>(w, name)->isEnabled();
    }
    static void Click(frmTestTune& w, const char* name) {
        auto* b = Child<QAbstractButton>(w, name);
        ASSERT_TRUE(b->isVisible() && b->isEnabled()) << name;
        QTest::mouseClick(b, Qt::LeftButton);
    }
    static void TypeInto(frmTestTune& w, const char* name, const QString& text) {
        Type(Child<QLineEdit>(w, name), text);
    }

    qint64 run = 0;
};

TEST_F(TestTuneWindow, LoadsThePickedRunIntoEveryProgramAtEitherDistance) {
    auto w = Open(QString::number(run));
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Test & Tune Programs - Quadrumex"));
    EXPECT_EQ(w->Showing(), frmTestTune::Program::StandardDay);
    EXPECT_EQ(Texts(*w, {"txtStdCorr", "txtStdET", "txtStdMPH"}),
              QStringList({"1.05 ", "10.2 ", "130 "}));
    EXPECT_EQ(Texts(*w, {"txtITCorr", "txtIT60", "txtIT330", "txtIT660", "txtIT1000", "txtIT1320"}),
              QStringList({"1.05 ", "1.3 ", "4 ", "6.5 ", "8.5 ", "10.2 "}));
    EXPECT_EQ(Texts(*w, {"txtEHPET", "txtEHP14MPH", "txtEHPWeight", "txtEHPCorr"}),
              QStringList({"10.2 ", "130 ", "2450 ", "1.05 "}));
    // The horsepower always starts at 725; the weight is the car's.
    EXPECT_EQ(Texts(*w, {"txtEETEstHP", "txtEETEstWeight"}), QStringList({"725", "2450 "}));
    EXPECT_TRUE(On(*w, "optMethanol") && On(*w, "optMethanol2"));
    Grab(*w, QStringLiteral("testtune-stdday"));
    // Every program can calculate at once; a 1000 ft time under 10 s before a quarter over it is
    // in order.
    for (const char* calc : {"cmdCalc0", "cmdCalc1", "cmdCalc2", "cmdCalc3"}) {
        EXPECT_TRUE(Enabled(*w, calc)) << calc;
    }

    // The eighth mile reloads from the run: what was typed anywhere is gone, the MPH boxes are
    // off, and the ET is the eighth-mile one.
    Click(*w, "cmdEstHP");
    TypeInto(*w, "txtEHPWeight", QStringLiteral("3000"));
    Click(*w, "cmdCalc2");
    EXPECT_EQ(Text(*w, "txtEHPEstimatedHP"), QStringLiteral("558"));
    Click(*w, "opt18Mile");
    EXPECT_EQ(Texts(*w, {"txtEHPET", "txtEHP14MPH", "txtEHPWeight", "txtEHPEstimatedHP"}),
              QStringList({"6.5 ", "", "2450 ", ""}));
    EXPECT_FALSE(Enabled(*w, "txtEHP14MPH"));
    EXPECT_FALSE(Enabled(*w, "txtEHPMPHHP"));
    Click(*w, "cmdCalc2");
    Grab(*w, QStringLiteral("testtune-esthp"));
    EXPECT_EQ(Texts(*w, {"txtEHPEstimatedHP", "txtEHPCorrectedHP", "txtEHPMPHHP"}),
              QStringList({"451", "473", ""}));
    // Clicking the option already on keeps what was typed.
    TypeInto(*w, "txtEHPWeight", QStringLiteral("2500"));
    Click(*w, "opt18Mile");
    EXPECT_EQ(Text(*w, "txtEHPWeight"), QStringLiteral("2500"));
    Click(*w, "opt14Mile");
    EXPECT_EQ(Texts(*w, {"txtEHPET", "txtEHP14MPH", "txtEHPWeight"}),
              QStringList({"10.2 ", "130 ", "2450 "}));
    EXPECT_TRUE(Enabled(*w, "txtEHP14MPH"));
}

TEST_F(TestTuneWindow, TypingClearsResultsAndEachProgramCalculatesOrSaysWhyNot) {
    auto w = Open(QString::number(run));
    Click(*w, "cmdCalc0");
    const QStringList methanol = Texts(*w, {"txtStdStdET", "txtStdStdMPH"});
    // Both fuel choices are one: a click on either pair moves the other and clears the results
    // of both programs.
    Click(*w, "cmdIntTime");
    Click(*w, "cmdCalc1");
    EXPECT_FALSE(Text(*w, "txtIT60Result").isEmpty());
    Click(*w, "optGas");
    EXPECT_TRUE(On(*w, "optGas2"));
    EXPECT_TRUE(Text(*w, "txtIT60Result").isEmpty());
    Click(*w, "cmdCalc1");
    EXPECT_EQ(Texts(*w, {"txtIT60Result", "txtIT330Result", "txtIT660Result", "txtIT1000Result",
                         "txtIT1320Result"}),
              QStringList({"1.279", "3.935", "6.395", "8.363", "10.035"}));
    Click(*w, "cmdStdDay");
    EXPECT_EQ(Text(*w, "txtStdStdET"), QString());
    TypeInto(*w, "txtStdET", QStringLiteral("10.00"));
    Click(*w, "cmdCalc0");
    EXPECT_EQ(Texts(*w, {"txtStdStdET", "txtStdStdMPH"}), QStringList({"9.839", "132.1"}));
    EXPECT_NE(methanol[0], QStringLiteral("9.839"));
    Click(*w, "optMethanol2");
    EXPECT_TRUE(On(*w, "optMethanol"));
    EXPECT_EQ(Text(*w, "txtStdStdET"), QString());

    // A text that is no number stops the calculation with a reason, and the window goes on.
    TypeInto(*w, "txtStdMPH", QStringLiteral("fast"));
    Click(*w, "cmdCalc0");
    EXPECT_EQ(Child<QLabel>(*w, "lblWhyStopped0")->text(), QStringLiteral("Type mismatch"));
    EXPECT_EQ(Text(*w, "txtStdStdET"), QString());
    TypeInto(*w, "txtStdMPH", QStringLiteral("130"));
    EXPECT_EQ(Child<QLabel>(*w, "lblWhyStopped0")->text(), QString());
    TypeInto(*w, "txtStdCorr", QString());
    EXPECT_FALSE(Enabled(*w, "cmdCalc0"));

    // The intermediate points out of order keep Calculate off; a bad point stops the series
    // there and the points before it stay.
    Click(*w, "cmdIntTime");
    Click(*w, "optGas");
    TypeInto(*w, "txtIT1000", QStringLiteral("11"));
    EXPECT_FALSE(Enabled(*w, "cmdCalc1"));
    TypeInto(*w, "txtIT1000", QStringLiteral("8.5"));
    TypeInto(*w, "txtIT660", QStringLiteral("6.5s"));
    Click(*w, "cmdCalc1");
    EXPECT_EQ(Texts(*w, {"txtIT60Result", "txtIT330Result", "txtIT660Result"}),
              QStringList({"1.279", "3.935", ""}));
    EXPECT_EQ(Child<QLabel>(*w, "lblWhyStopped1")->text(), QStringLiteral("Type mismatch"));
    Grab(*w, QStringLiteral("testtune-inttime"));

    // Estimated ET from a typed horsepower; a zero weight writes the times and stops.
    Click(*w, "cmdEstET");
    TypeInto(*w, "txtEETEstWeight", QStringLiteral("2500"));
    Click(*w, "cmdCalc3");
    EXPECT_EQ(Texts(*w, {"txtEET14MileEt", "txtEET18MileEt", "txtEET14MileMPH", "txtEET18MileMPH"}),
              QStringList({"8.8", "5.59", "154.89", "127.01"}));
    TypeInto(*w, "txtEETEstWeight", QStringLiteral("0"));
    EXPECT_EQ(Text(*w, "txtEET14MileEt"), QString());
    Click(*w, "cmdCalc3");
    EXPECT_EQ(Texts(*w, {"txtEET14MileEt", "txtEET14MileMPH"}), QStringList({"0", ""}));
    EXPECT_EQ(Child<QLabel>(*w, "lblWhyStopped3")->text(), QStringLiteral("Division by zero"));
    Grab(*w, QStringLiteral("testtune-estet"));
}

TEST_F(TestTuneWindow, WithoutAPickedRunItSaysSoAndCloses) {
    auto w = Open(QString());
    EXPECT_EQ(messages.last().text,
              QStringLiteral("You must enter run information for this car before continuing"));
    EXPECT_FALSE(w->isVisible());

    // A run with no intermediate times loads blanks that keep that program off.
    logbook.db().Execute(QStringLiteral("UPDATE tblRuns SET i60Foot_et = Null"));
    auto again = Open(QString::number(run));
    EXPECT_TRUE(again->isVisible());
    EXPECT_EQ(Text(*again, "txtIT60"), QStringLiteral(" "));
    EXPECT_FALSE(Enabled(*again, "cmdCalc1"));
    EXPECT_TRUE(Enabled(*again, "cmdCalc0"));
}

}  // namespace
