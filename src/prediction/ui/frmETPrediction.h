#pragma once

// The prediction window of one car: standard dial-in, density altitude dial-in, throttle stop
// timer and run completer, one showing at a time. It stays bound to the car it was first loaded
// on, and follows every weather reading the main window pushes to it.

#include "prediction/calculators.h"
#include "shell/ui/windowtable.h"
#include "shell/windowcontext.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <array>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace slipbook::prediction {

class frmCarSetup;

class frmETPrediction : public QWidget, public shell::PredictionWindow {
    Q_OBJECT

public:
    enum class Program { Standard, DensityAlt, ThrottleStop, RunCompleter };

    explicit frmETPrediction(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmETPrediction() override;

    QWidget* Widget() override { return this; }
    QString CarNumber() const override { return carNumber_; }
    // Loads the window from the main window's car and selected run.
    void FormReLoad() override;
    // The weather's figures into the "new" boxes, then what is showing is recalculated.
    void ApplyWeather(const QString& corrFactorText, const QString& densityAltText) override;

    // Recalculates what is showing when its inputs are there, and adds its page line.
    void cmdCalc_Auto();
    Program Showing() const { return showing_; }
    qint64 LockedCarId() const { return lockedCarId_; }

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Frame;
    class Loud;

    void BuildLayout();
    QLineEdit* Box(const char* name, bool readOnly = false);
    void Show(Program program);
    void FormActivate();
    void Raise(Program program, const QList<Message>& messages);
    void ShowFailure(Program program, const QString& reason);
    QLabel* ReasonLabelOf(Program program) const;
    qint64 CarIdChecked();
    bool SameCarAsMain();
    void TakeWeather(QLineEdit* box, const QString& weatherField);

    // Standard dial-in.
    void StandardInputChanged();
    bool IsStandardCalculateEnabled();
    void CalcStandardDialIn();
    // Density altitude dial-in.
    void DensityAltInputChanged();
    bool IsDACalculateEnabled();
    void DASlopeFromSetup();
    void CalcDADialIn();
    DensityAltInputs DaInputs() const;
    // Throttle stop timer.
    void ThrottleStopInputChanged();
    bool IsTSCalculateEnabled();
    void TSSlopeFromSetup();
    void CalcThrottleStop();
    ThrottleStopInputs TsInputs() const;
    // Run completer.
    void RunCompleterInputChanged();
    bool IsRCCalculateEnabled();
    void CalcRunCompleter();

    void DistanceClicked(bool densityAlt);
    void SetDistance(bool quarterMile);
    void EditSetup(bool densityAlt);
    void ClearSetup(bool densityAlt);
    void OpenSetup();
    void AddPageLine(const QString& line);

    const shell::WindowContext ctx_;
    QString carNumber_;
    QString carName_;
    qint64 lockedCarId_ = -1;
    bool loadFailed_ = false;
    bool loud_ = false;         // a click of the racer's: boxes may be raised
    qint64 notedMainCar_ = -1;  // the main window's car the locked-car note was shown for
    Program showing_ = Program::Standard;
    QPointer<frmCarSetup> setup_;

    // Standard.
    QGroupBox* ssfraStdDialIn = nullptr;
    QLineEdit* txtOldCorr = nullptr;
    QLineEdit* txtOldET = nullptr;
    QLineEdit* txtNewCorr = nullptr;
    QLineEdit* txtDialIn = nullptr;
    QRadioButton* optGas = nullptr;
    QRadioButton* optMethanol = nullptr;
    QLabel* lblWhyNoSTDCalculate = nullptr;
    // Density altitude.
    QGroupBox* ssfraDADialIn = nullptr;
    std::array<QLineEdit*, 3> txtDA{};
    std::array<QLineEdit*, 3> txtET{};
    QLineEdit* txtLastRunDA = nullptr;
    QLineEdit* txtLastRunET = nullptr;
    QLineEdit* txtNewDA = nullptr;
    QLineEdit* txtDADialIn = nullptr;
    QRadioButton* opt14MileDA = nullptr;
    QRadioButton* opt18MileDA = nullptr;
    QPushButton* sscmdEditSetup = nullptr;
    QPushButton* sscmdClearSetup = nullptr;
    QLabel* lblWhyNoDACalculate = nullptr;
    QLabel* lbInfo = nullptr;
    // Throttle stop.
    QGroupBox* ssfraTStop = nullptr;
    QLineEdit* txtTSOldTimer = nullptr;
    QLineEdit* txtTSOldCorr = nullptr;
    QLineEdit* txtTSOldET = nullptr;
    QLineEdit* txtTSNewCorr = nullptr;
    QLineEdit* txtTSDesiredET = nullptr;
    QLineEdit* txtTSNewTimer = nullptr;
    QComboBox* cboTSFuel = nullptr;
    std::array<QLineEdit*, 2> txtTSRCorr{};
    std::array<QLineEdit*, 2> txtTSRET{};
    std::array<QLineEdit*, 2> txtTSRTimer{};
    QRadioButton* opt14MileTS = nullptr;
    QRadioButton* opt18MileTS = nullptr;
    QPushButton* sscmdTSEditSetup = nullptr;
    QPushButton* sscmdTSClearSetup = nullptr;
    QLabel* lblWhyNoTSCalculate = nullptr;
    QLabel* lbTSInfo = nullptr;
    // Run completer.
    QGroupBox* ssfraRunCompleter = nullptr;
    QLineEdit* txtOldInterimET = nullptr;
    QLineEdit* txtOldRCET = nullptr;
    QLineEdit* txtRCOldFullMPH = nullptr;
    QLineEdit* txtRCNewInterimET = nullptr;
    QLineEdit* txtRCEstET = nullptr;
    QLineEdit* txtRCEstMPH = nullptr;
    QLabel* lblWhyNoRCCalculate = nullptr;
    // The tab bar and the calculate buttons, by program.
    std::array<QPushButton*, 4> tabs_{};
    std::array<QPushButton*, 4> cmdCalc{};
    QPushButton* sscmdSetup = nullptr;
};

}  // namespace slipbook::prediction
