#include "shell/ui/frmMain.h"

#include "common/numbers.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "common/ui/toolactions.h"
#include "exchange/ui/frmExport.h"
#include "shell/mainstate.h"
#include "shell/maintools.h"
#include "shell/ui/fitwidgets.h"
#include "shell/ui/frozentableview.h"
#include "store/access.h"
#include "store/logbookcopy.h"
#include "store/logbookfile.h"
#include "store/startup.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSplitter>
#include <QStandardPaths>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace slipbook::shell {

namespace {

const QString kNotYet = QStringLiteral("Not available yet");

// What each tool does, as its tip and in the status line.
QString ToolTipOf(const QString& id) {
    if (const tools::Tool* t = tools::FindTool(MainTools(), id)) {
        return QString::fromUtf8(t->tip);
    }
    for (const Selector& s : MainSelectors()) {
        if (s.id == id) {
            return QString::fromUtf8(s.tip);
        }
    }
    return {};
}

void SetTip(QAction* action, const QString& tip) {
    action->setToolTip(tip);
    action->setStatusTip(tip);
}

// Layout units are twips, 15 to a pixel for the small system font they were chosen for; a
// larger font widens the columns alike.
int PixelsOf(int twips, const QFontMetrics& fm) {
    const double scale = std::max(1.0, fm.averageCharWidth() / 5.0);
    return std::max(24, static_cast<int>(twips / 15.0 * scale));
}

}  // namespace

frmMain::frmMain(store::Database& db, Messages& messages, store::LogbookEvents& events,
                 const WallClock& clock, const QString& commandLine, const QString& resourceDir,
                 QWidget* parent)
    : QMainWindow(parent),
      db_(db),
      messages_(messages),
      clock_(clock),
      context_{db, messages, events, clock, state_, *this},
      urlOpener_([](const QUrl& url) { return QDesktopServices::openUrl(url); }),
      programStarter_([](const QString& program, const QStringList& args) {
          return QProcess::startDetached(program, args);
      }),
      pathChooser_([this](const QString& caption, bool folder) {
          return folder ? QFileDialog::getExistingDirectory(this, caption)
                        : QFileDialog::getOpenFileName(
                              this, caption, QString(),
                              QStringLiteral("Slipbook logbooks (*.db);;All files (*)"));
      }) {
    setObjectName(QStringLiteral("frmMain"));

    loading_ = true;
    lockCount_ = 0;
    state_.weatherDir = WeatherDirInit(commandLine);
    help_ = HelpInit(resourceDir);
    appTitle_ = store::AppTitle();
    setWindowTitle(store::MainCaption());
    predictions_.ClearAll();
    tuneUps_.ClearAll();

    BuildTools();
    BuildCentral();
    resize(1100, 720);

    connect(&events, &store::LogbookEvents::runSaved, this, [this](qint64 id) { RunSaved(id); });
    connect(&events, &store::LogbookEvents::runDeleted, this, &frmMain::RunDeleted);
    connect(&events, &store::LogbookEvents::recordsChanged, this, &frmMain::RecordsChanged);
}

frmMain::~frmMain() = default;

QAction* frmMain::AddTool(const QString& id, const QString& caption, QMenu* menu) {
    QAction* action = tools_.value(id);
    if (action == nullptr) {
        action = new QAction(caption, this);
        action->setObjectName(id);
        SetTip(action, ToolTipOf(id));
        tools_.insert(id, action);
        connect(action, &QAction::triggered, this, [this, id] { ToolClick(id); });
    }
    if (menu != nullptr) {
        menu->addAction(action);
    }
    return action;
}

void frmMain::NotYet(const QString& id) {
    if (QAction* a = tool(id)) {
        a->setEnabled(false);
        SetTip(a, kNotYet);
    }
}

void frmMain::Available(const QString& id) {
    if (QAction* a = tool(id)) {
        a->setEnabled(true);
        SetTip(a, ToolTipOf(id));
    }
}

void frmMain::BuildTools() {
    QHash<QString, QMenu*> menus;
    for (const tools::Menu& m : MainMenus()) {
        QMenu* menu = menuBar()->addMenu(QString::fromUtf8(m.caption));
        menu->setObjectName(m.id);
        menu->menuAction()->setObjectName(m.id);
        menus.insert(m.id, menu);
    }
    for (const tools::Tool& t : MainTools()) {
        QAction* action = AddTool(t.id, QString::fromUtf8(t.caption));
        action->setShortcuts(ToolKeys(t));
        action->setCheckable(t.checkable);
    }
    const ToolLookup lookup = [this](const QString& id) { return tool(id); };
    for (const tools::Menu& m : MainMenus()) {
        FillMenu(menus.value(m.id), m.id, MainTools(), lookup);
    }

    // The tool bar with its selectors.
    toolBar_ = addToolBar(QStringLiteral("Tools"));
    toolBar_->setObjectName(QStringLiteral("atbMain"));
    toolBar_->setMovable(false);
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    FillToolBar(toolBar_, MainTools(), lookup);
    addToolBarBreak();
    auto* selectors = addToolBar(QStringLiteral("Selectors"));
    selectors->setObjectName(QStringLiteral("atbMainSelectors"));
    selectors->setMovable(false);
    // A label and its box are one tool, so that a selector the bar has no room for goes into
    // the bar's overflow with its label.
    auto combo = [this, selectors](const QString& id, const QString& labelId, const QString& label,
                                   int characters, bool stretches) {
        auto* pair = new QWidget(selectors);
        pair->setObjectName(id + QStringLiteral("Pair"));
        auto* row = new QHBoxLayout(pair);
        row->setContentsMargins(labelId.isEmpty() ? 2 : 8, 0, 2, 0);
        row->setSpacing(4);
        auto* c = new SelectorBox(characters, pair);
        c->setObjectName(id);
        c->setToolTip(ToolTipOf(id));
        c->setStatusTip(ToolTipOf(id));
        if (stretches) {
            c->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        }
        if (!labelId.isEmpty()) {
            auto* l = new QLabel(label, pair);
            l->setObjectName(labelId);
            l->setBuddy(c);
            row->addWidget(l);
        }
        row->addWidget(c);
        QAction* a = selectors->addWidget(pair);
        a->setObjectName(id + QStringLiteral("Tool"));
        tools_.insert(id, a);
        if (!labelId.isEmpty()) {
            tools_.insert(labelId, a);
        }
        connect(c, &QComboBox::activated, this, [this, id] { SelectorPicked(id); });
        return c;
    };
    for (const Selector& s : MainSelectors()) {
        combo(s.id, s.label, QString::fromUtf8(s.caption), s.characters, s.stretches);
    }
    carList_ = selector(tools::kCarList);
    eventList_ = selector(tools::kEventList);
    trackList_ = selector(tools::kTrackList);
    views_ = selector(tools::kViews);

    // Windows of later issues: present, waiting for their window.
    for (const tools::Tool& t : MainTools()) {
        if (t.startsDisabled) {
            NotYet(t.id);
        }
    }
}

void frmMain::BuildCentral() {
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* top = new QWidget(central);
    auto* topLayout = new QHBoxLayout(top);
    topLayout->setContentsMargins(0, 0, 0, 0);
    topLayout->setSpacing(0);
    title_ = new ElidedLabel(appTitle_, top);
    title_->setObjectName(QStringLiteral("pnlTitleBar"));
    title_->setStyleSheet(
        QStringLiteral("background: #1b2430; color: white; font-size: 13pt; font-weight: bold;"
                       " padding: 6px 10px; border-bottom: 3px solid #d62d20;"));
    logo_ = new QLabel(QStringLiteral("QUADRUMEX"), top);
    logo_->setObjectName(QStringLiteral("pnlLogo"));
    logo_->setToolTip(QStringLiteral("Double-click for the maker's web page"));
    logo_->setStyleSheet(
        QStringLiteral("background: #1b2430; color: #d62d20; font-weight: bold; font-style: italic;"
                       " padding: 6px 12px; border-bottom: 3px solid #d62d20;"));
    logo_->installEventFilter(this);
    topLayout->addWidget(title_, 1);
    topLayout->addWidget(logo_);
    layout->addWidget(top);

    splitter_ = new QSplitter(Qt::Vertical, central);
    splitter_->setObjectName(QStringLiteral("splMain"));
    model_ = new TextGridModel(this);
    grid_ = new FrozenTableView(splitter_);
    grid_->setObjectName(QStringLiteral("ssdbgMain"));
    grid_->setModel(model_);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setAlternatingRowColors(true);
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    grid_->verticalHeader()->setVisible(false);
    grid_->horizontalHeader()->setSectionsClickable(true);
    grid_->horizontalHeader()->setHighlightSections(false);
    grid_->installEventFilter(this);
    connect(grid_->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmMain::HeadClick);
    connect(grid_, &QTableView::doubleClicked, this, [this] { DblClick(); });
    // The grid's own menu: the list commands at hand.
    auto* popup = new QMenu(grid_);
    popup->setObjectName(tools::kPopup);
    for (tools::ToolId id :
         {tools::kNew, tools::kOpen, tools::kDelete, tools::kFilter, tools::kViewSetup}) {
        popup->addAction(tool(id));
    }
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid_, &QWidget::customContextMenuRequested, this,
            [this, popup](const QPoint& at) { popup->popup(grid_->viewport()->mapToGlobal(at)); });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { GridClick(); });
    notes_ = new QPlainTextEdit(splitter_);
    notes_->setObjectName(QStringLiteral("rtbNotes"));
    notes_->setReadOnly(true);
    notes_->setPlaceholderText(QStringLiteral("Notes"));
    splitter_->addWidget(grid_);
    splitter_->addWidget(notes_);
    splitter_->setStretchFactor(0, 4);
    splitter_->setStretchFactor(1, 1);
    layout->addWidget(splitter_, 1);
    setCentralWidget(central);

    statusBar()->setObjectName(QStringLiteral("stbMain"));
    statusHelp_ = new QLabel(statusBar());
    statusHelp_->setObjectName(QStringLiteral("Help"));
    statusMsg_ = new QLabel(statusBar());
    statusMsg_->setObjectName(QStringLiteral("Msg"));
    statusBar()->addWidget(statusHelp_, 1);
    statusBar()->addPermanentWidget(statusMsg_);
    StatusHelpReset();
}

QAction* frmMain::tool(const QString& id) const {
    return tools_.value(id);
}

QComboBox* frmMain::selector(const QString& id) const {
    return findChild<QComboBox*>(id);
}

QString frmMain::titleText() const {
    return title_->text();
}

QString frmMain::notesText() const {
    return notes_->toPlainText();
}

QString frmMain::statusMessage() const {
    return statusMsg_->text();
}

void frmMain::ReportStatus(const QString& text) {
    if (statusReporter_) {
        statusReporter_(text);
    }
}

void frmMain::StatusHelpReset() {
    statusHelp_->setText(QStringLiteral("Press F1 for Help"));
}

void frmMain::StatusRecordCount() {
    statusMsg_->setText(QString::number(model_->RowCount()) + QStringLiteral(" Record(s)"));
}

// ---------------------------------------------------------------------------------------------
// Registration of the windows of later subsystems

void frmMain::RegisterWindow(const QString& key, WindowFactory factory) {
    lists_[key].open = std::move(factory);
    if (key == tools::kRuns) {
        for (tools::ToolId id : {tools::kNew, tools::kNewRun, tools::kOpen}) {
            Available(id);
        }
    } else {
        Available(key);
        if (key == tools::kFilter && state_.filter.active) {
            SetTip(tool(key), state_.filter.text);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// The list

void frmMain::ListLoad(const QString& mode) {
    BusyCursor busy;
    state_.view = mode;
    layout_ = BuildListLayout(db_, mode, CurrentListContext(), messages_);
    LayoutShow();
}

ListContext frmMain::CurrentListContext() const {
    ListContext ctx;
    ctx.carId = state_.car.id;
    ctx.eventId = state_.event.id;
    ctx.trackId = state_.track.id;
    ctx.viewId = ItemKey(views_, views_->currentIndex());
    ctx.filterActive = state_.filter.active;
    ctx.filterSql = state_.filter.sql;
    return ctx;
}

void frmMain::ListShowColumns(const QList<qint64>& catalogueIds) {
    BusyCursor busy;
    const QString key = SelectedKeyText();
    ListContext ctx = CurrentListContext();
    // The columns picked are shown over the car's runs of the event, whatever the track.
    ctx.trackId = 0;
    layout_ = CatalogueListLayout(db_, catalogueIds, ColumnOrder::Given);
    layout_.sql = RunListSql(ctx);
    LayoutShow();
    const int row = model_->GridFindRow(key);
    if (row >= 0) {
        SelectRow(row);
    }
}

void frmMain::LayoutShow() {
    grid_->setUpdatesEnabled(false);
    grid_->setFrozenColumns(0);
    // A load comes in the statement's order.
    grid_->setSortColumn(-1);
    model_->Clear();
    model_->SetColumns(layout_.GridColumns());
    for (int c = 0; c < model_->ColumnCount(); ++c) {
        const GridColumn& col = model_->Column(c);
        grid_->setColumnHidden(c, !col.visible);
        grid_->setColumnWidth(c, PixelsOf(col.width > 0 ? col.width : 1500, grid_->fontMetrics()));
    }
    if (!layout_.sql.isEmpty()) {
        std::vector<QString> rows;
        try {
            store::Query q = db_.OpenQuery(layout_.sql);
            RowBuilder builder(db_, layout_);
            builder.Bind(q);
            while (q.Next()) {
                rows.push_back(builder.BuildText(q));
            }
        } catch (const store::DbError& e) {
            // A filter whose statement no longer runs shows an empty list, not a dead program.
            store::ErrorReport(e, QStringLiteral("ListLoad"), messages_);
        }
        model_->SetRows(std::move(rows));
    }
    if (layout_.mode == tools::kRuns && model_->ColumnCount() > 4) {
        grid_->setFrozenColumns(4);
    }
    grid_->setUpdatesEnabled(true);
    StatusHelpReset();
    StatusRecordCount();
    if (model_->RowCount() > 0) {
        SelectRow(0);
    }
    NotesLoad();
    DeleteToolRefresh();
    if (grid_->isVisible() && QApplication::activeWindow() == this) {
        grid_->setFocus();
    }
}

QList<ShownColumn> frmMain::ListColumns() const {
    QList<ShownColumn> columns;
    for (int c = 1; c < model_->ColumnCount(); ++c) {
        const GridColumn& col = model_->Column(c);
        columns.append({col.name, col.typeName, col.caption});
    }
    return columns;
}

int frmMain::ListRowCount() const {
    return model_->RowCount();
}

QString frmMain::ListCellText(int row, int column) const {
    if (row < 0 || row >= model_->RowCount() || column < 0 || column >= model_->ColumnCount()) {
        return QString();
    }
    return model_->Cell(row, column);
}

int frmMain::SelectedRow() const {
    const QModelIndex current = grid_->selectionModel()->currentIndex();
    return current.isValid() ? current.row() : -1;
}

void frmMain::SelectRow(int row) {
    if (row < 0 || row >= model_->RowCount()) {
        return;
    }
    const int column = std::min(model_->ColumnCount() - 1, 1);
    grid_->selectionModel()->setCurrentIndex(
        model_->index(row, std::max(0, column)),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    grid_->scrollTo(model_->index(row, std::max(0, column)));
}

QString frmMain::SelectedCellText(int column) const {
    const int row = SelectedRow();
    return row < 0 ? QString() : model_->Cell(row, column);
}

void frmMain::NotesLoad() {
    if (model_->RowCount() == 0 || SelectedRow() < 0) {
        notes_->clear();
        return;
    }
    // Setting the same text anew rebuilds the pane's whole document.
    const QString notes = LoadNotes(db_, state_.view, model_->Cell(SelectedRow(), 0));
    if (notes != notes_->toPlainText()) {
        notes_->setPlainText(notes);
    }
}

void frmMain::GridClick() {
    // The title holds the car's name, so these two tests hold only with no car selected.
    const QString title = title_->text().trimmed();
    if (title == u"Events") {
        state_.event.id = static_cast<qint64>(LeadingNumber(SelectedCellText(0)).value_or(0));
        state_.event.desc = SelectedCellText(1);
    } else if (title == u"Tracks") {
        state_.track.id = static_cast<qint64>(LeadingNumber(SelectedCellText(0)).value_or(0));
        state_.track.desc = SelectedCellText(1);
    }
    NotesLoad();
    if (grid_->isVisible()) {
        DeleteToolRefresh();
    }
}

void frmMain::HeadClick(int column) {
    if (column < 0 || column >= model_->ColumnCount()) {
        return;
    }
    const QString key = SelectedCellText(0);
    BusyCursor busy;
    model_->GridSort(column);
    grid_->setSortColumn(column);
    const int row = key.isEmpty() ? -1 : model_->GridFindRow(key);
    if (row >= 0) {
        SelectRow(row);
    }
}

void frmMain::GridRowPut(const QString& keyText, const QString& rowText) {
    int row = model_->GridFindRow(keyText);
    if (row >= 0) {
        model_->SetRowText(row, rowText);
    } else {
        model_->AddRow(QStringView(rowText));
        row = model_->RowCount() - 1;
    }
    const int before = SelectedRow();
    SelectRow(row);
    StatusRecordCount();
    // A row that became the current one has loaded its notes on the way.
    if (SelectedRow() == before) {
        NotesLoad();
    }
}

void frmMain::GridRowRemove(const QString& keyText) {
    const int row = model_->GridFindRow(keyText);
    if (row < 0) {
        return;
    }
    model_->RemoveRow(row);
    SelectRow(model_->GridNextRow(row));
    StatusRecordCount();
    NotesLoad();
    DeleteToolRefresh();
}

void frmMain::RunSaved(qint64 runId) {
    // A run window opens on the run list alone; another list shown since has no run rows.
    if (state_.view != tools::kRuns) {
        return;
    }
    QStringList names;
    for (int i = 0; i < model_->ColumnCount(); ++i) {
        names << model_->Column(i).name;
    }
    const QString row = rowMaker_.Row(names, runId);
    if (!row.isEmpty()) {
        GridRowPut(QString::number(runId), row);
    }
}

void frmMain::RunDeleted(qint64 runId) {
    if (state_.view == tools::kRuns) {
        GridRowRemove(QString::number(runId));
    }
}

// ---------------------------------------------------------------------------------------------
// Commands

void frmMain::ToolClick(const QString& id) {
    state_.storedTool = id;
    if (id == tools::kContents) {
        HelpContents();
    } else if (id == tools::kQuadrumex) {
        urlOpener_(QUrl(QStringLiteral("https://www.quadrumex.com/")));
    } else if (id == tools::kAbout) {
        ShowAbout();
    } else if (id == tools::kNew || id == tools::kNewRun) {
        DblClick();
    } else if (id == tools::kOpen) {
        tool(tools::kDelete)->setEnabled(false);
        DblClick();
    } else if (id == tools::kDelete) {
        RecordDelete();
    } else if (id == tools::kEvents || id == tools::kCars || id == tools::kTracks ||
               id == tools::kExpenses || id == tools::kMaintenance || id == tools::kWeather ||
               id == tools::kTestTune || id == tools::kViewSetup || id == tools::kImportRuns ||
               id == tools::kWeatherHistory || id == tools::kCharts || id == tools::kStatistics ||
               id == tools::kReportCard) {
        ShowToolWindow(id);
    } else if (id == tools::kRuns) {
        RunsTool();
    } else if (id == tools::kETTS) {
        ProgramWindowTool(true);
    } else if (id == tools::kTuneUp) {
        ProgramWindowTool(false);
    } else if (id == tools::kFilter) {
        FilterToggled(tool(id)->isChecked());
    } else if (id == tools::kPrint) {
        PrintGrid();
    } else if (id == tools::kExport) {
        ExportGrid();
    } else if (id == tools::kCalculator) {
        StartCalculator();
    } else if (id == tools::kCopyToDiskette) {
        CopyToFolder();
    } else if (id == tools::kCopyFromDiskette) {
        CopyFromFolder();
    } else if (id == tools::kExit) {
        close();
    }
}

void frmMain::ExportGrid() {
    // Each list mode's table and key, for its raw values.
    static const QHash<QString, std::pair<QString, QString>> kTables = {
        {tools::kRuns, {QStringLiteral("tblRuns"), QStringLiteral("lRun_id")}},
        {tools::kEvents, {QStringLiteral("tblEvents"), QStringLiteral("lEvent_id")}},
        {tools::kCars, {QStringLiteral("tblCars"), QStringLiteral("lCar_id")}},
        {tools::kTracks, {QStringLiteral("tblTracks"), QStringLiteral("lTrack_id")}},
        {tools::kExpenses, {QStringLiteral("tblExpenses"), QStringLiteral("lExpense_id")}},
    };
    const auto table = kTables.value(layout_.mode);
    exchange::ListSource source = exchange::StoredSource(db_, *model_, table.first, table.second);
    // A looked-up column shows a name where the table keeps a number: the name is what a
    // reader of the file wants.
    for (size_t c = 0; c < layout_.columns.size() && c < source.fields.size(); ++c) {
        if (layout_.columns[c].lookup) {
            source.fields[c].clear();
        }
    }
    QString name = layout_.mode.mid(3) + QStringLiteral(".csv");
    if (!state_.car.desc.isEmpty()) {
        name = state_.car.desc + u' ' + name;
    }
    exchange::ShowExport(db_, messages_, source, name, this);
}

void frmMain::RunsTool() {
    QString title = u' ' + state_.car.desc + u' ' + QStringLiteral("Runs");
    QAction* filter = tool(tools::kFilter);
    if (state_.filter.active) {
        title += QStringLiteral(" (Filter Active)");
        SetTip(filter, state_.filter.text);
    } else {
        title += QStringLiteral(" for ") + state_.event.desc.trimmed() + QStringLiteral(" at ") +
                 state_.track.desc.trimmed();
        SetTip(filter,
               lists_.value(tools::kFilter).open ? QStringLiteral("Filter Run Data") : kNotYet);
    }
    title_->setText(title);
    ListLoad(tools::kRuns);
    title_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void frmMain::DeleteToolRefresh() {
    QAction* del = tool(tools::kDelete);
    const ListHandlers handlers = lists_.value(state_.view);
    if (!handlers.remove) {
        NotYet(del->objectName());
        return;
    }
    SetTip(del, ToolTipOf(del->objectName()));
    if (model_->RowCount() == 0) {
        del->setEnabled(false);
    } else if (handlers.canDelete) {
        del->setEnabled(handlers.canDelete(SelectedKeyText()));
    } else {
        del->setEnabled(true);
    }
}

void frmMain::FilterToggled(bool down) {
    if (down) {
        ShowToolWindow(tools::kFilter);
        return;
    }
    state_.filter.active = false;
    state_.filter.text.clear();
    state_.filter.sql.clear();
    ToolClick(tools::kRuns);
}

void frmMain::FilterToolFollow() {
    tool(tools::kFilter)->setChecked(state_.filter.active);
}

void frmMain::FilterApply() {
    FilterToolFollow();
    if (state_.view == tools::kRuns) {
        ToolClick(tools::kRuns);
    }
}

void frmMain::ForbidSelectDifferentRun() {
    ++lockCount_;
    grid_->setEnabled(false);
}

void frmMain::AllowSelectDifferentRun() {
    --lockCount_;
    if (lockCount_ < 1) {
        lockCount_ = 0;
        grid_->setEnabled(true);
        // Open disabled Delete while its window was up; the row may be deleted again now.
        DeleteToolRefresh();
    }
}

// ---------------------------------------------------------------------------------------------
// Events

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == logo_ && event->type() == QEvent::MouseButtonDblClick) {
        ToolClick(tools::kQuadrumex);
        return true;
    }
    if (watched == grid_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete) {
            if (tool(tools::kDelete)->isEnabled()) {
                ToolClick(tools::kDelete);
            }
            return true;
        }
        if (key == Qt::Key_Insert) {
            if (tool(tools::kNew)->isEnabled()) {
                ToolClick(tools::kNew);
            }
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (tool(tools::kOpen)->isEnabled()) {
                ToolClick(tools::kOpen);
            }
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::closeEvent(QCloseEvent* event) {
    // Nothing typed is lost without a question: every open window is asked to close first, and
    // one that keeps its changes keeps the program open.
    const auto windows = open_;
    for (const QPointer<QWidget>& w : windows) {
        if (w && w->isVisible() && !w->close()) {
            event->ignore();
            return;
        }
    }
    bool kept = false;
    auto closeProgram = [&kept](ProgramWindow& w) {
        if (!kept && w.Widget()->isVisible() && !w.Widget()->close()) {
            kept = true;
        }
    };
    predictions_.ForEachLive([&](PredictionWindow& w) { closeProgram(w); });
    tuneUps_.ForEachLive([&](TuneUpWindow& w) { closeProgram(w); });
    if (kept) {
        event->ignore();
        return;
    }
    event->accept();
    // Said at the end too: a racer who never saved again has not been told yet.
    if (db_.IsOpen() && !db_.CheckStillInPlace()) {
        messages_.inform(db_.MovedText(), QStringLiteral("Slipbook"), MsgIcon::Exclamation);
    }
    QApplication::closeAllWindows();
}

}  // namespace slipbook::shell
