#include "core/TurnClock.h"

#include <thread>

namespace vlEditor {

TurnClock::Time TurnClock::now() const {
    return std::chrono::steady_clock::now();
}

void TurnClock::sleepFor(Duration duration) {
    std::this_thread::sleep_for(duration);
}

} // namespace vlEditor
