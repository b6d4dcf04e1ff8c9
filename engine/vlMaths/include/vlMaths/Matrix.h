#pragma once
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>

#include <array>
#include <cstddef>

namespace vlMaths {

/** 16 floats, row by row in memory: row i, column j is elements[4 * i + j]. Vectors are columns (m
 * * v), so a translation stands in elements 3, 7 and 11, and a * b applies b first. The world is
 * left-handed with +Z forward and +Y up; depth after projection runs from 0 (near) to 1 (far). The
 * identity unless given. A plain value for any thread. */
struct Matrix {
    std::array<float, 16> elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    constexpr float& operator()(std::size_t row, std::size_t column) {
        return elements[4 * row + column];
    }
    constexpr float operator()(std::size_t row, std::size_t column) const {
        return elements[4 * row + column];
    }

    static constexpr Matrix translation(const Vector& offset);
    static constexpr Matrix scaling(const Vector& factors);
    static constexpr Matrix rotation(const Quaternion& orientation);
    /// Scales first, then turns, then moves. The orientation has unit length.
    static constexpr Matrix
    compose(const Vector& position, const Quaternion& orientation, const Vector& scale);

    /// World to view for a camera with this placement.
    static constexpr Matrix view(const Vector& position, const Quaternion& orientation);
    /// World to view; the same fallbacks as Quaternion::lookAt, so never NaN for finite places.
    static Matrix lookAt(const Vector& eye, const Vector& target, const Vector& up = {});
    /// Vertical field of view in radians (0 to pi), aspect is width / height; 0 < near < far.
    static Matrix perspective(float verticalFov, float aspect, float nearPlane, float farPlane);
    /// Width and height of what is seen, in world units; near < far.
    static Matrix orthographic(float width, float height, float nearPlane, float farPlane);

    friend constexpr bool operator==(const Matrix&, const Matrix&) = default;
};

/** What Matrix::compose put together. A mirrored matrix answers with a negative x scale. */
struct Placement {
    Vector position;
    Quaternion orientation;
    Vector scale{1, 1, 1};
};

constexpr Matrix operator*(const Matrix& a, const Matrix& b) {
    Matrix product;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            product.elements[4 * row + column] = a.elements[4 * row] * b.elements[column] +
                                                 a.elements[4 * row + 1] * b.elements[4 + column] +
                                                 a.elements[4 * row + 2] * b.elements[8 + column] +
                                                 a.elements[4 * row + 3] * b.elements[12 + column];
        }
    }
    return product;
}

constexpr Vector operator*(const Matrix& m, const Vector& v) {
    const auto& e = m.elements;
    return {e[0] * v.x + e[1] * v.y + e[2] * v.z + e[3] * v.w,
            e[4] * v.x + e[5] * v.y + e[6] * v.z + e[7] * v.w,
            e[8] * v.x + e[9] * v.y + e[10] * v.z + e[11] * v.w,
            e[12] * v.x + e[13] * v.y + e[14] * v.z + e[15] * v.w};
}

/// Moves with the matrix, whatever w says; for matrices whose last row is 0 0 0 1.
constexpr Vector transformPoint(const Matrix& m, const Vector& point) {
    return m * point.withW(1.0F);
}

/// Turned and scaled, not moved.
constexpr Vector transformDirection(const Matrix& m, const Vector& direction) {
    return m * direction.withW(0.0F);
}

constexpr Matrix transpose(const Matrix& m) {
    Matrix turned;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column)
            turned(column, row) = m(row, column);
    }
    return turned;
}

/// Of any matrix; the identity where there is none (determinant 0 or not finite).
Matrix inverse(const Matrix& m);
/// Several times faster, for matrices whose last row is 0 0 0 1; the identity where there is none.
Matrix inverseAffine(const Matrix& m);
/// Position, orientation and scale of an affine matrix; shear is lost.
Placement decompose(const Matrix& m);
bool isFinite(const Matrix& m);

constexpr Matrix Matrix::compose(const Vector& position, const Quaternion& q, const Vector& scale) {
    const float xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z;
    const float xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    const float wx = q.w * q.x, wy = q.w * q.y, wz = q.w * q.z;
    Matrix m;
    m.elements = {(1 - 2 * (yy + zz)) * scale.x,
                  2 * (xy - wz) * scale.y,
                  2 * (xz + wy) * scale.z,
                  position.x,
                  2 * (xy + wz) * scale.x,
                  (1 - 2 * (xx + zz)) * scale.y,
                  2 * (yz - wx) * scale.z,
                  position.y,
                  2 * (xz - wy) * scale.x,
                  2 * (yz + wx) * scale.y,
                  (1 - 2 * (xx + yy)) * scale.z,
                  position.z,
                  0,
                  0,
                  0,
                  1};
    return m;
}

constexpr Matrix Matrix::translation(const Vector& offset) {
    Matrix m;
    m.elements[3] = offset.x;
    m.elements[7] = offset.y;
    m.elements[11] = offset.z;
    return m;
}

constexpr Matrix Matrix::scaling(const Vector& factors) {
    Matrix m;
    m.elements[0] = factors.x;
    m.elements[5] = factors.y;
    m.elements[10] = factors.z;
    return m;
}

constexpr Matrix Matrix::rotation(const Quaternion& orientation) {
    return compose({}, orientation, {1, 1, 1});
}

constexpr Matrix Matrix::view(const Vector& position, const Quaternion& orientation) {
    const Quaternion back{-orientation.x, -orientation.y, -orientation.z, orientation.w};
    return compose(-rotate(back, position), back, {1, 1, 1});
}

} // namespace vlMaths
