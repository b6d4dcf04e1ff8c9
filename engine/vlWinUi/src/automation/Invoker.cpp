#include "automation/Invoker.h"

#include <vlCommon/ThreadBorder.h>

#include <QCoreApplication>
#include <QEvent>

namespace vlWinUi {

Invoker& Invoker::getInstance() {
    // Never destroyed: a thread that outlives main() may still invoke.
    static auto* instance = new Invoker;
    return *instance;
}

void Invoker::invoke(std::function<void()> function) {
    const std::lock_guard guard(lock_);
    if (receiver_ == nullptr || stopped_) return;
    QMetaObject::invokeMethod(receiver_.get(), std::move(function), Qt::QueuedConnection);
}

void Invoker::open() {
    const std::lock_guard guard(lock_);
    receiver_ = std::make_unique<QObject>();
    stopped_ = false;
}

void Invoker::close() {
    const std::lock_guard guard(lock_);
    receiver_.reset();
}

void Invoker::stop() {
    vlCommon::assertUiThread();
    {
        const std::lock_guard guard(lock_);
        if (receiver_ == nullptr) return;
        stopped_ = true;
    }
    QCoreApplication::sendPostedEvents(receiver_.get(), QEvent::MetaCall);
}

bool Invoker::isStopped() {
    const std::lock_guard guard(lock_);
    return stopped_;
}

} // namespace vlWinUi
