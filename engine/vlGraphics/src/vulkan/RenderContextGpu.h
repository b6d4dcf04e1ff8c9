#pragma once
#include "vulkan/GpuImage.h"
#include "vulkan/Presenter.h"

#include <vlGraphics/RenderContext.h>

#include <cstdint>
#include <memory>

namespace vlGraphics {

struct RenderContext::Gpu {
    vulkan::GpuImage backBuffer;
    /// Without stencil until a pass tests it: stencil makes every access to depth wider.
    vulkan::GpuImage depth;
    /// Remakes the depth buffer with stencil, once; its content is lost.
    void addStencil();

    std::unique_ptr<vulkan::Presenter> presenter; ///< null: nothing is presented
    std::uint64_t lastFrame = 0;                  ///< of the timeline
};

} // namespace vlGraphics
