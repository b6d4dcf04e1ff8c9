#include "vulkan/GpuBuffer.h"

#include "vulkan/Device.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

namespace vlGraphics::vulkan {
namespace {

VmaAllocationCreateInfo allocationInfo(BufferMemory memory) {
    VmaAllocationCreateInfo info{};
    info.usage = VMA_MEMORY_USAGE_AUTO;
    info.flags = VMA_ALLOCATION_CREATE_MAPPED_BIT;
    switch (memory) {
    case BufferMemory::device:
        info.flags |= VMA_ALLOCATION_CREATE_HOST_ACCESS_SEQUENTIAL_WRITE_BIT |
                      VMA_ALLOCATION_CREATE_HOST_ACCESS_ALLOW_TRANSFER_INSTEAD_BIT;
        info.usage = VMA_MEMORY_USAGE_AUTO_PREFER_DEVICE;
        break;
    case BufferMemory::dynamic:
    case BufferMemory::staging:
        info.flags |= VMA_ALLOCATION_CREATE_HOST_ACCESS_SEQUENTIAL_WRITE_BIT;
        info.requiredFlags = VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;
        break;
    case BufferMemory::readback:
        info.flags |= VMA_ALLOCATION_CREATE_HOST_ACCESS_RANDOM_BIT;
        info.requiredFlags = VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;
        break;
    }
    return info;
}

} // namespace

vlCommon::Result<GpuBuffer> GpuBuffer::create(VkDeviceSize size,
                                              VkBufferUsageFlags usage,
                                              BufferMemory memory,
                                              std::string_view what) {
    auto info = vulkan::vkInfo<VkBufferCreateInfo>(VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO);
    info.size = size;
    info.usage = usage;
    const VmaAllocationCreateInfo allocation = allocationInfo(memory);
    GpuBuffer made;
    VmaAllocationInfo placed{};
    const VkResult result = vmaCreateBuffer(Device::getInstance()->allocator(),
                                            &info,
                                            &allocation,
                                            &made.buffer_,
                                            &made.allocation_,
                                            &placed);
    if (result != VK_SUCCESS)
        return tl::unexpected(check(result, fmt::format("{}: {} bytes", what, size)).error());
    made.mapped_ = static_cast<std::byte*>(placed.pMappedData);
    made.size_ = size;
    return made;
}

GpuBuffer::~GpuBuffer() {
    if (buffer_ != VK_NULL_HANDLE) Device::getInstance()->retire(buffer_, allocation_);
}

void GpuBuffer::flush() const {
    vmaFlushAllocation(Device::getInstance()->allocator(), allocation_, 0, VK_WHOLE_SIZE);
}

} // namespace vlGraphics::vulkan
