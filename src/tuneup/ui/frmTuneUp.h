#pragma once

// The tune-up window of one car: the Holley jet, precision jet and fuel-injection pill programs
// applied to an old tune-up (the car's saved one, a run's, or one typed in), with the new air
// density from the weather; the new tune-up goes back to the car or to the selected run. Main
// window tune-up windows exist once per car and follow every weather reading; the run and car
// windows share one more (SharedTuneUp).

#include "shell/ui/windowtable.h"
#include "shell/windowcontext.h"
#include "tuneup/tuneupstore.h"

#include <QPalette>
#include <QString>
#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace slipbook::tuneup {

class frmTuneUp : public QWidget, public shell::TuneUpWindow {
    Q_OBJECT

public:
    enum Panel { kHolley = 0, kPrecision = 1, kFuelInjection = 2 };

    // Holds the main grid's run, binds the main window's car and loads its saved tune-up.
    explicit frmTuneUp(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    // Holds the grid and binds the main window's car, but loads nothing: the caller sets the car
    // when it must and calls PreShow before showing it.
    struct Unloaded {};
    frmTuneUp(const shell::WindowContext& ctx, Unloaded, QWidget* parent = nullptr);
    ~frmTuneUp() override;

    QWidget* Widget() override { return this; }
    QString CarNumber() const override { return car_.number; }
    // Reloads from the old tune-up's source; the new side starts again from it.
    void FormReLoad() override;
    // The weather's air density into the three new-ADR boxes, then the selected program
    // recalculates and adds its line to the page lead-in.
    void ApplyAirDensity(const QString& airDensityText) override;

    void SetCarId(qint64 carId);
    qint64 CarId() const;
    // Starts the window again on a source: the car, a run (0: the main grid's selected run) or
    // a what-if; manual set-up off, nozzle detail closed, panel and fuel from the car.
    void PreShow(OldSource source, qint64 runId);
    void SetManualSetup();
    bool ManualSetup() const { return manual_; }
    // Recalculates a panel when its inputs allow; false when the arithmetic failed.
    bool cmdCalc_click(int panel);
    void cmdCalc_Auto();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FormLoad();
    void BuildLayout();
    QGroupBox* BuildPanel(Panel panel, const char* name, const QString& caption);
    QLineEdit* Box(const char* name, bool output = false);
    void ReleaseGrid();

    LoadFailure LoadOldTuneUp();
    void ResetNewTuneUp();
    void LockBaseFields(bool lock);
    void ApplyManualSetup();
    void ShowPanels();
    void ArrangePanels();
    void SelectPanel(Panel panel);
    void FormActivate();
    void TakeWeather(QLineEdit* box);
    void NewAdrChanged(QLineEdit* changed, int panel);

    void cboNozzle_Click();
    void FillNozzleBoxes(bool newSide);
    void CalcNozzleArea(bool newSide);
    void NozzleTyped(bool newSide, int index);
    void ShowFailure(int panel, const QString& reason);
    QString PanelResult(int panel) const;
    HolleyInputs HolleyIn() const;
    PrecisionInputs PrecisionIn() const;
    FuelInjectionInputs FuelInjectionIn() const;

    void cmdSaveAll_Click();
    void cmdSaveToRun_Click();
    NewTuneUp CollectNewTuneUp() const;
    void AfterSave();

    const shell::WindowContext ctx_;
    bool gridHeld_ = false;
    TuneUpCar car_;  // the car last read, whose types choose the panel and fuel
    bool loadFailed_ = false;
    bool firstLoad_ = false;
    bool manual_ = false;
    bool detail_ = false;
    bool arrangeOnActivate_ = false;
    bool fillingNozzles_ = false;
    OldSource source_ = OldSource::Car;
    qint64 runId_ = 0;
    Panel panel_ = kHolley;
    NozzleTable oldNozzles_;
    NozzleTable newNozzles_;
    QPalette checkPalette_;

    QLineEdit* txtCarId = nullptr;
    QGroupBox* ssfraCarb = nullptr;
    QRadioButton* ssoptCarbHolleyJet = nullptr;
    QRadioButton* ssoptCarbPrecisionJet = nullptr;
    QRadioButton* ssoptFuelInjection = nullptr;
    QGroupBox* ssfraFuel = nullptr;
    QRadioButton* ssoptGas = nullptr;
    QRadioButton* ssoptMethanol = nullptr;
    QRadioButton* ssoptNitro = nullptr;
    std::array<QGroupBox*, 3> panels_{};
    std::array<QComboBox*, 3> cboOldTuneUp{};
    std::array<QCheckBox*, 3> chkManual{};
    // Holley.
    QLineEdit* txtBaseADR = nullptr;
    QLineEdit* txtNewADR = nullptr;
    QLineEdit* txtBaseJet = nullptr;
    QLineEdit* txtTuneAdjust = nullptr;
    QLineEdit* txtNewJet = nullptr;
    QLabel* lblHolleyTuneAdjust = nullptr;
    QLabel* lblNewJet = nullptr;
    // Precision.
    QLineEdit* txtPreBaseADR = nullptr;
    QLineEdit* txtPreNewADR = nullptr;
    QLineEdit* txtPreBaseJet = nullptr;
    QLineEdit* txtPreTuneAdjust = nullptr;
    QLineEdit* txtPreNewJet = nullptr;
    QLabel* lblPreTuneAdjust = nullptr;
    QLabel* lblPreNewJet = nullptr;
    // Fuel injection.
    QLineEdit* txtFIArea = nullptr;
    QLineEdit* txtNewFIArea = nullptr;
    QLineEdit* txtFIBaseADR = nullptr;
    QLineEdit* txtFINewADR = nullptr;
    QLineEdit* txtFIBaseBoost = nullptr;
    QLineEdit* txtFINewBoost = nullptr;
    QLineEdit* txtFITuneAdjust = nullptr;
    QLineEdit* txtFIBasePill = nullptr;
    QLineEdit* txtFINewPill = nullptr;
    QLabel* lblFITuneAdjust = nullptr;
    QLabel* lblFINewPill = nullptr;
    QPushButton* cmdNozzleDetail = nullptr;
    QComboBox* cboNozzle = nullptr;
    std::array<QLineEdit*, kNozzlesPerPosition> txtNozzle{};
    std::array<QLineEdit*, kNozzlesPerPosition> txtNewNozzle{};
    QLineEdit* txtTypeArea = nullptr;
    QLineEdit* txtNewTypeArea = nullptr;
    QLineEdit* txtTypeDiameter = nullptr;
    QLineEdit* txtNewTypeDiameter = nullptr;
    QLineEdit* txtDiameter = nullptr;
    QLineEdit* txtNewDiameter = nullptr;
    QList<QWidget*> nozzleDetail_;  // what shows only with the nozzle detail

    QPushButton* cmdSaveAll = nullptr;
    QPushButton* cmdSaveToRun = nullptr;
    QPushButton* btnHelp = nullptr;
};

// The one tune-up window the run and car windows share: the open one, or a new one made unseen
// and unloaded, owned by `owner`. The caller calls PreShow and shows it; closed, it is gone and
// the next call makes another.
frmTuneUp* SharedTuneUp(const shell::WindowContext& ctx, QWidget* owner);

// The run window's tune-up: the shared window on the run, shown without blocking.
QWidget* ShowRunTuneUp(const shell::WindowContext& ctx, QWidget* owner, qint64 runId);

// The car window's tune-up: the shared window on the car's saved tune-up, shown without blocking
// and put in manual set-up, so the car's base can be typed in.
QWidget* ShowCarTuneUp(const shell::WindowContext& ctx, QWidget* owner, qint64 carId);

}  // namespace slipbook::tuneup
