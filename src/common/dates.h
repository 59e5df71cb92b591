#pragma once

// The calendar rules that stored dates and typed dates share; the store reads date literals
// with them, the windows read what is typed.

#include <QDate>

#include <optional>

namespace slipbook {

// The day a bare time stands on.
QDate DayZero();

// A year as typed: two digits or fewer fall in 1930 to 2029, as the classic runtime windows them.
int WindowYear(int year, int digits);
// The date of a month-first text's numbers; a month above 12 with a day that can be a month is
// read day first, as the classic runtime does. Empty when no such day exists or the year is not
// of four digits' range.
std::optional<QDate> MonthFirstDate(int month, int day, int year);

}  // namespace slipbook
