#include "weather/ui/frmWeatherHistory.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "store/jetdate.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateTimeAxis>
#include <QEvent>
#include <QFileDialog>
#include <QGraphicsLayout>
#include <QGraphicsScene>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLineSeries>
#include <QLocale>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <QValueAxis>

#include <algorithm>
#include <memory>

namespace slipbook::weather {

namespace {

const QLocale& UsLocale() {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

QString DateText(QDate day) {
    return UsLocale().toString(day, QStringLiteral("MM/dd/yyyy"));
}

// The five charted figures: tab, axis title with the unit, label format, chart name.
struct Charted {
    const char* tab;
    const char* axis;
    const char* labels;
    const char* name;
    double (*value)(const WeatherReading&);
};
const std::array<Charted, 5> kCharted = {{
    {"Temperature", "Temperature (°F)", "%.1f", "chtTemp",
     [](const WeatherReading& r) { return r.temperature; }},
    {"Humidity", "Humidity (%)", "%.0f", "chtHumidity",
     [](const WeatherReading& r) { return r.humidity; }},
    {"Barometer", "Barometer (in Hg)", "%.2f", "chtBarometer",
     [](const WeatherReading& r) { return r.barometer; }},
    {"Density Altitude", "Density Altitude (ft)", "%.0f", "chtDensityAlt",
     [](const WeatherReading& r) { return r.densityAltitude(); }},
    {"Correction Factor", "Correction Factor", "%.4f", "chtCorrFactor",
     [](const WeatherReading& r) { return r.corrFactor(); }},
}};

// A reading's place on the time axis, which shows the machine's local time.
qreal AxisTime(const QDateTime& time) {
    return static_cast<qreal>(QDateTime(time.date(), time.time()).toMSecsSinceEpoch());
}

// One figure against time. A reading without the figure leaves it out.
QChart* MakeChart(const Charted& figure, const std::vector<WeatherReading>& readings,
                  bool severalDays, const QString& shown) {
    auto* chart = new QChart;
    chart->setTitle(shown.isEmpty()
                        ? QString::fromLatin1(figure.tab)
                        : QString::fromLatin1(figure.tab) + QStringLiteral(" - ") + shown);
    chart->legend()->hide();
    chart->setMargins(QMargins(4, 4, 4, 4));

    QList<QPointF> points;
    points.reserve(static_cast<qsizetype>(readings.size()));
    double low = 0;
    double high = 0;
    for (const WeatherReading& r : readings) {
        const double v = figure.value(r);
        if (!HasFigure(v)) {
            continue;
        }
        low = points.isEmpty() ? v : std::min(low, v);
        high = points.isEmpty() ? v : std::max(high, v);
        points.append(QPointF(AxisTime(r.time), v));
    }
    auto* series = new QLineSeries;
    series->setName(QString::fromLatin1(figure.tab));
    series->replace(points);
    // A line needs two readings; a few are easier to count as dots.
    series->setPointsVisible(points.size() <= 60);
    chart->addSeries(series);

    auto* x = new QDateTimeAxis;
    x->setFormat(severalDays ? QStringLiteral("MM/dd hh:mm") : QStringLiteral("hh:mm AP"));
    x->setTitleText(severalDays ? QStringLiteral("Date and time") : QStringLiteral("Time"));
    x->setTickCount(7);
    auto* y = new QValueAxis;
    y->setTitleText(QString::fromUtf8(figure.axis));
    y->setLabelFormat(QString::fromLatin1(figure.labels));
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);

    if (!points.isEmpty()) {
        // A single reading, or a figure that never moved, still gets an axis with a width.
        qreal first = points.front().x();
        qreal last = points.back().x();
        if (last <= first) {
            first -= 30 * 60 * 1000.0;
            last += 30 * 60 * 1000.0;
        }
        x->setRange(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(first)),
                    QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(last)));
        const double pad = high > low ? (high - low) * 0.05 : std::max(std::abs(high) * 0.01, 0.01);
        y->setRange(low - pad, high + pad);
        y->applyNiceNumbers();
    }
    return chart;
}

}  // namespace

// The readings as the list shows them, formatted as each cell is asked for.
class ReadingsModel final : public QAbstractTableModel {
public:
    explicit ReadingsModel(QObject* parent) : QAbstractTableModel(parent) {
        formats_.reserve(kFigureColumns.size());
        for (const auto& c : kFigureColumns) {
            formats_.emplace_back(QString::fromLatin1(c.format));
        }
    }

    void Reset(const std::vector<WeatherReading>* readings, bool withDate) {
        beginResetModel();
        readings_ = readings;
        withDate_ = withDate;
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || readings_ == nullptr ? 0 : static_cast<int>(readings_->size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(kFigureColumns.size()) + 2;
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || readings_ == nullptr || index.row() >= rowCount()) {
            return {};
        }
        const WeatherReading& r = (*readings_)[static_cast<size_t>(index.row())];
        const int column = index.column();
        const int last = columnCount() - 1;
        if (role == Qt::TextAlignmentRole) {
            return column == 0 || column == last ? QVariant(Qt::AlignLeft | Qt::AlignVCenter)
                                                 : QVariant(Qt::AlignRight | Qt::AlignVCenter);
        }
        if (role != Qt::DisplayRole) {
            return {};
        }
        if (column == 0) {
            return UsLocale().toString(r.time, withDate_ ? QStringLiteral("MM/dd/yyyy hh:mm:ss AP")
                                                         : QStringLiteral("hh:mm:ss AP"));
        }
        if (column == last) {
            return r.source;
        }
        const double v = Figure(r, column - 1);
        return HasFigure(v) ? formats_[static_cast<size_t>(column - 1)].Apply(v) : QString();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
            return QAbstractTableModel::headerData(section, orientation, role);
        }
        if (section == 0) {
            return QStringLiteral("Time");
        }
        if (section == columnCount() - 1) {
            return QStringLiteral("Source");
        }
        return QString::fromLatin1(kFigureColumns[static_cast<size_t>(section - 1)].caption);
    }

private:
    struct Column {
        const char* caption;
        const char* format;
    };
    // The inputs in the run list's formats, then the seven figures in the windows' own.
    static constexpr std::array<Column, 11> kFigureColumns = {{
        {"Temp", "###,##0.0"},
        {"Humidity", "##0"},
        {"Baro", "###,##0.00"},
        {"Pressure Alt", "###,##0"},
        {"Corr Factor", kAirFields[0].format},
        {"Density Alt", kAirFields[1].format},
        {"Air Density", kAirFields[2].format},
        {"Vapor Pressure", kAirFields[3].format},
        {"Dry Baro", kAirFields[4].format},
        {"Dew Point", kAirFields[5].format},
        {"Wet Bulb", kAirFields[6].format},
    }};

    static double Figure(const WeatherReading& r, int i) {
        switch (i) {
            case 0:
                return r.temperature;
            case 1:
                return r.humidity;
            case 2:
                return r.barometer;
            case 3:
                return r.pressureAltitude;
            default:
                return r.air[static_cast<size_t>(i - 4)];
        }
    }

    const std::vector<WeatherReading>* readings_ = nullptr;
    bool withDate_ = false;
    std::vector<NumberFormat> formats_;
};

frmWeatherHistory::frmWeatherHistory(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent), db_(ctx.db), messages_(ctx.messages), clock_(ctx.clock) {
    setObjectName(QStringLiteral("frmWeatherHistory"));
    setWindowTitle(QStringLiteral("Weather History"));
    BuildLayout();
    FillEvents();
    resize(980, 680);
    Reload();
    connect(&ctx.events, &store::LogbookEvents::recordsChanged, this, [this](const QString& table) {
        if (table == u"tblEvents") {
            FillEvents();
            if (optEvent_->isChecked()) {
                Reload();
            }
        }
    });
}

frmWeatherHistory::~frmWeatherHistory() = default;

void frmWeatherHistory::BuildLayout() {
    optDay_ = new QRadioButton(QStringLiteral("&Day:"));
    optDay_->setObjectName(QStringLiteral("optDay"));
    optDay_->setChecked(true);
    day_ = clock_.Today();
    mebDay_ = new QLineEdit;
    mebDay_->setObjectName(QStringLiteral("mebDay"));
    mebDay_->setInputMask(QStringLiteral("00/00/0000;_"));
    mebDay_->setFixedWidth(mebDay_->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) +
                           16);
    mebDay_->setText(DateText(day_));
    mebDay_->setToolTip(QStringLiteral("The day whose readings are shown (MM/DD/YYYY)"));
    InstallSelectAllOnFocus(mebDay_);
    mebDay_->installEventFilter(this);
    cmdPrevDay_ = new QPushButton(QStringLiteral("<"));
    cmdPrevDay_->setObjectName(QStringLiteral("cmdPrevDay"));
    cmdPrevDay_->setToolTip(QStringLiteral("The day before"));
    cmdNextDay_ = new QPushButton(QStringLiteral(">"));
    cmdNextDay_->setObjectName(QStringLiteral("cmdNextDay"));
    cmdNextDay_->setToolTip(QStringLiteral("The day after"));
    for (QPushButton* step : {cmdPrevDay_, cmdNextDay_}) {
        step->setAutoDefault(false);
        step->setFixedWidth(step->fontMetrics().horizontalAdvance(QStringLiteral("<<")) + 16);
    }
    optEvent_ = new QRadioButton(QStringLiteral("&Event:"));
    optEvent_->setObjectName(QStringLiteral("optEvent"));
    cboEvents_ = new QComboBox;
    cboEvents_->setObjectName(QStringLiteral("cboEvents"));
    cboEvents_->setMinimumContentsLength(24);
    cboEvents_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    lblCount_ = new QLabel;
    lblCount_->setObjectName(QStringLiteral("lblCount"));
    cmdSaveChart_ = new QPushButton(QStringLiteral("&Save Chart..."));
    cmdSaveChart_->setObjectName(QStringLiteral("cmdSaveChart"));
    cmdSaveChart_->setToolTip(QStringLiteral("Save the chart in front as a PNG picture"));
    cmdPrint_ = new QPushButton(QStringLiteral("&Print..."));
    cmdPrint_->setObjectName(QStringLiteral("cmdPrint"));
    cmdPrint_->setToolTip(QStringLiteral("Print the five charts on one page"));

    auto* pick = new QHBoxLayout;
    pick->addWidget(optDay_);
    pick->addWidget(cmdPrevDay_);
    pick->addWidget(mebDay_);
    pick->addWidget(cmdNextDay_);
    pick->addSpacing(16);
    pick->addWidget(optEvent_);
    pick->addWidget(cboEvents_, 1);
    pick->addSpacing(16);
    pick->addWidget(lblCount_);
    pick->addStretch();
    pick->addWidget(cmdSaveChart_);
    pick->addWidget(cmdPrint_);

    model_ = new ReadingsModel(this);
    grdReadings_ = new QTableView;
    grdReadings_->setObjectName(QStringLiteral("grdReadings"));
    grdReadings_->setModel(model_);
    grdReadings_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grdReadings_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdReadings_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    grdReadings_->verticalHeader()->hide();
    grdReadings_->setAlternatingRowColors(true);
    // Widths from the header and the first rows: a day holds thousands of alike rows.
    grdReadings_->horizontalHeader()->setResizeContentsPrecision(50);

    tabCharts_ = new QTabWidget;
    tabCharts_->setObjectName(QStringLiteral("tabCharts"));
    for (size_t i = 0; i < kCharted.size(); ++i) {
        charts_[i] = new QChartView;
        charts_[i]->setObjectName(QString::fromLatin1(kCharted[i].name));
        charts_[i]->setRenderHint(QPainter::Antialiasing);
        tabCharts_->addTab(charts_[i], QString::fromLatin1(kCharted[i].tab));
    }

    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("splHistory"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(tabCharts_);
    splitter->addWidget(grdReadings_);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);

    lblEmpty_ = new QLabel;
    lblEmpty_->setObjectName(QStringLiteral("lblEmpty"));
    lblEmpty_->setAlignment(Qt::AlignCenter);
    lblEmpty_->setWordWrap(true);

    stack_ = new QStackedWidget;
    stack_->setObjectName(QStringLiteral("stkHistory"));
    stack_->addWidget(splitter);
    stack_->addWidget(lblEmpty_);

    auto* root = new QVBoxLayout(this);
    root->addLayout(pick);
    root->addWidget(stack_, 1);

    connect(cmdPrevDay_, &QPushButton::clicked, this, [this] { ShowDay(day_.addDays(-1)); });
    connect(cmdNextDay_, &QPushButton::clicked, this, [this] { ShowDay(day_.addDays(1)); });
    connect(cboEvents_, &QComboBox::activated, this, [this] {
        optEvent_->setChecked(true);
        Reload();
    });
    connect(optDay_, &QRadioButton::clicked, this, [this] { Reload(); });
    connect(optEvent_, &QRadioButton::clicked, this, [this] { Reload(); });
    connect(cmdSaveChart_, &QPushButton::clicked, this, [this] { SaveChart(); });
    connect(cmdPrint_, &QPushButton::clicked, this, [this] { Print(); });
}

void frmWeatherHistory::FillEvents() {
    // The event shown stays picked while it is there.
    const QVariant shown = cboEvents_->currentData();
    cboEvents_->clear();
    store::Query q = db_.OpenQuery(QStringLiteral(
        "SELECT lEvent_id, sEvent_nm, dtEventStart_dt FROM tblEvents ORDER BY dtEventStart_dt "
        "DESC, sEvent_nm"));
    while (q.Next()) {
        QString text = q.Text(1);
        if (!q.IsNull(2)) {
            const QVariant start = q.Value(2);
            text += QStringLiteral(" (") + DateText(start.toDateTime().date()) + u')';
        }
        cboEvents_->addItem(text, q.Integer(0));
        cboEvents_->setItemData(cboEvents_->count() - 1, q.Text(1), Qt::UserRole + 1);
    }
    const int index = shown.isValid() ? cboEvents_->findData(shown) : -1;
    cboEvents_->setCurrentIndex(index >= 0 ? index : (cboEvents_->count() > 0 ? 0 : -1));
    if (index < 0 && optEvent_->isChecked()) {
        optDay_->setChecked(true);
    }
    optEvent_->setEnabled(cboEvents_->count() > 0);
}

void frmWeatherHistory::Reload() {
    struct BusyCursor {
        BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
        ~BusyCursor() { QApplication::restoreOverrideCursor(); }
        BusyCursor(const BusyCursor&) = delete;
        BusyCursor& operator=(const BusyCursor&) = delete;
    } busy;
    rangeValid_ = false;
    bool severalDays = false;
    if (optEvent_->isChecked() && cboEvents_->currentIndex() >= 0) {
        const qint64 id = cboEvents_->currentData().toLongLong();
        title_ = cboEvents_->currentData(Qt::UserRole + 1).toString();
        if (const auto range = EventRange(db_, id)) {
            range_ = *range;
            rangeValid_ = true;
            severalDays = range_.from.date() != range_.to.date();
            title_ += QStringLiteral(", ") + DateText(range_.from.date());
            if (severalDays) {
                title_ += QStringLiteral(" to ") + DateText(range_.to.date());
            }
        }
    } else {
        range_ = DayRange(day_);
        rangeValid_ = true;
        title_ = DateText(day_);
    }
    readings_ =
        rangeValid_ ? ReadingsBetween(db_, range_.from, range_.to) : std::vector<WeatherReading>{};
    model_->Reset(&readings_, severalDays);
    grdReadings_->resizeColumnsToContents();
    setWindowTitle(QStringLiteral("Weather History - ") + title_);

    if (readings_.empty()) {
        lblEmpty_->setText(rangeValid_
                               ? QStringLiteral("No weather readings for %1.").arg(title_)
                               : QStringLiteral("No weather readings for %1: the event has no "
                                                "date.")
                                     .arg(title_));
        lblCount_->clear();
        stack_->setCurrentWidget(lblEmpty_);
    } else {
        lblCount_->setText(readings_.size() == 1
                               ? QStringLiteral("1 reading")
                               : QStringLiteral("%1 readings").arg(readings_.size()));
        stack_->setCurrentIndex(0);
        for (size_t i = 0; i < kCharted.size(); ++i) {
            QChart* old = charts_[i]->chart();
            charts_[i]->setChart(MakeChart(kCharted[i], readings_, severalDays, title_));
            delete old;
        }
    }
    const bool byDay = optDay_->isChecked();
    cmdPrevDay_->setEnabled(byDay);
    cmdNextDay_->setEnabled(byDay);
    cmdSaveChart_->setEnabled(!readings_.empty());
    cmdPrint_->setEnabled(!readings_.empty());
}

void frmWeatherHistory::ShowDay(QDate day) {
    day_ = day;
    mebDay_->setText(DateText(day_));
    optDay_->setChecked(true);
    Reload();
}

bool frmWeatherHistory::DayEntered() {
    const QString shown = mebDay_->displayText();
    const auto date = shown == kDateMaskEmpty ? std::nullopt : store::ParseJetDateText(shown);
    if (!date || date->date() == DayZero()) {
        messages_.inform(QStringLiteral("Invalid Date, Use MM/DD/YYYY Format"),
                         QStringLiteral("Data Entry Error"), MsgIcon::Critical);
        mebDay_->setFocus(Qt::OtherFocusReason);
        mebDay_->selectAll();
        return false;
    }
    if (date->date() != day_ || !optDay_->isChecked()) {
        ShowDay(date->date());
    }
    return true;
}

bool frmWeatherHistory::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mebDay_) {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                DayEntered();
                return true;
            }
        } else if (event->type() == QEvent::FocusOut) {
            // Focus that leaves for another window, a menu or the box's own message is not
            // leaving the box.
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                isVisible() && mebDay_->displayText() != DateText(day_)) {
                DayEntered();
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmWeatherHistory::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The weather window keeps logging while this one is open: coming back to a range that
    // holds the present shows what was added meanwhile.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && rangeValid_) {
        const QDateTime now = clock_.Now();
        const QDateTime at(now.date(), now.time(), Qt::UTC);
        if (range_.from <= at && at <= range_.to.addSecs(1)) {
            Reload();
        }
    }
}

bool frmWeatherHistory::SaveChartImage(const QString& path) {
    auto* view = qobject_cast<QChartView*>(tabCharts_->currentWidget());
    if (view == nullptr || readings_.empty()) {
        return false;
    }
    return view->grab().save(path, "PNG");
}

void frmWeatherHistory::SaveChart() {
    const auto* figure = &kCharted[static_cast<size_t>(std::max(tabCharts_->currentIndex(), 0))];
    const QString suggested =
        QStringLiteral("Weather %1 %2.png")
            .arg(QString::fromLatin1(figure->tab), QString(title_).replace(u'/', u'-'));
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Save Chart"), suggested,
                                                      QStringLiteral("PNG pictures (*.png)"));
    if (path.isEmpty()) {
        return;
    }
    if (!SaveChartImage(path)) {
        messages_.inform(QStringLiteral("The chart could not be saved as %1.").arg(path),
                         QStringLiteral("Save Chart"), MsgIcon::Exclamation);
    }
}

void frmWeatherHistory::PrintTo(QPrinter* printer) {
    QPainter painter(printer);
    if (!painter.isActive()) {
        return;
    }
    const QRectF page = painter.viewport();
    QFont heading = painter.font();
    heading.setPointSizeF(12);
    heading.setBold(true);
    painter.setFont(heading);
    const qreal headingHeight = QFontMetricsF(heading, printer).height() * 1.6;
    painter.drawText(QRectF(page.left(), page.top(), page.width(), headingHeight),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("Weather History - ") + title_);

    // Each chart is laid out at a screen width and scaled onto its share of the page, so its
    // fonts keep their proportion to the plot.
    const qreal each = (page.height() - headingHeight) / static_cast<qreal>(kCharted.size());
    const qreal layoutWidth = 900;
    const qreal scale = page.width() / layoutWidth;
    const bool severalDays = rangeValid_ && range_.from.date() != range_.to.date();
    for (size_t i = 0; i < kCharted.size(); ++i) {
        // Drawn from its scene, so the page holds lines and text rather than a picture.
        QGraphicsScene scene;
        // The page's heading names the day or event.
        QChart* chart = MakeChart(kCharted[i], readings_, severalDays, QString());
        scene.addItem(chart);
        const QRectF layout(0, 0, layoutWidth, each / scale);
        chart->setGeometry(layout);
        chart->layout()->activate();
        const QRectF target(page.left(), page.top() + headingHeight + each * static_cast<qreal>(i),
                            page.width(), each);
        painter.setRenderHint(QPainter::Antialiasing);
        scene.render(&painter, target, layout);
    }
}

void frmWeatherHistory::Print() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Portrait);
    QPrintPreviewDialog preview(&printer, this);
    preview.setWindowTitle(QStringLiteral("Print Preview - Weather History"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [this](QPrinter* p) { PrintTo(p); });
    preview.exec();
}

}  // namespace slipbook::weather
