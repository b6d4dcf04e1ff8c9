#pragma once
#include "vulkan/Vma.h"

#include <vlCommon/Result.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace vlGraphics::vulkan {

/// Who writes a buffer's memory, and who reads it.
enum class BufferMemory : std::uint8_t {
    device,   ///< written once; mapped only where the device's memory can be
    dynamic,  ///< written by the processor each frame, read by the device; always mapped
    staging,  ///< written by the processor, copied by the device; always mapped
    readback, ///< written by the device, read by the processor; always mapped
};

/** A buffer and its memory. Move-only; what it owned is retired, so that frames in flight may go on
 *  using it. Graphics thread only. */
class GpuBuffer {
public:
    GpuBuffer() = default;
    /// `what` names it in the error: "mesh 'rock'".
    static vlCommon::Result<GpuBuffer>
    create(VkDeviceSize size, VkBufferUsageFlags usage, BufferMemory memory, std::string_view what);
    GpuBuffer(GpuBuffer&& other) noexcept { swap(other); }
    GpuBuffer& operator=(GpuBuffer&& other) noexcept {
        GpuBuffer taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~GpuBuffer();

    VkBuffer get() const { return buffer_; }
    VkDeviceSize size() const { return size_; }
    /// Null where the memory is not mapped.
    std::byte* mapped() const { return mapped_; }
    /// Makes what the processor wrote visible to later submissions.
    void flush() const;

private:
    void swap(GpuBuffer& other) noexcept {
        std::swap(buffer_, other.buffer_);
        std::swap(allocation_, other.allocation_);
        std::swap(mapped_, other.mapped_);
        std::swap(size_, other.size_);
    }

    VkBuffer buffer_ = VK_NULL_HANDLE;
    VmaAllocation allocation_ = VK_NULL_HANDLE;
    std::byte* mapped_ = nullptr;
    VkDeviceSize size_ = 0;
};

} // namespace vlGraphics::vulkan
