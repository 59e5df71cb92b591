#pragma once

// The car's runs charted.

#include "shell/windowcontext.h"

#include <QWidget>

namespace slipbook::analysis {

class frmCharts : public QWidget {
    Q_OBJECT
public:
    explicit frmCharts(const shell::WindowContext& ctx, QWidget* parent = nullptr);
};

}  // namespace slipbook::analysis
