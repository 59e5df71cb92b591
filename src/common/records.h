#pragma once

// The rules of the record windows that need no widget: validation as a list of steps, the
// caption and the delete question, and the use checks that decide whether a record may go.

#include "common/messages.h"
#include "store/database.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace slipbook {

// The title of every validation box.
QString DataEntryErrorTitle();

// One check of a record before it is saved: when `fails` says so, `message` is shown and the
// focus goes to the control named `focus`.
struct ValidationStep {
    std::function<bool()> fails;
    QString message;
    QString focus;
};

// The first step that fails, in order, or null when the record is valid.
const ValidationStep* FirstFailure(const std::vector<ValidationStep>& steps);

// "Summer Nationals - Event", or "New - Event" while the record has no name yet.
QString RecordCaption(const QString& name, const QString& noun);

// How the delete question sets off the record's name: in parentheses, or (cars alone) in
// apostrophes.
enum class NameQuotes { Parentheses, Apostrophes };

// "Delete The <caption> Record For (<name>)": the caption already holds the name, so the
// question names the record twice.
QString DeleteQuestion(const QString& caption, const QString& name,
                       NameQuotes quotes = NameQuotes::Parentheses);

// "Record id 12 NOT Found".
QString RecordNotFound(qint64 id);

// "lEvent_id = 12": the criterion that finds a record by its key.
QString KeyCriterion(const QString& keyColumn, qint64 id);

// What a notes pane stores: Null for an empty pane or one still showing its placeholder
// ("<Type notes here>"), else the text exactly as typed.
QVariant NotesValue(const QString& text);

// A record is in use while a row of `sql` has `column` equal to its key.
struct UseCheck {
    QString sql;
    QString column;
};

// When a record may be deleted: used by none of `uses`, and `countSql` (a COUNT query) finds
// at least one row in its table.
struct DeleteRule {
    std::vector<UseCheck> uses;
    QString countSql;
};

bool DeleteAllowed(store::Database& db, Messages& messages, const DeleteRule& rule, qint64 id);

}  // namespace slipbook
