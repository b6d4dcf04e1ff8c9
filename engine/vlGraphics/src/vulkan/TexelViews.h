#pragma once
#include "vulkan/GpuBuffer.h"

#include <utility>
#include <vector>

namespace vlGraphics::vulkan {

/// Of buffers that shaders read and write, as elements or as texels.
inline constexpr VkBufferUsageFlags shaderBufferUsage =
        VK_BUFFER_USAGE_STORAGE_BUFFER_BIT | VK_BUFFER_USAGE_UNIFORM_TEXEL_BUFFER_BIT |
        VK_BUFFER_USAGE_STORAGE_TEXEL_BUFFER_BIT | VK_BUFFER_USAGE_TRANSFER_SRC_BIT |
        VK_BUFFER_USAGE_TRANSFER_DST_BIT;

/** The views through which shaders see a buffer as texels: one for each format asked for. Belongs
 *  to the buffer. Graphics thread only. */
class TexelViews {
public:
    TexelViews() = default;
    TexelViews(const TexelViews&) = delete;
    TexelViews& operator=(const TexelViews&) = delete;
    ~TexelViews();

    /// Of as many whole texels as there are, up to the device's limit. Null where there is none and
    /// where the device cannot see buffers in that format.
    VkBufferView get(const GpuBuffer& buffer, VkFormat format);

private:
    std::vector<std::pair<VkFormat, VkBufferView>> views_;
};

} // namespace vlGraphics::vulkan
