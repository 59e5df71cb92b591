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

// Param: a '?' that stands for a literal taken out of the statement (see ShapeOf).
enum class Tok { Word, Bracket, String, Date, Number, Op, Punct, Param };

struct Token {
    Tok type = Tok::Punct;
    QString text;    // as written
    QString value;   // the name of a word or bracket, the content of a string or date
    QString pre;     // blanks in front
    QString out;     // what is emitted
    int depth = 0;   // parentheses open around it; '(' and its ')' sit outside
    int param = -1;  // Param: which literal, from 0
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

// Moves `i` from an opening quote past its closing one; a doubled quote stands for one. False
// when the quote is never closed.
bool SkipQuoted(const QString& s, qsizetype& i) {
    const QChar q = s[i];
    for (qsizetype j = i + 1; j < s.size(); ++j) {
        if (s[j] != q) {
            continue;
        }
        if (j + 1 < s.size() && s[j + 1] == q) {
            ++j;
            continue;
        }
        i = j + 1;
        return true;
    }
    return false;
}

// The content of the quoted run [start, end), its doubled quotes made single.
QString Unquote(const QString& s, qsizetype start, qsizetype end) {
    const QChar q = s[start];
    QString content;
    content.reserve(end - start - 2);
    for (qsizetype j = start + 1; j < end - 1; ++j) {
        content += s[j];
        if (s[j] == q) {
            ++j;
        }
    }
    return content;
}

// Where one token of the text lies.
struct Lexeme {
    Tok type = Tok::Punct;
    qsizetype start = 0;  // its first character, after the blanks in front
    qsizetype end = 0;    // after its last
};

// Reads the token after the blanks at `i` and leaves `i` after it; false at the end of the text.
// `prev` is the type of the token before, if any (a '.' before digits starts a number unless a
// name precedes it). Throws on an open string, bracket or date.
bool NextLexeme(const QString& s, qsizetype& i, const Tok* prev, Lexeme& out) {
    const qsizetype n = s.size();
    while (i < n && s[i].isSpace()) {
        ++i;
    }
    if (i >= n) {
        return false;
    }
    const qsizetype start = i;
    const QChar c = s[i];
    Tok type = Tok::Punct;
    if (c == u'\'' || c == u'"') {
        if (!SkipQuoted(s, i)) {
            ThrowSyntax(QStringLiteral("Syntax error in string in query expression '%1'.")
                            .arg(s.mid(start)));
        }
        type = Tok::String;
    } else if (c == u'[') {
        const qsizetype close = s.indexOf(u']', i + 1);
        if (close < 0) {
            ThrowSyntax(QStringLiteral("Invalid bracketing of name '%1'.").arg(s.mid(start)));
        }
        type = Tok::Bracket;
        i = close + 1;
    } else if (c == u'#') {
        const qsizetype close = s.indexOf(u'#', i + 1);
        if (close < 0) {
            ThrowSyntax(
                QStringLiteral("Syntax error in date in query expression '%1'.").arg(s.mid(start)));
        }
        type = Tok::Date;
        i = close + 1;
    } else if (c.isDigit() ||
               (c == u'.' && i + 1 < n && s[i + 1].isDigit() &&
                (prev == nullptr || (*prev != Tok::Word && *prev != Tok::Bracket)))) {
        while (i < n && s[i].isDigit()) {
            ++i;
        }
        bool point = false;
        if (i < n && s[i] == u'.') {
            point = true;
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
        type = Tok::Number;
        // Digits running into letters make a name ("14MileView").
        if (i < n && IsWordChar(s[i]) && !point) {
            while (i < n && IsWordChar(s[i])) {
                ++i;
            }
            type = Tok::Word;
        }
    } else if (IsWordChar(c)) {
        while (i < n && IsWordChar(s[i])) {
            ++i;
        }
        type = Tok::Word;
    } else if (c == u'<' || c == u'>' || c == u'!' || c == u'|') {
        ++i;
        if (i < n &&
            ((c == u'<' && (s[i] == u'>' || s[i] == u'=')) || (c == u'>' && s[i] == u'=') ||
             (c == u'!' && s[i] == u'=') || (c == u'|' && s[i] == u'|'))) {
            ++i;
        }
        type = (c == u'!' && i - start == 1) ? Tok::Punct : Tok::Op;
    } else if (QStringLiteral("=&+-*/\\^%").contains(c)) {
        ++i;
        type = Tok::Op;
    } else {
        ++i;
    }
    out = {type, start, i};
    return true;
}

// With `params`, each '?' is a literal taken out of the statement, numbered in order.
Tokens Tokenize(const QString& s, bool params = false) {
    Tokens out;
    int depth = 0;
    int paramCount = 0;
    qsizetype i = 0;
    Lexeme lx;
    while (true) {
        const qsizetype blankStart = i;
        const Tok prevType = out.empty() ? Tok::Punct : out.back().type;
        if (!NextLexeme(s, i, out.empty() ? nullptr : &prevType, lx)) {
            break;
        }
        Token t;
        t.type = lx.type;
        t.pre = s.mid(blankStart, lx.start - blankStart);
        t.text = s.mid(lx.start, lx.end - lx.start);
        switch (t.type) {
            case Tok::String:
                t.value = Unquote(s, lx.start, lx.end);
                break;
            case Tok::Bracket:
            case Tok::Date:
                t.value = s.mid(lx.start + 1, lx.end - lx.start - 2);
                break;
            case Tok::Word:
                t.value = t.text;
                break;
            default:
                break;
        }
        if (params && t.type == Tok::Punct && t.text == u"?") {
            t.type = Tok::Param;
            t.param = paramCount++;
        }
        t.out = t.text;
        const bool punct = t.type == Tok::Punct;
        if (punct && t.text == u")") {
            --depth;
        }
        t.depth = depth;
        if (punct && t.text == u"(") {
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
            case Tok::Param:
                k.out = u'?' + QString::number(k.param + 1);
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
// The SQL the text becomes (NULL, a number, a date's storage text, -1 or 0), or nothing when it
// stays a text. Throws a type mismatch when it can't be converted.
std::optional<QString> CoercedLiteral(const QString& declType, const QString& text) {
    const Affinity affinity = AffinityOf(declType);
    if (affinity == Affinity::Unknown || affinity == Affinity::Text) {
        return std::nullopt;
    }
    const QString value = text.trimmed();
    if (value.isEmpty()) {
        return QStringLiteral("NULL");
    }
    const auto number = PlainNumber(value);
    switch (affinity) {
        case Affinity::Date:
            if (const auto when = ParseJetDateText(value)) {
                return QuoteText(DateTimeToStorage(*when));
            }
            if (number && number->toDouble() >= 0) {
                // A number is a count of days from day zero.
                const qint64 ms = std::llround(number->toDouble() * 86400000.0);
                return QuoteText(
                    DateTimeToStorage(QDateTime(DayZero(), QTime(0, 0), Qt::UTC).addMSecs(ms)));
            }
            break;
        case Affinity::Boolean:
            if (value.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
                return QStringLiteral("-1");
            }
            if (value.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
                return QStringLiteral("0");
            }
            if (number) {
                return number->toDouble() != 0 ? QStringLiteral("-1") : QStringLiteral("0");
            }
            break;
        default:
            if (number) {
                return *number;
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

// A text literal that is the whole value of a column is converted to the column's type; one taken
// out of the statement is converted when it is bound.
void CoerceEntry(Tokens& t, std::pair<qsizetype, qsizetype> range,
                 const std::optional<ColumnDecl>& column, Translated& r) {
    if (!column || range.second - range.first != 1) {
        return;
    }
    Token& literal = t[range.first];
    if (literal.type == Tok::String) {
        if (const auto out = CoercedLiteral(column->declType, literal.value)) {
            literal.out = *out;
        }
    } else if (literal.type == Tok::Param &&
               r.params[literal.param].kind == ParamRule::Kind::Text &&
               AffinityOf(column->declType) != Affinity::Unknown &&
               AffinityOf(column->declType) != Affinity::Text) {
        r.params[literal.param] = {ParamRule::Kind::Coerce, column->declType};
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
                    CoerceEntry(t, parts[k], columns[k], r);
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
            CoerceEntry(t, {eq + 1, stop}, FindColumn(*target, NameAt(t, begin, eq)), r);
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
            if (!SkipQuoted(s_, i)) {
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

namespace {

Translated TranslateTokens(Tokens& t, const SchemaLookup* schema, Translated r) {
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

bool IsLiteral(Tok type) {
    return type == Tok::String || type == Tok::Number || type == Tok::Date;
}

bool IsWordAt(const QString& s, const Lexeme& lx, QLatin1StringView word) {
    return lx.type == Tok::Word && lx.end - lx.start == word.size() &&
           QStringView(s).mid(lx.start, lx.end - lx.start).compare(word, Qt::CaseInsensitive) == 0;
}

// A literal that stays in place: a text after LIKE or ESCAPE becomes a pattern of its own; a
// literal run together with a name (x'0A') or a number with a point after it is not what SQLite
// would read on its own.
bool StaysInPlace(const QString& s, const std::vector<Lexeme>& lx, size_t k) {
    if (k > 0 && (IsWordAt(s, lx[k - 1], QLatin1StringView("LIKE")) ||
                  IsWordAt(s, lx[k - 1], QLatin1StringView("ESCAPE")))) {
        return true;
    }
    if (lx[k].start > 0 && IsWordChar(s[lx[k].start - 1])) {
        return true;
    }
    const qsizetype after = lx[k].end;
    return lx[k].type == Tok::Number && after < s.size() &&
           (IsWordChar(s[after]) || s[after] == u'.');
}

// The plain whole number of a literal, when it has at most 18 digits (so it is the same integer
// to SQLite); nothing for a number with a point or an exponent, or a longer one.
std::optional<qint64> WholeNumber(QStringView digits) {
    while (digits.size() > 1 && digits.front() == u'0') {
        digits = digits.mid(1);
    }
    if (digits.isEmpty() || digits.size() > 18) {
        return std::nullopt;
    }
    qint64 value = 0;
    for (const QChar c : digits) {
        if (!c.isDigit()) {
            return std::nullopt;
        }
        value = value * 10 + c.digitValue();
    }
    return value;
}

// A number as the SQL text writes it, with the minus sign SQLite applies after reading it.
std::optional<ParamValue> NumberValue(QStringView text) {
    ParamValue v;
    if (text.startsWith(u'-')) {
        v.negate = true;
        text = text.mid(1);
    }
    if (text.isEmpty()) {
        return std::nullopt;
    }
    if (text.contains(u'.') || text.contains(u'e') || text.contains(u'E')) {
        v.type = ParamValue::Type::Real;
        v.view = text;
        return v;
    }
    const auto whole = WholeNumber(text);
    if (!whole) {
        // SQLite reads a longer number its own way; the statement runs with it written out.
        return std::nullopt;
    }
    v.type = ParamValue::Type::Integer;
    v.integer = v.negate ? -*whole : *whole;
    v.negate = false;
    return v;
}

}  // namespace

Translated Translate(const QString& jetSql, const SchemaLookup* schema) {
    Tokens t = Tokenize(jetSql);
    return TranslateTokens(t, schema, Translated());
}

std::optional<Shape> ShapeOf(const QString& jetSql) {
    std::vector<Lexeme> lx;
    lx.reserve(jetSql.size() / 4);
    qsizetype i = 0;
    Lexeme next;
    while (NextLexeme(jetSql, i, lx.empty() ? nullptr : &lx.back().type, next)) {
        lx.push_back(next);
    }
    if (lx.empty()) {
        return std::nullopt;
    }
    // Only the key words below matter here; most words are names of other lengths.
    const auto word = [&](size_t k, const char* w, qsizetype length) {
        return lx[k].end - lx[k].start == length &&
               IsWordAt(jetSql, lx[k], QLatin1StringView(w, length));
    };
    const bool select = word(0, "SELECT", 6);
    const bool insert = word(0, "INSERT", 6);
    if (!select && !insert && !word(0, "UPDATE", 6) && !word(0, "DELETE", 6)) {
        // Definitions and the rest run as they are written.
        return std::nullopt;
    }

    // Where literals may be taken out: the values of an INSERT, all of an UPDATE or DELETE up to
    // an ORDER BY or LIMIT, the top-level WHERE of a SELECT (a literal elsewhere in a SELECT may
    // name a column or a sort position). A statement with a nested SELECT, or with a name SQLite
    // would take for a parameter, keeps all its literals.
    std::vector<bool> takeOut(lx.size(), false);
    bool open = !select && !insert;
    bool keepAll = false;
    int depth = 0;
    int taken = 0;
    for (size_t k = 0; k < lx.size(); ++k) {
        const Lexeme& l = lx[k];
        const qsizetype length = l.end - l.start;
        if (l.type == Tok::Punct) {
            if (length == 1) {
                const QChar c = jetSql[l.start];
                if (c == u'(') {
                    ++depth;
                } else if (c == u')') {
                    --depth;
                } else if (c == u'?' || c == u':' || c == u'@') {
                    keepAll = true;
                }
            }
            continue;
        }
        if (l.type == Tok::Word) {
            if (QStringView(jetSql).mid(l.start, length).contains(u'$') ||
                (k > 0 && word(k, "SELECT", 6))) {
                keepAll = true;
            } else if (depth != 0 || (length != 4 && length != 5 && length != 6 && length != 9)) {
                // Not a key word that opens or closes the part.
            } else if (select && word(k, "INTO", 4) && !open) {
                // SELECT ... INTO makes a table.
                return std::nullopt;
            } else if (select ? word(k, "WHERE", 5) : insert && word(k, "VALUES", 6)) {
                open = true;
            } else if (word(k, "ORDER", 5) || word(k, "GROUP", 5) || word(k, "HAVING", 6) ||
                       word(k, "LIMIT", 5) || word(k, "UNION", 5) || word(k, "EXCEPT", 6) ||
                       word(k, "INTERSECT", 9) || word(k, "WINDOW", 6)) {
                open = false;
            }
            continue;
        }
        if (open && IsLiteral(l.type) && !StaysInPlace(jetSql, lx, k)) {
            takeOut[k] = true;
            ++taken;
        }
    }

    Shape shape;
    shape.select = select;
    if (keepAll || taken == 0) {
        shape.textSize = jetSql.size();
        shape.key.reserve(jetSql.size() + 2);
        shape.key += jetSql;
        shape.key += QChar(0);
        return shape;
    }
    shape.literals.reserve(taken);
    shape.key.reserve(jetSql.size() + 2 * taken + 2);
    QString kinds;
    kinds.reserve(taken);
    qsizetype copied = 0;
    for (size_t k = 0; k < lx.size(); ++k) {
        if (!takeOut[k]) {
            continue;
        }
        const Lexeme& l = lx[k];
        shape.key += QStringView(jetSql).mid(copied, l.start - copied);
        shape.key += u'?';
        copied = l.end;
        Literal literal;
        literal.text = QStringView(jetSql).mid(l.start, l.end - l.start);
        switch (l.type) {
            case Tok::String:
                literal.kind = Literal::Kind::String;
                // A doubled quote inside stands for one.
                if (literal.text.mid(1, literal.text.size() - 2).contains(literal.text.front())) {
                    literal.doubled = true;
                    literal.unquoted = Unquote(jetSql, l.start, l.end);
                }
                kinds += u's';
                break;
            case Tok::Date:
                literal.kind = Literal::Kind::Date;
                kinds += u'd';
                break;
            default:
                literal.kind = Literal::Kind::Number;
                kinds += u'n';
                break;
        }
        shape.literals.push_back(std::move(literal));
    }
    shape.key += QStringView(jetSql).mid(copied);
    shape.textSize = shape.key.size();
    shape.key += QChar(0);
    shape.key += kinds;
    return shape;
}

Translated TranslateShape(const Shape& shape, const SchemaLookup* schema) {
    Tokens t = Tokenize(shape.text().toString(), !shape.literals.empty());
    Translated r;
    r.params.reserve(shape.literals.size());
    for (const Literal& literal : shape.literals) {
        r.params.push_back({literal.kind == Literal::Kind::String   ? ParamRule::Kind::Text
                            : literal.kind == Literal::Kind::Number ? ParamRule::Kind::Number
                                                                    : ParamRule::Kind::Date,
                            QString()});
    }
    qsizetype params = 0;
    for (const Token& k : t) {
        params += k.type == Tok::Param ? 1 : 0;
    }
    if (params != qsizetype(shape.literals.size())) {
        ThrowSyntax(QStringLiteral("The statement's literals could not be taken out."));
    }
    return TranslateTokens(t, schema, std::move(r));
}

QStringView Literal::value() const {
    switch (kind) {
        case Kind::String:
            return doubled ? QStringView(unquoted) : text.mid(1, text.size() - 2);
        case Kind::Date:
            return text.mid(1, text.size() - 2);
        case Kind::Number:
            break;
    }
    return text;
}

std::optional<std::vector<ParamValue>> ParamValues(const Shape& shape,
                                                   const std::vector<ParamRule>& rules) {
    // The dates are read before anything is converted, as the written statement would be.
    std::vector<std::optional<QDateTime>> dates;
    for (const Literal& literal : shape.literals) {
        if (literal.kind == Literal::Kind::Date) {
            dates.push_back(ParseJetDateText(literal.value().toString()));
            if (!dates.back()) {
                ThrowSyntax(QStringLiteral("Syntax error in date in query expression '%1'.")
                                .arg(literal.text));
            }
        }
    }
    std::vector<ParamValue> values;
    values.reserve(shape.literals.size());
    size_t date = 0;
    for (size_t k = 0; k < shape.literals.size(); ++k) {
        const Literal& literal = shape.literals[k];
        ParamValue v;
        switch (rules[k].kind) {
            case ParamRule::Kind::Text:
                v.type = ParamValue::Type::Text;
                v.view = literal.value();
                break;
            case ParamRule::Kind::Date:
                v.type = ParamValue::Type::Text;
                v.made = DateTimeToStorage(*dates[date++]);
                v.ownText = true;
                break;
            case ParamRule::Kind::Number: {
                const auto number = NumberValue(literal.value());
                if (!number) {
                    return std::nullopt;
                }
                v = *number;
                break;
            }
            case ParamRule::Kind::Coerce: {
                const auto sql = CoercedLiteral(rules[k].declType, literal.value().toString());
                if (!sql) {
                    v.type = ParamValue::Type::Text;
                    v.view = literal.value();
                } else if (*sql == u"NULL") {
                    v.type = ParamValue::Type::Null;
                } else if (sql->startsWith(u'\'')) {
                    v.type = ParamValue::Type::Text;
                    v.made = Unquote(*sql, 0, sql->size());
                    v.ownText = true;
                } else {
                    const auto number = NumberValue(*sql);
                    if (!number) {
                        return std::nullopt;
                    }
                    v = *number;
                    if (v.type == ParamValue::Type::Real) {
                        // The view was of the made text, which goes with this scope.
                        v.made = v.view.toString();
                        v.ownText = true;
                    }
                }
                break;
            }
        }
        values.push_back(std::move(v));
    }
    return values;
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
