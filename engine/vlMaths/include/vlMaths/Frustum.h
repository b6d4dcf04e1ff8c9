#pragma once
#include <vlMaths/BoundingBox.h>
#include <vlMaths/BoundingSphere.h>
#include <vlMaths/Matrix.h>

#include <array>

namespace vlMaths {

/** The six planes of what a camera sees, facing inwards. A default one sees everything. A plain
 * value; the tests may be called from any thread. */
class Frustum {
public:
    Frustum();
    /// Planes in the space that the matrix takes from: world for projection * view.
    explicit Frustum(const Matrix& viewProjection);

    /// False only where the ball is certainly outside; a ball that is not finite counts as seen.
    bool intersects(const BoundingSphere& sphere) const {
        bool outside = false;
        for (std::size_t plane = 0; plane < count; ++plane) {
            const float distance = x_[plane] * sphere.center.x + y_[plane] * sphere.center.y +
                                   z_[plane] * sphere.center.z + offset_[plane];
            outside |= distance < -sphere.radius;
        }
        return !outside;
    }
    /// False only where the box is certainly outside one plane.
    bool intersects(const BoundingBox& box) const;

private:
    // Member by member and padded to eight, so that one test is a few wide instructions; the
    // padding sees everything.
    static constexpr std::size_t count = 8;
    std::array<float, count> x_{}, y_{}, z_{}, offset_{};
};

} // namespace vlMaths
