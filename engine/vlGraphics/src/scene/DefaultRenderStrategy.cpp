#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/DefaultRenderStrategy.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>

#include <algorithm>
#include <cmath>

namespace vlGraphics {

namespace {

bool isReady(const Shader& shader, const Mesh& mesh) {
    return mesh.isLoaded() && shader.isUsableScene();
}

/// Spheres of negative radius belong to what has no bounds.
bool isSeen(const vlMaths::Frustum& frustum, const vlMaths::BoundingSphere& sphere) {
    return sphere.radius < 0 || frustum.intersects(sphere);
}

/// order[first..] of one shader and mesh, in runs that fit the shader's buffer.
void appendRuns(DrawList& list, Shader* shader, Mesh* mesh, std::uint32_t first) {
    const auto end = static_cast<std::uint32_t>(list.order.size());
    const std::uint32_t most = std::max(1U, shader->getMaxInstancePerBuffer());
    for (; first < end; first += most) {
        list.runs.push_back({shader, mesh, first, std::min(most, end - first)});
    }
}

} // namespace

void DefaultRenderStrategy::setLodQualityFactor(float value) {
    if (lodQualityFactor_ == value || !std::isfinite(value)) return;
    lodQualityFactor_ = value;
    ChangeCount::bump();
}

void DefaultRenderStrategy::setUseLodSystem(bool value) {
    if (useLodSystem_ == value) return;
    useLodSystem_ = value;
    ChangeCount::bump();
}

void DefaultRenderStrategy::setOrderQueue(bool value) {
    if (orderQueue_ == value) return;
    orderQueue_ = value;
    ChangeCount::bump();
}

void DefaultRenderStrategy::setFrustumCull(bool value) {
    if (frustumCull_ == value) return;
    frustumCull_ = value;
    ChangeCount::bump();
}

void DefaultRenderStrategy::collect(const RenderQueue& queue,
                                    const StrategyView& view,
                                    DrawList& list) {
    sort(queue);
    const Sorted& sorted = view.transparentPass ? transparent_ : opaque_;
    if (view.transparentPass && orderQueue_) return collectFarToNear(queue, view, sorted, list);
    collectSorted(queue, view, sorted, list);
}

void DefaultRenderStrategy::sort(const RenderQueue& queue) {
    const MeshManager* meshes = MeshManager::getInstance();
    const ShaderManager* shaders = ShaderManager::getInstance();
    const Origin origin{&queue,
                        queue.getStructureRevision(),
                        meshes == nullptr ? 0 : meshes->getStructureRevision(),
                        shaders == nullptr ? 0 : shaders->getStructureRevision(),
                        orderQueue_};
    if (origin == origin_) return;
    sort(queue, false, opaque_);
    sort(queue, true, transparent_);
    origin_ = origin;
}

/// Resolves every handle once. The shader comes first in the order: it stands for the pipeline and
/// for all that is bound.
void DefaultRenderStrategy::sort(const RenderQueue& queue, bool transparent, Sorted& sorted) {
    sorted.places.clear();
    sorted.groups.clear();
    const MeshManager* meshes = MeshManager::getInstance();
    const ShaderManager* shaders = ShaderManager::getInstance();
    if (meshes == nullptr || shaders == nullptr) return;
    struct Keyed {
        std::uint64_t key = 0;
        std::uint32_t place = 0;
    };
    const auto& infos = queue.arrays().infos;
    const auto& joined = queue.arrays().joined;
    std::vector<Keyed> keyed;
    for (std::uint32_t place = 0; place < infos.size(); ++place) {
        const EntityRenderInfo& info = infos[place];
        if (info.transparent != transparent || !info.visible) continue;
        const std::uint64_t kinship =
                (std::uint64_t{info.shader.index()} << 32U) | info.mesh.index();
        keyed.push_back({orderQueue_ ? kinship : 0, place});
    }
    std::sort(keyed.begin(), keyed.end(), [&](const Keyed& a, const Keyed& b) {
        return a.key != b.key ? a.key < b.key : joined[a.place] < joined[b.place];
    });
    for (const Keyed& entry : keyed) {
        Shader* shader = shaders->resolve(infos[entry.place].shader);
        Mesh* mesh = meshes->resolve(infos[entry.place].mesh);
        if (shader == nullptr || mesh == nullptr) continue;
        const bool continues = !sorted.groups.empty() && sorted.groups.back().shader == shader &&
                               sorted.groups.back().mesh == mesh;
        if (!continues) {
            const auto first = static_cast<std::uint32_t>(sorted.places.size());
            sorted.groups.push_back({shader, mesh, first, 0});
        }
        sorted.places.push_back(entry.place);
        ++sorted.groups.back().count;
    }
}

void DefaultRenderStrategy::collectSorted(const RenderQueue& queue,
                                          const StrategyView& view,
                                          const Sorted& sorted,
                                          DrawList& list) const {
    const auto& spheres = queue.arrays().spheres;
    for (const Group& group : sorted.groups) {
        if (view.onlyReady && !isReady(*group.shader, *group.mesh)) continue;
        const auto first = static_cast<std::uint32_t>(list.order.size());
        list.order.resize(first + group.count);
        std::uint32_t* at = list.order.data() + first;
        for (std::uint32_t index = 0; index < group.count; ++index) {
            const std::uint32_t place = sorted.places[group.first + index];
            *at = place;
            at += !frustumCull_ || isSeen(view.frustum, spheres[place]) ? 1 : 0;
        }
        list.order.resize(static_cast<std::size_t>(at - list.order.data()));
        appendRuns(list, group.shader, group.mesh, first);
    }
}

void DefaultRenderStrategy::collectFarToNear(const RenderQueue& queue,
                                             const StrategyView& view,
                                             const Sorted& sorted,
                                             DrawList& list) {
    const auto& spheres = queue.arrays().spheres;
    const auto& worlds = queue.arrays().worlds;
    far_.clear();
    for (std::uint32_t index = 0; index < sorted.groups.size(); ++index) {
        const Group& group = sorted.groups[index];
        if (view.onlyReady && !isReady(*group.shader, *group.mesh)) continue;
        for (std::uint32_t member = 0; member < group.count; ++member) {
            const std::uint32_t place = sorted.places[group.first + member];
            if (frustumCull_ && !isSeen(view.frustum, spheres[place])) continue;
            const auto& e = worlds[place].elements;
            const vlMaths::Vector center = spheres[place].radius < 0
                                                   ? vlMaths::Vector{e[3], e[7], e[11]}
                                                   : spheres[place].center;
            const float distance = lengthSquared(center - view.cameraPosition);
            far_.push_back({std::isfinite(distance) ? distance : 0, place, index});
        }
    }
    std::sort(far_.begin(), far_.end(), [](const FarEntity& a, const FarEntity& b) {
        if (a.distanceSquared != b.distanceSquared) return a.distanceSquared > b.distanceSquared;
        return a.group != b.group ? a.group < b.group : a.place < b.place;
    });
    for (std::size_t begin = 0; begin < far_.size();) {
        const auto first = static_cast<std::uint32_t>(list.order.size());
        const std::uint32_t group = far_[begin].group;
        for (; begin < far_.size() && far_[begin].group == group; ++begin) {
            list.order.push_back(far_[begin].place);
        }
        appendRuns(list, sorted.groups[group].shader, sorted.groups[group].mesh, first);
    }
}

} // namespace vlGraphics
