#pragma once
#include <cstdint>

namespace vlWinUi {

/** A colour of a theme, each channel 0..255. */
struct Color {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;

    friend bool operator==(const Color&, const Color&) = default;
};

} // namespace vlWinUi
