#include "tuneup/ui/frmTuneUp.h"

#include "common/numbers.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "shell/maincontext.h"
#include "shell/mainstate.h"
#include "shell/pageleadin.h"
#include "store/dberror.h"
#include "store/logbookevents.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace slipbook::tuneup {

namespace {

const QString kTitle = QStringLiteral("Tune-Up Programs");
const QString kInitFailed = QStringLiteral(
    "Unable to initialize Tune-Up window.  Possible Database corruption.  Contact Quadrumex.");
const QString kCarGone =
    QStringLiteral("Fatal error saving setup; can't find car.  Contact Quadrumex.");
const QString kSaveFailed = QStringLiteral("Fatal error saving tune-up.  Contact Quadrumex.");
const QString kNoRun = QStringLiteral("Unable to find this run");
const QString kShowDetail = QStringLiteral("Show Nozzle Detail >>");
const QString kHideDetail = QStringLiteral("<< Hide Nozzle Detail");
const QString kAirDensity = QStringLiteral("txtAirDensity");
// The shared window is told apart from the main window's by this property.
const char* const kSharedProperty = "sharedTuneUp";

// Colours as the window has always shown them: locked base boxes pale blue, results pale yellow.
const QColor kLockedBase(0xC0, 0xE0, 0xF0);
const QColor kEditable(0xFF, 0xFF, 0xFF);
const QColor kResult(0xFF, 0xFF, 0xC0);
const QColor kManualText(0xFF, 0x00, 0x00);

constexpr int kBoxWidth = 96;

// A control of an array, named as the run window names its arrays: "txtNozzle(0)".
QString ArrayName(const char* name, int index) {
    return QLatin1String(name) + u'(' + QString::number(index) + u')';
}

void SetBackground(QLineEdit* box, const QColor& colour) {
    QPalette p = box->palette();
    p.setColor(QPalette::Base, colour);
    box->setPalette(p);
}

// Like the classic Change event, a box tells of a change only when its text differs.
void Put(QLineEdit* box, const QString& text) {
    if (box->text() != text) {
        box->setText(text);
        if (box->isReadOnly()) {
            // A long figure shows its leading digits, and whole in the tip.
            box->setCursorPosition(0);
            box->setToolTip(
                box->fontMetrics().horizontalAdvance(text) > box->width() - 8 ? text : QString());
        }
    }
}

QLabel* MessageLabel(const char* name, QWidget* parent) {
    QLabel* label = ReasonLabel(name, parent);
    // Two lines hold the longest reason; the window keeps its size as messages come and go.
    label->setFixedWidth(250);
    return label;
}

bool ValZero(const QString& text) {
    return LeadingNumber(text.trimmed()).value_or(0) == 0;
}

}  // namespace

frmTuneUp::frmTuneUp(const shell::WindowContext& ctx, QWidget* parent)
    : frmTuneUp(ctx, Unloaded{}, parent) {
    PreShow(OldSource::Car, 0);
}

frmTuneUp::frmTuneUp(const shell::WindowContext& ctx, Unloaded, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx) {
    setObjectName(QStringLiteral("frmTuneUp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(kTitle);
    BuildLayout();
    FormLoad();
}

frmTuneUp::~frmTuneUp() {
    // A window owned by the main window is closed before it goes, or goes with the main window,
    // which must not be called back then.
    if (parent() == nullptr) {
        ReleaseGrid();
    }
}

void frmTuneUp::FormLoad() {
    ctx_.main.ForbidSelectDifferentRun();
    gridHeld_ = true;
    runId_ = 0;
    if (txtCarId->text() == QLatin1String("txtCarId")) {
        txtCarId->setText(QString::number(ctx_.state.car.id));
    }
}

void frmTuneUp::ReleaseGrid() {
    if (gridHeld_) {
        gridHeld_ = false;
        ctx_.main.AllowSelectDifferentRun();
    }
}

void frmTuneUp::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    if (event->isAccepted()) {
        ReleaseGrid();
        // Closed, it is no longer the shared window, though it lingers until deleted.
        setProperty(kSharedProperty, false);
    }
}

void frmTuneUp::SetCarId(qint64 carId) {
    txtCarId->setText(QString::number(carId));
}

qint64 frmTuneUp::CarId() const {
    return static_cast<qint64>(LeadingNumber(txtCarId->text()).value_or(0));
}

// --- Layout ------------------------------------------------------------------------------------

QLineEdit* frmTuneUp::Box(const char* name, bool output) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setFixedWidth(kBoxWidth);
    if (output) {
        box->setReadOnly(true);
        box->setFocusPolicy(Qt::NoFocus);
        SetBackground(box, kResult);
    }
    InstallSelectAllOnFocus(box);
    InstallEnterAsTab(box);
    return box;
}

void frmTuneUp::BuildLayout() {
    txtCarId = new QLineEdit(QStringLiteral("txtCarId"), this);
    txtCarId->setObjectName(QStringLiteral("txtCarId"));
    txtCarId->hide();

    auto* root = new QVBoxLayout(this);
    root->setSizeConstraint(QLayout::SetFixedSize);
    auto* body = new QHBoxLayout;
    root->addLayout(body);

    // The program and the fuel.
    auto* side = new QVBoxLayout;
    body->addLayout(side);
    ssfraCarb = new QGroupBox(QStringLiteral("Carburetor or Fuel Injection"), this);
    ssfraCarb->setObjectName(QStringLiteral("ssfraCarb"));
    {
        auto* l = new QVBoxLayout(ssfraCarb);
        ssoptCarbHolleyJet =
            NamedOption("ssoptCarbHolleyJet", QStringLiteral("Holley Jet"), ssfraCarb);
        ssoptCarbPrecisionJet =
            NamedOption("ssoptCarbPrecisionJet", QStringLiteral("Precision Jet"), ssfraCarb);
        ssoptFuelInjection =
            NamedOption("ssoptFuelInjection", QStringLiteral("Fuel Injection"), ssfraCarb);
        const std::array<QRadioButton*, 3> options = {ssoptCarbHolleyJet, ssoptCarbPrecisionJet,
                                                      ssoptFuelInjection};
        for (int i = 0; i < 3; ++i) {
            l->addWidget(options[i]);
            connect(options[i], &QRadioButton::clicked, this,
                    [this, i] { SelectPanel(static_cast<Panel>(i)); });
        }
    }
    side->addWidget(ssfraCarb);
    ssfraFuel = new QGroupBox(QStringLiteral("Fuel"), this);
    ssfraFuel->setObjectName(QStringLiteral("ssfraFuel"));
    {
        auto* l = new QVBoxLayout(ssfraFuel);
        ssoptGas = NamedOption("ssoptGas", QStringLiteral("Gas"), ssfraFuel);
        ssoptMethanol = NamedOption("ssoptMethanol", QStringLiteral("Methanol"), ssfraFuel);
        ssoptNitro = NamedOption("ssoptNitro", QStringLiteral("Nitro"), ssfraFuel);
        for (QRadioButton* o : {ssoptGas, ssoptMethanol, ssoptNitro}) {
            l->addWidget(o);
        }
    }
    side->addWidget(ssfraFuel);
    side->addStretch(1);

    // The three programs lie on one another; only the selected one shows.
    auto* stack = new QGridLayout;
    body->addLayout(stack, 1);
    panels_[kHolley] = BuildPanel(kHolley, "ssfraHolley", QStringLiteral("Holley Jet Change"));
    panels_[kPrecision] =
        BuildPanel(kPrecision, "ssfraPrecision", QStringLiteral("Precision Jet Change"));
    panels_[kFuelInjection] =
        BuildPanel(kFuelInjection, "ssfraFuelInjection", QStringLiteral("Fuel Injection Change"));
    for (QGroupBox* p : panels_) {
        stack->addWidget(p, 0, 0, Qt::AlignTop | Qt::AlignLeft);
    }

    cmdSaveAll = NamedButton(
        "cmdSaveAll",
        QStringLiteral("Save New Tune-Up to CAR and FUTURE RUNS (but not to the currently selected "
                       "run)"),
        this);
    cmdSaveAll->setToolTip(QStringLiteral(
        "Keep the new tune-up as the car's: new runs start from it and it becomes the old one"));
    connect(cmdSaveAll, &QPushButton::clicked, this, &frmTuneUp::cmdSaveAll_Click);
    cmdSaveToRun =
        NamedButton("cmdSaveToRun",
                    QStringLiteral("Save New Tune-Up to the CURRENTLY SELECTED RUN ONLY"), this);
    cmdSaveToRun->setToolTip(
        QStringLiteral("Write the new tune-up into the run selected in the main window's list"));
    connect(cmdSaveToRun, &QPushButton::clicked, this, &frmTuneUp::cmdSaveToRun_Click);
    btnHelp = NamedButton("btnHelp", QStringLiteral("Help"), this);
    btnHelp->setToolTip(QStringLiteral("Show the help for the tune-up programs"));
    connect(btnHelp, &QPushButton::clicked, this, [this] { ctx_.main.HelpContents(); });
    auto* bottom = new QHBoxLayout;
    auto* saves = new QVBoxLayout;
    saves->addWidget(cmdSaveAll);
    saves->addWidget(cmdSaveToRun);
    bottom->addLayout(saves);
    bottom->addStretch(1);
    bottom->addWidget(btnHelp, 0, Qt::AlignBottom);
    root->addSpacing(6);
    root->addLayout(bottom);

    ssoptCarbHolleyJet->setChecked(true);
    ssoptGas->setChecked(true);
    checkPalette_ = chkManual[kHolley]->palette();
    for (QLineEdit* b : {txtNewADR, txtPreNewADR, txtFINewADR, txtFIArea}) {
        // After the select-all filter, so that this one runs first.
        b->installEventFilter(this);
    }
    LockBaseFields(true);
    ApplyManualSetup();
    ShowPanels();
}

QGroupBox* frmTuneUp::BuildPanel(Panel panel, const char* name, const QString& caption) {
    auto* frame = new QGroupBox(caption, this);
    frame->setObjectName(QString::fromLatin1(name));
    auto* g = new QGridLayout(frame);
    g->setColumnMinimumWidth(3, 250);

    // Heading: where the old tune-up comes from, and the new one.
    auto* heading = new QHBoxLayout;
    heading->addWidget(new QLabel(QStringLiteral("OLD TUNE-UP from ("), frame));
    auto* list = new QComboBox(frame);
    list->setObjectName(QStringLiteral("cboOldTuneUp"));
    list->addItems({QStringLiteral("CAR as saved"), QStringLiteral("selected RUN"),
                    QStringLiteral("What if?")});
    list->setToolTip(QStringLiteral("Where the old tune-up comes from"));
    cboOldTuneUp[panel] = list;
    heading->addWidget(list);
    heading->addWidget(new QLabel(QStringLiteral(") -->"), frame));
    heading->addStretch(1);
    g->addLayout(heading, 0, 0, 1, 2);
    auto* newHeading = new QLabel(QStringLiteral("NEW TUNE-UP"), frame);
    newHeading->setAlignment(Qt::AlignCenter);
    g->addWidget(newHeading, 0, 2);
    connect(list, &QComboBox::activated, this, [this, panel](int index) {
        for (QComboBox* other : cboOldTuneUp) {
            if (other != cboOldTuneUp[panel]) {
                const QSignalBlocker block(other);
                other->setCurrentIndex(index);
            }
        }
        PreShow(static_cast<OldSource>(index), index == 1 ? runId_ : 0);
    });

    static const std::array<const char*, 3> checks = {"chkHolleyManual", "chkPreManual",
                                                      "chkFIManual"};
    auto* check = new QCheckBox(QStringLiteral("First time or manual setup?"), frame);
    check->setObjectName(QString::fromLatin1(checks[panel]));
    check->setToolTip(
        QStringLiteral("Type the new values yourself; nothing is calculated while this is on"));
    chkManual[panel] = check;
    g->addWidget(check, 1, 1, 1, 3, Qt::AlignLeft);
    connect(check, &QCheckBox::clicked, this, [this, panel](bool on) {
        manual_ = on;
        ApplyManualSetup();
        cmdCalc_click(panel);
    });

    int r = 2;
    const auto row = [&](const QString& text, QWidget* oldBox, QWidget* newBox,
                         QWidget* message = nullptr) {
        QLabel* label = BoxCaption(text, frame);
        g->addWidget(label, r, 0);
        if (oldBox != nullptr) {
            g->addWidget(oldBox, r, 1);
        }
        if (newBox != nullptr) {
            g->addWidget(newBox, r, 2);
        }
        if (message != nullptr) {
            g->addWidget(message, r, 3);
        }
        ++r;
        return label;
    };
    const auto calcOnChange = [this](int p, std::initializer_list<QLineEdit*> boxes) {
        for (QLineEdit* b : boxes) {
            connect(b, &QLineEdit::textChanged, this, [this, p] { cmdCalc_click(p); });
        }
    };
    const QString adr = QStringLiteral("Air Density (ADR)");
    const QString tuneAdjust = QStringLiteral("Tune Adjust (%)");

    switch (panel) {
        case kHolley:
            txtBaseADR = Box("txtBaseADR");
            txtNewADR = Box("txtNewADR");
            txtTuneAdjust = Box("txtTuneAdjust");
            lblHolleyTuneAdjust = MessageLabel("lblHolleyTuneAdjust", frame);
            txtBaseJet = Box("txtBaseJet");
            txtNewJet = Box("txtNewJet", true);
            lblNewJet = MessageLabel("lblNewJet", frame);
            row(adr, txtBaseADR, txtNewADR);
            row(tuneAdjust, nullptr, txtTuneAdjust, lblHolleyTuneAdjust);
            row(QStringLiteral("Jet #"), txtBaseJet, txtNewJet, lblNewJet);
            calcOnChange(kHolley, {txtBaseADR, txtBaseJet, txtTuneAdjust});
            connect(txtNewADR, &QLineEdit::textChanged, this,
                    [this] { NewAdrChanged(txtNewADR, kHolley); });
            break;
        case kPrecision:
            txtPreBaseADR = Box("txtPreBaseADR");
            txtPreNewADR = Box("txtPreNewADR");
            txtPreTuneAdjust = Box("txtPreTuneAdjust");
            lblPreTuneAdjust = MessageLabel("lblPreTuneAdjust", frame);
            txtPreBaseJet = Box("txtPreBaseJet");
            txtPreNewJet = Box("txtPreNewJet", true);
            lblPreNewJet = MessageLabel("lblPreNewJet", frame);
            row(adr, txtPreBaseADR, txtPreNewADR);
            row(tuneAdjust, nullptr, txtPreTuneAdjust, lblPreTuneAdjust);
            row(QStringLiteral("Jet Diameter"), txtPreBaseJet, txtPreNewJet, lblPreNewJet);
            calcOnChange(kPrecision, {txtPreBaseADR, txtPreBaseJet, txtPreTuneAdjust});
            connect(txtPreNewADR, &QLineEdit::textChanged, this,
                    [this] { NewAdrChanged(txtPreNewADR, kPrecision); });
            break;
        case kFuelInjection: {
            txtFIArea = Box("txtFIArea");
            txtNewFIArea = Box("txtNewFIArea");
            cmdNozzleDetail = NamedButton("cmdNozzleDetail", kShowDetail, frame);
            cmdNozzleDetail->setToolTip(
                QStringLiteral("Show or hide the nozzle sizes behind the nozzle areas"));
            connect(cmdNozzleDetail, &QPushButton::clicked, this, [this] {
                detail_ = !detail_;
                ArrangePanels();
            });
            row(QStringLiteral("Total Nozzle Area"), txtFIArea, txtNewFIArea, cmdNozzleDetail);
            g->setAlignment(cmdNozzleDetail, Qt::AlignLeft);

            txtDiameter = Box("txtDiameter", true);
            txtNewDiameter = Box("txtNewDiameter", true);
            nozzleDetail_ << row(QStringLiteral("Total Equivalent Diameter"), txtDiameter,
                                 txtNewDiameter)
                          << txtDiameter << txtNewDiameter;
            cboNozzle = new QComboBox(frame);
            cboNozzle->setObjectName(QStringLiteral("cboNozzle"));
            cboNozzle->setToolTip(QStringLiteral("The nozzle position shown below"));
            for (int p = 1; p <= kNozzlePositions; ++p) {
                cboNozzle->addItem(NozzlePositionCaption(p), p);
            }
            connect(cboNozzle, &QComboBox::currentIndexChanged, this, &frmTuneUp::cboNozzle_Click);
            g->addWidget(cboNozzle, r++, 0, Qt::AlignRight);
            nozzleDetail_ << cboNozzle;
            for (int i = 0; i < kNozzlesPerPosition; ++i) {
                txtNozzle[i] = Box("");
                txtNozzle[i]->setObjectName(ArrayName("txtNozzle", i));
                txtNewNozzle[i] = Box("");
                txtNewNozzle[i]->setObjectName(ArrayName("txtNewNozzle", i));
                QLabel* label = row(QString::number(i + 1) + u':', txtNozzle[i], txtNewNozzle[i]);
                label->setObjectName(ArrayName("lblNozzle", i));
                nozzleDetail_ << label << txtNozzle[i] << txtNewNozzle[i];
                connect(txtNozzle[i], &QLineEdit::textChanged, this,
                        [this, i] { NozzleTyped(false, i); });
                connect(txtNewNozzle[i], &QLineEdit::textChanged, this,
                        [this, i] { NozzleTyped(true, i); });
            }
            txtTypeArea = Box("txtTypeArea", true);
            txtNewTypeArea = Box("txtNewTypeArea", true);
            nozzleDetail_ << row(QStringLiteral("Subtotal Area for this nozzle type:"), txtTypeArea,
                                 txtNewTypeArea)
                          << txtTypeArea << txtNewTypeArea;
            txtTypeDiameter = Box("txtTypeDiameter", true);
            txtNewTypeDiameter = Box("txtNewTypeDiameter", true);
            nozzleDetail_ << row(QStringLiteral("Equivalent Diameter for this nozzle type:"),
                                 txtTypeDiameter, txtNewTypeDiameter)
                          << txtTypeDiameter << txtNewTypeDiameter;

            txtFIBaseADR = Box("txtFIBaseADR");
            txtFINewADR = Box("txtFINewADR");
            row(adr, txtFIBaseADR, txtFINewADR);
            txtFIBaseBoost = Box("txtFIBaseBoost");
            txtFINewBoost = Box("txtFINewBoost");
            row(QStringLiteral("Boost"), txtFIBaseBoost, txtFINewBoost);
            txtFITuneAdjust = Box("txtFITuneAdjust");
            lblFITuneAdjust = MessageLabel("lblFITuneAdjust", frame);
            row(tuneAdjust, nullptr, txtFITuneAdjust, lblFITuneAdjust);
            txtFIBasePill = Box("txtFIBasePill");
            txtFINewPill = Box("txtFINewPill", true);
            lblFINewPill = MessageLabel("lblFINewPill", frame);
            row(QStringLiteral("Main Bypass Jet"), txtFIBasePill, txtFINewPill, lblFINewPill);
            calcOnChange(kFuelInjection, {txtFIArea, txtNewFIArea, txtFIBaseADR, txtFIBaseBoost,
                                          txtFIBasePill, txtFINewBoost, txtFITuneAdjust});
            connect(txtFINewADR, &QLineEdit::textChanged, this,
                    [this] { NewAdrChanged(txtFINewADR, kFuelInjection); });
            break;
        }
    }
    g->setRowStretch(r, 1);
    return frame;
}

// --- Loading -----------------------------------------------------------------------------------

void frmTuneUp::PreShow(OldSource source, qint64 runId) {
    firstLoad_ = true;
    detail_ = false;
    manual_ = false;
    source_ = source;
    runId_ = runId;
    ApplyManualSetup();
    FormReLoad();
}

void frmTuneUp::FormReLoad() {
    LoadFailure failure = LoadFailure::None;
    {
        const BusyCursor busy;
        loadFailed_ = true;
        try {
            cboNozzle->setCurrentIndex(1);
            failure = LoadOldTuneUp();
            ResetNewTuneUp();
            ArrangePanels();
            ApplyManualSetup();
            loadFailed_ = false;
        } catch (const store::DbError&) {
            // loadFailed_ stays set: the activation says so.
        }
        arrangeOnActivate_ = true;
    }
    // The pointer is back to normal before the box.
    if (failure != LoadFailure::None) {
        ctx_.messages.inform(LoadFailureText(failure));
    }
}

LoadFailure frmTuneUp::LoadOldTuneUp() {
    for (QComboBox* list : cboOldTuneUp) {
        const QSignalBlocker block(list);
        list->setCurrentIndex(static_cast<int>(source_));
    }
    if (source_ == OldSource::WhatIf) {
        LockBaseFields(false);
    } else {
        LockBaseFields(true);
        qint64 runId = runId_;
        if (source_ == OldSource::Run && runId == 0 && ctx_.state.view == tools::kRuns) {
            runId = ctx_.main.SelectedKeyText().trimmed().toLongLong();
        }
        const OldTuneUp old = ReadOldTuneUp(ctx_.db, source_, CarId(), runId);
        if (old.failure != LoadFailure::None) {
            return old.failure;
        }
        car_ = old.car;
        // A run's tune-up belongs to the run's car: that is the car a save goes to.
        SetCarId(car_.id);
        setWindowTitle(QStringLiteral("Car #") + car_.number + QStringLiteral(" (") + car_.name +
                       QStringLiteral(") Tune-Up"));
        Put(txtBaseADR, old.base.adr);
        Put(txtBaseJet, old.base.jet);
        Put(txtPreBaseADR, old.base.adr);
        Put(txtPreBaseJet, old.base.jetDiameter);
        Put(txtFIArea, QString());
        Put(txtFIBaseADR, old.base.adr);
        Put(txtFIBasePill, old.base.bypassPill);
        Put(txtFIBaseBoost, old.base.boost);
        oldNozzles_ = old.base.nozzles;
        CalcNozzleArea(false);
        cboNozzle_Click();
    }
    if (firstLoad_ && car_.id != 0) {
        firstLoad_ = false;
        panel_ = car_.carbType == QLatin1String("PRECCARB") ? kPrecision
                 : car_.carbType == QLatin1String("FI")     ? kFuelInjection
                                                            : kHolley;
        const std::array<QRadioButton*, 3> options = {ssoptCarbHolleyJet, ssoptCarbPrecisionJet,
                                                      ssoptFuelInjection};
        options[panel_]->setChecked(true);
        if (car_.fuelType == QLatin1String("METHANOL")) {
            ssoptMethanol->setChecked(true);
        } else if (car_.fuelType == QLatin1String("NITRO")) {
            ssoptNitro->setChecked(true);
        } else {
            ssoptGas->setChecked(true);
        }
    }
    return LoadFailure::None;
}

void frmTuneUp::ResetNewTuneUp() {
    Put(txtNewADR, txtBaseADR->text());
    Put(txtTuneAdjust, QStringLiteral("0"));
    Put(txtNewJet, QString());
    lblHolleyTuneAdjust->clear();
    lblNewJet->clear();

    Put(txtPreNewADR, txtPreBaseADR->text());
    Put(txtPreTuneAdjust, QStringLiteral("0"));
    Put(txtPreNewJet, QString());
    lblPreTuneAdjust->clear();
    lblPreNewJet->clear();

    Put(txtFINewADR, txtFIBaseADR->text());
    Put(txtFITuneAdjust, QStringLiteral("0"));
    Put(txtFINewPill, QString());
    lblFITuneAdjust->clear();
    lblFINewPill->clear();
    newNozzles_ = oldNozzles_;
    FillNozzleBoxes(true);
    Put(txtNewFIArea, txtFIArea->text());
    Put(txtNewDiameter, txtDiameter->text());
    Put(txtFINewBoost, txtFIBaseBoost->text());
}

void frmTuneUp::LockBaseFields(bool lock) {
    for (QLineEdit* b : {txtBaseADR, txtBaseJet, txtPreBaseADR, txtPreBaseJet, txtFIArea,
                         txtNewFIArea, txtFIBaseADR, txtFIBaseBoost, txtFIBasePill}) {
        b->setReadOnly(lock);
        SetBackground(b, lock ? kLockedBase : kEditable);
    }
    // A typed-in tune-up has no nozzles to detail.
    cmdNozzleDetail->setEnabled(lock);
}

void frmTuneUp::SetManualSetup() {
    manual_ = true;
    ApplyManualSetup();
}

void frmTuneUp::ApplyManualSetup() {
    for (QCheckBox* c : chkManual) {
        c->setChecked(manual_);
        QPalette p = checkPalette_;
        if (manual_) {
            p.setColor(QPalette::WindowText, kManualText);
            p.setColor(QPalette::ButtonText, kManualText);
        }
        c->setPalette(p);
    }
    if (manual_) {
        cmdNozzleDetail->setEnabled(false);
    } else {
        cmdNozzleDetail->setEnabled(txtFIArea->isReadOnly());
    }
    for (QLineEdit* b : {txtNewJet, txtPreNewJet, txtFINewPill}) {
        b->setReadOnly(!manual_);
        b->setFocusPolicy(manual_ ? Qt::StrongFocus : Qt::NoFocus);
        SetBackground(b, manual_ ? kEditable : kResult);
    }
}

void frmTuneUp::SelectPanel(Panel panel) {
    panel_ = panel;
    ArrangePanels();
}

void frmTuneUp::ShowPanels() {
    const std::array<QRadioButton*, 3> options = {ssoptCarbHolleyJet, ssoptCarbPrecisionJet,
                                                  ssoptFuelInjection};
    options[panel_]->setChecked(true);
    for (int i = 0; i < 3; ++i) {
        panels_[i]->setVisible(i == panel_);
    }
    for (QWidget* w : nozzleDetail_) {
        w->setVisible(detail_);
    }
    cmdNozzleDetail->setText(detail_ ? kHideDetail : kShowDetail);
}

void frmTuneUp::ArrangePanels() {
    if (panel_ == kFuelInjection && manual_) {
        detail_ = true;
    }
    ShowPanels();
    switch (panel_) {
        case kHolley:
            (manual_ ? txtNewADR : txtTuneAdjust)->setFocus();
            break;
        case kPrecision:
            (manual_ ? txtPreNewADR : txtPreTuneAdjust)->setFocus();
            break;
        case kFuelInjection:
            if (manual_) {
                txtNewNozzle[0]->setFocus();
                cmdNozzleDetail->setEnabled(false);
            } else {
                txtFINewBoost->setFocus();
            }
            break;
    }
    // A car with no base tune-up can't calculate: its new values are to be typed in.
    bool firstTime = false;
    switch (panel_) {
        case kHolley:
            firstTime = !IsNumeric(txtBaseADR->text()) || !IsNumeric(txtBaseJet->text());
            break;
        case kPrecision:
            firstTime = !IsNumeric(txtPreBaseADR->text()) || !IsNumeric(txtPreBaseJet->text());
            break;
        case kFuelInjection:
            firstTime = ValZero(txtFIArea->text()) || !IsNumeric(txtFIArea->text()) ||
                        !IsNumeric(txtFIBaseBoost->text()) || !IsNumeric(txtFIBaseADR->text());
            break;
    }
    if (firstTime) {
        SetManualSetup();
    }
}

// --- Activation and the weather ----------------------------------------------------------------

void frmTuneUp::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        FormActivate();
    }
}

void frmTuneUp::FormActivate() {
    if (loadFailed_) {
        loadFailed_ = false;
        ctx_.messages.inform(kInitFailed);
        close();
        return;
    }
    // The panel takes its focus once after a load; a later return to the window leaves the
    // focus where the racer left it.
    if (arrangeOnActivate_) {
        arrangeOnActivate_ = false;
        ArrangePanels();
    }
    for (QLineEdit* b : {txtNewADR, txtPreNewADR, txtFINewADR}) {
        TakeWeather(b);
    }
}

void frmTuneUp::TakeWeather(QLineEdit* box) {
    const QString weather = ctx_.main.WeatherText(kAirDensity);
    if (box->text().isEmpty() ||
        (box->text() == QLatin1String("0") && weather != QLatin1String("0"))) {
        Put(box, weather);
    }
}

bool frmTuneUp::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        if (watched == txtNewADR || watched == txtPreNewADR || watched == txtFINewADR) {
            TakeWeather(static_cast<QLineEdit*>(watched));
        } else if (watched == txtFIArea && txtFIArea->text() == QLatin1String("0")) {
            txtFIArea->clear();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmTuneUp::NewAdrChanged(QLineEdit* changed, int panel) {
    const QString text = changed->text();
    for (QLineEdit* b : {txtNewADR, txtPreNewADR, txtFINewADR}) {
        if (b != changed) {
            Put(b, text);
        }
    }
    cmdCalc_click(panel);
}

void frmTuneUp::ApplyAirDensity(const QString& airDensityText) {
    Put(txtNewADR, airDensityText);
    Put(txtFINewADR, airDensityText);
    Put(txtPreNewADR, airDensityText);
    cmdCalc_Auto();
}

// --- Calculation -------------------------------------------------------------------------------

void frmTuneUp::ShowFailure(int panel, const QString& reason) {
    const std::array<QLineEdit*, 3> results = {txtNewJet, txtPreNewJet, txtFINewPill};
    const std::array<QLabel*, 3> labels = {lblNewJet, lblPreNewJet, lblFINewPill};
    results[panel]->clear();
    labels[panel]->setText(QStringLiteral("Oops! Can't calculate: ") + reason);
}

bool frmTuneUp::cmdCalc_click(int panel) {
    switch (panel) {
        case kHolley: {
            const HolleyInputs in = HolleyIn();
            if (manual_ || !HolleyReady(in)) {
                if (!manual_) {
                    txtNewJet->clear();
                }
                return true;
            }
            const CalcResult<HolleyResult> r = CalcHolleyJet(in);
            if (!r) {
                ShowFailure(panel, r.error());
                return false;
            }
            lblHolleyTuneAdjust->setText(r->tuneAdjustMessage);
            lblNewJet->setText(r->newJetMessage);
            Put(txtNewJet, r->newJet);
            return true;
        }
        case kPrecision: {
            const PrecisionInputs in = PrecisionIn();
            if (manual_ || !PrecisionReady(in)) {
                if (!manual_) {
                    txtPreNewJet->clear();
                }
                return true;
            }
            const CalcResult<PrecisionResult> r = CalcPrecisionJet(in);
            if (!r) {
                ShowFailure(panel, r.error());
                return false;
            }
            lblPreTuneAdjust->setText(r->tuneAdjustMessage);
            lblPreNewJet->clear();
            Put(txtPreNewJet, r->newJet);
            return true;
        }
        case kFuelInjection: {
            const FuelInjectionInputs in = FuelInjectionIn();
            if (manual_ || !FuelInjectionReady(in)) {
                if (!manual_) {
                    txtFINewPill->clear();
                }
                return true;
            }
            const CalcResult<FuelInjectionResult> r = CalcFuelInjection(in);
            if (!r) {
                ShowFailure(panel, r.error());
                return false;
            }
            lblFITuneAdjust->setText(r->tuneAdjustMessage);
            lblFINewPill->setText(r->newPillMessage);
            Put(txtFINewPill, r->newPill);
            return true;
        }
    }
    return true;
}

HolleyInputs frmTuneUp::HolleyIn() const {
    return {txtBaseADR->text(), txtNewADR->text(), txtBaseJet->text(), txtTuneAdjust->text()};
}

PrecisionInputs frmTuneUp::PrecisionIn() const {
    return {txtPreBaseADR->text(), txtPreNewADR->text(), txtPreBaseJet->text(),
            txtPreTuneAdjust->text()};
}

FuelInjectionInputs frmTuneUp::FuelInjectionIn() const {
    return {txtFIArea->text(),       txtFIBasePill->text(),  txtFIBaseADR->text(),
            txtFINewADR->text(),     txtFIBaseBoost->text(), txtFINewBoost->text(),
            txtFITuneAdjust->text(), txtNewFIArea->text()};
}

QString frmTuneUp::PanelResult(int panel) const {
    switch (panel) {
        case kHolley:
            return QStringLiteral("Jet: ") + txtNewJet->text();
        case kPrecision:
            return QStringLiteral("Jet: ") + txtPreNewJet->text();
        default:
            return QStringLiteral("Pill: ") + txtFINewPill->text();
    }
}

void frmTuneUp::cmdCalc_Auto() {
    if (manual_) {
        return;
    }
    const bool ready = panel_ == kHolley      ? HolleyReady(HolleyIn())
                       : panel_ == kPrecision ? PrecisionReady(PrecisionIn())
                                              : FuelInjectionReady(FuelInjectionIn());
    if (ready && cmdCalc_click(panel_)) {
        ctx_.state.leadin.Add(shell::FormatPageLeadin(car_.number, PanelResult(panel_)));
    }
}

// --- Nozzles -----------------------------------------------------------------------------------

void frmTuneUp::cboNozzle_Click() {
    FillNozzleBoxes(false);
    FillNozzleBoxes(true);
}

void frmTuneUp::FillNozzleBoxes(bool newSide) {
    const int position = cboNozzle->currentData().toInt();
    if (position < 1 || position > kNozzlePositions) {
        return;
    }
    const NozzleTable& table = newSide ? newNozzles_ : oldNozzles_;
    const auto& boxes = newSide ? txtNewNozzle : txtNozzle;
    fillingNozzles_ = true;
    for (int i = 0; i < kNozzlesPerPosition; ++i) {
        Put(boxes[i], table[position - 1][i]);
    }
    fillingNozzles_ = false;
    CalcNozzleArea(newSide);
}

void frmTuneUp::NozzleTyped(bool newSide, int index) {
    if (fillingNozzles_) {
        return;
    }
    const int position = cboNozzle->currentData().toInt();
    if (position < 1 || position > kNozzlePositions) {
        return;
    }
    NozzleTable& table = newSide ? newNozzles_ : oldNozzles_;
    table[position - 1][index] = (newSide ? txtNewNozzle : txtNozzle)[index]->text();
    CalcNozzleArea(newSide);
}

void frmTuneUp::CalcNozzleArea(bool newSide) {
    const CalcResult<NozzleAreas> r = tuneup::CalcNozzleArea(newSide ? newNozzles_ : oldNozzles_,
                                                             cboNozzle->currentData().toInt());
    if (!r) {
        for (QLineEdit* b :
             newSide ? std::array<QLineEdit*, 3>{txtNewTypeArea, txtNewTypeDiameter, txtNewDiameter}
                     : std::array<QLineEdit*, 3>{txtTypeArea, txtTypeDiameter, txtDiameter}) {
            b->clear();
        }
        Put(newSide ? txtNewFIArea : txtFIArea, QString());
        ShowFailure(kFuelInjection, r.error());
        return;
    }
    if (newSide) {
        Put(txtNewTypeArea, r->typeArea);
        Put(txtNewTypeDiameter, r->typeDiameter);
        Put(txtNewFIArea, r->totalArea);
        Put(txtNewDiameter, r->totalDiameter);
    } else {
        Put(txtTypeArea, r->typeArea);
        Put(txtTypeDiameter, r->typeDiameter);
        Put(txtFIArea, r->totalArea);
        Put(txtDiameter, r->totalDiameter);
    }
    cmdCalc_click(kFuelInjection);
}

// --- Saving ------------------------------------------------------------------------------------

NewTuneUp frmTuneUp::CollectNewTuneUp() const {
    NewTuneUp t;
    t.carbType = ssoptCarbPrecisionJet->isChecked() ? QStringLiteral("PRECCARB")
                 : ssoptFuelInjection->isChecked()  ? QStringLiteral("FI")
                                                    : QStringLiteral("CARB");
    t.fuelType = ssoptMethanol->isChecked() ? QStringLiteral("METHANOL")
                 : ssoptNitro->isChecked()  ? QStringLiteral("NITRO")
                                            : QStringLiteral("GAS");
    t.adr = txtNewADR->text();
    t.jet = txtNewJet->text();
    t.jetDiameter = txtPreNewJet->text();
    t.bypassPill = txtFINewPill->text();
    t.boost = txtFINewBoost->text();
    t.nozzleArea = txtNewFIArea->text();
    t.nozzles = newNozzles_;
    return t;
}

void frmTuneUp::AfterSave() {
    // What was saved becomes the old tune-up; the new side stays as it was.
    const LoadFailure failure = LoadOldTuneUp();
    if (failure != LoadFailure::None) {
        ctx_.messages.inform(LoadFailureText(failure));
    }
    manual_ = false;
    ApplyManualSetup();
    cmdCalc_click(panel_);
    for (QLineEdit* b : {txtTuneAdjust, txtPreTuneAdjust, txtFITuneAdjust}) {
        Put(b, QStringLiteral("0"));
    }
}

void frmTuneUp::cmdSaveAll_Click() {
    try {
        if (SaveTuneUpToCar(ctx_.db, CarId(), CollectNewTuneUp()) == SaveOutcome::Missing) {
            ctx_.messages.inform(kCarGone);
            return;
        }
    } catch (const store::DbError&) {
        ctx_.messages.inform(kSaveFailed);
        return;
    }
    Q_EMIT ctx_.events.recordsChanged(QStringLiteral("tblCars"));
    AfterSave();
}

void frmTuneUp::cmdSaveToRun_Click() {
    bool ok = false;
    const qint64 runId =
        ctx_.state.view == tools::kRuns ? ctx_.main.SelectedKeyText().trimmed().toLongLong(&ok) : 0;
    if (!ok || runId == 0) {
        ctx_.messages.inform(kNoRun);
        return;
    }
    try {
        if (SaveTuneUpToRun(ctx_.db, runId, CollectNewTuneUp()) == SaveOutcome::Missing) {
            ctx_.messages.inform(kNoRun);
            return;
        }
    } catch (const store::DbError&) {
        ctx_.messages.inform(kSaveFailed);
        return;
    }
    Q_EMIT ctx_.events.runSaved(runId, false);
    AfterSave();
}

// --- The shared window -------------------------------------------------------------------------

frmTuneUp* SharedTuneUp(const shell::WindowContext& ctx, QWidget* owner) {
    if (owner != nullptr) {
        for (auto* w : owner->findChildren<frmTuneUp*>(Qt::FindDirectChildrenOnly)) {
            if (w->property(kSharedProperty).toBool()) {
                return w;
            }
        }
    }
    auto* w = new frmTuneUp(ctx, frmTuneUp::Unloaded{}, owner);
    w->setProperty(kSharedProperty, true);
    return w;
}

QWidget* ShowRunTuneUp(const shell::WindowContext& ctx, QWidget* owner, qint64 runId) {
    frmTuneUp* w = SharedTuneUp(ctx, owner);
    w->PreShow(OldSource::Run, runId);
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

QWidget* ShowCarTuneUp(const shell::WindowContext& ctx, QWidget* owner, qint64 carId) {
    frmTuneUp* w = SharedTuneUp(ctx, owner);
    w->SetCarId(carId);
    w->PreShow(OldSource::Car, 0);
    w->show();
    w->raise();
    w->activateWindow();
    w->SetManualSetup();
    return w;
}

}  // namespace slipbook::tuneup
