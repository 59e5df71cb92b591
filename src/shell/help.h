#pragma once

// The help pages: a folder of HTML pages beside the program, opened in the platform's viewer.

#include <QString>

namespace slipbook::shell {

struct HelpState {
    QString path;  // the contents page
    bool available() const;
};

// Keeps the path of the contents page, <appDir>/help/index.html.
HelpState HelpInit(const QString& appDir);

}  // namespace slipbook::shell
