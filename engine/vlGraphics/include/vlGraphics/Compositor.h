#pragma once
#include <vlGraphics/ResourceManager.h>
#include <vlGraphics/TargetOperations.h>

#include <memory>
#include <vector>

namespace vlGraphics {

/** A named, switchable list of target operations. Owned by its compositor. */
class CompositorNode {
public:
    std::unique_ptr<CompositorNode> clone() const;

    const vlMemory::String& getName() const { return name_; }
    void setName(vlMemory::StringView name);
    bool getActive() const { return active_; }
    void setActive(bool value);

    TargetOperations* addOperations();
    /// Null past the last.
    TargetOperations* getOperations(std::uint32_t index) const;
    std::uint32_t getOperationsCount() const {
        return static_cast<std::uint32_t>(operations_.size());
    }
    bool eraseOperations(std::uint32_t index);
    bool swapOperations(std::uint32_t index, std::uint32_t other);

private:
    vlMemory::String name_;
    bool active_ = true;
    std::vector<std::unique_ptr<TargetOperations>> operations_;
};

/** How a frame is rendered: nodes in order, each a list of operations, each a list of passes. */
class Compositor final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "compositor";

    CompositorNode* addNode();
    /// Null past the last.
    CompositorNode* getNode(std::uint32_t index) const;
    std::uint32_t getNodeCount() const { return static_cast<std::uint32_t>(nodes_.size()); }
    bool eraseNode(std::uint32_t index);
    bool swapNodes(std::uint32_t index, std::uint32_t other);
    void clear();
    /// Takes over a copy of every node, operation and pass with all settings.
    void copyStructure(const Compositor& other);
    /// Null is ignored.
    void appendNode(std::unique_ptr<CompositorNode> node);

    /// Records the frame's work for the context being drawn; between the renderer's begin and end.
    void draw() const;

private:
    std::vector<std::unique_ptr<CompositorNode>> nodes_;
};

class CompositorManager final : public ResourceManager<Compositor>,
                                public vlCommon::MaybeSingletonClass<CompositorManager> {
public:
    /// Clears and draws the default render queue. Hidden, exists while the engine runs.
    Compositor* getDefaultCompositor();
    /// Of the context being drawn; the default outside a frame and where the context has none.
    Compositor* getActiveCompositor();
};

} // namespace vlGraphics
