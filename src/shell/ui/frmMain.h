#pragma once

#include "common/messages.h"
#include "common/textgrid.h"
#include "shell/help.h"
#include "shell/maincontext.h"
#include "shell/mainstate.h"
#include "shell/pageleadin.h"
#include "shell/runlist.h"
#include "shell/ui/windowtable.h"
#include "shell/windowcontext.h"
#include "store/database.h"
#include "store/logbookevents.h"

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
// It shows the MainState it holds, and follows the change notifier: a saved run's row is put in
// the list, a renamed event or track refills its selector.
class frmMain : public QMainWindow, public MainContext {
    Q_OBJECT

public:
    using StatusReporter = std::function<void(const QString&)>;
    using UrlOpener = std::function<bool(const QUrl&)>;
    using ProgramStarter = std::function<bool(const QString& program, const QStringList& args)>;
    // Makes the window of a list or tool, owned by `owner` (this window), unseen.
    using WindowFactory = std::function<QWidget*(const WindowContext& ctx, QWidget* owner)>;
    // Deletes the list's row of this key, asking as the record's window would.
    using DeleteHandler =
        std::function<void(const WindowContext& ctx, QWidget* owner, const QString& keyText)>;
    // Shows a window of a subsystem on the record `id` (MainContext::ShowWindow).
    using ShowHandler =
        std::function<QWidget*(const WindowContext& ctx, QWidget* owner, qint64 id)>;
    using PredictionFactory =
        std::function<PredictionWindow*(const WindowContext& ctx, QWidget* owner)>;
    using TuneUpFactory = std::function<TuneUpWindow*(const WindowContext& ctx, QWidget* owner)>;
    // Asks a folder or file of the user, for the logbook copies; empty when cancelled.
    using PathChooser = std::function<QString(const QString& caption, bool folder)>;

    frmMain(store::Database& db, Messages& messages, store::LogbookEvents& events,
            const WallClock& clock, const QString& commandLine, const QString& resourceDir,
            QWidget* parent = nullptr);
    ~frmMain() override;

    void FormLoadStuff();

    // Windows of later subsystems come in here; their tools are enabled as they arrive.
    void RegisterWindow(const QString& key, WindowFactory factory);
    // What deleting a row of a list does, and whether a row may be deleted.
    void RegisterDelete(const QString& key, DeleteHandler remove,
                        std::function<bool(const QString& keyText)> canDelete = {});
    void RegisterShow(QStringView name, ShowHandler show);
    void RegisterPrediction(PredictionFactory factory);
    void RegisterTuneUp(TuneUpFactory factory);

    // Progress of the loaders goes to the splash's status line.
    void setStatusReporter(StatusReporter reporter) { statusReporter_ = std::move(reporter); }
    // Opens the help pages and web addresses; the platform's viewer unless a test replaces it.
    void setUrlOpener(UrlOpener opener) { urlOpener_ = std::move(opener); }
    void setProgramStarter(ProgramStarter starter) { programStarter_ = std::move(starter); }
    void setPathChooser(PathChooser chooser) { pathChooser_ = std::move(chooser); }

    // What every window is made from: this window's state and behaviours among them.
    const WindowContext& context() const { return context_; }
    MainState& state() { return state_; }
    const MainState& state() const { return state_; }
    store::Database& database() const { return db_; }
    Messages& messages() const { return messages_; }
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

    // Refill the selectors from the logbook.
    void CarsLoad();
    void EventsLoad();
    void TrackLoad();
    void ViewsLoad() override;
    // Bring a selector to the entry whose key is `id` and act on the change as a pick would.
    void SelectCar(qint64 id);
    void SelectEvent(qint64 id);
    void SelectTrack(qint64 id);

    // Print preview of the list; PrintToPdf writes the same pages to a file.
    void PrintGrid();
    bool PrintToPdf(const QString& path);

    // MainContext
    void ClickTool(const QString& toolId) override { ToolClick(toolId); }
    QList<ShownColumn> ListColumns() const override;
    int ListRowCount() const override;
    QString ListCellText(int row, int column) const override;
    void ListShowColumns(const QList<qint64>& catalogueIds) override;
    bool SelectView(qint64 viewId) override;
    qint64 CurrentViewId() const override;
    void FilterApply() override;
    void FilterToolFollow() override;
    QString SelectedCellText(int column) const override;
    void ForbidSelectDifferentRun() override;
    void AllowSelectDifferentRun() override;
    QString GetCar_num() override;
    void CalcAllETPrediction(const QString& corrFactorText, const QString& densityAltText) override;
    void CalcAllTuneUp(const QString& airDensityText) override;
    QString WeatherText(const QString& controlName) override;
    QWidget* ToolWindow(const QString& toolId) override;
    QWidget* OpenWindow(const QString& toolId) const override;
    QWidget* ShowWindow(QStringView name, qint64 id) override;
    void HelpContents() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct ListHandlers {
        WindowFactory open;
        DeleteHandler remove;
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
    // The keys of the selectors are the rows' own keys: no 16-bit slot, so a large key is no
    // error.
    static qint64 ItemKey(const QComboBox* combo, int index);
    void SelectorPicked(const QString& id);
    void FillSelector(QComboBox* combo, const QString& sql, const QString& keyColumn,
                      const QString& textColumn, const QString& firstRow);
    void RunsTool();
    void ExportGrid();
    ListContext CurrentListContext() const;
    // The grid made anew from layout_: columns, rows, selection, notes.
    void LayoutShow();
    void DblClick();
    void RecordDelete();
    void DeleteToolRefresh();
    void FilterToggled(bool down);
    void ShowToolWindow(const QString& key);
    void ProgramWindowTool(bool prediction);
    // The change notifier's news.
    void RunSaved(qint64 runId);
    void RunDeleted(qint64 runId);
    void RecordsChanged(const QString& table);
    // After the cars were written: the car `id` stays the current one while it is there.
    void KeepCar(qint64 id);
    // After the logbook was replaced: every selector and the list from the new one.
    void ReloadAll();
    void CopyToFolder();
    void CopyFromFolder();
    void StartCalculator();
    void GridClick();
    void StatusRecordCount();
    void StatusHelpReset();

    store::Database& db_;
    Messages& messages_;
    const WallClock& clock_;
    MainState state_;
    WindowContext context_;
    StatusReporter statusReporter_;
    UrlOpener urlOpener_;
    ProgramStarter programStarter_;
    PathChooser pathChooser_;

    bool loading_ = false;
    int lockCount_ = 0;
    HelpState help_;
    QString appTitle_;

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
    RunGridRowMaker rowMaker_{db_};  // the rows of saved runs

    QHash<QString, ListHandlers> lists_;
    QHash<QString, ShowHandler> shows_;
    QHash<QString, QPointer<QWidget>> open_;
    PredictionFactory predictionFactory_;
    TuneUpFactory tuneUpFactory_;
    WindowTable<PredictionWindow> predictions_;
    WindowTable<TuneUpWindow> tuneUps_;
};

}  // namespace slipbook::shell
