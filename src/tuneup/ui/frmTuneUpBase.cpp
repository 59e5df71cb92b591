#include "tuneup/ui/frmTuneUpBase.h"

#include "common/forms.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "store/recordset.h"
#include "tuneup/basesetup.h"

#include <QButtonGroup>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

namespace slipbook::tuneup {

namespace {

QLineEdit* NumberBox(const QString& name, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000.0000")) + 16);
    return box;
}

QGroupBox* MakePanel(const QString& name, const QString& title, QWidget* parent) {
    auto* panel = new QGroupBox(title, parent);
    panel->setObjectName(name);
    return panel;
}

// Label and box rows, the boxes lined up in one column; a shorter panel keeps its rows at the top.
void LayOutRows(QGroupBox* panel, std::initializer_list<std::pair<const char*, QLineEdit*>> rows) {
    auto* grid = new QGridLayout(panel);
    int row = 0;
    for (const auto& [caption, box] : rows) {
        QLabel* label = new QLabel(QString::fromLatin1(caption), panel);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        ++row;
    }
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(2, 1);
}

}  // namespace

frmTuneUpBase::frmTuneUpBase(const shell::WindowContext& ctx, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent) {
    setObjectName(QStringLiteral("frmTuneUpBase"));
    setWindowTitle(QStringLiteral("Tune Up BASE"));
    OfferOnly({tools::kSave, tools::kSaveandClose, tools::kClose});
    // With so few tools, each has its button.
    toolBar()->addAction(tool(tools::kSave));
    toolBar()->addSeparator();
    toolBar()->addAction(tool(tools::kClose));
    SetToolTips(QStringLiteral("base tune-up"));
    BuildBody();
    // Nothing to type into until a car is shown.
    sspnlMain_->setEnabled(false);
    ShowPanel(Holley);
    // Big enough for every panel without scrolling.
    int height = body_->sizeHint().height() + toolBar()->sizeHint().height();
    if (QWidget* menus = layout()->menuBar()) {
        height += menus->sizeHint().height();
    }
    resize(body_->sizeHint().width() + 4, height + 4);
}

void frmTuneUpBase::BuildBody() {
    auto* body = new QWidget(this);
    body_ = body;
    auto* layout = new QVBoxLayout(body);

    cmdHolley_ = new QPushButton(QStringLiteral("Holley Jet"), body);
    cmdHolley_->setObjectName(QStringLiteral("cmdHolley"));
    cmdPrecision_ = new QPushButton(QStringLiteral("Precision Jet"), body);
    cmdPrecision_->setObjectName(QStringLiteral("cmdPrecision"));
    cmdFuelInjection_ = new QPushButton(QStringLiteral("Fuel Injection"), body);
    cmdFuelInjection_->setObjectName(QStringLiteral("cmdFuelInjection"));
    // The pressed button says which panel shows.
    auto* choice = new QButtonGroup(body);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {cmdHolley_, cmdPrecision_, cmdFuelInjection_}) {
        button->setCheckable(true);
        choice->addButton(button);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    layout->addLayout(buttons);

    auto* frame = new QFrame(body);
    frame->setObjectName(QStringLiteral("sspnlMain"));
    sspnlMain_ = frame;
    auto* frameLayout = new QHBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    panels_ = new QStackedWidget(frame);

    ssfraHolley_ =
        MakePanel(QStringLiteral("ssfraHolley"), QStringLiteral("Holley Jet Base"), panels_);
    txtBaseADR_ = NumberBox(QStringLiteral("txtBaseADR"), ssfraHolley_);
    txtBaseJet_ = NumberBox(QStringLiteral("txtBaseJet"), ssfraHolley_);
    LayOutRows(ssfraHolley_, {{"Base ADR", txtBaseADR_}, {"Base Jet #", txtBaseJet_}});

    ssfraPrecision_ =
        MakePanel(QStringLiteral("ssfraPrecision"), QStringLiteral("Precision Jet Base"), panels_);
    txtPreBaseADR_ = NumberBox(QStringLiteral("txtPreBaseADR"), ssfraPrecision_);
    txtPreBaseJet_ = NumberBox(QStringLiteral("txtPreBaseJet"), ssfraPrecision_);
    LayOutRows(ssfraPrecision_,
               {{"Base ADR", txtPreBaseADR_}, {"Base Jet Diameter", txtPreBaseJet_}});

    ssfraFuelInjection_ = MakePanel(QStringLiteral("ssfraFuelInjection"),
                                    QStringLiteral("Fuel Injection Jet Base"), panels_);
    txtFIBaseADR_ = NumberBox(QStringLiteral("txtFIBaseADR"), ssfraFuelInjection_);
    txtFIBasePill_ = NumberBox(QStringLiteral("txtFIBasePill"), ssfraFuelInjection_);
    txtFIBaseBoost_ = NumberBox(QStringLiteral("txtFIBaseBoost"), ssfraFuelInjection_);
    txtFIArea_ = NumberBox(QStringLiteral("txtFIArea"), ssfraFuelInjection_);
    LayOutRows(ssfraFuelInjection_, {{"Base ADR", txtFIBaseADR_},
                                     {"Base Bypass Pill", txtFIBasePill_},
                                     {"Base Boost", txtFIBaseBoost_},
                                     {"Nozzle Area", txtFIArea_}});

    for (QGroupBox* panel : {ssfraHolley_, ssfraPrecision_, ssfraFuelInjection_}) {
        panels_->addWidget(panel);
    }
    frameLayout->addWidget(panels_);

    auto* row = new QHBoxLayout;
    row->addWidget(frame);
    row->addWidget(BuildRunSetup(body), 0, Qt::AlignTop);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(1);
    SetBody(body);

    connect(cmdHolley_, &QPushButton::clicked, this, [this] {
        ShowPanel(Holley);
        txtBaseADR_->setFocus(Qt::OtherFocusReason);
    });
    connect(cmdPrecision_, &QPushButton::clicked, this, [this] {
        ShowPanel(Precision);
        txtPreBaseADR_->setFocus(Qt::OtherFocusReason);
    });
    connect(cmdFuelInjection_, &QPushButton::clicked, this, [this] {
        ShowPanel(FuelInjection);
        txtFIBaseADR_->setFocus(Qt::OtherFocusReason);
    });

    columnBoxes_ = {txtBaseADR_,    txtBaseJet_,     txtPreBaseJet_,
                    txtFIBasePill_, txtFIBaseBoost_, txtFIArea_};
    for (QLineEdit* box : {txtBaseADR_, txtBaseJet_, txtPreBaseADR_, txtPreBaseJet_, txtFIBaseADR_,
                           txtFIBasePill_, txtFIBaseBoost_, txtFIArea_}) {
        AddField(box);
    }
    for (QLineEdit* adr : {txtBaseADR_, txtPreBaseADR_, txtFIBaseADR_}) {
        connect(adr, &QLineEdit::textChanged, this, [this, adr] { CopyAdr(adr); });
    }
}

// Laid out for the run set-up to come; nothing in it works yet, so it stays greyed.
QWidget* frmTuneUpBase::BuildRunSetup(QWidget* parent) {
    QGroupBox* setup =
        MakePanel(QStringLiteral("ssfraDASetup"), QStringLiteral("Run Setup"), parent);
    auto* grid = new QGridLayout(setup);
    grid->addWidget(new QLabel(QStringLiteral("ET"), setup), 0, 0, Qt::AlignHCenter);
    grid->addWidget(new QLabel(QStringLiteral("Density Alt."), setup), 0, 1, Qt::AlignHCenter);
    for (int i = 1; i <= 3; ++i) {
        grid->addWidget(NumberBox(QStringLiteral("txtET%1").arg(i), setup), i, 0);
        grid->addWidget(NumberBox(QStringLiteral("txtDA%1").arg(i), setup), i, 1);
    }
    auto* edit = new QPushButton(QStringLiteral("Edit Setup"), setup);
    edit->setObjectName(QStringLiteral("sscmdEditSetup"));
    auto* clear = new QPushButton(QStringLiteral("Clear Setup"), setup);
    clear->setObjectName(QStringLiteral("sscmdClearSetup"));
    grid->addWidget(edit, 4, 0);
    grid->addWidget(clear, 4, 1);
    setup->setEnabled(false);
    return setup;
}

bool frmTuneUpBase::ShowCar(qint64 carId) {
    if (!QueryUnload()) {
        return false;
    }
    {
        const BusyCursor busy;
        carId_ = carId;
        carName_.clear();
        SetDataChanged(false);
        OpenRecords();
        if (HasCurrentRow()) {
            ShowCurrent();
        } else {
            New();
        }
    }
    sspnlMain_->setEnabled(true);
    ShowPanel(Holley);
    txtBaseADR_->setFocus(Qt::OtherFocusReason);
    return true;
}

void frmTuneUpBase::ShowPanel(Panel panel) {
    switch (panel) {
        case Holley:
            panels_->setCurrentWidget(ssfraHolley_);
            cmdHolley_->setChecked(true);
            break;
        case Precision:
            panels_->setCurrentWidget(ssfraPrecision_);
            cmdPrecision_->setChecked(true);
            break;
        case FuelInjection:
            panels_->setCurrentWidget(ssfraFuelInjection_);
            cmdFuelInjection_->setChecked(true);
            break;
    }
}

QLineEdit* frmTuneUpBase::ShownAdr() const {
    if (panels_->currentWidget() == ssfraPrecision_) {
        return txtPreBaseADR_;
    }
    if (panels_->currentWidget() == ssfraFuelInjection_) {
        return txtFIBaseADR_;
    }
    return txtBaseADR_;
}

void frmTuneUpBase::CopyAdr(QLineEdit* from) {
    // One ADR for the three programs; the copies' own changes must not copy back.
    if (copyingAdr_) {
        return;
    }
    copyingAdr_ = true;
    for (QLineEdit* adr : {txtBaseADR_, txtPreBaseADR_, txtFIBaseADR_}) {
        if (adr != from && adr->text() != from->text()) {
            adr->setText(from->text());
        }
    }
    copyingAdr_ = false;
}

QString frmTuneUpBase::RecordsetSql() const {
    return QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = ") + QString::number(carId_);
}

void frmTuneUpBase::RecordToFields(const store::Recordset& rs) {
    carName_ = rs.Value(QStringLiteral("sCar_nm")).toString();
    const auto columns = BaseColumns();
    for (size_t i = 0; i < columns.size(); ++i) {
        columnBoxes_[i]->setText(rs.Value(QString::fromLatin1(columns[i].column)).toString());
    }
}

void frmTuneUpBase::FieldsToRecord(store::Recordset& rs) {
    if (RecordAdd()) {
        rs.SetValue(IdColumn(), carId_);
    }
    const auto columns = BaseColumns();
    for (size_t i = 0; i < columns.size(); ++i) {
        rs.SetValue(QString::fromLatin1(columns[i].column), TextOrNull(columnBoxes_[i]->text()));
    }
}

void frmTuneUpBase::ClearFields() {
    for (QLineEdit* box : columnBoxes_) {
        box->clear();
    }
}

std::vector<ValidationStep> frmTuneUpBase::ValidationSteps() const {
    std::vector<ValidationStep> steps;
    const auto columns = BaseColumns();
    for (size_t i = 0; i < columns.size(); ++i) {
        // The ADR is named where the racer sees it.
        const QLineEdit* box = i == 0 ? ShownAdr() : columnBoxes_[i];
        steps.push_back({[box] { return !BaseValueAccepted(box->text()); },
                         QString::fromLatin1(columns[i].message), box->objectName()});
    }
    return steps;
}

void frmTuneUpBase::RevealField(QWidget* field) {
    if (ssfraHolley_->isAncestorOf(field)) {
        ShowPanel(Holley);
    } else if (ssfraPrecision_->isAncestorOf(field)) {
        ShowPanel(Precision);
    } else if (ssfraFuelInjection_->isAncestorOf(field)) {
        ShowPanel(FuelInjection);
    }
}

bool frmTuneUpBase::Save(const QString& toolId) {
    if (carId_ == 0) {
        return false;
    }
    if (!RecordAdd()) {
        // The car window may have deleted the car since it was shown here; writing to its row
        // would write nothing and say it had.
        auto rs = db_.OpenRecordset(QStringLiteral("SELECT lCar_id FROM tblCars WHERE lCar_id = ") +
                                        QString::number(carId_),
                                    store::RecordsetType::Snapshot);
        if (rs->Eof()) {
            messages_.inform(QStringLiteral("The car \"") + carName_ +
                                 QStringLiteral("\" is no longer in the logbook, so its base "
                                                "tune-up can't be saved."),
                             QStringLiteral("Tune Up BASE"), MsgIcon::Critical);
            return false;
        }
    }
    return RecordWindow::Save(toolId);
}

QString frmTuneUpBase::Caption() const {
    return QStringLiteral("Base: ") + carName_;
}

}  // namespace slipbook::tuneup
