#include "Wakeup.h"

#include <vlWinUi/System.h>

#include <QCoreApplication>
#include <QEvent>

namespace vlWinUi {

class Wakeup::Receiver final : public QObject {
public:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        getInstance().deliver();
        return true;
    }
};

Wakeup& Wakeup::getInstance() {
    // Never destroyed: a thread that outlives main() may still notify.
    static auto* instance = new Wakeup;
    return *instance;
}

void Wakeup::notify() {
    if (pending_.exchange(true)) return;
    const std::lock_guard guard(lock_);
    if (receiver_ != nullptr) QCoreApplication::postEvent(receiver_, new QEvent(QEvent::User));
}

void Wakeup::open() {
    const std::lock_guard guard(lock_);
    receiver_ = new Receiver;
    if (pending_) QCoreApplication::postEvent(receiver_, new QEvent(QEvent::User));
}

void Wakeup::close() {
    {
        const std::lock_guard guard(lock_);
        delete receiver_;
        receiver_ = nullptr;
        pending_ = false;
    }
    callback_ = nullptr;
}

void Wakeup::setCallback(std::function<bool()> callback) {
    callback_ = std::move(callback);
    // What was notified before there was a callback is still to be told.
    if (callback_) notify();
}

void Wakeup::deliver() {
    // Cleared first: news that comes while the callback runs asks for another turn.
    pending_ = false;
    const auto callback = callback_;
    if (callback && !callback()) System::prepareForShutdown();
}

} // namespace vlWinUi
