#include "support/logbook.h"

#include <QFile>
#include <gtest/gtest.h>

namespace slipbook::test {

QString TemplatePath() { return QStringLiteral(SLIPBOOK_TEMPLATE_PATH); }

TempLogbook::TempLogbook() {
    EXPECT_TRUE(dir_.isValid());
    EXPECT_TRUE(QFile::copy(TemplatePath(), path())) << "template missing: " << SLIPBOOK_TEMPLATE_PATH;
    QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner);
    db_.Open(path());
}

QString TempLogbook::path() const { return dir_.filePath(QStringLiteral("Slipbook.db")); }

}  // namespace slipbook::test
