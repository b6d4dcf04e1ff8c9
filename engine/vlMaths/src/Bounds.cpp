#include <vlMaths/BoundingBox.h>
#include <vlMaths/BoundingSphere.h>

#include <cmath>

namespace vlMaths {

BoundingSphere merge(const BoundingSphere& a, const BoundingSphere& b) {
    if (a.radius < 0.0F) return b;
    if (b.radius < 0.0F) return a;
    const float apart = distance(a.center, b.center);
    if (apart + b.radius <= a.radius) return a;
    if (apart + a.radius <= b.radius) return b;
    const float radius = (apart + a.radius + b.radius) / 2.0F;
    return {lerp(a.center, b.center, (radius - a.radius) / apart), radius};
}

BoundingBox transform(const Matrix& m, const BoundingBox& box) {
    if (box.empty()) return box;
    const Vector half = box.size() * 0.5F;
    const auto& e = m.elements;
    const Vector reach{
            std::abs(e[0]) * half.x + std::abs(e[1]) * half.y + std::abs(e[2]) * half.z,
            std::abs(e[4]) * half.x + std::abs(e[5]) * half.y + std::abs(e[6]) * half.z,
            std::abs(e[8]) * half.x + std::abs(e[9]) * half.y + std::abs(e[10]) * half.z,
    };
    const Vector center = transformPoint(m, box.center()).withW(0.0F);
    return {center - reach, center + reach};
}

BoundingSphere sphereAround(const BoundingBox& box) {
    if (box.empty()) return {{}, -1.0F};
    return {box.center(), length(box.size()) / 2.0F};
}

} // namespace vlMaths
