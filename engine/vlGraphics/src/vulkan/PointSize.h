#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

/** A vertex stage that gives its points the size of one pixel. HLSL has no word for it: there every
 *  point is one pixel, while Vulkan leaves the size of what says nothing undefined. Empty where
 *  the stage says it itself, or is not understood. */
std::vector<std::uint32_t> withPointSize(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::vulkan
