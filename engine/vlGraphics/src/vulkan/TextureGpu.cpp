#include "vulkan/TextureGpu.h"

#include "vulkan/Device.h"
#include "vulkan/Readback.h"
#include "vulkan/Translate.h"
#include "vulkan/Upload.h"

#include <vlImages/Decoder.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <bit>

namespace vlGraphics {

using vulkan::Device;
using vulkan::GpuImage;

namespace {

std::string nameOf(const Texture& texture) {
    return fmt::format("texture '{}'", texture.getName());
}

/// Of a picture's pixels; the same as the setting, except where only the picture knows better.
FORMAT formatOf(const vlImages::Image& picture) {
    switch (picture.format) {
    case vlImages::PixelFormat::r8:
        return FORMAT::R8_UNORM;
    case vlImages::PixelFormat::bgra8:
        return FORMAT::B8G8R8A8_UNORM;
    case vlImages::PixelFormat::rgba32f:
        return FORMAT::R32G32B32A32_FLOAT;
    default:
        return FORMAT::R8G8B8A8_UNORM;
    }
}

VkImageUsageFlags usageOf(RENDER_FLAG flag) {
    VkImageUsageFlags usage = VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT |
                              VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    if (flag == RENDER_FLAG::COLOR_TARGET) usage |= VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT;
    if (flag == RENDER_FLAG::DEPTH_TARGET) usage |= VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT;
    return usage;
}

VkFormatFeatureFlags featuresOf(VkFormat format) {
    VkFormatProperties properties{};
    vkGetPhysicalDeviceFormatProperties(Device::getInstance()->physical(), format, &properties);
    return properties.optimalTilingFeatures;
}

VkFormatFeatureFlags neededFeatures(RENDER_FLAG flag) {
    VkFormatFeatureFlags needed = VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT;
    if (flag == RENDER_FLAG::COLOR_TARGET) needed |= VK_FORMAT_FEATURE_COLOR_ATTACHMENT_BIT;
    if (flag == RENDER_FLAG::DEPTH_TARGET) needed |= VK_FORMAT_FEATURE_DEPTH_STENCIL_ATTACHMENT_BIT;
    return needed;
}

std::uint32_t levelsOf(const Texture& texture, VkFormat format, bool hasPicture) {
    if (texture.getRenderFlag() != RENDER_FLAG::NONE || !hasPicture) return 1;
    const auto whole = static_cast<std::uint32_t>(
            std::bit_width(std::max(texture.getWidth(), texture.getHeight())));
    constexpr VkFormatFeatureFlags blits = VK_FORMAT_FEATURE_BLIT_SRC_BIT |
                                           VK_FORMAT_FEATURE_BLIT_DST_BIT |
                                           VK_FORMAT_FEATURE_SAMPLED_IMAGE_FILTER_LINEAR_BIT;
    if ((featuresOf(format) & blits) != blits) return 1;
    const std::uint32_t wanted = texture.getMipCount();
    return wanted == 0 ? whole : std::min(wanted, whole);
}

vlCommon::Result<> checkSize(const Texture& texture) {
    const std::uint32_t most =
            std::min(Texture::maxSize, Device::getInstance()->limits().maxImageDimension2D);
    const auto fits = [most](std::uint32_t side) { return side >= 1 && side <= most; };
    if (fits(texture.getWidth()) && fits(texture.getHeight())) return {};
    return vlCommon::fail(fmt::format("{}: {} by {} pixels, where 1 to {} on a side are possible",
                                      nameOf(texture),
                                      texture.getWidth(),
                                      texture.getHeight(),
                                      most));
}

vlCommon::Result<GpuImage> makeImage(const Texture& texture, const vlImages::Image& picture) {
    const FORMAT wanted = picture.empty() ? texture.getFormat() : formatOf(picture);
    VkFormat format =
            vulkan::textureFormat(wanted, texture.getRenderFlag(), texture.isGammaCorrected());
    const VkFormatFeatureFlags needed = neededFeatures(texture.getRenderFlag());
    if (vulkan::hasStencil(format) && (featuresOf(format) & needed) != needed)
        format = Device::getInstance()->choice().stencilFormat;
    if (format == VK_FORMAT_UNDEFINED || (featuresOf(format) & needed) != needed)
        return vlCommon::fail(fmt::format("{}: format {} cannot be used for it",
                                          nameOf(texture),
                                          static_cast<std::uint32_t>(wanted)));
    vulkan::ImageDescription description;
    description.extent = {texture.getWidth(), texture.getHeight()};
    description.mipCount = levelsOf(texture, format, !picture.empty());
    description.format = format;
    description.viewFormat = format;
    description.usage = usageOf(texture.getRenderFlag());
    return GpuImage::create(description, nameOf(texture));
}

/// The picture of a texture that was loaded before, from where it came.
vlCommon::Result<vlImages::Image> readAgain(const Texture& texture) {
    const vlMemory::String& path = texture.getSourcePath();
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(path);
    if (!bytes) return tl::unexpected(bytes.error());
    return vlImages::decode(bytes->span(), path);
}

} // namespace

Texture::Texture() = default;
Texture::~Texture() = default;

vlCommon::Result<> Texture::load() {
    if (gpu_) return {};
    if (Device::getInstance() == nullptr)
        return vlCommon::fail(fmt::format("{}: there is no device", nameOf(*this)));
    const bool isTarget = renderFlag_ != RENDER_FLAG::NONE;
    if (!isTarget && image_.empty() && !sourcePath_.empty()) {
        auto picture = readAgain(*this);
        if (!picture)
            return vlCommon::fail(fmt::format("{}: {}", nameOf(*this), picture.error().message));
        setImage(*std::move(picture));
    }
    if (auto checked = checkSize(*this); !checked) return checked;
    const bool hasPicture = !isTarget && image_.view().valid() && image_.width == width_ &&
                            image_.height == height_;
    auto image = makeImage(*this, hasPicture ? image_ : vlImages::Image());
    if (!image) return tl::unexpected(image.error());
    vulkan::Upload& upload = Device::getInstance()->upload();
    const auto filled =
            hasPicture ? upload.toImage(*image, image_.pixels.span()) : upload.clear(*image);
    if (!filled)
        return vlCommon::fail(fmt::format("{}: {}", nameOf(*this), filled.error().message));
    gpu_ = std::make_unique<Gpu>();
    gpu_->image = *std::move(image);
    // A picture that came from a file can be read from there again; others would be lost.
    if (!sourcePath_.empty()) image_ = {};
    markChanged();
    return {};
}

void Texture::unload() {
    if (!gpu_) return;
    gpu_.reset();
    markChanged();
}

bool Texture::isLoaded() const {
    return gpu_ != nullptr;
}

vlCommon::Result<vlImages::Image> Texture::convertToImage() const {
    if (!gpu_) return vlCommon::fail(fmt::format("{} is not loaded", nameOf(*this)));
    return vulkan::readImage(gpu_->image, nameOf(*this));
}

} // namespace vlGraphics
