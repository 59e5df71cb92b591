// The run filter's form rules and its statement: every operator and kind, values that must not
// break or change the statement, faults named on their row, and, over 100,000 runs, exactly the
// runs that a query written straight for SQLite finds.

#include "views/runfilter.h"

#include "store/dberror.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using views::FilterRow;

namespace {

FilterRow Row(const char* field, const char* type, const char* caption, const char* op,
              const QString& v1, const QString& v2 = QStringLiteral("N/A"), bool include = true) {
    FilterRow r;
    r.fieldName = QString::fromLatin1(field);
    r.dataType = QString::fromLatin1(type);
    r.caption = QString::fromLatin1(caption);
    r.op = QString::fromLatin1(op);
    r.value1 = v1;
    r.value2 = v2;
    r.include = include;
    return r;
}

struct RunFilter : ::testing::Test {
    views::RunFilterStatement Build(const QList<FilterRow>& rows, qint64 eventId = 0) {
        return views::BuildRunFilter(logbook.db(), rows, {1, eventId, QDate(2024, 7, 4)}, messages);
    }
    // The condition of one row, with the statement's fixed parts taken off.
    QString Sql(const FilterRow& row) {
        const auto built = Build({row});
        EXPECT_FALSE(built.fault) << built.fault->message.toStdString();
        QString sql = built.sql;
        EXPECT_TRUE(sql.startsWith(QStringLiteral("SELECT * from tblRuns WHERE ")))
            << sql.toStdString();
        EXPECT_TRUE(sql.endsWith(QStringLiteral(" AND lCar_id = 1"))) << sql.toStdString();
        sql.remove(0, 28);
        sql.chop(16);
        return sql;
    }
    QString Text(const FilterRow& row) { return Build({row}).text; }
    views::FilterFault Fault(const QList<FilterRow>& rows) {
        const auto built = Build(rows);
        EXPECT_TRUE(built.fault.has_value());
        EXPECT_TRUE(built.sql.isEmpty());
        return built.fault.value_or(views::FilterFault{});
    }

    test::TempLogbook logbook;
    test::ScriptedMessages messages;
};

TEST(FilterForm, ChangesTickIncludeAndBetweenKeepsItsSecondValue) {
    views::FilterForm form;
    form.AddColumn("i14Mile_et", "Number", "1/4 et", "10.512", "9.876");
    form.AddColumn("sLane_nm", "Text", "Lane", "", "");
    ASSERT_EQ(form.size(), 2);
    EXPECT_EQ(form.row(0).op, QStringLiteral("Between"));
    EXPECT_EQ(form.row(0).value1, QStringLiteral("10.512"));
    EXPECT_EQ(form.row(0).value2, QStringLiteral("9.876"));
    EXPECT_FALSE(form.row(0).include);

    // The same text again is no change.
    EXPECT_FALSE(form.SetValue1(0, QStringLiteral("10.512")));
    EXPECT_FALSE(form.row(0).include);
    EXPECT_TRUE(form.SetValue2(0, QStringLiteral("11")));
    EXPECT_TRUE(form.row(0).include);

    EXPECT_TRUE(form.SetInclude(0, false));
    EXPECT_TRUE(form.SetOperator(0, QStringLiteral(">=")));
    EXPECT_TRUE(form.row(0).include);
    EXPECT_EQ(form.row(0).value2, QStringLiteral("N/A"));
    // No second value without Between.
    EXPECT_FALSE(form.SetValue2(0, QStringLiteral("12")));
    EXPECT_EQ(form.row(0).value2, QStringLiteral("N/A"));
    EXPECT_TRUE(form.SetOperator(0, QStringLiteral("<")));
    EXPECT_TRUE(form.SetOperator(0, QStringLiteral("Between")));
    EXPECT_EQ(form.row(0).value2, QStringLiteral("11"));
    EXPECT_FALSE(form.SetOperator(0, QStringLiteral("<>")));
    EXPECT_EQ(form.row(0).op, QStringLiteral("Between"));

    // Include alone ticks nothing else; the other row is untouched throughout.
    EXPECT_TRUE(form.SetInclude(1, true));
    EXPECT_EQ(form.row(1).value2, QString());
    EXPECT_TRUE(form.SetValue1(1, QStringLiteral("Left")));
    form.Clear();
    EXPECT_EQ(form.size(), 0);
}

TEST_F(RunFilter, EveryOperatorOfEveryKind) {
    // Numbers: read whole, written plainly; the readable text as typed.
    EXPECT_EQ(Sql(Row("i14Mile_et", "Number", "1/4 et", "Between", "9.5", "1,234.50")),
              QStringLiteral("i14Mile_et >= 9.5 AND i14Mile_et <= 1234.5"));
    EXPECT_EQ(Text(Row("i14Mile_et", "Number", "1/4 et", "Between", " 9.5", "1,234.50")),
              QStringLiteral("1/4 et Between 9.5 AND 1,234.50"));
    for (const char* op : {"=", ">", "<", ">=", "<="}) {
        EXPECT_EQ(Sql(Row("lRun_num", "Number", "Run #", op, "-3")),
                  QStringLiteral("lRun_num %1 -3").arg(QLatin1String(op)));
        EXPECT_EQ(Text(Row("lRun_num", "Number", "Run #", op, "-3")),
                  QStringLiteral("Run # %1 -3").arg(QLatin1String(op)));
    }
    // A number column kept as text compares by number.
    EXPECT_EQ(Sql(Row("sThrottleStop1_val", "Number", "Throttle Stop 1", ">", "1.50")),
              QStringLiteral("sThrottleStop1_val <> '' AND sThrottleStop1_val + 0 > 1.5"));
    EXPECT_EQ(Sql(Row("sThrottleStop1_val", "Number", "Throttle Stop 1", "Between", "1", "2")),
              QStringLiteral("sThrottleStop1_val <> '' AND sThrottleStop1_val + 0 >= 1 AND "
                             "sThrottleStop1_val + 0 <= 2"));

    // Text: apostrophes doubled in the statement, kept as typed in the readable text.
    EXPECT_EQ(Sql(Row("sLane_nm", "Text", "Lane", "=", "O'Brien's")),
              QStringLiteral("sLane_nm = 'O''Brien''s'"));
    EXPECT_EQ(Text(Row("sLane_nm", "Text", "Lane", "=", "O'Brien's")),
              QStringLiteral("Lane = 'O'Brien's'"));
    EXPECT_EQ(Sql(Row("Custom1", "Text", "Custom1", "Between", "a\"b", "'; DROP TABLE tblRuns")),
              QStringLiteral("Custom1 >= 'a\"b' AND Custom1 <= '''; DROP TABLE tblRuns'"));
    EXPECT_EQ(Text(Row("Custom1", "Text", "Custom1", "Between", "a", "z")),
              QStringLiteral("Custom1 Between 'a' AND 'z'"));
    // A notes hint is text like any other.
    EXPECT_EQ(Sql(Row("sRunNotes_tx", "Text", "Notes", "<", "<Type notes here>")),
              QStringLiteral("sRunNotes_tx < '<Type notes here>'"));

    // Dates and times: read as typed dates are, written as the store's literal.
    EXPECT_EQ(Sql(Row("dtRun_dt", "Date", "Date", "Between", "7/4/03", "12/31/2003")),
              QStringLiteral("dtRun_dt >= #07/04/2003# AND dtRun_dt <= #12/31/2003#"));
    EXPECT_EQ(Text(Row("dtRun_dt", "Date", "Date", "Between", "7/4/03", "12/31/2003")),
              QStringLiteral("Date Between 7/4/03 AND 12/31/2003"));
    EXPECT_EQ(Sql(Row("dtRun_dt", "Date", "Date", "=", "7/4")),
              QStringLiteral("dtRun_dt = #07/04/2024#"));
    EXPECT_EQ(Sql(Row("dtRun_dt", "Date", "Date", ">", "2003-07-04 13:05")),
              QStringLiteral("dtRun_dt > #07/04/2003 01:05:00 PM#"));
    EXPECT_EQ(Sql(Row("dtRun_tm", "Time", "Time", "<=", "10:30 AM")),
              QStringLiteral("dtRun_tm <= #10:30:00 AM#"));
    EXPECT_EQ(Sql(Row("dtRun_tm", "Time", "Time", "Between", "12:00 AM", "22:15")),
              QStringLiteral("dtRun_tm >= #12:00:00 AM# AND dtRun_tm <= #10:15:00 PM#"));
    EXPECT_EQ(Text(Row("dtRun_tm", "Time", "Time", ">=", "10:30 AM")),
              QStringLiteral("Time >= 10:30 AM"));

    // Yes/No: a word inside "Yes" or "True" is yes, inside "No" or "False" no.
    for (const char* yes : {"Yes", "Y", "yes", "TRUE", "t", "ue", "es", " Yes "}) {
        EXPECT_EQ(Sql(Row("bFullRun_fl", "Boolean", "Full Run", "=", yes)),
                  QStringLiteral("bFullRun_fl = True"))
            << yes;
    }
    for (const char* no : {"No", "n", "o", "False", "f", "al", "LSE"}) {
        EXPECT_EQ(Sql(Row("bFullRun_fl", "Boolean", "Full Run", "=", no)),
                  QStringLiteral("bFullRun_fl = False"))
            << no;
    }
    EXPECT_EQ(Text(Row("bFullRun_fl", "Boolean", "Full Run", "=", "Y")),
              QStringLiteral("Full Run = Y"));
    EXPECT_EQ(Sql(Row("bFullRun_fl", "Boolean", "Full Run", "Between", "True", "no")),
              QStringLiteral("bFullRun_fl >= True AND bFullRun_fl <= False"));
    EXPECT_EQ(Text(Row("bFullRun_fl", "Boolean", "Full Run", "Between", "True", "no")),
              QStringLiteral("Full Run >= True AND Full Run <= no"));

    // Looked-up columns compare the key of the name typed.
    EXPECT_EQ(Sql(Row("lEvent_id", "Text", "Event", "=", "Test and Tune Day")),
              QStringLiteral("lEvent_id = 1"));
    EXPECT_EQ(Text(Row("lEvent_id", "Text", "Event", "=", "Test and Tune Day")),
              QStringLiteral("Event = Test and Tune Day"));
    EXPECT_EQ(Sql(Row("lOpponent_id", "Text", "Opponent", "Between", "solo pass", "Bye Run")),
              QStringLiteral("lOpponent_id >= 1 AND lOpponent_id <= 2"));
    logbook.db().Execute(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (7, 'Mike''s Day', 1)"));
    EXPECT_EQ(Sql(Row("lEvent_id", "Text", "Event", ">", "Mike's Day")),
              QStringLiteral("lEvent_id > 7"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(RunFilter, ConditionsJoinAndRowsThatSayNothingDropOut) {
    const QList<FilterRow> rows = {
        Row("i14Mile_et", "Number", "1/4 et", "<", "10"),
        Row("sLane_nm", "Text", "Lane", "=", "not included", "N/A", false),
        Row("bFullRun_fl", "Boolean", "Full Run", "=", "maybe"),
        Row("lEvent_id", "Text", "Event", "=", "No Such Event"),
        Row("lOpponent_id", "Text", "Opponent", "Between", "Solo Pass", "Nobody"),
        Row("sLane_nm", "Text", "Lane", "=", "Left"),
        Row("Custom1", "Text", "Custom1", "garbage", "x", "N/A", false)};
    auto built = Build(rows, 3);
    ASSERT_FALSE(built.fault);
    EXPECT_EQ(built.conditions, 2);
    EXPECT_EQ(built.sql, QStringLiteral("SELECT * from tblRuns WHERE i14Mile_et < 10 AND "
                                        "sLane_nm = 'Left' AND lCar_id = 1 AND lEvent_id = 3"));
    EXPECT_EQ(built.text, QStringLiteral("1/4 et < 10 AND Lane = 'Left'"));

    // Nothing included, or nothing that says anything: no statement at all.
    built = Build({rows[1], rows[2], rows[3]});
    EXPECT_FALSE(built.fault);
    EXPECT_EQ(built.conditions, 0);
    EXPECT_TRUE(built.sql.isEmpty());
    EXPECT_TRUE(built.text.isEmpty());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(RunFilter, ValuesThatCantBeReadAreNamedOnTheirRow) {
    const FilterRow good = Row("i14Mile_et", "Number", "1/4 et", ">", "9");
    struct Case {
        FilterRow row;
        int value;
        const char* message;
    };
    const Case cases[] = {
        {Row("sLane_nm", "Text", "Lane", "=", "  "), 1,
         "Value 1 of \"Lane\" is empty. Type a value, or clear Include."},
        {Row("sLane_nm", "Text", "Lane", "Between", "A", ""), 2,
         "Value 2 of \"Lane\" is empty. Type a value, or choose another operator."},
        {Row("bFullRun_fl", "Boolean", "Full Run", "=", ""), 1,
         "Value 1 of \"Full Run\" is empty. Type a value, or clear Include."},
        {Row("lEvent_id", "Text", "Event", "=", ""), 1,
         "Value 1 of \"Event\" is empty. Type a value, or clear Include."},
        {Row("i14Mile_et", "Number", "1/4 et", "Between", "9", "ten"), 2,
         "Value 2 of \"1/4 et\" is not a number: \"ten\"."},
        {Row("i14Mile_et", "Number", "1/4 et", "=", "9.5s"), 1,
         "Value 1 of \"1/4 et\" is not a number: \"9.5s\"."},
        {Row("i14Mile_et", "Number", "1/4 et", "=", "1e999"), 1,
         "Value 1 of \"1/4 et\" is not a number: \"1e999\"."},
        {Row("dtRun_dt", "Date", "Date", "=", "13/45/2003"), 1,
         "Value 1 of \"Date\" is not a date: \"13/45/2003\". Type it as MM/DD/YYYY."},
        {Row("dtRun_dt", "Date", "Date", ">", "10:30 AM"), 1,
         "Value 1 of \"Date\" is not a date: \"10:30 AM\". Type it as MM/DD/YYYY."},
        {Row("dtRun_dt", "Date", "Date", "=", "7/4/2003#"), 1,
         "Value 1 of \"Date\" is not a date: \"7/4/2003#\". Type it as MM/DD/YYYY."},
        {Row("dtRun_tm", "Time", "Time", "Between", "10:00 AM", "25:61"), 2,
         "Value 2 of \"Time\" is not a time: \"25:61\". Type it as HH:MM AM."},
        {Row("dtRun_tm", "Time", "Time", "=", "7/4/2003"), 1,
         "Value 1 of \"Time\" is not a time: \"7/4/2003\". Type it as HH:MM AM."},
        {Row("bFullRun_fl", "Boolean", "Full Run", "=", "e"), 1,
         "Value 1 of \"Full Run\" could be Yes or No: \"e\". Type Yes, No, True or False."},
        {Row("bFullRun_fl", "Boolean", "Full Run", "Between", "Yes", "eF"), 2,
         "Value 2 of \"Full Run\" could be Yes or No: \"eF\". Type Yes, No, True or False."},
        {Row("lEvent_id", "Text", "Event", "=", "nan"), 1,
         "Value 1 of \"Event\" can't be looked up: \"nan\"."},
        {Row("sLane_nm", "Text", "Lane", "<>", "x"), 1, "Choose an operator for \"Lane\"."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        const auto fault = Fault({good, c.row, Row("sLane_nm", "Text", "Lane", "=", "")});
        EXPECT_EQ(fault.row, 1);
        EXPECT_EQ(fault.value, c.value);
        EXPECT_EQ(fault.message, QString::fromUtf8(c.message));
    }
    EXPECT_TRUE(messages.shown.empty());
}

// 100,000 runs over two cars and five events, with text, numbers kept as text, dates, times and
// flags; each filter's statement, as the run list reads it, against SQLite asked directly.
TEST_F(RunFilter, OverAHundredThousandRunsFindsExactlyWhatSqliteFinds) {
    auto& db = logbook.db();
    db.ExecRaw(QStringLiteral(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id) VALUES (2, 'Mike''s Nationals', "
        "1), (3, 'Spring \"Open\"', 1), (4, 'Fall Finals', 1), (5, 'Night Race', 1)"));
    db.ExecRaw(QStringLiteral(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) "
        "INSERT INTO tblRuns (lCar_id, lEvent_id, lOpponent_id, lRun_num, dtRun_dt, dtRun_tm, "
        "bFullRun_fl, i14Mile_et, sThrottleStop1_val, sLane_nm) "
        "SELECT 1 + i % 2, 1 + i % 5, 1 + i % 3, i % 8, "
        "date('2003-01-01', '+' || (i % 700) || ' days') || ' 00:00:00', "
        "printf('1899-12-30 %02d:%02d:00', 9 + i % 12, i % 60), "
        "CASE WHEN i % 10 = 0 THEN 0 ELSE -1 END, 7 + (i % 3001) / 1000.0, "
        "CASE i % 7 WHEN 0 THEN '' WHEN 1 THEN NULL ELSE CAST(i % 120 AS TEXT) END, "
        "CASE i % 4 WHEN 0 THEN 'O''Brien''s' WHEN 1 THEN 'Left' WHEN 2 THEN '12\" slick' "
        "ELSE 'o''brien''s lane' END FROM n"));

    auto direct = [&](const QString& where) {
        QList<qint64> out;
        const QByteArray sql = (QStringLiteral("SELECT lRun_id FROM tblRuns WHERE ") + where +
                                QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm"))
                                   .toUtf8();
        sqlite3_stmt* stmt = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(db.handle(), sql.constData(), -1, &stmt, nullptr), SQLITE_OK)
            << sql.constData();
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            out << sqlite3_column_int64(stmt, 0);
        }
        sqlite3_finalize(stmt);
        return out;
    };
    auto filtered = [&](const QList<FilterRow>& rows, qint64 eventId) {
        const auto built = Build(rows, eventId);
        EXPECT_FALSE(built.fault);
        QList<qint64> out;
        store::Query q = db.OpenQuery(built.sql + QStringLiteral(" ORDER BY dtRun_dt, dtRun_tm"));
        const int id = q.FieldIndex(QStringLiteral("lRun_id"));
        while (q.Next()) {
            out << q.Integer(id);
        }
        EXPECT_EQ(views::FilterHasRuns(db, built.sql), !out.isEmpty());
        return out;
    };
    struct Case {
        QList<FilterRow> rows;
        qint64 eventId;
        const char* where;
    };
    const Case cases[] = {
        {{Row("sLane_nm", "Text", "Lane", "=", "O'Brien's")},
         0,
         "sLane_nm = 'o''brien''s' COLLATE NOCASE AND lCar_id = 1"},
        {{Row("sLane_nm", "Text", "Lane", "Between", "12\" slick", "O'Brien's")},
         2,
         "sLane_nm COLLATE NOCASE >= '12\" slick' AND sLane_nm COLLATE NOCASE <= 'O''Brien''s' "
         "AND lCar_id = 1 AND lEvent_id = 2"},
        {{Row("i14Mile_et", "Number", "1/4 et", "Between", "8.5", "9.25")},
         0,
         "i14Mile_et >= 8.5 AND i14Mile_et <= 9.25 AND lCar_id = 1"},
        {{Row("sThrottleStop1_val", "Number", "Throttle Stop 1", ">", "99")},
         0,
         "typeof(sThrottleStop1_val) = 'text' AND sThrottleStop1_val <> '' AND "
         "CAST(sThrottleStop1_val AS REAL) > 99 AND lCar_id = 1"},
        {{Row("dtRun_dt", "Date", "Date", "Between", "3/1/2003", "04/15/2003"),
          Row("dtRun_tm", "Time", "Time", ">=", "6:30 PM")},
         0,
         "dtRun_dt >= '2003-03-01' AND dtRun_dt <= '2003-04-15 00:00:00' AND dtRun_tm >= "
         "'1899-12-30 18:30:00' AND lCar_id = 1"},
        {{Row("bFullRun_fl", "Boolean", "Full Run", "=", "No"),
          Row("lRun_num", "Number", "Run #", "<", "3")},
         0,
         "bFullRun_fl = 0 AND lRun_num < 3 AND lCar_id = 1"},
        {{Row("lEvent_id", "Text", "Event", "=", "Mike's Nationals"),
          Row("lOpponent_id", "Text", "Opponent", ">", "Solo Pass")},
         0,
         "lEvent_id = 2 AND lOpponent_id > 1 AND lCar_id = 1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.where);
        const QList<qint64> expected = direct(QString::fromUtf8(c.where));
        EXPECT_GT(expected.size(), 0);
        EXPECT_LT(expected.size(), 50000);
        EXPECT_EQ(filtered(c.rows, c.eventId), expected);
    }
    // A filter that matches nothing says so.
    const auto none = Build({Row("i14Mile_et", "Number", "1/4 et", ">", "99")});
    EXPECT_FALSE(views::FilterHasRuns(db, none.sql));
}

}  // namespace
