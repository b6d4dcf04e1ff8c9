#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "scene/TextureReplacements.h"
#include "viewport/BasicCompositor.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowFinalizeMessage.h"
#include "viewport/EngineWindowResizeMessage.h"
#include "viewport/EngineWindowShutdownMessage.h"

#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/System.h>

#include <gtest/gtest.h>

#include <functional>

namespace vlEditor {
namespace {

using Size = vlGraphics::PresentSurface::Size;

struct CallMessage final : Message {
    explicit CallMessage(std::function<void()> function) : call(std::move(function)) {}
    void runOnUiThread() override {}
    void runOnGraphicsThread() override { call(); }
    std::function<void()> call;
};

/** Viewports on a real engine; this thread is the graphics thread, held until it drains. */
class EngineWindowResizeTest : public testing::Test {
protected:
    void SetUp() override {
        const auto started = vlGraphics::System::initialize(vlGraphics::Configuration());
        ASSERT_TRUE(started) << started.error().message;
        ASSERT_TRUE(BasicCompositor::create());
        first = open("FIRST");
        second = open("SECOND");
        MessageOrchestrator::getInstance().drainGraphics();
    }
    void TearDown() override {
        for (const char* name : {"FIRST", "SECOND"}) {
            EngineWindowShutdownMessage(name).runOnGraphicsThread();
            if (auto state = EngineSurfaceTable::getInstance().find(name))
                EngineHandler::getInstance().unregisterWindow(*state);
            EngineSurfaceTable::getInstance().erase(name);
        }
        MessageOrchestrator::getInstance().discard();
        EngineHandler::destroyInstance();
        vlGraphics::System::shutdown();
        EXPECT_EQ(vlGraphics::System::getValidationMessageCount(), 0U);
    }

    static std::shared_ptr<EngineSurfaceState> open(const std::string& name) {
        auto state = EngineSurfaceTable::getInstance().create(name);
        state->setSize(64, 48);
        state->setExposed(true);
        postToGraphics(EngineWindowFinalizeMessage(name));
        return state;
    }
    static Size contextSize(const EngineSurfaceState& state) {
        const auto* context =
                vlGraphics::RenderContextManager::getInstance()->getRenderContextOf(state);
        return context != nullptr ? Size{context->getWidth(), context->getHeight()} : Size{};
    }

    std::shared_ptr<EngineSurfaceState> first;
    std::shared_ptr<EngineSurfaceState> second;
};

TEST_F(EngineWindowResizeTest, TenOfABurstGiveOneResizeAtTheFinalSize) {
    ASSERT_EQ(contextSize(*first), (Size{64, 48}));
    std::vector<Size> seen;
    for (std::uint32_t step = 1; step <= 10; ++step) {
        first->setSize(100 + step, 50 + step);
        EngineWindowResizeMessage::post("FIRST");
        postToGraphics(CallMessage([&] { seen.push_back(contextSize(*first)); }));
    }
    MessageOrchestrator::getInstance().drainGraphics();
    ASSERT_EQ(seen.size(), 10U);
    for (std::size_t i = 0; i + 1 < seen.size(); ++i)
        EXPECT_EQ(seen[i], (Size{64, 48})) << i;
    EXPECT_EQ(seen.back(), (Size{110, 60}));
}

TEST_F(EngineWindowResizeTest, TheOneThatActsResizesEveryViewport) {
    first->setSize(70, 30);
    EngineWindowResizeMessage::post("FIRST");
    second->setSize(90, 20);
    EngineWindowResizeMessage::post("SECOND");
    MessageOrchestrator::getInstance().drainGraphics();
    EXPECT_EQ(contextSize(*first), (Size{70, 30}));
    EXPECT_EQ(contextSize(*second), (Size{90, 20}));
}

TEST_F(EngineWindowResizeTest, AClosedWindowReplacesNoTextures) {
    const auto* context =
            vlGraphics::RenderContextManager::getInstance()->getRenderContextOf(*first);
    ASSERT_NE(context, nullptr);
    const auto texture =
            vlGraphics::TextureManager::getInstance()->handleOf(vlGraphics::DefaultNames::texture);
    auto& replacements = TextureReplacements::getInstance();
    replacements.set(*context, texture, texture);
    EXPECT_EQ(replacements.find(*context, texture), texture);
    EngineWindowShutdownMessage("FIRST").runOnGraphicsThread();
    EXPECT_EQ(replacements.getCount(), 0U);
    TextureReplacements::destroyInstance();
}

} // namespace
} // namespace vlEditor
