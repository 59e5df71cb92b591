#pragma once

// Widget helpers shared by the windows: the save question, lists and combos, the edit tools,
// and the behaviours installed on entry boxes (numeric keys, padding, select-all on focus).
// List entries carry their row id as a qint64 under Qt::UserRole.

#include "common/messages.h"
#include "store/database.h"

#include <QList>
#include <QString>

class QAction;
class QComboBox;
class QEvent;
class QFocusEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QObject;
class QPushButton;
class QRadioButton;
class QWidget;

namespace slipbook {

// The busy pointer for as long as the object lives.
class BusyCursor {
public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

// Restores the window when it is minimised, raises it, and asks "Data Has Been Changed" /
// "Save Changes ?" with Yes, No and Cancel.
MsgAnswer SavePrompt(QWidget* window, const QString& title, Messages& messages);
// SavePrompt titled "Form Unload".
MsgAnswer SavePromptOnUnload(QWidget* window, Messages& messages);

// The first index whose item data equals the value, else -1.
int ListFindData(const QComboBox* list, qint64 data);
int ListFindData(const QListWidget* list, qint64 data);

// The first index whose text begins with the trimmed text, compared in upper case, else -1.
// A combo whose dynamic property "Locked" is true is not searched: the result is its current
// index. Whether the combo is editable does not matter.
int ListFindPrefix(const QComboBox* combo, const QString& text);
// The same search on a tool-bar combo, which is never locked.
int ComboFindPrefix(const QComboBox* combo, const QString& text);

// To be called on key release in an editable combo, with the key's Qt::Key. A letter (any key
// from "A" up) or a blank selects the first entry that begins with the typed text and selects
// the part of it that was not typed. Enter on a text that is not empty selects the entry the
// same way and then the whole text.
void ComboAutoComplete(QComboBox* combo, int key);

// Fills the list from "SELECT <keyColumn>, <textColumn> FROM <table>", each entry carrying its
// key; a leading text that is not empty comes first, with the key 0. The change signals of the
// list are not fired, and nothing is left selected.
void ListFillFromTable(QComboBox* list, const QString& keyColumn, const QString& textColumn,
                       const QString& table, const QString& leadingText, store::Database& db);
void ListFillFromTable(QListWidget* list, const QString& keyColumn, const QString& textColumn,
                       const QString& table, const QString& leadingText, store::Database& db);

// Appends a row with the column set to the text and returns the new row's key (its first
// column). Database errors are thrown as store::DbError.
qint64 NameAdd(store::Database& db, const QString& table, const QString& column,
               const QString& text);

// The boxes the edit tools act on: QLineEdit, QPlainTextEdit and QTextEdit.
bool IsTextControl(const QWidget* widget);

// Applies "ID_Cut", "ID_Copy", "ID_Paste" or "ID_SelectAll" to the active control when it is a
// text box, then refreshes the tools.
void EditToolClick(const QString& toolId, QWidget* active, const QList<QAction*>& tools);
// Among the tools (found by object name): "ID_Cut" and "ID_Copy" enabled when a text box is
// active and has a selection, "ID_Paste" when the clipboard holds text.
void EditToolsRefresh(const QList<QAction*>& tools, QWidget* active);

// Selects all the text of the active control when it is a text box whose text is not blank.
void SelectAllText(QWidget* active);

// Focus that leaves or comes back for a context menu or another window is no real move.
bool IsFieldMove(const QFocusEvent* event);
// The focus leaving a field for another field: where the windows act on a field left.
bool IsFieldExit(const QEvent* event);

// Entry box behaviours, owned by the box. Each returns the filter object, which can be removed
// with removeEventFilter.
//
// Numeric keys through KeyNumericFilter with the decimals given (negative: no limit); Enter
// moves the focus on as Tab would. Shortcuts with Ctrl, Alt or Meta pass.
QObject* InstallNumericKeyFilter(QLineEdit* edit, int decimals);
// Enter moves the focus on as Tab would; all other keys pass.
QObject* InstallEnterAsTab(QWidget* widget);
// NumericPad on leaving the box.
QObject* InstallNumericPad(QLineEdit* edit, int decimals);
// The whole text is selected whenever the box gets the focus, by mouse as well.
QObject* InstallSelectAllOnFocus(QLineEdit* edit);

// Controls of the program windows, known by their names. A button never takes Enter as a click
// of its own, since Enter moves between boxes.
QPushButton* NamedButton(const char* name, const QString& text, QWidget* parent);
QRadioButton* NamedOption(const char* name, const QString& text, QWidget* parent);
// The caption before a box, right-aligned against it.
QLabel* BoxCaption(const QString& text, QWidget* parent);
// A calculator's box: an input selects its text on focus; a result is read-only and skipped by
// Tab. Enter moves on in both.
QLineEdit* NamedBox(const char* name, bool result, QWidget* parent);
// The dark red, two-line label beside a result that says why there is none.
QLabel* ReasonLabel(const char* name, QWidget* parent);

}  // namespace slipbook
