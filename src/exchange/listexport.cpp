#include "exchange/listexport.h"

#include "exchange/csv.h"
#include "store/currency.h"
#include "store/dberror.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <charconv>
#include <cmath>

namespace slipbook::exchange {

namespace {

constexpr int kProgressStep = 2000;

// The date the store gives a time of day.
const QDate kTimeOnlyDate(1899, 12, 30);

QString DateTimeText(const QDateTime& value) {
    if (!value.isValid()) {
        return QString();
    }
    if (value.date() == kTimeOnlyDate) {
        return value.time().toString(QStringLiteral("HH:mm:ss"));
    }
    if (value.time() == QTime(0, 0)) {
        return value.date().toString(QStringLiteral("yyyy-MM-dd"));
    }
    return value.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

// The stored value of each listed row's columns, joined by tabs as the grid's rows are, by the
// row's place in the list.
std::vector<QString> ReadRawRows(store::Database& db, const ListSource& source,
                                 const std::vector<int>& columns) {
    const TextGridModel& model = *source.model;
    std::vector<QString> rows(static_cast<size_t>(model.RowCount()));
    QStringList select{QLatin1Char('[') + source.keyColumn + QLatin1Char(']')};
    std::vector<int> fieldOf(columns.size(), -1);  // statement column of each exported column
    for (size_t i = 0; i < columns.size(); ++i) {
        const int c = columns[i];
        if (c < static_cast<int>(source.fields.size()) && !source.fields[c].isEmpty()) {
            fieldOf[i] = static_cast<int>(select.size());
            select << QLatin1Char('[') + source.fields[c] + QLatin1Char(']');
        }
    }
    QHash<qint64, int> rowOfKey;
    rowOfKey.reserve(model.RowCount());
    for (int r = 0; r < model.RowCount(); ++r) {
        bool ok = false;
        const qint64 key = model.CellView(r, 0).toLongLong(&ok);
        if (ok) {
            rowOfKey.insert(key, r);
        }
    }
    store::Query q = db.OpenQuery(QStringLiteral("SELECT ") + select.join(QStringLiteral(", ")) +
                                  QStringLiteral(" FROM [") + source.table + QLatin1Char(']'));
    std::vector<store::ColumnKind> kinds;
    for (int f = 0; f < q.FieldCount(); ++f) {
        kinds.push_back(q.Field(f).kind);
    }
    while (q.Next()) {
        const auto found = rowOfKey.constFind(q.Integer(0));
        if (found == rowOfKey.cend()) {
            continue;
        }
        const int r = *found;
        QString text;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) {
                text += TextGridModel::kSeparator;
            }
            const int f = fieldOf[i];
            if (f < 0) {
                text += model.CellView(r, columns[i]);
            } else {
                QString value = RawText(q.Value(f), kinds[f]);
                value.replace(TextGridModel::kSeparator, u' ');
                text += value;
            }
        }
        rows[r] = std::move(text);
    }
    return rows;
}

}  // namespace

QString PlainNumber(double value) {
    if (!std::isfinite(value)) {
        return QString();
    }
    char buffer[400];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    if (ec != std::errc()) {
        return QString::number(value, 'g', 17);
    }
    return QString::fromLatin1(buffer, end - buffer);
}

QString RawText(const QVariant& value, store::ColumnKind kind) {
    if (!value.isValid() || value.isNull()) {
        return QString();
    }
    if (value.metaType() == QMetaType::fromType<store::Currency>()) {
        return value.value<store::Currency>().toText();
    }
    switch (value.typeId()) {
        case QMetaType::LongLong:
        case QMetaType::Int:
            if (kind == store::ColumnKind::Boolean) {
                return value.toLongLong() != 0 ? QStringLiteral("true") : QStringLiteral("false");
            }
            return QString::number(value.toLongLong());
        case QMetaType::Double:
            return PlainNumber(value.toDouble());
        case QMetaType::QDateTime:
            return DateTimeText(value.toDateTime());
        case QMetaType::Bool:
            return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
        default:
            return value.toString();
    }
}

ListSource StoredSource(store::Database& db, const TextGridModel& model, const QString& table,
                        const QString& keyColumn) {
    ListSource source{&model, table, keyColumn, {}};
    const std::optional<store::TableDef> def = db.TableDefinition(table);
    if (!def) {
        source.table.clear();
    }
    for (int c = 0; c < model.ColumnCount(); ++c) {
        const QString& name = model.Column(c).name;
        const bool stored = def && !name.isEmpty() && def->field(name) != nullptr;
        source.fields.push_back(stored ? name : QString());
    }
    return source;
}

std::vector<int> ExportedColumns(const TextGridModel& model) {
    std::vector<int> columns;
    for (int c = 0; c < model.ColumnCount(); ++c) {
        if (model.Column(c).visible) {
            columns.push_back(c);
        }
    }
    return columns;
}

ExportResult ExportList(store::Database& db, const ListSource& source, const QString& path,
                        const ExportOptions& options, const ExportProgress& progress) {
    ExportResult result;
    const TextGridModel& model = *source.model;
    const std::vector<int> columns = ExportedColumns(model);
    const int total = model.RowCount();
    const auto failed = [&result](const QString& error) {
        result.status = ExportResult::Status::Failed;
        result.error = error;
        return result;
    };
    if (progress && !progress(0, total)) {
        result.status = ExportResult::Status::Cancelled;
        return result;
    }

    std::vector<QString> raw;
    const bool rawMode = options.mode == ExportMode::Raw && !source.table.isEmpty();
    if (rawMode) {
        try {
            raw = ReadRawRows(db, source, columns);
        } catch (const store::DbError& e) {
            return failed(QStringLiteral("The values could not be read from the logbook: %1")
                              .arg(e.description()));
        }
    }

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return failed(QStringLiteral("%1 could not be written: %2")
                          .arg(QFileInfo(path).fileName(), file.errorString()));
    }
    csv::Writer writer(file, {.byteOrderMark = options.byteOrderMark});
    QStringList header;
    for (int c : columns) {
        header << model.Column(c).caption;
    }
    writer.WriteRow(header);

    std::vector<int> rawColumns(columns.size());
    for (size_t i = 0; i < columns.size(); ++i) {
        rawColumns[i] = static_cast<int>(i);
    }
    for (int r = 0; r < total; ++r) {
        if (rawMode && !raw[r].isNull()) {
            writer.WriteRow(raw[r], TextGridModel::kSeparator, rawColumns);
            raw[r] = QString();
        } else {
            writer.WriteRow(model.RowText(r), TextGridModel::kSeparator, columns);
        }
        if (writer.Failed()) {
            break;
        }
        if (progress && (r + 1) % kProgressStep == 0 && !progress(r + 1, total)) {
            file.cancelWriting();
            result.status = ExportResult::Status::Cancelled;
            result.rows = r + 1;
            return result;
        }
    }
    if (!writer.Flush() || !file.commit()) {
        const QString why = file.errorString();
        file.cancelWriting();
        return failed(
            QStringLiteral("%1 could not be written: %2").arg(QFileInfo(path).fileName(), why));
    }
    if (progress) {
        progress(total, total);
    }
    result.rows = total;
    return result;
}

}  // namespace slipbook::exchange
