#pragma once

#include "common/messages.h"
#include "common/textgrid.h"
#include "shell/help.h"
#include "shell/maincontext.h"
#include "shell/pageleadin.h"
#include "shell/runlist.h"
#include "shell/ui/windowtable.h"
#include "store/database.h"

#include <QDateTime>
#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <functional>

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QSplitter;
class QToolBar;

namespace slipbook::shell {

class FrozenTableView;

// The program's hub: the run list of the current car, event and track in the chosen view, the
// notes pane, the selectors, and the one tool dispatcher. Constructing it is its load event;
// FormLoadStuff is the first fill, which the start-up calls once the splash has had its time.
class frmMain : public QMainWindow, public MainContext {
    Q_OBJECT

public:
    using StatusReporter = std::function<void(const QString&)>;
    using UrlOpener = std::function<bool(const QUrl&)>;
    using ProgramStarter = std::function<bool(const QString& program, const QStringList& args)>;
    // Makes the window of a list or tool; the window reads what it needs from this main window.
    using WindowFactory = std::function<QWidget*(frmMain& main)>;
    using PredictionFactory = std::function<PredictionWindow*(frmMain& main)>;
    using TuneUpFactory = std::function<TuneUpWindow*(frmMain& main)>;
    // Asks a folder or file of the user, for the logbook copies; empty when cancelled.
    using PathChooser = std::function<QString(const QString& caption, bool folder)>;
    using Clock = std::function<QDateTime()>;

    frmMain(store::Database& db, Messages& messages, const QString& commandLine,
            const QString& appDir, QWidget* parent = nullptr);
    ~frmMain() override;

    void FormLoadStuff();
    void HelpContents();

    // Windows of later subsystems come in here; their tools are enabled as they arrive.
    void RegisterWindow(const QString& key, WindowFactory factory);
    // What deleting a row of a list does, and whether a row may be deleted.
    void RegisterDelete(const QString& key, std::function<void(const QString& keyText)> remove,
                        std::function<bool(const QString& keyText)> canDelete = {});
    void RegisterPrediction(PredictionFactory factory);
    void RegisterTuneUp(TuneUpFactory factory);
    QWidget* OpenWindow(const QString& key) const;
    QWidget* ToolWindow(const QString& toolId) override;

    // Progress of the loaders goes to the splash's status line.
    void setStatusReporter(StatusReporter reporter) { statusReporter_ = std::move(reporter); }
    // Opens the help pages and web addresses; the platform's viewer unless a test replaces it.
    void setUrlOpener(UrlOpener opener) { urlOpener_ = std::move(opener); }
    void setProgramStarter(ProgramStarter starter) { programStarter_ = std::move(starter); }
    void setPathChooser(PathChooser chooser) { pathChooser_ = std::move(chooser); }
    // The time printed lists are stamped with; the system's unless a test sets one.
    void setClock(Clock clock) { now_ = std::move(clock); }

    store::Database& database() const { return db_; }
    Messages& messages() const { return messages_; }
    const QString& weatherDirectory() const { return weatherDir_; }
    const QString& helpPath() const { return help_.path; }
    const QString& applicationTitle() const { return appTitle_; }
    bool isLoading() const { return loading_; }
    int lockCount() const { return lockCount_; }
    // The tool with this id, or null.
    QAction* tool(const QString& id) const;
    QComboBox* selector(const QString& id) const;
    TextGridModel& grid() const { return *model_; }
    FrozenTableView* gridView() const { return grid_; }
    QString titleText() const;
    QString notesText() const;
    QString statusMessage() const;

    // The dispatcher of the tool bar and menus.
    void ToolClick(const QString& toolId);
    // The list of a mode; ID_Runs is the one the program shows.
    void ListLoad(const QString& mode);
    void NotesLoad();
    // A click on a column header: sorts by it and keeps the selected row.
    void HeadClick(int column);
    // Selects a grid row, as a click does.
    void SelectRow(int row);
    // After a run is saved: the row added (or rewritten in place) and selected.
    void GridRowPut(const QString& keyText, const QString& rowText);
    void GridRowRemove(const QString& keyText);
    int SelectedRow() const;

    // Print preview of the list; PrintToPdf writes the same pages to a file.
    void PrintGrid();
    bool PrintToPdf(const QString& path);

    // MainContext
    qint64 CurrentCarId() const override { return carId_; }
    void SetCurrentCarId(qint64 id) override { carId_ = id; }
    QString CurrentCarDesc() const override { return carDesc_; }
    void SetCurrentCarDesc(const QString& desc) override { carDesc_ = desc; }
    qint64 CurrentEventId() const override { return eventId_; }
    void SetCurrentEventId(qint64 id) override { eventId_ = id; }
    QString CurrentEventDesc() const override { return eventDesc_; }
    void SetCurrentEventDesc(const QString& desc) override { eventDesc_ = desc; }
    qint64 CurrentTrackId() const override { return trackId_; }
    void SetCurrentTrackId(qint64 id) override { trackId_ = id; }
    QString CurrentTrackDesc() const override { return trackDesc_; }
    void SetCurrentTrackDesc(const QString& desc) override { trackDesc_ = desc; }
    QString CurrentView() const override { return currentView_; }
    bool RunFilterActive() const override { return filterActive_; }
    void SetRunFilterActive(bool active) override { filterActive_ = active; }
    QString RunFilterString() const override { return filterString_; }
    void SetRunFilterString(const QString& text) override { filterString_ = text; }
    QString RunFilterSQL() const override { return filterSql_; }
    void SetRunFilterSQL(const QString& sql) override { filterSql_ = sql; }
    void CarsLoad() override;
    void EventsLoad() override;
    void TrackLoad() override;
    void ViewsLoad() override;
    void SelectCar(qint64 id) override;
    void SelectEvent(qint64 id) override;
    void SelectTrack(qint64 id) override;
    void FilterApply() override;
    void ClickTool(const QString& toolId) override { ToolClick(toolId); }
    QString StoredToolId() const override { return storedTool_; }
    void SetStoredToolId(const QString& toolId) override { storedTool_ = toolId; }
    QString SelectedKeyText() const override { return SelectedCellText(0); }
    QString SelectedCellText(int column) const override;
    void ForbidSelectDifferentRun() override;
    void AllowSelectDifferentRun() override;
    QString GetCar_num() override;
    void CalcAllETPrediction(const QString& corrFactorText, const QString& densityAltText) override;
    void CalcAllTuneUp(const QString& airDensityText) override;
    void AddPageLeadin(const QString& line) override { leadin_.Add(line); }
    void ClearPageLeadin() override { leadin_.Clear(); }
    QString GetPageLeadin() const override { return leadin_.Get(); }
    QString WeatherDirectory() const override { return weatherDir_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct ListHandlers {
        WindowFactory open;
        std::function<void(const QString&)> remove;
        std::function<bool(const QString&)> canDelete;
    };

    void BuildTools();
    void BuildCentral();
    QAction* AddTool(const QString& id, const QString& caption, QMenu* menu = nullptr);
    // A tool waiting for its window: disabled, and its tip says so.
    void NotYet(const QString& id);
    void Available(const QString& id);
    void ReportStatus(const QString& text);
    void ShowAbout();
    void SelectorPicked(const QString& id);
    void FillSelector(QComboBox* combo, const QString& sql, const QString& keyColumn,
                      const QString& textColumn, const QString& firstRow);
    void RunsTool();
    void DblClick();
    void RecordDelete();
    void DeleteToolRefresh();
    void FilterToggled(bool down);
    void ShowToolWindow(const QString& key);
    void ProgramWindowTool(bool prediction);
    void CopyToFolder();
    void CopyFromFolder();
    void StartCalculator();
    void GridClick();
    void StatusRecordCount();
    void StatusHelpReset();

    store::Database& db_;
    Messages& messages_;
    StatusReporter statusReporter_;
    UrlOpener urlOpener_;
    ProgramStarter programStarter_;
    PathChooser pathChooser_;
    Clock now_ = [] { return QDateTime::currentDateTime(); };

    bool loading_ = false;
    int lockCount_ = 0;
    QString weatherDir_;
    HelpState help_;
    QString appTitle_;
    QString storedTool_;
    PageLeadin leadin_;

    qint64 carId_ = 0;
    QString carDesc_;
    qint64 eventId_ = 0;
    QString eventDesc_;
    qint64 trackId_ = 0;
    QString trackDesc_;
    QString currentView_ = QStringLiteral("ID_Runs");
    bool filterActive_ = false;
    QString filterString_;
    QString filterSql_;

    QHash<QString, QAction*> tools_;
    QToolBar* toolBar_ = nullptr;
    QComboBox* carList_ = nullptr;
    QComboBox* eventList_ = nullptr;
    QComboBox* trackList_ = nullptr;
    QComboBox* views_ = nullptr;
    QSplitter* splitter_ = nullptr;
    FrozenTableView* grid_ = nullptr;
    TextGridModel* model_ = nullptr;
    QPlainTextEdit* notes_ = nullptr;
    QLabel* title_ = nullptr;
    QLabel* logo_ = nullptr;
    QLabel* statusHelp_ = nullptr;
    QLabel* statusMsg_ = nullptr;
    ListLayout layout_;

    QHash<QString, ListHandlers> lists_;
    QHash<QString, QPointer<QWidget>> open_;
    PredictionFactory predictionFactory_;
    TuneUpFactory tuneUpFactory_;
    WindowTable<PredictionWindow> predictions_;
    WindowTable<TuneUpWindow> tuneUps_;
};

}  // namespace slipbook::shell
