#pragma once

// The weather readings of a day or an event, listed and charted: temperature, humidity,
// barometer, density altitude and correction factor against the time of day.

#include "shell/windowcontext.h"
#include "weather/weatherlog.h"

#include <QString>
#include <QWidget>

#include <array>
#include <vector>

class QChartView;
class QComboBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPushButton;
class QRadioButton;
class QStackedWidget;
class QTabWidget;
class QTableView;

namespace slipbook::weather {

class ReadingsModel;

class frmWeatherHistory : public QWidget {
    Q_OBJECT
public:
    explicit frmWeatherHistory(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmWeatherHistory() override;

    // What the window shows: "07/04/2026", or the event's name and dates.
    QString ShownTitle() const { return title_; }

    // The chart on the tab in front, as a picture; false when it could not be written.
    bool SaveChartImage(const QString& path);
    // The five charts on one page under the title.
    void PrintTo(QPrinter* printer);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildLayout();
    void FillEvents();
    // Takes the day typed; false, with the racer told, when it is no date.
    bool DayEntered();
    void ShowDay(QDate day);
    void Reload();
    void ShowCharts();
    void SaveChart();
    void Print();

    store::Database& db_;
    Messages& messages_;
    const WallClock& clock_;

    std::vector<WeatherReading> readings_;
    TimeRange range_;
    bool rangeValid_ = false;
    QString title_;

    QRadioButton* optDay_ = nullptr;
    QLineEdit* mebDay_ = nullptr;
    QPushButton* cmdPrevDay_ = nullptr;
    QPushButton* cmdNextDay_ = nullptr;
    QDate day_;
    QRadioButton* optEvent_ = nullptr;
    QComboBox* cboEvents_ = nullptr;
    QLabel* lblCount_ = nullptr;
    QPushButton* cmdSaveChart_ = nullptr;
    QPushButton* cmdPrint_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QTableView* grdReadings_ = nullptr;
    ReadingsModel* model_ = nullptr;
    QTabWidget* tabCharts_ = nullptr;
    std::array<QChartView*, 5> charts_{};
    QLabel* lblEmpty_ = nullptr;
};

}  // namespace slipbook::weather
