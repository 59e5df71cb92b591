#pragma once

#include "common/ui/recordwindow.h"
#include "shell/windowcontext.h"

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
    explicit frmEvent(const shell::WindowContext& ctx, QWidget* parent = nullptr);

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblEvents"); }
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

    shell::MainState& state_;
};

}  // namespace slipbook::garage
