#include <vlGraphics/Entity.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <algorithm>
#include <cmath>

namespace vlGraphics {

namespace {

bool isFinitePoint(const vlMaths::Vector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Nearly unit orientations stay bit by bit what they are, so that they survive files.
vlMaths::Quaternion unit(const vlMaths::Quaternion& q) {
    constexpr float tolerance = 1e-5F;
    return std::abs(lengthSquared(q) - 1.0F) <= tolerance ? q : normalised(q);
}

/// The last bearer goes first where many go, as when a manager is cleared.
template <class T> void eraseLast(std::vector<T*>& list, const T* item) {
    const auto found = std::find(list.rbegin(), list.rend(), item);
    if (found != list.rend()) list.erase(std::next(found).base());
}

} // namespace

Node::~Node() {
    for (Node* child : children_) {
        child->parent_ = nullptr;
        child->invalidate();
    }
    for (Entity* entity : entities_) {
        entity->node_ = nullptr;
        entity->queue_->entityMoved(entity->index_);
    }
    if (parent_ != nullptr) eraseLast(parent_->children_, this);
}

bool Node::setPosition(const vlMaths::Vector& value) {
    if (!isFinitePoint(value)) return false;
    const vlMaths::Vector position = value.withW(1);
    if (position == position_) return true;
    position_ = position;
    invalidate();
    markChanged();
    return true;
}

bool Node::setOrientation(const vlMaths::Quaternion& value) {
    const float size = lengthSquared(value);
    if (!(size > 0.0F) || !std::isfinite(size)) return false;
    const vlMaths::Quaternion orientation = unit(value);
    if (orientation == orientation_) return true;
    orientation_ = orientation;
    invalidate();
    markChanged();
    return true;
}

bool Node::setScale(const vlMaths::Vector& value) {
    if (!isFinitePoint(value)) return false;
    const vlMaths::Vector scale = value.withW(0);
    if (scale == scale_) return true;
    scale_ = scale;
    invalidate();
    markChanged();
    return true;
}

// Chains may be longer than a call stack is deep: what is stale above is gathered, then brought up
// to date from the top.
const vlMaths::Matrix& Node::getAbsoluteTransform() const {
    if (!stale_) return absolute_;
    thread_local std::vector<const Node*> stale;
    stale.clear();
    for (const Node* node = this; node != nullptr && node->stale_; node = node->parent_) {
        stale.push_back(node);
    }
    for (auto node = stale.rbegin(); node != stale.rend(); ++node) {
        const Node& at = **node;
        const auto local = vlMaths::Matrix::compose(at.position_, at.orientation_, at.scale_);
        at.absolute_ = at.parent_ == nullptr ? local : at.parent_->absolute_ * local;
        at.stale_ = false;
    }
    return absolute_;
}

vlMaths::Vector Node::getPositionAbsolute() const {
    return decompose(getAbsoluteTransform()).position.withW(1);
}
vlMaths::Quaternion Node::getOrientationAbsolute() const {
    return decompose(getAbsoluteTransform()).orientation;
}
vlMaths::Vector Node::getScaleAbsolute() const {
    return decompose(getAbsoluteTransform()).scale.withW(0);
}

bool Node::setParentNode(Node* parent) {
    if (parent == parent_) return true;
    if (parent == this) return false;
    // A node without children has nothing below it; so long chains grow in linear time.
    if (!children_.empty()) {
        for (const Node* above = parent; above != nullptr; above = above->parent_) {
            if (above == this) return false;
        }
    }
    if (parent_ != nullptr) eraseLast(parent_->children_, this);
    parent_ = parent;
    if (parent_ != nullptr) parent_->children_.push_back(this);
    invalidate();
    markChanged();
    return true;
}

Node* Node::getChildNode(std::size_t index) const {
    return index < children_.size() ? children_[index] : nullptr;
}

Entity* Node::getTrackedEntity(std::size_t index) const {
    return index < entities_.size() ? entities_[index] : nullptr;
}

// Below a stale node everything is stale and every entity known to its queue as moved, so the walk
// ends there: moving many nodes of one tree stays linear.
void Node::invalidate() {
    thread_local std::vector<Node*> pending;
    pending.assign(1, this);
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        if (node->stale_) continue;
        node->stale_ = true;
        for (const Entity* entity : node->entities_)
            entity->queue_->entityMoved(entity->index_);
        pending.insert(pending.end(), node->children_.begin(), node->children_.end());
    }
}

} // namespace vlGraphics
