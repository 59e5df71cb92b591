#pragma once

// Time as the weather station link sees it: a timer whose rhythm the link sets on every tick,
// and the clock that stamps a reading. Both are injected so that tests drive them by hand.

#include <QDateTime>
#include <QTimer>

#include <functional>

namespace slipbook::weather {

class PollTimer {
public:
    virtual ~PollTimer() = default;

    // (Re)starts the timer: the next tick comes `ms` after this call, and then every `ms`.
    virtual void start(int ms) = 0;
    virtual void stop() = 0;
    virtual bool isActive() const = 0;
    // The interval last given to start, kept while stopped.
    virtual int interval() const = 0;

    void setTimeout(std::function<void()> onTimeout) { onTimeout_ = std::move(onTimeout); }

protected:
    void fire() {
        if (onTimeout_) {
            onTimeout_();
        }
    }

private:
    std::function<void()> onTimeout_;
};

// The timer of the running program, on the thread's event loop.
class QtPollTimer final : public PollTimer {
public:
    QtPollTimer();

    void start(int ms) override;
    void stop() override;
    bool isActive() const override;
    int interval() const override;

private:
    QTimer timer_;
};

}  // namespace slipbook::weather
