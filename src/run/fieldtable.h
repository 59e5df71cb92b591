#pragma once

// The fields of the run window: which control shows which column of tblRuns, how a stored value
// becomes the control's text and how the text goes back, what a new run starts with, and what a
// car's saved tune-up fills in. Showing, clearing, saving and carrying forward all walk this one
// table; nothing about a field is written down twice.

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <vector>

namespace slipbook::run {

// The four areas of the window; the tab fields also name their tab.
enum class Area { Summary, Weather, Results, Tabs };

enum class FieldKind {
    IdList,  // a list of names, each entry carrying its row id
    Date,    // masked "__/__/____"
    Time,    // masked "__:__ __"
    Num,     // digits, ".", "-"; any number of decimals
    Et3,     // a number of at most 3 decimals, padded to 3 on leaving
    Et4,     // the same with 4
    Text,
    Calc,   // an air figure: locked, written by the calculation
    Split,  // an interval between two marks: locked, written from the marks
    Check,
    Lane,  // the two exclusive options "L" and "R"
    Notes,
    Hidden,  // a tune-up value without a control, passed from the car into a new run
};

// How a stored value becomes the control's text when a run is shown.
enum class LoadRule {
    Raw,       // the value as text
    Pad,       // the value followed by one blank
    Format,    // the value in the field's format
    List,      // the entry whose id is the value
    DateMask,  // "mm/dd/yyyy", or the empty mask
    TimeMask,  // "hh:mm AM", or the empty mask
    Check,     // on when the value is true
    Lane,      // left on for "L", right on for "R", else both off
    Notes,     // the prompt for an empty note
    None,      // not read: derived, or carried from the car only
};

// How a field's text is written in the save's statements.
enum class SaveForm {
    Id,      // the selected entry's id
    Num,     // a number; empty is Null
    Str,     // a text, trimmed
    Date,    // a date, Null when the text is none
    Time,    // a time of day, Null when the text is none
    Bool,    // the check box
    Long,    // a whole number, grouping allowed
    Single,  // a single-precision number, grouping allowed
    Lane,    // "L" when the left option is on, else "R"
    Note,    // the notes; the prompt is not stored
};

// What a new run starts with, beside a plain text.
enum class NewRun {
    Text,
    CurrentEvent,  // the main window's event, locked; no selection without one
    CurrentCar,    // the main window's car, always locked
    NextNumber,
    Today,
    Now,
    FirstEntry,
    On,
};

struct RunField {
    QString control;  // the control's object name; empty for a value without a control
    QString caption;
    Area area = Area::Summary;
    int tab = -1;    // the tab of sstabSetup for Area::Tabs
    QString frame;   // the frame that holds the control on its tab
    int index = -1;  // the place in a control array ("txtJet(0)" is index 0)
    QString column;  // of tblRuns
    FieldKind kind = FieldKind::Text;
    LoadRule load = LoadRule::Pad;
    QString format;  // for LoadRule::Format
    NewRun newRun = NewRun::Text;
    QString newText;    // for NewRun::Text
    int statement = 0;  // which of the run's nine assignment groups writes it
    int rank = 0;       // its place in that statement
    SaveForm save = SaveForm::Str;
    QString carColumn;     // the column of tblCars it is written back to; empty for none
    bool fromCar = false;  // filled from the car when a new run opens
    QString unit;
    QString toolTip;
};

// Every field, in the order of the window's areas and tabs: the order a run is shown in.
const std::vector<RunField>& RunFields();
const RunField* FieldByControl(QStringView control);
const RunField* FieldByColumn(QStringView column);

// The captions of the eight tabs, from 0.
const QStringList& TabCaptions();
inline constexpr int kTabNotes = 0;
inline constexpr int kTabCarb = 1;
inline constexpr int kTabFuel = 2;
inline constexpr int kTabDriveTrain = 3;
inline constexpr int kTabSuspension = 4;
inline constexpr int kTabEngine = 5;
inline constexpr int kTabRunSetup = 6;  // launch, delay box and throttle stops
inline constexpr int kTabCustom = 7;

// The hint an empty notes pane shows; never stored as a note.
QString NotesPrompt();

// A control name of an array: "txtJet(0)".
QString ArrayControl(const QString& name, int index);

// The control's text for a stored value by the field's load rule (Raw, Pad, Format, DateMask,
// TimeMask, Notes). A Null shows empty under Raw, Format and Notes, as a blank under Pad.
QString LoadText(const RunField& field, const QVariant& value);

// A value as the car's tune-up hands it to a new run: its text and one blank, so Null is a blank.
QString CarriedText(const QVariant& value);

// A run as the window holds it: every value as the text of its control, by column; the four
// lists as the id of their selected entry (Null for none); the check box and the lane.
struct RunValues {
    QHash<QString, QString> texts;
    QHash<QString, QVariant> ids;
    bool fullRun = true;
    bool leftLane = true;

    QString text(const QString& column) const { return texts.value(column); }
};

}  // namespace slipbook::run
