#pragma once
#include "render/Pipelines.h"
#include "vulkan/GpuImage.h"

#include <vlGraphics/RenderContext.h>
#include <vlGraphics/Renderer.h>
#include <vlGraphics/TargetOperations.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace vlGraphics {

namespace render {

struct FrameSlot;

/** Records the passes of one target operation. Rendering begins with the first pass that draws, so
 *  that clears before it are free, and goes on from pass to pass. Lives while the operation is
 *  recorded. */
class PassRecorder {
public:
    PassRecorder(Renderer::Gpu& renderer,
                 RenderContext& context,
                 const TargetOperations& operations);
    /// Carries out clears that no draw came after, and ends the rendering.
    ~PassRecorder();
    PassRecorder(const PassRecorder&) = delete;
    PassRecorder& operator=(const PassRecorder&) = delete;

    /// There is a target to render to. Without one only passes that render nothing do something.
    bool isUsable() const { return usable_; }
    Renderer::Gpu& renderer() { return renderer_; }
    FrameSlot& frame();
    VkCommandBuffer commands();
    RenderContext& context() { return context_; }
    /// Pixels; the picture's where there is no target.
    VkExtent2D extent() const { return extent_; }
    const TargetFormats& formats() const { return formats_; }
    bool isTarget(const vulkan::GpuImage& image) const;

    /// The index counts the operation's colour targets in their order; one past the last is
    /// ignored.
    void clearColor(std::uint32_t index, const std::array<float, 4>& color);
    /// The stencil with it, where the target has one.
    void clearDepth(float depth, std::uint32_t stencil);

    /// After it draws may be recorded.
    void beginRendering();
    /// Draws reach the operation's viewport alone, or the whole of the targets.
    void setScissor(bool toViewport);
    /// For what cannot be recorded while rendering; draws begin it again.
    void endRendering();
    /// Carries out clears that no draw came after, so that targets can be read.
    void finishClears();

private:
    struct Target {
        vulkan::GpuImage* image = nullptr;
        std::optional<VkClearValue> clear; ///< waits for the rendering to begin
    };

    void gatherTargets(const TargetOperations& operations);
    void setColor(std::uint32_t place, vulkan::GpuImage& image);
    void setDepth(vulkan::GpuImage& image);
    void shrinkTo(VkExtent2D extent);
    VkRenderingAttachmentInfo attachment(Target& target, VkClearValue empty);
    void clearNow(VkImageAspectFlags aspect, std::uint32_t place, VkClearValue value);
    void setViewport(const TargetOperations& operations);

    Renderer::Gpu& renderer_;
    RenderContext& context_;
    std::array<Target, TargetOperations::maxColorTargets> colors_; ///< by the shader's output
    Target depth_;
    TargetFormats formats_;
    VkExtent2D extent_{0, 0};
    VkViewport viewport_{};
    VkRect2D scissor_{}; ///< the viewport's pixels
    bool usable_ = false;
    bool rendering_ = false;
};

} // namespace render

/// The name by which passes know it.
class PassRecorder final : public render::PassRecorder {
public:
    using render::PassRecorder::PassRecorder;
};

} // namespace vlGraphics
