#pragma once

// State of the main window that does not need a window: the weather station directory.

#include <QString>

namespace slipbook::shell {

// Where the weather station program leaves its files unless the command line says otherwise.
QString DefaultWeatherDir();

// The weather directory for this run: the `dir=` value of the command line, else the default.
QString WeatherDirInit(const QString& commandLine);

}  // namespace slipbook::shell
