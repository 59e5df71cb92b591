#include "weather/airproperties.h"
#include "support/calc.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <array>
#include <cmath>
#include <ostream>
#include <random>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using slipbook::weather::AirTexts;
using slipbook::weather::BarometerToPressureAltitude;
using slipbook::weather::CalcAirProperties;
using slipbook::weather::PressureAltitudeToBarometer;
using slipbook::weather::RecalculatedAirTexts;
using slipbook::weather::SearchWetBulb;

namespace {

// The seven texts joined by tabs, or "error: reason".
QString Shown(const char* t, const char* h, const char* b) {
    const auto r =
        RecalculatedAirTexts(QString::fromUtf8(t), QString::fromUtf8(h), QString::fromUtf8(b));
    if (!r) {
        return "error: " + r.error();
    }
    return QStringList(r->begin(), r->end()).join(u'\t');
}

QString WetBulb(const char* t, const char* h, const char* b) {
    return Shown(t, h, b).section(u'\t', 6);
}

struct Worked {
    const char* t;
    const char* h;
    const char* b;
    const char* shown;
};

const Worked kWorked[] = {
    {"75", "50", "29.92", "1.0294\t1,468\t95.80\t0.438\t29.48\t55\t62.5"},
    {"60", "0", "29.92", "1.0000\t0\t100.00\t0.000\t29.92\t4\t38.5"},
    {"100", "20", "28.5", "1.1045\t4,567\t87.30\t0.387\t28.11\t52\t68.5"},
    {"90", "100", "29.5", "1.0959\t4,008\t88.80\t1.421\t28.08\t90\t89.5"},
    {"32", "50", "30", "0.9730\t-1,893\t105.70\t0.090\t29.91\t20\t0.0"},
};

}  // namespace

TEST(AirProperties, WorkedValues) {
    for (const auto& w : kWorked) {
        EXPECT_EQ(Shown(w.t, w.h, w.b), w.shown) << w.t << " " << w.h << " " << w.b;
    }
    // The figure itself carries the rounding of the display table.
    const auto p = CalcAirProperties(u"75", u"50", u"29.92");
    ASSERT_TRUE(p.ok());
    EXPECT_EQ(p->CorrFactor, 1.0294);
}

TEST(AirProperties, PressureConversionsCarryTheirFormats) {
    EXPECT_EQ(*PressureAltitudeToBarometer(u"-1,000"), 31.02);
    // A grouped result reads back as thousands, not as a decimal comma.
    EXPECT_EQ(*BarometerToPressureAltitude(u"20"), 10731);
    EXPECT_EQ(*BarometerToPressureAltitude(u" 28 "), 1825);
    for (const char16_t* bad : {u"", u"-", u"28x", u"abc"}) {
        EXPECT_EQ(BarometerToPressureAltitude(bad).error(), "Type mismatch");
        EXPECT_EQ(PressureAltitudeToBarometer(bad).error(), "Type mismatch");
    }
    EXPECT_EQ(BarometerToPressureAltitude(u"1e80").error(), "Overflow");
}

TEST(AirProperties, EdgeCases) {
    // At 100 percent the search passes w = T, where the two sides are equal.
    EXPECT_EQ(WetBulb("80", "100", "29.92"), "79.5");
    // Above 100 percent it stops at once.
    EXPECT_EQ(WetBulb("75.25", "150", "29.92"), "75.3");
    // At 32 the search has one round; below it none.
    EXPECT_EQ(WetBulb("32", "100", "29.92"), "0.0");
    EXPECT_EQ(WetBulb("32", "101", "29.92"), "32.0");
    EXPECT_EQ(WetBulb("20", "50", "29.92"), "0.0");
    // Negative density altitude truncates downward and shows sign and grouping.
    const auto cold = CalcAirProperties(u"32", u"50", u"30");
    ASSERT_TRUE(cold.ok());
    EXPECT_EQ(cold->DensityAlt, -1893);
    // A dry barometer below zero is no failure: it merely shows negative figures.
    EXPECT_EQ(Shown("200", "100", "20"),
              "-14.4495\t54,823\t-6.10\t22.333\t-2.33\t-161,928,392\t199.5");
}

TEST(AirProperties, GuardsAndRunTimeErrors) {
    // The lenient parse guards temperature and barometer; humidity takes no part.
    for (const auto& in : {std::array{"0", "50", "29.92"}, std::array{"75", "50", "0"},
                           std::array{"", "", ""}, std::array{"abc", "50", "29.92"},
                           std::array{"-5", "50", "29.92"}, std::array{"75", "x", "-29.92"}}) {
        EXPECT_EQ(Shown(in[0], in[1], in[2]), "0\t0\t0\t0\t0\t0\t0") << in[0] << in[2];
    }
    // Past the guard the strict conversion fails on what the lenient one took.
    EXPECT_EQ(Shown("75", "", "29.92"), "error: Type mismatch");
    EXPECT_EQ(Shown("75abc", "50", "29.92"), "error: Type mismatch");
    EXPECT_EQ(Shown("75", "50", "29.92 in"), "error: Type mismatch");
    // Absurd figures fail in the arithmetic: a zero absolute temperature, vapour above the
    // standard barometer, an altitude past the atmosphere, an overflow.
    EXPECT_EQ(Shown("459.7-", "50", "29.92"), "error: Division by zero");
    EXPECT_EQ(Shown("250", "150", "29.92"), "error: Invalid procedure call or argument");
    EXPECT_EQ(Shown("75", "50", "1e3"), "error: Invalid procedure call or argument");
    EXPECT_EQ(Shown("1e400", "50", "29.92"), "error: Overflow");
    EXPECT_EQ(Shown("1e20", "-50", "29.92"), "error: Overflow");
    // Where T - 0.5 == T the search can't step down.
    EXPECT_EQ(SearchWetBulb(5e15, 1e-60, 29.92).error(), "Wet bulb search does not end");
}

// The wet bulb search as the formula states it: every half degree from T down to 32.
double WalkedWetBulb(double t, double h, double b) {
    const auto curve = [](double x) {
        constexpr double c[] = {0.1037899, -0.002710861, 0.0001905341, -1.504772e-06, 1.699244e-08};
        double r = c[1] * x + c[0];
        for (int i = 2; i < 5; ++i) {
            r = r + c[i] * std::pow(x, i);
        }
        return r;
    };
    const double vw = curve(t) * (h / 100);
    for (double w = t; w >= 32; w = w + -0.5) {
        if (curve(w) - ((t - w) * (b / 29.92)) / 90 < vw) {
            return w;
        }
    }
    return 0;
}

TEST(AirProperties, WetBulbSearchFindsTheSameHalfDegreeInFewRounds) {
    std::mt19937 random(20050704);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    // Weather walks half degree by half degree, 177 rounds at most.
    for (int i = 0; i < 2000; ++i) {
        const double t = between(32, 120), h = i % 40 ? between(0, 100) : 0.000001,
                     b = between(20, 31.5);
        const auto s = SearchWetBulb(t, h, b);
        ASSERT_TRUE(s.ok());
        ASSERT_EQ(s->value, WalkedWetBulb(t, h, b)) << t << " " << h << " " << b;
        ASSERT_LE(s->rounds, 177);
    }
    // Beyond it the half degree is found by halving, the same one.
    for (int i = 0; i < 300; ++i) {
        const double t = between(160.5, 3000), h = between(-100, 200), b = between(1, 60);
        const auto s = SearchWetBulb(t, h, b);
        ASSERT_TRUE(s.ok());
        ASSERT_EQ(s->value, WalkedWetBulb(t, h, b)) << t << " " << h << " " << b;
        ASSERT_LE(s->rounds, 30);
    }
    // The reading that once held the window for a second, and the far end of the range.
    for (const double t : {3e7, 4e15}) {
        const auto s = SearchWetBulb(t, -50, 29.92);
        ASSERT_TRUE(s.ok());
        EXPECT_EQ(s->value, 0);
        EXPECT_LE(s->rounds, 62);
    }
    EXPECT_LE(SearchWetBulb(1e6, 0.000001, 29.92)->rounds, 62);
}

TEST(SlipbookCalc, PrintsTheWindowTexts) {
    const QString bin = slipbook::test::CalcFolder();
    if (bin.isEmpty()) {
        GTEST_SKIP() << "no slipbook-calc to run";
    }
    const auto run = [&bin](const QStringList& args) { return slipbook::test::RunCalc(bin, args); };

    for (const auto& w : kWorked) {
        const slipbook::test::CalcRun r = run({"air", w.t, w.h, w.b});
        EXPECT_EQ(r.exitCode, 0);
        EXPECT_EQ(r.out, QString::fromUtf8(w.shown) + "\n");
    }
    EXPECT_EQ(run({"air", "0", "", "29.92"}).out, "0\t0\t0\t0\t0\t0\t0\n");
    EXPECT_EQ(run({"pa2baro", "1000"}).out, "28.86\n");
    EXPECT_EQ(run({"baro2pa", "28"}).out, "1825\n");
    const slipbook::test::CalcRun help = run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("air TEMP HUMIDITY BAROMETER"));

    for (const QStringList& bad : {QStringList{}, QStringList{"nosuch"}, QStringList{"air", "75"},
                                   QStringList{"air", "75", "", "29.92"},
                                   QStringList{"baro2pa", ""}, QStringList{"pa2baro", "1", "2"}}) {
        const slipbook::test::CalcRun r = run(bad);
        EXPECT_EQ(r.exitCode, 2) << bad.join(' ').toStdString();
        EXPECT_TRUE(r.out.isEmpty());
        EXPECT_EQ(r.err.count(u'\n'), 1);
        EXPECT_TRUE(r.err.startsWith("slipbook-calc: "));
    }
}
