#include "exchange/runimport.h"

#include "common/dates.h"
#include "common/forms.h"
#include "common/numbers.h"
#include "run/fieldtable.h"
#include "run/intervals.h"
#include "run/runsave.h"
#include "run/validation.h"
#include "weather/airproperties.h"
#include "weather/station.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>

#include <optional>

namespace slipbook::exchange {

namespace {

using run::FieldKind;
using run::RunField;

// Lower case letters, digits and "/": "60' et" and "60 ET" are one heading.
QString Folded(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c.isLetterOrNumber() || c == u'/') {
            out += c.toLower();
        }
    }
    return out;
}

// What time slips and spreadsheets call the fields, folded.
const QHash<QString, QString>& Synonyms() {
    static const QHash<QString, QString> synonyms = [] {
        QHash<QString, QString> s;
        const auto add = [&s](const char* column, std::initializer_list<const char*> names) {
            for (const char* name : names) {
                s.insert(QString::fromLatin1(name), QString::fromLatin1(column));
            }
        };
        add("i14Mile_et", {"et", "14et", "1/4", "1/4mile", "quarteret", "quartermileet",
                           "elapsedtime", "1320", "1320ft", "1320et"});
        add("i18Mile_et",
            {"18et", "1/8", "1/8mile", "eighthet", "eighthmileet", "660", "660ft", "660et"});
        add("i14Mile_mph", {"mph", "14mph", "speed", "trapspeed", "quartermph", "1320mph"});
        add("i18Mile_mph", {"18mph", "eighthmph", "660mph"});
        add("iReactionTime_val", {"rt", "r/t", "reaction", "reactiontime"});
        add("i60Foot_et", {"60", "60ft", "60foot", "60et", "sixtyfoot"});
        add("i330Foot_et", {"330", "330ft", "330foot", "330et"});
        add("i1000Foot_et", {"1000", "1000ft", "1000foot", "1000et"});
        add("iDialIn_val", {"dial", "dialin"});
        add("iTemp_val", {"temp", "temperature", "airtemp", "airtemperature"});
        add("iHumidity_val", {"humidity", "rh", "relativehumidity"});
        add("iBarometricPressure_val", {"baro", "barometer", "barometricpressure", "pressure"});
        add("dtRun_dt", {"date", "rundate"});
        add("dtRun_tm", {"time", "runtime", "timeofday"});
        add("lRun_num", {"run", "runno", "runnumber", "round"});
        add("lRunType_id", {"runtype"});
        add("lOpponent_id", {"opponent"});
        add("sLane_nm", {"lane"});
        add("sRunNotes_tx", {"notes", "note", "comments"});
        add("iMarginOfVictory_ft", {"mov", "marginofvictory"});
        add("iVehicleReactionTime_val", {"vrt", "vehiclereactiontime"});
        return s;
    }();
    return synonyms;
}

// The run list's captions by column.
QHash<QString, QString> CatalogueCaptions(store::Database& db) {
    QHash<QString, QString> captions;
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT sFieldName, sColumnHeader FROM tblListViewColumns WHERE sView_id "
                       "= 'ID_Runs' ORDER BY lLVC_id"));
    while (q.Next()) {
        captions.insert(q.Text(0).toLower(), q.Text(1));
    }
    return captions;
}

bool Importable(const RunField& f) {
    return !f.column.isEmpty() && f.kind != FieldKind::Calc && f.kind != FieldKind::Split &&
           f.column != u"lEvent_id" && f.column != u"lCar_id";
}

// A cell written by the export's formula guard comes back as it was typed.
QString Unguarded(const QString& cell) {
    if (cell.size() >= 2 && cell.front() == u'\'') {
        const QChar next = cell.at(1);
        if (next == u'=' || next == u'+' || next == u'-' || next == u'@' || next == u'\t' ||
            next == u'\r') {
            return cell.mid(1);
        }
    }
    return cell;
}

// "1,234.5" as the list shows a large number: the boxes take digits and a point only.
QString Ungrouped(const QString& cell) {
    static const QRegularExpression grouped(
        QStringLiteral("^\\s*[+-]?\\d{1,3}(,\\d{3})+(\\.\\d*)?\\s*$"));
    if (grouped.match(cell).hasMatch()) {
        QString out = cell;
        out.remove(u',');
        return out.trimmed();
    }
    return cell.trimmed();
}

std::optional<bool> YesNo(const QString& cell) {
    const QString t = cell.trimmed().toLower();
    static const QSet<QString> yes = {
        QStringLiteral("yes"), QStringLiteral("y"), QStringLiteral("true"), QStringLiteral("t"),
        QStringLiteral("-1"),  QStringLiteral("1"), QStringLiteral("on"),   QStringLiteral("x")};
    static const QSet<QString> no = {QStringLiteral("no"),    QStringLiteral("n"),
                                     QStringLiteral("false"), QStringLiteral("f"),
                                     QStringLiteral("0"),     QStringLiteral("off")};
    if (yes.contains(t)) {
        return true;
    }
    if (no.contains(t)) {
        return false;
    }
    return std::nullopt;
}

QString Quoted(const QString& text) {
    return u'\'' + QuoteDouble(text) + u'\'';
}

// A list a run picks from: names to ids, without case.
struct NameList {
    QString table;
    QString keyColumn;
    QString nameColumn;
    QHash<QString, qint64> ids;
    QSet<qint64> keys;
    QVariant first;  // what a new run starts with

    // The entry a cell names: by its name, else, for a file of stored values, by its key.
    std::optional<qint64> Find(const QString& cell) const {
        const auto byName = ids.constFind(cell.toLower());
        if (byName != ids.constEnd()) {
            return *byName;
        }
        bool whole = false;
        const qint64 key = cell.toLongLong(&whole);
        if (whole && keys.contains(key)) {
            return key;
        }
        return std::nullopt;
    }
};

NameList ReadNameList(store::Database& db, const QString& table, const QString& key,
                      const QString& name, bool leadingNone) {
    NameList list{table, key, name, {}, {}};
    if (leadingNone) {
        // The run window's list opens with "<None>", whose id is 0.
        list.first = QVariant::fromValue<qint64>(0);
        list.ids.insert(QStringLiteral("<none>"), 0);
    }
    store::Query q = db.OpenQuery(QStringLiteral("SELECT %1, %2 FROM %3").arg(key, name, table));
    while (q.Next()) {
        const qint64 id = q.Value(0).toLongLong();
        list.keys.insert(id);
        if (list.first.isNull()) {
            list.first = QVariant::fromValue(id);
        }
        const QString n = q.Text(1).trimmed().toLower();
        if (!list.ids.contains(n)) {
            list.ids.insert(n, id);
        }
    }
    return list;
}

// Empty for a run without an ET: nothing tells two such runs of a day apart.
QString DuplicateKey(const std::optional<QDateTime>& date, const std::optional<QDateTime>& time,
                     const std::optional<double>& et) {
    if (!et) {
        return QString();
    }
    return (date ? date->date().toString(Qt::ISODate) : QString()) + u'|' +
           (time ? time->time().toString(QStringLiteral("HH:mm")) : QString()) + u'|' +
           (et ? PlainNumberText(*et) : QString());
}

// The quarter ET, else the eighth; a new run's 0 is no ET.
std::optional<double> EtOf(const std::optional<double>& quarter,
                           const std::optional<double>& eighth) {
    if (quarter && *quarter > 0) {
        return quarter;
    }
    if (eighth && *eighth > 0) {
        return eighth;
    }
    return std::nullopt;
}

// Turns file rows into runs as the run window would hold them, and checks them.
class RowReader {
public:
    RowReader(store::Database& db, const ImportPlan& plan) : db_(db), plan_(plan) {
        for (size_t c = 0; c < plan.mapping.size(); ++c) {
            const RunField* f =
                plan.mapping[c].isEmpty() ? nullptr : run::FieldByColumn(plan.mapping[c]);
            fields_.push_back(f != nullptr && Importable(*f) ? f : nullptr);
        }
        runTypes_ = ReadNameList(db, QStringLiteral("tblRunType"), QStringLiteral("lRunType_id"),
                                 QStringLiteral("sRunType_nm"), false);
        opponents_ = ReadNameList(db, QStringLiteral("tblOpponent"), QStringLiteral("lOpponent_id"),
                                  QStringLiteral("sOpponent_nm"), true);
        tune_ = run::CarTuneUp(db, plan.carId);
        store::Query q = db.OpenQuery(
            QStringLiteral("SELECT dtRun_dt, dtRun_tm, i14Mile_et, i18Mile_et FROM tblRuns WHERE "
                           "lCar_id = ") +
            QString::number(plan.carId));
        while (q.Next()) {
            const auto number = [&q](int i) {
                return q.IsNull(i) ? std::nullopt : std::optional<double>(q.Value(i).toDouble());
            };
            const QString key = DuplicateKey(DateValue(q.Value(0)), DateValue(q.Value(1)),
                                             EtOf(number(2), number(3)));
            if (!key.isEmpty()) {
                known_.insert(key);
            }
        }
    }

    struct Row {
        QString reason;  // empty when the row may be saved
        run::RunValues values;
        QString key;
        QString newOpponent;  // a name to add to the list first
        bool numbered = false;
    };

    Row Read(const QStringList& cells) {
        Row row;
        row.values = NewRun();
        QString opponentName;
        QString runTypeName;
        QString dateCell;
        QString timeCell;
        for (size_t c = 0; c < fields_.size() && c < static_cast<size_t>(cells.size()); ++c) {
            const RunField* f = fields_[c];
            if (f == nullptr) {
                continue;
            }
            const QString cell = Unguarded(cells[static_cast<qsizetype>(c)]);
            switch (f->kind) {
                case FieldKind::IdList:
                    (f->column == u"lOpponent_id" ? opponentName : runTypeName) = cell.trimmed();
                    break;
                case FieldKind::Check:
                    if (!cell.trimmed().isEmpty()) {
                        const auto flag = YesNo(cell);
                        if (!flag) {
                            return Refused(row, QStringLiteral("%1 must be Yes or No, not \"%2\"")
                                                    .arg(run::FieldName(*f), cell.trimmed()));
                        }
                        row.values.fullRun = *flag;
                    }
                    break;
                case FieldKind::Lane: {
                    const QString lane = cell.trimmed().toUpper();
                    if (lane == u"L" || lane == u"LEFT") {
                        row.values.leftLane = true;
                    } else if (lane == u"R" || lane == u"RIGHT") {
                        row.values.leftLane = false;
                    } else if (!lane.isEmpty()) {
                        return Refused(
                            row,
                            QStringLiteral("Lane must be L or R, not \"%1\"").arg(cell.trimmed()));
                    }
                    break;
                }
                case FieldKind::Date:
                    dateCell = cell.trimmed();
                    break;
                case FieldKind::Time:
                    timeCell = cell.trimmed();
                    break;
                case FieldKind::Num:
                case FieldKind::Et3:
                case FieldKind::Et4:
                    row.values.texts.insert(f->column, Ungrouped(cell));
                    break;
                default:
                    row.values.texts.insert(f->column, cell);
                    break;
            }
        }

        // The date and time as the masked boxes would hold them; a cell that is none is kept
        // where the check will refuse it.
        std::optional<QDateTime> date;
        std::optional<QDateTime> time;
        QString dateText = kDateMaskEmpty.toString();
        if (!dateCell.isEmpty()) {
            date = DateValue(dateCell);
            if (date && date->date() != DayZero() && date->date().year() > 1000) {
                dateText = date->date().toString(QStringLiteral("MM/dd/yyyy"));
            } else {
                date.reset();
                dateText = QStringLiteral("?") + dateCell;
            }
        }
        QString timeText = kTimeMaskEmpty.toString();
        if (!timeCell.isEmpty()) {
            time = timeCell.contains(u':') ? DateValue(timeCell) : std::nullopt;
            if (time) {
                timeText = time->time().toString(QStringLiteral("hh:mm AP"));
            } else {
                timeText = QStringLiteral("?") + timeCell;
            }
        }
        row.values.texts.insert(QStringLiteral("dtRun_dt"), dateText);
        row.values.texts.insert(QStringLiteral("dtRun_tm"), timeText);

        // The lists: a name not in them leaves nothing picked, which the checks refuse.
        QVariant runType = runTypes_.first;
        if (!runTypeName.isEmpty()) {
            const auto id = runTypes_.Find(runTypeName);
            runType = id ? QVariant::fromValue(*id) : QVariant();
        }
        QVariant opponent = opponents_.first;
        if (!opponentName.isEmpty()) {
            if (const auto id = opponents_.Find(opponentName)) {
                opponent = QVariant::fromValue(*id);
            } else if (plan_.addOpponents) {
                row.newOpponent = NameCase(opponentName);
                opponent = QVariant::fromValue<qint64>(-1);  // given its id when added
            } else {
                opponent = QVariant();
            }
        }
        row.values.ids.insert(QStringLiteral("lRunType_id"), runType);
        row.values.ids.insert(QStringLiteral("lOpponent_id"), opponent);

        const QString number = row.values.text(QStringLiteral("lRun_num")).trimmed();
        row.numbered = !number.isEmpty();
        const run::RunCheckInput input{row.numbered ? number : QStringLiteral("1"),
                                       true,
                                       true,
                                       dateText,
                                       timeText,
                                       !runType.isNull(),
                                       !opponent.isNull(),
                                       row.values.text(QStringLiteral("iTemp_val")),
                                       row.values.text(QStringLiteral("iHumidity_val")),
                                       row.values.text(QStringLiteral("iBarometricPressure_val"))};
        if (const auto failed = run::FirstFailedCheck(input)) {
            QString reason = QString::fromLatin1(run::RunChecks()[*failed].message);
            if (*failed == 3 || *failed == 4) {
                reason += QStringLiteral(" (\"%1\")").arg(*failed == 3 ? dateCell : timeCell);
            } else if (*failed == 5) {
                reason += QStringLiteral(" (\"%1\" is not in the list)").arg(runTypeName);
            } else if (*failed == 6) {
                reason += QStringLiteral(" (\"%1\" is not in the list)").arg(opponentName);
            }
            return Refused(row, reason);
        }
        if (const auto bad = run::FirstBadNumber(row.values)) {
            return Refused(
                row,
                bad->message +
                    QStringLiteral(" (\"%1\")").arg(row.values.text(bad->field->column).trimmed()));
        }
        const weather::Recalculation air =
            weather::PlanRecalculation(input.temperature, input.humidity, input.barometer);
        if (air.failed()) {
            return Refused(row,
                           QStringLiteral("The air figures can't be calculated: ") + air.reason);
        }
        for (size_t i = 0; i < weather::kAirFields.size(); ++i) {
            if (const RunField* f =
                    run::FieldByControl(QString::fromLatin1(weather::kAirFields[i].name))) {
                row.values.texts.insert(f->column, air.texts[i]);
            }
        }
        for (const run::IntervalDef& def : run::Intervals()) {
            const RunField* split = run::FieldByControl(QString::fromLatin1(def.control));
            const RunField* later = run::FieldByControl(QString::fromLatin1(def.later));
            const RunField* earlier = run::FieldByControl(QString::fromLatin1(def.earlier));
            if (split && later && earlier) {
                if (const auto text = run::IntervalText(row.values.text(later->column),
                                                        row.values.text(earlier->column))) {
                    row.values.texts.insert(split->column, *text);
                }
            }
        }
        row.key = DuplicateKey(
            date, time,
            EtOf(StrictNumber(row.values.text(QStringLiteral("i14Mile_et")).trimmed()),
                 StrictNumber(row.values.text(QStringLiteral("i18Mile_et")).trimmed())));
        return row;
    }

    // Whether the car has the run already, or an earlier row of the file gave it; the row is
    // counted as given from now on.
    bool Duplicate(const QString& key) {
        if (key.isEmpty()) {
            return false;
        }
        if (known_.contains(key)) {
            return true;
        }
        known_.insert(key);
        return false;
    }

    qint64 AddOpponent(const QString& name) {
        const QString folded = name.toLower();
        if (opponents_.ids.contains(folded)) {
            return opponents_.ids.value(folded);
        }
        db_.Execute(QStringLiteral("INSERT INTO tblOpponent (sOpponent_nm) VALUES (") +
                    Quoted(name) + u')');
        const qint64 id = db_.LastInsertRowId();
        opponents_.ids.insert(folded, id);
        opponents_.keys.insert(id);
        return id;
    }

private:
    static Row& Refused(Row& row, const QString& reason) {
        row.reason = reason;
        return row;
    }

    // A new run of the window: its starting texts and the car's tune-up.
    run::RunValues NewRun() const {
        run::RunValues v;
        for (const RunField& f : run::RunFields()) {
            if (f.column.isEmpty()) {
                continue;
            }
            switch (f.kind) {
                case FieldKind::IdList:
                case FieldKind::Check:
                case FieldKind::Lane:
                    break;
                default:
                    if (f.fromCar && tune_) {
                        const QString text = tune_->value(f.column);
                        v.texts.insert(f.column,
                                       f.kind == FieldKind::Notes && text.trimmed().isEmpty()
                                           ? QString()
                                           : text);
                    } else {
                        v.texts.insert(f.column,
                                       f.newRun == run::NewRun::Text ? f.newText : QString());
                    }
                    break;
            }
        }
        v.ids.insert(QStringLiteral("lEvent_id"), QVariant::fromValue(plan_.eventId));
        v.ids.insert(QStringLiteral("lCar_id"), QVariant::fromValue(plan_.carId));
        v.fullRun = true;
        v.leftLane = true;
        return v;
    }

    store::Database& db_;
    const ImportPlan& plan_;
    std::vector<const RunField*> fields_;
    NameList runTypes_;
    NameList opponents_;
    std::optional<QHash<QString, QString>> tune_;
    QSet<QString> known_;
};

csv::ReadOptions OptionsOf(const ImportPlan& plan) {
    csv::ReadOptions options;
    options.delimiter = plan.delimiter;
    return options;
}

// Calls `onRow` for each data row of the file, with progress by the bytes read.
template <class OnRow>
csv::ReadResult EachDataRow(QIODevice& in, const ImportPlan& plan, const ImportProgress& progress,
                            bool& cancelled, OnRow onRow) {
    const qint64 total = std::max<qint64>(1, in.size());
    bool first = true;
    int rows = 0;
    return csv::Read(
        in,
        [&](const QStringList& fields, int line) {
            if (first && plan.headerRow) {
                first = false;
                return true;
            }
            first = false;
            // A line with nothing on it is no run.
            if (fields.size() == 1 && fields.front().trimmed().isEmpty()) {
                return true;
            }
            if (progress && (++rows % 256) == 0 && !progress(in.pos(), total)) {
                cancelled = true;
                return false;
            }
            return onRow(fields, line);
        },
        OptionsOf(plan));
}

// The run window's own words for an import without a car or an event to go to.
QString PlanProblem(const ImportPlan& plan) {
    if (plan.eventId == 0) {
        return QString::fromLatin1(run::RunChecks()[1].message);
    }
    if (plan.carId == 0) {
        return QString::fromLatin1(run::RunChecks()[2].message);
    }
    return QString();
}

}  // namespace

std::vector<ImportField> ImportFields(store::Database& db) {
    const QHash<QString, QString> captions = CatalogueCaptions(db);
    std::vector<ImportField> fields;
    QSet<QString> seen;
    for (const RunField& f : run::RunFields()) {
        if (!Importable(f) || seen.contains(f.column)) {
            continue;
        }
        seen.insert(f.column);
        QString caption = captions.value(f.column.toLower());
        if (caption.isEmpty()) {
            caption = f.caption.isEmpty() ? f.column : run::FieldName(f);
        }
        fields.push_back({f.column, caption});
    }
    return fields;
}

ImportPreview ReadPreview(QIODevice& in, int rowCount, csv::Delimiter delimiter) {
    ImportPreview preview;
    csv::ReadOptions options;
    options.delimiter = delimiter;
    const csv::ReadResult r = csv::Read(
        in,
        [&](const QStringList& fields, int) {
            preview.rows.push_back(fields);
            preview.columns = std::max(preview.columns, static_cast<int>(fields.size()));
            return static_cast<int>(preview.rows.size()) < rowCount;
        },
        options);
    preview.delimiter = r.delimiter;
    if (!r.ok) {
        preview.ok = false;
        preview.error = r.error;
    }
    return preview;
}

QString FieldForHeading(const QString& heading, const std::vector<ImportField>& fields) {
    const QString folded = Folded(heading);
    if (folded.isEmpty()) {
        return QString();
    }
    for (const ImportField& f : fields) {
        if (Folded(f.caption) == folded || Folded(f.column) == folded) {
            return f.column;
        }
    }
    const QString column = Synonyms().value(folded);
    for (const ImportField& f : fields) {
        if (f.column == column) {
            return column;
        }
    }
    return QString();
}

bool LooksLikeHeader(const QStringList& firstRow, const std::vector<ImportField>& fields) {
    bool anyNumber = false;
    for (const QString& cell : firstRow) {
        if (!FieldForHeading(cell, fields).isEmpty()) {
            return true;
        }
        anyNumber = anyNumber || StrictNumber(Ungrouped(cell)).has_value();
    }
    return !anyNumber;
}

QString LayoutKey(const QStringList& firstRow, bool headerRow, int columns) {
    if (!headerRow) {
        return QStringLiteral("columns:") + QString::number(columns);
    }
    QStringList headings;
    for (const QString& cell : firstRow) {
        headings << cell.trimmed().toLower();
    }
    return QStringLiteral("headings:") + headings.join(QChar(0x1f));
}

ColumnMapping GuessMapping(const QStringList& headings, const std::vector<ImportField>& fields) {
    ColumnMapping mapping;
    QSet<QString> taken;
    for (const QString& heading : headings) {
        QString column = FieldForHeading(heading, fields);
        // Two columns for one field: the first has it.
        if (taken.contains(column)) {
            column.clear();
        }
        if (!column.isEmpty()) {
            taken.insert(column);
        }
        mapping.push_back(column);
    }
    return mapping;
}

ColumnMapping RememberedMapping(store::Database& db, const QString& layoutKey) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT sMapping_tx FROM tblImportLayout WHERE sLayout_key = ") +
        Quoted(layoutKey));
    if (!q.Next()) {
        return {};
    }
    const QStringList columns = q.Text(0).split(u'\n');
    return ColumnMapping(columns.begin(), columns.end());
}

void RememberMapping(store::Database& db, const QString& layoutKey, const ColumnMapping& mapping) {
    QStringList columns(mapping.begin(), mapping.end());
    const QString key = Quoted(layoutKey);
    store::Database::Transaction transaction(db);
    db.Execute(QStringLiteral("DELETE FROM tblImportLayout WHERE sLayout_key = ") + key);
    db.Execute(
        QStringLiteral("INSERT INTO tblImportLayout (sLayout_key, sMapping_tx, dtUsed_dt) VALUES "
                       "(%1, %2, #%3#)")
            .arg(key, Quoted(columns.join(u'\n')),
                 QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
    transaction.Commit();
}

ImportCheck CheckImport(store::Database& db, QIODevice& in, const ImportPlan& plan,
                        const ImportProgress& progress) {
    ImportCheck check;
    if (const QString problem = PlanProblem(plan); !problem.isEmpty()) {
        check.status = ImportCheck::Status::Failed;
        check.error = problem;
        return check;
    }
    RowReader reader(db, plan);
    bool cancelled = false;
    const csv::ReadResult r =
        EachDataRow(in, plan, progress, cancelled, [&](const QStringList& cells, int line) {
            ++check.rows;
            RowReader::Row row = reader.Read(cells);
            if (!row.reason.isEmpty()) {
                check.rejects.push_back({line, row.reason, cells});
                return true;
            }
            ++check.passing;
            if (reader.Duplicate(row.key)) {
                ++check.duplicates;
            }
            return true;
        });
    if (cancelled) {
        check.status = ImportCheck::Status::Cancelled;
    } else if (!r.ok) {
        check.status = ImportCheck::Status::Failed;
        check.error = r.error;
    }
    return check;
}

ImportResult ImportRuns(store::Database& db, QIODevice& in, const ImportPlan& plan,
                        DuplicateRule duplicates, const ImportProgress& progress) {
    ImportResult result;
    if (const QString problem = PlanProblem(plan); !problem.isEmpty()) {
        result.status = ImportResult::Status::Failed;
        result.error = problem + QStringLiteral("\nNothing was imported.");
        return result;
    }
    bool cancelled = false;
    QString failure;
    try {
        store::Database::Transaction transaction(db);
        RowReader reader(db, plan);
        const csv::ReadResult r =
            EachDataRow(in, plan, progress, cancelled, [&](const QStringList& cells, int line) {
                RowReader::Row row = reader.Read(cells);
                if (!row.reason.isEmpty()) {
                    result.rejects.push_back({line, row.reason, cells});
                    return true;
                }
                if (reader.Duplicate(row.key) && duplicates == DuplicateRule::Skip) {
                    ++result.skipped;
                    return true;
                }
                try {
                    if (!row.newOpponent.isEmpty()) {
                        row.values.ids.insert(QStringLiteral("lOpponent_id"),
                                              reader.AddOpponent(row.newOpponent));
                    }
                    if (!row.numbered) {
                        row.values.texts.insert(
                            QStringLiteral("lRun_num"),
                            QString::number(run::RunNextNumber(db, plan.eventId, plan.carId)));
                    }
                    run::RunSaveRequest request;
                    request.values = std::move(row.values);
                    const run::RunSaveOutcome outcome = run::SaveRun(db, request);
                    result.maintenanceDue = result.maintenanceDue || outcome.maintenanceDue;
                    ++result.imported;
                } catch (const std::exception& e) {
                    failure = QStringLiteral("The row on line %1 could not be saved: %2")
                                  .arg(line)
                                  .arg(QString::fromUtf8(e.what()));
                    return false;
                }
                return true;
            });
        if (cancelled) {
            result.status = ImportResult::Status::Cancelled;
        } else if (!failure.isEmpty()) {
            result.status = ImportResult::Status::Failed;
            result.error = failure;
        } else if (!r.ok) {
            result.status = ImportResult::Status::Failed;
            result.error = r.error;
        } else {
            transaction.Commit();
            return result;
        }
    } catch (const std::exception& e) {
        result.status = ImportResult::Status::Failed;
        result.error = QString::fromUtf8(e.what());
    }
    // Nothing of a stopped import stays.
    result.imported = 0;
    result.skipped = 0;
    result.maintenanceDue = false;
    if (result.status == ImportResult::Status::Failed) {
        result.error += QStringLiteral("\nNothing was imported.");
    }
    return result;
}

bool WriteRejects(const QString& path, const QStringList& headings,
                  const std::vector<RejectedRow>& rejects, QString* error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error != nullptr) {
            *error = file.errorString();
        }
        return false;
    }
    csv::Writer writer(file, {});
    // The line and the reason go last, so that the file, once mended, imports with the same
    // matching as the file it came from.
    int columns = static_cast<int>(headings.size());
    for (const RejectedRow& r : rejects) {
        columns = std::max(columns, static_cast<int>(r.cells.size()));
    }
    const auto padded = [columns](QStringList cells) {
        while (cells.size() < columns) {
            cells << QString();
        }
        return cells;
    };
    if (!headings.isEmpty()) {
        writer.WriteRow(padded(headings) << QStringLiteral("Line") << QStringLiteral("Reason"));
    }
    for (const RejectedRow& r : rejects) {
        writer.WriteRow(padded(r.cells) << QString::number(r.line) << r.reason);
    }
    if (!writer.Flush() || !file.commit()) {
        if (error != nullptr) {
            *error = file.errorString();
        }
        return false;
    }
    return true;
}

}  // namespace slipbook::exchange
