#include "prediction/calculators.h"
#include "support/calc.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::prediction;

namespace {

QStringList Texts(const QList<Message>& messages) {
    QStringList texts;
    for (const auto& m : messages) {
        texts << m.text;
    }
    return texts;
}

SetupRow DaRow(double da, std::optional<double> e14, std::optional<double> e18 = 6.0) {
    SetupRow r;
    r.densityAlt = da;
    r.quarterEt = e14;
    r.eighthEt = e18;
    return r;
}

SetupRow TsRow(double corr, double e14, const char* timer) {
    SetupRow r;
    r.corrFactor = corr;
    r.quarterEt = e14;
    r.eighthEt = e14 / 1.55;
    r.timer = QString::fromLatin1(timer);
    return r;
}

DensityAltInputs DaBoxes(const char* lastDa, const char* lastEt, const char* newDa) {
    DensityAltInputs in;
    in.da = {"1000", "2000", "3000"};
    in.et = {"10.00", "10.10", "10.20"};
    in.lastRunDa = lastDa;
    in.lastRunEt = lastEt;
    in.newDa = newDa;
    return in;
}

ThrottleStopInputs TsBoxes() {
    ThrottleStopInputs in;
    in.oldTimer = "2.10";
    in.oldCorr = "1.0";
    in.oldEt = "10.00";
    in.newCorr = "1.05";
    in.desiredEt = "10.00";
    in.corr = {"1.0 ", "1.0 "};
    in.et = {"9.9", "10.1"};
    in.timer = {"2.00 ", "2.20 "};
    return in;
}

const QString kQuarterMissing =
    QStringLiteral("Invalid setup information.  Some quarter mile info is missing.");
const QString kDifferentDa =
    QStringLiteral("Invalid setup information.  Runs must have different density altitudes.");
const QString kNeedSetup =
    QStringLiteral("You must enter setup information for this car before continuing");

}  // namespace

TEST(StandardDialIn, WorkedValuesFuelAndItsGuards) {
    EXPECT_EQ(StandardDialIn({"1.05", "11.5", "1.1"}, Fuel::Gas).results[0], "11.68");
    EXPECT_EQ(StandardDialIn({"1.05", "11.5", "1.1"}, Fuel::Methanol).results[0], "11.603");
    // Equal air gives the old ET back, rounded, whatever the fuel; no fuel at all changes nothing.
    for (Fuel f : {Fuel::Gas, Fuel::Methanol, Fuel::None}) {
        EXPECT_EQ(StandardDialIn({"0.98", "10.12345", "0.98"}, f).results[0], "10.123");
    }
    EXPECT_EQ(StandardDialIn({"1.05", "11.5", "1.1"}, Fuel::None).results[0], "11.5");
    // Worse air, slower car.
    EXPECT_GT(StandardDialIn({"1.0", "10", "1.1"}, Fuel::Gas).results[0].toDouble(), 10);

    // A zero (or nothing) raises the box and leaves the result empty; a negative goes through.
    const Outcome empty = StandardDialIn({"", "11.5", "1.1"}, Fuel::Gas);
    EXPECT_EQ(empty.results[0], "");
    ASSERT_EQ(empty.messages.size(), 1);
    EXPECT_EQ(empty.messages[0].text, "Enter all values before continuing!");
    EXPECT_EQ(empty.messages[0].title, "Error");
    EXPECT_EQ(empty.messages[0].icon, MsgIcon::Exclamation);
    EXPECT_TRUE(StandardDialIn({"-1.05", "11.5", "1.1"}, Fuel::Gas).messages.isEmpty());
    // Text that passes the guard but is no number stops the arithmetic with a reason.
    const Outcome junk = StandardDialIn({"1.05x", "11.5", "1.1"}, Fuel::Gas);
    EXPECT_EQ(junk.error, "Type mismatch");
    EXPECT_EQ(junk.results[0], "");

    // The check: in order, on the leading number of each box.
    EXPECT_EQ(StandardCheck({"0", "", ""}).reason, "Oops! Old correction factor is missing");
    EXPECT_EQ(StandardCheck({"1", "-2", ""}).reason, "Oops! Old ET is missing");
    EXPECT_EQ(StandardCheck({"1", "11 s", "abc"}).reason,
              "Oops! Please provide nonzero new correction factor");
    const Check on = StandardCheck({" 1.05 ", "11.5", "1.1"});
    EXPECT_TRUE(on.enabled);
    EXPECT_EQ(on.reason, "");
    EXPECT_FALSE(StandardCheck({"-1.05", "11.5", "1.1"}).enabled);
}

TEST(DensityAltDialIn, WorkedValueAndTheInformationLine) {
    const SetupRows rows = {DaRow(1000, 10.00), DaRow(2000, 10.10), DaRow(3000, 10.20)};
    const Outcome out = DensityAltDialIn(DaBoxes("1500", "10.05", "2500"), rows, true);
    EXPECT_EQ(out.results[0], "10.15");
    EXPECT_EQ(out.info, ".01 sec = 100Ft.");
    // In double precision the worked slope lies just under 0.0001 s/ft.
    EXPECT_EQ(Texts(out.messages), QStringList{kDifferentDa});

    // Four rows: six pairs in the line, sorted by DA; the dial-in keeps the three boxes' slope.
    const SetupRows four = {DaRow(4000, 10.5), DaRow(2000, 10.1), DaRow(1000, 10.0),
                            DaRow(3000, 10.2)};
    const Outcome wide = DensityAltDialIn(DaBoxes("1500", "10.05", "2500"), four, true);
    EXPECT_EQ(wide.info, ".01 sec = 62Ft.");
    EXPECT_TRUE(wide.messages.isEmpty());
    EXPECT_EQ(wide.results[0], "10.15");
    EXPECT_EQ(DensityAltSlope(four, true).info, ".01 sec = 62Ft.");

    // Rows closer than a thousandth of a foot count as a slope of 0, and still in the divisor.
    const SetupRows close = {DaRow(1000, 10.0), DaRow(1000.0005, 10.05), DaRow(3000, 10.33)};
    EXPECT_EQ(DensityAltSlope(close, true).info, ".01 sec = 98Ft.");
    // A falling slope floors away from zero and raises nothing.
    const Slope falling =
        DensityAltSlope({DaRow(1000, 10.6), DaRow(2000, 10.3), DaRow(3000, 10.0)}, true);
    EXPECT_EQ(falling.info, ".01 sec = -34Ft.");
    EXPECT_TRUE(falling.messages.isEmpty());

    // A dial-in of 0 shows as nothing.
    EXPECT_EQ(DensityAltDialIn(DaBoxes("1000", "10", "-99000"), four, true).results[0], "");
}

TEST(DensityAltDialIn, MissingQuarterMileSetupAndFailures) {
    // One quarter-mile ET absent: every row takes its eighth-mile ET, with a box each when the
    // quarter mile was asked for.
    const SetupRows eighths = {DaRow(1000, 10.0, 6.0), DaRow(2000, 0, 6.03),
                               DaRow(3000, 10.2, 6.09)};
    const Slope quarter = DensityAltSlope(eighths, true);
    EXPECT_EQ(Texts(quarter.messages),
              (QStringList{kQuarterMissing, kQuarterMissing, kQuarterMissing, kDifferentDa}));
    EXPECT_EQ(DensityAltSlope(eighths, false).info, ".01 sec = 0Ft.");
    EXPECT_EQ(Texts(DensityAltSlope(eighths, false).messages), QStringList{kDifferentDa});
    // With every quarter-mile ET there, the eighth-mile option still takes the quarter-mile ETs.
    const SetupRows both = {DaRow(1000, 10.0, 6.0), DaRow(2000, 10.3, 6.0), DaRow(3000, 10.6, 6.0)};
    EXPECT_EQ(DensityAltSlope(both, false).info, ".01 sec = 33Ft.");

    // Fewer than two rows: the box, then no slope to divide by.
    const Outcome none = DensityAltDialIn(DaBoxes("1500", "10.05", "2500"), {DaRow(1, 1)}, true);
    EXPECT_EQ(Texts(none.messages), QStringList{kNeedSetup});
    EXPECT_EQ(none.error, "Division by zero");
    EXPECT_EQ(none.results[0], "");
    // Two boxes with the same DA stop before the rows are read.
    DensityAltInputs same = DaBoxes("1500", "10.05", "2500");
    same.da[1] = "1000";
    const Outcome equal = DensityAltDialIn(same, both, true);
    EXPECT_EQ(equal.error, "Division by zero");
    EXPECT_TRUE(equal.messages.isEmpty());
    // A Null read as a number, and a missing eighth-mile ET, stop with a reason.
    EXPECT_EQ(DensityAltSlope({DaRow(1000, std::nullopt), DaRow(2000, 10)}, true).error,
              "Invalid use of Null");
    EXPECT_EQ(DensityAltSlope({DaRow(1000, 10, std::nullopt), DaRow(2000, 10)}, true).error,
              "Type mismatch");
    EXPECT_EQ(Texts(DensityAltDialIn(DaBoxes("0", "10", "2500"), both, true).messages),
              QStringList{"Enter all values before continuing!"});
}

TEST(DensityAltDialIn, CheckOrderAndSetupBoxes) {
    DensityAltInputs in = DaBoxes("1500", "10.05", "2500");
    EXPECT_TRUE(DensityAltCheck(in).enabled);
    in.newDa = " 0 ";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! Please provide nonzero new DA");
    in.newDa = "  ";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! Please provide new DA");
    in.lastRunEt = "-1";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! Last run has no ET");
    in.lastRunDa = " ";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! Last run has no DA");
    in.et[2] = " ";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! A setup run has no ET");
    // A zero DA passes: the box only has to hold something.
    in.da[1] = "0";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! A setup run has no ET");
    in.da[1] = "";
    EXPECT_EQ(DensityAltCheck(in).reason, "Oops! Three setup runs with nonzero DA required");

    // The boxes come from the first three stored rows, unsorted; eighth-mile ETs with a blank.
    const SetupRows rows = {DaRow(3000, 10.2, 6.3), DaRow(1000, std::nullopt, 6.1),
                            DaRow(2000, 10.1, std::nullopt), DaRow(500, 9.9)};
    const DensityAltSetupBoxes quarter = DensityAltSetupBoxTexts(rows, false);
    EXPECT_EQ(quarter.da, (std::array<QString, 3>{"3000", "1000", "2000"}));
    EXPECT_EQ(quarter.et, (std::array<QString, 3>{"10.2", "", "10.1"}));
    EXPECT_EQ(DensityAltSetupBoxTexts(rows, true).et,
              (std::array<QString, 3>{"6.3 ", "6.1 ", " "}));
    EXPECT_TRUE(DensityAltSetupBoxTexts({rows[0], rows[1]}, false).tooFew);
}

TEST(ThrottleStopTimer, WorkedValueSortingAndTheAddedThousandth) {
    const SetupRows rows = {TsRow(1.0, 9.90, "2.00"), TsRow(1.0, 10.10, "2.20")};
    const Outcome out = ThrottleStopTimer(TsBoxes(), rows, true, false);
    // 2.10 - 0.164 rounds to 1.936; the timer is set one thousandth above.
    EXPECT_EQ(out.results[0], "1.937");
    EXPECT_EQ(out.info, ".01 ET= 0.01");
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_TRUE(ThrottleStopCheck(TsBoxes(), 2).enabled);

    // Rows are taken in order of correction factor: a third row stored first is passed over.
    const SetupRow slow = TsRow(1.2, 11.0, "3.00");
    const SetupRow a = TsRow(1.01, 10.0, "2.00");
    const SetupRow b = TsRow(1.02, 10.3, "2.40");
    const QString sorted = ThrottleStopTimer(TsBoxes(), {a, b}, true, false).results[0];
    EXPECT_EQ(ThrottleStopTimer(TsBoxes(), {slow, b, a}, true, false).results[0], sorted);
    EXPECT_NE(ThrottleStopTimer(TsBoxes(), {a, slow}, true, false).results[0], sorted);
    // Methanol responds less to the air.
    EXPECT_NE(ThrottleStopTimer(TsBoxes(), rows, true, true).results[0], "1.937");

    // Equal setup timers: Calculate stays off, and a direct call moves the timer by nothing.
    const SetupRows equal = {TsRow(1.0, 9.90, "2.00"), TsRow(1.0, 10.10, "2.0")};
    EXPECT_EQ(ThrottleStopTimer(TsBoxes(), equal, true, false).results[0], "2.101");
    EXPECT_EQ(ThrottleStopTimer(TsBoxes(), equal, true, false).info, ".01 ET= 0");
    // Two runs that correct to the same ET stop with a reason.
    const SetupRows sameEt = {TsRow(1.0, 10.0, "2.00"), TsRow(1.0, 10.0, "2.20")};
    EXPECT_EQ(ThrottleStopTimer(TsBoxes(), sameEt, true, false).error, "Division by zero");

    // A missing quarter-mile ET complains once a row only under the quarter-mile option.
    SetupRows eighths = rows;
    eighths[0].quarterEt = 0;
    EXPECT_EQ(Texts(ThrottleStopTimer(TsBoxes(), eighths, true, false).messages),
              (QStringList{kQuarterMissing, kQuarterMissing}));
    EXPECT_TRUE(ThrottleStopTimer(TsBoxes(), eighths, false, false).messages.isEmpty());
    // One row: the box, then the division by a zero slope.
    const Outcome one = ThrottleStopTimer(TsBoxes(), {rows[0]}, true, false);
    EXPECT_EQ(Texts(one.messages), QStringList{kNeedSetup});
    EXPECT_FALSE(one.error.isEmpty());
    // Setup boxes that hold no number stop the calculation before the rows are read.
    ThrottleStopInputs junk = TsBoxes();
    junk.timer[1] = " ";
    EXPECT_EQ(ThrottleStopTimer(junk, rows, true, false).error, "Type mismatch");
}

TEST(ThrottleStopTimer, CheckOrderAndSetupBoxes) {
    ThrottleStopInputs in = TsBoxes();
    EXPECT_EQ(ThrottleStopCheck(in, 1).reason, "Oops! Two setup runs with nonzero ET required");
    in.timer[1] = "2.0";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! Setup runs must have different timer values");
    in.et[0] = "0";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! Two setup runs with nonzero ET required");
    in.desiredEt = " ";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! Please provide nonzero desired ET");
    in.oldEt = "x";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! Old ET is missing or 0");
    in.oldTimer = " ";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! Old timer value is missing");
    in.newCorr = "0";
    EXPECT_EQ(ThrottleStopCheck(in, 2).reason, "Oops! New correction factor is missing or 0");
    in.oldCorr = "";
    const Check off = ThrottleStopCheck(in, 2);
    EXPECT_EQ(off.reason, "Oops! Old correction factor is missing or 0");
    EXPECT_FALSE(off.enabled);
    EXPECT_FALSE(off.failed);

    // The boxes: run 1 and 2 from the first two stored rows, ETs by the DA program's distance.
    SetupRow nullTimer = TsRow(1.01, 10.2, "x");
    nullTimer.timer.reset();
    const SetupRows rows = {TsRow(1.02, 9.3, "2.5"), nullTimer, TsRow(0.9, 10, "1")};
    const ThrottleStopSetupBoxes quarter = ThrottleStopSetupBoxTexts(rows, false);
    EXPECT_EQ(quarter.corr, (std::array<QString, 2>{"1.02 ", "1.01 "}));
    EXPECT_EQ(quarter.timer, (std::array<QString, 2>{"2.5 ", " "}));
    EXPECT_EQ(quarter.et, (std::array<QString, 2>{"9.3", "10.2"}));
    EXPECT_EQ(ThrottleStopSetupBoxTexts(rows, true).et[0], "6");
    EXPECT_TRUE(ThrottleStopSetupBoxTexts({rows[0]}, false).tooFew);
}

TEST(RunCompleter, WorkedValueAndCheck) {
    const Outcome out = RunCompleter({"6.5", "10.2", "130", "6.4"});
    EXPECT_EQ(out.results, (QStringList{"10.043", "132.03"}));
    // The same interim gives the full run back.
    EXPECT_EQ(RunCompleter({"6.5", "10.2", "130", "6.5"}).results, (QStringList{"10.2", "130."}));
    EXPECT_EQ(RunCompleter({"0", "10.2", "130", "6.5"}).error, "Division by zero");

    EXPECT_EQ(RunCompleterCheck({"", "", "", ""}).reason, "Oops! Old interim ET is missing");
    EXPECT_EQ(RunCompleterCheck({"6.5", "-1", "", ""}).reason, "Oops! Old full ET is missing");
    EXPECT_EQ(RunCompleterCheck({"6.5", "10", "0", ""}).reason, "Oops! Old full MPH is missing");
    EXPECT_EQ(RunCompleterCheck({"6.5", "10", "130", " "}).reason,
              "Oops! Please provide nonzero new interim ET");
    EXPECT_TRUE(RunCompleterCheck({"6.5", "10", "130", "6"}).enabled);
    // A number beyond a double stops the check itself.
    EXPECT_TRUE(RunCompleterCheck({"1e999", "10", "130", "6"}).failed);
    EXPECT_EQ(AllNonZero({u"1", u"1e999"}), std::nullopt);
    EXPECT_EQ(AllNonZero({u"1", u" 0x"}), false);
}

TEST(SlipbookCalc, PredictionCommands) {
    const QString bin = test::CalcFolder();
    if (bin.isEmpty()) {
        GTEST_SKIP() << "no slipbook-calc to run";
    }
    const auto run = [&bin](const QStringList& args, int status = 0) {
        return test::CalcLine(bin, args, status);
    };
    EXPECT_EQ(run({"stddialin", "1.05", "11.5", "1.1", "methanol"}), "11.603\t\t1\t");
    EXPECT_EQ(run({"stddialin", "0", "11.5", "1.1 ", "none"}),
              "\tEnter all values before continuing!\t0\tOops! Old correction factor is missing");
    // Rows are sorted by DA, Nulls first: a Null read as a number stops the program.
    EXPECT_EQ(run({"dadialin", "1500", "10.05", "2500", "1000", "10.00", "2000", "10.10", "3000",
                   "10.20", "4000:10.5:6", "2000:10.1:6", "1000:10:6", "3000:10.2:6"}),
              "10.15\t.01 sec = 62Ft.\t");
    run({"dadialin", "1500", "10.05", "2500", "1000", "10.00", "2000", "10.10", "3000", "10.20",
         "4000:10.5:6", "null:10.1:6"},
        2);
    EXPECT_EQ(run({"dadialin", "--eighth", "1500", "10.05", "2500", "1000", "10", "2000", "10.1",
                   "3000", "10.2", "1000:0:6", "2000:10.1:6.03", "3000:10.2:6.09"}),
              "10.15\t.01 sec = 222Ft.\t" + kDifferentDa);
    EXPECT_EQ(run({"throttlestop", "2.10", "1.0", "10.00", "1.05", "10.00", "1.0", "9.90", "2.00",
                   "1.0", "10.10", "2.20", "1.0:10.1:6.5:2.20", "1.0:9.9:6.4:2.00"}),
              "1.937\t.01 ET= 0.01\t\t1\t");
    // Without setup rows the slope is 0, and the timer is divided by it.
    run({"throttlestop", "--eighth", "--methanol", "2.10", "1.0", "10.00", "1.05", "10.00", "1.0",
         "9.90", "2.00", "1.0", "10.10", "2.20"},
        2);
    EXPECT_EQ(
        run({"throttlestop", "--methanol", "2.10", "1.0", "10.00", "1.05", "0", "1.0", "9.90",
             "2.00", "1.0", "10.10", "2.20"}),
        "\t\tEnter all values before continuing!\t0\tOops! Please provide nonzero desired ET");
    EXPECT_EQ(run({"runcompleter", "6.5", "10.2", "130", "6.4"}), "10.043\t132.03\t1\t");
    EXPECT_EQ(run({"runcompleter", "0", "10.2", "130", "6.4"}),
              "\t\t0\tOops! Old interim ET is missing");
    run({"runcompleter", "6.5x", "10.2", "130", "6.4"}, 2);
    run({"throttlestop", "1"}, 2);
    run({"dadialin", "1500", "10.05", "2500", "1000", "10", "2000", "10.1", "3000", "10.2", "1:2"},
        2);
}
