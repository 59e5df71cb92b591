#include "run/intervals.h"

#include "common/numbers.h"

namespace slipbook::run {

const std::array<IntervalDef, 4>& Intervals() {
    static const std::array<IntervalDef, 4> intervals = {{
        {"txt60to330foot_et", "txt330Foot_et", "txt60Foot_et"},
        {"txt330to660foot_et", "txt18Mile_et", "txt330Foot_et"},
        {"txt660to1000foot_et", "txt1000Foot_et", "txt18Mile_et"},
        {"txt1000to1320foot_et", "txt14Mile_et", "txt1000Foot_et"},
    }};
    return intervals;
}

std::vector<int> IntervalsOfMark(QStringView markControl) {
    std::vector<int> found;
    const auto& all = Intervals();
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        if (markControl == QLatin1String(all[i].later) ||
            markControl == QLatin1String(all[i].earlier)) {
            found.push_back(i);
        }
    }
    return found;
}

std::optional<QString> IntervalText(QStringView laterText, QStringView earlierText) {
    const auto later = StrictNumber(laterText);
    const auto earlier = StrictNumber(earlierText);
    if (!later || !earlier) {
        return std::nullopt;
    }
    QString text = PlainNumberText(*later - *earlier);
    if (text.startsWith(u'-')) {
        text.clear();
    }
    return text + u' ';
}

}  // namespace slipbook::run
