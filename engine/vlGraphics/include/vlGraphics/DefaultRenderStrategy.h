#pragma once
#include <vlMaths/Frustum.h>
#include <vlMaths/Vector.h>

#include <cstdint>
#include <vector>

namespace vlGraphics {

class Mesh;
class RenderQueue;
class Shader;

/** One draw: entities of the same mesh and shader, drawn instanced. `first` and `count` index
 *  DrawList::order. */
struct DrawRun {
    Shader* shader = nullptr;
    Mesh* mesh = nullptr;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/** What a scene pass draws this frame. Reused from frame to frame, so that it stops allocating. */
struct DrawList {
    std::vector<DrawRun> runs;
    std::vector<std::uint32_t> order; ///< places in the queue's arrays
    void clear() {
        runs.clear();
        order.clear();
    }
};

struct StrategyView {
    vlMaths::Frustum frustum;       ///< of the culling camera
    vlMaths::Vector cameraPosition; ///< orders transparent entities
    bool transparentPass = false;   ///< which of the two kinds of entities to draw
    bool onlyReady = true;          ///< passes over what has no device side yet
};

/** Decides which entities of a queue are drawn, and in which order: culls by bounding sphere, sorts
 * by shader (and so by pipeline and material) and mesh, and merges neighbours of equal shader and
 * mesh into runs of at most the shader's instances a buffer. The sorted order is kept until the
 * queue's structure changes, so an ordinary frame only walks it. Transparent entities are sorted
 * far to near. */
class DefaultRenderStrategy final {
public:
    float getLodQualityFactor() const { return lodQualityFactor_; }
    /// Ignored unless finite.
    void setLodQualityFactor(float value);
    bool getUseLodSystem() const { return useLodSystem_; }
    void setUseLodSystem(bool value);
    /// Off: entities are drawn in the order in which they joined, still merged where neighbours
    /// match.
    bool getOrderQueue() const { return orderQueue_; }
    void setOrderQueue(bool value);
    bool getFrustumCull() const { return frustumCull_; }
    void setFrustumCull(bool value);

    /// The queue's transforms must be up to date. Appends to the list. Of a transparent pass the
    /// order is far to near unless ordering is off.
    void collect(const RenderQueue& queue, const StrategyView& view, DrawList& list);

private:
    /// Neighbours in sorted_ of equal shader and mesh.
    struct Group {
        Shader* shader = nullptr;
        Mesh* mesh = nullptr;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };
    struct FarEntity {
        float distanceSquared = 0;
        std::uint32_t place = 0; ///< in the queue
        std::uint32_t group = 0;
    };
    /// One kind of entities, opaque or transparent.
    struct Sorted {
        std::vector<std::uint32_t> places;
        std::vector<Group> groups;
    };
    /// What the sorted order was made from; it is made again when any of it differs.
    struct Origin {
        const RenderQueue* queue = nullptr;
        std::uint64_t queueRevision = 0;
        std::uint64_t meshesRevision = 0;
        std::uint64_t shadersRevision = 0;
        bool ordered = true;
        friend bool operator==(const Origin&, const Origin&) = default;
    };

    void sort(const RenderQueue& queue);
    void sort(const RenderQueue& queue, bool transparent, Sorted& sorted);
    void collectSorted(const RenderQueue& queue,
                       const StrategyView& view,
                       const Sorted& sorted,
                       DrawList& list) const;
    void collectFarToNear(const RenderQueue& queue,
                          const StrategyView& view,
                          const Sorted& sorted,
                          DrawList& list);

    float lodQualityFactor_ = 1;
    bool useLodSystem_ = true;
    bool orderQueue_ = true;
    bool frustumCull_ = true;
    Origin origin_;
    Sorted opaque_;
    Sorted transparent_;
    std::vector<FarEntity> far_;
};

} // namespace vlGraphics
