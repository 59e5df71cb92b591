#include "shell/ui/frmMain.h"

#include "common/ui/formhelpers.h"
#include "shell/ui/gridprint.h"
#include "store/access.h"
#include "store/logbookcopy.h"
#include "store/logbookfile.h"
#include "store/startup.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace slipbook::shell {

// ---------------------------------------------------------------------------------------------
// Logbook copies, calculator, about

void frmMain::CopyToFolder() {
    const QString folder = pathChooser_(
        QStringLiteral("Copy the logbook to a folder (a removable drive or any folder)"), true);
    if (folder.isEmpty()) {
        return;
    }
    const QString target = QDir(folder).filePath(store::LogbookFileName());
    // Through a link or a second name, the folder may still be the logbook's own.
    if (store::SameFile(target, db_.Name())) {
        messages_.inform(
            QStringLiteral("That folder holds the logbook in use; choose another folder."),
            QStringLiteral("File Copy"), MsgIcon::Exclamation);
        return;
    }
    if (QFileInfo::exists(target) &&
        messages_.ask(QStringLiteral("%1 already holds a logbook.\nReplace it with this one?")
                          .arg(QDir::toNativeSeparators(folder)),
                      QStringLiteral("File Copy"), MsgButtons::YesNo,
                      MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }
    try {
        BusyCursor busy;
        store::CopyLogbookTo(db_, target);
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("File Copy"), messages_);
        return;
    }
    messages_.inform(
        QStringLiteral("The logbook was copied to:\n    %1").arg(QDir::toNativeSeparators(target)),
        QStringLiteral("File Copy"), MsgIcon::Information);
}

void frmMain::CopyFromFolder() {
    const QString source = pathChooser_(
        QStringLiteral("Copy a logbook from a file (a removable drive or any folder)"), false);
    if (source.isEmpty()) {
        return;
    }
    const QString problem = store::FileProblem(source);
    if (!problem.isEmpty()) {
        messages_.inform(problem + QStringLiteral("\nThe logbook in use was not changed."),
                         QStringLiteral("File Copy"), MsgIcon::Exclamation);
        return;
    }
    if (messages_.ask(
            QStringLiteral(
                "Replace the logbook in use with the copy in\n    %1?\nThe logbook in use "
                "is kept as a dated "
                "backup beside it.")
                .arg(QDir::toNativeSeparators(source)),
            QStringLiteral("File Copy"), MsgButtons::YesNo, MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }
    QString backup;
    try {
        BusyCursor busy;
        backup = store::ReplaceLogbook(db_, source, clock_.Now());
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("File Copy"), messages_);
        return;
    }
    ReloadAll();
    messages_.inform(
        QStringLiteral("The logbook was replaced. The one it replaced is kept as:\n    %1")
            .arg(QDir::toNativeSeparators(backup)),
        QStringLiteral("File Copy"), MsgIcon::Information);
}

void frmMain::StartCalculator() {
#if defined(Q_OS_WIN)
    const QStringList candidates = {QStringLiteral("calc.exe")};
#elif defined(Q_OS_MACOS)
    const QStringList candidates = {
        QStringLiteral("/System/Applications/Calculator.app/Contents/MacOS/Calculator")};
#else
    const QStringList candidates = {QStringLiteral("gnome-calculator"), QStringLiteral("kcalc"),
                                    QStringLiteral("galculator"),       QStringLiteral("mate-calc"),
                                    QStringLiteral("qalculate-gtk"),    QStringLiteral("xcalc")};
#endif
    for (const QString& program : candidates) {
        const QString found = QStandardPaths::findExecutable(program);
        if (!found.isEmpty() || QFileInfo(program).isAbsolute()) {
            if (programStarter_(found.isEmpty() ? program : found, {})) {
                return;
            }
        }
    }
    messages_.inform(QStringLiteral("Can't locate calc.exe on your computer!"));
}

void frmMain::ShowAbout() {
    QDialog about(this);
    about.setObjectName(QStringLiteral("frmAbout"));
    about.setWindowTitle(QStringLiteral("About Slipbook"));
    auto* layout = new QVBoxLayout(&about);
    auto* name = new QLabel(appTitle_, &about);
    name->setObjectName(QStringLiteral("lblTitle"));
    name->setStyleSheet(QStringLiteral("font-size: 16pt; font-weight: bold;"));
    auto* version = new QLabel(store::VersionText(), &about);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* text = new QLabel(QStringLiteral("An electronic logbook for drag racers.\nLogbook: %1")
                                .arg(QDir::toNativeSeparators(db_.Name())),
                            &about);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &about);
    connect(buttons, &QDialogButtonBox::accepted, &about, &QDialog::accept);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(text);
    layout->addWidget(buttons);
    about.exec();
}

void frmMain::HelpContents() {
    if (!help_.available()) {
        messages_.inform(QStringLiteral("The help pages were not found. They belong in:") +
                             QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
                         appTitle_, MsgIcon::Information);
        return;
    }
    if (!urlOpener_(QUrl::fromLocalFile(help_.path))) {
        messages_.inform(
            QStringLiteral("The help pages could not be opened. Open this file in a web browser:") +
                QStringLiteral("\n    ") + QDir::toNativeSeparators(help_.path),
            appTitle_, MsgIcon::Information);
    }
}

// ---------------------------------------------------------------------------------------------
// Printing

bool frmMain::PrintToPdf(const QString& path) {
    return PrintGridToPdf({model_, title_->text(), [this] { return clock_.Now(); }}, path);
}

void frmMain::PrintGrid() {
    if (model_->RowCount() < 1) {
        return;
    }
    PreviewGrid({model_, title_->text(), [this] { return clock_.Now(); }}, this);
}

}  // namespace slipbook::shell
