#pragma once
#include "vulkan/Vk.h"

#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstdint>

namespace vlGraphics::vulkan {

/** A physical device, and what of it the engine turns on. */
struct DeviceChoice {
    VkPhysicalDevice device = VK_NULL_HANDLE;
    std::uint32_t queueFamily = 0;
    VkPhysicalDeviceProperties properties{};
    VkPhysicalDeviceFeatures features{}; ///< to enable: what the engine uses and the device has
    bool hasSwapchain = false;
    bool hasCustomBorderColors = false;
    bool hasMirrorClamp = false;                           ///< the address mode that mirrors once
    bool hasSmoothLines = false;                           ///< anti-aliased
    VkFormat stencilFormat = VK_FORMAT_D32_SFLOAT_S8_UINT; ///< of depth with stencil
    vlMemory::String description; ///< "llvmpipe (LLVM 15.0.6, 256 bits), Mesa 22.3.6 (LLVM 15.0.6)"
};

/** Takes a discrete device before an integrated, a virtual and a software one, and of several that
 *  one whose name contains the environment variable VL_DEVICE. Fails with one line that says what
 *  is missing. What the environment variable VL_DEVICE_WITHOUT names, separated by spaces, is left
 *  off, so that what a poorer device draws can be seen on any: independentBlend, dualSrcBlend,
 *  depthClamp, depthBiasClamp, fillModeNonSolid, samplerAnisotropy, fragmentStoresAndAtomics,
 *  vertexPipelineStoresAndAtomics, customBorderColors, samplerMirrorClampToEdge, smoothLines,
 *  D32_SFLOAT_S8_UINT. */
vlCommon::Result<DeviceChoice> chooseDevice(VkInstance instance);

} // namespace vlGraphics::vulkan
