#include "views/ui/frmEditFields.h"

#include "common/ui/formhelpers.h"
#include "store/access.h"
#include "views/viewstore.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace slipbook::views {

namespace {

constexpr int kColumns = 5;
const char* const kColumnNames[kColumns] = {"sColumnHeader", "sDisplayFormat", "sDataType",
                                            "sAlignment", "lColumnWidth"};

}  // namespace

frmEditFields::frmEditFields(const shell::WindowContext& ctx, QWidget* parent)
    : QDialog(parent), ctx_(ctx) {
    setObjectName(QStringLiteral("frmEditFields"));
    setWindowTitle(QStringLiteral("Edit Fields"));
    auto* root = new QVBoxLayout(this);
    ssdbgEditFields = new QTableWidget(0, kColumns, this);
    ssdbgEditFields->setObjectName(QStringLiteral("ssdbgEditFields"));
    QStringList headers;
    for (const char* name : kColumnNames) {
        headers << QString::fromLatin1(name);
    }
    ssdbgEditFields->setHorizontalHeaderLabels(headers);
    ssdbgEditFields->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ssdbgEditFields->setSelectionBehavior(QAbstractItemView::SelectItems);
    root->addWidget(ssdbgEditFields);
    auto* ok = NamedButton("sscmdOk", QStringLiteral("OK"), this);
    root->addWidget(ok, 0, Qt::AlignRight);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    resize(760, 480);

    connect(ssdbgEditFields, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (!loading_) {
            dirtyRow_ = item->row();
        }
    });
    connect(ssdbgEditFields, &QTableWidget::currentCellChanged, this,
            [this](int row, int, int previousRow, int previousColumn) {
                if (row == previousRow || previousRow < 0 || previousRow != dirtyRow_) {
                    return;
                }
                if (!WritePending()) {
                    // Back to the row at fault, once the view has finished moving.
                    QTimer::singleShot(0, this, [this, previousRow, previousColumn] {
                        ssdbgEditFields->setCurrentCell(previousRow, previousColumn);
                    });
                }
            });
    try {
        Load();
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("Edit Fields"), ctx_.messages);
    }
}

void frmEditFields::Load() {
    loading_ = true;
    const QList<CatalogueRow> rows = ReadCatalogue(ctx_.db);
    ssdbgEditFields->setRowCount(static_cast<int>(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        const CatalogueRow& c = rows[r];
        const QString texts[kColumns] = {c.header, c.format, c.dataType, c.alignment, c.width};
        for (int col = 0; col < kColumns; ++col) {
            auto* item = new QTableWidgetItem(texts[col]);
            item->setData(Qt::UserRole, QVariant::fromValue<qint64>(c.id));
            ssdbgEditFields->setItem(r, col, item);
        }
    }
    loading_ = false;
}

bool frmEditFields::WritePending() {
    if (dirtyRow_ < 0) {
        return true;
    }
    const int r = dirtyRow_;
    const auto text = [this, r](int col) { return ssdbgEditFields->item(r, col)->text(); };
    CatalogueRow row{ssdbgEditFields->item(r, 0)->data(Qt::UserRole).toLongLong(),
                     text(0),
                     text(1),
                     text(2),
                     text(3),
                     text(4)};
    try {
        if (const auto problem = WriteCatalogueRow(ctx_.db, row)) {
            ctx_.messages.inform(*problem, QStringLiteral("Edit Fields"), MsgIcon::Exclamation);
            return false;
        }
    } catch (const store::DbError& e) {
        store::ErrorReport(e, QStringLiteral("Edit Fields"), ctx_.messages);
        return false;
    }
    dirtyRow_ = -1;
    Q_EMIT ctx_.events.recordsChanged(QStringLiteral("tblListViewColumns"));
    return true;
}

void frmEditFields::done(int result) {
    // A row still being edited is written as the window goes; one refused keeps it open.
    if (!WritePending()) {
        return;
    }
    QDialog::done(result);
}

}  // namespace slipbook::views
