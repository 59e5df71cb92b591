#pragma once

// File > Import Runs...: the file, its first rows, the matching of its columns, the car and the
// event, then the import with its rejects.

#include "exchange/runimport.h"
#include "shell/windowcontext.h"

#include <QDialog>

#include <functional>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStandardItemModel;
class QTableView;
class QTableWidget;

namespace slipbook::exchange {

class RejectsModel;

class frmImport : public QDialog {
    Q_OBJECT

public:
    explicit frmImport(const shell::WindowContext& ctx, QWidget* parent = nullptr);
    ~frmImport() override;

    // Asks for a file to read (save false) or to write (save true); the file dialog unless a
    // test replaces it.
    using FileChooser = std::function<QString(QWidget* parent, bool save, const QString& start)>;
    void SetFileChooser(FileChooser chooser) { chooser_ = std::move(chooser); }
    // How long a pass runs before its progress box shows.
    void SetProgressDelay(int ms) { progressDelay_ = ms; }

    // The matching as the table holds it.
    ColumnMapping Mapping() const;

private:
    void Browse();
    void LoadFile();
    void ShowPreview();
    void FillMapping(const ColumnMapping& mapping);
    void Import();
    void SaveRejects();
    ImportPlan Plan() const;
    QStringList Headings() const;

    const shell::WindowContext& ctx_;
    FileChooser chooser_;
    int progressDelay_ = 500;
    QString loadedPath_;
    ImportPreview preview_;
    std::vector<ImportField> fields_;
    std::unique_ptr<RejectsModel> rejects_;
    QStringList rejectHeadings_;

    QLineEdit* txtFileName_ = nullptr;
    QCheckBox* chkHeaderRow_ = nullptr;
    QComboBox* cboDelimiter_ = nullptr;
    QTableView* grdPreview_ = nullptr;
    QStandardItemModel* previewModel_ = nullptr;
    QTableWidget* grdMapping_ = nullptr;
    QComboBox* cboCars_ = nullptr;
    QComboBox* cboEvents_ = nullptr;
    QCheckBox* chkAddOpponents_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QTableView* grdRejects_ = nullptr;
    QPushButton* cmdImport_ = nullptr;
    QPushButton* cmdSaveRejects_ = nullptr;
};

}  // namespace slipbook::exchange
