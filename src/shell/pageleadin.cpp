#include "shell/pageleadin.h"

namespace slipbook::shell {

namespace {
constexpr int kWidth = 17;
}

void PageLeadin::Add(const QString& line) {
    if (text_.isEmpty()) {
        text_ = line;
    } else {
        text_ += u'\n' + line;
    }
}

QString FormatPageLeadin(const QString& number, const QString& name) {
    const QString tag = u'#' + number;
    const qsizetype gap = kWidth - name.size() - tag.size();
    if (gap >= 1) {
        return name + QString(gap, u' ') + tag;
    }
    return name + u'\n' + QString(std::max<qsizetype>(0, kWidth - tag.size()), u' ') + tag;
}

}  // namespace slipbook::shell
