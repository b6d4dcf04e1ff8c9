#include "render/Fallbacks.h"

#include "vulkan/Device.h"
#include "vulkan/SamplerGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Translate.h"
#include "vulkan/Upload.h"
#include "vulkan/VkText.h"

#include <vlGraphics/DefaultNames.h>

namespace vlGraphics::render {

using vulkan::Device;
using vulkan::GpuBuffer;
using vulkan::GpuImage;

namespace {

/// Bytes; reads and writes behind it are cut off by the device.
constexpr VkDeviceSize bufferSize = 4096;

struct Shape {
    VkImageViewType view = VK_IMAGE_VIEW_TYPE_2D;
    std::uint32_t layers = 1;
    bool isMultisampled = false;
};

Shape shapeOf(RESOURCE_SHAPE shape) {
    switch (shape) {
    case RESOURCE_SHAPE::TEXTURE_1D:
        return {VK_IMAGE_VIEW_TYPE_1D, 1, false};
    case RESOURCE_SHAPE::TEXTURE_1D_ARRAY:
        return {VK_IMAGE_VIEW_TYPE_1D_ARRAY, 1, false};
    case RESOURCE_SHAPE::TEXTURE_2D_ARRAY:
        return {VK_IMAGE_VIEW_TYPE_2D_ARRAY, 1, false};
    case RESOURCE_SHAPE::TEXTURE_2D_MS:
        return {VK_IMAGE_VIEW_TYPE_2D, 1, true};
    case RESOURCE_SHAPE::TEXTURE_2D_MS_ARRAY:
        return {VK_IMAGE_VIEW_TYPE_2D_ARRAY, 1, true};
    case RESOURCE_SHAPE::TEXTURE_3D:
        return {VK_IMAGE_VIEW_TYPE_3D, 1, false};
    case RESOURCE_SHAPE::TEXTURE_CUBE:
        return {VK_IMAGE_VIEW_TYPE_CUBE, 6, false};
    case RESOURCE_SHAPE::TEXTURE_CUBE_ARRAY:
        return {VK_IMAGE_VIEW_TYPE_CUBE_ARRAY, 6, false};
    default:
        return {};
    }
}

/// Of a texture that is read.
VkFormat formatFor(const ReflectedResource& resource) {
    if (resource.isComparison) return VK_FORMAT_D32_SFLOAT;
    switch (vulkan::numberKind(resource.texelFormat)) {
    case vulkan::NumberKind::unsignedInteger:
        return VK_FORMAT_R32_UINT;
    case vulkan::NumberKind::signedInteger:
        return VK_FORMAT_R32_SINT;
    case vulkan::NumberKind::floating:
        break;
    }
    return VK_FORMAT_R8G8B8A8_UNORM;
}

bool canBeCompared(VkFormat format) {
    auto all = vulkan::vkInfo<VkFormatProperties3>(VK_STRUCTURE_TYPE_FORMAT_PROPERTIES_3);
    auto properties = vulkan::vkInfo<VkFormatProperties2>(VK_STRUCTURE_TYPE_FORMAT_PROPERTIES_2);
    properties.pNext = &all;
    vkGetPhysicalDeviceFormatProperties2(Device::getInstance()->physical(), format, &properties);
    return (all.optimalTilingFeatures & VK_FORMAT_FEATURE_2_SAMPLED_IMAGE_DEPTH_COMPARISON_BIT) !=
           0;
}

vlCommon::Result<GpuBuffer> makeBuffer() {
    auto made = GpuBuffer::create(
            bufferSize, vulkan::shaderBufferUsage, vulkan::BufferMemory::device, "stand-in buffer");
    if (!made) return made;
    if (auto zeroed = Device::getInstance()->upload().zero(*made); !zeroed)
        return tl::unexpected(zeroed.error());
    return made;
}

vlCommon::Result<GpuImage>
makeImage(RESOURCE_SHAPE wanted, VkFormat format, VkImageUsageFlags usage) {
    const Shape shape = shapeOf(wanted);
    vulkan::ImageDescription description;
    description.shape = shape.view;
    description.layerCount = shape.layers;
    if (shape.isMultisampled) description.samples = VK_SAMPLE_COUNT_4_BIT;
    description.format = format;
    description.viewFormat = format;
    description.usage = usage | VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    auto image = GpuImage::create(description, "stand-in texture");
    if (!image) return image;
    if (auto cleared = Device::getInstance()->upload().clear(*image); !cleared)
        return tl::unexpected(cleared.error());
    return image;
}

} // namespace

vlCommon::Result<> Fallbacks::create(Fallbacks& made) {
    const Device& device = *Device::getInstance();
    for (GpuBuffer* buffer : {&made.zeros_, &made.scratch_}) {
        auto one = makeBuffer();
        if (!one) return tl::unexpected(one.error());
        *buffer = *std::move(one);
    }
    auto info = vulkan::vkInfo<VkSamplerCreateInfo>(VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO);
    VkResult result = vkCreateSampler(device.get(), &info, nullptr, &made.nearest_);
    info.compareEnable = VK_TRUE;
    info.compareOp = VK_COMPARE_OP_LESS_OR_EQUAL;
    if (result == VK_SUCCESS)
        result = vkCreateSampler(device.get(), &info, nullptr, &made.comparing_);
    return vulkan::check(result, "Could not make the stand-in samplers");
}

Fallbacks::~Fallbacks() {
    for (const VkSampler sampler : {nearest_, comparing_})
        if (sampler != VK_NULL_HANDLE) Device::getInstance()->retire(sampler);
}

GpuImage* Fallbacks::find(Images& images, Key key, VkImageUsageFlags usage) {
    const auto [place, isNew] = images.try_emplace(key);
    if (isNew) {
        if (auto made = makeImage(key.first, key.second, usage))
            place->second = *std::move(made);
        else
            Device::getInstance()->logOnce(made.error().message);
    }
    return place->second ? &place->second : nullptr;
}

GpuImage* Fallbacks::texture(const ReflectedResource& resource) {
    const Texture* texture = TextureManager::getInstance()->get(DefaultNames::texture);
    if (texture != nullptr && texture->gpu() != nullptr && fits(texture->gpu()->image, resource))
        return &texture->gpu()->image;
    return find(read_, {resource.shape, formatFor(resource)}, VK_IMAGE_USAGE_SAMPLED_BIT);
}

GpuImage* Fallbacks::writtenTexture(const ReflectedResource& resource) {
    const VkFormat format = vulkan::texelFormat(resource.texelFormat);
    return find(written_,
                {resource.shape, format},
                VK_IMAGE_USAGE_STORAGE_BIT | VK_IMAGE_USAGE_SAMPLED_BIT);
}

VkSampler Fallbacks::sampler(const ReflectedResource& resource) const {
    if (resource.isComparison) return comparing_;
    const Sampler* sampler = SamplerManager::getInstance()->get(DefaultNames::sampler);
    return sampler != nullptr && sampler->gpu() != nullptr ? sampler->gpu()->sampler : nearest_;
}

bool fits(const GpuImage& image, const ReflectedResource& resource) {
    const VkFormat format = image.description().viewFormat;
    if (resource.shape != RESOURCE_SHAPE::TEXTURE_2D ||
        (image.description().usage & VK_IMAGE_USAGE_SAMPLED_BIT) == 0)
        return false;
    if (resource.isComparison) return canBeCompared(format);
    return vulkan::numberKind(format) == vulkan::numberKind(resource.texelFormat);
}

} // namespace vlGraphics::render
