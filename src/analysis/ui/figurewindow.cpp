#include "analysis/ui/figurewindow.h"

#include "analysis/statistics.h"
#include "common/tools.h"
#include "common/ui/toolactions.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace slipbook::analysis {

namespace {

using tools::StandardKey;
using tools::Tool;

constexpr Tool kTools[] = {
    {.id = tools::kRefresh,
     .caption = "&Refresh",
     .keys = "F5",
     .barGroup = 1,
     .tip = "Read the figures again from the logbook"},
    {.id = tools::kPrint,
     .caption = "&Print...",
     .standardKey = StandardKey::Print,
     .barGroup = 1,
     .tip = "Print the figures, after a preview"},
    {.id = tools::kClose,
     .caption = "&Close",
     .keys = "Esc",
     .barGroup = 2,
     .tip = "Close this window"},
};

}  // namespace

FigureWindow::FigureWindow(const shell::WindowContext& ctx, QStringList followedTables,
                           QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx), followed_(std::move(followedTables)) {
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    auto* bar = new QToolBar(this);
    bar->setObjectName(QStringLiteral("atbToolBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const Tool& t : kTools) {
        auto* action = new QAction(QString::fromUtf8(t.caption), this);
        const QString id = t.id;
        action->setObjectName(id);
        action->setShortcuts(ToolKeys(t));
        action->setShortcutContext(Qt::WindowShortcut);
        action->setToolTip(QString::fromUtf8(t.tip));
        action->setStatusTip(QString::fromUtf8(t.tip));
        connect(action, &QAction::triggered, this, [this, id] { ToolClick(id); });
        tools_ << action;
    }
    FillToolBar(bar, kTools, [this](const QString& id) { return tool(id); });
    addActions(tools_);
    root->addWidget(bar);
    body_ = new QVBoxLayout;
    body_->setContentsMargins(8, 6, 8, 8);
    root->addLayout(body_, 1);

    connect(&ctx_.events, &store::LogbookEvents::runSaved, this, [this] { ScheduleReload(); });
    connect(&ctx_.events, &store::LogbookEvents::runDeleted, this, [this] { ScheduleReload(); });
    connect(&ctx_.events, &store::LogbookEvents::recordsChanged, this,
            [this](const QString& table) {
                if (followed_.contains(table, Qt::CaseInsensitive)) {
                    ScheduleReload();
                }
            });
}

QAction* FigureWindow::tool(QStringView id) const {
    for (QAction* a : tools_) {
        if (a->objectName() == id) {
            return a;
        }
    }
    return nullptr;
}

void FigureWindow::Reload() {
    pending_ = false;
    shown_ = Current();
    Refresh();
}

bool FigureWindow::PrintToPdf(const QString& path) {
    return PrintReportToPdf(MakeReport(), path);
}

void FigureWindow::changeEvent(QEvent* event) {
    // The main window has no word for a change of its picks: the figures catch up when the
    // racer comes back to this window.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && Current() != shown_) {
        Reload();
    }
    QWidget::changeEvent(event);
}

QTableView* FigureWindow::MakeGrid(const char* name, TextGridModel* model) {
    auto* grid = new QTableView(this);
    grid->setObjectName(QString::fromLatin1(name));
    grid->setModel(model);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setAlternatingRowColors(true);
    grid->setWordWrap(false);
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->horizontalHeader()->setStretchLastSection(true);
    return grid;
}

void FigureWindow::Show(QTableView* grid, const TextTable& table) {
    auto* model = static_cast<TextGridModel*>(grid->model());
    model->Clear();
    model->SetColumns(table.columns);
    model->SetRows(table.rows);
    // Each column as wide as its texts and caption, and never under its own width (twips, at
    // the font's scale, as the run list takes them).
    grid->resizeColumnsToContents();
    const double scale = std::max(1.0, grid->fontMetrics().averageCharWidth() / 5.0);
    const int gap = grid->fontMetrics().averageCharWidth() * 2;
    for (int c = 0; c < model->ColumnCount(); ++c) {
        const int twips = model->Column(c).width > 0 ? model->Column(c).width : 1000;
        grid->setColumnWidth(
            c, std::max(grid->columnWidth(c) + gap, static_cast<int>(twips / 15.0 * scale)));
    }
}

QLabel* FigureWindow::MakeLabel(const char* name, bool heading) {
    auto* label = new QLabel(this);
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    if (heading) {
        QFont f = label->font();
        f.setBold(true);
        label->setFont(f);
        label->setContentsMargins(0, 6, 0, 2);
    }
    return label;
}

QString FigureWindow::SelectionText() const {
    const shell::MainState& s = ctx_.state;
    QString text = QStringLiteral("Car: %1    Event: %2    Track: %3")
                       .arg(s.car.desc, s.event.desc, s.track.desc);
    if (s.filter.active) {
        text += QStringLiteral("    Filter: ") + s.filter.text;
    }
    return text;
}

Report FigureWindow::NewReport(const QString& title) const {
    Report r;
    r.title = title;
    const WallClock& clock = ctx_.clock;
    r.now = [&clock] { return clock.Now(); };
    return r;
}

FigureWindow::Selection FigureWindow::Current() const {
    const shell::MainState& s = ctx_.state;
    return {s.car.id, s.event.id, s.track.id, s.filter.active, s.filter.sql};
}

void FigureWindow::ScheduleReload() {
    // One read for a burst of saves (an import tells of each run).
    if (pending_) {
        return;
    }
    pending_ = true;
    QTimer::singleShot(0, this, [this] {
        if (pending_) {
            Reload();
        }
    });
}

void FigureWindow::ToolClick(const QString& id) {
    if (id == tools::kRefresh) {
        Reload();
    } else if (id == tools::kPrint) {
        PreviewReport(MakeReport(), this);
    } else if (id == tools::kClose) {
        close();
    }
}

}  // namespace slipbook::analysis
