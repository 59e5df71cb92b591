#pragma once

// The air-property arithmetic every weather figure comes from: two pressure conversions, the
// full calculation of the seven figures, and their display texts. No state, no windows.

#include "common/numbers.h"

#include <QString>
#include <QStringView>

#include <array>

namespace slipbook::weather {

struct AirProperties {
    double CorrFactor = 0;
    double DensityAlt = 0;
    double AirDensity = 0;
    double VaporPressure = 0;
    double DryBarometer = 0;
    double DewPoint = 0;
    double WetBulbTemp = 0;
};

// The seven output fields as ShowAirProperties writes them, in its order, with their formats.
struct AirField {
    const char* name;
    const char* format;
};
inline constexpr std::array<AirField, 7> kAirFields = {{
    {"txtCorrFactor", "###,##0.0000"},
    {"txtDensityAlt", "###,##0"},
    {"txtAirDensity", "###,##0.00"},
    {"txtVaporPressure", "###,##0.000"},
    {"txtDryBarometer", "###,##0.00"},
    {"txtDewPoint", "###,##0"},
    {"txtWetBulbTemp", "##0.0"},
}};
using AirTexts = std::array<QString, 7>;

// Barometric pressure in Hg for a pressure altitude in feet, to two decimals.
CalcResult<double> PressureAltitudeToBarometer(QStringView altitudeText);
// Pressure altitude in whole feet for a barometric pressure in Hg.
CalcResult<double> BarometerToPressureAltitude(QStringView barometerText);

// Temperature in degrees F, relative humidity in percent, barometric pressure in Hg; each text
// strictly converted. Fails where the original stops with a run-time error: a text that is no
// number, or a floating-point failure at an absurd input.
CalcResult<AirProperties> CalcAirProperties(QStringView temperatureText, QStringView humidityText,
                                            QStringView barometerText);

// The wet bulb search of CalcAirProperties on its own, for the unrounded temperature, humidity
// (after the floor for zero) and barometer: the first half degree from T down to 32 whose
// short-curve pressure, less the psychrometric term, falls strictly below the vapour pressure,
// or 0. `rounds` counts the half degrees looked at: at most 257, and 62 for any input the
// calculation gets this far with beyond 160.5 degrees.
struct WetBulbSearch {
    double value = 0;
    int rounds = 0;
};
CalcResult<WetBulbSearch> SearchWetBulb(double temperature, double humidity, double barometer);

// The texts ShowAirProperties writes into the fields of kAirFields.
AirTexts AirPropertyTexts(const AirProperties& properties);

// What a window's recalculation shows from its three input texts: seven "0" when the lenient
// parse of the temperature or of the barometer is not above zero (humidity takes no part),
// else the full calculation.
CalcResult<AirTexts> RecalculatedAirTexts(QStringView temperatureText, QStringView humidityText,
                                          QStringView barometerText);

}  // namespace slipbook::weather
