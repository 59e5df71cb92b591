#include "testtune/calculators.h"
#include "support/calc.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::testtune;

namespace {

QStringList StandardDay(const char* corr, const char* et, const char* mph, bool methanol = false) {
    const auto r = CalcStandardDay({corr, et, mph}, methanol);
    return r ? QStringList{r->et, r->mph} : QStringList{r.error()};
}

IntermediateInputs Times(const char* corr, std::array<const char*, 5> times) {
    IntermediateInputs in;
    in.corr = QString::fromLatin1(corr);
    for (int i = 0; i < kTimingPoints; ++i) {
        in.times[i] = QString::fromLatin1(times[i]);
    }
    return in;
}

QStringList Corrected(const IntermediateResult& r) {
    QStringList out(r.times.begin(), r.times.end());
    out << r.error;
    return out;
}

QStringList Horsepower(const char* et, const char* weight, const char* corr, const char* mph,
                       bool eighth = false) {
    const auto r = CalcEstimatedHP({et, mph, weight, corr, eighth});
    return r ? QStringList{r->estimatedHp, r->correctedHp, r->mphHp} : QStringList{r.error()};
}

QStringList Elapsed(const char* hp, const char* weight) {
    const EstimatedEtResult r = CalcEstimatedET({hp, weight});
    return {r.quarterEt, r.eighthEt, r.quarterMph, r.eighthMph, r.error};
}

}  // namespace

TEST(StandardDay, CorrectsToTheStandardDayWithBothRoundingsOfTheSpeed) {
    EXPECT_EQ(StandardDay("1.05", "10.00", "130"), QStringList({"9.839", "132.1"}));
    // Poorer air than the standard day: the run would have been quicker there, and the
    // methanol car takes up less of the change.
    EXPECT_EQ(StandardDay("0.95", "10", "130"), QStringList({"10.172", "127.8"}));
    const QStringList methanol = StandardDay("1.05", "10.00", "130", true);
    EXPECT_GT(methanol[0].toDouble(), 9.839);
    EXPECT_LT(methanol[0].toDouble(), 10);
    // A factor of 1 gives the run back, whatever the fuel; the speed is rounded to the
    // hundredth before the format rounds it to the tenth (130.149 -> 130.15 -> 130.2), and the
    // format keeps its point.
    EXPECT_EQ(StandardDay("1", "10", "130.149", true), QStringList({"10.", "130.2"}));
    EXPECT_EQ(StandardDay("1", "9.8765", "140.04"), QStringList({"9.877", "140."}));
    // A figure that keeps no digit in its format is no figure.
    EXPECT_EQ(StandardDay("1", "10", "-0.01"), QStringList({"10.", ""}));

    // A text that is no number, or a zero time or factor, is a reason and not a result.
    EXPECT_EQ(StandardDay("1.05", "abc", "130"), QStringList({"Type mismatch"}));
    EXPECT_EQ(StandardDay("1.05", "", "130"), QStringList({"Type mismatch"}));
    EXPECT_EQ(StandardDay("1e400", "10", "130"), QStringList({"Overflow"}));
    EXPECT_EQ(StandardDay("1.05", "0", "130"), QStringList({"Division by zero"}));
    EXPECT_EQ(StandardDay("0", "10", "130"), QStringList({"Division by zero"}));
    EXPECT_EQ(StandardDay("1.05", "-10", "130"),
              QStringList({"Invalid procedure call or argument"}));

    // The check looks for empty texts only, blanks being empty.
    EXPECT_TRUE(IsStandardDayEnabled({"1.05 ", "abc", "0"}));
    EXPECT_FALSE(IsStandardDayEnabled({"1.05", "  ", "130"}));
    EXPECT_FALSE(IsStandardDayEnabled({"", "10", "130"}));
}

TEST(IntermediateTimes, EveryPointScaledAloneUntilOneFails) {
    const auto worked = Times("1.05", {"1.30", "4.00", "6.50", "8.50", "10.20"});
    EXPECT_EQ(Corrected(CalcIntermediateTimes(worked, false)),
              QStringList({"1.279", "3.935", "6.395", "8.363", "10.035", ""}));
    EXPECT_EQ(Corrected(CalcIntermediateTimes(
                  Times("1", {"1.3004", "4.0006", "6.5", "8.49949", "10.2 "}), true)),
              QStringList({"1.3", "4.001", "6.5", "8.499", "10.2", ""}));
    ASSERT_TRUE(CorrectTime(1.05, 10.0, true));
    EXPECT_GT(*CorrectTime(1.05, 10.0, true), *CorrectTime(1.05, 10.0, false));
    EXPECT_EQ(CorrectTime(1.05, 0, false).error(), "Division by zero");

    // A point that fails leaves the ones before it; a bad factor stops at the first.
    EXPECT_EQ(Corrected(CalcIntermediateTimes(
                  Times("1.05", {"1.30", "4.00", "6.5x", "8.50", "10.20"}), false)),
              QStringList({"1.279", "3.935", "", "", "", "Type mismatch"}));
    EXPECT_EQ(Corrected(CalcIntermediateTimes(
                  Times("n/a", {"1.30", "4.00", "6.50", "8.50", "10.20"}), false)),
              QStringList({"", "", "", "", "", "Type mismatch"}));
    // A zero 60 foot time passes the check and fails in the arithmetic.
    const auto zero = Times("1.05", {"0 ", "4.00", "6.50", "8.50", "10.20"});
    EXPECT_TRUE(IsIntermediateEnabled(zero));
    EXPECT_EQ(CalcIntermediateTimes(zero, false).error, "Division by zero");

    // Times compared as numbers: a quarter over 10 s after a 1000 ft time under it is in order.
    EXPECT_TRUE(IsIntermediateEnabled(worked));
    EXPECT_TRUE(IsIntermediateEnabled(Times("", {"1.3", "4", "6.5", "9.9", "10.1"})));
    EXPECT_FALSE(IsIntermediateEnabled(Times("1", {"1.3", "4", "6.5", "10.1", "9.9"})));
    EXPECT_FALSE(IsIntermediateEnabled(Times("1", {"1.3", "4", "4", "8.5", "10.2"})));
    EXPECT_FALSE(IsIntermediateEnabled(Times("1", {" ", "4", "6.5", "8.5", "10.2"})));
    EXPECT_FALSE(IsIntermediateEnabled(Times("1", {"1.3", "4", "6.5", "8.5", "1e400"})));
}

TEST(EstimatedHorsepower, FloorsTheFirstTwoAndRoundsTheThird) {
    // At 5.825 s the law gives the weight back: 725.9 floors to 725, the factor acts on the
    // floored figure (761.25 -> 761), and the MPH figure is rounded by its format.
    EXPECT_EQ(Horsepower("5.825", "725.9", "1.05", "234"), QStringList({"725", "761", "726"}));
    EXPECT_EQ(Horsepower("8.8", "2500", "1.0", "154.89"), QStringList({"725", "725", "725"}));
    // An eighth-mile time is taken up to the quarter mile; there is no MPH figure.
    EXPECT_EQ(Horsepower("3.698875", "726.5", "1.05", "", true), QStringList({"726", "762", ""}));

    EXPECT_EQ(Horsepower("0", "2500", "1", "150"), QStringList({"Division by zero"}));
    EXPECT_EQ(Horsepower("8.8", "2500", "1", "fast"), QStringList({"Type mismatch"}));
    EXPECT_EQ(Horsepower("8.8", "0", "1", "150"), QStringList({"", "", ""}));
    EXPECT_EQ(Horsepower("10", "2500", "1", "-5"), QStringList({"494", "494", ""}));

    EXPECT_TRUE(IsEstimatedHPEnabled({"8.8", "", "2500", "1", true}));
    EXPECT_FALSE(IsEstimatedHPEnabled({"8.8", "", "2500", "1", false}));
    EXPECT_FALSE(IsEstimatedHPEnabled({"8.8", "150", "2500", " ", false}));
}

TEST(EstimatedEt, EachStepReadsTheBoxTheLastOneWrote) {
    EXPECT_EQ(Elapsed("725", "2500"), QStringList({"8.8", "5.59", "154.89", "127.01", ""}));
    // The eighth mile comes from the unrounded quarter mile: 10.7772... x 0.635 gives 6.84,
    // where the rounded 10.78 would have given 6.85.
    EXPECT_EQ(Elapsed("300", "1900"), QStringList({"10.78", "6.84", "126.48", "103.71", ""}));
    // A zero weight gets through the times and stops at the speeds; the boxes written stay.
    EXPECT_EQ(Elapsed("725", "0"), QStringList({"0", "0", "", "", "Division by zero"}));
    EXPECT_EQ(Elapsed("0", "2500"), QStringList({"", "", "", "", "Division by zero"}));
    EXPECT_EQ(Elapsed("725", "heavy"), QStringList({"", "", "", "", "Type mismatch"}));

    EXPECT_TRUE(IsEstimatedETEnabled({"0", "x"}));
    EXPECT_FALSE(IsEstimatedETEnabled({"725", " "}));
}

TEST(SlipbookCalc, TestAndTuneCommands) {
    const QString bin = test::CalcFolder();
    if (bin.isEmpty()) {
        GTEST_SKIP() << "no slipbook-calc to run";
    }
    const auto run = [&bin](const QStringList& args, int status = 0) {
        return test::CalcLine(bin, args, status);
    };
    EXPECT_EQ(run({"stdday", "1.05", "10.00", "130", "gas"}), "9.839\t132.1\t1");
    EXPECT_EQ(run({"correcttime", "1.05", "10.20", "gas"}), "10.035");
    EXPECT_EQ(run({"inttimes", "1.05", "1.30", "4.00", "6.50", "8.50", "10.20", "gas"}),
              "1.279\t3.935\t6.395\t8.363\t10.035\t1");
    EXPECT_EQ(run({"esthp", "5.825", "725.9", "1.05", "234"}), "725\t761\t726\t1");
    EXPECT_EQ(run({"esthp", "--eighth", "3.698875", "726.5", "1.05"}), "726\t762\t\t1");
    EXPECT_EQ(run({"estet", "725", "2500"}), "8.8\t5.59\t154.89\t127.01\t1");
    // The check is reported, not applied; a run-time error is exit status 2.
    EXPECT_EQ(run({"stdday", "1.05", "10", " 130", "methanol"}).section(u'\t', 2), "1");
    run({"stdday", "1.05", "0", "130", "gas"}, 2);
    run({"inttimes", "1.05", "1.30", "4.00", "x", "8.50", "10.20", "gas"}, 2);
    run({"esthp", "8.8", "2500", "1"}, 2);
    run({"correcttime", "1", "10", "diesel"}, 2);
}
