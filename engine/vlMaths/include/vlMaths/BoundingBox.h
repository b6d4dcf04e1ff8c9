#pragma once
#include <vlMaths/BoundingSphere.h>
#include <vlMaths/Matrix.h>

#include <limits>

namespace vlMaths {

/** A box along the axes, empty (lowest above highest) until the first point is added. w is not
 * used. */
struct BoundingBox {
    Vector lowest{std::numeric_limits<float>::max(),
                  std::numeric_limits<float>::max(),
                  std::numeric_limits<float>::max()};
    Vector highest{std::numeric_limits<float>::lowest(),
                   std::numeric_limits<float>::lowest(),
                   std::numeric_limits<float>::lowest()};

    constexpr bool empty() const {
        return lowest.x > highest.x || lowest.y > highest.y || lowest.z > highest.z;
    }
    constexpr void add(const Vector& point) {
        lowest = {std::min(lowest.x, point.x),
                  std::min(lowest.y, point.y),
                  std::min(lowest.z, point.z)};
        highest = {std::max(highest.x, point.x),
                   std::max(highest.y, point.y),
                   std::max(highest.z, point.z)};
    }
    constexpr void add(const BoundingBox& other) {
        if (other.empty()) return;
        add(other.lowest);
        add(other.highest);
    }
    /// The origin where the box is empty.
    constexpr Vector center() const { return empty() ? Vector{} : (lowest + highest) * 0.5F; }
    constexpr Vector size() const { return empty() ? Vector{} : highest - lowest; }

    friend constexpr bool operator==(const BoundingBox&, const BoundingBox&) = default;
};

/// The box along the axes around the transformed box; empty stays empty. Affine matrices only.
BoundingBox transform(const Matrix& m, const BoundingBox& box);
/// The ball around the box; radius -1 where the box is empty.
BoundingSphere sphereAround(const BoundingBox& box);

} // namespace vlMaths
