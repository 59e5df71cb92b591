#pragma once

#include "common/ui/recordwindow.h"
#include "garage/expenses.h"
#include "shell/windowcontext.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTableView;
class QToolBar;

namespace slipbook::garage {

// What racing costs: the expenses that pass the filters in a grid with their total, and one
// expense edited below it.
class frmExpense final : public RecordWindow {
    Q_OBJECT

public:
    explicit frmExpense(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmExpense() override;

    // Reloads the grid from the filters.
    void GridLoad();

protected:
    QString RecordsetSql() const override { return ExpenseRecordsetSql(); }
    QString TableName() const override { return QStringLiteral("tblExpenses"); }
    QString IdColumn() const override { return QStringLiteral("lExpense_id"); }
    void FillLists() override;
    void FillRecordList() override { GridLoad(); }
    void RecordToFields(const store::Recordset& rs) override;
    void FieldsToRecord(store::Recordset& rs) override;
    void ClearFields() override;
    QWidget* NewFocusField() const override;
    std::vector<ValidationStep> ValidationSteps() const override;
    void BeforeValidate() override;
    DeleteRule DeleteRules() const override;
    QString RecordName() const override;
    QString Caption() const override { return QStringLiteral("Expenses"); }
    void ListAfterSave(qint64 id, bool added) override;
    void ListAfterDelete(qint64 id) override;
    QString SelectionPromptTitle() const override {
        return QStringLiteral("Different Expense Line Selected");
    }
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildFilters();
    void BuildBody();
    ExpenseFilter ReadFilter() const;
    void CategoryCheck();
    void AmountReformat();
    // Rebuilds the line of an edited expense as a load would, and its share of the total.
    void LineRebuild(qint64 id);

    QToolBar* atbExpense_ = nullptr;
    QLineEdit* efDateFrom_ = nullptr;
    QLineEdit* efDateTo_ = nullptr;
    QComboBox* efCategory_ = nullptr;
    QComboBox* efCar_ = nullptr;
    QComboBox* efEvent_ = nullptr;

    QLabel* gridCaption_ = nullptr;
    QTableView* ssdbgExpenses_ = nullptr;
    TextGridModel* model_ = nullptr;

    QLineEdit* mebExpense_dt_ = nullptr;
    QLineEdit* txtExpense_amt_ = nullptr;
    QComboBox* cboExpenseCategory_ = nullptr;
    QComboBox* cboCar_ = nullptr;
    QComboBox* cboEvent_ = nullptr;
    QPlainTextEdit* rtbExpenseNotes_tx_ = nullptr;

    // The loaded lines' total and amounts, so that an edited line moves the total exactly.
    MoneyTotal total_;
    QHash<qint64, store::Currency> amounts_;
    const WallClock& clock_;
};

}  // namespace slipbook::garage
