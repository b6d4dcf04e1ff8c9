#pragma once
#include <QObject>

#include <csignal>
#include <functional>

class QSocketNotifier;

namespace vlWinUi {

/** Brings SIGINT and SIGTERM into the event loop while it lives; afterwards the earlier handling is
 * back. UI thread only, one at a time. */
class TerminationWatch final : public QObject {
public:
    explicit TerminationWatch(std::function<void()> callback);
    ~TerminationWatch() override;

private:
    void arrived();

    std::function<void()> callback_;
    int ends_[2] = {-1, -1}; ///< read by the loop, written by the handler
    QSocketNotifier* notifier_ = nullptr;
    struct sigaction earlierInterrupt_ {};
    struct sigaction earlierTerminate_ {};
};

} // namespace vlWinUi
