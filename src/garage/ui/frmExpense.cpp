#include "garage/ui/frmExpense.h"

#include "common/forms.h"
#include "common/textgrid.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "exchange/ui/frmExport.h"
#include "store/access.h"
#include "store/recordset.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>

#include <algorithm>

namespace slipbook::garage {

namespace {

const QString kNotesPlaceholder = QStringLiteral("<Type notes here>");
const QString kNone = QStringLiteral("<None>");

}  // namespace

frmExpense::frmExpense(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent), clock_(ctx.clock) {
    setObjectName(QStringLiteral("frmExpense"));
    SetToolTips(QStringLiteral("expense"));
    BuildFilters();
    BuildBody();
    resize(1120, 620);
    FormLoad(ctx.state.TakeNewRecordAsked());
}

frmExpense::~frmExpense() = default;

void frmExpense::BuildFilters() {
    atbExpense_ = AddFilterBar(QStringLiteral("atbExpense"));
    atbExpense_->addWidget(new QLabel(QStringLiteral("Show only: "), atbExpense_));
    const FilterDates dates =
        AddFilterDates(atbExpense_, QStringLiteral("Only include expenses on or after this date"),
                       QStringLiteral("Only include expenses on or before this date"));
    efDateFrom_ = dates.from;
    efDateTo_ = dates.to;
    efCategory_ = AddFilterList(atbExpense_, tools::kEfCategory, QStringLiteral("Category:"),
                                QStringLiteral("Only include expenses of this category"));
    efCar_ = AddFilterList(atbExpense_, tools::kEfCar, QStringLiteral("Car:"),
                           QStringLiteral("Only include expenses for this car"));
    efEvent_ = AddFilterList(atbExpense_, tools::kEfEvent, QStringLiteral("Event:"),
                             QStringLiteral("Only include expenses for this event"));
}

void frmExpense::BuildBody() {
    auto* splitter = new QSplitter(Qt::Vertical, this);
    std::vector<GridColumn> columns(expcol::Count);
    const char* captions[] = {"Key", "Date", "Amount", "Category", "Car", "Event", "Description"};
    for (int c = 0; c < expcol::Count; ++c) {
        columns[c].caption = QString::fromLatin1(captions[c]);
    }
    columns[expcol::Date].typeCode = gridtype::Date;
    columns[expcol::Date].identifiesRow = true;
    columns[expcol::Category].identifiesRow = true;
    columns[expcol::Amount].typeCode = gridtype::Number;
    columns[expcol::Amount].alignment = 1;
    columns[expcol::Amount].headerFollowsCells = true;
    const RecordGrid grid =
        MakeRecordGrid(splitter, QStringLiteral("ssdbgExpenses"), ExpenseGridCaption(MoneyTotal()),
                       std::move(columns), {0, 90, 110, 130, 140, 170, 240}, expcol::Notes);
    gridCaption_ = grid.caption;
    ssdbgExpenses_ = grid.view;
    model_ = grid.model;
    splitter->addWidget(grid.area);
    // Raw values from the stored columns; the looked-up names are written as shown.
    OfferExport([this] {
        exchange::ShowExport(db_, messages_,
                             {model_,
                              QStringLiteral("tblExpenses"),
                              QStringLiteral("lExpense_id"),
                              {QStringLiteral("lExpense_id"), QStringLiteral("dtExpense_dt"),
                               QStringLiteral("cExpense_amt"), QString(), QString(), QString(),
                               QStringLiteral("sExpenseNotes_tx")}},
                             QStringLiteral("Expenses.csv"), this);
    });

    auto* panel = new QWidget(splitter);
    auto* fields = new QGridLayout(panel);
    const auto label = &RecordWindow::FieldLabel;
    mebExpense_dt_ = MakeDateBox(QStringLiteral("mebExpense_dt"), panel);
    CheckOnLeave(mebExpense_dt_, kDateMaskEmpty,
                 QStringLiteral("Invalid Expense Date, Use MM/DD/YYYY Format"));
    txtExpense_amt_ = new QLineEdit(panel);
    txtExpense_amt_->setObjectName(QStringLiteral("txtExpense_amt"));
    txtExpense_amt_->setAlignment(Qt::AlignRight);
    txtExpense_amt_->setFixedWidth(
        txtExpense_amt_->fontMetrics().horizontalAdvance(QStringLiteral("000,000,000.000")) + 16);
    cboExpenseCategory_ = new QComboBox(panel);
    cboExpenseCategory_->setObjectName(QStringLiteral("cboExpenseCategory"));
    cboExpenseCategory_->setEditable(true);
    cboCar_ = new QComboBox(panel);
    cboCar_->setObjectName(QStringLiteral("cboCar"));
    cboEvent_ = new QComboBox(panel);
    cboEvent_->setObjectName(QStringLiteral("cboEvent"));
    for (QComboBox* combo : {cboExpenseCategory_, cboCar_, cboEvent_}) {
        combo->setMinimumContentsLength(24);
    }
    rtbExpenseNotes_tx_ = new QPlainTextEdit(panel);
    rtbExpenseNotes_tx_->setObjectName(QStringLiteral("rtbExpenseNotes_tx"));

    fields->addWidget(label(QStringLiteral("Date:"), mebExpense_dt_), 0, 0);
    fields->addWidget(mebExpense_dt_, 0, 1, Qt::AlignLeft);
    fields->addWidget(label(QStringLiteral("Amount:"), txtExpense_amt_), 1, 0);
    fields->addWidget(txtExpense_amt_, 1, 1, Qt::AlignLeft);
    fields->addWidget(label(QStringLiteral("Category:"), cboExpenseCategory_), 2, 0);
    fields->addWidget(cboExpenseCategory_, 2, 1, Qt::AlignLeft);
    fields->addWidget(label(QStringLiteral("Car:"), cboCar_), 3, 0);
    fields->addWidget(cboCar_, 3, 1, Qt::AlignLeft);
    fields->addWidget(label(QStringLiteral("Event:"), cboEvent_), 4, 0);
    fields->addWidget(cboEvent_, 4, 1, Qt::AlignLeft);
    fields->addWidget(label(QStringLiteral("Description:"), rtbExpenseNotes_tx_), 0, 2);
    fields->addWidget(rtbExpenseNotes_tx_, 1, 2, 5, 1);
    fields->setColumnStretch(2, 1);
    fields->setRowStretch(5, 1);
    splitter->addWidget(panel);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    SetBody(splitter);

    for (QWidget* field : std::initializer_list<QWidget*>{
             mebExpense_dt_, txtExpense_amt_, cboExpenseCategory_, cboCar_, cboEvent_}) {
        AddField(field);
    }
    AddNotesField(rtbExpenseNotes_tx_, kNotesPlaceholder);
    InstallNumericKeyFilter(txtExpense_amt_, 2);
    txtExpense_amt_->installEventFilter(this);
    cboExpenseCategory_->installEventFilter(this);
}

void frmExpense::FillLists() {
    ListFillFromTable(cboExpenseCategory_, QStringLiteral("lExpenseCategory_id"),
                      QStringLiteral("sExpenseCategory_nm"), QStringLiteral("tblExpenseCategory"),
                      QString(), db_);
    ListFillFromTable(cboCar_, QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"),
                      QStringLiteral("tblCars"), kNone, db_);
    ListFillFromTable(cboEvent_, QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"),
                      QStringLiteral("tblEvents"), kNone, db_);
    FillFilterList(efCategory_, QStringLiteral("<All Categories>"),
                   QStringLiteral("SELECT * from tblExpenseCategory ORDER BY sExpenseCategory_nm"),
                   QStringLiteral("lExpenseCategory_id"), QStringLiteral("sExpenseCategory_nm"));
    FillFilterList(efCar_, QStringLiteral("<All Cars>"),
                   QStringLiteral("SELECT * from tblCars ORDER BY sCar_nm"),
                   QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"));
    FillFilterList(efEvent_, QStringLiteral("<All Events>"),
                   QStringLiteral("SELECT * from tblEvents ORDER BY sEvent_nm"),
                   QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"));
}

ExpenseFilter frmExpense::ReadFilter() const {
    ExpenseFilter filter;
    filter.from = FilterDate(efDateFrom_);
    filter.to = FilterDate(efDateTo_);
    filter.categoryId = FilterId(efCategory_);
    filter.carId = FilterId(efCar_);
    filter.eventId = FilterId(efEvent_);
    return filter;
}

void frmExpense::GridLoad() {
    const BusyCursor busy;
    const qint64 shown = CurrentRecordId();
    ExpenseList list = ReadExpenseList(db_, ExpenseListSql(ReadFilter()), ExpenseNames(db_));
    {
        const RecordList::Quiet quiet(recordList());
        model_->SetRows(std::move(list.rows));
    }
    total_ = list.total;
    amounts_ = std::move(list.amounts);
    gridCaption_->setText(ExpenseGridCaption(total_));
    if (shown != 0) {
        recordList()->select(recordList()->findId(shown));
    }
}

void frmExpense::LineRebuild(qint64 id) {
    const int row = recordList()->findId(id);
    if (row < 0) {
        return;
    }
    ExpenseList line = ReadExpenseList(db_, ExpenseLineSql(id), ExpenseNames(db_));
    if (line.rows.empty()) {
        return;
    }
    model_->SetRowText(row, line.rows.front());
    if (const auto before = amounts_.constFind(id); before != amounts_.constEnd()) {
        total_.Subtract(*before);
    }
    amounts_.remove(id);
    if (const auto after = line.amounts.constFind(id); after != line.amounts.constEnd()) {
        total_.Add(*after);
        amounts_.insert(id, *after);
    }
    gridCaption_->setText(ExpenseGridCaption(total_));
}

void frmExpense::RecordToFields(const store::Recordset& rs) {
    mebExpense_dt_->setText(DateMaskValue(rs.Value(QStringLiteral("dtExpense_dt"))));
    const QVariant amount = rs.Value(QStringLiteral("cExpense_amt"));
    txtExpense_amt_->setText(amount.metaType() == QMetaType::fromType<store::Currency>()
                                 ? MoneyText(amount.value<store::Currency>())
                                 : amount.toString());
    SelectComboId(cboExpenseCategory_, rs.Value(QStringLiteral("lExpenseCategory_id")));
    SelectComboId(cboCar_, rs.Value(QStringLiteral("lCar_id")));
    SelectComboId(cboEvent_, rs.Value(QStringLiteral("lEvent_id")));
    SetNotes(rtbExpenseNotes_tx_, rs.Value(QStringLiteral("sExpenseNotes_tx")).toString());
}

void frmExpense::FieldsToRecord(store::Recordset& rs) {
    rs.SetValue(QStringLiteral("dtExpense_dt"), DateOrNull(MaskText(mebExpense_dt_)));
    rs.SetValue(QStringLiteral("lExpenseCategory_id"), SelectedId(cboExpenseCategory_));
    // Checked before the save: the units exactly as shown, never a binary fraction.
    const auto amount = AmountValue(txtExpense_amt_->text());
    rs.SetValue(QStringLiteral("cExpense_amt"),
                amount ? QVariant::fromValue(*amount) : TextOrNull(txtExpense_amt_->text()));
    rs.SetValue(QStringLiteral("lEvent_id"), SelectedId(cboEvent_));
    rs.SetValue(QStringLiteral("lCar_id"), SelectedId(cboCar_));
    rs.SetValue(QStringLiteral("sExpenseNotes_tx"), NotesValue(rtbExpenseNotes_tx_->toPlainText()));
}

void frmExpense::ClearFields() {
    mebExpense_dt_->setText(DateMaskValue(clock_.Today()));
    SelectComboId(cboExpenseCategory_, QVariant());
    txtExpense_amt_->clear();
    SelectComboId(cboCar_, QVariant());
    SelectComboId(cboEvent_, QVariant());
    rtbExpenseNotes_tx_->clear();
}

QWidget* frmExpense::NewFocusField() const {
    return mebExpense_dt_;
}

std::vector<ValidationStep> frmExpense::ValidationSteps() const {
    const auto amount = AmountProblem(txtExpense_amt_->text());
    return {
        {[this] { return !DateValue(MaskText(mebExpense_dt_)); },
         QStringLiteral("Invalid Expense Date, Use MM/DD/YYYY Format"),
         QStringLiteral("mebExpense_dt")},
        {[this] { return txtExpense_amt_->text().trimmed().isEmpty(); },
         QStringLiteral("Expense Amount Must Be Filled In"), QStringLiteral("txtExpense_amt")},
        {[this] { return SelectedIndex(cboExpenseCategory_) < 0; },
         QStringLiteral("Expense Category Must Be Selected"), QStringLiteral("cboExpenseCategory")},
        // An amount the currency can't hold is refused by name rather than stored wrong.
        {[amount] { return amount.has_value(); }, amount.value_or(QString()),
         QStringLiteral("txtExpense_amt")},
    };
}

void frmExpense::BeforeValidate() {
    // A save from the tool bar leaves neither box by losing the focus.
    AmountReformat();
    CategoryCheck();
}

void frmExpense::AmountReformat() {
    if (const auto amount = AmountValue(txtExpense_amt_->text())) {
        const QString shown = MoneyText(*amount);
        if (shown != txtExpense_amt_->text()) {
            txtExpense_amt_->setText(shown);
        }
    }
}

void frmExpense::CategoryCheck() {
    if (!AddTypedEntry(cboExpenseCategory_, QStringLiteral("tblExpenseCategory"),
                       QStringLiteral("sExpenseCategory_nm"))) {
        return;
    }
    // The new category can be filtered by at once.
    FillFilterList(efCategory_, QStringLiteral("<All Categories>"),
                   QStringLiteral("SELECT * from tblExpenseCategory ORDER BY sExpenseCategory_nm"),
                   QStringLiteral("lExpenseCategory_id"), QStringLiteral("sExpenseCategory_nm"));
}

DeleteRule frmExpense::DeleteRules() const {
    return {{}, QStringLiteral("SELECT COUNT(lExpense_id) as Expense_Count from tblExpenses")};
}

QString frmExpense::RecordName() const {
    return cboExpenseCategory_->currentText().trimmed();
}

void frmExpense::ListAfterSave(qint64 id, bool added) {
    if (added) {
        GridLoad();
        recordList()->select(recordList()->findId(id));
    } else {
        LineRebuild(id);
    }
}

void frmExpense::ListAfterDelete(qint64 id) {
    RecordList* list = recordList();
    const int row = std::max(0, list->findId(id));
    GridLoad();
    if (list->count() == 0) {
        New();
        return;
    }
    ShowRecordId(list->idAt(std::min(row, list->count() - 1)));
}

bool frmExpense::eventFilter(QObject* watched, QEvent* event) {
    if (IsFieldExit(event)) {
        if (watched == txtExpense_amt_) {
            AmountReformat();
        } else if (watched == cboExpenseCategory_) {
            CategoryCheck();
        }
    }
    return RecordWindow::eventFilter(watched, event);
}

}  // namespace slipbook::garage
