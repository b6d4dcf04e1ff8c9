#include <vlMaths/Quaternion.h>

#include <algorithm>

namespace vlMaths {

namespace {

/// Nothing usable is left of a cross product of unit vectors that are this near to parallel.
constexpr float parallelSine = 1e-4F;

/// The columns are the axes right, up and forward of an orthonormal base.
Quaternion fromBase(const Vector& right, const Vector& up, const Vector& forward) {
    const float trace = right.x + up.y + forward.z;
    if (trace > 0.0F) {
        const float root = 2.0F * std::sqrt(trace + 1.0F);
        return {(up.z - forward.y) / root,
                (forward.x - right.z) / root,
                (right.y - up.x) / root,
                root / 4.0F};
    }
    if (right.x >= up.y && right.x >= forward.z) {
        const float root = 2.0F * std::sqrt(1.0F + right.x - up.y - forward.z);
        return {root / 4.0F,
                (up.x + right.y) / root,
                (forward.x + right.z) / root,
                (up.z - forward.y) / root};
    }
    if (up.y >= forward.z) {
        const float root = 2.0F * std::sqrt(1.0F + up.y - right.x - forward.z);
        return {(up.x + right.y) / root,
                root / 4.0F,
                (forward.y + up.z) / root,
                (forward.x - right.z) / root};
    }
    const float root = 2.0F * std::sqrt(1.0F + forward.z - right.x - up.y);
    return {(forward.x + right.z) / root,
            (forward.y + up.z) / root,
            root / 4.0F,
            (right.y - up.x) / root};
}

/// Scaled down first, so that far places do not overflow; zero where there is no direction.
Vector direction(const Vector& from, const Vector& to) {
    const Vector way = to - from;
    const float largest = std::max({std::abs(way.x), std::abs(way.y), std::abs(way.z)});
    if (!(largest > 0.0F) || !std::isfinite(largest)) return {};
    return normalised(Vector{way.x / largest, way.y / largest, way.z / largest});
}

} // namespace

Quaternion Quaternion::fromAxisAngle(const Vector& axis, float radians) {
    const Vector unit = normalised(axis);
    if (unit == Vector{} || !std::isfinite(radians)) return {};
    const float sine = std::sin(radians / 2.0F);
    return {unit.x * sine, unit.y * sine, unit.z * sine, std::cos(radians / 2.0F)};
}

Quaternion Quaternion::fromEuler(const Vector& radians) {
    return fromAxisAngle({0, 1, 0}, radians.y) * fromAxisAngle({1, 0, 0}, radians.x) *
           fromAxisAngle({0, 0, 1}, radians.z);
}

Quaternion Quaternion::fromTo(const Vector& from, const Vector& to) {
    const Vector a = direction({}, from);
    const Vector b = direction({}, to);
    if (a == Vector{} || b == Vector{}) return {};
    const float cosine = dot(a, b);
    if (cosine > -0.9999F) {
        const Vector axis = cross(a, b);
        return normalised(Quaternion{axis.x, axis.y, axis.z, 1.0F + cosine});
    }
    // Nearly opposite: half a turn about any axis across a, then the little that is left.
    const Vector across = std::abs(a.x) < 0.7F ? Vector{1, 0, 0} : Vector{0, 1, 0};
    const Quaternion half = fromAxisAngle(cross(a, across), 3.14159265358979F);
    const Vector axis = cross(-a, b);
    return normalised(normalised(Quaternion{axis.x, axis.y, axis.z, 1.0F + dot(-a, b)}) * half);
}

Quaternion Quaternion::lookAt(const Vector& eye, const Vector& target, const Vector& up) {
    const Vector forward = direction(eye, target);
    if (forward == Vector{}) return {};
    for (const Vector& wanted : {direction({}, up), Vector{0, 1, 0}, Vector{0, 0, 1}}) {
        const Vector across = cross(wanted, forward);
        if (length(across) < parallelSine) continue;
        const Vector right = normalised(across);
        return normalised(fromBase(right, cross(forward, right), forward));
    }
    return {};
}

Vector Quaternion::toEuler() const {
    // The third row and the second row of the rotation matrix hold all three angles.
    const float sinePitch = -2.0F * (y * z - w * x);
    if (std::abs(sinePitch) > 0.99999F) {
        const float pitch = std::copysign(1.57079632679490F, sinePitch);
        return {pitch, std::atan2(2.0F * (w * y - x * z), 1.0F - 2.0F * (y * y + z * z)), 0.0F};
    }
    return {std::asin(sinePitch),
            std::atan2(2.0F * (x * z + w * y), 1.0F - 2.0F * (x * x + y * y)),
            std::atan2(2.0F * (x * y + w * z), 1.0F - 2.0F * (x * x + z * z))};
}

} // namespace vlMaths
