#include "exchange/runimport.h"

#include "exchange/csv.h"
#include "exchange/listexport.h"
#include "run/intervals.h"
#include "run/runsave.h"
#include "shell/runlist.h"
#include "support/logbook.h"
#include "weather/airproperties.h"
#include "weather/station.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace slipbook;
using namespace slipbook::exchange;

namespace {

qint64 Scalar(store::Database& db, const QString& sql) {
    store::Query q = db.OpenQuery(sql);
    return q.Next() ? q.Value(0).toLongLong() : -1;
}

// A run saved as the run window saves one: the air figures worked out from the weather.
void SaveWindowRun(store::Database& db, QHash<QString, QString> texts, qint64 runType,
                   qint64 opponent, bool fullRun, bool leftLane) {
    run::RunValues v;
    v.texts = std::move(texts);
    const weather::Recalculation air = weather::PlanRecalculation(
        v.text(QStringLiteral("iTemp_val")), v.text(QStringLiteral("iHumidity_val")),
        v.text(QStringLiteral("iBarometricPressure_val")));
    ASSERT_FALSE(air.failed());
    for (size_t i = 0; i < weather::kAirFields.size(); ++i) {
        v.texts.insert(
            run::FieldByControl(QString::fromLatin1(weather::kAirFields[i].name))->column,
            air.texts[i]);
    }
    for (const run::IntervalDef& def : run::Intervals()) {
        const auto column = [](const char* control) {
            return run::FieldByControl(QString::fromLatin1(control))->column;
        };
        if (const auto text =
                run::IntervalText(v.text(column(def.later)), v.text(column(def.earlier)))) {
            v.texts.insert(column(def.control), *text);
        }
    }
    v.ids = {{QStringLiteral("lEvent_id"), 1},
             {QStringLiteral("lCar_id"), 1},
             {QStringLiteral("lRunType_id"), runType},
             {QStringLiteral("lOpponent_id"), opponent}};
    v.fullRun = fullRun;
    v.leftLane = leftLane;
    run::SaveRun(db, {v, 0, std::nullopt});
}

// Every kind of value a run holds, with the characters that break files and statements.
void SaveSampleRuns(store::Database& db) {
    db.Execute(QStringLiteral("INSERT INTO tblOpponent (sOpponent_nm) VALUES ('O''Brien')"));
    const qint64 obrien = db.LastInsertRowId();
    SaveWindowRun(db,
                  {{"lRun_num", "1"},
                   {"dtRun_dt", "07/04/2026"},
                   {"dtRun_tm", "02:15 PM"},
                   {"lPoints_val", "1234567"},
                   {"i60Foot_et", "1.234"},
                   {"i330Foot_et", "3.512"},
                   {"i18Mile_et", "5.125"},
                   {"i18Mile_mph", "128.55"},
                   {"i14Mile_et", "8.012"},
                   {"i14Mile_mph", "171.25"},
                   {"iReactionTime_val", "-0.012"},
                   {"iDialIn_val", "8.01"},
                   {"iTemp_val", "85.5"},
                   {"iHumidity_val", "45"},
                   {"iBarometricPressure_val", "29.92"},
                   {"sJet1_val", "88"},
                   {"sThrottleStop1_val", "1.25"},
                   {"sDelayBox_val", "0.125"},
                   {"sEngine_desc", "454 \"big\" block, O'Neil's"},
                   {"sRunNotes_tx", "Line one\nLine two, \"quoted\"; it's fine"},
                   {"Custom1", "Crème brûlée ✓ 日本"},
                   {"sLogFile_nm", "=cmd|' /C calc'!A0"}},
                  3, obrien, true, false);
    SaveWindowRun(db,
                  {{"lRun_num", "2"},
                   {"dtRun_dt", "07/05/2026"},
                   {"dtRun_tm", "09:05 AM"},
                   {"i60Foot_et", "1.301"},
                   {"i14Mile_et", "8.2"},
                   {"iDialIn_val", "8.15"},
                   {"iReactionTime_val", "0.021"},
                   {"sJet1_val", "86"}},
                  1, 0, false, true);
}

// The car's runs with every stored column but the keys, in run number order.
using Rows = std::vector<QStringList>;
Rows RunRows(store::Database& db, qint64 carId) {
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT * FROM tblRuns WHERE lCar_id = %1 ORDER BY lRun_num").arg(carId));
    std::vector<QStringList> rows;
    while (q.Next()) {
        QStringList row;
        for (int i = 0; i < q.FieldCount(); ++i) {
            const QString name = q.FieldName(i);
            if (name != u"lRun_id" && name != u"lCar_id" && name != u"lEvent_id") {
                row << name + u'=' + (q.IsNull(i) ? QStringLiteral("<null>") : q.Text(i));
            }
        }
        rows.push_back(row);
    }
    return rows;
}

// The cells where two sets of rows differ, readably.
std::string Differences(const Rows& a, const Rows& b) {
    std::string out;
    if (a.size() != b.size()) {
        return "row counts differ";
    }
    for (size_t r = 0; r < a.size(); ++r) {
        for (qsizetype c = 0; c < std::max(a[r].size(), b[r].size()); ++c) {
            if (a[r].value(c) != b[r].value(c)) {
                out += "row " + std::to_string(r) + ": " + a[r].value(c).toStdString() + " | " +
                       b[r].value(c).toStdString() + "\n";
            }
        }
    }
    return out;
}

// The run list of every field for a car, as the main window would show and export it.
struct AllFieldsList {
    shell::ListLayout layout;
    TextGridModel model;
    AllFieldsList(store::Database& db, qint64 carId) {
        QList<qint64> ids;
        store::Query q = db.OpenQuery(QStringLiteral(
            "SELECT lLVC_id FROM tblListViewColumns WHERE sView_id = 'ID_Runs' ORDER BY lOrder"));
        while (q.Next()) {
            ids << q.Value(0).toLongLong();
        }
        layout = shell::CatalogueListLayout(db, ids);
        layout.sql =
            QStringLiteral("SELECT * FROM tblRuns WHERE lCar_id = %1 ORDER BY lRun_num").arg(carId);
        model.SetColumns(layout.GridColumns());
        shell::RowBuilder builder(db, layout);
        store::Query rows = db.OpenQuery(layout.sql);
        builder.Bind(rows);
        while (rows.Next()) {
            model.AddRow(builder.Build(rows));
        }
    }
    ListSource Source(store::Database& db) const {
        ListSource s =
            StoredSource(db, model, QStringLiteral("tblRuns"), QStringLiteral("lRun_id"));
        for (size_t c = 0; c < layout.columns.size(); ++c) {
            if (layout.columns[c].lookup) {
                s.fields[c].clear();
            }
        }
        return s;
    }
};

qint64 AddCar(store::Database& db, const QString& name) {
    db.Execute(
        QStringLiteral("INSERT INTO tblCars (sCar_nm, sCar_num) VALUES ('%1', '9')").arg(name));
    return db.LastInsertRowId();
}

// A plan for a file whose headings are matched as they would be guessed.
ImportPlan PlanFor(store::Database& db, const QByteArray& file, qint64 carId, qint64 eventId = 1) {
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    const ImportPreview preview = ReadPreview(buffer, 10, csv::Delimiter::Guess);
    EXPECT_TRUE(preview.ok) << preview.error.toStdString();
    ImportPlan plan;
    plan.carId = carId;
    plan.eventId = eventId;
    plan.headerRow = true;
    plan.mapping = GuessMapping(preview.rows.front(), ImportFields(db));
    return plan;
}

ImportCheck Check(store::Database& db, const QByteArray& file, const ImportPlan& plan) {
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    return CheckImport(db, buffer, plan);
}

ImportResult Import(store::Database& db, const QByteArray& file, const ImportPlan& plan,
                    DuplicateRule rule = DuplicateRule::Skip, const ImportProgress& progress = {}) {
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    return ImportRuns(db, buffer, plan, rule, progress);
}

QByteArray ReadFile(const QString& path) {
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
}

// One line per refused row: its line in the file and the reason.
std::string Reasons(const std::vector<RejectedRow>& rejects) {
    QStringList out;
    for (const RejectedRow& r : rejects) {
        out << QString::number(r.line) + u' ' + r.reason;
    }
    return out.join(u'\n').toStdString();
}

}  // namespace

TEST(RunImport, ExportedRunsComeBackAsTheSameRowsFromEitherKindOfFile) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    SaveSampleRuns(db);
    const Rows original = RunRows(db, 1);
    ASSERT_EQ(original.size(), 2u);
    QTemporaryDir dir;
    const AllFieldsList list(db, 1);

    for (const ExportMode mode : {ExportMode::Raw, ExportMode::Shown}) {
        SCOPED_TRACE(mode == ExportMode::Raw ? "raw" : "shown");
        const QString path = dir.filePath(QStringLiteral("runs.csv"));
        const ExportResult exported =
            ExportList(db, list.Source(db), path, {.mode = mode, .byteOrderMark = true});
        ASSERT_EQ(exported.status, ExportResult::Status::Done) << exported.error.toStdString();
        const QByteArray file = ReadFile(path);

        const qint64 car = AddCar(db, mode == ExportMode::Raw ? "Raw" : "Shown");
        const ImportPlan plan = PlanFor(db, file, car);
        // Every column the list shows and a run keeps is matched by its heading.
        const QSet<QString> mapped(plan.mapping.begin(), plan.mapping.end());
        for (const char* column :
             {"dtRun_dt", "dtRun_tm", "lRunType_id", "lOpponent_id", "bFullRun_fl", "sLane_nm",
              "sRunNotes_tx", "Custom1", "sThrottleStop1_val", "i14Mile_et", "lRun_num"}) {
            EXPECT_TRUE(mapped.contains(QString::fromLatin1(column))) << column;
        }
        const ImportCheck check = Check(db, file, plan);
        EXPECT_EQ(check.status, ImportCheck::Status::Done) << check.error.toStdString();
        EXPECT_EQ(check.rows, 2);
        EXPECT_EQ(check.passing, 2);
        EXPECT_EQ(check.duplicates, 0);  // another car
        EXPECT_TRUE(check.rejects.empty()) << Reasons(check.rejects);

        const ImportResult result = Import(db, file, plan);
        ASSERT_EQ(result.status, ImportResult::Status::Done) << result.error.toStdString();
        EXPECT_EQ(result.imported, 2);
        EXPECT_EQ(Differences(original, RunRows(db, car)), "");
    }
    // No opponent was added twice: "O'Brien" was found in the list by name.
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblOpponent")), 4);
}

TEST(RunImport, EachRefusedRowSaysWhyAndTheRestAreSavedWithTheirNumbers) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    db.Execute(QStringLiteral(
        "INSERT INTO tblMaintenance (lCar_id, bCompleted, iScheduledRuns, iRunsMade) VALUES (1, "
        "False, 10, 7)"));
    const qint64 item = db.LastInsertRowId();
    const QByteArray file =
        "Run,Date,Time,Run Type,Opponent,Temp,Humidity,Baro,60',ET,Full Run,Lane,Points\r\n"
        ",07/04/2026,2:15 PM,Qualifying,,70,50,29.5,1.2,8.5,,,\r\n"                 // 2: passes
        "abc,07/04/2026,,,,,,,,,,,\r\n"                                             // 3
        "3,13/45/2026,,,,,,,,,,,\r\n"                                               // 4
        "4,07/04/2026,25:99,,,,,,,,,,\r\n"                                          // 5
        "5,07/04/2026,,Nonesuch,,,,,,,,,\r\n"                                       // 6
        "6,07/04/2026,,,Mystery Man,,,,,,,,\r\n"                                    // 7
        "7,07/04/2026,,,,150,,,,,,,\r\n"                                            // 8
        "8,07/04/2026,,,,,101,,,,,,\r\n"                                            // 9
        "9,07/04/2026,,,,,,35,,,,,\r\n"                                             // 10
        "10,07/04/2026,,,,,,,fast,,,,\r\n"                                          // 11
        "11,07/04/2026,,,,,,,,,maybe,,\r\n"                                         // 12
        "12,07/04/2026,,,,,,,,,,Centre,\r\n"                                        // 13
        "13,07/04/2026,,,,,,,,,,,99999999999\r\n"                                   // 14
        "\r\n"                                                                      // 15: blank
        ",2026-07-05,14:20:00,eliminations,bye run,,,,1.3,8.6,no,R,\"1,000\"\r\n";  // 16: passes
    ImportPlan plan = PlanFor(db, file, 1);
    plan.addOpponents = false;
    const ImportCheck check = Check(db, file, plan);
    EXPECT_EQ(check.rows, 14);
    EXPECT_EQ(check.passing, 2);
    EXPECT_EQ(Reasons(check.rejects),
              (QStringList{
                  "3 Run Number Must Be Entered",
                  "4 Invalid Date, Use MM/DD/YYYY Format (\"13/45/2026\")",
                  "5 Invalid Time, Use HH:MM am/pm Format (\"25:99\")",
                  "6 Run Type Must Be Selected (\"Nonesuch\" is not in the list)",
                  "7 Opponent Must Be Selected (\"Mystery Man\" is not in the list)",
                  "8 Valid Temperature Range 32-120",
                  "9 Valid Humidity Range 0-100",
                  "10 Valid Air Pressure Range 20-31.5",
                  "11 60' Must Be a Number (\"fast\")",
                  "12 Full Run must be Yes or No, not \"maybe\"",
                  "13 Lane must be L or R, not \"Centre\"",
                  "14 Points Must Be a Whole Number From -2,147,483,648 To 2,147,483,647 "
                  "(\"99999999999\")",
              }
                   .join(u'\n')
                   .toStdString()));

    const ImportResult result = Import(db, file, plan);
    ASSERT_EQ(result.status, ImportResult::Status::Done) << result.error.toStdString();
    EXPECT_EQ(result.imported, 2);
    EXPECT_EQ(result.rejects.size(), 12u);
    // Numbered after the event's runs of the car; the time slip's values as typed; the air
    // worked out; the car's open item counted twice and now due.
    store::Query q = db.OpenQuery(
        QStringLiteral("SELECT lRun_num, dtRun_dt, dtRun_tm, lRunType_id, lOpponent_id, "
                       "bFullRun_fl, sLane_nm, lPoints_val, i14Mile_et, iDensityAlt_val FROM "
                       "tblRuns ORDER BY lRun_id"));
    QStringList runs;
    while (q.Next()) {
        QStringList r;
        for (int i = 0; i < 10; ++i) {
            r << (q.IsNull(i) ? QStringLiteral("-") : q.Text(i));
        }
        runs << r.join(u'|');
    }
    ASSERT_EQ(runs.size(), 2);
    EXPECT_TRUE(runs[0].startsWith(
        QStringLiteral("1|2026-07-04 00:00:00|1899-12-30 14:15:00|2|0|-1|L|-|8.5|")))
        << runs[0].toStdString();
    EXPECT_FALSE(runs[0].endsWith(u'-'));
    EXPECT_EQ(runs[1].toStdString(),
              "2|2026-07-05 00:00:00|1899-12-30 14:20:00|3|2|0|R|1000|8.6|0.0");
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT iRunsMade FROM tblMaintenance WHERE "
                                        "lMaintenance_id = %1")
                             .arg(item)),
              9);
    EXPECT_TRUE(result.maintenanceDue);

    // The rejects file keeps each row as it was, for mending and importing again.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rejects.csv"));
    QString error;
    ASSERT_TRUE(WriteRejects(path, QStringList{"Run", "Date"}, result.rejects, &error))
        << error.toStdString();
    std::vector<QStringList> rows;
    ASSERT_TRUE(csv::ReadAll(ReadFile(path), rows).ok);
    ASSERT_EQ(rows.size(), 13u);
    EXPECT_EQ(rows[0].mid(0, 2), (QStringList{"Run", "Date"}));
    EXPECT_EQ(rows[0].mid(13), (QStringList{"Line", "Reason"}));
    EXPECT_EQ(rows[1].mid(0, 2), (QStringList{"abc", "07/04/2026"}));
    EXPECT_EQ(rows[1].mid(13), (QStringList{"3", "Run Number Must Be Entered"}));

    // With opponents added, the new name is put in the list once, in name case.
    plan.addOpponents = true;
    const QByteArray again =
        "Run,Date,Opponent\r\n21,07/06/2026,mystery man\r\n22,07/06/2026,MYSTERY MAN\r\n";
    plan.mapping = GuessMapping({"Run", "Date", "Opponent"}, ImportFields(db));
    const ImportResult added = Import(db, again, plan);
    EXPECT_EQ(Reasons(added.rejects), "");
    EXPECT_EQ(added.imported, 2) << added.skipped << " " << added.error.toStdString();
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblOpponent WHERE sOpponent_nm = "
                                        "'Mystery Man'")),
              1);
}

TEST(RunImport, TheSameFileTwiceIsFoundAndTheRacerChoosesWhatHappens) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const QByteArray file =
        "Date,Time,ET,1/8 ET\r\n07/04/2026,2:15 PM,8.5,\r\n07/04/2026,3:15 PM,,5.4\r\n"
        "07/04/2026,3:15 PM,,5.4\r\n";  // the last row repeats the one before
    const ImportPlan plan = PlanFor(db, file, 1);
    ImportCheck check = Check(db, file, plan);
    EXPECT_EQ(check.passing, 3);
    EXPECT_EQ(check.duplicates, 1);
    ImportResult result = Import(db, file, plan, DuplicateRule::Skip);
    EXPECT_EQ(result.imported, 2);
    EXPECT_EQ(result.skipped, 1);

    check = Check(db, file, plan);
    EXPECT_EQ(check.duplicates, 3);
    // Another car does not have them.
    EXPECT_EQ(Check(db, file, PlanFor(db, file, AddCar(db, "Other"))).duplicates, 1);
    result = Import(db, file, plan, DuplicateRule::Skip);
    EXPECT_EQ(result.imported, 0);
    EXPECT_EQ(result.skipped, 3);
    result = Import(db, file, plan, DuplicateRule::Import);
    EXPECT_EQ(result.imported, 3);
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns")), 5);
}

TEST(RunImport, ABrokenFileACancelOrAFailedSaveLeavesTheLogbookAsItWas) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    QByteArray good = "Date,ET,Opponent\r\n";
    for (int i = 0; i < 600; ++i) {
        good += "07/04/2026," + QByteArray::number(8 + i / 1000.0) + ",New Guy\r\n";
    }
    const ImportPlan plan = PlanFor(db, good, 1);
    const auto count = [&db] {
        return Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblRuns")) * 1000 +
               Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblOpponent"));
    };
    const qint64 before = count();

    // A quote left open, a bad byte: found on the first pass, and on the second after rows were
    // already saved.
    for (const QByteArray& tail :
         {QByteArray("07/05/2026,\"8.1,x\r\n"), QByteArray("07/05/2026,8.1,Jos\xe9\r\n")}) {
        const QByteArray file = good + tail;
        const ImportCheck check = Check(db, file, plan);
        EXPECT_EQ(check.status, ImportCheck::Status::Failed);
        EXPECT_TRUE(check.error.contains(QStringLiteral("602"))) << check.error.toStdString();
        const ImportResult result = Import(db, file, plan);
        EXPECT_EQ(result.status, ImportResult::Status::Failed);
        EXPECT_TRUE(result.error.endsWith(QStringLiteral("Nothing was imported.")));
        EXPECT_EQ(result.imported, 0);
        EXPECT_EQ(count(), before);
    }

    // Cancelled half way.
    int calls = 0;
    ImportResult result =
        Import(db, good, plan, DuplicateRule::Skip, [&calls](qint64 done, qint64 total) {
            EXPECT_LE(done, total);
            return ++calls < 2;
        });
    EXPECT_EQ(result.status, ImportResult::Status::Cancelled);
    EXPECT_EQ(count(), before);

    // The disk refuses the 300th run.
    db.ExecRaw(QStringLiteral(
        "CREATE TRIGGER tgFull BEFORE INSERT ON tblRuns WHEN (SELECT COUNT(*) FROM tblRuns) >= "
        "299 BEGIN SELECT RAISE(ABORT, 'database or disk is full'); END"));
    result = Import(db, good, plan);
    EXPECT_EQ(result.status, ImportResult::Status::Failed);
    EXPECT_TRUE(result.error.contains(QStringLiteral("line 301"))) << result.error.toStdString();
    EXPECT_EQ(count(), before);

    // No car or no event to go to.
    ImportPlan nowhere = plan;
    nowhere.eventId = 0;
    EXPECT_EQ(Import(db, good, nowhere).error,
              QStringLiteral("Event Must Be Selected\nNothing was imported."));
}

TEST(RunImport, AFiftyMegabyteFileIsReadARowAtATime) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("big.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Date,ET,Notes\r\n");
    const QByteArray notes = "\"" + QByteArray(5000, 'x') + "\"\"quoted\"\"\r\nnext line\"";
    int rows = 0;
    while (file.size() < 50 * 1024 * 1024) {
        file.write("07/04/2026,8." + QByteArray::number(rows % 1000).rightJustified(3, '0') + "," +
                   notes + "\r\n");
        ++rows;
    }
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ImportPlan plan;
    plan.carId = 1;
    plan.eventId = 1;
    plan.mapping = GuessMapping({"Date", "ET", "Notes"}, ImportFields(db));
    const ImportCheck check = CheckImport(db, file, plan);
    EXPECT_EQ(check.status, ImportCheck::Status::Done) << check.error.toStdString();
    EXPECT_EQ(check.rows, rows);
    EXPECT_EQ(check.passing, rows);
    EXPECT_EQ(check.duplicates, rows - 1000);
}

TEST(RunImport, HeadingsAreMatchedAndTheMatchingIsRememberedPerLayout) {
    test::TempLogbook lb;
    store::Database& db = lb.db();
    const std::vector<ImportField> fields = ImportFields(db);
    // The worked-out figures and the event and car are not offered.
    for (const ImportField& f : fields) {
        EXPECT_NE(f.column, QStringLiteral("iDensityAlt_val"));
        EXPECT_NE(f.column, QStringLiteral("i60to330Foot_et"));
        EXPECT_NE(f.column, QStringLiteral("lEvent_id"));
    }
    const QStringList headings = {"Date",    "Time", "R/T",   "60 ft", "1/4 ET", "MPH",
                                  "Dial-In", "Lane", "Run #", "Track", "custom1"};
    const ColumnMapping guessed = GuessMapping(headings, fields);
    EXPECT_EQ(guessed, (ColumnMapping{"dtRun_dt", "dtRun_tm", "iReactionTime_val", "i60Foot_et",
                                      "i14Mile_et", "i14Mile_mph", "iDialIn_val", "sLane_nm",
                                      "lRun_num", "", "Custom1"}));
    EXPECT_TRUE(LooksLikeHeader(headings, fields));
    EXPECT_TRUE(LooksLikeHeader({"Round", "Slip"}, fields));
    EXPECT_FALSE(LooksLikeHeader({"07/04/2026", "8.5"}, fields));

    const QString key = LayoutKey(headings, true, 11);
    EXPECT_EQ(key, LayoutKey({" date", "TIME", "r/t", "60 ft", "1/4 et", "mph", "dial-in", "lane",
                              "run #", "track", "Custom1 "},
                             true, 11));
    EXPECT_NE(key, LayoutKey(headings, false, 11));
    EXPECT_TRUE(RememberedMapping(db, key).empty());
    ColumnMapping mine = guessed;
    mine[9] = QStringLiteral("sRunNotes_tx");
    RememberMapping(db, key, mine);
    RememberMapping(db, key, mine);  // kept once
    RememberMapping(db, QStringLiteral("headings:it's"), {"i14Mile_et"});
    EXPECT_EQ(RememberedMapping(db, key), mine);
    EXPECT_EQ(RememberedMapping(db, QStringLiteral("headings:it's")), ColumnMapping{"i14Mile_et"});
    EXPECT_EQ(Scalar(db, QStringLiteral("SELECT COUNT(*) FROM tblImportLayout")), 2);
}
