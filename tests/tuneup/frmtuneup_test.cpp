// The tune-up window of a car: loaded from the car, a run or a what-if, recalculated by typing
// and by the weather without a box, saved to the car or the run, and still there when its car
// or run has gone.

#include "tuneup/ui/frmTuneUp.h"
#include "common/tools.h"
#include "shell/pageleadin.h"
#include "support/gui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace slipbook;
using namespace slipbook::test;
using tuneup::frmTuneUp;

namespace {

const QColor kLocked(0xC0, 0xE0, 0xF0);
const QColor kWhite(0xFF, 0xFF, 0xFF);
const QColor kPaleYellow(0xFF, 0xFF, 0xC0);

struct TuneUpWindow : WindowTest {
    TuneUpWindow() { main.weather.insert(QStringLiteral("txtAirDensity"), QStringLiteral("95")); }

    void SetCar(qint64 carId, const QString& assignments) {
        logbook.db().Execute(QStringLiteral("UPDATE tblCars SET ") + assignments +
                             QStringLiteral(" WHERE lCar_id = ") + QString::number(carId));
    }
    qint64 AddRun(qint64 carId, const QString& columns, const QString& values) {
        logbook.db().Execute(QStringLiteral("INSERT INTO tblRuns (lCar_id, lRun_num, %1) VALUES "
                                            "(%2, 1, %3)")
                                 .arg(columns)
                                 .arg(carId)
                                 .arg(values));
        return Scalar(QStringLiteral("SELECT max(lRun_id) FROM tblRuns")).toLongLong();
    }
    QString Column(const char* table, const char* key, qint64 id, const QString& column) {
        return Scalar(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = %4")
                          .arg(column, QLatin1String(table), QLatin1String(key))
                          .arg(id))
            .toString();
    }
    std::unique_ptr<frmTuneUp> Open() {
        auto w = std::make_unique<frmTuneUp>(Context());
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        return w;
    }
    static QLineEdit* Box(QWidget& w, const QString& name) { return Child<QLineEdit>(w, name); }
    static QString Text(QWidget& w, const QString& name) { return Box(w, name)->text(); }
    static QString Label(QWidget& w, const char* name) { return Child<QLabel>(w, name)->text(); }
    static QColor Background(QWidget& w, const char* name) {
        return Box(w, name)->palette().color(QPalette::Base);
    }
    static void Click(QWidget& w, const char* name) {
        auto* b = Child<QAbstractButton>(w, name);
        ASSERT_TRUE(b->isVisible() && b->isEnabled()) << name;
        QTest::mouseClick(b, Qt::LeftButton);
    }
    // The "old tune-up" list of the panel showing.
    static QComboBox* OldTuneUpList(QWidget& w) {
        for (const char* panel : {"ssfraHolley", "ssfraPrecision", "ssfraFuelInjection"}) {
            auto* frame = Child<QGroupBox>(w, panel);
            if (frame->isVisible()) {
                return frame->findChild<QComboBox*>(QStringLiteral("cboOldTuneUp"));
            }
        }
        return nullptr;
    }
    static QString Nozzle(int i) { return QStringLiteral("txtNozzle(%1)").arg(i); }
    static QString NewNozzle(int i) { return QStringLiteral("txtNewNozzle(%1)").arg(i); }
};

TEST_F(TuneUpWindow, ANeverTunedCarIsSetUpByHandAndThenCalculatesFromWhatWasSaved) {
    auto w = Open();
    ShowActive(*w);
    EXPECT_EQ(main.lockCount, 1);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Car #1 (My Race Car) Tune-Up"));
    EXPECT_EQ(w->CarNumber(), QStringLiteral("1"));
    EXPECT_TRUE(Child<QGroupBox>(*w, "ssfraHolley")->isVisible());
    EXPECT_FALSE(Child<QGroupBox>(*w, "ssfraPrecision")->isVisible());
    EXPECT_TRUE(Child<QRadioButton>(*w, "ssoptCarbHolleyJet")->isChecked());
    EXPECT_TRUE(Child<QRadioButton>(*w, "ssoptGas")->isChecked());
    EXPECT_EQ(OldTuneUpList(*w)->currentText(), QStringLiteral("CAR as saved"));
    // No base: manual set-up, ticked in red, the result box open for typing.
    auto* manual = Child<QCheckBox>(*w, "chkHolleyManual");
    EXPECT_TRUE(manual->isChecked());
    EXPECT_EQ(manual->text(), QStringLiteral("First time or manual setup?"));
    EXPECT_EQ(manual->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_TRUE(Text(*w, "txtBaseADR").isEmpty());
    EXPECT_TRUE(Box(*w, "txtBaseADR")->isReadOnly());
    EXPECT_EQ(Background(*w, "txtBaseADR"), kLocked);
    EXPECT_FALSE(Box(*w, "txtNewJet")->isReadOnly());
    EXPECT_EQ(Background(*w, "txtNewJet"), kWhite);
    EXPECT_EQ(FocusName(*w), QStringLiteral("txtNewADR"));
    // The empty new ADR took the weather's on activation.
    EXPECT_EQ(Text(*w, "txtNewADR"), QStringLiteral("95"));
    Grab(*w, QStringLiteral("tuneup-manual"));

    // Nothing is calculated: what is typed stays.
    Type(Box(*w, "txtNewJet"), QStringLiteral("71"));
    Type(Box(*w, "txtNewADR"), QStringLiteral("98"));
    Type(Box(*w, "txtTuneAdjust"), QStringLiteral("2"));
    EXPECT_EQ(Text(*w, "txtNewJet"), QStringLiteral("71"));
    EXPECT_EQ(Text(*w, "txtPreNewADR"), QStringLiteral("98"));
    EXPECT_EQ(Text(*w, "txtFINewADR"), QStringLiteral("98"));

    Click(*w, "cmdSaveAll");
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sBaseADR"), QStringLiteral("98"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sBaseJet"), QStringLiteral("71"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sCarCarb_typ"), QStringLiteral("CARB"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sCarFuel_typ"), QStringLiteral("GAS"));
    EXPECT_TRUE(main.calls.contains(QStringLiteral("recordsChanged tblCars")));
    // The saved tune-up is the old one now, and the window calculates from it.
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("98"));
    EXPECT_EQ(Text(*w, "txtBaseJet"), QStringLiteral("71"));
    EXPECT_FALSE(manual->isChecked());
    EXPECT_NE(manual->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_TRUE(Box(*w, "txtNewJet")->isReadOnly());
    EXPECT_EQ(Background(*w, "txtNewJet"), kPaleYellow);
    EXPECT_EQ(Text(*w, "txtTuneAdjust"), QStringLiteral("0"));
    EXPECT_EQ(Text(*w, "txtNewJet"), QStringLiteral("71"));

    // Opened again, it starts from the saved tune-up.
    w.reset();
    EXPECT_EQ(main.lockCount, 0);
    auto again = Open();
    ShowActive(*again);
    EXPECT_EQ(Text(*again, "txtBaseADR"), QStringLiteral("98"));
    EXPECT_EQ(Text(*again, "txtBaseJet"), QStringLiteral("71"));
    EXPECT_FALSE(again->ManualSetup());
    EXPECT_EQ(FocusName(*again), QStringLiteral("txtTuneAdjust"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(TuneUpWindow, TypingAndTheWeatherRecalculateEveryWindowWithoutABox) {
    SetCar(1, QStringLiteral("sBaseADR = '100', sBaseJet = '72'"));
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ, sCarFuel_typ, sBaseADR, "
        "sBaseJetDiameter) VALUES (2, 'Dragster', '22', 'PRECCARB', 'METHANOL', '95', '0.076')"));
    auto holley = Open();
    main.state.car.id = 2;
    auto precision = Open();
    ShowActive(*holley);
    EXPECT_EQ(main.lockCount, 2);
    EXPECT_EQ(FocusName(*holley), QStringLiteral("txtTuneAdjust"));
    EXPECT_TRUE(Child<QGroupBox>(*precision, "ssfraPrecision")->isVisibleTo(precision.get()));
    EXPECT_TRUE(Child<QRadioButton>(*precision, "ssoptMethanol")->isChecked());

    // The new ADR starts as the base, and the weather doesn't overwrite a figure.
    EXPECT_EQ(Text(*holley, "txtNewADR"), QStringLiteral("100"));
    Type(Box(*holley, "txtNewADR"), QStringLiteral("95"));
    EXPECT_EQ(Text(*holley, "txtNewJet"), QStringLiteral("71"));
    Type(Box(*holley, "txtTuneAdjust"), QStringLiteral("10.5"));
    EXPECT_EQ(Label(*holley, "lblHolleyTuneAdjust"),
              QStringLiteral("Too Much Change: No More Than 10%"));
    EXPECT_TRUE(Text(*holley, "txtNewJet").isEmpty());
    Grab(*holley, QStringLiteral("tuneup-holley-message"));
    Type(Box(*holley, "txtTuneAdjust"), QStringLiteral("-1.5"));
    EXPECT_TRUE(Label(*holley, "lblHolleyTuneAdjust").isEmpty());
    Type(Box(*holley, "txtNewADR"), QStringLiteral("103"));
    Type(Box(*holley, "txtBaseJet"), QStringLiteral("x"));  // locked: nothing typed
    EXPECT_EQ(Text(*holley, "txtBaseJet"), QStringLiteral("72"));
    Type(Box(*holley, "txtNewADR"), QStringLiteral("abc"));
    EXPECT_TRUE(Text(*holley, "txtNewJet").isEmpty());

    // A new ADR of "0" takes the weather's on focus.
    Type(Box(*holley, "txtNewADR"), QStringLiteral("0"));
    Type(Box(*holley, "txtTuneAdjust"), QStringLiteral("0"));
    main.weather.insert(QStringLiteral("txtAirDensity"), QStringLiteral("96.5"));
    QTest::mouseClick(Box(*holley, "txtNewADR"), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(Text(*holley, "txtNewADR"), QStringLiteral("96.5"));
    EXPECT_EQ(Box(*holley, "txtNewADR")->selectedText(), QStringLiteral("96.5"));

    // A reading reaches both windows: each recalculates and adds its page line.
    main.state.leadin.Clear();
    holley->ApplyAirDensity(QStringLiteral("95"));
    precision->ApplyAirDensity(QStringLiteral("100"));
    EXPECT_EQ(Text(*holley, "txtNewJet"), QStringLiteral("71"));
    EXPECT_EQ(Text(*holley, "txtPreNewADR"), QStringLiteral("95"));
    EXPECT_EQ(Text(*precision, "txtPreNewJet"), QStringLiteral("0.078"));
    EXPECT_EQ(Text(*precision, "txtNewADR"), QStringLiteral("100"));
    EXPECT_EQ(main.state.leadin.Get(), shell::FormatPageLeadin("1", "Jet: 71") + u'\n' +
                                           shell::FormatPageLeadin("22", "Jet: 0.078"));
    // Under manual set-up a reading changes the ADR and nothing else.
    precision->SetManualSetup();
    main.state.leadin.Clear();
    precision->ApplyAirDensity(QStringLiteral("90"));
    EXPECT_EQ(Text(*precision, "txtPreNewJet"), QStringLiteral("0.078"));
    EXPECT_TRUE(main.state.leadin.Get().isEmpty());
    // Arithmetic that fails leaves the result empty with the reason beside it, and no page line.
    ShowActive(*precision);
    Click(*precision, "chkPreManual");
    Type(Box(*precision, "txtPreTuneAdjust"), QStringLiteral("-150"));
    EXPECT_TRUE(Text(*precision, "txtPreNewJet").isEmpty());
    EXPECT_TRUE(
        Label(*precision, "lblPreNewJet").startsWith(QStringLiteral("Oops! Can't calculate: ")));
    precision->ApplyAirDensity(QStringLiteral("95"));
    EXPECT_TRUE(main.state.leadin.Get().isEmpty());
    Grab(*precision, QStringLiteral("tuneup-precision-failure"));
    Type(Box(*precision, "txtPreTuneAdjust"), QStringLiteral("0"));
    EXPECT_EQ(Text(*precision, "txtPreNewJet"), QStringLiteral("0.076"));
    EXPECT_TRUE(Label(*precision, "lblPreNewJet").isEmpty());

    // Picking the program shows its panel; the precision base is missing, so it goes manual.
    Click(*holley, "ssoptCarbPrecisionJet");
    EXPECT_TRUE(Child<QGroupBox>(*holley, "ssfraPrecision")->isVisible());
    EXPECT_FALSE(Child<QGroupBox>(*holley, "ssfraHolley")->isVisible());
    EXPECT_TRUE(Child<QCheckBox>(*holley, "chkPreManual")->isChecked());
    Click(*holley, "chkPreManual");
    EXPECT_FALSE(holley->ManualSetup());
    EXPECT_TRUE(Text(*holley, "txtPreNewJet").isEmpty());
    Grab(*holley, QStringLiteral("tuneup-precision"));
    EXPECT_TRUE(messages.shown.empty());
    holley->close();
    precision->close();
    EXPECT_EQ(main.lockCount, 0);
}

TEST_F(TuneUpWindow, NozzleDetailAddsUpTheNozzlesAndRecalculatesThePill) {
    SetCar(1, QStringLiteral("sCarCarb_typ = 'FI', sCarFuel_typ = 'NITRO', sBaseADR = '100', "
                             "sBaseBypassPill = '0.08', sBaseBoost = '10', "
                             "sHatNozzle1_val = '0.2', sHatNozzle2_val = '0.2', "
                             "sBlowerNozzle1_val = '0.3'"));
    auto w = Open();
    ShowActive(*w);
    EXPECT_TRUE(Child<QGroupBox>(*w, "ssfraFuelInjection")->isVisible());
    EXPECT_TRUE(Child<QRadioButton>(*w, "ssoptNitro")->isChecked());
    EXPECT_FALSE(w->ManualSetup());
    EXPECT_EQ(FocusName(*w), QStringLiteral("txtFINewBoost"));
    const auto expected = [](const tuneup::NozzleTable& t) { return tuneup::CalcNozzleArea(t, 2); };
    tuneup::NozzleTable old;
    old[1][0] = old[1][1] = QStringLiteral("0.2");
    old[0][0] = QStringLiteral("0.3");
    EXPECT_EQ(Text(*w, "txtFIArea"), expected(old)->totalArea);
    EXPECT_EQ(Text(*w, "txtNewFIArea"), expected(old)->totalArea);
    EXPECT_FALSE(Box(*w, Nozzle(0))->isVisible());
    Grab(*w, QStringLiteral("tuneup-fi"));

    Click(*w, "cmdNozzleDetail");
    EXPECT_EQ(Child<QPushButton>(*w, "cmdNozzleDetail")->text(),
              QStringLiteral("<< Hide Nozzle Detail"));
    auto* position = Child<QComboBox>(*w, "cboNozzle");
    EXPECT_EQ(position->currentText(), QStringLiteral("Hat Nozzles"));
    EXPECT_EQ(position->currentData().toInt(), 2);
    EXPECT_EQ(Text(*w, Nozzle(1)), QStringLiteral("0.2"));
    EXPECT_EQ(Text(*w, NewNozzle(1)), QStringLiteral("0.2"));
    EXPECT_EQ(Text(*w, "txtTypeArea"), expected(old)->typeArea);
    EXPECT_EQ(Child<QLabel>(*w, "lblNozzle(7)")->text(), QStringLiteral("8:"));

    // A new nozzle: the subtotal, the total and the pill follow at once.
    Type(Box(*w, "txtFINewADR"), QStringLiteral("95"));
    const QString pillBefore = Text(*w, "txtFINewPill");
    EXPECT_FALSE(pillBefore.isEmpty());
    Type(Box(*w, NewNozzle(2)), QStringLiteral("0.1 Bob's"));
    tuneup::NozzleTable now = old;
    now[1][2] = QStringLiteral("0.1 Bob's");
    EXPECT_EQ(Text(*w, "txtNewTypeArea"), expected(now)->typeArea);
    EXPECT_EQ(Text(*w, "txtNewTypeDiameter"), expected(now)->typeDiameter);
    EXPECT_EQ(Text(*w, "txtNewFIArea"), expected(now)->totalArea);
    EXPECT_EQ(Text(*w, "txtNewDiameter"), expected(now)->totalDiameter);
    EXPECT_EQ(Text(*w, "txtTypeArea"), expected(old)->typeArea);
    const auto pill = tuneup::CalcFuelInjection({Text(*w, "txtFIArea"), QStringLiteral("0.08"),
                                                 QStringLiteral("100"), QStringLiteral("95"),
                                                 QStringLiteral("10"), QStringLiteral("10"),
                                                 QStringLiteral("0"), expected(now)->totalArea});
    ASSERT_TRUE(pill.ok());
    EXPECT_EQ(Text(*w, "txtFINewPill"), pill->newPill);
    EXPECT_NE(Text(*w, "txtFINewPill"), pillBefore);
    Grab(*w, QStringLiteral("tuneup-fi-detail"));

    // Another position shows its own nozzles; the typed one is kept.
    Pick(position, QStringLiteral("Blower Nozzles"));
    EXPECT_EQ(Text(*w, Nozzle(0)), QStringLiteral("0.3"));
    EXPECT_TRUE(Text(*w, NewNozzle(2)).isEmpty());
    Pick(position, QStringLiteral("Hat Nozzles"));
    EXPECT_EQ(Text(*w, NewNozzle(2)), QStringLiteral("0.1 Bob's"));

    // The apostrophe is saved as typed.
    Click(*w, "cmdSaveAll");
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sHatNozzle3_val"), QStringLiteral("0.1 Bob's"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sCarCarb_typ"), QStringLiteral("FI"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sCarFuel_typ"), QStringLiteral("NITRO"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sNozzleArea"), expected(now)->totalArea);
    EXPECT_EQ(Text(*w, Nozzle(2)), QStringLiteral("0.1 Bob's"));

    // A reload starts again on the hat nozzles, boxes and list alike.
    Pick(position, QStringLiteral("Blower Nozzles"));
    Pick(OldTuneUpList(*w), QStringLiteral("What if?"));
    EXPECT_EQ(position->currentText(), QStringLiteral("Hat Nozzles"));
    EXPECT_EQ(Text(*w, Nozzle(0)), QStringLiteral("0.2"));
    EXPECT_EQ(Text(*w, NewNozzle(2)), QStringLiteral("0.1 Bob's"));
    Pick(OldTuneUpList(*w), QStringLiteral("CAR as saved"));

    // Manual set-up opens the detail on the new nozzles and locks the button.
    Click(*w, "chkFIManual");
    Click(*w, "ssoptFuelInjection");
    EXPECT_EQ(FocusName(*w), NewNozzle(0));
    EXPECT_FALSE(Child<QPushButton>(*w, "cmdNozzleDetail")->isEnabled());
    EXPECT_TRUE(Box(*w, Nozzle(0))->isVisible());
    Grab(*w, QStringLiteral("tuneup-fi-manual"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(TuneUpWindow, WhatIfUnlocksTheBaseAndRunsSaveToTheSelectedRun) {
    SetCar(1, QStringLiteral("sBaseADR = '100', sBaseJet = '72', sHatNozzle1_val = '0.2'"));
    const qint64 run = AddRun(1, QStringLiteral("sBaseADR, sBaseJet, sHeadNozzle4_val"),
                              QStringLiteral("'97', '70', '0.05'"));
    main.keyText = QString::number(run);
    auto w = Open();
    ShowActive(*w);

    Pick(OldTuneUpList(*w), QStringLiteral("What if?"));
    for (const char* panel : {"ssfraHolley", "ssfraPrecision", "ssfraFuelInjection"}) {
        EXPECT_EQ(Child<QGroupBox>(*w, panel)
                      ->findChild<QComboBox*>(QStringLiteral("cboOldTuneUp"))
                      ->currentIndex(),
                  2);
    }
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("100"));
    EXPECT_FALSE(Box(*w, "txtBaseADR")->isReadOnly());
    EXPECT_EQ(Background(*w, "txtBaseADR"), kWhite);
    EXPECT_FALSE(Box(*w, "txtFIArea")->isReadOnly());
    EXPECT_FALSE(Child<QPushButton>(*w, "cmdNozzleDetail")->isEnabled());
    Type(Box(*w, "txtBaseJet"), QStringLiteral("60"));
    Type(Box(*w, "txtNewADR"), QStringLiteral("103"));
    Type(Box(*w, "txtTuneAdjust"), QStringLiteral("-1.5"));
    EXPECT_EQ(Text(*w, "txtNewJet"), QStringLiteral("60.3"));

    // The fuel-injection area that reads "0" empties itself on entry.
    Click(*w, "ssoptFuelInjection");
    EXPECT_TRUE(w->ManualSetup());
    ASSERT_EQ(Text(*w, "txtFIArea"), QStringLiteral("0.0314159"));
    Type(Box(*w, "txtFIArea"), QStringLiteral("0"));
    Type(Box(*w, "txtFIBaseBoost"), QStringLiteral("10"));
    QTest::mouseClick(Box(*w, "txtFIArea"), Qt::LeftButton);
    EXPECT_TRUE(Text(*w, "txtFIArea").isEmpty());
    Click(*w, "ssoptCarbHolleyJet");

    // The selected run: its tune-up is the old one, locked again.
    Pick(OldTuneUpList(*w), QStringLiteral("selected RUN"));
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("97"));
    EXPECT_EQ(Text(*w, "txtBaseJet"), QStringLiteral("70"));
    EXPECT_TRUE(Box(*w, "txtBaseADR")->isReadOnly());
    EXPECT_EQ(Background(*w, "txtBaseADR"), kLocked);
    Type(Box(*w, "txtNewADR"), QStringLiteral("95.5"));
    const QString newJet = Text(*w, "txtNewJet");
    ASSERT_FALSE(newJet.isEmpty());

    Click(*w, "cmdSaveToRun");
    EXPECT_TRUE(main.calls.contains(QStringLiteral("runSaved %1").arg(run)));
    EXPECT_EQ(Column("tblRuns", "lRun_id", run, "sBaseADR"), QStringLiteral("95.5"));
    EXPECT_EQ(Column("tblRuns", "lRun_id", run, "sBaseJet"), newJet);
    EXPECT_EQ(Column("tblRuns", "lRun_id", run, "sHeadNozzle4_val"), QStringLiteral("0.05"));
    EXPECT_EQ(Column("tblRuns", "lRun_id", run, "sHatNozzle1_val"), QString());
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sBaseADR"), QStringLiteral("100"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sBaseJet"), QStringLiteral("72"));
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sHatNozzle1_val"), QStringLiteral("0.2"));
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("95.5"));

    // Saved to the car from the run, the old side is the run's again.
    Type(Box(*w, "txtNewADR"), QStringLiteral("99"));
    Click(*w, "cmdSaveAll");
    EXPECT_EQ(Column("tblCars", "lCar_id", 1, "sBaseADR"), QStringLiteral("99"));
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("95.5"));

    // No run selected: nothing is written.
    main.keyText.clear();
    Click(*w, "cmdSaveToRun");
    EXPECT_EQ(messages.last().text, QStringLiteral("Unable to find this run"));
    EXPECT_EQ(Column("tblRuns", "lRun_id", run, "sBaseADR"), QStringLiteral("95.5"));
    EXPECT_EQ(messages.shown.size(), 1u);
}

TEST_F(TuneUpWindow, ACarOrRunGoneIsSaidAndTheWindowStaysUsable) {
    SetCar(1, QStringLiteral("sBaseADR = '100', sBaseJet = '72'"));
    const qint64 run = AddRun(1, QStringLiteral("sBaseADR"), QStringLiteral("'97'"));
    auto w = Open();
    ShowActive(*w);

    logbook.db().Execute(QStringLiteral("DELETE FROM tblCars WHERE lCar_id = 1"));
    Click(*w, "cmdSaveAll");
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Fatal error saving setup; can't find car.  Contact Quadrumex."));
    Pick(OldTuneUpList(*w), QStringLiteral("CAR as saved"));
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Error loading old tune-up (2).  Contact Quadrumex."));
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Car #1 (My Race Car) Tune-Up"));
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("100"));
    Type(Box(*w, "txtNewADR"), QStringLiteral("95"));
    EXPECT_EQ(Text(*w, "txtNewJet"), QStringLiteral("71"));

    // The run: none selected, one gone, one whose car is gone.
    Pick(OldTuneUpList(*w), QStringLiteral("selected RUN"));
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Error loading old tune-up (1).  Perhaps no runs on file."));
    main.keyText = QString::number(run + 1);
    Pick(OldTuneUpList(*w), QStringLiteral("selected RUN"));
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Error loading old tune-up (3).  Contact Quadrumex."));
    main.keyText = QString::number(run);
    Pick(OldTuneUpList(*w), QStringLiteral("selected RUN"));
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Error loading old tune-up (4).  Contact Quadrumex."));
    // A run deleted before the save is not found either.
    logbook.db().Execute(QStringLiteral("DELETE FROM tblRuns"));
    Click(*w, "cmdSaveToRun");
    EXPECT_EQ(messages.last().text, QStringLiteral("Unable to find this run"));
    EXPECT_EQ(messages.shown.size(), 6u);
    EXPECT_TRUE(w->isVisible());
    Type(Box(*w, "txtNewADR"), QStringLiteral("100"));
    EXPECT_EQ(Text(*w, "txtNewJet"), QStringLiteral("72"));
}

TEST_F(TuneUpWindow, TheRunWindowsTuneUpIsOneSharedWindow) {
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ, sBaseADR, sBaseJet) "
        "VALUES (2, 'Dragster', '22', 'CARB', '90', '80')"));
    const qint64 run =
        AddRun(2, QStringLiteral("sBaseADR, sBaseJet"), QStringLiteral("'99', '65'"));
    QWidget owner;
    QWidget* shown = tuneup::ShowRunTuneUp(Context(), &owner, run);
    ASSERT_NE(shown, nullptr);
    auto* w = qobject_cast<frmTuneUp*>(shown);
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(main.lockCount, 1);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Car #22 (Dragster) Tune-Up"));
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("99"));
    EXPECT_EQ(OldTuneUpList(*w)->currentText(), QStringLiteral("selected RUN"));
    // The car of the run is the car a save goes to.
    EXPECT_EQ(w->CarId(), 2);
    EXPECT_EQ(tuneup::ShowRunTuneUp(Context(), &owner, run), shown);
    EXPECT_EQ(main.lockCount, 1);

    // The car window's use: the car's own tune-up, typed by hand.
    w->SetCarId(2);
    w->PreShow(tuneup::OldSource::Car, 0);
    w->SetManualSetup();
    EXPECT_EQ(Text(*w, "txtBaseADR"), QStringLiteral("90"));
    EXPECT_TRUE(Child<QCheckBox>(*w, "chkHolleyManual")->isChecked());

    // A run gone since: said, and the window stays.
    EXPECT_EQ(tuneup::ShowRunTuneUp(Context(), &owner, run + 1), shown);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Error loading old tune-up (3).  Contact Quadrumex."));
    EXPECT_TRUE(w->isVisible());

    // Closed, it gives way to a new one, even before it is deleted.
    w->close();
    EXPECT_EQ(main.lockCount, 0);
    QWidget* next = tuneup::ShowRunTuneUp(Context(), &owner, run);
    EXPECT_NE(next, shown);
    EXPECT_EQ(main.lockCount, 1);
    next->close();
}

}  // namespace
