#pragma once
#include "vulkan/GpuBuffer.h"

#include <vlGraphics/Buffer.h>

namespace vlGraphics {

struct Buffer::Gpu {
    vulkan::GpuBuffer buffer;
};

} // namespace vlGraphics
