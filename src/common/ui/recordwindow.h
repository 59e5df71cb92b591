#pragma once

#include "common/messages.h"
#include "common/records.h"
#include "common/tools.h"
#include "store/database.h"
#include "store/logbookevents.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

class QAbstractProxyModel;
class QAction;
class QComboBox;
class QLineEdit;
class QListWidget;
class QMenuBar;
class QPlainTextEdit;
class QTableView;
class QToolBar;
class QVBoxLayout;

namespace slipbook {
class TextGridModel;
struct GridColumn;
}  // namespace slipbook

class QGridLayout;
class QLabel;
class QListWidget;

namespace slipbook {

// The record list of a window, whether a plain list of names or a grid: one entry per record,
// each carrying the record's id. Selecting from code never announces a pick.
class RecordList : public QObject {
    Q_OBJECT

public:
    explicit RecordList(QWidget* widget);

    QWidget* widget() const { return widget_; }
    virtual int count() const = 0;
    virtual int current() const = 0;  // -1 when nothing is selected
    virtual void select(int row) = 0;
    virtual qint64 idAt(int row) const = 0;
    virtual void remove(int row) = 0;
    // For lists of names; a grid rebuilds its rows instead.
    virtual void append(const QString& text, qint64 id);
    virtual void setText(int row, const QString& text);
    // The row to select after `row` was removed; -1 when the list is empty.
    virtual int nextAfterRemoval(int row) const;
    int findId(qint64 id) const;

    // Keeps the list from announcing picks while code changes it.
    class Quiet {
    public:
        explicit Quiet(RecordList* list) : list_(list) { ++list_->silent_; }
        ~Quiet() { --list_->silent_; }
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

    private:
        RecordList* list_;
    };

Q_SIGNALS:
    void picked(int row);  // the user chose another entry
    void insertKey();
    void deleteKey();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool silent() const { return silent_ > 0; }

private:
    QWidget* widget_;
    int silent_ = 0;
};

class ListWidgetRecords : public RecordList {
    Q_OBJECT

public:
    explicit ListWidgetRecords(QListWidget* list);
    int count() const override;
    int current() const override;
    void select(int row) override;
    qint64 idAt(int row) const override;
    void remove(int row) override;
    void append(const QString& text, qint64 id) override;
    void setText(int row, const QString& text) override;

private:
    QListWidget* list_;
};

// A grid whose first cell holds the id.
class GridRecords : public RecordList {
    Q_OBJECT

public:
    GridRecords(QTableView* view, TextGridModel* model);
    int count() const override;
    int current() const override;
    void select(int row) override;
    qint64 idAt(int row) const override;
    void remove(int row) override;
    int nextAfterRemoval(int row) const override;

private:
    QTableView* view_;
    TextGridModel* model_;
};

// The window every record of the logbook but a run is edited in (and the run window builds on):
// a list of the records, the fields of one, a tool bar and a menu bar. The pattern's operations
// are here once; what differs per window comes through the hooks. Constructing a window is its
// load: each window calls FormLoad at the end of its own constructor.
class RecordWindow : public QWidget {
    Q_OBJECT

public:
    RecordWindow(store::Database& db, Messages& messages, store::LogbookEvents& events,
                 QWidget* parent = nullptr);
    ~RecordWindow() override;

    bool DataChanged() const { return dataChanged_; }
    void SetDataChanged(bool on) { dataChanged_ = on; }
    bool ShowMode() const { return showMode_; }
    void SetShowMode(bool on) { showMode_ = on; }
    bool RecordAdd() const { return recordAdd_; }
    void SetRecordAdd(bool on) { recordAdd_ = on; }

    // The tool (menu entry and button) with this id, or null.
    QAction* tool(const QString& id) const;
    QToolBar* toolBar() const { return toolBar_; }
    RecordList* recordList() const { return list_.get(); }

    // The one dispatcher of the tool bar and the menus.
    virtual void ToolClick(const QString& toolId);

    // Shows the record with this id, selecting it in the list; false (and a box) when the
    // record is not there.
    bool ShowRecordId(qint64 id);
    // The id of the record shown; 0 for a new one.
    qint64 CurrentRecordId() const;

    // The tools' tips and status tips name what the window keeps ("Save this run").
    void SetToolTips(const QString& noun);

    // Edited fields show their text in red until the record is saved or another one shown.
    void SetShowEditsInRed(bool on) { editsInRed_ = on; }

    // What the window can't do alone: the help file, the about box, printing. Printing falls
    // back on a preview of the window's image.
    void SetHelpHandler(std::function<void()> handler) { help_ = std::move(handler); }
    void SetAboutHandler(std::function<void()> handler) { about_ = std::move(handler); }
    void SetPrintHandler(std::function<void(QWidget*)> handler) { print_ = std::move(handler); }

protected:
    // ---- The pattern's operations.
    // Fills the lists, opens the row set and shows the first record, or starts a new one when
    // `newRecord` (the main window's New asked for one).
    void FormLoad(bool newRecord);
    virtual void New();
    // Validates and writes the record in one transaction; false when it was not saved.
    virtual bool Save(const QString& toolId);
    virtual void RecordDelete();
    // Closing: false keeps the window open.
    virtual bool QueryUnload();
    bool Validate();
    // Shows the row set's current row.
    void ShowCurrent();
    void DeleteToolSetup();
    // The first change of a field marks the record changed and offers the save tools.
    void MarkChanged(QWidget* control = nullptr);
    // Picks a list entry as a click would.
    void ListPick(int row);
    void OpenRecords();

    // ---- Building the window.
    // Puts a widget under the tool bars.
    void SetBody(QWidget* body);
    // A second tool bar under the first (filters).
    void AddToolBarRow(QToolBar* bar);
    // For a window that offers fewer tools: the others leave the tool bar, the menus and the
    // keys, and a menu left with nothing to offer goes too.
    void OfferOnly(std::initializer_list<tools::ToolId> ids);
    void SetRecordList(std::unique_ptr<RecordList> list);
    // The common body: the record list on the left, a grid of fields on the right. Call
    // FinishListBody once the fields stand in the grid.
    struct ListBody {
        QListWidget* list = nullptr;
        QWidget* panel = nullptr;
        QGridLayout* grid = nullptr;
    };
    ListBody MakeListBody(const QString& listName);
    void FinishListBody(const ListBody& body);
    // A caption for a field, with the field as its buddy.
    static QLabel* FieldLabel(const QString& text, QWidget* buddy);
    // Registers a field: its changes mark the record, Enter moves on from boxes and combos,
    // boxes select all on focus, combos complete as typed, the edit tools follow it.
    void AddField(QWidget* field);
    // A notes pane with its hint ("<Type notes here>"), shown while the pane is empty and never
    // part of its text. Tab leaves the pane.
    void AddNotesField(QPlainTextEdit* notes, const QString& hint);
    // A masked date or time box that says `message` when it is left holding neither its empty
    // mask nor a valid value; what was typed stays, and so does the focus.
    void CheckOnLeave(QLineEdit* box, QStringView emptyMask, const QString& message);
    // The entry of an editable combo counts as selected only while its text is the entry's.
    static int SelectedIndex(const QComboBox* combo);
    // The id of the combo's selected entry, or Null.
    static QVariant SelectedId(const QComboBox* combo);
    // Selects the entry with this id, or none for Null or an id not in the list.
    static void SelectComboId(QComboBox* combo, const QVariant& id);
    // A typed text that names an entry (without case) selects it; true when it did.
    static bool SelectTypedEntry(QComboBox* combo);
    // A typed text that names no entry: "Add <text>"; on Yes it becomes a row of the look-up
    // table and the selected entry. True when it was added.
    bool AddTypedEntry(QComboBox* combo, const QString& table, const QString& nameColumn);
    QWidget* Field(const QString& objectName) const;
    // A masked date box: "__/__/____" until filled. Its text, as read for saving and checks,
    // is what it shows, blanks included.
    static QLineEdit* MakeDateBox(const QString& objectName, QWidget* parent);
    static QString MaskText(const QLineEdit* box);
    // Puts a stored note into a notes pane; a hint stored by an older logbook shows as none.
    static void SetNotes(QPlainTextEdit* notes, const QString& text);

    // ---- A grid of records with filters in a tool bar of their own (maintenance, expenses).
    // The filter bar, under the tool bar.
    QToolBar* AddFilterBar(const QString& name);
    struct FilterDates {
        QLineEdit* from = nullptr;
        QLineEdit* to = nullptr;
    };
    // "Show dates from" ... "to". A box left holding a date, or nothing, filters at once; one
    // left holding neither says so and filters on no date.
    FilterDates AddFilterDates(QToolBar* bar, const QString& fromTip, const QString& toTip);
    // A labelled list of the filter bar; a pick filters at once.
    QComboBox* AddFilterList(QToolBar* bar, const QString& id, const QString& label,
                             const QString& tip);
    // Fills a filter list: `allText` with id 0, then the rows of `sql`. The entry picked stays
    // picked while it is there; else the list goes back to `allText`.
    void FillFilterList(QComboBox* list, const QString& allText, const QString& sql,
                        const QString& keyColumn, const QString& textColumn);
    // A filter box's date, when it holds one.
    static std::optional<QDate> FilterDate(const QLineEdit* box);
    // The id of a filter list's entry; 0 (all) when none is picked.
    static qint64 FilterId(const QComboBox* list);
    struct RecordGrid {
        QWidget* area = nullptr;  // the caption above the grid
        QLabel* caption = nullptr;
        QTableView* view = nullptr;
        TextGridModel* model = nullptr;
    };
    // The grid of records (the first column the hidden id, one line selected at a time) under
    // its caption; it becomes the window's record list. `proxy`, when given, stands between
    // the rows and the view (colours).
    RecordGrid MakeRecordGrid(QWidget* parent, const QString& name, const QString& caption,
                              std::vector<GridColumn> columns, const std::vector<int>& widths,
                              int stretchColumn, QAbstractProxyModel* proxy = nullptr);
    // A filter changed: the grid reloads, and the shown record follows it.
    virtual void FiltersChanged();
    // File > Export... for a window whose list can be written out; hidden until offered.
    void OfferExport(std::function<void()> exporter);
    // After the grid reloaded: the shown record, if still listed, stays selected; else the
    // first line is shown, unless edits are pending.
    void FollowGrid();

    store::Recordset& records() const { return *records_; }
    bool HasCurrentRow() const;

    // ---- Hooks.
    virtual QString RecordsetSql() const = 0;
    // The table the window writes, as the change notifier names it.
    virtual QString TableName() const = 0;
    virtual QString IdColumn() const = 0;
    virtual void FillLists() {}
    virtual void FillRecordList() {}
    virtual void RecordToFields(const store::Recordset& rs) = 0;
    // Puts the fields into the row being added or edited, in table order.
    virtual void FieldsToRecord(store::Recordset& rs) = 0;
    // Runs inside the save's transaction once the record `id` is written: statements that must
    // land with it or not at all.
    virtual void AfterRecordWritten(qint64 /*id*/) {}
    virtual void ClearFields() = 0;
    virtual QWidget* NewFocusField() const { return nullptr; }
    virtual std::vector<ValidationStep> ValidationSteps() const { return {}; }
    // Runs before validation on every save: work a lost focus would have done.
    virtual void BeforeValidate() {}
    // Brings forward the page or panel of a field that a failed check is about to name.
    virtual void RevealField(QWidget* /*field*/) {}
    virtual DeleteRule DeleteRules() const { return {}; }
    virtual bool DeleteAllowedFor(qint64 id);
    // The record's name, as the list, the caption and the delete question show it.
    virtual QString RecordName() const = 0;
    virtual QString CaptionNoun() const { return {}; }
    virtual QString Caption() const { return RecordCaption(RecordName(), CaptionNoun()); }
    virtual QString DeleteQuestionText() const;
    // Deletes the record's rows; the current row of the row set is the record.
    virtual void DeleteRows(qint64 id);
    virtual void ListAfterSave(qint64 id, bool added);
    virtual void ListAfterDelete(qint64 id);
    // Once the record's rows are gone: tells the notifier, whose subscribers list these records.
    virtual void AfterDelete(qint64 id);
    // The record to start on when no new one is asked for; 0 for the first of the list.
    virtual qint64 StartRecordId() const { return 0; }
    // The title of the save question when another entry is picked with unsaved changes; empty
    // for no question.
    virtual QString SelectionPromptTitle() const { return {}; }

    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    store::Database& db_;
    Messages& messages_;
    store::LogbookEvents& events_;

private:
    void BuildTools();
    QAction* AddTool(const tools::Tool& t);
    void RefreshEditTools();
    void ResetColours();
    void PrintImage();
    void ShowNextAfterRemoval(int row);
    bool LeftWithBadValue(QObject* watched, QEvent* event);

    struct LeaveCheck {
        QString emptyMask;
        QString message;
    };
    QHash<QObject*, LeaveCheck> leaveChecks_;
    QList<QObject*> filterDates_;

    bool dataChanged_ = false;
    bool showMode_ = false;
    bool recordAdd_ = false;
    bool editsInRed_ = false;

    std::unique_ptr<store::Recordset> records_;
    std::unique_ptr<RecordList> list_;
    QList<QAction*> tools_;
    QList<QPointer<QWidget>> coloured_;
    QVBoxLayout* layout_ = nullptr;
    QMenuBar* menuBar_ = nullptr;
    QToolBar* toolBar_ = nullptr;
    std::function<void()> help_;
    std::function<void()> export_;
    std::function<void()> about_;
    std::function<void(QWidget*)> print_;
};

}  // namespace slipbook
