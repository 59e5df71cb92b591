#include "views/ui/frmView.h"

#include "common/forms.h"
#include "common/tools.h"
#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "views/ui/frmEditFields.h"
#include "views/viewstore.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace slipbook::views {

namespace {

const QString kCustomViews = QStringLiteral("Custom Views");

qint64 IdOf(const QListWidgetItem* item) {
    return item->data(Qt::UserRole).toLongLong();
}

QListWidgetItem* Item(const QString& text, qint64 id) {
    auto* item = new QListWidgetItem(text);
    item->setData(Qt::UserRole, QVariant::fromValue<qint64>(id));
    return item;
}

QLabel* Buddy(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

}  // namespace

frmView::frmView(const shell::WindowContext& ctx, QWidget* parent)
    : QWidget(parent, Qt::Window), ctx_(ctx) {
    setObjectName(QStringLiteral("frmView"));
    setWindowTitle(QStringLiteral("User Defined View Setup"));
    BuildLayout();
    try {
        FormLoad();
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("frmView"), ctx_.messages);
    }
}

void frmView::BuildLayout() {
    auto* root = new QGridLayout(this);
    cboViews = new QComboBox(this);
    cboViews->setObjectName(QStringLiteral("cboViews"));
    lstSource = new QListWidget(this);
    lstSource->setObjectName(QStringLiteral("lstSource"));
    lstTarget = new QListWidget(this);
    lstTarget->setObjectName(QStringLiteral("lstTarget"));
    for (QListWidget* l : {lstSource, lstTarget}) {
        l->setSelectionMode(QAbstractItemView::ExtendedSelection);
        l->setMinimumHeight(260);
    }
    root->addWidget(Buddy(QStringLiteral("Selec&t available fields from:"), cboViews, this), 0, 0);
    root->addWidget(cboViews, 1, 0);
    root->addWidget(Buddy(QStringLiteral("A&vailable fields:"), lstSource, this), 2, 0);
    root->addWidget(lstSource, 3, 0);
    root->addWidget(Buddy(QStringLiteral("Sh&ow these fields in this order:"), lstTarget, this), 2,
                    2);
    root->addWidget(lstTarget, 3, 2);

    auto* moves = new QVBoxLayout;
    sscmdAdd = NamedButton("sscmdAdd", QStringLiteral("&Add ->"), this);
    sscmdRemove = NamedButton("sscmdRemove", QStringLiteral("<- &Remove"), this);
    sscmdAddAll = NamedButton("sscmdAddAll", QStringLiteral("Add All ->>"), this);
    sscmdRemoveAll = NamedButton("sscmdRemoveAll", QStringLiteral("<<- Remove All"), this);
    sscmdMoveUp = NamedButton("sscmdMoveUp", QStringLiteral("Move &Up"), this);
    sscmdMoveDown = NamedButton("sscmdMoveDown", QStringLiteral("Move &Down"), this);
    moves->addStretch();
    for (QPushButton* b :
         {sscmdAdd, sscmdRemove, sscmdAddAll, sscmdRemoveAll, sscmdMoveUp, sscmdMoveDown}) {
        moves->addWidget(b);
    }
    moves->addStretch();
    root->addLayout(moves, 3, 1);

    auto* save = new QGroupBox(QStringLiteral("Modify Custom Views"), this);
    save->setObjectName(QStringLiteral("ssfraSaveView"));
    auto* sg = new QGridLayout(save);
    cboCustomViews = new QComboBox(save);
    cboCustomViews->setObjectName(QStringLiteral("cboCustomViews"));
    cboCustomViews->setEditable(true);
    cboCustomViews->setInsertPolicy(QComboBox::NoInsert);
    sscmdRecallView = NamedButton("sscmdRecallView", QStringLiteral("Recall View"), save);
    sscmdDeleteView = NamedButton("sscmdDeleteView", QStringLiteral("&Delete View"), save);
    sscmdSaveView = NamedButton("sscmdSaveView", QStringLiteral("&Save View"), save);
    sschkDefaultView = new QCheckBox(QStringLiteral("Set As Default View"), save);
    sschkDefaultView->setObjectName(QStringLiteral("sschkDefaultView"));
    sg->addWidget(cboCustomViews, 0, 0, 1, 3);
    sg->addWidget(sscmdRecallView, 1, 0);
    sg->addWidget(sscmdDeleteView, 1, 1);
    sg->addWidget(sscmdSaveView, 1, 2);
    sg->addWidget(sschkDefaultView, 2, 0, 1, 3);
    root->addWidget(save, 4, 0);

    auto* buttons = new QHBoxLayout;
    SSCommand1 = NamedButton("SSCommand1", QStringLiteral("&Edit Fields"), this);
    sscmdOk = NamedButton("sscmdOk", QStringLiteral("OK"), this);
    sscmdCancel = NamedButton("sscmdCancel", QStringLiteral("Cancel"), this);
    buttons->addWidget(SSCommand1);
    buttons->addStretch();
    buttons->addWidget(sscmdOk);
    buttons->addWidget(sscmdCancel);
    root->addLayout(buttons, 4, 2, Qt::AlignBottom);

    connect(cboViews, &QComboBox::activated, this, [this] { ListFill(); });
    connect(lstSource, &QListWidget::itemSelectionChanged, this, &frmView::RefreshButtons);
    connect(lstTarget, &QListWidget::itemSelectionChanged, this, &frmView::RefreshButtons);
    connect(sscmdAdd, &QPushButton::clicked, this, [this] { Move(lstSource, lstTarget, false); });
    connect(sscmdRemove, &QPushButton::clicked, this,
            [this] { Move(lstTarget, lstSource, false); });
    connect(sscmdAddAll, &QPushButton::clicked, this, [this] { Move(lstSource, lstTarget, true); });
    connect(sscmdRemoveAll, &QPushButton::clicked, this,
            [this] { Move(lstTarget, lstSource, true); });
    connect(lstSource, &QListWidget::itemDoubleClicked, this,
            [this] { Move(lstSource, lstTarget, false); });
    connect(lstTarget, &QListWidget::itemDoubleClicked, this,
            [this] { Move(lstTarget, lstSource, false); });
    connect(sscmdMoveUp, &QPushButton::clicked, this, [this] { MoveWithin(-1); });
    connect(sscmdMoveDown, &QPushButton::clicked, this, [this] { MoveWithin(1); });
    connect(sscmdOk, &QPushButton::clicked, this, &frmView::Ok);
    connect(sscmdCancel, &QPushButton::clicked, this, [this] {
        changed_ = false;
        close();
    });
    connect(sscmdSaveView, &QPushButton::clicked, this, &frmView::SaveView);
    connect(sscmdRecallView, &QPushButton::clicked, this, &frmView::RecallView);
    connect(sscmdDeleteView, &QPushButton::clicked, this, &frmView::DeleteView);
    connect(SSCommand1, &QPushButton::clicked, this, &frmView::EditFields);
    connect(cboCustomViews->lineEdit(), &QLineEdit::editingFinished, this,
            &frmView::CustomNameLeft);
}

void frmView::FormLoad() {
    for (const ViewEntry& v : ReadViews(ctx_.db, true)) {
        cboCustomViews->addItem(v.name, QVariant::fromValue<qint64>(v.id));
    }
    const int current = ListFindData(cboCustomViews, ctx_.main.CurrentViewId());
    if (current >= 0) {
        cboCustomViews->setCurrentIndex(current);
    } else {
        cboCustomViews->addItem(NewViewName(), QVariant::fromValue<qint64>(0));
        cboCustomViews->setCurrentIndex(cboCustomViews->count() - 1);
    }
    for (const ViewEntry& v : ReadViews(ctx_.db, false)) {
        cboViews->addItem(v.name, QVariant::fromValue<qint64>(v.id));
    }
    cboViews->addItem(AllFieldsName(), QVariant::fromValue<qint64>(kAllFieldsId));
    cboViews->setCurrentIndex(0);
    ListFill();
}

qint64 frmView::CustomId() const {
    return cboCustomViews->currentData().toLongLong();
}

void frmView::ListFill() {
    try {
        const QString mode = ctx_.state.view;
        const auto shown = [this](const QString& field) {
            for (const shell::ShownColumn& c : ctx_.main.ListColumns()) {
                if (c.name.compare(field, Qt::CaseInsensitive) == 0) {
                    return true;
                }
            }
            return false;
        };
        lstSource->clear();
        const QString source = ViewTable(ctx_.db, cboViews->currentData().toLongLong());
        for (const ViewField& f : ReadViewFields(ctx_.db, source, mode)) {
            if (!shown(f.fieldName) && f.fieldName.compare(u"lRun_id", Qt::CaseInsensitive) != 0) {
                lstSource->addItem(Item(f.header, f.id));
            }
        }
        lstTarget->clear();
        const QString custom = CustomId() != 0 ? ViewTable(ctx_.db, CustomId()) : QString();
        for (const ViewField& f :
             ReadViewFields(ctx_.db, custom.isEmpty() ? source : custom, mode)) {
            if (shown(f.fieldName)) {
                lstTarget->addItem(Item(f.header, f.id));
            }
        }
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("frmView"), ctx_.messages);
    }
    RefreshButtons();
    sscmdAdd->setEnabled(false);
    sscmdRemove->setEnabled(false);
    sscmdMoveUp->setEnabled(false);
    sscmdMoveDown->setEnabled(false);
}

void frmView::RefreshButtons() {
    sscmdAdd->setEnabled(!lstSource->selectedItems().isEmpty());
    const QList<QListWidgetItem*> picked = lstTarget->selectedItems();
    sscmdRemove->setEnabled(!picked.isEmpty());
    const int row = picked.isEmpty() ? -1 : lstTarget->row(picked.first());
    sscmdMoveUp->setEnabled(row > 0);
    sscmdMoveDown->setEnabled(row >= 0 && row < lstTarget->count() - 1);
    sscmdSaveView->setEnabled(lstTarget->count() > 0);
}

void frmView::Move(QListWidget* from, QListWidget* to, bool all) {
    for (int i = 0; i < from->count();) {
        QListWidgetItem* item = from->item(i);
        if (!all && !item->isSelected()) {
            ++i;
            continue;
        }
        QListWidgetItem* taken = from->takeItem(i);
        if (ListFindData(to, IdOf(taken)) < 0) {
            taken->setSelected(false);
            to->addItem(taken);
        } else {
            delete taken;
        }
    }
    changed_ = true;
    RefreshButtons();
}

void frmView::MoveWithin(int step) {
    const QList<QListWidgetItem*> picked = lstTarget->selectedItems();
    if (picked.isEmpty()) {
        return;
    }
    const int row = lstTarget->row(picked.first());
    const int to = row + step;
    if (to < 0 || to >= lstTarget->count()) {
        return;
    }
    QListWidgetItem* item = lstTarget->takeItem(row);
    lstTarget->insertItem(to, item);
    lstTarget->clearSelection();
    item->setSelected(true);
    lstTarget->setCurrentItem(item);
    changed_ = true;
    RefreshButtons();
}

QList<qint64> frmView::TargetIds() const {
    QList<qint64> ids;
    for (int i = 0; i < lstTarget->count(); ++i) {
        ids << IdOf(lstTarget->item(i));
    }
    return ids;
}

void frmView::Ok() {
    if (lstTarget->count() > 0) {
        ctx_.main.ListShowColumns(TargetIds());
    }
    close();
}

void frmView::closeEvent(QCloseEvent* event) {
    if (changed_ &&
        ctx_.messages.ask(QStringLiteral("The current view has been changed but not saved.  If "
                                         "you don't save the current view as a custom view, "
                                         "changes will be temporary.  Would you like to save the "
                                         "current view as a custom view?"),
                          QString(), MsgButtons::YesNo, MsgAnswer::Yes) == MsgAnswer::Yes) {
        // Stays open, so that the view can be saved.
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

void frmView::CustomNameLeft() {
    const QString text = cboCustomViews->currentText();
    if (text.trimmed().isEmpty() || cboCustomViews->findText(text) >= 0) {
        return;
    }
    cboCustomViews->addItem(NameCase(text), QVariant::fromValue<qint64>(0));
    cboCustomViews->setCurrentIndex(cboCustomViews->count() - 1);
}

void frmView::ShowInMain(qint64 viewId) {
    if (!ctx_.main.SelectView(viewId)) {
        ctx_.main.ViewsLoad();
        ctx_.main.SelectView(viewId);
    }
}

void frmView::SaveView() {
    CustomNameLeft();
    changed_ = false;
    if (cboCustomViews->currentText() == NewViewName()) {
        ctx_.messages.inform(QStringLiteral("Can't use default name, another View Name must be "
                                            "entered.\nType new name in box or choose an existing "
                                            "view to replace."),
                             kCustomViews, MsgIcon::Information);
        cboCustomViews->setFocus();
        return;
    }
    const qint64 id = CustomId();
    const QString name = cboCustomViews->currentText().trimmed();
    try {
        if (id == 0) {
            if (const auto problem = ViewNameProblem(ctx_.db, name)) {
                ctx_.messages.inform(*problem, kCustomViews, MsgIcon::Information);
                cboCustomViews->setFocus();
                return;
            }
        }
        const qint64 saved =
            views::SaveView(ctx_.db, id, name, TargetIds(), sschkDefaultView->isChecked());
        cboCustomViews->setItemData(cboCustomViews->currentIndex(),
                                    QVariant::fromValue<qint64>(saved));
        if (id == 0) {
            cboViews->insertItem(cboViews->count() - 1, name, QVariant::fromValue<qint64>(saved));
        }
        ShowInMain(saved);
    } catch (const store::DbError& e) {
        // Nothing of the save is kept: the view stays as it was.
        changed_ = true;
        store::ErrorReport(e, QStringLiteral("Save View"), ctx_.messages);
    }
}

void frmView::RecallView() {
    const qint64 id = CustomId();
    if (id == 0 || ViewTable(ctx_.db, id).isEmpty()) {
        return;
    }
    try {
        views::RecallView(ctx_.db, id, TargetIds(), sschkDefaultView->isChecked());
        ShowInMain(id);
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("Recall View"), ctx_.messages);
    }
    ListFill();
}

void frmView::DeleteView() {
    const qint64 id = CustomId();
    if (id == 0) {
        return;
    }
    if (ctx_.messages.ask(
            QStringLiteral("Delete The View '") + cboCustomViews->currentText().trimmed() + u'\'',
            QStringLiteral("Delete View"), MsgButtons::YesNo, MsgAnswer::No) != MsgAnswer::Yes) {
        return;
    }
    try {
        views::DeleteView(ctx_.db, id);
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("Delete View"), ctx_.messages);
        return;
    }
    if (const int i = ListFindData(cboViews, id); i >= 0) {
        cboViews->removeItem(i);
    }
    cboCustomViews->removeItem(cboCustomViews->currentIndex());
    if (cboCustomViews->count() == 0) {
        cboCustomViews->addItem(NewViewName(), QVariant::fromValue<qint64>(0));
    }
    cboCustomViews->setCurrentIndex(0);
    cboViews->setCurrentIndex(0);
    ctx_.main.ViewsLoad();
    ListFill();
}

void frmView::EditFields() {
    frmEditFields fields(ctx_, this);
    fields.exec();
    ListFill();
}

}  // namespace slipbook::views
