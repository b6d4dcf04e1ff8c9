#include "interfaces/preview/PreviewPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace vlEditor {
namespace {

using Texel = std::array<float, 4>;

Texel texelAt(const vlImages::Image& texels, std::uint32_t x, std::uint32_t y) {
    Texel texel;
    std::memcpy(texel.data(), texels.view().row(y) + x * sizeof texel, sizeof texel);
    return texel;
}

/** The least and the greatest of the colours' channels. */
struct Range {
    float least = std::numeric_limits<float>::infinity();
    float most = -std::numeric_limits<float>::infinity();

    void add(float value) {
        if (!std::isfinite(value)) return;
        least = std::min(least, value);
        most = std::max(most, value);
    }
};

Range rangeOf(const vlImages::Image& texels,
              std::uint32_t width,
              std::uint32_t height,
              std::size_t channels) {
    Range range;
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const Texel texel = texelAt(texels, x, y);
            for (std::size_t channel = 0; channel < channels; ++channel)
                range.add(texel[channel]);
        }
    return range;
}

float encoded(float linear) {
    return linear <= 0.0031308F ? 12.92F * linear : 1.055F * std::pow(linear, 1.0F / 2.4F) - 0.055F;
}

/// From what a texel holds to 0..1.
float shown(float value, const PreviewContent& content, const Range& range) {
    if (!std::isfinite(value)) return value > 0 ? 1.0F : 0.0F;
    if (content.isDepth) {
        const float spread = range.most - range.least;
        return spread > 0 ? (value - range.least) / spread : std::clamp(value, 0.0F, 1.0F);
    }
    if (content.isFree && range.least < 0) {
        const float farthest = std::max(-range.least, range.most);
        return std::clamp(0.5F + value / (2 * farthest), 0.0F, 1.0F);
    }
    // The greatest becomes white, and small ones stay as they are.
    if (content.isFree && range.most > 1)
        value = value * (1 + value / (range.most * range.most)) / (1 + value);
    value = std::clamp(value, 0.0F, 1.0F);
    return content.isLinear ? encoded(value) : value;
}

void put(vlImages::Image& image, std::uint32_t x, std::uint32_t y, const Texel& color) {
    std::byte* to = image.pixels.data() + y * image.rowBytes() + std::size_t{x} * 4;
    for (std::size_t channel = 0; channel < color.size(); ++channel)
        to[channel] = static_cast<std::byte>(std::lround(color[channel] * 255.0F));
}

Texel colorOf(const Texel& texel, const PreviewContent& content, const Range& range) {
    Texel color{};
    for (std::size_t channel = 0; channel < 3; ++channel)
        color[channel] = shown(texel[content.isGrey ? 0 : channel], content, range);
    const float alpha = std::isnan(texel[3]) ? 0.0F : std::clamp(texel[3], 0.0F, 1.0F);
    color[3] = content.isOpaque ? 1.0F : alpha;
    return color;
}

/// Neighbouring numbers look as different as far ones.
Texel colorOfNumber(std::uint32_t number) {
    if (number == 0) return {0, 0, 0, 1};
    const std::uint32_t mixed = (number * 2654435761U) >> 8U;
    const auto channel = [mixed](std::uint32_t shift) {
        return 0.25F + 0.75F * static_cast<float>((mixed >> shift) & 255U) / 255.0F;
    };
    return {channel(0), channel(8), channel(16), 1};
}

} // namespace

PreviewPicture PreviewPicture::fromTexels(const vlImages::Image& texels,
                                          std::uint32_t width,
                                          std::uint32_t height,
                                          const PreviewContent& content,
                                          std::string caption) {
    width = std::min(width, texels.width);
    height = std::min(height, texels.height);
    const Range range = rangeOf(texels, width, height, content.isGrey ? 1 : 3);
    PreviewPicture made{vlImages::Image(width, height, vlImages::PixelFormat::rgba8),
                        std::move(caption)};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            put(made.image, x, y, colorOf(texelAt(texels, x, y), content, range));
    if ((content.isFree || content.isDepth) && range.least <= range.most)
        made.text += fmt::format(", {:.4g} to {:.4g}", range.least, range.most);
    return made;
}

PreviewPicture PreviewPicture::fromNumbers(const vlImages::Image& numbers,
                                           std::uint32_t width,
                                           std::uint32_t height,
                                           std::string caption) {
    PreviewPicture made{vlImages::Image(width, height, vlImages::PixelFormat::rgba8),
                        std::move(caption)};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const auto fromX = std::uint64_t{x} * numbers.width / width;
            const auto fromY = std::uint64_t{y} * numbers.height / height;
            std::uint32_t number = 0;
            std::memcpy(&number,
                        numbers.view().row(static_cast<std::uint32_t>(fromY)) + fromX * 4,
                        sizeof number);
            put(made.image, x, y, colorOfNumber(number));
        }
    return made;
}

} // namespace vlEditor
