#pragma once

// The view set-up window: which of the catalogue's fields the run list shows, and in which
// order; shown at once as a passing column set, or kept as a named view of the racer's own.

#include "shell/windowcontext.h"

#include <QList>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QListWidget;
class QPushButton;

namespace slipbook::views {

class frmView : public QWidget {
    Q_OBJECT

public:
    explicit frmView(const shell::WindowContext& ctx, QWidget* parent = nullptr);

    // The fields to show, in order: the target list's keys.
    QList<qint64> TargetIds() const;
    bool DataChanged() const { return changed_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildLayout();
    void FormLoad();
    void ListFill();
    void Move(QListWidget* from, QListWidget* to, bool all);
    void MoveWithin(int step);
    void RefreshButtons();
    void CustomNameLeft();
    void Ok();
    void SaveView();
    void RecallView();
    void DeleteView();
    void EditFields();
    void ShowInMain(qint64 viewId);
    qint64 CustomId() const;

    const shell::WindowContext ctx_;
    bool changed_ = false;

    QComboBox* cboViews = nullptr;
    QListWidget* lstSource = nullptr;
    QListWidget* lstTarget = nullptr;
    QPushButton* sscmdAdd = nullptr;
    QPushButton* sscmdRemove = nullptr;
    QPushButton* sscmdAddAll = nullptr;
    QPushButton* sscmdRemoveAll = nullptr;
    QPushButton* sscmdMoveUp = nullptr;
    QPushButton* sscmdMoveDown = nullptr;
    QPushButton* sscmdOk = nullptr;
    QPushButton* sscmdCancel = nullptr;
    QPushButton* SSCommand1 = nullptr;
    QComboBox* cboCustomViews = nullptr;
    QPushButton* sscmdRecallView = nullptr;
    QPushButton* sscmdDeleteView = nullptr;
    QPushButton* sscmdSaveView = nullptr;
    QCheckBox* sschkDefaultView = nullptr;
};

}  // namespace slipbook::views
