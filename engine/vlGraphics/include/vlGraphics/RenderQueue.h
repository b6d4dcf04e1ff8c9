#pragma once
#include <vlGraphics/DefaultRenderStrategy.h>
#include <vlGraphics/Entity.h>
#include <vlGraphics/ResourceManager.h>

#include <memory>
#include <span>
#include <vector>

namespace vlGraphics {

/** Owns entities and says how they are drawn. What the drawing reads every frame lies in arrays,
 *  one element an entity, in no particular order: removing moves the last into the gap. */
class RenderQueue final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "render queue";

    RenderQueue();
    ~RenderQueue() override;

    Entity* addEntity();
    /// Destroys it. The entity must be this queue's.
    void removeEntity(Entity& entity);
    /// Takes it over from another queue; the address stays.
    void adoptEntity(Entity& entity);
    Entity* getEntity(std::size_t index) const;
    std::size_t getEntityCount() const { return entities_.size(); }

    bool getRaytraced() const { return raytraced_; }
    void setRaytraced(bool value);
    DefaultRenderStrategy& getRenderStrategy() { return strategy_; }
    const DefaultRenderStrategy& getRenderStrategy() const { return strategy_; }
    /// Removes every entity and puts the settings back to their start.
    void reset();

    struct Arrays {
        std::vector<vlMaths::Matrix> worlds;
        std::vector<vlMaths::BoundingSphere>
                spheres; ///< world space; negative radius: never culled
        std::vector<EntityRenderInfo> infos;
        std::vector<std::uint64_t> meshRevisions; ///< of the mesh the sphere was made from
        std::vector<std::uint64_t> joined;        ///< the order in which entities joined
    };
    const Arrays& arrays() const { return arrays_; }
    std::span<Entity* const> entities() const { return entityPointers_; }
    /// Grows when entities come, go or change what they draw; not when they move.
    std::uint64_t getStructureRevision() const { return structureRevision_; }
    /// Brings matrices and spheres of moved entities and changed meshes up to date.
    void updateTransforms();

private:
    friend class Entity;
    friend class Node;
    void entityMoved(std::uint32_t index);
    void entityChanged(std::uint32_t index);
    void refreshSphere(std::uint32_t index);
    void refreshChangedMeshes();
    std::uint32_t appendPlace();
    std::unique_ptr<Entity> takePlace(std::uint32_t index);

    std::vector<std::unique_ptr<Entity>> entities_;
    std::vector<Entity*> entityPointers_;
    Arrays arrays_;
    std::vector<std::uint32_t> moved_; ///< places whose matrix is stale, may repeat
    std::vector<std::uint8_t> isMoved_;
    std::uint64_t structureRevision_ = 1;
    std::uint64_t joinedCount_ = 0;
    std::uint64_t seenBounds_ = 0; ///< Mesh::getBoundsRevision() that the spheres know
    std::uint64_t seenMeshes_ = 0; ///< structure revision of the meshes' manager, likewise
    bool raytraced_ = false;
    DefaultRenderStrategy strategy_;
};

class RenderQueueManager final : public ResourceManager<RenderQueue>,
                                 public vlCommon::MaybeSingletonClass<RenderQueueManager> {
public:
    /// The queue that entities join when nothing else is said; exists while the engine runs.
    static constexpr vlMemory::StringView DEFAULT_RENDER_QUEUE = "VORLANE_DEFAULT_RENDER_QUEUE";
};

} // namespace vlGraphics
