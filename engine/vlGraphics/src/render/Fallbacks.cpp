#include "render/Fallbacks.h"

#include "vulkan/Device.h"
#include "vulkan/SamplerGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Upload.h"
#include "vulkan/VkText.h"

#include <vlGraphics/DefaultNames.h>

namespace vlGraphics::render {

using vulkan::Device;

vlCommon::Result<> Fallbacks::create(Fallbacks& made) {
    Device& device = *Device::getInstance();
    vulkan::ImageDescription description;
    description.format = VK_FORMAT_R8G8B8A8_UNORM;
    description.viewFormat = VK_FORMAT_R8G8B8A8_UNORM;
    description.usage = VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    auto image = vulkan::GpuImage::create(description, "stand-in texture");
    if (!image) return tl::unexpected(image.error());
    made.black_ = *std::move(image);
    if (auto cleared = device.upload().clear(made.black_); !cleared) return cleared;
    const auto info = vulkan::vkInfo<VkSamplerCreateInfo>(VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO);
    return vulkan::check(vkCreateSampler(device.get(), &info, nullptr, &made.nearest_),
                         "Could not make the stand-in sampler");
}

Fallbacks::~Fallbacks() {
    if (nearest_ != VK_NULL_HANDLE) Device::getInstance()->retire(nearest_);
}

vulkan::GpuImage& Fallbacks::texture() {
    const Texture* texture = TextureManager::getInstance()->get(DefaultNames::texture);
    return texture != nullptr && texture->gpu() != nullptr ? texture->gpu()->image : black_;
}

VkSampler Fallbacks::sampler() const {
    const Sampler* sampler = SamplerManager::getInstance()->get(DefaultNames::sampler);
    return sampler != nullptr && sampler->gpu() != nullptr ? sampler->gpu()->sampler : nearest_;
}

} // namespace vlGraphics::render
