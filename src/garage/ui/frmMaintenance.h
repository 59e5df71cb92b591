#pragma once

#include "common/ui/recordwindow.h"
#include "garage/maintenance.h"
#include "shell/windowcontext.h"

#include <QDate>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableView;
class QToolBar;

namespace slipbook::garage {

class MaintenanceStyleModel;

// The maintenance items of all cars or one, in a grid with filters above and one item edited
// below. A saved run opens it with ShowParameters and Alert when its car has items coming due.
class frmMaintenance final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmMaintenance(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmMaintenance() override;

    // Filters the grid on a car and a status (an index of MaintenanceStatus).
    void ShowParameters(qint64 carId, int statusIndex);
    // Beeps and says that items are coming due, once ShowParameters has run.
    void Alert();
    // Reloads the grid from the filters.
    void GridLoad();

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblMaintenance"); }
    QString IdColumn() const override { return QStringLiteral("lMaintenance_id"); }
    void FillLists() override;
    void FillRecordList() override;
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    std::vector<ValidationStep> ValidationSteps() const override;
    ValidationStep CountStep(QLineEdit* box, const QString& name) const;
    DeleteRule DeleteRules() const override;
    QString RecordName() const override;
    QString Caption() const override { return QStringLiteral("Maintenance"); }
    void ListAfterSave(qint64 id, bool added) override;
    QString SelectionPromptTitle() const override {
        return QStringLiteral("Different Maintenance Line Selected");
    }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildFilters();
    void BuildBody();
    MaintenanceFilter ReadFilter() const;
    void FiltersChanged() override;
    void CompletedClicked(bool checked);
    void MarkCompleted();

    QToolBar* atbMaintenance_ = nullptr;
    QLineEdit* efDateFrom_ = nullptr;
    QLineEdit* efDateTo_ = nullptr;
    QComboBox* efCar_ = nullptr;
    QComboBox* efStatus_ = nullptr;

    QLabel* gridCaption_ = nullptr;
    QTableView* ssdbgMaintenances_ = nullptr;
    TextGridModel* model_ = nullptr;
    MaintenanceStyleModel* styled_ = nullptr;

    QComboBox* cboCar_ = nullptr;
    QPlainTextEdit* rtbMaintenanceNotes_tx_ = nullptr;
    QLineEdit* txtScheduledRuns_ = nullptr;
    QLineEdit* txtRunsMade_ = nullptr;
    QCheckBox* chkCompleted_ = nullptr;
    QLineEdit* mebMaintenance_dt_ = nullptr;
    QPushButton* btnMarkCompleted_ = nullptr;

    qint64 filterCarId_ = 0;
    bool parametersShown_ = false;
    shell::MainState& state_;
    const WallClock& clock_;
};

}  // namespace slipbook::garage
