#include "vulkan/Readback.h"

#include "vulkan/Device.h"
#include "vulkan/Upload.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

namespace vlGraphics::vulkan {
namespace {

float halfToFloat(std::uint32_t half) {
    const float sign = (half & 0x8000U) != 0 ? -1.0F : 1.0F;
    const int exponent = static_cast<int>((half >> 10U) & 31U);
    const auto mantissa = static_cast<float>(half & 1023U);
    if (exponent == 0) return sign * std::ldexp(mantissa, -24);
    if (exponent == 31) return mantissa == 0 ? sign * INFINITY : NAN;
    return sign * std::ldexp(1024.0F + mantissa, exponent - 25);
}

/// An unsigned float of 11 or 10 bits: a half without sign and with fewer bits behind the point.
float smallFloat(std::uint32_t bits, std::uint32_t mantissaBits) {
    return halfToFloat(bits << (10U - mantissaBits));
}

template <class Value> Value valueAt(const std::byte* at, std::size_t index = 0) {
    Value value;
    std::memcpy(&value, at + index * sizeof(Value), sizeof(Value));
    return value;
}

using Pixel = std::array<float, 4>;

Pixel decodePixel(VkFormat format, const std::byte* at) {
    const auto half = [at](std::size_t index) {
        return halfToFloat(valueAt<std::uint16_t>(at, index));
    };
    const auto byte = [at](std::size_t index) {
        return static_cast<float>(std::to_integer<unsigned>(at[index])) / 255.0F;
    };
    switch (format) {
    case VK_FORMAT_R32G32B32A32_SFLOAT:
        return valueAt<Pixel>(at);
    case VK_FORMAT_R16G16B16A16_SFLOAT:
        return {half(0), half(1), half(2), half(3)};
    case VK_FORMAT_R32G32_SFLOAT:
        return {valueAt<float>(at), valueAt<float>(at, 1), 0, 1};
    case VK_FORMAT_R16G16_SFLOAT:
        return {half(0), half(1), 0, 1};
    case VK_FORMAT_R8G8_UNORM:
        return {byte(0), byte(1), 0, 1};
    case VK_FORMAT_R16_SFLOAT:
        return {half(0), half(0), half(0), 1};
    case VK_FORMAT_D24_UNORM_S8_UINT: {
        const std::uint32_t bits = valueAt<std::uint32_t>(at) & 0xFFFFFFU;
        const float value = static_cast<float>(bits) / 16777215.0F;
        return {value, value, value, 1};
    }
    case VK_FORMAT_A2B10G10R10_UNORM_PACK32: {
        const auto bits = valueAt<std::uint32_t>(at);
        const auto ten = [bits](std::uint32_t shift) {
            return static_cast<float>((bits >> shift) & 1023U) / 1023.0F;
        };
        return {ten(0), ten(10), ten(20), static_cast<float>(bits >> 30U) / 3.0F};
    }
    case VK_FORMAT_B10G11R11_UFLOAT_PACK32: {
        const auto bits = valueAt<std::uint32_t>(at);
        return {smallFloat(bits & 2047U, 6),
                smallFloat((bits >> 11U) & 2047U, 6),
                smallFloat(bits >> 22U, 5),
                1};
    }
    default: {
        const auto value = valueAt<float>(at);
        return {value, value, value, 1};
    }
    }
}

vlImages::Image floatPicture(VkFormat format, VkExtent2D size, const std::byte* pixels) {
    vlImages::Image picture(size.width, size.height, vlImages::PixelFormat::rgba32f);
    const std::size_t step = pixelSize(format);
    const std::size_t count = std::size_t{size.width} * size.height;
    for (std::size_t i = 0; i < count; ++i) {
        const Pixel pixel = decodePixel(format, pixels + i * step);
        std::memcpy(picture.pixels.data() + i * sizeof pixel, pixel.data(), sizeof pixel);
    }
    return picture;
}

} // namespace

std::uint32_t pixelSize(VkFormat format) {
    switch (format) {
    case VK_FORMAT_R8_UNORM:
        return 1;
    case VK_FORMAT_R8G8_UNORM:
    case VK_FORMAT_R16_SFLOAT:
        return 2;
    case VK_FORMAT_R16G16B16A16_SFLOAT:
    case VK_FORMAT_R32G32_SFLOAT:
    case VK_FORMAT_R32G32_UINT:
    case VK_FORMAT_R32G32_SINT:
        return 8;
    case VK_FORMAT_R32G32B32_SFLOAT:
    case VK_FORMAT_R32G32B32_UINT:
    case VK_FORMAT_R32G32B32_SINT:
        return 12;
    case VK_FORMAT_R32G32B32A32_SFLOAT:
    case VK_FORMAT_R32G32B32A32_UINT:
    case VK_FORMAT_R32G32B32A32_SINT:
        return 16;
    case VK_FORMAT_UNDEFINED:
        return 0;
    default:
        return 4;
    }
}

void recordReadback(VkCommandBuffer commands, GpuImage& image, VkRect2D area, VkBuffer target) {
    image.become(commands, ImageUse::transferSource);
    VkBufferImageCopy region{};
    region.imageSubresource = {image.readAspect(), 0, 0, 1};
    region.imageOffset = {area.offset.x, area.offset.y, 0};
    region.imageExtent = {area.extent.width, area.extent.height, 1};
    vkCmdCopyImageToBuffer(
            commands, image.get(), layoutOf(ImageUse::transferSource), target, 1, &region);
    auto barrier = vulkan::vkInfo<VkMemoryBarrier2>(VK_STRUCTURE_TYPE_MEMORY_BARRIER_2);
    barrier.srcStageMask = VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    barrier.srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT;
    barrier.dstAccessMask = VK_ACCESS_2_HOST_READ_BIT;
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.memoryBarrierCount = 1;
    info.pMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(commands, &info);
}

vlCommon::Result<GpuBuffer> readPixels(GpuImage& image, VkRect2D area, std::string_view what) {
    Device& device = *Device::getInstance();
    if (device.isRecordingFrame())
        return vlCommon::fail(
                fmt::format("{} cannot be read while a frame is being recorded", what));
    if (device.isLost()) return vlCommon::fail(fmt::format("{}: the device was lost", what));
    const VkDeviceSize size = VkDeviceSize{area.extent.width} * area.extent.height *
                              pixelSize(image.description().format);
    auto buffer =
            GpuBuffer::create(size, VK_BUFFER_USAGE_TRANSFER_DST_BIT, BufferMemory::readback, what);
    if (!buffer) return buffer;
    const VkCommandBuffer commands = device.upload().commands();
    if (commands == VK_NULL_HANDLE) return vlCommon::fail(fmt::format("{}: out of memory", what));
    recordReadback(commands, image, area, buffer->get());
    if (const VkResult result = device.upload().submit(); result != VK_SUCCESS)
        return tl::unexpected(check(result, what).error());
    device.waitFor(device.submitted());
    if (device.isLost()) return vlCommon::fail(fmt::format("{}: the device was lost", what));
    return buffer;
}

vlCommon::Result<vlImages::Image> readImage(GpuImage& image, std::string_view what) {
    const VkExtent2D size = image.extent();
    const auto buffer = readPixels(image, {{0, 0}, size}, what);
    if (!buffer) return tl::unexpected(buffer.error());
    const VkFormat format = image.description().format;
    vlImages::PixelFormat pixelFormat = vlImages::PixelFormat::rgba8;
    switch (format) {
    case VK_FORMAT_R8_UNORM:
        pixelFormat = vlImages::PixelFormat::r8;
        break;
    case VK_FORMAT_B8G8R8A8_UNORM:
    case VK_FORMAT_B8G8R8A8_SRGB:
        pixelFormat = vlImages::PixelFormat::bgra8;
        break;
    case VK_FORMAT_R8G8B8A8_UNORM:
    case VK_FORMAT_R8G8B8A8_SRGB:
    case VK_FORMAT_R32_UINT:
        break;
    default:
        return floatPicture(format, size, buffer->mapped());
    }
    vlImages::Image picture;
    picture.width = size.width;
    picture.height = size.height;
    picture.format = pixelFormat;
    picture.pixels = vlMemory::Buffer(std::vector<std::byte>(
            buffer->mapped(), buffer->mapped() + static_cast<std::ptrdiff_t>(buffer->size())));
    return picture;
}

} // namespace vlGraphics::vulkan
