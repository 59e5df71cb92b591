#include "exchange/ui/frmExport.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace slipbook::exchange {

namespace {
const QString kTitle = QStringLiteral("Export");
}

frmExport::frmExport(store::Database& db, Messages& messages, ListSource source, QWidget* parent)
    : QDialog(parent), db_(db), messages_(messages), source_(std::move(source)) {
    setObjectName(QStringLiteral("frmExport"));
    setWindowTitle(QStringLiteral("Export List"));

    txtFileName_ = new QLineEdit(this);
    txtFileName_->setObjectName(QStringLiteral("txtFileName"));
    txtFileName_->setMinimumWidth(320);
    auto* browse = new QPushButton(QStringLiteral("&Browse..."), this);
    browse->setObjectName(QStringLiteral("cmdBrowse"));
    connect(browse, &QPushButton::clicked, this, &frmExport::Browse);

    auto* values = new QGroupBox(QStringLiteral("Values"), this);
    optShown_ = new QRadioButton(QStringLiteral("Values as &shown"), values);
    optShown_->setObjectName(QStringLiteral("optShown"));
    optShown_->setChecked(true);
    optRaw_ = new QRadioButton(QStringLiteral("&Raw values"), values);
    optRaw_->setObjectName(QStringLiteral("optRaw"));
    optRaw_->setToolTip(QStringLiteral(
        "The stored values: full precision, dates as 2003-07-04, times as 10:30:00"));
    auto* valuesLayout = new QVBoxLayout(values);
    valuesLayout->addWidget(optShown_);
    valuesLayout->addWidget(optRaw_);

    chkByteOrderMark_ = new QCheckBox(QStringLiteral("Byte-order &mark for spreadsheets"), this);
    chkByteOrderMark_->setObjectName(QStringLiteral("chkByteOrderMark"));
    chkByteOrderMark_->setChecked(true);

    cmdExport_ = new QPushButton(QStringLiteral("&Export"), this);
    cmdExport_->setObjectName(QStringLiteral("cmdExport"));
    cmdExport_->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdExport_, &QPushButton::clicked, this, &frmExport::Export);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* grid = new QGridLayout(this);
    auto* label = new QLabel(QStringLiteral("&File:"), this);
    label->setBuddy(txtFileName_);
    grid->addWidget(label, 0, 0);
    grid->addWidget(txtFileName_, 0, 1);
    grid->addWidget(browse, 0, 2);
    grid->addWidget(values, 1, 0, 1, 3);
    grid->addWidget(chkByteOrderMark_, 2, 0, 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdExport_);
    buttons->addWidget(cancel);
    grid->addLayout(buttons, 3, 0, 1, 3);
}

void frmExport::Browse() {
    QString start = txtFileName_->text().trimmed();
    if (start.isEmpty()) {
        start = QDir::home().filePath(suggested_);
    }
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Export List"), start,
        QStringLiteral("CSV files (*.csv);;Text files (*.txt);;All files (*)"));
    if (!path.isEmpty()) {
        txtFileName_->setText(path);
    }
}

void frmExport::Export() {
    QString path = txtFileName_->text().trimmed();
    if (path.isEmpty()) {
        messages_.inform(QStringLiteral("Enter the name of the file to write."), kTitle,
                         MsgIcon::Exclamation);
        txtFileName_->setFocus();
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".csv");
    }
    if (QFileInfo(path).isDir()) {
        messages_.inform(QStringLiteral("%1 is a folder. Enter the name of a file.").arg(path),
                         kTitle, MsgIcon::Exclamation);
        return;
    }
    if (QFileInfo::exists(path) &&
        messages_.ask(QStringLiteral("%1 already exists. Replace it?").arg(path), kTitle,
                      MsgButtons::YesNo, MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }

    QProgressDialog progress(QStringLiteral("Writing %1...").arg(QFileInfo(path).fileName()),
                             QStringLiteral("Cancel"), 0, source_.model->RowCount(), this);
    progress.setObjectName(QStringLiteral("dlgExportProgress"));
    progress.setWindowTitle(kTitle);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);
    progress.setAutoReset(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const ExportOptions options{.mode = optRaw_->isChecked() ? ExportMode::Raw : ExportMode::Shown,
                                .byteOrderMark = chkByteOrderMark_->isChecked()};
    const ExportResult result =
        ExportList(db_, source_, path, options, [&progress](int done, int total) {
            progress.setMaximum(total);
            progress.setValue(done);
            return !progress.wasCanceled();
        });
    QApplication::restoreOverrideCursor();
    progress.close();

    switch (result.status) {
        case ExportResult::Status::Done:
            accept();
            break;
        case ExportResult::Status::Cancelled:
            break;  // the dialog stays, nothing was written
        case ExportResult::Status::Failed:
            messages_.inform(result.error, kTitle, MsgIcon::Critical);
            break;
    }
}

void ShowExport(store::Database& db, Messages& messages, const ListSource& source,
                const QString& suggestedName, QWidget* parent) {
    frmExport dialog(db, messages, source, parent);
    dialog.SetSuggestedName(suggestedName);
    dialog.exec();
}

}  // namespace slipbook::exchange
