#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/Enumerations.h>

#include <cstdint>
#include <span>

namespace vlGraphics::vulkan {

/** Fails where a compiled stage wants more than the device has: points of a patch, vertices and
 *  numbers that a geometry stage makes, memory that a group shares. */
vlCommon::Result<> checkStageLimits(SHADER_TYPE stage, std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::vulkan
