// The run record without its window: the field table, the intervals, and the save against a
// real logbook (the row, the car, the counters, the names, numbering, the list row).

#include "common/tools.h"
#include "run/fieldtable.h"
#include "run/intervals.h"
#include "run/runsave.h"
#include "shell/runlist.h"
#include "store/dberror.h"
#include "support/logbook.h"
#include "support/scriptedmessages.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QSet>

using namespace slipbook;
using namespace slipbook::run;

namespace {

QVariant Scalar(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    return q.Next() ? q.Value(0) : QVariant();
}

QHash<QString, QVariant> Row(store::Database& db, const QString& sql) {
    QHash<QString, QVariant> row;
    store::Query q = db.OpenQuery(sql);
    if (q.Next()) {
        for (int i = 0; i < q.FieldCount(); ++i) {
            row.insert(q.FieldName(i).toLower(), q.Value(i));
        }
    }
    return row;
}

QStringList Columns(store::Database& db, const QString& table) {
    QStringList names;
    const auto def = db.TableDefinition(table);
    for (const auto& field : def->fields) {
        names << field.name;
    }
    return names;
}

// A text that breaks any statement built carelessly.
QString Awkward(const QString& column) {
    return column + QStringLiteral(" O'Neil's \"best\" #7 & [x] -- ;");
}

// Every field filled: numbers where numbers go, awkward texts everywhere else.
RunValues FullRun() {
    RunValues v;
    for (const RunField& f : RunFields()) {
        switch (f.kind) {
            case FieldKind::Text:
            case FieldKind::Hidden:
                v.texts.insert(f.column, Awkward(f.column));
                break;
            case FieldKind::Notes:
                v.texts.insert(f.column, QStringLiteral("Pulled left at 60' \"hard\"\nnext line"));
                break;
            default:
                break;
        }
    }
    const std::pair<const char*, const char*> numbers[] = {
        {"lRun_num", "7"},
        {"dtRun_dt", "07/04/2024"},
        {"dtRun_tm", "02:35 PM"},
        {"lPoints_val", "1,234"},
        {"iVehicleReactionTime_val", "0.0125"},
        {"iExhaustTemp_val", "1250"},
        {"iTemp_val", "75 "},
        {"iHumidity_val", "50"},
        {"iBarometricPressure_val", "29.92"},
        {"iPressureAltitude_val", "1"},
        {"iCorrFactor_val", "1.0294"},
        {"iDensityAlt_val", "1,468"},
        {"iAirDensity_val", "95.80"},
        {"iVaporPressure_val", "0.438"},
        {"iDryBarometer_val", "29.48"},
        {"iDewPoint_val", "55"},
        {"iWetBulbTemp_val", "62.5"},
        {"iDialIn_val", "10.900"},
        {"iReactionTime_val", "0.512"},
        {"i60Foot_et", "1.402"},
        {"i330Foot_et", "4.012"},
        {"i18Mile_et", "6.303"},
        {"i18Mile_mph", "108.250"},
        {"i1000Foot_et", "8.211"},
        {"i14Mile_et", "9.870"},
        {"i14Mile_mph", "135.010"},
        {"iMarginOfVictory_ft", "3.5"},
        {"i60to330Foot_et", "2.61 "},
        {"i330to660Foot_et", "2.291 "},
        {"i660to1000Foot_et", "1.908 "},
        {"i1000to1320Foot_et", "1.659 "},
        {"sDelayBox_val", "0.125"},
        {"sThrottleStop1_val", "1.500"},
        {"sThrottleStop2_val", "2.500"},
        {"sThrottleStop3_val", "3.500"},
        {"sThrottleStop4_val", "4.500"},
    };
    for (const auto& [column, text] : numbers) {
        v.texts.insert(QString::fromLatin1(column), QString::fromLatin1(text));
    }
    v.ids.insert(QStringLiteral("lEvent_id"), qint64{1});
    v.ids.insert(QStringLiteral("lCar_id"), qint64{1});
    v.ids.insert(QStringLiteral("lOpponent_id"), qint64{2});
    v.ids.insert(QStringLiteral("lRunType_id"), qint64{3});
    v.fullRun = false;
    v.leftLane = false;
    return v;
}

qint64 AddRun(store::Database& db, const char* date, const char* time, qint64 car = 1) {
    RunValues v = FullRun();
    v.texts[QStringLiteral("dtRun_dt")] = QString::fromLatin1(date);
    v.texts[QStringLiteral("dtRun_tm")] = QString::fromLatin1(time);
    v.ids[QStringLiteral("lCar_id")] = car;
    return SaveRun(db, {v, 0, std::nullopt}).runId;
}

std::vector<double> RunsMade(store::Database& db) {
    std::vector<double> made;
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT iRunsMade FROM tblMaintenance ORDER BY lMaintenance_id"));
    while (q.Next()) {
        made.push_back(q.Value(0).toDouble());
    }
    return made;
}

}  // namespace

TEST(RunFieldTable, EveryColumnOnceAndEveryCarColumnExists) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    QStringList runColumns = Columns(db, QStringLiteral("tblRuns"));
    runColumns.removeAll(QStringLiteral("lRun_id"));
    QSet<QString> seen;
    QSet<QString> controls;
    for (const RunField& f : RunFields()) {
        EXPECT_TRUE(runColumns.contains(f.column)) << qPrintable(f.column);
        EXPECT_FALSE(seen.contains(f.column)) << qPrintable(f.column);
        seen.insert(f.column);
        EXPECT_GE(f.statement, 1);
        EXPECT_LE(f.statement, 9);
        if (!f.control.isEmpty()) {
            EXPECT_FALSE(controls.contains(f.control)) << qPrintable(f.control);
            controls.insert(f.control);
        }
        if (!f.carColumn.isEmpty() || f.fromCar) {
            EXPECT_TRUE(db.FieldExists(QStringLiteral("tblCars"),
                                       f.carColumn.isEmpty() ? f.column : f.carColumn))
                << qPrintable(f.column);
        }
    }
    EXPECT_EQ(seen.size(), runColumns.size());
    EXPECT_EQ(FieldByControl(u"txtJet(7)")->column, QStringLiteral("sJet8_val"));
    EXPECT_FALSE(FieldByControl(u"txtThrottleStop(0)")->fromCar);
    EXPECT_FALSE(FieldByControl(u"txtThrottleStop(0)")->carColumn.isEmpty());
    EXPECT_EQ(FieldByColumn(u"SHATNOZZLE1_VAL")->kind, FieldKind::Hidden);

    // The base set-up and the nozzles go only into a new run; the groups keep their order.
    const QString adding = RunInsertStatement(FullRun());
    const QString editing = RunStatement(FullRun(), 5);
    EXPECT_TRUE(adding.startsWith(QStringLiteral("INSERT INTO tblRuns (lEvent_id, lCar_id, ")));
    EXPECT_TRUE(editing.startsWith(QStringLiteral("UPDATE tblRuns SET lEvent_id = ")));
    EXPECT_TRUE(editing.endsWith(QStringLiteral(" WHERE (lRun_id = 5)")));
    EXPECT_TRUE(adding.contains(QStringLiteral("sHeadNozzle8_val")));
    EXPECT_FALSE(editing.contains(QStringLiteral("sBaseADR")));
    EXPECT_LT(adding.indexOf(QStringLiteral("sBlowerOverdrive_val")),
              adding.indexOf(QStringLiteral("sJet1_val")));
    EXPECT_LT(adding.indexOf(QStringLiteral("sRunNotes_tx")),
              adding.indexOf(QStringLiteral("Custom1")));
}

TEST(RunIntervals, DifferencesWhileTyping) {
    EXPECT_EQ(IntervalText(u"4.012", u"1.402"), QStringLiteral("2.61 "));
    // Fifteen significant digits of the binary difference, as the number converts to text.
    EXPECT_EQ(IntervalText(u"1.2", u"1.1"), QStringLiteral("0.0999999999999999 "));
    EXPECT_EQ(IntervalText(u"4.000", u"4.500"), QStringLiteral(" "));  // negative: the blank
    EXPECT_EQ(IntervalText(u"4", u"4.000 "), QStringLiteral("0 "));
    EXPECT_FALSE(IntervalText(u"", u"1.4"));  // blank: keep the old text
    EXPECT_FALSE(IntervalText(u"4.0", u"-"));
    EXPECT_FALSE(IntervalText(u"1.2.3", u"1"));

    EXPECT_EQ(IntervalsOfMark(u"txt60Foot_et"), std::vector<int>{0});
    EXPECT_EQ(IntervalsOfMark(u"txt330Foot_et"), (std::vector<int>{0, 1}));
    EXPECT_EQ(IntervalsOfMark(u"txt1000Foot_et"), (std::vector<int>{2, 3}));
    EXPECT_EQ(IntervalsOfMark(u"txt14Mile_et"), std::vector<int>{3});
    EXPECT_TRUE(IntervalsOfMark(u"txt14Mile_mph").empty());
}

TEST(RunSave, ANewRunWritesEveryColumnTheCarAndTheCounters) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const std::vector<double> before = RunsMade(db);
    const RunValues v = FullRun();
    const RunSaveOutcome out = SaveRun(db, {v, 0, std::nullopt});
    EXPECT_TRUE(out.added);
    EXPECT_TRUE(out.carUpdated);
    EXPECT_TRUE(out.maintenanceDue);
    ASSERT_GT(out.runId, 0);

    const auto row =
        Row(db, QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = %1").arg(out.runId));
    for (const RunField& f : RunFields()) {
        if (f.kind == FieldKind::Text || f.kind == FieldKind::Hidden) {
            EXPECT_EQ(row.value(f.column.toLower()).toString(), Awkward(f.column))
                << qPrintable(f.column);
        }
    }
    EXPECT_EQ(row.value("srunnotes_tx").toString(),
              QStringLiteral("Pulled left at 60' \"hard\"\nnext line"));
    EXPECT_EQ(row.value("lruntype_id").toLongLong(), 3);
    EXPECT_EQ(row.value("lrun_num").toLongLong(), 7);
    EXPECT_EQ(row.value("dtrun_dt").toDateTime().date(), QDate(2024, 7, 4));
    EXPECT_EQ(row.value("dtrun_tm").toDateTime(),
              QDateTime(QDate(1899, 12, 30), QTime(14, 35), Qt::UTC));
    EXPECT_EQ(row.value("bfullrun_fl").toLongLong(), 0);
    EXPECT_EQ(row.value("slane_nm").toString(), QStringLiteral("R"));
    EXPECT_EQ(row.value("lpoints_val").toLongLong(), 1234);  // grouping taken out
    EXPECT_DOUBLE_EQ(row.value("idensityalt_val").toDouble(), 1468);
    EXPECT_DOUBLE_EQ(row.value("ivehiclereactiontime_val").toDouble(), 0.0125);
    EXPECT_DOUBLE_EQ(row.value("i60to330foot_et").toDouble(), 2.61);

    // The car takes the tune-up, throttle stops and custom values, not the base set-up.
    const auto car = Row(db, QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = 1"));
    EXPECT_EQ(car.value("scarnotes_tx").toString(), row.value("srunnotes_tx").toString());
    for (const char* column : {"sJet3_val", "sSuspensionBarLocations_val", "Custom6"}) {
        EXPECT_EQ(car.value(QString::fromLatin1(column).toLower()).toString(),
                  Awkward(QString::fromLatin1(column)))
            << column;
    }
    EXPECT_EQ(car.value("sthrottlestop4_val").toString(), QStringLiteral("4.500"));
    EXPECT_EQ(car.value("sdelaybox_val").toString(), QStringLiteral("0.125"));
    EXPECT_NE(car.value("sbasejet").toString(), Awkward(QStringLiteral("sBaseJet")));

    // Every open item of the car counts the run once; the completed one does not.
    std::vector<double> after = before;
    for (size_t i = 0; i < 4; ++i) {
        after[i] += 1;
    }
    EXPECT_EQ(RunsMade(db), after);

    // A car with no due items, and one not there at all.
    db.Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (2, 'Spare')"));
    RunValues spare = v;
    spare.ids[QStringLiteral("lCar_id")] = qint64{2};
    const RunSaveOutcome second = SaveRun(db, {spare, 0, std::nullopt});
    EXPECT_FALSE(second.maintenanceDue);
    EXPECT_GT(second.runId, out.runId);
}

TEST(RunSave, EmptyNumbersAreNullAndPromptsAreNotStored) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    RunValues v = FullRun();
    for (const char* column : {"iTemp_val", "lPoints_val", "i60Foot_et"}) {
        v.texts[QString::fromLatin1(column)] = QStringLiteral("  ");
    }
    v.texts[QStringLiteral("i60to330Foot_et")] = QStringLiteral(" ");  // a negative interval
    v.texts[QStringLiteral("dtRun_dt")] = QStringLiteral("__/__/____");
    v.texts[QStringLiteral("dtRun_tm")] = QStringLiteral("__:__ __");
    v.texts[QStringLiteral("sRunNotes_tx")] = QStringLiteral("  <Type notes here>");
    v.texts[QStringLiteral("sLogFile_nm")] = QStringLiteral("   ");
    v.texts[QStringLiteral("Custom1")] = QStringLiteral("<5 psi");
    v.fullRun = true;
    v.leftLane = true;
    const qint64 id = SaveRun(db, {v, 0, std::nullopt}).runId;
    const auto row = Row(db, QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = %1").arg(id));
    for (const char* column :
         {"itemp_val", "lpoints_val", "i60foot_et", "i60to330foot_et", "dtrun_dt", "dtrun_tm"}) {
        EXPECT_TRUE(row.contains(QString::fromLatin1(column))) << column;
        EXPECT_TRUE(row.value(QString::fromLatin1(column)).isNull()) << column;
    }
    EXPECT_EQ(row.value("srunnotes_tx").toString(), QString());
    EXPECT_EQ(row.value("slogfile_nm").toString(), QString());
    EXPECT_EQ(row.value("custom1").toString(), QStringLiteral("<5 psi"));
    EXPECT_EQ(row.value("bfullrun_fl").toLongLong(), -1);
    EXPECT_EQ(row.value("slane_nm").toString(), QStringLiteral("L"));
    // The hint is no note for the car either.
    const auto carNotes = [&] {
        return Scalar(db, QStringLiteral("SELECT sCarNotes_tx FROM tblCars WHERE lCar_id = 1"))
            .toString();
    };
    EXPECT_EQ(carNotes(), QString());

    // A note that merely starts with "<" is the racer's, kept to the letter.
    v.texts[QStringLiteral("sRunNotes_tx")] = QStringLiteral("<3 psi on the left rear, O'Neil's");
    const qint64 second = SaveRun(db, {v, 0, std::nullopt}).runId;
    EXPECT_EQ(
        Scalar(db,
               QStringLiteral("SELECT sRunNotes_tx FROM tblRuns WHERE lRun_id = %1").arg(second))
            .toString(),
        QStringLiteral("<3 psi on the left rear, O'Neil's"));
    EXPECT_EQ(carNotes(), QStringLiteral("<3 psi on the left rear, O'Neil's"));
}

TEST(RunSave, OnlyTheNewestRunChangesTheCarAndEditsKeepTheBaseSetup) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    db.Execute(QStringLiteral("INSERT INTO tblCars (lCar_id, sCar_nm) VALUES (2, 'Spare')"));
    const qint64 older = AddRun(db, "06/01/2024", "10:00 AM");
    const qint64 newer = AddRun(db, "06/01/2024", "11:00 AM", 2);  // another car's run
    db.Execute(QStringLiteral("UPDATE tblCars SET sJet1_val = 'car', sBaseJet = 'base car'"));

    RunValues edit = FullRun();
    edit.texts[QStringLiteral("dtRun_dt")] = QStringLiteral("06/01/2024");
    edit.texts[QStringLiteral("dtRun_tm")] = QStringLiteral("10:00 AM");
    edit.texts[QStringLiteral("sJet1_val")] = QStringLiteral("edited");
    edit.texts[QStringLiteral("sBaseJet")] = QStringLiteral("not written");
    const std::vector<double> counted = RunsMade(db);
    RunSaveOutcome out = SaveRun(db, {edit, older, std::nullopt});
    EXPECT_FALSE(out.added);
    EXPECT_FALSE(out.carUpdated);
    EXPECT_EQ(RunsMade(db), counted);  // an edit counts nothing
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sJet1_val FROM tblCars WHERE lCar_id = 1")).toString(),
        QStringLiteral("car"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sJet1_val FROM tblRuns WHERE lRun_id = %1").arg(older))
            .toString(),
        QStringLiteral("edited"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sBaseJet FROM tblRuns WHERE lRun_id = %1").arg(older))
            .toString(),
        Awkward(QStringLiteral("sBaseJet")));

    // Moved later than every other run, the same run now gives its tune-up to its car, and only
    // to its car, whichever car the newest run was before.
    edit.texts[QStringLiteral("dtRun_tm")] = QStringLiteral("11:30 AM");
    out = SaveRun(db, {edit, older, std::nullopt});
    EXPECT_TRUE(out.carUpdated);
    EXPECT_TRUE(IsNewestRun(db, older));
    EXPECT_FALSE(IsNewestRun(db, newer));
    // Runs without a date, or of no car, are no later than a dated one.
    db.Execute(QStringLiteral("INSERT INTO tblRuns (lRun_id, lCar_id) VALUES (900, 7)"));
    db.Execute(
        QStringLiteral("INSERT INTO tblRuns (lRun_id, dtRun_dt) VALUES (901, #06/01/2024#)"));
    EXPECT_TRUE(IsNewestRun(db, older));
    EXPECT_FALSE(IsNewestRun(db, 900));
    db.Execute(QStringLiteral(
        "INSERT INTO tblRuns (lRun_id, dtRun_dt, dtRun_tm) VALUES (902, #06/02/2024#, #9:00 AM#)"));
    EXPECT_FALSE(IsNewestRun(db, older));
    EXPECT_TRUE(IsNewestRun(db, 902));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sJet1_val FROM tblCars WHERE lCar_id = 1")).toString(),
        QStringLiteral("edited"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sJet1_val FROM tblCars WHERE lCar_id = 2")).toString(),
        QStringLiteral("car"));
    EXPECT_EQ(
        Scalar(db, QStringLiteral("SELECT sBaseJet FROM tblCars WHERE lCar_id = 1")).toString(),
        QStringLiteral("base car"));

    // A run deleted meanwhile is not silently "saved".
    db.Execute(QStringLiteral("DELETE FROM tblRuns WHERE lRun_id = %1").arg(newer));
    EXPECT_THROW(SaveRun(db, {edit, newer, std::nullopt}), store::DbError);
}

TEST(RunSave, AFailedSaveLeavesTheLogbookAsItWas) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const std::vector<double> counted = RunsMade(db);
    const QVariant runs = Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns"));
    const QVariant notes =
        Scalar(db, QStringLiteral("SELECT sCarNotes_tx FROM tblCars WHERE lCar_id = 1"));
    const CustomNames names = ReadCustomNames(db);

    RunValues v = FullRun();
    v.texts[QStringLiteral("iMarginOfVictory_ft")] = QStringLiteral("1.2.3");  // in statement 8
    CustomNames renamed = {QStringLiteral("Tire 'Brand'"),
                           QStringLiteral("B"),
                           QStringLiteral("C"),
                           QStringLiteral("D"),
                           QStringLiteral("E"),
                           QStringLiteral("F")};
    try {
        SaveRun(db, {v, 0, renamed});
        ADD_FAILURE() << "saved";
    } catch (const store::DbError& e) {
        EXPECT_EQ(e.number(), store::err::TypeMismatch);
    }
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns")), runs);
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT sCarNotes_tx FROM tblCars WHERE lCar_id = 1")),
              notes);
    EXPECT_EQ(RunsMade(db), counted);
    EXPECT_EQ(ReadCustomNames(db), names);

    // Put right, the same save lands whole, names with their apostrophes.
    v.texts[QStringLiteral("iMarginOfVictory_ft")] = QStringLiteral("1.2");
    SaveRun(db, {v, 0, renamed});
    EXPECT_EQ(ReadCustomNames(db), renamed);
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns")).toInt(), runs.toInt() + 1);
}

TEST(RunSave, NumbersPerEventAndCar) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    EXPECT_EQ(RunNextNumber(db, 1, 1), 1);
    const auto add = [&](qint64 event, qint64 car, int number) {
        RunValues v = FullRun();
        v.ids[QStringLiteral("lEvent_id")] = event;
        v.ids[QStringLiteral("lCar_id")] = car;
        v.texts[QStringLiteral("lRun_num")] = QString::number(number);
        SaveRun(db, {v, 0, std::nullopt});
    };
    add(1, 1, 1);
    add(1, 1, 5);  // gaps are not filled
    add(1, 2, 9);
    add(2, 1, 3);
    EXPECT_EQ(RunNextNumber(db, 1, 1), 6);
    EXPECT_EQ(RunNextNumber(db, 1, 2), 10);
    EXPECT_EQ(RunNextNumber(db, 2, 1), 4);
    EXPECT_EQ(RunNextNumber(db, 0, 1), 1);
}

TEST(RunSave, TheListRowOfASavedRunIsTheListsOwn) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    test::ScriptedMessages box;
    const qint64 id = AddRun(db, "07/04/2024", "02:35 PM");
    for (const char* table : {"tbl14MileView", "tblProView"}) {
        shell::ListContext ctx;
        ctx.carId = 1;
        ctx.viewId = Scalar(db, QStringLiteral("SELECT lView_id FROM tblViews WHERE sTable_nm = "
                                               "'%1'")
                                    .arg(QLatin1String(table)))
                         .toLongLong();
        const shell::ListLayout layout = shell::BuildListLayout(db, tools::kRuns, ctx, box);
        QStringList names;
        for (const auto& c : layout.columns) {
            names << c.name;
        }
        store::Query q = db.OpenQuery(layout.sql);
        shell::RowBuilder builder(db, layout);
        builder.Bind(q);
        ASSERT_TRUE(q.Next());
        const QString listed = builder.BuildText(q);
        const QString built = shell::RunGridRow(db, names, id);
        EXPECT_EQ(built, listed) << table;
        EXPECT_TRUE(built.startsWith(QString::number(id) + u'\t'));
    }
    const QString row =
        shell::RunGridRow(db,
                          {QStringLiteral("lRun_id"), QStringLiteral("lOpponent_id"),
                           QStringLiteral("i14Mile_et"), QStringLiteral("Custom1")},
                          id);
    EXPECT_EQ(row, QString::number(id) + QStringLiteral("\tBye Run\t9.870\t") +
                       Awkward(QStringLiteral("Custom1")));
    EXPECT_EQ(shell::RunGridRow(db, {QStringLiteral("lRun_id")}, 9999), QString());
}

// The run window keeps what it read for the list's rows; a name or a format changed in between
// shows in the next row it makes, as in a row made afresh.
TEST(RunSave, TheListRowKeepsUpWithNamesAndFormats) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const qint64 id = AddRun(db, "07/04/2024", "02:35 PM");
    const QStringList names = {QStringLiteral("lRun_id"), QStringLiteral("lOpponent_id"),
                               QStringLiteral("i14Mile_et"), QStringLiteral("lCar_id")};
    shell::RunGridRowMaker maker(db);
    const QString first = maker.Row(names, id);
    EXPECT_EQ(first, shell::RunGridRow(db, names, id));
    EXPECT_EQ(maker.Row(names, id), first);

    db.Execute(
        QStringLiteral("UPDATE tblOpponent SET sOpponent_nm = 'Renamed' WHERE "
                       "sOpponent_nm = 'Bye Run'"));
    db.Execute(
        QStringLiteral("UPDATE tblListViewColumns SET sDisplayFormat = '0.0' WHERE "
                       "sFieldName = 'i14Mile_et'"));
    const QString second = maker.Row(names, id);
    EXPECT_EQ(second, shell::RunGridRow(db, names, id));
    EXPECT_EQ(second.split(u'\t').mid(1, 2), QStringList({"Renamed", "9.9"}));

    // Another run, other columns, a run that is gone.
    const qint64 other = AddRun(db, "07/05/2024", "09:00 AM");
    const QStringList fewer = {QStringLiteral("lRun_id"), QStringLiteral("lOpponent_id")};
    EXPECT_EQ(maker.Row(fewer, other), shell::RunGridRow(db, fewer, other));
    EXPECT_EQ(maker.Row(fewer, 9999), QString());
}
