#include "garage/expenses.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/textgrid.h"

namespace slipbook::garage {

using store::Currency;

namespace {

constexpr qint64 kBase = 1'000'000'000'000'000'000;  // ten-thousandths carried at 10^18

QString DateLiteral(const QDate& date) {
    return u'#' + date.toString(QStringLiteral("MM/dd/yyyy")) + u'#';
}

// Ten-thousandths given as a sign and decimal digits, in "###,###,##0.00", rounded half away
// from zero.
QString FormatUnits(bool negative, QString digits) {
    if (digits.size() < 5) {
        digits = QString(5 - digits.size(), u'0') + digits;
    }
    QString kept = digits.left(digits.size() - 2);  // down to hundredths
    if (digits.at(digits.size() - 2) >= u'5') {
        int i = static_cast<int>(kept.size()) - 1;
        for (; i >= 0 && kept.at(i) == u'9'; --i) {
            kept[i] = u'0';
        }
        if (i < 0) {
            kept.prepend(u'1');
        } else {
            kept[i] = QChar(kept.at(i).unicode() + 1);
        }
    }
    QString whole = kept.left(kept.size() - 2);
    while (whole.size() > 1 && whole.front() == u'0') {
        whole.remove(0, 1);
    }
    for (qsizetype at = whole.size() - 3; at > 0; at -= 3) {
        whole.insert(at, u',');
    }
    const QString text = whole + u'.' + kept.right(2);
    return negative ? u'-' + text : text;
}

QString Magnitude(qint64 value) {
    const quint64 magnitude =
        value < 0 ? 0 - static_cast<quint64>(value) : static_cast<quint64>(value);
    return QString::number(magnitude);
}

}  // namespace

QString ExpenseRecordsetSql() {
    return QStringLiteral("SELECT lExpense_id, dtExpense_dt, lExpenseCategory_id, ") +
           QStringLiteral("cExpense_amt, lCar_id, lEvent_id, sExpenseNotes_tx ") +
           QStringLiteral("FROM tblExpenses ");
}

QString ExpenseListSql(const ExpenseFilter& filter) {
    QString sql = QStringLiteral(
        "SELECT * FROM tblExpenses LEFT OUTER JOIN tblCars ON tblCars.lCar_id = "
        "tblExpenses.lCar_id ");
    QStringList terms;
    if (filter.from) {
        terms << QStringLiteral("dtExpense_dt >= ") + DateLiteral(*filter.from);
    }
    if (filter.to) {
        terms << QStringLiteral("dtExpense_dt <= ") + DateLiteral(*filter.to);
    }
    if (filter.categoryId != 0) {
        terms << QStringLiteral("lExpenseCategory_id = ") + QString::number(filter.categoryId);
    }
    if (filter.carId != 0) {
        terms << QStringLiteral("tblExpenses.lCar_id = ") + QString::number(filter.carId);
    }
    if (filter.eventId != 0) {
        terms << QStringLiteral("lEvent_id = ") + QString::number(filter.eventId);
    }
    if (!terms.isEmpty()) {
        sql += QStringLiteral(" WHERE ") + terms.join(QStringLiteral(" AND "));
    }
    return sql + QStringLiteral(" ORDER BY dtExpense_dt");
}

QString ExpenseLineSql(qint64 id) {
    return QStringLiteral(
               "SELECT * FROM tblExpenses LEFT OUTER JOIN tblCars ON tblCars.lCar_id = "
               "tblExpenses.lCar_id WHERE lExpense_id = ") +
           QString::number(id);
}

void MoneyTotal::Add(store::Currency amount) {
    high_ += amount.units / kBase;
    low_ += amount.units % kBase;
    Normalize();
}

void MoneyTotal::Subtract(store::Currency amount) {
    high_ -= amount.units / kBase;
    low_ -= amount.units % kBase;
    Normalize();
}

void MoneyTotal::Normalize() {
    high_ += low_ / kBase;
    low_ %= kBase;
    if (high_ > 0 && low_ < 0) {
        --high_;
        low_ += kBase;
    } else if (high_ < 0 && low_ > 0) {
        ++high_;
        low_ -= kBase;
    }
}

QString MoneyTotal::Text() const {
    const bool negative = high_ < 0 || low_ < 0;
    if (high_ == 0) {
        return FormatUnits(negative, Magnitude(low_));
    }
    const QString low = Magnitude(low_);
    return FormatUnits(negative, Magnitude(high_) + QString(18 - low.size(), u'0') + low);
}

QString MoneyText(store::Currency amount) {
    MoneyTotal one;
    one.Add(amount);
    return one.Text();
}

namespace {

// The amount exactly as typed, when it is a number within the currency's range.
std::optional<Currency> TypedAmount(const QString& text) {
    const auto number = StrictNumber(text);
    if (!number || NumberEntryProblem(QString(), text, StoredNumber::Currency)) {
        return std::nullopt;
    }
    // The digits as typed, so that no binary fraction comes between the text and the units.
    QString digits = TrimSpaces(text).toString();
    digits.remove(u',');
    digits.remove(u'$');
    if (auto exact = Currency::fromText(digits)) {
        return exact;
    }
    // Exponents, trailing signs and parentheses: read as the number they are.
    return Currency::fromDouble(*number);
}

// The logbook keeps money as a binary fraction of 15 significant digits: a larger amount
// would come back with other cents.
bool KeptExactly(Currency amount) {
    return Currency::fromDouble(amount.toDouble()) == amount;
}

}  // namespace

std::optional<QString> AmountProblem(const QString& text) {
    const QString name = QStringLiteral("Expense Amount");
    if (auto problem = NumberEntryProblem(name, text, StoredNumber::Currency)) {
        return problem;
    }
    const auto amount = TypedAmount(text);
    if (amount && !KeptExactly(*amount)) {
        return name + QStringLiteral(" Is Too Large a Number");
    }
    return std::nullopt;
}

std::optional<Currency> AmountValue(const QString& text) {
    const auto amount = TypedAmount(text);
    if (!amount || !KeptExactly(*amount)) {
        return std::nullopt;
    }
    return amount;
}

QStringList ExpenseCells(const ExpenseLine& line) {
    QString date;
    if (line.id == 0) {
        date = QStringLiteral("TOTAL");
    } else if (const auto value = DateValue(line.date)) {
        date = value->date().toString(QStringLiteral("MM/dd/yyyy"));
    }
    return {line.id == 0 ? QString() : QString::number(line.id),
            date,
            line.amount,
            line.category,
            line.car,
            line.event,
            line.notes};
}

QString ExpenseGridCaption(const MoneyTotal& total) {
    const QString lead =
        QStringLiteral("Expense Detail for selected Date(s), Category(ies), Car(s), and Event(s)");
    return lead + QString(12, u' ') + QStringLiteral("TOTAL = ") + total.Text();
}

ExpenseNames::ExpenseNames(store::Database& db) {
    store::Query categories = db.OpenQuery(
        QStringLiteral("SELECT lExpenseCategory_id, sExpenseCategory_nm FROM tblExpenseCategory"));
    while (categories.Next()) {
        categories_.insert(categories.Value(0).toLongLong(), categories.Value(1).toString());
    }
    store::Query events =
        db.OpenQuery(QStringLiteral("SELECT lEvent_id, sEvent_nm FROM tblEvents"));
    while (events.Next()) {
        events_.insert(events.Value(0).toLongLong(), events.Value(1).toString());
    }
}

QString ExpenseNames::Category(qint64 id) const {
    return id == 0 ? QString() : categories_.value(id);
}

QString ExpenseNames::Event(qint64 id) const {
    if (id == 0) {
        return QString();
    }
    const auto found = events_.constFind(id);
    return found != events_.constEnd() ? *found : QStringLiteral("(Event was deleted)");
}

ExpenseList ReadExpenseList(store::Database& db, const QString& sql, const ExpenseNames& names) {
    ExpenseList list;
    store::Query q = db.OpenQuery(sql);
    const int id = q.FieldIndex(QStringLiteral("lExpense_id"));
    const int date = q.FieldIndex(QStringLiteral("dtExpense_dt"));
    const int category = q.FieldIndex(QStringLiteral("lExpenseCategory_id"));
    const int amount = q.FieldIndex(QStringLiteral("cExpense_amt"));
    const int car = q.FieldIndex(QStringLiteral("sCar_nm"));
    const int event = q.FieldIndex(QStringLiteral("lEvent_id"));
    const int notes = q.FieldIndex(QStringLiteral("sExpenseNotes_tx"));
    while (q.Next()) {
        ExpenseLine line;
        line.id = q.Value(id).toLongLong();
        line.date = q.Value(date);
        const QVariant value = q.Value(amount);
        if (value.metaType() == QMetaType::fromType<store::Currency>()) {
            const auto money = value.value<store::Currency>();
            line.amount = MoneyText(money);
            list.total.Add(money);
            list.amounts.insert(line.id, money);
        } else {
            // Not money at all (an older file's stray text): shown as it stands, counted as 0.
            line.amount = value.toString();
        }
        line.category = names.Category(q.Value(category).toLongLong());
        line.car = q.Value(car).toString();
        line.event = names.Event(q.Value(event).toLongLong());
        line.notes = q.Value(notes).toString();
        list.rows.push_back(TextGridModel::JoinCells(ExpenseCells(line)));
    }
    return list;
}

}  // namespace slipbook::garage
