#pragma once

// "Filter Run Data": a row of conditions per column of the run list; Apply puts the filter in
// force in the main window, which then lists only the runs that meet every included row.

#include "shell/windowcontext.h"
#include "views/runfilter.h"

#include <QWidget>

class QCloseEvent;
class QLabel;
class QPushButton;
class QSplitter;

namespace slipbook::views {

class FilterGrid;
class FilterModel;

class frmFilter : public QWidget {
    Q_OBJECT

public:
    // The grid's columns.
    enum Column { FieldName, DataType, Field, Operator, Value, Value2, IncludeNew, ColumnCount };

    explicit frmFilter(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmFilter() override;

    const FilterForm& form() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildLayout();
    // Form_Load, also the Reset: the help text and a row per column of the list.
    void FormLoad();
    void Apply();
    void Reset();
    // The filter off; the tool and, when a filter was in force, the list follow.
    void ClearFilter();
    void FocusCell(int row, int column);

    const shell::WindowContext ctx_;
    QSplitter* splFilter_ = nullptr;
    FilterGrid* ssdbgFilter_ = nullptr;
    FilterModel* model_ = nullptr;
    QLabel* lbMessage_ = nullptr;
    QPushButton* sscmdApply_ = nullptr;
    QPushButton* sscmdReset_ = nullptr;
    QPushButton* sscmdClose_ = nullptr;
};

}  // namespace slipbook::views
