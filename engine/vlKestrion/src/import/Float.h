#pragma once
#include <cmath>

namespace vlKestrion {

/** Three floats tightly packed: what a model has millions of. */
struct Float3 {
    float x = 0;
    float y = 0;
    float z = 0;

    friend Float3 operator+(const Float3& a, const Float3& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend Float3 operator-(const Float3& a, const Float3& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend Float3 operator*(const Float3& a, float factor) {
        return {a.x * factor, a.y * factor, a.z * factor};
    }
    friend bool operator==(const Float3&, const Float3&) = default;
};

struct Float2 {
    float x = 0;
    float y = 0;
};

inline float dot(const Float3& a, const Float3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Float3 cross(const Float3& a, const Float3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Also of vectors whose square a float cannot hold; the fallback where there is no direction.
inline Float3 normalised(const Float3& a, const Float3& fallback) {
    const float square = dot(a, a);
    if (square > 1e-30F && square < 1e30F) return a * (1.0F / std::sqrt(square));
    const float largest = std::fmax(std::fabs(a.x), std::fmax(std::fabs(a.y), std::fabs(a.z)));
    if (!(largest > 0.0F) || !std::isfinite(largest)) return fallback;
    const Float3 scaled{a.x / largest, a.y / largest, a.z / largest};
    return scaled * (1.0F / std::sqrt(dot(scaled, scaled)));
}

inline bool isFinite(const Float3& a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

} // namespace vlKestrion
