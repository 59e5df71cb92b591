#pragma once

// The live weather calculator beside the logbook. In live mode the station fills the inputs
// and they are locked; in manual mode the user types them. Every recalculation pushes the
// figures into the open prediction and tune-up windows through the main window, and in live
// mode hands their lead-in to the station to page out.

#include "common/messages.h"
#include "shell/maincontext.h"
#include "weather/polltimer.h"

#include <QString>
#include <QWidget>

#include <array>
#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;

namespace slipbook::shell {
struct WindowContext;
class MainContext;
class MainState;
}  // namespace slipbook::shell
namespace slipbook {
class WallClock;
}
namespace slipbook::store {
class Database;
}

namespace slipbook::weather {

struct Recalculation;

class frmWeather : public QWidget, public shell::WeatherSource {
    Q_OBJECT

public:
    // Without a timer the program's own runs the polling.
    explicit frmWeather(const shell::WindowContext& ctx, std::unique_ptr<PollTimer> timer = {},
                        QWidget* parent = nullptr);
    ~frmWeather() override;

    // Stamps the time, computes the seven figures from the inputs and pushes them on.
    void Recalculate();
    // One tab-separated line: the time "hh:mm", then the four inputs and the seven figures.
    QString WeatherRecord() const;
    // Zero temperature, humidity and barometer, and recalculate.
    void ClearWeather();
    // The text of a box by its name ("txtCorrFactor"), as the prediction and tune-up windows
    // read it; empty for an unknown name.
    QString FieldText(const QString& controlName) const override;
    bool LiveWeather() const { return liveWeather_; }

Q_SIGNALS:
    // The window is closing; the owner drops it, so that it is made fresh next time.
    void closed();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildLayout();
    void cmdLiveWeather_Click();
    void cmdManualWeather_Click();
    void BrokerTimer_Timer();
    void InputLostFocus(QLineEdit* input);
    void SetInputsLocked(bool locked);
    void ShowRecalculation(const Recalculation& r);
    void ShowFigures(const std::array<QString, 7>& texts);
    void LogReading();
    void ShowStatus(const QString& text);
    QLineEdit* NextInput(const QLineEdit* input) const;

    shell::MainContext& main_;
    shell::MainState& state_;
    Messages& messages_;
    store::Database& db_;
    const WallClock& clock_;
    std::unique_ptr<PollTimer> timer_;

    bool liveWeather_ = false;
    bool firstActivate_ = true;
    bool inLostFocus_ = false;
    QString weatherBuffer_;

    QLineEdit* txtTemp_ = nullptr;
    QLineEdit* txtHumidity_ = nullptr;
    QLineEdit* txtBarometricPressure_ = nullptr;
    QLineEdit* txtPressureAltitude_ = nullptr;
    std::array<QLineEdit*, 7> figures_{};  // in the order of kAirFields
    QLabel* WeatherType_ = nullptr;
    QLabel* WeatherTime_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QPushButton* cmdLiveWeather_ = nullptr;
    QPushButton* cmdManualWeather_ = nullptr;
};

}  // namespace slipbook::weather
