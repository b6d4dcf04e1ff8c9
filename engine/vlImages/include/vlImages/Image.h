#pragma once
#include <vlImages/ImageView.h>
#include <vlImages/PixelFormat.h>
#include <vlMemory/Buffer.h>

#include <cstddef>
#include <cstdint>

namespace vlImages {

/** A picture in memory, rows from the top, tightly packed. Empty (0 by 0) unless given. A value of
 * one thread. */
struct Image {
    std::uint32_t width = 0;  ///< pixels
    std::uint32_t height = 0; ///< pixels
    PixelFormat format = PixelFormat::rgba8;
    vlMemory::Buffer pixels;

    Image() = default;
    /// Zeroed pixels.
    Image(std::uint32_t widthValue, std::uint32_t heightValue, PixelFormat formatValue)
        : width(widthValue), height(heightValue), format(formatValue),
          pixels(std::size_t{widthValue} * heightValue * bytesPerPixel(formatValue)) {}

    bool empty() const { return pixels.empty(); }
    std::size_t rowBytes() const { return width * bytesPerPixel(format); }
    /// Valid while the image lives unchanged.
    ImageView view() const { return {pixels.span(), width, height, format, rowBytes()}; }

    friend bool operator==(const Image&, const Image&) = default;
};

} // namespace vlImages
