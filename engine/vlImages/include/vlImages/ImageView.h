#pragma once
#include <vlImages/PixelFormat.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace vlImages {

/** Looks at the pixels of a picture that somebody else owns and keeps alive. */
struct ImageView {
    std::span<const std::byte> pixels;
    std::uint32_t width = 0;  ///< pixels
    std::uint32_t height = 0; ///< pixels
    PixelFormat format = PixelFormat::rgba8;
    std::size_t rowStride = 0; ///< bytes from a row to the next, at least width * bytesPerPixel

    /// Neither empty nor larger than the pixels it looks at.
    bool valid() const {
        const std::size_t row = width * bytesPerPixel(format);
        return width > 0 && height > 0 && rowStride >= row && pixels.size() >= row &&
               (pixels.size() - row) / rowStride >= height - 1;
    }
    const std::byte* row(std::uint32_t y) const { return pixels.data() + y * rowStride; }
};

} // namespace vlImages
