#include "exchange/csv.h"

#include <QBuffer>
#include <QStringDecoder>

#include <csv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace slipbook::exchange::csv {

namespace {

constexpr qsizetype kBlockChars = 1 << 16;
constexpr qint64 kReadBlock = 1 << 16;

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

// Digits from `i`; returns how many.
qsizetype Digits(QStringView text, qsizetype& i) {
    const qsizetype start = i;
    while (i < text.size() && IsDigit(text[i])) {
        ++i;
    }
    return i - start;
}

}  // namespace

bool IsPlainNumber(QStringView text) {
    qsizetype i = 0;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        ++i;
    }
    const qsizetype lead = Digits(text, i);
    qsizetype whole = lead;
    // Thousands groups, as a list shows its numbers: "1,234,567".
    if (lead >= 1 && lead <= 3) {
        while (i + 3 < text.size() && text[i] == u',') {
            qsizetype j = i + 1;
            if (Digits(text, j) != 3) {
                return false;
            }
            i = j;
            whole += 3;
        }
    }
    qsizetype fraction = 0;
    if (i < text.size() && text[i] == u'.') {
        ++i;
        fraction = Digits(text, i);
    }
    if (whole + fraction == 0) {
        return false;
    }
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
            ++i;
        }
        if (Digits(text, i) == 0) {
            return false;
        }
    }
    return i == text.size();
}

QString Guarded(QStringView cell) {
    if (cell.isEmpty()) {
        return QString();
    }
    const QChar first = cell.front();
    const bool risky = first == u'=' || first == u'+' || first == u'-' || first == u'@' ||
                       first == u'\t' || first == u'\r';
    if (risky && !IsPlainNumber(cell)) {
        return QLatin1Char('\'') + cell.toString();
    }
    return cell.toString();
}

void AppendField(QString& line, QStringView cell, QChar delimiter) {
    bool quote = false;
    for (QChar c : cell) {
        if (c == delimiter || c == u'"' || c == u'\r' || c == u'\n') {
            quote = true;
            break;
        }
    }
    if (!quote) {
        line += cell;
        return;
    }
    line += u'"';
    for (QChar c : cell) {
        if (c == u'"') {
            line += u'"';
        }
        line += c;
    }
    line += u'"';
}

// ---- Writer

Writer::Writer(QIODevice& out, Options options) : out_(out), options_(options) {
    if (options_.byteOrderMark) {
        pending_ += QChar(0xFEFF);
    }
}

void Writer::WriteRow(const QStringList& cells) {
    for (qsizetype c = 0; c < cells.size(); ++c) {
        if (c > 0) {
            pending_ += options_.delimiter;
        }
        if (options_.guardFormulas) {
            AppendField(pending_, Guarded(cells[c]), options_.delimiter);
        } else {
            AppendField(pending_, cells[c], options_.delimiter);
        }
    }
    EndRow();
}

void Writer::WriteRow(QStringView rowText, QChar separator, const std::vector<int>& columns) {
    // The cells of the row, found once; a missing cell reads as empty.
    thread_local std::vector<QStringView> cells;
    cells.clear();
    qsizetype start = 0;
    for (;;) {
        const qsizetype end = rowText.indexOf(separator, start);
        if (end < 0) {
            cells.push_back(rowText.mid(start));
            break;
        }
        cells.push_back(rowText.mid(start, end - start));
        start = end + 1;
    }
    bool first = true;
    for (int column : columns) {
        if (!first) {
            pending_ += options_.delimiter;
        }
        first = false;
        const QStringView cell =
            column >= 0 && column < static_cast<int>(cells.size()) ? cells[column] : QStringView();
        if (options_.guardFormulas) {
            AppendField(pending_, Guarded(cell), options_.delimiter);
        } else {
            AppendField(pending_, cell, options_.delimiter);
        }
    }
    EndRow();
}

void Writer::EndRow() {
    pending_ += QLatin1String("\r\n");
    if (pending_.size() >= kBlockChars) {
        Flush();
    }
}

bool Writer::Flush() {
    if (failed_) {
        return false;
    }
    if (!pending_.isEmpty()) {
        const QByteArray bytes = pending_.toUtf8();
        pending_.clear();
        if (out_.write(bytes) != bytes.size()) {
            failed_ = true;
        }
    }
    return !failed_;
}

// ---- Reader

QChar GuessDelimiter(QByteArrayView firstLine) {
    std::array<int, 3> counts{};  // tab, semicolon, comma
    bool quoted = false;
    for (char c : firstLine) {
        if (c == '"') {
            quoted = !quoted;
        } else if (!quoted) {
            if (c == '\t') {
                ++counts[0];
            } else if (c == ';') {
                ++counts[1];
            } else if (c == ',') {
                ++counts[2];
            }
        }
    }
    if (counts[0] > 0 && counts[0] >= counts[1] && counts[0] >= counts[2]) {
        return u'\t';
    }
    if (counts[1] > counts[2]) {
        return u';';
    }
    return u',';
}

namespace {

struct ParseState {
    const RowHandler* onRow = nullptr;
    QStringList fields;
    QStringDecoder decoder{QStringDecoder::Utf8, QStringDecoder::Flag::Stateless};
    int recordLine = 1;     // where the row being read starts
    int linesInFields = 0;  // line breaks inside the quoted fields of that row
    int previousEnd = 0;    // the last line-end character
    int rows = 0;
    bool stopped = false;
    int badLine = 0;  // the first line with text that is not UTF-8
};

int LineBreaks(const char* text, size_t size) {
    int n = 0;
    for (size_t i = 0; i < size; ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == size || text[i + 1] != '\n'))) {
            ++n;
        }
    }
    return n;
}

void OnField(void* data, size_t size, void* user) {
    auto& s = *static_cast<ParseState*>(user);
    if (s.stopped || s.badLine > 0) {
        return;
    }
    const char* text = static_cast<const char*>(data);
    QString field = s.decoder.decode(QByteArrayView(text, static_cast<qsizetype>(size)));
    if (s.decoder.hasError()) {
        s.badLine = s.recordLine + s.linesInFields;
        s.decoder.resetState();
        return;
    }
    s.linesInFields += LineBreaks(text, size);
    s.fields << std::move(field);
    s.previousEnd = 0;
}

void OnRowEnd(int c, void* user) {
    auto& s = *static_cast<ParseState*>(user);
    const bool crlfTail = c == '\n' && s.previousEnd == '\r' && s.fields.isEmpty();
    s.previousEnd = c;
    if (crlfTail) {
        return;
    }
    if (!s.fields.isEmpty() && !s.stopped && s.badLine == 0) {
        ++s.rows;
        if (!(*s.onRow)(s.fields, s.recordLine)) {
            s.stopped = true;
        }
    }
    s.fields.clear();
    s.recordLine += 1 + s.linesInFields;
    s.linesInFields = 0;
}

int NoSpaces(unsigned char) {
    return 0;
}

struct ParserDeleter {
    void operator()(csv_parser* p) const {
        csv_free(p);
        delete p;
    }
};

}  // namespace

ReadResult Read(QIODevice& in, const RowHandler& onRow, ReadOptions options) {
    ReadResult result;
    std::unique_ptr<csv_parser, ParserDeleter> parser(new csv_parser);
    if (csv_init(parser.get(), CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL) != 0) {
        delete parser.release();
        result.ok = false;
        result.error = QStringLiteral("Out of memory");
        return result;
    }
    csv_parser* p = parser.get();
    // Spaces around a field are its own: the default would trim them.
    csv_set_space_func(p, NoSpaces);

    ParseState state;
    state.onRow = &onRow;
    int bytesLine = 1;  // the line at the start of the block being parsed
    bool first = true;
    QByteArray block;
    const auto failAt = [&result](int line, const QString& what) {
        result.ok = false;
        result.error = QStringLiteral("Line %1: %2").arg(line).arg(what);
    };
    const QString notUtf8 =
        QStringLiteral("the text is not UTF-8. Save the file as UTF-8 (CSV UTF-8) and try again.");

    for (;;) {
        block = in.read(kReadBlock);
        if (block.isEmpty()) {
            if (in.atEnd() || !in.isOpen()) {
                break;
            }
            result.ok = false;
            result.error = QStringLiteral("The file could not be read: %1").arg(in.errorString());
            return result;
        }
        QByteArrayView view(block);
        if (first) {
            first = false;
            if (view.startsWith("\xEF\xBB\xBF")) {
                view = view.sliced(3);
            }
            char delimiter = ',';
            switch (options.delimiter) {
                case Delimiter::Guess: {
                    const qsizetype end = view.indexOf('\n');
                    delimiter = GuessDelimiter(end < 0 ? view : view.first(end)).toLatin1();
                    break;
                }
                case Delimiter::Comma:
                    break;
                case Delimiter::Semicolon:
                    delimiter = ';';
                    break;
                case Delimiter::Tab:
                    delimiter = '\t';
                    break;
            }
            csv_set_delim(p, static_cast<unsigned char>(delimiter));
            result.delimiter = QLatin1Char(delimiter);
        }
        const size_t parsed =
            csv_parse(p, view.data(), static_cast<size_t>(view.size()), OnField, OnRowEnd, &state);
        if (state.badLine > 0) {
            failAt(state.badLine, notUtf8);
            result.rows = state.rows;
            return result;
        }
        if (parsed != static_cast<size_t>(view.size())) {
            failAt(bytesLine + LineBreaks(view.data(), parsed),
                   QStringLiteral("a quote stands where it can't (a quoted field must end at "
                                  "its closing quote)."));
            result.rows = state.rows;
            return result;
        }
        bytesLine += LineBreaks(view.data(), static_cast<size_t>(view.size()));
        if (state.stopped) {
            result.stopped = true;
            result.rows = state.rows;
            return result;
        }
    }
    if (csv_fini(p, OnField, OnRowEnd, &state) != 0) {
        failAt(state.recordLine + state.linesInFields,
               QStringLiteral("a quote opened here is never closed."));
    } else if (state.badLine > 0) {
        failAt(state.badLine, notUtf8);
    }
    result.stopped = state.stopped;
    result.rows = state.rows;
    return result;
}

ReadResult ReadAll(const QByteArray& data, std::vector<QStringList>& rows, ReadOptions options) {
    QByteArray copy = data;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return Read(
        buffer,
        [&rows](const QStringList& fields, int) {
            rows.push_back(fields);
            return true;
        },
        options);
}

}  // namespace slipbook::exchange::csv
