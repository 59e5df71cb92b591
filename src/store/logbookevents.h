#pragma once

#include <QObject>
#include <QString>

namespace slipbook::store {

// What was written to the logbook, told to whoever shows it: every window that writes emits,
// and the windows that list or pick records subscribe. The application owns the one instance
// and hands it to each window; signals arrive at once, in the order they were sent.
class LogbookEvents : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    // A run was saved in one transaction; `added` when it is a new run.
    void runSaved(qint64 runId, bool added);
    void runDeleted(qint64 runId);
    // Rows of `table` were added, changed or deleted; for tblRuns, many runs at once (an
    // import), where one runSaved each would rebuild the list row by row.
    void recordsChanged(const QString& table);
};

}  // namespace slipbook::store
