#include "common/recordtools.h"

namespace slipbook {

namespace {

using namespace tools;
using K = StandardKey;

constexpr Tool kTools[] = {
    // "Save and &New" keeps its N, so New takes its W.
    {.id = kNew,
     .caption = "Ne&w",
     .menu = kMnuFile,
     .standardKey = K::New,
     .barGroup = 2,
     .tip = "Start a new %1"},
    // Nothing to save until something is typed.
    {.id = kSave,
     .caption = "Sa&ve",
     .menu = kMnuFile,
     .standardKey = K::Save,
     .tip = "Save this %1",
     .startsDisabled = true},
    {.id = kSaveandClose,
     .caption = "&Save and Close",
     .menu = kMnuFile,
     .keys = "Ctrl+Return; Ctrl+Enter",
     .barGroup = 1,
     .tip = "Save this %1 and close the window",
     .startsDisabled = true},
    {.id = kSaveandNew,
     .caption = "Save and &New",
     .menu = kMnuFile,
     .barGroup = 1,
     .tip = "Save this %1 and start a new one",
     .startsDisabled = true},
    {.id = kDelete, .caption = "&Delete", .menu = kMnuFile, .barGroup = 4, .tip = "Delete this %1"},
    {.id = kPrint,
     .caption = "&Print",
     .menu = kMnuFile,
     .separated = true,
     .standardKey = K::Print,
     .barGroup = 2,
     .tip = "Print this window"},
    // Offered only by the windows with a list of records to write out.
    {.id = kExport,
     .caption = "&Export...",
     .menu = kMnuFile,
     .tip = "Write the list to a CSV file"},
    {.id = kClose,
     .caption = "&Close",
     .menu = kMnuFile,
     .separated = true,
     .keys = "Esc",
     .standardKey = K::Close,
     .tip = "Close the window"},
    // The text boxes take these keys first; the tools serve the menus and other controls.
    {.id = kCut,
     .caption = "Cu&t",
     .menu = kMnuEdit,
     .standardKey = K::Cut,
     .barGroup = 3,
     .tip = "Cut the selected text"},
    {.id = kCopy,
     .caption = "&Copy",
     .menu = kMnuEdit,
     .standardKey = K::Copy,
     .barGroup = 3,
     .tip = "Copy the selected text"},
    {.id = kPaste,
     .caption = "&Paste",
     .menu = kMnuEdit,
     .standardKey = K::Paste,
     .barGroup = 3,
     .tip = "Paste the copied text"},
    {.id = kSelectAll,
     .caption = "Select &All",
     .menu = kMnuEdit,
     .separated = true,
     .standardKey = K::SelectAll,
     .tip = "Select all the text of the box"},
    // Moving between records is done in the list alone: these tools are offered and do nothing.
    {.id = kPrevious,
     .caption = "Pre&vious",
     .menu = kMnuView,
     .barGroup = 5,
     .tip = "Records are picked in the list"},
    {.id = kPrevItem, .caption = "&Item", .menu = kMnuPrevious},
    {.id = kFirstItem, .caption = "Fi&rst Item in Folder", .menu = kMnuPrevious},
    {.id = kNext,
     .caption = "Ne&xt",
     .menu = kMnuView,
     .barGroup = 5,
     .tip = "Records are picked in the list"},
    {.id = kNextItem, .caption = "&Item", .menu = kMnuNext},
    {.id = kLastItem, .caption = "&Last Item in Folder", .menu = kMnuNext},
    {.id = kContents,
     .caption = "&Contents",
     .menu = kMnuHelp,
     .standardKey = K::HelpContents,
     .tip = "Open the help"},
    {.id = kAbout, .caption = "&About Slipbook", .menu = kMnuHelp, .tip = "About Slipbook"},
};

constexpr Menu kMenus[] = {
    {.id = kMnuFile, .caption = "&File"}, {.id = kMnuEdit, .caption = "&Edit"},
    {.id = kMnuView, .caption = "&View"}, {.id = kMnuPrevious, .under = kPrevious},
    {.id = kMnuNext, .under = kNext},     {.id = kMnuHelp, .caption = "&Help"},
};

}  // namespace

std::span<const tools::Tool> RecordTools() {
    return kTools;
}

std::span<const tools::Menu> RecordMenus() {
    return kMenus;
}

}  // namespace slipbook
