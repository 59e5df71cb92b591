#include "run/ui/frmRun.h"

#include "common/forms.h"
#include "common/ui/formhelpers.h"
#include "run/intervals.h"
#include "weather/weatherlog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace slipbook::run {

namespace {

// Locked figures are shaded; the intervals in a shade of their own.
const QColor kCalcShade(0xE4, 0xE4, 0xE4);
const QColor kSplitShade(0xFF, 0xF4, 0xD0);

bool IsNumberKind(FieldKind kind) {
    return kind == FieldKind::Num || kind == FieldKind::Et3 || kind == FieldKind::Et4;
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
    WeatherFromLog_ = new QPushButton(QStringLiteral("From Log"), panel);
    WeatherFromLog_->setObjectName(QStringLiteral("WeatherFromLog"));
    Register(WeatherFromLog_);
    WeatherFromLog_->setToolTip(
        QStringLiteral("Take the logged weather reading nearest the run's date and time"));
    connect(WeatherFromLog_, &QPushButton::clicked, this, &frmRun::WeatherFromLog);
    spnLogMinutes_ = new QSpinBox(panel);
    spnLogMinutes_->setObjectName(QStringLiteral("spnLogMinutes"));
    Register(spnLogMinutes_);
    spnLogMinutes_->setRange(weather::kMinLookupMinutes, weather::kMaxLookupMinutes);
    spnLogMinutes_->setSuffix(QStringLiteral(" min"));
    spnLogMinutes_->setValue(weather::LookupMinutes(db_));
    spnLogMinutes_->setToolTip(
        QStringLiteral("How far from the run's time a logged reading may lie"));
    connect(spnLogMinutes_, &QSpinBox::valueChanged, this,
            [this](int minutes) { weather::SetLookupMinutes(db_, minutes); });
    // Two rows within the columns of the labels and boxes, so the panel grows no wider.
    grid->addWidget(GetWeather_, row, 0, Qt::AlignRight);
    grid->addWidget(WeatherFromLog_, row, 1);
    ++row;
    grid->addWidget(MakeLabel(QStringLiteral("Log window:"), spnLogMinutes_, panel), row, 0);
    grid->addWidget(spnLogMinutes_, row, 1);
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
    // The carburetor's and the throttle stops' arrays run across two columns.
    const int arrayColumns = tab == kTabCarb || tab == kTabRunSetup ? 2 : 1;
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
    } else if (tab == kTabRunSetup) {
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

}  // namespace slipbook::run
