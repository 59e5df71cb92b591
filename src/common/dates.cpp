#include "common/dates.h"

namespace slipbook {

QDate DayZero() {
    return QDate(1899, 12, 30);
}

int WindowYear(int year, int digits) {
    if (digits <= 2) {
        return year < 30 ? 2000 + year : 1900 + year;
    }
    return year;
}

std::optional<QDate> MonthFirstDate(int month, int day, int year) {
    if (year < 100 || year > 9999) {
        return std::nullopt;
    }
    QDate date(year, month, day);
    // A date that cannot be month first is read day first, as the classic runtime does.
    if (!date.isValid() && month > 12 && day <= 12) {
        date = QDate(year, day, month);
    }
    if (!date.isValid()) {
        return std::nullopt;
    }
    return date;
}

}  // namespace slipbook
