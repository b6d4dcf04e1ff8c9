#pragma once
#include "vulkan/GpuBuffer.h"

#include <vector>

namespace vlGraphics::vulkan {

/** Memory that the processor fills for one frame: instance data, constant buffers. Starts small and
 *  grows to what frames need. Graphics thread only. */
class FrameMemory {
public:
    struct Slice {
        VkBuffer buffer = VK_NULL_HANDLE;
        VkDeviceSize offset = 0;
        std::byte* data = nullptr; ///< null when the device is out of memory
    };
    /// The alignment is a power of two.
    Slice allocate(VkDeviceSize size, VkDeviceSize alignment);
    /// Forgets what was allocated; the device must have finished the frame.
    void reset();

private:
    GpuBuffer block_;
    VkDeviceSize used_ = 0;
    VkDeviceSize total_ = 0;      ///< of the frame, over all blocks
    VkDeviceSize wanted_ = 0;     ///< what an earlier frame needed
    std::vector<GpuBuffer> full_; ///< earlier blocks of this frame
};

} // namespace vlGraphics::vulkan
