#pragma once
#include <cstdint>
#include <string>

namespace vlWinUi {

/** A key that went down or up. */
struct KeyEvent {
    /// What the key means: 13 Enter, 27 Escape, 37 to 40 arrows, 'A' to 'Z', '0' to '9'; 0 if
    /// unknown.
    std::uint32_t virtualKey = 0;
    /// Where the key is, as PC scan codes (set 1, extended keys with bit 7 set); 0 if unknown.
    std::uint32_t scanCode = 0;
    bool pressed = true;
    bool repeated = false; ///< the key is being held
    bool shift = false;
    bool control = false;
    bool alt = false;
    std::string text; ///< what it types, UTF-8; control characters are left out
};

} // namespace vlWinUi
