#pragma once

// A list of the program written to a CSV file: its rows in the order shown, its visible columns
// under their captions. Either as shown (the cells' texts) or raw (the stored values in plain
// form: numbers at full precision, ISO dates and times, true/false, money to the cent and
// beyond), read for the whole list in one statement.

#include "common/textgrid.h"
#include "store/database.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace slipbook::exchange {

enum class ExportMode { Shown, Raw };

// A list and where its rows are kept.
struct ListSource {
    const TextGridModel* model = nullptr;
    QString table;      // the table of the rows; empty: raw is as shown
    QString keyColumn;  // the table's key, whose value the model's first cell holds
    // Per model column, the stored column raw values come from; an empty name (a looked-up
    // name, a figure worked out for the list) writes the shown text.
    std::vector<QString> fields;
};

// A source whose columns' names are read as the table's columns where the table has them.
ListSource StoredSource(store::Database& db, const TextGridModel& model, const QString& table,
                        const QString& keyColumn);

// The columns a list exports: the visible ones, in order.
std::vector<int> ExportedColumns(const TextGridModel& model);

struct ExportOptions {
    ExportMode mode = ExportMode::Shown;
    bool byteOrderMark = false;
};

// Rows written and rows in all; false cancels the export.
using ExportProgress = std::function<bool(int done, int total)>;

struct ExportResult {
    enum class Status { Done, Cancelled, Failed };
    Status status = Status::Done;
    QString error;  // for Failed, in plain words
    int rows = 0;
};

// Writes beside the target and puts the file in place at the end, so a cancelled or failed
// export leaves the target as it was.
ExportResult ExportList(store::Database& db, const ListSource& source, const QString& path,
                        const ExportOptions& options, const ExportProgress& progress = {});

// A stored value as raw text.
QString RawText(const QVariant& value, store::ColumnKind kind);
// A double in plain decimal form with as many digits as it takes to read back the same value.
QString PlainNumber(double value);

}  // namespace slipbook::exchange
