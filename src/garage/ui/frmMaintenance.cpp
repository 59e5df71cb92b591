#include "garage/ui/frmMaintenance.h"

#include "common/forms.h"
#include "common/textgrid.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "exchange/ui/frmExport.h"
#include "store/dberror.h"
#include "store/recordset.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QFont>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace slipbook::garage {

namespace {

const QString kNotesPlaceholder = QStringLiteral("<Type maintenance description here>");
const QString kGridCaption = QStringLiteral("Maintenance Detail for selected Car(s)");

// A count as saved: a whole number, 0 when it is no number; past 16 bits the save fails as the
// original's conversion does.
int SavedCount(const QString& text) {
    const auto value = IntOrZero(text);
    if (!value) {
        throw store::DbError(store::err::Overflow, QStringLiteral("Slipbook"), value.error());
    }
    return *value;
}

int WholeOrZero(const QString& text) {
    const auto value = IntOrZero(text);
    return value ? *value : 0;
}

}  // namespace

// The two styles of the Remaining cell of an open item: "Pastdue" bold yellow on red, "Upcoming"
// bold red on yellow.
class MaintenanceStyleModel : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant data(const QModelIndex& index, int role) const override {
        if (index.column() == maintcol::Remaining &&
            (role == Qt::BackgroundRole || role == Qt::ForegroundRole || role == Qt::FontRole)) {
            const auto* grid = static_cast<const TextGridModel*>(sourceModel());
            const int row = index.row();
            const MaintenanceStyle style = RemainingStyle(grid->CellView(row, maintcol::Completed),
                                                          grid->CellView(row, maintcol::Remaining),
                                                          grid->CellView(row, maintcol::Scheduled));
            if (style != MaintenanceStyle::None) {
                const bool pastdue = style == MaintenanceStyle::Pastdue;
                switch (role) {
                    case Qt::BackgroundRole:
                        return QColor(pastdue ? Qt::red : Qt::yellow);
                    case Qt::ForegroundRole:
                        return QColor(pastdue ? Qt::yellow : Qt::red);
                    default: {
                        QFont bold;
                        bold.setBold(true);
                        return bold;
                    }
                }
            }
        }
        return QIdentityProxyModel::data(index, role);
    }
};

frmMaintenance::frmMaintenance(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent), state_(ctx.state), clock_(ctx.clock) {
    setObjectName(QStringLiteral("frmMaintenance"));
    SetToolTips(QStringLiteral("maintenance item"));
    BuildFilters();
    BuildBody();
    resize(900, 560);
    FormLoad(state_.TakeNewRecordAsked());
}

frmMaintenance::~frmMaintenance() = default;

void frmMaintenance::BuildFilters() {
    atbMaintenance_ = AddFilterBar(QStringLiteral("atbMaintenance"));
    const FilterDates dates = AddFilterDates(
        atbMaintenance_, QStringLiteral("Only include items done on or after this date"),
        QStringLiteral("Only include items done on or before this date"));
    efDateFrom_ = dates.from;
    efDateTo_ = dates.to;
    efCar_ = AddFilterList(atbMaintenance_, tools::kEfCar, QStringLiteral("Car:"),
                           QStringLiteral("Only include maintenance for this car"));
    efStatus_ = AddFilterList(atbMaintenance_, tools::kEfStatus, QStringLiteral("Status:"),
                              QStringLiteral("Only include items of this status"));
    const QSignalBlocker block(efStatus_);
    efStatus_->addItem(QStringLiteral("<All Maintenance>"), 0);
    efStatus_->addItem(QStringLiteral("<Upcoming Maintenance>"), 1);
    efStatus_->addItem(QStringLiteral("<Critical Maintenance>"), 2);
}

void frmMaintenance::FiltersChanged() {
    filterCarId_ = FilterId(efCar_);
    RecordWindow::FiltersChanged();
}

void frmMaintenance::BuildBody() {
    auto* splitter = new QSplitter(Qt::Vertical, this);
    std::vector<GridColumn> columns(maintcol::Count);
    const char* captions[] = {"Key",
                              "Car",
                              "Maintenance Description",
                              "RUNS: Scheduled",
                              "...Made",
                              "...Remaining",
                              "Completed",
                              "...Date"};
    for (int c = 0; c < maintcol::Count; ++c) {
        columns[c].caption = QString::fromLatin1(captions[c]);
        const bool number = c == maintcol::Scheduled || c == maintcol::Made;
        columns[c].alignment = number ? 1 : (c == maintcol::Completed ? 2 : 0);
        columns[c].headerFollowsCells = number || c == maintcol::Completed;
    }
    styled_ = new MaintenanceStyleModel(this);
    const RecordGrid grid = MakeRecordGrid(
        splitter, QStringLiteral("ssdbgMaintenances"), kGridCaption, std::move(columns),
        {0, 130, 260, 110, 60, 120, 80, 90}, maintcol::Description, styled_);
    gridCaption_ = grid.caption;
    ssdbgMaintenances_ = grid.view;
    model_ = grid.model;
    splitter->addWidget(grid.area);
    // Raw values from the stored columns; the car's name and the runs remaining are written as
    // shown.
    OfferExport([this] {
        exchange::ShowExport(
            db_, messages_,
            {model_,
             QStringLiteral("tblMaintenance"),
             QStringLiteral("lMaintenance_id"),
             {QStringLiteral("lMaintenance_id"), QString(), QStringLiteral("sMaintenanceNotes_tx"),
              QStringLiteral("iScheduledRuns"), QStringLiteral("iRunsMade"), QString(),
              QStringLiteral("bCompleted"), QStringLiteral("dtMaintenance_dt")}},
            QStringLiteral("Maintenance.csv"), this);
    });

    auto* panel = new QWidget(splitter);
    auto* fields = new QGridLayout(panel);
    cboCar_ = new QComboBox(panel);
    cboCar_->setObjectName(QStringLiteral("cboCar"));
    cboCar_->setEditable(true);
    cboCar_->setMinimumContentsLength(20);
    rtbMaintenanceNotes_tx_ = new QPlainTextEdit(panel);
    rtbMaintenanceNotes_tx_->setObjectName(QStringLiteral("rtbMaintenanceNotes_tx"));
    txtScheduledRuns_ = new QLineEdit(panel);
    txtScheduledRuns_->setObjectName(QStringLiteral("txtScheduledRuns"));
    txtRunsMade_ = new QLineEdit(panel);
    txtRunsMade_->setObjectName(QStringLiteral("txtRunsMade"));
    for (QLineEdit* count : {txtScheduledRuns_, txtRunsMade_}) {
        count->setAlignment(Qt::AlignRight);
        count->setMaximumWidth(count->fontMetrics().horizontalAdvance(QStringLiteral("000000")) +
                               16);
    }
    chkCompleted_ = new QCheckBox(QStringLiteral("Completed on date"), panel);
    chkCompleted_->setObjectName(QStringLiteral("chkCompleted"));
    mebMaintenance_dt_ = MakeDateBox(QStringLiteral("mebMaintenance_dt"), panel);
    CheckOnLeave(mebMaintenance_dt_, kDateMaskEmpty,
                 QStringLiteral("Invalid Maintenance Date, Use MM/DD/YYYY Format"));
    btnMarkCompleted_ =
        new QPushButton(QStringLiteral("Mark this maintenance item COMPLETED today!"), panel);
    btnMarkCompleted_->setObjectName(QStringLiteral("btnMarkCompleted"));

    auto* carLabel = new QLabel(QStringLiteral("Car:"), panel);
    carLabel->setBuddy(cboCar_);
    auto* notesLabel = new QLabel(QStringLiteral("Maintenance Description:"), panel);
    notesLabel->setBuddy(rtbMaintenanceNotes_tx_);
    auto* sentence = new QHBoxLayout;
    sentence->addWidget(new QLabel(QStringLiteral("Schedule after"), panel));
    sentence->addWidget(txtScheduledRuns_);
    sentence->addWidget(new QLabel(QStringLiteral("runs, of which"), panel));
    sentence->addWidget(txtRunsMade_);
    sentence->addWidget(new QLabel(QStringLiteral("runs have been made already."), panel));
    sentence->addStretch(1);
    auto* completion = new QHBoxLayout;
    completion->addWidget(chkCompleted_);
    completion->addWidget(mebMaintenance_dt_);
    completion->addSpacing(24);
    completion->addWidget(btnMarkCompleted_);
    completion->addStretch(1);

    fields->addWidget(carLabel, 0, 0);
    fields->addWidget(cboCar_, 0, 1, Qt::AlignLeft);
    fields->addWidget(notesLabel, 1, 0, 1, 2);
    fields->addWidget(rtbMaintenanceNotes_tx_, 2, 0, 1, 2);
    fields->addLayout(sentence, 3, 0, 1, 2);
    fields->addLayout(completion, 4, 0, 1, 2);
    fields->setColumnStretch(1, 1);
    fields->setRowStretch(2, 1);
    splitter->addWidget(panel);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    SetBody(splitter);

    for (QWidget* field : std::initializer_list<QWidget*>{cboCar_, txtScheduledRuns_, txtRunsMade_,
                                                          chkCompleted_, mebMaintenance_dt_}) {
        AddField(field);
    }
    AddNotesField(rtbMaintenanceNotes_tx_, kNotesPlaceholder);
    InstallNumericKeyFilter(txtScheduledRuns_, 0);
    InstallNumericKeyFilter(txtRunsMade_, 0);
    cboCar_->installEventFilter(this);
    connect(chkCompleted_, &QCheckBox::clicked, this, &frmMaintenance::CompletedClicked);
    connect(btnMarkCompleted_, &QPushButton::clicked, this, &frmMaintenance::MarkCompleted);
}

QString frmMaintenance::RecordsetSql() const {
    return QStringLiteral("SELECT * FROM tblMaintenance");
}

void frmMaintenance::FillLists() {
    ListFillFromTable(cboCar_, QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"),
                      QStringLiteral("tblCars"), QString(), db_);
    FillFilterList(efCar_, QStringLiteral("<All Cars>"),
                   QStringLiteral("SELECT * from tblCars ORDER BY sCar_nm"),
                   QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"));
    const QSignalBlocker blockStatus(efStatus_);
    efStatus_->setCurrentIndex(0);
}

void frmMaintenance::FillRecordList() {
    GridLoad();
}

MaintenanceFilter frmMaintenance::ReadFilter() const {
    MaintenanceFilter filter;
    filter.from = FilterDate(efDateFrom_);
    filter.to = FilterDate(efDateTo_);
    filter.carId = filterCarId_;
    const int status = efStatus_->currentIndex();
    if (status >= 0) {
        filter.status = static_cast<MaintenanceStatus>(efStatus_->itemData(status).toInt());
    }
    return filter;
}

void frmMaintenance::GridLoad() {
    const BusyCursor busy;
    const qint64 shown = CurrentRecordId();
    std::vector<QStringList> rows;
    auto rs = db_.OpenRecordset(MaintenanceListSql(ReadFilter()), store::RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        MaintenanceItem item;
        item.id = rs->Value(QStringLiteral("lMaintenance_id")).toLongLong();
        item.carName = rs->Value(QStringLiteral("sCar_nm")).toString();
        item.notes = rs->Value(QStringLiteral("sMaintenanceNotes_tx")).toString();
        item.scheduled = rs->Value(QStringLiteral("iScheduledRuns"));
        item.made = rs->Value(QStringLiteral("iRunsMade"));
        item.completed = rs->Value(QStringLiteral("bCompleted")).toLongLong() != 0;
        item.date = rs->Value(QStringLiteral("dtMaintenance_dt"));
        rows.push_back(MaintenanceCells(item));
    }
    rs->Close();
    {
        const RecordList::Quiet quiet(recordList());
        model_->SetRows(rows);
    }
    gridCaption_->setText(kGridCaption);
    if (shown != 0) {
        recordList()->select(recordList()->findId(shown));
    }
}

void frmMaintenance::ShowParameters(qint64 carId, int statusIndex) {
    filterCarId_ = carId;
    {
        const QSignalBlocker blockCar(efCar_);
        const QSignalBlocker blockStatus(efStatus_);
        efCar_->setCurrentIndex(ListFindData(efCar_, carId));
        efStatus_->setCurrentIndex(ListFindData(efStatus_, statusIndex));
    }
    parametersShown_ = true;
    // The counts may have moved since the item was shown (a run was saved): an unedited item is
    // read afresh; an edited one is left as typed.
    const qint64 shown = RecordAdd() || DataChanged() ? 0 : CurrentRecordId();
    if (shown != 0) {
        OpenRecords();
        records().FindFirst(KeyCriterion(IdColumn(), shown));
    }
    GridLoad();
    FollowGrid();
    if (shown != 0 && !records().NoMatch() && recordList()->findId(shown) >= 0) {
        ShowCurrent();
    }
}

void frmMaintenance::Alert() {
    if (!parametersShown_) {
        return;
    }
    QApplication::beep();
    messages_.inform(
        QStringLiteral("NOTE: Upcoming or Critical Maintenance Items exist for this car"));
}

void frmMaintenance::RecordToFields(const store::Recordset& rs) {
    SelectComboId(cboCar_, rs.Value(QStringLiteral("lCar_id")));
    SetNotes(rtbMaintenanceNotes_tx_, rs.Value(QStringLiteral("sMaintenanceNotes_tx")).toString());
    txtScheduledRuns_->setText(NumberOrEmptyText(rs.Value(QStringLiteral("iScheduledRuns"))));
    txtRunsMade_->setText(NumberOrEmptyText(rs.Value(QStringLiteral("iRunsMade"))));
    chkCompleted_->setChecked(rs.Value(QStringLiteral("bCompleted")).toLongLong() != 0);
    mebMaintenance_dt_->setText(DateMaskValue(rs.Value(QStringLiteral("dtMaintenance_dt"))));
}

void frmMaintenance::FieldsToRecord(store::Recordset& rs) {
    rs.SetValue(QStringLiteral("lCar_id"), SelectedId(cboCar_));
    rs.SetValue(QStringLiteral("bCompleted"), chkCompleted_->isChecked());
    rs.SetValue(QStringLiteral("iScheduledRuns"), SavedCount(txtScheduledRuns_->text()));
    rs.SetValue(QStringLiteral("iRunsMade"), SavedCount(txtRunsMade_->text()));
    rs.SetValue(QStringLiteral("dtMaintenance_dt"), DateOrNull(MaskText(mebMaintenance_dt_)));
    rs.SetValue(QStringLiteral("sMaintenanceNotes_tx"),
                NotesValue(rtbMaintenanceNotes_tx_->toPlainText()));
}

void frmMaintenance::ClearFields() {
    SelectComboId(cboCar_, filterCarId_ != 0 ? QVariant(filterCarId_) : QVariant());
    rtbMaintenanceNotes_tx_->clear();
    txtScheduledRuns_->clear();
    txtRunsMade_->clear();
    chkCompleted_->setChecked(false);
    mebMaintenance_dt_->clear();
}

QWidget* frmMaintenance::NewFocusField() const {
    return rtbMaintenanceNotes_tx_;
}

std::vector<ValidationStep> frmMaintenance::ValidationSteps() const {
    return {
        {[this] { return SelectedIndex(cboCar_) < 0; }, QStringLiteral("Please select a car"),
         QStringLiteral("cboCar")},
        {[this] {
             return !chkCompleted_->isChecked() && WholeOrZero(txtScheduledRuns_->text()) <= 0 &&
                    IntOrZero(txtScheduledRuns_->text()).ok();
         },
         QStringLiteral("Scheduled number of runs is required (enter 1 or more)"),
         QStringLiteral("txtScheduledRuns")},
        {[this] { return !chkCompleted_->isChecked() && WholeOrZero(txtRunsMade_->text()) < 0; },
         QStringLiteral("Runs made so far cannot be negative (enter 0 or more)"),
         QStringLiteral("txtRunsMade")},
        {[this] { return chkCompleted_->isChecked() && !DateValue(MaskText(mebMaintenance_dt_)); },
         QStringLiteral("Invalid Maintenance Date, Use MM/DD/YYYY Format"),
         QStringLiteral("mebMaintenance_dt")},
        // Counts past 16 bits are refused by name rather than failing the save.
        CountStep(txtScheduledRuns_, QStringLiteral("Scheduled Runs")),
        CountStep(txtRunsMade_, QStringLiteral("Runs Made")),
    };
}

ValidationStep frmMaintenance::CountStep(QLineEdit* box, const QString& name) const {
    const auto problem = NumberEntryProblem(name, box->text(), StoredNumber::Integer);
    return {[problem] { return problem.has_value(); }, problem.value_or(QString()),
            box->objectName()};
}

DeleteRule frmMaintenance::DeleteRules() const {
    return {
        {},
        QStringLiteral("SELECT COUNT(lMaintenance_id) as Maintenance_Count from tblMaintenance")};
}

QString frmMaintenance::RecordName() const {
    return NotesValue(rtbMaintenanceNotes_tx_->toPlainText()).toString();
}

void frmMaintenance::ListAfterSave(qint64 id, bool /*added*/) {
    GridLoad();
    recordList()->select(recordList()->findId(id));
}

void frmMaintenance::CompletedClicked(bool checked) {
    if (checked) {
        mebMaintenance_dt_->setText(DateMaskValue(clock_.Today()));
    } else {
        mebMaintenance_dt_->clear();
    }
    mebMaintenance_dt_->setFocus();
}

void frmMaintenance::MarkCompleted() {
    if (!chkCompleted_->isChecked()) {
        chkCompleted_->setChecked(true);
        CompletedClicked(true);
        MarkChanged(chkCompleted_);
    }
    Save(tools::kSave);
}

bool frmMaintenance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == cboCar_ && IsFieldExit(event)) {
        SelectTypedEntry(cboCar_);
    }
    return RecordWindow::eventFilter(watched, event);
}

}  // namespace slipbook::garage
