#pragma once

#include <QHeaderView>
#include <QPersistentModelIndex>
#include <QTableView>

namespace slipbook::shell {

// A column header whose caption ends in "..." where its column is too narrow for it, rather
// than being cut off within a letter.
class GridHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit GridHeader(QWidget* parent = nullptr);

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const override;
};

// A table whose first columns stay in view while the others scroll sideways: a second view over
// the same model and selection lies on top of the left edge.
class FrozenTableView : public QTableView {
    Q_OBJECT

public:
    explicit FrozenTableView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    void setSelectionModel(QItemSelectionModel* selectionModel) override;
    // Columns [0, count) stay in view; 0 turns the split off.
    void setFrozenColumns(int count);
    int frozenColumns() const { return frozen_; }
    QTableView* frozenView() const { return overlay_; }
    // The sort arrow on the column, on both headers; -1 shows none.
    void setSortColumn(int column);
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void updateGeometries() override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void UpdateOverlay();
    void SyncColumns();
    void QuietRowHeaders();

    QTableView* overlay_ = nullptr;
    int frozen_ = 0;
    // Where to scroll once shown: a hidden view has no geometry to scroll by.
    QPersistentModelIndex pendingScroll_;
    ScrollHint pendingHint_ = EnsureVisible;
};

}  // namespace slipbook::shell
