#include "vulkan/TexelViews.h"

#include "vulkan/Device.h"
#include "vulkan/Readback.h"

#include <algorithm>

namespace vlGraphics::vulkan {
namespace {

VkBufferView makeView(const GpuBuffer& buffer, VkFormat format) {
    const Device& device = *Device::getInstance();
    VkFormatProperties properties{};
    vkGetPhysicalDeviceFormatProperties(device.physical(), format, &properties);
    // The buffer's usage says both, so that its format has to be good for both.
    constexpr VkFormatFeatureFlags needed =
            VK_FORMAT_FEATURE_UNIFORM_TEXEL_BUFFER_BIT | VK_FORMAT_FEATURE_STORAGE_TEXEL_BUFFER_BIT;
    const VkDeviceSize texel = pixelSize(format);
    if ((properties.bufferFeatures & needed) != needed || texel == 0) return VK_NULL_HANDLE;
    const VkDeviceSize count =
            std::min<VkDeviceSize>(buffer.size() / texel, device.limits().maxTexelBufferElements);
    if (count == 0) return VK_NULL_HANDLE;
    auto info = vulkan::vkInfo<VkBufferViewCreateInfo>(VK_STRUCTURE_TYPE_BUFFER_VIEW_CREATE_INFO);
    info.buffer = buffer.get();
    info.format = format;
    info.range = count * texel;
    VkBufferView view = VK_NULL_HANDLE;
    if (vkCreateBufferView(device.get(), &info, nullptr, &view) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return view;
}

} // namespace

TexelViews::~TexelViews() {
    for (const auto& [format, view] : views_)
        Device::getInstance()->retire(view);
}

VkBufferView TexelViews::get(const GpuBuffer& buffer, VkFormat format) {
    for (const auto& [known, view] : views_)
        if (known == format) return view;
    return views_.emplace_back(format, makeView(buffer, format)).second;
}

} // namespace vlGraphics::vulkan
