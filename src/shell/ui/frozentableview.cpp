#include "shell/ui/frozentableview.h"

#include <QScrollBar>
#include <QStyleOptionHeader>

namespace slipbook::shell {

GridHeader::GridHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
}

void GridHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const {
    QHeaderView::initStyleOptionForIndex(option, logicalIndex);
    // The label's room within the section, less the sort arrow's where there is one.
    QStyleOptionHeader probe(*option);
    probe.rect = QRect(0, 0, sectionSize(logicalIndex), height());
    const int room = style()->subElementRect(QStyle::SE_HeaderLabel, &probe, this).width();
    option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight, room);
}

FrozenTableView::FrozenTableView(QWidget* parent) : QTableView(parent) {
    setHorizontalHeader(new GridHeader(this));
    overlay_ = new QTableView(this);
    overlay_->setHorizontalHeader(new GridHeader(overlay_));
    overlay_->setObjectName(QStringLiteral("ssdbgMainSplit"));
    overlay_->setFocusPolicy(Qt::NoFocus);
    overlay_->verticalHeader()->hide();
    overlay_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    overlay_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    overlay_->setStyleSheet(
        QStringLiteral("QTableView { border: none; border-right: 2px solid #8a94a3; }"));
    overlay_->hide();
    viewport()->stackUnder(overlay_);

    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (section < frozen_) {
                    overlay_->setColumnWidth(section, size);
                    UpdateOverlay();
                }
            });
    connect(verticalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) { overlay_->setRowHeight(section, size); });
    connect(verticalScrollBar(), &QAbstractSlider::valueChanged, overlay_->verticalScrollBar(),
            &QAbstractSlider::setValue);
    connect(overlay_->verticalScrollBar(), &QAbstractSlider::valueChanged, verticalScrollBar(),
            &QAbstractSlider::setValue);
    // Clicks in the frozen part act as clicks in the grid.
    connect(overlay_, &QTableView::clicked, this, &QTableView::clicked);
    connect(overlay_, &QTableView::doubleClicked, this, &QTableView::doubleClicked);
}

void FrozenTableView::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    overlay_->setModel(model);
    overlay_->setSelectionModel(selectionModel());
    overlay_->setSelectionBehavior(selectionBehavior());
    overlay_->setSelectionMode(selectionMode());
    overlay_->horizontalHeader()->setSectionsClickable(true);
    connect(overlay_->horizontalHeader(), &QHeaderView::sectionClicked, horizontalHeader(),
            &QHeaderView::sectionClicked);
    connect(model, &QAbstractItemModel::modelReset, this, &FrozenTableView::SyncColumns);
    connect(model, &QAbstractItemModel::columnsInserted, this, &FrozenTableView::SyncColumns);
    QuietRowHeaders();
}

void FrozenTableView::setSelectionModel(QItemSelectionModel* selectionModel) {
    QTableView::setSelectionModel(selectionModel);
    QuietRowHeaders();
}

void FrozenTableView::QuietRowHeaders() {
    // The row headers are never shown, yet a header that follows the current row works out the
    // place of every row after each added one: with a long list, most of what a save costs.
    for (QTableView* view : {static_cast<QTableView*>(this), overlay_}) {
        if (view->selectionModel() != nullptr) {
            disconnect(view->selectionModel(), nullptr, view->verticalHeader(), nullptr);
        }
    }
}

void FrozenTableView::setFrozenColumns(int count) {
    frozen_ = count;
    SyncColumns();
}

void FrozenTableView::setSortColumn(int column) {
    // The sort is always ascending, whatever the header's own toggle made of a second click.
    for (QHeaderView* header : {horizontalHeader(), overlay_->horizontalHeader()}) {
        header->setSortIndicatorShown(column >= 0);
        header->setSortIndicator(column, Qt::AscendingOrder);
    }
}

void FrozenTableView::SyncColumns() {
    if (model() == nullptr) {
        return;
    }
    const int columns = model()->columnCount();
    const bool on = frozen_ > 0 && columns > frozen_;
    overlay_->setVisible(on);
    if (!on) {
        return;
    }
    overlay_->setSelectionBehavior(selectionBehavior());
    overlay_->setSelectionMode(selectionMode());
    for (int c = 0; c < columns; ++c) {
        const bool show = c < frozen_ && !isColumnHidden(c);
        overlay_->setColumnHidden(c, !show);
        if (show) {
            overlay_->setColumnWidth(c, columnWidth(c));
        }
    }
    overlay_->verticalHeader()->setDefaultSectionSize(verticalHeader()->defaultSectionSize());
    UpdateOverlay();
}

void FrozenTableView::UpdateOverlay() {
    if (!overlay_->isVisible()) {
        return;
    }
    int width = 0;
    for (int c = 0; c < frozen_; ++c) {
        if (!isColumnHidden(c)) {
            width += columnWidth(c);
        }
    }
    // A hidden header keeps its old width, so only a shown one counts.
    const int left = frameWidth() + (verticalHeader()->isVisible() ? verticalHeader()->width() : 0);
    overlay_->setGeometry(left, frameWidth(), width,
                          viewport()->height() + horizontalHeader()->height());
    overlay_->horizontalHeader()->setFixedHeight(horizontalHeader()->height());
}

void FrozenTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    UpdateOverlay();
}

void FrozenTableView::showEvent(QShowEvent* event) {
    QTableView::showEvent(event);
    SyncColumns();
    if (pendingScroll_.isValid()) {
        const QModelIndex index = pendingScroll_;
        pendingScroll_ = QPersistentModelIndex();
        scrollTo(index, pendingHint_);
    }
}

void FrozenTableView::updateGeometries() {
    QTableView::updateGeometries();
    UpdateOverlay();
}

QModelIndex FrozenTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    QModelIndex current = QTableView::moveCursor(action, modifiers);
    if (overlay_->isVisible() && action == MoveLeft && current.column() >= frozen_) {
        const int left = visualRect(current).topLeft().x();
        if (left < overlay_->width()) {
            const int to = horizontalScrollBar()->value() + left - overlay_->width();
            horizontalScrollBar()->setValue(to);
        }
    }
    return current;
}

void FrozenTableView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!isVisible()) {
        pendingScroll_ = index;
        pendingHint_ = hint;
        return;
    }
    pendingScroll_ = QPersistentModelIndex();
    if (index.column() >= frozen_ || !overlay_->isVisible()) {
        QTableView::scrollTo(index, hint);
    } else {
        QTableView::scrollTo(model()->index(index.row(), frozen_), hint);
    }
}

}  // namespace slipbook::shell
