#include "common/ui/formhelpers.h"

#include "common/forms.h"
#include "common/tools.h"
#include "store/recordset.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QTimer>

namespace slipbook {

BusyCursor::BusyCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyCursor::~BusyCursor() {
    QApplication::restoreOverrideCursor();
}

namespace {

int FindPrefix(const QComboBox* combo, const QString& text) {
    const QString prefix = TrimSpaces(text).toString().toUpper();
    for (int i = 0; i < combo->count(); ++i) {
        if (combo->itemText(i).toUpper().startsWith(prefix)) {
            return i;
        }
    }
    return -1;
}

void SelectEntry(QComboBox* combo, int index) {
    combo->setCurrentIndex(index);
    // Setting the index it already has leaves a half-typed text in place.
    combo->setEditText(combo->itemText(index));
}

QString ClipboardText() {
    return QApplication::clipboard()->text();
}

void SetClipboardText(const QString& text) {
    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear();
    clipboard->setText(text);
}

QString SelectedText(QWidget* w) {
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        return line->selectedText();
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        return plain->textCursor().selection().toPlainText();
    }
    if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        return rich->textCursor().selection().toPlainText();
    }
    return QString();
}

bool IsReadOnly(QWidget* w) {
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        return line->isReadOnly();
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        return plain->isReadOnly();
    }
    if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        return rich->isReadOnly();
    }
    return true;
}

// Replaces the selection (or inserts at the cursor) as typing would.
void ReplaceSelection(QWidget* w, const QString& text) {
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        line->insert(text);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        plain->insertPlainText(text);
    } else if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        rich->insertPlainText(text);
    }
}

void SelectAll(QWidget* w) {
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        line->selectAll();
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        plain->selectAll();
    } else if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        rich->selectAll();
    }
}

QString WholeText(QWidget* w) {
    if (auto* line = qobject_cast<QLineEdit*>(w)) {
        return line->text();
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) {
        return plain->toPlainText();
    }
    if (auto* rich = qobject_cast<QTextEdit*>(w)) {
        return rich->toPlainText();
    }
    return QString();
}

// Moves the focus on the way Tab does, with the widget's own rules for Tab.
void SendTab(QWidget* w) {
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &tab);
}

bool IsEnter(const QKeyEvent* e) {
    return e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
}

// The key-press code the numeric filter works on: the character typed, 8 for backspace, 13 for
// Enter; -1 for keys that type nothing (arrows, Delete, function keys), which pass.
int KeyPressCode(const QKeyEvent* e) {
    if (IsEnter(e)) {
        return kKeyEnter;
    }
    if (e->key() == Qt::Key_Backspace) {
        return kKeyBackspace;
    }
    const QString text = e->text();
    if (text.size() != 1 || text[0].unicode() < 32 || text[0].unicode() == 127) {
        return -1;
    }
    return text[0].unicode();
}

class NumericKeyFilter : public QObject {
public:
    NumericKeyFilter(int decimals, QObject* parent) : QObject(parent), decimals_(decimals) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* edit = qobject_cast<QLineEdit*>(watched);
        if (edit == nullptr || event->type() != QEvent::KeyPress) {
            return false;
        }
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
            return false;
        }
        const int code = KeyPressCode(key);
        if (code < 0) {
            return false;
        }
        const bool selected = edit->hasSelectedText();
        const int start = selected ? edit->selectionStart() : edit->cursorPosition();
        const int length = selected ? static_cast<int>(edit->selectedText().size()) : 0;
        switch (KeyNumericFilter(code, edit->text(), start, length, decimals_)) {
            case KeyVerdict::Accept:
                return false;
            case KeyVerdict::Swallow:
                return true;
            case KeyVerdict::NextField:
                SendTab(edit);
                return true;
        }
        return false;
    }

private:
    int decimals_;
};

class EnterAsTabFilter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget == nullptr || event->type() != QEvent::KeyPress ||
            !IsEnter(static_cast<QKeyEvent*>(event))) {
            return false;
        }
        SendTab(widget);
        return true;
    }
};

class NumericPadFilter : public QObject {
public:
    NumericPadFilter(int decimals, QObject* parent) : QObject(parent), decimals_(decimals) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* edit = qobject_cast<QLineEdit*>(watched);
        if (edit != nullptr && event->type() == QEvent::FocusOut &&
            IsFieldMove(static_cast<QFocusEvent*>(event))) {
            if (const auto padded = NumericPad(edit->text(), decimals_)) {
                edit->setText(*padded);
            }
        }
        return false;
    }

private:
    int decimals_;
};

// Focus that comes back to the box when its window is activated again or a menu closes leaves
// the text as it was. Focus put on the box while its window was inactive (as a message box
// closes) arrives by activation too, but is an entry like any other.
class SelectAllFilter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* edit = qobject_cast<QLineEdit*>(watched);
        if (edit == nullptr) {
            return false;
        }
        switch (event->type()) {
            case QEvent::FocusOut:
                away_ = !IsFieldMove(static_cast<QFocusEvent*>(event));
                break;
            case QEvent::WindowActivate:
                // The focus moved on while the window was inactive; it won't come back here.
                if (edit->window()->focusWidget() != edit) {
                    away_ = false;
                }
                break;
            case QEvent::FocusIn:
                if (IsFieldMove(static_cast<QFocusEvent*>(event)) || !away_) {
                    edit->selectAll();
                    // A mouse click places the cursor after the focus arrives; select again
                    // after it, unless typing came first.
                    QTimer::singleShot(0, edit, [edit, text = edit->text()] {
                        if (edit->hasFocus() && edit->text() == text) {
                            edit->selectAll();
                        }
                    });
                }
                away_ = false;
                break;
            default:
                break;
        }
        return false;
    }

private:
    // The box had the focus when another window or a menu took it.
    bool away_ = false;
};

template <typename Add>
void FillRows(const QString& keyColumn, const QString& textColumn, const QString& table,
              const QString& leadingText, store::Database& db, Add add) {
    auto rs = db.OpenRecordset(QStringLiteral("SELECT ") + keyColumn + QStringLiteral(", ") +
                                   textColumn + QStringLiteral(" FROM ") + table,
                               store::RecordsetType::Snapshot);
    if (!leadingText.isEmpty()) {
        add(leadingText, 0);
    }
    for (; !rs->Eof(); rs->MoveNext()) {
        add(rs->Value(1).toString(), rs->Value(0).toLongLong());
    }
    rs->Close();
}

}  // namespace

MsgAnswer SavePrompt(QWidget* window, const QString& title, Messages& messages) {
    if (window != nullptr) {
        if (window->isMinimized()) {
            window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
        }
        window->raise();
        window->activateWindow();
    }
    return messages.ask(QStringLiteral("Data Has Been Changed\nSave Changes ?"), title,
                        MsgButtons::YesNoCancel, MsgAnswer::Yes, MsgIcon::Question);
}

MsgAnswer SavePromptOnUnload(QWidget* window, Messages& messages) {
    return SavePrompt(window, QStringLiteral("Form Unload"), messages);
}

int ListFindData(const QComboBox* list, qint64 data) {
    for (int i = 0; i < list->count(); ++i) {
        if (list->itemData(i, Qt::UserRole).toLongLong() == data) {
            return i;
        }
    }
    return -1;
}

int ListFindData(const QListWidget* list, qint64 data) {
    for (int i = 0; i < list->count(); ++i) {
        if (list->item(i)->data(Qt::UserRole).toLongLong() == data) {
            return i;
        }
    }
    return -1;
}

int ListFindPrefix(const QComboBox* combo, const QString& text) {
    if (combo->property("Locked").toBool()) {
        return combo->currentIndex();
    }
    return FindPrefix(combo, text);
}

int ComboFindPrefix(const QComboBox* combo, const QString& text) {
    return FindPrefix(combo, text);
}

void ComboAutoComplete(QComboBox* combo, int key) {
    QLineEdit* edit = combo != nullptr ? combo->lineEdit() : nullptr;
    if (edit == nullptr) {
        return;
    }
    // What the user typed; a completion offered by the combo itself is selected behind it.
    const QString text = edit->text();
    const QString typed = edit->hasSelectedText() && edit->selectionEnd() == text.size()
                              ? text.left(edit->selectionStart())
                              : text;
    if (key == Qt::Key_Space || (key >= Qt::Key_A && key <= Qt::Key_ydiaeresis)) {
        const int found = ListFindPrefix(combo, typed);
        if (found >= 0) {
            SelectEntry(combo, found);
            const qsizetype entry = combo->itemText(found).size();
            const qsizetype start = std::min(typed.size(), entry);
            edit->setSelection(static_cast<int>(start), static_cast<int>(entry - start));
        }
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (!text.isEmpty()) {
            const int found = ListFindPrefix(combo, typed);
            if (found >= 0) {
                SelectEntry(combo, found);
            }
            edit->selectAll();
        }
    }
}

void ListFillFromTable(QComboBox* list, const QString& keyColumn, const QString& textColumn,
                       const QString& table, const QString& leadingText, store::Database& db) {
    const QSignalBlocker block(list);
    list->clear();
    FillRows(
        keyColumn, textColumn, table, leadingText, db,
        [list](const QString& text, qint64 key) { list->addItem(text, QVariant::fromValue(key)); });
    list->setCurrentIndex(-1);
}

void ListFillFromTable(QListWidget* list, const QString& keyColumn, const QString& textColumn,
                       const QString& table, const QString& leadingText, store::Database& db) {
    const QSignalBlocker block(list);
    list->clear();
    FillRows(keyColumn, textColumn, table, leadingText, db,
             [list](const QString& text, qint64 key) {
                 auto* item = new QListWidgetItem(text, list);
                 item->setData(Qt::UserRole, QVariant::fromValue(key));
             });
}

qint64 NameAdd(store::Database& db, const QString& table, const QString& column,
               const QString& text) {
    auto rs = db.OpenRecordset(QStringLiteral("SELECT * FROM ") + table);
    rs->AddNew();
    rs->SetValue(column, text);
    rs->Update();
    rs->MoveLast();
    const qint64 key = rs->Value(0).toLongLong();
    rs->Close();
    return key;
}

bool IsTextControl(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
           qobject_cast<const QTextEdit*>(widget) != nullptr;
}

void EditToolClick(const QString& toolId, QWidget* active, const QList<QAction*>& tools) {
    if (IsTextControl(active)) {
        // A read-only box gives its text but is not changed: a computed figure stays.
        if (toolId == tools::kCut) {
            SetClipboardText(SelectedText(active));
            if (!IsReadOnly(active)) {
                ReplaceSelection(active, QString());
            }
        } else if (toolId == tools::kCopy) {
            SetClipboardText(SelectedText(active));
        } else if (toolId == tools::kPaste) {
            if (!IsReadOnly(active)) {
                ReplaceSelection(active, ClipboardText());
            }
        } else if (toolId == tools::kSelectAll) {
            SelectAll(active);
        }
    }
    EditToolsRefresh(tools, active);
}

void EditToolsRefresh(const QList<QAction*>& tools, QWidget* active) {
    const bool selection = IsTextControl(active) && !SelectedText(active).isEmpty();
    const bool clipboard = !ClipboardText().isEmpty();
    for (QAction* tool : tools) {
        const QString id = tool->objectName();
        if (id == tools::kCut || id == tools::kCopy) {
            tool->setEnabled(selection);
        } else if (id == tools::kPaste) {
            tool->setEnabled(clipboard);
        }
    }
}

bool IsFieldMove(const QFocusEvent* e) {
    return e->reason() != Qt::PopupFocusReason && e->reason() != Qt::ActiveWindowFocusReason;
}

bool IsFieldExit(const QEvent* event) {
    return event->type() == QEvent::FocusOut && IsFieldMove(static_cast<const QFocusEvent*>(event));
}

void SelectAllText(QWidget* active) {
    if (IsTextControl(active) && !WholeText(active).trimmed().isEmpty()) {
        SelectAll(active);
    }
}

QObject* InstallNumericKeyFilter(QLineEdit* edit, int decimals) {
    auto* filter = new NumericKeyFilter(decimals, edit);
    edit->installEventFilter(filter);
    return filter;
}

QObject* InstallEnterAsTab(QWidget* widget) {
    auto* filter = new EnterAsTabFilter(widget);
    widget->installEventFilter(filter);
    return filter;
}

QObject* InstallNumericPad(QLineEdit* edit, int decimals) {
    auto* filter = new NumericPadFilter(decimals, edit);
    edit->installEventFilter(filter);
    return filter;
}

QObject* InstallSelectAllOnFocus(QLineEdit* edit) {
    auto* filter = new SelectAllFilter(edit);
    edit->installEventFilter(filter);
    return filter;
}

QPushButton* NamedButton(const char* name, const QString& text, QWidget* parent) {
    auto* b = new QPushButton(text, parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

QRadioButton* NamedOption(const char* name, const QString& text, QWidget* parent) {
    auto* o = new QRadioButton(text, parent);
    o->setObjectName(QString::fromLatin1(name));
    return o;
}

QLabel* BoxCaption(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

QLineEdit* NamedBox(const char* name, bool result, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    if (result) {
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::NoFocus);
    } else {
        InstallSelectAllOnFocus(box);
    }
    InstallEnterAsTab(box);
    return box;
}

QLabel* ReasonLabel(const char* name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    label->setStyleSheet(QStringLiteral("color: #a00000"));
    label->setMinimumHeight(label->fontMetrics().lineSpacing() * 2);
    return label;
}

}  // namespace slipbook
