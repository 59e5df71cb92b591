#include "prediction/ui/frmCarSetup.h"

#include "exchange/ui/frmExport.h"

#include "common/textgrid.h"
#include "common/ui/formhelpers.h"
#include "prediction/setupruns.h"
#include "store/access.h"
#include "store/dberror.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSplitter>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace slipbook::prediction {

namespace {

const QString kSetupTable = QStringLiteral("tblCarSetup");

// Column widths are twips, 15 to a pixel for the small font they were chosen for, as the run
// list reads them; a larger font widens them alike.
int PixelsOf(int twips, const QFontMetrics& fm) {
    const double scale = std::max(1.0, fm.averageCharWidth() / 5.0);
    return std::max(24, static_cast<int>(twips / 15.0 * scale));
}

// The bar over a grid that names what it lists.
QLabel* Heading(const QString& name, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setAutoFillBackground(true);
    label->setBackgroundRole(QPalette::Mid);
    label->setMargin(3);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

}  // namespace

frmCarSetup::frmCarSetup(const shell::WindowContext& ctx, QWidget* owner)
    : QWidget(owner, Qt::Window), db_(ctx.db), messages_(ctx.messages), events_(ctx.events) {
    setObjectName(QStringLiteral("frmCarSetup"));
    // Closing unloads the window: the next setup click makes a fresh one.
    setAttribute(Qt::WA_DeleteOnClose);
    BuildLayout();
    txtCarId_->setText(QString::number(ctx.state.car.id));

    // Runs saved or deleted elsewhere, and setup lists changed by another window, show here at
    // once.
    connect(&events_, &store::LogbookEvents::runSaved, this, [this] { ReloadKeepingHighlight(); });
    connect(&events_, &store::LogbookEvents::runDeleted, this,
            [this] { ReloadKeepingHighlight(); });
    connect(&events_, &store::LogbookEvents::recordsChanged, this, [this](const QString& table) {
        if (table.compare(kSetupTable, Qt::CaseInsensitive) == 0) {
            ReloadKeepingHighlight();
        }
    });
}

frmCarSetup::~frmCarSetup() = default;

void frmCarSetup::BuildLayout() {
    setWindowTitle(QStringLiteral("Density Altitude Setup"));

    txtCarId_ = new QLineEdit(QStringLiteral("txtCarId"), this);
    txtCarId_->setObjectName(QStringLiteral("txtCarId"));
    txtCarId_->hide();
    txtSetupType_ = new QLineEdit(kDensityAltitudeSetup.toString(), this);
    txtSetupType_->setObjectName(QStringLiteral("txtSetupType"));
    txtSetupType_->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(8);

    auto* distance = new QHBoxLayout;
    rdo14MileSetup_ = new QRadioButton(QStringLiteral("1/4th Mile Setup"), this);
    rdo14MileSetup_->setObjectName(QStringLiteral("rdo14MileSetup"));
    rdo18MileSetup_ = new QRadioButton(QStringLiteral("1/8th Mile Setup"), this);
    rdo18MileSetup_->setObjectName(QStringLiteral("rdo18MileSetup"));
    rdo14MileSetup_->setChecked(true);
    distance->addWidget(rdo14MileSetup_);
    distance->addSpacing(24);
    distance->addWidget(rdo18MileSetup_);
    distance->addStretch(1);
    layout->addLayout(distance);
    connect(rdo14MileSetup_, &QRadioButton::clicked, this, [this] { DistanceClicked(true); });
    connect(rdo18MileSetup_, &QRadioButton::clicked, this, [this] { DistanceClicked(false); });

    // The two lists share the height; the racer may give either more.
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("splLists"));
    splitter->setChildrenCollapsible(false);

    auto* setupPane = new QWidget(splitter);
    auto* setupLayout = new QVBoxLayout(setupPane);
    setupLayout->setContentsMargins(0, 0, 0, 4);
    setupLayout->setSpacing(0);
    lblSetupRuns_ =
        Heading(QStringLiteral("lblSetupRuns"), QStringLiteral("List of Setup Runs"), setupPane);
    setupModel_ = new TextGridModel(this);
    ssdbgMain_ = MakeGrid(QStringLiteral("ssdbgMain"), setupModel_, setupPane);
    lblSetupRuns_->setBuddy(ssdbgMain_);
    sscmdDelete_ = new QPushButton(QStringLiteral("Remove Highlighted Run from List of Setup Runs"),
                                   setupPane);
    sscmdDelete_->setObjectName(QStringLiteral("sscmdDelete"));
    auto* setupButtons = new QHBoxLayout;
    setupButtons->setContentsMargins(0, 6, 0, 0);
    setupButtons->addStretch(1);
    setupButtons->addWidget(sscmdDelete_);
    setupLayout->addWidget(lblSetupRuns_);
    setupLayout->addWidget(ssdbgMain_, 1);
    setupLayout->addLayout(setupButtons);

    auto* availablePane = new QWidget(splitter);
    auto* availableLayout = new QVBoxLayout(availablePane);
    availableLayout->setContentsMargins(0, 4, 0, 0);
    availableLayout->setSpacing(0);
    lblAvailableRuns_ =
        Heading(QStringLiteral("lblAvailableRuns"),
                QStringLiteral("Other Runs not on List of Setup Runs"), availablePane);
    availableModel_ = new TextGridModel(this);
    ssdbgAvailableRuns_ =
        MakeGrid(QStringLiteral("ssdbgAvailableRuns"), availableModel_, availablePane);
    lblAvailableRuns_->setBuddy(ssdbgAvailableRuns_);
    sscmdSaveSetup_ =
        new QPushButton(QStringLiteral("Add Highlighted Run To List of Setup Runs"), availablePane);
    sscmdSaveSetup_->setObjectName(QStringLiteral("sscmdSaveSetup"));
    auto* availableButtons = new QHBoxLayout;
    availableButtons->setContentsMargins(0, 6, 0, 0);
    availableButtons->addStretch(1);
    availableButtons->addWidget(sscmdSaveSetup_);
    availableLayout->addWidget(lblAvailableRuns_);
    availableLayout->addWidget(ssdbgAvailableRuns_, 1);
    availableLayout->addLayout(availableButtons);

    splitter->addWidget(setupPane);
    splitter->addWidget(availablePane);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 1);
    layout->addWidget(splitter, 1);

    auto* closeRow = new QHBoxLayout;
    auto* exportRuns = new QPushButton(QStringLiteral("&Export Setup Runs..."), this);
    exportRuns->setObjectName(QStringLiteral("cmdExport"));
    exportRuns->setToolTip(QStringLiteral("Write the list of setup runs to a CSV file"));
    sscmdClose_ = new QPushButton(QStringLiteral("Close Setup Window"), this);
    sscmdClose_->setObjectName(QStringLiteral("sscmdClose"));
    closeRow->addWidget(exportRuns);
    closeRow->addStretch(1);
    closeRow->addWidget(sscmdClose_);
    layout->addLayout(closeRow);

    connect(sscmdSaveSetup_, &QPushButton::clicked, this, [this] { AddHighlighted(); });
    connect(sscmdDelete_, &QPushButton::clicked, this, [this] { RemoveHighlighted(); });
    connect(sscmdClose_, &QPushButton::clicked, this, &QWidget::close);
    connect(exportRuns, &QPushButton::clicked, this, [this] { ExportSetupRuns(); });
    connect(ssdbgAvailableRuns_, &QTableView::doubleClicked, this, [this] { AddHighlighted(); });

    auto* close = new QAction(this);
    close->setObjectName(QStringLiteral("ID_Close"));
    close->setShortcut(QKeySequence(Qt::Key_Escape));
    addAction(close);
    connect(close, &QAction::triggered, this, &QWidget::close);

    UpdateButtons();
    resize(900, 620);
}

void frmCarSetup::ExportSetupRuns() {
    // The runs' own stored values for raw; the looked-up names as the list shows them.
    exchange::ListSource source = exchange::StoredSource(
        db_, *setupModel_, QStringLiteral("tblRuns"), QStringLiteral("lRun_id"));
    for (size_t c = 0; c < layout_.columns.size() && c < source.fields.size(); ++c) {
        if (layout_.columns[c].lookup) {
            source.fields[c].clear();
        }
    }
    const QString name =
        (SetupType() == u"TS" ? QStringLiteral("Throttle Stop")
                              : QStringLiteral("Density Altitude")) +
        (quarterMile_ ? QStringLiteral(" 1-4 mile") : QStringLiteral(" 1-8 mile")) +
        QStringLiteral(" setup runs.csv");
    exchange::ShowExport(db_, messages_, source, name, this);
}

QTableView* frmCarSetup::MakeGrid(const QString& name, TextGridModel* model, QWidget* parent) {
    auto* grid = new QTableView(parent);
    grid->setObjectName(name);
    grid->setModel(model);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setAlternatingRowColors(true);
    grid->setWordWrap(false);
    grid->verticalHeader()->setVisible(false);
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->horizontalHeader()->setHighlightSections(false);
    grid->horizontalHeader()->setStretchLastSection(true);
    grid->installEventFilter(this);
    connect(grid->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { UpdateButtons(); });
    return grid;
}

void frmCarSetup::SetCarId(qint64 carId) {
    txtCarId_->setText(QString::number(carId));
}

void frmCarSetup::SetSetupType(const QString& type) {
    // Two lists only: a category other than the throttle stop's is the density altitude's.
    const bool throttleStop = type.trimmed().compare(kThrottleStopSetup, Qt::CaseInsensitive) == 0;
    txtSetupType_->setText(throttleStop ? kThrottleStopSetup.toString()
                                        : kDensityAltitudeSetup.toString());
}

qint64 frmCarSetup::CarId() const {
    return txtCarId_->text().toLongLong();
}

QString frmCarSetup::SetupType() const {
    return txtSetupType_->text();
}

void frmCarSetup::PreShow(bool quarterMile, bool updateOwner) {
    updateOwner_ = updateOwner;
    quarterMile_ = quarterMile;
    setWindowTitle(SetupType() == kThrottleStopSetup ? QStringLiteral("Throttle Stop Setup")
                                                     : QStringLiteral("Density Altitude Setup"));
    rdo14MileSetup_->setChecked(quarterMile);
    rdo18MileSetup_->setChecked(!quarterMile);
    loaded_ = true;
    LoadLists();
    FitWidthToColumns();
}

void frmCarSetup::FitWidthToColumns() {
    int columns = 0;
    for (int c = 0; c < setupModel_->ColumnCount(); ++c) {
        if (!ssdbgMain_->isColumnHidden(c)) {
            columns += ssdbgMain_->columnWidth(c);
        }
    }
    const QMargins margins = layout()->contentsMargins();
    const int wanted = columns + 2 * ssdbgMain_->frameWidth() +
                       style()->pixelMetric(QStyle::PM_ScrollBarExtent) + margins.left() +
                       margins.right() + 4;
    // Every column in view where the screen has room for it; else the grids scroll.
    const int room = screen() ? screen()->availableGeometry().width() - 40 : wanted;
    resize(std::max(std::min(wanted, room), 640), height());
}

void frmCarSetup::DistanceClicked(bool quarterMile) {
    if (quarterMile == quarterMile_) {
        return;
    }
    quarterMile_ = quarterMile;
    LoadLists();
    if (updateOwner_) {
        Q_EMIT DistanceChanged(quarterMile_);
    }
}

void frmCarSetup::LoadLists(qint64 setupRun, qint64 availableRun) {
    BusyCursor busy;
    setupModel_->Clear();
    availableModel_->Clear();
    try {
        layout_ = shell::CatalogueListLayout(db_, SetupColumnIds(Eighth()));
        setupModel_->SetColumns(layout_.GridColumns());
        availableModel_->SetColumns(layout_.GridColumns());
        SizeColumns(ssdbgMain_, setupModel_);
        SizeColumns(ssdbgAvailableRuns_, availableModel_);
        LoadGrid(ssdbgMain_, setupModel_, SetupRunsSql(CarId(), SetupType(), Eighth()));
        // What is on the list is no candidate.
        QList<qint64> listed;
        for (int row = 0; row < setupModel_->RowCount(); ++row) {
            listed << setupModel_->CellView(row, 0).toLongLong();
        }
        LoadGrid(ssdbgAvailableRuns_, availableModel_, AvailableRunsSql(CarId(), listed, Eighth()));
    } catch (const store::DbError& e) {
        store::ErrorReport(e, windowTitle(), messages_);
    }
    Highlight(ssdbgMain_, setupModel_, setupRun);
    Highlight(ssdbgAvailableRuns_, availableModel_, availableRun);
    UpdateButtons();
}

void frmCarSetup::LoadGrid(QTableView* grid, TextGridModel* model, const QString& sql) {
    std::vector<QString> rows;
    store::Query q = db_.OpenQuery(sql);
    shell::RowBuilder builder(db_, layout_);
    builder.Bind(q);
    while (q.Next()) {
        rows.push_back(builder.BuildText(q));
    }
    model->SetRows(std::move(rows));
    grid->clearSelection();
}

void frmCarSetup::SizeColumns(QTableView* grid, const TextGridModel* model) {
    const QFontMetrics header = grid->horizontalHeader()->fontMetrics();
    for (int c = 0; c < model->ColumnCount(); ++c) {
        const GridColumn& column = model->Column(c);
        grid->setColumnHidden(c, !column.visible);
        const int caption = header.horizontalAdvance(column.caption) + 16;
        grid->setColumnWidth(c, std::max(caption, PixelsOf(column.width > 0 ? column.width : 1500,
                                                           grid->fontMetrics())));
    }
}

qint64 frmCarSetup::HighlightedRun(const QTableView* grid, const TextGridModel* model) const {
    const QModelIndexList rows = grid->selectionModel()->selectedRows();
    if (rows.isEmpty() || rows.first().row() >= model->RowCount()) {
        return 0;
    }
    return model->CellView(rows.first().row(), 0).toLongLong();
}

void frmCarSetup::Highlight(QTableView* grid, const TextGridModel* model, qint64 runId) {
    const int row = runId != 0 ? model->GridFindRow(QString::number(runId)) : -1;
    if (row < 0) {
        return;
    }
    const QModelIndex at = model->index(row, std::min(1, model->ColumnCount() - 1));
    grid->selectionModel()->setCurrentIndex(
        at, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    grid->scrollTo(at);
}

void frmCarSetup::UpdateButtons() {
    sscmdSaveSetup_->setEnabled(HighlightedRun(ssdbgAvailableRuns_, availableModel_) != 0);
    sscmdDelete_->setEnabled(HighlightedRun(ssdbgMain_, setupModel_) != 0);
}

void frmCarSetup::AddHighlighted() {
    const qint64 run = HighlightedRun(ssdbgAvailableRuns_, availableModel_);
    if (run == 0) {
        return;
    }
    int added = 0;
    try {
        added = AddSetupRun(db_, run, SetupType(), Eighth());
    } catch (const store::DbError& e) {
        // Nothing was written: the lists stand as they were.
        messages_.inform(
            QStringLiteral("The run could not be added to the List of Setup Runs.\n\n") +
                e.description(),
            windowTitle(), MsgIcon::Exclamation);
        return;
    }
    // The added run stays highlighted, now in the list above.
    LoadLists(run, 0);
    if (added > 0) {
        QScopedValueRollback<bool> telling(telling_, true);
        Q_EMIT events_.recordsChanged(kSetupTable);
    }
}

void frmCarSetup::RemoveHighlighted() {
    const qint64 run = HighlightedRun(ssdbgMain_, setupModel_);
    if (run == 0) {
        return;
    }
    int removed = 0;
    try {
        removed = RemoveSetupRun(db_, run, SetupType(), Eighth());
    } catch (const store::DbError& e) {
        messages_.inform(
            QStringLiteral("The run could not be removed from the List of Setup Runs.\n\n") +
                e.description(),
            windowTitle(), MsgIcon::Exclamation);
        return;
    }
    LoadLists(0, run);
    if (removed > 0) {
        QScopedValueRollback<bool> telling(telling_, true);
        Q_EMIT events_.recordsChanged(kSetupTable);
    }
}

void frmCarSetup::ReloadKeepingHighlight() {
    if (!loaded_ || telling_) {
        return;
    }
    LoadLists(HighlightedRun(ssdbgMain_, setupModel_),
              HighlightedRun(ssdbgAvailableRuns_, availableModel_));
}

bool frmCarSetup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        // The keyboard's way to the two buttons under the lists.
        if (watched == ssdbgMain_ && key == Qt::Key_Delete) {
            RemoveHighlighted();
            return true;
        }
        if (watched == ssdbgAvailableRuns_ && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            AddHighlighted();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

QWidget* ShowCarSetup(const shell::WindowContext& ctx, QWidget* owner, qint64 carId,
                      const QString& setupType) {
    static const char* const kCarWindowKey = "carWindowSetup";
    const QString key = setupType + u' ' + QString::number(carId);
    frmCarSetup* w = nullptr;
    if (owner != nullptr) {
        for (auto* open : owner->findChildren<frmCarSetup*>(Qt::FindDirectChildrenOnly)) {
            if (open->isVisible() && open->property(kCarWindowKey).toString() == key) {
                w = open;
            }
        }
    }
    if (w == nullptr) {
        w = new frmCarSetup(ctx, owner);
        w->setProperty(kCarWindowKey, key);
    }
    w->SetCarId(carId);
    w->SetSetupType(setupType);
    w->PreShow(true, false);
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

}  // namespace slipbook::prediction
