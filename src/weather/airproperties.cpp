#include "weather/airproperties.h"

#include <algorithm>
#include <cmath>

namespace slipbook::weather {

namespace {

const QString kTypeMismatch = QStringLiteral("Type mismatch");

// Coefficients from the power 0 upward, as stored.
constexpr double kAltitudeToBarometer[] = {29.921273957897, -0.00108128479567018,
                                           1.5816792573751e-08, -1.16944410369473e-13,
                                           3.85824370086715e-19};
constexpr double kBarometerToAltitude[] = {53949.2191376398, -3502.57857617065, 95.0021892366249,
                                           -1.63610660299064, 0.0120100757652152};
constexpr double kSaturation[] = {0.103789944517717, -0.00271086116656027, 0.00019053413173998,
                                  -1.50477239426533e-06, 1.69924421536543e-08};
// The same curve cut to seven digits; only the wet bulb search uses it.
constexpr double kSaturationShort[] = {0.1037899, -0.002710861, 0.0001905341, -1.504772e-06,
                                       1.699244e-08};
constexpr double kDewPoint[] = {4.06124650957558, 196.297018266086,  -257.596311719611,
                                213.925961976324, -99.0834226608958, 23.3600830457471,
                                -2.17073708075477};

// The wet bulb search looks at the half degrees from T down to 32. The gap it tests, the short
// curve's pressure less the psychrometric term, rises with w (the curve rises above 32 degrees,
// at least 0.0070 in Hg a degree, and the term shrinks toward T), so past the first hit every
// lower half degree is a hit too: halving finds the first one without stepping through the
// range. A weather reading walks at most 177 half degrees, and keeps the plain walk.
constexpr qint64 kShortWalk = 256;
// Half degrees walked above the one halving found, so that rounding at a near tie can't move it.
constexpr qint64 kWalkMargin = 8;
constexpr double kLeastCurveSlope = 0.0070;
// Below this every T - k / 2 is exact, so halving and walking meet the same half degrees.
constexpr double kExactHalves = 4503599627370496.0;  // 2^52
// A walk that halving can't shorten (at 2^52 and beyond, T - 0.5 == T) gives up here.
constexpr int kMaxWalkRounds = 4096;

// c1 * x + c0 first, then each higher power added in turn: a tie at the display grain must
// fall as it always has.
template <size_t N>
double Polynomial(CheckedMath& m, const double (&c)[N], double x) {
    double r = m.add(m.mul(c[1], x), c[0]);
    for (size_t i = 2; i < N; ++i) {
        r = m.add(r, m.mul(c[i], m.pow(x, static_cast<double>(i))));
    }
    return r;
}

// Text in, polynomial, then through the format text and back, as the windows expect.
CalcResult<double> ConvertThroughText(QStringView text, const double (&c)[5], QStringView format) {
    const auto x = StrictNumber(text);
    if (!x) {
        return CalcResult<double>::failure(kTypeMismatch);
    }
    CheckedMath m;
    const double y = Polynomial(m, c, *x);
    if (m.failed()) {
        return CalcResult<double>::failure(m.error());
    }
    const auto back = StrictNumber(FormatNumber(y, format));
    if (!back) {
        return CalcResult<double>::failure(kTypeMismatch);
    }
    return *back;
}

double Round(CheckedMath& m, double x, double scale) {
    return m.div(m.floor(m.add(m.mul(x, scale), 0.5)), scale);
}

}  // namespace

CalcResult<double> PressureAltitudeToBarometer(QStringView altitudeText) {
    return ConvertThroughText(altitudeText, kAltitudeToBarometer, u"#0.00");
}

CalcResult<double> BarometerToPressureAltitude(QStringView barometerText) {
    return ConvertThroughText(barometerText, kBarometerToAltitude, u"###,##0");
}

CalcResult<WetBulbSearch> SearchWetBulb(double T, double H, double B) {
    CheckedMath m;
    const double Vw = m.mul(Polynomial(m, kSaturationShort, T), m.div(H, 100));
    if (m.failed()) {
        return CalcResult<WetBulbSearch>::failure(m.error());
    }
    WetBulbSearch search;
    const auto gap = [&](double w) {
        ++search.rounds;
        return m.sub(Polynomial(m, kSaturationShort, w),
                     m.div(m.mul(m.sub(T, w), m.div(B, 29.92)), 90));
    };

    qint64 start = 0;  // in half degrees below T
    if (T >= 32 && T < kExactHalves && B / 29.92 / 90 > -kLeastCurveSlope) {
        const auto last = static_cast<qint64>(std::floor((T - 32) * 2));
        if (last > kShortWalk) {
            // The first hit lies in (below, above]; last + 1 stands for none at all.
            qint64 below = -1;
            qint64 above = last + 1;
            while (above - below > 1) {
                const qint64 mid = below + (above - below) / 2;
                if (gap(T - 0.5 * static_cast<double>(mid)) < Vw) {
                    above = mid;
                } else {
                    below = mid;
                }
            }
            if (m.failed()) {
                return CalcResult<WetBulbSearch>::failure(m.error());
            }
            start = std::max<qint64>(0, above - kWalkMargin);
        }
    }

    // The first w from T down to 32 whose gap falls strictly below the vapour pressure; none
    // gives 0.
    for (double w = T - 0.5 * static_cast<double>(start); w >= 32; w = w + -0.5) {
        const double f = gap(w);
        if (m.failed()) {
            return CalcResult<WetBulbSearch>::failure(m.error());
        }
        if (f < Vw) {
            search.value = w;
            break;
        }
        if (w + -0.5 == w || search.rounds >= kMaxWalkRounds) {
            return CalcResult<WetBulbSearch>::failure(
                QStringLiteral("Wet bulb search does not end"));
        }
    }
    return search;
}

CalcResult<AirProperties> CalcAirProperties(QStringView temperatureText, QStringView humidityText,
                                            QStringView barometerText) {
    const auto t = StrictNumber(temperatureText);
    if (!t) {
        return CalcResult<AirProperties>::failure(kTypeMismatch);
    }
    const auto h = StrictNumber(humidityText);
    if (!h) {
        return CalcResult<AirProperties>::failure(kTypeMismatch);
    }
    const auto b = StrictNumber(barometerText);
    if (!b) {
        return CalcResult<AirProperties>::failure(kTypeMismatch);
    }
    const double T = *t;
    const double B = *b;
    // A zero humidity would give a zero vapour pressure.
    const double H = *h == 0 ? 0.000001 : *h;

    CheckedMath m;
    const double Ps = Polynomial(m, kSaturation, T);
    double Pv = m.mul(m.mul(H, 0.01), Ps);
    double Dp = Polynomial(m, kDewPoint, Pv);
    const double A = Polynomial(m, kBarometerToAltitude, B);
    const double k = m.mul(m.pow(10, -6), 6.875);
    const double rankine = m.add(T, 459.7);
    const double Sigma =
        m.mul(m.div(m.mul(m.sub(29.92, Pv), m.pow(m.sub(1, m.mul(k, A)), 5.2561)), rankine), 17.37);
    double DA = m.div(m.sub(1, m.pow(Sigma, m.div(1, 4.2561))), k);
    const double Bc = Polynomial(m, kAltitudeToBarometer, A);
    double Dry = m.sub(Bc, Pv);
    double CF = m.mul(m.sqrt(m.div(rankine, 519.7)), m.div(29.92, Dry));
    double AD = m.mul(m.div(Dry, rankine), 1737.5);

    CF = Round(m, CF, 10000);
    DA = m.floor(DA);
    AD = Round(m, AD, 10);
    Pv = Round(m, Pv, 1000);
    Dry = Round(m, Dry, 100);
    Dp = m.floor(m.add(Dp, 0.5));
    if (m.failed()) {
        return CalcResult<AirProperties>::failure(m.error());
    }

    const auto wetBulb = SearchWetBulb(T, H, B);
    if (!wetBulb) {
        return CalcResult<AirProperties>::failure(wetBulb.error());
    }

    AirProperties p;
    p.CorrFactor = CF;
    p.DensityAlt = DA;
    p.AirDensity = AD;
    p.VaporPressure = Pv;
    p.DryBarometer = Dry;
    p.DewPoint = Dp;
    p.WetBulbTemp = wetBulb->value;
    return p;
}

AirTexts AirPropertyTexts(const AirProperties& p) {
    const double values[] = {p.CorrFactor,   p.DensityAlt, p.AirDensity, p.VaporPressure,
                             p.DryBarometer, p.DewPoint,   p.WetBulbTemp};
    AirTexts texts;
    for (size_t i = 0; i < kAirFields.size(); ++i) {
        texts[i] = FormatNumber(values[i], QString::fromLatin1(kAirFields[i].format));
    }
    return texts;
}

CalcResult<AirTexts> RecalculatedAirTexts(QStringView temperatureText, QStringView humidityText,
                                          QStringView barometerText) {
    // Both guards are evaluated, as the original's non-short-circuit And does.
    const auto t = LeadingNumber(temperatureText);
    const auto b = LeadingNumber(barometerText);
    if (!t || !b) {
        return CalcResult<AirTexts>::failure(QStringLiteral("Overflow"));
    }
    if (!(*t > 0 && *b > 0)) {
        AirTexts zeros;
        zeros.fill(QStringLiteral("0"));
        return zeros;
    }
    const auto p = CalcAirProperties(temperatureText, humidityText, barometerText);
    if (!p) {
        return CalcResult<AirTexts>::failure(p.error());
    }
    return AirPropertyTexts(*p);
}

}  // namespace slipbook::weather
