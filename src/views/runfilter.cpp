#include "views/runfilter.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "store/access.h"
#include "store/dberror.h"

#include <QHash>
#include <QVariant>

#include <utility>

namespace slipbook::views {

const QStringList& FilterOperators() {
    static const QStringList ops = {kBetween.toString(),  QStringLiteral("="),
                                    QStringLiteral(">"),  QStringLiteral("<"),
                                    QStringLiteral(">="), QStringLiteral("<=")};
    return ops;
}

const QStringList& FilterHelpLines() {
    static const QStringList lines = {
        QStringLiteral("Click in appropriate column to:"), QStringLiteral("- Choose an operator"),
        QStringLiteral("- Change comparison value"), QStringLiteral("- Click include checkbox"),
        QStringLiteral("Click Apply to activate filter.")};
    return lines;
}

const QStringList& FilterOperatorLines() {
    static const QStringList lines = {QStringLiteral("Between Value 1 and Value 2"),
                                      QStringLiteral("=  Equal To"),
                                      QStringLiteral(">  Greater Than"),
                                      QStringLiteral("<  Less Than"),
                                      QStringLiteral(">= Greater Than or Equal To"),
                                      QStringLiteral("<= Less Than or Equal To")};
    return lines;
}

// ---------------------------------------------------------------------------------------------
// The form

void FilterForm::Clear() {
    rows_.clear();
    kept2_.clear();
}

void FilterForm::AddColumn(const QString& fieldName, const QString& dataType,
                           const QString& caption, const QString& firstCell,
                           const QString& lastCell) {
    FilterRow row;
    row.fieldName = fieldName;
    row.dataType = dataType;
    row.caption = caption;
    row.value1 = firstCell;
    row.value2 = lastCell;
    rows_.append(row);
    kept2_.append(lastCell);
}

bool FilterForm::SetOperator(int index, const QString& op) {
    FilterRow& row = rows_[index];
    if (row.op == op || !FilterOperators().contains(op)) {
        return false;
    }
    row.op = op;
    row.value2 = Value2Open(row) ? kept2_[index] : kNotApplicable.toString();
    row.include = true;
    return true;
}

bool FilterForm::SetValue1(int index, const QString& text) {
    FilterRow& row = rows_[index];
    if (row.value1 == text) {
        return false;
    }
    row.value1 = text;
    row.include = true;
    return true;
}

bool FilterForm::SetValue2(int index, const QString& text) {
    FilterRow& row = rows_[index];
    if (!Value2Open(row) || row.value2 == text) {
        return false;
    }
    row.value2 = text;
    kept2_[index] = text;
    row.include = true;
    return true;
}

bool FilterForm::SetInclude(int index, bool include) {
    FilterRow& row = rows_[index];
    if (row.include == include) {
        return false;
    }
    row.include = include;
    return true;
}

// ---------------------------------------------------------------------------------------------
// The statement

namespace {

QString Quoted(const QString& text) {
    return u'\'' + TextReplace(text, u"'", u"''") + u'\'';
}

QString Named(const QString& caption) {
    return u'"' + caption + u'"';
}

QString TwoDigits(int n) {
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

// The store's literal of a date, a time of day, or both; month first as typed dates are.
QString DateLiteral(const QDateTime& when) {
    const QDate d = when.date();
    const QTime t = when.time();
    QString text;
    if (d != DayZero()) {
        text = TwoDigits(d.month()) + u'/' + TwoDigits(d.day()) + u'/' +
               QStringLiteral("%1").arg(d.year(), 4, 10, QLatin1Char('0'));
    }
    if (d == DayZero() || t != QTime(0, 0)) {
        const int hour12 = t.hour() % 12 == 0 ? 12 : t.hour() % 12;
        if (!text.isEmpty()) {
            text += u' ';
        }
        text += TwoDigits(hour12) + u':' + TwoDigits(t.minute()) + u':' + TwoDigits(t.second()) +
                (t.hour() < 12 ? QStringLiteral(" AM") : QStringLiteral(" PM"));
    }
    return u'#' + text + u'#';
}

enum class Truth { Outside, Yes, No, Unclear };

Truth ReadTruth(const QString& value) {
    if (!QStringLiteral("YesNoTrueFalse").contains(value, Qt::CaseInsensitive)) {
        return Truth::Outside;
    }
    const bool yes = QStringLiteral("Yes").contains(value, Qt::CaseInsensitive) ||
                     QStringLiteral("True").contains(value, Qt::CaseInsensitive);
    const bool no = QStringLiteral("No").contains(value, Qt::CaseInsensitive) ||
                    QStringLiteral("False").contains(value, Qt::CaseInsensitive);
    if (yes == no) {
        return Truth::Unclear;
    }
    return yes ? Truth::Yes : Truth::No;
}

struct LookupSource {
    QString table;
    QString field;
};

// One condition's pieces: the values as the statement writes them, or nothing when the row adds
// no condition.
struct Operands {
    QString sql1;
    QString sql2;
    QString shown1;
    QString shown2;
};

class Builder {
public:
    Builder(store::Database& db, const FilterScope& scope, Messages& messages)
        : db_(db), scope_(scope), messages_(messages) {
        auto lookups =
            db.OpenRecordset(QStringLiteral("SELECT * from tblListViewColumns WHERE bLookup_fl"),
                             store::RecordsetType::Snapshot);
        while (!lookups->Eof()) {
            const QString name = lookups->Value(QStringLiteral("sFieldName")).toString().toLower();
            if (!lookups_.contains(name)) {
                lookups_.insert(name,
                                {lookups->Value(QStringLiteral("sLookupTable_nm")).toString(),
                                 lookups->Value(QStringLiteral("sLookupField_nm")).toString()});
            }
            lookups->MoveNext();
        }
        runs_ = db.TableDefinition(QStringLiteral("tblRuns"));
    }

    RunFilterStatement Build(const QList<FilterRow>& rows) {
        RunFilterStatement out;
        QStringList sql;
        QStringList text;
        for (int i = 0; i < rows.size(); ++i) {
            const FilterRow& row = rows[i];
            if (!row.include) {
                continue;
            }
            row_ = i;
            fault_.reset();
            const std::optional<QString> condition = Condition(row, text);
            if (fault_) {
                out.fault = fault_;
                return out;
            }
            if (condition) {
                sql << *condition;
            }
        }
        out.conditions = static_cast<int>(sql.size());
        if (out.conditions == 0) {
            return out;
        }
        out.sql = QStringLiteral("SELECT * from tblRuns WHERE ") +
                  sql.join(QStringLiteral(" AND ")) + QStringLiteral(" AND lCar_id = ") +
                  QString::number(scope_.carId);
        if (scope_.eventId != 0) {
            out.sql += QStringLiteral(" AND lEvent_id = ") + QString::number(scope_.eventId);
        }
        out.text = text.join(QStringLiteral(" AND "));
        return out;
    }

private:
    void Fail(int value, const QString& message) { fault_ = FilterFault{row_, value, message}; }

    // The condition of an included row, with its readable text appended to `text`; nothing when
    // the row drops out or is at fault.
    std::optional<QString> Condition(const FilterRow& row, QStringList& text) {
        if (!FilterOperators().contains(row.op)) {
            Fail(1, QStringLiteral("Choose an operator for %1.").arg(Named(row.caption)));
            return std::nullopt;
        }
        const bool between = row.op == kBetween;
        if (row.value1.trimmed().isEmpty()) {
            Fail(1, QStringLiteral("Value 1 of %1 is empty. Type a value, or clear Include.")
                        .arg(Named(row.caption)));
            return std::nullopt;
        }
        if (between && row.value2.trimmed().isEmpty()) {
            Fail(2, QStringLiteral("Value 2 of %1 is empty. Type a value, or choose another "
                                   "operator.")
                        .arg(Named(row.caption)));
            return std::nullopt;
        }
        std::optional<Operands> operands = ValuesOf(row, between);
        if (!operands) {
            return std::nullopt;
        }
        const QString& f = row.fieldName;
        QString field = f;
        QString guard;
        if (row.dataType == u"Number" && IsTextColumn(f)) {
            // A number kept as text compares by its number, as the list shows it; an empty text
            // is no number.
            field = f + QStringLiteral(" + 0");
            guard = f + QStringLiteral(" <> '' AND ");
        }
        const bool booleanRow = row.dataType == u"Boolean";
        if (between) {
            text << (booleanRow ? row.caption + QStringLiteral(" >= ") + operands->shown1 +
                                      QStringLiteral(" AND ") + row.caption +
                                      QStringLiteral(" <= ") + operands->shown2
                                : row.caption + QStringLiteral(" Between ") + operands->shown1 +
                                      QStringLiteral(" AND ") + operands->shown2);
            return guard + field + QStringLiteral(" >= ") + operands->sql1 +
                   QStringLiteral(" AND ") + field + QStringLiteral(" <= ") + operands->sql2;
        }
        text << row.caption + u' ' + row.op + u' ' + operands->shown1;
        return guard + field + u' ' + row.op + u' ' + operands->sql1;
    }

    std::optional<Operands> ValuesOf(const FilterRow& row, bool between) {
        Operands o;
        auto each = [&](int value, const QString& typed, QString& sql, QString& shown) {
            return Value(row, value, typed, sql, shown);
        };
        if (!each(1, row.value1, o.sql1, o.shown1)) {
            return std::nullopt;
        }
        if (between && !each(2, row.value2, o.sql2, o.shown2)) {
            return std::nullopt;
        }
        return o;
    }

    // One value as the statement and the readable text write it; false when it adds no condition
    // (then fault_ says whether that is a fault).
    bool Value(const FilterRow& row, int value, const QString& typed, QString& sql,
               QString& shown) {
        const QString trimmed = typed.trimmed();
        const QString name = Named(row.caption);
        const QString which = QStringLiteral("Value %1 of %2").arg(value).arg(name);
        if (row.dataType == u"Number") {
            const auto number = StrictNumber(trimmed);
            if (!number) {
                Fail(value, QStringLiteral("%1 is not a number: %2.").arg(which, Named(typed)));
                return false;
            }
            sql = PlainNumberText(*number);
            shown = trimmed;
            return true;
        }
        if (row.dataType == u"Date" || row.dataType == u"Time") {
            const bool time = row.dataType == u"Time";
            const auto when = DateValue(trimmed, scope_.today);
            // A time of day alone is no date; a date is no time of day.
            if (!when || (when->date() == DayZero()) != time) {
                Fail(value, time ? QStringLiteral("%1 is not a time: %2. Type it as HH:MM AM.")
                                       .arg(which, Named(typed))
                                 : QStringLiteral("%1 is not a date: %2. Type it as MM/DD/YYYY.")
                                       .arg(which, Named(typed)));
                return false;
            }
            sql = DateLiteral(*when);
            shown = trimmed;
            return true;
        }
        if (row.dataType == u"Boolean") {
            switch (ReadTruth(trimmed)) {
                case Truth::Outside:
                    return false;
                case Truth::Unclear:
                    Fail(value, QStringLiteral("%1 could be Yes or No: %2. Type Yes, No, True or "
                                               "False.")
                                    .arg(which, Named(typed)));
                    return false;
                case Truth::Yes:
                    sql = QStringLiteral("True");
                    break;
                case Truth::No:
                    sql = QStringLiteral("False");
                    break;
            }
            shown = trimmed;
            return true;
        }
        if (const auto it = lookups_.constFind(row.fieldName.toLower());
            it != lookups_.constEnd()) {
            QVariant key;
            try {
                key =
                    store::TableLookup(db_, it->table, it->field, row.fieldName, typed, messages_);
            } catch (const store::DbError&) {
                Fail(value, QStringLiteral("%1 can't be looked up: %2.").arg(which, Named(typed)));
                return false;
            }
            if (!key.isValid() || key.toString().trimmed().isEmpty()) {
                return false;
            }
            switch (key.metaType().id()) {
                case QMetaType::LongLong:
                case QMetaType::Int:
                case QMetaType::Double:
                    sql = PlainNumberText(key.toDouble());
                    break;
                default:
                    sql = Quoted(key.toString());
                    break;
            }
            shown = typed;
            return true;
        }
        sql = Quoted(typed);
        shown = u'\'' + typed + u'\'';
        return true;
    }

    bool IsTextColumn(const QString& field) const {
        if (!runs_) {
            return false;
        }
        const store::FieldDef* def = runs_->field(field);
        return def != nullptr &&
               (def->type == store::fieldtype::Text || def->type == store::fieldtype::Memo);
    }

    store::Database& db_;
    const FilterScope& scope_;
    Messages& messages_;
    QHash<QString, LookupSource> lookups_;
    std::optional<store::TableDef> runs_;
    int row_ = -1;
    std::optional<FilterFault> fault_;
};

}  // namespace

RunFilterStatement BuildRunFilter(store::Database& db, const QList<FilterRow>& rows,
                                  const FilterScope& scope, Messages& messages) {
    return Builder(db, scope, messages).Build(rows);
}

bool FilterHasRuns(store::Database& db, const QString& sql) {
    store::Query query = db.OpenQuery(sql);
    return query.Next();
}

}  // namespace slipbook::views
