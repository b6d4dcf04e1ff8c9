#pragma once
#include <vlMaths/Matrix.h>

#include <algorithm>
#include <cmath>

namespace vlMaths {

/** A ball around something. A negative radius holds nothing. */
struct BoundingSphere {
    Vector center;
    float radius = 0.0F;

    friend constexpr bool operator==(const BoundingSphere&, const BoundingSphere&) = default;
};

/// A ball that holds the transformed ball; exact where the scale is the same along all axes.
inline BoundingSphere transform(const Matrix& m, const BoundingSphere& sphere) {
    const auto& e = m.elements;
    const float x = e[0] * e[0] + e[4] * e[4] + e[8] * e[8];
    const float y = e[1] * e[1] + e[5] * e[5] + e[9] * e[9];
    const float z = e[2] * e[2] + e[6] * e[6] + e[10] * e[10];
    return {transformPoint(m, sphere.center), sphere.radius * std::sqrt(std::max({x, y, z}))};
}

/// A small ball that holds both.
BoundingSphere merge(const BoundingSphere& a, const BoundingSphere& b);

} // namespace vlMaths
