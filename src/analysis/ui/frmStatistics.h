#pragma once

// Figures of the runs listed.

#include "shell/windowcontext.h"

#include <QWidget>

namespace slipbook::analysis {

class frmStatistics : public QWidget {
    Q_OBJECT
public:
    explicit frmStatistics(const shell::WindowContext& ctx, QWidget* parent = nullptr);
};

}  // namespace slipbook::analysis
