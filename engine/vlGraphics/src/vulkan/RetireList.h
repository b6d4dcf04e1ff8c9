#pragma once
#include "vulkan/Vma.h"

#include <cstdint>
#include <deque>

namespace vlGraphics::vulkan {

void destroyHandle(VkDevice device, VmaAllocator allocator, VkBuffer handle, VmaAllocation memory);
void destroyHandle(VkDevice device, VmaAllocator allocator, VkImage handle, VmaAllocation memory);
void destroyHandle(VkDevice device, VmaAllocator, VkImageView handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkBufferView handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkSampler handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkPipeline handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkPipelineLayout handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkDescriptorSetLayout handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkDescriptorPool handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkShaderModule handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkCommandPool handle, VmaAllocation);
void destroyHandle(VkDevice device, VmaAllocator, VkSemaphore handle, VmaAllocation);

/** Handles that wait for the device's timeline to pass the last submission that may use them. */
class RetireList {
public:
    template <class Handle> void add(std::uint64_t value, Handle handle, VmaAllocation memory) {
        entries_.push_back({value,
                            reinterpret_cast<std::uint64_t>(handle),
                            memory,
                            [](VkDevice device, VmaAllocator allocator, const Entry& entry) {
                                destroyHandle(device,
                                              allocator,
                                              reinterpret_cast<Handle>(entry.handle),
                                              entry.memory);
                            }});
    }
    void collect(VkDevice device, VmaAllocator allocator, std::uint64_t completed);
    bool empty() const { return entries_.empty(); }

private:
    struct Entry {
        std::uint64_t value;
        std::uint64_t handle;
        VmaAllocation memory;
        void (*destroy)(VkDevice, VmaAllocator, const Entry&);
    };
    std::deque<Entry> entries_;
};

} // namespace vlGraphics::vulkan
