#pragma once
#include <vlLog/Logger.h>

#include <mutex>

namespace vlLog {

/** Where one library's lines go. Each library has its own (vlGraphics::LogManager, ...), derived
 * from this class. Logging is safe from any thread; without a receiver the lines are dropped. */
class LogManager {
public:
    /// Null detaches. The receiver is not owned and must stay alive until it is detached; when the
    /// call returns, no other thread is inside the old receiver any more.
    void setReceiver(Logger* receiver);
    void log(vlMemory::StringView text);

private:
    std::recursive_mutex lock_; // a receiver may itself call what logs
    Logger* receiver_ = nullptr;
};

} // namespace vlLog
