#pragma once

// What the statistics and report card windows share: Refresh, Print and Close tools, tables of
// text, and figures that follow the logbook. The figures are read again when runs are saved or
// deleted, when tables they show change, with Refresh, and when the window is activated after
// the main window's car, event, track or filter moved on.

#include "analysis/ui/reportprint.h"
#include "shell/windowcontext.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

class QAction;
class QLabel;
class QTableView;
class QVBoxLayout;

namespace slipbook::analysis {

struct TextTable;

class FigureWindow : public QWidget {
    Q_OBJECT
public:
    FigureWindow(const shell::WindowContext& ctx, QStringList followedTables, QWidget* parent);

    QAction* tool(QStringView id) const;
    // The printout, as Print prints it, to a PDF file; false when nothing could be written.
    bool PrintToPdf(const QString& path);
    // Reads the figures again for the main window's present selection.
    void Reload();

protected:
    virtual void Refresh() = 0;
    virtual Report MakeReport() = 0;

    void changeEvent(QEvent* event) override;

    // The layout under the tool bar, for the window's own widgets.
    QVBoxLayout* body() const { return body_; }
    // A read-only grid over the model, with the table's columns and rows.
    QTableView* MakeGrid(const char* name, TextGridModel* model);
    // Puts the table into the grid's model, at the columns' widths.
    static void Show(QTableView* grid, const TextTable& table);
    // A label that wraps, for a heading (bold) or a line of text.
    QLabel* MakeLabel(const char* name, bool heading);
    // The main window's picks as a line: "Car: ...  Event: ...  Track: ...  Filter: ...".
    QString SelectionText() const;
    // Report's clock: the window's.
    Report NewReport(const QString& title) const;

    const shell::WindowContext ctx_;

private:
    struct Selection {
        qint64 car = 0;
        qint64 event = 0;
        qint64 track = 0;
        bool filter = false;
        QString sql;
        bool operator==(const Selection&) const = default;
    };
    Selection Current() const;
    void ScheduleReload();
    void ToolClick(const QString& id);

    QStringList followed_;
    QList<QAction*> tools_;
    QVBoxLayout* body_ = nullptr;
    Selection shown_;
    bool pending_ = false;
};

}  // namespace slipbook::analysis
