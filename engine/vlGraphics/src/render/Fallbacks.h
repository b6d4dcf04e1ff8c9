#pragma once
#include "vulkan/GpuImage.h"

#include <vlCommon/Result.h>

namespace vlGraphics::render {

/** What stands in for a texture or a sampler that a program reads and nobody gave it: the engine's
 *  default resources, and where they are not loaded, black and nearest. Graphics thread only. */
class Fallbacks {
public:
    static vlCommon::Result<> create(Fallbacks& made);
    Fallbacks() = default;
    Fallbacks(const Fallbacks&) = delete;
    Fallbacks& operator=(const Fallbacks&) = delete;
    ~Fallbacks();

    vulkan::GpuImage& texture();
    VkSampler sampler() const;

private:
    vulkan::GpuImage black_;
    VkSampler nearest_ = VK_NULL_HANDLE;
};

} // namespace vlGraphics::render
