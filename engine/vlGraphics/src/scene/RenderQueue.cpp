#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <cassert>

namespace vlGraphics {

RenderQueue::RenderQueue() = default;

// Entities tell their nodes that they go, and nothing else of the queue.
RenderQueue::~RenderQueue() = default;

Entity* RenderQueue::addEntity() {
    const std::uint32_t index = appendPlace();
    entities_[index] = std::unique_ptr<Entity>(new Entity(*this, index));
    entityPointers_[index] = entities_[index].get();
    entityChanged(index);
    return entityPointers_[index];
}

void RenderQueue::removeEntity(Entity& entity) {
    assert(entity.queue_ == this);
    const std::unique_ptr<Entity> dying = takePlace(entity.index_);
}

void RenderQueue::adoptEntity(Entity& entity) {
    RenderQueue& from = *entity.queue_;
    if (&from == this) return;
    const EntityRenderInfo info = entity.getRenderInfo();
    std::unique_ptr<Entity> owned = from.takePlace(entity.index_);
    const std::uint32_t index = appendPlace();
    entity.queue_ = this;
    entity.index_ = index;
    entityPointers_[index] = owned.get();
    entities_[index] = std::move(owned);
    arrays_.infos[index] = info;
    entityChanged(index);
}

Entity* RenderQueue::getEntity(std::size_t index) const {
    return index < entityPointers_.size() ? entityPointers_[index] : nullptr;
}

void RenderQueue::setRaytraced(bool value) {
    if (raytraced_ == value) return;
    raytraced_ = value;
    markChanged();
}

void RenderQueue::reset() {
    while (!entities_.empty())
        removeEntity(*entities_.back());
    raytraced_ = false;
    strategy_ = {};
    ++structureRevision_;
    markChanged();
}

void RenderQueue::updateTransforms() {
    refreshChangedMeshes();
    for (const std::uint32_t index : moved_) {
        if (index >= isMoved_.size() || isMoved_[index] == 0) continue;
        isMoved_[index] = 0;
        arrays_.worlds[index] = entityPointers_[index]->getWorldMatrix();
        refreshSphere(index);
    }
    moved_.clear();
}

/// Every entity of a mesh that took other bounds, came or went gets its sphere anew.
void RenderQueue::refreshChangedMeshes() {
    const MeshManager* meshes = MeshManager::getInstance();
    const std::uint64_t bounds = Mesh::getBoundsRevision();
    const std::uint64_t structure = meshes == nullptr ? 0 : meshes->getStructureRevision();
    if (bounds == seenBounds_ && structure == seenMeshes_) return;
    const bool othersBearNames = structure != seenMeshes_;
    seenBounds_ = bounds;
    seenMeshes_ = structure;
    for (std::uint32_t index = 0; index < arrays_.infos.size(); ++index) {
        if (isMoved_[index] != 0) continue;
        const Mesh* mesh = meshes == nullptr ? nullptr : meshes->resolve(arrays_.infos[index].mesh);
        const std::uint64_t revision = mesh == nullptr ? 0 : mesh->getRevision();
        if (othersBearNames || revision != arrays_.meshRevisions[index]) refreshSphere(index);
    }
}

void RenderQueue::refreshSphere(std::uint32_t index) {
    const MeshManager* meshes = MeshManager::getInstance();
    const Mesh* mesh = meshes == nullptr ? nullptr : meshes->resolve(arrays_.infos[index].mesh);
    arrays_.meshRevisions[index] = mesh == nullptr ? 0 : mesh->getRevision();
    const bool bounded = mesh != nullptr && mesh->getBoundingSphere().radius >= 0;
    arrays_.spheres[index] = bounded ? transform(arrays_.worlds[index], mesh->getBoundingSphere())
                                     : vlMaths::BoundingSphere{{}, -1};
}

void RenderQueue::entityMoved(std::uint32_t index) {
    if (isMoved_[index] != 0) return;
    isMoved_[index] = 1;
    moved_.push_back(index);
}

void RenderQueue::entityChanged(std::uint32_t index) {
    entityMoved(index);
    ++structureRevision_;
    markChanged();
}

std::uint32_t RenderQueue::appendPlace() {
    const auto index = static_cast<std::uint32_t>(entities_.size());
    entities_.emplace_back();
    entityPointers_.push_back(nullptr);
    isMoved_.push_back(0);
    arrays_.worlds.emplace_back();
    arrays_.spheres.push_back({{}, -1});
    arrays_.infos.emplace_back();
    arrays_.meshRevisions.push_back(0);
    arrays_.joined.push_back(++joinedCount_);
    return index;
}

/// Moves the last into the gap.
std::unique_ptr<Entity> RenderQueue::takePlace(std::uint32_t index) {
    const auto last = static_cast<std::uint32_t>(entities_.size() - 1);
    std::unique_ptr<Entity> taken = std::move(entities_[index]);
    const bool lastMoved = isMoved_[last] != 0;
    if (index != last) {
        entities_[index] = std::move(entities_[last]);
        entityPointers_[index] = entityPointers_[last];
        entityPointers_[index]->index_ = index;
        arrays_.worlds[index] = arrays_.worlds[last];
        arrays_.spheres[index] = arrays_.spheres[last];
        arrays_.infos[index] = arrays_.infos[last];
        arrays_.meshRevisions[index] = arrays_.meshRevisions[last];
        arrays_.joined[index] = arrays_.joined[last];
        isMoved_[index] = 0;
        if (lastMoved) entityMoved(index);
    }
    entities_.pop_back();
    entityPointers_.pop_back();
    isMoved_.pop_back();
    arrays_.worlds.pop_back();
    arrays_.spheres.pop_back();
    arrays_.infos.pop_back();
    arrays_.meshRevisions.pop_back();
    arrays_.joined.pop_back();
    // A queue that nobody draws would otherwise remember every entity that ever came and went.
    constexpr std::size_t few = 64;
    if (moved_.size() > 2 * isMoved_.size() + few) {
        moved_.clear();
        for (std::uint32_t place = 0; place < isMoved_.size(); ++place) {
            if (isMoved_[place] != 0) moved_.push_back(place);
        }
    }
    ++structureRevision_;
    markChanged();
    return taken;
}

} // namespace vlGraphics
