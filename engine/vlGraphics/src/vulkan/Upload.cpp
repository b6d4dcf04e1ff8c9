#include "vulkan/Upload.h"

#include "vulkan/Device.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <algorithm>
#include <cstring>

namespace vlGraphics::vulkan {
namespace {

constexpr VkDeviceSize blockSize = VkDeviceSize{256} << 10U;
/// Staged memory that may wait for the device before loading waits itself.
constexpr VkDeviceSize maxPending = VkDeviceSize{64} << 20U;

} // namespace

Upload::Upload(Device& device) : device_(device) {
    auto info = vulkan::vkInfo<VkCommandPoolCreateInfo>(VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO);
    info.flags =
            VK_COMMAND_POOL_CREATE_TRANSIENT_BIT | VK_COMMAND_POOL_CREATE_RESET_COMMAND_BUFFER_BIT;
    info.queueFamilyIndex = device.queueFamily();
    if (vkCreateCommandPool(device.get(), &info, nullptr, &pool_) != VK_SUCCESS)
        pool_ = VK_NULL_HANDLE;
}

Upload::~Upload() {
    if (open_ != none) {
        vkEndCommandBuffer(slots_[open_].commands);
        device_.endWork();
    }
    device_.retire(pool_);
}

VkCommandBuffer Upload::commands() {
    if (open_ != none) return slots_[open_].commands;
    if (pool_ == VK_NULL_HANDLE) return VK_NULL_HANDLE;
    const std::uint64_t completed = device_.completed();
    const auto free = std::find_if(slots_.begin(), slots_.end(), [completed](const Slot& slot) {
        return slot.value <= completed;
    });
    std::size_t index = static_cast<std::size_t>(free - slots_.begin());
    if (free == slots_.end()) {
        auto info = vulkan::vkInfo<VkCommandBufferAllocateInfo>(
                VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO);
        info.commandPool = pool_;
        info.level = VK_COMMAND_BUFFER_LEVEL_PRIMARY;
        info.commandBufferCount = 1;
        Slot slot;
        if (vkAllocateCommandBuffers(device_.get(), &info, &slot.commands) != VK_SUCCESS)
            return VK_NULL_HANDLE;
        index = slots_.size();
        slots_.push_back(slot);
    }
    auto begin =
            vulkan::vkInfo<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    begin.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    if (vkBeginCommandBuffer(slots_[index].commands, &begin) != VK_SUCCESS) return VK_NULL_HANDLE;
    open_ = index;
    device_.beginWork();
    return slots_[index].commands;
}

VkCommandBuffer Upload::take() {
    if (open_ == none) return VK_NULL_HANDLE;
    Slot& slot = slots_[open_];
    // What was copied into buffers is read and overwritten by later passes; images have barriers of
    // their own.
    auto barrier = vulkan::vkInfo<VkMemoryBarrier2>(VK_STRUCTURE_TYPE_MEMORY_BARRIER_2);
    barrier.srcStageMask = VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    barrier.srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT;
    barrier.dstAccessMask = VK_ACCESS_2_MEMORY_READ_BIT | VK_ACCESS_2_MEMORY_WRITE_BIT;
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.memoryBarrierCount = 1;
    info.pMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(slot.commands, &info);
    vkEndCommandBuffer(slot.commands);
    slot.value = device_.submitted() + 1;
    open_ = none;
    pending_ = 0;
    device_.endWork();
    return slot.commands;
}

VkResult Upload::submit() {
    const VkCommandBuffer commands = take();
    if (commands == VK_NULL_HANDLE) return VK_SUCCESS;
    return device_.submit({&commands, 1}, {}, {});
}

vlCommon::Result<Upload::Slice> Upload::stage(std::span<const std::byte> bytes) {
    if (pending_ + bytes.size() > maxPending && open_ != none) {
        submit();
        device_.waitFor(device_.submitted());
        device_.collect();
    }
    if (commands() == VK_NULL_HANDLE)
        return vlCommon::fail("Could not record an upload: out of memory");
    pending_ += bytes.size();
    if (bytes.size() > blockSize / 2) {
        auto own = GpuBuffer::create(bytes.size(),
                                     VK_BUFFER_USAGE_TRANSFER_SRC_BIT,
                                     BufferMemory::staging,
                                     "upload memory");
        if (!own) return tl::unexpected(own.error());
        std::memcpy(own->mapped(), bytes.data(), bytes.size());
        return Slice{own->get(), 0};
    }
    const VkDeviceSize start = (used_ + 15) / 16 * 16;
    if (block_.get() == VK_NULL_HANDLE || start + bytes.size() > block_.size()) {
        auto block = GpuBuffer::create(blockSize,
                                       VK_BUFFER_USAGE_TRANSFER_SRC_BIT,
                                       BufferMemory::staging,
                                       "upload memory");
        if (!block) return tl::unexpected(block.error());
        block_ = *std::move(block);
        used_ = 0;
    }
    const VkDeviceSize offset = used_ == 0 ? 0 : start;
    std::memcpy(block_.mapped() + offset, bytes.data(), bytes.size());
    used_ = offset + bytes.size();
    return Slice{block_.get(), offset};
}

vlCommon::Result<>
Upload::toBuffer(GpuBuffer& target, VkDeviceSize offset, std::span<const std::byte> bytes) {
    if (bytes.empty()) return {};
    if (target.mapped() != nullptr) {
        std::memcpy(target.mapped() + offset, bytes.data(), bytes.size());
        target.flush();
        return {};
    }
    // In pieces, so that a large mesh never doubles in memory.
    for (std::size_t at = 0; at < bytes.size(); at += maxPending / 4) {
        const auto piece =
                bytes.subspan(at, std::min<std::size_t>(maxPending / 4, bytes.size() - at));
        const auto slice = stage(piece);
        if (!slice) return tl::unexpected(slice.error());
        const VkBufferCopy region{slice->offset, offset + at, piece.size()};
        vkCmdCopyBuffer(commands(), slice->buffer, target.get(), 1, &region);
    }
    return {};
}

vlCommon::Result<> Upload::zero(GpuBuffer& target) {
    if (target.mapped() != nullptr) {
        std::memset(target.mapped(), 0, target.size());
        target.flush();
        return {};
    }
    const VkCommandBuffer buffer = commands();
    if (buffer == VK_NULL_HANDLE)
        return vlCommon::fail("Could not record an upload: out of memory");
    vkCmdFillBuffer(buffer, target.get(), 0, VK_WHOLE_SIZE, 0);
    return {};
}

vlCommon::Result<> Upload::toImage(GpuImage& target, std::span<const std::byte> pixels) {
    const auto slice = stage(pixels);
    if (!slice) return tl::unexpected(slice.error());
    const VkCommandBuffer buffer = commands();
    target.become(buffer, ImageUse::transferTarget, true);
    VkBufferImageCopy region{};
    region.bufferOffset = slice->offset;
    region.imageSubresource = {target.readAspect(), 0, 0, 1};
    region.imageExtent = {target.extent().width, target.extent().height, 1};
    vkCmdCopyBufferToImage(
            buffer, slice->buffer, target.get(), layoutOf(ImageUse::transferTarget), 1, &region);
    if (target.description().mipCount > 1)
        makeMips(buffer, target);
    else
        target.become(buffer, ImageUse::shaderRead);
    return {};
}

void Upload::makeMips(VkCommandBuffer commands, GpuImage& target) {
    VkImageSubresourceRange level{target.aspect(), 0, 1, 0, 1};
    VkOffset3D size{static_cast<std::int32_t>(target.extent().width),
                    static_cast<std::int32_t>(target.extent().height),
                    1};
    for (std::uint32_t mip = 1; mip < target.description().mipCount; ++mip) {
        imageBarrier(
                commands, target.get(), level, ImageUse::transferTarget, ImageUse::transferSource);
        const VkOffset3D half{std::max(size.x / 2, 1), std::max(size.y / 2, 1), 1};
        VkImageBlit region{};
        region.srcSubresource = {target.aspect(), mip - 1, 0, 1};
        region.srcOffsets[1] = size;
        region.dstSubresource = {target.aspect(), mip, 0, 1};
        region.dstOffsets[1] = half;
        vkCmdBlitImage(commands,
                       target.get(),
                       layoutOf(ImageUse::transferSource),
                       target.get(),
                       layoutOf(ImageUse::transferTarget),
                       1,
                       &region,
                       VK_FILTER_LINEAR);
        size = half;
        level.baseMipLevel = mip;
    }
    imageBarrier(commands, target.get(), level, ImageUse::transferTarget, ImageUse::transferSource);
    imageBarrier(commands,
                 target.get(),
                 target.wholeRange(),
                 ImageUse::transferSource,
                 ImageUse::shaderRead);
    target.noteUse(ImageUse::shaderRead);
}

vlCommon::Result<> Upload::clear(GpuImage& target) {
    const VkCommandBuffer buffer = commands();
    if (buffer == VK_NULL_HANDLE)
        return vlCommon::fail("Could not record an upload: out of memory");
    target.become(buffer, ImageUse::transferTarget, true);
    const VkImageSubresourceRange range = target.wholeRange();
    const VkImageLayout layout = layoutOf(ImageUse::transferTarget);
    if (isDepthFormat(target.description().format)) {
        const VkClearDepthStencilValue far{1, 0};
        vkCmdClearDepthStencilImage(buffer, target.get(), layout, &far, 1, &range);
    } else {
        const VkClearColorValue zero{};
        vkCmdClearColorImage(buffer, target.get(), layout, &zero, 1, &range);
    }
    target.become(buffer, ImageUse::shaderRead);
    return {};
}

} // namespace vlGraphics::vulkan
