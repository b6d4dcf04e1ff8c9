#pragma once
#include "core/TurnClock.h"

#include <cstdint>
#include <memory>

namespace vlEditor {

/** Has the program leave once so many frames were drawn and nothing is left to draw: for measuring
 * how long a start takes. Says "drawn" on standard output when the frames are there, and "complete"
 * when no more will follow. Graphics thread only. */
class LeavingClock final : public TurnClock {
public:
    explicit LeavingClock(std::uint64_t frames) : frames_(frames) {}
    void sleepFor(Duration duration) override;

    /// This clock where the environment variable VLEDITOR_LEAVE_AFTER_FRAMES asks for it, otherwise
    /// an ordinary one.
    static std::unique_ptr<TurnClock> fromEnvironment();

private:
    std::uint64_t frames_;
    bool said_ = false;
    bool asked_ = false;
};

} // namespace vlEditor
