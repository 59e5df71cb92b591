#include "run/fieldtable.h"

#include "common/forms.h"
#include "shell/valueformat.h"

namespace slipbook::run {

namespace {

using K = FieldKind;
using L = LoadRule;
using S = SaveForm;

// A tune-up value on a tab: kept as text, shown with its blank, given back to the car.
RunField TabText(int tab, const QString& control, const QString& caption, const QString& column,
                 int statement, int rank) {
    return {.control = control,
            .caption = caption,
            .area = Area::Tabs,
            .tab = tab,
            .column = column,
            .statement = statement,
            .rank = rank,
            .carColumn = column,
            .fromCar = true};
}

// A control array in a frame, labelled "1:", "2:", ...; columns `prefix`1`suffix` on.
void AddArray(std::vector<RunField>& t, int tab, const QString& control, const QString& frame,
              const QString& prefix, const QString& suffix, int count, int statement,
              int firstRank) {
    for (int i = 0; i < count; ++i) {
        RunField f = TabText(tab, ArrayControl(control, i), QString::number(i + 1) + u':',
                             prefix + QString::number(i + 1) + suffix, statement, firstRank + i);
        f.frame = frame;
        f.index = i;
        t.push_back(f);
    }
}

// The base set-up and nozzles: no control, written only into a new run, never back to the car.
void AddHidden(std::vector<RunField>& t, const QString& column, int rank) {
    t.push_back({.area = Area::Tabs,
                 .column = column,
                 .kind = K::Hidden,
                 .load = L::None,
                 .statement = 4,
                 .rank = rank,
                 .fromCar = true});
}

RunField Weather(const QString& control, const QString& caption, const QString& unit,
                 const QString& column, int rank) {
    return {.control = control,
            .caption = caption,
            .area = Area::Weather,
            .column = column,
            .kind = K::Num,
            .newText = QStringLiteral("0"),
            .statement = 2,
            .rank = rank,
            .save = S::Num,
            .unit = unit};
}

RunField Figure(const QString& control, const QString& caption, const QString& unit,
                const QString& column, const QString& format, int rank) {
    RunField f = Weather(control, caption, unit, column, rank);
    f.kind = K::Calc;
    f.load = format.isEmpty() ? L::Pad : L::Format;
    f.format = format;
    return f;
}

RunField Result(const QString& control, const QString& caption, const QString& column, int rank,
                FieldKind kind = K::Et3) {
    return {.control = control,
            .caption = caption,
            .area = Area::Results,
            .column = column,
            .kind = kind,
            .newText = QStringLiteral("0"),
            .statement = 8,
            .rank = rank,
            .save = S::Num};
}

RunField Interval(const QString& control, const QString& column, int rank) {
    return {.control = control,
            .area = Area::Results,
            .column = column,
            .kind = K::Split,
            .load = L::None,
            .statement = 8,
            .rank = rank};
}

std::vector<RunField> BuildTable() {
    std::vector<RunField> t;

    // Summary Information
    t.push_back({.control = QStringLiteral("cboEvents"),
                 .caption = QStringLiteral("Event:"),
                 .column = QStringLiteral("lEvent_id"),
                 .kind = K::IdList,
                 .load = L::List,
                 .newRun = NewRun::CurrentEvent,
                 .statement = 1,
                 .rank = 1,
                 .save = S::Id});
    t.push_back({.control = QStringLiteral("cboCars"),
                 .caption = QStringLiteral("Car:"),
                 .column = QStringLiteral("lCar_id"),
                 .kind = K::IdList,
                 .load = L::List,
                 .newRun = NewRun::CurrentCar,
                 .statement = 1,
                 .rank = 2,
                 .save = S::Id});
    t.push_back({.control = QStringLiteral("txtRunNumber"),
                 .caption = QStringLiteral("Run #:"),
                 .column = QStringLiteral("lRun_num"),
                 .kind = K::Num,
                 .load = L::Raw,
                 .newRun = NewRun::NextNumber,
                 .statement = 1,
                 .rank = 3,
                 .save = S::Num});
    t.push_back({.control = QStringLiteral("mebRun_dt"),
                 .caption = QStringLiteral("Date:"),
                 .column = QStringLiteral("dtRun_dt"),
                 .kind = K::Date,
                 .load = L::DateMask,
                 .newRun = NewRun::Today,
                 .statement = 1,
                 .rank = 4,
                 .save = S::Date});
    t.push_back({.control = QStringLiteral("mebRun_tm"),
                 .caption = QStringLiteral("Time:"),
                 .column = QStringLiteral("dtRun_tm"),
                 .kind = K::Time,
                 .load = L::TimeMask,
                 .newRun = NewRun::Now,
                 .statement = 1,
                 .rank = 5,
                 .save = S::Time});
    t.push_back({.control = QStringLiteral("cboOpponents"),
                 .caption = QStringLiteral("Opponent:"),
                 .column = QStringLiteral("lOpponent_id"),
                 .kind = K::IdList,
                 .load = L::List,
                 .newRun = NewRun::FirstEntry,
                 .statement = 1,
                 .rank = 6,
                 .save = S::Id});
    t.push_back({.control = QStringLiteral("SSChkFullRun_fl"),
                 .caption = QStringLiteral("Full Run:"),
                 .column = QStringLiteral("bFullRun_fl"),
                 .kind = K::Check,
                 .load = L::Check,
                 .newRun = NewRun::On,
                 .statement = 1,
                 .rank = 7,
                 .save = S::Bool});
    t.push_back({.control = QStringLiteral("cboRunTypes"),
                 .caption = QStringLiteral("Result:"),
                 .column = QStringLiteral("lRunType_id"),
                 .kind = K::IdList,
                 .load = L::List,
                 .newRun = NewRun::FirstEntry,
                 .statement = 1,
                 .rank = 8,
                 .save = S::Id});
    t.push_back({.control = QStringLiteral("txtPoints"),
                 .caption = QStringLiteral("Points:"),
                 .column = QStringLiteral("lPoints_val"),
                 .kind = K::Num,
                 .load = L::Format,
                 .format = QStringLiteral("###,###,##0"),
                 .newText = QStringLiteral("0"),
                 .statement = 1,
                 .rank = 9,
                 .save = S::Long});
    t.push_back({.control = QStringLiteral("txtVRT"),
                 .caption = QStringLiteral("VRT:"),
                 .column = QStringLiteral("iVehicleReactionTime_val"),
                 .kind = K::Et4,
                 .load = L::Raw,
                 .newText = QStringLiteral("0"),
                 .statement = 1,
                 .rank = 10,
                 .save = S::Num});
    t.push_back({.control = QStringLiteral("txtExhaustTemp"),
                 .caption = QStringLiteral("Ex. Temp:"),
                 .column = QStringLiteral("iExhaustTemp_val"),
                 .kind = K::Num,
                 .load = L::Raw,
                 .newText = QStringLiteral("0"),
                 .statement = 1,
                 .rank = 11,
                 .save = S::Num});
    t.push_back({.control = QStringLiteral("txtLogFile"),
                 .caption = QStringLiteral("Log File:"),
                 .column = QStringLiteral("sLogFile_nm"),
                 .statement = 1,
                 .rank = 12});

    // Weather Conditions
    t.push_back(Weather(QStringLiteral("txtTemp"), QStringLiteral("Temp:"), QStringLiteral("°F"),
                        QStringLiteral("iTemp_val"), 1));
    t.push_back(Weather(QStringLiteral("txtHumidity"), QStringLiteral("Humidity:"),
                        QStringLiteral("%"), QStringLiteral("iHumidity_val"), 2));
    t.push_back(Weather(QStringLiteral("txtBarometricPressure"), QStringLiteral("Barom. Pressure:"),
                        QStringLiteral("In Hg"), QStringLiteral("iBarometricPressure_val"), 3));
    t.push_back(Weather(QStringLiteral("txtPressureAltitude"), QStringLiteral("Pressure Altitude:"),
                        QStringLiteral("Ft."), QStringLiteral("iPressureAltitude_val"), 4));
    t.push_back(Figure(QStringLiteral("txtCorrFactor"), QStringLiteral("Corr. Factor:"), QString(),
                       QStringLiteral("iCorrFactor_val"), QStringLiteral("###,##0.0000"), 5));
    RunField densityAlt = Figure(QStringLiteral("txtDensityAlt"), QStringLiteral("Density Alt.:"),
                                 QStringLiteral("Ft."), QStringLiteral("iDensityAlt_val"),
                                 QStringLiteral("###,##0"), 6);
    densityAlt.save = S::Single;
    t.push_back(densityAlt);
    t.push_back(Figure(QStringLiteral("txtAirDensity"), QStringLiteral("Air Density:"),
                       QStringLiteral("%"), QStringLiteral("iAirDensity_val"),
                       QStringLiteral("###,##0.00"), 7));
    t.push_back(Figure(QStringLiteral("txtVaporPressure"), QStringLiteral("Vapor Pressure:"),
                       QStringLiteral("In Hg"), QStringLiteral("iVaporPressure_val"),
                       QStringLiteral("###,##0.000"), 8));
    // Shown with its blank although the calculation writes it formatted.
    t.push_back(Figure(QStringLiteral("txtDryBarometer"), QStringLiteral("Dry Barometer:"),
                       QStringLiteral("In Hg"), QStringLiteral("iDryBarometer_val"), QString(),
                       10));
    t.push_back(Figure(QStringLiteral("txtDewPoint"), QStringLiteral("Dew Point:"),
                       QStringLiteral("°F"), QStringLiteral("iDewPoint_val"),
                       QStringLiteral("###,##0"), 9));
    t.push_back(Figure(QStringLiteral("txtWetBulbTemp"), QStringLiteral("Wet  Bulb Temp:"),
                       QStringLiteral("°F"), QStringLiteral("iWetBulbTemp_val"),
                       QStringLiteral("##0.0"), 11));

    // Run Results
    t.push_back(Result(QStringLiteral("txtDialIn"), QStringLiteral("Dial In:"),
                       QStringLiteral("iDialIn_val"), 1));
    t.push_back({.control = QStringLiteral("ssoptLeft"),
                 .caption = QStringLiteral("Lane:"),
                 .area = Area::Results,
                 .column = QStringLiteral("sLane_nm"),
                 .kind = K::Lane,
                 .load = L::Lane,
                 .newRun = NewRun::On,
                 .statement = 8,
                 .rank = 2,
                 .save = S::Lane});
    t.push_back(Result(QStringLiteral("txtReactionTime"), QStringLiteral("R/T:"),
                       QStringLiteral("iReactionTime_val"), 3));
    t.push_back(Result(QStringLiteral("txt60Foot_et"), QStringLiteral("60':"),
                       QStringLiteral("i60Foot_et"), 4));
    t.push_back(Result(QStringLiteral("txt330Foot_et"), QStringLiteral("330':"),
                       QStringLiteral("i330Foot_et"), 5));
    t.push_back(Result(QStringLiteral("txt18Mile_et"), QStringLiteral("1/8 e.t.:"),
                       QStringLiteral("i18Mile_et"), 6));
    t.push_back(Result(QStringLiteral("txt18Mile_mph"), QStringLiteral("1/8 mph:"),
                       QStringLiteral("i18Mile_mph"), 7));
    t.push_back(Result(QStringLiteral("txt1000Foot_et"), QStringLiteral("1000':"),
                       QStringLiteral("i1000Foot_et"), 8));
    t.push_back(Result(QStringLiteral("txt14Mile_et"), QStringLiteral("1/4 e.t.:"),
                       QStringLiteral("i14Mile_et"), 9));
    t.push_back(Result(QStringLiteral("txt14Mile_mph"), QStringLiteral("1/4 mph:"),
                       QStringLiteral("i14Mile_mph"), 10));
    RunField margin = Result(QStringLiteral("txtMarginOfVictory_ft"), QStringLiteral("MoV ft.:"),
                             QStringLiteral("iMarginOfVictory_ft"), 11, K::Num);
    margin.toolTip = QStringLiteral("Margin of Victory in ft.");
    t.push_back(margin);
    t.push_back(
        Interval(QStringLiteral("txt60to330foot_et"), QStringLiteral("i60to330Foot_et"), 12));
    t.push_back(
        Interval(QStringLiteral("txt330to660foot_et"), QStringLiteral("i330to660Foot_et"), 13));
    t.push_back(
        Interval(QStringLiteral("txt660to1000foot_et"), QStringLiteral("i660to1000Foot_et"), 14));
    t.push_back(
        Interval(QStringLiteral("txt1000to1320foot_et"), QStringLiteral("i1000to1320Foot_et"), 15));

    // Notes: the last of statement 8, and the first statement to the car.
    t.push_back({.control = QStringLiteral("rtbRunNotes_tx"),
                 .area = Area::Tabs,
                 .tab = kTabNotes,
                 .column = QStringLiteral("sRunNotes_tx"),
                 .kind = K::Notes,
                 .load = L::Notes,
                 .statement = 8,
                 .rank = 16,
                 .save = S::Note,
                 .carColumn = QStringLiteral("sCarNotes_tx"),
                 .fromCar = true});

    // Carb Setup: the jets come first in the statement, then the carburetor.
    t.push_back(TabText(kTabCarb, QStringLiteral("txtCarburetor"), QStringLiteral("Carb:"),
                        QStringLiteral("sCarburetor_val"), 4, 9));
    AddArray(t, kTabCarb, QStringLiteral("txtJet"), QStringLiteral("Jets"), QStringLiteral("sJet"),
             QStringLiteral("_val"), 8, 4, 1);
    AddArray(t, kTabCarb, QStringLiteral("txtSquirters"), QStringLiteral("Squirters"),
             QStringLiteral("sSquirters"), QStringLiteral("_val"), 4, 4, 10);
    AddArray(t, kTabCarb, QStringLiteral("txtPowerValves"), QStringLiteral("Power Valves"),
             QStringLiteral("sPowerValves"), QStringLiteral("_val"), 4, 4, 14);

    // The base set-up and the four nozzle groups, between the power valves and the bypass jets.
    const QString bases[] = {QStringLiteral("sBaseADR"),         QStringLiteral("sBaseJet"),
                             QStringLiteral("sBaseJetDiameter"), QStringLiteral("sBaseBypassPill"),
                             QStringLiteral("sBaseBoost"),       QStringLiteral("sNozzleArea")};
    int rank = 18;
    for (const QString& column : bases) {
        AddHidden(t, column, rank++);
    }
    for (const char* group : {"Hat", "Manifold", "Blower", "Head"}) {
        for (int i = 1; i <= 8; ++i) {
            AddHidden(t, QStringLiteral("s%1Nozzle%2_val").arg(QString::fromLatin1(group)).arg(i),
                      rank++);
        }
    }

    // Fuel Setup
    t.push_back(TabText(kTabFuel, QStringLiteral("txtNitro"), QStringLiteral("Nitro %:"),
                        QStringLiteral("sNitro_val"), 4, 61));
    const struct {
        const char* control;
        const char* caption;
        const char* column;
    } bypass[] = {{"txtMainBPJet", "Pump Loop:", "sMainBPJet_val"},
                  {"txtHiSpeedBPJet", "Hi-Speed:", "sHiSpeedBPJet_val"},
                  {"txtHiSpeedSettingBPJet", "Hi-Speed Setting:", "sHiSpeedSettingBPJet_val"},
                  {"txtOtherBPJet", "Other:", "sOtherBPJet_val"},
                  {"txtOtherSettingBPJet", "Other Setting:", "sOtherSettingBPJet_val"}};
    rank = 56;
    for (const auto& b : bypass) {
        RunField f =
            TabText(kTabFuel, QString::fromLatin1(b.control), QString::fromLatin1(b.caption),
                    QString::fromLatin1(b.column), 4, rank++);
        f.frame = QStringLiteral("Bypass Jets");
        t.push_back(f);
    }

    // Drive Train
    t.push_back(TabText(kTabDriveTrain, QStringLiteral("txtConverter"),
                        QStringLiteral("Converter:"), QStringLiteral("sConverter_val"), 5, 6));
    t.push_back(TabText(kTabDriveTrain, QStringLiteral("txtRingPinion"),
                        QStringLiteral("Ring && Pinion:"), QStringLiteral("sRingPinion_val"), 5,
                        7));
    AddArray(t, kTabDriveTrain, QStringLiteral("txtTrans"), QStringLiteral("Trans"),
             QStringLiteral("sTrans"), QStringLiteral("_val"), 5, 5, 1);
    RunField spring =
        TabText(kTabDriveTrain, QStringLiteral("txtSpringPress"),
                QStringLiteral("Spring Pressure:"), QStringLiteral("sSpringPressure_val"), 5, 8);
    spring.frame = QStringLiteral("Clutch");
    t.push_back(spring);
    RunField counter =
        TabText(kTabDriveTrain, QStringLiteral("txtCounterWeight"),
                QStringLiteral("Counter Weight:"), QStringLiteral("sCounterWeight_val"), 5, 9);
    counter.frame = QStringLiteral("Clutch");
    t.push_back(counter);

    // Suspension
    t.push_back(TabText(kTabSuspension, QStringLiteral("txtFrontEndTravel"),
                        QStringLiteral("Front End Travel:"), QStringLiteral("sFrontEndTravel_val"),
                        6, 1));
    t.push_back(TabText(kTabSuspension, QStringLiteral("txtWBHeight"),
                        QStringLiteral("Wheelie Bar Height:"),
                        QStringLiteral("sWheelieBarHeight_val"), 6, 2));
    t.push_back(TabText(kTabSuspension, QStringLiteral("txtSlicks"), QStringLiteral("Slicks:"),
                        QStringLiteral("sSlicks_val"), 6, 3));
    t.push_back(TabText(kTabSuspension, QStringLiteral("txtSBLocations"),
                        QStringLiteral("Suspension Bar Location:"),
                        QStringLiteral("sSuspensionBarLocations_val"), 6, 4));

    // Engine Setup: the statement takes the spark plugs before the cam.
    const struct {
        const char* control;
        const char* caption;
        const char* column;
        int rank;
    } engine[] = {{"txtEngine_desc", "Engine:", "sEngine_desc", 1},
                  {"txtValveLash", "Intake Valve Lash:", "sValveLash_val", 2},
                  {"txtExhaustValveLash", "Exhaust Valve Lash:", "sExhaustValveLash_val", 3},
                  {"txtTiming", "Ignition Timing:", "sTiming_val", 4},
                  {"txtCamAdvance", "Cam Advance:", "sCamAdvance_val", 7},
                  {"txtBlowerOverdrive", "Blower Overdrive:", "sBlowerOverdrive_val", 8},
                  {"txtSparkPlugs", "Spark Plugs:", "sSparkPlugs_val", 5},
                  {"txtPlugGap", "Plug Gap:", "sPlugGap_val", 6}};
    for (const auto& e : engine) {
        t.push_back(TabText(kTabEngine, QString::fromLatin1(e.control),
                            QString::fromLatin1(e.caption), QString::fromLatin1(e.column), 3,
                            e.rank));
    }

    // Run Setup: everything starts at "0"; the throttle stops go to the car but never come back.
    const struct {
        const char* control;
        const char* caption;
        const char* column;
        int rank;
    } setup[] = {{"txtLaunchRPM", "Launch RPM:", "sLaunchRPM_val", 2},
                 {"txtShiftRPM", "Shift RPM:", "sShiftRPM_val", 3},
                 {"txtTirePressure", "Tire Pressure:", "sTirePressure_val", 1}};
    for (const auto& s : setup) {
        RunField f =
            TabText(kTabRunSetup, QString::fromLatin1(s.control), QString::fromLatin1(s.caption),
                    QString::fromLatin1(s.column), 7, s.rank);
        f.newText = QStringLiteral("0");
        t.push_back(f);
    }
    RunField delay = TabText(kTabRunSetup, QStringLiteral("txtDelayBox"), QString(),
                             QStringLiteral("sDelayBox_val"), 7, 4);
    delay.frame = QStringLiteral("Delay Box");
    delay.kind = K::Et3;
    delay.newText = QStringLiteral("0");
    t.push_back(delay);
    const qsizetype stops = static_cast<qsizetype>(t.size());
    AddArray(t, kTabRunSetup, QStringLiteral("txtThrottleStop"), QStringLiteral("Throttle Stop"),
             QStringLiteral("sThrottleStop"), QStringLiteral("_val"), 4, 7, 5);
    for (auto it = t.begin() + stops; it != t.end(); ++it) {
        it->kind = K::Et3;
        it->newText = QStringLiteral("0");
        it->fromCar = false;
    }

    // Custom Fields: the captions are the names in the catalogue.
    for (int n = 1; n <= 6; ++n) {
        t.push_back(TabText(kTabCustom, QStringLiteral("txtCustom%1").arg(n),
                            QStringLiteral("CustomCaption%1").arg(n),
                            QStringLiteral("Custom%1").arg(n), 9, n));
    }
    return t;
}

}  // namespace

const std::vector<RunField>& RunFields() {
    static const std::vector<RunField> table = BuildTable();
    return table;
}

const RunField* FieldByControl(QStringView control) {
    for (const RunField& f : RunFields()) {
        if (!f.control.isEmpty() && f.control == control) {
            return &f;
        }
    }
    return nullptr;
}

const RunField* FieldByColumn(QStringView column) {
    for (const RunField& f : RunFields()) {
        if (f.column.compare(column, Qt::CaseInsensitive) == 0) {
            return &f;
        }
    }
    return nullptr;
}

const QStringList& TabCaptions() {
    static const QStringList captions = {
        QStringLiteral("&Notes"),      QStringLiteral("&Carb Setup"),
        QStringLiteral("&Fuel Setup"), QStringLiteral("&Drive Train"),
        QStringLiteral("&Suspension"), QStringLiteral("&Engine Setup"),
        QStringLiteral("R&un Setup"),  QStringLiteral("Custom Fields")};
    return captions;
}

QString NotesPrompt() {
    return QStringLiteral("<Type notes here>");
}

QString ArrayControl(const QString& name, int index) {
    return name + u'(' + QString::number(index) + u')';
}

QString LoadText(const RunField& field, const QVariant& value) {
    switch (field.load) {
        case LoadRule::Raw:
            return FormatValue(value, QString());
        case LoadRule::Pad:
            return CarriedText(value);
        case LoadRule::Format:
            return FormatValue(value, field.format);
        case LoadRule::DateMask:
            return DateMaskValue(value);
        case LoadRule::TimeMask:
            return TimeMaskValue(value, false);
        case LoadRule::Notes: {
            // A hint stored by an older logbook is no note.
            const QString text = FormatValue(value, QString());
            return IsNotesHint(text) ? QString() : text;
        }
        default:
            return QString();
    }
}

QString CarriedText(const QVariant& value) {
    return FormatValue(value, QString()) + u' ';
}

}  // namespace slipbook::run
