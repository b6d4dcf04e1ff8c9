#include <vlMaths/BoundingBox.h>
#include <vlMaths/Frustum.h>
#include <vlMaths/Matrix.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace vlMaths {
namespace {

constexpr float pi = 3.14159265F;

void expectNear(const Vector& a, const Vector& b, float tolerance = 1e-4F) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

void expectNear(const Matrix& a, const Matrix& b, float tolerance) {
    for (std::size_t at = 0; at < 16; ++at) {
        EXPECT_NEAR(a.elements[at], b.elements[at], tolerance) << "element " << at;
    }
}

TEST(Quaternion, PositiveYawTurnsForwardToTheRight) {
    expectNear(rotate(Quaternion::fromAxisAngle({0, 3, 0}, pi / 2), {0, 0, 1}), {1, 0, 0});
}

TEST(Quaternion, ProductAppliesTheRightOneFirstLikeMatrices) {
    const Quaternion a = Quaternion::fromAxisAngle({1, 2, 3}, 0.7F);
    const Quaternion b = Quaternion::fromAxisAngle({-2, 1, 0}, 1.9F);
    const Vector v{0.3F, -4, 2};
    expectNear(rotate(a * b, v), rotate(a, rotate(b, v)));
    expectNear(Matrix::rotation(a * b) * v, Matrix::rotation(a) * (Matrix::rotation(b) * v));
    expectNear(rotate(inverse(a) * a, v), v);
}

TEST(Quaternion, EulerAnglesComeBackAlsoStraightUpAndDown) {
    for (const float pitch : {-pi / 2, -1.2F, 0.0F, 0.4F, pi / 2}) {
        for (const float yaw : {-3.0F, 0.0F, 2.0F}) {
            const Quaternion turn = Quaternion::fromEuler({pitch, yaw, 0.6F});
            const Quaternion again = Quaternion::fromEuler(turn.toEuler());
            for (const Vector& v : {Vector{1, 0, 0}, Vector{0, 1, 0}, Vector{0, 0, 1}}) {
                expectNear(rotate(turn, v), rotate(again, v), 2e-3F);
            }
        }
    }
}

TEST(LookAt, FacesTheTargetWithUpUpright) {
    const Quaternion turn = Quaternion::lookAt({0, 1, -1}, {0, 0, 0, 1});
    expectNear(rotate(turn, {0, 0, 1}), normalised(Vector{0, -1, 1}));
    expectNear(rotate(turn, {1, 0, 0}), {1, 0, 0});
    expectNear(transformPoint(Matrix::lookAt({0, 1, -1}, {0, 0, 0, 1}), {}),
               {0, 0, std::sqrt(2.0F)});
}

TEST(LookAt, IsNeverNanForParallelOrMissingUp) {
    const float far = 3e38F;
    for (const Vector& up : {Vector{}, Vector{0, 1, 0}, Vector{0, -2, 0}, Vector{0, 0, 1}}) {
        for (const Vector& target : {Vector{0, 5, 0},
                                     Vector{0, -5, 0},
                                     Vector{0, 0, -5},
                                     Vector{0, 0, 9},
                                     Vector{1e-30F, 0, 0},
                                     Vector{far, far, far},
                                     Vector{1e-6F, 5, 0}}) {
            const Quaternion turn = Quaternion::lookAt({}, target, up);
            ASSERT_TRUE(isFinite(turn));
            ASSERT_NEAR(lengthSquared(turn), 1.0F, 1e-4F);
            const float size =
                    std::max({std::abs(target.x), std::abs(target.y), std::abs(target.z)});
            expectNear(rotate(turn, {0, 0, 1}),
                       normalised(Vector{target.x / size, target.y / size, target.z / size}),
                       1e-3F);
        }
    }
}

TEST(LookAt, TheSamePointGivesTheIdentity) {
    EXPECT_EQ(Quaternion::lookAt({1, 2, 3}, {1, 2, 3}, {0, 1, 0}), Quaternion{});
    EXPECT_EQ(Matrix::lookAt({}, {}), Matrix{});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Quaternion::lookAt({}, {nan, 0, 1}), Quaternion{});
}

TEST(Matrix, ComposeInverseAndDecomposeAgree) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> any(-2, 2);
    for (int round = 0; round < 50; ++round) {
        const Quaternion turn =
                normalised(Quaternion{any(random), any(random), any(random), any(random)});
        const Vector scale{0.5F + std::abs(any(random)), 1, 0.7F};
        const Vector position{any(random), any(random), any(random)};
        const Matrix m = Matrix::compose(position, turn, scale);
        expectNear(inverseAffine(m) * m, Matrix{}, 1e-4F);
        expectNear(inverse(m), inverseAffine(m), 1e-4F);
        const Placement back = decompose(m);
        expectNear(Matrix::compose(back.position, back.orientation, back.scale), m, 1e-4F);
    }
}

TEST(Matrix, TranslationStandsInTheLastColumnAndAppliesAfterScale) {
    const Matrix m = Matrix::compose({1, 2, 3}, {}, {2, 2, 2});
    EXPECT_EQ(m.elements[3], 1);
    EXPECT_EQ(m.elements[7], 2);
    EXPECT_EQ(m.elements[11], 3);
    EXPECT_EQ(transformPoint(m, {1, 1, 1}), (Vector{3, 4, 5, 1}));
    EXPECT_EQ(m, Matrix::translation({1, 2, 3}) * Matrix::scaling({2, 2, 2}));
}

TEST(Matrix, MirroredMatricesDecomposeToTheSameMatrix) {
    const Matrix m = Matrix::compose({}, Quaternion::fromAxisAngle({1, 1, 0}, 0.5F), {1, -2, 3});
    const Placement back = decompose(m);
    expectNear(Matrix::compose(back.position, back.orientation, back.scale), m, 1e-4F);
}

TEST(Matrix, WhatHasNoInverseGivesTheIdentity) {
    EXPECT_EQ(inverse(Matrix::scaling({0, 1, 1})), Matrix{});
    EXPECT_EQ(inverseAffine(Matrix::scaling({0, 1, 1})), Matrix{});
}

TEST(Matrix, PerspectiveMapsNearToZeroAndFarToOne) {
    const Matrix m = Matrix::perspective(pi / 2, 2.0F, 0.1F, 100.0F);
    const Vector nearest = m * Vector{0, 0, 0.1F, 1};
    const Vector farthest = m * Vector{200, 100, 100, 1};
    EXPECT_NEAR(nearest.z / nearest.w, 0.0F, 1e-5F);
    EXPECT_NEAR(farthest.z / farthest.w, 1.0F, 1e-5F);
    EXPECT_NEAR(farthest.x / farthest.w, 1.0F, 1e-5F);
    EXPECT_NEAR(farthest.y / farthest.w, 1.0F, 1e-5F);
    const Matrix flat = Matrix::orthographic(4, 2, 1, 11);
    expectNear(transformPoint(flat, {2, 1, 11}), {1, 1, 1});
    expectNear(transformPoint(flat, {0, 0, 1}), {0, 0, 0});
}

TEST(Frustum, AgreesWithProjectedPoints) {
    const Matrix m =
            Matrix::perspective(1.0F, 1.5F, 0.5F, 50.0F) * Matrix::lookAt({3, 2, -4}, {0, 1, 5});
    const Frustum frustum(m);
    std::mt19937 random(11);
    std::uniform_real_distribution<float> any(-40, 40);
    int seen = 0;
    for (int round = 0; round < 2000; ++round) {
        const Vector point{any(random), any(random), any(random), 1};
        const Vector clip = m * point;
        const bool inside = clip.w > 0 && std::abs(clip.x) < clip.w && std::abs(clip.y) < clip.w &&
                            clip.z > 0 && clip.z < clip.w;
        ASSERT_EQ(frustum.intersects(BoundingSphere{point, 0}), inside);
        seen += inside ? 1 : 0;
    }
    EXPECT_GT(seen, 20);
}

TEST(Frustum, SeesBallsThatReachInAndEverythingByDefault) {
    const Frustum frustum(Matrix::orthographic(2, 2, 0, 10));
    EXPECT_TRUE(frustum.intersects(BoundingSphere{{2, 0, 5}, 1.01F}));
    EXPECT_FALSE(frustum.intersects(BoundingSphere{{2, 0, 5}, 0.99F}));
    BoundingBox box;
    EXPECT_FALSE(frustum.intersects(box));
    box.add({2, 0, 5});
    EXPECT_FALSE(frustum.intersects(box));
    box.add({0.5F, 0, 5});
    EXPECT_TRUE(frustum.intersects(box));
    EXPECT_TRUE(Frustum().intersects(BoundingSphere{{1e30F, 0, 0}, 1}));
}

TEST(Bounds, TransformedBallAndBoxHoldTheTransformedPoints) {
    const Matrix m =
            Matrix::compose({5, 0, -2}, Quaternion::fromEuler({0.4F, 1, 2}), {1, -3, 0.5F});
    BoundingBox box;
    box.add({-1, 0, 0});
    box.add({1, 2, 3});
    const BoundingBox moved = transform(m, box);
    const BoundingSphere ball = transform(m, sphereAround(box));
    for (int corner = 0; corner < 8; ++corner) {
        const Vector point = transformPoint(m,
                                            {(corner & 1) != 0 ? -1.0F : 1.0F,
                                             (corner & 2) != 0 ? 0.0F : 2.0F,
                                             (corner & 4) != 0 ? 0.0F : 3.0F});
        BoundingBox grown = moved;
        grown.add(point);
        expectNear(grown.size(), moved.size());
        EXPECT_LE(distance(point, ball.center), ball.radius + 1e-4F);
    }
    EXPECT_TRUE(transform(m, BoundingBox{}).empty());
    const BoundingSphere both = merge({{0, 0, 0}, 1}, {{4, 0, 0}, 1});
    EXPECT_EQ(both, (BoundingSphere{{2, 0, 0}, 3}));
}

} // namespace
} // namespace vlMaths
