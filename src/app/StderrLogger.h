#pragma once
#include <vlLog/Logger.h>

namespace vlEditor {

/** Receives the engine's lines while there is no window to show them in: each goes to standard
 * error. Attached from its making to its end. */
class StderrLogger final : public vlLog::Logger {
public:
    StderrLogger();
    ~StderrLogger() override;

    void log(vlMemory::StringView text) override;
};

} // namespace vlEditor
