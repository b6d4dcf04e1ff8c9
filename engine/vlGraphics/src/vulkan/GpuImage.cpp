#include "vulkan/GpuImage.h"

#include "vulkan/Device.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <array>

namespace vlGraphics::vulkan {
namespace {

struct Scope {
    VkImageLayout layout;
    VkPipelineStageFlags2 stages;
    VkAccessFlags2 access;
    bool writes;
};

constexpr VkPipelineStageFlags2 depthStages =
        VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT | VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT;
constexpr VkPipelineStageFlags2 shaderStages = VK_PIPELINE_STAGE_2_PRE_RASTERIZATION_SHADERS_BIT |
                                               VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT |
                                               VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT;

/// By ImageUse.
constexpr std::array<Scope, 8> scopes{{
        {VK_IMAGE_LAYOUT_UNDEFINED, VK_PIPELINE_STAGE_2_NONE, VK_ACCESS_2_NONE, false},
        {VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
         VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
         VK_ACCESS_2_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT,
         true},
        {VK_IMAGE_LAYOUT_DEPTH_STENCIL_ATTACHMENT_OPTIMAL,
         depthStages,
         VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT |
                 VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT,
         true},
        {VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL,
         shaderStages,
         VK_ACCESS_2_SHADER_SAMPLED_READ_BIT,
         false},
        {VK_IMAGE_LAYOUT_GENERAL,
         shaderStages,
         VK_ACCESS_2_SHADER_STORAGE_READ_BIT | VK_ACCESS_2_SHADER_STORAGE_WRITE_BIT,
         true},
        {VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL,
         VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT,
         VK_ACCESS_2_TRANSFER_READ_BIT,
         false},
        {VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
         VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT,
         VK_ACCESS_2_TRANSFER_WRITE_BIT,
         true},
        {VK_IMAGE_LAYOUT_PRESENT_SRC_KHR, VK_PIPELINE_STAGE_2_NONE, VK_ACCESS_2_NONE, false},
}};

const Scope& scopeOf(ImageUse use) {
    return scopes[static_cast<std::size_t>(use)];
}

} // namespace

VkImageLayout layoutOf(ImageUse use) {
    return scopeOf(use).layout;
}

void imageBarrier(VkCommandBuffer commands,
                  VkImage image,
                  VkImageSubresourceRange range,
                  ImageUse from,
                  ImageUse to) {
    const Scope& before = scopeOf(from);
    const Scope& after = scopeOf(to);
    auto barrier = vulkan::vkInfo<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    barrier.srcStageMask = before.stages;
    barrier.srcAccessMask = before.writes ? before.access : VK_ACCESS_2_NONE;
    barrier.dstStageMask = after.stages;
    barrier.dstAccessMask = after.access;
    barrier.oldLayout = before.layout;
    barrier.newLayout = after.layout;
    barrier.srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.image = image;
    barrier.subresourceRange = range;
    // An image without content may have been in any use before: its memory's last writes and reads
    // end first.
    if (from == ImageUse::undefined) {
        barrier.srcStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT;
        barrier.srcAccessMask = VK_ACCESS_2_MEMORY_WRITE_BIT;
    }
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.imageMemoryBarrierCount = 1;
    info.pImageMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(commands, &info);
}

namespace {

bool isPossible(const Device& device, const VkImageCreateInfo& info) {
    VkImageFormatProperties limits{};
    if (vkGetPhysicalDeviceImageFormatProperties(device.physical(),
                                                 info.format,
                                                 info.imageType,
                                                 info.tiling,
                                                 info.usage,
                                                 info.flags,
                                                 &limits) != VK_SUCCESS)
        return false;
    if (info.extent.width > limits.maxExtent.width || info.extent.height > limits.maxExtent.height)
        return false;
    if (info.arrayLayers > limits.maxArrayLayers ||
        (limits.sampleCounts & static_cast<VkSampleCountFlags>(info.samples)) == 0)
        return false;
    auto query = vulkan::vkInfo<VkDeviceImageMemoryRequirements>(
            VK_STRUCTURE_TYPE_DEVICE_IMAGE_MEMORY_REQUIREMENTS);
    query.pCreateInfo = &info;
    query.planeAspect = VK_IMAGE_ASPECT_COLOR_BIT;
    auto needs = vulkan::vkInfo<VkMemoryRequirements2>(VK_STRUCTURE_TYPE_MEMORY_REQUIREMENTS_2);
    vkGetDeviceImageMemoryRequirements(device.get(), &query, &needs);
    return needs.memoryRequirements.size <= limits.maxResourceSize;
}

VkImageType imageType(VkImageViewType shape) {
    switch (shape) {
    case VK_IMAGE_VIEW_TYPE_1D:
    case VK_IMAGE_VIEW_TYPE_1D_ARRAY:
        return VK_IMAGE_TYPE_1D;
    case VK_IMAGE_VIEW_TYPE_3D:
        return VK_IMAGE_TYPE_3D;
    default:
        return VK_IMAGE_TYPE_2D;
    }
}

bool isCube(VkImageViewType shape) {
    return shape == VK_IMAGE_VIEW_TYPE_CUBE || shape == VK_IMAGE_VIEW_TYPE_CUBE_ARRAY;
}

} // namespace

vlCommon::Result<GpuImage> GpuImage::create(const ImageDescription& description,
                                            std::string_view what) {
    const Device& device = *Device::getInstance();
    auto info = vulkan::vkInfo<VkImageCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO);
    if (description.viewFormat != description.format)
        info.flags = VK_IMAGE_CREATE_MUTABLE_FORMAT_BIT;
    if (isCube(description.shape)) info.flags |= VK_IMAGE_CREATE_CUBE_COMPATIBLE_BIT;
    info.imageType = imageType(description.shape);
    info.format = description.format;
    info.extent = {description.extent.width, description.extent.height, 1};
    info.mipLevels = description.mipCount;
    info.arrayLayers = description.layerCount;
    info.samples = description.samples;
    info.usage = description.usage;
    VmaAllocationCreateInfo allocation{};
    allocation.usage = VMA_MEMORY_USAGE_AUTO_PREFER_DEVICE;
    // An error instead of memory that the heap does not have.
    allocation.flags = VMA_ALLOCATION_CREATE_WITHIN_BUDGET_BIT;
    GpuImage made;
    made.description_ = description;
    const std::string size = fmt::format(
            "{}: {} by {} pixels", what, description.extent.width, description.extent.height);
    if (!isPossible(device, info))
        return vlCommon::fail(size + " are more than the device can have in that format");
    VkResult result = vmaCreateImage(
            device.allocator(), &info, &allocation, &made.image_, &made.allocation_, nullptr);
    if (result != VK_SUCCESS) return tl::unexpected(check(result, size).error());

    auto view = vulkan::vkInfo<VkImageViewCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO);
    view.image = made.image_;
    view.viewType = description.shape;
    view.format = description.viewFormat;
    view.subresourceRange = made.wholeRange();
    view.subresourceRange.aspectMask = made.readAspect();
    result = vkCreateImageView(device.get(), &view, nullptr, &made.view_);
    if (result == VK_SUCCESS && made.aspect() != made.readAspect()) {
        view.subresourceRange.aspectMask = made.aspect();
        result = vkCreateImageView(device.get(), &view, nullptr, &made.targetView_);
    }
    if (result != VK_SUCCESS) return tl::unexpected(check(result, size).error());
    return made;
}

GpuImage::~GpuImage() {
    if (image_ == VK_NULL_HANDLE) return;
    Device& device = *Device::getInstance();
    device.retire(view_);
    device.retire(targetView_);
    device.retire(image_, allocation_);
}

VkImageAspectFlags GpuImage::aspect() const {
    if (hasStencil(description_.format))
        return VK_IMAGE_ASPECT_DEPTH_BIT | VK_IMAGE_ASPECT_STENCIL_BIT;
    return readAspect();
}

VkImageAspectFlags GpuImage::readAspect() const {
    return isDepthFormat(description_.format) ? VK_IMAGE_ASPECT_DEPTH_BIT
                                              : VK_IMAGE_ASPECT_COLOR_BIT;
}

void GpuImage::become(VkCommandBuffer commands, ImageUse next, bool discard) {
    if (use_ == next && !scopeOf(next).writes) return;
    imageBarrier(commands, image_, wholeRange(), discard ? ImageUse::undefined : use_, next);
    use_ = next;
}

} // namespace vlGraphics::vulkan
