#pragma once
#include <cstddef>
#include <deque>
#include <string>

namespace vlEditor {

/** The commands that were run in one log window, and a place in them that a person moves up and
 *  down. UI thread only. */
class CommandHistory {
public:
    static constexpr std::size_t mostCommands = 100;

    /// The oldest goes where there are too many. Browsing starts anew, behind the newest.
    void add(std::string command);
    /// One step back, and the command there; the oldest stays. Null when there is none at all.
    const std::string* older();
    /// One step on; null behind the newest.
    const std::string* newer();
    void stopBrowsing() { position_ = commands_.size(); }
    bool isBrowsing() const { return position_ < commands_.size(); }

    /// Oldest first.
    const std::deque<std::string>& getCommands() const { return commands_; }

private:
    std::deque<std::string> commands_;
    std::size_t position_ = 0; ///< the size: behind the newest
};

} // namespace vlEditor
