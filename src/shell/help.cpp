#include "shell/help.h"

#include <QDir>
#include <QFileInfo>

namespace slipbook::shell {

bool HelpState::available() const {
    return !path.isEmpty() && QFileInfo(path).isFile();
}

HelpState HelpInit(const QString& resourceDir) {
    return HelpState{QDir(resourceDir).filePath(QStringLiteral("help/index.html"))};
}

}  // namespace slipbook::shell
