#include "analysis/ui/frmStatistics.h"

namespace slipbook::analysis {

frmStatistics::frmStatistics(const shell::WindowContext& /*ctx*/, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmStatistics"));
    setWindowTitle(QStringLiteral("Statistics"));
}

}  // namespace slipbook::analysis
