#include "render/AccessOrder.h"

namespace vlGraphics::render {

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
    open_ = {};
}

} // namespace vlGraphics::render
