#pragma once

#include "common/ui/recordwindow.h"
#include "run/fieldtable.h"
#include "run/runsave.h"
#include "shell/windowcontext.h"
#include "weather/polltimer.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTabWidget;

namespace slipbook::run {

// The window in which one run is entered or changed: summary, weather, results and the car's
// tune-up on eight tabs. Opened by the main window for a new run (its stored tool "ID_New") or
// on the list's selected run, whose grid it holds still until it closes. What it saves and
// deletes it tells the change notifier, which the main window's list follows.
class frmRun final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmRun(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    // On one saved run, whatever the main list shows: for the windows that point at a run.
    frmRun(const shell::WindowContext& ctx, qint64 runId, QWidget* parent);
    ~frmRun() override;

    bool WeatherFetched() const { return weatherFetched_; }
    bool MaintenanceAlertPending() const { return maintenanceAlertPending_; }
    // The run shown; 0 while it has no row.
    qint64 RunId() const { return CurrentRecordId(); }

    // Asks, deletes the run, takes its row out of the list and closes the window.
    void RunRecordDelete();
    // Checks, recalculates the air figures and saves; false leaves everything as typed.
    bool RunSaveRecord(bool showAlert);
    // The seven air figures from the typed weather; false, with the figures kept, when the
    // inputs hold no number to compute with.
    bool RunWeatherRecalc();
    // Asks the station for the reading the user points at; the answer comes on the timer.
    void GetWeather();
    // Takes the weather from the log: the reading nearest the run's date and time, within the
    // racer's window.
    void WeatherFromLog();

    // The timer that looks for the station's answer; the program's own by default.
    void SetWeatherTimer(std::unique_ptr<weather::PollTimer> timer);

    // A control by its name ("txtTemp", "txtJet(3)", "CustomCaption2").
    QWidget* Control(const QString& name) const;

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblRuns"); }
    QString IdColumn() const override { return QStringLiteral("lRun_id"); }
    void FillLists() override;
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset&) override {}
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    QString RecordName() const override;
    QString Caption() const override;
    bool Save(const QString& toolId) override;
    bool QueryUnload() override;
    void ListAfterDelete(qint64) override {}
    void AfterDelete(qint64 id) override;

    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Building
    void BuildBody();
    QWidget* BuildSummary();
    QWidget* BuildWeather();
    QWidget* BuildResults();
    QWidget* BuildTab(int tab);
    QWidget* BuildCustomTab();
    QWidget* MakeControl(const RunField& field, QWidget* parent);
    QLabel* MakeLabel(const QString& caption, QWidget* buddy, QWidget* parent);
    void Register(QWidget* control);

    // Fields
    QString FieldText(const RunField& field) const;
    void SetFieldText(const RunField& field, const QString& text);
    RunValues Values() const;
    void SetLane(const QString& lane);
    void RecomputeIntervals(const std::vector<int>& which);
    void RunTabsRefresh();
    void RunCustomNamesLoad();
    void RunLoadCarTuneUp();

    // Checks and saving
    bool RunValidate();
    // Every number field holds a number its column can keep.
    bool RunNumbersValid(const RunValues& values);
    // Focuses a field, bringing its tab forward.
    void FocusField(const QString& control);
    void AfterSaveReset();
    void ShowMaintenanceAlert(qint64 carId);
    void ReleaseGrid();

    // Field handlers
    void FieldLeft(QWidget* field);
    void WeatherLeft(QLineEdit* box);
    void OpponentCheck();
    void ComboLeft(QComboBox* combo);
    void EventPicked();
    void TabClicked(int tab);
    void EditCustomFieldNames();
    void TuneUpSetup();
    void BrokerTimer_Timer();
    void SetWeatherButtonRed(bool red);

    shell::MainContext& main_;
    shell::MainState& state_;
    const WallClock& clock_;
    std::unique_ptr<weather::PollTimer> timer_;

    qint64 openRunId_ = 0;   // the list's run the window opened on; 0 for a new run
    qint64 savedRunId_ = 0;  // after a save, or opened on it, the row set holds that run alone
    bool gridHeld_ = false;
    bool activatePending_ = false;
    bool weatherRequested_ = false;
    bool weatherFetched_ = false;
    bool maintenanceAlertPending_ = false;
    qint64 pendingAlertCar_ = 0;
    bool customNamesOpen_ = false;
    bool keepFields_ = false;
    bool inLeave_ = false;
    QString stationBuffer_;

    QHash<QString, QWidget*> controls_;
    QHash<QString, QString> hidden_;  // the base set-up and nozzles, by column
    QComboBox* cboEvents_ = nullptr;
    QComboBox* cboCars_ = nullptr;
    QComboBox* cboOpponents_ = nullptr;
    QComboBox* cboRunTypes_ = nullptr;
    QLineEdit* txtRunNumber_ = nullptr;
    QLineEdit* mebRun_dt_ = nullptr;
    QLineEdit* txtPoints_ = nullptr;
    QCheckBox* chkFullRun_ = nullptr;
    QRadioButton* optLeft_ = nullptr;
    QRadioButton* optRight_ = nullptr;
    QLineEdit* txtTemp_ = nullptr;
    QLineEdit* txtHumidity_ = nullptr;
    QLineEdit* txtBarometricPressure_ = nullptr;
    QLineEdit* txtPressureAltitude_ = nullptr;
    QPushButton* GetWeather_ = nullptr;
    QPushButton* WeatherFromLog_ = nullptr;
    QSpinBox* spnLogMinutes_ = nullptr;
    QPlainTextEdit* rtbRunNotes_tx_ = nullptr;
    QTabWidget* sstabSetup_ = nullptr;
    QLabel* lblNitro_ = nullptr;
    std::array<QLabel*, 6> customCaptions_{};
    std::array<QLineEdit*, 6> customNames_{};
};

// What the application registers for the run list's Delete: the selected run is deleted
// through the run window, as the user's would be.
void DeleteRunFromList(const shell::WindowContext& ctx, QWidget* owner, const QString& keyText);

}  // namespace slipbook::run
