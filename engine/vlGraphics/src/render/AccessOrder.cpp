#include "render/AccessOrder.h"

#include <algorithm>
#include <cstddef>

namespace vlGraphics::render {

namespace {

/// What is only read never needs a barrier, and still has to be forgotten at times.
constexpr std::size_t mostOpen = 4096;

} // namespace

bool AccessOrder::needsBarrier(const std::vector<ResourceAccess>& next) const {
    if (next.empty()) return false;
    if (open_.size() > mostOpen) return true;
    return std::any_of(next.begin(), next.end(), [this](const ResourceAccess& access) {
        const auto before = open_.find(access.resource);
        return before != open_.end() && (access.writes || before->second);
    });
}

void AccessOrder::note(const std::vector<ResourceAccess>& accesses) {
    for (const ResourceAccess& access : accesses)
        open_[access.resource] |= access.writes;
}

void AccessOrder::recordBarrier(VkCommandBuffer commands) {
    constexpr VkPipelineStageFlags2 stages = VK_PIPELINE_STAGE_2_PRE_RASTERIZATION_SHADERS_BIT |
                                             VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT |
                                             VK_PIPELINE_STAGE_2_COMPUTE_SHADER_BIT |
                                             VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    auto barrier = vulkan::vkInfo<VkMemoryBarrier2>(VK_STRUCTURE_TYPE_MEMORY_BARRIER_2);
    barrier.srcStageMask = stages;
    barrier.srcAccessMask = VK_ACCESS_2_SHADER_WRITE_BIT | VK_ACCESS_2_TRANSFER_WRITE_BIT;
    barrier.dstStageMask = stages;
    barrier.dstAccessMask = VK_ACCESS_2_SHADER_READ_BIT | VK_ACCESS_2_SHADER_WRITE_BIT |
                            VK_ACCESS_2_TRANSFER_WRITE_BIT;
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.memoryBarrierCount = 1;
    info.pMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(commands, &info);
    open_.clear();
    ++barriers_;
}

} // namespace vlGraphics::render
