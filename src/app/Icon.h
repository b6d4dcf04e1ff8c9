#pragma once
#include <array>
#include <cstdint>

namespace vlEditor {

/** The main window's picture: 32 by 32 pixels of red, green and blue, row by row from the top. */
class Icon {
public:
    static constexpr unsigned size = 32;
    using Pixels = std::array<std::uint8_t, std::size_t{size} * size * 3>;

    Icon() = delete;
    static const Pixels& pixels();
};

} // namespace vlEditor
