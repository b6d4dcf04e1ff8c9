#include "script/KindBuilder.h"
#include "script/Kinds.h"

#include <vlGraphics/Camera.h>
#include <vlGraphics/Entity.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <charconv>

namespace vlKestrion {
namespace {

using vlGraphics::Camera;
using vlGraphics::CameraManager;
using vlGraphics::Entity;
using vlGraphics::Node;
using vlGraphics::NodeManager;

// An entity has no name of its own: it is the nth of its node, "knot#1".

vlScripts::Object entityOf(const String& node, std::size_t index) {
    return {"entity", node + "#" + std::to_string(index + 1)};
}

Entity* findEntity(const String& name) {
    const std::size_t sign = name.rfind('#');
    NodeManager* nodes = NodeManager::getInstance();
    if (sign == String::npos || nodes == nullptr) return nullptr;
    std::size_t place = 0;
    const char* end = name.data() + name.size();
    const auto read = std::from_chars(name.data() + sign + 1, end, place);
    if (read.ec != std::errc() || read.ptr != end || place == 0) return nullptr;
    const Node* node = nodes->get(name.substr(0, sign));
    return node == nullptr ? nullptr : node->getTrackedEntity(place - 1);
}

std::vector<vlScripts::Object> entitiesOf(const Node& node) {
    std::vector<vlScripts::Object> entities;
    while (node.getTrackedEntity(entities.size()) != nullptr)
        entities.push_back(entityOf(node.getName(), entities.size()));
    return entities;
}

std::vector<Node*> childrenOf(const Node& node) {
    std::vector<Node*> children;
    while (Node* child = node.getChildNode(children.size()))
        children.push_back(child);
    return children;
}

/// What hangs on the node and below it.
template <class Visit> void forEachEntity(const Node& node, const Visit& visit) {
    std::vector<const Node*> open{&node};
    while (!open.empty()) {
        const Node* next = open.back();
        open.pop_back();
        for (std::size_t i = 0; Entity* entity = next->getTrackedEntity(i); ++i)
            visit(*entity);
        for (std::size_t i = 0; const Node* child = next->getChildNode(i); ++i)
            open.push_back(child);
    }
}

bool isVisible(const Node& node) {
    bool visible = false;
    forEachEntity(node, [&](const Entity& entity) {
        visible = visible || entity.getRenderInfo().visible;
    });
    return visible;
}

template <class V>
void change(Entity& entity, V vlGraphics::EntityRenderInfo::*member, const V& value) {
    vlGraphics::EntityRenderInfo info = entity.getRenderInfo();
    info.*member = value;
    entity.setRenderInfo(info);
}

template <class V> auto reader(V vlGraphics::EntityRenderInfo::*member) {
    return [member](const Entity& entity) { return entity.getRenderInfo().*member; };
}
template <class V> auto writer(V vlGraphics::EntityRenderInfo::*member) {
    return [member](Entity& entity, const V& value) {
        change(entity, member, value);
        return true;
    };
}

template <class V> auto settingOf(V Camera::Settings::*member) {
    return [member](const Camera& camera) { return camera.getSettings().*member; };
}
template <class V> auto changeSetting(V Camera::Settings::*member) {
    return [member](Camera& camera, const V& value) {
        Camera::Settings settings = camera.getSettings();
        settings.*member = value;
        return camera.setSettings(settings);
    };
}

constexpr float degreesPerRadian = 57.2957795F;

} // namespace

EngineKind nodeKind() {
    auto builder = resourceKind<NodeManager>("node");
    builder.field(
                   "position",
                   "relative to the parent, world units",
                   [](const Node& node) { return Triple{node.getPosition()}; },
                   [](Node& node, const Triple& value) { return node.setPosition(value.vector); })
            .field("orientation",
                   "relative to the parent; a quaternion, brought to unit length",
                   &Node::getOrientation,
                   &Node::setOrientation)
            .field(
                    "rotation",
                    "the same as angles about x, y and z, in degrees",
                    [](const Node& node) {
                        return Triple{node.getOrientation().toEuler() * degreesPerRadian};
                    },
                    [](Node& node, const Triple& value) {
                        return node.setOrientation(vlMaths::Quaternion::fromEuler(
                                value.vector * (1 / degreesPerRadian)));
                    })
            .field(
                    "scale",
                    "relative to the parent",
                    [](const Node& node) { return Triple{node.getScale()}; },
                    [](Node& node, const Triple& value) { return node.setScale(value.vector); })
            .field("absolutePosition",
                   "in the world",
                   [](const Node& node) { return Triple{node.getPositionAbsolute()}; })
            .field("absoluteOrientation", "in the world", &Node::getOrientationAbsolute)
            .field("absoluteScale",
                   "in the world",
                   [](const Node& node) { return Triple{node.getScaleAbsolute()}; })
            .field("parent",
                   "nil for a root; never one below itself",
                   &Node::getParentNode,
                   &Node::setParentNode)
            .field("children", "the nodes right below", childrenOf)
            .field("entities", "what hangs on the node", entitiesOf)
            .field("visible",
                   "any entity on it or below is drawn; writing shows or hides all of them",
                   isVisible,
                   [](Node& node, bool value) {
                       forEachEntity(node, [&](Entity& entity) {
                           change(entity, &vlGraphics::EntityRenderInfo::visible, value);
                       });
                       return true;
                   });
    return finish<NodeManager>(builder, "nodes");
}

EngineKind entityKind() {
    using Info = vlGraphics::EntityRenderInfo;
    KindBuilder<Entity> builder("entity", findEntity);
    builder.field("mesh", "what it draws", reader(&Info::mesh), writer(&Info::mesh))
            .field("shader", "how it is drawn", reader(&Info::shader), writer(&Info::shader))
            .field(
                    "material",
                    "gives the shader, and whether it is transparent",
                    [](const Entity& entity) {
                        MaterialManager* materials = MaterialManager::getInstance();
                        return materials == nullptr ? vlGraphics::Handle<Material>{}
                                                    : materials->materialOf(entity);
                    },
                    [](Entity& entity, vlGraphics::Handle<Material> material) {
                        MaterialManager* materials = MaterialManager::getInstance();
                        if (materials == nullptr) return false;
                        materials->assign(entity, material);
                        return true;
                    })
            .field("visible", "it is drawn", reader(&Info::visible), writer(&Info::visible))
            .field("transparent",
                   "it is drawn after the opaque ones, far to near",
                   reader(&Info::transparent),
                   writer(&Info::transparent))
            .field("node",
                   "what it hangs on",
                   [](const Entity& entity) { return entity.getParentNode(); })
            .field("renderQueue", "the queue that owns it", [](const Entity& entity) {
                return entity.getRenderQueue().getName();
            });
    return {builder.take(),
            "entities",
            [] {
                std::vector<String> names;
                NodeManager* nodes = NodeManager::getInstance();
                for (std::size_t i = 0; nodes != nullptr && i < nodes->getCount(); ++i) {
                    const Node& node = *nodes->getByIndex(i);
                    if (node.isHidden()) continue;
                    for (const auto& entity : entitiesOf(node))
                        names.push_back(entity.name);
                }
                return names;
            },
            [](const String& name) { return findEntity(name) != nullptr; }};
}

EngineKind cameraKind() {
    using Settings = Camera::Settings;
    auto builder = resourceKind<CameraManager>("camera");
    builder.field(
                   "position",
                   "in the world",
                   [](const Camera& camera) { return Triple{camera.getPositionAbsolute()}; },
                   [](Camera& camera, const Triple& value) {
                       return camera.setPosition(value.vector.withW(1));
                   })
            .field("orientation",
                   "a quaternion; it looks along its own +z",
                   &Camera::getOrientationAbsolute,
                   &Camera::setOrientation)
            .field(
                    "fov",
                    "vertical, in degrees, above 0 and below 180",
                    [](const Camera& camera) {
                        return camera.getSettings().fieldOfView * degreesPerRadian;
                    },
                    [](Camera& camera, float value) {
                        // In radians, 180 degrees would round to a little less than they are.
                        if (!(value < 180)) return false;
                        return changeSetting(&Settings::fieldOfView)(camera,
                                                                     value / degreesPerRadian);
                    })
            .field("near",
                   "distance, above 0 for perspective, below far",
                   settingOf(&Settings::nearDistance),
                   changeSetting(&Settings::nearDistance))
            .field("far",
                   "distance, above near",
                   settingOf(&Settings::farDistance),
                   changeSetting(&Settings::farDistance))
            .field("orthographic",
                   "without perspective",
                   settingOf(&Settings::orthographic),
                   changeSetting(&Settings::orthographic))
            .field("orthographicHeight",
                   "of the visible box, world units",
                   settingOf(&Settings::orthographicHeight),
                   changeSetting(&Settings::orthographicHeight))
            .field("aspectRatio",
                   "width over height; a viewport sets it on every resize",
                   &Camera::getAspectRatio,
                   &Camera::setAspectRatio)
            .field("right",
                   "its +x in the world",
                   [](const Camera& camera) { return Triple{camera.getAbsoluteRight()}; })
            .field("up",
                   "its +y in the world",
                   [](const Camera& camera) { return Triple{camera.getAbsoluteUp()}; })
            .field("front", "its +z in the world", [](const Camera& camera) {
                return Triple{camera.getAbsoluteFront()};
            });
    builder.method("lookAt",
                   "target [, up]",
                   "turns towards a point",
                   [](Camera& camera, std::span<const Value> given) -> Result<> {
                       const auto target =
                               Conversion<Triple>::read(given.empty() ? Value() : given[0]);
                       if (!target) return tl::unexpected(target.error());
                       Triple up;
                       if (given.size() > 1) {
                           const auto wanted = Conversion<Triple>::read(given[1]);
                           if (!wanted) return tl::unexpected(wanted.error());
                           up = *wanted;
                       }
                       camera.lookAt(target->vector.withW(1), up.vector);
                       return {};
                   });
    builder.method("move",
                   "offset",
                   "by a vector in its own frame",
                   [](Camera& camera, std::span<const Value> given) -> Result<> {
                       const auto offset =
                               Conversion<Triple>::read(given.empty() ? Value() : given[0]);
                       if (!offset) return tl::unexpected(offset.error());
                       camera.translateLocal(offset->vector);
                       return {};
                   });
    return finish<CameraManager>(builder, "cameras");
}

} // namespace vlKestrion
