#pragma once

#include "common/tools.h"
#include "shell/maincontext.h"
#include "shell/pageleadin.h"

#include <QStringList>

#include <functional>

namespace slipbook::test {

// A main window that keeps its state in fields and writes down every call, for window tests.
class FakeMain : public shell::MainContext {
public:
    qint64 carId = 1, eventId = 0, trackId = 0;
    QString carDesc, eventDesc, trackDesc, view = tools::kRuns;
    bool filterActive = false;
    QString filterString, filterSql, storedTool, keyText, weatherDir;
    QStringList cells;
    int lockCount = 0;
    QString carNum = QStringLiteral("1");
    shell::PageLeadin leadin;
    QStringList
        calls;  // "CarsLoad", "SelectEvent 3", "ClickTool ID_Runs", "CalcAllTuneUp 95.8", ...

    qint64 CurrentCarId() const override { return carId; }
    void SetCurrentCarId(qint64 id) override { carId = id; }
    QString CurrentCarDesc() const override { return carDesc; }
    void SetCurrentCarDesc(const QString& d) override { carDesc = d; }
    qint64 CurrentEventId() const override { return eventId; }
    void SetCurrentEventId(qint64 id) override { eventId = id; }
    QString CurrentEventDesc() const override { return eventDesc; }
    void SetCurrentEventDesc(const QString& d) override { eventDesc = d; }
    qint64 CurrentTrackId() const override { return trackId; }
    void SetCurrentTrackId(qint64 id) override { trackId = id; }
    QString CurrentTrackDesc() const override { return trackDesc; }
    void SetCurrentTrackDesc(const QString& d) override { trackDesc = d; }
    QString CurrentView() const override { return view; }
    bool RunFilterActive() const override { return filterActive; }
    void SetRunFilterActive(bool a) override { filterActive = a; }
    QString RunFilterString() const override { return filterString; }
    void SetRunFilterString(const QString& t) override { filterString = t; }
    QString RunFilterSQL() const override { return filterSql; }
    void SetRunFilterSQL(const QString& s) override { filterSql = s; }
    void CarsLoad() override { calls << QStringLiteral("CarsLoad"); }
    void EventsLoad() override { calls << QStringLiteral("EventsLoad"); }
    void TrackLoad() override { calls << QStringLiteral("TrackLoad"); }
    void ViewsLoad() override { calls << QStringLiteral("ViewsLoad"); }
    void SelectCar(qint64 id) override {
        carId = id, calls << QStringLiteral("SelectCar %1").arg(id);
    }
    void SelectEvent(qint64 id) override {
        eventId = id, calls << QStringLiteral("SelectEvent %1").arg(id);
    }
    void SelectTrack(qint64 id) override {
        trackId = id, calls << QStringLiteral("SelectTrack %1").arg(id);
    }
    void FilterApply() override { calls << QStringLiteral("FilterApply"); }
    void ClickTool(const QString& id) override { calls << QStringLiteral("ClickTool ") + id; }
    QString StoredToolId() const override { return storedTool; }
    void SetStoredToolId(const QString& id) override { storedTool = id; }
    QString SelectedKeyText() const override { return keyText; }
    QString SelectedCellText(int c) const override {
        return c < cells.size() ? cells[c] : QString();
    }
    void ForbidSelectDifferentRun() override { ++lockCount; }
    void AllowSelectDifferentRun() override { --lockCount; }
    QString GetCar_num() override { return carNum; }
    void CalcAllETPrediction(const QString& corr, const QString& da) override {
        calls << QStringLiteral("CalcAllETPrediction %1 %2").arg(corr, da);
    }
    void CalcAllTuneUp(const QString& adr) override {
        calls << QStringLiteral("CalcAllTuneUp ") + adr;
    }
    void AddPageLeadin(const QString& line) override { leadin.Add(line); }
    void ClearPageLeadin() override { leadin.Clear(); }
    QString GetPageLeadin() const override { return leadin.Get(); }
    QString WeatherDirectory() const override { return weatherDir; }
    QWidget* ToolWindow(const QString& id) override {
        calls << QStringLiteral("ToolWindow ") + id;
        return toolWindow ? toolWindow(id) : nullptr;
    }
    std::function<QWidget*(const QString&)> toolWindow;
};

}  // namespace slipbook::test
