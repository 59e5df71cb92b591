#include "common/textgrid.h"

#include "common/forms.h"
#include "support/modelcheck.h"

#include <gtest/gtest.h>

#include <QPersistentModelIndex>

#include <ostream>
#include <random>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using slipbook::GridColumn;
using slipbook::TextGridModel;
namespace gridtype = slipbook::gridtype;

namespace {

GridColumn Col(const char* name, int typeCode = gridtype::Text, int alignment = 0) {
    GridColumn c;
    c.caption = QString::fromUtf8(name);
    c.name = QString::fromUtf8(name);
    c.typeCode = typeCode;
    c.alignment = alignment;
    return c;
}

// A grid of key and value, the key counting the rows in the order they were added.
void Fill(TextGridModel& grid, int typeCode, const QStringList& values) {
    grid.Clear();
    GridColumn key = Col("lRun_id", gridtype::Number);
    key.caption = QStringLiteral("Key");
    key.visible = false;
    grid.AddColumn(key);
    grid.AddColumn(Col("value", typeCode));
    std::vector<QStringList> rows;
    for (int i = 0; i < values.size(); ++i) {
        rows.push_back({QString::number(i), values[i]});
    }
    grid.SetRows(rows);
}

QStringList Column(const TextGridModel& grid, int column) {
    QStringList cells;
    for (int row = 0; row < grid.RowCount(); ++row) {
        cells << grid.Cell(row, column);
    }
    return cells;
}

// The sort the grid must match: passes from the end, swapping a strictly smaller later value.
template <typename Less>
void BubbleSort(std::vector<QStringList>& rows, int column, Less less) {
    const size_t n = rows.size();
    for (size_t pass = 0; pass + 1 < n; ++pass) {
        for (size_t i = n - 1; i > 0; --i) {
            if (less(rows[i][column], rows[i - 1][column])) {
                std::swap(rows[i], rows[i - 1]);
            }
        }
    }
}

}  // namespace

TEST(TextGridModel, HoldsColumnsAndTextRows) {
    EXPECT_EQ(TextGridModel::TypeCode(u"Text"), 8);
    EXPECT_EQ(TextGridModel::TypeCode(u"Currency"), 8);
    EXPECT_EQ(TextGridModel::AlignmentCode(u""), 0);

    TextGridModel grid;
    GridColumn key = Col("lEvent_id");
    key.caption = QStringLiteral("Key");
    key.visible = false;
    grid.AddColumn(key);
    grid.AddColumn(Col("sEvent_nm"));
    GridColumn purse = Col("cPurse_amt", gridtype::Number, 1);
    purse.caption = QStringLiteral("Purse");
    purse.headerFollowsCells = true;
    grid.AddColumn(purse);
    grid.AddColumn(Col("dtEventStart_dt", gridtype::Date, 2));
    EXPECT_EQ(grid.columnCount(), 4);

    grid.AddRow(u"7\tSpring Nationals\t1,500");  // one cell short
    grid.AddRow(QStringList{"8", "Tab\there", "", "07/04/2003", "extra"});
    ASSERT_EQ(grid.rowCount(), 2);
    EXPECT_EQ(grid.Cell(0, 1), "Spring Nationals");
    EXPECT_EQ(grid.Cell(0, 3), "");
    EXPECT_EQ(grid.Cell(1, 1), "Tab here");
    EXPECT_EQ(grid.Cell(1, 3), "07/04/2003");
    EXPECT_EQ(grid.Cell(5, 0), "");
    EXPECT_EQ(grid.RowText(0), "7\tSpring Nationals\t1,500");

    EXPECT_EQ(grid.data(grid.index(0, 1)), QVariant(QStringLiteral("Spring Nationals")));
    EXPECT_EQ(grid.data(grid.index(0, 1), Qt::TextAlignmentRole).toInt(),
              int(Qt::AlignLeft | Qt::AlignVCenter));
    EXPECT_EQ(grid.data(grid.index(0, 2), Qt::TextAlignmentRole).toInt(),
              int(Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_EQ(grid.data(grid.index(1, 3), Qt::TextAlignmentRole).toInt(),
              int(Qt::AlignHCenter | Qt::AlignVCenter));
    EXPECT_EQ(grid.headerData(0, Qt::Horizontal), QVariant(QStringLiteral("Key")));
    EXPECT_EQ(grid.headerData(2, Qt::Horizontal, Qt::TextAlignmentRole).toInt(),
              int(Qt::AlignRight | Qt::AlignVCenter));

    EXPECT_TRUE(grid.GridColumnExists(u"SEVENT_NM"));
    EXPECT_EQ(grid.ColumnIndex(u"dteventstart_dt"), 3);
    EXPECT_FALSE(grid.GridColumnExists(u"sEvent"));

    grid.SetRowText(0, u"7\tSpring Nationals 2004");
    EXPECT_EQ(grid.Cell(0, 1), "Spring Nationals 2004");

    grid.RemoveAll();
    EXPECT_EQ(grid.rowCount(), 0);
    EXPECT_EQ(grid.columnCount(), 4);
    grid.Clear();
    EXPECT_EQ(grid.columnCount(), 0);
}

TEST(TextGridModel, SetsHeadersFromOneText) {
    TextGridModel grid;
    for (const char* name : {"a", "b", "c"}) {
        grid.AddColumn(Col(name));
    }
    auto captions = [&grid] {
        return QStringList{grid.Column(0).caption, grid.Column(1).caption, grid.Column(2).caption};
    };
    grid.GridHeadersSet(u"Key;Name;Date", u';');
    EXPECT_EQ(captions(), (QStringList{"Key", "Name", "Date"}));
    // A blank last piece is no caption; an empty one between separators is.
    grid.GridHeadersSet(u"One;;  ", u';');
    EXPECT_EQ(captions(), (QStringList{"One", "", "Date"}));
    grid.GridHeadersSet(u"A;B;C;D;E", u';');
    EXPECT_EQ(captions(), (QStringList{"A", "B", "C"}));
}

TEST(TextGridModel, FindsRowsAndTheRowAfterARemoval) {
    TextGridModel grid;
    Fill(grid, gridtype::Text, {"x", "y", "z"});
    grid.SetRowText(2, u"10\tz");
    EXPECT_EQ(grid.GridFindRow(u"1"), 1);
    EXPECT_EQ(grid.GridFindRow(u"10"), 2);  // the whole first cell, not a prefix
    EXPECT_EQ(grid.GridFindRow(u"y"), -1);  // only the first column counts

    grid.RemoveRow(1);
    EXPECT_EQ(grid.GridNextRow(1), 1);
    grid.RemoveRow(1);
    EXPECT_EQ(grid.GridNextRow(1), 0);  // the last row
    grid.RemoveRow(0);
    EXPECT_EQ(grid.GridNextRow(0), -1);
}

TEST(TextGridModel, SortsNumbersWithBlankCellsFirstAndStably) {
    TextGridModel grid;
    Fill(grid, gridtype::Number, {"10", "", "1,200.5", "-3", "abc", "0", " ", "10", "2"});
    grid.GridSort(1);
    // "abc" counts as 0 and keeps its place before the "0" added after it.
    EXPECT_EQ(Column(grid, 1),
              (QStringList{"", " ", "-3", "abc", "0", "2", "10", "10", "1,200.5"}));
    EXPECT_EQ(Column(grid, 0), (QStringList{"1", "6", "3", "4", "5", "8", "0", "7", "2"}));
    // Sorting again changes nothing: every sort is ascending.
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 0), (QStringList{"1", "6", "3", "4", "5", "8", "0", "7", "2"}));

    // The other number codes sort the same way.
    for (int code : {2, 3, 4, 6, 17}) {
        Fill(grid, code, {"3", "1", "2"});
        grid.GridSort(1);
        EXPECT_EQ(Column(grid, 1), (QStringList{"1", "2", "3"})) << code;
    }
}

TEST(TextGridModel, SortsDatesTextsAndLeavesOtherTypes) {
    TextGridModel grid;
    Fill(grid, gridtype::Date,
         {"07/04/2003", "12/31/2002", "", "10:30 PM", "07/04/2003", "01:15 AM", "01/01/2003"});
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 1), (QStringList{"", "01:15 AM", "10:30 PM", "12/31/2002", "01/01/2003",
                                            "07/04/2003", "07/04/2003"}));
    EXPECT_EQ(grid.Cell(5, 0), "0");
    EXPECT_EQ(grid.Cell(6, 0), "4");

    // Text by binary comparison: capitals before small letters.
    Fill(grid, gridtype::Text, {"beta", "Beta", "alpha", "", "Alpha", "beta"});
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 1), (QStringList{"", "Alpha", "Beta", "alpha", "beta", "beta"}));
    EXPECT_EQ(Column(grid, 0), (QStringList{"3", "4", "1", "2", "0", "5"}));

    Fill(grid, gridtype::Boolean, {"True", "False", "True"});
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 1), (QStringList{"False", "True", "True"}));

    Fill(grid, 10, {"b", "a"});
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 1), (QStringList{"b", "a"}));
    grid.GridSort(7);  // no such column
    EXPECT_EQ(Column(grid, 1), (QStringList{"b", "a"}));
}

TEST(TextGridModel, SortMatchesTheBubbleSortOnRandomRows) {
    std::mt19937 random(20030704);
    const QStringList numbers{"", "1", "-1", "2.5", "1,000", "x", "0", "10"};
    const QStringList dates{
        "", "07/04/2003", "07/04/2003 10:00 AM", "09:00 AM", "01/01/1999", "12/31/2002", "bad"};
    const QStringList texts{"", "a", "A", "ab", "b", "B", "a "};
    std::vector<QStringList> rows;
    for (int i = 0; i < 300; ++i) {
        rows.push_back({QString::number(i), numbers[random() % numbers.size()],
                        dates[random() % dates.size()], texts[random() % texts.size()]});
    }
    auto blank = [](const QString& s) { return s.trimmed().isEmpty(); };
    auto numberLess = [&](const QString& a, const QString& b) {
        if (blank(a) || blank(b)) {
            return blank(a) && !blank(b);
        }
        return slipbook::GridNumberKey(a) < slipbook::GridNumberKey(b);
    };
    auto dateLess = [](const QString& a, const QString& b) {
        const auto ka = slipbook::GridDateKey(a);
        const auto kb = slipbook::GridDateKey(b);
        return kb && (!ka || *ka < *kb);
    };
    auto textLess = [](const QString& a, const QString& b) { return a < b; };

    TextGridModel grid;
    grid.AddColumn(Col("key", gridtype::Number));
    grid.AddColumn(Col("n", gridtype::Number));
    grid.AddColumn(Col("d", gridtype::Date));
    grid.AddColumn(Col("t", gridtype::Text));
    for (int column = 1; column <= 3; ++column) {
        grid.SetRows(rows);
        std::vector<QStringList> expected = rows;
        if (column == 1) {
            BubbleSort(expected, column, numberLess);
        } else if (column == 2) {
            BubbleSort(expected, column, dateLess);
        } else {
            BubbleSort(expected, column, textLess);
        }
        grid.GridSort(column);
        for (int row = 0; row < grid.RowCount(); ++row) {
            ASSERT_EQ(grid.Cell(row, 0), expected[row][0]) << "column " << column << " row " << row;
        }
    }
}

TEST(TextGridModel, SortKeepsSelectionsAndLoadsWithOneReset) {
    TextGridModel grid;
    int resets = 0;
    int inserts = 0;
    QObject::connect(&grid, &TextGridModel::modelReset, [&resets] { ++resets; });
    QObject::connect(&grid, &TextGridModel::rowsInserted, [&inserts] { ++inserts; });
    Fill(grid, gridtype::Number, {"3", "1", "2"});
    EXPECT_EQ(inserts, 0);
    const int resetsAfterLoad = resets;

    const QPersistentModelIndex selected(grid.index(0, 1));  // the "3"
    grid.GridSort(1);
    EXPECT_EQ(resets, resetsAfterLoad);  // a sort is a layout change, not a reset
    ASSERT_TRUE(selected.isValid());
    EXPECT_EQ(selected.row(), 2);
    EXPECT_EQ(selected.data(), QVariant(QStringLiteral("3")));

    grid.AddRow(u"3\t0");
    EXPECT_EQ(inserts, 1);
}

TEST(TextGridModel, EveryChangeKeepsTheItemModelContract) {
    TextGridModel grid;
    slipbook::test::ModelCheck check(&grid);

    // Columns one by one, then rows of each kind, on an empty grid and on a filled one.
    GridColumn key = Col("lRun_id", gridtype::Number);
    key.visible = false;
    grid.AddColumn(key);
    grid.AddColumn(Col("dtRun_dt", gridtype::Date));
    grid.AddColumn(Col("i14Mile_et", gridtype::Number, 1));
    grid.AddRow(u"1\t07/04/2003\t10.5");
    grid.AddRow(QStringList{"2", "07/05/2003", "9.25"});
    grid.AddRow(u"3");  // missing cells read as empty
    EXPECT_EQ(grid.Cell(2, 2), QString());
    grid.SetRowText(0, u"1\t07/04/2003\t10.25");
    grid.GridHeadersSet(u"Key;Date;1/4 ET", u';');
    EXPECT_EQ(grid.headerData(2, Qt::Horizontal).toString(), QStringLiteral("1/4 ET"));

    // A sort moves the rows under their persistent indexes.
    const QPersistentModelIndex run2(grid.index(1, 2));
    grid.GridSort(2);
    EXPECT_EQ(Column(grid, 0), (QStringList{"3", "2", "1"}));
    EXPECT_EQ(run2.row(), 1);
    grid.GridSort(1);
    EXPECT_EQ(Column(grid, 0), (QStringList{"3", "1", "2"}));

    grid.RemoveRow(1);
    grid.RemoveRow(grid.RowCount() - 1);
    grid.RemoveRow(0);
    EXPECT_EQ(grid.RowCount(), 0);
    grid.SetRows(std::vector<QString>{QStringLiteral("4\t\t8"), QStringLiteral("5\t07/06/2003\t")});
    grid.SetRows(std::vector<QStringList>{{"6", "07/07/2003", "11"}});
    EXPECT_EQ(grid.RowCount(), 1);
    grid.RemoveAll();
    EXPECT_EQ(grid.columnCount(), 3);
    grid.AddRow(u"7\t\t");
    grid.Clear();
    EXPECT_EQ(grid.columnCount(), 0);
    EXPECT_EQ(grid.rowCount(), 0);
    // A new layout over rows left from the last.
    grid.AddColumn(Col("key"));
    grid.AddRow(u"8");
    grid.SetColumns({Col("key"), Col("value")});
    EXPECT_EQ(grid.Cell(0, 1), QString());
}

TEST(TextGridModel, SortsAHundredThousandRows) {
    // 100,000 rows of 40 cells, sorted by a number, a date and a text column in turn.
    std::mt19937 random(42);
    std::vector<QString> rows;
    rows.reserve(100000);
    for (int i = 0; i < 100000; ++i) {
        QStringList cells{QString::number(i)};
        cells << QString::number(random() % 5000 / 1000.0, 'f', 3);
        cells << QString::asprintf("%02d/%02d/%04d", int(random() % 12 + 1), int(random() % 28 + 1),
                                   int(1995 + random() % 20));
        cells << QStringLiteral("Name %1").arg(random() % 1000);
        while (cells.size() < 40) {
            cells << QString::number(random() % 100000 / 100.0, 'f', 2);
        }
        rows.push_back(cells.join(u'\t'));
    }
    TextGridModel grid;
    grid.AddColumn(Col("key", gridtype::Number));
    grid.AddColumn(Col("et", gridtype::Number));
    grid.AddColumn(Col("date", gridtype::Date));
    grid.AddColumn(Col("name", gridtype::Text));
    grid.SetRows(std::move(rows));
    ASSERT_EQ(grid.RowCount(), 100000);

    grid.GridSort(1);
    for (int row = 1; row < grid.RowCount(); ++row) {
        const double a = grid.Cell(row - 1, 1).toDouble();
        const double b = grid.Cell(row, 1).toDouble();
        ASSERT_LE(a, b) << row;
        if (a == b) {
            ASSERT_LT(grid.Cell(row - 1, 0).toInt(), grid.Cell(row, 0).toInt()) << row;
        }
    }
    grid.GridSort(2);
    for (int row = 1; row < grid.RowCount(); ++row) {
        ASSERT_LE(*slipbook::GridDateKey(grid.CellView(row - 1, 2)),
                  *slipbook::GridDateKey(grid.CellView(row, 2)))
            << row;
    }
    grid.GridSort(3);
    for (int row = 1; row < grid.RowCount(); ++row) {
        ASSERT_LE(grid.CellView(row - 1, 3).compare(grid.CellView(row, 3)), 0) << row;
    }
}

// Finds go through an index of the keys once the rows have been searched; whatever happens to
// the rows, a find gives the first row whose key is the value, as a scan of the rows would.
TEST(TextGridModel, FindsTheFirstRowOfAKeyWhateverHappensToTheRows) {
    TextGridModel grid;
    Fill(grid, gridtype::Number, {"5", "3", "9"});
    std::mt19937 rng(7);
    const auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    const auto key = [&] { return QString::number(pick(12)); };
    for (int step = 0; step < 2000; ++step) {
        switch (pick(6)) {
            case 0:
            case 1:
                grid.AddRow(QStringList{key(), QString::number(pick(100))});
                break;
            case 2:
                if (grid.RowCount() > 0) {
                    const int row = pick(grid.RowCount());
                    // Mostly the same key with new cells, as a saved run's row comes back.
                    const QString k = pick(3) == 0 ? key() : grid.Cell(row, 0);
                    grid.SetRowText(row, k + u'\t' + QString::number(pick(100)));
                }
                break;
            case 3:
                if (grid.RowCount() > 3) {
                    grid.RemoveRow(pick(grid.RowCount()));
                }
                break;
            case 4:
                if (pick(10) == 0) {
                    grid.GridSort(1);
                }
                break;
            default:
                break;
        }
        const QString wanted = key();
        int first = -1;
        for (int row = 0; row < grid.RowCount() && first < 0; ++row) {
            if (grid.Cell(row, 0) == wanted) {
                first = row;
            }
        }
        ASSERT_EQ(grid.GridFindRow(wanted), first) << "step " << step;
    }
}
