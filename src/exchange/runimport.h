#pragma once

// Time slips read from a CSV file into the logbook: the file's columns matched to run fields,
// each row checked as the run window checks a run, and the rows that pass saved together.
//
// A file is read twice, streamed: once to check every row and count the runs already in the
// logbook, once to save. Neither pass holds more than a row of the file and the rows refused.

#include "exchange/csv.h"
#include "store/database.h"

#include <QIODevice>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace slipbook::exchange {

// A run field a file's column can fill.
struct ImportField {
    QString column;   // of tblRuns
    QString caption;  // as the run list heads it
};

// The fields an import fills: every value of the run window that is typed in, under the run
// list's captions (the custom fields under their current names). Not the event and the car,
// which the import is given, nor the air figures and the intervals, which are worked out from
// the weather and the marks as a save works them out.
std::vector<ImportField> ImportFields(store::Database& db);

// The first rows of a file, for the preview and the matching.
struct ImportPreview {
    bool ok = true;
    QString error;  // in plain words, naming the line
    std::vector<QStringList> rows;
    QChar delimiter = u',';
    int columns = 0;  // the most fields of any row read
};
ImportPreview ReadPreview(QIODevice& in, int rowCount, csv::Delimiter delimiter);

// Whether the first row names the columns: some cell of it is a field's caption or name, or no
// cell of it is a number.
bool LooksLikeHeader(const QStringList& firstRow, const std::vector<ImportField>& fields);

// The field a column heading names ("1/4 ET", "i14Mile_et", "Reaction Time"); empty for none.
QString FieldForHeading(const QString& heading, const std::vector<ImportField>& fields);

// A file's layout: its headings when it has a heading row, else its number of columns. Files of
// one layout are matched the same way.
QString LayoutKey(const QStringList& firstRow, bool headerRow, int columns);

// The run column of each file column; empty leaves the column out.
using ColumnMapping = std::vector<QString>;

// The matching last used for a layout, and keeping it; an unknown layout gives nothing.
ColumnMapping RememberedMapping(store::Database& db, const QString& layoutKey);
void RememberMapping(store::Database& db, const QString& layoutKey, const ColumnMapping& mapping);
// A matching guessed from the headings.
ColumnMapping GuessMapping(const QStringList& headings, const std::vector<ImportField>& fields);

struct ImportPlan {
    qint64 carId = 0;
    qint64 eventId = 0;
    bool headerRow = true;
    ColumnMapping mapping;
    csv::Delimiter delimiter = csv::Delimiter::Guess;
    // An opponent not yet in the list is added, as the run window offers; else the row is
    // refused.
    bool addOpponents = true;
};

struct RejectedRow {
    int line = 0;  // where the row starts in the file, from 1
    QString reason;
    QStringList cells;
};

// Rows done and rows in all (an estimate from the bytes read); false cancels.
using ImportProgress = std::function<bool(qint64 done, qint64 total)>;

// The first pass: every row checked, nothing written.
struct ImportCheck {
    enum class Status { Done, Cancelled, Failed };
    Status status = Status::Done;
    QString error;  // Failed: the file could not be read
    int rows = 0;   // data rows, the heading row not counted
    int passing = 0;
    int duplicates = 0;  // passing rows whose run the car already has, or an earlier row gave
    std::vector<RejectedRow> rejects;
};
ImportCheck CheckImport(store::Database& db, QIODevice& in, const ImportPlan& plan,
                        const ImportProgress& progress = {});

enum class DuplicateRule { Import, Skip };

struct ImportResult {
    enum class Status { Done, Cancelled, Failed };
    Status status = Status::Done;
    QString error;  // Failed: why, and that nothing was imported
    int imported = 0;
    int skipped = 0;  // duplicates left out
    std::vector<RejectedRow> rejects;
    bool maintenanceDue = false;  // open items of the car came due
};

// The second pass: the passing rows saved in one transaction, with the run numbers, the car's
// tune-up and the maintenance counts of a save from the run window. A cancel or a failure
// leaves the logbook as it was.
ImportResult ImportRuns(store::Database& db, QIODevice& in, const ImportPlan& plan,
                        DuplicateRule duplicates, const ImportProgress& progress = {});

// The refused rows as a CSV file: the file's heading row when it had one, then each row as it
// was, with its line and the reason after it.
bool WriteRejects(const QString& path, const QStringList& headings,
                  const std::vector<RejectedRow>& rejects, QString* error);

}  // namespace slipbook::exchange
