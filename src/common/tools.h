#pragma once

// The ids of the tools, menus and selectors of every window: the object names of their actions
// and widgets, and what the dispatchers compare. Each id is written here once; a misspelt
// constant does not compile, where a misspelt text would be a tool that silently does nothing.
// Constants are named after their id: "ID_SaveandClose" is kSaveandClose, "ID_mnuFile" kMnuFile.
//
// The shape of a window's tools (caption, menu, keys, place on the tool bar, tip) is kept in a
// table of Tool entries per window kind, which the window walks to build itself.

#include <QString>
#include <QStringView>

#include <cstddef>
#include <span>

namespace slipbook::tools {

// A tool id: a text fixed at compile time that stands wherever a QString or a QStringView is
// asked for. Made into a QString, it borrows its static text (as QStringLiteral does), so
// neither form allocates or copies.
class ToolId {
public:
    constexpr ToolId() = default;
    template <std::size_t N>
    consteval ToolId(const char16_t (&text)[N]) : text_(text), size_(N - 1) {}

    constexpr QStringView view() const noexcept { return {text_, size_}; }
    constexpr bool isEmpty() const noexcept { return size_ == 0; }

    constexpr operator QStringView() const noexcept { return view(); }
    operator QString() const {
        return QString(QString::DataPointer(nullptr, const_cast<char16_t*>(text_), size_));
    }

    friend bool operator==(ToolId a, ToolId b) noexcept { return a.view() == b.view(); }
    friend bool operator==(ToolId a, const QString& b) noexcept { return a.view() == b; }
    friend bool operator==(ToolId a, QStringView b) noexcept { return a.view() == b; }

private:
    const char16_t* text_ = u"";
    qsizetype size_ = 0;
};

// ---- The main window: commands.
inline constexpr ToolId kNew = u"ID_New";
inline constexpr ToolId kNewRun = u"ID_NewRun";
inline constexpr ToolId kOpen = u"ID_Open";
inline constexpr ToolId kDelete = u"ID_Delete";
inline constexpr ToolId kPrint = u"ID_Print";
inline constexpr ToolId kPrintForm = u"ID_PrintForm";
inline constexpr ToolId kExport = u"ID_Export";
inline constexpr ToolId kImportRuns = u"ID_ImportRuns";
inline constexpr ToolId kCopyToDiskette = u"ID_CopyToDiskette";
inline constexpr ToolId kCopyFromDiskette = u"ID_CopyFromDiskette";
inline constexpr ToolId kExit = u"ID_Exit";
inline constexpr ToolId kRuns = u"ID_Runs";
inline constexpr ToolId kEvents = u"ID_Events";
inline constexpr ToolId kCars = u"ID_Cars";
inline constexpr ToolId kTracks = u"ID_Tracks";
inline constexpr ToolId kExpenses = u"ID_Expenses";
inline constexpr ToolId kMaintenance = u"ID_Maintenance";
inline constexpr ToolId kFilter = u"ID_Filter";
inline constexpr ToolId kViewSetup = u"ID_ViewSetup";
inline constexpr ToolId kDefaultView = u"ID_DefaultView";
inline constexpr ToolId kWeather = u"ID_Weather";
inline constexpr ToolId kETTS = u"ID_ETTS";
inline constexpr ToolId kTuneUp = u"ID_TuneUp";
inline constexpr ToolId kTestTune = u"ID_TestTune";
inline constexpr ToolId kCalculator = u"ID_Calculator";
inline constexpr ToolId kWeatherHistory = u"ID_WeatherHistory";
inline constexpr ToolId kCharts = u"ID_Charts";
inline constexpr ToolId kStatistics = u"ID_Statistics";
inline constexpr ToolId kReportCard = u"ID_ReportCard";
inline constexpr ToolId kCompactDatabase = u"ID_CompactDatabase";
inline constexpr ToolId kRepairDatabase = u"ID_RepairDatabase";
inline constexpr ToolId kContents = u"ID_Contents";
inline constexpr ToolId kQuadrumex = u"ID_Quadrumex";
inline constexpr ToolId kAbout = u"ID_About";

// ---- The record windows' own tools (they share New, Delete, Print, Contents, About above).
inline constexpr ToolId kSave = u"ID_Save";
inline constexpr ToolId kSaveandClose = u"ID_SaveandClose";
inline constexpr ToolId kSaveandNew = u"ID_SaveandNew";
inline constexpr ToolId kClose = u"ID_Close";
// Reads again what a window shows from the logbook.
inline constexpr ToolId kRefresh = u"ID_Refresh";
inline constexpr ToolId kPrevious = u"ID_Previous";
inline constexpr ToolId kPrevItem = u"ID_PrevItem";
inline constexpr ToolId kFirstItem = u"ID_FirstItem";
inline constexpr ToolId kNext = u"ID_Next";
inline constexpr ToolId kNextItem = u"ID_NextItem";
inline constexpr ToolId kLastItem = u"ID_LastItem";

// ---- The edit tools, which act on the active text box.
inline constexpr ToolId kCut = u"ID_Cut";
inline constexpr ToolId kCopy = u"ID_Copy";
inline constexpr ToolId kPaste = u"ID_Paste";
inline constexpr ToolId kSelectAll = u"ID_SelectAll";

// ---- Menus.
inline constexpr ToolId kMnuFile = u"ID_mnuFile";
inline constexpr ToolId kMnuEdit = u"ID_mnuEdit";
inline constexpr ToolId kMnuView = u"ID_mnuView";
inline constexpr ToolId kUtilities = u"ID_Utilities";
inline constexpr ToolId kMnuAnalysis = u"ID_mnuAnalysis";
inline constexpr ToolId kMnuHelp = u"ID_mnuHelp";
inline constexpr ToolId kMnuPrevious = u"ID_mnuPrevious";
inline constexpr ToolId kMnuNext = u"ID_mnuNext";
inline constexpr ToolId kPopup = u"ID_Popup";

// ---- The main window's selectors and their labels.
inline constexpr ToolId kCarList = u"ID_CarList";
inline constexpr ToolId kCarsLabel = u"ID_CarsLabel";
inline constexpr ToolId kEventList = u"ID_EventList";
inline constexpr ToolId kEventsLabel = u"ID_EventsLabel";
inline constexpr ToolId kTrackList = u"ID_TrackList";
inline constexpr ToolId kTracksLabel = u"ID_TracksLabel";
inline constexpr ToolId kViews = u"ID_Views";

// ---- The filter tools of the maintenance and expense windows.
inline constexpr ToolId kEfCar = u"ID_efCar";
inline constexpr ToolId kEfStatus = u"ID_efStatus";
inline constexpr ToolId kEfDateFrom = u"ID_efDateFrom";
inline constexpr ToolId kEfDateTo = u"ID_efDateTo";
inline constexpr ToolId kEfCategory = u"ID_efCategory";
inline constexpr ToolId kEfEvent = u"ID_efEvent";

// The keys of the platform's standard bindings a tool may take (Core has no key sequences;
// the windows turn these into them).
enum class StandardKey {
    None,
    New,
    Open,
    Save,
    Print,
    Close,
    Quit,
    HelpContents,
    Cut,
    Copy,
    Paste,
    SelectAll,
};

// One tool of a window: a menu entry, a tool bar button, or both.
struct Tool {
    ToolId id;
    const char* caption = "";  // with its "&" mnemonic
    ToolId menu;               // the menu it stands in; none for a tool of the bar or keys only
    bool separated = false;    // a separator line above it in its menu
    // Its keys: `keys` in portable text ("Esc", "Ctrl+Return; Ctrl+Enter"), then the standard
    // key. The first of them is the one menus and tips show.
    const char* keys = nullptr;
    StandardKey standardKey = StandardKey::None;
    // Its group on the tool bar, from 1, or 0 when it is not on the bar. The bar shows the
    // groups in order with a separator between them, each group's tools in table order.
    int barGroup = 0;
    const char* tip = nullptr;  // tip and status text; none keeps the caption as the tip
    bool checkable = false;
    bool startsDisabled = false;  // disabled as the window opens
};

// A menu: on the menu bar, or the submenu of a tool.
struct Menu {
    ToolId id;
    const char* caption = "";
    ToolId under;  // the tool that opens it; none for a menu of the menu bar
};

// The entry of `id` in a window's table, or null.
inline const Tool* FindTool(std::span<const Tool> table, QStringView id) {
    for (const Tool& tool : table) {
        if (tool.id == id) {
            return &tool;
        }
    }
    return nullptr;
}

}  // namespace slipbook::tools
