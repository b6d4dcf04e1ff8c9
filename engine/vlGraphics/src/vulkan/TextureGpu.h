#pragma once
#include "vulkan/GpuImage.h"

#include <vlGraphics/Texture.h>

namespace vlGraphics {

struct Texture::Gpu {
    vulkan::GpuImage image;
};

} // namespace vlGraphics
