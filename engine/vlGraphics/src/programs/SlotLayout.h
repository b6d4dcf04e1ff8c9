#pragma once
#include <cstdint>

namespace vlGraphics {

/// Bytes from one slot's begin to the next one's: each begins at a multiple of 16, as HLSL's
/// registers of four floats do.
constexpr std::uint32_t slotStride(std::uint32_t bytes) {
    return (bytes + 15) / 16 * 16;
}

} // namespace vlGraphics
