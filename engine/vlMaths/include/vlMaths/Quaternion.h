#pragma once
#include <vlMaths/Vector.h>

namespace vlMaths {

/** A rotation, the identity unless given. A plain value for any thread. Angles are radians; a
 * positive angle about Y turns +Z towards +X, about X turns +Y towards +Z, about Z turns +X towards
 * +Y. a * b turns by b first, then by a. What rotates (rotate, toEuler, Matrix) wants unit length.
 */
struct Quaternion {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    float w = 1.0F;

    constexpr Quaternion() = default;
    constexpr Quaternion(float xValue, float yValue, float zValue, float wValue)
        : x(xValue), y(yValue), z(zValue), w(wValue) {}

    /// The axis need not have unit length; the identity where it has no direction.
    static Quaternion fromAxisAngle(const Vector& axis, float radians);
    /// x pitch, y yaw, z roll, in radians: turns about Z first, then about X, then about Y.
    static Quaternion fromEuler(const Vector& radians);
    /// The shortest turn that takes one direction to the other; the identity where one has none.
    static Quaternion fromTo(const Vector& from, const Vector& to);
    /** The orientation of an object at eye whose +Z looks at target and whose +Y is as near to up
     * as can be. An up that is zero or along the view direction is replaced by world +Y, and that
     * one by +Z where it is along the view as well. The identity where eye and target are the same
     * point or anything is not finite. */
    static Quaternion lookAt(const Vector& eye, const Vector& target, const Vector& up = {});

    /// The angles that fromEuler makes this rotation from; pitch within a quarter turn either way,
    /// yaw and roll within half a turn. Looking straight up or down, roll is 0.
    Vector toEuler() const;

    friend constexpr Quaternion operator*(const Quaternion& a, const Quaternion& b) {
        return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
                a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
                a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
                a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
    }
    friend constexpr bool operator==(const Quaternion&, const Quaternion&) = default;
};

constexpr float lengthSquared(const Quaternion& q) {
    return q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w;
}

/// The identity where there is nothing to normalise (zero length or not finite).
inline Quaternion normalised(const Quaternion& q) {
    const float size = std::sqrt(lengthSquared(q));
    if (!(size > 0.0F) || !std::isfinite(size)) return {};
    return {q.x / size, q.y / size, q.z / size, q.w / size};
}

/// The turn back; of any length but zero, for which the answer is the identity.
constexpr Quaternion inverse(const Quaternion& q) {
    const float size = lengthSquared(q);
    if (!(size > 0.0F)) return {};
    return {-q.x / size, -q.y / size, -q.z / size, q.w / size};
}

/// Turns x, y and z; keeps w.
constexpr Vector rotate(const Quaternion& q, const Vector& v) {
    const Vector axis{q.x, q.y, q.z};
    const Vector twice = 2.0F * cross(axis, v);
    const Vector turned = v + q.w * twice + cross(axis, twice);
    return turned.withW(v.w);
}

inline bool isFinite(const Quaternion& q) {
    return std::isfinite(q.x) && std::isfinite(q.y) && std::isfinite(q.z) && std::isfinite(q.w);
}

} // namespace vlMaths
