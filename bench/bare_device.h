#pragma once
#include <volk.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace bench {

/// Ends the program with a line.
[[noreturn]] void failBare(const char* what);
void expectBare(VkResult result, const char* what);

template <class Info> Info makeInfo(VkStructureType type) {
    Info info{};
    info.sType = type;
    return info;
}

struct BareBuffer {
    VkBuffer buffer = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    std::byte* mapped = nullptr;
};

struct BareImage {
    VkImage image = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    VkImageView view = VK_NULL_HANDLE;
};

/** An instance and a device with one queue, beside those of an engine in the same program, and what
 *  is made of them by hand. What was made is destroyed by hand, too, before the device goes. Ends
 *  the program with a line where Vulkan fails. One thread. */
class BareDevice {
public:
    /// The device whose name the given one begins with.
    explicit BareDevice(std::string_view name);
    ~BareDevice();
    BareDevice(const BareDevice&) = delete;
    BareDevice& operator=(const BareDevice&) = delete;

    VkDevice get() const { return device_; }
    const VolkDeviceTable& vk() const { return vk_; }

    /// Mapped for good.
    BareBuffer createBuffer(VkDeviceSize size, VkBufferUsageFlags usage) const;
    BareImage createImage(VkFormat format,
                          VkExtent2D extent,
                          VkImageUsageFlags usage,
                          VkImageAspectFlags aspect) const;
    VkShaderModule createModule(std::span<const std::uint32_t> spirv) const;
    void destroy(const BareBuffer& buffer) const;
    void destroy(const BareImage& image) const;

    void barrier(VkCommandBuffer commands, const VkImageMemoryBarrier2& barrier) const;
    /// The fence may be null.
    void submit(VkCommandBuffer commands, VkFence fence) const;
    void waitIdle() const;

private:
    VkPhysicalDevice findDevice(std::string_view name) const;
    VkDeviceMemory allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted) const;

    VkInstance instance_ = VK_NULL_HANDLE;
    PFN_vkDestroyInstance destroyInstance_ = nullptr;
    VkPhysicalDeviceMemoryProperties memories_{};
    VkDevice device_ = VK_NULL_HANDLE;
    VolkDeviceTable vk_{};
    VkQueue queue_ = VK_NULL_HANDLE;
};

} // namespace bench
