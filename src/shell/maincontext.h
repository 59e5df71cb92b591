#pragma once

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
}  // namespace windows

// The weather window as the program windows read it: the text of a box by its name.
class WeatherSource {
public:
    virtual ~WeatherSource() = default;
    virtual QString FieldText(const QString& controlName) const = 0;
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

    // The grid's selected row: its key (the hidden first cell) and any cell's text; empty when
    // the grid has no rows.
    virtual QString SelectedCellText(int column) const = 0;
    QString SelectedKeyText() const { return SelectedCellText(0); }

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
