#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

/** A pixel stage whose output 1 blends as the second source of output 0. HLSL writes both alike,
 *  as targets 0 and 1; Vulkan tells them apart in the code. Empty when there is no output 1. */
std::vector<std::uint32_t> withSecondSource(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::vulkan
