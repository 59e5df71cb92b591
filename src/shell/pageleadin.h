#pragma once

#include <QString>

namespace slipbook::shell {

// The short text that prediction and tune-up windows compose for the weather station to page
// out: one line per result, joined by line feeds.
class PageLeadin {
public:
    void Add(const QString& line);
    void Clear() { text_.clear(); }
    const QString& Get() const { return text_; }

private:
    QString text_;
};

// A car's heading line, 17 characters wide: the name and "#" plus the number at the right end,
// or the name alone on a line and the number right-aligned on the next when both don't fit.
QString FormatPageLeadin(const QString& number, const QString& name);

}  // namespace slipbook::shell
