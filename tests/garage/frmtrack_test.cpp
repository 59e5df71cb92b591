// The track window: its fields, its two notes tabs, its checks and its use by events.

#include "garage/ui/frmTrack.h"
#include "common/tools.h"
#include "store/recordset.h"
#include "support/gui.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>

using namespace slipbook;
using namespace slipbook::test;
using garage::frmTrack;

namespace {

struct TrackWindow : WindowTest {
    std::unique_ptr<frmTrack> Open() {
        auto window = std::make_unique<frmTrack>(Context());
        name = Child<QLineEdit>(*window, "txtTrack_nm");
        address = Child<QPlainTextEdit>(*window, "txtTrackAddress_tx");
        contact = Child<QLineEdit>(*window, "txtTrackContact_nm");
        phone = Child<QLineEdit>(*window, "mebTrackPhone");
        url = Child<QLineEdit>(*window, "txtTrackInternet_url");
        directions = Child<QPlainTextEdit>(*window, "rtbTrackDirections_tx");
        notes = Child<QPlainTextEdit>(*window, "rtbTrackNotes_tx");
        list = Child<QListWidget>(*window, "lstTracks");
        return window;
    }

    QLineEdit* name = nullptr;
    QPlainTextEdit* address = nullptr;
    QLineEdit* contact = nullptr;
    QLineEdit* phone = nullptr;
    QLineEdit* url = nullptr;
    QPlainTextEdit* directions = nullptr;
    QPlainTextEdit* notes = nullptr;
    QListWidget* list = nullptr;
};

TEST_F(TrackWindow, ValidatesNameThenAddress) {
    main.state.storedTool = tools::kNew;
    auto window = Open();
    ShowActive(*window);
    Type(contact, QStringLiteral("Pat"));
    Press(*window, "ID_SaveandNew");
    EXPECT_EQ(messages.last().text, QStringLiteral("Track Name Must Be Filled In"));
    EXPECT_EQ(messages.last().title, QStringLiteral("Data Entry Error"));
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtTrack_nm"));
    Type(name, QStringLiteral("Desert Strip"));
    Press(*window, "ID_SaveandNew");
    EXPECT_EQ(messages.last().text, QStringLiteral("Track Address Must Be Filled In"));
    EXPECT_EQ(FocusName(*window), QStringLiteral("txtTrackAddress_tx"));
    EXPECT_EQ(contact->text(), QStringLiteral("Pat"));  // Save and New stayed on the record
    EXPECT_EQ(messages.shown.size(), 2u);
}

TEST_F(TrackWindow, SaveAndReopenKeepEveryFieldAndEachTabItsPlaceholder) {
    main.state.storedTool = tools::kNew;
    main.state.track.id = 1;
    auto window = Open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("New - Track"));
    EXPECT_HINT(directions, "<Type directions here>");
    EXPECT_HINT(notes, "<Type notes here>");
    EXPECT_EQ(phone->displayText(), QStringLiteral("(___) ___-____"));

    Type(name, QStringLiteral("O'Reilly \"Raceway\" Park"));
    Type(address, QStringLiteral("1 Strip Rd\nSpeed City, TX"));
    Type(contact, QStringLiteral("D'Angelo"));
    Type(phone, QStringLiteral("5551234567"));
    Type(url, QStringLiteral("http://example.org/o'reilly"));
    Type(notes, QStringLiteral("Bring a 'jacket'"));
    main.calls.clear();
    Press(*window, tools::kSave);
    ASSERT_TRUE(messages.shown.empty()) << messages.last().text.toStdString();
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblTracks"}));
    EXPECT_EQ(main.state.track.id, 1);

    const qint64 id = Scalar(QStringLiteral("SELECT MAX(lTrack_id) FROM tblTracks")).toLongLong();
    auto rs = logbook.db().OpenRecordset(
        QStringLiteral("SELECT * FROM tblTracks WHERE lTrack_id = %1").arg(id));
    EXPECT_EQ(rs->Value(QStringLiteral("sTrack_nm")).toString(),
              QStringLiteral("O'Reilly \"Raceway\" Park"));
    // Line ends as the main list expects them.
    EXPECT_EQ(rs->Value(QStringLiteral("sTrackAddress_tx")).toString(),
              QStringLiteral("1 Strip Rd\r\nSpeed City, TX"));
    EXPECT_EQ(rs->Value(QStringLiteral("sTrackPhone")).toString(),
              QStringLiteral("(555) 123-4567"));
    EXPECT_TRUE(rs->Value(QStringLiteral("sTrackDirections_tx")).isNull());
    EXPECT_EQ(rs->Value(QStringLiteral("sTrackNotes_tx")).toString(),
              QStringLiteral("Bring a 'jacket'"));

    window.reset();
    main.state.track.id = id;
    auto again = Open();
    EXPECT_EQ(again->windowTitle(), QStringLiteral("O'Reilly \"Raceway\" Park - Track"));
    EXPECT_EQ(address->toPlainText(), QStringLiteral("1 Strip Rd\nSpeed City, TX"));
    EXPECT_EQ(contact->text(), QStringLiteral("D'Angelo"));
    EXPECT_EQ(phone->displayText(), QStringLiteral("(555) 123-4567"));
    EXPECT_EQ(url->text(), QStringLiteral("http://example.org/o'reilly"));
    EXPECT_HINT(directions, "<Type directions here>");
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("Bring a 'jacket'"));
    ShowActive(*again);
    Grab(*again, QStringLiteral("frmTrack"));

    // An emptied phone box stores nothing.
    Type(phone, QString());
    Press(*again, "ID_Save");
    EXPECT_TRUE(
        Scalar(QStringLiteral("SELECT sTrackPhone FROM tblTracks WHERE lTrack_id = %1").arg(id))
            .isNull());
}

TEST_F(TrackWindow, ATrackWithEventsCannotBeDeleted) {
    main.state.track.id = 1;
    auto window = Open();
    EXPECT_FALSE(window->tool(tools::kDelete)->isEnabled());

    Press(*window, "ID_New");
    Type(name, QStringLiteral("Spare Strip"));
    Type(address, QStringLiteral("Nowhere"));
    Press(*window, "ID_Save");
    ASSERT_TRUE(window->tool(tools::kDelete)->isEnabled());
    const qint64 id = window->CurrentRecordId();

    main.calls.clear();
    messages.answer(MsgAnswer::Yes);
    Press(*window, tools::kDelete);
    EXPECT_EQ(messages.last().text,
              QStringLiteral("Delete The Spare Strip - Track Record For (Spare Strip)"));
    EXPECT_TRUE(
        Scalar(QStringLiteral("SELECT lTrack_id FROM tblTracks WHERE lTrack_id = %1").arg(id))
            .isNull());
    EXPECT_EQ(list->count(), 1);
    EXPECT_EQ(name->text(), QStringLiteral("Home Track"));
    EXPECT_EQ(main.calls, (QStringList{"recordsChanged tblTracks"}));
}

}  // namespace
