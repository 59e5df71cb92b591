#pragma once

// The run filter: a form of conditions over the columns the run list shows, turned into the
// statement the list is then read with and the text the racer reads on the filter tool.

#include "common/messages.h"
#include "store/database.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace slipbook::views {

inline constexpr QStringView kBetween = u"Between";
// Value 2 of a row whose operator is not Between.
inline constexpr QStringView kNotApplicable = u"N/A";

// "Between", "=", ">", "<", ">=", "<=": the operators a row offers, in the drop-down's order.
const QStringList& FilterOperators();
// What the window's help says, and what it says while the operator drop-down is open.
const QStringList& FilterHelpLines();
const QStringList& FilterOperatorLines();

struct FilterRow {
    QString fieldName;  // the column of tblRuns
    QString dataType;   // "Text", "Number", "Date", "Time", "Boolean"
    QString caption;    // the column's caption in the run list
    QString op = kBetween.toString();
    QString value1;
    QString value2;  // kNotApplicable unless the operator is Between
    bool include = false;
};

// The rows of the form with the rules by which they change: any change but of Include ticks
// Include; an operator other than Between shows "N/A" as value 2, and Between gives the row's
// value 2 back.
class FilterForm {
public:
    void Clear();
    // A row over a column of the list, Between its cells in the list's first and last rows.
    void AddColumn(const QString& fieldName, const QString& dataType, const QString& caption,
                   const QString& firstCell, const QString& lastCell);

    int size() const { return static_cast<int>(rows_.size()); }
    const FilterRow& row(int index) const { return rows_.at(index); }
    const QList<FilterRow>& rows() const { return rows_; }

    // Each returns whether the row changed. An operator that is none of FilterOperators(), and a
    // value 2 while the operator is not Between, are refused.
    bool SetOperator(int index, const QString& op);
    bool SetValue1(int index, const QString& text);
    bool SetValue2(int index, const QString& text);
    bool SetInclude(int index, bool include);

    static bool Value2Open(const FilterRow& row) { return row.op == kBetween; }

private:
    QList<FilterRow> rows_;
    QStringList kept2_;  // each row's own value 2, for when Between comes back
};

// Where the list is read: the car's runs, of one event when `eventId` is not 0. `today` fills the
// year of a date typed without one.
struct FilterScope {
    qint64 carId = 0;
    qint64 eventId = 0;
    QDate today = QDate::currentDate();
};

// A row whose value can't make a condition: its index, which value (1 or 2) and why.
struct FilterFault {
    int row = -1;
    int value = 1;
    QString message;
};

struct RunFilterStatement {
    int conditions = 0;
    QString sql;   // "SELECT * from tblRuns WHERE ...", empty without a condition
    QString text;  // the conditions as the racer reads them
    std::optional<FilterFault> fault;
};

// The statement of the included rows, in order, each condition after the first preceded by
// " AND ", then the car and, when given, the event.
//
// Text goes between apostrophes, doubled inside, so no value breaks the statement or changes its
// meaning; the readable text shows it as typed. Numbers are read whole (a number column kept as
// text is compared by its number, not its spelling). Dates and times are read as typed dates are
// read everywhere and written as the store's literal. A Yes/No row is kept only when its value
// stands within "YesNoTrueFalse" (without case), and is written as True or False: a value inside
// "Yes" or "True" alone is yes, one inside "No" or "False" alone is no, and one that could be
// either ("e", "s") or runs across two words ("sN", "eF") is a fault. A text row over a looked-up
// column compares the key of the name typed; a name with no key drops the condition. An empty
// value, anything else that can't be read, and a look-up that fails are faults: the first one ends
// the build.
RunFilterStatement BuildRunFilter(store::Database& db, const QList<FilterRow>& rows,
                                  const FilterScope& scope, Messages& messages);

// True when the statement gives at least one run. Throws store::DbError when it can't be run.
bool FilterHasRuns(store::Database& db, const QString& sql);

}  // namespace slipbook::views
