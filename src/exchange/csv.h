#pragma once

// Comma-separated text as spreadsheets read and write it: CRLF line ends, a field quoted when it
// holds the separator, a quote, CR or LF, its quotes doubled; UTF-8, with a byte-order mark for
// the spreadsheets that need one to read it as UTF-8.

#include <QIODevice>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <optional>

namespace slipbook::exchange::csv {

// A cell a spreadsheet would run as a formula (it starts with =, +, -, @, tab or CR) gets a
// leading apostrophe, unless it is a plain number ("-12.5", "+3", "-1,234.50"), which stays one.
QString Guarded(QStringView cell);
bool IsPlainNumber(QStringView text);

// The cell as a field of a line: quoted when it must be.
void AppendField(QString& line, QStringView cell, QChar delimiter = u',');

// Writes rows to a device, converting to UTF-8 in blocks.
class Writer {
public:
    struct Options {
        bool byteOrderMark = false;
        bool guardFormulas = true;
        QChar delimiter = u',';
    };
    Writer(QIODevice& out, Options options);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void WriteRow(const QStringList& cells);
    // Rows already joined by a separator (a text grid's), the cells taken in `columns` order.
    void WriteRow(QStringView rowText, QChar separator, const std::vector<int>& columns);
    // Writes what is held; false when the device refused (its errorString says why).
    bool Flush();
    bool Failed() const { return failed_; }

private:
    void EndRow();

    QIODevice& out_;
    Options options_;
    QString pending_;
    bool failed_ = false;
};

// Reading. Rows may have any number of fields. Invalid UTF-8 is refused with the line it is on
// (a file from an older program is saved again as UTF-8 rather than guessed at: a wrong guess
// would put wrong letters into the logbook without a word).
enum class Delimiter { Guess, Comma, Semicolon, Tab };

struct ReadOptions {
    Delimiter delimiter = Delimiter::Guess;
};

struct ReadResult {
    bool ok = true;
    QString error;  // in plain words, naming the line
    int rows = 0;
    QChar delimiter = u',';
    bool stopped = false;  // the row handler asked to stop
};

// The row's fields and the line it starts on (from 1). Return false to stop reading.
using RowHandler = std::function<bool(const QStringList& fields, int line)>;

// Streams the device in blocks: only a row at a time is held.
ReadResult Read(QIODevice& in, const RowHandler& onRow, ReadOptions options = {});
// For short texts (tests, pasted data).
ReadResult ReadAll(const QByteArray& data, std::vector<QStringList>& rows,
                   ReadOptions options = {});

// The separator a first line suggests: the one of tab, semicolon, comma found most often outside
// quotes; comma when none is.
QChar GuessDelimiter(QByteArrayView firstLine);

}  // namespace slipbook::exchange::csv
