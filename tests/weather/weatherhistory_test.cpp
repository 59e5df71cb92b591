// The weather log from the windows: the run window takes the reading nearest the run's date and
// time, and the history window lists and charts a day's or an event's readings.

#include "common/tools.h"
#include "run/ui/frmRun.h"
#include "support/gui.h"
#include "support/modelcheck.h"
#include "weather/ui/frmWeatherHistory.h"
#include "weather/weatherlog.h"

#include <QAbstractAxis>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateTimeAxis>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QLineSeries>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

using namespace slipbook;
using namespace slipbook::test;

namespace {

QDateTime At(int month, int day, int h, int m) {
    return QDateTime(QDate(2026, month, day), QTime(h, m), Qt::UTC);
}

struct WeatherLogWindows : WindowTest {
    void Log(const QDateTime& at, const char* temp, const char* humidity, const char* baro) {
        const auto figures = weather::RecalculatedAirTexts(
            QString::fromLatin1(temp), QString::fromLatin1(humidity), QString::fromLatin1(baro));
        ASSERT_TRUE(figures);
        weather::RecordReading(
            logbook.db(),
            weather::ReadingFromTexts(at,
                                      {QString::fromLatin1(temp), QString::fromLatin1(humidity),
                                       QString::fromLatin1(baro), "0"},
                                      *figures, weather::kSourceStation));
    }
    QString Text(QWidget& w, const char* name) {
        return Child<QLineEdit>(w, QString::fromLatin1(name))->text();
    }
    QString Weather(run::frmRun& w) {
        QStringList texts;
        for (const char* name : {"txtTemp", "txtHumidity", "txtBarometricPressure",
                                 "txtPressureAltitude", "txtCorrFactor", "txtDensityAlt"}) {
            texts << Text(w, name);
        }
        return texts.join(' ');
    }
    std::unique_ptr<run::frmRun> NewRun() {
        main.state.storedTool = tools::kNew;
        main.state.event.id = 1;
        auto w = std::make_unique<run::frmRun>(Context());
        ShowActive(*w);
        return w;
    }
};

}  // namespace

TEST_F(WeatherLogWindows, TheRunWindowTakesTheReadingNearestItsDateAndTime) {
    Log(At(7, 4, 14, 5), "75", "50", "29.92");
    Log(At(7, 4, 14, 30), "80", "40", "29.80");
    auto w = NewRun();
    auto* date = Child<QLineEdit>(*w, "mebRun_dt");
    auto* time = Child<QLineEdit>(*w, "mebRun_tm");
    auto* fromLog = Child<QPushButton>(*w, "WeatherFromLog");
    auto* minutes = Child<QSpinBox>(*w, "spnLogMinutes");
    EXPECT_EQ(minutes->value(), 10);

    Type(date, "07/04/2026");
    Leave(date);
    Type(time, "02:15 PM");
    Leave(time);
    w->SetDataChanged(false);
    QTest::mouseClick(fromLog, Qt::LeftButton);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Weather(*w), "75 50 29.92 1 1.0294 1,468");
    EXPECT_EQ(FocusName(*w), "txtTemp");
    EXPECT_TRUE(w->DataChanged());
    EXPECT_TRUE(w->WeatherFetched());

    // Five minutes before the later reading it is the nearer one.
    Type(time, "02:25 PM");
    Leave(time);
    QTest::mouseClick(fromLog, Qt::LeftButton);
    EXPECT_EQ(Weather(*w).section(' ', 0, 2), "80 40 29.8");

    // A narrower window reaches neither reading; the boxes keep what they hold.
    Type(minutes, "4");
    Leave(minutes);
    Type(time, "02:18 PM");
    Leave(time);
    const QString before = Weather(*w);
    QTest::mouseClick(fromLog, Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, "No weather reading within 4 minutes of 07/04/2026 02:18 PM.");
    EXPECT_EQ(messages.last().title, "Weather From Log");
    EXPECT_EQ(Weather(*w), before);
    // The window the racer set is kept for the next run.
    EXPECT_EQ(weather::LookupMinutes(logbook.db()), 4);

    // No time, no look-up: the racer is told and taken to the box.
    messages.shown.clear();
    Type(time, "");
    QTest::mouseClick(fromLog, Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text,
              "Enter the run's date and time to take its weather from the log.");
    EXPECT_EQ(FocusName(*w), "mebRun_tm");
    messages.shown.clear();
    Type(time, "02:07 PM");
    Leave(time);
    Type(date, "");
    QTest::mouseClick(fromLog, Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(FocusName(*w), "mebRun_dt");

    // A station request still open gives way to the reading taken from the log.
    Type(date, "07/04/2026");
    Leave(date);
    messages.shown.clear();
    QTest::mouseClick(Child<QPushButton>(*w, "GetWeather"), Qt::LeftButton);
    ASSERT_EQ(messages.shown.size(), 1u);  // the station's instructions
    QTest::mouseClick(fromLog, Qt::LeftButton);
    EXPECT_EQ(Weather(*w).section(' ', 0, 2), "75 50 29.92");
    EXPECT_NE(Child<QPushButton>(*w, "GetWeather")->palette().color(QPalette::ButtonText),
              QColor(Qt::red));
    Grab(*w, "run-weather-from-log");
    w.reset();

    auto next = NewRun();
    EXPECT_EQ(Child<QSpinBox>(*next, "spnLogMinutes")->value(), 4);
}

TEST_F(WeatherLogWindows, TheHistoryWindowListsAndChartsADayOrAnEvent) {
    Log(At(7, 4, 10, 0), "70", "60", "29.95");
    Log(At(7, 4, 12, 0), "82", "45", "29.90");
    Log(At(7, 4, 14, 30), "91", "35", "29.84");
    Log(At(7, 5, 9, 15), "68", "70", "29.99");
    logbook.db().Execute(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, dtEventStart_dt, dtEventEnd_dt) "
        "VALUES (7, 'Summer Nationals', #07/04/2026#, #07/05/2026#)");
    main.clock.now = QDateTime(QDate(2026, 7, 4), QTime(15, 0));

    weather::frmWeatherHistory w(Context());
    ShowActive(w);
    auto* grid = Child<QTableView>(w, "grdReadings");
    QAbstractItemModel* model = grid->model();
    ModelCheck check(model);
    const auto cell = [model](int row, int column) {
        return model->index(row, column).data().toString();
    };
    const auto points = [&w](const char* chart) {
        QChart* c = Child<QChartView>(w, QString::fromLatin1(chart))->chart();
        return c->series().isEmpty()
                   ? -1
                   : static_cast<int>(static_cast<QLineSeries*>(c->series()[0])->count());
    };
    auto* stack = Child<QStackedWidget>(w, "stkHistory");
    auto* empty = Child<QLabel>(w, "lblEmpty");

    // Today, as the clock has it.
    EXPECT_EQ(w.windowTitle(), "Weather History - 07/04/2026");
    ASSERT_EQ(model->rowCount(), 3);
    EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), "Time");
    EXPECT_EQ(cell(0, 0), "10:00:00 AM");
    EXPECT_EQ(cell(2, 0), "02:30:00 PM");
    EXPECT_EQ(cell(1, 1), "82.0");
    EXPECT_EQ(cell(1, 3), "29.90");
    EXPECT_EQ(cell(1, 12), "Station");
    EXPECT_EQ(model->headerData(6, Qt::Horizontal).toString(), "Density Alt");
    EXPECT_FALSE(cell(2, 6).isEmpty());
    EXPECT_EQ(Child<QLabel>(w, "lblCount")->text(), "3 readings");
    for (const char* chart :
         {"chtTemp", "chtHumidity", "chtBarometer", "chtDensityAlt", "chtCorrFactor"}) {
        EXPECT_EQ(points(chart), 3) << chart;
    }
    QChart* temp = Child<QChartView>(w, "chtTemp")->chart();
    EXPECT_EQ(temp->axes(Qt::Vertical).at(0)->titleText(), "Temperature (°F)");
    EXPECT_EQ(Child<QTabWidget>(w, "tabCharts")->count(), 5);
    EXPECT_NE(stack->currentWidget(), empty);
    Grab(w, "weather-history-day");

    // A day without readings says so instead of an empty chart.
    auto* day = Child<QLineEdit>(w, "mebDay");
    Type(day, "07/06/2026");
    Leave(day);
    EXPECT_EQ(model->rowCount(), 0);
    EXPECT_EQ(stack->currentWidget(), empty);
    EXPECT_EQ(empty->text(), "No weather readings for 07/06/2026.");
    EXPECT_FALSE(Child<QPushButton>(w, "cmdPrint")->isEnabled());

    // The event's two days, the date in front of each time.
    Pick(Child<QComboBox>(w, "cboEvents"), "Summer Nationals (07/04/2026)");
    ASSERT_EQ(model->rowCount(), 4);
    EXPECT_EQ(cell(3, 0), "07/05/2026 09:15:00 AM");
    EXPECT_EQ(points("chtDensityAlt"), 4);
    EXPECT_EQ(w.windowTitle(), "Weather History - Summer Nationals, 07/04/2026 to 07/05/2026");
    Grab(w, "weather-history-event");

    // The chart as a picture, and the five on paper.
    QTemporaryDir out;
    const QString png = out.filePath("chart.png");
    EXPECT_TRUE(w.SaveChartImage(png));
    EXPECT_FALSE(QImage(png).isNull());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(qEnvironmentVariableIsSet("SLIPBOOK_GRAB_DIR")
                                  ? qEnvironmentVariable("SLIPBOOK_GRAB_DIR") +
                                        "/weather-history.pdf"
                                  : out.filePath("history.pdf"));
    w.PrintTo(&printer);
    EXPECT_GT(QFile(printer.outputFileName()).size(), 1000);

    // An event added meanwhile is offered; the one shown stays picked.
    logbook.db().Execute(
        "INSERT INTO tblEvents (lEvent_id, sEvent_nm, dtEventStart_dt) VALUES "
        "(8, 'Fall Classic', #10/02/2026#)");
    Q_EMIT main.events.recordsChanged("tblEvents");
    auto* events = Child<QComboBox>(w, "cboEvents");
    EXPECT_EQ(events->itemText(0), "Fall Classic (10/02/2026)");
    EXPECT_EQ(events->currentText(), "Summer Nationals (07/04/2026)");
    EXPECT_EQ(model->rowCount(), 4);

    // The template's event has no readings.
    Pick(Child<QComboBox>(w, "cboEvents"), "Test and Tune Day (04/05/2003)");
    EXPECT_EQ(empty->text(), "No weather readings for Test and Tune Day, 04/05/2003.");

    // A day that is no date is refused and the list stays; Enter takes a good one, and the
    // buttons step a day at a time.
    Type(day, "13/45/2026");
    QTest::keyClick(day, Qt::Key_Return);
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.last().text, "Invalid Date, Use MM/DD/YYYY Format");
    EXPECT_EQ(FocusName(w), "mebDay");
    EXPECT_EQ(w.ShownTitle(), "Test and Tune Day, 04/05/2003");
    messages.shown.clear();
    Type(day, "07/05/2026");
    QTest::keyClick(day, Qt::Key_Return);
    EXPECT_EQ(model->rowCount(), 1);
    // One reading is a dot on an axis that still has a width.
    EXPECT_EQ(points("chtBarometer"), 1);
    const auto* axis = static_cast<QDateTimeAxis*>(
        Child<QChartView>(w, "chtBarometer")->chart()->axes(Qt::Horizontal).at(0));
    EXPECT_LT(axis->min(), axis->max());
    QTest::mouseClick(Child<QPushButton>(w, "cmdPrevDay"), Qt::LeftButton);
    EXPECT_EQ(day->text(), "07/04/2026");

    // Today: a reading logged while another window was in front shows on return.
    EXPECT_EQ(model->rowCount(), 3);
    main.clock.now = QDateTime(QDate(2026, 7, 4), QTime(15, 30));
    Log(At(7, 4, 15, 30), "88", "38", "29.82");
    QWidget other;
    ShowActive(other);
    ShowActive(w);
    EXPECT_EQ(model->rowCount(), 4);
    EXPECT_EQ(points("chtTemp"), 4);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(Child<QLabel>(w, "lblCount")->text(), "4 readings");
}
