#pragma once
#include <cmath>

namespace vlMaths {

/** Four floats: a point (w = 1), a direction (w = 0), a colour or any four values. A plain value
 * for any thread. w is 0 unless given. The operators and == work on all four members; what is
 * geometry (dot, cross, length, normalised, distance) looks at x, y and z only. */
struct Vector {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    float w = 0.0F;

    constexpr Vector() = default;
    constexpr Vector(float xValue, float yValue, float zValue, float wValue = 0.0F)
        : x(xValue), y(yValue), z(zValue), w(wValue) {}

    constexpr Vector& operator+=(const Vector& other) {
        x += other.x;
        y += other.y;
        z += other.z;
        w += other.w;
        return *this;
    }
    constexpr Vector& operator-=(const Vector& other) {
        x -= other.x;
        y -= other.y;
        z -= other.z;
        w -= other.w;
        return *this;
    }
    constexpr Vector& operator*=(float factor) {
        x *= factor;
        y *= factor;
        z *= factor;
        w *= factor;
        return *this;
    }

    friend constexpr Vector operator+(Vector a, const Vector& b) { return a += b; }
    friend constexpr Vector operator-(Vector a, const Vector& b) { return a -= b; }
    friend constexpr Vector operator-(const Vector& a) { return {-a.x, -a.y, -a.z, -a.w}; }
    friend constexpr Vector operator*(Vector a, float factor) { return a *= factor; }
    friend constexpr Vector operator*(float factor, Vector a) { return a *= factor; }
    friend constexpr bool operator==(const Vector&, const Vector&) = default;

    constexpr Vector withW(float value) const { return {x, y, z, value}; }
};

constexpr float dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// w of the product is 0. X cross Y is Z, also in this left-handed world.
constexpr Vector cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x, 0.0F};
}

/// Member by member.
constexpr Vector multiply(const Vector& a, const Vector& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z, a.w * b.w};
}

constexpr float lengthSquared(const Vector& a) {
    return dot(a, a);
}

inline float length(const Vector& a) {
    return std::sqrt(lengthSquared(a));
}

inline float distance(const Vector& a, const Vector& b) {
    return length(a - b);
}

/// Of length 1 with w = 0; the zero vector where there is no direction (zero length or not finite).
inline Vector normalised(const Vector& a) {
    const float size = length(a);
    if (!(size > 0.0F) || !std::isfinite(size)) return {};
    return {a.x / size, a.y / size, a.z / size, 0.0F};
}

/// a at 0, b at 1.
constexpr Vector lerp(const Vector& a, const Vector& b, float amount) {
    return a + (b - a) * amount;
}

/// All four members.
inline bool isFinite(const Vector& a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z) && std::isfinite(a.w);
}

} // namespace vlMaths
