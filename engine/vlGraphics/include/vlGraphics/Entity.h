#pragma once
#include <vlGraphics/Handle.h>
#include <vlMaths/Matrix.h>

#include <cstdint>

namespace vlGraphics {

class BlendState;
class Mesh;
class Node;
class RasterState;
class RenderQueue;
class Shader;

/** What an entity draws: a mesh through a scene shader, in the states given (null handles: the
 * pass's). A missing mesh draws nothing; a missing or unusable shader draws nothing. */
struct EntityRenderInfo {
    Handle<Mesh> mesh;
    Handle<Shader> shader;
    /// Which material the shader came from, in the numbering of whoever keeps materials; 0 is none.
    std::uint32_t materialId = 0;
    /// Drawn after the opaque entities, far to near, by the transparent scene pass.
    bool transparent = false;
    bool visible = true;
    friend bool operator==(const EntityRenderInfo&, const EntityRenderInfo&) = default;
};

/** A drawable thing: hangs on a node, lives in a render queue, which owns it. The address is stable
 *  for its life. Graphics thread only. */
class Entity final {
public:
    Entity(const Entity&) = delete;
    Entity& operator=(const Entity&) = delete;
    ~Entity();

    Node* getParentNode() const { return node_; }
    /// Null places it at the world's origin.
    void setParentNode(Node* node);
    RenderQueue& getRenderQueue() const { return *queue_; }
    const vlMaths::Matrix& getWorldMatrix() const;

    const EntityRenderInfo& getRenderInfo() const;
    void setRenderInfo(const EntityRenderInfo& info);
    void setMesh(Handle<Mesh> mesh);
    void setShader(Handle<Shader> shader);

private:
    friend class Node;
    friend class RenderQueue;
    Entity(RenderQueue& queue, std::uint32_t index) : queue_(&queue), index_(index) {}

    RenderQueue* queue_;
    std::uint32_t index_; ///< place in the queue's arrays; follows moves
    Node* node_ = nullptr;
};

} // namespace vlGraphics
