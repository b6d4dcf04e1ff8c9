#include "app/Icon.h"

#include <cmath>

namespace vlEditor {
namespace {

struct Rgb {
    float r, g, b;
};

constexpr unsigned samples = 4; // a pixel's side is cut into so many

/// On the left and on the right half of a V whose strokes are 7 wide.
bool onStroke(float x, float y, bool left) {
    if (y < 7 || y > 26) return false;
    const float inner = (y - 7) / 19 * 11;
    const float edge = left ? 3 + inner : 29 - inner;
    const float away = left ? x - edge : edge - x;
    const bool ownHalf = left ? x <= 16 : x > 16;
    return ownHalf && away >= 0 && away <= 7.5F;
}

Rgb colorAt(float x, float y) {
    if (onStroke(x, y, true)) return {163, 139, 43};
    if (onStroke(x, y, false)) return {176, 72, 68};
    const float shade = 1 - y / 64;
    return {36 * shade, 37 * shade, 44 * shade};
}

Icon::Pixels draw() {
    Icon::Pixels pixels{};
    for (unsigned at = 0; at < Icon::size * Icon::size; ++at) {
        Rgb sum{0, 0, 0};
        for (unsigned i = 0; i < samples * samples; ++i) {
            const float dx = (static_cast<float>(i % samples) + 0.5F) / samples;
            const float dy = (static_cast<float>(i / samples) + 0.5F) / samples;
            const Rgb color = colorAt(static_cast<float>(at % Icon::size) + dx,
                                      static_cast<float>(at / Icon::size) + dy);
            sum = {sum.r + color.r, sum.g + color.g, sum.b + color.b};
        }
        const auto level = [](float total) {
            return static_cast<std::uint8_t>(std::lround(total / (samples * samples)));
        };
        pixels[at * 3] = level(sum.r);
        pixels[at * 3 + 1] = level(sum.g);
        pixels[at * 3 + 2] = level(sum.b);
    }
    return pixels;
}

} // namespace

const Icon::Pixels& Icon::pixels() {
    static const Pixels drawn = draw();
    return drawn;
}

} // namespace vlEditor
