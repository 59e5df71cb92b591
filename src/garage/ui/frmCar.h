#pragma once

#include "common/ui/recordwindow.h"
#include "shell/windowcontext.h"

#include <QStringView>

class QCheckBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace slipbook::garage {

// The cars of the logbook, and the door to a car's tune-up and its setup runs. Opens on the
// main window's current car.
class frmCar final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmCar(const shell::WindowContext& ctx, QWidget* parent = nullptr);

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblCars"); }
    QString IdColumn() const override { return QStringLiteral("lCar_id"); }
    void FillRecordList() override;
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void AfterRecordWritten(qint64 id) override;
    bool Save(const QString& toolId) override;
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    std::vector<ValidationStep> ValidationSteps() const override;
    DeleteRule DeleteRules() const override;
    QString RecordName() const override;
    QString CaptionNoun() const override { return QStringLiteral(" - Car"); }
    QString DeleteQuestionText() const override;
    void DeleteRows(qint64 id) override;
    void AfterDelete(qint64 id) override;
    qint64 StartRecordId() const override;

private:
    void BuildBody();
    // The lead-in of the three set-up buttons: true when the car is saved and the window may
    // open.
    bool SavedBeforeSetup();
    void OpenSetup(QStringView window);

    QListWidget* lstCars_ = nullptr;
    QLineEdit* txtCar_nm_ = nullptr;
    QLineEdit* txtCar_num_ = nullptr;
    QLineEdit* txtCar_weight_ = nullptr;
    QCheckBox* chkCarryForward_ = nullptr;
    QCheckBox* chkDefault_fl_ = nullptr;
    QPlainTextEdit* rtbCarNotes_tx_ = nullptr;
    QPushButton* sscmdBaseSetup_ = nullptr;
    QPushButton* sscmdDASetup_ = nullptr;
    QPushButton* sscmdTSSetup_ = nullptr;

    shell::MainState& state_;
    shell::MainContext& main_;
    // The default flag as stored when the car was shown.
    bool shownDefault_ = false;
    // What the last delete took besides the car, for the notices.
    QStringList deletedWith_;
};

}  // namespace slipbook::garage
