#include "exchange/ui/frmImport.h"

namespace slipbook::exchange {

frmImport::frmImport(const shell::WindowContext& /*ctx*/, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Import Runs"));
}

}  // namespace slipbook::exchange
