#pragma once
#include <vlMemory/String.h>

namespace vlEditor {

/** Opens a project in the running editor. UI thread only. */
class OpenProject {
public:
    OpenProject() = delete;
    /// Says so in the log and asks the graphics thread to load it. A relative path is the
    /// process's.
    static void open(vlMemory::StringView path);
};

} // namespace vlEditor
