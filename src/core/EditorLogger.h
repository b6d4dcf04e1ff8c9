#pragma once
#include "core/GraphicsThreadLogger.h"
#include "core/LogWindow.h"
#include "core/UiThreadLogger.h"

#include <vlCommon/SingletonClass.h>

#include <atomic>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace vlEditor {

/** All log lines end here: the last hundred are kept, and every registered window shows them. Lines
 *  read "[source] text". UI thread only, except isEnabled(). */
class EditorLogger final : public vlCommon::SingletonClass<EditorLogger> {
public:
    static constexpr std::size_t keptLineCount = 100;

    EditorLogger() = default;
    ~EditorLogger();

    /// The engine's libraries and the widget library log here from now on.
    void attach();
    /// They do not any more, the windows are forgotten and no line is kept. May be called twice.
    void detach();

    void log(std::string_view text, std::string_view source);
    void addLine(const std::string& line);

    /// A window gets the lines that come from now on; what was kept is its own to replay.
    void addWindow(LogWindow& window);
    /// A window that is not registered is passed over.
    void removeWindow(const LogWindow& window);
    /// Oldest first.
    const std::deque<std::string>& getKeptLines() const { return keptLines_; }

    /// While false, nothing is logged.
    void setEnabled(bool enabled) { enabled_ = enabled; }
    /// Any thread.
    bool isEnabled() const { return enabled_; }

private:
    GraphicsThreadLogger graphicsThreadLogger_;
    UiThreadLogger uiThreadLogger_;
    std::deque<std::string> keptLines_;
    std::vector<LogWindow*> windows_;
    std::atomic<bool> enabled_ = true;
};

} // namespace vlEditor
