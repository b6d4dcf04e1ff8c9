#include "scene/GraphManager.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/Entity.h>
#include <vlGraphics/Node.h>

#include <algorithm>

namespace vlEditor {
namespace {

SceneElement describe(const vlGraphics::Node& node, std::uint32_t id, std::uint32_t parent) {
    SceneElement element;
    element.id = id;
    element.parent = parent;
    element.name = node.getName();
    element.transform = {node.getPosition(),
                         node.getOrientation(),
                         node.getScale(),
                         node.getPositionAbsolute(),
                         node.getOrientationAbsolute(),
                         node.getScaleAbsolute()};
    return element;
}

SceneElement describeEntity(std::uint32_t id, const SceneElement& node) {
    SceneElement element;
    element.id = id;
    element.parent = node.id;
    element.isNode = false;
    element.name = "Entity " + std::to_string(id);
    element.transform = node.transform;
    return element;
}

} // namespace

void GraphManager::registerEntity(std::uint32_t id, vlGraphics::Entity& entity) {
    vlCommon::assertGraphicsThread();
    entityById_[id] = &entity;
    idByEntity_[&entity] = id;
}

void GraphManager::registerNode(std::uint32_t id, const vlGraphics::Node& node) {
    vlCommon::assertGraphicsThread();
    idByNode_[node.getName()] = id;
}

void GraphManager::forget(const vlGraphics::Entity& entity) {
    vlCommon::assertGraphicsThread();
    const auto found = idByEntity_.find(&entity);
    if (found == idByEntity_.end()) return;
    entityById_.erase(found->second);
    idByEntity_.erase(found);
    if (selectedEntity_ == &entity) select(0);
}

void GraphManager::forgetNode(const std::string& name) {
    vlCommon::assertGraphicsThread();
    idByNode_.erase(name);
    if (selectedNode_ != nullptr && selectedNode_->getName() == name) select(0);
}

vlGraphics::Entity* GraphManager::getEntity(std::uint32_t id) const {
    const auto found = entityById_.find(id);
    return found == entityById_.end() ? nullptr : found->second;
}

std::uint32_t GraphManager::getId(const vlGraphics::Entity& entity) const {
    const auto found = idByEntity_.find(&entity);
    return found == idByEntity_.end() ? 0 : found->second;
}

std::uint32_t GraphManager::getId(const vlGraphics::Node& node) const {
    const auto found = idByNode_.find(node.getName());
    return found == idByNode_.end() ? 0 : found->second;
}

void GraphManager::select(std::uint32_t id) {
    vlCommon::assertGraphicsThread();
    selectedEntity_ = getEntity(id);
    selectedNode_ = selectedEntity_ == nullptr ? nullptr : selectedEntity_->getParentNode();
}

std::vector<SceneElement> GraphManager::enter(vlGraphics::Node& root) {
    vlCommon::assertGraphicsThread();
    std::vector<SceneElement> entered;
    // Without recursion: how deep a scene is, its file decides.
    std::vector<vlGraphics::Node*> waiting{&root};
    while (!waiting.empty()) {
        vlGraphics::Node& node = *waiting.back();
        waiting.pop_back();
        const vlGraphics::Node* parent = node.getParentNode();
        const std::uint32_t known = getId(node);
        const std::uint32_t id = known != 0 ? known : nextNodeId();
        const SceneElement element =
                describe(node, id, parent == nullptr ? SceneElement::noParent : getId(*parent));
        if (known == 0) {
            registerNode(id, node);
            entered.push_back(element);
        }
        for (std::size_t i = 0; vlGraphics::Entity* entity = node.getTrackedEntity(i); ++i) {
            if (getId(*entity) != 0) continue;
            registerEntity(nextEntityId(), *entity);
            entered.push_back(describeEntity(getId(*entity), element));
        }
        const std::size_t first = waiting.size();
        for (std::size_t i = 0; vlGraphics::Node* child = node.getChildNode(i); ++i) {
            waiting.push_back(child);
        }
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(first), waiting.end());
    }
    return entered;
}

} // namespace vlEditor
