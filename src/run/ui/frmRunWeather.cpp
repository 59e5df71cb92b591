#include "run/ui/frmRun.h"

#include "common/numbers.h"
#include "weather/station.h"
#include "weather/weatherlog.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

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

// ---------------------------------------------------------------------------------------------
// The weather log's reading

void frmRun::WeatherFromLog() {
    const QString title = QStringLiteral("Weather From Log");
    const RunField& timeField = *FieldByControl(u"mebRun_tm");
    const auto at = weather::RunMoment(mebRun_dt_->displayText(), FieldText(timeField));
    if (!at) {
        messages_.inform(
            QStringLiteral("Enter the run's date and time to take its weather from the log."),
            title, MsgIcon::Exclamation);
        const bool dateGood = weather::RunDate(mebRun_dt_->displayText()).has_value();
        FocusField(dateGood ? timeField.control : QStringLiteral("mebRun_dt"));
        return;
    }
    const int minutes = spnLogMinutes_->value();
    const auto reading = weather::NearestReading(db_, *at, minutes);
    if (!reading) {
        messages_.inform(weather::NoReadingText(minutes, *at), title, MsgIcon::Information);
        return;
    }
    // A station answer still awaited would overwrite the reading just taken.
    if (timer_->isActive()) {
        timer_->stop();
        SetWeatherButtonRed(false);
    }
    const auto text = [](double figure) {
        return weather::HasFigure(figure) ? PlainNumberText(figure) : QString();
    };
    txtTemp_->setText(text(reading->temperature));
    txtHumidity_->setText(text(reading->humidity));
    txtBarometricPressure_->setText(text(reading->barometer));
    if (const auto altitude = weather::PressureAltitudeText(txtBarometricPressure_->text())) {
        txtPressureAltitude_->setText(*altitude);
    }
    RunWeatherRecalc();
    txtTemp_->setFocus(Qt::OtherFocusReason);
    weatherFetched_ = true;
    MarkChanged(txtTemp_);
}

}  // namespace slipbook::run
