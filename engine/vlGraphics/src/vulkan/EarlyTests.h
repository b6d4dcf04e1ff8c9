#pragma once
#include <cstdint>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

/** A pixel stage of which depth and stencil are tested before it and not after. Devices do that by
 *  themselves where nobody can tell the difference, but not for a stage that writes to memory.
 * Empty where the stage itself has a say in the tests (it discards, or gives a depth or a
 * coverage), and where they are early anyhow. */
std::vector<std::uint32_t> withEarlyTests(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::vulkan
