#include "resources/TestManagers.h"

#include <gtest/gtest.h>

#include <limits>

namespace vlGraphics {
namespace {

void expectNear(const vlMaths::Vector& a, const vlMaths::Vector& b) {
    EXPECT_NEAR(a.x, b.x, 1e-3F);
    EXPECT_NEAR(a.y, b.y, 1e-3F);
    EXPECT_NEAR(a.z, b.z, 1e-3F);
}

TEST(Camera, LooksAtATargetWhateverUpIsGiven) {
    Camera camera;
    camera.setPosition({0, 0, -5});
    for (const vlMaths::Vector up : {vlMaths::Vector{}, {0, 1, 0}, {0, 0, 1}, {0, 0, -3}}) {
        camera.lookAt({0, 0, 5}, up);
        expectNear(camera.getAbsoluteFront(), {0, 0, 1});
        expectNear(camera.getAbsoluteUp(), {0, 1, 0});
    }
    camera.lookAt({0, 10, -5}, {});
    expectNear(camera.getAbsoluteFront(), {0, 1, 0});
    EXPECT_TRUE(isFinite(camera.getViewProjectionMatrix()));
}

TEST(Camera, TargetsThatGiveNoDirectionChangeNothing) {
    Camera camera;
    camera.setPosition({1, 2, 3});
    camera.rotateWorld({0, 1, 0}, 0.5F);
    const std::uint64_t revision = camera.getRevision();
    camera.lookAt(camera.getPositionAbsolute(), {});
    camera.lookAt({std::numeric_limits<float>::quiet_NaN(), 0, 0}, {});
    camera.lookAt({9, 9, 9}, {std::numeric_limits<float>::infinity(), 0, 0});
    EXPECT_EQ(camera.getRevision(), revision);
}

TEST(Camera, RefusesSettingsThatMakeNoCamera) {
    const auto refuses = [](auto change) {
        Camera camera;
        Camera::Settings settings;
        change(settings);
        const bool refused = !camera.setSettings(settings);
        return refused && camera.getSettings().farDistance == Camera::Settings().farDistance;
    };
    using S = Camera::Settings;
    EXPECT_TRUE(refuses([](S& s) { s.nearDistance = 0; }));
    EXPECT_TRUE(refuses([](S& s) { s.farDistance = s.nearDistance; }));
    EXPECT_TRUE(refuses([](S& s) { s.farDistance = std::numeric_limits<float>::quiet_NaN(); }));
    EXPECT_TRUE(refuses([](S& s) { s.fieldOfView = 3.2F; }));
    EXPECT_TRUE(refuses([](S& s) { s.fieldOfView = 0; }));
    EXPECT_TRUE(refuses([](S& s) { s.orientation = {0, 0, 0, 0}; }));
    EXPECT_TRUE(refuses([](S& s) { s.orthographicHeight = -1; }));
    Camera camera;
    S box;
    box.orthographic = true;
    box.nearDistance = -5;
    EXPECT_TRUE(camera.setSettings(box));
    EXPECT_TRUE(isFinite(camera.getProjectionMatrix()));
}

TEST(Camera, SaysWhyValuesMakeNoCamera) {
    Camera::Settings settings;
    EXPECT_TRUE(Camera::check(settings));
    settings.nearDistance = -1;
    EXPECT_EQ(Camera::check(settings).error().message,
              "the near distance must be above 0 and below the far one");
    settings.orthographic = true;
    EXPECT_TRUE(Camera::check(settings));
    settings.farDistance = -2;
    EXPECT_EQ(Camera::check(settings).error().message,
              "the near distance must be below the far one");
    Camera camera;
    EXPECT_FALSE(camera.setNearDistance(camera.getFarDistance()));
    EXPECT_FALSE(camera.setFieldOfView(4));
    EXPECT_TRUE(camera.setFarDistance(5));
    EXPECT_FALSE(camera.lookAt(camera.getPositionAbsolute(), {}));
    EXPECT_EQ(camera.getNearDistance(), 0.1F);
}

TEST(Camera, AspectRatioIsTheContextsAndMakesNoPictureOutOfDate) {
    Camera camera;
    const std::uint64_t pictures = ChangeCount::get();
    camera.setAspectRatio(2);
    camera.setAspectRatio(0);
    camera.setAspectRatio(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(camera.getAspectRatio(), 2);
    EXPECT_EQ(ChangeCount::get(), pictures);
}

TEST(Camera, PixelDirectionsAgreeWithTheProjection) {
    Camera camera;
    camera.setPosition({3, 1, -7});
    camera.lookAt({0, 0, 0}, {});
    camera.setAspectRatio(200.0F / 100.0F);
    const vlMaths::Vector direction = camera.getDirectionAtPixelWorld(150, 20, 200, 100);
    const vlMaths::Vector point = camera.getPositionAbsolute() + direction * 10;
    const vlMaths::Vector clip = camera.getViewProjectionMatrix() * point.withW(1);
    EXPECT_NEAR((clip.x / clip.w + 1) * 100, 150.5F, 1e-2F);
    EXPECT_NEAR((1 - clip.y / clip.w) * 50, 20.5F, 1e-2F);
}

TEST(Camera, CornersLieOnTheFarPlanesEdges) {
    for (const bool orthographic : {false, true}) {
        Camera camera;
        Camera::Settings settings;
        settings.position = {1, 2, 3, 1};
        settings.orthographic = orthographic;
        ASSERT_TRUE(camera.setSettings(settings));
        camera.lookAt({4, 5, 6}, {});
        const auto corners = camera.getCornersWorld();
        const float x[] = {-1, 1, -1, 1};
        const float y[] = {1, 1, -1, -1};
        for (std::size_t index = 0; index < corners.size(); ++index) {
            const vlMaths::Vector clip = camera.getViewProjectionMatrix() * corners[index];
            expectNear(clip * (1 / clip.w), {x[index], y[index], 1});
        }
    }
}

TEST(CameraManager, DefaultCameraIsHiddenAndMadeOnce) {
    CameraManager manager;
    Camera* camera = manager.getDefaultCamera();
    EXPECT_TRUE(camera->isHidden());
    EXPECT_EQ(camera->getName(), "VORLANE_DEFAULT_CAMERA");
    EXPECT_EQ(manager.getDefaultCamera(), camera);
}

} // namespace
} // namespace vlGraphics
