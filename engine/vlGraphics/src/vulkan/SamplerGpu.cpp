#include "vulkan/SamplerGpu.h"

#include "vulkan/Device.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace vlGraphics {

using vulkan::Device;

namespace {

/// The nearest of the three border colours that every device has.
VkBorderColor nearestBorder(const std::array<float, 4>& color) {
    if (color[3] < 0.5F) return VK_BORDER_COLOR_FLOAT_TRANSPARENT_BLACK;
    return color[0] + color[1] + color[2] < 1.5F ? VK_BORDER_COLOR_FLOAT_OPAQUE_BLACK
                                                 : VK_BORDER_COLOR_FLOAT_OPAQUE_WHITE;
}

bool isStandardBorder(const std::array<float, 4>& color) {
    using Color = std::array<float, 4>;
    return color == Color{0, 0, 0, 0} || color == Color{0, 0, 0, 1} || color == Color{1, 1, 1, 1};
}

void note(const Sampler& sampler, std::string_view fault) {
    Device::getInstance()->logOnce(
            fmt::format("{} '{}': {}", Sampler::kindName, sampler.getName(), fault));
}

bool showsBorder(const Sampler::Settings& settings) {
    constexpr auto border = TEXTURE_ADDRESS_MODE::BORDER;
    return settings.addressU == border || settings.addressV == border ||
           settings.addressW == border;
}

/// What the device does in another way than asked for.
void noteFallbacks(const Sampler& sampler) {
    const Sampler::Settings& settings = sampler.getSettings();
    const Device& device = *Device::getInstance();
    constexpr auto once = TEXTURE_ADDRESS_MODE::MIRROR_ONCE;
    const bool mirrorsOnce =
            settings.addressU == once || settings.addressV == once || settings.addressW == once;
    if (mirrorsOnce && !device.choice().hasMirrorClamp)
        note(sampler, "the device cannot mirror once: the edge goes on instead");
    if (showsBorder(settings) && !isStandardBorder(settings.borderColor) &&
        !device.choice().hasCustomBorderColors)
        note(sampler,
             "the device has no such border colour: the nearest of transparent black, opaque black "
             "and opaque white takes its place");
    const float most = device.features().samplerAnisotropy == VK_TRUE
                               ? device.limits().maxSamplerAnisotropy
                               : 1.0F;
    if (vulkan::filterParts(settings.filter).anisotropic &&
        static_cast<float>(settings.anisotropy) > most)
        note(sampler, fmt::format("the device's anisotropy goes up to {}", most));
    if (std::abs(settings.lodBias) > device.limits().maxSamplerLodBias)
        note(sampler,
             fmt::format("the device's LOD bias goes up to {}", device.limits().maxSamplerLodBias));
}

VkSamplerAddressMode addressMode(TEXTURE_ADDRESS_MODE mode) {
    const VkSamplerAddressMode translated = vulkan::addressMode(mode);
    const bool missing = translated == VK_SAMPLER_ADDRESS_MODE_MIRROR_CLAMP_TO_EDGE &&
                         !Device::getInstance()->choice().hasMirrorClamp;
    return missing ? VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE : translated;
}

VkSamplerCreateInfo samplerInfo(const Sampler::Settings& settings) {
    const Device& device = *Device::getInstance();
    const vulkan::FilterParts filter = vulkan::filterParts(settings.filter);
    auto info = vulkan::vkInfo<VkSamplerCreateInfo>(VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO);
    info.magFilter = filter.mag;
    info.minFilter = filter.min;
    info.mipmapMode = filter.mip;
    info.addressModeU = addressMode(settings.addressU);
    info.addressModeV = addressMode(settings.addressV);
    info.addressModeW = addressMode(settings.addressW);
    info.mipLodBias = std::clamp(settings.lodBias,
                                 -device.limits().maxSamplerLodBias,
                                 device.limits().maxSamplerLodBias);
    const float anisotropy =
            std::min(static_cast<float>(settings.anisotropy), device.limits().maxSamplerAnisotropy);
    info.anisotropyEnable =
            filter.anisotropic && anisotropy > 1 && device.features().samplerAnisotropy == VK_TRUE
                    ? VK_TRUE
                    : VK_FALSE;
    info.maxAnisotropy = std::max(1.0F, anisotropy);
    info.compareEnable = filter.compares ? VK_TRUE : VK_FALSE;
    info.compareOp = vulkan::compareOperation(settings.comparison);
    info.minLod = settings.minLod;
    info.maxLod = std::max(settings.minLod, settings.maxLod);
    info.borderColor = nearestBorder(settings.borderColor);
    return info;
}

} // namespace

Sampler::Sampler() = default;
Sampler::~Sampler() = default;

Sampler::Gpu::~Gpu() {
    Device::getInstance()->retire(sampler);
}

vlCommon::Result<> Sampler::load() {
    if (gpu_) return {};
    const Device* device = Device::getInstance();
    if (device == nullptr)
        return vlCommon::fail(fmt::format("sampler '{}': there is no device", getName()));
    noteFallbacks(*this);
    VkSamplerCreateInfo info = samplerInfo(settings_);
    auto border = vulkan::vkInfo<VkSamplerCustomBorderColorCreateInfoEXT>(
            VK_STRUCTURE_TYPE_SAMPLER_CUSTOM_BORDER_COLOR_CREATE_INFO_EXT);
    std::copy(settings_.borderColor.begin(),
              settings_.borderColor.end(),
              border.customBorderColor.float32);
    if (showsBorder(settings_) && !isStandardBorder(settings_.borderColor) &&
        device->choice().hasCustomBorderColors) {
        info.borderColor = VK_BORDER_COLOR_FLOAT_CUSTOM_EXT;
        info.pNext = &border;
    }
    VkSampler sampler = VK_NULL_HANDLE;
    const VkResult result = vkCreateSampler(device->get(), &info, nullptr, &sampler);
    if (result != VK_SUCCESS) return vulkan::check(result, fmt::format("sampler '{}'", getName()));
    gpu_ = std::make_unique<Gpu>();
    gpu_->sampler = sampler;
    gpu_->compares = info.compareEnable == VK_TRUE;
    markChanged();
    return {};
}

void Sampler::unload() {
    if (!gpu_) return;
    gpu_.reset();
    markChanged();
}

} // namespace vlGraphics
