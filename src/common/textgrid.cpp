#include "common/textgrid.h"

#include "common/forms.h"

#include <QThreadPool>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace slipbook {

namespace {

QStringView CellOf(QStringView row, int column) {
    qsizetype start = 0;
    for (int c = 0; c < column; ++c) {
        const qsizetype tab = row.indexOf(TextGridModel::kSeparator, start);
        if (tab < 0) {
            return QStringView();
        }
        start = tab + 1;
    }
    const qsizetype end = row.indexOf(TextGridModel::kSeparator, start);
    return row.sliced(start, (end < 0 ? row.size() : end) - start);
}

// Handing back the memory of a long list takes longer than showing the next one; a worker does
// it while the new list is already on screen.
void ReleaseRows(std::vector<QString>& rows) {
    constexpr size_t kWorthAThread = 20000;
    if (rows.size() < kWorthAThread) {
        rows.clear();
        rows.shrink_to_fit();
        return;
    }
    auto held = std::make_shared<std::vector<QString>>(std::move(rows));
    rows = {};
    QThreadPool::globalInstance()->start([held] { held->clear(); });
}

bool IsBlankCell(QStringView cell) {
    return cell.trimmed().isEmpty();
}

enum class SortKind { None, Number, Date, Text };

SortKind KindOf(int typeCode) {
    switch (typeCode) {
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 17:
            return SortKind::Number;
        case 7:
            return SortKind::Date;
        case 8:
        case 11:
            return SortKind::Text;
        default:
            return SortKind::None;
    }
}

// Keys are computed once per sort; the order is that of a bubble sort that swaps only a
// strictly smaller later row, i.e. a stable ascending sort.
template <typename Key, typename Less = std::less<Key>>
std::vector<int> StableOrder(std::vector<std::pair<Key, int>>& keyed, Less less = Less()) {
    std::stable_sort(keyed.begin(), keyed.end(),
                     [&less](const auto& a, const auto& b) { return less(a.first, b.first); });
    std::vector<int> order;
    order.reserve(keyed.size());
    for (const auto& k : keyed) {
        order.push_back(k.second);
    }
    return order;
}

int AlignmentFlags(int alignment) {
    switch (alignment) {
        case 1:
            return Qt::AlignRight | Qt::AlignVCenter;
        case 2:
            return Qt::AlignHCenter | Qt::AlignVCenter;
        default:
            return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

}  // namespace

int TextGridModel::TypeCode(QStringView typeName) {
    if (typeName.compare(u"Number", Qt::CaseInsensitive) == 0) {
        return gridtype::Number;
    }
    if (typeName.compare(u"Date", Qt::CaseInsensitive) == 0 ||
        typeName.compare(u"Time", Qt::CaseInsensitive) == 0) {
        return gridtype::Date;
    }
    if (typeName.compare(u"Boolean", Qt::CaseInsensitive) == 0) {
        return gridtype::Boolean;
    }
    return gridtype::Text;
}

int TextGridModel::AlignmentCode(QStringView letter) {
    if (letter == u"R") {
        return 1;
    }
    if (letter == u"C") {
        return 2;
    }
    return 0;
}

TextGridModel::TextGridModel(QObject* parent) : QAbstractTableModel(parent) {}

int TextGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : RowCount();
}

int TextGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount();
}

QVariant TextGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= RowCount() || index.column() >= ColumnCount()) {
        return QVariant();
    }
    switch (role) {
        case Qt::DisplayRole:
            return Cell(index.row(), index.column());
        case Qt::TextAlignmentRole:
            return AlignmentFlags(columns_[index.column()].alignment);
        default:
            return QVariant();
    }
}

QVariant TextGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount()) {
        return QVariant();
    }
    const GridColumn& column = columns_[section];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:  // the whole caption where the column is too narrow for it
            return column.caption;
        case Qt::TextAlignmentRole:
            return AlignmentFlags(column.headerFollowsCells ? column.alignment : 0);
        default:
            return QVariant();
    }
}

void TextGridModel::AddColumn(GridColumn column) {
    const int at = ColumnCount();
    beginInsertColumns(QModelIndex(), at, at);
    columns_.push_back(std::move(column));
    endInsertColumns();
}

void TextGridModel::SetColumns(std::vector<GridColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    endResetModel();
}

int TextGridModel::ColumnIndex(QStringView name) const {
    for (int i = 0; i < ColumnCount(); ++i) {
        if (name.compare(columns_[i].name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

void TextGridModel::GridHeadersSet(QStringView text, QChar separator) {
    QList<QStringView> pieces = text.split(separator);
    // The piece after the last separator counts only when it holds something.
    if (pieces.last().trimmed().isEmpty()) {
        pieces.removeLast();
    }
    const int count = std::min(static_cast<int>(pieces.size()), ColumnCount());
    for (int i = 0; i < count; ++i) {
        columns_[i].caption = pieces[i].toString();
    }
    if (count > 0) {
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, count - 1);
    }
}

void TextGridModel::AddRow(QStringView rowText) {
    AppendRow(rowText.toString());
}

void TextGridModel::AddRow(const QStringList& cells) {
    AppendRow(JoinCells(cells));
}

void TextGridModel::AppendRow(QString rowText) {
    const int at = RowCount();
    beginInsertRows(QModelIndex(), at, at);
    rows_.push_back(std::move(rowText));
    if (keysIndexed_) {
        // An earlier row of the same key stays the first.
        const QStringView key = CellOf(rows_.back(), 0);
        if (!keyRows_.contains(key)) {
            keyRows_.insert(key, at);
        }
    }
    endInsertRows();
}

void TextGridModel::SetRowText(int row, QStringView rowText) {
    if (row < 0 || row >= RowCount()) {
        return;
    }
    bool indexed = false;
    if (keysIndexed_) {
        const QStringView key = CellOf(rows_[row], 0);
        if (key != CellOf(rowText, 0)) {
            ForgetKeys();
        } else if (const auto it = keyRows_.find(key); it != keyRows_.end() && it.value() == row) {
            keyRows_.erase(it);
            indexed = true;
        }
    }
    rows_[row] = rowText.toString();
    if (indexed) {
        keyRows_.insert(CellOf(rows_[row], 0), row);
    }
    if (ColumnCount() > 0) {
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount() - 1));
    }
}

void TextGridModel::RemoveRow(int row) {
    if (row < 0 || row >= RowCount()) {
        return;
    }
    beginRemoveRows(QModelIndex(), row, row);
    ForgetKeys();
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
}

void TextGridModel::SetRows(std::vector<QString> rowTexts) {
    // A row built by appending carries spare capacity; 100,000 of them add up.
    for (QString& row : rowTexts) {
        row.squeeze();
    }
    beginResetModel();
    ForgetKeys();
    ReleaseRows(rows_);
    rows_ = std::move(rowTexts);
    endResetModel();
}

void TextGridModel::SetRows(const std::vector<QStringList>& rows) {
    std::vector<QString> texts;
    texts.reserve(rows.size());
    for (const QStringList& cells : rows) {
        texts.push_back(JoinCells(cells));
    }
    SetRows(std::move(texts));
}

void TextGridModel::RemoveAll() {
    beginResetModel();
    ForgetKeys();
    ReleaseRows(rows_);
    endResetModel();
}

void TextGridModel::Clear() {
    beginResetModel();
    ForgetKeys();
    ReleaseRows(rows_);
    columns_.clear();
    endResetModel();
}

QStringView TextGridModel::CellView(int row, int column) const {
    if (row < 0 || row >= RowCount() || column < 0) {
        return QStringView();
    }
    return CellOf(rows_[row], column);
}

int TextGridModel::GridFindRow(QStringView value) const {
    if (!keysIndexed_ && scans_ == 0) {
        // A single find costs less than the index.
        ++scans_;
        for (int row = 0; row < RowCount(); ++row) {
            if (CellOf(rows_[row], 0) == value) {
                return row;
            }
        }
        return -1;
    }
    if (!keysIndexed_) {
        keyRows_.clear();
        keyRows_.reserve(rows_.size());
        for (int row = 0; row < RowCount(); ++row) {
            const QStringView key = CellOf(rows_[row], 0);
            if (!keyRows_.contains(key)) {
                keyRows_.insert(key, row);
            }
        }
        keysIndexed_ = true;
    }
    const auto it = keyRows_.constFind(value);
    return it == keyRows_.constEnd() ? -1 : it.value();
}

void TextGridModel::ForgetKeys() {
    keyRows_.clear();
    keysIndexed_ = false;
    scans_ = 0;
}

int TextGridModel::GridNextRow(int index) const {
    if (rows_.empty()) {
        return -1;
    }
    return std::clamp(index, 0, RowCount() - 1);
}

void TextGridModel::GridSort(int column) {
    if (column < 0 || column >= ColumnCount() || RowCount() < 2) {
        return;
    }
    const int n = RowCount();
    std::vector<int> order;
    switch (KindOf(columns_[column].typeCode)) {
        case SortKind::None:
            return;
        case SortKind::Number: {
            std::vector<std::pair<double, int>> keyed;
            keyed.reserve(n);
            for (int row = 0; row < n; ++row) {
                const QStringView cell = CellOf(rows_[row], column);
                double key = IsBlankCell(cell) ? -std::numeric_limits<double>::infinity()
                                               : GridNumberKey(cell);
                if (std::isnan(key)) {
                    key = 0.0;
                }
                keyed.emplace_back(key, row);
            }
            order = StableOrder(keyed);
            break;
        }
        case SortKind::Date: {
            std::vector<std::pair<qint64, int>> keyed;
            keyed.reserve(n);
            for (int row = 0; row < n; ++row) {
                const auto key = GridDateKey(CellOf(rows_[row], column));
                keyed.emplace_back(key.value_or(std::numeric_limits<qint64>::min()), row);
            }
            order = StableOrder(keyed);
            break;
        }
        case SortKind::Text: {
            std::vector<std::pair<QStringView, int>> keyed;
            keyed.reserve(n);
            for (int row = 0; row < n; ++row) {
                keyed.emplace_back(CellOf(rows_[row], column), row);
            }
            order = StableOrder(keyed, [](QStringView a, QStringView b) {
                return a.compare(b, Qt::CaseSensitive) < 0;
            });
            break;
        }
    }
    ApplyOrder(order);
}

void TextGridModel::ApplyOrder(const std::vector<int>& order) {
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    ForgetKeys();
    std::vector<QString> sorted;
    sorted.reserve(rows_.size());
    std::vector<int> newRowOf(rows_.size());
    for (size_t i = 0; i < order.size(); ++i) {
        sorted.push_back(std::move(rows_[order[i]]));
        newRowOf[order[i]] = static_cast<int>(i);
    }
    rows_ = std::move(sorted);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& old : from) {
        to.append(index(newRowOf[old.row()], old.column()));
    }
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QString TextGridModel::JoinCells(const QStringList& cells) {
    qsizetype length = cells.isEmpty() ? 0 : cells.size() - 1;
    for (const QString& cell : cells) {
        length += cell.size();
    }
    QString row;
    row.reserve(length);
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (i > 0) {
            row += kSeparator;
        }
        const qsizetype at = row.size();
        row += cells[i];
        for (qsizetype j = at; j < row.size(); ++j) {
            if (row[j] == kSeparator) {
                row[j] = u' ';
            }
        }
    }
    return row;
}

}  // namespace slipbook
