#include "weather/ui/frmWeatherHistory.h"

namespace slipbook::weather {

frmWeatherHistory::frmWeatherHistory(const shell::WindowContext& /*ctx*/, QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("frmWeatherHistory"));
    setWindowTitle(QStringLiteral("Weather History"));
}

}  // namespace slipbook::weather
