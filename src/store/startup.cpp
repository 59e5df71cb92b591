#include "store/startup.h"

#include "store/access.h"
#include "store/dberror.h"
#include "store/logbookfile.h"
#include "store/upgrade.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryFile>
#include <exception>

namespace slipbook::store {

namespace {

// A probe file rather than the permission bits: on some systems the bits do not tell whether a
// folder (a program folder in particular) accepts new files.
bool FolderTakesFiles(const QString& dir) {
    if (!QFileInfo(dir).isDir()) {
        return false;
    }
    QTemporaryFile probe(QDir(dir).filePath(QStringLiteral(".slipbook-probe-XXXXXX")));
    return probe.open();
}

// Installed: no template folder beside the program, and the prefix's shared data folder. Folders
// rather than the template itself, so a lost template still gets the install box naming it.
bool IsInstalled(const QString& appDir) {
    return !QFileInfo(QDir(appDir).filePath(QStringLiteral("Upgrade"))).isDir() &&
           QFileInfo(InstalledResourceFolder(appDir)).isDir();
}

}  // namespace

QString VersionText() {
    return QStringLiteral("Version %1.%2").arg(kVersionMajor).arg(kVersionMinor);
}

QString AppTitle() {
    return QStringLiteral("Slipbook Pro");
}

QString MainCaption() {
    return AppTitle() + QStringLiteral(" - ") + VersionText();
}

QString LogbookFileName() {
    return QStringLiteral("Slipbook.db");
}

QString InstalledResourceFolder(const QString& appDir) {
    return QDir::cleanPath(QDir(appDir).absoluteFilePath(QStringLiteral(SLIPBOOK_SHARE_FROM_BIN)));
}

QString ResourceFolder(const QString& appDir) {
    if (!IsInstalled(appDir)) {
        return appDir;
    }
    return InstalledResourceFolder(appDir);
}

QString DataFolder(const QString& appDir) {
    const QString chosen = qEnvironmentVariable("SLIPBOOK_DIR");
    if (!chosen.isEmpty()) {
        QDir().mkpath(chosen);
        return QDir(chosen).absolutePath();
    }
    // A prefix's bin/ (~/.local/bin for one) is no place for a logbook even when writable.
    if (!IsInstalled(appDir) && FolderTakesFiles(appDir)) {
        return QDir(appDir).absolutePath();
    }
    const QString userData = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(userData);
    return userData;
}

QString TemplatePath(const QString& resourceDir) {
    return QDir(resourceDir).filePath(QStringLiteral("Upgrade/") + LogbookFileName());
}

QString LogbookPath(const QString& dataDir) {
    return QDir(dataDir).filePath(LogbookFileName());
}

bool InstallLogbook(const QString& templatePath, const QString& logbookPath) {
    QFile source(templatePath);
    if (!source.open(QIODevice::ReadOnly)) {
        return false;
    }
    // QSaveFile writes beside the target and renames on commit; a failure removes the partial
    // file, so the next start sees no logbook and tries again.
    QSaveFile target(logbookPath);
    if (!target.open(QIODevice::WriteOnly)) {
        return false;
    }
    constexpr qint64 kChunk = 1 << 20;
    while (!source.atEnd()) {
        const QByteArray chunk = source.read(kChunk);
        if (chunk.isEmpty() || target.write(chunk) != chunk.size()) {
            target.cancelWriting();
            return false;
        }
    }
    if (source.error() != QFileDevice::NoError) {
        target.cancelWriting();
        return false;
    }
    return target.commit();
}

QString InstallErrorText(const QString& templatePath, const QString& logbookPath) {
    const QString indent = QStringLiteral("    ");
    return QStringList{QStringLiteral("Error installing database for the first time."),
                       QStringLiteral("Failed to copy file:"),
                       indent + QDir::toNativeSeparators(templatePath),
                       QStringLiteral("to:"),
                       indent + QDir::toNativeSeparators(logbookPath),
                       QString(),
                       QStringLiteral("Program Ending.")}
        .join(QChar(13));
}

StartupOutcome RunStartup(Database& db, Messages& messages, StartupUi& ui, Clock& clock,
                          const QString& resourceDir, const QString& dataDir) {
    const QString path = LogbookPath(dataDir);
    const QString source = TemplatePath(resourceDir);
    bool firstStart = false;
    bool splashShown = false;
    bool busy = false;

    // Any failure ends the start with a box instead of taking the process down; a first start
    // keeps the install box for the whole sequence.
    auto fail = [&](const DbError& error) {
        if (splashShown) {
            ui.CloseSplash();
        }
        if (busy) {
            ui.SetBusy(false);
        }
        if (firstStart) {
            messages.inform(InstallErrorText(source, path), QString(), MsgIcon::Critical);
        } else {
            ErrorReport(error, QString(), messages);
        }
        db.Close();
        return StartupOutcome::Ended;
    };

    try {
        if (!DataInit(db, messages)) {
            return StartupOutcome::Ended;
        }
        if (!QFileInfo::exists(path)) {
            // Journal files without their logbook mean the logbook was lost or moved: a new one
            // beside them would take them for its own.
            QStringList left;
            for (const QString& side : SideFilePaths(path)) {
                if (QFileInfo::exists(side)) {
                    left << QStringLiteral("    ") + QDir::toNativeSeparators(side);
                }
            }
            if (!left.isEmpty()) {
                throw DbError(err::CannotOpen, QStringLiteral("Startup"),
                              QStringLiteral("The logbook %1 is missing, but files of its journal "
                                             "are still beside where it was:\n%2\nSlipbook does "
                                             "not start a new logbook beside them. Put the logbook "
                                             "back, or move these files away.")
                                  .arg(QDir::toNativeSeparators(path), left.join(u'\n')));
            }
            firstStart = true;
            if (!InstallLogbook(source, path)) {
                throw DbError(err::Generic, QStringLiteral("Startup"),
                              QStringLiteral("The template could not be copied."));
            }
        }
        if (!DataOpen(db, path, messages)) {
            return StartupOutcome::Ended;
        }

        ui.SetBusy(true);
        busy = true;
        const qint64 splashSince = clock.NowMs();
        ui.ShowSplash(VersionText(),
                      QStringLiteral("Loading your view and associated run information..."));
        splashShown = true;
        ui.LoadMainWindow();

        ui.SetSplashStatus(QStringLiteral("Updating Slipbook Database..."));
        UpgradeLadder(db, QDateTime::currentDateTime());

        while (clock.NowMs() - splashSince <= kSplashMs && !ui.SplashClosedByKey()) {
            ui.YieldToEvents();
        }

        ui.FormLoadStuff();
        ui.ShowMainWindow();
        ui.CloseSplash();
        ui.SetBusy(false);
        return StartupOutcome::Running;
    } catch (const DbError& e) {
        return fail(e);
    } catch (const std::exception& e) {
        return fail(AsDbError(e));
    }
}

}  // namespace slipbook::store
