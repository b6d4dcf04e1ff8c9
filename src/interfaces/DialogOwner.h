#pragma once
#include <vlWinUi/Window.h>

namespace vlEditor {

/** Whose window a dialog stands in front of. UI thread only. */
class DialogOwner {
public:
    DialogOwner() = delete;
    /// The top-level window around the component; unchanged when there is none.
    static void set(vlWinUi::Window& dialog, const vlWinUi::Component& anchor);
};

} // namespace vlEditor
