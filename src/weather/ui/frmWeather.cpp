#include "weather/ui/frmWeather.h"

#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "shell/windowcontext.h"
#include "store/access.h"
#include "weather/station.h"
#include "weather/weatherlog.h"

#include <QCloseEvent>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace slipbook::weather {

namespace {

const QString kZero = QStringLiteral("0");
const QString kWaiting = QStringLiteral("( ... waiting for weather ... )");

QLineEdit* AddRow(QGridLayout* grid, int row, const QString& name, const QString& label,
                  const QString& unit) {
    const QString stem = name.mid(3);  // without "txt"
    auto* caption = new QLabel(label);
    caption->setObjectName(QStringLiteral("lbl") + stem);
    auto* edit = new QLineEdit;
    edit->setObjectName(name);
    edit->setAlignment(Qt::AlignRight);
    edit->setMinimumWidth(90);
    caption->setBuddy(edit);
    grid->addWidget(caption, row, 0, Qt::AlignRight);
    grid->addWidget(edit, row, 1);
    if (!unit.isEmpty()) {
        auto* unitLabel = new QLabel(unit);
        unitLabel->setObjectName(QStringLiteral("lbl") + stem + QStringLiteral("Unit"));
        grid->addWidget(unitLabel, row, 2);
    }
    return edit;
}

bool IsEnter(const QKeyEvent* key) {
    return key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
}

QString Sentence(const QString& prefix, const QString& reason) {
    return prefix + reason + u'.';
}

}  // namespace

frmWeather::frmWeather(const shell::WindowContext& ctx, std::unique_ptr<PollTimer> timer,
                       QWidget* parent)
    : QWidget(parent),
      main_(ctx.main),
      state_(ctx.state),
      messages_(ctx.messages),
      db_(ctx.db),
      clock_(ctx.clock),
      timer_(timer ? std::move(timer) : std::make_unique<QtPollTimer>()) {
    setObjectName(QStringLiteral("frmWeather"));
    setProperty("helpContext", 310);
    BuildLayout();
    timer_->setTimeout([this] { BrokerTimer_Timer(); });

    for (QLineEdit* box : {txtTemp_, txtHumidity_, txtBarometricPressure_, txtPressureAltitude_}) {
        box->setText(kZero);
    }
    for (QLineEdit* box : figures_) {
        box->setText(kZero);
    }
}

frmWeather::~frmWeather() {
    timer_->stop();
    // The boxes outlive this part of the object and may still lose the focus on the way out.
    for (QLineEdit* box : {txtTemp_, txtHumidity_, txtBarometricPressure_, txtPressureAltitude_}) {
        box->removeEventFilter(this);
    }
}

void frmWeather::BuildLayout() {
    setWindowTitle(QStringLiteral("Weather Calculator - Quadrumex"));

    auto* input = new QGroupBox(QStringLiteral("Input"));
    input->setObjectName(QStringLiteral("ssfra1"));
    auto* inputGrid = new QGridLayout(input);
    txtTemp_ = AddRow(inputGrid, 0, QStringLiteral("txtTemp"), QStringLiteral("Temperature:"), {});
    txtHumidity_ =
        AddRow(inputGrid, 1, QStringLiteral("txtHumidity"), QStringLiteral("Humidity:"), {});
    txtBarometricPressure_ =
        AddRow(inputGrid, 2, QStringLiteral("txtBarometricPressure"),
               QStringLiteral("Barometric Pressure:"), QStringLiteral("In Hg"));
    txtPressureAltitude_ = AddRow(inputGrid, 3, QStringLiteral("txtPressureAltitude"),
                                  QStringLiteral("Pressure Altitude:"), QStringLiteral("Ft."));
    inputGrid->setRowStretch(4, 1);
    inputGrid->setColumnMinimumWidth(2, 36);

    auto* output = new QGroupBox(QStringLiteral("Calculations"));
    output->setObjectName(QStringLiteral("ssfra2"));
    auto* outputGrid = new QGridLayout(output);
    // Captions and units in the order of kAirFields.
    const std::array<std::pair<QString, QString>, 7> captions = {{
        {QStringLiteral("Corr. Factor:"), {}},
        {QStringLiteral("Density Alt.:"), QStringLiteral("Ft.")},
        {QStringLiteral("Air Density:"), {}},
        {QStringLiteral("Vapor Pressure:"), QStringLiteral("In Hg")},
        {QStringLiteral("Dry Barometer:"), QStringLiteral("In Hg")},
        {QStringLiteral("Dew Point:"), {}},
        {QStringLiteral("Wet  Bulb Temp:"), {}},
    }};
    for (size_t i = 0; i < figures_.size(); ++i) {
        figures_[i] =
            AddRow(outputGrid, static_cast<int>(i), QString::fromLatin1(kAirFields[i].name),
                   captions[i].first, captions[i].second);
        figures_[i]->setReadOnly(true);
        figures_[i]->setFocusPolicy(Qt::ClickFocus);
    }
    outputGrid->setColumnMinimumWidth(2, 36);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->setObjectName(QStringLiteral("splWeather"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(input);
    splitter->addWidget(output);

    auto* panel = new QFrame;
    panel->setObjectName(QStringLiteral("SSPanel1"));
    panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    auto* panelRow = new QHBoxLayout(panel);
    WeatherType_ = new QLabel(QStringLiteral("Live Weather as of"));
    WeatherType_->setObjectName(QStringLiteral("WeatherType"));
    QFont bold = WeatherType_->font();
    bold.setBold(true);
    WeatherType_->setFont(bold);
    WeatherTime_ = new QLabel(kWaiting);
    WeatherTime_->setObjectName(QStringLiteral("WeatherTime"));
    panelRow->addWidget(WeatherType_);
    panelRow->addWidget(WeatherTime_, 1);

    // Why the last calculation or station reading was not used; the station may write every
    // second, so no box.
    lblStatus_ = new QLabel;
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    lblStatus_->setWordWrap(true);
    QPalette statusPalette = lblStatus_->palette();
    statusPalette.setColor(QPalette::WindowText, Qt::darkRed);
    lblStatus_->setPalette(statusPalette);

    cmdLiveWeather_ = new QPushButton(QStringLiteral("Live Weather"));
    cmdLiveWeather_->setObjectName(QStringLiteral("cmdLiveWeather"));
    cmdManualWeather_ = new QPushButton(QStringLiteral("Manual Weather"));
    cmdManualWeather_->setObjectName(QStringLiteral("cmdManualWeather"));
    cmdLiveWeather_->setAutoDefault(false);
    cmdManualWeather_->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdLiveWeather_);
    buttons->addWidget(cmdManualWeather_);

    auto* root = new QVBoxLayout(this);
    root->addWidget(splitter, 1);
    root->addWidget(panel);
    root->addWidget(lblStatus_);
    root->addLayout(buttons);

    setTabOrder(txtTemp_, txtHumidity_);
    setTabOrder(txtHumidity_, txtBarometricPressure_);
    setTabOrder(txtBarometricPressure_, txtPressureAltitude_);
    setTabOrder(txtPressureAltitude_, cmdLiveWeather_);
    setTabOrder(cmdLiveWeather_, cmdManualWeather_);

    for (QLineEdit* box : {txtTemp_, txtHumidity_, txtBarometricPressure_, txtPressureAltitude_}) {
        InstallNumericKeyFilter(box, -1);
        InstallSelectAllOnFocus(box);
        // Installed last, so it sees Enter before the key filter would turn it into a Tab.
        box->installEventFilter(this);
    }

    connect(cmdLiveWeather_, &QPushButton::clicked, this, [this] { cmdLiveWeather_Click(); });
    connect(cmdManualWeather_, &QPushButton::clicked, this, [this] { cmdManualWeather_Click(); });
}

void frmWeather::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (firstActivate_) {
        firstActivate_ = false;
        cmdLiveWeather_Click();
        timer_->start(kPollFast);
    }
}

void frmWeather::closeEvent(QCloseEvent* event) {
    timer_->stop();
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

bool frmWeather::eventFilter(QObject* watched, QEvent* event) {
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (box == nullptr) {
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
        case QEvent::KeyPress:
            // Enter moves on when it comes up; going down it does nothing.
            return IsEnter(static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease: {
            auto* key = static_cast<QKeyEvent*>(event);
            if (IsEnter(key) && !key->isAutoRepeat()) {
                NextInput(box)->setFocus(Qt::TabFocusReason);
                return true;
            }
            break;
        }
        case QEvent::FocusOut: {
            // Focus that leaves for another window or a menu is not leaving the field.
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                !inLostFocus_ && isVisible()) {
                inLostFocus_ = true;
                InputLostFocus(box);
                inLostFocus_ = false;
            }
            break;
        }
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

QLineEdit* frmWeather::NextInput(const QLineEdit* input) const {
    if (input == txtTemp_) {
        return txtHumidity_;
    }
    if (input == txtHumidity_) {
        return txtBarometricPressure_;
    }
    if (input == txtBarometricPressure_) {
        return txtPressureAltitude_;
    }
    return txtTemp_;
}

void frmWeather::InputLostFocus(QLineEdit* input) {
    if (input == txtPressureAltitude_) {
        // Compared with the exact text, so an emptied box is converted, and fails.
        if (input->text() == kZero) {
            return;
        }
        const auto barometer = BarometerText(input->text());
        if (!barometer) {
            ShowStatus(Sentence(QStringLiteral("Not calculated: "), barometer.error()));
            return;
        }
        txtBarometricPressure_->setText(*barometer);
        Recalculate();
        return;
    }

    struct Range {
        double low, high;
        const char* message;
        const char* field;
    };
    const Range range =
        input == txtTemp_ ? Range{32, 120, "Valid Temperature Range 32-120", "temperature"}
        : input == txtHumidity_
            ? Range{0, 100, "Valid Humidity Range 0-100", "humidity"}
            : Range{20, 31.5, "Valid Air Pressure Range 20-31.5", "barometric pressure"};
    const auto value = LeadingNumber(input->text());
    if (!value) {
        ShowStatus(Sentence(QStringLiteral("Not calculated: "),
                            QStringLiteral("%1 %2 is out of range")
                                .arg(QString::fromLatin1(range.field), input->text())));
        return;
    }
    // A zero is taken as not entered yet.
    if (*value == 0) {
        return;
    }
    if (*value < range.low || *value > range.high) {
        messages_.inform(QString::fromLatin1(range.message));
        input->setText(kZero);
        input->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (input == txtBarometricPressure_) {
        const auto altitude = PressureAltitudeText(input->text());
        if (!altitude) {
            ShowStatus(Sentence(QStringLiteral("Not calculated: "), altitude.error()));
            return;
        }
        txtPressureAltitude_->setText(*altitude);
    }
    Recalculate();
}

void frmWeather::Recalculate() {
    ShowRecalculation(
        PlanRecalculation(txtTemp_->text(), txtHumidity_->text(), txtBarometricPressure_->text()));
}

void frmWeather::ShowRecalculation(const Recalculation& r) {
    WeatherTime_->setText(WeatherTimeText(clock_.Now()));
    if (r.failed()) {
        ShowStatus(Sentence(QStringLiteral("Not calculated: "), r.reason));
        return;
    }
    ShowStatus({});
    ShowFigures(r.texts);
    if (!r.pushes()) {
        return;
    }
    if (liveWeather_) {
        state_.leadin.Clear();
    }
    // Each open prediction and tune-up window adds its line to the lead-in as it calculates.
    main_.CalcAllETPrediction(figures_[0]->text(), figures_[1]->text());
    main_.CalcAllTuneUp(figures_[2]->text());
    if (liveWeather_) {
        WritePageFile(state_.weatherDir, state_.leadin.Get());
    }
    LogReading();
}

void frmWeather::LogReading() {
    // In live mode the inputs are locked and hold the station's figures, whatever recalculated.
    const WeatherReading reading = ReadingFromTexts(
        clock_.Now(),
        {txtTemp_->text(), txtHumidity_->text(), txtBarometricPressure_->text(),
         txtPressureAltitude_->text()},
        {figures_[0]->text(), figures_[1]->text(), figures_[2]->text(), figures_[3]->text(),
         figures_[4]->text(), figures_[5]->text(), figures_[6]->text()},
        liveWeather_ ? kSourceStation : kSourceTyped);
    // The station's ticks come between the racer's own actions, and a box there would stack
    // up every 15 seconds while the logbook can't be written: the figures stand, they were
    // pushed and paged, and the status line says the reading was not kept. The next reading
    // tries again.
    try {
        RecordReading(db_, reading);
    } catch (const std::exception& e) {
        ShowStatus(Sentence(QStringLiteral("Not kept in the weather log: "),
                            store::AsDbError(e).description()));
    }
}

QString frmWeather::WeatherRecord() const {
    const std::array<QString, 11> texts = {
        txtTemp_->text(),
        txtHumidity_->text(),
        txtBarometricPressure_->text(),
        txtPressureAltitude_->text(),
        figures_[0]->text(),  // corr. factor
        figures_[1]->text(),  // density alt.
        figures_[2]->text(),  // air density
        figures_[3]->text(),  // vapor pressure
        figures_[4]->text(),  // dry barometer
        figures_[5]->text(),  // dew point
        figures_[6]->text(),  // wet bulb
    };
    return WeatherRecordText(clock_.Now(), texts);
}

void frmWeather::ClearWeather() {
    txtTemp_->setText(kZero);
    txtHumidity_->setText(kZero);
    txtBarometricPressure_->setText(kZero);
    Recalculate();
}

QString frmWeather::FieldText(const QString& controlName) const {
    const auto* box = findChild<const QLineEdit*>(controlName);
    return box != nullptr ? box->text() : QString();
}

void frmWeather::cmdLiveWeather_Click() {
    // A click while live keeps the figures.
    if (!liveWeather_) {
        for (QLineEdit* box :
             {txtTemp_, txtHumidity_, txtBarometricPressure_, txtPressureAltitude_}) {
            box->setText(kZero);
        }
        Recalculate();
        WeatherTime_->setText(kWaiting);
    }
    liveWeather_ = true;
    WeatherType_->setText(QStringLiteral("Live Weather as of"));
    SetInputsLocked(true);
    cmdLiveWeather_->setFocus(Qt::OtherFocusReason);
}

void frmWeather::cmdManualWeather_Click() {
    liveWeather_ = false;
    WeatherType_->setText(QStringLiteral("MANUAL WEATHER as of"));
    SetInputsLocked(false);
    txtTemp_->setFocus(Qt::OtherFocusReason);
}

void frmWeather::SetInputsLocked(bool locked) {
    const QColor background =
        locked ? QGuiApplication::palette().color(QPalette::ToolTipBase) : QColor(Qt::white);
    for (QLineEdit* box : {txtTemp_, txtHumidity_, txtBarometricPressure_, txtPressureAltitude_}) {
        box->setReadOnly(locked);
        box->setFocusPolicy(locked ? Qt::ClickFocus : Qt::StrongFocus);
        QPalette palette = box->palette();
        palette.setColor(QPalette::Base, background);
        box->setPalette(palette);
    }
}

void frmWeather::BrokerTimer_Timer() {
    const int previous = timer_->interval();
    if (!liveWeather_) {
        // A reading left there waits for the return to live mode.
        timer_->start(NextPollInterval(previous, false, false));
        return;
    }
    const StationRead read = ReadLatestReading(state_.weatherDir);
    timer_->start(NextPollInterval(previous, true, read.opened));
    weatherBuffer_ = read.record;
    if (weatherBuffer_.isEmpty()) {
        return;
    }

    // Station figures are taken as they come, without the ranges that guard typing; a reading
    // that can't be calculated leaves the inputs with the figures they gave.
    const StationReading reading = PlanStationReading(weatherBuffer_);
    switch (reading.kind) {
        case StationReading::Kind::Nothing:
            return;
        case StationReading::Kind::NotUsed:
            ShowStatus(Sentence(QStringLiteral("Station reading not used: "), reading.reason));
            return;
        case StationReading::Kind::Used:
            break;
    }
    QLineEdit* const inputs[] = {txtTemp_, txtHumidity_, txtBarometricPressure_,
                                 txtPressureAltitude_};
    for (size_t i = 0; i < reading.inputs.size(); ++i) {
        inputs[i]->setText(reading.inputs[i]);
    }
    ShowRecalculation(reading.recalculation);
}

void frmWeather::ShowFigures(const std::array<QString, 7>& texts) {
    for (size_t i = 0; i < figures_.size(); ++i) {
        figures_[i]->setText(texts[i]);
    }
}

void frmWeather::ShowStatus(const QString& text) {
    lblStatus_->setText(text);
}

}  // namespace slipbook::weather
