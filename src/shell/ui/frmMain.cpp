#include "shell/ui/frmMain.h"

#include "common/numbers.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "common/ui/toolactions.h"
#include "shell/mainstate.h"
#include "shell/maintools.h"
#include "shell/ui/fitwidgets.h"
#include "shell/ui/frozentableview.h"
#include "shell/ui/gridprint.h"
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
#include <QKeySequence>
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

// The keys of the selectors are the rows' own keys: no 16-bit slot, so a large key is no error.
qint64 ItemKey(const QComboBox* combo, int index) {
    return index < 0 ? 0 : combo->itemData(index).toLongLong();
}

}  // namespace

frmMain::frmMain(store::Database& db, Messages& messages, const QString& commandLine,
                 const QString& appDir, QWidget* parent)
    : QMainWindow(parent),
      db_(db),
      messages_(messages),
      urlOpener_([](const QUrl& url) { return QDesktopServices::openUrl(url); }),
      programStarter_([](const QString& program, const QStringList& args) {
          return QProcess::startDetached(program, args);
      }),
      pathChooser_([this](const QString& caption, bool folder) {
          return folder
                     ? QFileDialog::getExistingDirectory(this, caption)
                     : QFileDialog::getOpenFileName(this, caption, QString(),
                                                    tr("Slipbook logbooks (*.db);;All files (*)"));
      }) {
    setObjectName(QStringLiteral("frmMain"));

    loading_ = true;
    lockCount_ = 0;
    weatherDir_ = WeatherDirInit(commandLine);
    help_ = HelpInit(appDir);
    appTitle_ = store::AppTitle();
    setWindowTitle(store::MainCaption());
    predictions_.ClearAll();
    tuneUps_.ClearAll();

    BuildTools();
    BuildCentral();
    resize(1100, 720);
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
        QMenu* menu = menuBar()->addMenu(tr(m.caption));
        menu->setObjectName(m.id);
        menu->menuAction()->setObjectName(m.id);
        menus.insert(m.id, menu);
    }
    for (const tools::Tool& t : MainTools()) {
        QAction* action = AddTool(t.id, tr(t.caption));
        action->setShortcuts(ToolKeys(t));
        action->setCheckable(t.checkable);
    }
    const ToolLookup lookup = [this](const QString& id) { return tool(id); };
    for (const tools::Menu& m : MainMenus()) {
        FillMenu(menus.value(m.id), m.id, MainTools(), lookup);
    }

    // The tool bar with its selectors.
    toolBar_ = addToolBar(tr("Tools"));
    toolBar_->setObjectName(QStringLiteral("atbMain"));
    toolBar_->setMovable(false);
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    FillToolBar(toolBar_, MainTools(), lookup);
    addToolBarBreak();
    auto* selectors = addToolBar(tr("Selectors"));
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
        combo(s.id, s.label, tr(s.caption), s.characters, s.stretches);
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
    logo_->setToolTip(tr("Double-click for the maker's web page"));
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
    popup->setObjectName(QStringLiteral("ID_Popup"));
    for (const char* id : {"ID_New", "ID_Open", "ID_Delete", "ID_Filter", "ID_ViewSetup"}) {
        popup->addAction(tool(QString::fromLatin1(id)));
    }
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid_, &QWidget::customContextMenuRequested, this,
            [this, popup](const QPoint& at) { popup->popup(grid_->viewport()->mapToGlobal(at)); });
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { GridClick(); });
    notes_ = new QPlainTextEdit(splitter_);
    notes_->setObjectName(QStringLiteral("rtbNotes"));
    notes_->setReadOnly(true);
    notes_->setPlaceholderText(tr("Notes"));
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
    if (key == u"ID_Runs") {
        for (const char* id : {"ID_New", "ID_NewRun", "ID_Open"}) {
            Available(QString::fromLatin1(id));
        }
    } else {
        Available(key);
        if (key == u"ID_Filter" && filterActive_) {
            SetTip(tool(key), filterString_);
        }
    }
}

void frmMain::RegisterDelete(const QString& key, std::function<void(const QString&)> remove,
                             std::function<bool(const QString&)> canDelete) {
    lists_[key].remove = std::move(remove);
    lists_[key].canDelete = std::move(canDelete);
    DeleteToolRefresh();
}

void frmMain::RegisterPrediction(PredictionFactory factory) {
    predictionFactory_ = std::move(factory);
    Available(QStringLiteral("ID_ETTS"));
}

void frmMain::RegisterTuneUp(TuneUpFactory factory) {
    tuneUpFactory_ = std::move(factory);
    Available(QStringLiteral("ID_TuneUp"));
}

QWidget* frmMain::OpenWindow(const QString& key) const {
    return open_.value(key).data();
}

// ---------------------------------------------------------------------------------------------
// Selectors

void frmMain::FillSelector(QComboBox* combo, const QString& sql, const QString& keyColumn,
                           const QString& textColumn, const QString& firstRow) {
    combo->clear();
    if (!firstRow.isEmpty()) {
        combo->addItem(firstRow, QVariant::fromValue<qint64>(0));
    }
    store::Query q = db_.OpenQuery(sql);
    const int key = q.FieldIndex(keyColumn);
    const int text = q.FieldIndex(textColumn);
    while (q.Next()) {
        combo->addItem(q.Text(text), QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
    }
}

void frmMain::CarsLoad() {
    ReportStatus(QStringLiteral("Loading Cars..."));
    const bool hasDefault =
        db_.FieldExists(QStringLiteral("tblcars"), QStringLiteral("bDefault_fl"));
    carList_->clear();
    int chosen = 0;
    store::Query q = db_.OpenQuery(QStringLiteral("SELECT * from tblCars ORDER BY sCar_nm"));
    const int key = q.FieldIndex(QStringLiteral("lCar_id"));
    const int name = q.FieldIndex(QStringLiteral("sCar_nm"));
    const int flag = q.FieldIndex(QStringLiteral("bDefault_fl"));
    while (q.Next()) {
        carList_->addItem(q.Text(name), QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
        if (hasDefault && flag >= 0 && q.Value(flag).toLongLong() != 0) {
            chosen = carList_->count() - 1;
        }
    }
    if (carList_->count() > 0) {
        carList_->setCurrentIndex(chosen);
        carId_ = ItemKey(carList_, chosen);
        carDesc_ = carList_->itemText(chosen);
    } else {
        carId_ = 0;
        carDesc_.clear();
    }
}

void frmMain::EventsLoad() {
    ReportStatus(QStringLiteral("Loading Events..."));
    FillSelector(eventList_, QStringLiteral("SELECT * from tblEvents ORDER BY sEvent_nm"),
                 QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"),
                 QStringLiteral("<All Events>"));
    eventList_->setCurrentIndex(0);
}

void frmMain::TrackLoad() {
    ReportStatus(QStringLiteral("Loading Tracks..."));
    FillSelector(trackList_, QStringLiteral("SELECT * from tblTracks ORDER BY sTrack_nm"),
                 QStringLiteral("lTrack_id"), QStringLiteral("sTrack_nm"),
                 QStringLiteral("<All Tracks>"));
    trackList_->setCurrentIndex(0);
}

void frmMain::ViewsLoad() {
    ReportStatus(QStringLiteral("Loading Views..."));
    views_->clear();
    int chosen = -1;
    // A logbook whose view list is gone still opens, with the runs under their key.
    if (db_.TableExists(QStringLiteral("tblViews"))) {
        store::Query q = db_.OpenQuery(
            QStringLiteral("SELECT * from tblViews ORDER BY bReadOnlyView_fl, sView_desc"));
        const int key = q.FieldIndex(QStringLiteral("lView_id"));
        const int name = q.FieldIndex(QStringLiteral("sView_desc"));
        const int readOnly = q.FieldIndex(QStringLiteral("bReadOnlyView_fl"));
        const int flag = q.FieldIndex(QStringLiteral("bDefault_fl"));
        while (q.Next()) {
            const QString text = q.Text(name);
            views_->addItem(q.Value(readOnly).toLongLong() != 0 ? text.toUpper() : text,
                            QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
            if (q.Value(flag).toLongLong() != 0) {
                chosen = views_->count() - 1;
            }
        }
    }
    if (chosen >= 0) {
        views_->setCurrentIndex(chosen);
    }
}

void frmMain::SelectorPicked(const QString& id) {
    if (id == u"ID_CarList") {
        carDesc_ = carList_->currentText();
        carId_ = ItemKey(carList_, carList_->currentIndex());
        // The car picked is the car of the next start.
        if (db_.FieldExists(QStringLiteral("tblcars"), QStringLiteral("bDefault_fl"))) {
            store::Database::Transaction tx(db_);
            db_.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = False"));
            db_.Execute(QStringLiteral("UPDATE tblCars SET bDefault_fl = True WHERE lCar_id = ") +
                        QString::number(carId_));
            tx.Commit();
        }
        if (!loading_) {
            ToolClick(QStringLiteral("ID_Runs"));
        }
    } else if (id == u"ID_EventList") {
        eventDesc_ = eventList_->currentText();
        eventId_ = ItemKey(eventList_, eventList_->currentIndex());
        if (!loading_) {
            ToolClick(QStringLiteral("ID_Runs"));
        }
    } else if (id == u"ID_TrackList") {
        trackDesc_ = trackList_->currentText();
        trackId_ = ItemKey(trackList_, trackList_->currentIndex());
        if (!loading_) {
            ToolClick(QStringLiteral("ID_Runs"));
        }
    } else if (id == u"ID_Views") {
        ListLoad(currentView_);
        const qint64 view = ItemKey(views_, views_->currentIndex());
        // The view picked is the view of the next start.
        if (view != 0 && db_.TableExists(QStringLiteral("tblViews"))) {
            store::Database::Transaction tx(db_);
            db_.Execute(QStringLiteral("UPDATE tblViews SET bDefault_fl = False"));
            db_.Execute(QStringLiteral("UPDATE tblViews SET bDefault_fl = True WHERE lView_id = ") +
                        QString::number(view));
            tx.Commit();
        }
    }
}

void frmMain::SelectCar(qint64 id) {
    const int i = carList_->findData(QVariant::fromValue<qint64>(id));
    if (i >= 0) {
        carList_->setCurrentIndex(i);
        SelectorPicked(QStringLiteral("ID_CarList"));
    }
}

void frmMain::SelectEvent(qint64 id) {
    const int i = eventList_->findData(QVariant::fromValue<qint64>(id));
    eventList_->setCurrentIndex(i < 0 ? 0 : i);
    SelectorPicked(QStringLiteral("ID_EventList"));
}

void frmMain::SelectTrack(qint64 id) {
    const int i = trackList_->findData(QVariant::fromValue<qint64>(id));
    trackList_->setCurrentIndex(i < 0 ? 0 : i);
    SelectorPicked(QStringLiteral("ID_TrackList"));
}

void frmMain::FormLoadStuff() {
    ViewsLoad();
    EventsLoad();
    TrackLoad();
    CarsLoad();
    eventDesc_ = eventList_->currentText();
    eventId_ = ItemKey(eventList_, eventList_->currentIndex());
    trackDesc_ = trackList_->currentText();
    trackId_ = ItemKey(trackList_, trackList_->currentIndex());
    loading_ = false;
    ReportStatus(QStringLiteral("Loading Runs..."));
    ToolClick(QStringLiteral("ID_Runs"));
    ReportStatus(QStringLiteral("Updating Notes..."));
    GridClick();
    ReportStatus(QStringLiteral("Please wait..."));
}

// ---------------------------------------------------------------------------------------------
// The list

void frmMain::ListLoad(const QString& mode) {
    BusyCursor busy;
    grid_->setUpdatesEnabled(false);
    grid_->setFrozenColumns(0);
    // A load comes in the statement's order.
    grid_->setSortColumn(-1);
    model_->Clear();
    currentView_ = mode;
    ListContext ctx;
    ctx.carId = carId_;
    ctx.eventId = eventId_;
    ctx.trackId = trackId_;
    ctx.viewId = ItemKey(views_, views_->currentIndex());
    ctx.filterActive = filterActive_;
    ctx.filterSql = filterSql_;
    layout_ = BuildListLayout(db_, mode, ctx, messages_);
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
    if (mode == u"ID_Runs" && model_->ColumnCount() > 4) {
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
    const QString notes = LoadNotes(db_, currentView_, model_->Cell(SelectedRow(), 0));
    if (notes != notes_->toPlainText()) {
        notes_->setPlainText(notes);
    }
}

void frmMain::GridClick() {
    // The title holds the car's name, so these two tests hold only with no car selected.
    const QString title = title_->text().trimmed();
    if (title == u"Events") {
        eventId_ = static_cast<qint64>(LeadingNumber(SelectedCellText(0)).value_or(0));
        eventDesc_ = SelectedCellText(1);
    } else if (title == u"Tracks") {
        trackId_ = static_cast<qint64>(LeadingNumber(SelectedCellText(0)).value_or(0));
        trackDesc_ = SelectedCellText(1);
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

// ---------------------------------------------------------------------------------------------
// Commands

void frmMain::ToolClick(const QString& id) {
    storedTool_ = id;
    if (id == u"ID_Contents") {
        HelpContents();
    } else if (id == u"ID_Quadrumex") {
        urlOpener_(QUrl(QStringLiteral("https://www.quadrumex.com/")));
    } else if (id == u"ID_About") {
        ShowAbout();
    } else if (id == u"ID_New" || id == u"ID_NewRun") {
        DblClick();
    } else if (id == u"ID_Open") {
        tool(QStringLiteral("ID_Delete"))->setEnabled(false);
        DblClick();
    } else if (id == u"ID_Delete") {
        RecordDelete();
    } else if (id == u"ID_Events" || id == u"ID_Cars" || id == u"ID_Tracks" ||
               id == u"ID_Expenses" || id == u"ID_Maintenance" || id == u"ID_Weather" ||
               id == u"ID_TestTune" || id == u"ID_ViewSetup") {
        ShowToolWindow(id);
    } else if (id == u"ID_Runs") {
        RunsTool();
    } else if (id == u"ID_ETTS") {
        ProgramWindowTool(true);
    } else if (id == u"ID_TuneUp") {
        ProgramWindowTool(false);
    } else if (id == u"ID_Filter") {
        FilterToggled(tool(id)->isChecked());
    } else if (id == u"ID_Print") {
        PrintGrid();
    } else if (id == u"ID_Calculator") {
        StartCalculator();
    } else if (id == u"ID_CopyToDiskette") {
        CopyToFolder();
    } else if (id == u"ID_CopyFromDiskette") {
        CopyFromFolder();
    } else if (id == u"ID_Exit") {
        close();
    }
}

void frmMain::RunsTool() {
    QString title = u' ' + carDesc_ + u' ' + QStringLiteral("Runs");
    QAction* filter = tool(QStringLiteral("ID_Filter"));
    if (filterActive_) {
        title += QStringLiteral(" (Filter Active)");
        SetTip(filter, filterString_);
    } else {
        title += QStringLiteral(" for ") + eventDesc_.trimmed() + QStringLiteral(" at ") +
                 trackDesc_.trimmed();
        SetTip(filter,
               lists_.value(QStringLiteral("ID_Filter")).open ? tr("Filter Run Data") : kNotYet);
    }
    title_->setText(title);
    ListLoad(QStringLiteral("ID_Runs"));
    title_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void frmMain::DblClick() {
    const ListHandlers handlers = lists_.value(currentView_);
    if (!handlers.open) {
        return;
    }
    QString caption;
    if (storedTool_ == u"ID_NewRun" || storedTool_ == u"ID_New" || model_->RowCount() == 0) {
        storedTool_ = QStringLiteral("ID_New");
        caption = QStringLiteral("New");
    } else {
        caption = SelectedCellText(1).trimmed();
    }
    static const QHash<QString, QString> kNouns = {
        {QStringLiteral("ID_Runs"), QStringLiteral(" - Run ")},
        {QStringLiteral("ID_Cars"), QStringLiteral(" - Car ")},
        {QStringLiteral("ID_Events"), QStringLiteral(" - Event ")},
        {QStringLiteral("ID_Tracks"), QStringLiteral(" - Track ")},
        {QStringLiteral("ID_Expenses"), QStringLiteral(" - Expense ")},
        {QStringLiteral("ID_Maintenance"), QStringLiteral(" - Maintenance ")}};
    caption += kNouns.value(currentView_);
    if (filterActive_) {
        caption += QStringLiteral(" (Filter Active)");
    }
    // One record window of a kind: the open one is closed first, with its save question.
    if (QWidget* old = open_.value(currentView_).data()) {
        if (!old->close()) {
            return;
        }
    }
    QWidget* w = handlers.open(*this);
    if (w == nullptr) {
        return;
    }
    w->setWindowTitle(caption);
    open_[currentView_] = w;
    w->show();
}

void frmMain::ShowToolWindow(const QString& key) {
    QWidget* w = nullptr;
    {
        const BusyCursor busy;
        w = ToolWindow(key);
    }
    if (w != nullptr) {
        w->show();
        w->raise();
        w->activateWindow();
    }
}

QWidget* frmMain::ToolWindow(const QString& toolId) {
    if (QWidget* w = open_.value(toolId).data()) {
        return w;
    }
    const ListHandlers handlers = lists_.value(toolId);
    if (!handlers.open) {
        return nullptr;
    }
    QWidget* w = handlers.open(*this);
    if (w != nullptr) {
        open_[toolId] = w;
    }
    return w;
}

void frmMain::RecordDelete() {
    const ListHandlers handlers = lists_.value(currentView_);
    if (handlers.remove && model_->RowCount() > 0) {
        handlers.remove(SelectedKeyText());
    }
}

void frmMain::DeleteToolRefresh() {
    QAction* del = tool(QStringLiteral("ID_Delete"));
    const ListHandlers handlers = lists_.value(currentView_);
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
        ShowToolWindow(QStringLiteral("ID_Filter"));
        return;
    }
    filterActive_ = false;
    filterString_.clear();
    filterSql_.clear();
    ToolClick(QStringLiteral("ID_Runs"));
}

void frmMain::FilterApply() {
    tool(QStringLiteral("ID_Filter"))->setChecked(filterActive_);
    if (currentView_ == u"ID_Runs") {
        ToolClick(QStringLiteral("ID_Runs"));
    }
}

void frmMain::ProgramWindowTool(bool prediction) {
    const QString car = GetCar_num();
    BusyCursor busy;
    if (prediction) {
        if (PredictionWindow* w = predictions_.Find(car)) {
            w->Widget()->show();
            w->Widget()->raise();
            w->FormReLoad();
            return;
        }
        const int slot = predictions_.Valid();
        if (slot == 0 || !predictionFactory_) {
            if (slot == 0) {
                messages_.inform(QStringLiteral("Can't load another ET Prediction window!"));
            }
            return;
        }
        PredictionWindow* w = predictionFactory_(*this);
        predictions_.Put(slot, w);
        w->Widget()->show();
    } else {
        if (TuneUpWindow* w = tuneUps_.Find(car)) {
            w->Widget()->show();
            w->Widget()->raise();
            w->FormReLoad();
            return;
        }
        const int slot = tuneUps_.Valid();
        if (slot == 0 || !tuneUpFactory_) {
            if (slot == 0) {
                messages_.inform(QStringLiteral("Can't load another Tune Up window!"));
            }
            return;
        }
        TuneUpWindow* w = tuneUpFactory_(*this);
        tuneUps_.Put(slot, w);
        w->Widget()->show();
    }
}

void frmMain::CalcAllETPrediction(const QString& corrFactorText, const QString& densityAltText) {
    predictions_.ForEachLive(
        [&](PredictionWindow& w) { w.ApplyWeather(corrFactorText, densityAltText); });
}

void frmMain::CalcAllTuneUp(const QString& airDensityText) {
    tuneUps_.ForEachLive([&](TuneUpWindow& w) { w.ApplyAirDensity(airDensityText); });
}

QString frmMain::GetCar_num() {
    store::Query q = db_.OpenQuery(QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = ") +
                                   QString::number(carId_));
    return q.Next() ? q.Text(q.FieldIndex(QStringLiteral("sCar_num"))) : QString();
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
    }
}

// ---------------------------------------------------------------------------------------------
// Printing

bool frmMain::PrintToPdf(const QString& path) {
    return PrintGridToPdf({model_, title_->text(), now_}, path);
}

void frmMain::PrintGrid() {
    if (model_->RowCount() < 1) {
        return;
    }
    PreviewGrid({model_, title_->text(), now_}, this);
}

// ---------------------------------------------------------------------------------------------
// Logbook copies, calculator, about

void frmMain::CopyToFolder() {
    const QString folder =
        pathChooser_(tr("Copy the logbook to a folder (a removable drive or any folder)"), true);
    if (folder.isEmpty()) {
        return;
    }
    const QString target = QDir(folder).filePath(store::LogbookFileName());
    // Through a link or a second name, the folder may still be the logbook's own.
    if (store::SameFile(target, db_.Name())) {
        messages_.inform(tr("That folder holds the logbook in use; choose another folder."),
                         tr("File Copy"), MsgIcon::Exclamation);
        return;
    }
    if (QFileInfo::exists(target) &&
        messages_.ask(tr("%1 already holds a logbook.\nReplace it with this one?")
                          .arg(QDir::toNativeSeparators(folder)),
                      tr("File Copy"), MsgButtons::YesNo, MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }
    try {
        BusyCursor busy;
        store::CopyLogbookTo(db_, target);
    } catch (const store::DbError& e) {
        store::ErrorReport(e, tr("File Copy"), messages_);
        return;
    }
    messages_.inform(tr("The logbook was copied to:\n    %1").arg(QDir::toNativeSeparators(target)),
                     tr("File Copy"), MsgIcon::Information);
}

void frmMain::CopyFromFolder() {
    const QString source =
        pathChooser_(tr("Copy a logbook from a file (a removable drive or any folder)"), false);
    if (source.isEmpty()) {
        return;
    }
    const QString problem = store::FileProblem(source);
    if (!problem.isEmpty()) {
        messages_.inform(problem + tr("\nThe logbook in use was not changed."), tr("File Copy"),
                         MsgIcon::Exclamation);
        return;
    }
    if (messages_.ask(tr("Replace the logbook in use with the copy in\n    %1?\nThe logbook in use "
                         "is kept as a dated "
                         "backup beside it.")
                          .arg(QDir::toNativeSeparators(source)),
                      tr("File Copy"), MsgButtons::YesNo, MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }
    QString backup;
    try {
        BusyCursor busy;
        backup = store::ReplaceLogbook(db_, source, QDateTime::currentDateTime());
    } catch (const store::DbError& e) {
        store::ErrorReport(e, tr("File Copy"), messages_);
        return;
    }
    // The selectors and the list follow the new logbook at once.
    loading_ = true;
    ViewsLoad();
    EventsLoad();
    TrackLoad();
    CarsLoad();
    eventDesc_ = eventList_->currentText();
    eventId_ = 0;
    trackDesc_ = trackList_->currentText();
    trackId_ = 0;
    loading_ = false;
    ToolClick(QStringLiteral("ID_Runs"));
    messages_.inform(tr("The logbook was replaced. The one it replaced is kept as:\n    %1")
                         .arg(QDir::toNativeSeparators(backup)),
                     tr("File Copy"), MsgIcon::Information);
}

void frmMain::StartCalculator() {
#if defined(Q_OS_WIN)
    const QStringList candidates = {QStringLiteral("calc.exe")};
#elif defined(Q_OS_MACOS)
    const QStringList candidates = {
        QStringLiteral("/System/Applications/Calculator.app/Contents/MacOS/Calculator")};
#else
    const QStringList candidates = {QStringLiteral("gnome-calculator"), QStringLiteral("kcalc"),
                                    QStringLiteral("galculator"),       QStringLiteral("mate-calc"),
                                    QStringLiteral("qalculate-gtk"),    QStringLiteral("xcalc")};
#endif
    for (const QString& program : candidates) {
        const QString found = QStandardPaths::findExecutable(program);
        if (!found.isEmpty() || QFileInfo(program).isAbsolute()) {
            if (programStarter_(found.isEmpty() ? program : found, {})) {
                return;
            }
        }
    }
    messages_.inform(QStringLiteral("Can't locate calc.exe on your computer!"));
}

void frmMain::ShowAbout() {
    QDialog about(this);
    about.setObjectName(QStringLiteral("frmAbout"));
    about.setWindowTitle(tr("About Slipbook"));
    auto* layout = new QVBoxLayout(&about);
    auto* name = new QLabel(appTitle_, &about);
    name->setObjectName(QStringLiteral("lblTitle"));
    name->setStyleSheet(QStringLiteral("font-size: 16pt; font-weight: bold;"));
    auto* version = new QLabel(store::VersionText(), &about);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* text = new QLabel(tr("An electronic logbook for drag racers.\nLogbook: %1")
                                .arg(QDir::toNativeSeparators(db_.Name())),
                            &about);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &about);
    connect(buttons, &QDialogButtonBox::accepted, &about, &QDialog::accept);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(text);
    layout->addWidget(buttons);
    about.exec();
}

void frmMain::HelpContents() {
    if (!help_.available()) {
        messages_.inform(tr("The help pages were not found. They belong in:") +
                             QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
                         appTitle_, MsgIcon::Information);
        return;
    }
    if (!urlOpener_(QUrl::fromLocalFile(help_.path))) {
        messages_.inform(
            tr("The help pages could not be opened. Open this file in a web browser:") +
                QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
            appTitle_, MsgIcon::Information);
    }
}

// ---------------------------------------------------------------------------------------------
// Events

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == logo_ && event->type() == QEvent::MouseButtonDblClick) {
        ToolClick(QStringLiteral("ID_Quadrumex"));
        return true;
    }
    if (watched == grid_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete) {
            if (tool(QStringLiteral("ID_Delete"))->isEnabled()) {
                ToolClick(QStringLiteral("ID_Delete"));
            }
            return true;
        }
        if (key == Qt::Key_Insert) {
            if (tool(QStringLiteral("ID_New"))->isEnabled()) {
                ToolClick(QStringLiteral("ID_New"));
            }
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (tool(QStringLiteral("ID_Open"))->isEnabled()) {
                ToolClick(QStringLiteral("ID_Open"));
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
