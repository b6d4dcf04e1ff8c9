#pragma once
#include <vlWinUi/Color.h>

#include <array>
#include <cstddef>
#include <string>

namespace vlWinUi {

/** Five colours from which every shade of the widgets is derived. Plain data; owned by the
 * ThemeManager. UI thread only. */
class Theme {
public:
    static constexpr std::size_t COLOR_COUNT = 5;

    /// Starts with the dark colours.
    explicit Theme(std::string name);

    const std::string& getName() const { return name_; }
    /// 1 background, 2 accent and selection, 3 hover, 4 focus, 5 text. An index outside throws.
    const Color& getColor(std::size_t index) const { return colors_.at(index - 1); }
    void setColor(std::size_t index, const Color& color) { colors_.at(index - 1) = color; }

private:
    std::string name_;
    std::array<Color, COLOR_COUNT> colors_;
};

} // namespace vlWinUi
