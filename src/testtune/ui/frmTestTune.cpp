#include "testtune/ui/frmTestTune.h"

#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "store/dberror.h"
#include "testtune/calculators.h"
#include "testtune/runfigures.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <optional>

namespace slipbook::testtune {

namespace {

const QString kLoadFailed =
    QStringLiteral("You must enter run information for this car before continuing");

constexpr int kStd = 0;
constexpr int kIt = 1;
constexpr int kEhp = 2;
constexpr int kEet = 3;

QGroupBox* OptionFrame(const char* name, const QString& caption, QRadioButton* first,
                       QRadioButton* second, QWidget* parent) {
    auto* frame = new QGroupBox(caption, parent);
    frame->setObjectName(QString::fromLatin1(name));
    auto* l = new QVBoxLayout(frame);
    first->setParent(frame);
    second->setParent(frame);
    l->addWidget(first);
    l->addWidget(second);
    return frame;
}

}  // namespace

frmTestTune::frmTestTune(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx) {
    setObjectName(QStringLiteral("frmTestTune"));
    setWindowTitle(QStringLiteral("Test & Tune Programs - Quadrumex"));
    BuildLayout();
    // Form_Load.
    opt14Mile->setChecked(true);
    LoadFromRun(true);
}

QLineEdit* frmTestTune::Box(const char* name, bool result) {
    QLineEdit* box = NamedBox(name, result, this);
    box->setMaximumWidth(100);
    return box;
}

void frmTestTune::BuildLayout() {
    auto* root = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    const std::array<std::pair<const char*, const char*>, 4> tabs = {{{"cmdStdDay", "Std. Day"},
                                                                      {"cmdIntTime", "Int.Time"},
                                                                      {"cmdEstHP", "Est. HP"},
                                                                      {"cmdEstET", "Est. E.T."}}};
    for (int i = 0; i < 4; ++i) {
        tabs_[i] = NamedButton(tabs[i].first, QString::fromLatin1(tabs[i].second), this);
        tabs_[i]->setCheckable(true);
        bar->addWidget(tabs_[i]);
        connect(tabs_[i], &QPushButton::clicked, this, [this, i] { Show(Program(i)); });
    }
    bar->addStretch();
    root->addLayout(bar);

    auto* sspnlMain = new QWidget(this);
    sspnlMain->setObjectName(QStringLiteral("sspnlMain"));
    auto* stack = new QGridLayout(sspnlMain);
    root->addWidget(sspnlMain, 1);

    const auto frame = [&](int index, const char* name, const QString& caption) {
        auto* f = new QGroupBox(caption, sspnlMain);
        f->setObjectName(QString::fromLatin1(name));
        // All four lie on one another, each centred in the panel.
        stack->addWidget(f, 0, 0, Qt::AlignCenter);
        frames_[index] = f;
        reasons_[index] =
            ReasonLabel(QStringLiteral("lblWhyStopped%1").arg(index).toLatin1().constData(), f);
        cmdCalc[index] = NamedButton(QStringLiteral("cmdCalc%1").arg(index).toLatin1().constData(),
                                     QStringLiteral("Calculate"), f);
        cmdCalc[index]->setEnabled(false);
        return f;
    };
    const auto row = [](QGridLayout* g, int r, int c, const QString& caption, QWidget* box,
                        QWidget* parent) {
        QLabel* label = BoxCaption(caption, parent);
        g->addWidget(label, r, c);
        g->addWidget(box, r, c + 1);
        return label;
    };

    // Standard day correction.
    {
        QGroupBox* f =
            frame(kStd, "ssfraStdDay", QStringLiteral("Standard Day Correction Program"));
        auto* g = new QGridLayout(f);
        txtStdCorr = Box("txtStdCorr");
        txtStdET = Box("txtStdET");
        txtStdMPH = Box("txtStdMPH");
        txtStdStdET = Box("txtStdStdET", true);
        txtStdStdMPH = Box("txtStdStdMPH", true);
        row(g, 0, 0, QStringLiteral("Corr:"), txtStdCorr, f);
        row(g, 1, 0, QStringLiteral("E.T."), txtStdET, f);
        row(g, 2, 0, QStringLiteral("MPH"), txtStdMPH, f);
        row(g, 1, 2, QStringLiteral("Std. E.T."), txtStdStdET, f);
        row(g, 2, 2, QStringLiteral("Std. MPH"), txtStdStdMPH, f);
        optGas2 = NamedOption("optGas2", QStringLiteral("Gas"), f);
        optMethanol2 = NamedOption("optMethanol2", QStringLiteral("Methanol"), f);
        g->addWidget(
            OptionFrame("ssfraFuel2", QStringLiteral("Fuel Type"), optGas2, optMethanol2, f), 0, 4,
            3, 1);
        g->addWidget(cmdCalc[kStd], 3, 4);
        g->addWidget(reasons_[kStd], 4, 0, 1, 5);
        for (QLineEdit* b : {txtStdCorr, txtStdET, txtStdMPH}) {
            connect(b, &QLineEdit::textChanged, this, &frmTestTune::StandardDayChanged);
        }
        for (QRadioButton* o : {optGas2, optMethanol2}) {
            connect(o, &QRadioButton::clicked, this, [this] { FuelClicked(true); });
        }
    }

    // Intermediate time analysis.
    {
        QGroupBox* f =
            frame(kIt, "ssfraIntTimeAnalysis", QStringLiteral("Intermediate Time Analysis"));
        auto* g = new QGridLayout(f);
        txtITCorr = Box("txtITCorr");
        row(g, 0, 0, QStringLiteral("Corr:"), txtITCorr, f);
        const std::array<std::pair<const char*, const char*>, 5> points = {
            {{"60", "60' E.T."},
             {"330", "330' E.T."},
             {"660", "660' E.T."},
             {"1000", "1000' E.T."},
             {"1320", "1320' E.T."}}};
        for (int i = 0; i < kTimingPoints; ++i) {
            const QString name = QStringLiteral("txtIT") + QString::fromLatin1(points[i].first);
            txtIT[i] = Box(name.toLatin1().constData());
            txtITResult[i] = Box((name + QStringLiteral("Result")).toLatin1().constData(), true);
            row(g, i + 1, 0, QString::fromLatin1(points[i].second), txtIT[i], f);
            g->addWidget(txtITResult[i], i + 1, 2);
            connect(txtIT[i], &QLineEdit::textChanged, this, &frmTestTune::IntermediateChanged);
        }
        connect(txtITCorr, &QLineEdit::textChanged, this, &frmTestTune::IntermediateChanged);
        optGas = NamedOption("optGas", QStringLiteral("Gas"), f);
        optMethanol = NamedOption("optMethanol", QStringLiteral("Methanol"), f);
        g->addWidget(OptionFrame("ssfraFuel", QStringLiteral("Fuel Type"), optGas, optMethanol, f),
                     0, 3, 3, 1);
        g->addWidget(cmdCalc[kIt], 5, 3);
        g->addWidget(reasons_[kIt], 6, 0, 1, 4);
        for (QRadioButton* o : {optGas, optMethanol}) {
            connect(o, &QRadioButton::clicked, this, [this] { FuelClicked(false); });
        }
    }

    // Estimated horsepower.
    {
        QGroupBox* f = frame(kEhp, "ssfraEstHP", QStringLiteral("Estimated Horsepower"));
        auto* g = new QGridLayout(f);
        txtEHPET = Box("txtEHPET");
        txtEHP14MPH = Box("txtEHP14MPH");
        txtEHPWeight = Box("txtEHPWeight");
        txtEHPCorr = Box("txtEHPCorr");
        txtEHPEstimatedHP = Box("txtEHPEstimatedHP", true);
        txtEHPCorrectedHP = Box("txtEHPCorrectedHP", true);
        txtEHPMPHHP = Box("txtEHPMPHHP", true);
        row(g, 0, 0, QStringLiteral("E.T."), txtEHPET, f);
        lblEHP14MPH = row(g, 1, 0, QStringLiteral("1/4 mi. MPH"), txtEHP14MPH, f);
        row(g, 2, 0, QStringLiteral("Weight"), txtEHPWeight, f);
        row(g, 3, 0, QStringLiteral("Corr:"), txtEHPCorr, f);
        row(g, 0, 2, QStringLiteral("Estimated HP"), txtEHPEstimatedHP, f);
        row(g, 1, 2, QStringLiteral("Corrected HP"), txtEHPCorrectedHP, f);
        lblEHPMPHHP = row(g, 2, 2, QStringLiteral("(1/4) MPH HP"), txtEHPMPHHP, f);
        opt14Mile = NamedOption("opt14Mile", QStringLiteral("1/4 Mile"), f);
        opt18Mile = NamedOption("opt18Mile", QStringLiteral("1/8 Mile"), f);
        g->addWidget(OptionFrame("SSFrame2", QString(), opt14Mile, opt18Mile, f), 0, 4, 3, 1);
        g->addWidget(cmdCalc[kEhp], 3, 4);
        g->addWidget(reasons_[kEhp], 4, 0, 1, 5);
        for (QLineEdit* b : {txtEHPET, txtEHP14MPH, txtEHPWeight, txtEHPCorr}) {
            connect(b, &QLineEdit::textChanged, this, &frmTestTune::EstimatedHpChanged);
        }
        for (QRadioButton* o : {opt14Mile, opt18Mile}) {
            connect(o, &QRadioButton::clicked, this, &frmTestTune::DistanceClicked);
        }
    }

    // Estimated ET.
    {
        QGroupBox* f = frame(kEet, "ssfraEstET", QStringLiteral("Estimated ET"));
        auto* g = new QGridLayout(f);
        txtEETEstHP = Box("txtEETEstHP");
        txtEETEstWeight = Box("txtEETEstWeight");
        txtEET14MileEt = Box("txtEET14MileEt", true);
        txtEET14MileMPH = Box("txtEET14MileMPH", true);
        txtEET18MileEt = Box("txtEET18MileEt", true);
        txtEET18MileMPH = Box("txtEET18MileMPH", true);
        row(g, 0, 0, QStringLiteral("Est. HP"), txtEETEstHP, f);
        row(g, 1, 0, QStringLiteral("Est. Weight"), txtEETEstWeight, f);
        row(g, 0, 2, QStringLiteral("1/4 Mile ET"), txtEET14MileEt, f);
        row(g, 1, 2, QStringLiteral("1/4 Mile MPH"), txtEET14MileMPH, f);
        row(g, 2, 2, QStringLiteral("1/8 Mile ET"), txtEET18MileEt, f);
        row(g, 3, 2, QStringLiteral("1/8 Mile MPH"), txtEET18MileMPH, f);
        g->addWidget(cmdCalc[kEet], 3, 0, 1, 2);
        g->addWidget(reasons_[kEet], 4, 0, 1, 4);
        for (QLineEdit* b : {txtEETEstHP, txtEETEstWeight}) {
            connect(b, &QLineEdit::textChanged, this, &frmTestTune::EstimatedEtChanged);
        }
    }

    connect(cmdCalc[kStd], &QPushButton::clicked, this, &frmTestTune::CalcStandardDay);
    connect(cmdCalc[kIt], &QPushButton::clicked, this, &frmTestTune::CalcIntermediateTimes);
    connect(cmdCalc[kEhp], &QPushButton::clicked, this, &frmTestTune::CalcEstimatedHP);
    connect(cmdCalc[kEet], &QPushButton::clicked, this, &frmTestTune::CalcEstimatedET);
    Show(Program::StandardDay);
}

void frmTestTune::Show(Program program) {
    showing_ = program;
    const int shown = static_cast<int>(program);
    for (int i = 0; i < 4; ++i) {
        frames_[i]->setVisible(i == shown);
        tabs_[i]->setChecked(i == shown);
    }
}

bool frmTestTune::LoadFromRun(bool firstTime) {
    std::optional<BusyCursor> busy;
    if (firstTime) {
        busy.emplace();
    }
    loadFailed_ = true;
    ApplyDistance();
    try {
        const std::optional<CarFigures> car = ReadCarFigures(ctx_.db, ctx_.state.car.id);
        if (car) {
            optGas->setChecked(!car->methanol);
            optMethanol->setChecked(car->methanol);
            optGas2->setChecked(!car->methanol);
            optMethanol2->setChecked(car->methanol);
        }
        // With no run picked there is nothing to test: the activation says so.
        const QString key =
            ctx_.state.view == tools::kRuns ? ctx_.main.SelectedKeyText().trimmed() : QString();
        bool ok = false;
        const qint64 runId = key.toLongLong(&ok);
        if (!ok) {
            return false;
        }
        if (const std::optional<RunFigures> run = ReadRunFigures(ctx_.db, runId)) {
            const QString weight = car ? car->weight : QStringLiteral(" ");
            txtStdCorr->setText(run->corr);
            txtStdET->setText(run->quarterEt);
            txtStdMPH->setText(run->quarterMph);

            txtITCorr->setText(run->corr);
            const std::array<const QString*, 5> times = {
                &run->sixtyEt, &run->e330Et, &run->eighthEt, &run->e1000Et, &run->quarterEt};
            for (int i = 0; i < kTimingPoints; ++i) {
                txtIT[i]->setText(*times[i]);
            }

            txtEETEstHP->setText(QStringLiteral("725"));
            txtEETEstWeight->setText(weight);
            for (QLineEdit* b :
                 {txtEET14MileEt, txtEET14MileMPH, txtEET18MileEt, txtEET18MileMPH}) {
                b->clear();
            }

            txtEHPET->setText(quarterMile_ ? run->quarterEt : run->eighthEt);
            txtEHP14MPH->setText(quarterMile_ ? run->quarterMph : QString());
            txtEHPWeight->setText(weight);
            txtEHPCorr->setText(run->corr);
            for (QLineEdit* b : {txtEHPEstimatedHP, txtEHPCorrectedHP, txtEHPMPHHP}) {
                b->clear();
            }
        }
        if (firstTime) {
            Show(Program::StandardDay);
        }
        RefreshCalculate();
        loadFailed_ = false;
    } catch (const store::DbError&) {
        // loadFailed_ stays set: the activation says so and closes the window.
    }
    return !loadFailed_;
}

void frmTestTune::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && loadFailed_) {
        loadFailed_ = false;
        ctx_.messages.inform(kLoadFailed);
        close();
    }
}

void frmTestTune::ApplyDistance() {
    quarterMile_ = opt14Mile->isChecked();
    for (QWidget* w :
         std::initializer_list<QWidget*>{lblEHP14MPH, txtEHP14MPH, lblEHPMPHHP, txtEHPMPHHP}) {
        w->setEnabled(quarterMile_);
    }
}

void frmTestTune::DistanceClicked() {
    // A click on the option already on changes nothing, and typed figures stay.
    if (opt14Mile->isChecked() == quarterMile_) {
        return;
    }
    LoadFromRun(false);
    for (QLineEdit* b : {txtEHPEstimatedHP, txtEHPCorrectedHP, txtEHPMPHHP}) {
        b->clear();
    }
    cmdCalc[kEhp]->setEnabled(
        IsEstimatedHPEnabled({txtEHPET->text(), txtEHP14MPH->text(), txtEHPWeight->text(),
                              txtEHPCorr->text(), opt18Mile->isChecked()}));
}

void frmTestTune::FuelClicked(bool standardDayPair) {
    // The two pairs are one choice: whichever is clicked, the other follows and both programs'
    // results go, as the fuel changed under both.
    const bool methanol = standardDayPair ? optMethanol2->isChecked() : optMethanol->isChecked();
    optGas->setChecked(!methanol);
    optMethanol->setChecked(methanol);
    optGas2->setChecked(!methanol);
    optMethanol2->setChecked(methanol);
    StandardDayChanged();
    IntermediateChanged();
}

void frmTestTune::StandardDayChanged() {
    txtStdStdET->clear();
    txtStdStdMPH->clear();
    reasons_[kStd]->clear();
    cmdCalc[kStd]->setEnabled(
        IsStandardDayEnabled({txtStdCorr->text(), txtStdET->text(), txtStdMPH->text()}));
}

void frmTestTune::IntermediateChanged() {
    for (QLineEdit* b : txtITResult) {
        b->clear();
    }
    reasons_[kIt]->clear();
    IntermediateInputs in;
    in.corr = txtITCorr->text();
    for (int i = 0; i < kTimingPoints; ++i) {
        in.times[i] = txtIT[i]->text();
    }
    cmdCalc[kIt]->setEnabled(IsIntermediateEnabled(in));
}

void frmTestTune::EstimatedHpChanged() {
    for (QLineEdit* b : {txtEHPEstimatedHP, txtEHPCorrectedHP, txtEHPMPHHP}) {
        b->clear();
    }
    reasons_[kEhp]->clear();
    cmdCalc[kEhp]->setEnabled(
        IsEstimatedHPEnabled({txtEHPET->text(), txtEHP14MPH->text(), txtEHPWeight->text(),
                              txtEHPCorr->text(), opt18Mile->isChecked()}));
}

void frmTestTune::EstimatedEtChanged() {
    for (QLineEdit* b : {txtEET14MileEt, txtEET14MileMPH, txtEET18MileEt, txtEET18MileMPH}) {
        b->clear();
    }
    reasons_[kEet]->clear();
    cmdCalc[kEet]->setEnabled(IsEstimatedETEnabled({txtEETEstHP->text(), txtEETEstWeight->text()}));
}

void frmTestTune::RefreshCalculate() {
    StandardDayChanged();
    IntermediateChanged();
    EstimatedHpChanged();
    EstimatedEtChanged();
}

void frmTestTune::CalcStandardDay() {
    const auto r = testtune::CalcStandardDay(
        {txtStdCorr->text(), txtStdET->text(), txtStdMPH->text()}, optMethanol2->isChecked());
    reasons_[kStd]->setText(r ? QString() : r.error());
    if (r) {
        txtStdStdET->setText(r->et);
        txtStdStdMPH->setText(r->mph);
    }
}

void frmTestTune::CalcIntermediateTimes() {
    IntermediateInputs in;
    in.corr = txtITCorr->text();
    for (int i = 0; i < kTimingPoints; ++i) {
        in.times[i] = txtIT[i]->text();
    }
    const IntermediateResult r = testtune::CalcIntermediateTimes(in, optMethanol->isChecked());
    // Each point is written as it is done; one that fails leaves the ones before it.
    for (int i = 0; i < kTimingPoints && !r.times[i].isEmpty(); ++i) {
        txtITResult[i]->setText(r.times[i]);
    }
    reasons_[kIt]->setText(r.error);
}

void frmTestTune::CalcEstimatedHP() {
    const auto r =
        testtune::CalcEstimatedHP({txtEHPET->text(), txtEHP14MPH->text(), txtEHPWeight->text(),
                                   txtEHPCorr->text(), opt18Mile->isChecked()});
    reasons_[kEhp]->setText(r ? QString() : r.error());
    if (r) {
        txtEHPEstimatedHP->setText(r->estimatedHp);
        txtEHPCorrectedHP->setText(r->correctedHp);
        if (opt14Mile->isChecked()) {
            txtEHPMPHHP->setText(r->mphHp);
        }
    }
}

void frmTestTune::CalcEstimatedET() {
    const EstimatedEtResult r =
        testtune::CalcEstimatedET({txtEETEstHP->text(), txtEETEstWeight->text()});
    const std::array<std::pair<QLineEdit*, const QString*>, 4> written = {
        {{txtEET14MileEt, &r.quarterEt},
         {txtEET18MileEt, &r.eighthEt},
         {txtEET14MileMPH, &r.quarterMph},
         {txtEET18MileMPH, &r.eighthMph}}};
    for (const auto& [box, text] : written) {
        if (!text->isEmpty()) {
            box->setText(*text);
        }
    }
    reasons_[kEet]->setText(r.error);
}

}  // namespace slipbook::testtune
