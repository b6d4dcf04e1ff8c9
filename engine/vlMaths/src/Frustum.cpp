#include <vlMaths/Frustum.h>

#include <cmath>
#include <limits>

namespace vlMaths {

namespace {

Vector row(const Matrix& m, std::size_t index) {
    return {m(index, 0), m(index, 1), m(index, 2), m(index, 3)};
}

} // namespace

Frustum::Frustum() {
    offset_.fill(std::numeric_limits<float>::max());
}

Frustum::Frustum(const Matrix& viewProjection) : Frustum() {
    const Vector x = row(viewProjection, 0), y = row(viewProjection, 1);
    const Vector z = row(viewProjection, 2), w = row(viewProjection, 3);
    std::size_t index = 0;
    for (const Vector& plane : {w + x, w - x, w + y, w - y, z, w - z}) {
        const float size = length(plane);
        // A plane without a direction (an endless far plane) shuts nothing out.
        if (size > 0.0F && std::isfinite(size)) {
            x_[index] = plane.x / size;
            y_[index] = plane.y / size;
            z_[index] = plane.z / size;
            offset_[index] = plane.w / size;
        }
        ++index;
    }
}

bool Frustum::intersects(const BoundingBox& box) const {
    if (box.empty()) return false;
    for (std::size_t plane = 0; plane < count; ++plane) {
        const float distance = x_[plane] * (x_[plane] > 0.0F ? box.highest.x : box.lowest.x) +
                               y_[plane] * (y_[plane] > 0.0F ? box.highest.y : box.lowest.y) +
                               z_[plane] * (z_[plane] > 0.0F ? box.highest.z : box.lowest.z) +
                               offset_[plane];
        if (distance < 0.0F) return false;
    }
    return true;
}

} // namespace vlMaths
