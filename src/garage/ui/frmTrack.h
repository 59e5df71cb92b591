#pragma once

#include "common/ui/recordwindow.h"

class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QTabWidget;

namespace slipbook::garage {

// The drag strips that events take place at. Opens on the main window's current track.
class frmTrack final : public RecordWindow {
    Q_OBJECT

public:
    frmTrack(store::Database& db, Messages& messages, shell::MainContext& main,
             QWidget* parent = nullptr);

protected:
    QString RecordsetSql() const override;
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
    void MainAfterSave() override;
    void MainAfterDelete(qint64 id) override;
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
};

}  // namespace slipbook::garage
