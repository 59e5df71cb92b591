#pragma once

#include "common/clock.h"
#include "shell/ui/qtmessages.h"
#include "store/database.h"
#include "store/logbookevents.h"
#include "store/startup.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QString>
#include <memory>

namespace slipbook::store {
class frmSplash;
}
namespace slipbook::shell {
class frmMain;
}

namespace slipbook::app {

// Boxes written to the error stream and answered with their default, for runs without anyone
// at the screen (SLIPBOOK_SMOKE).
class ConsoleMessages : public Messages {
public:
    MsgAnswer show(const Message& message) override;
};

class ElapsedClock : public store::Clock {
public:
    ElapsedClock() { timer_.start(); }
    qint64 NowMs() override { return timer_.elapsed(); }

private:
    QElapsedTimer timer_;
};

// The one application object: it owns the logbook, the message boxes and the windows, and
// hands each window what it needs.
class Application : public QApplication, private store::StartupUi {
    Q_OBJECT

public:
    Application(int& argc, char** argv);
    ~Application() override;

    // Runs the start-up sequence; true when the main window is up.
    bool Start();
    // The event loop; with SLIPBOOK_SMOKE set, reports the main window and quits at once.
    int Run();

    // An error that escapes an event handler is reported, and the program goes on.
    bool notify(QObject* receiver, QEvent* event) override;

    shell::frmMain* mainWindow() const { return main_.get(); }

private:
    // store::StartupUi
    void SetBusy(bool busy) override;
    void ShowSplash(const QString& version, const QString& status) override;
    void SetSplashStatus(const QString& status) override;
    void LoadMainWindow() override;
    void FormLoadStuff() override;
    void ShowMainWindow() override;
    void CloseSplash() override;
    void YieldToEvents() override;
    bool SplashClosedByKey() const override { return splashClosedByKey_; }

    void ReportError(const std::exception& error);

    QString appDir_;
    QString resourceDir_;  // the template and the help pages
    QString commandLine_;
    store::Database db_;
    shell::QtMessages qtMessages_;
    ConsoleMessages consoleMessages_;
    Messages& messages_;
    ElapsedClock clock_;
    SystemClock wallClock_;
    store::LogbookEvents events_;
    std::unique_ptr<store::frmSplash> splash_;
    std::unique_ptr<shell::frmMain> main_;
    bool busy_ = false;
    bool splashClosedByKey_ = false;
    bool reporting_ = false;
};

}  // namespace slipbook::app
