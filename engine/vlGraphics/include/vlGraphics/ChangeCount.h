#pragma once
#include <atomic>
#include <cstdint>

namespace vlGraphics {

/** Counts every change of the engine that could alter a picture. A viewport whose last frame was
 * drawn at another count is out of date. Bumped by the setters of every resource and by finished
 * shader compilations (from their thread); read by whoever decides what to draw. */
class ChangeCount {
public:
    static void bump() { count().fetch_add(1, std::memory_order_relaxed); }
    static std::uint64_t get() { return count().load(std::memory_order_relaxed); }

private:
    static std::atomic<std::uint64_t>& count() {
        static std::atomic<std::uint64_t> value{1};
        return value;
    }
};

} // namespace vlGraphics
