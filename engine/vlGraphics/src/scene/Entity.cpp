#include <vlGraphics/Entity.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <algorithm>

namespace vlGraphics {

Entity::~Entity() {
    if (node_ != nullptr) std::erase(node_->entities_, this);
}

void Entity::setParentNode(Node* node) {
    if (node == node_) return;
    if (node_ != nullptr) std::erase(node_->entities_, this);
    node_ = node;
    if (node_ != nullptr) node_->entities_.push_back(this);
    queue_->entityMoved(index_);
    queue_->markChanged();
}

const vlMaths::Matrix& Entity::getWorldMatrix() const {
    static const vlMaths::Matrix identity;
    return node_ == nullptr ? identity : node_->getAbsoluteTransform();
}

const EntityRenderInfo& Entity::getRenderInfo() const {
    return queue_->arrays_.infos[index_];
}

void Entity::setRenderInfo(const EntityRenderInfo& info) {
    EntityRenderInfo& held = queue_->arrays_.infos[index_];
    if (held == info) return;
    held = info;
    queue_->entityChanged(index_);
}

void Entity::setMesh(Handle<Mesh> mesh) {
    EntityRenderInfo info = getRenderInfo();
    info.mesh = mesh;
    setRenderInfo(info);
}

void Entity::setShader(Handle<Shader> shader) {
    EntityRenderInfo info = getRenderInfo();
    info.shader = shader;
    setRenderInfo(info);
}

} // namespace vlGraphics
