#pragma once

// The window in which the racer picks a car's setup runs for the density altitude or throttle
// stop program, at a quarter or an eighth mile: the list of setup runs above, the car's other
// runs with an ET at that distance below. A prediction window opens it and owns it; it deletes
// itself when closed.

#include "shell/runlist.h"
#include "shell/windowcontext.h"

#include <QList>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableView;

namespace slipbook {
class TextGridModel;
}

namespace slipbook::prediction {

class frmCarSetup : public QWidget {
    Q_OBJECT

public:
    explicit frmCarSetup(const shell::WindowContext& ctx, QWidget* owner = nullptr);
    ~frmCarSetup() override;

    // The car whose runs are listed; until set, the main window's current car when the window
    // was made.
    void SetCarId(qint64 carId);
    // "TS" for the throttle stop program; anything else is the density altitude program ("DA").
    void SetSetupType(const QString& type);
    // Before the window is shown: loads both lists at the distance, sets the caption and the
    // distance buttons. With `updateOwner`, a change of distance is told by DistanceChanged.
    void PreShow(bool quarterMile, bool updateOwner);

    bool QuarterMile() const { return quarterMile_; }

Q_SIGNALS:
    // The user changed the distance; only when PreShow was given `updateOwner`.
    void DistanceChanged(bool quarterMile);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildLayout();
    QTableView* MakeGrid(const QString& name, TextGridModel* model, QWidget* parent);
    qint64 CarId() const;
    QString SetupType() const;
    bool Eighth() const { return !quarterMile_; }
    // Reloads both lists; the rows of these runs are highlighted afterwards, where listed.
    void LoadLists(qint64 setupRun = 0, qint64 availableRun = 0);
    void LoadGrid(QTableView* grid, TextGridModel* model, const QString& sql);
    void SizeColumns(QTableView* grid, const TextGridModel* model);
    void FitWidthToColumns();
    // The run id of the grid's highlighted row, or 0.
    qint64 HighlightedRun(const QTableView* grid, const TextGridModel* model) const;
    void Highlight(QTableView* grid, const TextGridModel* model, qint64 runId);
    void UpdateButtons();
    void AddHighlighted();
    void RemoveHighlighted();
    void DistanceClicked(bool quarterMile);
    void ReloadKeepingHighlight();
    void ExportSetupRuns();

    store::Database& db_;
    Messages& messages_;
    store::LogbookEvents& events_;

    QLineEdit* txtCarId_ = nullptr;
    QLineEdit* txtSetupType_ = nullptr;
    QRadioButton* rdo14MileSetup_ = nullptr;
    QRadioButton* rdo18MileSetup_ = nullptr;
    QLabel* lblSetupRuns_ = nullptr;
    QLabel* lblAvailableRuns_ = nullptr;
    QTableView* ssdbgMain_ = nullptr;
    QTableView* ssdbgAvailableRuns_ = nullptr;
    TextGridModel* setupModel_ = nullptr;
    TextGridModel* availableModel_ = nullptr;
    QPushButton* sscmdSaveSetup_ = nullptr;
    QPushButton* sscmdDelete_ = nullptr;
    QPushButton* sscmdClose_ = nullptr;

    shell::ListLayout layout_;
    bool quarterMile_ = true;
    bool updateOwner_ = false;
    bool loaded_ = false;
    // While this window tells of its own change, the notice needs no reload here.
    bool telling_ = false;
};

// The car window's setup runs of a car for a program ("DA" or "TS"), at a quarter mile: the one
// `owner` already shows for that car and program, or a new one. Shown without blocking.
QWidget* ShowCarSetup(const shell::WindowContext& ctx, QWidget* owner, qint64 carId,
                      const QString& setupType);

}  // namespace slipbook::prediction
