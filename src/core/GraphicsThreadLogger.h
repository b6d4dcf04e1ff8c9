#pragma once
#include <vlLog/Logger.h>

namespace vlEditor {

/** Receives the lines of the libraries that run on the graphics thread, and sends each to the UI.
 *  Owned by the EditorLogger; any thread. */
class GraphicsThreadLogger final : public vlLog::Logger {
public:
    void log(vlMemory::StringView text) override;
};

} // namespace vlEditor
