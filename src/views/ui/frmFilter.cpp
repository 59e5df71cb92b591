#include "views/ui/frmFilter.h"

#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "store/dberror.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <functional>

namespace slipbook::views {

// The grid, which can take what is being typed in a cell before the buttons act.
class FilterGrid : public QTableView {
public:
    using QTableView::QTableView;

    void CommitEditor() {
        if (state() != EditingState) {
            return;
        }
        if (QWidget* editor = indexWidget(currentIndex())) {
            commitData(editor);
            closeEditor(editor, QAbstractItemDelegate::NoHint);
        }
    }
};

// The form's rows as the grid shows and edits them. The model keeps the form, so that the grid
// never outlives what it shows.
class FilterModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    FilterForm& form() { return form_; }

    template <class F>
    void Reload(F fill) {
        beginResetModel();
        fill();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : form_.size();
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : frmFilter::ColumnCount;
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) {
            return {};
        }
        const FilterRow& row = form_.row(index.row());
        const int column = index.column();
        if (role == Qt::DisplayRole || role == Qt::EditRole) {
            switch (column) {
                case frmFilter::FieldName:
                    return row.fieldName;
                case frmFilter::DataType:
                    return row.dataType;
                case frmFilter::Field:
                    return row.caption;
                case frmFilter::Operator:
                    return row.op;
                case frmFilter::Value:
                    return row.value1;
                case frmFilter::Value2:
                    return row.value2;
                default:
                    return {};
            }
        }
        if (role == Qt::CheckStateRole && column == frmFilter::IncludeNew) {
            return row.include ? Qt::Checked : Qt::Unchecked;
        }
        if (role == Qt::ForegroundRole && column == frmFilter::Value2 &&
            !FilterForm::Value2Open(row)) {
            return QApplication::palette().brush(QPalette::Disabled, QPalette::Text);
        }
        return {};
    }

    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
            return QAbstractTableModel::headerData(section, orientation, role);
        }
        static const char* const captions[] = {"FieldName", "DataType", "Field",
                                               "Operator",  "Value 1",  "and Value 2 (between)",
                                               "Include"};
        return section >= 0 && section < frmFilter::ColumnCount
                   ? QString::fromLatin1(captions[section])
                   : QVariant();
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        if (!index.isValid()) {
            return Qt::NoItemFlags;
        }
        Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        switch (index.column()) {
            case frmFilter::Operator:
            case frmFilter::Value:
                f |= Qt::ItemIsEditable;
                break;
            case frmFilter::Value2:
                if (FilterForm::Value2Open(form_.row(index.row()))) {
                    f |= Qt::ItemIsEditable;
                }
                break;
            case frmFilter::IncludeNew:
                f |= Qt::ItemIsUserCheckable;
                break;
            default:
                break;
        }
        return f;
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override {
        if (!index.isValid()) {
            return false;
        }
        const int r = index.row();
        bool changed = false;
        if (index.column() == frmFilter::IncludeNew && role == Qt::CheckStateRole) {
            changed = form_.SetInclude(r, value.toInt() == Qt::Checked);
        } else if (role == Qt::EditRole) {
            switch (index.column()) {
                case frmFilter::Operator:
                    changed = form_.SetOperator(r, value.toString());
                    break;
                case frmFilter::Value:
                    changed = form_.SetValue1(r, value.toString());
                    break;
                case frmFilter::Value2:
                    changed = form_.SetValue2(r, value.toString());
                    break;
                default:
                    break;
            }
        }
        if (changed) {
            Q_EMIT dataChanged(this->index(r, 0), this->index(r, frmFilter::ColumnCount - 1));
        }
        return changed;
    }

private:
    FilterForm form_;
};

namespace {

// The operator drop-down, which tells when its list opens and closes.
class OperatorCombo : public QComboBox {
public:
    OperatorCombo(QWidget* parent, std::function<void(bool)> popup)
        : QComboBox(parent), popup_(std::move(popup)) {}

    void showPopup() override {
        popup_(true);
        QComboBox::showPopup();
    }
    void hidePopup() override {
        QComboBox::hidePopup();
        popup_(false);
    }

private:
    std::function<void(bool)> popup_;
};

class OperatorDelegate : public QStyledItemDelegate {
public:
    OperatorDelegate(std::function<void(bool)> popup, QObject* parent)
        : QStyledItemDelegate(parent), popup_(std::move(popup)) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override {
        auto* combo = new OperatorCombo(parent, popup_);
        combo->setObjectName(QStringLiteral("cboOperator"));
        combo->addItems(FilterOperators());
        // A pick is taken at once.
        auto* self = const_cast<OperatorDelegate*>(this);
        connect(combo, &QComboBox::activated, self,
                [self, combo] { Q_EMIT self->commitData(combo); });
        return combo;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* combo = static_cast<QComboBox*>(editor);
        combo->setCurrentIndex(combo->findText(index.data(Qt::EditRole).toString()));
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        model->setData(index, static_cast<QComboBox*>(editor)->currentText(), Qt::EditRole);
    }

private:
    std::function<void(bool)> popup_;
};

// The Include box, in the middle of its cell; a click anywhere in the cell, or the space bar,
// ticks or clears it.
class IncludeDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        QStyle* style = opt.widget != nullptr ? opt.widget->style() : QApplication::style();
        QStyleOptionViewItem cell = opt;
        cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
        cell.text.clear();
        style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, opt.widget);
        QStyleOptionViewItem check = opt;
        const int w = style->pixelMetric(QStyle::PM_IndicatorWidth, &opt, opt.widget);
        const int h = style->pixelMetric(QStyle::PM_IndicatorHeight, &opt, opt.widget);
        check.rect = QRect(opt.rect.center().x() - w / 2, opt.rect.center().y() - h / 2, w, h);
        check.state &= ~QStyle::State_HasFocus;
        check.state |= opt.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
        style->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &check, painter, opt.widget);
    }

    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override {
        if (!(index.flags() & Qt::ItemIsUserCheckable)) {
            return false;
        }
        bool toggle = false;
        switch (event->type()) {
            case QEvent::MouseButtonDblClick:
                // The second click of a double click ticks once more, on its release.
                return option.rect.contains(static_cast<QMouseEvent*>(event)->position().toPoint());
            case QEvent::MouseButtonRelease: {
                const auto* mouse = static_cast<QMouseEvent*>(event);
                toggle = mouse->button() == Qt::LeftButton &&
                         option.rect.contains(mouse->position().toPoint());
                break;
            }
            case QEvent::KeyPress: {
                const int key = static_cast<QKeyEvent*>(event)->key();
                toggle = key == Qt::Key_Space || key == Qt::Key_Select;
                break;
            }
            default:
                break;
        }
        if (!toggle) {
            return false;
        }
        const bool on = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return model->setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
};

// The help lines, or the operators' meanings while the drop-down is open.
void ShowHelp(QLabel* label, bool operatorsOpen) {
    label->setText((operatorsOpen ? FilterOperatorLines() : FilterHelpLines()).join(u'\n'));
}

}  // namespace

frmFilter::frmFilter(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx) {
    setObjectName(QStringLiteral("frmFilter"));
    setWindowTitle(QStringLiteral("Filter Run Data"));
    BuildLayout();
    FormLoad();
}

frmFilter::~frmFilter() = default;

const FilterForm& frmFilter::form() const {
    return model_->form();
}

void frmFilter::BuildLayout() {
    auto* root = new QVBoxLayout(this);
    splFilter_ = new QSplitter(Qt::Vertical, this);
    splFilter_->setObjectName(QStringLiteral("splFilter"));
    splFilter_->setChildrenCollapsible(false);
    root->addWidget(splFilter_);

    ssdbgFilter_ = new FilterGrid(splFilter_);
    ssdbgFilter_->setObjectName(QStringLiteral("ssdbgFilter"));
    model_ = new FilterModel(ssdbgFilter_);
    ssdbgFilter_->setModel(model_);
    ssdbgFilter_->setColumnHidden(FieldName, true);
    ssdbgFilter_->setColumnHidden(DataType, true);
    ssdbgFilter_->setSelectionMode(QAbstractItemView::SingleSelection);
    ssdbgFilter_->setSelectionBehavior(QAbstractItemView::SelectItems);
    // A cell is edited as soon as it is entered, as in the grid the racer knows.
    ssdbgFilter_->setEditTriggers(
        QAbstractItemView::CurrentChanged | QAbstractItemView::DoubleClicked |
        QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed |
        QAbstractItemView::AnyKeyPressed);
    ssdbgFilter_->verticalHeader()->hide();
    ssdbgFilter_->verticalHeader()->setDefaultSectionSize(ssdbgFilter_->fontMetrics().height() +
                                                          10);
    QHeaderView* header = ssdbgFilter_->horizontalHeader();
    const int widths[] = {0, 0, 150, 90, 130, 160, 64};
    for (int c = Field; c < ColumnCount; ++c) {
        const int caption = header->fontMetrics().horizontalAdvance(
                                model_->headerData(c, Qt::Horizontal).toString()) +
                            24;
        ssdbgFilter_->setColumnWidth(c, std::max(widths[c], caption));
    }
    header->setStretchLastSection(false);
    header->setSectionResizeMode(Value, QHeaderView::Stretch);
    header->setSectionResizeMode(Value2, QHeaderView::Stretch);
    splFilter_->addWidget(ssdbgFilter_);

    auto* panel = new QWidget(splFilter_);
    auto* panelLayout = new QHBoxLayout(panel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    lbMessage_ = new QLabel(panel);
    lbMessage_->setObjectName(QStringLiteral("lbMessage"));
    lbMessage_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lbMessage_->setFrameShape(QFrame::StyledPanel);
    lbMessage_->setMargin(6);
    lbMessage_->setMinimumHeight(lbMessage_->fontMetrics().lineSpacing() * 6 + 12);
    panelLayout->addWidget(lbMessage_, 1);
    auto* buttons = new QVBoxLayout;
    sscmdApply_ = NamedButton("sscmdApply", QStringLiteral("&Apply"), panel);
    sscmdReset_ = NamedButton("sscmdReset", QStringLiteral("&Reset"), panel);
    sscmdClose_ = NamedButton("sscmdClose", QStringLiteral("&Close"), panel);
    sscmdApply_->setToolTip(QStringLiteral("List only the runs that meet every included row"));
    sscmdReset_->setToolTip(QStringLiteral("Start again from the list as it stands"));
    sscmdClose_->setToolTip(QStringLiteral("Close without changing the filter"));
    for (QPushButton* b : {sscmdApply_, sscmdReset_, sscmdClose_}) {
        buttons->addWidget(b);
    }
    buttons->addStretch(1);
    panelLayout->addLayout(buttons);
    splFilter_->addWidget(panel);
    splFilter_->setStretchFactor(0, 1);
    splFilter_->setStretchFactor(1, 0);

    // The drop-down may close while the window is being taken down, when only the label is left
    // to be told.
    QPointer<QLabel> label = lbMessage_;
    auto help = [label](bool open) {
        if (label) {
            ShowHelp(label, open);
        }
    };
    ssdbgFilter_->setItemDelegateForColumn(Operator, new OperatorDelegate(help, this));
    ssdbgFilter_->setItemDelegateForColumn(IncludeNew, new IncludeDelegate(this));

    connect(sscmdApply_, &QPushButton::clicked, this, &frmFilter::Apply);
    connect(sscmdReset_, &QPushButton::clicked, this, &frmFilter::Reset);
    connect(sscmdClose_, &QPushButton::clicked, this, &QWidget::close);
    resize(640, 480);
}

void frmFilter::FormLoad() {
    ShowHelp(lbMessage_, false);
    const QList<shell::ShownColumn> columns = ctx_.main.ListColumns();
    const int rows = ctx_.main.ListRowCount();
    FilterForm& form = model_->form();
    model_->Reload([&] {
        form.Clear();
        for (int i = 0; i < columns.size(); ++i) {
            const shell::ShownColumn& c = columns[i];
            const QString first = rows > 0 ? ctx_.main.ListCellText(0, i + 1) : QString();
            const QString last = rows > 0 ? ctx_.main.ListCellText(rows - 1, i + 1) : QString();
            form.AddColumn(c.name, c.typeName, c.caption, first, last);
        }
    });
    // Every row shows its drop-down, which stays while the focus moves on.
    for (int r = 0; r < form.size(); ++r) {
        ssdbgFilter_->openPersistentEditor(model_->index(r, Operator));
    }
}

void frmFilter::Reset() {
    ssdbgFilter_->CommitEditor();
    FormLoad();
    ssdbgFilter_->setFocus();
}

void frmFilter::FocusCell(int row, int column) {
    const QModelIndex index = model_->index(row, column);
    ssdbgFilter_->setFocus();
    ssdbgFilter_->scrollTo(index);
    if (ssdbgFilter_->currentIndex() == index) {
        ssdbgFilter_->edit(index);
    } else {
        ssdbgFilter_->setCurrentIndex(index);
    }
}

void frmFilter::Apply() {
    ssdbgFilter_->CommitEditor();
    const QString title = windowTitle();
    RunFilterStatement built;
    try {
        built = BuildRunFilter(ctx_.db, model_->form().rows(),
                               {ctx_.state.car.id, ctx_.state.event.id, ctx_.clock.Now().date()},
                               ctx_.messages);
    } catch (const store::DbError& e) {
        store::ErrorReport(e, title, ctx_.messages);
        return;
    }
    if (built.fault) {
        ctx_.messages.inform(built.fault->message, QStringLiteral("Data Entry Error"),
                             MsgIcon::Exclamation);
        FocusCell(built.fault->row, built.fault->value == 2 ? Value2 : Value);
        return;
    }
    if (built.conditions == 0) {
        ClearFilter();
        return;
    }
    bool found = false;
    try {
        BusyCursor busy;
        found = FilterHasRuns(ctx_.db, built.sql);
    } catch (const store::DbError& e) {
        // A statement the logbook refuses leaves no filter in force.
        store::ErrorReport(e, title, ctx_.messages);
        ClearFilter();
        return;
    }
    if (!found) {
        ctx_.messages.inform(QStringLiteral("No records for selected filter"));
        return;
    }
    ctx_.state.filter = {true, built.text, built.sql};
    close();
    ctx_.main.FilterApply();
}

void frmFilter::ClearFilter() {
    const bool wasActive = ctx_.state.filter.active;
    ctx_.state.filter = {};
    if (wasActive) {
        ctx_.main.FilterApply();
    } else {
        ctx_.main.FilterToolFollow();
    }
}

void frmFilter::closeEvent(QCloseEvent* event) {
    ssdbgFilter_->CommitEditor();
    ctx_.main.FilterToolFollow();
    QWidget::closeEvent(event);
}

}  // namespace slipbook::views
