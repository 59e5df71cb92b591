#include "garage/ui/frmTrack.h"

#include "common/forms.h"
#include "common/ui/formhelpers.h"
#include "store/recordset.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTabWidget>

namespace slipbook::garage {

namespace {

const QString kDirectionsPlaceholder = QStringLiteral("<Type directions here>");
const QString kNotesPlaceholder = QStringLiteral("<Type notes here>");
const QString kPhoneMask = QStringLiteral("(000) 000-0000;_");
// The same mask as the shared mask routines write it.
const QString kPhoneFormat = QStringLiteral("(###) ###-####");

// The address keeps the logbook's line ends, which the main list turns into ", ".
QString AddressToStore(const QString& text) {
    QString stored = text;
    stored.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    stored.replace(u'\n', QStringLiteral("\r\n"));
    return stored;
}

QString AddressToShow(const QString& stored) {
    QString text = stored;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text;
}

// An untouched phone box is no phone.
QVariant PhoneValue(const QString& shown) {
    for (const QChar c : shown) {
        if (c.isDigit()) {
            return TextOrNull(shown);
        }
    }
    return QVariant();
}

}  // namespace

frmTrack::frmTrack(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent), state_(ctx.state) {
    setObjectName(QStringLiteral("frmTrack"));
    SetToolTips(QStringLiteral("track"));
    BuildBody();
    resize(720, 460);
    FormLoad(state_.TakeNewRecordAsked());
}

void frmTrack::BuildBody() {
    const ListBody body = MakeListBody(QStringLiteral("lstTracks"));
    lstTracks_ = body.list;
    QWidget* panel = body.panel;
    QGridLayout* grid = body.grid;
    const auto label = &RecordWindow::FieldLabel;

    txtTrack_nm_ = new QLineEdit(panel);
    txtTrack_nm_->setObjectName(QStringLiteral("txtTrack_nm"));
    txtTrackAddress_tx_ = new QPlainTextEdit(panel);
    txtTrackAddress_tx_->setObjectName(QStringLiteral("txtTrackAddress_tx"));
    txtTrackAddress_tx_->setTabChangesFocus(true);
    txtTrackAddress_tx_->setFixedHeight(txtTrackAddress_tx_->fontMetrics().lineSpacing() * 3 + 12);
    txtTrackContact_nm_ = new QLineEdit(panel);
    txtTrackContact_nm_->setObjectName(QStringLiteral("txtTrackContact_nm"));
    mebTrackPhone_ = new QLineEdit(panel);
    mebTrackPhone_->setObjectName(QStringLiteral("mebTrackPhone"));
    mebTrackPhone_->setInputMask(kPhoneMask);
    mebTrackPhone_->setMaximumWidth(
        mebTrackPhone_->fontMetrics().horizontalAdvance(QStringLiteral("(000) 000-00000")) + 16);
    txtTrackInternet_url_ = new QLineEdit(panel);
    txtTrackInternet_url_->setObjectName(QStringLiteral("txtTrackInternet_url"));

    sstabTrack_ = new QTabWidget(panel);
    sstabTrack_->setObjectName(QStringLiteral("sstabTrack"));
    rtbTrackDirections_tx_ = new QPlainTextEdit(sstabTrack_);
    rtbTrackDirections_tx_->setObjectName(QStringLiteral("rtbTrackDirections_tx"));
    rtbTrackNotes_tx_ = new QPlainTextEdit(sstabTrack_);
    rtbTrackNotes_tx_->setObjectName(QStringLiteral("rtbTrackNotes_tx"));
    sstabTrack_->addTab(rtbTrackDirections_tx_, QStringLiteral("Directions"));
    sstabTrack_->addTab(rtbTrackNotes_tx_, QStringLiteral("Notes"));

    grid->addWidget(label(QStringLiteral("Name:"), txtTrack_nm_), 0, 0);
    grid->addWidget(txtTrack_nm_, 0, 1, 1, 2);
    grid->addWidget(label(QStringLiteral("Address:"), txtTrackAddress_tx_), 1, 0, Qt::AlignTop);
    grid->addWidget(txtTrackAddress_tx_, 1, 1, 1, 2);
    grid->addWidget(label(QStringLiteral("Contact:"), txtTrackContact_nm_), 2, 0);
    grid->addWidget(txtTrackContact_nm_, 2, 1, 1, 2);
    grid->addWidget(label(QStringLiteral("Phone:"), mebTrackPhone_), 3, 0);
    grid->addWidget(mebTrackPhone_, 3, 1);
    grid->addWidget(label(QStringLiteral("Internet:"), txtTrackInternet_url_), 4, 0);
    grid->addWidget(txtTrackInternet_url_, 4, 1, 1, 2);
    grid->addWidget(sstabTrack_, 5, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(5, 1);
    FinishListBody(body);
    for (QWidget* field :
         std::initializer_list<QWidget*>{txtTrack_nm_, txtTrackAddress_tx_, txtTrackContact_nm_,
                                         mebTrackPhone_, txtTrackInternet_url_}) {
        AddField(field);
    }
    AddNotesField(rtbTrackDirections_tx_, kDirectionsPlaceholder);
    AddNotesField(rtbTrackNotes_tx_, kNotesPlaceholder);
}

QString frmTrack::RecordsetSql() const {
    return QStringLiteral("SELECT lTrack_id, sTrack_nm, sTrackAddress_tx, sTrackContact_nm, ") +
           QStringLiteral("sTrackPhone, sTrackInternet_url, sTrackDirections_tx, ") +
           QStringLiteral("sTrackNotes_tx FROM tblTracks ");
}

void frmTrack::FillRecordList() {
    ListFillFromTable(lstTracks_, QStringLiteral("lTrack_id"), QStringLiteral("sTrack_nm"),
                      QStringLiteral("tblTracks"), QString(), db_);
}

void frmTrack::RecordToFields(const store::Recordset& rs) {
    txtTrack_nm_->setText(rs.Value(QStringLiteral("sTrack_nm")).toString());
    txtTrackAddress_tx_->setPlainText(
        AddressToShow(rs.Value(QStringLiteral("sTrackAddress_tx")).toString()));
    txtTrackContact_nm_->setText(rs.Value(QStringLiteral("sTrackContact_nm")).toString());
    mebTrackPhone_->setText(MaskClipValue(rs.Value(QStringLiteral("strackphone")), kPhoneFormat));
    txtTrackInternet_url_->setText(rs.Value(QStringLiteral("sTrackInternet_url")).toString());
    SetNotes(rtbTrackDirections_tx_, rs.Value(QStringLiteral("sTrackDirections_tx")).toString());
    SetNotes(rtbTrackNotes_tx_, rs.Value(QStringLiteral("sTrackNotes_tx")).toString());
}

void frmTrack::FieldsToRecord(store::Recordset& rs) {
    rs.SetValue(QStringLiteral("sTrack_nm"), TextOrNull(txtTrack_nm_->text()));
    rs.SetValue(QStringLiteral("sTrackAddress_tx"),
                TextOrNull(AddressToStore(txtTrackAddress_tx_->toPlainText())));
    rs.SetValue(QStringLiteral("sTrackContact_nm"), TextOrNull(txtTrackContact_nm_->text()));
    rs.SetValue(QStringLiteral("strackphone"), PhoneValue(MaskText(mebTrackPhone_)));
    rs.SetValue(QStringLiteral("sTrackInternet_url"), TextOrNull(txtTrackInternet_url_->text()));
    rs.SetValue(QStringLiteral("sTrackDirections_tx"),
                NotesValue(rtbTrackDirections_tx_->toPlainText()));
    rs.SetValue(QStringLiteral("sTrackNotes_tx"), NotesValue(rtbTrackNotes_tx_->toPlainText()));
}

void frmTrack::ClearFields() {
    txtTrack_nm_->clear();
    txtTrackAddress_tx_->clear();
    txtTrackContact_nm_->clear();
    mebTrackPhone_->clear();
    txtTrackInternet_url_->clear();
    rtbTrackDirections_tx_->clear();
    rtbTrackNotes_tx_->clear();
}

QWidget* frmTrack::NewFocusField() const {
    return txtTrack_nm_;
}

std::vector<ValidationStep> frmTrack::ValidationSteps() const {
    return {
        {[this] { return txtTrack_nm_->text().trimmed().isEmpty(); },
         QStringLiteral("Track Name Must Be Filled In"), QStringLiteral("txtTrack_nm")},
        {[this] { return txtTrackAddress_tx_->toPlainText().trimmed().isEmpty(); },
         QStringLiteral("Track Address Must Be Filled In"), QStringLiteral("txtTrackAddress_tx")},
    };
}

DeleteRule frmTrack::DeleteRules() const {
    return {{{QStringLiteral("SELECT lTrack_id from tblEvents"), QStringLiteral("lTrack_id")}},
            QStringLiteral("SELECT COUNT(lTrack_id) as Track_Count from tblTracks")};
}

QString frmTrack::RecordName() const {
    return txtTrack_nm_->text();
}

qint64 frmTrack::StartRecordId() const {
    return state_.track.id;
}

}  // namespace slipbook::garage
