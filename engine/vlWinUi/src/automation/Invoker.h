#pragma once
#include <QObject>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace vlWinUi {

/** Brings functions from any thread into the event loop. Lives as long as the process, so that a
 * late thread finds it; what delivers for it comes and goes with the library. */
class Invoker {
public:
    static Invoker& getInstance();

    /// Any thread. Dropped while closed or stopped.
    void invoke(std::function<void()> function);

    // UI thread.
    void open();
    void close();
    /// Runs what is waiting now, and takes nothing more until the next open().
    void stop();
    bool isStopped();

private:
    class Receiver;

    void runNext();

    std::mutex lock_; ///< of all
    /// Each has an event of its own on its way. Not carried by the events themselves: their road
    /// is through a library whose locks the thread sanitizer does not see.
    std::deque<std::function<void()>> waiting_;
    std::unique_ptr<QObject> receiver_;
    bool stopped_ = false;
};

} // namespace vlWinUi
