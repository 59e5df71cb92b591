#pragma once

#include "common/clock.h"
#include "shell/maincontext.h"
#include "shell/mainstate.h"
#include "shell/windowcontext.h"
#include "store/logbookevents.h"

#include <QHash>
#include <QStringList>

#include <functional>

namespace slipbook::test {

// A clock that stands still where the test puts it.
class FixedClock : public WallClock {
public:
    QDateTime now = QDateTime(QDate(2024, 7, 4), QTime(14, 35));
    QDateTime Now() const override { return now; }
};

// A main window that keeps its state in a MainState and writes down every call, for window
// tests; with its own change notifier and clock it makes the windows' whole context.
class FakeMain : public shell::MainContext {
public:
    // What the windows tell the notifier is written down with the calls.
    FakeMain() {
        state.car.id = 1;
        QObject::connect(&events, &store::LogbookEvents::runSaved, [this](qint64 id, bool added) {
            calls << QStringLiteral("runSaved %1%2").arg(id).arg(added ? " added" : "");
        });
        QObject::connect(&events, &store::LogbookEvents::runDeleted,
                         [this](qint64 id) { calls << QStringLiteral("runDeleted %1").arg(id); });
        QObject::connect(&events, &store::LogbookEvents::recordsChanged, [this](const QString& t) {
            calls << QStringLiteral("recordsChanged ") + t;
        });
    }
    FakeMain(const FakeMain&) = delete;
    FakeMain& operator=(const FakeMain&) = delete;

    shell::WindowContext Context(store::Database& db, Messages& messages) {
        return {db, messages, events, clock, state, *this};
    }

    shell::MainState state;
    store::LogbookEvents events;
    FixedClock clock;
    QString keyText;
    QStringList cells;
    int lockCount = 0;
    QString carNum = QStringLiteral("1");
    QStringList calls;  // "ClickTool ID_Runs", "CalcAllTuneUp 95.8", "ToolWindow ID_...", ...
    QHash<QString, QString> weather;  // the weather window's boxes by name; "0" when not given
    std::function<QWidget*(const QString&)> toolWindow;
    std::function<QWidget*(QStringView, qint64)> showWindow;
    // The list: its columns after the key, and its rows with the key first.
    QList<shell::ShownColumn> columns;
    QList<QStringList> rows;
    QList<qint64> shownColumns;  // what ListShowColumns was last given
    QList<qint64> views;         // the keys of the views selector
    qint64 viewId = 0;           // the key of its current entry

    void ClickTool(const QString& id) override { calls << QStringLiteral("ClickTool ") + id; }
    void FilterApply() override { calls << QStringLiteral("FilterApply"); }
    void FilterToolFollow() override { calls << QStringLiteral("FilterToolFollow"); }
    QString SelectedCellText(int c) const override {
        if (c == 0 && !keyText.isEmpty()) {
            return keyText;
        }
        return c < cells.size() ? cells[c] : QString();
    }
    QList<shell::ShownColumn> ListColumns() const override { return columns; }
    int ListRowCount() const override { return static_cast<int>(rows.size()); }
    QString ListCellText(int row, int column) const override {
        return row >= 0 && row < rows.size() ? rows[row].value(column) : QString();
    }
    void ListShowColumns(const QList<qint64>& ids) override {
        shownColumns = ids;
        calls << QStringLiteral("ListShowColumns");
    }
    void ViewsLoad() override { calls << QStringLiteral("ViewsLoad"); }
    bool SelectView(qint64 id) override {
        calls << QStringLiteral("SelectView %1").arg(id);
        if (!views.contains(id)) {
            return false;
        }
        viewId = id;
        return true;
    }
    qint64 CurrentViewId() const override { return viewId; }
    void ForbidSelectDifferentRun() override { ++lockCount; }
    void AllowSelectDifferentRun() override { --lockCount; }
    QString GetCar_num() override { return carNum; }
    void CalcAllETPrediction(const QString& corr, const QString& da) override {
        calls << QStringLiteral("CalcAllETPrediction %1 %2").arg(corr, da);
    }
    void CalcAllTuneUp(const QString& adr) override {
        calls << QStringLiteral("CalcAllTuneUp ") + adr;
    }
    QString WeatherText(const QString& name) override { return weather.value(name, "0"); }
    QWidget* ToolWindow(const QString& id) override {
        calls << QStringLiteral("ToolWindow ") + id;
        return toolWindow ? toolWindow(id) : nullptr;
    }
    QWidget* OpenWindow(const QString&) const override { return nullptr; }
    QWidget* ShowWindow(QStringView name, qint64 id) override {
        calls << QStringLiteral("ShowWindow %1 %2").arg(name.toString()).arg(id);
        return showWindow ? showWindow(name, id) : nullptr;
    }
    void HelpContents() override { calls << QStringLiteral("HelpContents"); }
};

}  // namespace slipbook::test
