#include "core/MessageOrchestrator.h"
#include "viewport/EngineSurfaceState.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowResizeMessage.h"
#include "viewport/ScreenFile.h"

#include <gmock/gmock.h>

#include <functional>

namespace vlEditor {
namespace {

struct CallMessage final : Message {
    explicit CallMessage(std::function<void()> function) : call(std::move(function)) {}
    void runOnUiThread() override {}
    void runOnGraphicsThread() override { call(); }
    std::function<void()> call;
};

TEST(EngineSurfaceState, IsDrawableWhileItIsSeenAndHasAnArea) {
    EngineSurfaceState state("S");
    state.setExposed(true);
    EXPECT_FALSE(state.isDrawable());
    state.setSize(640, 0);
    EXPECT_FALSE(state.isDrawable());
    state.setSize(640, 480);
    EXPECT_TRUE(state.isDrawable());
    EXPECT_EQ(state.getSize(), (vlGraphics::PresentSurface::Size{640, 480}));
    state.setExposed(false);
    EXPECT_FALSE(state.isDrawable());
}

TEST(EngineSurfaceState, ADetachedOneIsNeverSeenAgain) {
    EngineSurfaceState state("S");
    state.setSize(4, 4);
    state.setDetached();
    state.setExposed(true);
    EXPECT_FALSE(state.isExposed());
    EXPECT_FALSE(state.isDrawable());
}

TEST(EngineSurfaceState, OnlyWhatSpoilsThePictureGrowsTheRevision) {
    EngineSurfaceState state("S");
    const auto grows = [&](auto change) {
        const std::uint64_t before = state.getRevision();
        change();
        return state.getRevision() > before;
    };
    EXPECT_TRUE(grows([&] { state.setSize(4, 4); }));
    EXPECT_FALSE(grows([&] { state.setSize(4, 4); }));
    EXPECT_TRUE(grows([&] { state.setExposed(true); }));
    EXPECT_TRUE(grows([&] { state.setExposed(true); }));
    EXPECT_FALSE(grows([&] { state.setExposed(false); }));
    EXPECT_FALSE(grows([&] { state.setMouseCaptured(true); }));
}

TEST(EngineSurfaceState, KeepsTheNewestPictureForTheUi) {
    EngineSurfaceState state("S");
    EXPECT_EQ(state.takePicture(), nullptr);
    state.present(vlImages::Image(1, 1, vlImages::PixelFormat::bgra8));
    state.present(vlImages::Image(2, 2, vlImages::PixelFormat::bgra8));
    const auto picture = state.takePicture();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->width, 2U);
    EXPECT_EQ(state.takePicture(), nullptr);
    MessageOrchestrator::getInstance().discard();
}

TEST(EngineSurfaceTable, AStateOutlivesItsEntry) {
    EngineSurfaceTable table;
    const auto state = table.create("S");
    EXPECT_EQ(table.find("S"), state);
    table.erase("S");
    table.erase("S");
    EXPECT_EQ(table.find("S"), nullptr);
    EXPECT_EQ(state->getName(), "S");
}

TEST(EngineWindowResizeMessage, OnlyTheLastOfABurstActs) {
    std::vector<bool> nothingPending;
    const auto probe = [&] {
        postToGraphics(CallMessage(
                [&] { nothingPending.push_back(EngineWindowResizeMessage().isLastOfBurst()); }));
    };
    for (const char* surface : {"A", "B", "A"}) {
        EngineWindowResizeMessage::post(surface);
        probe();
    }
    MessageOrchestrator::getInstance().drainGraphics();
    EXPECT_THAT(nothingPending, testing::ElementsAre(false, false, true));
}

TEST(EngineWindowResizeMessage, OneThatIsOnlyKeptHoldsNothingUp) {
    const EngineWindowResizeMessage kept("A");
    EXPECT_TRUE(EngineWindowResizeMessage("B").isLastOfBurst());
    EngineWindowResizeMessage::post("A");
    EXPECT_FALSE(EngineWindowResizeMessage("B").isLastOfBurst());
    MessageOrchestrator::getInstance().discard();
    EXPECT_TRUE(EngineWindowResizeMessage("B").isLastOfBurst());
}

TEST(ScreenFile, EndsInJpgOnce) {
    EXPECT_EQ(ScreenFile::withEnding("shot"), "shot.jpg");
    EXPECT_EQ(ScreenFile::withEnding("shot.jpg"), "shot.jpg");
    EXPECT_EQ(ScreenFile::withEnding("shot.JPG"), "shot.JPG.jpg");
}

} // namespace
} // namespace vlEditor
