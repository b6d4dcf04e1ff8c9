#pragma once
#include "render/AccessOrder.h"
#include "render/Fallbacks.h"
#include "render/LoopWatch.h"
#include "render/Pipelines.h"
#include "render/ShaderBinder.h"
#include "vulkan/DescriptorPools.h"
#include "vulkan/FrameMemory.h"
#include "vulkan/PipelineCache.h"

#include <vlGraphics/Configuration.h>
#include <vlGraphics/DefaultRenderStrategy.h>
#include <vlGraphics/Renderer.h>

#include <array>
#include <memory>

namespace vlGraphics {

namespace render {

/// What a frame in flight keeps to itself.
struct FrameSlot {
    VkCommandPool pool = VK_NULL_HANDLE;
    VkCommandBuffer commands = VK_NULL_HANDLE;
    std::uint64_t value = 0; ///< of the timeline, when the device has finished it
    vulkan::FrameMemory memory;
    vulkan::DescriptorPools descriptors;
};

} // namespace render

/** What the renderer keeps between frames, and the frame that is being recorded. */
struct Renderer::Gpu {
    static constexpr std::size_t frameCount = 2;

    Gpu() = default;
    Gpu(const Gpu&) = delete;
    Gpu& operator=(const Gpu&) = delete;
    ~Gpu();

    vlCommon::Result<> start(const Configuration& configuration);
    /// The context is going, or is the next one to draw.
    void forget(const RenderContext& context);
    void setNext(RenderContext& context) { next = &context; }
    render::FrameSlot& frame() { return slots[slot]; }

    std::unique_ptr<vulkan::PipelineCache> cache;
    std::unique_ptr<render::Pipelines> pipelines;
    render::Fallbacks fallbacks;
    render::AccessOrder accessOrder;
    std::array<render::FrameSlot, frameCount> slots;
    std::size_t slot = 0;
    RenderContext* next = nullptr;
    RenderContext* active = nullptr; ///< between begin and end
    bool recording = false;          ///< its frame is really drawn
    Counts counts;
    std::uint64_t timeMs = 0; ///< of the frame
    DrawList draws;           ///< kept, so that it stops allocating
    render::ShaderBinder binder;
    render::LoopWatch loops;
    VkBuffer constants = VK_NULL_HANDLE; ///< of the frame: what meshes lack
    VkDeviceSize constantsOffset = 0;
};

} // namespace vlGraphics
