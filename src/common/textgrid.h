#pragma once

// The unbound text grid behind the program's lists: every cell is text, added row by row (or a
// whole load at once), shown by a QTableView. The first column is by convention the row's key,
// captioned "Key" and hidden.
//
// Each row is held as one text with its cells separated by tabs, the way rows are added. A
// 100,000-row list of 40 columns then takes some 60 MB rather than the 300 MB that one QString
// per cell costs; a cell is found by scanning its row, which is cheap for the rows on screen,
// and the sort reads each row once.

#include <QAbstractTableModel>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace slipbook {

// Column type codes, as the grid sort reads them.
namespace gridtype {
constexpr int Number = 5;
constexpr int Date = 7;
constexpr int Text = 8;
constexpr int Boolean = 11;
}  // namespace gridtype

struct GridColumn {
    QString caption;
    QString name;
    bool visible = true;
    int width = -1;  // layout units; -1 for the grid's default
    QString typeName;
    int typeCode = gridtype::Text;
    QString format;
    int alignment = 0;                // 0 left, 1 right, 2 centre
    bool headerFollowsCells = false;  // the caption takes the cells' alignment
    // Tells a reader which row a line is (a run's date, time and number): a printed list wider
    // than the page repeats these columns at the head of every band.
    bool identifiesRow = false;
};

class TextGridModel : public QAbstractTableModel {
public:
    static constexpr QChar kSeparator = u'\t';

    // "Text" 8, "Number" 5, "Date" 7, "Time" 7, "Boolean" 11; any other name 8.
    static int TypeCode(QStringView typeName);
    // "R" 1, "C" 2, anything else 0.
    static int AlignmentCode(QStringView letter);

    explicit TextGridModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // Columns
    void AddColumn(GridColumn column);
    void SetColumns(std::vector<GridColumn> columns);
    int ColumnCount() const { return static_cast<int>(columns_.size()); }
    const GridColumn& Column(int index) const { return columns_.at(index); }
    // The first column of the name, without case; -1 when there is none.
    int ColumnIndex(QStringView name) const;
    bool GridColumnExists(QStringView name) const { return ColumnIndex(name) >= 0; }
    // Splits the text at the separator and sets the captions of the columns in order; a last
    // piece without separator counts when it is not blank.
    void GridHeadersSet(QStringView text, QChar separator);

    // Rows. A row text holds its cells separated by tabs; missing cells read as empty.
    int RowCount() const { return static_cast<int>(rows_.size()); }
    void AddRow(QStringView rowText);
    void AddRow(const QStringList& cells);
    void SetRowText(int row, QStringView rowText);
    void RemoveRow(int row);
    // Replaces all rows at once, with one reset rather than a signal per row. A long load should
    // join each row as it is built (JoinCells) and pass the texts: cell lists held for every
    // row at once cost five times the memory.
    void SetRows(std::vector<QString> rowTexts);
    void SetRows(const std::vector<QStringList>& rows);
    // Removes the rows and keeps the columns.
    void RemoveAll();
    // Removes rows and columns.
    void Clear();

    QString Cell(int row, int column) const { return CellView(row, column).toString(); }
    // Valid until the row changes.
    QStringView CellView(int row, int column) const;
    const QString& RowText(int row) const { return rows_.at(row); }

    // The first row whose first cell equals the value, or -1. Finds after the first since the
    // rows were last removed, replaced or sorted go through an index of the keys.
    int GridFindRow(QStringView value) const;
    // The row to select after a removal: the row at the index, or the last row; -1 when there
    // are no rows.
    int GridNextRow(int index) const;
    // Sorts the rows ascending by the column, stably: type codes 2, 3, 4, 5, 6 and 17 by the
    // number of the cell with blank cells first, 7 by date and time with cells that are no date
    // first, 8 and 11 by binary comparison of the texts. Other codes leave the order. Selections
    // and other persistent indexes follow their rows.
    void GridSort(int column);

    // Joins cells into a row text; a tab inside a cell becomes a blank.
    static QString JoinCells(const QStringList& cells);

private:
    // Puts the rows in the order given (new position -> old row) and moves persistent indexes.
    void ApplyOrder(const std::vector<int>& order);
    void AppendRow(QString rowText);
    void ForgetKeys();

    std::vector<GridColumn> columns_;
    std::vector<QString> rows_;
    // The first row of each key. The keys are views of the row texts (a QString keeps its text
    // where it is when the vector moves it), so each entry goes before its row text changes.
    mutable QHash<QStringView, int> keyRows_;
    mutable bool keysIndexed_ = false;
    mutable int scans_ = 0;  // finds without the index since it was last forgotten
};

}  // namespace slipbook
