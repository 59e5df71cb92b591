#include "run/ui/frmRun.h"

#include "run/intervals.h"
#include "run/validation.h"
#include "common/forms.h"
#include "common/numbers.h"
#include "common/textgrid.h"
#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "store/recordset.h"
#include "weather/airproperties.h"
#include "weather/station.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace slipbook::run {

namespace {

const QString kSaveAndClose = QStringLiteral("ID_SaveandClose");
const QString kSaveAndNew = QStringLiteral("ID_SaveandNew");
const QString kPointsFormat = QStringLiteral("###,###,##0");

// Locked figures are shaded; the intervals in a shade of their own.
const QColor kCalcShade(0xE4, 0xE4, 0xE4);
const QColor kSplitShade(0xFF, 0xF4, 0xD0);

bool IsNumberKind(FieldKind kind) {
    return kind == FieldKind::Num || kind == FieldKind::Et3 || kind == FieldKind::Et4;
}

int IntervalOf(const QString& control) {
    for (int i = 0; i < static_cast<int>(Intervals().size()); ++i) {
        if (control == QLatin1String(Intervals()[i].control)) {
            return i;
        }
    }
    return 0;
}

int Decimals(FieldKind kind) {
    return kind == FieldKind::Et3 ? 3 : kind == FieldKind::Et4 ? 4 : -1;
}

void Shade(QLineEdit* box, const QColor& colour) {
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::ClickFocus);
    QPalette palette = box->palette();
    palette.setColor(QPalette::Base, colour);
    box->setPalette(palette);
}

QString PlainLabel(const QString& caption) {
    // A label without a buddy shows "&&" as it stands.
    QString text = caption;
    return text.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

}  // namespace

frmRun::frmRun(const shell::WindowContext& ctx, QWidget* parent)
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
    for (const char* id : {"ID_New", "ID_Previous", "ID_Next"}) {
        toolBar()->removeAction(tool(QString::fromLatin1(id)));
    }
    if (auto* view = findChild<QMenu*>(QStringLiteral("ID_mnuView"))) {
        view->menuAction()->setVisible(false);
    }
    BuildBody();
    resize(1040, 720);

    // Load: the main grid is held still until the window goes.
    main_.ForbidSelectDifferentRun();
    gridHeld_ = true;
    sstabSetup_->setCurrentIndex(kTabNotes);
    FillLists();
    const bool asNew = state_.TakeNewRecordAsked();
    if (!asNew) {
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
// Building

QLabel* frmRun::MakeLabel(const QString& caption, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(buddy != nullptr ? caption : PlainLabel(caption), parent);
    if (buddy != nullptr) {
        label->setBuddy(buddy);
    }
    return label;
}

void frmRun::Register(QWidget* control) {
    controls_.insert(control->objectName(), control);
}

QWidget* frmRun::MakeControl(const RunField& f, QWidget* parent) {
    QWidget* control = nullptr;
    switch (f.kind) {
        case FieldKind::IdList: {
            auto* combo = new QComboBox(parent);
            combo->setEditable(true);
            combo->setMinimumContentsLength(12);
            control = combo;
            break;
        }
        case FieldKind::Check:
            control = new QCheckBox(parent);
            break;
        case FieldKind::Notes:
            control = new QPlainTextEdit(parent);
            break;
        case FieldKind::Date:
            control = MakeDateBox(f.control, parent);
            break;
        case FieldKind::Time: {
            auto* box = new QLineEdit(parent);
            box->setInputMask(QStringLiteral("00:00 >AA;_"));
            box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00:00 MMM")) +
                               16);
            control = box;
            break;
        }
        default: {
            auto* box = new QLineEdit(parent);
            if (IsNumberKind(f.kind) || f.kind == FieldKind::Calc || f.kind == FieldKind::Split) {
                box->setFixedWidth(
                    box->fontMetrics().horizontalAdvance(QStringLiteral("00000.0000")));
            }
            control = box;
            break;
        }
    }
    control->setObjectName(f.control);
    if (!f.toolTip.isEmpty()) {
        control->setToolTip(f.toolTip);
    }
    Register(control);
    auto* box = qobject_cast<QLineEdit*>(control);
    if (f.kind == FieldKind::Calc) {
        Shade(box, kCalcShade);
        return control;
    }
    if (f.kind == FieldKind::Split) {
        Shade(box, kSplitShade);
        return control;
    }
    if (f.control == u"txtVRT") {
        // Editing the VRT alone marks nothing: it has no change handler of its own.
        InstallSelectAllOnFocus(box);
        InstallEnterAsTab(box);
    } else if (f.kind == FieldKind::Notes) {
        AddNotesField(static_cast<QPlainTextEdit*>(control), NotesPrompt());
    } else {
        AddField(control);
    }
    if (box != nullptr && IsNumberKind(f.kind)) {
        InstallNumericKeyFilter(box, Decimals(f.kind));
        if (f.kind != FieldKind::Num) {
            InstallNumericPad(box, Decimals(f.kind));
        }
    }
    control->installEventFilter(this);
    if (f.kind == FieldKind::Time) {
        CheckOnLeave(box, kTimeMaskEmpty,
                     QStringLiteral("Invalid Run Time, Use HH:MM am/pm Format"));
    }
    if (!IntervalsOfMark(f.control).empty()) {
        const std::vector<int> which = IntervalsOfMark(f.control);
        connect(box, &QLineEdit::textChanged, this, [this, which] { RecomputeIntervals(which); });
    }
    return control;
}

void frmRun::BuildBody() {
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("SSSplitter1"));
    auto* panels = new QWidget(splitter);
    auto* row = new QHBoxLayout(panels);
    row->setContentsMargins(6, 6, 6, 0);
    row->addWidget(BuildSummary(), 4);
    row->addWidget(BuildWeather(), 3);
    row->addWidget(BuildResults(), 3);
    splitter->addWidget(panels);

    sstabSetup_ = new QTabWidget(splitter);
    sstabSetup_->setObjectName(QStringLiteral("sstabSetup"));
    for (int tab = 0; tab < TabCaptions().size(); ++tab) {
        QWidget* page = tab == kTabCustom ? BuildCustomTab() : BuildTab(tab);
        // Each tab scrolls on its own, so that the widest tab does not widen the window.
        auto* scroll = new QScrollArea(sstabSetup_);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->setWidgetResizable(true);
        scroll->setWidget(page);
        sstabSetup_->addTab(scroll, TabCaptions()[tab]);
    }
    connect(sstabSetup_->tabBar(), &QTabBar::tabBarClicked, this, [this](int tab) {
        // After the tab has changed.
        QTimer::singleShot(0, this, [this, tab] { TabClicked(tab); });
    });
    splitter->addWidget(sstabSetup_);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    SetBody(splitter);

    auto* group = new QButtonGroup(this);
    group->addButton(optLeft_);
    group->addButton(optRight_);

    cboEvents_ = static_cast<QComboBox*>(Control(QStringLiteral("cboEvents")));
    cboCars_ = static_cast<QComboBox*>(Control(QStringLiteral("cboCars")));
    cboOpponents_ = static_cast<QComboBox*>(Control(QStringLiteral("cboOpponents")));
    cboRunTypes_ = static_cast<QComboBox*>(Control(QStringLiteral("cboRunTypes")));
    txtRunNumber_ = static_cast<QLineEdit*>(Control(QStringLiteral("txtRunNumber")));
    mebRun_dt_ = static_cast<QLineEdit*>(Control(QStringLiteral("mebRun_dt")));
    txtPoints_ = static_cast<QLineEdit*>(Control(QStringLiteral("txtPoints")));
    chkFullRun_ = static_cast<QCheckBox*>(Control(QStringLiteral("SSChkFullRun_fl")));
    txtTemp_ = static_cast<QLineEdit*>(Control(QStringLiteral("txtTemp")));
    txtHumidity_ = static_cast<QLineEdit*>(Control(QStringLiteral("txtHumidity")));
    txtBarometricPressure_ =
        static_cast<QLineEdit*>(Control(QStringLiteral("txtBarometricPressure")));
    txtPressureAltitude_ = static_cast<QLineEdit*>(Control(QStringLiteral("txtPressureAltitude")));
    rtbRunNotes_tx_ = static_cast<QPlainTextEdit*>(Control(QStringLiteral("rtbRunNotes_tx")));

    // The car of a run can't be changed here.
    cboCars_->setEditable(false);
    cboCars_->setEnabled(false);
    cboCars_->setProperty("Locked", true);
    connect(cboEvents_, &QComboBox::currentIndexChanged, this, [this] { EventPicked(); });
}

QWidget* frmRun::BuildSummary() {
    auto* panel = new QGroupBox(QStringLiteral("Summary Information"), this);
    panel->setObjectName(QStringLiteral("pnlSummary"));
    auto* grid = new QGridLayout(panel);
    int row = 0;
    for (const RunField& f : RunFields()) {
        if (f.area != Area::Summary) {
            continue;
        }
        QWidget* control = MakeControl(f, panel);
        grid->addWidget(MakeLabel(f.caption, control, panel), row, 0);
        grid->addWidget(control, row, 1, Qt::AlignLeft);
        if (f.kind == FieldKind::IdList || f.kind == FieldKind::Text) {
            control->setMinimumWidth(170);
        }
        ++row;
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(row, 1);
    return panel;
}

QWidget* frmRun::BuildWeather() {
    auto* panel = new QGroupBox(QStringLiteral("Weather Conditions"), this);
    panel->setObjectName(QStringLiteral("pnlWeather"));
    auto* grid = new QGridLayout(panel);
    int row = 0;
    for (const RunField& f : RunFields()) {
        if (f.area != Area::Weather) {
            continue;
        }
        QWidget* control = MakeControl(f, panel);
        grid->addWidget(MakeLabel(f.caption, control, panel), row, 0);
        grid->addWidget(control, row, 1);
        grid->addWidget(new QLabel(f.unit, panel), row, 2);
        ++row;
    }
    GetWeather_ = new QPushButton(QStringLiteral("Get..."), panel);
    GetWeather_->setObjectName(QStringLiteral("GetWeather"));
    Register(GetWeather_);
    GetWeather_->setToolTip(QStringLiteral("Take the weather from the station"));
    connect(GetWeather_, &QPushButton::clicked, this, &frmRun::GetWeather);
    grid->addWidget(GetWeather_, row, 1);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(row + 1, 1);
    return panel;
}

QWidget* frmRun::BuildResults() {
    auto* panel = new QGroupBox(QStringLiteral("Run Results"), this);
    panel->setObjectName(QStringLiteral("pnlResults"));
    auto* grid = new QGridLayout(panel);
    int row = 0;
    QHash<QString, int> rowOfMark;
    for (const RunField& f : RunFields()) {
        if (f.area != Area::Results) {
            continue;
        }
        if (f.kind == FieldKind::Split) {
            // Beside the mark the interval ends at.
            QWidget* control = MakeControl(f, panel);
            for (const IntervalDef& i : Intervals()) {
                if (f.control == QLatin1String(i.control)) {
                    grid->addWidget(control, rowOfMark.value(QString::fromLatin1(i.later)), 2);
                }
            }
            continue;
        }
        if (f.kind == FieldKind::Lane) {
            optLeft_ = new QRadioButton(QStringLiteral("&L"), panel);
            optLeft_->setObjectName(QStringLiteral("ssoptLeft"));
            optRight_ = new QRadioButton(QStringLiteral("&R"), panel);
            optRight_->setObjectName(QStringLiteral("ssoptRight"));
            Register(optLeft_);
            Register(optRight_);
            auto* lanes = new QHBoxLayout;
            lanes->addWidget(optLeft_);
            lanes->addWidget(optRight_);
            lanes->addStretch();
            grid->addWidget(MakeLabel(QStringLiteral("Lane:"), nullptr, panel), row, 0);
            grid->addLayout(lanes, row, 1);
            for (QRadioButton* option : {optLeft_, optRight_}) {
                AddField(option);
            }
            ++row;
            continue;
        }
        QWidget* control = MakeControl(f, panel);
        grid->addWidget(MakeLabel(f.caption, control, panel), row, 0);
        grid->addWidget(control, row, 1);
        rowOfMark.insert(f.control, row);
        ++row;
    }
    grid->addWidget(new QLabel(QStringLiteral("intervals:"), panel),
                    rowOfMark.value(QStringLiteral("txt60Foot_et")), 2);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(row, 1);
    return panel;
}

QWidget* frmRun::BuildTab(int tab) {
    auto* page = new QWidget(sstabSetup_);
    auto* outer = new QVBoxLayout(page);
    if (tab == kTabNotes) {
        for (const RunField& f : RunFields()) {
            if (f.area == Area::Tabs && f.tab == tab && !f.control.isEmpty()) {
                outer->addWidget(MakeControl(f, page));
            }
        }
        return page;
    }
    auto* row = new QHBoxLayout;
    outer->addLayout(row);
    auto* loose = new QGridLayout;
    row->addLayout(loose);
    QHash<QString, QGridLayout*> frames;
    int looseCount = 0;
    // The carburetor's arrays run across two columns.
    const int arrayColumns = tab == kTabCarb || tab == 6 ? 2 : 1;
    for (const RunField& f : RunFields()) {
        if (f.area != Area::Tabs || f.tab != tab || f.control.isEmpty()) {
            continue;
        }
        if (f.frame.isEmpty()) {
            QWidget* control = MakeControl(f, page);
            // Four lines to a column, then the next pair of columns.
            const int line = looseCount % 4;
            const int pair = looseCount / 4;
            QLabel* label = MakeLabel(f.caption, control, page);
            if (f.control == u"txtNitro") {
                label->setObjectName(QStringLiteral("lblNitro"));
                lblNitro_ = label;
            }
            loose->addWidget(label, line, pair * 2);
            loose->addWidget(control, line, pair * 2 + 1);
            control->setMinimumWidth(110);
            ++looseCount;
            continue;
        }
        QGridLayout* frame = frames.value(f.frame);
        if (frame == nullptr) {
            auto* box = new QGroupBox(f.frame, page);
            frame = new QGridLayout(box);
            frames.insert(f.frame, frame);
            row->addWidget(box, 0, Qt::AlignTop);
        }
        QWidget* control = MakeControl(f, frame->parentWidget());
        if (f.index >= 0) {
            const int line = f.index / arrayColumns;
            const int column = (f.index % arrayColumns) * 2;
            frame->addWidget(MakeLabel(f.caption, control, frame->parentWidget()), line, column);
            frame->addWidget(control, line, column + 1);
            control->setFixedWidth(72);
        } else if (f.caption.isEmpty()) {
            frame->addWidget(control, frame->rowCount(), 0, 1, 2);
            control->setFixedWidth(72);
        } else {
            const int line = frame->rowCount();
            frame->addWidget(MakeLabel(f.caption, control, frame->parentWidget()), line, 0);
            frame->addWidget(control, line, 1);
            control->setMinimumWidth(100);
        }
    }
    loose->setRowStretch(4, 1);
    loose->setHorizontalSpacing(12);
    row->addStretch(1);

    QString note;
    if (tab == kTabCarb) {
        note = QStringLiteral("Additional Carburetor Information");
    } else if (tab == kTabFuel) {
        note = QStringLiteral("Additional Fuel Injection Information");
    } else if (tab == 6) {
        note = QStringLiteral(
            "Note: Throttle Stop settings are NOT carried forward from the previous run as is all "
            "other information in these multiple tabs.");
    }
    if (!note.isEmpty()) {
        auto* line = new QHBoxLayout;
        auto* text = new QLabel(note, page);
        text->setWordWrap(true);
        line->addWidget(text, 1);
        if (tab == kTabCarb || tab == kTabFuel) {
            auto* button = new QPushButton(QStringLiteral("Tune-Up for this run..."), page);
            button->setObjectName(ArrayControl(QStringLiteral("btnTuneUpSetup"), tab - kTabCarb));
            Register(button);
            connect(button, &QPushButton::clicked, this, &frmRun::TuneUpSetup);
            line->addWidget(button);
        }
        outer->addLayout(line);
    }
    outer->addStretch(1);
    return page;
}

QWidget* frmRun::BuildCustomTab() {
    auto* page = new QWidget(sstabSetup_);
    auto* outer = new QVBoxLayout(page);
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Field Name"), page), 0, 0);
    grid->addWidget(new QLabel(QStringLiteral("Field Value"), page), 0, 1);
    for (int n = 0; n < 6; ++n) {
        // The name and its edit form share one place; the tab key alternates name and value.
        auto* place = new QStackedWidget(page);
        customCaptions_[n] = new QLabel(QStringLiteral("CustomCaption%1:").arg(n + 1), place);
        customCaptions_[n]->setObjectName(QStringLiteral("CustomCaption%1").arg(n + 1));
        customNames_[n] = new QLineEdit(place);
        customNames_[n]->setObjectName(QStringLiteral("txtCustomName%1").arg(n + 1));
        place->addWidget(customCaptions_[n]);
        place->addWidget(customNames_[n]);
        place->setFixedHeight(customNames_[n]->sizeHint().height());
        Register(customCaptions_[n]);
        Register(customNames_[n]);
        AddField(customNames_[n]);
        customNames_[n]->hide();
        grid->addWidget(place, n + 1, 0);
        const RunField* value = FieldByColumn(QStringLiteral("Custom%1").arg(n + 1));
        QWidget* control = MakeControl(*value, page);
        customCaptions_[n]->setBuddy(control);
        grid->addWidget(control, n + 1, 1);
    }
    auto* edit = new QPushButton(QStringLiteral("Edit Custom Field Names"), page);
    edit->setObjectName(QStringLiteral("cmdEditCustomFieldNames"));
    Register(edit);
    connect(edit, &QPushButton::clicked, this, &frmRun::EditCustomFieldNames);
    grid->addWidget(edit, 7, 0);
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(0, 200);
    auto* row = new QHBoxLayout;
    row->addLayout(grid, 3);
    auto* notes = new QVBoxLayout;
    for (const char* text :
         {"Note: Custom Field NAMES are remembered for all time.  That is, it doesn't make sense "
          "to change the field NAMES for each run.",
          "Note: Use main menu option View / View Setup / Edit Fields for additional field "
          "customizations."}) {
        auto* label = new QLabel(QString::fromLatin1(text), page);
        label->setWordWrap(true);
        notes->addWidget(label);
    }
    notes->addStretch(1);
    row->addLayout(notes, 2);
    outer->addLayout(row);
    outer->addStretch(1);
    return page;
}

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
                txtRunNumber_->setText(QString::number(
                    RunNextNumber(db_, state_.event.id, state_.car.id)));
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
    messages_.inform(QString::fromLatin1(check.message), DataEntryErrorTitle(),
                     MsgIcon::Critical);
    if (*failed == kCheckRunNumber) {
        txtRunNumber_->setText(
            QString::number(RunNextNumber(db_, state_.event.id, state_.car.id)));
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
    if (toolId == kSaveAndClose) {
        close();
    } else if (toolId == kSaveAndNew) {
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
                RunNextNumber(db_, event.isNull() ? 0 : event.toLongLong(), main_.CurrentCarId())));
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
            QString::number(RunNextNumber(db_, event.toLongLong(), main_.CurrentCarId())));
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
    if (tuneUpOpener_) {
        tuneUpOpener_(RunId());
    } else {
        messages_.inform(QStringLiteral("The tune-up window is not available yet."),
                         QStringLiteral("Tune-Up for this run"));
    }
}

// ---------------------------------------------------------------------------------------------
// The station's reading

void frmRun::GetWeather() {
    weatherRequested_ = true;
    messages_.inform(
        QStringLiteral("Go to Barometrix, point (and click) at the weather you want in the graph "
                       "or data lines, then return here to find new weather variables inserted "
                       "automatically!"));
    SetWeatherButtonRed(true);
    // An old answer must not be taken for the new one.
    weather::ClearChosenReading(main_.WeatherDirectory());
    timer_->start(weather::kPollFast);
    weather::BringStationForward();
}

void frmRun::SetWeatherButtonRed(bool red) {
    GetWeather_->setPalette(QPalette());
    if (red) {
        QPalette palette = GetWeather_->palette();
        palette.setColor(QPalette::ButtonText, Qt::red);
        GetWeather_->setPalette(palette);
    }
}

void frmRun::BrokerTimer_Timer() {
    stationBuffer_.clear();
    const weather::StationRead read = weather::ReadChosenReading(main_.WeatherDirectory());
    if (!read.opened) {
        return;
    }
    stationBuffer_ = read.record;
    if (stationBuffer_.isEmpty()) {
        return;
    }
    timer_->stop();
    const weather::StationFields fields = weather::ParseStationRecord(stationBuffer_);
    QLineEdit* const inputs[] = {txtTemp_, txtHumidity_, txtBarometricPressure_};
    for (int i = 0; i < fields.count; ++i) {
        inputs[i]->setText(fields.texts[i]);
    }
    if (!fields.complete()) {
        return;
    }
    // No range test: these are the station's figures, not the user's typing.
    if (const auto altitude = weather::PressureAltitudeText(txtBarometricPressure_->text())) {
        txtPressureAltitude_->setText(*altitude);
    }
    RunWeatherRecalc();
    SetWeatherButtonRed(false);
    txtTemp_->setFocus(Qt::OtherFocusReason);
    weatherFetched_ = true;
    MarkChanged(txtTemp_);
}

// ---------------------------------------------------------------------------------------------
// Registration with the main window

void DeleteRunFromList(const shell::WindowContext& ctx, QWidget* owner, const QString& keyText) {
    // The one run window there is does the deleting; unseen when none is open.
    if (auto* open = qobject_cast<frmRun*>(ctx.main.OpenWindow(QStringLiteral("ID_Runs")));
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
