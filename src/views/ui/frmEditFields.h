#pragma once

// The column catalogue's editor: every column's header, format, type, alignment and width,
// each row written as it is left.

#include "shell/windowcontext.h"

#include <QDialog>

class QTableWidget;

namespace slipbook::views {

class frmEditFields : public QDialog {
    Q_OBJECT

public:
    explicit frmEditFields(const shell::WindowContext& ctx, QWidget* parent = nullptr);

    // Writes the row being edited, if it changed; false when it was refused (the reason shown).
    bool WritePending();

protected:
    void done(int result) override;

private:
    void Load();

    const shell::WindowContext ctx_;
    QTableWidget* ssdbgEditFields = nullptr;
    int dirtyRow_ = -1;
    bool loading_ = false;
};

}  // namespace slipbook::views
