#include "store/jetsql.h"

#include "store/dberror.h"
#include "store/jetdate.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace slipbook::store::jet {

namespace {

QString Source() {
    return QStringLiteral("Slipbook.Database");
}

[[noreturn]] void ThrowSyntax(const QString& description) {
    throw DbError(err::Syntax, Source(), description);
}

[[noreturn]] void ThrowMismatch() {
    throw DbError(err::TypeMismatch, Source(),
                  QStringLiteral("Data type mismatch in criteria expression."));
}

enum class Tok { Word, Bracket, String, Date, Number, Op, Punct };

struct Token {
    Tok type = Tok::Punct;
    QString text;   // as written
    QString value;  // the name of a word or bracket, the content of a string or date
    QString pre;    // blanks in front
    QString out;    // what is emitted
    int depth = 0;  // parentheses open around it; '(' and its ')' sit outside
    bool removed = false;
};

using Tokens = std::vector<Token>;

bool IsWordChar(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

QString QuoteText(const QString& value) {
    QString s = value;
    s.replace(u'\'', QStringLiteral("''"));
    return u'\'' + s + u'\'';
}

QString QuoteName(const QString& name) {
    QString s = name;
    s.replace(u'"', QStringLiteral("\"\""));
    return u'"' + s + u'"';
}

// Reads a quoted run starting at `i` (on the opening quote); a doubled quote stands for one.
// Returns the content and leaves `i` after the closing quote.
std::optional<QString> ReadQuoted(const QString& s, qsizetype& i) {
    const QChar q = s[i];
    QString content;
    for (qsizetype j = i + 1; j < s.size(); ++j) {
        if (s[j] != q) {
            content += s[j];
            continue;
        }
        if (j + 1 < s.size() && s[j + 1] == q) {
            content += q;
            ++j;
            continue;
        }
        i = j + 1;
        return content;
    }
    return std::nullopt;
}

Tokens Tokenize(const QString& s) {
    Tokens out;
    int depth = 0;
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (true) {
        const qsizetype blankStart = i;
        while (i < n && s[i].isSpace()) {
            ++i;
        }
        if (i >= n) {
            break;
        }
        Token t;
        t.pre = s.mid(blankStart, i - blankStart);
        const qsizetype start = i;
        const QChar c = s[i];
        if (c == u'\'' || c == u'"') {
            const auto content = ReadQuoted(s, i);
            if (!content) {
                ThrowSyntax(QStringLiteral("Syntax error in string in query expression '%1'.")
                                .arg(s.mid(start)));
            }
            t.type = Tok::String;
            t.value = *content;
        } else if (c == u'[') {
            const qsizetype close = s.indexOf(u']', i + 1);
            if (close < 0) {
                ThrowSyntax(QStringLiteral("Invalid bracketing of name '%1'.").arg(s.mid(start)));
            }
            t.type = Tok::Bracket;
            t.value = s.mid(i + 1, close - i - 1);
            i = close + 1;
        } else if (c == u'#') {
            const qsizetype close = s.indexOf(u'#', i + 1);
            if (close < 0) {
                ThrowSyntax(QStringLiteral("Syntax error in date in query expression '%1'.")
                                .arg(s.mid(start)));
            }
            t.type = Tok::Date;
            t.value = s.mid(i + 1, close - i - 1);
            i = close + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && s[i + 1].isDigit() &&
                                   (out.empty() || (out.back().type != Tok::Word &&
                                                    out.back().type != Tok::Bracket)))) {
            while (i < n && s[i].isDigit()) {
                ++i;
            }
            if (i < n && s[i] == u'.') {
                ++i;
                while (i < n && s[i].isDigit()) {
                    ++i;
                }
            }
            if (i + 1 < n && (s[i] == u'e' || s[i] == u'E')) {
                qsizetype j = i + 1;
                if (j < n && (s[j] == u'+' || s[j] == u'-')) {
                    ++j;
                }
                if (j < n && s[j].isDigit()) {
                    i = j;
                    while (i < n && s[i].isDigit()) {
                        ++i;
                    }
                }
            }
            t.type = Tok::Number;
            // Digits running into letters make a name ("14MileView").
            if (i < n && IsWordChar(s[i]) && !s.mid(start, i - start).contains(u'.')) {
                while (i < n && IsWordChar(s[i])) {
                    ++i;
                }
                t.type = Tok::Word;
            }
        } else if (IsWordChar(c)) {
            while (i < n && IsWordChar(s[i])) {
                ++i;
            }
            t.type = Tok::Word;
        } else if (c == u'<' || c == u'>' || c == u'!' || c == u'|') {
            ++i;
            if (i < n &&
                ((c == u'<' && (s[i] == u'>' || s[i] == u'=')) || (c == u'>' && s[i] == u'=') ||
                 (c == u'!' && s[i] == u'=') || (c == u'|' && s[i] == u'|'))) {
                ++i;
            }
            t.type = (c == u'!' && i - start == 1) ? Tok::Punct : Tok::Op;
        } else if (QStringLiteral("=&+-*/\\^%").contains(c)) {
            ++i;
            t.type = Tok::Op;
        } else {
            ++i;
            t.type = Tok::Punct;
        }
        t.text = s.mid(start, i - start);
        if (t.type == Tok::Word) {
            t.value = t.text;
        }
        t.out = t.text;
        if (t.type == Tok::Punct && c == u')') {
            --depth;
        }
        t.depth = depth;
        if (t.type == Tok::Punct && c == u'(') {
            ++depth;
        }
        out.push_back(std::move(t));
    }
    return out;
}

bool IsWord(const Token& t, QLatin1StringView word) {
    return t.type == Tok::Word && t.value.compare(word, Qt::CaseInsensitive) == 0;
}

bool IsPunct(const Token& t, char16_t c) {
    return (t.type == Tok::Punct || t.type == Tok::Op) && t.text.size() == 1 && t.text[0] == c;
}

bool IsName(const Token& t) {
    return t.type == Tok::Word || t.type == Tok::Bracket;
}

bool IsQualifier(const Token& t) {
    return IsPunct(t, u'.') || IsPunct(t, u'!');
}

// Index of the first token from `from` that is `word` at parenthesis depth `depth`.
qsizetype FindWord(const Tokens& t, qsizetype from, QLatin1StringView word, int depth = 0) {
    for (qsizetype i = from; i < qsizetype(t.size()); ++i) {
        if (t[i].depth == depth && IsWord(t[i], word)) {
            return i;
        }
    }
    return -1;
}

// Index of the ')' that closes the '(' at `open`, or -1.
qsizetype Closing(const Tokens& t, qsizetype open) {
    for (qsizetype i = open + 1; i < qsizetype(t.size()); ++i) {
        if (t[i].depth == t[open].depth && IsPunct(t[i], u')')) {
            return i;
        }
    }
    return -1;
}

// Splits [begin, end) at the commas of depth `depth`.
std::vector<std::pair<qsizetype, qsizetype>> SplitAtCommas(const Tokens& t, qsizetype begin,
                                                           qsizetype end, int depth) {
    std::vector<std::pair<qsizetype, qsizetype>> parts;
    qsizetype start = begin;
    for (qsizetype i = begin; i < end; ++i) {
        if (t[i].depth == depth && IsPunct(t[i], u',')) {
            parts.emplace_back(start, i);
            start = i + 1;
        }
    }
    parts.emplace_back(start, end);
    return parts;
}

// The name at `i`, and past a qualifier the last part of it ("t.c" -> "c").
QString NameAt(const Tokens& t, qsizetype i, qsizetype end) {
    if (i < 0 || i >= end || !IsName(t[i])) {
        return QString();
    }
    QString name = t[i].value;
    while (i + 2 < end && IsQualifier(t[i + 1]) && IsName(t[i + 2])) {
        i += 2;
        name = t[i].value;
    }
    return name;
}

QString TableAt(const Tokens& t, qsizetype i) {
    return i >= 0 && i < qsizetype(t.size()) && IsName(t[i]) ? t[i].value : QString();
}

void Lex(Tokens& t) {
    for (qsizetype i = 0; i < qsizetype(t.size()); ++i) {
        Token& k = t[i];
        const bool qualified = (i > 0 && IsQualifier(t[i - 1])) ||
                               (i + 1 < qsizetype(t.size()) && IsQualifier(t[i + 1]));
        switch (k.type) {
            case Tok::String:
                k.out = QuoteText(k.value);
                break;
            case Tok::Bracket:
                k.out = QuoteName(k.value);
                break;
            case Tok::Date: {
                const auto when = ParseJetDateText(k.value);
                if (!when) {
                    ThrowSyntax(QStringLiteral("Syntax error in date in query expression '%1'.")
                                    .arg(k.text));
                }
                k.out = QuoteText(DateTimeToStorage(*when));
                break;
            }
            case Tok::Word:
                // The engine's true is -1, which ORDER BY on a flag relies on. Yes and No are
                // its other names for the two (a filter row may hold either).
                if (!qualified &&
                    (IsWord(k, QLatin1StringView("True")) || IsWord(k, QLatin1StringView("Yes")))) {
                    k.out = QStringLiteral("-1");
                } else if (!qualified && (IsWord(k, QLatin1StringView("False")) ||
                                          IsWord(k, QLatin1StringView("No")))) {
                    k.out = QStringLiteral("0");
                }
                break;
            case Tok::Op:
                if (k.text == QLatin1String("&")) {
                    k.out = QStringLiteral("||");
                }
                break;
            case Tok::Punct:
                if (k.text == QLatin1String("!") && i > 0 && IsName(t[i - 1]) &&
                    i + 1 < qsizetype(t.size()) && IsName(t[i + 1])) {
                    k.out = QStringLiteral(".");
                }
                break;
            case Tok::Number:
                break;
        }
    }
}

// Maps the engine's wildcards onto LIKE's; characters that are wildcards only to SQLite are
// escaped. Returns the pattern and whether it needs an ESCAPE clause.
std::pair<QString, bool> LikePattern(const QString& jet) {
    QString out;
    bool escaped = false;
    auto literal = [&](QChar c) {
        if (c == u'%' || c == u'_' || c == u'\\') {
            out += u'\\';
            escaped = true;
        }
        out += c;
    };
    for (qsizetype i = 0; i < jet.size(); ++i) {
        const QChar c = jet[i];
        if (c == u'*') {
            out += u'%';
        } else if (c == u'?') {
            out += u'_';
        } else if (c == u'[' && i + 2 < jet.size() && jet[i + 2] == u']') {
            // "[*]" is how the engine writes a wildcard character as itself.
            literal(jet[i + 1]);
            i += 2;
        } else {
            literal(c);
        }
    }
    return {out, escaped};
}

void RewriteLike(Tokens& t) {
    for (qsizetype i = 0; i + 1 < qsizetype(t.size()); ++i) {
        if (IsWord(t[i], QLatin1StringView("LIKE")) && t[i + 1].type == Tok::String) {
            const auto [pattern, escaped] = LikePattern(t[i + 1].value);
            t[i + 1].out = QuoteText(pattern);
            if (escaped) {
                t[i + 1].out += QStringLiteral(" ESCAPE '\\'");
            }
        }
    }
}

enum class Affinity { Unknown, Text, Number, Boolean, Date };

Affinity AffinityOf(const QString& declType) {
    const QString d = declType.toUpper();
    if (d.trimmed().isEmpty() || d.contains(QLatin1String("BLOB"))) {
        return Affinity::Unknown;
    }
    if (d.contains(QLatin1String("CHAR")) || d.contains(QLatin1String("TEXT")) ||
        d.contains(QLatin1String("CLOB"))) {
        return Affinity::Text;
    }
    if (d.contains(QLatin1String("DATE")) || d.contains(QLatin1String("TIME"))) {
        return Affinity::Date;
    }
    if (d.contains(QLatin1String("BOOL"))) {
        return Affinity::Boolean;
    }
    return Affinity::Number;
}

// A plain decimal number, blanks and thousands separators allowed, in SQLite's spelling.
std::optional<QString> PlainNumber(const QString& text) {
    static const QRegularExpression re(
        QStringLiteral(R"(^([+-]?)(\d[\d,]*)?(?:\.(\d*))?(?:[eE]([+-]?\d+))?$)"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch() || (m.capturedLength(2) == 0 && m.capturedLength(3) == 0)) {
        return std::nullopt;
    }
    QString number = m.captured(1) == QLatin1String("-") ? QStringLiteral("-") : QString();
    const QString whole = m.captured(2).remove(u',');
    number += whole.isEmpty() ? QStringLiteral("0") : whole;
    if (m.capturedLength(3) > 0) {
        number += u'.' + m.captured(3);
    }
    if (m.capturedLength(4) > 0) {
        number += u'e' + m.captured(4);
    }
    return number;
}

// The engine converts a text assigned to a column of another type; SQLite would keep the text.
void CoerceLiteral(const QString& declType, Token& literal) {
    const Affinity affinity = AffinityOf(declType);
    if (affinity == Affinity::Unknown || affinity == Affinity::Text) {
        return;
    }
    const QString value = literal.value.trimmed();
    if (value.isEmpty()) {
        literal.out = QStringLiteral("NULL");
        return;
    }
    const auto number = PlainNumber(value);
    switch (affinity) {
        case Affinity::Date:
            if (const auto when = ParseJetDateText(value)) {
                literal.out = QuoteText(DateTimeToStorage(*when));
                return;
            }
            if (number && number->toDouble() >= 0) {
                // A number is a count of days from day zero.
                const qint64 ms = std::llround(number->toDouble() * 86400000.0);
                literal.out = QuoteText(
                    DateTimeToStorage(QDateTime(DayZero(), QTime(0, 0), Qt::UTC).addMSecs(ms)));
                return;
            }
            break;
        case Affinity::Boolean:
            if (value.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
                literal.out = QStringLiteral("-1");
                return;
            }
            if (value.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
                literal.out = QStringLiteral("0");
                return;
            }
            if (number) {
                literal.out = number->toDouble() != 0 ? QStringLiteral("-1") : QStringLiteral("0");
                return;
            }
            break;
        default:
            if (number) {
                literal.out = *number;
                return;
            }
            break;
    }
    ThrowMismatch();
}

std::optional<ColumnDecl> FindColumn(const std::vector<ColumnDecl>& columns, const QString& name) {
    for (const auto& c : columns) {
        if (c.name.compare(name, Qt::CaseInsensitive) == 0) {
            return c;
        }
    }
    return std::nullopt;
}

void CoerceEntry(Tokens& t, std::pair<qsizetype, qsizetype> range,
                 const std::optional<ColumnDecl>& column) {
    if (column && range.second - range.first == 1 && t[range.first].type == Tok::String) {
        CoerceLiteral(column->declType, t[range.first]);
    }
}

void TranslateSelect(Tokens& t, Translated& r) {
    r.kind = StatementKind::Select;
    const qsizetype from = FindWord(t, 1, QLatin1StringView("FROM"));
    const qsizetype into = FindWord(t, 1, QLatin1StringView("INTO"));
    if (into > 0 && (from < 0 || into < from) && into + 1 < qsizetype(t.size()) &&
        IsName(t[into + 1])) {
        r.kind = StatementKind::SelectInto;
        r.intoTable = t[into + 1].value;
        t[into].removed = true;
        t[into + 1].removed = true;
    }
    if (from > 0) {
        r.baseTable = TableAt(t, from + 1);
    }
}

void TranslateInsert(Tokens& t, Translated& r, const SchemaLookup* schema) {
    r.kind = StatementKind::Insert;
    if (t.size() < 3 || !IsWord(t[1], QLatin1StringView("INTO"))) {
        return;
    }
    r.baseTable = TableAt(t, 2);
    if (!schema || r.baseTable.isEmpty()) {
        return;
    }
    const auto target = schema->columns(r.baseTable);
    if (!target) {
        return;
    }
    const qsizetype n = t.size();
    qsizetype i = 3;
    std::vector<std::optional<ColumnDecl>> columns;
    const bool listed = i < n && IsPunct(t[i], u'(');
    if (listed) {
        const qsizetype close = Closing(t, i);
        if (close < 0) {
            return;
        }
        for (const auto& part : SplitAtCommas(t, i + 1, close, t[i].depth + 1)) {
            columns.push_back(FindColumn(*target, NameAt(t, part.first, part.second)));
        }
        i = close + 1;
    } else {
        for (const auto& c : *target) {
            columns.emplace_back(c);
        }
    }
    if (i >= n) {
        return;
    }

    if (IsWord(t[i], QLatin1StringView("VALUES"))) {
        for (qsizetype open = i + 1; open < n; ++open) {
            if (t[open].depth != 0 || !IsPunct(t[open], u'(')) {
                continue;
            }
            const qsizetype close = Closing(t, open);
            if (close < 0) {
                return;
            }
            const auto parts = SplitAtCommas(t, open + 1, close, 1);
            if (parts.size() == columns.size()) {
                for (size_t k = 0; k < parts.size(); ++k) {
                    CoerceEntry(t, parts[k], columns[k]);
                }
            }
            open = close;
        }
        return;
    }

    // SELECT * pairs columns by position in SQLite but by name in the engine: name them.
    if (listed || !IsWord(t[i], QLatin1StringView("SELECT")) || i + 3 >= n) {
        return;
    }
    qsizetype star = i + 1;
    while (star + 1 < n && IsName(t[star]) && IsQualifier(t[star + 1])) {
        star += 2;
    }
    if (!IsPunct(t[star], u'*') || star + 2 >= n ||
        !IsWord(t[star + 1], QLatin1StringView("FROM"))) {
        return;
    }
    const auto source = schema->columns(TableAt(t, star + 2));
    if (!source) {
        return;
    }
    QStringList names;
    for (const auto& c : *target) {
        if (FindColumn(*source, c.name)) {
            names << QuoteName(c.name);
        }
    }
    if (names.isEmpty()) {
        return;
    }
    const QString list = names.join(u',');
    t[2].out += QStringLiteral(" (") + list + u')';
    for (qsizetype k = i + 1; k < star; ++k) {
        t[k].removed = true;
    }
    t[star].out = list;
    if (star > i + 1) {
        t[star].pre = t[i + 1].pre;
    }
}

void TranslateUpdate(Tokens& t, Translated& r, const SchemaLookup* schema) {
    r.kind = StatementKind::Update;
    r.baseTable = TableAt(t, 1);
    const qsizetype set = FindWord(t, 1, QLatin1StringView("SET"));
    if (set < 0) {
        return;
    }
    qsizetype end = FindWord(t, set + 1, QLatin1StringView("WHERE"));
    if (end < 0) {
        end = t.size();
    }
    std::optional<std::vector<ColumnDecl>> target;
    if (schema && !r.baseTable.isEmpty()) {
        target = schema->columns(r.baseTable);
    }
    for (const auto& [begin, stop] : SplitAtCommas(t, set + 1, end, 0)) {
        qsizetype eq = begin;
        while (eq < stop && !IsPunct(t[eq], u'=')) {
            ++eq;
        }
        if (eq == stop) {
            continue;
        }
        // SQLite takes no table before the column it sets ("SET t.c = 1").
        if (eq - begin == 3 && IsName(t[begin]) && IsQualifier(t[begin + 1]) &&
            IsName(t[begin + 2])) {
            t[begin + 2].pre = t[begin].pre;
            t[begin].removed = true;
            t[begin + 1].removed = true;
        }
        if (target) {
            CoerceEntry(t, {eq + 1, stop}, FindColumn(*target, NameAt(t, begin, eq)));
        }
    }
}

void TranslateDelete(Tokens& t, Translated& r) {
    r.kind = StatementKind::Delete;
    const qsizetype from = FindWord(t, 1, QLatin1StringView("FROM"));
    if (from < 0) {
        return;
    }
    // "DELETE * FROM t" and "DELETE t.* FROM t": SQLite takes no column part.
    for (qsizetype i = 1; i < from; ++i) {
        if (IsPunct(t[i], u'*') || IsName(t[i]) || IsQualifier(t[i])) {
            t[i].removed = true;
        }
    }
    r.baseTable = TableAt(t, from + 1);
}

bool IsConstraintWord(const Token& t) {
    static const char* const words[] = {"CONSTRAINT", "PRIMARY", "NOT",   "NULL",
                                        "UNIQUE",     "DEFAULT", "CHECK", "REFERENCES"};
    for (const char* w : words) {
        if (IsWord(t, QLatin1StringView(w))) {
            return true;
        }
    }
    return false;
}

bool IsAutoIncrement(const QString& mapped) {
    return mapped.startsWith(QLatin1String("INTEGER PRIMARY KEY"), Qt::CaseInsensitive);
}

// Maps the type of the column definition in [begin, end) (begin is the column's name).
// Returns whether the column became the table's autoincrement key.
bool TranslateColumnDef(Tokens& t, qsizetype begin, qsizetype end) {
    qsizetype typeAt = begin + 1;
    if (typeAt >= end || t[typeAt].type != Tok::Word || IsConstraintWord(t[typeAt])) {
        return false;
    }
    qsizetype typeEnd = typeAt + 1;
    QString typeText = t[typeAt].text;
    if (typeEnd < end && IsPunct(t[typeEnd], u'(')) {
        const qsizetype close = Closing(t, typeEnd);
        if (close < 0 || close >= end) {
            return false;
        }
        for (qsizetype k = typeEnd; k <= close; ++k) {
            typeText += t[k].text;
        }
        typeEnd = close + 1;
    }
    // The engine's DDL knows no COLLATE: a type with one is SQLite's already ("TEXT" would
    // otherwise become the engine's 255-character text).
    if (typeEnd < end && IsWord(t[typeEnd], QLatin1StringView("COLLATE"))) {
        return false;
    }
    const QString mapped = MapDdlType(typeText);
    if (mapped != typeText) {
        t[typeAt].out = mapped;
        for (qsizetype k = typeAt + 1; k < typeEnd; ++k) {
            t[k].removed = true;
        }
    }
    if (!IsAutoIncrement(mapped)) {
        return false;
    }
    // The mapped type already makes the key; a second PRIMARY KEY would be refused.
    for (qsizetype k = typeEnd; k < end; ++k) {
        if (IsWord(t[k], QLatin1StringView("PRIMARY")) && k + 1 < end &&
            IsWord(t[k + 1], QLatin1StringView("KEY"))) {
            qsizetype first = k;
            if (k >= typeEnd + 2 && IsWord(t[k - 2], QLatin1StringView("CONSTRAINT"))) {
                first = k - 2;
            }
            for (qsizetype m = first; m <= k + 1; ++m) {
                t[m].removed = true;
            }
            break;
        }
    }
    return true;
}

void TranslateCreateTable(Tokens& t, Translated& r) {
    r.kind = StatementKind::CreateTable;
    r.baseTable = TableAt(t, 2);
    if (t.size() < 4 || !IsPunct(t[3], u'(')) {
        return;
    }
    const qsizetype close = Closing(t, 3);
    if (close < 0) {
        return;
    }
    const auto parts = SplitAtCommas(t, 4, close, 1);
    QString counter;
    for (const auto& [begin, end] : parts) {
        if (begin < end && !IsConstraintWord(t[begin]) &&
            !IsWord(t[begin], QLatin1StringView("FOREIGN")) && TranslateColumnDef(t, begin, end)) {
            counter = t[begin].value;
        }
    }
    if (counter.isEmpty()) {
        return;
    }
    // A table key on the autoincrement column alone is already there.
    for (size_t p = 0; p < parts.size(); ++p) {
        const auto [begin, end] = parts[p];
        qsizetype k = begin;
        if (k < end && IsWord(t[k], QLatin1StringView("CONSTRAINT"))) {
            k += 2;
        }
        if (k + 4 < end && IsWord(t[k], QLatin1StringView("PRIMARY")) &&
            IsWord(t[k + 1], QLatin1StringView("KEY")) && IsPunct(t[k + 2], u'(') &&
            IsName(t[k + 3]) && t[k + 3].value.compare(counter, Qt::CaseInsensitive) == 0 &&
            IsPunct(t[k + 4], u')') && k + 5 == end) {
            const qsizetype first = p > 0 ? begin - 1 : begin;
            const qsizetype last = p > 0 ? end : std::min<qsizetype>(end + 1, close);
            for (qsizetype m = first; m < last; ++m) {
                t[m].removed = true;
            }
        }
    }
}

void TranslateAlterTable(Tokens& t, Translated& r) {
    r.kind = StatementKind::AlterTable;
    r.baseTable = TableAt(t, 2);
    if (t.size() < 5 || !IsWord(t[3], QLatin1StringView("ADD"))) {
        return;
    }
    qsizetype column = 4;
    if (IsWord(t[column], QLatin1StringView("COLUMN"))) {
        ++column;
    } else if (IsConstraintWord(t[column]) || IsWord(t[column], QLatin1StringView("FOREIGN"))) {
        return;
    }
    TranslateColumnDef(t, column, t.size());
}

void TranslateCreateIndex(Tokens& t, Translated& r) {
    r.kind = StatementKind::CreateIndex;
    const qsizetype on = FindWord(t, 1, QLatin1StringView("ON"));
    if (on < 0) {
        return;
    }
    r.baseTable = TableAt(t, on + 1);
    // The engine's index options (WITH PRIMARY, DISALLOW NULL, ...) have no SQLite form.
    const qsizetype with = FindWord(t, on + 1, QLatin1StringView("WITH"));
    for (qsizetype k = with; k >= 0 && k < qsizetype(t.size()); ++k) {
        t[k].removed = true;
    }
}

void TranslateDropIndex(Tokens& t, Translated& r) {
    r.kind = StatementKind::DropIndex;
    const qsizetype on = FindWord(t, 1, QLatin1StringView("ON"));
    if (on < 0) {
        return;
    }
    r.baseTable = TableAt(t, on + 1);
    for (qsizetype k = on; k < qsizetype(t.size()); ++k) {
        t[k].removed = true;
    }
}

QString Emit(const Tokens& t) {
    QString s;
    for (const Token& k : t) {
        if (k.removed || k.out.isEmpty()) {
            continue;
        }
        if (!s.isEmpty()) {
            QString pre = k.pre;
            // Keep "x - -1" from turning into a comment, and words from running together.
            if (pre.isEmpty() && ((s.back() == u'-' && k.out.front() == u'-') ||
                                  (IsWordChar(s.back()) && IsWordChar(k.out.front())))) {
                pre = QStringLiteral(" ");
            }
            s += pre;
        }
        s += k.out;
    }
    return s;
}

// Walks SQL text outside literals, names in quotes or brackets, and comments.
class Scanner {
public:
    explicit Scanner(const QString& text) : s_(text) {}

    // Skips a literal or comment at `i`; returns false when there is none.
    bool SkipOpaque(qsizetype& i, bool& comment) const {
        comment = false;
        const QChar c = s_[i];
        if (c == u'\'' || c == u'"' || c == u'`') {
            const qsizetype start = i;
            if (!ReadQuoted(s_, i)) {
                i = s_.size();
            }
            return i > start;
        }
        if (c == u'[') {
            const qsizetype close = s_.indexOf(u']', i + 1);
            i = close < 0 ? s_.size() : close + 1;
            return true;
        }
        if (c == u'-' && i + 1 < s_.size() && s_[i + 1] == u'-') {
            const qsizetype eol = s_.indexOf(u'\n', i);
            i = eol < 0 ? s_.size() : eol;
            comment = true;
            return true;
        }
        if (c == u'/' && i + 1 < s_.size() && s_[i + 1] == u'*') {
            const qsizetype close = s_.indexOf(QLatin1String("*/"), i + 2);
            i = close < 0 ? s_.size() : close + 2;
            comment = true;
            return true;
        }
        return false;
    }

private:
    const QString& s_;
};

}  // namespace

QString MapDdlType(const QString& jetType) {
    static const QRegularExpression re(
        QStringLiteral(R"(^([A-Za-z_][A-Za-z0-9_]*)\s*(?:\(\s*([^)]*?)\s*\))?$)"));
    const QString trimmed = jetType.trimmed();
    const auto m = re.match(trimmed);
    if (!m.hasMatch()) {
        return jetType;
    }
    const QString name = m.captured(1).toLower();
    const QString size = m.captured(2);
    const bool hasSize = m.capturedLength(2) > 0;
    auto is = [&](std::initializer_list<const char*> names) {
        for (const char* n : names) {
            if (name == QLatin1String(n)) {
                return true;
            }
        }
        return false;
    };
    if (is({"counter", "autoincrement", "identity"})) {
        return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    }
    if (!hasSize) {
        if (is({"number", "double", "float", "float8", "ieeedouble", "single", "float4",
                "ieeesingle", "real"})) {
            return QStringLiteral("REAL");
        }
        if (is({"integer", "long", "int", "integer4", "short", "smallint", "integer2", "byte",
                "tinyint", "integer1"})) {
            return QStringLiteral("INTEGER");
        }
        if (is({"yesno", "bit", "logical", "logical1", "boolean"})) {
            return QStringLiteral("BOOLEAN");
        }
        if (is({"memo", "longtext", "longchar", "note", "ntext"})) {
            return QStringLiteral("TEXT COLLATE NOCASE");
        }
        if (is({"datetime", "date", "time", "timestamp"})) {
            return QStringLiteral("DATETIME");
        }
        if (is({"currency", "money"})) {
            return QStringLiteral("CURRENCY");
        }
    }
    if (is({"text", "char", "varchar", "character", "string", "alphanumeric", "nchar",
            "nvarchar"})) {
        static const QRegularExpression digits(QStringLiteral(R"(^\d+$)"));
        if (!hasSize) {
            return QStringLiteral("VARCHAR(255) COLLATE NOCASE");
        }
        if (digits.match(size).hasMatch()) {
            return QStringLiteral("VARCHAR(%1) COLLATE NOCASE").arg(size);
        }
    }
    return jetType;
}

Translated Translate(const QString& jetSql, const SchemaLookup* schema) {
    Tokens t = Tokenize(jetSql);
    if (!t.empty() && IsPunct(t.back(), u';')) {
        t.pop_back();
    }
    for (const Token& k : t) {
        if (IsPunct(k, u';')) {
            ThrowSyntax(QStringLiteral("Characters found after end of SQL statement."));
        }
    }
    if (t.empty()) {
        ThrowSyntax(
            QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', "
                           "'PROCEDURE', 'SELECT', or 'UPDATE'."));
    }
    Lex(t);
    RewriteLike(t);

    Translated r;
    auto at = [&](qsizetype i, const char* word) {
        return i < qsizetype(t.size()) && IsWord(t[i], QLatin1StringView(word));
    };
    if (at(0, "SELECT")) {
        TranslateSelect(t, r);
    } else if (at(0, "INSERT")) {
        TranslateInsert(t, r, schema);
    } else if (at(0, "UPDATE")) {
        TranslateUpdate(t, r, schema);
    } else if (at(0, "DELETE")) {
        TranslateDelete(t, r);
    } else if (at(0, "CREATE") && at(1, "TABLE")) {
        TranslateCreateTable(t, r);
    } else if (at(0, "CREATE") && (at(1, "INDEX") || (at(1, "UNIQUE") && at(2, "INDEX")))) {
        TranslateCreateIndex(t, r);
    } else if (at(0, "ALTER") && at(1, "TABLE")) {
        TranslateAlterTable(t, r);
    } else if (at(0, "DROP") && at(1, "TABLE")) {
        r.kind = StatementKind::DropTable;
        r.baseTable = TableAt(t, 2);
    } else if (at(0, "DROP") && at(1, "INDEX")) {
        TranslateDropIndex(t, r);
    }
    r.sql = Emit(t);
    return r;
}

std::optional<QString> InjectRowid(const QString& sqliteSelect, const QString& baseTable,
                                   const QString& alias) {
    const Scanner scan(sqliteSelect);
    int depth = 0;
    qsizetype i = 0;
    const qsizetype n = sqliteSelect.size();
    while (i < n) {
        bool comment = false;
        if (scan.SkipOpaque(i, comment)) {
            continue;
        }
        const QChar c = sqliteSelect[i];
        if (c == u'(') {
            ++depth;
        } else if (c == u')') {
            --depth;
        } else if (IsWordChar(c)) {
            const qsizetype start = i;
            while (i < n && IsWordChar(sqliteSelect[i])) {
                ++i;
            }
            if (depth == 0 && QStringView(sqliteSelect)
                                      .mid(start, i - start)
                                      .compare(QLatin1String("FROM"), Qt::CaseInsensitive) == 0) {
                qsizetype at = start;
                while (at > 0 && sqliteSelect[at - 1].isSpace()) {
                    --at;
                }
                const QString rowid = baseTable.isEmpty()
                                          ? QStringLiteral("rowid")
                                          : QuoteName(baseTable) + QStringLiteral(".rowid");
                QString out = sqliteSelect;
                out.insert(
                    at, QStringLiteral(", ") + rowid + QStringLiteral(" AS ") + QuoteName(alias));
                return out;
            }
            continue;
        }
        ++i;
    }
    return std::nullopt;
}

QStringList SplitScript(const QString& text) {
    QStringList statements;
    QString current;
    QString lastWord;
    const Scanner scan(text);
    auto flush = [&] {
        const QString s = current.trimmed();
        if (!s.isEmpty()) {
            statements << s;
        }
        current.clear();
        lastWord.clear();
    };
    // A trigger's body holds statements of its own; it ends at "END;".
    static const QRegularExpression trigger(
        QStringLiteral(R"(^\s*CREATE\s+(TEMP\s+|TEMPORARY\s+)?TRIGGER\b)"),
        QRegularExpression::CaseInsensitiveOption);
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n) {
        const qsizetype start = i;
        bool comment = false;
        if (scan.SkipOpaque(i, comment)) {
            if (!comment) {
                current += text.mid(start, i - start);
            }
            continue;
        }
        const QChar c = text[i];
        if (IsWordChar(c)) {
            while (i < n && IsWordChar(text[i])) {
                ++i;
            }
            lastWord = text.mid(start, i - start);
            current += lastWord;
            continue;
        }
        ++i;
        if (c == u';' && (!trigger.match(current).hasMatch() ||
                          lastWord.compare(QLatin1String("END"), Qt::CaseInsensitive) == 0)) {
            flush();
            continue;
        }
        current += c;
        if (!c.isSpace()) {
            lastWord.clear();
        }
    }
    flush();
    return statements;
}

}  // namespace slipbook::store::jet
