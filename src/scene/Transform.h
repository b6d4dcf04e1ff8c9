#pragma once
#include "core/Members.h"

namespace vlEditor {

/** Where a scene element is: relative to its parent, then in the world. */
struct Transform {
    vlMaths::Vector position{0, 0, 0, 1};
    vlMaths::Quaternion orientation;
    vlMaths::Vector scale{1, 1, 1, 0};
    vlMaths::Vector worldPosition{0, 0, 0, 1};
    vlMaths::Quaternion worldOrientation;
    vlMaths::Vector worldScale{1, 1, 1, 0};

    static constexpr auto members() {
        return std::tuple{Member{"position", &Transform::position},
                          Member{"orientation", &Transform::orientation},
                          Member{"scale", &Transform::scale},
                          Member{"worldPosition", &Transform::worldPosition},
                          Member{"worldOrientation", &Transform::worldOrientation},
                          Member{"worldScale", &Transform::worldScale}};
    }
};

} // namespace vlEditor
