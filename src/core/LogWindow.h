#pragma once
#include <string>

namespace vlEditor {

/** Shows log lines as they come. Registers itself with the EditorLogger, which does not own it. UI
 *  thread only. */
class LogWindow {
public:
    virtual void appendLine(const std::string& line) = 0;

protected:
    LogWindow() = default;
    LogWindow(const LogWindow&) = default;
    LogWindow& operator=(const LogWindow&) = default;
    ~LogWindow() = default;
};

} // namespace vlEditor
