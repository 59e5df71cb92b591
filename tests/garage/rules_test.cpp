// The garage's rules without windows: captions and questions, the use checks, and the
// maintenance counting, list statement and colours against the template's examples.

#include "common/records.h"
#include "garage/maintenance.h"
#include "store/recordset.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::garage;

namespace {

std::vector<qint64> Ids(store::Database& db, const QString& sql) {
    std::vector<qint64> ids;
    auto rs = db.OpenRecordset(sql, store::RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        ids.push_back(rs->Value(QStringLiteral("lMaintenance_id")).toLongLong());
    }
    return ids;
}

}  // namespace

TEST(RecordRules, CaptionsQuestionsAndNotes) {
    EXPECT_EQ(RecordCaption(QStringLiteral("Summer Nationals"), QStringLiteral(" - Event")),
              QStringLiteral("Summer Nationals - Event"));
    EXPECT_EQ(RecordCaption(QStringLiteral("  "), QStringLiteral(" - Track")),
              QStringLiteral("New - Track"));
    // The caption names the record, and the question names it once more.
    EXPECT_EQ(DeleteQuestion(QStringLiteral("Summer Nationals - Event"),
                             QStringLiteral(" Summer Nationals ")),
              QStringLiteral("Delete The Summer Nationals - Event Record For (Summer Nationals)"));
    EXPECT_EQ(DeleteQuestion(QStringLiteral("Blue - Car"), QStringLiteral("Blue"),
                             NameQuotes::Apostrophes),
              QStringLiteral("Delete The Blue - Car Record For 'Blue'"));
    EXPECT_EQ(RecordNotFound(12), QStringLiteral("Record id 12 NOT Found"));

    EXPECT_TRUE(NotesValue(QStringLiteral("<Type notes here>")).isNull());
    EXPECT_TRUE(NotesValue(QStringLiteral("  <Type directions here>")).isNull());
    EXPECT_TRUE(NotesValue(QString()).isNull());
    const QString note = QStringLiteral("Bob's \"fast\" car\n  ends with blanks  ");
    EXPECT_EQ(NotesValue(note).toString(), note);

    int asked = 0;
    const std::vector<ValidationStep> steps = {
        {[&] { return ++asked, false; }, QStringLiteral("first"), QStringLiteral("a")},
        {[&] { return ++asked, true; }, QStringLiteral("second"), QStringLiteral("b")},
        {[&] { return ++asked, true; }, QStringLiteral("third"), QStringLiteral("c")},
    };
    ASSERT_NE(FirstFailure(steps), nullptr);
    EXPECT_EQ(FirstFailure(steps)->message, QStringLiteral("second"));
    EXPECT_EQ(asked, 4);  // two checks per call: the third step is never asked
}

TEST(RecordRules, DeleteFollowsUse) {
    test::TempLogbook logbook;
    test::ScriptedMessages messages;
    store::Database& db = logbook.db();
    const DeleteRule events{
        {{QStringLiteral("SELECT lEvent_id from tblRuns"), QStringLiteral("lEvent_id")},
         {QStringLiteral("SELECT lEvent_id from tblExpenses"), QStringLiteral("lEvent_id")}},
        QStringLiteral("SELECT COUNT(lEvent_id) as Event_Count from tblEvents")};
    EXPECT_TRUE(DeleteAllowed(db, messages, events, 1));
    db.Execute(QStringLiteral("INSERT INTO tblExpenses (lEvent_id, cExpense_amt) VALUES (1, 5)"));
    EXPECT_FALSE(DeleteAllowed(db, messages, events, 1));
    db.Execute(QStringLiteral("DELETE * FROM tblExpenses"));
    db.Execute(QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id) VALUES (1, 1)"));
    EXPECT_FALSE(DeleteAllowed(db, messages, events, 1));
    EXPECT_TRUE(DeleteAllowed(db, messages, events, 2));

    const DeleteRule maintenance{
        {},
        QStringLiteral("SELECT COUNT(lMaintenance_id) as Maintenance_Count from tblMaintenance")};
    EXPECT_TRUE(DeleteAllowed(db, messages, maintenance, 1));
    db.Execute(QStringLiteral("DELETE * FROM tblMaintenance"));
    EXPECT_FALSE(DeleteAllowed(db, messages, maintenance, 1));
    EXPECT_TRUE(messages.shown.empty());
}

TEST(MaintenanceRules, UpcomingCriticalAndRemaining) {
    // A schedule of 20: a tenth rounded up is 2.9, so 18 runs made is upcoming and 17 isn't.
    EXPECT_FALSE(IsUpcoming(20, 17, false));
    EXPECT_TRUE(IsUpcoming(20, 18, false));
    EXPECT_FALSE(IsCritical(20, 19, false));
    EXPECT_TRUE(IsCritical(20, 20, false));
    EXPECT_FALSE(IsUpcoming(20, 25, true));
    EXPECT_FALSE(IsCritical(20, 25, true));
    // A schedule of 1 is upcoming at once; of 25 from 22 runs (25 - 3.4).
    EXPECT_TRUE(IsUpcoming(1, 0, false));
    EXPECT_FALSE(IsUpcoming(25, 21, false));
    EXPECT_TRUE(IsUpcoming(25, 22, false));

    EXPECT_EQ(RemainingText(20, 21), QStringLiteral("(PAST DUE) -1"));
    EXPECT_EQ(RemainingText(20, 20), QStringLiteral("(due NOW) "));
    EXPECT_EQ(RemainingText(20, 18), QStringLiteral("2"));

    using S = MaintenanceStyle;
    EXPECT_EQ(RemainingStyle(u"N", u"(PAST DUE) -1", u"20"), S::Pastdue);
    EXPECT_EQ(RemainingStyle(u"N", u"(due NOW) ", u"20"), S::Pastdue);
    EXPECT_EQ(RemainingStyle(u"N", u"2", u"20"), S::Upcoming);
    EXPECT_EQ(RemainingStyle(u"N", u"3", u"20"), S::None);
    EXPECT_EQ(RemainingStyle(u"Y", u" ", u"20"), S::None);
    EXPECT_EQ(RemainingStyle(u"N", u"1", u"1"), S::Upcoming);
    EXPECT_EQ(RemainingStyle(u"N", u"3", u"25"), S::Upcoming);
    EXPECT_EQ(RemainingStyle(u"N", u"4", u"25"), S::None);

    MaintenanceItem completed{5,
                              QStringLiteral("My Race Car"),
                              QStringLiteral("Done"),
                              20.0,
                              19.0,
                              true,
                              QDateTime(QDate(2003, 7, 4), QTime(0, 0))};
    EXPECT_EQ(MaintenanceCells(completed),
              (QStringList{"5", "My Race Car", "Done", "20", "19", " ", "Y", "07/04/2003"}));
    MaintenanceItem open{1, QString(), QStringLiteral("A"), 20.0, 21.0, false, QVariant()};
    EXPECT_EQ(MaintenanceCells(open),
              (QStringList{"1", "", "A", "20", "21", "(PAST DUE) -1", "N", " "}));
}

TEST(MaintenanceRules, ListStatementOnTheExamples) {
    test::TempLogbook logbook;
    store::Database& db = logbook.db();
    MaintenanceFilter filter;
    // Completed first, then the open items by runs remaining, the most overdue first.
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)), (std::vector<qint64>{5, 1, 2, 3, 4}));
    filter.status = MaintenanceStatus::Upcoming;
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)), (std::vector<qint64>{1, 2, 3}));
    filter.status = MaintenanceStatus::Critical;
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)), (std::vector<qint64>{1, 2}));

    filter = {};
    filter.from = QDate(2003, 7, 4);
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)), (std::vector<qint64>{5}));
    filter.from.reset();
    filter.to = QDate(2003, 7, 3);
    EXPECT_TRUE(Ids(db, MaintenanceListSql(filter)).empty());

    db.Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (2, 'Second')"));
    db.Execute(
        QStringLiteral("INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, "
                       "iScheduledRuns, iRunsMade) VALUES (6, 2, False, 10, 1)"));
    filter = {};
    filter.carId = 2;
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)), (std::vector<qint64>{6}));
    filter.carId = 1;
    EXPECT_EQ(Ids(db, MaintenanceListSql(filter)).size(), 5u);
}

TEST(MaintenanceRules, StatementsAgreeWithTheRuleAtEveryCount) {
    // The engine's division must be a floating one, as the rule in code is.
    test::TempLogbook logbook;
    store::Database& db = logbook.db();
    db.Execute(QStringLiteral("DELETE * FROM tblMaintenance"));
    qint64 id = 0;
    std::vector<qint64> upcoming;
    std::vector<qint64> critical;
    for (int scheduled : {1, 20, 25}) {
        for (int made = 0; made <= scheduled + 1; ++made) {
            ++id;
            db.Execute(QStringLiteral("INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, "
                                      "bCompleted, iScheduledRuns, iRunsMade) VALUES (%1, 1, "
                                      "False, %2, %3)")
                           .arg(id)
                           .arg(scheduled)
                           .arg(made));
            if (IsUpcoming(scheduled, made, false)) {
                upcoming.push_back(id);
            }
            if (IsCritical(scheduled, made, false)) {
                critical.push_back(id);
            }
        }
    }
    const auto sorted = [&db](const QString& sql) {
        std::vector<qint64> ids = Ids(db, sql);
        std::sort(ids.begin(), ids.end());
        return ids;
    };
    MaintenanceFilter filter;
    filter.status = MaintenanceStatus::Upcoming;
    EXPECT_EQ(sorted(MaintenanceListSql(filter)), upcoming);
    filter.status = MaintenanceStatus::Critical;
    EXPECT_EQ(sorted(MaintenanceListSql(filter)), critical);
    EXPECT_EQ(sorted(DueItemsSql(1)), upcoming);

    // A saved run counts up the open items only.
    test::TempLogbook fresh;
    fresh.db().Execute(CountUpSql(1));
    auto rs = fresh.db().OpenRecordset(
        QStringLiteral("SELECT iRunsMade FROM tblMaintenance ORDER BY lMaintenance_id"),
        store::RecordsetType::Snapshot);
    std::vector<double> made;
    for (; !rs->Eof(); rs->MoveNext()) {
        made.push_back(rs->Value(0).toDouble());
    }
    EXPECT_EQ(made, (std::vector<double>{22, 21, 19, 1, 19}));
    EXPECT_EQ(Ids(fresh.db(), DueItemsSql(1)), (std::vector<qint64>{1, 2, 3}));
}
