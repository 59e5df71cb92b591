#include "common/commandline.h"

namespace slipbook {

QString CommandValue(const QString& commandLine, const QString& key) {
    if (key.isEmpty()) {
        return QString();
    }
    const qsizetype at = commandLine.indexOf(key);
    if (at < 0) {
        return QString();
    }
    QString value = commandLine.mid(at + key.size());
    const qsizetype blank = value.indexOf(u' ');
    if (blank >= 0) {
        value.truncate(blank);
    }
    const qsizetype equals = value.indexOf(u'=');
    if (equals >= 0) {
        value = value.mid(equals + 1);
    }
    return value;
}

QString CommandLineFromArguments(const QStringList& arguments) {
    return arguments.mid(1).join(u' ');
}

}  // namespace slipbook
