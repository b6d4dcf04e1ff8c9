#include "TerminationWatch.h"

#include "Call.h"
#include "Log.h"

#include <QSocketNotifier>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace vlWinUi {
namespace {

volatile std::sig_atomic_t writeEnd = -1;

void onSignal(int) {
    const int error = errno;
    const char byte = 1;
    // A full pipe already says all there is to say.
    [[maybe_unused]] const auto written = write(writeEnd, &byte, 1);
    errno = error;
}

} // namespace

TerminationWatch::TerminationWatch(std::function<void()> callback)
    : callback_(std::move(callback)) {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) {
        logLine("SIGINT and SIGTERM end the program at once: no pipe to catch them with");
        return;
    }
    writeEnd = ends_[1];
    notifier_ = new QSocketNotifier(ends_[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { arrived(); });
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &earlierInterrupt_);
    sigaction(SIGTERM, &action, &earlierTerminate_);
}

TerminationWatch::~TerminationWatch() {
    if (notifier_ == nullptr) return;
    sigaction(SIGINT, &earlierInterrupt_, nullptr);
    sigaction(SIGTERM, &earlierTerminate_, nullptr);
    writeEnd = -1;
    delete notifier_;
    ::close(ends_[0]);
    ::close(ends_[1]);
}

void TerminationWatch::arrived() {
    char bytes[16];
    while (read(ends_[0], bytes, sizeof bytes) > 0) {
    }
    call(callback_);
}

} // namespace vlWinUi
