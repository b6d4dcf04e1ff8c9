#include "interfaces/history/History.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/history/PendingEdit.h"
#include "interfaces/history/UndoMessage.h"

#include <vlCommon/ThreadBorder.h>

#include <atomic>

namespace vlEditor {

History::Scope::Scope() {
    History& history = getInstance();
    if (history.openScopes_++ == 0) history.scopeGesture_ = nextGesture();
}

History::Scope::~Scope() {
    --getInstance().openScopes_;
}

Gesture History::nextGesture() {
    static std::atomic<std::uint64_t> last = 0;
    return Gesture{++last};
}

Gesture History::current() {
    vlCommon::assertUiThread();
    return openScopes_ > 0 ? scopeGesture_ : nextGesture();
}

void History::record(Gesture gesture, std::unique_ptr<UndoStep> step) {
    vlCommon::assertUiThread();
    if (gesture == Gesture::none) return;
    forget(undone_);
    if (done_.empty() || done_.back().gesture != gesture) done_.push_back({gesture, {}});
    Group& group = done_.back();
    bytes_ -= group.bytes;
    group.add(std::move(step));
    bytes_ += group.bytes;
    bound();
    notify();
}

void History::undo() {
    PendingEdit::flushAll();
    postToGraphics(UndoMessage(false));
}

void History::redo() {
    PendingEdit::flushAll();
    postToGraphics(UndoMessage(true));
}

std::string History::describeUndo() const {
    return done_.empty() ? std::string() : done_.back().describe();
}

std::string History::describeRedo() const {
    return undone_.empty() ? std::string() : undone_.back().describe();
}

void History::clear() {
    forget(done_);
    forget(undone_);
    notify();
}

void History::stepBack() {
    if (done_.empty()) return;
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    const auto& steps = undone_.back().steps;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step)
        (*step)->goBack();
    notify();
}

void History::stepForward() {
    if (undone_.empty()) return;
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    for (const auto& step : done_.back().steps)
        step->goForward();
    notify();
}

void History::forget(std::deque<Group>& groups) {
    for (const Group& group : groups)
        bytes_ -= group.bytes;
    groups.clear();
}

void History::bound() {
    // The last gesture stays whatever its size: a person expects at least that one back.
    while (done_.size() > 1 && (done_.size() > mostGestures || bytes_ > mostBytes)) {
        bytes_ -= done_.front().bytes;
        done_.pop_front();
    }
}

void History::notify() const {
    if (changed_) changed_();
}

void History::Group::add(std::unique_ptr<UndoStep> step) {
    if (!steps.empty()) {
        const std::size_t before = steps.back()->getBytes();
        if (steps.back()->absorb(*step)) {
            bytes = bytes - before + steps.back()->getBytes();
            return;
        }
    }
    bytes += step->getBytes();
    steps.push_back(std::move(step));
}

std::string History::Group::describe() const {
    // Of a rename over a used name, the first step is what went.
    std::string text = steps.back()->describe();
    if (steps.size() > 1) text += " and " + std::to_string(steps.size() - 1) + " more";
    return text;
}

} // namespace vlEditor
