#pragma once

// The program's start: finding or installing the logbook, the splash, the main window's load and
// the upgrade ladder, in a fixed order. The windows and the clock come in through seams so that
// the order and the timing can be checked without a screen.

#include "common/messages.h"
#include "store/database.h"

#include <QString>

namespace slipbook::store {

constexpr int kVersionMajor = 1;
constexpr int kVersionMinor = 0;

QString VersionText();      // "Version 1.0"
QString AppTitle();         // "Slipbook Pro"
QString MainCaption();      // "Slipbook Pro - Version 1.0"
QString LogbookFileName();  // "Slipbook.db"

// The folder with the template and the help pages: the program's own folder in a build tree or
// a copied folder; the shared data folder of the prefix (<prefix>/share/slipbook) when the program
// is installed in bin/ of a prefix and its own folder has no Upgrade/ folder.
QString ResourceFolder(const QString& appDir);
// <appDir>/../share/slipbook, where an installed program keeps its template and help.
QString InstalledResourceFolder(const QString& appDir);

// The folder that holds the logbook: $SLIPBOOK_DIR when set (created if needed); else the
// program's own folder when it can be written and the program is not installed under a prefix;
// else the user's application data folder, created if needed.
QString DataFolder(const QString& appDir);
QString TemplatePath(const QString& resourceDir);  // <resourceDir>/Upgrade/Slipbook.db
QString LogbookPath(const QString& dataDir);

// Copies the template to the logbook path through a temporary file in the same folder, so that
// a failed copy leaves no logbook behind. False when anything fails.
bool InstallLogbook(const QString& templatePath, const QString& logbookPath);

// The text of the box shown when a first start fails; lines joined by a carriage return.
QString InstallErrorText(const QString& templatePath, const QString& logbookPath);

// The windows as the start-up sees them.
class StartupUi {
public:
    virtual ~StartupUi() = default;
    virtual void SetBusy(bool busy) = 0;
    virtual void ShowSplash(const QString& version, const QString& status) = 0;
    virtual void SetSplashStatus(const QString& status) = 0;
    // Builds the main window without showing it; its constructor is the load event.
    virtual void LoadMainWindow() = 0;
    virtual void FormLoadStuff() = 0;
    virtual void ShowMainWindow() = 0;
    virtual void CloseSplash() = 0;
    // Lets the event loop run for a moment.
    virtual void YieldToEvents() = 0;
    virtual bool SplashClosedByKey() const = 0;
};

// A monotonic clock in milliseconds.
class Clock {
public:
    virtual ~Clock() = default;
    virtual qint64 NowMs() = 0;
};

// The splash stays at least this long (strictly more) unless a key closes it.
constexpr qint64 kSplashMs = 3000;

enum class StartupOutcome {
    Running,  // the main window is shown; the event loop takes over
    Ended,    // the start stopped after telling the user why; no window is left
};

// The start-up sequence. `dataDir` holds (or receives) the logbook; the template is looked for
// under `resourceDir` only when the logbook is absent.
StartupOutcome RunStartup(Database& db, Messages& messages, StartupUi& ui, Clock& clock,
                          const QString& resourceDir, const QString& dataDir);

}  // namespace slipbook::store
