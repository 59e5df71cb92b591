#include "shell/mainstate.h"

#include "common/commandline.h"
#include "common/tools.h"

#include <QDir>

namespace slipbook::shell {

bool MainState::TakeNewRecordAsked() {
    if (storedTool != tools::kNew) {
        return false;
    }
    storedTool.clear();
    return true;
}

QString DefaultWeatherDir() {
#ifdef Q_OS_WIN
    return QStringLiteral("C:\\Barometrix");
#else
    // A drive path means nothing here; the station's folder sits in the user's home instead.
    return QDir::homePath() + QStringLiteral("/Barometrix");
#endif
}

QString WeatherDirInit(const QString& commandLine) {
    const QString given = CommandValue(commandLine, QStringLiteral("dir="));
    return given.isEmpty() ? DefaultWeatherDir() : given;
}

}  // namespace slipbook::shell
