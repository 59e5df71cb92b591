#pragma once

// How each dial-in method would have done.

#include "shell/windowcontext.h"

#include <QWidget>

namespace slipbook::analysis {

class frmReportCard : public QWidget {
    Q_OBJECT
public:
    explicit frmReportCard(const shell::WindowContext& ctx, QWidget* parent = nullptr);
};

}  // namespace slipbook::analysis
