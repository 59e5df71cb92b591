#include "store/jetsql.h"
#include "store/dberror.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <ostream>

// Readable failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

namespace slipbook::store::jet {
namespace {

// Reads the schema from the very database the statements run on.
class SqliteSchema : public SchemaLookup {
public:
    explicit SqliteSchema(sqlite3* db) : db_(db) {}
    std::optional<std::vector<ColumnDecl>> columns(const QString& table) const override {
        sqlite3_stmt* stmt = nullptr;
        const QByteArray sql = "PRAGMA table_info(\"" + table.toUtf8() + "\")";
        sqlite3_prepare_v2(db_, sql.constData(), -1, &stmt, nullptr);
        std::vector<ColumnDecl> out;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            out.push_back(
                {QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1))),
                 QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 2)))});
        }
        sqlite3_finalize(stmt);
        if (out.empty()) {
            return std::nullopt;
        }
        return out;
    }

private:
    sqlite3* db_;
};

sqlite3* OpenMemory() {
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    return db;
}

class JetSql : public ::testing::Test {
protected:
    ~JetSql() override { sqlite3_close(db_); }

    Translated Run(const QString& jet) {
        const Translated t = Translate(jet, &schema_);
        char* error = nullptr;
        if (sqlite3_exec(db_, t.sql.toUtf8().constData(), nullptr, nullptr, &error) != SQLITE_OK) {
            ADD_FAILURE() << error << "\n  in: " << t.sql.toStdString();
            sqlite3_free(error);
        }
        return t;
    }

    // The rows of a query, each row's cells joined by '|', Null as "NULL".
    QStringList Rows(const QString& sql, bool translate = true) {
        const QString text = translate ? Translate(sql, &schema_).sql : sql;
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db_, text.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sqlite3_errmsg(db_) << "\n  in: " << text.toStdString();
            return {};
        }
        QStringList rows;
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            QStringList cells;
            for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
                const auto* v = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c));
                cells << (v ? QString::fromUtf8(v) : QStringLiteral("NULL"));
            }
            rows << cells.join(u'|');
        }
        sqlite3_finalize(stmt);
        return rows;
    }

    sqlite3* db_ = OpenMemory();
    SqliteSchema schema_{db_};
};

int ErrorNumber(const QString& jet, const SchemaLookup* schema = nullptr) {
    try {
        Translate(jet, schema);
    } catch (const DbError& e) {
        return e.number();
    }
    return 0;
}

TEST_F(JetSql, LiteralsOperatorsAndNamesBehaveAsTheEngineDoes) {
    Run("CREATE TABLE tblViews (lView_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, "
        "sView_desc Text(50), bReadOnlyView_fl YesNo)");
    Run("INSERT INTO tblViews (sView_desc, bReadOnlyView_fl) VALUES (\"Bob's view\", False);");
    Run("INSERT INTO tblViews (sView_desc, bReadOnlyView_fl) VALUES ('alpha', false)");
    Run("INSERT INTO tblViews (sView_desc, bReadOnlyView_fl) VALUES ('Pro', TRUE)");
    Run("INSERT INTO tblViews (sView_desc, bReadOnlyView_fl) VALUES ('a_b', 0)");
    Run("INSERT INTO tblViews (sView_desc, bReadOnlyView_fl) VALUES ('True & #1/1/2000# [x] *?', "
        "0)");

    // -1 sorts the read-only views first; text sorts and compares without case.
    EXPECT_EQ(Rows("SELECT sView_desc FROM tblViews ORDER BY bReadOnlyView_fl, sView_desc"),
              QStringList({"Pro", "a_b", "alpha", "Bob's view", "True & #1/1/2000# [x] *?"}));
    EXPECT_EQ(Rows("SELECT COUNT(*) AS Records FROM tblViews WHERE sView_desc = 'PRO' AND "
                   "bReadOnlyView_fl = True"),
              QStringList({"1"}));
    EXPECT_EQ(Rows("SELECT sView_desc FROM tblViews WHERE bReadOnlyView_fl"), QStringList({"Pro"}));

    // Nothing inside a literal is rewritten.
    EXPECT_EQ(Rows("SELECT lView_id FROM tblViews WHERE sView_desc = \"True & #1/1/2000# [x] *?\""),
              QStringList({"5"}));

    EXPECT_EQ(Rows("SELECT sView_desc & \"-\" & lView_id FROM tblViews WHERE lView_id = 1"),
              QStringList({"Bob's view-1"}));

    EXPECT_EQ(Rows("SELECT sView_desc FROM tblViews WHERE sView_desc Like '?lpha'"),
              QStringList({"alpha"}));
    // '_' is no wildcard to the engine, and "[*]" is a star.
    EXPECT_EQ(Rows("SELECT sView_desc FROM tblViews WHERE sView_desc LIKE 'a_*' ORDER BY 1"),
              QStringList({"a_b"}));
    EXPECT_EQ(Rows("SELECT lView_id FROM tblViews WHERE sView_desc LIKE '*[*]?'"),
              QStringList({"5"}));

    EXPECT_EQ(Rows("SELECT [tblViews]![sView_desc] FROM [tblViews] WHERE [lView_id] < 3 "
                   "ORDER BY [tblViews]![lView_id] DESC"),
              QStringList({"alpha", "Bob's view"}));
    EXPECT_EQ(Rows("SELECT tblViews.* FROM tblViews WHERE lView_id = 3 AND Trim(' x ') = 'x' "
                   "AND sView_desc IS NOT Null AND lView_id <> 2"),
              QStringList({"3|Pro|-1"}));

    // Yes and No are the flag's other names.
    EXPECT_EQ(Translate("SELECT * FROM t WHERE b = Yes OR c = no", nullptr).sql,
              "SELECT * FROM t WHERE b = -1 OR c = 0");
    EXPECT_EQ(Translate("SELECT x-True FROM t", nullptr).sql, "SELECT x- -1 FROM t");
}

TEST_F(JetSql, DatesAreStoredAsTextThatComparesInTimeOrder) {
    Run("CREATE TABLE tblRuns (lRun_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, dtRun_dt "
        "DateTime, "
        "dtRun_tm DateTime)");
    Run("INSERT INTO tblRuns (dtRun_dt, dtRun_tm) VALUES (#07/04/2003#, #10:30 PM#)");
    Run("INSERT INTO tblRuns (dtRun_dt, dtRun_tm) VALUES (#7/4/2003#, #9:05:10 am#)");
    Run("INSERT INTO tblRuns (dtRun_dt, dtRun_tm) VALUES (#12/31/2002 23:59:59#, #22:15#)");
    Run("UPDATE tblRuns SET dtRun_dt = #1/15/2004#, dtRun_tm = Null WHERE lRun_id = 3");

    EXPECT_EQ(Rows("SELECT dtRun_dt, dtRun_tm FROM tblRuns ORDER BY dtRun_dt DESC, dtRun_tm DESC"),
              QStringList({"2004-01-15 00:00:00|NULL", "2003-07-04 00:00:00|1899-12-30 22:30:00",
                           "2003-07-04 00:00:00|1899-12-30 09:05:10"}));
    EXPECT_EQ(Rows("SELECT lRun_id FROM tblRuns WHERE dtRun_dt >= #7/4/2003# AND dtRun_dt <= "
                   "#12/31/2003# AND dtRun_tm > #12:00 PM#"),
              QStringList({"1"}));

    EXPECT_EQ(ErrorNumber("SELECT * FROM tblRuns WHERE dtRun_dt = #13/45/2003#"), err::Syntax);
    EXPECT_EQ(ErrorNumber("SELECT * FROM tblRuns WHERE dtRun_dt = #7/4/2003"), err::Syntax);
}

TEST_F(JetSql, DeleteSelectIntoAndInsertSelectStar) {
    Run("CREATE TABLE tblRuns (lRun_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY, lCar_id Integer, "
        "i14Mile_et Number, sNotes_tx Memo)");
    Run("INSERT INTO tblRuns (lCar_id, i14Mile_et, sNotes_tx) VALUES (1, 10.5, 'first')");
    Run("INSERT INTO tblRuns (lCar_id, i14Mile_et, sNotes_tx) VALUES (2, 9.75, 'second')");
    Run("INSERT INTO tblRuns (lCar_id, i14Mile_et, sNotes_tx) VALUES (2, 9.5, 'third')");

    const Translated into = Run("SELECT * INTO tblCarSetup FROM tblRuns WHERE False");
    EXPECT_EQ(into.kind, StatementKind::SelectInto);
    EXPECT_EQ(into.intoTable, "tblCarSetup");
    EXPECT_EQ(into.baseTable, "tblRuns");
    EXPECT_EQ(into.sql, "SELECT * FROM tblRuns WHERE 0");

    // The set-up table gets its columns in another order, and one of its own.
    Run("CREATE TABLE tblCarSetup (sSetup_cat Text(15), sNotes_tx Memo, I14MILE_ET Number, "
        "lRun_id Long, lCar_id Long)");
    const Translated copy = Run("INSERT INTO tblCarSetup SELECT * FROM tblRuns WHERE lRun_id = 2");
    EXPECT_EQ(copy.kind, StatementKind::Insert);
    EXPECT_EQ(copy.baseTable, "tblCarSetup");
    EXPECT_EQ(copy.sql,
              "INSERT INTO tblCarSetup (\"sNotes_tx\",\"I14MILE_ET\",\"lRun_id\",\"lCar_id\") "
              "SELECT \"sNotes_tx\",\"I14MILE_ET\",\"lRun_id\",\"lCar_id\" FROM tblRuns WHERE "
              "lRun_id = 2");
    Run("INSERT INTO tblCarSetup SELECT tblRuns.* FROM tblRuns WHERE lRun_id = 3");
    EXPECT_EQ(Rows("SELECT lRun_id, lCar_id, i14Mile_et, sNotes_tx, sSetup_cat FROM tblCarSetup"),
              QStringList({"2|2|9.75|second|NULL", "3|2|9.5|third|NULL"}));
    // Without a schema nothing can be named.
    EXPECT_EQ(Translate("INSERT INTO a SELECT * FROM b", nullptr).sql,
              "INSERT INTO a SELECT * FROM b");

    const Translated del = Run("DELETE * FROM tblRuns WHERE lCar_id = 2");
    EXPECT_EQ(del.kind, StatementKind::Delete);
    EXPECT_EQ(del.baseTable, "tblRuns");
    EXPECT_EQ(del.sql, "DELETE FROM tblRuns WHERE lCar_id = 2");
    Run("DELETE tblCarSetup.* FROM tblCarSetup WHERE lRun_id = 3");
    EXPECT_EQ(Rows("SELECT lRun_id FROM tblRuns"), QStringList({"1"}));
    EXPECT_EQ(Rows("SELECT lRun_id FROM tblCarSetup"), QStringList({"2"}));
}

TEST_F(JetSql, QuotedTextIntoNumberColumnsConvertsAsTheEngineDoes) {
    Run("CREATE TABLE tblRuns (lRun_id COUNTER, i60to330Foot_et Number, lPoints_val Integer, "
        "bFullRun_fl YesNo, dtRun_dt DateTime, cPurse_amt Currency, sLane_nm Text(1))");
    Run("INSERT INTO tblRuns (lRun_id, i60to330Foot_et, dtRun_dt, sLane_nm) VALUES (1, '', '', "
        "'')");
    Run("UPDATE tblRuns SET i60to330Foot_et = ' 1.5 ', lPoints_val = '1,200', bFullRun_fl = "
        "'True', "
        "dtRun_dt = '07/04/2003', cPurse_amt = '-.25' WHERE lRun_id = 1");
    EXPECT_EQ(Rows("SELECT typeof(i60to330Foot_et), i60to330Foot_et, lPoints_val, bFullRun_fl, "
                   "dtRun_dt, cPurse_amt, sLane_nm FROM tblRuns"),
              QStringList({"real|1.5|1200|-1|2003-07-04 00:00:00|-0.25|"}));

    Run("UPDATE tblRuns SET [tblRuns].[i60to330Foot_et] = '', dtRun_dt = \"  \" WHERE lRun_id = 1");
    EXPECT_EQ(Rows("SELECT i60to330Foot_et, dtRun_dt FROM tblRuns"), QStringList({"NULL|NULL"}));

    // A text column keeps the empty text; an expression is no single literal.
    EXPECT_EQ(
        Translate("UPDATE tblRuns SET sLane_nm = '', i60to330Foot_et = '1' || '' WHERE x = ''",
                  &schema_)
            .sql,
        "UPDATE tblRuns SET sLane_nm = '', i60to330Foot_et = '1' || '' WHERE x = ''");

    EXPECT_EQ(ErrorNumber("UPDATE tblRuns SET i60to330Foot_et = 'abc'", &schema_),
              err::TypeMismatch);
    EXPECT_EQ(ErrorNumber("INSERT INTO tblRuns (dtRun_dt) VALUES ('13/45/2003')", &schema_),
              err::TypeMismatch);
    EXPECT_EQ(ErrorNumber("UPDATE tblRuns SET i60to330Foot_et = 'abc'", nullptr), 0);
}

TEST_F(JetSql, DataDefinitionMapsTheEngineTypes) {
    const Translated create =
        Run("CREATE TABLE [tblMaintenance] (lMaintenance_id COUNTER CONSTRAINT PrimaryKey PRIMARY "
            "KEY)");
    EXPECT_EQ(create.kind, StatementKind::CreateTable);
    EXPECT_EQ(create.baseTable, "tblMaintenance");
    for (const char* column : {"lCar_id Number", "bCompleted YesNo", "iScheduledRuns Integer",
                               "dtMaintenance_dt DateTime", "sMaintenanceNotes_tx Memo",
                               "sName Text(15)", "sOther Text", "cCost_amt Currency"}) {
        const Translated alter =
            Run(QStringLiteral("ALTER TABLE tblMaintenance ADD COLUMN ") + column);
        EXPECT_EQ(alter.kind, StatementKind::AlterTable);
        EXPECT_EQ(alter.baseTable, "tblMaintenance");
    }
    Run("ALTER TABLE tblMaintenance ADD lRuns Long NOT NULL DEFAULT 0");
    EXPECT_EQ(Rows("SELECT name || ' ' || type FROM pragma_table_info('tblMaintenance')", false),
              QStringList({"lMaintenance_id INTEGER", "lCar_id REAL", "bCompleted BOOLEAN",
                           "iScheduledRuns INTEGER", "dtMaintenance_dt DATETIME",
                           "sMaintenanceNotes_tx TEXT", "sName VARCHAR(15)", "sOther VARCHAR(255)",
                           "cCost_amt CURRENCY", "lRuns INTEGER"}));

    // The counter is the key and counts by itself; Number keeps '/' a floating division.
    Run("INSERT INTO tblMaintenance (lCar_id, iScheduledRuns, sName) VALUES (1, 20, 'oil')");
    Run("INSERT INTO tblMaintenance (lCar_id, iScheduledRuns, sName) VALUES (3, 20, 'OIL')");
    EXPECT_EQ(Rows("SELECT lMaintenance_id, lCar_id / 2 FROM tblMaintenance WHERE sName = 'Oil'"),
              QStringList({"1|0.5", "2|1.5"}));

    // Types that carry a collation are SQLite's own and stay as they are.
    Run("CREATE TABLE tCopy (n TEXT COLLATE NOCASE, v VARCHAR(15) COLLATE NOCASE)");
    EXPECT_EQ(Rows("SELECT type FROM pragma_table_info('tCopy')", false),
              QStringList({"TEXT", "VARCHAR(15)"}));

    // A table key on the counter alone would be a second key to SQLite.
    Run("CREATE TABLE t2 (id Counter, d Text(5), CONSTRAINT PrimaryKey PRIMARY KEY ([id]))");
    Run("CREATE TABLE t3 (a Long, b Text(5), CONSTRAINT pk PRIMARY KEY (a, b))");
    EXPECT_EQ(Rows("SELECT name, pk FROM pragma_table_info('t3')", false),
              QStringList({"a|1", "b|2"}));

    const Translated index = Run("CREATE UNIQUE INDEX ix ON t3 (b) WITH DISALLOW NULL");
    EXPECT_EQ(index.kind, StatementKind::CreateIndex);
    EXPECT_EQ(index.baseTable, "t3");

    EXPECT_EQ(MapDdlType("COUNTER"), "INTEGER PRIMARY KEY AUTOINCREMENT");
    EXPECT_EQ(MapDdlType("text (50)"), "VARCHAR(50) COLLATE NOCASE");
    EXPECT_EQ(MapDdlType("LongText"), "TEXT COLLATE NOCASE");
    EXPECT_EQ(MapDdlType("Single"), "REAL");
    EXPECT_EQ(MapDdlType("Byte"), "INTEGER");
    EXPECT_EQ(MapDdlType("Logical"), "BOOLEAN");
    EXPECT_EQ(MapDdlType("Decimal(10,2)"), "Decimal(10,2)");
}

TEST(JetSqlText, StatementShapesAndErrors) {
    const Translated select = Translate(
        "  SELECT T.*, tblListViewColumns.sFieldName FROM T,tblListViewColumns WHERE "
        "Val(x) > 0 AND Nz(y, 0) = IIf(z, 1, 2) AND UCase(Left(s, 1)) = 'A' ;  ",
        nullptr);
    EXPECT_EQ(select.kind, StatementKind::Select);
    EXPECT_EQ(select.baseTable, "T");
    EXPECT_EQ(select.sql,
              "SELECT T.*, tblListViewColumns.sFieldName FROM T,tblListViewColumns WHERE "
              "Val(x) > 0 AND Nz(y, 0) = IIf(z, 1, 2) AND UCase(Left(s, 1)) = 'A'");
    EXPECT_EQ(
        Translate("SELECT * FROM tblMaintenance LEFT OUTER JOIN tblCars ON 1", nullptr).baseTable,
        "tblMaintenance");
    EXPECT_EQ(Translate("SELECT COUNT(*) as Records FROM (SELECT 1)", nullptr).baseTable, "");
    const Translated update = Translate("UPDATE [tblCars] SET bDefault_fl = False", nullptr);
    EXPECT_EQ(update.kind, StatementKind::Update);
    EXPECT_EQ(update.baseTable, "tblCars");
    EXPECT_EQ(update.sql, "UPDATE \"tblCars\" SET bDefault_fl = 0");
    EXPECT_EQ(Translate("PRAGMA foo", nullptr).kind, StatementKind::Other);

    EXPECT_EQ(ErrorNumber("UPDATE t SET s = 'Bob's' WHERE x = 1"), err::Syntax);
    EXPECT_EQ(ErrorNumber("SELECT [open FROM t"), err::Syntax);
    EXPECT_EQ(ErrorNumber("SELECT 1; SELECT 2"), err::Syntax);
}

TEST(JetSqlText, InjectRowidAndSplitScript) {
    EXPECT_EQ(InjectRowid("SELECT * FROM tblRuns WHERE x = 'FROM'", "tblRuns", "_rowid"),
              "SELECT *, \"tblRuns\".rowid AS \"_rowid\" FROM tblRuns WHERE x = 'FROM'");
    EXPECT_EQ(InjectRowid("SELECT (SELECT 1 FROM b) AS \"from\", a\nFROM c", "c", "r"),
              "SELECT (SELECT 1 FROM b) AS \"from\", a, \"c\".rowid AS \"r\"\nFROM c");
    EXPECT_FALSE(InjectRowid("SELECT 1 + 2", "t", "r"));

    EXPECT_EQ(SplitScript("-- seed; rows\nINSERT INTO t VALUES ('a;b', \"c;\"); ;\n"
                          "CREATE TABLE [x;y] (a);  \n/* done; */ SELECT 1"),
              QStringList(
                  {"INSERT INTO t VALUES ('a;b', \"c;\")", "CREATE TABLE [x;y] (a)", "SELECT 1"}));
    EXPECT_EQ(SplitScript("CREATE TRIGGER tr AFTER INSERT ON t BEGIN UPDATE t SET a = 1; END;\n"
                          "SELECT 2;"),
              QStringList({"CREATE TRIGGER tr AFTER INSERT ON t BEGIN UPDATE t SET a = 1; END",
                           "SELECT 2"}));
    EXPECT_TRUE(SplitScript(" ;\n -- nothing\n").isEmpty());
}

// What stays in a shape is what can't be bound as the same value; statements that differ only in
// the values taken out share one translation.
TEST(JetSqlText, ShapesTakeOutOnlyValuesThatBindAlike) {
    // A shape's literals are views of the statement, which is kept here.
    std::vector<QString> kept;
    const auto shapeOf = [&](const char* sql) {
        kept.push_back(QString::fromLatin1(sql));
        return ShapeOf(kept.back());
    };
    kept.reserve(32);
    const auto text = [&](const char* sql) {
        const auto shape = shapeOf(sql);
        return shape ? shape->text().toString() : QStringLiteral("(as written)");
    };
    EXPECT_EQ(text("UPDATE t SET a = 'x''y', b = 1.5, c = #1/2/2003# WHERE (id = 12)"),
              "UPDATE t SET a = ?, b = ?, c = ? WHERE (id = ?)");
    EXPECT_EQ(shapeOf("UPDATE t SET a = 'x' WHERE id = 1")->key,
              shapeOf("UPDATE t SET a = 'other' WHERE id = 999")->key);
    EXPECT_NE(shapeOf("UPDATE t SET a = 'x' WHERE id = 1")->key,
              shapeOf("UPDATE t SET a = 5 WHERE id = 1")->key);
    EXPECT_EQ(text("INSERT INTO t (a, b) VALUES ('x', -2)"), "INSERT INTO t (a, b) VALUES (?, -?)");
    // A SELECT keeps what names its columns and its order; only its WHERE gives values.
    EXPECT_EQ(text("SELECT 'k', 2 FROM t WHERE a = 'x' AND b > 3 ORDER BY 1"),
              "SELECT 'k', 2 FROM t WHERE a = ? AND b > ? ORDER BY 1");
    EXPECT_EQ(text("SELECT a FROM t WHERE a LIKE 'x*' ESCAPE '!' AND b = 'y'"),
              "SELECT a FROM t WHERE a LIKE 'x*' ESCAPE '!' AND b = ?");
    EXPECT_EQ(text("UPDATE t SET a = 1 WHERE b IN (SELECT c FROM u WHERE d = 2)"),
              "UPDATE t SET a = 1 WHERE b IN (SELECT c FROM u WHERE d = 2)");
    EXPECT_EQ(text("DELETE FROM t WHERE a = :x OR b = 3"), "DELETE FROM t WHERE a = :x OR b = 3");
    EXPECT_EQ(text("UPDATE t SET a = x'0A', b = 1.5e WHERE c = 2"),
              "UPDATE t SET a = x'0A', b = 1.5e WHERE c = ?");
    EXPECT_EQ(text("SELECT * INTO u FROM t WHERE a = 1"), "(as written)");
    EXPECT_EQ(text("CREATE TABLE u (a Text(5))"), "(as written)");

    // The values as they are bound, with the errors the written text gives.
    const auto shape = shapeOf("UPDATE t SET a = 'it''s', b = 00042, c = 1.50, d = #7/4/2003#");
    ASSERT_TRUE(shape);
    const std::vector<ParamRule> rules = {{ParamRule::Kind::Text, {}},
                                          {ParamRule::Kind::Number, {}},
                                          {ParamRule::Kind::Number, {}},
                                          {ParamRule::Kind::Date, {}}};
    const auto values = ParamValues(*shape, rules);
    ASSERT_TRUE(values);
    EXPECT_EQ((*values)[0].text(), u"it's");
    EXPECT_EQ((*values)[1].integer, 42);
    EXPECT_EQ((*values)[2].type, ParamValue::Type::Real);
    EXPECT_EQ((*values)[2].text(), u"1.50");
    EXPECT_EQ((*values)[3].text(), u"2003-07-04 00:00:00");
    const auto wide = shapeOf("UPDATE t SET a = 12345678901234567890");
    EXPECT_FALSE(ParamValues(*wide, {{ParamRule::Kind::Number, {}}}));
    const auto coerced = shapeOf("UPDATE t SET a = ' ', b = 'abc'");
    const std::vector<ParamRule> numbers = {{ParamRule::Kind::Coerce, "REAL"},
                                            {ParamRule::Kind::Coerce, "REAL"}};
    try {
        ParamValues(*coerced, numbers);
        ADD_FAILURE() << "a text that is no number was bound";
    } catch (const DbError& e) {
        EXPECT_EQ(e.number(), err::TypeMismatch);
    }
}

}  // namespace
}  // namespace slipbook::store::jet
