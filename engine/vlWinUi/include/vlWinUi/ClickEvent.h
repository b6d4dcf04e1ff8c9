#pragma once
#include <vlWinUi/Geometry.h>

#include <cstdint>

namespace vlWinUi {

/** A mouse button that went down or up over a component. */
struct ClickEvent {
    static constexpr std::uint32_t LEFT = 1;
    static constexpr std::uint32_t RIGHT = 2;
    static constexpr std::uint32_t MIDDLE = 3;

    std::uint32_t button = LEFT;
    bool pressed = true;
    bool doubleClick = false;
    bool shift = false;
    bool control = false;
    bool alt = false;
    /// In the component; physical pixels for a Surface, device-independent ones for all others.
    int x = 0;
    int y = 0;
    /// On the screen, as ContextMenu::open() and CursorUtils take it.
    Point screen;
};

} // namespace vlWinUi
