#pragma once

// The car's runs charted: ET against the air, ET and speed over time, 60' against ET and the
// reaction times, one tab each; a point opens its run.

#include "analysis/chartdata.h"
#include "shell/windowcontext.h"

#include <QWidget>

#include <array>
#include <functional>
#include <utility>
#include <vector>

class QChart;
class QChartView;
class QCheckBox;
class QLabel;
class QPainter;
class QPointF;
class QRadioButton;
class QRectF;
class QTabWidget;
class QTimer;
class QXYSeries;

namespace slipbook::analysis {

class frmCharts : public QWidget {
    Q_OBJECT
public:
    explicit frmCharts(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmCharts() override;

    // Reads the runs again and draws every chart.
    void Reload();

    // The current tab as printed (heading, chart, the texts under it), to a file; false when
    // it could not be written.
    bool SavePng(const QString& path);
    bool SavePdf(const QString& path);

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Page {
        QWidget* widget = nullptr;
        QChartView* view = nullptr;
        QLabel* empty = nullptr;  // shown instead of a chart without points
        QLabel* info = nullptr;
        QString caption;
        // The series a click opens a run from, with the run of each point.
        std::vector<std::pair<QXYSeries*, std::vector<ChartPoint>>> clickable;
    };
    enum PageIndex { kDensityAlt, kCorrFactor, kOverTime, kSixtyFoot, kReaction, kPages };

    ChartScope ScopeNow() const;
    QString ScopeText() const;
    void ScheduleReload();
    void Draw();
    void DrawDensityAlt();
    void DrawCorrFactor();
    void DrawOverTime();
    void DrawSixtyFoot();
    void DrawReaction();
    void ShowChart(Page& page, QChart* chart, const QString& info);
    void ShowEmpty(Page& page, const QString& text);
    void AddScatter(Page& page, QChart* chart, const std::vector<ChartPoint>& points,
                    const QString& name, const LineFit& fit);
    void Clickable(int pageIndex, QXYSeries* series, const std::vector<ChartPoint>& points);
    void PointClicked(int pageIndex, QXYSeries* series, const QPointF& at);
    void PaintPage(QPainter& painter, const QRectF& area) const;
    void Print();
    void Export(bool pdf);

    shell::WindowContext ctx_;
    std::array<Page, kPages> pages_;
    QTabWidget* tabs_ = nullptr;
    QLabel* scope_ = nullptr;
    QRadioButton* optQuarter_ = nullptr;
    QRadioButton* optEighth_ = nullptr;
    QCheckBox* chkFollowList_ = nullptr;
    QTimer* reloadTimer_ = nullptr;
    ChartScope charted_;
    bool loaded_ = false;
    bool distanceChosen_ = false;
    std::vector<RunFigures> runs_;
    ChartSet charts_;
    QString exportDir_;
};

}  // namespace slipbook::analysis
