#include "common/ui/recordwindow.h"

#include "common/forms.h"
#include "common/recordtools.h"
#include "common/textgrid.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "common/ui/toolactions.h"
#include "store/access.h"
#include "store/recordset.h"

#include <QAbstractButton>
#include <QAbstractProxyModel>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHeaderView>
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
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace slipbook {

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

QAction* RecordWindow::AddTool(const tools::Tool& t) {
    auto* action = new QAction(QString::fromUtf8(t.caption), this);
    const QString id = t.id;
    action->setObjectName(id);
    action->setShortcuts(ToolKeys(t));
    action->setCheckable(t.checkable);
    action->setEnabled(!t.startsDisabled);
    connect(action, &QAction::triggered, this, [this, id] { ToolClick(id); });
    tools_ << action;
    return action;
}

void RecordWindow::BuildTools() {
    menuBar_ = new QMenuBar(this);
    menuBar_->setObjectName(QStringLiteral("mnuBar"));
    layout_->setMenuBar(menuBar_);

    for (const tools::Tool& t : RecordTools()) {
        AddTool(t);
    }
    const ToolLookup lookup = [this](const QString& id) { return tool(id); };
    for (const tools::Menu& m : RecordMenus()) {
        QMenu* menu = nullptr;
        if (m.under.isEmpty()) {
            menu = menuBar_->addMenu(QString::fromUtf8(m.caption));
        } else {
            menu = new QMenu(this);
            tool(m.under)->setMenu(menu);
        }
        menu->setObjectName(m.id);
        FillMenu(menu, m.id, RecordTools(), lookup);
    }

    toolBar_ = new QToolBar(this);
    toolBar_->setObjectName(QStringLiteral("atbToolBar"));
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    FillToolBar(toolBar_, RecordTools(), lookup);
    layout_->addWidget(toolBar_);

    // Shortcuts work whether or not a menu or bar shows the tool.
    addActions(tools_);
    SetToolTips(QStringLiteral("record"));
    tool(tools::kExport)->setVisible(false);
}

void RecordWindow::OfferExport(std::function<void()> exporter) {
    export_ = std::move(exporter);
    tool(tools::kExport)->setVisible(static_cast<bool>(export_));
}

void RecordWindow::SetToolTips(const QString& noun) {
    for (const tools::Tool& t : RecordTools()) {
        QAction* a = tool(t.id);
        if (a == nullptr || t.tip == nullptr) {
            continue;
        }
        const QString tip = QString::fromUtf8(t.tip).replace(QStringLiteral("%1"), noun);
        a->setToolTip(a->shortcut().isEmpty()
                          ? tip
                          : tip + QStringLiteral(" (") +
                                a->shortcut().toString(QKeySequence::NativeText) + u')');
        a->setStatusTip(tip);
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

void RecordWindow::OfferOnly(std::initializer_list<tools::ToolId> ids) {
    const auto offered = [ids](const QAction* action) {
        return std::any_of(ids.begin(), ids.end(),
                           [action](tools::ToolId id) { return action->objectName() == id; });
    };
    for (QAction* action : std::as_const(tools_)) {
        if (offered(action)) {
            continue;
        }
        // Kept for the pattern's own calls, out of every user's reach.
        action->setVisible(false);
        action->setShortcuts({});
        removeAction(action);
        toolBar_->removeAction(action);
    }
    // A tool bar does not fold separators as a menu does.
    const QList<QAction*> onBar = toolBar_->actions();
    QAction* previous = nullptr;
    for (QAction* action : onBar) {
        if (action->isSeparator() && (previous == nullptr || previous->isSeparator())) {
            toolBar_->removeAction(action);
            continue;
        }
        previous = action;
    }
    if (previous != nullptr && previous->isSeparator()) {
        toolBar_->removeAction(previous);
    }
    for (QAction* entry : menuBar_->actions()) {
        if (QMenu* menu = entry->menu()) {
            const QList<QAction*> items = menu->actions();
            entry->setVisible(std::any_of(items.begin(), items.end(), [](const QAction* a) {
                return !a->isSeparator() && a->isVisible();
            }));
        }
    }
}

void RecordWindow::SetRecordList(std::unique_ptr<RecordList> list) {
    list_ = std::move(list);
    connect(list_.get(), &RecordList::picked, this, &RecordWindow::ListPick);
    connect(list_.get(), &RecordList::insertKey, this, [this] { ToolClick(tools::kNew); });
    connect(list_.get(), &RecordList::deleteKey, this, [this] {
        if (tool(tools::kDelete)->isEnabled()) {
            ToolClick(tools::kDelete);
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

bool RecordWindow::AddTypedEntry(QComboBox* combo, const QString& table,
                                 const QString& nameColumn) {
    if (SelectTypedEntry(combo)) {
        return false;
    }
    const QString text = combo->currentText().trimmed();
    if (SelectedIndex(combo) >= 0 || text.isEmpty()) {
        return false;
    }
    if (messages_.ask(QStringLiteral("Add ") + text, QString(), MsgButtons::YesNo,
                      MsgAnswer::Yes) != MsgAnswer::Yes) {
        return false;
    }
    qint64 id = 0;
    try {
        id = NameAdd(db_, table, nameColumn, text);
    } catch (const std::exception& e) {
        store::ErrorReport(store::AsDbError(e), QString(), messages_);
        return false;
    }
    combo->addItem(text, QVariant::fromValue(id));
    SelectComboId(combo, id);
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

QToolBar* RecordWindow::AddFilterBar(const QString& name) {
    auto* bar = new QToolBar(this);
    bar->setObjectName(name);
    AddToolBarRow(bar);
    return bar;
}

RecordWindow::FilterDates RecordWindow::AddFilterDates(QToolBar* bar, const QString& fromTip,
                                                       const QString& toTip) {
    FilterDates dates{MakeDateBox(tools::kEfDateFrom, bar), MakeDateBox(tools::kEfDateTo, bar)};
    // A filter date that is no date filters nothing; the racer is told so.
    CheckOnLeave(dates.from, kDateMaskEmpty,
                 QStringLiteral("Invalid From Date, Use MM/DD/YYYY Format"));
    CheckOnLeave(dates.to, kDateMaskEmpty,
                 QStringLiteral("Invalid To Date, Use MM/DD/YYYY Format"));
    dates.from->setToolTip(fromTip);
    dates.to->setToolTip(toTip);
    bar->addWidget(new QLabel(QStringLiteral("Show dates from "), bar));
    bar->addWidget(dates.from);
    bar->addWidget(new QLabel(QStringLiteral(" to "), bar));
    bar->addWidget(dates.to);
    for (QLineEdit* date : {dates.from, dates.to}) {
        InstallEnterAsTab(date);
        InstallSelectAllOnFocus(date);
        filterDates_ << date;
    }
    return dates;
}

QComboBox* RecordWindow::AddFilterList(QToolBar* bar, const QString& id, const QString& label,
                                       const QString& tip) {
    auto* list = new QComboBox(bar);
    list->setObjectName(id);
    list->setMinimumContentsLength(14);
    list->setToolTip(tip);
    bar->addSeparator();
    auto* caption = new QLabel(label + u' ', bar);
    caption->setBuddy(list);
    bar->addWidget(caption);
    bar->addWidget(list);
    connect(list, &QComboBox::currentIndexChanged, this, [this] { FiltersChanged(); });
    return list;
}

void RecordWindow::FillFilterList(QComboBox* list, const QString& allText, const QString& sql,
                                  const QString& keyColumn, const QString& textColumn) {
    const QSignalBlocker block(list);
    const qint64 picked = FilterId(list);
    list->clear();
    list->addItem(allText, QVariant::fromValue(qint64{0}));
    store::Query rows = db_.OpenQuery(sql);
    const int key = rows.FieldIndex(keyColumn);
    const int text = rows.FieldIndex(textColumn);
    while (rows.Next()) {
        list->addItem(rows.Value(text).toString(), rows.Value(key).toLongLong());
    }
    list->setCurrentIndex(std::max(0, ListFindData(list, picked)));
}

std::optional<QDate> RecordWindow::FilterDate(const QLineEdit* box) {
    if (const auto date = DateValue(MaskText(box))) {
        return date->date();
    }
    return std::nullopt;
}

qint64 RecordWindow::FilterId(const QComboBox* list) {
    const int index = list->currentIndex();
    return index >= 0 ? list->itemData(index).toLongLong() : 0;
}

RecordWindow::RecordGrid RecordWindow::MakeRecordGrid(
    QWidget* parent, const QString& name, const QString& caption, std::vector<GridColumn> columns,
    const std::vector<int>& widths, int stretchColumn, QAbstractProxyModel* proxy) {
    RecordGrid grid;
    grid.area = new QWidget(parent);
    auto* layout = new QVBoxLayout(grid.area);
    layout->setContentsMargins(4, 4, 4, 0);
    grid.caption = new QLabel(caption, grid.area);
    grid.caption->setObjectName(QStringLiteral("lblGridCaption"));
    grid.caption->setAlignment(Qt::AlignCenter);
    grid.caption->setAutoFillBackground(true);
    grid.caption->setBackgroundRole(QPalette::Mid);
    grid.view = new QTableView(grid.area);
    grid.view->setObjectName(name);
    grid.model = new TextGridModel(this);
    columns.front().visible = false;
    grid.model->SetColumns(std::move(columns));
    if (proxy != nullptr) {
        proxy->setSourceModel(grid.model);
        grid.view->setModel(proxy);
    } else {
        grid.view->setModel(grid.model);
    }
    grid.view->setColumnHidden(0, true);
    grid.view->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid.view->setSelectionMode(QAbstractItemView::SingleSelection);
    grid.view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid.view->verticalHeader()->hide();
    grid.view->verticalHeader()->setDefaultSectionSize(grid.view->fontMetrics().height() + 6);
    QHeaderView* header = grid.view->horizontalHeader();
    const int count = std::min(grid.model->ColumnCount(), static_cast<int>(widths.size()));
    for (int c = 1; c < count; ++c) {
        // A caption is never cut short.
        const int least =
            header->fontMetrics().horizontalAdvance(grid.model->Column(c).caption) + 24;
        grid.view->setColumnWidth(c, std::max(widths[c], least));
    }
    header->setSectionResizeMode(stretchColumn, QHeaderView::Stretch);
    layout->addWidget(grid.caption);
    layout->addWidget(grid.view, 1);
    SetRecordList(std::make_unique<GridRecords>(grid.view, grid.model));
    return grid;
}

void RecordWindow::FiltersChanged() {
    FillRecordList();
    FollowGrid();
}

void RecordWindow::FollowGrid() {
    if (!list_ || recordAdd_ || dataChanged_ || list_->findId(CurrentRecordId()) >= 0 ||
        list_->count() == 0) {
        return;
    }
    ShowRecordId(list_->idAt(0));
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
        Save(tools::kSaveandNew);
        return;
    }
    tool(tools::kDelete)->setEnabled(false);
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
    QWidget* focus = Field(failed->focus);
    if (focus != nullptr) {
        RevealField(focus);
    }
    messages_.inform(failed->message, DataEntryErrorTitle(), MsgIcon::Critical);
    if (focus != nullptr) {
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
        if (adding) {
            records_->MoveLast();
        }
        AfterRecordWritten(records_->Value(IdColumn()).toLongLong());
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
    const qint64 id = records_->Value(IdColumn()).toLongLong();
    ListAfterSave(id, adding);
    Q_EMIT events_.recordsChanged(TableName());
    recordAdd_ = false;
    dataChanged_ = false;
    DeleteToolSetup();
    ResetColours();
    setWindowTitle(Caption());
    if (toolId == tools::kSaveandClose) {
        close();
    } else if (toolId == tools::kSaveandNew) {
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
    tool(tools::kDelete)
        ->setEnabled(!recordAdd_ && HasCurrentRow() && DeleteAllowedFor(CurrentRecordId()));
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
        tool(tools::kDelete)->setEnabled(false);
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
                if (!Save(tools::kSave)) {
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
            return Save(tools::kSave);
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
    for (tools::ToolId id : {tools::kSave, tools::kSaveandNew, tools::kSaveandClose}) {
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
    if (toolId == tools::kContents) {
        if (help_) {
            help_();
        }
    } else if (toolId == tools::kPrint) {
        PrintImage();
    } else if (toolId == tools::kAbout) {
        if (about_) {
            about_();
        }
    } else if (toolId == tools::kCut || toolId == tools::kCopy || toolId == tools::kPaste ||
               toolId == tools::kSelectAll) {
        EditToolClick(toolId, focusWidget(), tools_);
    } else if (toolId == tools::kNew) {
        New();
    } else if (toolId == tools::kSave || toolId == tools::kSaveandClose ||
               toolId == tools::kSaveandNew) {
        Save(toolId);
    } else if (toolId == tools::kDelete) {
        RecordDelete();
    } else if (toolId == tools::kClose) {
        close();
    } else if (toolId == tools::kExport && export_) {
        export_();
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
        if (filterDates_.contains(watched) && IsFieldExit(event)) {
            FiltersChanged();
        }
        LeftWithBadValue(watched, event);
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace slipbook
