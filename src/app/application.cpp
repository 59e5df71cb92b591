#include "app/application.h"

#include "app/windows.h"
#include "common/commandline.h"
#include "shell/ui/frmMain.h"
#include "store/access.h"
#include "store/dberror.h"
#include "store/ui/frmSplash.h"

#include <QCursor>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>

namespace slipbook::app {

MsgAnswer ConsoleMessages::show(const Message& message) {
    QString text = message.text;
    text.replace(u'\r', u'\n');
    const QByteArray line = ("box: " + message.title + ": " + text + '\n').toUtf8();
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
    std::fflush(stderr);
    if (message.defaultAnswer != MsgAnswer::Ok) {
        return message.defaultAnswer;
    }
    // Left as Ok, the default is the first button of the set.
    switch (message.buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return MsgAnswer::Yes;
        case MsgButtons::RetryCancel:
            return MsgAnswer::Retry;
        case MsgButtons::AbortRetryIgnore:
            return MsgAnswer::Abort;
        default:
            return MsgAnswer::Ok;
    }
}

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv),
      messages_(qEnvironmentVariableIsSet("SLIPBOOK_SMOKE")
                    ? static_cast<Messages&>(consoleMessages_)
                    : static_cast<Messages&>(qtMessages_)) {
    // Names the user's data folder, used when the program's folder is not writable.
    setApplicationName(QStringLiteral("Slipbook"));
    // Ties the windows to the installed desktop entry and its icon.
    setDesktopFileName(QStringLiteral("org.slipbook.Slipbook"));
    setApplicationVersion(
        QStringLiteral("%1.%2").arg(store::kVersionMajor).arg(store::kVersionMinor));
    appDir_ = applicationDirPath();
    resourceDir_ = store::ResourceFolder(appDir_);
    commandLine_ = CommandLineFromArguments(arguments());
}

Application::~Application() {
    // Windows go before the logbook they read.
    qtMessages_.setParent(nullptr);
    main_.reset();
    splash_.reset();
    db_.Close();
}

bool Application::Start() {
    const QString dataDir = store::DataFolder(appDir_);
    const store::StartupOutcome outcome =
        store::RunStartup(db_, messages_, *this, clock_, resourceDir_, dataDir);
    if (outcome == store::StartupOutcome::Ended) {
        qtMessages_.setParent(nullptr);
        main_.reset();
        splash_.reset();
        SetBusy(false);
        return false;
    }
    return true;
}

int Application::Run() {
    if (qEnvironmentVariableIsSet("SLIPBOOK_SMOKE") && main_ != nullptr) {
        QTimer::singleShot(0, this, [this] {
            const QByteArray line = "shown: " + main_->windowTitle().toUtf8() + '\n';
            std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
            std::fflush(stdout);
            quit();
        });
    }
    return exec();
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& e) {
        ReportError(e);
    }
    return false;
}

void Application::ReportError(const std::exception& error) {
    // A box runs its own event loop; an error raised inside it must not stack boxes forever.
    if (reporting_) {
        return;
    }
    reporting_ = true;
    if (const auto* dbError = dynamic_cast<const store::DbError*>(&error)) {
        store::ErrorReport(*dbError, QString(), messages_);
    } else {
        store::ErrorReport(store::AsDbError(error), QString(), messages_);
    }
    reporting_ = false;
}

void Application::SetBusy(bool busy) {
    if (busy == busy_) {
        return;
    }
    busy_ = busy;
    if (busy) {
        setOverrideCursor(QCursor(Qt::WaitCursor));
    } else {
        restoreOverrideCursor();
    }
}

void Application::ShowSplash(const QString& version, const QString& status) {
    splash_ = std::make_unique<store::frmSplash>();
    splashClosedByKey_ = false;
    connect(splash_.get(), &store::frmSplash::closedByKey, this,
            [this] { splashClosedByKey_ = true; });
    splash_->setVersion(version);
    splash_->setStatus(status);
    splash_->showCentred();
    processEvents();
}

void Application::SetSplashStatus(const QString& status) {
    // A write after a key closed the splash goes to the hidden window and shows nothing.
    if (splash_ != nullptr) {
        splash_->setStatus(status);
    }
}

void Application::LoadMainWindow() {
    main_ = std::make_unique<shell::frmMain>(db_, messages_, events_, wallClock_, commandLine_,
                                             resourceDir_);
    main_->setStatusReporter([this](const QString& status) { SetSplashStatus(status); });
    RegisterWindows(*main_);
}

void Application::FormLoadStuff() {
    main_->FormLoadStuff();
}

void Application::ShowMainWindow() {
    main_->show();
    qtMessages_.setParent(main_.get());
}

void Application::CloseSplash() {
    if (splash_ != nullptr) {
        splash_->close();
    }
}

void Application::YieldToEvents() {
    // A short wait in an event loop of its own: the splash stays live without spinning the CPU.
    QEventLoop slice;
    QTimer::singleShot(10, &slice, &QEventLoop::quit);
    slice.exec();
}

}  // namespace slipbook::app
