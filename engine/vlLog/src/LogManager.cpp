#include <vlLog/LogManager.h>

namespace vlLog {

void LogManager::setReceiver(Logger* receiver) {
    const std::lock_guard guard(lock_);
    receiver_ = receiver;
}

void LogManager::log(vlMemory::StringView text) {
    const std::lock_guard guard(lock_);
    if (receiver_ != nullptr) receiver_->log(text);
}

} // namespace vlLog
