#pragma once

#include <QList>
#include <QString>
#include <QStringView>

class QWidget;

namespace slipbook::shell {

// Windows of one subsystem that another opens by name (MainContext::ShowWindow).
namespace windows {
// The maintenance window filtered on a car's upcoming items, with its alert.
inline constexpr QStringView kMaintenanceAlert = u"MaintenanceAlert";
// The tune-up window on a saved run.
inline constexpr QStringView kRunTuneUp = u"RunTuneUp";
// The tune-up window on a car's saved tune-up, in manual set-up.
inline constexpr QStringView kCarTuneUp = u"CarTuneUp";
// A car's setup runs of the density altitude and of the throttle stop program.
inline constexpr QStringView kCarSetupDA = u"CarSetupDA";
inline constexpr QStringView kCarSetupTS = u"CarSetupTS";
// The run window on one saved run, from a chart or a list of another window.
inline constexpr QStringView kRun = u"Run";
}  // namespace windows

// The weather window as the program windows read it: the text of a box by its name.
class WeatherSource {
public:
    virtual ~WeatherSource() = default;
    virtual QString FieldText(const QString& controlName) const = 0;
};

// A column of the main list as it shows it.
struct ShownColumn {
    QString name;      // the table's column ("i14Mile_et")
    QString typeName;  // "Text", "Number", "Date", "Time", "Boolean"
    QString caption;
};

// What the other windows may ask of the main window; what they only read of it is the
// MainState. frmMain implements it; tests use a fake.
class MainContext {
public:
    virtual ~MainContext() = default;

    // A click on a tool of the main tool bar, e.g. "ID_Runs" to reload the list.
    virtual void ClickTool(const QString& toolId) = 0;
    // The filter's fields were set in the state: the tool and the list follow them.
    virtual void FilterApply() = 0;
    // The filter tool shows whether the filter is on, the list left as it is.
    virtual void FilterToolFollow() = 0;

    // The grid's selected row: its key (the hidden first cell) and any cell's text; empty when
    // the grid has no rows.
    virtual QString SelectedCellText(int column) const = 0;
    QString SelectedKeyText() const { return SelectedCellText(0); }

    // The list's columns after the hidden key, and its cells as shown (row 0 the top one;
    // column 0 the key).
    virtual QList<ShownColumn> ListColumns() const = 0;
    virtual int ListRowCount() const = 0;
    virtual QString ListCellText(int row, int column) const = 0;
    // The run list in these catalogue columns, in this order, until the list is next loaded; the
    // selected run stays selected.
    virtual void ListShowColumns(const QList<qint64>& catalogueIds) = 0;

    // The views selector: refilled from the logbook; brought to the view with this key (false
    // when it has none), which the list then shows; the key of its view.
    virtual void ViewsLoad() = 0;
    virtual bool SelectView(qint64 viewId) = 0;
    virtual qint64 CurrentViewId() const = 0;

    // The list is held on its row while a run window is open on it.
    virtual void ForbidSelectDifferentRun() = 0;
    virtual void AllowSelectDifferentRun() = 0;
    virtual QString GetCar_num() = 0;

    // Weather pushed to every open prediction and tune-up window.
    virtual void CalcAllETPrediction(const QString& corrFactorText,
                                     const QString& densityAltText) = 0;
    virtual void CalcAllTuneUp(const QString& airDensityText) = 0;
    // The text of the weather window's box by its name ("txtCorrFactor"); "0", as a window just
    // opened shows, while none is open.
    virtual QString WeatherText(const QString& controlName) = 0;

    // The one window of a tool ("ID_Maintenance"): the open one, or a new one made unseen; null
    // when the tool has no window. The caller shows it.
    virtual QWidget* ToolWindow(const QString& toolId) = 0;
    // The tool's window while it is open, else null.
    virtual QWidget* OpenWindow(const QString& toolId) const = 0;
    // Another subsystem's window (`windows::`) shown on the record `id`; null when the program
    // has none by that name.
    virtual QWidget* ShowWindow(QStringView name, qint64 id) = 0;

    virtual void HelpContents() = 0;
};

}  // namespace slipbook::shell
