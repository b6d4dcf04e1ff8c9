#pragma once
#include "scene/SceneElement.h"

#include <vlCommon/SingletonClass.h>

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace vlGraphics {
class Entity;
class Node;
} // namespace vlGraphics

namespace vlEditor {

/** Gives every node and entity of the scene its id, and holds the selection. Entity ids count up
 *  from 1 and are what the picking target carries; node ids take the topmost 65,536 values, so that
 *  the two never meet. Graphics thread only. */
class GraphManager final : public vlCommon::SingletonClass<GraphManager> {
public:
    /// The first ids belong to the three axes of the gizmo.
    static constexpr std::uint32_t reservedEntityIds = 3;

    std::uint32_t nextEntityId() { return ++entityCounter_; }
    std::uint32_t nextNodeId() { return ++nodeCounter_ - 65536U; }

    void registerEntity(std::uint32_t id, vlGraphics::Entity& entity);
    void registerNode(std::uint32_t id, const vlGraphics::Node& node);
    /// An entity that is not known is passed over; a selected one is not any more.
    void forget(const vlGraphics::Entity& entity);
    /// By name: names outlive the nodes that bear them.
    void forgetNode(const std::string& name);

    /// Null when there is none.
    vlGraphics::Entity* getEntity(std::uint32_t id) const;
    /// 0 when it is not known.
    std::uint32_t getId(const vlGraphics::Entity& entity) const;
    std::uint32_t getId(const vlGraphics::Node& node) const;

    /// The entity of that id and the node that it hangs on; an unknown id, or 0, selects nothing.
    void select(std::uint32_t id);
    vlGraphics::Entity* getSelectedEntity() const { return selectedEntity_; }
    vlGraphics::Node* getSelectedNode() const { return selectedNode_; }

    /// Gives ids to a node, the entities on it and all below it, where they have none yet;
    /// describes those that got one, parents first.
    std::vector<SceneElement> enter(vlGraphics::Node& node);

private:
    std::map<std::uint32_t, vlGraphics::Entity*> entityById_;
    std::map<const vlGraphics::Entity*, std::uint32_t> idByEntity_;
    std::unordered_map<std::string, std::uint32_t> idByNode_;
    std::uint32_t entityCounter_ = reservedEntityIds;
    std::uint32_t nodeCounter_ = 0;
    vlGraphics::Entity* selectedEntity_ = nullptr;
    vlGraphics::Node* selectedNode_ = nullptr;
};

} // namespace vlEditor
