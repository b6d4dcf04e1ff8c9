#pragma once
#include <vlWinUi/Geometry.h>

namespace vlWinUi {

/** The mouse moved over a Surface, or outside it while one of its buttons is held. */
struct MouseMoveEvent {
    /// In the surface, physical pixels; may lie outside it while a button is held.
    int x = 0;
    int y = 0;
    /// On the screen, as CursorUtils takes it.
    Point screen;
    bool left = false;   ///< held
    bool right = false;  ///< held
    bool middle = false; ///< held
};

} // namespace vlWinUi
