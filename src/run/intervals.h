#pragma once

// The four segment times between adjacent time-slip marks, recomputed from what is typed,
// character by character: a half-typed "1." gives a difference, a momentarily empty mark none.

#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <vector>

namespace slipbook::run {

struct IntervalDef {
    const char* control;  // the derived box
    const char* later;    // the mark it ends at
    const char* earlier;  // the mark it starts from
};

// 60 to 330, 330 to 660, 660 to 1000, 1000 to 1320, in that order.
const std::array<IntervalDef, 4>& Intervals();

// The intervals a change of the mark recomputes, in their order; none for another control.
std::vector<int> IntervalsOfMark(QStringView markControl);

// The text of an interval: the difference of the two marks to 15 significant digits and one
// blank, a negative difference as the blank alone. Empty when either mark is no number (blank
// included): the box then keeps what it showed.
std::optional<QString> IntervalText(QStringView laterText, QStringView earlierText);

}  // namespace slipbook::run
