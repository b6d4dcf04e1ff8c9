#include "app/Themes.h"

#include <vlWinUi/ThemeManager.h>

#include <array>

namespace vlEditor {
namespace {

constexpr std::string_view themeName = "EDITOR_DARK";

using Colors = std::array<vlWinUi::Color, vlWinUi::Theme::COLOR_COUNT>;

struct ColorSet {
    std::uint8_t guard; ///< the first colour's red that means: written already
    Colors colors;
};

constexpr ColorSet darkSet{12,
                           {{{12, 12, 12, 255},
                             {138, 56, 54, 255},
                             {81, 69, 21, 255},
                             {163, 139, 43, 255},
                             {191, 191, 191, 255}}}};
// The guard is not the red that is written, so the light set is written at every use.
constexpr ColorSet lightSet{243,
                            {{{248, 246, 245, 255},
                              {127, 167, 211, 255},
                              {81, 69, 21, 255},
                              {163, 139, 43, 255},
                              {64, 64, 64, 255}}}};

void activate(const ColorSet& set) {
    vlWinUi::Theme& theme = vlWinUi::ThemeManager::createOrRetrieve(themeName);
    if (theme.getColor(1).r != set.guard) {
        for (std::size_t i = 0; i < set.colors.size(); ++i)
            theme.setColor(i + 1, set.colors[i]);
    }
    vlWinUi::ThemeManager::setActiveTheme(theme);
}

} // namespace

void Themes::activateDark() {
    activate(darkSet);
}

void Themes::activateLight() {
    activate(lightSet);
}

} // namespace vlEditor
