#pragma once
#include <chrono>

namespace vlEditor {

/** What the graphics thread reads the time from and sleeps by; tests have their own. */
class TurnClock {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    TurnClock() = default;
    virtual ~TurnClock() = default;
    TurnClock(const TurnClock&) = delete;
    TurnClock& operator=(const TurnClock&) = delete;

    virtual Time now() const;
    virtual void sleepFor(Duration duration);
};

} // namespace vlEditor
