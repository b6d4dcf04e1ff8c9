#pragma once
#include "core/LogWindow.h"
#include "interfaces/CommandHistory.h"
#include "interfaces/Interface.h"

#include <cstdint>
#include <vector>

namespace vlEditor {

/** A window on the log, with a command line below. Built by LogInterfaceCreator; the root's data
 * points to it. UI thread only. */
class LogInterface final : public Interface, public LogWindow {
public:
    /// More lines than these are shown by no window; the oldest go.
    static constexpr std::size_t mostLines = 10'000;

    /// Shows the lines that are kept, and every one from now on.
    explicit LogInterface(vlWinUi::Component& root);
    ~LogInterface() override;

    std::string title() const override { return "Log / Commands"; }
    void appendLine(const std::string& line) override;

    /// Runs what the command line holds; an empty one does nothing.
    void launch();
    /// A key went down in the command line: 13 runs it, 27 clears it, 38 and 40 go through the
    /// history.
    void handleKey(std::uint32_t virtualKey);
    /// Tab in the command line. False while that is empty, which Tab may leave.
    bool complete();
    /// The answer: names that the text before the cursor may go on with, if it still ends so.
    void offerCompletions(const std::string& begin, const std::vector<std::string>& candidates);
    const CommandHistory& getHistory() const { return history_; }

    void setFilter(const std::string& text);

private:
    void showCommand(const std::string* command);

    CommandHistory history_;
    std::string draft_; ///< what was typed before browsing
};

} // namespace vlEditor
