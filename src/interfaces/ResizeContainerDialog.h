#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Window.h>

namespace vlEditor {

/** The dialog "EDITOR_RESIZE_CONTAINER": asks for a fixed width or height. Enter takes it, Escape
 *  leaves all as it is. UI thread only. */
class ResizeContainerDialog {
public:
    ResizeContainerDialog() = delete;

    static void open(vlWinUi::Window& container, bool width);
    /// A whole decimal number at the text's beginning; 0 where there is none.
    static long pixelsFrom(vlMemory::StringView text);
};

} // namespace vlEditor
