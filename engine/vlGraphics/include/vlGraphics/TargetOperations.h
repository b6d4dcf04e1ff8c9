#pragma once
#include <vlGraphics/ClearTargetsPass.h>
#include <vlGraphics/ComputePass.h>
#include <vlGraphics/RenderScenePass.h>
#include <vlGraphics/Texture.h>
#include <vlGraphics/Viewport.h>

#include <memory>
#include <optional>
#include <vector>

namespace vlGraphics {

/** A texture as a target. Which of the shader's outputs goes to it is its render index. */
struct TargetDescriptor {
    Handle<Texture> texture;
    std::uint32_t renderIndex = 0;
};

/** A step of a compositor node: passes that render to the same targets. Up to eight colour targets;
 * the back buffer may be one of them. None are needed where all passes compute. Owned by its node.
 */
class TargetOperations {
public:
    static constexpr std::uint32_t maxColorTargets = 8;
    static constexpr std::uint32_t atEnd = 0xFFFFFFFF;

    std::unique_ptr<TargetOperations> clone() const;

    const vlMemory::String& getName() const { return name_; }
    void setName(vlMemory::StringView name);

    // The render indices of all colour targets run from 0 without a gap, whatever is added, erased
    // or moved.

    /// Textures only, without the back buffer, in the order of their render indices; null past the
    /// last.
    const TargetDescriptor* getColorTarget(std::uint32_t index) const;
    /// All colour targets, the back buffer included.
    std::uint32_t getColorTargetCount() const;
    /// Of getColorTarget(index); 4294967295 past the last.
    std::uint32_t getColorTargetRenderIndex(std::uint32_t index) const;
    /// Behind those that are there, whatever render index the descriptor says. False when the
    /// operation has eight already.
    bool addColorTarget(TargetDescriptor target);

    // Below, an index counts all colour targets in the order of their render indices; false past
    // the last.
    bool replaceColorTarget(std::uint32_t index, TargetDescriptor target);
    bool eraseColorTarget(std::uint32_t index);
    bool swapColorTargets(std::uint32_t index, std::uint32_t other);

    /// The back buffer is the colour target of that render index (at most the last); those behind
    /// move up. False when the operation has eight already.
    bool setToBackBuffer(std::uint32_t renderIndex);
    bool isToBackBuffer() const { return toBackBuffer_; }
    std::uint32_t getBackBufferViewIndex() const { return backBufferIndex_; }

    Handle<Texture> getDepthTarget() const { return depthTarget_; }
    void setDepthTarget(Handle<Texture> texture);
    /// The context's own depth buffer, chained with the back buffer, is the depth target.
    void setToChainDepthBuffer();
    bool isToChainDepthBuffer() const { return chainsDepth_; }
    void setNoDepthTarget();

    Handle<Viewport> getOverloadedViewport() const { return viewport_; }
    void setOverloadedViewport(Handle<Viewport> viewport);

    /// Null past the last, and where a pass has no type yet.
    Pass* getPass(std::uint32_t index) const;
    std::uint32_t getPassCount() const { return static_cast<std::uint32_t>(passes_.size()); }
    /// A pass without a type, at the index or at the end; it does nothing until it is replaced.
    void addPass(std::uint32_t index);
    /// Replaces the pass at the index, keeping its name, or adds at the end.
    ClearTargetsPass* addClearTargetsPass(std::uint32_t index);
    ComputePass* addComputePass(std::uint32_t index);
    RenderScenePass* addRenderScenePass(std::uint32_t index);
    bool erasePass(std::uint32_t index);
    bool swapPasses(std::uint32_t index, std::uint32_t other);

private:
    Pass* place(std::unique_ptr<Pass> pass, std::uint32_t index);
    /// All colour targets by render index; nothing stands for the back buffer.
    std::vector<std::optional<Handle<Texture>>> allColorTargets() const;
    void setAllColorTargets(const std::vector<std::optional<Handle<Texture>>>& targets);

    vlMemory::String name_;
    std::vector<TargetDescriptor> colorTargets_;
    bool toBackBuffer_ = false;
    std::uint32_t backBufferIndex_ = 0;
    bool chainsDepth_ = false;
    Handle<Texture> depthTarget_;
    Handle<Viewport> viewport_;
    std::vector<std::unique_ptr<Pass>> passes_;
};

} // namespace vlGraphics
