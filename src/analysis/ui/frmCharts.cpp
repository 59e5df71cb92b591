#include "analysis/ui/frmCharts.h"

#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "store/access.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QDateTimeAxis>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLegend>
#include <QLineSeries>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScatterSeries>
#include <QStackedBarSeries>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <QValueAxis>

#include <algorithm>
#include <cmath>
#include <limits>

namespace slipbook::analysis {

namespace {

const QString kTitle = QStringLiteral("Charts");
const QColor kLineColor(178, 34, 34);
const QColor kRedLight(220, 20, 20);

QString Ft() {
    return QStringLiteral("Density altitude (ft)");
}

QString EtAxis(Distance d) {
    return DistanceName(d) + QStringLiteral(" ET (s)");
}

QString MphAxis(Distance d) {
    return DistanceName(d) + QStringLiteral(" speed (mph)");
}

QChart* NewChart(const QString& title) {
    auto* chart = new QChart;
    chart->setTitle(title);
    QFont font = chart->titleFont();
    font.setBold(true);
    chart->setTitleFont(font);
    chart->setBackgroundRoundness(0);
    chart->setDropShadowEnabled(false);
    chart->legend()->setAlignment(Qt::AlignBottom);
    return chart;
}

// A range with room around the points; one value alone still gets a span.
std::pair<double, double> Padded(double low, double high) {
    if (low == high) {
        const double pad = low == 0 ? 1.0 : std::abs(low) * 0.02;
        return {low - pad, high + pad};
    }
    const double pad = (high - low) * 0.05;
    return {low - pad, high + pad};
}

QValueAxis* ValueAxis(const QString& title, const char* format, double low, double high) {
    auto* axis = new QValueAxis;
    axis->setTitleText(title);
    const auto [from, to] = Padded(low, high);
    axis->setRange(from, to);
    axis->applyNiceNumbers();
    axis->setLabelFormat(QString::fromLatin1(format));
    return axis;
}

template <typename Get>
std::pair<double, double> Span(const std::vector<ChartPoint>& points, Get get) {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    for (const ChartPoint& p : points) {
        low = std::min(low, get(p));
        high = std::max(high, get(p));
    }
    return {low, high};
}

QString JoinTexts(std::initializer_list<QString> texts) {
    QStringList parts;
    for (const QString& t : texts) {
        if (!t.isEmpty()) {
            parts << t;
        }
    }
    return parts.join(u'\n');
}

// A file name without the characters file systems refuse.
QString FileStem(QString text) {
    static const QString bad = QStringLiteral("\\/:*?\"<>|");
    for (QChar& c : text) {
        if (bad.contains(c)) {
            c = u'-';
        }
    }
    return text.simplified();
}

}  // namespace

frmCharts::frmCharts(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent), ctx_(ctx) {
    setObjectName(QStringLiteral("frmCharts"));
    setWindowTitle(kTitle);
    resize(900, 640);

    scope_ = new QLabel(this);
    scope_->setObjectName(QStringLiteral("lblScope"));
    scope_->setWordWrap(true);

    auto* distance = new QLabel(QStringLiteral("Distance:"), this);
    optQuarter_ = new QRadioButton(QStringLiteral("1/&4 Mile"), this);
    optQuarter_->setObjectName(QStringLiteral("optQuarter"));
    optQuarter_->setChecked(true);
    optEighth_ = new QRadioButton(QStringLiteral("1/&8 Mile"), this);
    optEighth_->setObjectName(QStringLiteral("optEighth"));
    chkFollowList_ = new QCheckBox(QStringLiteral("&Only the runs the list shows"), this);
    chkFollowList_->setObjectName(QStringLiteral("chkFollowList"));
    chkFollowList_->setToolTip(
        QStringLiteral("Charts the runs of the list's event, track and filter; off, every run "
                       "of the car"));
    chkFollowList_->setChecked(true);
    auto* refresh = new QPushButton(QStringLiteral("&Refresh"), this);
    refresh->setObjectName(QStringLiteral("cmdRefresh"));

    auto* choices = new QHBoxLayout;
    choices->addWidget(distance);
    choices->addWidget(optQuarter_);
    choices->addWidget(optEighth_);
    choices->addSpacing(24);
    choices->addWidget(chkFollowList_);
    choices->addStretch();
    choices->addWidget(refresh);

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("tabCharts"));
    const std::array<std::pair<const char*, const char*>, kPages> names = {{
        {"DensityAlt", "ET / Density Altitude"},
        {"CorrFactor", "ET / Correction Factor"},
        {"OverTime", "ET and MPH over Time"},
        {"SixtyFoot", "60' / ET"},
        {"Reaction", "Reaction Times"},
    }};
    for (int i = 0; i < kPages; ++i) {
        Page& page = pages_[static_cast<size_t>(i)];
        const QString name = QString::fromLatin1(names[static_cast<size_t>(i)].first);
        page.caption = QString::fromLatin1(names[static_cast<size_t>(i)].second);
        page.widget = new QWidget(tabs_);
        page.widget->setObjectName(QStringLiteral("tab") + name);
        page.view = new QChartView(page.widget);
        page.view->setObjectName(QStringLiteral("cv") + name);
        page.view->setRenderHint(QPainter::Antialiasing);
        page.view->setMinimumSize(480, 320);
        page.empty = new QLabel(page.widget);
        page.empty->setObjectName(QStringLiteral("lblEmpty") + name);
        page.empty->setAlignment(Qt::AlignCenter);
        page.empty->setWordWrap(true);
        page.empty->hide();
        page.info = new QLabel(page.widget);
        page.info->setObjectName(QStringLiteral("lblInfo") + name);
        page.info->setWordWrap(true);
        page.info->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto* layout = new QVBoxLayout(page.widget);
        layout->addWidget(page.view, 1);
        layout->addWidget(page.empty, 1);
        layout->addWidget(page.info);
        tabs_->addTab(page.widget, page.caption);
    }

    auto* print = new QPushButton(QStringLiteral("&Print..."), this);
    print->setObjectName(QStringLiteral("cmdPrint"));
    auto* png = new QPushButton(QStringLiteral("Export P&NG..."), this);
    png->setObjectName(QStringLiteral("cmdExportPng"));
    auto* pdf = new QPushButton(QStringLiteral("Export P&DF..."), this);
    pdf->setObjectName(QStringLiteral("cmdExportPdf"));
    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(print);
    buttons->addWidget(png);
    buttons->addWidget(pdf);
    buttons->addStretch();
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scope_);
    layout->addLayout(choices);
    layout->addWidget(tabs_, 1);
    layout->addLayout(buttons);

    // A save or an import tells of many runs at once: one reload after the last.
    reloadTimer_ = new QTimer(this);
    reloadTimer_->setSingleShot(true);
    reloadTimer_->setInterval(0);
    connect(reloadTimer_, &QTimer::timeout, this, &frmCharts::Reload);
    connect(&ctx_.events, &store::LogbookEvents::runSaved, this, &frmCharts::ScheduleReload);
    connect(&ctx_.events, &store::LogbookEvents::runDeleted, this, &frmCharts::ScheduleReload);
    connect(&ctx_.events, &store::LogbookEvents::recordsChanged, this, [this](const QString& t) {
        // The names in the heading and the events and tracks the list narrows by.
        if (t.compare(QLatin1String("tblCars"), Qt::CaseInsensitive) == 0 ||
            t.compare(QLatin1String("tblEvents"), Qt::CaseInsensitive) == 0 ||
            t.compare(QLatin1String("tblTracks"), Qt::CaseInsensitive) == 0) {
            ScheduleReload();
        }
    });

    connect(refresh, &QPushButton::clicked, this, &frmCharts::Reload);
    connect(chkFollowList_, &QCheckBox::toggled, this, &frmCharts::Reload);
    connect(optQuarter_, &QRadioButton::toggled, this, [this](bool on) {
        if (on) {
            distanceChosen_ = true;
            Draw();
        }
    });
    connect(optEighth_, &QRadioButton::toggled, this, [this](bool on) {
        if (on) {
            distanceChosen_ = true;
            Draw();
        }
    });
    connect(print, &QPushButton::clicked, this, &frmCharts::Print);
    connect(png, &QPushButton::clicked, this, [this] { Export(false); });
    connect(pdf, &QPushButton::clicked, this, [this] { Export(true); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);

    Reload();
}

frmCharts::~frmCharts() = default;

ChartScope frmCharts::ScopeNow() const {
    ChartScope scope;
    scope.carId = ctx_.state.car.id;
    scope.followList = chkFollowList_->isChecked();
    if (scope.followList) {
        scope.eventId = ctx_.state.event.id;
        scope.trackId = ctx_.state.track.id;
        scope.filterActive = ctx_.state.filter.active;
        scope.filterSql = ctx_.state.filter.sql;
    }
    return scope;
}

QString frmCharts::ScopeText() const {
    const QString car = ctx_.state.car.desc.trimmed();
    QString text =
        (charts_.runs == 1 ? QStringLiteral("1 run of ")
                           : QString::number(charts_.runs) + QStringLiteral(" runs of ")) +
        car;
    if (!charted_.followList) {
        return text + QStringLiteral(", all events and tracks.");
    }
    text += QStringLiteral(" as the list narrows them: ");
    text += charted_.eventId == 0 ? QStringLiteral("all events")
                                  : QStringLiteral("event ") + ctx_.state.event.desc.trimmed();
    text += QStringLiteral(", ");
    text += charted_.trackId == 0 ? QStringLiteral("all tracks")
                                  : QStringLiteral("track ") + ctx_.state.track.desc.trimmed();
    if (charted_.filterActive) {
        text += QStringLiteral(", filter ") + ctx_.state.filter.text.trimmed();
    }
    return text + u'.';
}

void frmCharts::ScheduleReload() {
    reloadTimer_->start();
}

void frmCharts::Reload() {
    reloadTimer_->stop();
    const BusyCursor busy;
    charted_ = ScopeNow();
    try {
        runs_ = ReadRunFigures(ctx_.db, charted_);
    } catch (const store::DbError& e) {
        runs_.clear();
        store::ErrorReport(e, kTitle, ctx_.messages);
    }
    if (!distanceChosen_) {
        const bool eighth = LikelyDistance(runs_) == Distance::Eighth;
        const QSignalBlocker quarterBlock(optQuarter_);
        const QSignalBlocker eighthBlock(optEighth_);
        optQuarter_->setChecked(!eighth);
        optEighth_->setChecked(eighth);
    }
    loaded_ = true;
    Draw();
}

void frmCharts::Draw() {
    charts_ = BuildCharts(runs_, optEighth_->isChecked() ? Distance::Eighth : Distance::Quarter);
    const QString car = ctx_.state.car.desc.trimmed();
    setWindowTitle(car.isEmpty() ? kTitle : kTitle + QStringLiteral(" - ") + car);
    scope_->setText(ScopeText());
    DrawDensityAlt();
    DrawCorrFactor();
    DrawOverTime();
    DrawSixtyFoot();
    DrawReaction();
}

void frmCharts::ShowChart(Page& page, QChart* chart, const QString& info) {
    QChart* old = page.view->chart();
    page.view->setChart(chart);
    // The view lets go of its chart without deleting it.
    delete old;
    page.empty->hide();
    page.view->show();
    page.view->setToolTip(page.clickable.empty() ? QString()
                                                 : QStringLiteral("Click a point to open its run"));
    page.info->setText(info);
}

void frmCharts::ShowEmpty(Page& page, const QString& text) {
    page.clickable.clear();
    QChart* old = page.view->chart();
    page.view->setChart(new QChart);
    delete old;
    page.view->hide();
    page.empty->setText(text);
    page.empty->show();
    page.info->clear();
}

void frmCharts::AddScatter(Page& page, QChart* chart, const std::vector<ChartPoint>& points,
                           const QString& name, const LineFit& fit) {
    const int index = static_cast<int>(&page - pages_.data());
    auto* series = new QScatterSeries;
    series->setName(name);
    series->setMarkerSize(10);
    series->setMarkerShape(QScatterSeries::MarkerShapeCircle);
    for (const ChartPoint& p : points) {
        series->append(p.x, p.y);
    }
    chart->addSeries(series);
    const auto [xLow, xHigh] = Span(points, [](const ChartPoint& p) { return p.x; });
    const auto [yLow, yHigh] = Span(points, [](const ChartPoint& p) { return p.y; });
    QAbstractAxis* x = chart->axes(Qt::Horizontal).value(0);
    QAbstractAxis* y = chart->axes(Qt::Vertical).value(0);
    series->attachAxis(x);
    series->attachAxis(y);
    auto* xAxis = qobject_cast<QValueAxis*>(x);
    auto* yAxis = qobject_cast<QValueAxis*>(y);
    if (xAxis != nullptr && yAxis != nullptr) {
        const auto [xFrom, xTo] = Padded(xLow, xHigh);
        xAxis->setRange(xFrom, xTo);
        xAxis->applyNiceNumbers();
        const auto [yFrom, yTo] = Padded(yLow, yHigh);
        yAxis->setRange(yFrom, yTo);
        yAxis->applyNiceNumbers();
    }
    if (fit.ok) {
        auto* line = new QLineSeries;
        line->setName(QStringLiteral("Least-squares line"));
        line->append(xLow, fit.intercept + fit.slope * xLow);
        line->append(xHigh, fit.intercept + fit.slope * xHigh);
        QPen pen(kLineColor);
        pen.setWidthF(2);
        pen.setStyle(Qt::DashLine);
        line->setPen(pen);
        chart->addSeries(line);
        line->attachAxis(x);
        line->attachAxis(y);
    }
    Clickable(index, series, points);
}

void frmCharts::Clickable(int pageIndex, QXYSeries* series, const std::vector<ChartPoint>& points) {
    pages_[static_cast<size_t>(pageIndex)].clickable.emplace_back(series, points);
    connect(series, &QXYSeries::clicked, this,
            [this, pageIndex, series](const QPointF& at) { PointClicked(pageIndex, series, at); });
}

void frmCharts::PointClicked(int pageIndex, QXYSeries* series, const QPointF& at) {
    const Page& page = pages_[static_cast<size_t>(pageIndex)];
    const auto entry = std::find_if(page.clickable.begin(), page.clickable.end(),
                                    [series](const auto& c) { return c.first == series; });
    if (entry == page.clickable.end() || entry->second.empty()) {
        return;
    }
    // The nearest point as drawn: a line reports where on it the click fell, and the axes'
    // units are not comparable with each other.
    QChart* chart = page.view->chart();
    const QPointF target = chart->mapToPosition(at, series);
    qint64 runId = 0;
    double best = std::numeric_limits<double>::max();
    for (const ChartPoint& p : entry->second) {
        const QPointF d = chart->mapToPosition(QPointF(p.x, p.y), series) - target;
        const double distance = d.x() * d.x() + d.y() * d.y();
        if (distance < best) {
            best = distance;
            runId = p.runId;
        }
    }
    ctx_.main.ShowWindow(shell::windows::kRun, runId);
}

void frmCharts::DrawDensityAlt() {
    Page& page = pages_[kDensityAlt];
    page.clickable.clear();
    const Series& s = charts_.etByDensityAlt;
    if (s.points.empty()) {
        ShowEmpty(page, NoDensityAltText(charts_.distance));
        return;
    }
    QChart* chart =
        NewChart(DistanceName(charts_.distance) + QStringLiteral(" ET against density altitude"));
    chart->addAxis(ValueAxis(Ft(), "%.0f", 0, 1), Qt::AlignBottom);
    chart->addAxis(ValueAxis(EtAxis(charts_.distance), "%.2f", 0, 1), Qt::AlignLeft);
    AddScatter(page, chart, s.points, QStringLiteral("Runs"), charts_.densityAltFit);
    ShowChart(page, chart, JoinTexts({DensityAltFitText(charts_.densityAltFit), LeftOutText(s)}));
}

void frmCharts::DrawCorrFactor() {
    Page& page = pages_[kCorrFactor];
    page.clickable.clear();
    const Series& s = charts_.etByCorrFactor;
    if (s.points.empty()) {
        ShowEmpty(page, NoCorrFactorText(charts_.distance));
        return;
    }
    QChart* chart =
        NewChart(DistanceName(charts_.distance) + QStringLiteral(" ET against correction factor"));
    chart->addAxis(ValueAxis(QStringLiteral("Correction factor"), "%.3f", 0, 1), Qt::AlignBottom);
    chart->addAxis(ValueAxis(EtAxis(charts_.distance), "%.2f", 0, 1), Qt::AlignLeft);
    AddScatter(page, chart, s.points, QStringLiteral("Runs"), charts_.corrFactorFit);
    ShowChart(page, chart, JoinTexts({CorrFactorFitText(charts_.corrFactorFit), LeftOutText(s)}));
}

void frmCharts::DrawOverTime() {
    Page& page = pages_[kOverTime];
    page.clickable.clear();
    const Series& et = charts_.etOverTime;
    const Series& mph = charts_.mphOverTime;
    if (et.points.empty() && mph.points.empty()) {
        ShowEmpty(page, NoOverTimeText(charts_.distance));
        return;
    }
    QChart* chart = NewChart(DistanceName(charts_.distance) + QStringLiteral(" ET and speed"));
    double first = std::numeric_limits<double>::max();
    double last = std::numeric_limits<double>::lowest();
    for (const Series* s : {&et, &mph}) {
        if (!s->points.empty()) {
            first = std::min(first, s->points.front().x);
            last = std::max(last, s->points.back().x);
        }
    }
    auto* time = new QDateTimeAxis;
    time->setTitleText(QStringLiteral("Date"));
    constexpr double kDay = 24.0 * 3600 * 1000;
    const double pad = last > first ? (last - first) * 0.04 : kDay / 2;
    time->setRange(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(first - pad)),
                   QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(last + pad)));
    constexpr int kTicks = 6;
    // Ticks less than a day apart would repeat a date.
    time->setFormat((last - first + 2 * pad) / (kTicks - 1) < kDay ? QStringLiteral("MM/dd h:mm AP")
                                                                   : QStringLiteral("MM/dd/yyyy"));
    time->setTickCount(kTicks);
    chart->addAxis(time, Qt::AlignBottom);

    const auto addLine = [&](const Series& s, const QString& name, const char* format,
                             Qt::Alignment side) {
        if (s.points.empty()) {
            return;
        }
        auto* line = new QLineSeries;
        line->setName(name);
        line->setPointsVisible(true);
        for (const ChartPoint& p : s.points) {
            line->append(p.x, p.y);
        }
        chart->addSeries(line);
        const auto [low, high] = Span(s.points, [](const ChartPoint& p) { return p.y; });
        QValueAxis* axis = ValueAxis(name, format, low, high);
        chart->addAxis(axis, side);
        line->attachAxis(time);
        line->attachAxis(axis);
        QPen pen = line->pen();
        pen.setWidthF(2);
        line->setPen(pen);
        axis->setLinePenColor(line->color());
        axis->setLabelsColor(line->color());
        Clickable(kOverTime, line, s.points);
    };
    addLine(et, EtAxis(charts_.distance), "%.2f", Qt::AlignLeft);
    addLine(mph, MphAxis(charts_.distance), "%.1f", Qt::AlignRight);
    ShowChart(page, chart,
              JoinTexts({LeftOutText(et, QStringLiteral("ETs")),
                         LeftOutText(mph, QStringLiteral("speeds"))}));
}

void frmCharts::DrawSixtyFoot() {
    Page& page = pages_[kSixtyFoot];
    page.clickable.clear();
    const Series& s = charts_.sixtyFootByEt;
    if (s.points.empty()) {
        ShowEmpty(page, NoSixtyFootText(charts_.distance));
        return;
    }
    QChart* chart = NewChart(QStringLiteral("60' time against ") + DistanceName(charts_.distance) +
                             QStringLiteral(" ET"));
    chart->addAxis(ValueAxis(EtAxis(charts_.distance), "%.2f", 0, 1), Qt::AlignBottom);
    chart->addAxis(ValueAxis(QStringLiteral("60' time (s)"), "%.3f", 0, 1), Qt::AlignLeft);
    AddScatter(page, chart, s.points, QStringLiteral("Runs"), LineFit{});
    ShowChart(page, chart, LeftOutText(s));
}

void frmCharts::DrawReaction() {
    Page& page = pages_[kReaction];
    page.clickable.clear();
    const Histogram& h = charts_.reaction;
    if (h.Lights() == 0) {
        ShowEmpty(page, NoReactionText());
        return;
    }
    QChart* chart = NewChart(QStringLiteral("Reaction times"));
    auto* lights = new QBarSet(QStringLiteral("Runs"));
    auto* red = new QBarSet(QStringLiteral("Red lights"));
    red->setColor(kRedLight);
    QStringList categories;
    int most = 0;
    const bool anyRed = !h.redLights.empty();
    if (anyRed) {
        categories << QStringLiteral("Red");
        *lights << 0;
        *red << static_cast<double>(h.redLights.size());
        most = static_cast<int>(h.redLights.size());
    }
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(h.width) + 1e-9)));
    for (const HistogramBin& bin : h.bins) {
        categories << QString::number(bin.from, 'f', decimals);
        *lights << static_cast<double>(bin.runIds.size());
        *red << 0;
        most = std::max(most, static_cast<int>(bin.runIds.size()));
    }
    auto* series = new QStackedBarSeries;
    series->append(lights);
    if (anyRed) {
        series->append(red);
    } else {
        delete red;
    }
    series->setBarWidth(0.9);
    chart->addSeries(series);
    auto* x = new QBarCategoryAxis;
    x->setTitleText(QStringLiteral("Reaction time (s), bins of ") + PlainNumberText(h.width) +
                    QStringLiteral(" s"));
    x->append(categories);
    // Many bins leave too little room for a level label each.
    if (categories.size() > 12) {
        x->setLabelsAngle(-90);
    }
    chart->addAxis(x, Qt::AlignBottom);
    series->attachAxis(x);
    auto* y = new QValueAxis;
    y->setTitleText(QStringLiteral("Runs"));
    y->setLabelFormat(QStringLiteral("%d"));
    if (most <= 10) {
        y->setRange(0, most);
        y->setTickCount(most + 1);
    } else {
        y->setRange(0, most);
        y->applyNiceNumbers();
    }
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(y);
    chart->legend()->setVisible(anyRed);
    ShowChart(page, chart, ReactionSummaryText(h));
}

void frmCharts::changeEvent(QEvent* event) {
    // The main window's car, event, track or filter may have changed while another window
    // was in front.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && loaded_ &&
        !(ScopeNow() == charted_)) {
        ScheduleReload();
    }
    QWidget::changeEvent(event);
}

void frmCharts::PaintPage(QPainter& painter, const QRectF& area) const {
    const Page& page = pages_[static_cast<size_t>(tabs_->currentIndex())];
    constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    QRectF rest = area;
    const auto text = [&](const QString& t, double points, bool bold, QRectF where, int flags) {
        QFont font = this->font();
        font.setPointSizeF(points);
        font.setBold(bold);
        painter.setFont(font);
        const QRectF used = painter.boundingRect(where, flags, t);
        painter.drawText(where, flags, t);
        return used;
    };
    const QString car = ctx_.state.car.desc.trimmed();
    const QRectF heading =
        text(page.caption + (car.isEmpty() ? QString() : QStringLiteral(" - ") + car), 14, true,
             rest, kFlags);
    rest.setTop(heading.bottom() + heading.height() * 0.25);
    const QRectF scope = text(scope_->text(), 10, false, rest, kFlags);
    rest.setTop(scope.bottom() + scope.height() * 0.5);

    if (page.view->isHidden()) {
        text(page.empty->text(), 12, false, rest, Qt::AlignCenter | Qt::TextWordWrap);
        return;
    }
    // The texts under the chart take what they need at the foot of the page.
    QFont small = font();
    small.setPointSizeF(10);
    painter.setFont(small);
    const QString info = page.info->text();
    const QRectF infoSize = info.isEmpty() ? QRectF() : painter.boundingRect(rest, kFlags, info);
    QRectF chartArea = rest;
    chartArea.setBottom(rest.bottom() - infoSize.height() * 1.5);
    QChart* chart = page.view->chart();
    QSizeF size = chart->size();
    size.scale(chartArea.size(), Qt::KeepAspectRatio);
    const QRectF target(chartArea.left() + (chartArea.width() - size.width()) / 2, chartArea.top(),
                        size.width(), size.height());
    chart->scene()->render(&painter, target, chart->sceneBoundingRect(), Qt::KeepAspectRatio);
    if (!info.isEmpty()) {
        QRectF foot = rest;
        foot.setTop(target.bottom() + infoSize.height() * 0.5);
        text(info, 10, false, foot, kFlags);
    }
}

bool frmCharts::SavePng(const QString& path) {
    // Paper-like proportions at 150 dpi, so that text keeps its size against the chart.
    QImage image(1650, 1275, QImage::Format_ARGB32);
    constexpr int kDotsPerMeter = 5906;
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        PaintPage(painter, QRectF(image.rect()).adjusted(60, 60, -60, -60));
    }
    return image.save(path, "PNG");
}

bool frmCharts::SavePdf(const QString& path) {
    QPdfWriter pdf(path);
    pdf.setTitle(windowTitle());
    pdf.setPageSize(QPageSize(QPageSize::Letter));
    pdf.setPageOrientation(QPageLayout::Landscape);
    pdf.setPageMargins(QMarginsF(12.7, 12.7, 12.7, 12.7), QPageLayout::Millimeter);
    pdf.setResolution(300);
    QPainter painter;
    if (!painter.begin(&pdf)) {
        return false;
    }
    PaintPage(painter, QRectF(0, 0, pdf.width(), pdf.height()));
    return painter.end();
}

void frmCharts::Print() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setDocName(windowTitle());
    QPrintPreviewDialog preview(&printer, this);
    preview.setWindowTitle(QStringLiteral("Print Preview"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* target) {
        QPainter painter(target);
        PaintPage(painter,
                  QRectF(QPointF(0, 0),
                         target->pageLayout().paintRectPixels(target->resolution()).size()));
    });
    preview.exec();
}

void frmCharts::Export(bool pdf) {
    const QString suffix = pdf ? QStringLiteral("pdf") : QStringLiteral("png");
    const Page& page = pages_[static_cast<size_t>(tabs_->currentIndex())];
    QString stem = page.caption;
    stem.replace(u'/', QStringLiteral("by"));
    const QString suggested =
        FileStem(ctx_.state.car.desc.trimmed() + QStringLiteral(" ") + stem) + u'.' + suffix;
    const QString dir = exportDir_.isEmpty() ? QDir::homePath() : exportDir_;
    QString path = QFileDialog::getSaveFileName(
        this, pdf ? QStringLiteral("Export Chart as PDF") : QStringLiteral("Export Chart as PNG"),
        QDir(dir).filePath(suggested),
        pdf ? QStringLiteral("PDF documents (*.pdf)") : QStringLiteral("PNG images (*.png)"));
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().compare(suffix, Qt::CaseInsensitive) != 0) {
        path += u'.' + suffix;
    }
    exportDir_ = QFileInfo(path).absolutePath();
    const BusyCursor busy;
    if (!(pdf ? SavePdf(path) : SavePng(path))) {
        ctx_.messages.inform(QStringLiteral("The chart could not be written to ") +
                                 QDir::toNativeSeparators(path) + u'.',
                             QStringLiteral("Export Chart"), MsgIcon::Exclamation);
    }
}

}  // namespace slipbook::analysis
