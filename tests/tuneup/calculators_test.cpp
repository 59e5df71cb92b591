#include "tuneup/calculators.h"
#include "support/calc.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::tuneup;

namespace {

// The three texts of a Holley calculation, or the reason it stopped.
QStringList Holley(const char* base, const char* now, const char* jet, const char* adjust) {
    const auto r = CalcHolleyJet({base, now, jet, adjust});
    if (!r) {
        return {r.error()};
    }
    return {r->newJet, r->tuneAdjustMessage, r->newJetMessage};
}

QStringList Precision(const char* base, const char* now, const char* diameter, const char* adjust) {
    const auto r = CalcPrecisionJet({base, now, diameter, adjust});
    if (!r) {
        return {r.error()};
    }
    return {r->newJet, r->tuneAdjustMessage};
}

// Old area 0.3 and pill 0.08 unless given.
QStringList Injection(const char* baseAdr, const char* newAdr, const char* baseBoost,
                      const char* newBoost, const char* adjust, const char* newArea = "0.3",
                      const char* area = "0.3", const char* pill = "0.08") {
    const auto r =
        CalcFuelInjection({area, pill, baseAdr, newAdr, baseBoost, newBoost, adjust, newArea});
    if (!r) {
        return {r.error()};
    }
    return {r->newPill, r->tuneAdjustMessage, r->newPillMessage};
}

const QString kTooMuch = QStringLiteral("Too Much Change: No More Than 10%");

}  // namespace

TEST(HolleyJet, WorkedValuesBandsAndMessages) {
    EXPECT_EQ(Holley("100", "95", "72", "0"), QStringList({"71", "", ""}));
    EXPECT_EQ(Holley("95", "100", "72", "2"), QStringList({"73.5", "", ""}));
    EXPECT_EQ(Holley("100", "103", "60", "-1.5"), QStringList({"60.3", "", ""}));

    // Overlaps: the later band wins, and its jet does not come back unchanged.
    EXPECT_DOUBLE_EQ(HolleyFlowNumber(54.5), 224.6);
    EXPECT_DOUBLE_EQ(HolleyFlowNumber(54), 221.6);
    EXPECT_DOUBLE_EQ(HolleyFlowNumber(55), 230);
    EXPECT_EQ(HolleyFlowNumber(49), 0);
    EXPECT_EQ(HolleyFlowNumber(101), 0);
    EXPECT_EQ(Holley("100", "100", "54.5", "0"), QStringList({"54.3", "", ""}));
    for (int jet = 50; jet <= 100; ++jet) {
        const QByteArray text = QByteArray::number(jet);
        EXPECT_EQ(Holley("100", "100", text, "0")[0], QString::number(jet)) << jet;
    }

    // Just inside the old-jet bands but outside 50 to 100: the odd old-jet message.
    EXPECT_EQ(Holley("100", "102", "49.5", "0"),
              QStringList({"", "", "Old Jet Out Of Range: #50 - #100 Only"}));
    EXPECT_EQ(Holley("100", "100", "49.5", "0"), QStringList({"", "", "New Jet Out of Range"}));
    EXPECT_EQ(Holley("100", "100", "120", "0"), QStringList({"", "", "New Jet Out of Range"}));
    // A flow of exactly 185 is in range but in no band: "0" with no message.
    EXPECT_EQ(Holley("186", "185", "50", "0"), QStringList({"0", "", ""}));
    EXPECT_EQ(Holley("100", "99.5", "50", "0"), QStringList({"49.9", "", ""}));
    EXPECT_EQ(Holley("100", "170", "100", "0")[2], "New Jet Out of Range");

    // A tune adjust of exactly 10 passes; beyond it the jet is withheld with the message.
    EXPECT_EQ(Holley("100", "95", "72", "10"), QStringList({"73", "", ""}));
    EXPECT_EQ(Holley("100", "95", "72", "-10"), QStringList({"68.6", "", ""}));
    EXPECT_EQ(Holley("100", "95", "72", "10.01"), QStringList({"", kTooMuch, ""}));

    // What the ready test keeps away stops the arithmetic rather than the program.
    EXPECT_EQ(Holley("0", "95", "72", "0"), QStringList({"Division by zero"}));
    EXPECT_EQ(Holley("100", "95", "seventy", "0"), QStringList({"Type mismatch"}));
    EXPECT_EQ(Holley("1e-300", "1e300", "72", "0"), QStringList({"Overflow"}));
}

TEST(HolleyJet, ReadyNeedsFourNumbersAndABaseAdr) {
    EXPECT_TRUE(HolleyReady({"100", "95", "72", "0"}));
    EXPECT_TRUE(HolleyReady({"1,000", "-9.5e1", " 72 ", "+0"}));
    EXPECT_FALSE(HolleyReady({"100", "95", "72", ""}));
    EXPECT_FALSE(HolleyReady({"100", "95", "#72", "0"}));
    EXPECT_FALSE(HolleyReady({"0", "95", "72", "0"}));
    // "0,5" is a number, but its leading number is 0.
    EXPECT_FALSE(HolleyReady({"0,5", "95", "72", "0"}));
    EXPECT_FALSE(PrecisionReady({"0", "95", "0.076", "0"}));
    EXPECT_TRUE(PrecisionReady({"100", "95", "0.076", "0"}));
}

TEST(PrecisionJet, WorkedValuesAndEdges) {
    EXPECT_EQ(Precision("100", "95", "0.076", "0"), QStringList({"0.074", ""}));
    EXPECT_EQ(Precision("95", "100", "0.076", "2"), QStringList({"0.079", ""}));
    EXPECT_EQ(Precision("100", "100", "0.0764", "0"), QStringList({"0.076", ""}));
    EXPECT_EQ(Precision("100", "100", "0", "0"), QStringList({"0", ""}));
    EXPECT_EQ(Precision("100", "100", "0.076", "10"), QStringList({"0.08", ""}));
    EXPECT_EQ(Precision("100", "100", "0.076", "10.5"), QStringList({"", kTooMuch}));
    // A negative area has no diameter: said, not crashed, whatever the tune-adjust flag says.
    EXPECT_EQ(Precision("100", "10", "0.076", "-50"),
              QStringList({"Invalid procedure call or argument"}));
}

TEST(FuelInjection, BoostFactorWorkedValuesAndEdges) {
    EXPECT_NEAR(BoostFactor(0), -0.000491801, 1e-12);
    EXPECT_NEAR(BoostFactor(5), 0.212900938, 5e-10);
    EXPECT_NEAR(BoostFactor(10), 0.330128149, 5e-10);
    EXPECT_NEAR(BoostFactor(20), 0.457145399, 5e-10);
    EXPECT_NEAR(BoostFactor(30), 0.545478649, 5e-10);

    EXPECT_EQ(Injection("100", "95", "10", "10", "0"), QStringList({"0.161", "", ""}));
    EXPECT_EQ(Injection("100", "100", "10", "10", "1"), QStringList({"0.05", "", ""}));
    EXPECT_EQ(Injection("100", "100", "10", "10", "0", "0.33"), QStringList({"0.084", "", ""}));
    EXPECT_EQ(Injection("95", "100", "10", "10", "0"), QStringList({"", "", "Not Enough Fuel"}));
    EXPECT_EQ(Injection("100", "100", "10", "12", "0"), QStringList({"", "", "Not Enough Fuel"}));
    // A zero new area is no fuel through the nozzles, and no message.
    EXPECT_EQ(Injection("100", "100", "10", "10", "0", "0"), QStringList({"0", "", ""}));
    EXPECT_EQ(Injection("120", "100", "10", "10", "10"), QStringList({"0.213", "", ""}));
    EXPECT_EQ(Injection("120", "100", "10", "10", "10.5"), QStringList({"", kTooMuch, ""}));
    EXPECT_EQ(Injection("100", "100", "10", "10", "11"),
              QStringList({"", kTooMuch, "Not Enough Fuel"}));
    // A base boost of 0 is legal: the small negative factor makes the ratio large.
    EXPECT_EQ(Injection("100", "100", "0", "10", "0"), QStringList({"16.025", "", ""}));
    // The nozzle ratio takes the leading numbers: "0,33" is 0 there, though 33 as a number.
    EXPECT_EQ(Injection("100", "100", "10", "10", "0", "0,33"), QStringList({"0", "", ""}));
    EXPECT_EQ(Injection("100", "100", "10", "10", "0", "0.3", "0"),
              QStringList({"Division by zero"}));

    EXPECT_TRUE(FuelInjectionReady({"0.3", "0.08", "100", "95", "10", "10", "0", "0.3"}));
    EXPECT_FALSE(FuelInjectionReady({"0", "0.08", "100", "95", "10", "10", "0", "0.3"}));
    EXPECT_FALSE(FuelInjectionReady({"0.3", "0.08", "100", "95", "10", "10", "0", ""}));
}

TEST(NozzleArea, SubtotalsRoundedTotalOnce) {
    NozzleTable table;
    for (auto& nozzle : table[1]) {
        nozzle = QStringLiteral("0.03");  // eight hat nozzles
    }
    table[2][0] = QStringLiteral("0");
    table[2][1] = QStringLiteral("abc");  // no nozzle either
    table[3][0] = QStringLiteral("0.05");
    const auto hat = CalcNozzleArea(table, 2);
    ASSERT_TRUE(hat.ok());
    EXPECT_EQ(hat->typeArea, "0.0056549");
    EXPECT_EQ(hat->typeDiameter, "0.0848530630061336");
    EXPECT_EQ(hat->totalArea, "0.0076184");
    EXPECT_EQ(hat->totalDiameter, "0.098");
    const auto head = CalcNozzleArea(table, 3);
    EXPECT_EQ(head->typeArea, "0");
    EXPECT_EQ(head->typeDiameter, "0");
    EXPECT_EQ(head->totalArea, "0.0076184");

    // Four positions each just under a rounding step: the total rounds the unrounded sum.
    NozzleTable tiny;
    for (auto& position : tiny) {
        position[0] = QStringLiteral("0.0002");  // 3.14159e-08 each
    }
    const auto areas = CalcNozzleArea(tiny, 1);
    EXPECT_EQ(areas->typeArea, "0");
    EXPECT_EQ(areas->totalArea, "1E-07");

    EXPECT_EQ(NozzleColumn(1, 1), "sBlowerNozzle1_val");
    EXPECT_EQ(NozzleColumn(4, 8), "sManifoldNozzle8_val");
    EXPECT_EQ(NozzlePositionCaption(2), "Hat Nozzles");
}

TEST(SlipbookCalc, TuneUpCommands) {
    const QString bin = test::CalcFolder();
    if (bin.isEmpty()) {
        GTEST_SKIP() << "no slipbook-calc to run";
    }
    const auto run = [&bin](const QStringList& args, int status = 0) {
        return test::CalcLine(bin, args, status);
    };
    // The ready test is reported, not applied.
    EXPECT_EQ(run({"holley", "100", "95", "72", "0"}), "71\t\t\t1");
    EXPECT_EQ(run({"holley", "0,5", "95", "72", "11"}),
              "\t" + kTooMuch + "\tNew Jet Out of Range\t0");
    EXPECT_EQ(run({"precision", "95", "100", "0.076", "2"}), "0.079\t\t1");
    EXPECT_EQ(run({"fi", "0.3", "0.08", "95", "100", "10", "10", "0", "0.3"}),
              "\t\tNot Enough Fuel\t1");
    QStringList nozzle{"nozzle", "4"};
    for (int i = 0; i < 32; ++i) {
        nozzle << (i >= 24 && i < 26 ? QStringLiteral("0.05") : QString());
    }
    EXPECT_EQ(run(nozzle), "0.003927\t0.0707107607947686\t0.003927\t0.071");
    run({"holley", "100", "95", "72"}, 2);
    run({"precision", "0", "0", "1", "0"}, 2);
    run({"nozzle", "5"}, 2);
}
