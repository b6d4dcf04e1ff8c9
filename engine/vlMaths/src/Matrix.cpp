#include <vlMaths/Matrix.h>

#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x4.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace vlMaths {

namespace {

Vector column(const Matrix& m, std::size_t index) {
    return {m(0, index), m(1, index), m(2, index), 0.0F};
}

} // namespace

Matrix Matrix::lookAt(const Vector& eye, const Vector& target, const Vector& up) {
    return view(eye, Quaternion::lookAt(eye, target, up));
}

Matrix Matrix::perspective(float verticalFov, float aspect, float nearPlane, float farPlane) {
    assert(verticalFov > 0.0F && aspect > 0.0F && nearPlane > 0.0F && nearPlane < farPlane);
    const float height = 1.0F / std::tan(verticalFov / 2.0F);
    const float depth = farPlane / (farPlane - nearPlane);
    Matrix m;
    m.elements = {
            height / aspect, 0, 0, 0, 0, height, 0, 0, 0, 0, depth, -nearPlane * depth, 0, 0, 1, 0};
    return m;
}

Matrix Matrix::orthographic(float width, float height, float nearPlane, float farPlane) {
    assert(width > 0.0F && height > 0.0F && nearPlane < farPlane);
    const float depth = 1.0F / (farPlane - nearPlane);
    Matrix m;
    m.elements = {
            2 / width, 0, 0, 0, 0, 2 / height, 0, 0, 0, 0, depth, -nearPlane * depth, 0, 0, 0, 1};
    return m;
}

Matrix inverse(const Matrix& m) {
    // glm reads the rows as columns; the inverse of the transpose is the transpose of the inverse.
    const glm::mat4 inverted = glm::inverse(glm::make_mat4(m.elements.data()));
    Matrix result;
    std::copy_n(glm::value_ptr(inverted), result.elements.size(), result.elements.begin());
    return isFinite(result) ? result : Matrix{};
}

Matrix inverseAffine(const Matrix& m) {
    const Vector x = column(m, 0), y = column(m, 1), z = column(m, 2);
    const Vector yz = cross(y, z), zx = cross(z, x), xy = cross(x, y);
    const float scale = 1.0F / dot(x, yz);
    if (!std::isfinite(scale)) return {};
    const Vector position = column(m, 3);
    Matrix result;
    result.elements = {yz.x * scale,
                       yz.y * scale,
                       yz.z * scale,
                       -dot(yz, position) * scale,
                       zx.x * scale,
                       zx.y * scale,
                       zx.z * scale,
                       -dot(zx, position) * scale,
                       xy.x * scale,
                       xy.y * scale,
                       xy.z * scale,
                       -dot(xy, position) * scale,
                       0,
                       0,
                       0,
                       1};
    return isFinite(result) ? result : Matrix{};
}

Placement decompose(const Matrix& m) {
    const Vector x = column(m, 0), y = column(m, 1), z = column(m, 2);
    Placement placement;
    placement.position = column(m, 3);
    placement.scale = {length(x), length(y), length(z)};
    if (dot(x, cross(y, z)) < 0.0F) placement.scale.x = -placement.scale.x;
    const Vector& s = placement.scale;
    if (s.x == 0.0F || s.y == 0.0F || s.z == 0.0F || !isFinite(s)) return placement;
    const glm::mat3 base(x.x / s.x,
                         x.y / s.x,
                         x.z / s.x,
                         y.x / s.y,
                         y.y / s.y,
                         y.z / s.y,
                         z.x / s.z,
                         z.y / s.z,
                         z.z / s.z);
    const glm::quat turn = glm::quat_cast(base);
    placement.orientation = normalised(Quaternion{turn.x, turn.y, turn.z, turn.w});
    return placement;
}

bool isFinite(const Matrix& m) {
    return std::all_of(
            m.elements.begin(), m.elements.end(), [](float e) { return std::isfinite(e); });
}

} // namespace vlMaths
