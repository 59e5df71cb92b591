#pragma once

// The help pages: a folder of HTML pages beside the program (or in the shared data folder of an
// installed one), opened in the platform's viewer.

#include <QString>

namespace slipbook::shell {

struct HelpState {
    QString path;  // the contents page
    bool available() const;
};

// Keeps the path of the contents page, <resourceDir>/help/index.html.
HelpState HelpInit(const QString& resourceDir);

}  // namespace slipbook::shell
