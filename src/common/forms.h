#pragma once

// The small routines every window leans on: entry of dates, times and numbers, name case,
// quoting, the conversions of field values for saving, list stepping and the grid's sort keys.
// Dates and times follow the US conventions (month first, "10:30 AM") whatever the machine's
// locale. Date values are QDateTime in UTC, the way the store hands them out: only
// .date() and .time() count; a bare time stands on 1899-12-30.

#include "common/dates.h"
#include "common/numbers.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <optional>

namespace slipbook {

// The empty texts of the masked boxes.
inline constexpr QStringView kDateMaskEmpty = u"__/__/____";
inline constexpr QStringView kTimeMaskEmpty = u"__:__ __";
inline constexpr QStringView kLongTimeMaskEmpty = u"__:__:__ __";

// A value read as a date, in the manner of the classic IsDate and CDate: QDateTime, QDate and
// QTime values, and texts holding a numeric date ("7/4/2003", "7-4-03", "2003-07-04", "7/4"
// in the year of `today`), a time ("10:30 AM", "22:15:05"), or both. A date that cannot be
// month first is read day first ("25/12/2003"); one- and two-digit years fall in 1930 to 2029.
// Numbers, flags and anything else are no date.
std::optional<QDateTime> DateValue(const QVariant& value, QDate today = QDate::currentDate());

// The leading run of digits and "/" of a text, read as a date and given as "mm/dd/yyyy" when
// its year is above 1000; else the empty text.
QString DateTextParse(QStringView text, QDate today = QDate::currentDate());

// A field value for a masked date box: the empty mask for Null and for anything that is no
// date, else the date as "mm/dd/yyyy" through DateTextParse (so a year of 1000 or below gives
// the empty text).
QString DateMaskValue(const QVariant& value);

// A field value for a masked time box: the empty mask for Null, else the value as "hh:mm AM",
// or "hh:mm:s AM" with seconds (the seconds without a leading zero). A value that is no time
// is shown as the text it is.
QString TimeMaskValue(const QVariant& value, bool withSeconds);

// A field value as a box shows it: numbers as PlainNumberText, dates as "7/4/2003 10:30:00 AM",
// flags as "True"/"False", Null as the empty text.
QString ValueText(const QVariant& value);

// A stored number as a number box shows it: PlainNumberText, or the empty text for Null.
QString NumberOrEmptyText(const QVariant& value);

// The empty pattern of a mask ("##/##/####" gives "__/__/____": each "#" becomes "_", every
// other character stays) for Null or the empty text; else the value as text.
QString MaskClipValue(const QVariant& value, QStringView mask);

// A text re-formatted as "hh:mm AM" or "hh:mm:ss AM"; a text that is no time stays as it is.
QString TimeTextFormat(const QString& text, bool withSeconds);

// Key codes as the key-press handlers see them: the character's code, 8 for backspace, 13 for
// Enter.
inline constexpr int kKeyBackspace = 8;
inline constexpr int kKeyEnter = 13;

// Digits, ".", backspace and "-".
bool KeyAllowedSigned(int key);
// Digits and ".".
bool KeyAllowedDecimal(int key);

enum class KeyVerdict {
    Accept,
    Swallow,
    NextField,  // the key is swallowed and the focus moves on, as Tab would move it
};

// The numeric key filter of the number boxes. `text` is the box's text, with the selection at
// `selStart` of `selLength` characters, which the key replaces. A digit or "." is refused when
// the text after the key would hold a second "." or more than `decimals` places behind the
// first; a negative `decimals` sets no limit on places or points.
KeyVerdict KeyNumericFilter(int key, QStringView text, int selStart, int selLength, int decimals);

// True when a masked date or time box holds nothing (its empty mask) or a valid value: what the
// boxes accept on leaving and on saving.
bool IsBlankOrDate(QStringView text, QStringView emptyMask);

// What a number column keeps: whole numbers of 16 or 32 bits, money, single or double precision.
enum class StoredNumber { Integer, Long, Currency, Single, Double };
// Why a number box's text can't be kept in its column, as a "Data Entry Error" says it ("Points
// Must Be a Whole Number From -2,147,483,648 To 2,147,483,647"); empty when it can, or when the
// box is empty. Whole numbers are rounded as they are saved.
std::optional<QString> NumberEntryProblem(const QString& fieldName, QStringView text,
                                          StoredNumber column);

// A number box's text on leaving it, padded with "." and zeros to `decimals` places ("12" with
// 3 gives "12.000", "" gives ".000"); empty when nothing is to be added. Blanks around the number
// (a stored value is shown with one behind it) are not part of it: "10.9 " gives "10.900".
std::optional<QString> NumericPad(QStringView text, int decimals);

// A name in name case: "mcdonald" gives "McDonald", "o'brien-smith" gives "O'Brien-Smith",
// "MACARTHUR" gives "MacArthur". A text that does not start with a letter stays as it is.
QString NameCase(const QString& text);

// True when the text starts with a character that has case and is no digit.
bool IsAlphaStart(QStringView text);

// The hints the notes panes show while empty: "<Type notes here>", "<Type directions here>",
// "<Type maintenance description here>".
const QStringList& NotesHints();
// True when the text, without surrounding blanks, is one of those hints: older logbooks and
// pastes may hold one, and it is no note. Any other text, "<3 psi" included, is the racer's.
bool IsNotesHint(QStringView text);

// A text for an SQL literal between apostrophes, each apostrophe doubled. A notes hint gives the
// empty text, so that it never reaches the logbook.
QString QuoteDouble(const QString& text);

// Every occurrence of `search` replaced, left to right; an empty `search` changes nothing.
QString TextReplace(const QString& text, QStringView search, QStringView replacement);

// For saving: the value as a date (QDateTime in UTC), or Null when it is no date.
QVariant DateOrNull(const QVariant& value);

// For saving: the value as a 16-bit whole number (rounded half to even) when it is numeric,
// else 0. A value that rounds outside -32768..32767 fails with "Overflow": the original
// program stops there, and the caller decides what to do instead.
CalcResult<int> IntOrZero(const QVariant& value);

// For saving: Null for the empty text, else the text without leading and trailing blanks.
QVariant TextOrNull(const QString& text);
// The text without leading and trailing blanks. The classic Trim takes spaces only; tabs and
// line ends stay.
QStringView TrimSpaces(QStringView text);

// The list index to select after an entry was removed: -1 when the list is empty (`count` 0),
// the last entry when `index` + 1 reaches it, else `index` (at least 0).
int ListStep(int count, int index);

// One number for a date and time, in the grid sort's order. A date in the year 1899 counts as
// no date, so that bare times sort by the time of day alone.
qint64 GridDateKey(QDate date, QTime time);
// The same for a cell's text; empty when the text is no date or time.
std::optional<qint64> GridDateKey(QStringView text);
// A cell's number: the strict parse of its text, with 0 for anything that is no number.
double GridNumberKey(QStringView text);

}  // namespace slipbook
