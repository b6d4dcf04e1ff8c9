#pragma once
#include <functional>

namespace vlWinUi {

class Component;

/** What the person asks of windows as a whole. UI thread only. */
class InputSystem {
public:
    /// The close button of any top-level window, given that window. The callback decides what
    /// becomes of it: the library itself never closes a window. Without a callback, or if it
    /// returns false, the window is hidden.
    static void setCloseCallback(std::function<bool(Component&)> callback);
    /// As if the person had closed it.
    static void requestClose(Component& component);

    /// The component with the keyboard focus, or the innermost one around what has it. Null when
    /// the program has no focus.
    static Component* getFocused();
    /// Told when that changes.
    static void setFocusCallback(std::function<void(Component* focused)> callback);
};

} // namespace vlWinUi
