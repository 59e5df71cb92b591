#include "run/ui/frmRun.h"

#include "common/numbers.h"
#include "common/textgrid.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "run/validation.h"
#include "store/access.h"
#include "store/recordset.h"
#include "weather/airproperties.h"
#include "weather/station.h"

#include <QAction>
#include <QCloseEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>

namespace slipbook::run {

namespace {}  // namespace

frmRun::frmRun(const shell::WindowContext& ctx, QWidget* parent) : frmRun(ctx, 0, parent) {}

frmRun::frmRun(const shell::WindowContext& ctx, qint64 runId, QWidget* parent)
    : RecordWindow(ctx.db, ctx.messages, ctx.events, parent),
      main_(ctx.main),
      state_(ctx.state),
      clock_(ctx.clock) {
    setObjectName(QStringLiteral("frmRun"));
    setWindowTitle(QStringLiteral("Run"));
    SetShowEditsInRed(true);
    SetToolTips(QStringLiteral("run"));
    SetWeatherTimer(nullptr);

    // The run window's own tool bar: no New button and no stepping between records.
    for (tools::ToolId id : {tools::kNew, tools::kPrevious, tools::kNext}) {
        toolBar()->removeAction(tool(id));
    }
    if (auto* view = findChild<QMenu*>(tools::kMnuView)) {
        view->menuAction()->setVisible(false);
    }
    BuildBody();
    resize(1040, 720);

    // Load: the main grid is held still until the window goes.
    main_.ForbidSelectDifferentRun();
    gridHeld_ = true;
    sstabSetup_->setCurrentIndex(kTabNotes);
    FillLists();
    const bool asNew = runId == 0 && state_.TakeNewRecordAsked();
    if (runId != 0) {
        openRunId_ = runId;
        savedRunId_ = runId;
    } else if (!asNew) {
        openRunId_ = static_cast<qint64>(LeadingNumber(main_.SelectedKeyText()).value_or(0));
    }
    OpenRecords();
    if (asNew) {
        New();
    } else {
        records().FindFirst(KeyCriterion(IdColumn(), openRunId_));
        if (records().NoMatch()) {
            // Deliberately terse: the box holds the one word.
            messages_.inform(QStringLiteral("False"));
        } else {
            ShowCurrent();
        }
    }
    DeleteToolSetup();
    SetDataChanged(false);
    activatePending_ = true;
    if (RecordAdd()) {
        RunLoadCarTuneUp();
    }
}

frmRun::~frmRun() {
    if (timer_) {
        timer_->stop();
    }
    // A window owned by the main window is closed before it goes, or goes with the main window,
    // which must not be called back then.
    if (parent() == nullptr) {
        ReleaseGrid();
    }
}

void frmRun::ReleaseGrid() {
    if (timer_) {
        timer_->stop();
    }
    if (gridHeld_) {
        gridHeld_ = false;
        main_.AllowSelectDifferentRun();
    }
}

void frmRun::SetWeatherTimer(std::unique_ptr<weather::PollTimer> timer) {
    if (timer_) {
        timer_->stop();
    }
    timer_ = timer ? std::move(timer) : std::make_unique<weather::QtPollTimer>();
    timer_->setTimeout([this] { BrokerTimer_Timer(); });
}

QWidget* frmRun::Control(const QString& name) const {
    return controls_.value(name);
}

// ---------------------------------------------------------------------------------------------
// Checks and saving

bool frmRun::RunValidate() {
    const RunCheckInput input{txtRunNumber_->text(),
                              !SelectedId(cboEvents_).isNull(),
                              !SelectedId(cboCars_).isNull(),
                              mebRun_dt_->displayText(),
                              FieldText(*FieldByControl(u"mebRun_tm")),
                              !SelectedId(cboRunTypes_).isNull(),
                              !SelectedId(cboOpponents_).isNull(),
                              txtTemp_->text(),
                              txtHumidity_->text(),
                              txtBarometricPressure_->text()};
    const auto failed = FirstFailedCheck(input);
    if (!failed) {
        return true;
    }
    const RunCheck& check = RunChecks()[*failed];
    messages_.inform(QString::fromLatin1(check.message), DataEntryErrorTitle(), MsgIcon::Critical);
    if (*failed == kCheckRunNumber) {
        txtRunNumber_->setText(QString::number(RunNextNumber(db_, state_.event.id, state_.car.id)));
    }
    FocusField(QString::fromLatin1(check.focus));
    return false;
}

bool frmRun::RunNumbersValid(const RunValues& values) {
    const auto bad = FirstBadNumber(values);
    if (!bad) {
        return true;
    }
    messages_.inform(bad->message, DataEntryErrorTitle(), MsgIcon::Critical);
    FocusField(bad->field->control);
    return false;
}

void frmRun::FocusField(const QString& control) {
    if (QWidget* focus = Control(control)) {
        // A field on a tab that is not shown is brought into view first.
        for (QWidget* w = focus->parentWidget(); w != nullptr; w = w->parentWidget()) {
            const int tab = sstabSetup_->indexOf(w);
            if (tab >= 0) {
                sstabSetup_->setCurrentIndex(tab);
                break;
            }
        }
        focus->setFocus(Qt::OtherFocusReason);
    }
}

bool frmRun::RunWeatherRecalc() {
    const weather::Recalculation r = weather::PlanRecalculation(
        txtTemp_->text(), txtHumidity_->text(), txtBarometricPressure_->text());
    if (r.failed()) {
        return false;
    }
    for (size_t i = 0; i < weather::kAirFields.size(); ++i) {
        auto* box =
            static_cast<QLineEdit*>(Control(QString::fromLatin1(weather::kAirFields[i].name)));
        // Writing the same figure again would only lay the box out anew.
        if (box->text() != r.texts[i]) {
            box->setText(r.texts[i]);
        }
    }
    return true;
}

bool frmRun::RunSaveRecord(bool showAlert) {
    OpponentCheck();
    if (!RunValidate()) {
        return false;
    }
    RunSaveRequest request;
    request.values = Values();
    if (!RunNumbersValid(request.values)) {
        return false;
    }
    if (!RunWeatherRecalc()) {
        // The figures would be stale; the input at fault takes the focus.
        const weather::Recalculation r = weather::PlanRecalculation(
            txtTemp_->text(), txtHumidity_->text(), txtBarometricPressure_->text());
        messages_.inform(QStringLiteral("The air figures can't be calculated: ") + r.reason,
                         DataEntryErrorTitle(), MsgIcon::Critical);
        QLineEdit* focus = txtTemp_;
        for (QLineEdit* box : {txtTemp_, txtHumidity_, txtBarometricPressure_}) {
            if (!StrictNumber(box->text())) {
                focus = box;
                break;
            }
        }
        focus->setFocus(Qt::OtherFocusReason);
        return false;
    }
    // The air figures were just worked out anew; the rest stands as read.
    for (const weather::AirField& air : weather::kAirFields) {
        if (const RunField* f = FieldByControl(QString::fromLatin1(air.name))) {
            request.values.texts.insert(f->column, FieldText(*f));
        }
    }
    request.runId = RecordAdd() ? 0 : RunId();
    if (customNamesOpen_) {
        CustomNames names;
        for (int n = 0; n < 6; ++n) {
            names[n] = customNames_[n]->text();
        }
        request.customNames = names;
    }
    RunSaveOutcome outcome;
    try {
        outcome = SaveRun(db_, request);
    } catch (const std::exception& e) {
        store::IsDuplicate(store::AsDbError(e), nullptr, messages_);
        return false;
    }
    savedRunId_ = outcome.runId;
    OpenRecords();
    if (request.customNames) {
        // The run list's headers are the catalogue's.
        Q_EMIT events_.recordsChanged(QStringLiteral("tblListViewColumns"));
    }
    Q_EMIT events_.runSaved(outcome.runId, outcome.added);
    weatherFetched_ = false;
    AfterSaveReset();
    if (outcome.maintenanceDue) {
        const qint64 car = request.values.ids.value(QStringLiteral("lCar_id")).toLongLong();
        if (showAlert) {
            ShowMaintenanceAlert(car);
        } else {
            // Shown when the window closes; the run has been counted already.
            maintenanceAlertPending_ = true;
            pendingAlertCar_ = car;
        }
    }
    return true;
}

void frmRun::AfterSaveReset() {
    // Showing the saved row without touching the fields: the marks of a clean record (not
    // changed, not new, no red, the delete tool) are what a show leaves.
    keepFields_ = true;
    ShowCurrent();
    keepFields_ = false;
}

void frmRun::ShowMaintenanceAlert(qint64 carId) {
    // The one maintenance window, an open one included: two could edit the same items.
    main_.ShowWindow(shell::windows::kMaintenanceAlert, carId);
}

bool frmRun::Save(const QString& toolId) {
    if (!RunSaveRecord(true)) {
        return false;
    }
    if (toolId == tools::kSaveandClose) {
        close();
    } else if (toolId == tools::kSaveandNew) {
        New();
    }
    return true;
}

bool frmRun::QueryUnload() {
    if (weatherFetched_) {
        SetDataChanged(true);
    }
    if (DataChanged()) {
        switch (SavePromptOnUnload(this, messages_)) {
            case MsgAnswer::Yes:
                if (!RunSaveRecord(true)) {
                    return false;
                }
                break;
            case MsgAnswer::No:
                break;
            default:
                return false;
        }
    }
    if (maintenanceAlertPending_) {
        maintenanceAlertPending_ = false;
        ShowMaintenanceAlert(pendingAlertCar_);
    }
    return true;
}

void frmRun::RunRecordDelete() {
    RecordDelete();
}

void frmRun::AfterDelete(qint64 id) {
    Q_EMIT events_.runDeleted(id);
    weatherFetched_ = false;
    close();
}

void frmRun::closeEvent(QCloseEvent* event) {
    RecordWindow::closeEvent(event);
    if (event->isAccepted()) {
        ReleaseGrid();
    }
}

void frmRun::showEvent(QShowEvent* event) {
    RecordWindow::showEvent(event);
    if (activatePending_) {
        activatePending_ = false;
        QTimer::singleShot(0, this, [this] { NewFocusField()->setFocus(Qt::OtherFocusReason); });
    }
}

// ---------------------------------------------------------------------------------------------
// Field handlers

void frmRun::TuneUpSetup() {
    if (RecordAdd()) {
        if (messages_.ask(QStringLiteral("The Run information you've entered so far must be saved "
                                         "before continuing.  Save it now?"),
                          QStringLiteral("Loading Tune-Up Setup Window"), MsgButtons::OkCancel,
                          MsgAnswer::Ok) != MsgAnswer::Ok) {
            return;
        }
        // The tune-up window is about to open: a maintenance alert waits for the closing.
        if (!RunSaveRecord(false)) {
            return;
        }
    }
    if (main_.ShowWindow(shell::windows::kRunTuneUp, RunId()) == nullptr) {
        messages_.inform(QStringLiteral("The tune-up window is not available yet."),
                         QStringLiteral("Tune-Up for this run"));
    }
}

// ---------------------------------------------------------------------------------------------
// Registration with the main window

void DeleteRunFromList(const shell::WindowContext& ctx, QWidget* owner, const QString& keyText) {
    // The one run window there is does the deleting; unseen when none is open.
    if (auto* open = qobject_cast<frmRun*>(ctx.main.OpenWindow(tools::kRuns));
        open != nullptr && open->isVisible()) {
        open->RunRecordDelete();
        return;
    }
    if (ctx.main.SelectedKeyText() != keyText) {
        return;
    }
    frmRun window(ctx, owner);
    window.RunRecordDelete();
    window.close();
}

}  // namespace slipbook::run
