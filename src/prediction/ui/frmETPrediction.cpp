#include "prediction/ui/frmETPrediction.h"

#include "common/numbers.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "prediction/programload.h"
#include "prediction/ui/frmCarSetup.h"
#include "shell/maincontext.h"
#include "shell/mainstate.h"
#include "shell/pageleadin.h"
#include "store/dberror.h"
#include "store/logbookevents.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace slipbook::prediction {

namespace {

const QString kGoodbye = QStringLiteral(
    "WARNING: I can't cope with making the change you just selected, you're having earlier "
    "selected a different car in the main window.  Next time, please don't change the car in the "
    "main window before doing this!  Goodbye.");
const QString kConfused = QStringLiteral(
    "WARNING: This program is confused.  It doesn't know which car you're dealing with right "
    "now.  Please remember what you were doing and alert Contact Quadrumex Systems, Inc.");
const QString kLockedNote = QStringLiteral(
    "Please note: Because you recently changed cars in the main window, some settings on this "
    "window are now locked so that they continue to refer to the previously selected car.  To "
    "change those settings, first change the main window back to the corresponding car.");
const QString kLoadFailed =
    QStringLiteral("You must enter 'TS Setup' and run information for this car before continuing");
const QString kDesignReason = QStringLiteral("Is Calculate Enabled?");

constexpr int kStd = 0;
constexpr int kDa = 1;
constexpr int kTs = 2;
constexpr int kRc = 3;

int IndexOf(frmETPrediction::Program p) {
    return static_cast<int>(p);
}

// The reason a program can't calculate, as the window first shows it.
QLabel* ProgramReasonLabel(const char* name, QWidget* parent) {
    QLabel* label = ReasonLabel(name, parent);
    label->setText(kDesignReason);
    return label;
}

}  // namespace

// Boxes may be raised while the racer's own click is being served; a weather push, a change
// of a box or an activation puts what would be a box in the frame's reason label instead.
class frmETPrediction::Loud {
public:
    explicit Loud(frmETPrediction& w) : w_(w), was_(w.loud_) { w_.loud_ = true; }
    ~Loud() { w_.loud_ = was_; }
    Loud(const Loud&) = delete;
    Loud& operator=(const Loud&) = delete;

private:
    frmETPrediction& w_;
    bool was_;
};

frmETPrediction::frmETPrediction(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx) {
    setObjectName(QStringLiteral("frmETPrediction"));
    setAttribute(Qt::WA_DeleteOnClose);
    BuildLayout();
    connect(&ctx_.events, &store::LogbookEvents::recordsChanged, this, [this](const QString& t) {
        // A setup run added or removed shows in the boxes at once.
        if (t.compare(QLatin1String("tblCarSetup"), Qt::CaseInsensitive) == 0 && !loadFailed_ &&
            lockedCarId_ != -1) {
            cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());
            cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());
        }
    });
    // Form_Load.
    lockedCarId_ = -1;
    FormReLoad();
}

frmETPrediction::~frmETPrediction() = default;

QLineEdit* frmETPrediction::Box(const char* name, bool readOnly) {
    QLineEdit* box = NamedBox(name, readOnly, this);
    box->setMaximumWidth(110);
    return box;
}

void frmETPrediction::BuildLayout() {
    auto* root = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    const std::array<std::pair<const char*, const char*>, 4> tabs = {{{"cmdStd", "Standard"},
                                                                      {"cmdDA", "Density Alt"},
                                                                      {"cmdTS", "Throttle Stop"},
                                                                      {"cmdRC", "Run Comp."}}};
    for (int i = 0; i < 4; ++i) {
        tabs_[i] = NamedButton(tabs[i].first, QString::fromLatin1(tabs[i].second), this);
        tabs_[i]->setCheckable(true);
        bar->addWidget(tabs_[i]);
        connect(tabs_[i], &QPushButton::clicked, this, [this, i] {
            const Loud loud(*this);
            tabs_[i]->setChecked(true);
            Show(static_cast<Program>(i));
            if (i == kDa) {
                if (IsDACalculateEnabled()) {
                    DASlopeFromSetup();
                    cmdCalc_Auto();
                }
            } else if (i == kTs) {
                if (IsTSCalculateEnabled()) {
                    TSSlopeFromSetup();
                    cmdCalc_Auto();
                }
            } else {
                cmdCalc_Auto();
            }
        });
    }
    bar->addStretch();
    sscmdSetup = NamedButton("sscmdSetup", QStringLiteral("Setup"), this);
    sscmdSetup->setToolTip(QStringLiteral("Choose this car's setup runs for the program"));
    bar->addWidget(sscmdSetup);
    connect(sscmdSetup, &QPushButton::clicked, this, [this] {
        const Loud loud(*this);
        OpenSetup();
    });
    root->addLayout(bar);

    auto* sspnlMain = new QWidget(this);
    sspnlMain->setObjectName(QStringLiteral("sspnlMain"));
    auto* stack = new QGridLayout(sspnlMain);
    root->addWidget(sspnlMain, 1);

    const auto frame = [&](const char* name, const QString& caption) {
        auto* f = new QGroupBox(caption, sspnlMain);
        f->setObjectName(QString::fromLatin1(name));
        // All four lie on one another, each centred in the panel.
        stack->addWidget(f, 0, 0, Qt::AlignCenter);
        return f;
    };
    const auto calcButton = [&](int index, const QString& caption, QWidget* parent) {
        cmdCalc[index] = NamedButton(QStringLiteral("cmdCalc%1").arg(index).toLatin1().constData(),
                                     caption, parent);
        cmdCalc[index]->setEnabled(false);
        connect(cmdCalc[index], &QPushButton::clicked, this, [this, index] {
            const Loud loud(*this);
            switch (index) {
                case kStd:
                    CalcStandardDialIn();
                    break;
                case kDa:
                    CalcDADialIn();
                    break;
                case kTs:
                    CalcThrottleStop();
                    break;
                default:
                    CalcRunCompleter();
                    break;
            }
        });
        return cmdCalc[index];
    };
    const auto row = [](QGridLayout* g, int r, const QString& caption, QWidget* box,
                        QWidget* parent) {
        g->addWidget(BoxCaption(caption, parent), r, 0);
        g->addWidget(box, r, 1);
    };

    // Standard dial-in.
    ssfraStdDialIn = frame("ssfraStdDialIn", QStringLiteral("Standard Dial In"));
    {
        auto* g = new QGridLayout(ssfraStdDialIn);
        txtOldCorr = Box("txtOldCorr");
        txtOldET = Box("txtOldET");
        txtNewCorr = Box("txtNewCorr");
        txtDialIn = Box("txtDialIn", true);
        row(g, 0, QStringLiteral("Old Correction"), txtOldCorr, ssfraStdDialIn);
        row(g, 1, QStringLiteral("Old ET"), txtOldET, ssfraStdDialIn);
        row(g, 2, QStringLiteral("New Correction"), txtNewCorr, ssfraStdDialIn);
        row(g, 3, QStringLiteral("Dial In"), txtDialIn, ssfraStdDialIn);
        auto* fuel = new QGroupBox(QStringLiteral("Fuel Type"), ssfraStdDialIn);
        fuel->setObjectName(QStringLiteral("ssfraFuel"));
        auto* fl = new QVBoxLayout(fuel);
        optGas = NamedOption("optGas", QStringLiteral("Gas"), fuel);
        optMethanol = NamedOption("optMethanol", QStringLiteral("Methanol"), fuel);
        fl->addWidget(optGas);
        fl->addWidget(optMethanol);
        g->addWidget(fuel, 0, 2, 3, 1);
        lblWhyNoSTDCalculate = ProgramReasonLabel("lblWhyNoSTDCalculate", ssfraStdDialIn);
        g->addWidget(lblWhyNoSTDCalculate, 4, 0, 1, 3);
        g->addWidget(calcButton(kStd, QStringLiteral("Calculate Dial In"), ssfraStdDialIn), 3, 2);
        for (QLineEdit* b : {txtOldCorr, txtOldET, txtNewCorr}) {
            connect(b, &QLineEdit::textChanged, this, &frmETPrediction::StandardInputChanged);
        }
        for (QRadioButton* o : {optGas, optMethanol}) {
            connect(o, &QRadioButton::clicked, this, [this] { txtDialIn->clear(); });
        }
    }

    // Density altitude dial-in.
    ssfraDADialIn = frame("ssfraDADialIn", QStringLiteral("Density Altitude Dial In"));
    {
        auto* g = new QGridLayout(ssfraDADialIn);
        auto* setup = new QGroupBox(QStringLiteral("Run Setup"), ssfraDADialIn);
        setup->setObjectName(QStringLiteral("ssfraDASetup"));
        auto* sg = new QGridLayout(setup);
        sg->addWidget(new QLabel(QStringLiteral("Density Alt."), setup), 0, 1);
        sg->addWidget(new QLabel(QStringLiteral("ET"), setup), 0, 2);
        for (int i = 0; i < 3; ++i) {
            txtDA[i] = Box(QStringLiteral("txtDA%1").arg(i + 1).toLatin1().constData());
            txtET[i] = Box(QStringLiteral("txtET%1").arg(i + 1).toLatin1().constData());
            // Shown from the setup runs; Edit Setup opens them.
            txtDA[i]->setEnabled(false);
            txtET[i]->setEnabled(false);
            sg->addWidget(new QLabel(QStringLiteral("Run #%1").arg(i + 1), setup), i + 1, 0);
            sg->addWidget(txtDA[i], i + 1, 1);
            sg->addWidget(txtET[i], i + 1, 2);
            // These clear the standard program's result, as they always have.
            connect(txtDA[i], &QLineEdit::textChanged, this, [this] { txtDialIn->clear(); });
            connect(txtET[i], &QLineEdit::textChanged, this, [this] { txtDialIn->clear(); });
        }
        sscmdEditSetup = NamedButton("sscmdEditSetup", QStringLiteral("Edit Setup"), setup);
        sscmdClearSetup = NamedButton("sscmdClearSetup", QStringLiteral("Clear Setup"), setup);
        sg->addWidget(sscmdEditSetup, 4, 1);
        sg->addWidget(sscmdClearSetup, 4, 2);
        g->addWidget(setup, 0, 0, 1, 4);

        txtLastRunDA = Box("txtLastRunDA");
        txtLastRunET = Box("txtLastRunET");
        txtNewDA = Box("txtNewDA");
        txtDADialIn = Box("txtDADialIn", true);
        row(g, 1, QStringLiteral("Last Run DA"), txtLastRunDA, ssfraDADialIn);
        row(g, 2, QStringLiteral("Last Run ET"), txtLastRunET, ssfraDADialIn);
        row(g, 3, QStringLiteral("New DA"), txtNewDA, ssfraDADialIn);
        row(g, 4, QStringLiteral("Dial In"), txtDADialIn, ssfraDADialIn);
        auto* distance = new QGroupBox(ssfraDADialIn);
        distance->setObjectName(QStringLiteral("SSFrame1"));
        auto* dl = new QVBoxLayout(distance);
        opt14MileDA = NamedOption("opt14MileDA", QStringLiteral("1/4 Mile"), distance);
        opt18MileDA = NamedOption("opt18MileDA", QStringLiteral("1/8 Mile"), distance);
        opt14MileDA->setChecked(true);
        dl->addWidget(opt14MileDA);
        dl->addWidget(opt18MileDA);
        g->addWidget(distance, 1, 2, 3, 2);
        g->addWidget(calcButton(kDa, QStringLiteral("Calculate Dial In"), ssfraDADialIn), 4, 2, 1,
                     2);
        lbInfo = new QLabel(ssfraDADialIn);
        lbInfo->setObjectName(QStringLiteral("lbInfo"));
        g->addWidget(lbInfo, 5, 0, 1, 4);
        lblWhyNoDACalculate = ProgramReasonLabel("lblWhyNoDACalculate", ssfraDADialIn);
        g->addWidget(lblWhyNoDACalculate, 6, 0, 1, 4);
        for (QLineEdit* b : {txtLastRunDA, txtLastRunET, txtNewDA}) {
            connect(b, &QLineEdit::textChanged, this, &frmETPrediction::DensityAltInputChanged);
        }
        connect(sscmdEditSetup, &QPushButton::clicked, this, [this] { EditSetup(true); });
        connect(sscmdClearSetup, &QPushButton::clicked, this, [this] {
            const Loud loud(*this);
            ClearSetup(true);
        });
    }

    // Throttle stop timer.
    ssfraTStop = frame("ssfraTStop", QStringLiteral("Throttle Stop Timer"));
    {
        auto* g = new QGridLayout(ssfraTStop);
        txtTSOldTimer = Box("txtTSOldTimer");
        txtTSOldCorr = Box("txtTSOldCorr");
        txtTSOldET = Box("txtTSOldET");
        txtTSNewCorr = Box("txtTSNewCorr");
        txtTSDesiredET = Box("txtTSDesiredET");
        txtTSNewTimer = Box("txtTSNewTimer", true);
        row(g, 0, QStringLiteral("Old Timer"), txtTSOldTimer, ssfraTStop);
        row(g, 1, QStringLiteral("Old Corr"), txtTSOldCorr, ssfraTStop);
        row(g, 2, QStringLiteral("Old ET"), txtTSOldET, ssfraTStop);
        row(g, 3, QStringLiteral("New Corr"), txtTSNewCorr, ssfraTStop);
        row(g, 4, QStringLiteral("Desired ET"), txtTSDesiredET, ssfraTStop);
        row(g, 5, QStringLiteral("New Timer"), txtTSNewTimer, ssfraTStop);
        cboTSFuel = new QComboBox(ssfraTStop);
        cboTSFuel->setObjectName(QStringLiteral("cboTSFuel"));
        cboTSFuel->addItems({QStringLiteral("Gas"), QStringLiteral("Methanol")});
        row(g, 6, QStringLiteral("Fuel Type"), cboTSFuel, ssfraTStop);

        auto* setup = new QGroupBox(QStringLiteral("Car Setup"), ssfraTStop);
        setup->setObjectName(QStringLiteral("ssfraTStopSetup"));
        auto* sg = new QGridLayout(setup);
        sg->addWidget(new QLabel(QStringLiteral("Corr"), setup), 0, 1);
        sg->addWidget(new QLabel(QStringLiteral("ET"), setup), 0, 2);
        sg->addWidget(new QLabel(QStringLiteral("Timer"), setup), 0, 3);
        for (int i = 0; i < 2; ++i) {
            const QString n = QString::number(i + 1);
            txtTSRCorr[i] = Box(("txtTSR" + n + "Corr").toLatin1().constData());
            txtTSRET[i] = Box(("txtTSR" + n + "ET").toLatin1().constData());
            txtTSRTimer[i] = Box(("txtTSR" + n + "Timer").toLatin1().constData());
            sg->addWidget(new QLabel(QStringLiteral("Run #") + n, setup), i + 1, 0);
            sg->addWidget(txtTSRCorr[i], i + 1, 1);
            sg->addWidget(txtTSRET[i], i + 1, 2);
            sg->addWidget(txtTSRTimer[i], i + 1, 3);
            for (QLineEdit* b : {txtTSRCorr[i], txtTSRET[i], txtTSRTimer[i]}) {
                b->setEnabled(false);
            }
        }
        sscmdTSEditSetup = NamedButton("sscmdTSEditSetup", QStringLiteral("Edit Setup"), setup);
        sscmdTSClearSetup = NamedButton("sscmdTSClearSetup", QStringLiteral("Clear Setup"), setup);
        sg->addWidget(sscmdTSEditSetup, 3, 1, 1, 2);
        sg->addWidget(sscmdTSClearSetup, 3, 3);
        g->addWidget(setup, 0, 2, 4, 2);
        auto* distance = new QGroupBox(ssfraTStop);
        distance->setObjectName(QStringLiteral("SSFrame3"));
        auto* dl = new QHBoxLayout(distance);
        opt14MileTS = NamedOption("opt14MileTS", QStringLiteral("1/4 Mile"), distance);
        opt18MileTS = NamedOption("opt18MileTS", QStringLiteral("1/8 Mile"), distance);
        opt14MileTS->setChecked(true);
        dl->addWidget(opt14MileTS);
        dl->addWidget(opt18MileTS);
        g->addWidget(distance, 4, 2, 1, 2);
        g->addWidget(calcButton(kTs, QStringLiteral("Calculate Timer"), ssfraTStop), 5, 2, 1, 2);
        lbTSInfo = new QLabel(ssfraTStop);
        lbTSInfo->setObjectName(QStringLiteral("lbTSInfo"));
        g->addWidget(lbTSInfo, 7, 0, 1, 4);
        lblWhyNoTSCalculate = ProgramReasonLabel("lblWhyNoTSCalculate", ssfraTStop);
        g->addWidget(lblWhyNoTSCalculate, 8, 0, 1, 4);
        for (QLineEdit* b :
             {txtTSOldTimer, txtTSOldCorr, txtTSOldET, txtTSNewCorr, txtTSDesiredET}) {
            connect(b, &QLineEdit::textChanged, this, &frmETPrediction::ThrottleStopInputChanged);
        }
        connect(sscmdTSEditSetup, &QPushButton::clicked, this, [this] { EditSetup(false); });
        connect(sscmdTSClearSetup, &QPushButton::clicked, this, [this] {
            const Loud loud(*this);
            ClearSetup(false);
        });
    }

    // Run completer.
    ssfraRunCompleter = frame("ssfraRunCompleter", QStringLiteral("Run Completer"));
    {
        auto* g = new QGridLayout(ssfraRunCompleter);
        txtOldInterimET = Box("txtOldInterimET");
        txtOldRCET = Box("txtOldRCET");
        txtRCOldFullMPH = Box("txtRCOldFullMPH");
        txtRCNewInterimET = Box("txtRCNewInterimET");
        txtRCEstET = Box("txtRCEstET", true);
        txtRCEstMPH = Box("txtRCEstMPH", true);
        row(g, 0, QStringLiteral("Old Interim ET"), txtOldInterimET, ssfraRunCompleter);
        row(g, 1, QStringLiteral("Old Full ET"), txtOldRCET, ssfraRunCompleter);
        row(g, 2, QStringLiteral("Old Full MPH"), txtRCOldFullMPH, ssfraRunCompleter);
        row(g, 3, QStringLiteral("New Interim ET"), txtRCNewInterimET, ssfraRunCompleter);
        row(g, 4, QStringLiteral("Estimated ET"), txtRCEstET, ssfraRunCompleter);
        row(g, 5, QStringLiteral("Estimated MPH"), txtRCEstMPH, ssfraRunCompleter);
        g->addWidget(calcButton(kRc, QStringLiteral("Calculate"), ssfraRunCompleter), 3, 2);
        lblWhyNoRCCalculate = ProgramReasonLabel("lblWhyNoRCCalculate", ssfraRunCompleter);
        g->addWidget(lblWhyNoRCCalculate, 6, 0, 1, 3);
        for (QLineEdit* b : {txtOldInterimET, txtOldRCET, txtRCOldFullMPH, txtRCNewInterimET}) {
            connect(b, &QLineEdit::textChanged, this, &frmETPrediction::RunCompleterInputChanged);
        }
    }

    auto* daGroup = new QButtonGroup(this);
    daGroup->addButton(opt14MileDA);
    daGroup->addButton(opt18MileDA);
    auto* tsGroup = new QButtonGroup(this);
    tsGroup->addButton(opt14MileTS);
    tsGroup->addButton(opt18MileTS);
    for (QRadioButton* o : {opt14MileDA, opt18MileDA}) {
        connect(o, &QRadioButton::clicked, this, [this] {
            const Loud loud(*this);
            DistanceClicked(true);
        });
    }
    for (QRadioButton* o : {opt14MileTS, opt18MileTS}) {
        connect(o, &QRadioButton::clicked, this, [this] {
            const Loud loud(*this);
            DistanceClicked(false);
        });
    }

    // The "new" boxes take the weather's figure as they get the focus; the filter goes in after
    // the select-all one so that it runs first.
    for (QLineEdit* b : {txtNewCorr, txtNewDA, txtTSNewCorr}) {
        b->installEventFilter(this);
    }
    txtLastRunET->installEventFilter(this);
    Show(Program::Standard);
}

void frmETPrediction::Show(Program program) {
    showing_ = program;
    const std::array<QGroupBox*, 4> frames = {ssfraStdDialIn, ssfraDADialIn, ssfraTStop,
                                              ssfraRunCompleter};
    for (int i = 0; i < 4; ++i) {
        frames[i]->setVisible(i == IndexOf(program));
        tabs_[i]->setChecked(i == IndexOf(program));
    }
    sscmdSetup->setVisible(program == Program::DensityAlt || program == Program::ThrottleStop);
}

QLabel* frmETPrediction::ReasonLabelOf(Program program) const {
    const std::array<QLabel*, 4> reasons = {lblWhyNoSTDCalculate, lblWhyNoDACalculate,
                                            lblWhyNoTSCalculate, lblWhyNoRCCalculate};
    return reasons[IndexOf(program)];
}

void frmETPrediction::Raise(Program program, const QList<Message>& messages) {
    if (messages.isEmpty()) {
        return;
    }
    if (loud_) {
        for (const Message& m : messages) {
            ctx_.messages.show(m);
        }
        return;
    }
    ReasonLabelOf(program)->setText(messages.last().text);
}

void frmETPrediction::ShowFailure(Program program, const QString& reason) {
    ReasonLabelOf(program)->setText(QStringLiteral("Oops! Can't calculate: ") + reason);
}

qint64 frmETPrediction::CarIdChecked() {
    if (lockedCarId_ == -1) {
        ctx_.messages.inform(kConfused);
        close();
    }
    return lockedCarId_;
}

bool frmETPrediction::SameCarAsMain() {
    if (lockedCarId_ != -1 && lockedCarId_ != ctx_.state.car.id) {
        // Once for each car the main window moves to, so that the box's closing, which
        // activates the window again, does not raise it again.
        if (notedMainCar_ != ctx_.state.car.id) {
            notedMainCar_ = ctx_.state.car.id;
            ctx_.messages.inform(kLockedNote);
        }
        return false;
    }
    notedMainCar_ = -1;
    return true;
}

void frmETPrediction::TakeWeather(QLineEdit* box, const QString& weatherField) {
    const QString weather = ctx_.main.WeatherText(weatherField);
    if (box->text().isEmpty() ||
        (box->text() == QLatin1String("0") && weather != QLatin1String("0"))) {
        box->setText(weather);
    }
}

void frmETPrediction::FormReLoad() {
    const BusyCursor busy;
    loadFailed_ = true;
    const qint64 current = ctx_.state.car.id;
    if (lockedCarId_ != -1 && lockedCarId_ != current) {
        // The window can't follow another car; it closes, the program goes on.
        ctx_.messages.inform(kGoodbye);
        close();
        return;
    }
    try {
        const std::optional<CarRecord> car = ReadCar(ctx_.db, current);
        if (!car) {
            return;
        }
        lockedCarId_ = current;
        carNumber_ = car->number;
        carName_ = car->name;
        setWindowTitle(QStringLiteral("Car #") + carNumber_ + QStringLiteral(" (") + carName_ +
                       QStringLiteral(") Prediction"));
        // The run picked in the list; a car with no run picked loads with blank figures.
        RunBoxes run;
        const QString key =
            ctx_.state.view == tools::kRuns ? ctx_.main.SelectedKeyText().trimmed() : QString();
        if (!key.isEmpty()) {
            bool ok = false;
            const qint64 runId = key.toLongLong(&ok);
            const std::optional<RunBoxes> read =
                ok ? ReadRunBoxes(ctx_.db, runId) : std::optional<RunBoxes>();
            if (!read) {
                return;
            }
            run = *read;
        }

        optGas->setChecked(!car->methanol);
        optMethanol->setChecked(car->methanol);
        cboTSFuel->setCurrentIndex(car->methanol ? 1 : 0);

        txtOldCorr->setText(run.oldCorr);
        txtOldET->setText(run.oldEt);
        txtNewCorr->setText(ctx_.main.WeatherText(QStringLiteral("txtCorrFactor")));
        txtDialIn->clear();

        txtLastRunDA->setText(run.densityAlt);
        txtLastRunET->setText(opt14MileDA->isChecked() ? run.quarterEt : run.eighthEt);
        txtNewDA->clear();
        txtDADialIn->clear();
        cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());

        txtTSOldTimer->setText(run.timer);
        txtTSOldCorr->setText(run.oldCorr);
        txtTSOldET->setText(opt14MileTS->isChecked() ? run.quarterEt : run.eighthEt);
        txtTSNewCorr->clear();
        txtTSDesiredET->clear();
        txtTSNewTimer->clear();

        txtOldInterimET->setText(run.interimEt);
        txtOldRCET->setText(run.fullEt);
        txtRCOldFullMPH->setText(run.fullMph);
        txtRCNewInterimET->clear();
        txtRCEstET->clear();
        txtRCEstMPH->clear();
        cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());

        Show(Program::Standard);
        lbInfo->clear();
        lbTSInfo->clear();
        loadFailed_ = false;
    } catch (const store::DbError&) {
        // loadFailed_ stays set: the activation says so and closes the window.
    }
}

void frmETPrediction::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        FormActivate();
    }
}

void frmETPrediction::FormActivate() {
    if (loadFailed_) {
        loadFailed_ = false;
        ctx_.messages.inform(kLoadFailed);
        close();
        return;
    }
    TakeWeather(txtNewCorr, QStringLiteral("txtCorrFactor"));
    TakeWeather(txtNewDA, QStringLiteral("txtDensityAlt"));
    TakeWeather(txtTSNewCorr, QStringLiteral("txtCorrFactor"));
    cmdCalc[kStd]->setEnabled(IsStandardCalculateEnabled());
    cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());
    cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());
    const bool same = SameCarAsMain();
    for (QRadioButton* o : {opt14MileDA, opt18MileDA, opt14MileTS, opt18MileTS}) {
        o->setEnabled(same);
    }
}

bool frmETPrediction::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        if (watched == txtNewCorr || watched == txtTSNewCorr) {
            TakeWeather(static_cast<QLineEdit*>(watched), QStringLiteral("txtCorrFactor"));
        } else if (watched == txtNewDA) {
            TakeWeather(txtNewDA, QStringLiteral("txtDensityAlt"));
        }
    } else if (event->type() == QEvent::FocusOut && watched == txtLastRunET) {
        if (!txtLastRunET->text().isEmpty()) {
            if (const auto v = StrictNumber(txtLastRunET->text())) {
                txtLastRunET->setText(FormatNumber(*v, u"00.000"));
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmETPrediction::AddPageLine(const QString& line) {
    ctx_.state.leadin.Add(shell::FormatPageLeadin(carNumber_, line));
}

void frmETPrediction::ApplyWeather(const QString& corrFactorText, const QString& densityAltText) {
    txtNewCorr->setText(corrFactorText);
    txtTSNewCorr->setText(corrFactorText);
    txtNewDA->setText(densityAltText);
    cmdCalc_Auto();
}

void frmETPrediction::cmdCalc_Auto() {
    const auto ready = [this](Program p, std::initializer_list<QStringView> texts) {
        const auto all = AllNonZero(texts);
        if (!all) {
            ShowFailure(p, QStringLiteral("Overflow"));
            return false;
        }
        return *all;
    };
    switch (showing_) {
        case Program::Standard:
            if (ready(showing_, {txtOldCorr->text(), txtOldET->text(), txtNewCorr->text()})) {
                CalcStandardDialIn();
                if (!txtDialIn->text().isEmpty()) {
                    AddPageLine(QStringLiteral("ET: ") + txtDialIn->text());
                }
            }
            break;
        case Program::DensityAlt:
            if (ready(showing_, {txtLastRunDA->text(), txtLastRunET->text(), txtNewDA->text()})) {
                CalcDADialIn();
                if (!txtDADialIn->text().isEmpty()) {
                    AddPageLine(QStringLiteral("ET: ") + txtDADialIn->text());
                }
            }
            break;
        case Program::ThrottleStop:
            if (ready(showing_, {txtTSOldTimer->text(), txtTSOldCorr->text(), txtTSOldET->text(),
                                 txtTSNewCorr->text(), txtTSDesiredET->text()})) {
                CalcThrottleStop();
                if (!txtTSNewTimer->text().isEmpty()) {
                    AddPageLine(QStringLiteral("TS: ") + txtTSNewTimer->text());
                }
            }
            break;
        case Program::RunCompleter:
            break;
    }
}

// --- Standard dial-in --------------------------------------------------------------------------

void frmETPrediction::StandardInputChanged() {
    txtDialIn->clear();
    cmdCalc[kStd]->setEnabled(IsStandardCalculateEnabled());
}

bool frmETPrediction::IsStandardCalculateEnabled() {
    const Check c = StandardCheck({txtOldCorr->text(), txtOldET->text(), txtNewCorr->text()});
    lblWhyNoSTDCalculate->setText(c.reason);
    return c.enabled;
}

void frmETPrediction::CalcStandardDialIn() {
    const Fuel fuel = optGas->isChecked()        ? Fuel::Gas
                      : optMethanol->isChecked() ? Fuel::Methanol
                                                 : Fuel::None;
    const Outcome out =
        StandardDialIn({txtOldCorr->text(), txtOldET->text(), txtNewCorr->text()}, fuel);
    Raise(Program::Standard, out.messages);
    if (out.failed()) {
        txtDialIn->clear();
        ShowFailure(Program::Standard, out.error);
        return;
    }
    if (!out.messages.isEmpty()) {
        return;
    }
    txtDialIn->setText(out.results[0]);
}

// --- Density altitude dial-in ------------------------------------------------------------------

DensityAltInputs frmETPrediction::DaInputs() const {
    DensityAltInputs in;
    for (int i = 0; i < 3; ++i) {
        in.da[i] = txtDA[i]->text();
        in.et[i] = txtET[i]->text();
    }
    in.lastRunDa = txtLastRunDA->text();
    in.lastRunEt = txtLastRunET->text();
    in.newDa = txtNewDA->text();
    return in;
}

void frmETPrediction::DensityAltInputChanged() {
    txtDADialIn->clear();
    cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());
}

bool frmETPrediction::IsDACalculateEnabled() {
    if (lockedCarId_ == -1) {
        return false;
    }
    const SetupRows rows = ReadSetupRows(ctx_.db, CarIdChecked(), u"DA", opt18MileDA->isChecked());
    for (int i = 0; i < 3; ++i) {
        txtDA[i]->clear();
        txtET[i]->clear();
    }
    const DensityAltSetupBoxes boxes = DensityAltSetupBoxTexts(rows, opt18MileDA->isChecked());
    if (boxes.tooFew) {
        if (ssfraDADialIn->isVisible()) {
            Raise(Program::DensityAlt, {NeedSetupMessage()});
        }
    } else {
        for (int i = 0; i < 3; ++i) {
            txtDA[i]->setText(boxes.da[i]);
            txtET[i]->setText(boxes.et[i]);
        }
    }
    const Check c = DensityAltCheck(DaInputs());
    lblWhyNoDACalculate->setText(c.reason);
    return c.enabled;
}

void frmETPrediction::DASlopeFromSetup() {
    const Slope s =
        DensityAltSlope(ReadSetupRows(ctx_.db, CarIdChecked(), u"DA", opt18MileDA->isChecked()),
                        opt14MileDA->isChecked());
    Raise(Program::DensityAlt, s.messages);
    if (!s.error.isEmpty()) {
        ShowFailure(Program::DensityAlt, s.error);
    } else if (s.info) {
        lbInfo->setText(*s.info);
    }
}

void frmETPrediction::CalcDADialIn() {
    const SetupRows rows = ReadSetupRows(ctx_.db, CarIdChecked(), u"DA", opt18MileDA->isChecked());
    const Outcome out = DensityAltDialIn(DaInputs(), rows, opt14MileDA->isChecked());
    Raise(Program::DensityAlt, out.messages);
    if (out.info) {
        lbInfo->setText(*out.info);
    }
    if (out.failed()) {
        txtDADialIn->clear();
        ShowFailure(Program::DensityAlt, out.error);
        return;
    }
    txtDADialIn->setText(out.results[0]);
}

// --- Throttle stop timer -----------------------------------------------------------------------

ThrottleStopInputs frmETPrediction::TsInputs() const {
    ThrottleStopInputs in;
    in.oldTimer = txtTSOldTimer->text();
    in.oldCorr = txtTSOldCorr->text();
    in.oldEt = txtTSOldET->text();
    in.newCorr = txtTSNewCorr->text();
    in.desiredEt = txtTSDesiredET->text();
    for (int i = 0; i < 2; ++i) {
        in.corr[i] = txtTSRCorr[i]->text();
        in.et[i] = txtTSRET[i]->text();
        in.timer[i] = txtTSRTimer[i]->text();
    }
    return in;
}

void frmETPrediction::ThrottleStopInputChanged() {
    txtTSNewTimer->clear();
    cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());
}

bool frmETPrediction::IsTSCalculateEnabled() {
    if (lockedCarId_ == -1) {
        return false;
    }
    const SetupRows rows = ReadSetupRows(ctx_.db, CarIdChecked(), u"TS", opt18MileTS->isChecked());
    for (int i = 0; i < 2; ++i) {
        txtTSRCorr[i]->clear();
        txtTSRET[i]->clear();
        txtTSRTimer[i]->clear();
    }
    // The ETs follow the density altitude program's distance; the two are kept alike.
    const ThrottleStopSetupBoxes boxes = ThrottleStopSetupBoxTexts(rows, opt18MileDA->isChecked());
    if (boxes.tooFew) {
        if (ssfraTStop->isVisible()) {
            Raise(Program::ThrottleStop, {NeedSetupMessage()});
        }
    } else {
        for (int i = 0; i < 2; ++i) {
            txtTSRCorr[i]->setText(boxes.corr[i]);
            txtTSRET[i]->setText(boxes.et[i]);
            txtTSRTimer[i]->setText(boxes.timer[i]);
        }
    }
    const Check c = ThrottleStopCheck(TsInputs(), static_cast<int>(rows.size()));
    lblWhyNoTSCalculate->setText(c.reason);
    return c.enabled;
}

void frmETPrediction::TSSlopeFromSetup() {
    const Slope s =
        ThrottleStopSlope(ReadSetupRows(ctx_.db, CarIdChecked(), u"TS", opt18MileTS->isChecked()),
                          opt14MileTS->isChecked(), cboTSFuel->currentIndex() == 1);
    Raise(Program::ThrottleStop, s.messages);
    if (!s.error.isEmpty()) {
        ShowFailure(Program::ThrottleStop, s.error);
    } else if (s.info) {
        lbTSInfo->setText(*s.info);
    }
}

void frmETPrediction::CalcThrottleStop() {
    const SetupRows rows = ReadSetupRows(ctx_.db, CarIdChecked(), u"TS", opt18MileTS->isChecked());
    const Outcome out = ThrottleStopTimer(TsInputs(), rows, opt14MileTS->isChecked(),
                                          cboTSFuel->currentIndex() == 1);
    Raise(Program::ThrottleStop, out.messages);
    if (out.info) {
        lbTSInfo->setText(*out.info);
    }
    if (out.failed()) {
        txtTSNewTimer->clear();
        ShowFailure(Program::ThrottleStop, out.error);
        return;
    }
    txtTSNewTimer->setText(out.results[0]);
}

// --- Run completer -----------------------------------------------------------------------------

void frmETPrediction::RunCompleterInputChanged() {
    txtRCEstET->clear();
    txtRCEstMPH->clear();
    cmdCalc[kRc]->setEnabled(IsRCCalculateEnabled());
}

bool frmETPrediction::IsRCCalculateEnabled() {
    const Check c = RunCompleterCheck({txtOldInterimET->text(), txtOldRCET->text(),
                                       txtRCOldFullMPH->text(), txtRCNewInterimET->text()});
    lblWhyNoRCCalculate->setText(c.reason);
    return c.enabled;
}

void frmETPrediction::CalcRunCompleter() {
    const Outcome out = RunCompleter({txtOldInterimET->text(), txtOldRCET->text(),
                                      txtRCOldFullMPH->text(), txtRCNewInterimET->text()});
    if (out.failed()) {
        ShowFailure(Program::RunCompleter, out.error);
        return;
    }
    txtRCEstET->setText(out.results[0]);
    txtRCEstMPH->setText(out.results[1]);
}

// --- Setup -------------------------------------------------------------------------------------

void frmETPrediction::DistanceClicked(bool densityAlt) {
    // The clicked program reloads its setup, then the other follows the same distance.
    if (densityAlt) {
        txtDADialIn->clear();
        cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());
        opt14MileTS->setChecked(opt14MileDA->isChecked());
        opt18MileTS->setChecked(opt18MileDA->isChecked());
        txtTSNewTimer->clear();
        cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());
    } else {
        txtTSNewTimer->clear();
        cmdCalc[kTs]->setEnabled(IsTSCalculateEnabled());
        opt14MileDA->setChecked(opt14MileTS->isChecked());
        opt18MileDA->setChecked(opt18MileTS->isChecked());
        txtDADialIn->clear();
        cmdCalc[kDa]->setEnabled(IsDACalculateEnabled());
    }
}

void frmETPrediction::SetDistance(bool quarterMile) {
    (quarterMile ? opt14MileDA : opt18MileDA)->setChecked(true);
    DistanceClicked(true);
}

void frmETPrediction::EditSetup(bool densityAlt) {
    QPushButton* edit = densityAlt ? sscmdEditSetup : sscmdTSEditSetup;
    QList<QLineEdit*> boxes;
    if (densityAlt) {
        boxes = {txtLastRunDA, txtLastRunET, txtNewDA};
        for (int i = 0; i < 3; ++i) {
            boxes << txtDA[i] << txtET[i];
        }
    } else {
        boxes = {txtTSOldTimer, txtTSOldCorr, txtTSOldET};
        for (int i = 0; i < 2; ++i) {
            boxes << txtTSRCorr[i] << txtTSRET[i] << txtTSRTimer[i];
        }
    }
    for (QLineEdit* b : boxes) {
        b->setEnabled(!b->isEnabled());
    }
    QPushButton* calc = cmdCalc[densityAlt ? kDa : kTs];
    const bool editing = edit->text() == QLatin1String("Edit Setup");
    calc->setEnabled(!calc->isEnabled());
    if (editing) {
        edit->setText(QStringLiteral("Save Setup"));
        (densityAlt ? txtDA[0] : txtTSRCorr[0])->setFocus();
    } else {
        edit->setText(QStringLiteral("Edit Setup"));
        (densityAlt ? txtLastRunDA : txtTSOldTimer)->setFocus();
    }
}

void frmETPrediction::ClearSetup(bool densityAlt) {
    const QString question = densityAlt ? QStringLiteral("Clear DA Setup Information?")
                                        : QStringLiteral("Clear Throttle Stop Setup Information?");
    if (ctx_.messages.ask(question, QStringLiteral("Confirm"), MsgButtons::YesNo, MsgAnswer::Yes) !=
        MsgAnswer::Yes) {
        return;
    }
    if (densityAlt) {
        for (int i = 0; i < 3; ++i) {
            txtDA[i]->clear();
            txtET[i]->clear();
        }
        cmdCalc[kDa]->setEnabled(false);
    } else {
        for (int i = 0; i < 2; ++i) {
            txtTSRCorr[i]->clear();
            txtTSRET[i]->clear();
            txtTSRTimer[i]->clear();
        }
        cmdCalc[kTs]->setEnabled(false);
    }
}

void frmETPrediction::OpenSetup() {
    const qint64 carId = CarIdChecked();
    if (carId == -1) {
        return;
    }
    const bool throttleStop = showing_ == Program::ThrottleStop;
    if (setup_.isNull()) {
        setup_ = new frmCarSetup(ctx_, this);
        connect(setup_, &frmCarSetup::DistanceChanged, this,
                [this](bool quarterMile) { SetDistance(quarterMile); });
    }
    setup_->SetCarId(carId);
    setup_->SetSetupType(throttleStop ? QStringLiteral("TS") : QStringLiteral("DA"));
    setup_->PreShow(throttleStop ? opt14MileTS->isChecked() : opt14MileDA->isChecked(), true);
    setup_->show();
    setup_->raise();
    setup_->activateWindow();
}

}  // namespace slipbook::prediction
