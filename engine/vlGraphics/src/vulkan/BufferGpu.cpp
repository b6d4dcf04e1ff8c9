#include "vulkan/BufferGpu.h"

#include "vulkan/Device.h"
#include "vulkan/Upload.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace vlGraphics {

using vulkan::Device;
using vulkan::GpuBuffer;

namespace {

/// Filling works in whole words.
constexpr VkDeviceSize wordSize = 4;

/// The most bytes that one buffer can have whatever else is in memory. Asking the device for more
/// is not a failure that it reports but one that it may not survive.
VkDeviceSize largestBuffer(const Device& device) {
    auto ranges = vulkan::vkInfo<VkPhysicalDeviceMaintenance4Properties>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_MAINTENANCE_4_PROPERTIES);
    auto allocations = vulkan::vkInfo<VkPhysicalDeviceMaintenance3Properties>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_MAINTENANCE_3_PROPERTIES);
    allocations.pNext = &ranges;
    auto properties = vulkan::vkInfo<VkPhysicalDeviceProperties2>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2);
    properties.pNext = &allocations;
    vkGetPhysicalDeviceProperties2(device.physical(), &properties);
    const VkDeviceSize largest =
            std::min({VkDeviceSize{device.limits().maxStorageBufferRange},
                      static_cast<VkDeviceSize>(ranges.maxBufferSize),
                      static_cast<VkDeviceSize>(allocations.maxMemoryAllocationSize)});
    return largest / wordSize * wordSize;
}

/// What is left of the roomiest memory.
VkDeviceSize freeMemory(const Device& device) {
    std::array<VmaBudget, VK_MAX_MEMORY_HEAPS> budgets{};
    vmaGetHeapBudgets(device.allocator(), budgets.data());
    VkDeviceSize most = 0;
    for (const VmaBudget& heap : budgets)
        most = std::max(most, heap.budget - std::min(heap.budget, heap.usage));
    return most;
}

vlCommon::Result<> checkSize(const Device& device, VkDeviceSize size) {
    if (const VkDeviceSize largest = largestBuffer(device); size > largest)
        return vlCommon::fail(fmt::format("more than the {} that a buffer can have here", largest));
    if (const VkDeviceSize room = freeMemory(device); size > room)
        return vlCommon::fail(fmt::format("more than the {} that are free", room));
    return {};
}

vlCommon::Result<GpuBuffer> makeZeroed(VkDeviceSize size) {
    const Device& device = *Device::getInstance();
    if (auto fits = checkSize(device, size); !fits) return tl::unexpected(fits.error());
    auto made = GpuBuffer::create((size + wordSize - 1) / wordSize * wordSize,
                                  vulkan::shaderBufferUsage,
                                  vulkan::BufferMemory::device,
                                  "device memory");
    if (!made) return made;
    if (auto zeroed = device.upload().zero(*made); !zeroed) return tl::unexpected(zeroed.error());
    return made;
}

} // namespace

Buffer::Buffer() = default;
Buffer::~Buffer() = default;

vlCommon::Result<> Buffer::load() {
    if (gpu_ || getByteSize() == 0) return {};
    if (Device::getInstance() == nullptr)
        return vlCommon::fail(fmt::format("buffer '{}': there is no device", getName()));
    auto made = makeZeroed(getByteSize());
    if (!made) {
        return vlCommon::fail(fmt::format("buffer '{}': {} elements of {} bytes are {} bytes: {}",
                                          getName(),
                                          getElementCount(),
                                          getElementByteSize(),
                                          getByteSize(),
                                          made.error().message));
    }
    gpu_ = std::make_unique<Gpu>();
    gpu_->buffer = *std::move(made);
    markChanged();
    return {};
}

void Buffer::unload() {
    if (!gpu_) return;
    gpu_.reset();
    markChanged();
}

} // namespace vlGraphics
