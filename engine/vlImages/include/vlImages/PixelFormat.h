#pragma once
#include <cstddef>
#include <cstdint>

namespace vlImages {

/** How a pixel lies in memory, channels in the order of the name. */
enum class PixelFormat : std::uint8_t { r8, rgba8, bgra8, rgba32f };

constexpr std::size_t channelCount(PixelFormat format) {
    return format == PixelFormat::r8 ? 1 : 4;
}

constexpr std::size_t bytesPerPixel(PixelFormat format) {
    return channelCount(format) * (format == PixelFormat::rgba32f ? sizeof(float) : 1);
}

} // namespace vlImages
