#pragma once

// File > Import Runs...: the file, its first rows, the matching of its columns, the car and the
// event, then the import with its rejects.

#include "shell/windowcontext.h"

#include <QDialog>

namespace slipbook::exchange {

class frmImport : public QDialog {
    Q_OBJECT
public:
    explicit frmImport(const shell::WindowContext& ctx, QWidget* parent = nullptr);
};

}  // namespace slipbook::exchange
