#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

namespace slipbook {

// The text a stored value shows as, with or without a format text, the way the lists show
// cells: numbers through number formats ("###,##0.000"), dates and times through date formats
// ("mm/dd/yyyy", "hh:mm AMPM"), flags as "True"/"False". Null is the empty text. A numeric text
// takes a number format as a number would; any other text stands as it is.
QString FormatValue(const QVariant& value, const QString& format);

// A date or time in a date format: d dd ddd dddd, m mm mmm mmmm (minutes after h), yy yyyy,
// h hh, n nn, s ss, AM/PM am/pm A/P a/p AMPM, "quoted" and \ literals; the names
// "General Date", "Short Date", "Long Date", "Short Time", "Medium Time", "Long Time".
QString FormatDateTime(const QDateTime& value, const QString& format);

// A date as it converts to text without a format: "7/4/2003", "10:30:00 AM" for a bare time,
// both for a date with a time of day.
QString PlainDateText(const QDateTime& value);

}  // namespace slipbook
