#pragma once
#include "core/Message.h"

#include <vlCommon/SingletonClass.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace vlEditor {

/** Owns the two queues. Posting is safe from any thread; each drain belongs to one thread. Messages
 *  run in the order of their posting, one by one, with no lock held; what is posted while a queue
 * is being drained runs in a later drain. Created by the UI thread before there is another. */
class MessageOrchestrator final : public vlCommon::SingletonClass<MessageOrchestrator> {
public:
    /// Wakes the UI's event loop.
    void postToUi(std::unique_ptr<Message> message);
    /// Wakes nobody: the graphics thread looks at its queue in every turn.
    void postToGraphics(std::unique_ptr<Message> message);

    /// UI thread. A message may run an event loop of its own (a dialog), which drains again.
    void drainUi();
    /// Likewise, but once that long has passed the rest waits for the next drain, for which the
    /// event loop is woken: a burst of messages leaves it its turns.
    void drainUiFor(std::chrono::steady_clock::duration longest);
    /// UI thread. Runs it once the drain that is under way has ended its turn, at once where none
    /// is: what many messages make necessary is done once for all of them.
    void afterUiDrain(std::function<void()> call);
    /// Graphics thread.
    void drainGraphics();

    /// All that were ever posted, but for the routine ones. Any thread.
    std::uint64_t getPostedCount() const { return postedCount_; }

    /// Frees what is still queued without running it. UI thread, once no other thread posts.
    /// Without it those messages are never freed: their destructors may reach for what is gone by
    /// then.
    void discard();

private:
    void drainUiUntil(std::chrono::steady_clock::time_point deadline);
    bool hasIncomingUi();
    void runNextUi();

    int uiDrains_ = 0; ///< one within another
    std::vector<std::function<void()>> afterUiDrain_;
    std::deque<Message*> uiIncoming_;
    std::deque<Message*> uiProcessing_;
    std::vector<Message*> graphicsIncoming_;
    std::vector<Message*> graphicsProcessing_;
    std::atomic<std::uint64_t> postedCount_ = 0;
    std::mutex uiLock_;
    std::mutex graphicsLock_;
};

template <class M> void postToUi(M message) {
    MessageOrchestrator::getInstance().postToUi(std::make_unique<M>(std::move(message)));
}
template <class M> void postToGraphics(M message) {
    MessageOrchestrator::getInstance().postToGraphics(std::make_unique<M>(std::move(message)));
}

} // namespace vlEditor
