#include "run/ui/frmRun.h"

#include "common/forms.h"
#include "common/numbers.h"
#include "common/ui/formhelpers.h"
#include "run/intervals.h"
#include "run/validation.h"
#include "store/access.h"
#include "store/recordset.h"
#include "weather/station.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabWidget>

namespace slipbook::run {

namespace {

const QString kPointsFormat = QStringLiteral("###,###,##0");

int IntervalOf(const QString& control) {
    for (int i = 0; i < static_cast<int>(Intervals().size()); ++i) {
        if (control == QLatin1String(Intervals()[i].control)) {
            return i;
        }
    }
    return 0;
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Fields

QString frmRun::FieldText(const RunField& f) const {
    if (f.kind == FieldKind::Hidden) {
        return hidden_.value(f.column);
    }
    QWidget* control = Control(f.control);
    if (auto* box = qobject_cast<QLineEdit*>(control)) {
        // A masked box reads as it shows, blanks included.
        return box->inputMask().isEmpty() ? box->text() : box->displayText();
    }
    if (auto* notes = qobject_cast<QPlainTextEdit*>(control)) {
        return notes->toPlainText();
    }
    return QString();
}

void frmRun::SetFieldText(const RunField& f, const QString& text) {
    if (f.kind == FieldKind::Hidden) {
        hidden_.insert(f.column, text);
        return;
    }
    QWidget* control = Control(f.control);
    if (auto* box = qobject_cast<QLineEdit*>(control)) {
        box->setText(text);
    } else if (auto* notes = qobject_cast<QPlainTextEdit*>(control)) {
        notes->setPlainText(text);
    }
}

RunValues frmRun::Values() const {
    RunValues v;
    v.texts.reserve(static_cast<qsizetype>(RunFields().size()));
    for (const RunField& f : RunFields()) {
        switch (f.kind) {
            case FieldKind::IdList:
                v.ids.insert(f.column, SelectedId(static_cast<QComboBox*>(Control(f.control))));
                break;
            case FieldKind::Check:
                v.fullRun = chkFullRun_->isChecked();
                break;
            case FieldKind::Lane:
                v.leftLane = optLeft_->isChecked();
                break;
            default:
                v.texts.insert(f.column, FieldText(f));
                break;
        }
    }
    return v;
}

void frmRun::SetLane(const QString& lane) {
    // Neither "L" nor "R" leaves both options off.
    auto* group = optLeft_->group();
    group->setExclusive(false);
    optLeft_->setChecked(lane == u"L");
    optRight_->setChecked(lane == u"R");
    group->setExclusive(true);
}

void frmRun::RecomputeIntervals(const std::vector<int>& which) {
    for (int i : which) {
        const IntervalDef& def = Intervals()[i];
        const auto text =
            IntervalText(FieldText(*FieldByControl(QString::fromLatin1(def.later))),
                         FieldText(*FieldByControl(QString::fromLatin1(def.earlier))));
        if (text) {
            static_cast<QLineEdit*>(Control(QString::fromLatin1(def.control)))->setText(*text);
        }
    }
}

void frmRun::RunTabsRefresh() {
    const QVariant car = SelectedId(cboCars_);
    if (car.isNull()) {
        return;
    }
    const CarTypes types = ReadCarTypes(db_, car.toLongLong(), messages_);
    sstabSetup_->setTabVisible(kTabCarb, !types.fuelInjected());
    sstabSetup_->setTabVisible(kTabFuel, types.fuelInjected());
    lblNitro_->setVisible(types.nitro());
    Control(QStringLiteral("txtNitro"))->setVisible(types.nitro());
}

void frmRun::RunCustomNamesLoad() {
    const CustomNames names = ReadCustomNames(db_);
    for (int n = 0; n < 6; ++n) {
        customNames_[n]->setText(names[n]);
        customCaptions_[n]->setText(customNames_[n]->text());
    }
}

void frmRun::RecordToFields(const store::Recordset& rs) {
    if (keepFields_) {
        return;
    }
    for (const RunField& f : RunFields()) {
        const QVariant value = f.load == LoadRule::None ? QVariant() : rs.Value(f.column);
        switch (f.load) {
            case LoadRule::None:
                // The intervals follow the marks in the table: each is worked out from them.
                if (f.kind == FieldKind::Split) {
                    RecomputeIntervals({IntervalOf(f.control)});
                }
                break;
            case LoadRule::List:
                SelectComboId(static_cast<QComboBox*>(Control(f.control)), value);
                break;
            case LoadRule::Check:
                chkFullRun_->setChecked(value.isValid() && value.toLongLong() != 0);
                break;
            case LoadRule::Lane:
                SetLane(value.toString());
                break;
            default:
                SetFieldText(f, LoadText(f, value));
                break;
        }
    }
    RunTabsRefresh();
    RunCustomNamesLoad();
}

void frmRun::ClearFields() {
    const QDateTime now = clock_.Now();
    for (const RunField& f : RunFields()) {
        switch (f.newRun) {
            case NewRun::CurrentEvent: {
                const qint64 event = state_.event.id;
                SelectComboId(cboEvents_, event != 0 ? QVariant(event) : QVariant());
                cboEvents_->setEnabled(event == 0);
                cboEvents_->setProperty("Locked", event != 0);
                break;
            }
            case NewRun::CurrentCar:
                SelectComboId(cboCars_, state_.car.id);
                break;
            case NewRun::NextNumber:
                txtRunNumber_->setText(
                    QString::number(RunNextNumber(db_, state_.event.id, state_.car.id)));
                break;
            case NewRun::Today:
                mebRun_dt_->setText(now.date().toString(QStringLiteral("MM/dd/yyyy")));
                break;
            case NewRun::Now:
                SetFieldText(f, now.time().toString(QStringLiteral("hh:mm AP")));
                break;
            case NewRun::FirstEntry: {
                auto* combo = static_cast<QComboBox*>(Control(f.control));
                SelectComboId(combo, combo->count() > 0 ? combo->itemData(0) : QVariant());
                break;
            }
            case NewRun::On:
                if (f.kind == FieldKind::Lane) {
                    SetLane(QStringLiteral("L"));
                } else {
                    chkFullRun_->setChecked(true);
                }
                break;
            case NewRun::Text:
                SetFieldText(f, f.newText);
                break;
        }
    }
    RunTabsRefresh();
    RunCustomNamesLoad();
}

void frmRun::RunLoadCarTuneUp() {
    const QVariant car = SelectedId(cboCars_);
    if (car.isNull()) {
        return;
    }
    const auto tune = CarTuneUp(db_, car.toLongLong());
    if (!tune) {
        return;
    }
    // Filled as a show is: a carried-forward run is not yet changed.
    SetShowMode(true);
    for (const RunField& f : RunFields()) {
        if (f.fromCar) {
            const QString text = tune->value(f.column);
            // A blank carried note is none: the pane shows its hint.
            SetFieldText(f,
                         f.kind == FieldKind::Notes && text.trimmed().isEmpty() ? QString() : text);
        }
    }
    RunTabsRefresh();
    SetShowMode(false);
}

QWidget* frmRun::NewFocusField() const {
    return cboEvents_->isEnabled() ? static_cast<QWidget*>(cboEvents_)
                                   : static_cast<QWidget*>(txtRunNumber_);
}

QString frmRun::RecordName() const {
    return mebRun_dt_->displayText();
}

QString frmRun::Caption() const {
    return windowTitle().isEmpty() ? QStringLiteral("Run") : windowTitle();
}

QString frmRun::RecordsetSql() const {
    if (savedRunId_ != 0) {
        return QStringLiteral("SELECT * FROM tblRuns WHERE lRun_id = ") +
               QString::number(savedRunId_);
    }
    return RunRecordsSql({state_.filter.active, state_.filter.sql, state_.event.id}, openRunId_);
}

void frmRun::FillLists() {
    ListFillFromTable(cboEvents_, QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"),
                      QStringLiteral("tblEvents"), QString(), db_);
    ListFillFromTable(cboCars_, QStringLiteral("lCar_id"), QStringLiteral("sCar_nm"),
                      QStringLiteral("tblCars"), QString(), db_);
    ListFillFromTable(cboOpponents_, QStringLiteral("lOpponent_id"), QStringLiteral("sOpponent_nm"),
                      QStringLiteral("tblOpponent"), QStringLiteral("<None>"), db_);
    ListFillFromTable(cboRunTypes_, QStringLiteral("lRunType_id"), QStringLiteral("sRunType_nm"),
                      QStringLiteral("tblRunType"), QString(), db_);
}

// ---------------------------------------------------------------------------------------------
// Field handlers

bool frmRun::eventFilter(QObject* watched, QEvent* event) {
    if (IsFieldExit(event) && !inLeave_) {
        if (auto* field = qobject_cast<QWidget*>(watched);
            field != nullptr && controls_.contains(field->objectName())) {
            inLeave_ = true;
            FieldLeft(field);
            inLeave_ = false;
        }
    }
    return RecordWindow::eventFilter(watched, event);
}

void frmRun::FieldLeft(QWidget* field) {
    const QString name = field->objectName();
    if (field == txtTemp_ || field == txtHumidity_ || field == txtBarometricPressure_ ||
        field == txtPressureAltitude_) {
        WeatherLeft(static_cast<QLineEdit*>(field));
    } else if (field == txtPoints_) {
        // Grouping is kept: a shown "1,234" stays 1234 rather than becoming 1.
        const QString text = txtPoints_->text();
        const double value = StrictNumber(text).value_or(LeadingNumber(text).value_or(0));
        if (value != 0) {
            txtPoints_->setText(FormatNumber(value, kPointsFormat));
        }
    } else if (field == txtRunNumber_) {
        if (LeadingNumber(txtRunNumber_->text()).value_or(0) <= 0) {
            const QVariant event = SelectedId(cboEvents_);
            txtRunNumber_->setText(QString::number(
                RunNextNumber(db_, event.isNull() ? 0 : event.toLongLong(), state_.car.id)));
        }
    } else if (field == mebRun_dt_) {
        const QString shown = mebRun_dt_->displayText();
        if (shown == kDateMaskEmpty) {
            return;
        }
        const QString parsed = DateTextParse(shown);
        if (parsed.isEmpty()) {
            // What was typed stays, to be put right.
            messages_.inform(QStringLiteral("Invalid Run Date, Use MM/DD/YYYY Format"),
                             DataEntryErrorTitle(), MsgIcon::Critical);
            mebRun_dt_->setFocus(Qt::OtherFocusReason);
        } else if (parsed != shown) {
            mebRun_dt_->setText(parsed);
        }
    } else if (field == cboOpponents_) {
        OpponentCheck();
    } else if (field == cboEvents_ || field == cboRunTypes_) {
        ComboLeft(static_cast<QComboBox*>(field));
    } else if (name == u"cboCars") {
        RunTabsRefresh();
    }
}

void frmRun::WeatherLeft(QLineEdit* box) {
    if (box == txtPressureAltitude_) {
        // Compared as the exact text: a blank altitude is converted too, and gives nothing.
        if (box->text() != u"0") {
            if (const auto barometer = weather::BarometerText(box->text())) {
                txtBarometricPressure_->setText(*barometer);
            }
        }
        RunWeatherRecalc();
        return;
    }
    const WeatherRange& range = *WeatherRangeOf(box->objectName());
    if (OutOfRange(range, box->text())) {
        messages_.inform(QString::fromLatin1(range.message));
        box->setText(QStringLiteral("0"));
        box->setFocus(Qt::OtherFocusReason);
    } else if (box == txtBarometricPressure_ && LeadingNumber(box->text()).value_or(0) != 0) {
        if (const auto altitude = weather::PressureAltitudeText(box->text())) {
            txtPressureAltitude_->setText(*altitude);
        }
    }
    RunWeatherRecalc();
}

void frmRun::ComboLeft(QComboBox* combo) {
    if (SelectedIndex(combo) >= 0 || combo->currentText().isEmpty()) {
        return;
    }
    if (!SelectTypedEntry(combo) && combo->count() > 0) {
        SelectComboId(combo, combo->itemData(0));
    }
}

void frmRun::OpponentCheck() {
    if (SelectedIndex(cboOpponents_) >= 0 || cboOpponents_->currentText().trimmed().isEmpty() ||
        SelectTypedEntry(cboOpponents_)) {
        return;
    }
    const QString name = NameCase(cboOpponents_->currentText());
    cboOpponents_->setEditText(name);
    if (messages_.ask(QStringLiteral("Add ") + name, QString(), MsgButtons::YesNo, MsgAnswer::Yes,
                      MsgIcon::Question) != MsgAnswer::Yes) {
        return;  // the check at saving refuses the text
    }
    qint64 id = 0;
    try {
        id = NameAdd(db_, QStringLiteral("tblOpponent"), QStringLiteral("sOpponent_nm"), name);
    } catch (const std::exception& e) {
        store::ErrorReport(store::AsDbError(e), QString(), messages_);
        return;
    }
    cboOpponents_->addItem(name, QVariant::fromValue(id));
    SelectComboId(cboOpponents_, id);
}

void frmRun::EventPicked() {
    if (ShowMode() || !RecordAdd()) {
        return;
    }
    const QVariant event = SelectedId(cboEvents_);
    if (!event.isNull()) {
        txtRunNumber_->setText(
            QString::number(RunNextNumber(db_, event.toLongLong(), state_.car.id)));
    }
}

void frmRun::TabClicked(int tab) {
    if (!sstabSetup_->isVisible()) {
        return;
    }
    static const char* const kFirst[] = {"rtbRunNotes_tx", "btnTuneUpSetup(0)", "btnTuneUpSetup(1)",
                                         "txtTrans(0)",    "txtFrontEndTravel", "txtEngine_desc",
                                         "txtLaunchRPM",   "txtCustom1"};
    if (tab >= 0 && tab < static_cast<int>(std::size(kFirst))) {
        if (QWidget* first = Control(QString::fromLatin1(kFirst[tab]))) {
            first->setFocus(Qt::TabFocusReason);
        }
    }
}

void frmRun::EditCustomFieldNames() {
    customNamesOpen_ = true;
    for (int n = 0; n < 6; ++n) {
        auto* place = static_cast<QStackedWidget*>(customNames_[n]->parentWidget());
        customNames_[n]->show();
        place->setCurrentWidget(customNames_[n]);
        customCaptions_[n]->hide();
    }
}

}  // namespace slipbook::run
