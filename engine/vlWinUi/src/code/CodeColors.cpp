#include "code/CodeColors.h"

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr double READABLE = 4.6; ///< contrast
constexpr double STEP = 0.05;    ///< of lightness

int hueOf(TokenKind kind) {
    constexpr int HUES[] = {/* Keyword */ 12,
                            /* Type */ 190,
                            /* Number */ 95,
                            /* String */ 42,
                            /* Comment */ 140,
                            /* Preprocessor */ 285};
    return HUES[static_cast<std::size_t>(kind)];
}

} // namespace

QColor colorOf(TokenKind kind, const Shades& shades) {
    const bool dark = shades.field.lightnessF() < 0.5F;
    const double saturation = kind == TokenKind::Comment ? 0.18 : 0.55;
    double lightness = kind == TokenKind::Comment ? (dark ? 0.5 : 0.45) : (dark ? 0.68 : 0.36);
    const auto color = [&] {
        return QColor::fromHslF(static_cast<float>(hueOf(kind) / 360.0),
                                static_cast<float>(saturation),
                                static_cast<float>(lightness));
    };
    while (contrast(color(), shades.field) < READABLE && lightness > STEP && lightness < 1 - STEP)
        lightness += dark ? STEP : -STEP;
    return color();
}

} // namespace vlWinUi
