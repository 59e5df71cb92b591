// The expense rules without a window: the list's statement, exact money texts and totals, typed
// amounts, and the lines read from a logbook.

#include "garage/expenses.h"
#include "store/recordset.h"
#include "support/logbook.h"

#include <gtest/gtest.h>

#include <limits>

using namespace slipbook;
using namespace slipbook::garage;
using store::Currency;

namespace {

TEST(ExpenseListSql, TermsInTheirOrderAfterTheOuterJoin) {
    const QString base = QStringLiteral(
        "SELECT * FROM tblExpenses LEFT OUTER JOIN tblCars ON tblCars.lCar_id = "
        "tblExpenses.lCar_id ");
    EXPECT_EQ(ExpenseListSql({}), base + QStringLiteral(" ORDER BY dtExpense_dt"));

    ExpenseFilter all;
    all.from = QDate(2024, 3, 1);
    all.to = QDate(2024, 12, 31);
    all.categoryId = 4;
    all.carId = 2;
    all.eventId = 7;
    EXPECT_EQ(ExpenseListSql(all),
              base + QStringLiteral(" WHERE dtExpense_dt >= #03/01/2024# AND dtExpense_dt <= "
                                    "#12/31/2024# AND lExpenseCategory_id = 4 AND "
                                    "tblExpenses.lCar_id = 2 AND lEvent_id = 7 ORDER BY "
                                    "dtExpense_dt"));

    ExpenseFilter car;
    car.carId = 3;
    EXPECT_EQ(ExpenseListSql(car),
              base + QStringLiteral(" WHERE tblExpenses.lCar_id = 3 ORDER BY dtExpense_dt"));
}

TEST(MoneyTotal, ExactToTheCentWhateverTheCountOrSize) {
    MoneyTotal total;
    EXPECT_EQ(total.Text(), QStringLiteral("0.00"));
    // A double would drift: 0.1 added 100,000 times is 10000.000000018848.
    for (int i = 0; i < 100000; ++i) {
        total.Add(*Currency::fromText(u"0.10"));
    }
    EXPECT_EQ(total.Text(), QStringLiteral("10,000.00"));
    total.Subtract(*Currency::fromText(u"10000.01"));
    EXPECT_EQ(total.Text(), QStringLiteral("-0.01"));

    // Past what 64 bits of ten-thousandths hold, the sum carries on.
    MoneyTotal large;
    const Currency most{std::numeric_limits<qint64>::max()};
    for (int i = 0; i < 3; ++i) {
        large.Add(most);
    }
    EXPECT_EQ(large.Text(), QStringLiteral("2,767,011,611,056,432.74"));  // 3 x 922,...,477.5807
    large.Subtract(most);
    large.Subtract(most);
    large.Subtract(most);
    large.Subtract(Currency{std::numeric_limits<qint64>::min()});
    EXPECT_EQ(large.Text(), QStringLiteral("922,337,203,685,477.58"));
}

TEST(MoneyText, RoundsHalfAwayFromZeroAndGroups) {
    const auto text = [](const char* value) {
        return MoneyText(*Currency::fromText(QString::fromLatin1(value)));
    };
    EXPECT_EQ(text("0"), QStringLiteral("0.00"));
    EXPECT_EQ(text("0.005"), QStringLiteral("0.01"));
    EXPECT_EQ(text("0.0049"), QStringLiteral("0.00"));
    EXPECT_EQ(text("999.995"), QStringLiteral("1,000.00"));
    EXPECT_EQ(text("1234567.5"), QStringLiteral("1,234,567.50"));
    EXPECT_EQ(text("-19.995"), QStringLiteral("-20.00"));
    EXPECT_EQ(text("-0.001"), QStringLiteral("-0.00"));  // the runtime keeps the sign
}

TEST(AmountValue, TypedAmountsExactlyOrNotAtAll) {
    EXPECT_EQ(AmountValue(QStringLiteral("19.99"))->units, 199900);
    EXPECT_EQ(AmountValue(QStringLiteral(" 1,234.56 "))->units, 12345600);  // as shown
    EXPECT_EQ(AmountValue(QStringLiteral("$5"))->units, 50000);
    EXPECT_EQ(AmountValue(QStringLiteral("9876543210.98"))->units, 98765432109800);
    EXPECT_EQ(AmountValue(QStringLiteral("1.5e2"))->units, 1500000);

    EXPECT_FALSE(AmountValue(QStringLiteral("")));
    EXPECT_FALSE(AmountValue(QStringLiteral("12.3.4")));
    EXPECT_EQ(AmountProblem(QStringLiteral("12.3.4")),
              QStringLiteral("Expense Amount Must Be a Number"));
    EXPECT_FALSE(AmountValue(QStringLiteral("922337203685478")));
    // Within the currency, but beyond the cents the logbook keeps.
    EXPECT_FALSE(AmountValue(QStringLiteral("98765432109876.54")));
    EXPECT_EQ(AmountProblem(QStringLiteral("98765432109876.54")),
              QStringLiteral("Expense Amount Is Too Large a Number"));
    EXPECT_EQ(AmountProblem(QStringLiteral("922337203685478")),
              QStringLiteral("Expense Amount Is Too Large a Number"));
    EXPECT_EQ(AmountProblem(QStringLiteral("1e400")),
              QStringLiteral("Expense Amount Is Too Large a Number"));
    EXPECT_FALSE(AmountProblem(QStringLiteral("")));  // empty has its own message
}

TEST(ExpenseCells, TheSummaryLineSaysTotal) {
    ExpenseLine line;
    line.amount = QStringLiteral("12.00");
    EXPECT_EQ(ExpenseCells(line),
              (QStringList{"", "TOTAL", "12.00", QString(), QString(), QString(), QString()}));
}

TEST(ReadExpenseList, NamesFromOneReadAndEveryExpenseKept) {
    test::TempLogbook logbook;
    store::Database& db = logbook.db();
    db.Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm) VALUES (50, 'Spring Opener')"));
    const char* rows[] = {
        "(1, #03/02/2024#, 1, 19.99, 1, 50, 'Race gas')",
        "(2, #03/01/2024#, 4, 0.10, 0, 0, Null)",                // no car, no event
        "(3, #03/03/2024#, 2, 9876543210.98, Null, 77, 'Fee')",  // event gone
    };
    for (const char* values : rows) {
        db.Execute(QStringLiteral("INSERT INTO tblExpenses (lExpense_id, dtExpense_dt, "
                                  "lExpenseCategory_id, cExpense_amt, lCar_id, lEvent_id, "
                                  "sExpenseNotes_tx) VALUES ") +
                   QString::fromLatin1(values));
    }
    const ExpenseList list = ReadExpenseList(db, ExpenseListSql({}), ExpenseNames(db));
    ASSERT_EQ(list.rows.size(), 3u);
    EXPECT_EQ(list.rows[0], QStringLiteral("2\t03/01/2024\t0.10\tTires\t\t\t"));
    EXPECT_EQ(list.rows[1],
              QStringLiteral("1\t03/02/2024\t19.99\tFuel\tMy Race Car\tSpring Opener\tRace gas"));
    EXPECT_EQ(list.rows[2], QStringLiteral("3\t03/03/2024\t9,876,543,210.98\tEntry "
                                           "Fees\t\t(Event was deleted)\tFee"));
    EXPECT_EQ(list.total.Text(), QStringLiteral("9,876,543,231.07"));
    EXPECT_EQ(list.amounts.value(1).units, 199900);
}

}  // namespace
