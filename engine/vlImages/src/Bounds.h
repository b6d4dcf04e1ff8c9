#pragma once
#include <vlCommon/Result.h>
#include <vlImages/PixelFormat.h>
#include <vlMemory/String.h>

#include <cstdint>

namespace vlImages {

/// Refuses what a header claims beyond the limits of a decoded picture, before memory is taken for
/// it.
vlCommon::Result<> checkBounds(vlMemory::StringView name,
                               std::uint64_t width,
                               std::uint64_t height,
                               PixelFormat format);

} // namespace vlImages
