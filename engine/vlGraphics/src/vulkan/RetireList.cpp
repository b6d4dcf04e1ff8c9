#include "vulkan/RetireList.h"

#include <algorithm>

namespace vlGraphics::vulkan {

void destroyHandle(VkDevice, VmaAllocator allocator, VkBuffer handle, VmaAllocation memory) {
    vmaDestroyBuffer(allocator, handle, memory);
}
void destroyHandle(VkDevice, VmaAllocator allocator, VkImage handle, VmaAllocation memory) {
    vmaDestroyImage(allocator, handle, memory);
}
void destroyHandle(VkDevice device, VmaAllocator, VkImageView handle, VmaAllocation) {
    vkDestroyImageView(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkBufferView handle, VmaAllocation) {
    vkDestroyBufferView(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkSampler handle, VmaAllocation) {
    vkDestroySampler(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkPipeline handle, VmaAllocation) {
    vkDestroyPipeline(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkPipelineLayout handle, VmaAllocation) {
    vkDestroyPipelineLayout(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkDescriptorSetLayout handle, VmaAllocation) {
    vkDestroyDescriptorSetLayout(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkDescriptorPool handle, VmaAllocation) {
    vkDestroyDescriptorPool(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkShaderModule handle, VmaAllocation) {
    vkDestroyShaderModule(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkCommandPool handle, VmaAllocation) {
    vkDestroyCommandPool(device, handle, nullptr);
}
void destroyHandle(VkDevice device, VmaAllocator, VkSemaphore handle, VmaAllocation) {
    vkDestroySemaphore(device, handle, nullptr);
}

void RetireList::collect(VkDevice device, VmaAllocator allocator, std::uint64_t completed) {
    // Values nearly ascend: an upload that is submitted while a frame is being recorded lets a
    // later entry have a smaller one, which then only waits a little longer.
    while (!entries_.empty() && entries_.front().value <= completed) {
        entries_.front().destroy(device, allocator, entries_.front());
        entries_.pop_front();
    }
}

} // namespace vlGraphics::vulkan
