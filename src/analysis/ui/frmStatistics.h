#pragma once

// Figures of the runs listed.

#include "analysis/ui/figurewindow.h"
#include "shell/windowcontext.h"

class QLabel;
class QTableView;

namespace slipbook::analysis {

class frmStatistics : public FigureWindow {
    Q_OBJECT
public:
    explicit frmStatistics(const shell::WindowContext& ctx, QWidget* parent = nullptr);

protected:
    void Refresh() override;
    Report MakeReport() override;

private:
    QLabel* lblSelection = nullptr;
    QLabel* lblHelp = nullptr;
    QLabel* lblStatus = nullptr;
    QTableView* grdFigures = nullptr;
    QTableView* grdBests = nullptr;
};

}  // namespace slipbook::analysis
