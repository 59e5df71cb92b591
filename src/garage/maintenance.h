#pragma once

// Maintenance items count down in runs. These are their rules: when an item is upcoming or
// critical, how the list shows what is left, the list's statement and the run window's count.

#include <QDate>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <optional>

namespace slipbook::garage {

// The status filter, by the index of its entry.
enum class MaintenanceStatus { All = 0, Upcoming = 1, Critical = 2 };

// An open item is upcoming once the runs made reach the schedule less a tenth of it, the tenth
// rounded up for a whole schedule (floating division: a schedule of 20 is upcoming from 17.1
// runs, i.e. 18); critical once they reach the schedule.
QString UpcomingTerm();
QString CriticalTerm();
bool IsUpcoming(double scheduled, double made, bool completed);
bool IsCritical(double scheduled, double made, bool completed);

// What the Remaining column shows for an open item: the runs left, "(due NOW) " when none are
// left, "(PAST DUE) " and the negative count beyond.
QString RemainingText(double scheduled, double made);

struct MaintenanceFilter {
    std::optional<QDate> from;
    std::optional<QDate> to;
    qint64 carId = 0;  // 0: all cars
    MaintenanceStatus status = MaintenanceStatus::All;
};

// The list's statement: completed items first, newest first, then the open items by runs
// remaining, the most overdue first, the newest id breaking ties. Flags are stored as -1, so
// completed items come first in ascending order.
QString MaintenanceListSql(const MaintenanceFilter& filter);

// One item as the list shows it.
struct MaintenanceItem {
    qint64 id = 0;
    QString carName;
    QString notes;
    QVariant scheduled;
    QVariant made;
    bool completed = false;
    QVariant date;
};

// Columns of the list: the hidden id, car, description, scheduled, made, remaining, completed
// ("Y"/"N") and the completion date.
namespace maintcol {
constexpr int Id = 0;
constexpr int Car = 1;
constexpr int Description = 2;
constexpr int Scheduled = 3;
constexpr int Made = 4;
constexpr int Remaining = 5;
constexpr int Completed = 6;
constexpr int Date = 7;
constexpr int Count = 8;
}  // namespace maintcol

QStringList MaintenanceCells(const MaintenanceItem& item);

enum class MaintenanceStyle { None, Pastdue, Upcoming };

// The colour of an open row's Remaining cell, read back from the cells as shown: a remaining
// count that is no number (the due and past-due texts) counts as 0.
MaintenanceStyle RemainingStyle(QStringView completedCell, QStringView remainingCell,
                                QStringView scheduledCell);

// What a saved run does to its car's open items, and the query for the items that are then
// upcoming or critical.
QString CountUpSql(qint64 carId);
QString DueItemsSql(qint64 carId);

}  // namespace slipbook::garage
