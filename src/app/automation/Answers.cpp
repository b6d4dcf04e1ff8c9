#include "app/automation/Answers.h"

namespace vlEditor {

std::uint64_t Answers::open() {
    const std::lock_guard guard(lock_);
    open_.emplace(next_, std::nullopt);
    return next_++;
}

void Answers::give(std::uint64_t ticket, Answer answer) {
    {
        const std::lock_guard guard(lock_);
        const auto found = open_.find(ticket);
        if (found == open_.end() || found->second) return;
        found->second = std::move(answer);
    }
    changed_.notify_all();
}

Answers::Answer
Answers::wait(std::uint64_t ticket, std::optional<Time> deadline, const char* late) {
    std::unique_lock guard(lock_);
    const auto ready = [&] { return ended_ || open_.at(ticket).has_value(); };
    if (deadline)
        changed_.wait_until(guard, *deadline, ready);
    else
        changed_.wait(guard, ready);
    std::optional<Answer> answer = std::move(open_.at(ticket));
    open_.erase(ticket);
    if (answer) return std::move(*answer);
    return vlCommon::fail(ended_ ? "the editor is closing" : late);
}

bool Answers::pause(std::chrono::milliseconds duration) {
    std::unique_lock guard(lock_);
    return !changed_.wait_for(guard, duration, [this] { return ended_; });
}

void Answers::end() {
    {
        const std::lock_guard guard(lock_);
        ended_ = true;
    }
    changed_.notify_all();
}

} // namespace vlEditor
