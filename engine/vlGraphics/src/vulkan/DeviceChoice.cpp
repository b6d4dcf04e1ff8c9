#include "vulkan/DeviceChoice.h"

#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace vlGraphics::vulkan {
namespace {

int rank(VkPhysicalDeviceType type) {
    switch (type) {
    case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
        return 0;
    case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
        return 1;
    case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
        return 2;
    case VK_PHYSICAL_DEVICE_TYPE_CPU:
        return 3;
    default:
        return 4;
    }
}

std::optional<std::uint32_t> graphicsFamily(VkPhysicalDevice device) {
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, families.data());
    constexpr VkQueueFlags wanted = VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT;
    for (std::uint32_t i = 0; i < count; ++i)
        if ((families[i].queueFlags & wanted) == wanted) return i;
    return std::nullopt;
}

std::vector<VkExtensionProperties> extensionsOf(VkPhysicalDevice device) {
    std::uint32_t count = 0;
    vkEnumerateDeviceExtensionProperties(device, nullptr, &count, nullptr);
    std::vector<VkExtensionProperties> extensions(count);
    vkEnumerateDeviceExtensionProperties(device, nullptr, &count, extensions.data());
    return extensions;
}

bool contains(const std::vector<VkExtensionProperties>& extensions, const char* name) {
    return std::any_of(
            extensions.begin(), extensions.end(), [name](const VkExtensionProperties& extension) {
                return std::strcmp(extension.extensionName, name) == 0;
            });
}

/// What states ask for, what stages may ask for, and reads and writes that stay inside buffers.
constexpr VkBool32 VkPhysicalDeviceFeatures::*wantedFeatures[] = {
        &VkPhysicalDeviceFeatures::robustBufferAccess,
        &VkPhysicalDeviceFeatures::independentBlend,
        &VkPhysicalDeviceFeatures::geometryShader,
        &VkPhysicalDeviceFeatures::tessellationShader,
        &VkPhysicalDeviceFeatures::dualSrcBlend,
        &VkPhysicalDeviceFeatures::depthClamp,
        &VkPhysicalDeviceFeatures::depthBiasClamp,
        &VkPhysicalDeviceFeatures::fillModeNonSolid,
        &VkPhysicalDeviceFeatures::samplerAnisotropy,
        &VkPhysicalDeviceFeatures::fragmentStoresAndAtomics,
        &VkPhysicalDeviceFeatures::vertexPipelineStoresAndAtomics,
        &VkPhysicalDeviceFeatures::shaderTessellationAndGeometryPointSize,
        &VkPhysicalDeviceFeatures::shaderClipDistance,
        &VkPhysicalDeviceFeatures::shaderCullDistance,
        &VkPhysicalDeviceFeatures::shaderInt16,
        &VkPhysicalDeviceFeatures::shaderInt64,
        &VkPhysicalDeviceFeatures::shaderFloat64,
        &VkPhysicalDeviceFeatures::shaderImageGatherExtended,
        &VkPhysicalDeviceFeatures::shaderResourceMinLod,
        &VkPhysicalDeviceFeatures::shaderStorageImageExtendedFormats,
        &VkPhysicalDeviceFeatures::shaderStorageImageMultisample,
        &VkPhysicalDeviceFeatures::shaderStorageImageReadWithoutFormat,
        &VkPhysicalDeviceFeatures::shaderStorageImageWriteWithoutFormat,
        &VkPhysicalDeviceFeatures::shaderUniformBufferArrayDynamicIndexing,
        &VkPhysicalDeviceFeatures::shaderSampledImageArrayDynamicIndexing,
        &VkPhysicalDeviceFeatures::shaderStorageBufferArrayDynamicIndexing,
        &VkPhysicalDeviceFeatures::shaderStorageImageArrayDynamicIndexing,
        &VkPhysicalDeviceFeatures::imageCubeArray,
        &VkPhysicalDeviceFeatures::multiViewport,
        &VkPhysicalDeviceFeatures::sampleRateShading};

VkPhysicalDeviceFeatures usedFeatures(const VkPhysicalDeviceFeatures& available) {
    VkPhysicalDeviceFeatures used{};
    for (const auto member : wantedFeatures)
        used.*member = available.*member;
    return used;
}

/// The name of the first thing that the device lacks; empty when it can be used.
std::string_view missingThing(VkPhysicalDevice device,
                              const VkPhysicalDeviceProperties& properties) {
    if (properties.apiVersion < VK_API_VERSION_1_3) return "Vulkan 1.3";
    auto features13 = vulkan::vkInfo<VkPhysicalDeviceVulkan13Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES);
    auto features12 = vulkan::vkInfo<VkPhysicalDeviceVulkan12Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES);
    features12.pNext = &features13;
    auto features =
            vulkan::vkInfo<VkPhysicalDeviceFeatures2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2);
    features.pNext = &features12;
    vkGetPhysicalDeviceFeatures2(device, &features);
    if (features13.dynamicRendering != VK_TRUE) return "dynamic rendering";
    if (features13.synchronization2 != VK_TRUE) return "synchronization2";
    if (features13.maintenance4 != VK_TRUE) return "maintenance4";
    if (features12.timelineSemaphore != VK_TRUE) return "timeline semaphores";
    if (!graphicsFamily(device)) return "a graphics queue";
    return {};
}

bool customBorderColors(VkPhysicalDevice device,
                        const std::vector<VkExtensionProperties>& extensions) {
    if (!contains(extensions, VK_EXT_CUSTOM_BORDER_COLOR_EXTENSION_NAME)) return false;
    auto border = vulkan::vkInfo<VkPhysicalDeviceCustomBorderColorFeaturesEXT>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_CUSTOM_BORDER_COLOR_FEATURES_EXT);
    auto features =
            vulkan::vkInfo<VkPhysicalDeviceFeatures2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2);
    features.pNext = &border;
    vkGetPhysicalDeviceFeatures2(device, &features);
    return border.customBorderColors == VK_TRUE && border.customBorderColorWithoutFormat == VK_TRUE;
}

bool mirrorClamp(VkPhysicalDevice device) {
    auto features12 = vulkan::vkInfo<VkPhysicalDeviceVulkan12Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES);
    auto features =
            vulkan::vkInfo<VkPhysicalDeviceFeatures2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2);
    features.pNext = &features12;
    vkGetPhysicalDeviceFeatures2(device, &features);
    return features12.samplerMirrorClampToEdge == VK_TRUE;
}

bool smoothLines(VkPhysicalDevice device, const std::vector<VkExtensionProperties>& extensions) {
    if (!contains(extensions, VK_EXT_LINE_RASTERIZATION_EXTENSION_NAME)) return false;
    auto lines = vulkan::vkInfo<VkPhysicalDeviceLineRasterizationFeaturesEXT>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_LINE_RASTERIZATION_FEATURES_EXT);
    auto features =
            vulkan::vkInfo<VkPhysicalDeviceFeatures2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2);
    features.pNext = &lines;
    vkGetPhysicalDeviceFeatures2(device, &features);
    return lines.smoothLines == VK_TRUE;
}

bool canBeDepthTarget(VkPhysicalDevice device, VkFormat format) {
    VkFormatProperties properties{};
    vkGetPhysicalDeviceFormatProperties(device, format, &properties);
    return (properties.optimalTilingFeatures & VK_FORMAT_FEATURE_DEPTH_STENCIL_ATTACHMENT_BIT) != 0;
}

void leaveOff(DeviceChoice& choice, std::string_view names) {
    const auto isNamed = [names](std::string_view name) {
        for (std::size_t at = names.find(name); at != std::string_view::npos;
             at = names.find(name, at + 1)) {
            const std::size_t end = at + name.size();
            if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' '))
                return true;
        }
        return false;
    };
    constexpr std::pair<std::string_view, VkBool32 VkPhysicalDeviceFeatures::*> features[] = {
            {"independentBlend", &VkPhysicalDeviceFeatures::independentBlend},
            {"dualSrcBlend", &VkPhysicalDeviceFeatures::dualSrcBlend},
            {"depthClamp", &VkPhysicalDeviceFeatures::depthClamp},
            {"depthBiasClamp", &VkPhysicalDeviceFeatures::depthBiasClamp},
            {"fillModeNonSolid", &VkPhysicalDeviceFeatures::fillModeNonSolid},
            {"samplerAnisotropy", &VkPhysicalDeviceFeatures::samplerAnisotropy},
            {"fragmentStoresAndAtomics", &VkPhysicalDeviceFeatures::fragmentStoresAndAtomics},
            {"vertexPipelineStoresAndAtomics",
             &VkPhysicalDeviceFeatures::vertexPipelineStoresAndAtomics}};
    for (const auto& [name, member] : features)
        if (isNamed(name)) choice.features.*member = VK_FALSE;
    if (isNamed("customBorderColors")) choice.hasCustomBorderColors = false;
    if (isNamed("samplerMirrorClampToEdge")) choice.hasMirrorClamp = false;
    if (isNamed("smoothLines")) choice.hasSmoothLines = false;
    if (isNamed("D32_SFLOAT_S8_UINT") &&
        canBeDepthTarget(choice.device, VK_FORMAT_D24_UNORM_S8_UINT))
        choice.stencilFormat = VK_FORMAT_D24_UNORM_S8_UINT;
}

DeviceChoice describe(VkPhysicalDevice device, const VkPhysicalDeviceProperties& properties) {
    DeviceChoice choice;
    choice.device = device;
    choice.properties = properties;
    choice.queueFamily = graphicsFamily(device).value_or(0);
    VkPhysicalDeviceFeatures available{};
    vkGetPhysicalDeviceFeatures(device, &available);
    choice.features = usedFeatures(available);
    const std::vector<VkExtensionProperties> extensions = extensionsOf(device);
    choice.hasSwapchain = contains(extensions, VK_KHR_SWAPCHAIN_EXTENSION_NAME);
    choice.hasCustomBorderColors = customBorderColors(device, extensions);
    choice.hasMirrorClamp = mirrorClamp(device);
    choice.hasSmoothLines = smoothLines(device, extensions);
    // Every device has one of the two.
    if (!canBeDepthTarget(device, choice.stencilFormat))
        choice.stencilFormat = VK_FORMAT_D24_UNORM_S8_UINT;
    if (const char* without = std::getenv("VL_DEVICE_WITHOUT")) leaveOff(choice, without);

    auto driver = vulkan::vkInfo<VkPhysicalDeviceDriverProperties>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES);
    auto all = vulkan::vkInfo<VkPhysicalDeviceProperties2>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2);
    all.pNext = &driver;
    vkGetPhysicalDeviceProperties2(device, &all);
    choice.description = fmt::format("{}, {}", properties.deviceName, driver.driverInfo);
    return choice;
}

} // namespace

vlCommon::Result<DeviceChoice> chooseDevice(VkInstance instance) {
    std::uint32_t count = 0;
    const VkResult result = vkEnumeratePhysicalDevices(instance, &count, nullptr);
    if (result < VK_SUCCESS && result != VK_ERROR_INITIALIZATION_FAILED)
        return tl::unexpected(check(result, "Could not list the Vulkan devices").error());
    std::vector<VkPhysicalDevice> devices(count);
    if (count > 0) vkEnumeratePhysicalDevices(instance, &count, devices.data());
    if (count == 0)
        return vlCommon::fail("No Vulkan driver was found: install one for the graphics card, or a "
                              "software driver such as mesa-vulkan-drivers.");

    const char* wish = std::getenv("VL_DEVICE");
    const std::string_view wished = wish != nullptr ? wish : "";
    std::string refusals;
    std::optional<DeviceChoice> best;
    for (VkPhysicalDevice device : devices) {
        VkPhysicalDeviceProperties properties{};
        vkGetPhysicalDeviceProperties(device, &properties);
        const std::string_view name = properties.deviceName;
        if (name.find(wished) == std::string_view::npos) continue;
        const std::string_view missing = missingThing(device, properties);
        if (!missing.empty()) {
            refusals += fmt::format("{}'{}' lacks {}", refusals.empty() ? "" : ", ", name, missing);
            continue;
        }
        if (best && rank(best->properties.deviceType) <= rank(properties.deviceType)) continue;
        best = describe(device, properties);
    }
    if (best) return *std::move(best);
    if (!refusals.empty())
        return vlCommon::fail(fmt::format("No usable Vulkan device was found: {}.", refusals));
    return vlCommon::fail(
            fmt::format("No Vulkan device has '{}' in its name, as VL_DEVICE asks for.", wished));
}

} // namespace vlGraphics::vulkan
