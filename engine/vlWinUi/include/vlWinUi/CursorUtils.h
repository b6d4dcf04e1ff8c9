#pragma once
#include <vlWinUi/Geometry.h>

namespace vlWinUi {

/** The mouse cursor. UI thread only. */
class CursorUtils {
public:
    static void setCursorPosition(Point screen);
    static Point getCursorPosition();
};

} // namespace vlWinUi
