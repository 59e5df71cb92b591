#include "garage/ui/frmEvent.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "store/currency.h"
#include "store/recordset.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>

namespace slipbook::garage {

namespace {

const QString kNotesPlaceholder = QStringLiteral("<Type notes here>");
const QString kPurseFormat = QStringLiteral("###,###,##0");

double MoneyValue(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<store::Currency>()) {
        return value.value<store::Currency>().toDouble();
    }
    return value.toDouble();
}

// Empty is no purse; a number may carry its grouping commas. Anything else goes to the store
// as typed, which refuses it and so fails the save with the reason.
QVariant PurseValue(const QString& text) {
    if (text.trimmed().isEmpty()) {
        return QVariant();
    }
    if (const auto number = StrictNumber(text)) {
        return *number;
    }
    return text;
}

bool IsFieldExit(const QEvent* event) {
    return event->type() == QEvent::FocusOut &&
           static_cast<const QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
}

}  // namespace

frmEvent::frmEvent(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent), state_(ctx.state) {
    setObjectName(QStringLiteral("frmEvent"));
    SetToolTips(QStringLiteral("event"));
    BuildBody();
    resize(720, 440);
    FormLoad(state_.TakeNewRecordAsked());
}

void frmEvent::BuildBody() {
    const ListBody body = MakeListBody(QStringLiteral("lstEvents"));
    lstEvents_ = body.list;
    QWidget* panel = body.panel;
    QGridLayout* grid = body.grid;
    const auto label = &RecordWindow::FieldLabel;

    txtEvent_nm_ = new QLineEdit(panel);
    txtEvent_nm_->setObjectName(QStringLiteral("txtEvent_nm"));
    cboTracks_ = new QComboBox(panel);
    cboTracks_->setObjectName(QStringLiteral("cboTracks"));
    cboTracks_->setEditable(true);
    mebEventStart_dt_ = MakeDateBox(QStringLiteral("mebEventStart_dt"), panel);
    mebEventEnd_dt_ = MakeDateBox(QStringLiteral("mebEventEnd_dt"), panel);
    CheckOnLeave(mebEventStart_dt_, kDateMaskEmpty,
                 QStringLiteral("Invalid Start Date, Use MM/DD/YYYY Format"));
    CheckOnLeave(mebEventEnd_dt_, kDateMaskEmpty,
                 QStringLiteral("Invalid End Date, Use MM/DD/YYYY Format"));
    cboEventClass_ = new QComboBox(panel);
    cboEventClass_->setObjectName(QStringLiteral("cboEventClass"));
    cboEventClass_->setEditable(true);
    txtPurse_amt_ = new QLineEdit(panel);
    txtPurse_amt_->setObjectName(QStringLiteral("txtPurse_amt"));
    txtPurse_amt_->setAlignment(Qt::AlignRight);
    txtPurse_amt_->setFixedWidth(mebEventStart_dt_->width());
    rtbEventNotes_tx_ = new QPlainTextEdit(panel);
    rtbEventNotes_tx_->setObjectName(QStringLiteral("rtbEventNotes_tx"));

    grid->addWidget(label(QStringLiteral("Desc:"), txtEvent_nm_), 0, 0);
    grid->addWidget(txtEvent_nm_, 0, 1, 1, 4);
    grid->addWidget(label(QStringLiteral("Track:"), cboTracks_), 1, 0);
    grid->addWidget(cboTracks_, 1, 1, 1, 4);
    grid->addWidget(label(QStringLiteral("Dates:"), mebEventStart_dt_), 2, 0);
    grid->addWidget(mebEventStart_dt_, 2, 1);
    grid->addWidget(label(QStringLiteral("thru"), mebEventEnd_dt_), 2, 2, Qt::AlignCenter);
    grid->addWidget(mebEventEnd_dt_, 2, 3);
    grid->addWidget(label(QStringLiteral("Class:"), cboEventClass_), 3, 0);
    grid->addWidget(cboEventClass_, 3, 1, 1, 4);
    grid->addWidget(label(QStringLiteral("Purse:"), txtPurse_amt_), 4, 0);
    grid->addWidget(txtPurse_amt_, 4, 1);
    grid->addWidget(rtbEventNotes_tx_, 5, 0, 1, 5);
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(5, 1);
    FinishListBody(body);
    for (QWidget* field :
         std::initializer_list<QWidget*>{txtEvent_nm_, cboTracks_, mebEventStart_dt_,
                                         mebEventEnd_dt_, cboEventClass_, txtPurse_amt_}) {
        AddField(field);
    }
    AddNotesField(rtbEventNotes_tx_, kNotesPlaceholder);
    mebEventStart_dt_->installEventFilter(this);
    cboEventClass_->installEventFilter(this);
    txtPurse_amt_->installEventFilter(this);
}

QString frmEvent::RecordsetSql() const {
    return QStringLiteral("SELECT lEvent_id, sEvent_nm, lTrack_id, dtEventStart_dt, ") +
           QStringLiteral("dtEventEnd_dt, lEventClass_id, cPurse_amt, sEventNotes_tx ") +
           QStringLiteral("FROM tblEvents ");
}

void frmEvent::FillLists() {
    ListFillFromTable(cboTracks_, QStringLiteral("lTrack_id"), QStringLiteral("sTrack_nm"),
                      QStringLiteral("tblTracks"), QString(), db_);
    ListFillFromTable(cboEventClass_, QStringLiteral("lEventClass_id"),
                      QStringLiteral("sEventClass_nm"), QStringLiteral("tblEventClass"), QString(),
                      db_);
}

void frmEvent::FillRecordList() {
    ListFillFromTable(lstEvents_, QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"),
                      QStringLiteral("tblEvents"), QString(), db_);
}

void frmEvent::RecordToFields(const store::Recordset& rs) {
    txtEvent_nm_->setText(rs.Value(QStringLiteral("sEvent_nm")).toString());
    SelectComboId(cboTracks_, rs.Value(QStringLiteral("lTrack_id")));
    mebEventStart_dt_->setText(DateMaskValue(rs.Value(QStringLiteral("dtEventStart_dt"))));
    mebEventEnd_dt_->setText(DateMaskValue(rs.Value(QStringLiteral("dtEventEnd_dt"))));
    SelectComboId(cboEventClass_, rs.Value(QStringLiteral("lEventClass_id")));
    const QVariant purse = rs.Value(QStringLiteral("cPurse_amt"));
    txtPurse_amt_->setText(purse.isNull() ? QString()
                                          : FormatNumber(MoneyValue(purse), kPurseFormat));
    SetNotes(rtbEventNotes_tx_, rs.Value(QStringLiteral("sEventNotes_tx")).toString());
}

void frmEvent::FieldsToRecord(store::Recordset& rs) {
    rs.SetValue(QStringLiteral("sEvent_nm"), TextOrNull(txtEvent_nm_->text()));
    rs.SetValue(QStringLiteral("lTrack_id"), SelectedId(cboTracks_));
    rs.SetValue(QStringLiteral("dtEventStart_dt"), DateOrNull(MaskText(mebEventStart_dt_)));
    rs.SetValue(QStringLiteral("dtEventEnd_dt"), DateOrNull(MaskText(mebEventEnd_dt_)));
    rs.SetValue(QStringLiteral("lEventClass_id"), SelectedId(cboEventClass_));
    rs.SetValue(QStringLiteral("cPurse_amt"), PurseValue(txtPurse_amt_->text()));
    rs.SetValue(QStringLiteral("sEventNotes_tx"), NotesValue(rtbEventNotes_tx_->toPlainText()));
}

void frmEvent::ClearFields() {
    txtEvent_nm_->clear();
    SelectComboId(cboTracks_, QVariant());
    SelectComboId(cboEventClass_, QVariant());
    mebEventStart_dt_->clear();
    mebEventEnd_dt_->clear();
    txtPurse_amt_->clear();
    rtbEventNotes_tx_->clear();
}

QWidget* frmEvent::NewFocusField() const {
    return txtEvent_nm_;
}

std::vector<ValidationStep> frmEvent::ValidationSteps() const {
    const auto purse =
        NumberEntryProblem(QStringLiteral("Purse"), txtPurse_amt_->text(), StoredNumber::Currency);
    return {
        {[this] { return txtEvent_nm_->text().trimmed().isEmpty(); },
         QStringLiteral("Event Description Must Be Filled In"), QStringLiteral("txtEvent_nm")},
        {[this] { return SelectedIndex(cboTracks_) < 0; }, QStringLiteral("Track Must Be Selected"),
         QStringLiteral("cboTracks")},
        {[this] { return !DateValue(MaskText(mebEventStart_dt_)); },
         QStringLiteral("Invalid Start Date, Use MM/DD/YYYY Format"),
         QStringLiteral("mebEventStart_dt")},
        {[this] { return !DateValue(MaskText(mebEventEnd_dt_)); },
         QStringLiteral("Invalid End Date, Use MM/DD/YYYY Format"),
         QStringLiteral("mebEventEnd_dt")},
        {[this] { return SelectedIndex(cboEventClass_) < 0; },
         QStringLiteral("Event Class Must Be Selected"), QStringLiteral("cboEventClass")},
        // Beyond what a purse column holds: refused by name rather than stored wrong.
        {[purse] { return purse.has_value(); }, purse.value_or(QString()),
         QStringLiteral("txtPurse_amt")},
    };
}

void frmEvent::BeforeValidate() {
    // A save from the tool bar leaves the class box without losing the focus.
    EventClassCheck();
}

void frmEvent::EventClassCheck() {
    AddTypedEntry(cboEventClass_, QStringLiteral("tblEventClass"),
                  QStringLiteral("sEventClass_nm"));
}

DeleteRule frmEvent::DeleteRules() const {
    return {{{QStringLiteral("SELECT lEvent_id from tblRuns"), QStringLiteral("lEvent_id")},
             {QStringLiteral("SELECT lEvent_id from tblExpenses"), QStringLiteral("lEvent_id")}},
            QStringLiteral("SELECT COUNT(lEvent_id) as Event_Count from tblEvents")};
}

QString frmEvent::RecordName() const {
    return txtEvent_nm_->text();
}

qint64 frmEvent::StartRecordId() const {
    return state_.event.id;
}

bool frmEvent::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mebEventStart_dt_ && IsFieldExit(event)) {
        // An impossible start date is not copied on: the racer is told of it once.
        if (MaskText(mebEventEnd_dt_) == kDateMaskEmpty &&
            IsBlankOrDate(MaskText(mebEventStart_dt_), kDateMaskEmpty)) {
            mebEventEnd_dt_->setText(MaskText(mebEventStart_dt_));
        }
    } else if (watched == cboEventClass_ && IsFieldExit(event)) {
        EventClassCheck();
    } else if (watched == txtPurse_amt_ && event->type() == QEvent::KeyPress) {
        // Digits and editing keys only.
        const auto* key = static_cast<const QKeyEvent*>(event);
        const QString text = key->text();
        if (!(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && text.size() == 1 &&
            text[0].isPrint() && !text[0].isDigit()) {
            return true;
        }
    }
    return RecordWindow::eventFilter(watched, event);
}

}  // namespace slipbook::garage
