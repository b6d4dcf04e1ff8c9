#include "vulkan/VkText.h"

#include <vlGraphics/LogManager.h>

#include <fmt/format.h>

namespace vlGraphics::vulkan {

std::string_view resultText(VkResult result) {
    switch (result) {
    case VK_ERROR_OUT_OF_HOST_MEMORY:
        return "out of memory";
    case VK_ERROR_OUT_OF_DEVICE_MEMORY:
        return "out of device memory";
    case VK_ERROR_OUT_OF_POOL_MEMORY:
    case VK_ERROR_FRAGMENTED_POOL:
        return "out of descriptor memory";
    case VK_ERROR_INITIALIZATION_FAILED:
        return "the driver could not initialise it";
    case VK_ERROR_DEVICE_LOST:
        return "the device was lost";
    case VK_ERROR_LAYER_NOT_PRESENT:
        return "a layer is missing";
    case VK_ERROR_EXTENSION_NOT_PRESENT:
        return "an extension is missing";
    case VK_ERROR_FEATURE_NOT_PRESENT:
        return "a feature is missing";
    case VK_ERROR_INCOMPATIBLE_DRIVER:
        return "no compatible driver";
    case VK_ERROR_FORMAT_NOT_SUPPORTED:
        return "the device does not support the format";
    case VK_ERROR_SURFACE_LOST_KHR:
        return "the window is gone";
    case VK_ERROR_NATIVE_WINDOW_IN_USE_KHR:
        return "the window is in use by somebody else";
    case VK_ERROR_OUT_OF_DATE_KHR:
        return "the window has changed";
    case VK_TIMEOUT:
        return "it took too long";
    default:
        return "the driver refused";
    }
}

vlCommon::Result<> check(VkResult result, std::string_view what) {
    if (result >= VK_SUCCESS) return {};
    const std::string_view text = resultText(result);
    if (text == "the driver refused")
        return vlCommon::fail(fmt::format("{}: {} ({})", what, text, static_cast<int>(result)));
    return vlCommon::fail(fmt::format("{}: {}", what, text));
}

void logLine(std::string_view text) {
    LogManager::getInstance().log(text);
}

} // namespace vlGraphics::vulkan
