#pragma once
#include <QObject>

#include <atomic>
#include <functional>
#include <mutex>

namespace vlWinUi {

/** Brings other threads' news into the event loop: what is notified before the loop gets to it
 * becomes one event. Lives as long as the process, so that a late thread finds it; the receiver
 * comes and goes. */
class Wakeup {
public:
    static Wakeup& getInstance();

    /// Any thread. Waits for no one but another notify() and the two below.
    void notify();

    /// UI thread: from open() to close() events are delivered. What was notified before is
    /// delivered too.
    void open();
    void close();
    void setCallback(std::function<bool()> callback);

private:
    class Receiver;

    void deliver();

    std::atomic<bool> pending_{false};
    std::mutex lock_; ///< of receiver_
    QObject* receiver_ = nullptr;
    std::function<bool()> callback_; ///< UI thread only
};

} // namespace vlWinUi
