#include "automation/Invoker.h"

#include <vlCommon/ThreadBorder.h>

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace vlWinUi {

class Invoker::Receiver final : public QObject {
public:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        getInstance().runNext();
        return true;
    }
};

Invoker& Invoker::getInstance() {
    // Never destroyed: a thread that outlives main() may still invoke.
    static auto* instance = new Invoker;
    return *instance;
}

void Invoker::invoke(std::function<void()> function) {
    const std::lock_guard guard(lock_);
    if (receiver_ == nullptr || stopped_) return;
    waiting_.push_back(std::move(function));
    QCoreApplication::postEvent(receiver_.get(), new QEvent(QEvent::User));
}

void Invoker::runNext() {
    std::function<void()> function;
    {
        const std::lock_guard guard(lock_);
        if (waiting_.empty()) return;
        function = std::move(waiting_.front());
        waiting_.pop_front();
    }
    function();
}

void Invoker::open() {
    const std::lock_guard guard(lock_);
    receiver_ = std::make_unique<Receiver>();
    stopped_ = false;
}

void Invoker::close() {
    std::deque<std::function<void()>> dropped;
    const std::lock_guard guard(lock_);
    receiver_.reset();
    dropped.swap(waiting_);
}

void Invoker::stop() {
    vlCommon::assertUiThread();
    {
        const std::lock_guard guard(lock_);
        if (receiver_ == nullptr) return;
        stopped_ = true;
    }
    QCoreApplication::sendPostedEvents(receiver_.get(), QEvent::User);
}

bool Invoker::isStopped() {
    const std::lock_guard guard(lock_);
    return stopped_;
}

} // namespace vlWinUi
