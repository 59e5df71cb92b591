#pragma once

#include "store/database.h"

#include <QString>
#include <QTemporaryDir>
#include <memory>

namespace slipbook::test {

// A fresh copy of the built template in a temporary folder, opened.
class TempLogbook {
public:
    TempLogbook();
    store::Database& db() { return db_; }
    QString dir() const { return dir_.path(); }
    QString path() const;

private:
    QTemporaryDir dir_;
    store::Database db_;
};

QString TemplatePath();

}  // namespace slipbook::test
