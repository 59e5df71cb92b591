#pragma once

#include <QString>
#include <QStringList>

namespace slipbook {

// The value of `key` in a command line: the first occurrence of the key anywhere in the line,
// the rest of the line after it cut at the first blank, and, if that piece still holds "=",
// what follows its first "=". The empty text means the key is absent.
QString CommandValue(const QString& commandLine, const QString& key);

// The program's arguments (the program name first, as the platform gives them) as one command
// line: the arguments after the name, joined by single blanks.
QString CommandLineFromArguments(const QStringList& arguments);

}  // namespace slipbook
