#pragma once

#include <QString>

class QWidget;

namespace slipbook::shell {

// What the other windows see of the main window: the current car, event, track and list, the
// selectors they refresh after a save, the grid lock, the weather pushes and the page lead-in.
// frmMain implements it; tests use a fake.
class MainContext {
public:
    virtual ~MainContext() = default;

    virtual qint64 CurrentCarId() const = 0;
    virtual void SetCurrentCarId(qint64 id) = 0;
    virtual QString CurrentCarDesc() const = 0;
    virtual void SetCurrentCarDesc(const QString& desc) = 0;
    virtual qint64 CurrentEventId() const = 0;  // 0: all events
    virtual void SetCurrentEventId(qint64 id) = 0;
    virtual QString CurrentEventDesc() const = 0;
    virtual void SetCurrentEventDesc(const QString& desc) = 0;
    virtual qint64 CurrentTrackId() const = 0;  // 0: all tracks
    virtual void SetCurrentTrackId(qint64 id) = 0;
    virtual QString CurrentTrackDesc() const = 0;
    virtual void SetCurrentTrackDesc(const QString& desc) = 0;
    virtual QString CurrentView() const = 0;  // ID_Runs, ID_Events, ...
    virtual bool RunFilterActive() const = 0;
    virtual void SetRunFilterActive(bool active) = 0;
    virtual QString RunFilterString() const = 0;
    virtual void SetRunFilterString(const QString& text) = 0;
    virtual QString RunFilterSQL() const = 0;
    virtual void SetRunFilterSQL(const QString& sql) = 0;

    // Refill the selectors from the logbook.
    virtual void CarsLoad() = 0;
    virtual void EventsLoad() = 0;
    virtual void TrackLoad() = 0;
    virtual void ViewsLoad() = 0;
    // Bring a selector to the entry whose key is `id` and act on the change as a pick would.
    virtual void SelectCar(qint64 id) = 0;
    virtual void SelectEvent(qint64 id) = 0;
    virtual void SelectTrack(qint64 id) = 0;

    virtual void FilterApply() = 0;
    // A click on a tool of the main tool bar, e.g. "ID_Runs" to reload the list.
    virtual void ClickTool(const QString& toolId) = 0;
    // The id of the last tool clicked: how a record window learns that a new record is asked for.
    virtual QString StoredToolId() const = 0;
    virtual void SetStoredToolId(const QString& toolId) = 0;

    // The grid's selected row: its key (the hidden first cell) and any cell's text; empty when
    // the grid has no rows.
    virtual QString SelectedKeyText() const = 0;
    virtual QString SelectedCellText(int column) const = 0;

    virtual void ForbidSelectDifferentRun() = 0;
    virtual void AllowSelectDifferentRun() = 0;
    virtual QString GetCar_num() = 0;

    // Weather pushed to every open prediction and tune-up window.
    virtual void CalcAllETPrediction(const QString& corrFactorText,
                                     const QString& densityAltText) = 0;
    virtual void CalcAllTuneUp(const QString& airDensityText) = 0;

    virtual void AddPageLeadin(const QString& line) = 0;
    virtual void ClearPageLeadin() = 0;
    virtual QString GetPageLeadin() const = 0;

    // The one window of a tool ("ID_Maintenance"): the open one, or a new one made unseen; null
    // when the tool has no window. The caller shows it.
    virtual QWidget* ToolWindow(const QString& toolId) = 0;

    // The weather station's folder, from the command line.
    virtual QString WeatherDirectory() const = 0;
};

}  // namespace slipbook::shell
