#include "analysis/ui/frmReportCard.h"

namespace slipbook::analysis {

frmReportCard::frmReportCard(const shell::WindowContext& /*ctx*/, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmReportCard"));
    setWindowTitle(QStringLiteral("Prediction Report Card"));
}

}  // namespace slipbook::analysis
