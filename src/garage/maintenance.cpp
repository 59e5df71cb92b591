#include "garage/maintenance.h"

#include "common/forms.h"
#include "common/numbers.h"

namespace slipbook::garage {

namespace {

QString DateLiteral(const QDate& date) {
    return u'#' + date.toString(QStringLiteral("MM/dd/yyyy")) + u'#';
}

int WholeOrZero(QStringView text) {
    const auto value = IntOrZero(text.toString());
    return value ? *value : 0;
}

double NumberOrZero(const QVariant& value) {
    bool ok = false;
    const double d = value.toDouble(&ok);
    return ok ? d : 0.0;
}

}  // namespace

QString UpcomingTerm() {
    return QStringLiteral(
        "(bCompleted = 0) AND (iRunsMade >= iScheduledRuns - ((iScheduledRuns + 9) / 10))");
}

QString CriticalTerm() {
    return QStringLiteral("(bCompleted = 0) AND (iRunsMade >= iScheduledRuns)");
}

bool IsUpcoming(double scheduled, double made, bool completed) {
    return !completed && made >= scheduled - ((scheduled + 9) / 10);
}

bool IsCritical(double scheduled, double made, bool completed) {
    return !completed && made >= scheduled;
}

QString RemainingText(double scheduled, double made) {
    if (made < scheduled) {
        return FormatNumber(scheduled - made, u"#");
    }
    if (made == scheduled) {
        return QStringLiteral("(due NOW) ") + FormatNumber(0, u"#");
    }
    return QStringLiteral("(PAST DUE) ") + FormatNumber(scheduled - made, u"#");
}

QString MaintenanceListSql(const MaintenanceFilter& filter) {
    QString sql = QStringLiteral(
        "SELECT * FROM tblMaintenance LEFT OUTER JOIN tblCars ON tblCars.lCar_id = "
        "tblMaintenance.lCar_id ");
    QStringList terms;
    if (filter.from) {
        terms << QStringLiteral("dtMaintenance_dt >= ") + DateLiteral(*filter.from);
    }
    if (filter.to) {
        terms << QStringLiteral("dtMaintenance_dt <= ") + DateLiteral(*filter.to);
    }
    if (filter.carId != 0) {
        terms << QStringLiteral("tblMaintenance.lCar_id = ") + QString::number(filter.carId);
    }
    if (filter.status == MaintenanceStatus::Upcoming) {
        terms << UpcomingTerm();
    } else if (filter.status == MaintenanceStatus::Critical) {
        terms << CriticalTerm();
    }
    if (!terms.isEmpty()) {
        sql += QStringLiteral(" WHERE ") + terms.join(QStringLiteral(" AND "));
    }
    // Ascending on the flag: a completed item holds -1 and so comes first.
    sql += QStringLiteral(
        " ORDER BY bCompleted, dtMaintenance_dt DESC, "
        "[tblMaintenance]![iScheduledRuns]-[tblMaintenance]![iRunsMade], lMaintenance_id DESC");
    return sql;
}

QStringList MaintenanceCells(const MaintenanceItem& item) {
    const double scheduled = NumberOrZero(item.scheduled);
    const double made = NumberOrZero(item.made);
    QStringList cells{FormatNumber(static_cast<double>(item.id), u"#"), item.carName, item.notes,
                      item.scheduled.isNull() ? QString() : FormatNumber(scheduled, u"#"),
                      item.made.isNull() ? QString() : FormatNumber(made, u"#")};
    if (item.completed) {
        const auto date = DateValue(item.date);
        cells << QStringLiteral(" ") << QStringLiteral("Y")
              << (date ? date->date().toString(QStringLiteral("MM/dd/yyyy")) : QString());
    } else {
        cells << RemainingText(scheduled, made) << QStringLiteral("N") << QStringLiteral(" ");
    }
    return cells;
}

MaintenanceStyle RemainingStyle(QStringView completedCell, QStringView remainingCell,
                                QStringView scheduledCell) {
    if (completedCell != u"N") {
        return MaintenanceStyle::None;
    }
    const int remaining = WholeOrZero(remainingCell);
    const int scheduled = WholeOrZero(scheduledCell);
    if (remaining <= 0) {
        return MaintenanceStyle::Pastdue;
    }
    if ((scheduled + 9) / 10.0 >= remaining) {
        return MaintenanceStyle::Upcoming;
    }
    return MaintenanceStyle::None;
}

QString CountUpSql(qint64 carId) {
    return QStringLiteral(
               "UPDATE tblMaintenance SET iRunsMade = (iRunsMade + 1) WHERE bCompleted = 0 AND "
               "lCar_id = ") +
           QString::number(carId);
}

QString DueItemsSql(qint64 carId) {
    return QStringLiteral("SELECT * FROM tblMaintenance WHERE lCar_id = ") +
           QString::number(carId) +
           QStringLiteral(
               " AND (bCompleted = 0) AND (iRunsMade >= iScheduledRuns - ((iScheduledRuns + 9) / "
               "10))");
}

}  // namespace slipbook::garage
