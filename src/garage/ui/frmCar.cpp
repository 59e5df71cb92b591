#include "garage/ui/frmCar.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "garage/cars.h"
#include "shell/maincontext.h"
#include "store/recordset.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

#include <cmath>

namespace slipbook::garage {

namespace {

const QString kNotesPlaceholder = QStringLiteral("<Type notes here>");
const QString kWeightName = QStringLiteral("Weight");

// Checked before the save: a whole number within the column, or nothing.
QVariant WeightValue(const QString& text) {
    const auto value = StrictNumber(text);
    if (!value) {
        return QVariant();
    }
    return static_cast<qint64>(std::nearbyint(*value));
}

}  // namespace

frmCar::frmCar(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent), state_(ctx.state), main_(ctx.main) {
    setObjectName(QStringLiteral("frmCar"));
    SetToolTips(QStringLiteral("car"));
    BuildBody();
    resize(720, 420);
    FormLoad(state_.TakeNewRecordAsked());
}

void frmCar::BuildBody() {
    const ListBody body = MakeListBody(QStringLiteral("lstCars"));
    lstCars_ = body.list;
    QWidget* panel = body.panel;
    QGridLayout* grid = body.grid;
    const auto label = &RecordWindow::FieldLabel;
    const auto box = [panel](const char* name) {
        auto* b = new QLineEdit(panel);
        b->setObjectName(QString::fromLatin1(name));
        return b;
    };

    txtCar_nm_ = box("txtCar_nm");
    txtCar_num_ = box("txtCar_num");
    txtCar_num_->setMaximumWidth(txtCar_num_->fontMetrics().horizontalAdvance(u'0') * 12 + 16);
    txtCar_weight_ = box("txtCar_weight");
    txtCar_weight_->setMaximumWidth(txtCar_num_->maximumWidth());
    chkCarryForward_ = new QCheckBox(QStringLiteral("Carry Forward Run Information"), panel);
    chkCarryForward_->setObjectName(QStringLiteral("chkCarryForward"));
    chkDefault_fl_ = new QCheckBox(QStringLiteral("Default Car"), panel);
    chkDefault_fl_->setObjectName(QStringLiteral("chkDefault_fl"));
    rtbCarNotes_tx_ = new QPlainTextEdit(panel);
    rtbCarNotes_tx_->setObjectName(QStringLiteral("rtbCarNotes_tx"));

    auto* buttons = new QHBoxLayout;
    const auto button = [panel, buttons](const char* name, const QString& caption) {
        auto* b = new QPushButton(caption, panel);
        b->setObjectName(QString::fromLatin1(name));
        buttons->addWidget(b);
        return b;
    };
    sscmdBaseSetup_ = button("sscmdBaseSetup", QStringLiteral("Tune-Up Setup"));
    sscmdDASetup_ = button("sscmdDASetup", QStringLiteral("DA Setup"));
    sscmdTSSetup_ = button("sscmdTSSetup", QStringLiteral("TS Setup"));
    sscmdBaseSetup_->setToolTip(QStringLiteral("Open this car's tune-up to enter its base"));
    sscmdDASetup_->setToolTip(QStringLiteral("Choose this car's density altitude setup runs"));
    sscmdTSSetup_->setToolTip(QStringLiteral("Choose this car's throttle stop setup runs"));
    buttons->addStretch(1);

    grid->addWidget(label(QStringLiteral("Name:"), txtCar_nm_), 0, 0);
    grid->addWidget(txtCar_nm_, 0, 1, 1, 2);
    grid->addWidget(label(QStringLiteral("Number:"), txtCar_num_), 1, 0);
    grid->addWidget(txtCar_num_, 1, 1);
    grid->addWidget(label(QStringLiteral("Weight:"), txtCar_weight_), 2, 0);
    grid->addWidget(txtCar_weight_, 2, 1);
    grid->addWidget(chkCarryForward_, 3, 1, 1, 2);
    grid->addWidget(chkDefault_fl_, 4, 1, 1, 2);
    grid->addLayout(buttons, 5, 0, 1, 3);
    grid->addWidget(rtbCarNotes_tx_, 6, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(6, 1);
    FinishListBody(body);

    for (QWidget* field : std::initializer_list<QWidget*>{txtCar_nm_, txtCar_num_, txtCar_weight_,
                                                          chkCarryForward_, chkDefault_fl_}) {
        AddField(field);
    }
    AddNotesField(rtbCarNotes_tx_, kNotesPlaceholder);
    InstallNumericKeyFilter(txtCar_weight_, 0);

    connect(sscmdBaseSetup_, &QPushButton::clicked, this,
            [this] { OpenSetup(shell::windows::kCarTuneUp); });
    connect(sscmdDASetup_, &QPushButton::clicked, this,
            [this] { OpenSetup(shell::windows::kCarSetupDA); });
    connect(sscmdTSSetup_, &QPushButton::clicked, this,
            [this] { OpenSetup(shell::windows::kCarSetupTS); });
}

QString frmCar::RecordsetSql() const {
    return QStringLiteral("SELECT * FROM tblCars");
}

void frmCar::FillRecordList() {
    ListFillFromTable(lstCars_, QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"),
                      QStringLiteral("tblCars"), QString(), db_);
}

void frmCar::RecordToFields(const store::Recordset& rs) {
    txtCar_nm_->setText(rs.Value(QStringLiteral("sCar_nm")).toString());
    txtCar_num_->setText(rs.Value(QStringLiteral("sCar_num")).toString());
    txtCar_weight_->setText(NumberOrEmptyText(rs.Value(QStringLiteral("iCarWeight_val"))));
    chkCarryForward_->setChecked(rs.Value(QStringLiteral("lCarryForward_info")).toLongLong() != 0);
    // From the table, not the row set: the flag is also written by the main window's pick and
    // by this window's saves of other cars.
    shownDefault_ = IsDefaultCar(db_, rs.Value(QStringLiteral("lCar_id")).toLongLong());
    chkDefault_fl_->setChecked(shownDefault_);
    SetNotes(rtbCarNotes_tx_, rs.Value(QStringLiteral("sCarNotes_tx")).toString());
}

void frmCar::FieldsToRecord(store::Recordset& rs) {
    rs.SetValue(QStringLiteral("sCar_nm"), TextOrNull(txtCar_nm_->text()));
    rs.SetValue(QStringLiteral("sCar_num"), TextOrNull(txtCar_num_->text()));
    rs.SetValue(QStringLiteral("iCarWeight_val"), WeightValue(txtCar_weight_->text()));
    if (RecordAdd()) {
        rs.SetValue(QStringLiteral("sCarCarb_typ"), QStringLiteral("CARB"));
        rs.SetValue(QStringLiteral("sCarFuel_typ"), QStringLiteral("GAS"));
    }
    rs.SetValue(QStringLiteral("sCarNotes_tx"), NotesValue(rtbCarNotes_tx_->toPlainText()));
    rs.SetValue(QStringLiteral("lCarryForward_info"), chkCarryForward_->isChecked());
}

void frmCar::AfterRecordWritten(qint64 id) {
    // Only a change of the box moves the flag: a save of other fields leaves it where the main
    // window's last pick put it, even one made while this car was shown.
    const bool on = chkDefault_fl_->isChecked();
    if (on != shownDefault_) {
        WriteDefaultCar(db_, id, on);
        shownDefault_ = on;
    }
}

bool frmCar::Save(const QString& toolId) {
    const bool shown = shownDefault_;
    if (RecordWindow::Save(toolId)) {
        return true;
    }
    // Rolled back: the flag is as it was.
    shownDefault_ = shown;
    return false;
}

void frmCar::ClearFields() {
    txtCar_nm_->clear();
    txtCar_num_->clear();
    txtCar_weight_->clear();
    chkCarryForward_->setChecked(false);
    chkDefault_fl_->setChecked(false);
    shownDefault_ = false;
    rtbCarNotes_tx_->clear();
}

QWidget* frmCar::NewFocusField() const {
    return txtCar_nm_;
}

std::vector<ValidationStep> frmCar::ValidationSteps() const {
    const auto weight =
        NumberEntryProblem(kWeightName, txtCar_weight_->text(), StoredNumber::Integer);
    return {
        {[this] { return txtCar_nm_->text().trimmed().isEmpty(); },
         QStringLiteral("Car Name Must Be Filled In"), QStringLiteral("txtCar_nm")},
        {[this] { return txtCar_num_->text().trimmed().isEmpty(); },
         QStringLiteral("Car Number Must Be Filled In"), QStringLiteral("txtCar_num")},
        {[weight] { return weight.has_value(); }, weight.value_or(QString()),
         QStringLiteral("txtCar_weight")},
    };
}

DeleteRule frmCar::DeleteRules() const {
    return CarDeleteRule();
}

QString frmCar::RecordName() const {
    return txtCar_nm_->text();
}

QString frmCar::DeleteQuestionText() const {
    return DeleteQuestion(windowTitle(), RecordName(), NameQuotes::Apostrophes);
}

void frmCar::DeleteRows(qint64 id) {
    const CarRowsDeleted deleted = DeleteCar(db_, id);
    deletedWith_.clear();
    if (deleted.expenses > 0) {
        deletedWith_ << QStringLiteral("tblExpenses");
    }
    if (deleted.setupRuns > 0) {
        deletedWith_ << QStringLiteral("tblCarSetup");
    }
    if (deleted.maintenance > 0) {
        deletedWith_ << QStringLiteral("tblMaintenance");
    }
    // The row set still holds the car.
    OpenRecords();
}

void frmCar::AfterDelete(qint64 id) {
    for (const QString& table : std::as_const(deletedWith_)) {
        Q_EMIT events_.recordsChanged(table);
    }
    deletedWith_.clear();
    RecordWindow::AfterDelete(id);
}

qint64 frmCar::StartRecordId() const {
    return state_.car.id;
}

bool frmCar::SavedBeforeSetup() {
    if (!DataChanged() && !RecordAdd()) {
        return true;
    }
    const MsgAnswer answer = messages_.ask(
        QStringLiteral("The Car information you've entered so far must be saved before "
                       "continuing.  Save it now?"),
        QStringLiteral("Loading Tune-Up Setup Window"), MsgButtons::OkCancel, MsgAnswer::Ok,
        MsgIcon::None);
    return answer == MsgAnswer::Ok && Save(tools::kSave);
}

void frmCar::OpenSetup(QStringView window) {
    if (!SavedBeforeSetup()) {
        return;
    }
    const qint64 id = CurrentRecordId();
    if (id != 0) {
        main_.ShowWindow(window, id);
    }
}

}  // namespace slipbook::garage
