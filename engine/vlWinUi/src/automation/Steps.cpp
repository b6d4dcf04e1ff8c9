#include "automation/Steps.h"

#include "automation/Invoker.h"

#include <vlCommon/ThreadBorder.h>

#include <utility>

namespace vlWinUi {
void Automation::invoke(std::function<void()> function) {
    Invoker::getInstance().invoke(std::move(function));
}

void Automation::stop() {
    Invoker::getInstance().stop();
}

Steps::Steps(std::vector<Step> steps, Automation::Done done)
    : steps_(std::move(steps)), done_(std::move(done)) {
}

void Steps::run(std::vector<Step> steps, Automation::Done done) {
    vlCommon::assertUiThread();
    std::make_shared<Steps>(std::move(steps), std::move(done))->ask(0);
}

void Steps::ask(std::size_t index) {
    Automation::invoke([self = shared_from_this(), index] { self->turn(index); });
}

void Steps::turn(std::size_t index) {
    if (!done_) return;
    if (index == steps_.size()) {
        finish({});
        return;
    }
    if (Invoker::getInstance().isStopped()) return;
    ask(index + 1);
    if (auto result = steps_[index](); !result) finish(std::move(result));
}

void Steps::finish(vlCommon::Result<> result) {
    const auto done = std::exchange(done_, nullptr);
    if (done) done(std::move(result));
}

} // namespace vlWinUi
