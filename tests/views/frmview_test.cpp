// The view set-up window over the real main window: fields moved and ordered, shown for the
// moment, saved as a view the selector then offers, recalled, and deleted.

#include "views/ui/frmView.h"
#include "app/windows.h"
#include "common/tools.h"
#include "shell/ui/frmMain.h"
#include "support/gui.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace slipbook;
using namespace slipbook::test;

namespace {

struct ViewWindow : ::testing::Test {
    ViewWindow() {
        logbook.db().Execute(QStringLiteral(
            "INSERT INTO tblRuns (lCar_id, lRun_num, i14Mile_et) VALUES (1, 7, 10.25)"));
        main.FormLoadStuff();
        ShowActive(main);
    }
    QStringList Headers() const {
        QStringList h;
        for (const shell::ShownColumn& c : main.ListColumns()) {
            h << c.caption;
        }
        return h;
    }
    static QStringList Entries(QListWidget* list) {
        QStringList out;
        for (int i = 0; i < list->count(); ++i) {
            out << list->item(i)->text();
        }
        return out;
    }
    static void Click(QWidget& w, const char* name) {
        auto* b = Child<QAbstractButton>(w, name);
        ASSERT_TRUE(b->isVisible() && b->isEnabled()) << name;
        QTest::mouseClick(b, Qt::LeftButton);
    }
    static void PickEntry(QListWidget* list, const QString& text) {
        const auto found = list->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << text.toStdString();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(found.first()).center());
    }
    // The box a cell of the grid is being typed into.
    static QLineEdit* CellEditor(QAbstractItemView* grid) {
        for (auto* box : grid->viewport()->findChildren<QLineEdit*>()) {
            if (box->isVisible()) {
                return box;
            }
        }
        return nullptr;
    }
    views::frmView* Open() {
        Press(main, "ID_ViewSetup");
        auto* w = main.findChild<views::frmView*>(QStringLiteral("frmView"));
        EXPECT_NE(w, nullptr);
        return w;
    }

    TempLogbook logbook;
    ScriptedMessages messages;
    store::LogbookEvents notifier;
    SystemClock clock;
    shell::frmMain main{logbook.db(), messages,  notifier,
                        clock,        QString(), QStringLiteral("/nonexistent")};
    bool registered = (app::RegisterWindows(main), true);
};

TEST_F(ViewWindow, FieldsChosenShowAtOnceAndASavedViewIsOfferedAndRecalled) {
    const QStringList quarter = Headers();
    ASSERT_EQ(quarter.mid(0, 3), QStringList({"Date", "Time", "Run #"}));
    views::frmView* w = Open();
    ASSERT_NE(w, nullptr);
    auto* source = Child<QListWidget>(*w, "lstSource");
    auto* target = Child<QListWidget>(*w, "lstTarget");
    // The list shows the quarter-mile view, all of whose fields are shown; the whole catalogue
    // offers the rest.
    EXPECT_EQ(Entries(target), quarter);
    EXPECT_TRUE(Entries(source).isEmpty());
    Pick(Child<QComboBox>(*w, "cboViews"), QStringLiteral("<All Fields>"));
    ASSERT_FALSE(Entries(source).isEmpty());
    EXPECT_FALSE(Entries(source).contains("Date"));
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdAdd")->isEnabled());

    // Take the run number to the top, drop the date, add a field.
    PickEntry(target, "Run #");
    Click(*w, "sscmdMoveUp");
    Click(*w, "sscmdMoveUp");
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdMoveUp")->isEnabled());
    PickEntry(target, "Date");
    Click(*w, "sscmdRemove");
    const QString added = Entries(source).first();
    PickEntry(source, added);
    Click(*w, "sscmdAdd");
    EXPECT_EQ(Entries(target).first(), QStringLiteral("Run #"));
    EXPECT_EQ(Entries(target).last(), added);
    EXPECT_TRUE(Entries(source).contains("Date"));

    // Saved under a new name, the view is the selector's and the list's.
    auto* custom = Child<QComboBox>(*w, "cboCustomViews");
    EXPECT_EQ(custom->currentText(), QStringLiteral("<New User Defined View>"));
    Click(*w, "sscmdSaveView");
    EXPECT_EQ(messages.last().title, QStringLiteral("Custom Views"));
    Type(custom, QStringLiteral("night runs"));
    Click(*w, "sschkDefaultView");
    Click(*w, "sscmdSaveView");
    EXPECT_EQ(custom->currentText(), QStringLiteral("Night Runs"));
    QComboBox* selector = main.selector(tools::kViews);
    EXPECT_EQ(selector->currentText(), QStringLiteral("Night Runs"));
    EXPECT_EQ(Headers(), Entries(target));
    EXPECT_EQ(Headers().first(), QStringLiteral("Run #"));

    Grab(*w, QStringLiteral("frmview"));
    // OK with no change closes without a question, and the list keeps the view.
    const QPointer<views::frmView> gone(w);
    Click(*w, "sscmdOk");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());
    EXPECT_EQ(Headers().first(), QStringLiteral("Run #"));
}

TEST_F(ViewWindow, APassingColumnSetAsksToBeSavedAndADeletedViewLeavesTheSelector) {
    views::frmView* w = Open();
    ASSERT_NE(w, nullptr);
    auto* target = Child<QListWidget>(*w, "lstTarget");
    Click(*w, "sscmdRemoveAll");
    EXPECT_TRUE(Entries(target).isEmpty());
    EXPECT_FALSE(Child<QPushButton>(*w, "sscmdSaveView")->isEnabled());
    Click(*w, "sscmdAddAll");
    PickEntry(target, "Time");
    Click(*w, "sscmdRemove");
    // OK shows the columns for now, and asks whether to keep them; yes keeps the window open.
    messages.answer(MsgAnswer::Yes);
    Click(*w, "sscmdOk");
    EXPECT_TRUE(
        messages.last().text.startsWith(QStringLiteral("The current view has been changed")));
    EXPECT_FALSE(Headers().contains("Time"));
    EXPECT_EQ(Headers(), Entries(target));
    ASSERT_TRUE(w->isVisible());

    Type(Child<QComboBox>(*w, "cboCustomViews"), QStringLiteral("Short"));
    Click(*w, "sscmdSaveView");
    const int views = main.selector(tools::kViews)->count();
    messages.answer(MsgAnswer::Yes);
    Click(*w, "sscmdDeleteView");
    EXPECT_EQ(messages.last().text, QStringLiteral("Delete The View 'Short'"));
    EXPECT_EQ(main.selector(tools::kViews)->count(), views - 1);
    EXPECT_EQ(Child<QComboBox>(*w, "cboCustomViews")->currentText(),
              QStringLiteral("<New User Defined View>"));
    const QPointer<views::frmView> gone(w);
    Click(*w, "sscmdCancel");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(gone.isNull());
}

TEST_F(ViewWindow, ACaptionEditedInTheCatalogueHeadsTheListAtOnce) {
    views::frmView* w = Open();
    ASSERT_NE(w, nullptr);
    // The editor is modal: it is driven once it is up, as the racer would.
    bool drove = false;
    QTimer::singleShot(0, w, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        // Whatever happens below, the editor goes, so that the test can't hang on it.
        const auto closeAfter = qScopeGuard([modal] {
            if (modal != nullptr && modal->isVisible()) {
                modal->close();
            }
        });
        ASSERT_NE(modal, nullptr);
        ASSERT_EQ(modal->objectName(), QStringLiteral("frmEditFields"));
        modal->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(modal));
        auto* grid = Child<QTableWidget>(*modal, "ssdbgEditFields");
        const auto found = grid->findItems(QStringLiteral("Run #"), Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        const int row = found.first()->row();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(found.first()).center());
        QTest::keyClick(grid, Qt::Key_F2);
        auto* box = CellEditor(grid);
        ASSERT_NE(box, nullptr);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, QStringLiteral("Run No"));
        QTest::keyClick(box, Qt::Key_Return);
        // The grid takes the text once the key is handled.
        QCoreApplication::processEvents();
        // Not yet written: the row is written when it is left.
        EXPECT_TRUE(Headers().contains("Run #"));
        QTest::keyClick(grid, row == 0 ? Qt::Key_Down : Qt::Key_Up);
        EXPECT_TRUE(Headers().contains("Run No"));
        EXPECT_FALSE(Headers().contains("Run #"));

        // A width that is no whole number is refused, and the row keeps the focus.
        const int widthRow = row;
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(widthRow, 4)).center());
        QTest::keyClick(grid, Qt::Key_F2);
        box = CellEditor(grid);
        ASSERT_NE(box, nullptr);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, QStringLiteral("wide"));
        QTest::keyClick(box, Qt::Key_Return);
        QCoreApplication::processEvents();
        const size_t before = messages.shown.size();
        QTest::keyClick(grid, widthRow == 0 ? Qt::Key_Down : Qt::Key_Up);
        QCoreApplication::processEvents();
        EXPECT_EQ(messages.shown.size(), before + 1);
        EXPECT_EQ(grid->currentRow(), widthRow);
        // Put right, it goes through with the window.
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(widthRow, 4)).center());
        QTest::keyClick(grid, Qt::Key_F2);
        box = CellEditor(grid);
        ASSERT_NE(box, nullptr);
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, QStringLiteral("900"));
        QTest::keyClick(box, Qt::Key_Return);
        QCoreApplication::processEvents();
        QTest::mouseClick(Child<QPushButton>(*modal, "sscmdOk"), Qt::LeftButton);
        drove = true;
    });
    Click(*w, "SSCommand1");
    EXPECT_TRUE(drove);
    EXPECT_EQ(messages.shown.size(), 1U);
    {
        store::Query q = logbook.db().OpenQuery(
            QStringLiteral("SELECT lColumnWidth FROM tblListViewColumns WHERE sColumnHeader = "
                           "'Run No'"));
        ASSERT_TRUE(q.Next());
        EXPECT_EQ(q.Value(0).toInt(), 900);
    }
    Click(*w, "sscmdCancel");

    // Every view heads its column with the catalogue's caption, not the one it was saved with.
    QComboBox* selector = main.selector(tools::kViews);
    for (const char* view : {"EIGHTH MILE", "PRO"}) {
        Pick(selector, QString::fromLatin1(view));
        EXPECT_TRUE(Headers().contains("Run No")) << view;
    }
}

}  // namespace
