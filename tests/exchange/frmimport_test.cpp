#include "exchange/ui/frmImport.h"
#include "common/tools.h"
#include "exchange/csv.h"
#include "support/program.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace slipbook;

namespace {

struct ImportWindow : test::ProgramTest {
    QTemporaryDir dir;

    QString WriteFile(const QString& name, const QByteArray& text) {
        const QString path = dir.filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return path;
    }

    exchange::frmImport& Open() {
        test::Press(*main, tools::kImportRuns);
        auto* window = qobject_cast<exchange::frmImport*>(main->OpenWindow(tools::kImportRuns));
        EXPECT_NE(window, nullptr);
        if (window == nullptr) {
            throw std::runtime_error("no import window");
        }
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        return *window;
    }

    // Types the file's name and leaves the box, as the racer does after typing a path.
    static void Load(exchange::frmImport& w, const QString& path) {
        test::Type(test::Child<QLineEdit>(w, "txtFileName"), path);
        QTest::keyClick(test::Child<QLineEdit>(w, "txtFileName"), Qt::Key_Return);
    }

    static QString Field(exchange::frmImport& w, int column) {
        return test::Child<QComboBox>(w, QStringLiteral("cboField(%1)").arg(column))->currentText();
    }

    // The box the import ended with (a maintenance alert may follow it).
    const Message& Summary() {
        for (auto m = messages.shown.rbegin(); m != messages.shown.rend(); ++m) {
            if (m->title == u"Import Runs") {
                return *m;
            }
        }
        return messages.last();
    }

    qint64 Runs() {
        store::Query q = lb.db().OpenQuery(QStringLiteral("SELECT COUNT(*) FROM tblRuns"));
        return q.Next() ? q.Value(0).toLongLong() : -1;
    }
};

}  // namespace

TEST_F(ImportWindow, TimeSlipsAreMatchedCheckedImportedAndTheRejectsKept) {
    Start();
    const QString path =
        WriteFile(QStringLiteral("slips.csv"),
                  "Date;Time;Round;Opponent;ET;MPH;60 ft;R/T;Slip\r\n"
                  "07/04/2026;2:15 PM;Qualifying;Bye Run;8.512;158.2;1.201;0.012;\"Good \"\"hook\"\"\"\r\n"
                  "07/04/2026;4:40 PM;Eliminations;Sam O'Neil;8.498;158.9;1.199;0.021;Won\r\n"
                  "07/44/2026;6:00 PM;Eliminations;;8.6;;;;Lost\r\n");
    exchange::frmImport& w = Open();
    int chosen = 0;
    w.SetFileChooser([&](QWidget*, bool save, const QString&) {
        ++chosen;
        return save ? dir.filePath(QStringLiteral("rejects")) : QString();
    });
    Load(w, path);

    // The separator and the headings are found; the unknown heading is left for the racer.
    auto* preview = test::Child<QTableView>(w, "grdPreview");
    EXPECT_EQ(preview->model()->rowCount(), 3);
    EXPECT_EQ(preview->model()->columnCount(), 9);
    EXPECT_EQ(Field(w, 0), QStringLiteral("Date"));
    EXPECT_EQ(Field(w, 2), QStringLiteral("Run #"));  // "Round" is the run number
    EXPECT_EQ(Field(w, 4), QStringLiteral("1/4 et"));
    EXPECT_EQ(Field(w, 8), QStringLiteral("(not imported)"));
    test::Pick(test::Child<QComboBox>(w, "cboField(2)"), QStringLiteral("Run Type"));
    test::Pick(test::Child<QComboBox>(w, "cboField(8)"), QStringLiteral("Notes"));

    // No event yet: the racer is told and picks one.
    const qint64 before = Runs();
    QTest::mouseClick(test::Child<QPushButton>(w, "cmdImport"), Qt::LeftButton);
    EXPECT_EQ(messages.last().text, QStringLiteral("Event Must Be Selected"));
    EXPECT_EQ(Runs(), before);
    auto* events = test::Child<QComboBox>(w, "cboEvents");
    test::Pick(events, events->itemText(0));
    test::Grab(w, QStringLiteral("frmImport"));

    QTest::mouseClick(test::Child<QPushButton>(w, "cmdImport"), Qt::LeftButton);
    EXPECT_TRUE(Summary().text.startsWith(QStringLiteral("2 runs imported into ")))
        << Summary().text.toStdString();
    // Car 1 had items close to due: the maintenance window says so after the import.
    EXPECT_TRUE(messages.last().text.contains(
        QStringLiteral("Upcoming or Critical Maintenance Items exist for this car")));
    EXPECT_EQ(Runs(), before + 2);
    auto* rejects = test::Child<QTableView>(w, "grdRejects");
    ASSERT_EQ(rejects->model()->rowCount(), 1);
    EXPECT_EQ(rejects->model()->index(0, 0).data().toInt(), 4);
    EXPECT_TRUE(rejects->model()->index(0, 1).data().toString().startsWith(
        QStringLiteral("Invalid Date, Use MM/DD/YYYY Format")));
    {
        store::Query q = lb.db().OpenQuery(QStringLiteral(
            "SELECT o.sOpponent_nm, r.sRunNotes_tx FROM tblRuns r, tblOpponent o WHERE "
            "r.lOpponent_id = o.lOpponent_id AND r.i14Mile_et = 8.498"));
        ASSERT_TRUE(q.Next());
        EXPECT_EQ(q.Text(0), QStringLiteral("Sam O'Neil"));
        EXPECT_EQ(q.Text(1), QStringLiteral("Won"));
    }
    test::Grab(w, QStringLiteral("frmImport-done"));
    // The main list shows the new runs at once.
    EXPECT_EQ(main->grid().RowCount(), static_cast<int>(Runs()));

    // The rejects go to a file of their own, ready to be mended.
    QTest::mouseClick(test::Child<QPushButton>(w, "cmdSaveRejects"), Qt::LeftButton);
    QFile saved(dir.filePath(QStringLiteral("rejects.csv")));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    std::vector<QStringList> rows;
    ASSERT_TRUE(exchange::csv::ReadAll(saved.readAll(), rows).ok);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].first(), QStringLiteral("07/44/2026"));
    EXPECT_EQ(rows[1].last().left(12), QStringLiteral("Invalid Date"));

    // The same file again: asked, and left out.
    messages.answer(MsgAnswer::No);
    QTest::mouseClick(test::Child<QPushButton>(w, "cmdImport"), Qt::LeftButton);
    EXPECT_EQ(messages.shown.at(messages.shown.size() - 2).buttons, MsgButtons::YesNoCancel);
    EXPECT_TRUE(Summary().text.startsWith(QStringLiteral("0 runs imported")));
    EXPECT_TRUE(Summary().text.contains(QStringLiteral("2 already in the logbook left out")));
    EXPECT_EQ(Runs(), before + 2);
    QTest::mouseClick(test::Child<QPushButton>(w, "cmdClose"), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    // Opened again on a file of the same layout, the racer's own matching comes back.
    exchange::frmImport& again = Open();
    Load(again, WriteFile(QStringLiteral("next.csv"),
                          "DATE;time;round;opponent;et;mph;60 ft;r/t;slip\r\n"));
    EXPECT_EQ(Field(again, 2), QStringLiteral("Run Type"));
    EXPECT_EQ(Field(again, 8), QStringLiteral("Notes"));
    EXPECT_EQ(chosen, 1);
}

TEST_F(ImportWindow, ABadFileIsSaidPlainlyAndACancelLeavesNothing) {
    Start();
    exchange::frmImport& w = Open();
    // Not UTF-8: refused with its line, the window stays usable.
    Load(w, WriteFile(QStringLiteral("latin1.csv"), "Date,ET\r\n07/04/2026,8.5\r\nJos\xe9,9\r\n"));
    EXPECT_TRUE(messages.last().text.contains(QStringLiteral("Line 3")))
        << messages.last().text.toStdString();
    EXPECT_FALSE(test::Child<QPushButton>(w, "cmdImport")->isEnabled());
    Load(w, dir.filePath(QStringLiteral("missing.csv")));
    EXPECT_TRUE(messages.last().text.contains(QStringLiteral("there is no such file")));

    QByteArray big = "Date,ET\r\n";
    for (int i = 0; i < 3000; ++i) {
        big += "07/04/2026," + QByteArray::number(8 + i / 10000.0, 'f', 4) + "\r\n";
    }
    Load(w, WriteFile(QStringLiteral("big.csv"), big));
    ASSERT_TRUE(test::Child<QPushButton>(w, "cmdImport")->isEnabled());
    auto* events = test::Child<QComboBox>(w, "cboEvents");
    test::Pick(events, events->itemText(0));
    w.SetProgressDelay(0);

    // The racer lets the check run, then presses Cancel while the runs are being saved.
    bool cancelled = false;
    bool over = false;
    std::function<void()> watch = [&] {
        if (over) {
            return;
        }
        auto* progress = w.findChild<QProgressDialog*>(QStringLiteral("dlgImportProgress"));
        if (progress != nullptr && progress->isVisible() &&
            progress->labelText().startsWith(QStringLiteral("Importing"))) {
            QTest::mouseClick(progress->findChild<QPushButton*>(), Qt::LeftButton);
            cancelled = true;
            return;
        }
        QTimer::singleShot(1, watch);
    };
    QTimer::singleShot(0, watch);
    const qint64 before = Runs();
    QTest::mouseClick(test::Child<QPushButton>(w, "cmdImport"), Qt::LeftButton);
    over = true;
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(Runs(), before);
    EXPECT_EQ(test::Child<QLabel>(w, "lblStatus")->text(),
              QStringLiteral("Stopped. Nothing was imported."));
}
