#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace vlGraphics {

/// What the work notes of itself as it goes on; read once it has ended, however it did.
using ApartNote = std::atomic<std::uint32_t>;

/** How work in a process of its own ended. */
struct ApartResult {
    enum class End {
        DONE,
        BROKEN,  ///< by a fault of its own
        STOPPED, ///< it took more of the processor's time than it was given
        ENDED,   ///< from outside, or for it waited without an end; another time it may be done
        NOT_RUN  ///< the system gives no process
    };
    End end = End::NOT_RUN;
    std::vector<std::byte> bytes; ///< what the work gave; only when it is done
    std::uint32_t note = 0;       ///< the last
};

/** Runs the work in a copy of this process and waits for it, so that neither a fault in it nor its
 *  having no end reaches the caller. The copy has but the calling thread: the work must not wait
 *  for another, nor need what another may hold. Changes that it makes are lost. It is stopped after
 *  that many seconds of the processor's time, or fifteen times as many by the clock, and gets at
 * most 2 GiB of memory besides what the process has. Any thread. */
ApartResult runApart(const std::function<std::vector<std::byte>(ApartNote&)>& work,
                     unsigned mostSeconds);

} // namespace vlGraphics
