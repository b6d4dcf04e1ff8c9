#pragma once
#include <vlLog/Logger.h>

namespace vlEditor {

/** Receives what the widget library logs, and adds it to the log at once, line by line. A blank
 * line folds into the one after it. Owned by the EditorLogger; UI thread only. */
class UiThreadLogger final : public vlLog::Logger {
public:
    void log(vlMemory::StringView text) override;
};

} // namespace vlEditor
