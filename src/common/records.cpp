#include "common/records.h"

#include "common/forms.h"
#include "store/access.h"

namespace slipbook {

QString DataEntryErrorTitle() {
    return QStringLiteral("Data Entry Error");
}

const ValidationStep* FirstFailure(const std::vector<ValidationStep>& steps) {
    for (const ValidationStep& step : steps) {
        if (step.fails && step.fails()) {
            return &step;
        }
    }
    return nullptr;
}

QString RecordCaption(const QString& name, const QString& noun) {
    return (name.trimmed().isEmpty() ? QStringLiteral("New") : name) + noun;
}

QString DeleteQuestion(const QString& caption, const QString& name, NameQuotes quotes) {
    const QString trimmed = name.trimmed();
    const QString quoted =
        quotes == NameQuotes::Apostrophes ? u'\'' + trimmed + u'\'' : u'(' + trimmed + u')';
    return QStringLiteral("Delete The ") + caption + u' ' + QStringLiteral("Record For ") + quoted;
}

QString RecordNotFound(qint64 id) {
    return QStringLiteral("Record id ") + QString::number(id) + QStringLiteral(" NOT Found");
}

QString KeyCriterion(const QString& keyColumn, qint64 id) {
    return keyColumn + QStringLiteral(" = ") + QString::number(id);
}

QVariant NotesValue(const QString& text) {
    // The shared quoting rule is what tells a placeholder from a note; the text itself is bound
    // as it stands, so apostrophes are not doubled here.
    if (QuoteDouble(text).isEmpty()) {
        return QVariant();
    }
    return text;
}

bool DeleteAllowed(store::Database& db, Messages& messages, const DeleteRule& rule, qint64 id) {
    for (const UseCheck& use : rule.uses) {
        if (!store::TableDelCheck(db, use.sql, KeyCriterion(use.column, id), messages)) {
            return false;
        }
    }
    if (!rule.countSql.isEmpty()) {
        auto rs = db.OpenRecordset(rule.countSql, store::RecordsetType::Snapshot);
        const qint64 count = rs->Eof() ? 0 : rs->Value(0).toLongLong();
        rs->Close();
        if (count == 0) {
            return false;
        }
    }
    return true;
}

}  // namespace slipbook
