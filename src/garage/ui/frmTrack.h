#pragma once

#include "common/ui/recordwindow.h"
#include "shell/windowcontext.h"

class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QTabWidget;

namespace slipbook::garage {

// The drag strips that events take place at. Opens on the main window's current track.
class frmTrack final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmTrack(const shell::WindowContext& ctx, QWidget* parent = nullptr);

protected:
    QString RecordsetSql() const override;
    QString TableName() const override { return QStringLiteral("tblTracks"); }
    QString IdColumn() const override { return QStringLiteral("lTrack_id"); }
    void FillRecordList() override;
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    std::vector<ValidationStep> ValidationSteps() const override;
    DeleteRule DeleteRules() const override;
    QString RecordName() const override;
    QString CaptionNoun() const override { return QStringLiteral(" - Track"); }
    qint64 StartRecordId() const override;

private:
    void BuildBody();

    QListWidget* lstTracks_ = nullptr;
    QLineEdit* txtTrack_nm_ = nullptr;
    QPlainTextEdit* txtTrackAddress_tx_ = nullptr;
    QLineEdit* txtTrackContact_nm_ = nullptr;
    QLineEdit* mebTrackPhone_ = nullptr;
    QLineEdit* txtTrackInternet_url_ = nullptr;
    QTabWidget* sstabTrack_ = nullptr;
    QPlainTextEdit* rtbTrackDirections_tx_ = nullptr;
    QPlainTextEdit* rtbTrackNotes_tx_ = nullptr;

    shell::MainState& state_;
};

}  // namespace slipbook::garage
