#pragma once

// What racing costs: the expense list's statement and lines, its total, and the amounts as the
// racer types them. Money is counted in the store's exact units, never in binary fractions.

#include "store/currency.h"
#include "store/database.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <vector>

namespace slipbook::garage {

// The row set the window edits.
QString ExpenseRecordsetSql();

struct ExpenseFilter {
    std::optional<QDate> from;
    std::optional<QDate> to;
    qint64 categoryId = 0;  // 0: all
    qint64 carId = 0;
    qint64 eventId = 0;
};

// The list's statement: every expense with its car (an expense without one stays), the active
// filters in the order dates, category, car, event, oldest first.
QString ExpenseListSql(const ExpenseFilter& filter);
// The same join for the one expense, to rebuild its line as a load would.
QString ExpenseLineSql(qint64 id);

// An exact sum of amounts of any size and number: the store's ten-thousandths, carried past
// 64 bits.
class MoneyTotal {
public:
    void Add(store::Currency amount);
    void Subtract(store::Currency amount);
    // In "###,###,##0.00".
    QString Text() const;

private:
    void Normalize();
    qint64 high_ = 0;  // in units of kBase ten-thousandths
    qint64 low_ = 0;   // |low_| < kBase, with the sign of high_
};

// An amount in "###,###,##0.00", rounded half away from zero on its exact value.
QString MoneyText(store::Currency amount);

// A typed amount as the logbook keeps it: grouping commas, a "$" and blanks around are allowed.
// Empty when the text is no number, or one the logbook can't keep to the ten-thousandth (from
// about ten thousand billion, far below the currency's own range).
std::optional<store::Currency> AmountValue(const QString& text);

// Why a typed amount can't be saved ("Expense Amount Must Be a Number", "... Is Too Large a
// Number"); empty when it can or when the box is empty.
std::optional<QString> AmountProblem(const QString& text);

// Columns of the list: the hidden id, date, amount, category, car, event, description.
namespace expcol {
constexpr int Id = 0;
constexpr int Date = 1;
constexpr int Amount = 2;
constexpr int Category = 3;
constexpr int Car = 4;
constexpr int Event = 5;
constexpr int Notes = 6;
constexpr int Count = 7;
}  // namespace expcol

struct ExpenseLine {
    qint64 id = 0;  // 0: the summary line, "TOTAL" in the date column
    QVariant date;
    QString amount;  // as shown
    QString category;
    QString car;
    QString event;
    QString notes;
};

QStringList ExpenseCells(const ExpenseLine& line);

// The caption over the list, with the total of its amounts.
QString ExpenseGridCaption(const MoneyTotal& total);

// The names of categories and events, read once for a whole list. An event that is gone shows
// as "(Event was deleted)": expenses may outlive their event.
class ExpenseNames {
public:
    explicit ExpenseNames(store::Database& db);
    QString Category(qint64 id) const;
    QString Event(qint64 id) const;

private:
    QHash<qint64, QString> categories_;
    QHash<qint64, QString> events_;
};

// The lines of a statement of ExpenseListSql's shape, their total, and each amount by id.
struct ExpenseList {
    std::vector<QString> rows;  // tab-joined
    MoneyTotal total;
    QHash<qint64, store::Currency> amounts;
};
ExpenseList ReadExpenseList(store::Database& db, const QString& sql, const ExpenseNames& names);

}  // namespace slipbook::garage
