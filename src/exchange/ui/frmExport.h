#pragma once

#include "common/messages.h"
#include "exchange/listexport.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace slipbook::exchange {

// Asks where and how a list goes to a CSV file, then writes it with a progress box that can
// cancel. The list and its table come from the window that shows it.
class frmExport : public QDialog {
    Q_OBJECT

public:
    frmExport(store::Database& db, Messages& messages, ListSource source,
              QWidget* parent = nullptr);

    // The folder the Save dialog starts in, and the name it offers.
    void SetSuggestedName(const QString& name) { suggested_ = name; }

private:
    void Browse();
    void Export();

    store::Database& db_;
    Messages& messages_;
    ListSource source_;
    QString suggested_;
    QLineEdit* txtFileName_ = nullptr;
    QRadioButton* optShown_ = nullptr;
    QRadioButton* optRaw_ = nullptr;
    QCheckBox* chkByteOrderMark_ = nullptr;
    QPushButton* cmdExport_ = nullptr;
};

// Opens the dialog for a list, modal to its window.
void ShowExport(store::Database& db, Messages& messages, const ListSource& source,
                const QString& suggestedName, QWidget* parent);

}  // namespace slipbook::exchange
