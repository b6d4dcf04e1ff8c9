#pragma once
#include "core/Members.h"
#include "scene/Transform.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vlEditor {

/** The UI's copy of a node or an entity. The two kinds of id never meet: see GraphManager. */
struct SceneElement {
    static constexpr std::uint32_t noParent = 0;

    std::uint32_t id = 0;
    std::uint32_t parent = noParent;
    bool isNode = true; ///< otherwise an entity
    std::string name;
    Transform transform;
    std::vector<std::uint32_t> children; ///< in the order of their coming; kept by the tracker

    /// What travels; the children follow from the parents.
    static constexpr auto members() {
        return std::tuple{Member{"id", &SceneElement::id},
                          Member{"parent", &SceneElement::parent},
                          Member{"isNode", &SceneElement::isNode},
                          Member{"name", &SceneElement::name},
                          Member{"transform", &SceneElement::transform}};
    }
};

} // namespace vlEditor
