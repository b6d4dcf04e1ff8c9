#pragma once
#include <vlGraphics/ResourceManager.h>
#include <vlMaths/Matrix.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>

#include <vector>

namespace vlGraphics {

class Entity;

/** A place in the scene: position, orientation and scale relative to its parent node. Entities hang
 * on nodes. A node that is erased leaves its children as roots and its entities without a node. */
class Node final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "node";

    ~Node() override;

    const vlMaths::Vector& getPosition() const { return position_; }
    const vlMaths::Quaternion& getOrientation() const { return orientation_; }
    const vlMaths::Vector& getScale() const { return scale_; }
    /// Values that are not finite are refused: false, nothing changed.
    bool setPosition(const vlMaths::Vector& value);
    bool setOrientation(const vlMaths::Quaternion& value);
    bool setScale(const vlMaths::Vector& value);

    const vlMaths::Matrix& getAbsoluteTransform() const;
    vlMaths::Vector getPositionAbsolute() const;
    vlMaths::Quaternion getOrientationAbsolute() const;
    vlMaths::Vector getScaleAbsolute() const;

    Node* getParentNode() const { return parent_; }
    /// Null makes a root. False, nothing changed, when the parent is the node itself or below it.
    bool setParentNode(Node* parent);
    /// Null past the last.
    Node* getChildNode(std::size_t index) const;
    Entity* getTrackedEntity(std::size_t index) const;

private:
    friend class Entity;
    void invalidate();

    vlMaths::Vector position_{0, 0, 0, 1};
    vlMaths::Quaternion orientation_;
    vlMaths::Vector scale_{1, 1, 1, 0};
    Node* parent_ = nullptr;
    std::vector<Node*> children_;
    std::vector<Entity*> entities_;
    mutable bool stale_ = true;
    mutable vlMaths::Matrix absolute_;
};

class NodeManager final : public ResourceManager<Node>,
                          public vlCommon::MaybeSingletonClass<NodeManager> {};

} // namespace vlGraphics
