#include "analysis/ui/frmCharts.h"

namespace slipbook::analysis {

frmCharts::frmCharts(const shell::WindowContext& /*ctx*/, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmCharts"));
    setWindowTitle(QStringLiteral("Charts"));
}

}  // namespace slipbook::analysis
