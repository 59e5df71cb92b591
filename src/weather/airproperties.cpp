#include "weather/airproperties.h"

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

// The wet bulb search walks down from T in half degrees; far beyond any weather it would not
// end in useful time, or at all once T - 0.5 == T.
constexpr long kMaxWetBulbRounds = 20'000'000;

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

    // The first w from T down to 32 whose short-curve pressure, less the psychrometric term,
    // falls strictly below the vapour pressure; none gives 0.
    const double Vw = m.mul(Polynomial(m, kSaturationShort, T), m.div(H, 100));
    double W = 0;
    long rounds = 0;
    for (double w = T; w >= 32; w = w + -0.5) {
        const double f = m.sub(Polynomial(m, kSaturationShort, w),
                               m.div(m.mul(m.sub(T, w), m.div(B, 29.92)), 90));
        if (m.failed()) {
            return CalcResult<AirProperties>::failure(m.error());
        }
        if (f < Vw) {
            W = w;
            break;
        }
        if (w + -0.5 == w || ++rounds >= kMaxWetBulbRounds) {
            return CalcResult<AirProperties>::failure(
                QStringLiteral("Wet bulb search does not end"));
        }
    }
    if (m.failed()) {
        return CalcResult<AirProperties>::failure(m.error());
    }

    AirProperties p;
    p.CorrFactor = CF;
    p.DensityAlt = DA;
    p.AirDensity = AD;
    p.VaporPressure = Pv;
    p.DryBarometer = Dry;
    p.DewPoint = Dp;
    p.WetBulbTemp = W;
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
