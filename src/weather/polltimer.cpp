#include "weather/polltimer.h"

namespace slipbook::weather {

QtPollTimer::QtPollTimer() {
    QObject::connect(&timer_, &QTimer::timeout, [this] { fire(); });
}

void QtPollTimer::start(int ms) {
    timer_.start(ms);
}

void QtPollTimer::stop() {
    timer_.stop();
}

bool QtPollTimer::isActive() const {
    return timer_.isActive();
}

int QtPollTimer::interval() const {
    return timer_.interval();
}

}  // namespace slipbook::weather
