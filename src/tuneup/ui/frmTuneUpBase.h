#pragma once

#include "common/ui/recordwindow.h"
#include "shell/windowcontext.h"

#include <array>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace slipbook::tuneup {

// The base tune-up of one car, typed in directly: what the Holley, precision and fuel-injection
// programs start from. The car window opens it on its car with ShowCar.
class frmTuneUpBase final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmTuneUpBase(const shell::WindowContext& ctx, QWidget* parent = nullptr);

    // Loads the car's base (asking first about unsaved changes to the one shown); false when the
    // racer stays with the one shown.
    bool ShowCar(qint64 carId);
    qint64 CarId() const { return carId_; }

    enum Panel { Holley, Precision, FuelInjection };
    void ShowPanel(Panel panel);

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblCars"); }
    QString IdColumn() const override { return QStringLiteral("lCar_id"); }
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void ClearFields() override;
    std::vector<ValidationStep> ValidationSteps() const override;
    void RevealField(QWidget* field) override;
    bool Save(const QString& toolId) override;
    bool DeleteAllowedFor(qint64 /*id*/) override { return false; }
    QString RecordName() const override { return carName_; }
    QString Caption() const override;

private:
    void BuildBody();
    QWidget* BuildRunSetup(QWidget* parent);
    // The ADR box of the panel showing.
    QLineEdit* ShownAdr() const;
    void CopyAdr(QLineEdit* from);

    QPushButton* cmdHolley_ = nullptr;
    QPushButton* cmdPrecision_ = nullptr;
    QPushButton* cmdFuelInjection_ = nullptr;
    QWidget* body_ = nullptr;
    QWidget* sspnlMain_ = nullptr;
    QStackedWidget* panels_ = nullptr;
    QGroupBox* ssfraHolley_ = nullptr;
    QGroupBox* ssfraPrecision_ = nullptr;
    QGroupBox* ssfraFuelInjection_ = nullptr;
    QLineEdit* txtBaseADR_ = nullptr;
    QLineEdit* txtBaseJet_ = nullptr;
    QLineEdit* txtPreBaseADR_ = nullptr;
    QLineEdit* txtPreBaseJet_ = nullptr;
    QLineEdit* txtFIBaseADR_ = nullptr;
    QLineEdit* txtFIBasePill_ = nullptr;
    QLineEdit* txtFIBaseBoost_ = nullptr;
    QLineEdit* txtFIArea_ = nullptr;
    // The boxes of the six columns, in their order; the ADR is the Holley panel's copy.
    std::array<QLineEdit*, 6> columnBoxes_{};

    qint64 carId_ = 0;
    QString carName_;
    bool copyingAdr_ = false;
};

}  // namespace slipbook::tuneup
