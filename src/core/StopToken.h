#pragma once
#include <mutex>

namespace vlEditor {

/** The only stop signal: while its owner holds it, the graphics thread goes on. Made held by the UI
 *  thread, which releases it to stop the other thread. */
class StopToken {
public:
    StopToken() { mutex_.lock(); }
    ~StopToken() { release(); }
    StopToken(const StopToken&) = delete;
    StopToken& operator=(const StopToken&) = delete;

    /// The thread that made it; may be called twice.
    void release() {
        if (!held_) return;
        held_ = false;
        mutex_.unlock();
    }

    /// The other thread: true once the token was released. Never waits.
    bool isReleased() {
        if (!mutex_.try_lock()) return false;
        mutex_.unlock();
        return true;
    }

private:
    std::mutex mutex_;
    bool held_ = true; // the owner's alone
};

} // namespace vlEditor
