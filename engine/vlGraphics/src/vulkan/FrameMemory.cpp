#include "vulkan/FrameMemory.h"

#include <algorithm>
#include <bit>

namespace vlGraphics::vulkan {
namespace {

constexpr VkDeviceSize startSize = VkDeviceSize{256} << 10U;

} // namespace

FrameMemory::Slice FrameMemory::allocate(VkDeviceSize size, VkDeviceSize alignment) {
    const VkDeviceSize start = (used_ + alignment - 1) & ~(alignment - 1);
    if (block_.get() != VK_NULL_HANDLE && start + size <= block_.size()) {
        total_ += start + size - used_;
        used_ = start + size;
        return {block_.get(), start, block_.mapped() + start};
    }
    const VkDeviceSize wanted =
            std::max({startSize, std::bit_ceil(size), wanted_, 2 * block_.size()});
    auto block = GpuBuffer::create(wanted,
                                   VK_BUFFER_USAGE_VERTEX_BUFFER_BIT |
                                           VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT |
                                           VK_BUFFER_USAGE_STORAGE_BUFFER_BIT,
                                   BufferMemory::dynamic,
                                   "frame memory");
    if (!block) return {};
    if (block_.get() != VK_NULL_HANDLE) full_.push_back(std::move(block_));
    block_ = *std::move(block);
    used_ = size;
    total_ += size + alignment;
    return {block_.get(), 0, block_.mapped()};
}

void FrameMemory::reset() {
    // A frame that needed several blocks gets one that holds all of it the next time.
    if (!full_.empty()) {
        wanted_ = std::bit_ceil(total_);
        full_.clear();
        if (block_.size() < wanted_) block_ = GpuBuffer();
    }
    used_ = 0;
    total_ = 0;
}

} // namespace vlGraphics::vulkan
