#pragma once
#include <vlCommon/Result.h>

namespace vlEditor {

/** The compositor that a viewport is seen through until somebody chooses another: clears the back
 *  buffer and its depth, and renders the scene. Whoever owns the engine. */
class BasicCompositor {
public:
    BasicCompositor() = delete;
    /// Hidden, so that no list of the project's compositors has it.
    static vlCommon::Result<> create();
};

} // namespace vlEditor
