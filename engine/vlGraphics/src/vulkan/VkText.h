#pragma once
#include "vulkan/Vk.h"

#include <vlCommon/Result.h>

#include <string>
#include <string_view>

namespace vlGraphics::vulkan {

/// "out of device memory" and the like, for error lines.
std::string_view resultText(VkResult result);
/// "<what>: <the result's text>" unless it is a success.
vlCommon::Result<> check(VkResult result, std::string_view what);
/// One line through vlGraphics::LogManager.
void logLine(std::string_view text);

} // namespace vlGraphics::vulkan
