#pragma once
#include "vulkan/TexelViews.h"

#include <vlGraphics/Buffer.h>

namespace vlGraphics {

struct Buffer::Gpu {
    vulkan::GpuBuffer buffer;
    vulkan::TexelViews texels;
};

} // namespace vlGraphics
