#include "exchange/ui/frmImport.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace slipbook::exchange {

namespace {

const QString kTitle = QStringLiteral("Import Runs");
constexpr int kPreviewRows = 20;

QString DefaultChooser(QWidget* parent, bool save, const QString& start) {
    const QString filter =
        QStringLiteral("CSV and text files (*.csv *.txt *.tsv *.tab);;All files (*)");
    return save ? QFileDialog::getSaveFileName(parent, QStringLiteral("Save Rejected Rows"), start,
                                               filter)
                : QFileDialog::getOpenFileName(parent, kTitle, start, filter);
}

csv::Delimiter DelimiterAt(int index) {
    static const csv::Delimiter delimiters[] = {csv::Delimiter::Guess, csv::Delimiter::Comma,
                                                csv::Delimiter::Semicolon, csv::Delimiter::Tab};
    return delimiters[std::clamp(index, 0, 3)];
}

// A pass over the file with a progress box that can stop it.
template <class Pass>
auto WithProgress(QWidget* parent, const QString& text, int delay, Pass pass) {
    QProgressDialog progress(text, QStringLiteral("Cancel"), 0, 1000, parent);
    progress.setObjectName(QStringLiteral("dlgImportProgress"));
    progress.setWindowTitle(kTitle);
    // Nothing else may write while the import's transaction is open: a run saved from another
    // window meanwhile would go with the import if it were cancelled.
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(delay);
    progress.setAutoReset(false);
    progress.setAutoClose(false);
    if (delay <= 0) {
        progress.show();
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    auto result = pass([&progress](qint64 done, qint64 total) {
        progress.setValue(static_cast<int>(done * 1000 / std::max<qint64>(total, 1)));
        QCoreApplication::processEvents();  // the Cancel button is pressed between rows
        return !progress.wasCanceled();
    });
    QApplication::restoreOverrideCursor();
    progress.close();
    return result;
}

}  // namespace

// The refused rows: where each was in the file, why, and what it held.
class RejectsModel : public QAbstractTableModel {
public:
    void Set(std::vector<RejectedRow> rows) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    const std::vector<RejectedRow>& rows() const { return rows_; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : 3;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid()) {
            return {};
        }
        const RejectedRow& r = rows_[static_cast<size_t>(index.row())];
        switch (index.column()) {
            case 0:
                return r.line;
            case 1:
                return r.reason;
            default:
                return r.cells.join(QStringLiteral(", ")).simplified();
        }
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
            return {};
        }
        static const char* const captions[] = {"Line", "Reason", "Row"};
        return QString::fromLatin1(captions[section]);
    }

private:
    std::vector<RejectedRow> rows_;
};

frmImport::frmImport(const shell::WindowContext& ctx, QWidget* parent)
    : QDialog(parent),
      ctx_(ctx),
      chooser_(DefaultChooser),
      rejects_(std::make_unique<RejectsModel>()) {
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(kTitle);
    fields_ = ImportFields(ctx.db);

    txtFileName_ = new QLineEdit(this);
    txtFileName_->setObjectName(QStringLiteral("txtFileName"));
    txtFileName_->setMinimumWidth(360);
    txtFileName_->setToolTip(QStringLiteral("A CSV or tab-separated file of time slips"));
    connect(txtFileName_, &QLineEdit::editingFinished, this, &frmImport::LoadFile);
    auto* browse = new QPushButton(QStringLiteral("&Browse..."), this);
    browse->setObjectName(QStringLiteral("cmdBrowse"));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, &frmImport::Browse);

    chkHeaderRow_ = new QCheckBox(QStringLiteral("First row holds column &names"), this);
    chkHeaderRow_->setObjectName(QStringLiteral("chkHeaderRow"));
    chkHeaderRow_->setChecked(true);
    connect(chkHeaderRow_, &QCheckBox::toggled, this, [this] {
        ShowPreview();
        const QString key = LayoutKey(preview_.rows.empty() ? QStringList() : preview_.rows.front(),
                                      chkHeaderRow_->isChecked(), preview_.columns);
        ColumnMapping mapping = RememberedMapping(ctx_.db, key);
        if (mapping.empty() && chkHeaderRow_->isChecked()) {
            mapping = GuessMapping(Headings(), fields_);
        }
        FillMapping(mapping);
    });
    cboDelimiter_ = new QComboBox(this);
    cboDelimiter_->setObjectName(QStringLiteral("cboDelimiter"));
    cboDelimiter_->addItems({QStringLiteral("Found in the file"), QStringLiteral("Comma"),
                             QStringLiteral("Semicolon"), QStringLiteral("Tab")});
    connect(cboDelimiter_, &QComboBox::activated, this, [this] {
        loadedPath_.clear();
        LoadFile();
    });

    previewModel_ = new QStandardItemModel(this);
    grdPreview_ = new QTableView(this);
    grdPreview_->setObjectName(QStringLiteral("grdPreview"));
    grdPreview_->setModel(previewModel_);
    grdPreview_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdPreview_->verticalHeader()->setDefaultSectionSize(grdPreview_->fontMetrics().height() + 6);

    grdMapping_ = new QTableWidget(0, 3, this);
    grdMapping_->setObjectName(QStringLiteral("grdMapping"));
    grdMapping_->setHorizontalHeaderLabels({QStringLiteral("Column of the file"),
                                            QStringLiteral("First value"),
                                            QStringLiteral("Run field")});
    grdMapping_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    grdMapping_->verticalHeader()->setVisible(false);
    grdMapping_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdMapping_->setSelectionMode(QAbstractItemView::NoSelection);

    cboCars_ = new QComboBox(this);
    cboCars_->setObjectName(QStringLiteral("cboCars"));
    cboEvents_ = new QComboBox(this);
    cboEvents_->setObjectName(QStringLiteral("cboEvents"));
    const auto fill = [this](QComboBox* box, const QString& sql, qint64 current) {
        store::Query q = ctx_.db.OpenQuery(sql);
        while (q.Next()) {
            box->addItem(q.Text(1), q.Value(0).toLongLong());
        }
        box->setCurrentIndex(box->findData(current));
    };
    fill(cboCars_, QStringLiteral("SELECT lCar_id, sCar_nm FROM tblCars ORDER BY sCar_nm"),
         ctx.state.car.id);
    fill(cboEvents_,
         QStringLiteral("SELECT lEvent_id, sEvent_nm FROM tblEvents ORDER BY dtEventStart_dt DESC, "
                        "sEvent_nm"),
         ctx.state.event.id);
    chkAddOpponents_ = new QCheckBox(QStringLiteral("&Add opponents not in the list"), this);
    chkAddOpponents_->setObjectName(QStringLiteral("chkAddOpponents"));
    chkAddOpponents_->setChecked(true);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    lblStatus_->setWordWrap(true);
    grdRejects_ = new QTableView(this);
    grdRejects_->setObjectName(QStringLiteral("grdRejects"));
    grdRejects_->setModel(rejects_.get());
    grdRejects_->horizontalHeader()->setStretchLastSection(true);
    grdRejects_->setColumnWidth(0, 60);
    grdRejects_->setColumnWidth(1, 420);
    grdRejects_->verticalHeader()->setVisible(false);
    grdRejects_->setEditTriggers(QAbstractItemView::NoEditTriggers);

    cmdImport_ = new QPushButton(QStringLiteral("&Import"), this);
    cmdImport_->setObjectName(QStringLiteral("cmdImport"));
    cmdImport_->setAutoDefault(false);
    cmdImport_->setEnabled(false);
    connect(cmdImport_, &QPushButton::clicked, this, &frmImport::Import);
    cmdSaveRejects_ = new QPushButton(QStringLiteral("Save &Rejects..."), this);
    cmdSaveRejects_->setObjectName(QStringLiteral("cmdSaveRejects"));
    cmdSaveRejects_->setAutoDefault(false);
    cmdSaveRejects_->setEnabled(false);
    connect(cmdSaveRejects_, &QPushButton::clicked, this, &frmImport::SaveRejects);
    auto* close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    // Layout: the file on top, the preview and the matching side by side, then where the runs
    // go, then what came of it.
    auto* fileRow = new QHBoxLayout;
    auto* fileLabel = new QLabel(QStringLiteral("&File:"), this);
    fileLabel->setBuddy(txtFileName_);
    fileRow->addWidget(fileLabel);
    fileRow->addWidget(txtFileName_, 1);
    fileRow->addWidget(browse);
    auto* optionsRow = new QHBoxLayout;
    optionsRow->addWidget(chkHeaderRow_);
    optionsRow->addSpacing(16);
    auto* delimiterLabel = new QLabel(QStringLiteral("&Separator:"), this);
    delimiterLabel->setBuddy(cboDelimiter_);
    optionsRow->addWidget(delimiterLabel);
    optionsRow->addWidget(cboDelimiter_);
    optionsRow->addStretch();

    auto* previewBox = new QGroupBox(QStringLiteral("First rows of the file"), this);
    (new QVBoxLayout(previewBox))->addWidget(grdPreview_);
    auto* mappingBox = new QGroupBox(QStringLiteral("Columns matched to run fields"), this);
    (new QVBoxLayout(mappingBox))->addWidget(grdMapping_);
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(previewBox);
    splitter->addWidget(mappingBox);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);

    auto* target = new QGroupBox(QStringLiteral("Import into"), this);
    auto* targetGrid = new QGridLayout(target);
    auto* carLabel = new QLabel(QStringLiteral("C&ar:"), this);
    carLabel->setBuddy(cboCars_);
    auto* eventLabel = new QLabel(QStringLiteral("&Event:"), this);
    eventLabel->setBuddy(cboEvents_);
    targetGrid->addWidget(carLabel, 0, 0);
    targetGrid->addWidget(cboCars_, 0, 1);
    targetGrid->addWidget(eventLabel, 0, 2);
    targetGrid->addWidget(cboEvents_, 0, 3);
    targetGrid->addWidget(chkAddOpponents_, 1, 0, 1, 4);
    targetGrid->setColumnStretch(1, 1);
    targetGrid->setColumnStretch(3, 2);

    auto* rejectsBox = new QGroupBox(QStringLiteral("Rows not imported"), this);
    auto* rejectsLayout = new QVBoxLayout(rejectsBox);
    rejectsLayout->addWidget(lblStatus_);
    rejectsLayout->addWidget(grdRejects_);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdSaveRejects_);
    buttons->addStretch();
    buttons->addWidget(cmdImport_);
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fileRow);
    layout->addLayout(optionsRow);
    layout->addWidget(splitter, 4);
    layout->addWidget(target);
    layout->addWidget(rejectsBox, 2);
    layout->addLayout(buttons);
    resize(960, 680);
    lblStatus_->setText(QStringLiteral("Choose a file of time slips."));
}

frmImport::~frmImport() = default;

void frmImport::Browse() {
    QString start = txtFileName_->text().trimmed();
    if (start.isEmpty()) {
        start = QDir::homePath();
    }
    const QString path = chooser_(this, false, start);
    if (!path.isEmpty()) {
        txtFileName_->setText(path);
        LoadFile();
    }
}

void frmImport::LoadFile() {
    const QString path = txtFileName_->text().trimmed();
    if (path.isEmpty() || path == loadedPath_) {
        return;
    }
    loadedPath_ = path;
    preview_ = {};
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        preview_.ok = false;
        preview_.error =
            QStringLiteral("%1 can't be opened: %2")
                .arg(QDir::toNativeSeparators(path), QFileInfo::exists(path)
                                                         ? file.errorString()
                                                         : QStringLiteral("there is no such file"));
    } else {
        preview_ = ReadPreview(file, kPreviewRows + 1, DelimiterAt(cboDelimiter_->currentIndex()));
        if (preview_.ok && preview_.rows.empty()) {
            preview_.ok = false;
            preview_.error =
                QStringLiteral("%1 holds no rows.").arg(QDir::toNativeSeparators(path));
        }
    }
    rejects_->Set({});
    cmdSaveRejects_->setEnabled(false);
    if (!preview_.ok) {
        // A file that can't be read leaves nothing to import; the racer may pick another.
        previewModel_->clear();
        grdMapping_->setRowCount(0);
        cmdImport_->setEnabled(false);
        lblStatus_->setText(preview_.error);
        ctx_.messages.inform(preview_.error, kTitle, MsgIcon::Exclamation);
        return;
    }
    {
        const QSignalBlocker block(chkHeaderRow_);
        chkHeaderRow_->setChecked(LooksLikeHeader(preview_.rows.front(), fields_));
    }
    ShowPreview();
    const QString key =
        LayoutKey(preview_.rows.front(), chkHeaderRow_->isChecked(), preview_.columns);
    ColumnMapping mapping = RememberedMapping(ctx_.db, key);
    if (mapping.empty() && chkHeaderRow_->isChecked()) {
        mapping = GuessMapping(Headings(), fields_);
    }
    FillMapping(mapping);
    cmdImport_->setEnabled(true);
    lblStatus_->setText(QStringLiteral("Check how the columns are matched, then press Import."));
}

QStringList frmImport::Headings() const {
    QStringList headings;
    if (chkHeaderRow_->isChecked() && !preview_.rows.empty()) {
        headings = preview_.rows.front();
    }
    return headings;
}

void frmImport::ShowPreview() {
    previewModel_->clear();
    const bool header = chkHeaderRow_->isChecked();
    const size_t first = header ? 1 : 0;
    previewModel_->setColumnCount(preview_.columns);
    for (int c = 0; c < preview_.columns; ++c) {
        const QString heading = header && !preview_.rows.empty()
                                    ? preview_.rows.front().value(c)
                                    : QStringLiteral("Column %1").arg(c + 1);
        previewModel_->setHorizontalHeaderItem(c, new QStandardItem(heading));
    }
    for (size_t r = first; r < preview_.rows.size() && r < first + kPreviewRows; ++r) {
        QList<QStandardItem*> items;
        for (int c = 0; c < preview_.columns; ++c) {
            items << new QStandardItem(preview_.rows[r].value(c));
        }
        previewModel_->appendRow(items);
    }
}

void frmImport::FillMapping(const ColumnMapping& mapping) {
    const bool header = chkHeaderRow_->isChecked();
    grdMapping_->setRowCount(preview_.columns);
    const size_t firstData = header ? 1 : 0;
    for (int c = 0; c < preview_.columns; ++c) {
        const QString heading = header && !preview_.rows.empty()
                                    ? preview_.rows.front().value(c)
                                    : QStringLiteral("Column %1").arg(c + 1);
        const QString sample =
            firstData < preview_.rows.size() ? preview_.rows[firstData].value(c) : QString();
        grdMapping_->setItem(c, 0, new QTableWidgetItem(heading));
        grdMapping_->setItem(c, 1, new QTableWidgetItem(sample.simplified()));
        auto* field = new QComboBox(grdMapping_);
        field->setObjectName(QStringLiteral("cboField(%1)").arg(c));
        field->addItem(QStringLiteral("(not imported)"), QString());
        for (const ImportField& f : fields_) {
            field->addItem(f.caption, f.column);
        }
        const QString column = c < static_cast<int>(mapping.size()) ? mapping[c] : QString();
        field->setCurrentIndex(std::max(0, field->findData(column)));
        grdMapping_->setCellWidget(c, 2, field);
    }
}

ColumnMapping frmImport::Mapping() const {
    ColumnMapping mapping;
    for (int c = 0; c < grdMapping_->rowCount(); ++c) {
        const auto* field = qobject_cast<const QComboBox*>(grdMapping_->cellWidget(c, 2));
        mapping.push_back(field != nullptr ? field->currentData().toString() : QString());
    }
    return mapping;
}

ImportPlan frmImport::Plan() const {
    ImportPlan plan;
    plan.carId = cboCars_->currentIndex() >= 0 ? cboCars_->currentData().toLongLong() : 0;
    plan.eventId = cboEvents_->currentIndex() >= 0 ? cboEvents_->currentData().toLongLong() : 0;
    plan.headerRow = chkHeaderRow_->isChecked();
    plan.mapping = Mapping();
    plan.delimiter = DelimiterAt(cboDelimiter_->currentIndex());
    plan.addOpponents = chkAddOpponents_->isChecked();
    return plan;
}

void frmImport::Import() {
    LoadFile();  // a name typed without leaving the box
    if (!preview_.ok || loadedPath_.isEmpty()) {
        return;
    }
    const ImportPlan plan = Plan();
    if (plan.carId == 0 || plan.eventId == 0) {
        ctx_.messages.inform(plan.carId == 0 ? QStringLiteral("Car Must Be Selected")
                                             : QStringLiteral("Event Must Be Selected"),
                             kTitle, MsgIcon::Exclamation);
        (plan.carId == 0 ? cboCars_ : cboEvents_)->setFocus();
        return;
    }
    QStringList taken;
    for (size_t c = 0; c < plan.mapping.size(); ++c) {
        const QString& column = plan.mapping[c];
        if (column.isEmpty()) {
            continue;
        }
        if (taken.contains(column)) {
            const auto* field = qobject_cast<QComboBox*>(grdMapping_->cellWidget(int(c), 2));
            ctx_.messages.inform(
                QStringLiteral("Two columns of the file are matched to %1. Match each run "
                               "field to one column.")
                    .arg(field != nullptr ? field->currentText() : column),
                kTitle, MsgIcon::Exclamation);
            return;
        }
        taken << column;
    }
    if (taken.isEmpty()) {
        ctx_.messages.inform(
            QStringLiteral("Match at least one column of the file to a run field."), kTitle,
            MsgIcon::Exclamation);
        return;
    }

    const QString name = QFileInfo(loadedPath_).fileName();
    QFile file(loadedPath_);
    if (!file.open(QIODevice::ReadOnly)) {
        ctx_.messages.inform(QStringLiteral("%1 can't be opened: %2").arg(name, file.errorString()),
                             kTitle, MsgIcon::Critical);
        return;
    }
    const ImportCheck check = WithProgress(
        this, QStringLiteral("Checking %1...").arg(name), progressDelay_,
        [&](const ImportProgress& progress) { return CheckImport(ctx_.db, file, plan, progress); });
    file.close();
    if (check.status == ImportCheck::Status::Cancelled) {
        lblStatus_->setText(QStringLiteral("Stopped. Nothing was imported."));
        return;
    }
    if (check.status == ImportCheck::Status::Failed) {
        lblStatus_->setText(check.error);
        ctx_.messages.inform(check.error + QStringLiteral("\nNothing was imported."), kTitle,
                             MsgIcon::Critical);
        return;
    }
    rejectHeadings_ = Headings();
    if (check.passing == 0) {
        rejects_->Set(check.rejects);
        cmdSaveRejects_->setEnabled(!check.rejects.empty());
        const QString text =
            check.rows == 0
                ? QStringLiteral("The file holds no runs below its headings.")
                : QStringLiteral(
                      "None of the %1 rows can be imported; each is listed with the reason.")
                      .arg(check.rows);
        lblStatus_->setText(text);
        ctx_.messages.inform(text, kTitle, MsgIcon::Exclamation);
        return;
    }
    DuplicateRule rule = DuplicateRule::Import;
    if (check.duplicates > 0) {
        const MsgAnswer answer = ctx_.messages.ask(
            QStringLiteral("%1 of the %2 runs in this file are already in the logbook for %3 "
                           "(the same date, time and ET).\n\nImport them again?\n\nYes imports "
                           "them again; No leaves them out.")
                .arg(check.duplicates)
                .arg(check.passing)
                .arg(cboCars_->currentText()),
            kTitle, MsgButtons::YesNoCancel, MsgAnswer::No, MsgIcon::Question);
        if (answer == MsgAnswer::Cancel) {
            return;
        }
        rule = answer == MsgAnswer::Yes ? DuplicateRule::Import : DuplicateRule::Skip;
    }

    if (!file.open(QIODevice::ReadOnly)) {
        ctx_.messages.inform(QStringLiteral("%1 can't be opened: %2").arg(name, file.errorString()),
                             kTitle, MsgIcon::Critical);
        return;
    }
    const ImportResult result =
        WithProgress(this, QStringLiteral("Importing %1...").arg(name), progressDelay_,
                     [&](const ImportProgress& progress) {
                         return ImportRuns(ctx_.db, file, plan, rule, progress);
                     });
    file.close();
    if (result.status == ImportResult::Status::Cancelled) {
        lblStatus_->setText(QStringLiteral("Stopped. Nothing was imported."));
        return;
    }
    if (result.status == ImportResult::Status::Failed) {
        lblStatus_->setText(result.error);
        ctx_.messages.inform(result.error, kTitle, MsgIcon::Critical);
        return;
    }

    try {
        RememberMapping(ctx_.db, LayoutKey(preview_.rows.front(), plan.headerRow, preview_.columns),
                        plan.mapping);
    } catch (const std::exception&) {
        // The runs are in; a matching not kept is only asked again next time.
    }
    rejects_->Set(result.rejects);
    cmdSaveRejects_->setEnabled(!result.rejects.empty());
    const auto count = [](qsizetype n, const char* one, const char* many) {
        return QString::number(n) + u' ' + QString::fromLatin1(n == 1 ? one : many);
    };
    QString text = QStringLiteral("%1 imported into %2 for %3.")
                       .arg(count(result.imported, "run", "runs"), cboEvents_->currentText(),
                            cboCars_->currentText());
    if (result.skipped > 0) {
        text += QStringLiteral(" %1 already in the logbook left out.").arg(result.skipped);
    }
    if (!result.rejects.empty()) {
        text += QStringLiteral(" %1 not imported, listed below.")
                    .arg(count(static_cast<qsizetype>(result.rejects.size()), "row", "rows"));
    }
    lblStatus_->setText(text);
    if (result.imported > 0) {
        Q_EMIT ctx_.events.recordsChanged(QStringLiteral("tblOpponent"));
        Q_EMIT ctx_.events.recordsChanged(QStringLiteral("tblRuns"));
    }
    ctx_.messages.inform(text, kTitle, MsgIcon::Information);
    if (result.maintenanceDue) {
        ctx_.main.ShowWindow(shell::windows::kMaintenanceAlert, plan.carId);
    }
}

void frmImport::SaveRejects() {
    const QFileInfo source(loadedPath_);
    const QString start =
        source.dir().filePath(source.completeBaseName() + QStringLiteral(" rejects.csv"));
    QString path = chooser_(this, true, start);
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".csv");
    }
    QString error;
    if (!WriteRejects(path, rejectHeadings_, rejects_->rows(), &error)) {
        ctx_.messages.inform(
            QStringLiteral("%1 can't be written: %2").arg(QDir::toNativeSeparators(path), error),
            kTitle, MsgIcon::Critical);
    }
}

}  // namespace slipbook::exchange
