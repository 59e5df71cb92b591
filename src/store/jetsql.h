#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace slipbook::store::jet {

// The program writes its statements in the desktop engine's SQL dialect; this layer maps each
// statement onto SQLite so the statement texts can stay as they are written.

struct ColumnDecl {
    QString name;
    QString declType;  // as SQLite declares it: "INTEGER", "REAL", "VARCHAR(255)", ...
};

// What the translator needs to know of the schema: a table's columns in their order, or
// nothing when there is no such table. Names are compared without case.
class SchemaLookup {
public:
    virtual ~SchemaLookup() = default;
    virtual std::optional<std::vector<ColumnDecl>> columns(const QString& table) const = 0;
};

enum class StatementKind {
    Select,
    SelectInto,
    Insert,
    Update,
    Delete,
    CreateTable,
    AlterTable,
    DropTable,
    CreateIndex,
    DropIndex,
    Other
};

// How a literal taken out of a statement is bound in its place (see ShapeOf).
struct ParamRule {
    enum class Kind {
        Text,    // as it stands
        Number,  // as SQLite reads the number
        Date,    // the date's storage text
        Coerce,  // a text assigned to a column of another type: converted as the engine would
    };
    Kind kind = Kind::Text;
    QString declType;  // Coerce: the column's declared type
};

struct Translated {
    StatementKind kind = StatementKind::Other;
    // SQLite text. For SelectInto: the SELECT with its INTO clause taken out.
    QString sql;
    // SelectInto: the table to create.
    QString intoTable;
    // The first table the statement names: after FROM for Select, INTO for Insert,
    // UPDATE for Update, FROM for Delete, the table of DDL.
    QString baseTable;
    // For a shape: how each of its parameters ?1, ?2, ... is bound.
    std::vector<ParamRule> params;
};

// Translates one statement. Throws DbError (err::Syntax) on text it cannot read: an open
// string, a '#' literal that is no date. `schema` may be null; the rewrites that need it
// (INSERT ... SELECT * between tables, empty text into number columns) are then skipped.
Translated Translate(const QString& jetSql, const SchemaLookup* schema);

// A statement with the literals that change from one call to the next taken out, so that one
// translation and one prepared statement serve every call of the same shape. Only literals
// whose value reaches SQLite as the same value when bound are taken out: the values of an
// INSERT, those of an UPDATE or DELETE, and those in the WHERE of a SELECT; never a pattern after
// LIKE, nor anything in a statement with a nested SELECT.
struct Literal {
    enum class Kind { String, Number, Date };
    Kind kind = Kind::String;
    QStringView text;  // as written: a view of the statement
    QString unquoted;  // a string's content, when it holds doubled quotes
    bool doubled = false;
    // A string's content, a number's digits, the text between a date's '#'.
    QStringView value() const;
};

struct Shape {
    bool select = false;  // a SELECT; else an UPDATE, INSERT or DELETE
    // The statement with a '?' in place of each literal taken out, then a nul and the kinds of
    // the literals: equal keys translate alike.
    QString key;
    qsizetype textSize = 0;
    std::vector<Literal> literals;

    QStringView text() const { return QStringView(key).left(textSize); }
};

// The shape of an UPDATE, INSERT, DELETE or SELECT; nothing for other statements (definitions,
// SELECT ... INTO), which run as written. A shape may have no literal taken out. Its literals
// are views of the statement's text, which must outlive it.
std::optional<Shape> ShapeOf(const QString& jetSql);
std::optional<Shape> ShapeOf(QString&&) = delete;

// Translates a shape: the literals become the parameters ?1, ?2, ... in order, with the rule by
// which each is bound. Throws as Translate; a shape whose translation fails is best run as
// written, so that the error names the statement's own text.
Translated TranslateShape(const Shape& shape, const SchemaLookup* schema);

// A parameter's value. Real: text() is a number that SQLite itself converts, as it reads the
// same number written in a statement, and `negate` the minus sign in front of it.
struct ParamValue {
    enum class Type { Null, Integer, Real, Text };
    Type type = Type::Null;
    qint64 integer = 0;
    QStringView view;  // of the statement's text
    QString made;      // a text made from the literal, in place of `view`
    bool ownText = false;
    bool negate = false;

    QStringView text() const { return ownText ? QStringView(made) : view; }
};

// The values of a shape's literals under the rules of its translation, with the errors the
// written statement would give (a date that is none, a text that fits no number). Nothing when
// a value can't be bound as the same value (a whole number of more than 18 digits): the
// statement is then run as written.
std::optional<std::vector<ParamValue>> ParamValues(const Shape& shape,
                                                   const std::vector<ParamRule>& rules);

// Maps a column type of the data-definition language to its SQLite declaration:
// COUNTER -> "INTEGER PRIMARY KEY AUTOINCREMENT", Number -> "REAL", Integer/Long -> "INTEGER",
// YesNo -> "BOOLEAN", Text(n) -> "VARCHAR(n) COLLATE NOCASE", Text -> "VARCHAR(255) COLLATE
// NOCASE", Memo -> "TEXT COLLATE NOCASE", DateTime -> "DATETIME", Currency -> "CURRENCY".
QString MapDdlType(const QString& jetType);

// For an updatable row set: inserts `, "<base>".rowid AS "<alias>"` before the top-level FROM
// of a translated SELECT. Empty when the statement has no top-level FROM.
std::optional<QString> InjectRowid(const QString& sqliteSelect, const QString& baseTable,
                                   const QString& alias);

// Splits a script into statements at ';' outside literals and comments ("--" to line end).
// Blank statements are dropped.
QStringList SplitScript(const QString& text);

}  // namespace slipbook::store::jet
