#include "shell/ui/frmMain.h"

#include "shell/mainstate.h"
#include "store/startup.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFrame>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QVBoxLayout>

namespace slipbook::shell {

frmMain::frmMain(store::Database& db, Messages& messages, const QString& commandLine,
                 const QString& appDir, QWidget* parent)
    : QMainWindow(parent),
      db_(db),
      messages_(messages),
      urlOpener_([](const QUrl& url) { return QDesktopServices::openUrl(url); }) {
    setObjectName(QStringLiteral("frmMain"));

    loading_ = true;
    lockCount_ = 0;
    weatherDir_ = WeatherDirInit(commandLine);
    help_ = HelpInit(appDir);
    appTitle_ = store::AppTitle();
    setWindowTitle(store::MainCaption());

    BuildMenus();
    BuildCentral();
    resize(1000, 680);
}

QMenu* frmMain::AddMenu(const QString& id, const QString& caption) {
    QMenu* menu = menuBar()->addMenu(caption);
    menu->setObjectName(id);
    menu->menuAction()->setObjectName(id);
    return menu;
}

QAction* frmMain::AddTool(QMenu* menu, const QString& id, const QString& caption) {
    auto* action = new QAction(caption, this);
    action->setObjectName(id);
    menu->addAction(action);
    return action;
}

void frmMain::BuildMenus() {
    QMenu* file = AddMenu(QStringLiteral("ID_mnuFile"), tr("&File"));
    AddMenu(QStringLiteral("ID_mnuEdit"), tr("&Edit"));
    AddMenu(QStringLiteral("ID_mnuView"), tr("&View"));
    AddMenu(QStringLiteral("ID_Utilities"), tr("&Utilities"));
    QMenu* help = AddMenu(QStringLiteral("ID_mnuHelp"), tr("&Help"));

    QAction* exitTool = AddTool(file, QStringLiteral("ID_Exit"), tr("E&xit"));
    exitTool->setShortcut(QKeySequence::Quit);
    connect(exitTool, &QAction::triggered, this, &QWidget::close);

    QAction* contents = AddTool(help, QStringLiteral("ID_Contents"), tr("Contents"));
    contents->setShortcut(QKeySequence::HelpContents);
    connect(contents, &QAction::triggered, this, &frmMain::HelpContents);

    QAction* about = AddTool(help, QStringLiteral("ID_About"), tr("&About Slipbook"));
    connect(about, &QAction::triggered, this, &frmMain::ShowAbout);
}

void frmMain::BuildCentral() {
    auto* central = new QFrame(this);
    central->setObjectName(QStringLiteral("splMain"));
    auto* title = new QLabel(appTitle_, central);
    title->setObjectName(QStringLiteral("pnlTitleBar"));
    title->setStyleSheet(
        QStringLiteral("background: #1b2430; color: white; font-size: 14pt; font-weight: bold;"
                       " padding: 6px 10px; border-bottom: 3px solid #d62d20;"));
    auto* placeholder = new QLabel(tr("The run list appears here."), central);
    placeholder->setObjectName(QStringLiteral("lblPlaceholder"));
    placeholder->setAlignment(Qt::AlignCenter);
    placeholder->setStyleSheet(QStringLiteral("color: #6b7685; background: #f4f6f8;"));
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(title);
    layout->addWidget(placeholder, 1);
    setCentralWidget(central);

    statusBar()->setObjectName(QStringLiteral("stbMain"));
    statusMsg_ = new QLabel(statusBar());
    statusMsg_->setObjectName(QStringLiteral("Msg"));
    statusBar()->addWidget(statusMsg_, 1);
}

QAction* frmMain::tool(const QString& id) const {
    return findChild<QAction*>(id);
}

void frmMain::ReportStatus(const QString& text) {
    if (statusReporter_) {
        statusReporter_(text);
    }
}

void frmMain::FormLoadStuff() {
    loading_ = false;
    ReportStatus(QStringLiteral("Please wait..."));
}

void frmMain::HelpContents() {
    if (!help_.available()) {
        messages_.inform(tr("The help pages were not found. They belong in:") +
                             QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
                         appTitle_, MsgIcon::Information);
        return;
    }
    if (!urlOpener_(QUrl::fromLocalFile(help_.path))) {
        messages_.inform(tr("The help pages could not be opened. Open this file in a web "
                            "browser:") +
                             QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
                         appTitle_, MsgIcon::Information);
    }
}

void frmMain::ShowAbout() {
    messages_.inform(appTitle_ + u'\n' + store::VersionText(), tr("About Slipbook"),
                     MsgIcon::Information);
}

}  // namespace slipbook::shell
