#pragma once
#include <vlImages/Image.h>
#include <vlImages/ImageView.h>

#include <cstdint>

namespace vlImages {

/** How far two pictures lie apart. */
struct Difference {
    double fraction = 0.0;     ///< of pixels with a channel that differs by more than the tolerance
    std::uint32_t maximum = 0; ///< largest difference of any channel
};

/// rgba8 and bgra8 may be mixed; 8-bit formats only. Pictures that cannot be compared (other size,
/// other channel count) differ wholly: fraction 1, maximum 255.
Difference difference(const ImageView& a, const ImageView& b, std::uint32_t tolerance = 0);

enum class ColorSpace : std::uint8_t { linear, srgb };

/** The next level of a mip chain: half the size, rounded down, at least 1; each pixel is the mean
 * of the 2 by 2 above it. With srgb the colours (never alpha, never rgba32f) are averaged as light.
 * Empty for a view that is not valid. */
Image downsampleHalf(const ImageView& image, ColorSpace space = ColorSpace::srgb);

/// Same pixels in rgba8 and bgra8 alike, tightly packed; empty for other pairs of formats.
Image convert(const ImageView& image, PixelFormat format);

} // namespace vlImages
