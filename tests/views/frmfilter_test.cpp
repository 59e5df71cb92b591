// The filter window driven as a racer drives it: rows from the main list, values typed into the
// grid, operators picked from the drop-down, Include ticked, Apply, Reset and Close, and what the
// main window is told.

#include "views/ui/frmFilter.h"

#include "common/tools.h"
#include "support/gui.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTest>

#include <memory>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using namespace slipbook::test;
using views::frmFilter;

namespace {

// The rows of the fake list, as the grid shows them: Date, Run #, Event, Full Run, 1/4 et, Lane.
enum Row { DateRow, RunNumRow, EventRow, FullRunRow, EtRow, LaneRow };

struct FilterWindow : WindowTest {
    FilterWindow() {
        main.state.view = tools::kRuns;
        main.state.car = {1, QStringLiteral("My Race Car")};
        main.columns = {{"dtRun_dt", "Date", "Date"},       {"lRun_num", "Number", "Run #"},
                        {"lEvent_id", "Text", "Event"},     {"bFullRun_fl", "Boolean", "Full Run"},
                        {"i14Mile_et", "Number", "1/4 et"}, {"sLane_nm", "Text", "Lane"}};
        main.rows = {{"11", "07/04/2003", "1", "Test and Tune Day", "True", "10.512", "Left"},
                     {"12", "07/05/2003", "2", "Test and Tune Day", "False", "9.876", "Right"}};
        auto& db = logbook.db();
        db.Execute(QStringLiteral(
            "INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, bFullRun_fl, "
            "i14Mile_et, sLane_nm) VALUES (11, 1, 1, 1, #07/04/2003#, True, 10.512, 'Left')"));
        db.Execute(QStringLiteral(
            "INSERT INTO tblRuns (lRun_id, lCar_id, lEvent_id, lRun_num, dtRun_dt, bFullRun_fl, "
            "i14Mile_et, sLane_nm) VALUES (12, 1, 1, 2, #07/05/2003#, False, 9.876, 'Right')"));
    }

    std::unique_ptr<frmFilter> Open() {
        auto w = std::make_unique<frmFilter>(Context());
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        ShowActive(*w);
        grid = Child<QTableView>(*w, "ssdbgFilter");
        return w;
    }

    QString Cell(int row, int column) const {
        return grid->model()->index(row, column).data().toString();
    }
    bool Included(int row) const {
        return grid->model()->index(row, frmFilter::IncludeNew).data(Qt::CheckStateRole).toInt() ==
               Qt::Checked;
    }
    QRect CellRect(int row, int column) const {
        return grid->visualRect(grid->model()->index(row, column));
    }
    void Click(int row, int column) {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, CellRect(row, column).center());
    }
    // Clicks into the cell; its editor, opened by the click or by F2.
    QWidget* Enter(int row, int column) {
        Click(row, column);
        const QModelIndex index = grid->model()->index(row, column);
        if (grid->indexWidget(index) == nullptr) {
            QTest::keyClick(grid, Qt::Key_F2);
        }
        return grid->indexWidget(index);
    }
    void TypeCell(int row, int column, const QString& text) {
        auto* box = qobject_cast<QLineEdit*>(Enter(row, column));
        ASSERT_NE(box, nullptr) << "no box opened in row " << row << ", column " << column;
        Type(box, text);
        QTest::keyClick(box, Qt::Key_Return);
        // The grid takes the text once the key is handled.
        QCoreApplication::processEvents();
    }
    QComboBox* OperatorList(int row) const {
        return qobject_cast<QComboBox*>(
            grid->indexWidget(grid->model()->index(row, frmFilter::Operator)));
    }
    void PickOperator(int row, const QString& op) {
        auto* combo = OperatorList(row);
        ASSERT_NE(combo, nullptr) << "no operator list in row " << row;
        Pick(combo, op);
    }
    static void Press(frmFilter& w, const char* button) {
        QTest::mouseClick(Child<QPushButton>(w, button), Qt::LeftButton);
    }
    static QString Lines(const QStringList& lines) { return lines.join(u'\n'); }

    QTableView* grid = nullptr;
};

TEST_F(FilterWindow, OffersEachColumnOfTheListBetweenItsFirstAndLastRow) {
    auto w = Open();
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Filter Run Data"));
    EXPECT_NE(Child<QSplitter>(*w, "splFilter"), nullptr);
    EXPECT_EQ(Child<QPushButton>(*w, "sscmdApply")->text(), QStringLiteral("&Apply"));
    EXPECT_EQ(Child<QPushButton>(*w, "sscmdReset")->text(), QStringLiteral("&Reset"));
    EXPECT_EQ(Child<QPushButton>(*w, "sscmdClose")->text(), QStringLiteral("&Close"));
    EXPECT_EQ(Child<QLabel>(*w, "lbMessage")->text(),
              QStringLiteral("Click in appropriate column to:\n- Choose an operator\n- Change "
                             "comparison value\n- Click include checkbox\nClick Apply to activate "
                             "filter."));

    const QStringList captions = {"FieldName", "DataType", "Field",
                                  "Operator",  "Value 1",  "and Value 2 (between)",
                                  "Include"};
    for (int c = 0; c < captions.size(); ++c) {
        EXPECT_EQ(grid->model()->headerData(c, Qt::Horizontal).toString(), captions[c]);
        EXPECT_EQ(grid->isColumnHidden(c), c < frmFilter::Field) << c;
    }
    ASSERT_EQ(grid->model()->rowCount(), 6);
    const QStringList expected[] = {
        {"dtRun_dt", "Date", "Date", "Between", "07/04/2003", "07/05/2003"},
        {"lRun_num", "Number", "Run #", "Between", "1", "2"},
        {"lEvent_id", "Text", "Event", "Between", "Test and Tune Day", "Test and Tune Day"},
        {"bFullRun_fl", "Boolean", "Full Run", "Between", "True", "False"},
        {"i14Mile_et", "Number", "1/4 et", "Between", "10.512", "9.876"},
        {"sLane_nm", "Text", "Lane", "Between", "Left", "Right"}};
    for (int r = 0; r < 6; ++r) {
        for (int c = 0; c < expected[r].size(); ++c) {
            EXPECT_EQ(Cell(r, c), expected[r][c]) << r << ", " << c;
        }
        EXPECT_FALSE(Included(r));
    }
    w->resize(680, 420);
    Grab(*w, QStringLiteral("frmFilter"));

    // An empty list offers its columns with empty values.
    main.rows.clear();
    auto empty = Open();
    ASSERT_EQ(grid->model()->rowCount(), 6);
    EXPECT_EQ(Cell(EtRow, frmFilter::Value), QString());
    EXPECT_EQ(Cell(EtRow, frmFilter::Value2), QString());
    EXPECT_TRUE(main.calls.isEmpty());
}

TEST_F(FilterWindow, TypedValuesAndPickedOperatorsFilterTheList) {
    main.state.event = {1, QStringLiteral("Test and Tune Day")};
    auto w = Open();
    TypeCell(EtRow, frmFilter::Value, QStringLiteral("10"));
    // A change ticks Include.
    EXPECT_TRUE(Included(EtRow));
    PickOperator(EtRow, QStringLiteral(">"));
    EXPECT_EQ(Cell(EtRow, frmFilter::Operator), QStringLiteral(">"));
    EXPECT_EQ(Cell(EtRow, frmFilter::Value2), QStringLiteral("N/A"));
    PickOperator(FullRunRow, QStringLiteral("="));
    TypeCell(FullRunRow, frmFilter::Value, QStringLiteral("y"));
    EXPECT_TRUE(Included(FullRunRow));
    EXPECT_FALSE(Included(LaneRow));

    Press(*w, "sscmdApply");
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(main.state.filter.active);
    EXPECT_EQ(main.state.filter.sql,
              QStringLiteral("SELECT * from tblRuns WHERE bFullRun_fl = True AND i14Mile_et > 10 "
                             "AND lCar_id = 1 AND lEvent_id = 1"));
    EXPECT_EQ(main.state.filter.text, QStringLiteral("Full Run = y AND 1/4 et > 10"));
    // The window closes, the tool follows, then the list.
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(main.calls, QStringList({"FilterToolFollow", "FilterApply"}));
}

TEST_F(FilterWindow, DefaultRangeTickedAloneMatchesEveryRunListed) {
    auto w = Open();
    Click(DateRow, frmFilter::IncludeNew);
    EXPECT_TRUE(Included(DateRow));
    Press(*w, "sscmdApply");
    EXPECT_EQ(main.state.filter.sql,
              QStringLiteral("SELECT * from tblRuns WHERE dtRun_dt >= #07/04/2003# AND dtRun_dt "
                             "<= #07/05/2003# AND lCar_id = 1"));
    EXPECT_EQ(main.state.filter.text, QStringLiteral("Date Between 07/04/2003 AND 07/05/2003"));
    store::Query q = logbook.db().OpenQuery(main.state.filter.sql);
    int runs = 0;
    while (q.Next()) {
        ++runs;
    }
    EXPECT_EQ(runs, 2);
}

TEST_F(FilterWindow, NoRunsMeansABoxAndTheWindowStays) {
    auto w = Open();
    PickOperator(LaneRow, QStringLiteral("="));
    TypeCell(LaneRow, frmFilter::Value, QStringLiteral("O'Brien's \"Lane\""));
    Press(*w, "sscmdApply");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, QStringLiteral("No records for selected filter"));
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(main.state.filter.active);
    EXPECT_TRUE(main.calls.isEmpty());
    EXPECT_EQ(Cell(LaneRow, frmFilter::Value), QStringLiteral("O'Brien's \"Lane\""));
}

TEST_F(FilterWindow, AValueThatCantBeReadIsNamedAndItsCellTakesTheFocus) {
    auto w = Open();
    TypeCell(RunNumRow, frmFilter::Value, QStringLiteral("1"));
    TypeCell(EtRow, frmFilter::Value2, QStringLiteral("ten"));
    Press(*w, "sscmdApply");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(messages.last().icon, MsgIcon::Exclamation);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Value 2 of \"1/4 et\" is not a number: \"ten\"."));
    EXPECT_EQ(grid->currentIndex(), grid->model()->index(EtRow, frmFilter::Value2));
    EXPECT_TRUE(grid->isAncestorOf(QApplication::focusWidget()) ||
                QApplication::focusWidget() == grid);
    EXPECT_TRUE(w->isVisible());
    EXPECT_FALSE(main.state.filter.active);
    EXPECT_TRUE(main.calls.isEmpty());

    // Put right, the next fault is the date's.
    TypeCell(EtRow, frmFilter::Value2, QStringLiteral("11"));
    TypeCell(DateRow, frmFilter::Value, QStringLiteral("13/45/2003"));
    Press(*w, "sscmdApply");
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Value 1 of \"Date\" is not a date: \"13/45/2003\". Type it as "
                             "MM/DD/YYYY."));
    EXPECT_EQ(grid->currentIndex(), grid->model()->index(DateRow, frmFilter::Value));

    // An emptied value too.
    TypeCell(DateRow, frmFilter::Value, QString());
    Press(*w, "sscmdApply");
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Value 1 of \"Date\" is empty. Type a value, or clear Include."));
    EXPECT_EQ(messages.shown.size(), 3u);
    EXPECT_FALSE(main.state.filter.active);
}

TEST_F(FilterWindow, NothingIncludedTakesTheFilterOff) {
    main.state.filter = {
        true, QStringLiteral("Run # > 5"),
        QStringLiteral("SELECT * from tblRuns WHERE lRun_num > 5 AND lCar_id = 1")};
    auto w = Open();
    Click(RunNumRow, frmFilter::IncludeNew);
    Click(RunNumRow, frmFilter::IncludeNew);
    EXPECT_FALSE(Included(RunNumRow));
    // A Yes/No row whose value says neither drops out as well.
    PickOperator(FullRunRow, QStringLiteral("="));
    TypeCell(FullRunRow, frmFilter::Value, QStringLiteral("maybe"));
    Press(*w, "sscmdApply");
    EXPECT_FALSE(main.state.filter.active);
    EXPECT_TRUE(main.state.filter.sql.isEmpty());
    EXPECT_TRUE(main.state.filter.text.isEmpty());
    // The list drops the old filter; the window stays.
    EXPECT_EQ(main.calls, QStringList({"FilterApply"}));
    EXPECT_TRUE(w->isVisible());
    EXPECT_TRUE(messages.shown.empty());

    Press(*w, "sscmdApply");
    EXPECT_EQ(main.calls, QStringList({"FilterApply", "FilterToolFollow"}));
}

TEST_F(FilterWindow, AStatementTheLogbookRefusesLeavesNoFilter) {
    main.state.filter = {
        true, QStringLiteral("Run # > 5"),
        QStringLiteral("SELECT * from tblRuns WHERE lRun_num > 5 AND lCar_id = 1")};
    main.columns.append({"sGone_val", "Text", "Gone"});
    auto w = Open();
    PickOperator(6, QStringLiteral("="));
    TypeCell(6, frmFilter::Value, QStringLiteral("x"));
    Press(*w, "sscmdApply");
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().title, QStringLiteral("Filter Run Data"));
    EXPECT_TRUE(messages.last().text.startsWith(QStringLiteral("Error # ")));
    EXPECT_FALSE(main.state.filter.active);
    EXPECT_TRUE(main.state.filter.sql.isEmpty());
    EXPECT_EQ(main.calls, QStringList({"FilterApply"}));
    EXPECT_TRUE(w->isVisible());
}

TEST_F(FilterWindow, OperatorListExplainsItselfAndValue2FollowsBetween) {
    auto w = Open();
    auto* label = Child<QLabel>(*w, "lbMessage");
    auto* combo = OperatorList(EtRow);
    ASSERT_NE(combo, nullptr);
    QStringList items;
    for (int i = 0; i < combo->count(); ++i) {
        items << combo->itemText(i);
    }
    EXPECT_EQ(items, QStringList({"Between", "=", ">", "<", ">=", "<="}));
    QTest::mouseClick(combo, Qt::LeftButton);
    ASSERT_TRUE(combo->view()->isVisible());
    EXPECT_EQ(label->text(),
              Lines({"Between Value 1 and Value 2", "=  Equal To", ">  Greater Than",
                     "<  Less Than", ">= Greater Than or Equal To", "<= Less Than or Equal To"}));
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    EXPECT_EQ(label->text(), Lines(views::FilterHelpLines()));
    // The window system hands the activation back from the closed list; offscreen does not, and
    // the grid takes the focus back once it has it.
    w->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == grid; }));
    EXPECT_FALSE(Included(EtRow));

    TypeCell(EtRow, frmFilter::Value2, QStringLiteral("11.5"));
    PickOperator(EtRow, QStringLiteral("<="));
    EXPECT_EQ(Cell(EtRow, frmFilter::Value2), QStringLiteral("N/A"));
    EXPECT_EQ(label->text(), Lines(views::FilterHelpLines()));
    Grab(*w, QStringLiteral("frmFilter-edited"));
    // "N/A" takes no typing.
    Click(EtRow, frmFilter::Value2);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {},
                       CellRect(EtRow, frmFilter::Value2).center());
    EXPECT_EQ(grid->indexWidget(grid->model()->index(EtRow, frmFilter::Value2)), nullptr);
    PickOperator(EtRow, QStringLiteral("Between"));
    EXPECT_EQ(Cell(EtRow, frmFilter::Value2), QStringLiteral("11.5"));
}

TEST_F(FilterWindow, IncludeTicksByClickOrSpaceResetStartsAgainCloseLeavesTheFilter) {
    main.state.filter = {
        true, QStringLiteral("Run # > 5"),
        QStringLiteral("SELECT * from tblRuns WHERE lRun_num > 5 AND lCar_id = 1")};
    auto w = Open();
    Click(LaneRow, frmFilter::IncludeNew);
    EXPECT_TRUE(Included(LaneRow));
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_FALSE(Included(LaneRow));
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_TRUE(Included(LaneRow));
    TypeCell(RunNumRow, frmFilter::Value, QStringLiteral("7"));

    Press(*w, "sscmdReset");
    EXPECT_FALSE(Included(LaneRow));
    EXPECT_FALSE(Included(RunNumRow));
    EXPECT_EQ(Cell(RunNumRow, frmFilter::Value), QStringLiteral("1"));
    EXPECT_EQ(QApplication::focusWidget(), grid);
    EXPECT_TRUE(main.calls.isEmpty());

    Press(*w, "sscmdClose");
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(main.calls, QStringList({"FilterToolFollow"}));
    EXPECT_TRUE(main.state.filter.active);
    EXPECT_EQ(main.state.filter.text, QStringLiteral("Run # > 5"));
    EXPECT_TRUE(messages.shown.empty());
}

}  // namespace
