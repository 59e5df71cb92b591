#pragma once

#include <QDate>
#include <QDateTime>

namespace slipbook {

// The date and time a window takes as now: a new record's date, a print stamp, a backup's name.
// The application hands every window the system's clock; tests hand them a fixed one.
class WallClock {
public:
    virtual ~WallClock() = default;
    virtual QDateTime Now() const = 0;
    QDate Today() const { return Now().date(); }
};

class SystemClock final : public WallClock {
public:
    QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

}  // namespace slipbook
