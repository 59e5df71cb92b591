#pragma once

// The test-and-tune window: standard day correction, intermediate time analysis, estimated
// horsepower and estimated ET, one showing at a time, all loaded from the run picked in the
// main window's list. It keeps nothing; what is typed is gone when it closes.

#include "shell/windowcontext.h"

#include <QWidget>

#include <array>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace slipbook::testtune {

class frmTestTune : public QWidget {
    Q_OBJECT

public:
    enum class Program { StandardDay, IntermediateTimes, EstimatedHp, EstimatedEt };

    explicit frmTestTune(const shell::WindowContext& ctx, QWidget* parent = nullptr);

    // Fills every program from the main window's car and selected run; false when that failed,
    // and the next activation says so and closes the window.
    bool LoadFromRun(bool firstTime);
    Program Showing() const { return showing_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void BuildLayout();
    QLineEdit* Box(const char* name, bool result = false);
    void Show(Program program);
    void ApplyDistance();
    void DistanceClicked();
    void FuelClicked(bool standardDayPair);

    void StandardDayChanged();
    void IntermediateChanged();
    void EstimatedHpChanged();
    void EstimatedEtChanged();
    void RefreshCalculate();

    void CalcStandardDay();
    void CalcIntermediateTimes();
    void CalcEstimatedHP();
    void CalcEstimatedET();

    const shell::WindowContext ctx_;
    bool loadFailed_ = false;
    bool quarterMile_ = true;  // the distance the boxes were last loaded for
    Program showing_ = Program::StandardDay;

    std::array<QPushButton*, 4> tabs_{};
    std::array<QGroupBox*, 4> frames_{};
    std::array<QPushButton*, 4> cmdCalc{};
    // Where a calculation stopped: a text that is no number, a division by zero.
    std::array<QLabel*, 4> reasons_{};

    // Standard day correction.
    QLineEdit* txtStdCorr = nullptr;
    QLineEdit* txtStdET = nullptr;
    QLineEdit* txtStdMPH = nullptr;
    QLineEdit* txtStdStdET = nullptr;
    QLineEdit* txtStdStdMPH = nullptr;
    QRadioButton* optGas2 = nullptr;
    QRadioButton* optMethanol2 = nullptr;
    // Intermediate time analysis.
    QLineEdit* txtITCorr = nullptr;
    std::array<QLineEdit*, 5> txtIT{};
    std::array<QLineEdit*, 5> txtITResult{};
    QRadioButton* optGas = nullptr;
    QRadioButton* optMethanol = nullptr;
    // Estimated horsepower.
    QLineEdit* txtEHPET = nullptr;
    QLineEdit* txtEHP14MPH = nullptr;
    QLineEdit* txtEHPWeight = nullptr;
    QLineEdit* txtEHPCorr = nullptr;
    QLineEdit* txtEHPEstimatedHP = nullptr;
    QLineEdit* txtEHPCorrectedHP = nullptr;
    QLineEdit* txtEHPMPHHP = nullptr;
    QLabel* lblEHP14MPH = nullptr;
    QLabel* lblEHPMPHHP = nullptr;
    QRadioButton* opt14Mile = nullptr;
    QRadioButton* opt18Mile = nullptr;
    // Estimated ET.
    QLineEdit* txtEETEstHP = nullptr;
    QLineEdit* txtEETEstWeight = nullptr;
    QLineEdit* txtEET14MileEt = nullptr;
    QLineEdit* txtEET14MileMPH = nullptr;
    QLineEdit* txtEET18MileEt = nullptr;
    QLineEdit* txtEET18MileMPH = nullptr;
};

}  // namespace slipbook::testtune
