#pragma once
#include "vulkan/GpuBuffer.h"
#include "vulkan/GpuImage.h"

#include <vlCommon/Result.h>

#include <cstddef>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

class Device;

/** Brings data to the device. Commands are gathered and submitted in front of the next frame, so
 *  that loading waits for nothing; memory that the processor can write is written at once. Graphics
 *  thread only. Owned by the device. */
class Upload {
public:
    explicit Upload(Device& device);
    ~Upload();
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;

    vlCommon::Result<>
    toBuffer(GpuBuffer& target, VkDeviceSize offset, std::span<const std::byte> bytes);
    /// All of the buffer, whose size is a multiple of 4.
    vlCommon::Result<> zero(GpuBuffer& target);
    /// Fills level 0 from tightly packed rows, and the further levels by halving; the image can be
    /// sampled afterwards.
    vlCommon::Result<> toImage(GpuImage& target, std::span<const std::byte> pixels);
    /// Colours 0, depth 1.
    vlCommon::Result<> clear(GpuImage& target);

    /// To record transfers into; null when the device is out of memory.
    VkCommandBuffer commands();
    /// Ends what was gathered and hands it over: the caller submits it next. Null when there is
    /// nothing.
    VkCommandBuffer take();
    /// Submits what was gathered.
    VkResult submit();

private:
    struct Slot {
        VkCommandBuffer commands = VK_NULL_HANDLE;
        std::uint64_t value = 0; ///< of the timeline, when it can be used again
    };
    struct Slice {
        VkBuffer buffer = VK_NULL_HANDLE;
        VkDeviceSize offset = 0;
    };
    vlCommon::Result<Slice> stage(std::span<const std::byte> bytes);
    void makeMips(VkCommandBuffer commands, GpuImage& target);

    Device& device_;
    VkCommandPool pool_ = VK_NULL_HANDLE;
    std::vector<Slot> slots_;
    std::size_t open_ = none;
    GpuBuffer block_;          ///< small uploads share it until it is full
    VkDeviceSize used_ = 0;    ///< of the block
    VkDeviceSize pending_ = 0; ///< staged bytes not submitted yet
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
};

} // namespace vlGraphics::vulkan
