#pragma once
// The one way to Vulkan's declarations: functions come from volk, X11 surfaces through XCB.
#ifndef VK_USE_PLATFORM_XCB_KHR
#define VK_USE_PLATFORM_XCB_KHR
#endif
#include <volk.h>

namespace vlGraphics::vulkan {

/// A description of that type with everything else zero.
template <class Info> Info vkInfo(VkStructureType type) {
    Info info{};
    info.sType = type;
    return info;
}

} // namespace vlGraphics::vulkan
