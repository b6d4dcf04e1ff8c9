#include "editors/camera/Camera.h"
#include "editors/camera/CameraAngles.h"

#include <vlExport/JsonExporter.h>

#include <gtest/gtest.h>

#include <random>

namespace vlEditor {
namespace {

using vlGraphics::ContentLoader;

std::string textOf(const vlGraphics::Camera& camera) {
    return vlExport::JsonExporter::exportTreeIntoString(ContentLoader::getDeclaration(camera, {}));
}

/// What a window would show, typed again.
template <class Edit> Edit shownOf(const vlGraphics::Camera& camera) {
    Edit edit;
    edit.readFrom(recordOf<CameraKind>(camera));
    return edit;
}

void expectSameWay(const vlMaths::Quaternion& a, const vlMaths::Quaternion& b, float tolerance) {
    const float cosine = a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
    EXPECT_NEAR(std::abs(cosine), 1, tolerance);
}

TEST(CameraAngles, AreShownAsTheyWereTyped) {
    for (const float pitch : {0.0F, 30.0F, -12.34F, 89.0F, -89.9F, 0.001F}) {
        for (const float yaw : {0.0F, 45.0F, -179.5F, 180.0F, 270.0F, 359.0F, 12.345F}) {
            for (const float roll : {0.0F, -33.3F, 90.0F, 170.0F}) {
                const CameraAngles typed{pitch, yaw, roll};
                // Nearly straight up, floats cannot tell yaw from roll any more.
                if (std::abs(pitch) > 89.5F && roll != 0) continue;
                EXPECT_EQ(CameraAngles::of(typed.toOrientation()), typed)
                        << pitch << ' ' << yaw << ' ' << roll;
            }
        }
    }
}

TEST(CameraAngles, StraightUpAndDownYawSaysAll) {
    for (const float pitch : {90.0F, -90.0F}) {
        const CameraAngles level{pitch, 20, 0};
        EXPECT_EQ(CameraAngles::of(level.toOrientation()), level);
        const CameraAngles rolled{pitch, 20, 15};
        const CameraAngles shown = CameraAngles::of(rolled.toOrientation());
        EXPECT_EQ(shown.roll, 0);
        expectSameWay(shown.toOrientation(), rolled.toOrientation(), 1e-6F);
    }
}

TEST(CameraAngles, TurnAsTheEnginesAnglesDo) {
    const CameraAngles angles{20, -130, 70};
    const float radian = radiansOf(1);
    expectSameWay(angles.toOrientation(),
                  vlMaths::Quaternion::fromEuler(
                          vlMaths::Vector{angles.pitch, angles.yaw, angles.roll} * radian),
                  1e-6F);
    EXPECT_NEAR(rotate(CameraAngles{10, 0, 0}.toOrientation(), {0, 0, 1}).y, -0.1736F, 1e-4F);
    EXPECT_NEAR(rotate(CameraAngles{0, 10, 0}.toOrientation(), {0, 0, 1}).x, 0.1736F, 1e-4F);
}

TEST(CameraAngles, AnyOrientationIsShownNearEnoughAndStaysWhenTypedAgain) {
    std::mt19937 random(7);
    std::normal_distribution<float> part;
    for (int i = 0; i < 500; ++i) {
        vlGraphics::Camera camera;
        ASSERT_TRUE(camera.setOrientation(vlMaths::normalised(
                vlMaths::Quaternion{part(random), part(random), part(random), part(random)})));
        const vlMaths::Quaternion before = camera.getOrientationAbsolute();
        expectSameWay(CameraAngles::of(before).toOrientation(), before, 1e-6F);
        ASSERT_TRUE(shownOf<CameraOrientation>(camera).applyTo(camera));
        EXPECT_EQ(camera.getOrientationAbsolute(), before);
    }
}

TEST(CameraFieldOfView, IsShownAsItWasTypedAndStaysWhenTypedAgain) {
    vlGraphics::Camera camera;
    for (const float degrees : {60.0F, 47.3F, 0.1F, 179.9F, 33.333F, 54.00004F}) {
        ASSERT_TRUE(CameraFieldOfView{degrees}.applyTo(camera));
        EXPECT_EQ(shownOf<CameraFieldOfView>(camera).value, degrees);
    }
    std::mt19937 random(8);
    std::uniform_real_distribution<float> radians(0.01F, 3.1F);
    for (int i = 0; i < 500; ++i) {
        ASSERT_TRUE(camera.setFieldOfView(radians(random)));
        const float before = camera.getFieldOfView();
        ASSERT_TRUE(shownOf<CameraFieldOfView>(camera).applyTo(camera));
        EXPECT_EQ(camera.getFieldOfView(), before);
    }
}

TEST(CameraEdits, DeclarationsOfAwkwardNumbersComeBackByteByByte) {
    vlGraphics::CameraManager manager;
    vlGraphics::Camera& camera = *manager.createOrRetrieve("eye");
    vlGraphics::Camera& other = *manager.createOrRetrieve("other");
    const auto expectReturns = [&](const auto& edit) {
        ASSERT_TRUE(edit.applyTo(camera));
        const auto memento = mementoOf<CameraKind>(camera);
        const std::string text = vlExport::JsonExporter::exportTreeIntoString(memento.declaration);
        const auto read = vlExport::JsonExporter::importIntoTree(text, "eye");
        ASSERT_TRUE(read);
        ASSERT_TRUE(ContentLoader::fillFromDeclaration(other, *read, {}));
        EXPECT_EQ(vlExport::JsonExporter::exportTreeIntoString(
                          mementoOf<CameraKind>(other).declaration),
                  text);
    };
    expectReturns(CameraPosition{0.1F, -1e-42F, 3.4e37F});
    expectReturns(CameraPosition{-0.0F, 16777217.0F, 1.0F / 3.0F});
    expectReturns(CameraOrientation{12.34F, -56.7F, 1e-5F});
    expectReturns(CameraFieldOfView{0.3F});
    expectReturns(CameraPlanes{1e-6F, 1.0000001e-6F});
    expectReturns(CameraProjection{CameraProjection::orthographic});
    expectReturns(CameraPlanes{-1.0F / 3.0F, 0.1F});
    expectReturns(CameraSize{9.999999e-5F});
    // Back from there, through values that would be refused one by one.
    const auto fresh = mementoOf<CameraKind>(*manager.createOrRetrieve("fresh"));
    ASSERT_TRUE(putMemento<CameraKind>(fresh, camera));
    EXPECT_EQ(mementoOf<CameraKind>(camera).declaration, fresh.declaration);
}

TEST(CameraEdits, WhatMakesNoCameraNamesItAndChangesNothing) {
    vlGraphics::CameraManager manager;
    vlGraphics::Camera& camera = *manager.createOrRetrieve("eye");
    const std::string before = textOf(camera);
    const auto refusal = [&](const auto& edit) {
        const auto result = edit.applyTo(camera);
        return result ? std::string() : result.error().message;
    };
    EXPECT_EQ(refusal(CameraPlanes{2, 1}),
              "camera 'eye': the near distance must be above 0 and below the far one");
    EXPECT_EQ(refusal(CameraFieldOfView{180}),
              "camera 'eye': the field of view must be above 0 and below 180 degrees");
    EXPECT_EQ(refusal(CameraProjection{7}), "camera 'eye': there is no projection 7");
    EXPECT_EQ(refusal(CameraLookAt{}), "camera 'eye': the point to look at is where the camera is");
    EXPECT_EQ(refusal(CameraCopyViewport{}), "camera 'eye': no viewport is open to copy from");
    EXPECT_EQ(textOf(camera), before);
}

} // namespace
} // namespace vlEditor
