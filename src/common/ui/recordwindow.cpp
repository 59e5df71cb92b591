#include "common/ui/recordwindow.h"

#include "common/forms.h"
#include "common/textgrid.h"
#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "store/recordset.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScrollArea>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace slipbook {

namespace {

const QString kNew = QStringLiteral("ID_New");
const QString kSave = QStringLiteral("ID_Save");
const QString kSaveAndClose = QStringLiteral("ID_SaveandClose");
const QString kSaveAndNew = QStringLiteral("ID_SaveandNew");
const QString kDelete = QStringLiteral("ID_Delete");

// What each tool does, for its tip and the status line; the window's noun is filled in.
struct ToolHelp {
    const char* id;
    const char* tip;
};
constexpr ToolHelp kToolHelp[] = {
    {"ID_New", "Start a new %1"},
    {"ID_Save", "Save this %1"},
    {"ID_SaveandClose", "Save this %1 and close the window"},
    {"ID_SaveandNew", "Save this %1 and start a new one"},
    {"ID_Delete", "Delete this %1"},
    {"ID_Print", "Print this window"},
    {"ID_Close", "Close the window"},
    {"ID_Cut", "Cut the selected text"},
    {"ID_Copy", "Copy the selected text"},
    {"ID_Paste", "Paste the copied text"},
    {"ID_SelectAll", "Select all the text of the box"},
    {"ID_Previous", "Records are picked in the list"},
    {"ID_Next", "Records are picked in the list"},
    {"ID_Contents", "Open the help"},
    {"ID_About", "About Slipbook"},
};

}  // namespace

// ---- RecordList

RecordList::RecordList(QWidget* widget) : QObject(widget), widget_(widget) {
    widget->installEventFilter(this);
}

void RecordList::append(const QString& /*text*/, qint64 /*id*/) {}

void RecordList::setText(int /*row*/, const QString& /*text*/) {}

int RecordList::nextAfterRemoval(int row) const {
    return ListStep(count(), row);
}

int RecordList::findId(qint64 id) const {
    for (int row = 0; row < count(); ++row) {
        if (idAt(row) == id) {
            return row;
        }
    }
    return -1;
}

bool RecordList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Insert) {
            Q_EMIT insertKey();
            return true;
        }
        if (key == Qt::Key_Delete) {
            Q_EMIT deleteKey();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

ListWidgetRecords::ListWidgetRecords(QListWidget* list) : RecordList(list), list_(list) {
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!silent() && row >= 0) {
            Q_EMIT picked(row);
        }
    });
}

int ListWidgetRecords::count() const {
    return list_->count();
}

int ListWidgetRecords::current() const {
    return list_->currentRow();
}

void ListWidgetRecords::select(int row) {
    const Quiet quiet(this);
    list_->setCurrentRow(row);
}

qint64 ListWidgetRecords::idAt(int row) const {
    return list_->item(row)->data(Qt::UserRole).toLongLong();
}

void ListWidgetRecords::remove(int row) {
    const Quiet quiet(this);
    delete list_->takeItem(row);
}

void ListWidgetRecords::append(const QString& text, qint64 id) {
    const Quiet quiet(this);
    auto* item = new QListWidgetItem(text, list_);
    item->setData(Qt::UserRole, QVariant::fromValue(id));
}

void ListWidgetRecords::setText(int row, const QString& text) {
    if (row >= 0 && row < list_->count()) {
        list_->item(row)->setText(text);
    }
}

GridRecords::GridRecords(QTableView* view, TextGridModel* model)
    : RecordList(view), view_(view), model_(model) {
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& now, const QModelIndex& before) {
                if (!silent() && now.isValid() && now.row() != before.row()) {
                    Q_EMIT picked(now.row());
                }
            });
}

int GridRecords::count() const {
    return model_->RowCount();
}

int GridRecords::current() const {
    const QModelIndex index = view_->currentIndex();
    return index.isValid() ? index.row() : -1;
}

void GridRecords::select(int row) {
    const Quiet quiet(this);
    if (row < 0 || row >= count()) {
        view_->selectionModel()->clear();
        return;
    }
    const QModelIndex index = view_->model()->index(row, 1);
    view_->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view_->scrollTo(index);
}

qint64 GridRecords::idAt(int row) const {
    return model_->Cell(row, 0).toLongLong();
}

void GridRecords::remove(int row) {
    const Quiet quiet(this);
    model_->RemoveRow(row);
}

int GridRecords::nextAfterRemoval(int row) const {
    return model_->GridNextRow(row);
}

// ---- RecordWindow

RecordWindow::RecordWindow(store::Database& db, Messages& messages, store::LogbookEvents& events,
                           QWidget* parent)
    : QWidget(parent, Qt::Window), db_(db), messages_(messages), events_(events) {
    layout_ = new QVBoxLayout(this);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    BuildTools();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && isAncestorOf(now)) {
            RefreshEditTools();
        }
    });
}

RecordWindow::~RecordWindow() = default;

QAction* RecordWindow::AddTool(const QString& id, const QString& caption) {
    auto* action = new QAction(caption, this);
    action->setObjectName(id);
    connect(action, &QAction::triggered, this, [this, id] { ToolClick(id); });
    tools_ << action;
    return action;
}

void RecordWindow::BuildTools() {
    menuBar_ = new QMenuBar(this);
    menuBar_->setObjectName(QStringLiteral("mnuBar"));
    layout_->setMenuBar(menuBar_);

    QMenu* file = menuBar_->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("ID_mnuFile"));
    // "Save and &New" keeps its N, so New takes its W.
    file->addAction(AddTool(kNew, tr("Ne&w")));
    file->addAction(AddTool(kSave, tr("Sa&ve")));
    file->addAction(AddTool(kSaveAndClose, tr("&Save and Close")));
    file->addAction(AddTool(kSaveAndNew, tr("Save and &New")));
    file->addAction(AddTool(kDelete, tr("&Delete")));
    file->addSeparator();
    file->addAction(AddTool(QStringLiteral("ID_Print"), tr("&Print")));
    file->addSeparator();
    file->addAction(AddTool(QStringLiteral("ID_Close"), tr("&Close")));

    QMenu* edit = menuBar_->addMenu(tr("&Edit"));
    edit->setObjectName(QStringLiteral("ID_mnuEdit"));
    edit->addAction(AddTool(QStringLiteral("ID_Cut"), tr("Cu&t")));
    edit->addAction(AddTool(QStringLiteral("ID_Copy"), tr("&Copy")));
    edit->addAction(AddTool(QStringLiteral("ID_Paste"), tr("&Paste")));
    edit->addSeparator();
    edit->addAction(AddTool(QStringLiteral("ID_SelectAll"), tr("Select &All")));

    // Moving between records is done in the list alone: these tools are offered and do nothing.
    QMenu* view = menuBar_->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("ID_mnuView"));
    QAction* previous = AddTool(QStringLiteral("ID_Previous"), tr("Pre&vious"));
    auto* previousMenu = new QMenu(this);
    previousMenu->setObjectName(QStringLiteral("ID_mnuPrevious"));
    previousMenu->addAction(AddTool(QStringLiteral("ID_PrevItem"), tr("&Item")));
    previousMenu->addAction(AddTool(QStringLiteral("ID_FirstItem"), tr("Fi&rst Item in Folder")));
    previous->setMenu(previousMenu);
    QAction* next = AddTool(QStringLiteral("ID_Next"), tr("Ne&xt"));
    auto* nextMenu = new QMenu(this);
    nextMenu->setObjectName(QStringLiteral("ID_mnuNext"));
    nextMenu->addAction(AddTool(QStringLiteral("ID_NextItem"), tr("&Item")));
    nextMenu->addAction(AddTool(QStringLiteral("ID_LastItem"), tr("&Last Item in Folder")));
    next->setMenu(nextMenu);
    view->addAction(previous);
    view->addAction(next);

    QMenu* help = menuBar_->addMenu(tr("&Help"));
    help->setObjectName(QStringLiteral("ID_mnuHelp"));
    help->addAction(AddTool(QStringLiteral("ID_Contents"), tr("&Contents")));
    help->addAction(AddTool(QStringLiteral("ID_About"), tr("&About Slipbook")));

    toolBar_ = new QToolBar(this);
    toolBar_->setObjectName(QStringLiteral("atbToolBar"));
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const char* id :
         {"ID_SaveandClose", "ID_SaveandNew", "", "ID_New", "ID_Print", "", "ID_Cut", "ID_Copy",
          "ID_Paste", "", "ID_Delete", "", "ID_Previous", "ID_Next"}) {
        if (*id == '\0') {
            toolBar_->addSeparator();
        } else {
            toolBar_->addAction(tool(QString::fromLatin1(id)));
        }
    }
    for (QAction* action : {previous, next}) {
        if (auto* button = qobject_cast<QToolButton*>(toolBar_->widgetForAction(action))) {
            button->setPopupMode(QToolButton::MenuButtonPopup);
        }
    }
    layout_->addWidget(toolBar_);

    // Nothing to save until something is typed.
    for (const QString& id : {kSave, kSaveAndClose, kSaveAndNew}) {
        tool(id)->setEnabled(false);
    }

    tool(kNew)->setShortcut(QKeySequence::New);
    tool(kSave)->setShortcut(QKeySequence::Save);
    tool(kSaveAndClose)
        ->setShortcuts(
            {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)});
    tool(QStringLiteral("ID_Print"))->setShortcut(QKeySequence::Print);
    tool(QStringLiteral("ID_Close"))
        ->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
    tool(QStringLiteral("ID_Contents"))->setShortcut(QKeySequence::HelpContents);
    // The text boxes take these keys first; the tools serve the menus and other controls.
    tool(QStringLiteral("ID_Cut"))->setShortcut(QKeySequence::Cut);
    tool(QStringLiteral("ID_Copy"))->setShortcut(QKeySequence::Copy);
    tool(QStringLiteral("ID_Paste"))->setShortcut(QKeySequence::Paste);
    tool(QStringLiteral("ID_SelectAll"))->setShortcut(QKeySequence::SelectAll);
    // Shortcuts work whether or not a menu or bar shows the tool.
    addActions(tools_);
    SetToolTips(QStringLiteral("record"));
}

void RecordWindow::SetToolTips(const QString& noun) {
    for (const ToolHelp& help : kToolHelp) {
        if (QAction* a = tool(QString::fromLatin1(help.id))) {
            const QString tip = QString::fromLatin1(help.tip).replace(QStringLiteral("%1"), noun);
            a->setToolTip(a->shortcut().isEmpty()
                              ? tip
                              : tip + QStringLiteral(" (") +
                                    a->shortcut().toString(QKeySequence::NativeText) + u')');
            a->setStatusTip(tip);
        }
    }
}

QAction* RecordWindow::tool(const QString& id) const {
    for (QAction* action : tools_) {
        if (action->objectName() == id) {
            return action;
        }
    }
    return nullptr;
}

void RecordWindow::SetBody(QWidget* body) {
    // A window made smaller than its fields scrolls rather than squeezing them.
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("scrBody"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(body);
    layout_->addWidget(scroll, 1);
}

RecordWindow::ListBody RecordWindow::MakeListBody(const QString& listName) {
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    ListBody body;
    body.list = new QListWidget(splitter);
    body.list->setObjectName(listName);
    splitter->addWidget(body.list);
    body.panel = new QWidget(splitter);
    body.grid = new QGridLayout(body.panel);
    return body;
}

void RecordWindow::FinishListBody(const ListBody& body) {
    auto* splitter = qobject_cast<QSplitter*>(body.list->parentWidget());
    splitter->addWidget(body.panel);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 520});
    SetBody(splitter);
    SetRecordList(std::make_unique<ListWidgetRecords>(body.list));
}

QLabel* RecordWindow::FieldLabel(const QString& text, QWidget* buddy) {
    auto* l = new QLabel(text, buddy->parentWidget());
    l->setBuddy(buddy);
    return l;
}

void RecordWindow::AddToolBarRow(QToolBar* bar) {
    layout_->insertWidget(layout_->indexOf(toolBar_) + 1, bar);
}

void RecordWindow::SetRecordList(std::unique_ptr<RecordList> list) {
    list_ = std::move(list);
    connect(list_.get(), &RecordList::picked, this, &RecordWindow::ListPick);
    connect(list_.get(), &RecordList::insertKey, this, [this] { ToolClick(kNew); });
    connect(list_.get(), &RecordList::deleteKey, this, [this] {
        if (tool(kDelete)->isEnabled()) {
            ToolClick(kDelete);
        }
    });
}

void RecordWindow::AddField(QWidget* field) {
    if (auto* edit = qobject_cast<QLineEdit*>(field)) {
        connect(edit, &QLineEdit::textChanged, this, [this, edit] { MarkChanged(edit); });
        connect(edit, &QLineEdit::selectionChanged, this, &RecordWindow::RefreshEditTools);
        InstallEnterAsTab(edit);
        InstallSelectAllOnFocus(edit);
    } else if (auto* pane = qobject_cast<QPlainTextEdit*>(field)) {
        connect(pane, &QPlainTextEdit::textChanged, this, [this, pane] { MarkChanged(pane); });
        connect(pane, &QPlainTextEdit::selectionChanged, this, &RecordWindow::RefreshEditTools);
    } else if (auto* combo = qobject_cast<QComboBox*>(field)) {
        connect(combo, &QComboBox::currentIndexChanged, this,
                [this, combo] { MarkChanged(combo); });
        if (combo->isEditable()) {
            // The shared completion is the one behaviour of a typed combo.
            combo->setCompleter(nullptr);
            combo->setInsertPolicy(QComboBox::NoInsert);
            connect(combo, &QComboBox::editTextChanged, this,
                    [this, combo] { MarkChanged(combo); });
            connect(combo->lineEdit(), &QLineEdit::selectionChanged, this,
                    &RecordWindow::RefreshEditTools);
            combo->installEventFilter(this);
        }
        InstallEnterAsTab(combo);
    } else if (auto* button = qobject_cast<QAbstractButton*>(field)) {
        connect(button, &QAbstractButton::clicked, this, [this, button] { MarkChanged(button); });
        InstallEnterAsTab(button);
    }
}

void RecordWindow::AddNotesField(QPlainTextEdit* notes, const QString& hint) {
    AddField(notes);
    notes->setPlaceholderText(hint);
    notes->setTabChangesFocus(true);
}

void RecordWindow::CheckOnLeave(QLineEdit* box, QStringView emptyMask, const QString& message) {
    leaveChecks_.insert(box, {emptyMask.toString(), message});
    box->installEventFilter(this);
}

bool RecordWindow::LeftWithBadValue(QObject* watched, QEvent* event) {
    const auto check = leaveChecks_.constFind(watched);
    if (check == leaveChecks_.constEnd() || !IsFieldExit(event)) {
        return false;
    }
    auto* box = static_cast<QLineEdit*>(watched);
    if (IsBlankOrDate(box->displayText(), check->emptyMask)) {
        return false;
    }
    messages_.inform(check->message, DataEntryErrorTitle(), MsgIcon::Critical);
    box->setFocus(Qt::OtherFocusReason);
    return true;
}

int RecordWindow::SelectedIndex(const QComboBox* combo) {
    const int index = combo->currentIndex();
    if (index < 0 || (combo->isEditable() && combo->currentText() != combo->itemText(index))) {
        return -1;
    }
    return index;
}

QVariant RecordWindow::SelectedId(const QComboBox* combo) {
    const int index = SelectedIndex(combo);
    if (index < 0) {
        return QVariant();
    }
    return combo->itemData(index).toLongLong();
}

void RecordWindow::SelectComboId(QComboBox* combo, const QVariant& id) {
    const int index = id.isNull() ? -1 : ListFindData(combo, id.toLongLong());
    combo->setCurrentIndex(index);
    if (combo->isEditable()) {
        combo->setEditText(index >= 0 ? combo->itemText(index) : QString());
    }
}

bool RecordWindow::SelectTypedEntry(QComboBox* combo) {
    const QString text = combo->currentText().trimmed();
    if (SelectedIndex(combo) >= 0 || text.isEmpty()) {
        return false;
    }
    const int found = combo->findText(text, Qt::MatchFixedString);
    if (found < 0) {
        return false;
    }
    combo->setCurrentIndex(found);
    combo->setEditText(combo->itemText(found));
    return true;
}

QLineEdit* RecordWindow::MakeDateBox(const QString& objectName, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(objectName);
    box->setInputMask(QStringLiteral("00/00/0000;_"));
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 16);
    return box;
}

QString RecordWindow::MaskText(const QLineEdit* box) {
    return box->displayText();
}

void RecordWindow::SetNotes(QPlainTextEdit* notes, const QString& text) {
    notes->setPlainText(IsNotesHint(text) ? QString() : text);
}

QWidget* RecordWindow::Field(const QString& objectName) const {
    return findChild<QWidget*>(objectName);
}

bool RecordWindow::HasCurrentRow() const {
    return records_ && records_->IsOpen() && records_->AbsolutePosition() >= 0;
}

qint64 RecordWindow::CurrentRecordId() const {
    if (recordAdd_ || !HasCurrentRow()) {
        return 0;
    }
    return records_->Value(IdColumn()).toLongLong();
}

// ---- Operations

void RecordWindow::OpenRecords() {
    if (records_) {
        records_->Close();
    }
    records_ = db_.OpenRecordset(RecordsetSql());
}

void RecordWindow::FormLoad(bool newRecord) {
    {
        const BusyCursor busy;
        FillLists();
        FillRecordList();
        OpenRecords();
    }
    if (newRecord) {
        New();
    } else {
        const qint64 start = StartRecordId();
        int row = start != 0 && list_ ? list_->findId(start) : -1;
        if (row < 0 && list_ && list_->count() > 0) {
            row = 0;
        }
        if (row >= 0) {
            ShowRecordId(list_->idAt(row));
            // Taken when the window is first shown.
            list_->widget()->setFocus();
        } else {
            New();
        }
    }
    DeleteToolSetup();
    RefreshEditTools();
}

bool RecordWindow::ShowRecordId(qint64 id) {
    records_->FindFirst(KeyCriterion(IdColumn(), id));
    if (records_->NoMatch()) {
        messages_.inform(RecordNotFound(id));
        return false;
    }
    ShowCurrent();
    if (list_) {
        list_->select(list_->findId(id));
    }
    return true;
}

void RecordWindow::ShowCurrent() {
    showMode_ = true;
    RecordToFields(*records_);
    showMode_ = false;
    dataChanged_ = false;
    recordAdd_ = false;
    ResetColours();
    DeleteToolSetup();
    setWindowTitle(Caption());
    if (list_ && list_->widget()->isVisible()) {
        list_->widget()->setFocus();
    }
}

void RecordWindow::New() {
    if (dataChanged_) {
        // Saving goes on to a new record when it succeeds, and stays put when it fails.
        Save(kSaveAndNew);
        return;
    }
    tool(kDelete)->setEnabled(false);
    showMode_ = true;
    ClearFields();
    showMode_ = false;
    recordAdd_ = true;
    dataChanged_ = false;
    ResetColours();
    if (list_) {
        list_->select(-1);
    }
    setWindowTitle(Caption());
    if (QWidget* focus = NewFocusField()) {
        focus->setFocus();
    }
}

bool RecordWindow::Validate() {
    const std::vector<ValidationStep> steps = ValidationSteps();
    const ValidationStep* failed = FirstFailure(steps);
    if (failed == nullptr) {
        return true;
    }
    messages_.inform(failed->message, DataEntryErrorTitle(), MsgIcon::Critical);
    if (QWidget* focus = Field(failed->focus)) {
        focus->setFocus();
    }
    return false;
}

bool RecordWindow::Save(const QString& toolId) {
    BeforeValidate();
    if (!Validate()) {
        return false;
    }
    const bool adding = recordAdd_;
    const qint64 editedId = CurrentRecordId();
    bool written = false;
    try {
        store::Database::Transaction transaction(db_);
        if (adding) {
            records_->AddNew();
        } else {
            records_->Edit();
        }
        FieldsToRecord(*records_);
        records_->Update();
        written = true;
        transaction.Commit();
    } catch (const std::exception& e) {
        store::IsDuplicate(store::AsDbError(e), records_.get(), messages_);
        if (records_->Mode() != store::EditMode::None) {
            records_->CancelUpdate();
        }
        if (written) {
            // The row set took a row that the rollback has undone.
            OpenRecords();
            if (editedId != 0) {
                records_->FindFirst(KeyCriterion(IdColumn(), editedId));
            }
        }
        return false;
    }
    if (adding) {
        records_->MoveLast();
    }
    const qint64 id = records_->Value(IdColumn()).toLongLong();
    ListAfterSave(id, adding);
    Q_EMIT events_.recordsChanged(TableName());
    recordAdd_ = false;
    dataChanged_ = false;
    DeleteToolSetup();
    ResetColours();
    setWindowTitle(Caption());
    if (toolId == kSaveAndClose) {
        close();
    } else if (toolId == kSaveAndNew) {
        New();
    }
    return true;
}

void RecordWindow::ListAfterSave(qint64 id, bool added) {
    if (!list_) {
        return;
    }
    const QString text = RecordName().trimmed();
    if (added) {
        list_->append(text, id);
    } else {
        list_->setText(list_->findId(id), text);
    }
    list_->select(list_->findId(id));
}

bool RecordWindow::DeleteAllowedFor(qint64 id) {
    return DeleteAllowed(db_, messages_, DeleteRules(), id);
}

void RecordWindow::DeleteToolSetup() {
    tool(kDelete)->setEnabled(!recordAdd_ && HasCurrentRow() &&
                              DeleteAllowedFor(CurrentRecordId()));
}

QString RecordWindow::DeleteQuestionText() const {
    return DeleteQuestion(windowTitle(), RecordName());
}

void RecordWindow::DeleteRows(qint64 /*id*/) {
    records_->Delete();
}

void RecordWindow::RecordDelete() {
    if (recordAdd_ || !HasCurrentRow()) {
        return;
    }
    const qint64 id = CurrentRecordId();
    // The record may have come into use since the tool was set up.
    if (!DeleteAllowedFor(id)) {
        tool(kDelete)->setEnabled(false);
        return;
    }
    if (messages_.ask(DeleteQuestionText(), QStringLiteral("Delete"), MsgButtons::YesNo,
                      MsgAnswer::No, MsgIcon::Question) != MsgAnswer::Yes) {
        return;
    }
    try {
        store::Database::Transaction transaction(db_);
        DeleteRows(id);
        transaction.Commit();
    } catch (const std::exception& e) {
        store::ErrorReport(store::AsDbError(e), QString(), messages_);
        OpenRecords();
        records_->FindFirst(KeyCriterion(IdColumn(), id));
        return;
    }
    dataChanged_ = false;
    ListAfterDelete(id);
    AfterDelete(id);
}

void RecordWindow::AfterDelete(qint64 /*id*/) {
    Q_EMIT events_.recordsChanged(TableName());
}

void RecordWindow::ListAfterDelete(qint64 id) {
    if (!list_) {
        New();
        return;
    }
    const int row = list_->findId(id);
    if (row >= 0) {
        list_->remove(row);
    }
    ShowNextAfterRemoval(row < 0 ? 0 : row);
}

void RecordWindow::ShowNextAfterRemoval(int row) {
    const int next = list_->nextAfterRemoval(row);
    if (next < 0) {
        New();
        return;
    }
    ShowRecordId(list_->idAt(next));
}

void RecordWindow::ListPick(int row) {
    if (!list_ || row < 0 || row >= list_->count()) {
        return;
    }
    const qint64 target = list_->idAt(row);
    const qint64 shown = CurrentRecordId();
    const auto back = [this, shown] { list_->select(shown != 0 ? list_->findId(shown) : -1); };
    const QString title = SelectionPromptTitle();
    if (dataChanged_ && !title.isEmpty()) {
        switch (SavePrompt(this, title, messages_)) {
            case MsgAnswer::Yes:
                if (!Save(kSave)) {
                    back();
                    return;
                }
                break;
            case MsgAnswer::No:
                break;
            default:
                back();
                return;
        }
    }
    if (!ShowRecordId(target)) {
        back();
    }
}

bool RecordWindow::QueryUnload() {
    if (!dataChanged_) {
        return true;
    }
    switch (SavePromptOnUnload(this, messages_)) {
        case MsgAnswer::Yes:
            return Save(kSave);
        case MsgAnswer::No:
            return true;
        default:
            return false;
    }
}

void RecordWindow::MarkChanged(QWidget* control) {
    if (showMode_) {
        return;
    }
    dataChanged_ = true;
    if (editsInRed_ && control != nullptr && qobject_cast<QAbstractButton*>(control) == nullptr &&
        !coloured_.contains(control)) {
        QPalette palette = control->palette();
        palette.setColor(QPalette::Text, Qt::red);
        palette.setColor(QPalette::WindowText, Qt::red);
        palette.setColor(QPalette::ButtonText, Qt::red);
        control->setPalette(palette);
        coloured_ << control;
    }
    for (const QString& id : {kSave, kSaveAndNew, kSaveAndClose}) {
        tool(id)->setEnabled(true);
    }
    RefreshEditTools();
}

void RecordWindow::ResetColours() {
    for (const QPointer<QWidget>& control : coloured_) {
        if (control) {
            control->setPalette(QPalette());
        }
    }
    coloured_.clear();
}

void RecordWindow::RefreshEditTools() {
    EditToolsRefresh(tools_, focusWidget());
}

void RecordWindow::ToolClick(const QString& toolId) {
    if (toolId == QStringLiteral("ID_Contents")) {
        if (help_) {
            help_();
        }
    } else if (toolId == QStringLiteral("ID_Print")) {
        PrintImage();
    } else if (toolId == QStringLiteral("ID_About")) {
        if (about_) {
            about_();
        }
    } else if (toolId == QStringLiteral("ID_Cut") || toolId == QStringLiteral("ID_Copy") ||
               toolId == QStringLiteral("ID_Paste") || toolId == QStringLiteral("ID_SelectAll")) {
        EditToolClick(toolId, focusWidget(), tools_);
    } else if (toolId == kNew) {
        New();
    } else if (toolId == kSave || toolId == kSaveAndClose || toolId == kSaveAndNew) {
        Save(toolId);
    } else if (toolId == kDelete) {
        RecordDelete();
    } else if (toolId == QStringLiteral("ID_Close")) {
        close();
    }
}

void RecordWindow::PrintImage() {
    if (print_) {
        print_(this);
        return;
    }
    const QPixmap image = grab();
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog preview(&printer, this);
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, [&image](QPrinter* target) {
        QPainter painter(target);
        const QRect page = painter.viewport();
        QSize size = image.size();
        size.scale(page.size(), Qt::KeepAspectRatio);
        painter.setViewport(page.x(), page.y(), size.width(), size.height());
        painter.setWindow(image.rect());
        painter.drawPixmap(0, 0, image);
    });
    preview.exec();
}

void RecordWindow::closeEvent(QCloseEvent* event) {
    if (QueryUnload()) {
        event->accept();
    } else {
        event->ignore();
    }
}

void RecordWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        RefreshEditTools();
    }
    QWidget::changeEvent(event);
}

bool RecordWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyRelease) {
        if (auto* combo = qobject_cast<QComboBox*>(watched)) {
            ComboAutoComplete(combo, static_cast<QKeyEvent*>(event)->key());
        }
    } else {
        LeftWithBadValue(watched, event);
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace slipbook
