#pragma once
#include "vulkan/Vk.h"

#include <cstddef>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

/** The descriptor sets of one frame: taken one by one, given back all at once. Graphics thread
 *  only. */
class DescriptorPools {
public:
    DescriptorPools() = default;
    DescriptorPools(const DescriptorPools&) = delete;
    DescriptorPools& operator=(const DescriptorPools&) = delete;
    ~DescriptorPools();

    /// Null when the device is out of memory.
    VkDescriptorSet allocate(VkDescriptorSetLayout layout);
    /// The device must have finished the frame.
    void reset();

private:
    bool addPool();

    std::vector<VkDescriptorPool> pools_;
    std::size_t current_ = 0;
};

} // namespace vlGraphics::vulkan
