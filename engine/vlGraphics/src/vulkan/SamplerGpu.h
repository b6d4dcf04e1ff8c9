#pragma once
#include "vulkan/Vk.h"

#include <vlGraphics/Sampler.h>

namespace vlGraphics {

struct Sampler::Gpu {
    Gpu() = default;
    Gpu(const Gpu&) = delete;
    Gpu& operator=(const Gpu&) = delete;
    ~Gpu();

    VkSampler sampler = VK_NULL_HANDLE;
    bool compares = false; ///< belongs where shaders compare
};

} // namespace vlGraphics
