#pragma once

// How each dial-in method would have done.

#include "analysis/reportcard.h"
#include "analysis/ui/figurewindow.h"
#include "shell/windowcontext.h"

class QLabel;
class QRadioButton;
class QSpinBox;
class QTableView;

namespace slipbook::analysis {

class frmReportCard : public FigureWindow {
    Q_OBJECT
public:
    explicit frmReportCard(const shell::WindowContext& ctx, QWidget* parent = nullptr);

protected:
    void Refresh() override;
    Report MakeReport() override;

private:
    void ShowScores();

    QLabel* lblCar = nullptr;
    QLabel* lblHelp = nullptr;
    QLabel* lblSummary = nullptr;
    QRadioButton* opt14Mile = nullptr;
    QRadioButton* opt18Mile = nullptr;
    QSpinBox* spnLastRuns = nullptr;
    QTableView* grdScores = nullptr;
    QTableView* grdCard = nullptr;
    ReportCard card_;
};

}  // namespace slipbook::analysis
