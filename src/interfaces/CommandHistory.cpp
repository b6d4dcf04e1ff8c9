#include "interfaces/CommandHistory.h"

namespace vlEditor {

void CommandHistory::add(std::string command) {
    commands_.push_back(std::move(command));
    if (commands_.size() > mostCommands) commands_.pop_front();
    stopBrowsing();
}

const std::string* CommandHistory::older() {
    if (commands_.empty()) return nullptr;
    if (position_ > 0) --position_;
    return &commands_[position_];
}

const std::string* CommandHistory::newer() {
    if (isBrowsing()) ++position_;
    return isBrowsing() ? &commands_[position_] : nullptr;
}

} // namespace vlEditor
