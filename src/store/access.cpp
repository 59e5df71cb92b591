#include "store/access.h"

#include "store/currency.h"

namespace slipbook::store {

namespace {

bool IsNumericValue(const QVariant& v) {
    switch (v.metaType().id()) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Long:
        case QMetaType::Double:
        case QMetaType::Float:
        case QMetaType::Short:
        case QMetaType::Bool:
            return true;
        case QMetaType::QString: {
            bool ok = false;
            v.toString().trimmed().toDouble(&ok);
            return ok;
        }
        default:
            return v.metaType() == QMetaType::fromType<Currency>();
    }
}

QString Quoted(const QString& text) {
    QString doubled = text;
    doubled.replace(u'\'', QStringLiteral("''"));
    return u'\'' + doubled + u'\'';
}

}  // namespace

bool DataInit(Database&, Messages&) {
    return true;
}

bool DataOpen(Database& db, const QString& path, Messages& messages) {
    try {
        db.Open(path);
        for (const QString& notice : db.TakeOpenNotices()) {
            messages.inform(notice, QStringLiteral("DataOpen()"), MsgIcon::Exclamation);
        }
        return true;
    } catch (const DbError& e) {
        ErrorReport(e, QStringLiteral("DataOpen()"), messages);
    } catch (const std::exception& e) {
        ErrorReport(AsDbError(e), QStringLiteral("DataOpen()"), messages);
    }
    return false;
}

bool TableDelCheck(Database& db, const QString& sql, const QString& criterion, Messages& messages) {
    if (sql.isEmpty() || criterion.isEmpty()) {
        messages.inform(QStringLiteral("TableDelCheck() Parameter Error"),
                        QStringLiteral("TableDelCheck()"), MsgIcon::Exclamation);
        return false;
    }
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    rs->FindFirst(criterion);
    const bool free = rs->NoMatch();
    rs->Close();
    return free;
}

QVariant TableLookup(Database& db, const QString& strTable, const QString& strLook,
                     const QString& strFind, const QVariant& vntSearchVal, Messages& messages) {
    QString errors = QStringLiteral("The following parameters are in error");
    const auto def = db.TableDefinition(strTable);
    bool bad = false;
    if (!def) {
        errors += QStringLiteral("\n    strTable: ") + strTable;
        bad = true;
    } else if (def->field(strLook) == nullptr) {
        errors += QStringLiteral("\n     strLook: ") + strLook + u'\n';
        bad = true;
    } else if (def->field(strFind) == nullptr) {
        errors += QStringLiteral("\n     strFind: ") + strFind;
        bad = true;
    } else if (!vntSearchVal.isValid()) {
        errors += QStringLiteral("\nvntSearchVal: ") + vntSearchVal.toString();
        bad = true;
    }
    if (bad) {
        messages.inform(errors, QStringLiteral("TableLookup()"), MsgIcon::Critical);
        return QString();
    }
    auto rs =
        db.OpenRecordset(QStringLiteral("SELECT %1, %2 FROM %3").arg(strLook, strFind, strTable),
                         RecordsetType::Snapshot);
    const QString value = IsNumericValue(vntSearchVal)
                              ? (vntSearchVal.metaType() == QMetaType::fromType<Currency>()
                                     ? vntSearchVal.value<Currency>().toText()
                                     : vntSearchVal.toString().trimmed())
                              : Quoted(vntSearchVal.toString());
    rs->FindFirst(strLook + QStringLiteral(" = ") + value);
    if (rs->NoMatch()) {
        return QString();
    }
    const QVariant found = rs->Value(1);
    return found;
}

void ErrorReport(const DbError& error, const QString& title, Messages& messages) {
    const QString text = QStringLiteral("Error # ") + QString::number(error.number()) + u'\n' +
                         QStringLiteral("Source   ") + error.source() + QStringLiteral("\n\n") +
                         error.description();
    messages.inform(text, title.isEmpty() ? QStringLiteral("Error") : title, MsgIcon::Exclamation);
}

void IsDuplicate(const DbError& error, Recordset* rs, Messages& messages) {
    if (error.number() == err::DuplicateKey) {
        messages.inform(QStringLiteral("Duplicates Existing Record, Cannot Save"),
                        QStringLiteral("Duplicate Record Error"), MsgIcon::Critical);
        if (rs != nullptr) {
            rs->CancelUpdate();
        }
        return;
    }
    ErrorReport(error, QString(), messages);
}

DbError AsDbError(const std::exception& e) {
    if (const auto* db = dynamic_cast<const DbError*>(&e)) {
        return *db;
    }
    return DbError(err::Generic, QStringLiteral("Slipbook"), QString::fromLocal8Bit(e.what()));
}

}  // namespace slipbook::store
