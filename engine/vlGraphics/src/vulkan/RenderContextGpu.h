#pragma once
#include "vulkan/GpuImage.h"
#include "vulkan/Presenter.h"

#include <vlGraphics/RenderContext.h>

#include <cstdint>
#include <memory>

namespace vlGraphics {

struct RenderContext::Gpu {
    vulkan::GpuImage backBuffer;
    vulkan::GpuImage depth;
    std::unique_ptr<vulkan::Presenter> presenter; ///< null: nothing is presented
    std::uint64_t lastFrame = 0;                  ///< of the timeline
};

} // namespace vlGraphics
