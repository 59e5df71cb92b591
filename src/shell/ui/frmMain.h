#pragma once

#include "shell/common/messages.h"
#include "shell/help.h"
#include "store/database.h"

#include <QMainWindow>
#include <QString>
#include <QUrl>
#include <functional>

class QAction;
class QLabel;
class QMenu;

namespace slipbook::shell {

// The program's hub. Constructing it is its load event; FormLoadStuff is the first fill, which
// the start-up calls once the splash has had its time.
class frmMain : public QMainWindow {
    Q_OBJECT

public:
    using StatusReporter = std::function<void(const QString&)>;
    using UrlOpener = std::function<bool(const QUrl&)>;

    frmMain(store::Database& db, Messages& messages, const QString& commandLine,
            const QString& appDir, QWidget* parent = nullptr);

    void FormLoadStuff();
    void HelpContents();

    // Progress of the loaders goes to the splash's status line.
    void setStatusReporter(StatusReporter reporter) { statusReporter_ = std::move(reporter); }
    // Opens the help pages; the platform's viewer unless a test replaces it.
    void setUrlOpener(UrlOpener opener) { urlOpener_ = std::move(opener); }

    store::Database& database() const { return db_; }
    const QString& weatherDirectory() const { return weatherDir_; }
    const QString& helpPath() const { return help_.path; }
    const QString& applicationTitle() const { return appTitle_; }
    bool isLoading() const { return loading_; }
    int lockCount() const { return lockCount_; }
    // The menu command with this tool id, or null.
    QAction* tool(const QString& id) const;

private:
    void BuildMenus();
    void BuildCentral();
    QMenu* AddMenu(const QString& id, const QString& caption);
    QAction* AddTool(QMenu* menu, const QString& id, const QString& caption);
    void ReportStatus(const QString& text);
    void ShowAbout();

    store::Database& db_;
    Messages& messages_;
    StatusReporter statusReporter_;
    UrlOpener urlOpener_;

    bool loading_ = false;
    int lockCount_ = 0;
    QString weatherDir_;
    HelpState help_;
    QString appTitle_;
    QLabel* statusMsg_ = nullptr;
};

}  // namespace slipbook::shell
