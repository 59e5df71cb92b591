#include "analysis/ui/frmReportCard.h"

#include "common/ui/formhelpers.h"
#include "store/dberror.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>

namespace slipbook::analysis {

namespace {

const QString kScoresHeading = QStringLiteral("How each method did");
const QString kCardHeading = QStringLiteral("Run by run");
const QString kHelp = QStringLiteral(
    "Each run of the car that finished at the distance with weather, beside what each method "
    "would have predicted from the runs before it. Standard: the standard dial-in from the run "
    "before it. Density altitude: the density altitude dial-in from the run before it, along "
    "the car's setup runs made before the run when there are three, else along the three runs "
    "before it. Least squares: the line of ET over density altitude through those setup runs, "
    "else through every run before it. Dial-in: the racer's own. A prediction minus the ET "
    "above 0 was slower than the run; a hit is within 0.01 s or 0.02 s of the ET.");

// The card's grid, telling on a cell why a method has no prediction there.
class CardModel : public TextGridModel {
public:
    using TextGridModel::TextGridModel;
    std::vector<QStringList> reasons;
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::ToolTipRole && index.isValid() &&
            static_cast<size_t>(index.row()) < reasons.size()) {
            const QString why = reasons[index.row()].value(index.column());
            return why.isEmpty() ? QVariant() : QVariant(why);
        }
        return TextGridModel::data(index, role);
    }
};

}  // namespace

frmReportCard::frmReportCard(const shell::WindowContext& ctx, QWidget* parent)
    : FigureWindow(ctx, {QStringLiteral("tblCarSetup"), QStringLiteral("tblCars")}, parent) {
    setObjectName(QStringLiteral("frmReportCard"));
    setWindowTitle(QStringLiteral("Prediction Report Card"));
    lblCar = MakeLabel("lblCar", true);
    lblHelp = MakeLabel("lblHelp", false);
    lblHelp->setText(kHelp +
                     QStringLiteral(" Point at an empty prediction for why there is none."));
    lblSummary = MakeLabel("lblSummary", false);

    auto* options = new QHBoxLayout;
    opt14Mile = new QRadioButton(QStringLiteral("1/4 Mile"), this);
    opt14Mile->setObjectName(QStringLiteral("opt14Mile"));
    opt18Mile = new QRadioButton(QStringLiteral("1/8 Mile"), this);
    opt18Mile->setObjectName(QStringLiteral("opt18Mile"));
    opt14Mile->setChecked(true);
    auto* distance = new QButtonGroup(this);
    distance->addButton(opt14Mile);
    distance->addButton(opt18Mile);
    connect(distance, &QButtonGroup::buttonClicked, this, [this] { Reload(); });
    options->addWidget(opt14Mile);
    options->addWidget(opt18Mile);
    options->addSpacing(24);
    auto* last = new QLabel(QStringLiteral("&Last runs:"), this);
    last->setObjectName(QStringLiteral("lblLastRuns"));
    spnLastRuns = new QSpinBox(this);
    spnLastRuns->setObjectName(QStringLiteral("spnLastRuns"));
    spnLastRuns->setRange(1, 9999);
    spnLastRuns->setValue(10);
    last->setBuddy(spnLastRuns);
    connect(spnLastRuns, &QSpinBox::valueChanged, this, [this] { ShowScores(); });
    options->addWidget(last);
    options->addWidget(spnLastRuns);
    options->addStretch();

    grdScores = MakeGrid("grdScores", new TextGridModel(this));
    grdCard = MakeGrid("grdCard", new CardModel(this));
    QVBoxLayout* l = body();
    l->addWidget(lblCar);
    l->addWidget(lblHelp);
    l->addLayout(options);
    l->addWidget(lblSummary);
    QLabel* scores = MakeLabel("lblScores", true);
    scores->setText(kScoresHeading);
    l->addWidget(scores);
    l->addWidget(grdScores, 2);
    QLabel* runs = MakeLabel("lblRuns", true);
    runs->setText(kCardHeading);
    l->addWidget(runs);
    l->addWidget(grdCard, 3);
    resize(1260, 800);
    Reload();
}

void frmReportCard::Refresh() {
    BusyCursor busy;
    lblCar->setText(QStringLiteral("Car: ") + ctx_.state.car.desc);
    const Distance d = opt18Mile->isChecked() ? Distance::Eighth : Distance::Quarter;
    try {
        card_ = ReadReportCard(ctx_.db, ctx_.state.car.id, d);
        lblSummary->setText(CardSummaryText(card_));
    } catch (const store::DbError& e) {
        card_ = ReportCard();
        card_.distance = d;
        lblSummary->setText(QStringLiteral("The runs could not be read: ") + e.description());
    }
    auto* model = static_cast<CardModel*>(grdCard->model());
    model->reasons = CardReasons(card_);
    Show(grdCard, CardTable(card_));
    grdCard->scrollToBottom();
    ShowScores();
}

void frmReportCard::ShowScores() {
    Show(grdScores, ScoreTable(card_, spnLastRuns->value()));
}

Report frmReportCard::MakeReport() {
    Report r = NewReport(windowTitle());
    r.lines = {lblCar->text() + QStringLiteral("    Distance: ") + DistanceName(card_.distance),
               kHelp, lblSummary->text()};
    r.sections = {
        {kScoresHeading, QString(), static_cast<const TextGridModel*>(grdScores->model())},
        {kCardHeading, QString(), static_cast<const TextGridModel*>(grdCard->model())}};
    return r;
}

}  // namespace slipbook::analysis
