#include "core/MessageOrchestrator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/System.h>

namespace vlEditor {

void MessageOrchestrator::postToUi(std::unique_ptr<Message> message) {
    if (!message->isRoutine()) ++postedCount_;
    const std::lock_guard guard(uiLock_);
    uiIncoming_.push_back(message.get());
    static_cast<void>(message.release());
    vlWinUi::System::notifyEvent();
}

void MessageOrchestrator::postToGraphics(std::unique_ptr<Message> message) {
    if (!message->isRoutine()) ++postedCount_;
    const std::lock_guard guard(graphicsLock_);
    graphicsIncoming_.push_back(message.get());
    static_cast<void>(message.release());
}

void MessageOrchestrator::drainUi() {
    drainUiUntil(std::chrono::steady_clock::time_point::max());
}

void MessageOrchestrator::drainUiFor(std::chrono::steady_clock::duration longest) {
    drainUiUntil(std::chrono::steady_clock::now() + longest);
}

void MessageOrchestrator::drainUiUntil(std::chrono::steady_clock::time_point deadline) {
    vlCommon::assertUiThread();
    const bool goesOn = !uiProcessing_.empty();
    if (!goesOn) {
        const std::lock_guard guard(uiLock_);
        uiIncoming_.swap(uiProcessing_);
    }
    const bool unbounded = deadline == std::chrono::steady_clock::time_point::max();
    ++uiDrains_;
    while (!uiProcessing_.empty() && (unbounded || std::chrono::steady_clock::now() < deadline))
        runNextUi();
    --uiDrains_;
    for (const auto& call : std::exchange(afterUiDrain_, {}))
        call();
    // The wake-up that came for what is left has brought this drain.
    if (!uiProcessing_.empty() || (goesOn && hasIncomingUi())) vlWinUi::System::notifyEvent();
}

void MessageOrchestrator::afterUiDrain(std::function<void()> call) {
    vlCommon::assertUiThread();
    if (uiDrains_ == 0)
        call();
    else
        afterUiDrain_.push_back(std::move(call));
}

bool MessageOrchestrator::hasIncomingUi() {
    const std::lock_guard guard(uiLock_);
    return !uiIncoming_.empty();
}

void MessageOrchestrator::runNextUi() {
    // Off the list before it runs: a dialog inside it drains from here on.
    const std::unique_ptr<Message> message(uiProcessing_.front());
    uiProcessing_.pop_front();
    message->runOnUiThread();
}

void MessageOrchestrator::drainGraphics() {
    vlCommon::assertGraphicsThread();
    {
        const std::lock_guard guard(graphicsLock_);
        graphicsIncoming_.swap(graphicsProcessing_);
    }
    for (Message* next : graphicsProcessing_) {
        const std::unique_ptr<Message> message(next);
        message->runOnGraphicsThread();
    }
    graphicsProcessing_.clear();
}

void MessageOrchestrator::discard() {
    const auto freeAll = [](auto& list) {
        const auto messages = std::exchange(list, {});
        for (Message* message : messages)
            delete message;
    };
    freeAll(uiIncoming_);
    freeAll(uiProcessing_);
    freeAll(graphicsIncoming_);
    freeAll(graphicsProcessing_);
    afterUiDrain_.clear();
}

} // namespace vlEditor
