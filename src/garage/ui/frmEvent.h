#pragma once

#include "common/ui/recordwindow.h"

class QComboBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;

namespace slipbook::garage {

// The events of the logbook: name, track, dates, class, purse and notes. Opens on the main
// window's current event.
class frmEvent final : public RecordWindow {
    Q_OBJECT

public:
    frmEvent(store::Database& db, Messages& messages, shell::MainContext& main,
             QWidget* parent = nullptr);

protected:
    QString RecordsetSql() const override;
    QString IdColumn() const override { return QStringLiteral("lEvent_id"); }
    void FillLists() override;
    void FillRecordList() override;
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    std::vector<ValidationStep> ValidationSteps() const override;
    void BeforeValidate() override;
    DeleteRule DeleteRules() const override;
    QString RecordName() const override;
    QString CaptionNoun() const override { return QStringLiteral(" - Event"); }
    void MainAfterSave() override;
    void MainAfterDelete(qint64 id) override;
    qint64 StartRecordId() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildBody();
    // A class typed that the list doesn't have is offered for adding.
    void EventClassCheck();

    QListWidget* lstEvents_ = nullptr;
    QLineEdit* txtEvent_nm_ = nullptr;
    QComboBox* cboTracks_ = nullptr;
    QLineEdit* mebEventStart_dt_ = nullptr;
    QLineEdit* mebEventEnd_dt_ = nullptr;
    QComboBox* cboEventClass_ = nullptr;
    QLineEdit* txtPurse_amt_ = nullptr;
    QPlainTextEdit* rtbEventNotes_tx_ = nullptr;
};

}  // namespace slipbook::garage
