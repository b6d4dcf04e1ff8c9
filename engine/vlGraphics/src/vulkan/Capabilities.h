#pragma once
#include <vlCommon/Result.h>

#include <cstdint>
#include <span>

namespace vlGraphics::vulkan {

/** Fails with what the device lacks of what a compiled stage asks for. */
vlCommon::Result<> checkCapabilities(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::vulkan
