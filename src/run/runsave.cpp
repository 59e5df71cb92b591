#include "run/runsave.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/tools.h"
#include "garage/maintenance.h"
#include "shell/runlist.h"
#include "store/access.h"
#include "store/dberror.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <functional>

namespace slipbook::run {

namespace {

const QString kNull = QStringLiteral("Null");

// A text between apostrophes, each of its own doubled.
void AppendSqlText(QString& out, QStringView text) {
    out += u'\'';
    for (const QChar c : text) {
        out += c;
        if (c == u'\'') {
            out += c;
        }
    }
    out += u'\'';
}

QString SqlText(QStringView text) {
    QString out;
    out.reserve(text.size() + 2);
    AppendSqlText(out, text);
    return out;
}

// A number no column can hold is refused rather than written as infinity or a wrapped integer;
// the window's own check names the field before it comes to this.
double Storable(double value, double limit) {
    if (!std::isfinite(value) || std::fabs(value) > limit) {
        throw store::DbError(store::err::Overflow, QStringLiteral("Slipbook"),
                             QStringLiteral("Overflow"));
    }
    return value;
}

// A number as the statement writes it. Text that is no number goes quoted, so the store refuses
// it as a type mismatch rather than reading a broken statement.
QString NumberLiteral(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return kNull;
    }
    if (const auto value = StrictNumber(trimmed)) {
        return PlainNumberText(Storable(*value, DBL_MAX));
    }
    return SqlText(trimmed);
}

QString LongLiteral(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return kNull;
    }
    if (const auto value = StrictNumber(trimmed)) {
        // Half to even, as the whole-number conversion rounds.
        return QString::number(static_cast<qint64>(std::nearbyint(Storable(*value, 9.2e18))));
    }
    return SqlText(trimmed);
}

QString SingleLiteral(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return kNull;
    }
    if (const auto value = StrictNumber(trimmed)) {
        // A single keeps seven significant digits.
        const float single = static_cast<float>(Storable(*value, FLT_MAX));
        return PlainNumberText(QString::number(static_cast<double>(single), 'g', 7).toDouble());
    }
    return SqlText(trimmed);
}

QString DateLiteral(const QString& text, bool timeOfDay) {
    const auto value = DateValue(QVariant(text));
    if (!value) {
        return kNull;
    }
    return u'#' +
           (timeOfDay ? value->time().toString(QStringLiteral("hh:mm:ss"))
                      : value->date().toString(QStringLiteral("MM/dd/yyyy"))) +
           u'#';
}

QString ValueLiteral(const RunField& f, const RunValues& v) {
    const QString text = v.text(f.column);
    switch (f.save) {
        case SaveForm::Id: {
            const QVariant id = v.ids.value(f.column);
            return id.isValid() && !id.isNull() ? QString::number(id.toLongLong()) : kNull;
        }
        case SaveForm::Num:
            return NumberLiteral(text);
        case SaveForm::Str:
            return SqlText(TextOrNull(text).toString());
        case SaveForm::Date:
            return DateLiteral(text, false);
        case SaveForm::Time:
            return DateLiteral(text, true);
        case SaveForm::Bool:
            return v.fullRun ? QStringLiteral("True") : QStringLiteral("False");
        case SaveForm::Long:
            return LongLiteral(text);
        case SaveForm::Single:
            return SingleLiteral(text);
        case SaveForm::Lane:
            return v.leftLane ? QStringLiteral("'L'") : QStringLiteral("'R'");
        case SaveForm::Note:
            // The shared quoting drops the prompt and doubles the apostrophes.
            return u'\'' + TextOrNull(QuoteDouble(text)).toString() + u'\'';
    }
    return kNull;
}

// The car's statements follow the run's, the notes first.
int CarStatementOf(const RunField& f) {
    if (f.carColumn.isEmpty()) {
        return 0;
    }
    if (f.kind == FieldKind::Notes) {
        return 1;
    }
    switch (f.statement) {
        case 3:
            return 2;
        case 4:
            return 3;
        case 5:
            return 4;
        case 6:
            return 5;
        case 7:
            return 6;
        case 9:
            return 7;
        default:
            return 0;
    }
}

using FieldOrder = std::array<std::vector<const RunField*>, 10>;

// The fields each statement writes, in their order: by statement (1 to 9, or the car's 1 to 7),
// then by rank. The table is fixed, so the order is worked out once.
FieldOrder MakeOrder(const std::function<int(const RunField&)>& statementOf) {
    FieldOrder order;
    for (const RunField& f : RunFields()) {
        const int s = statementOf(f);
        if (s > 0 && s < static_cast<int>(order.size())) {
            order[s].push_back(&f);
        }
    }
    for (auto& fields : order) {
        std::stable_sort(fields.begin(), fields.end(),
                         [](const RunField* a, const RunField* b) { return a->rank < b->rank; });
    }
    return order;
}

const FieldOrder& RunOrder() {
    static const FieldOrder order = MakeOrder([](const RunField& f) { return f.statement; });
    return order;
}

const FieldOrder& CarOrder() {
    static const FieldOrder order = MakeOrder(CarStatementOf);
    return order;
}

// "UPDATE <table> SET " and the assignments; the last runs into the WHERE with one blank.
class UpdateText {
public:
    explicit UpdateText(QLatin1StringView table) {
        text_.reserve(2048);
        text_ += QStringLiteral("UPDATE ");
        text_ += table;
        text_ += QStringLiteral(" SET ");
        start_ = text_.size();
    }
    void Add(const QString& column, const QString& value) {
        Column(column);
        text_ += value;
    }
    // A text in the str form: trimmed, quoted, Null as the empty text.
    void AddText(const QString& column, const QString& value) {
        Column(column);
        AppendSqlText(text_, TrimSpaces(value));
    }
    QString Where(const QString& where) {
        text_ += u' ';
        text_ += where;
        text_.squeeze();
        return std::move(text_);
    }

private:
    void Column(const QString& column) {
        if (text_.size() > start_) {
            text_ += QStringLiteral(", ");
        }
        text_ += column;
        text_ += QStringLiteral(" = ");
    }

    QString text_;
    qsizetype start_ = 0;
};

}  // namespace

QString RunRecordsSql(const RunListState& list, qint64 runId) {
    QString sql;
    if (list.filterActive) {
        sql = list.filterSql + u' ';
    } else {
        sql = QStringLiteral("SELECT * ") + QStringLiteral("FROM tblRuns ");
        if (list.eventId != 0) {
            sql += QStringLiteral("WHERE lEvent_id = ") + QString::number(list.eventId) + u' ';
        }
    }
    sql += sql.contains(QStringLiteral("WHERE"), Qt::CaseInsensitive) ? QStringLiteral(" AND ")
                                                                      : QStringLiteral(" WHERE ");
    return sql + QStringLiteral("lRun_id  = ") + QString::number(runId);
}

qint64 RunNextNumber(store::Database& db, qint64 eventId, qint64 carId) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT MAX(lRun_num) AS lLast FROM tblRuns WHERE lEvent_id = ") +
        QString::number(eventId) + QStringLiteral(" AND lCar_id = ") + QString::number(carId));
    if (!q.Next() || q.IsNull(0)) {
        return 1;
    }
    return static_cast<qint64>(std::nearbyint(q.Value(0).toDouble())) + 1;
}

QString RunInsertStatement(const RunValues& values) {
    QString columns;
    QString literals;
    columns.reserve(4096);
    literals.reserve(4096);
    for (int s = 1; s <= 9; ++s) {
        for (const RunField* f : RunOrder()[s]) {
            if (!columns.isEmpty()) {
                columns += QStringLiteral(", ");
                literals += QStringLiteral(", ");
            }
            columns += f->column;
            if (f->save == SaveForm::Str) {
                AppendSqlText(literals, TrimSpaces(values.text(f->column)));
            } else {
                literals += ValueLiteral(*f, values);
            }
        }
    }
    return QStringLiteral("INSERT INTO tblRuns (") + columns + QStringLiteral(") VALUES (") +
           literals + u')';
}

QString RunStatement(const RunValues& values, qint64 runId) {
    UpdateText text(QLatin1StringView("tblRuns"));
    for (int s = 1; s <= 9; ++s) {
        for (const RunField* f : RunOrder()[s]) {
            // The base set-up and the nozzles go only into a run as it is added.
            if (f->kind == FieldKind::Hidden) {
                continue;
            }
            if (f->save == SaveForm::Str) {
                text.AddText(f->column, values.text(f->column));
            } else {
                text.Add(f->column, ValueLiteral(*f, values));
            }
        }
    }
    return text.Where(QStringLiteral("WHERE (lRun_id = ") + QString::number(runId) + u')');
}

QString CarStatement(const RunValues& values, qint64 carId) {
    UpdateText text(QLatin1StringView("tblCars"));
    for (int s = 1; s <= 7; ++s) {
        for (const RunField* f : CarOrder()[s]) {
            // The notes go to the car as typed; a hint is no note there either.
            const QString value = values.text(f->column);
            text.AddText(f->carColumn,
                         f->kind == FieldKind::Notes && IsNotesHint(value) ? QString() : value);
        }
    }
    return text.Where(QStringLiteral("WHERE (lCar_id = ") + QString::number(carId) + u')');
}

QStringList CustomNameStatements(const CustomNames& names) {
    QStringList statements;
    for (int n = 0; n < 6; ++n) {
        statements << QStringLiteral("UPDATE tblListViewColumns SET sColumnHeader = ") +
                          SqlText(names[n]) + QStringLiteral(" WHERE sFieldName = 'Custom") +
                          QString::number(n + 1) + u'\'';
    }
    return statements;
}

CustomNames ReadCustomNames(store::Database& db) {
    CustomNames names;
    std::array<bool, 6> seen{};
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT sFieldName, sColumnHeader FROM tblListViewColumns WHERE sFieldName "
                       "IN ('Custom1', 'Custom2', 'Custom3', 'Custom4', 'Custom5', 'Custom6')"));
    while (q.Next()) {
        const int n = q.Text(0).mid(6).toInt() - 1;
        if (n >= 0 && n < 6 && !seen[n]) {
            seen[n] = true;
            names[n] = q.Text(1);
        }
    }
    return names;
}

bool IsNewestRun(store::Database& db, qint64 runId) {
    // Dates and times are stored as text in time order, and a Null as no text, before all.
    const auto stamp = [](const store::Query& q) { return q.Text(0) + u'\n' + q.Text(1); };
    store::Query own =
        db.OpenQuery(QStringLiteral("SELECT dtRun_dt, dtRun_tm FROM tblRuns WHERE lRun_id = ") +
                     QString::number(runId));
    if (!own.Next()) {
        return false;
    }
    const QString mine = stamp(own);
    // The latest run of each car comes from the index on car, date and time, so the logbook is
    // never sorted whole; the cars are stepped through the same index.
    const QString latest = QStringLiteral(
        "SELECT dtRun_dt, dtRun_tm FROM tblRuns WHERE lCar_id %1 ORDER BY dtRun_dt DESC, "
        "dtRun_tm DESC LIMIT 1");
    const auto laterThanMine = [&](const QString& condition) {
        store::Query q = db.OpenQuery(latest.arg(condition));
        return q.Next() && stamp(q) > mine;
    };
    if (laterThanMine(QStringLiteral("IS NULL"))) {
        return false;
    }
    QString after = QStringLiteral("SELECT MIN(lCar_id) FROM tblRuns");
    for (;;) {
        store::Query car = db.OpenQuery(after);
        if (!car.Next() || car.IsNull(0)) {
            return true;
        }
        const QString id = car.Text(0);
        if (laterThanMine(QStringLiteral("= ") + id)) {
            return false;
        }
        after = QStringLiteral("SELECT MIN(lCar_id) FROM tblRuns WHERE lCar_id > ") + id;
    }
}

void CountRunOnMaintenance(store::Database& db, qint64 carId) {
    db.Execute(garage::CountUpSql(carId));
}

bool MaintenanceDue(store::Database& db, qint64 carId) {
    store::Query q = db.OpenQuery(garage::DueItemsSql(carId));
    return q.Next();
}

RunSaveOutcome SaveRun(store::Database& db, const RunSaveRequest& request) {
    RunSaveOutcome out;
    out.added = request.runId == 0;
    out.runId = request.runId;
    const QVariant car = request.values.ids.value(QStringLiteral("lCar_id"));
    const bool hasCar = car.isValid() && !car.isNull();

    store::Database::Transaction transaction(db);
    if (out.added) {
        db.Execute(RunInsertStatement(request.values));
        out.runId = db.LastInsertRowId();
    } else if (db.Execute(RunStatement(request.values, out.runId)) == 0) {
        // The run has gone since the window showed it.
        throw store::DbError(store::err::NoCurrentRecord, QStringLiteral("Slipbook"),
                             QStringLiteral("No current record."));
    }
    if (request.customNames) {
        for (const QString& s : CustomNameStatements(*request.customNames)) {
            db.Execute(s);
        }
    }
    if (hasCar && (out.added || IsNewestRun(db, out.runId))) {
        db.Execute(CarStatement(request.values, car.toLongLong()));
        out.carUpdated = true;
    }
    if (hasCar && out.added) {
        CountRunOnMaintenance(db, car.toLongLong());
    }
    transaction.Commit();
    if (hasCar && out.added) {
        out.maintenanceDue = MaintenanceDue(db, car.toLongLong());
    }
    return out;
}

std::optional<QHash<QString, QString>> CarTuneUp(store::Database& db, qint64 carId) {
    store::Query q = db.OpenQuery(QStringLiteral("SELECT * from tblCars WHERE lCar_id = ") +
                                  QString::number(carId));
    if (!q.Next()) {
        return std::nullopt;
    }
    const int carry = q.FieldIndex(QStringLiteral("lCarryForward_info"));
    if (carry < 0 || q.IsNull(carry) || q.Value(carry).toDouble() == 0) {
        return std::nullopt;
    }
    QHash<QString, QString> texts;
    for (const RunField& f : RunFields()) {
        if (!f.fromCar) {
            continue;
        }
        const int field = q.FieldIndex(f.carColumn.isEmpty() ? f.column : f.carColumn);
        texts.insert(f.column, CarriedText(field >= 0 ? q.Value(field) : QVariant()));
    }
    return texts;
}

bool CarTypes::fuelInjected() const {
    return carburetion.trimmed().compare(u"FI", Qt::CaseInsensitive) == 0;
}

bool CarTypes::nitro() const {
    return fuel.trimmed().compare(u"NITRO", Qt::CaseInsensitive) == 0;
}

CarTypes ReadCarTypes(store::Database& db, qint64 carId, Messages& messages) {
    const auto lookup = [&](const char* column) {
        return store::TableLookup(db, QStringLiteral("tblCars"), QStringLiteral("lCar_id"),
                                  QString::fromLatin1(column), carId, messages)
            .toString();
    };
    return {lookup("sCarFuel_typ"), lookup("sCarCarb_typ")};
}

}  // namespace slipbook::run
