#pragma once
#include <vlCommon/Result.h>
#include <vlImages/Image.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace vlImages {

constexpr std::uint32_t maxImageSize = 16384;                     ///< pixels, either side
constexpr std::uint64_t maxImagePixels = std::uint64_t{1} << 28U; ///< of one picture
constexpr std::uint64_t maxImageBytes = std::uint64_t{1} << 30U;  ///< of one decoded picture

/** A picture out of a file's bytes: PNG, JPEG, BMP, TGA, PSD, GIF (its first frame) to rgba8,
 * Radiance HDR to rgba32f. What the header claims is checked against the bounds above before memory
 * is taken. Broken and truncated files, also those that only lack their last rows, are refused; the
 * error starts with the name. Any thread. */
vlCommon::Result<Image> decode(std::span<const std::byte> bytes,
                               vlMemory::StringView nameForErrors);

} // namespace vlImages
