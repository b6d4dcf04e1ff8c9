#pragma once
#include <QObject>

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
    std::mutex lock_; ///< of both
    std::unique_ptr<QObject> receiver_;
    bool stopped_ = false;
};

} // namespace vlWinUi
