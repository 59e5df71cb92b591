#include "run/ui/frmRun.h"

#include "weather/station.h"

#include <QLineEdit>
#include <QPushButton>

namespace slipbook::run {

// ---------------------------------------------------------------------------------------------
// The station's reading

void frmRun::GetWeather() {
    weatherRequested_ = true;
    messages_.inform(
        QStringLiteral("Go to Barometrix, point (and click) at the weather you want in the graph "
                       "or data lines, then return here to find new weather variables inserted "
                       "automatically!"));
    SetWeatherButtonRed(true);
    // An old answer must not be taken for the new one.
    weather::ClearChosenReading(state_.weatherDir);
    timer_->start(weather::kPollFast);
    weather::BringStationForward();
}

void frmRun::SetWeatherButtonRed(bool red) {
    GetWeather_->setPalette(QPalette());
    if (red) {
        QPalette palette = GetWeather_->palette();
        palette.setColor(QPalette::ButtonText, Qt::red);
        GetWeather_->setPalette(palette);
    }
}

void frmRun::BrokerTimer_Timer() {
    stationBuffer_.clear();
    const weather::StationRead read = weather::ReadChosenReading(state_.weatherDir);
    if (!read.opened) {
        return;
    }
    stationBuffer_ = read.record;
    if (stationBuffer_.isEmpty()) {
        return;
    }
    timer_->stop();
    const weather::StationFields fields = weather::ParseStationRecord(stationBuffer_);
    QLineEdit* const inputs[] = {txtTemp_, txtHumidity_, txtBarometricPressure_};
    for (int i = 0; i < fields.count; ++i) {
        inputs[i]->setText(fields.texts[i]);
    }
    if (!fields.complete()) {
        return;
    }
    // No range test: these are the station's figures, not the user's typing.
    if (const auto altitude = weather::PressureAltitudeText(txtBarometricPressure_->text())) {
        txtPressureAltitude_->setText(*altitude);
    }
    RunWeatherRecalc();
    SetWeatherButtonRed(false);
    txtTemp_->setFocus(Qt::OtherFocusReason);
    weatherFetched_ = true;
    MarkChanged(txtTemp_);
}

}  // namespace slipbook::run
