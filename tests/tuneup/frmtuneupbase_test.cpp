// The base tune-up window: one car's six base columns on three panels, one ADR for all three, the
// checks panel by panel, and what a save writes.

#include "tuneup/ui/frmTuneUpBase.h"
#include "common/tools.h"
#include "store/recordset.h"
#include "support/gui.h"
#include "tuneup/basesetup.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QToolBar>

using namespace slipbook;
using namespace slipbook::test;
using tuneup::frmTuneUpBase;

namespace {

const QStringList kBaseColumns = {"sBaseADR",        "sBaseJet",   "sBaseJetDiameter",
                                  "sBaseBypassPill", "sBaseBoost", "sNozzleArea"};

struct BaseWindow : WindowTest {
    std::unique_ptr<frmTuneUpBase> Open(qint64 carId) {
        auto window = std::make_unique<frmTuneUpBase>(Context());
        adr = Child<QLineEdit>(*window, "txtBaseADR");
        jet = Child<QLineEdit>(*window, "txtBaseJet");
        preAdr = Child<QLineEdit>(*window, "txtPreBaseADR");
        preJet = Child<QLineEdit>(*window, "txtPreBaseJet");
        fiAdr = Child<QLineEdit>(*window, "txtFIBaseADR");
        pill = Child<QLineEdit>(*window, "txtFIBasePill");
        boost = Child<QLineEdit>(*window, "txtFIBaseBoost");
        area = Child<QLineEdit>(*window, "txtFIArea");
        holley = Child<QPushButton>(*window, "cmdHolley");
        precision = Child<QPushButton>(*window, "cmdPrecision");
        injection = Child<QPushButton>(*window, "cmdFuelInjection");
        EXPECT_TRUE(window->ShowCar(carId));
        ShowActive(*window);
        return window;
    }

    qint64 AddCar(const QString& name) {
        auto rs = logbook.db().OpenRecordset(QStringLiteral("SELECT * FROM tblCars"));
        rs->AddNew();
        rs->SetValue(QStringLiteral("sCar_nm"), name);
        rs->SetValue(QStringLiteral("sCar_num"), QStringLiteral("7"));
        rs->Update();
        return Scalar(QStringLiteral("SELECT MAX(lCar_id) FROM tblCars")).toLongLong();
    }

    void SetBase(qint64 carId, const QStringList& values) {
        auto rs = logbook.db().OpenRecordset(
            QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = %1").arg(carId));
        rs->Edit();
        for (int i = 0; i < kBaseColumns.size(); ++i) {
            rs->SetValue(kBaseColumns[i], values[i]);
        }
        rs->Update();
    }

    // Every column of the car's row, as text ("<Null>" for Null).
    QStringList Row(qint64 carId) {
        auto rs = logbook.db().OpenRecordset(
            QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = %1").arg(carId),
            store::RecordsetType::Snapshot);
        QStringList row;
        for (int i = 0; !rs->Eof() && i < rs->FieldCount(); ++i) {
            const QVariant v = rs->Value(i);
            row << (v.isNull() ? QStringLiteral("<Null>") : v.toString());
        }
        return row;
    }

    QVariant Column(qint64 carId, const QString& column) {
        return Scalar(
            QStringLiteral("SELECT %1 FROM tblCars WHERE lCar_id = %2").arg(column).arg(carId));
    }

    QStringList BoxTexts() const {
        return {adr->text(),  jet->text(),   preJet->text(),
                pill->text(), boost->text(), area->text()};
    }

    // Presses Save and expects the check's box, on the panel it brought forward.
    void ExpectCheck(frmTuneUpBase& window, const char* message, QLineEdit* box) {
        const size_t before = messages.shown.size();
        Press(window, tools::kSave);
        ASSERT_EQ(messages.shown.size(), before + 1) << message;
        EXPECT_EQ(messages.last().text, QString::fromLatin1(message));
        EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
        EXPECT_EQ(messages.last().icon, MsgIcon::Critical);
        EXPECT_TRUE(box->isVisible()) << message;
        EXPECT_EQ(FocusName(window), box->objectName()) << message;
    }

    QLineEdit *adr = nullptr, *jet = nullptr, *preAdr = nullptr, *preJet = nullptr;
    QLineEdit *fiAdr = nullptr, *pill = nullptr, *boost = nullptr, *area = nullptr;
    QPushButton *holley = nullptr, *precision = nullptr, *injection = nullptr;
};

TEST(BaseSetup, AcceptsNothingOrANumberTheProgramsCanUse) {
    for (const char* good : {"", "95", "-1.5", "+0.076", "1,000.5", "1.5E2", " 72 "}) {
        EXPECT_TRUE(tuneup::BaseValueAccepted(QString::fromLatin1(good))) << good;
    }
    for (const char* bad : {"abc", "72a", "7 2", " ", "-", "1.2.3"}) {
        EXPECT_FALSE(tuneup::BaseValueAccepted(QString::fromLatin1(bad))) << bad;
    }
}

TEST_F(BaseWindow, ShowsTheCarsBaseWithThreeToolsAndHolleyFirst) {
    SetBase(1, {"96.5", "72", "0.076", "0.120", "14", "0.455"});
    auto window = Open(1);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Base: My Race Car"));
    EXPECT_EQ(BoxTexts(), (QStringList{"96.5", "72", "0.076", "0.120", "14", "0.455"}));
    EXPECT_EQ(preAdr->text(), QStringLiteral("96.5"));
    EXPECT_EQ(fiAdr->text(), QStringLiteral("96.5"));
    EXPECT_TRUE(adr->isVisible());
    EXPECT_FALSE(preAdr->isVisible());
    EXPECT_FALSE(fiAdr->isVisible());
    EXPECT_TRUE(holley->isChecked());
    EXPECT_EQ(Child<QGroupBox>(*window, "ssfraHolley")->title(), QStringLiteral("Holley Jet Base"));
    EXPECT_FALSE(window->DataChanged());
    EXPECT_FALSE(window->RecordAdd());

    // Save, Save and Close and Close alone, the first two once something is typed.
    QStringList onBar;
    for (QAction* a : window->toolBar()->actions()) {
        if (!a->isSeparator()) {
            onBar << a->objectName();
        }
    }
    EXPECT_EQ(onBar, (QStringList{"ID_SaveandClose", "ID_Save", "ID_Close"}));
    for (const char* id : {"ID_New", "ID_SaveandNew", "ID_Delete", "ID_Print", "ID_Copy",
                           "ID_Contents", "ID_Previous"}) {
        EXPECT_EQ(ToolWithinReach(*window, QString::fromLatin1(id)), nullptr) << id;
    }
    EXPECT_EQ(ToolWithinReach(*window, tools::kSave), nullptr);
    EXPECT_NE(ToolWithinReach(*window, tools::kClose), nullptr);

    // The run set-up is there to see and does nothing.
    EXPECT_FALSE(Child<QGroupBox>(*window, "ssfraDASetup")->isEnabled());
    for (const char* name : {"txtET1", "txtET3", "txtDA1", "txtDA3"}) {
        EXPECT_FALSE(Child<QLineEdit>(*window, name)->isEnabled()) << name;
    }
    EXPECT_FALSE(Child<QPushButton>(*window, "sscmdEditSetup")->isEnabled());
    EXPECT_FALSE(Child<QPushButton>(*window, "sscmdClearSetup")->isEnabled());

    // Pictures of the three panels.
    for (const auto& [button, name] :
         {std::pair{holley, "base-holley"}, std::pair{precision, "base-precision"},
          std::pair{injection, "base-injection"}}) {
        QTest::mouseClick(button, Qt::LeftButton);
        Grab(*window, QString::fromLatin1(name));
    }

    // A car without a base shows empty boxes; one whose row is missing starts as new.
    const qint64 bare = AddCar(QStringLiteral("O'Brien's \"Rail\""));
    ASSERT_TRUE(window->ShowCar(bare));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Base: O'Brien's \"Rail\""));
    EXPECT_EQ(BoxTexts(), QStringList(6));
    EXPECT_TRUE(adr->isVisible());
    EXPECT_FALSE(window->RecordAdd());
    ASSERT_TRUE(window->ShowCar(bare + 50));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Base: "));
    EXPECT_TRUE(window->RecordAdd());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(BaseWindow, OneAdrForAllThreePanels) {
    auto window = Open(1);
    Type(adr, QStringLiteral("98.5"));
    EXPECT_EQ(preAdr->text(), QStringLiteral("98.5"));
    EXPECT_EQ(fiAdr->text(), QStringLiteral("98.5"));
    EXPECT_TRUE(window->DataChanged());
    EXPECT_TRUE(window->tool(tools::kSave)->isEnabled());

    QTest::mouseClick(precision, Qt::LeftButton);
    EXPECT_FALSE(adr->isVisible());
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtPreBaseADR"));
    QTest::keyClick(preAdr, Qt::Key_Backspace);
    QTest::keyClicks(preAdr, QStringLiteral("101"));
    EXPECT_EQ(adr->text(), QStringLiteral("101"));
    EXPECT_EQ(fiAdr->text(), QStringLiteral("101"));

    QTest::mouseClick(injection, Qt::LeftButton);
    Type(fiAdr, QString());
    EXPECT_EQ(adr->text(), QString());
    Type(fiAdr, QStringLiteral("99"));
    main.calls.clear();
    Press(*window, tools::kSave);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Column(1, "sBaseADR").toString(), QStringLiteral("99"));
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblCars"}));
    EXPECT_FALSE(window->DataChanged());
}

TEST_F(BaseWindow, ChecksEachBoxInOrderOnItsOwnPanel) {
    SetBase(1, {"100", "72", "0.076", "0.120", "14", "0.455"});
    auto window = Open(1);
    const QStringList before = Row(1);
    Type(adr, QStringLiteral("9x"));
    Type(jet, QStringLiteral("72 1/2"));
    QTest::mouseClick(precision, Qt::LeftButton);
    Type(preJet, QStringLiteral(".076\""));
    QTest::mouseClick(injection, Qt::LeftButton);
    Type(pill, QStringLiteral("#3"));
    Type(boost, QStringLiteral("14psi"));
    Type(area, QStringLiteral("n/a"));

    // A bad ADR is named on the copy the racer sees.
    ExpectCheck(*window, "ADR must be numeric", fiAdr);
    QTest::mouseClick(precision, Qt::LeftButton);
    ExpectCheck(*window, "ADR must be numeric", preAdr);
    QTest::mouseClick(holley, Qt::LeftButton);
    ExpectCheck(*window, "ADR must be numeric", adr);
    QTest::mouseClick(injection, Qt::LeftButton);
    Type(fiAdr, QStringLiteral("95.2"));

    // The others bring their own panel forward, whichever shows.
    ExpectCheck(*window, "Jet must be numeric", jet);
    Type(jet, QStringLiteral("72.5"));
    ExpectCheck(*window, "Jet Diameter must be numeric", preJet);
    Type(preJet, QStringLiteral("0.076"));
    QTest::mouseClick(holley, Qt::LeftButton);
    ExpectCheck(*window, "Bypass Pill must be numeric", pill);
    Type(pill, QStringLiteral("0.125"));
    ExpectCheck(*window, "Boost must be numeric", boost);
    Type(boost, QStringLiteral("14.5"));
    ExpectCheck(*window, "Nozzle Area must be numeric", area);
    EXPECT_EQ(Row(1), before);  // nothing written while a box is wrong

    Type(area, QStringLiteral("0.5"));
    const size_t boxes = messages.shown.size();
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.shown.size(), boxes);
    EXPECT_EQ(BoxTexts(), (QStringList{"95.2", "72.5", "0.076", "0.125", "14.5", "0.5"}));
    for (int i = 0; i < kBaseColumns.size(); ++i) {
        EXPECT_EQ(Column(1, kBaseColumns[i]).toString(), BoxTexts()[i])
            << kBaseColumns[i].toStdString();
    }
}

TEST_F(BaseWindow, SaveWritesTheSixColumnsAndNothingElse) {
    SetBase(1, {"100", "72", "0.076", "0.120", "14", "0.455"});
    logbook.db().Execute(QStringLiteral(
        "UPDATE tblCars SET sJet1_val = '71', sCarNotes_tx = 'Bob''s' WHERE lCar_id = 1"));
    const QStringList before = Row(1);
    auto window = Open(1);

    // Emptied boxes are valid and store no base.
    Type(jet, QString());
    QTest::mouseClick(injection, Qt::LeftButton);
    Type(fiAdr, QString());
    Type(pill, QString());
    Type(boost, QStringLiteral("-2.5"));
    Type(area, QString());
    Press(*window, tools::kSaveandClose);
    EXPECT_TRUE(messages.shown.empty()) << messages.last().text.toStdString();
    EXPECT_FALSE(window->isVisible());

    QStringList expected = before;
    auto rs = logbook.db().OpenRecordset(QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = 1"),
                                         store::RecordsetType::Snapshot);
    const QStringList written = {"<Null>", "<Null>", "0.076", "<Null>", "-2.5", "<Null>"};
    for (int i = 0; i < kBaseColumns.size(); ++i) {
        expected[rs->FieldIndex(kBaseColumns[i])] = written[i];
    }
    EXPECT_EQ(Row(1), expected);

    // A car whose row is missing gets one, under its id, and later saves edit that row.
    const qint64 missing = AddCar(QStringLiteral("Gone")) + 1;
    const QVariant cars = Scalar(QStringLiteral("SELECT COUNT(*) FROM tblCars"));
    auto added = Open(missing);
    Type(adr, QStringLiteral("97"));
    Press(*added, tools::kSave);
    EXPECT_FALSE(added->RecordAdd());
    Type(jet, QStringLiteral("70"));
    Press(*added, tools::kSave);
    EXPECT_TRUE(messages.shown.empty()) << messages.last().text.toStdString();
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblCars")).toLongLong(),
              cars.toLongLong() + 1);
    EXPECT_EQ(Column(missing, "sBaseADR").toString(), QStringLiteral("97"));
    EXPECT_EQ(Column(missing, "sBaseJet").toString(), QStringLiteral("70"));
}

TEST_F(BaseWindow, ClosingWithChangesAsksFirst) {
    auto window = Open(1);
    Press(*window, tools::kClose);  // nothing typed, nothing asked
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(messages.shown.empty());

    ShowActive(*window);
    Type(jet, QStringLiteral("68"));
    messages.answer(MsgAnswer::Cancel);
    Press(*window, tools::kClose);
    EXPECT_EQ(messages.last().text, QStringLiteral("Data Has Been Changed\nSave Changes ?"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Form Unload"));
    EXPECT_TRUE(window->isVisible());

    // Yes with a bad box stays, with the check's box.
    QTest::mouseClick(injection, Qt::LeftButton);
    Type(area, QStringLiteral("big"));
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kClose);
    EXPECT_EQ(messages.last().text, QStringLiteral("Nozzle Area must be numeric"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(Column(1, "sBaseJet").isNull());

    // Another car asks the same; No leaves this one as it was.
    messages.answer(MsgAnswer::No);
    const qint64 other = AddCar(QStringLiteral("Second"));
    ASSERT_TRUE(window->ShowCar(other));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Base: Second"));
    EXPECT_TRUE(Column(1, "sBaseJet").isNull());

    QTest::mouseClick(injection, Qt::LeftButton);
    Type(area, QStringLiteral("0.4"));
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kClose);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Column(other, "sNozzleArea").toString(), QStringLiteral("0.4"));
}

TEST_F(BaseWindow, ACarDeletedUnderTheWindowIsNotWritten) {
    const qint64 car = AddCar(QStringLiteral("Joe's Rail"));
    auto window = Open(car);
    Type(jet, QStringLiteral("74"));
    logbook.db().Execute(QStringLiteral("DELETE * FROM tblCars WHERE lCar_id = %1").arg(car));
    const QVariant cars = Scalar(QStringLiteral("SELECT COUNT(*) FROM tblCars"));
    main.calls.clear();
    Press(*window, tools::kSave);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("The car \"Joe's Rail\" is no longer in the logbook, so its base "
                             "tune-up can't be saved."));
    EXPECT_EQ(messages.last().icon, MsgIcon::Critical);
    EXPECT_EQ(Scalar(QStringLiteral("SELECT COUNT(*) FROM tblCars")), cars);
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_EQ(jet->text(), QStringLiteral("74"));
    EXPECT_TRUE(window->DataChanged());

    // The window goes on: another car loads once the racer lets the typing go.
    messages.answer(MsgAnswer::No);
    ASSERT_TRUE(window->ShowCar(1));
    Type(jet, QStringLiteral("74"));
    Press(*window, tools::kSaveandClose);
    EXPECT_EQ(Column(1, "sBaseJet").toString(), QStringLiteral("74"));
    EXPECT_FALSE(window->isVisible());
}

}  // namespace
