#include "core/EditorLogger.h"
#include "core/GraphicsLoop.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "core/RenderingScriptChangeMessage.h"
#include "core/RenderingScriptMessage.h"
#include "core/RenderingScriptName.h"
#include "core/ScriptSubmitMessage.h"

#include <vlScripts/Environment.h>
#include <vlScripts/ScriptManager.h>

#include <gmock/gmock.h>

#include <functional>
#include <future>

namespace vlEditor {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct FakeWindow final : RenderWindow {
    bool isDrawable() const override { return drawable; }
    std::uint64_t getRevision() const override { return revision; }
    bool drawable = true;
    std::uint64_t revision = 1;
};

struct FakeRenderer final : FrameRenderer {
    void beginTurn() override { ++turns; }
    std::uint64_t getChangeCount() const override { return changes; }
    bool tick(const RenderWindow& window) override {
        if (&window == withoutContext) return false;
        drawn.push_back(&window);
        steps.emplace_back("tick");
        return true;
    }
    void beginFrame() override { steps.emplace_back("begin"); }
    void drawCompositor() override {
        steps.emplace_back("compositor");
        if (whileDrawing) whileDrawing();
    }
    void endFrame() override { steps.emplace_back("end"); }
    void endWork() override { steps.emplace_back("endWork"); }

    int turns = 0;
    std::uint64_t changes = 1;
    const RenderWindow* withoutContext = nullptr;
    std::function<void()> whileDrawing;
    std::vector<const RenderWindow*> drawn;
    std::vector<std::string> steps;
};

struct FakeOverlay final : WindowOverlay {
    explicit FakeOverlay(std::vector<std::string>& list) : steps(list) {}
    void draw() override { steps.emplace_back("overlay"); }
    std::vector<std::string>& steps;
};

/// Passes time only by sleeping, a little less than it was asked for if told so.
struct FakeClock final : TurnClock {
    Time now() const override { return time; }
    void sleepFor(Duration duration) override {
        sleeps.push_back(duration);
        time += duration - std::min<Duration>(duration, tooShortBy);
        tooShortBy = 0ns;
    }
    Time time{};
    Duration tooShortBy = 0ns;
    std::vector<Duration> sleeps;
};

struct CallMessage final : Message {
    explicit CallMessage(std::function<void()> function) : call(std::move(function)) {}
    void runOnUiThread() override {}
    void runOnGraphicsThread() override { call(); }
    std::function<void()> call;
};

class GraphicsLoopTest : public testing::Test {
protected:
    GraphicsLoopTest() {
        handler.registerWindow(one);
        handler.registerWindow(two);
    }
    std::vector<const RenderWindow*> drawnInATurn() {
        renderer.drawn.clear();
        const std::size_t count = loop.turn();
        EXPECT_EQ(count, renderer.drawn.size());
        return renderer.drawn;
    }

    FakeWindow one;
    FakeWindow two;
    EngineHandler handler;
    FakeRenderer renderer;
    FakeClock clock;
    GraphicsLoop loop{handler, renderer, clock, 50};
};

TEST_F(GraphicsLoopTest, DrawsEachNewWindowOnceAndThenRests) {
    EXPECT_THAT(drawnInATurn(), ElementsAre(&one, &two));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, AChangeOfTheEngineRedrawsEveryWindowOnce) {
    drawnInATurn();
    ++renderer.changes;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&one, &two));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, AChangeWhileAFrameIsDrawnAsksForAnother) {
    renderer.whileDrawing = [&] { ++renderer.changes; };
    drawnInATurn();
    renderer.whileDrawing = nullptr;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&one, &two));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, AResizedWindowIsRedrawnAlone) {
    drawnInATurn();
    ++two.revision;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&two));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, ATickedWindowIsDrawnInEveryTurn) {
    handler.setUpdate(two, true);
    drawnInATurn();
    EXPECT_THAT(drawnInATurn(), ElementsAre(&two));
    handler.setUpdate(two, false);
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, AWindowThatNobodySeesIsPassedOverUntilItIsSeen) {
    handler.setUpdate(one, true);
    one.drawable = false;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&two));
    two.drawable = false;
    const int before = renderer.turns;
    EXPECT_THAT(drawnInATurn(), IsEmpty());
    EXPECT_EQ(renderer.turns, before + 1) << "work is taken over without a picture, too";
    one.drawable = true;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&one));
}

TEST_F(GraphicsLoopTest, AWindowWithoutAContextIsNotCounted) {
    renderer.withoutContext = &one;
    EXPECT_THAT(drawnInATurn(), ElementsAre(&two));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, TheOverlayIsDrawnInsideTheFrameOfItsWindow) {
    handler.setOverlay(two, std::make_unique<FakeOverlay>(renderer.steps));
    loop.turn();
    EXPECT_THAT(renderer.steps,
                ElementsAre("tick",
                            "begin",
                            "compositor",
                            "end", // one
                            "tick",
                            "begin",
                            "compositor",
                            "overlay",
                            "end"));
}

TEST_F(GraphicsLoopTest, UnregisteringTakesTheUpdateFlagAlong) {
    handler.setUpdate(one, true);
    handler.unregisterWindow(one);
    handler.unregisterWindow(one);
    EXPECT_THAT(drawnInATurn(), ElementsAre(&two));
    handler.registerWindow(one);
    EXPECT_THAT(drawnInATurn(), ElementsAre(&one));
    EXPECT_THAT(drawnInATurn(), IsEmpty());
}

TEST_F(GraphicsLoopTest, AMessagePostedWhileDrawingRunsAtTheStartOfTheNextTurn) {
    renderer.whileDrawing = [&] {
        postToGraphics(CallMessage([&] { renderer.steps.emplace_back("message"); }));
        renderer.whileDrawing = nullptr;
    };
    loop.turn();
    EXPECT_THAT(renderer.steps, testing::Not(testing::Contains("message")));
    ++renderer.changes;
    renderer.steps.clear();
    loop.turn();
    EXPECT_EQ(renderer.steps.front(), "message");
}

TEST_F(GraphicsLoopTest, ATurnWithoutAFrameRestsUntil32MillisecondsArePast) {
    clock.tooShortBy = 1500us;
    loop.pace(0);
    EXPECT_THAT(clock.sleeps, ElementsAre(32ms, 2ms));
}

TEST_F(GraphicsLoopTest, FramesKeepToTheirDeadlines) {
    loop.pace(2);
    clock.time += 15ms;
    loop.pace(1);
    clock.time += 50ms;
    loop.pace(1);
    loop.pace(1);
    EXPECT_THAT(clock.sleeps, ElementsAre(20ms, 5ms, 20ms));
}

TEST_F(GraphicsLoopTest, AReleasedTokenEndsTheLoopAfterTheTurn) {
    StopToken token;
    int turns = 0;
    renderer.whileDrawing = [&] {
        // Two windows: the turn goes on to its end.
        if (++turns == 1) token.release();
    };
    // The token's thread is its maker's, so that one also plays the UI here.
    EXPECT_FALSE(std::async(std::launch::async, [&] { return token.isReleased(); }).get());
    loop.turn();
    EXPECT_TRUE(std::async(std::launch::async, [&] { return token.isReleased(); }).get());
    renderer.steps.clear();
    loop.run(token);
    EXPECT_THAT(renderer.steps, ElementsAre("endWork"));
    EXPECT_EQ(turns, 2);
}

TEST(EngineHandlerTest, StartsRunsMessagesAndEndsOnce) {
    EngineHandler handler;
    handler.join();
    auto renderer = std::make_unique<FakeRenderer>();
    const FakeRenderer& steps = *renderer;
    std::promise<void> ran;
    handler.start(std::move(renderer));
    postToGraphics(CallMessage([&] { ran.set_value(); }));
    ran.get_future().wait();
    EXPECT_TRUE(handler.isRunning());
    for (int i = 0; i < 2; ++i) {
        handler.release();
        handler.join();
    }
    EXPECT_FALSE(handler.isRunning());
    EXPECT_THAT(steps.steps, ElementsAre("endWork"));
}

/// Scripts that change the fake engine.
class ScriptedLoopTest : public GraphicsLoopTest {
protected:
    ScriptedLoopTest() {
        environment.interpreter().addFunction("change", [this](auto) {
            ++renderer.changes;
            renderer.steps.emplace_back("script");
            return vlCommon::Result<vlScripts::Values>();
        });
        global().setScriptEnvironment(&environment);
    }
    ~ScriptedLoopTest() override {
        MessageOrchestrator::getInstance().discard();
        EditorLogger::destroyInstance();
        EngineHandler::destroyInstance();
        RenderingScriptName::destroyInstance();
    }
    /// Messages look for the one instance.
    static EngineHandler& global() { return EngineHandler::getInstance(); }
    static const std::deque<std::string>& lines() {
        MessageOrchestrator::getInstance().drainUi();
        return EditorLogger::getInstance().getKeptLines();
    }
    template <class M> static void post(const char* name, const char* text) {
        M message;
        message.name = name;
        message.text = text;
        postToGraphics(std::move(message));
    }
    std::size_t turn() { return scripted.turn(); }

    vlScripts::Environment environment;
    GraphicsLoop scripted{(global().registerWindow(one), global()), renderer, clock, 50};
};

TEST_F(ScriptedLoopTest, TheRenderingScriptRunsInEachTurnBeforeTheDrawing) {
    post<RenderingScriptMessage>("spin", "change()");
    EXPECT_EQ(turn(), 1U);
    EXPECT_THAT(renderer.steps, ElementsAre("script", "tick", "begin", "compositor", "end"));
    EXPECT_EQ(turn(), 1U) << "what the script changed is drawn";
    EXPECT_EQ(global().getRenderingScript().getName(), "spin");
    post<RenderingScriptMessage>("spin", "change(");
    EXPECT_EQ(turn(), 1U) << "one that does not compile leaves the earlier one";
    EXPECT_THAT(lines().back(), testing::StartsWith("[Editor] spin:1: "));
    post<RenderingScriptMessage>("", "");
    EXPECT_EQ(turn(), 0U);
    EXPECT_EQ(global().getRenderingScript().get(), nullptr);
}

TEST_F(ScriptedLoopTest, TheRenderingScriptFollowsTheScriptOfTheManager) {
    vlScripts::ScriptManager scripts;
    vlScripts::Script& spin = *scripts.createOrRetrieve("spin");
    spin.setSources("change()");
    postToGraphics(RenderingScriptChangeMessage("spin"));
    EXPECT_EQ(turn(), 1U) << "it was compiled for that";
    lines();
    EXPECT_EQ(RenderingScriptName::getInstance().get(), "spin");

    spin.unload();
    spin.setSources("change(");
    EXPECT_FALSE(spin.load());
    EXPECT_EQ(turn(), 1U) << "the last good one runs on";
    spin.setSources("error('new')");
    EXPECT_TRUE(spin.load());
    scripts.rename("spin", "turn");
    turn();
    EXPECT_EQ(lines().back(), "[Editor] turn:1: new");
    EXPECT_EQ(RenderingScriptName::getInstance().get(), "turn");

    postToGraphics(RenderingScriptChangeMessage("nobody"));
    turn();
    EXPECT_THAT(lines(), testing::Contains("[Editor] There is no script 'nobody' to render with."));
    EXPECT_EQ(global().getRenderingScript().getName(), "turn");
}

TEST_F(ScriptedLoopTest, AnErasedRenderingScriptIsNotTheNextOneOfItsName) {
    vlScripts::ScriptManager scripts;
    scripts.createOrRetrieve("spin");
    postToGraphics(RenderingScriptChangeMessage("spin"));
    turn();
    scripts.erase("spin");
    scripts.createOrRetrieve("spin")->setSources("change()");
    ASSERT_TRUE(scripts.get("spin")->load());
    renderer.steps.clear();
    turn();
    EXPECT_THAT(renderer.steps, testing::Not(testing::Contains("script")));
    lines();
    EXPECT_EQ(RenderingScriptName::getInstance().get(), "");
    EXPECT_EQ(global().getRenderingScript().get(), nullptr);
}

TEST_F(ScriptedLoopTest, AFailingRenderingScriptSaysSoInEachTurnAndNeverStopsTheDrawing) {
    post<RenderingScriptMessage>("bad", "error('no')");
    EXPECT_EQ(turn(), 1U);
    turn();
    EXPECT_THAT(lines(), ElementsAre("[Editor] bad:1: no", "[Editor] bad:1: no"));
    post<RenderingScriptMessage>("endless", "while true do pcall(change) end");
    EXPECT_EQ(turn(), 1U);
    EXPECT_EQ(lines().back(), "[Editor] endless:1: stopped after 8 ms");
}

TEST_F(ScriptedLoopTest, EachSubmittedScriptRunsAsItWas) {
    environment.interpreter().addFunction("see", [this](auto given) {
        renderer.steps.push_back(given[0].asText() == nullptr ? "?" : *given[0].asText());
        return vlCommon::Result<vlScripts::Values>();
    });
    vlScripts::Script command("VLEDITOR_COMMAND");
    for (const char* text : {"see('first')", "see('second')"}) {
        command.unload();
        command.setSources(text);
        ASSERT_TRUE(command.load().has_value());
        postToGraphics(ScriptSubmitMessage(command.getCompiled()));
    }
    post<ScriptSubmitMessage>("typed", "see('third') error({})");
    post<ScriptSubmitMessage>("typed", "see(");
    global().unregisterWindow(one);
    turn();
    EXPECT_THAT(renderer.steps, ElementsAre("first", "second", "third"));
    ASSERT_EQ(lines().size(), 2U);
    EXPECT_EQ(lines()[0], "[CommandLineInterpreter] typed:1: the error is no text but a table");
    EXPECT_THAT(lines()[1], testing::StartsWith("[CommandLineInterpreter] typed:1: "));
    global().setScriptEnvironment(nullptr);
    post<ScriptSubmitMessage>("late", "see('late')");
    turn();
    EXPECT_THAT(lines().back(), testing::HasSubstr("there is no engine"));
}

TEST_F(ScriptedLoopTest, LeavingEndsTheScriptThatRunsAndBeginsNoOther) {
    std::promise<void> begun;
    environment.interpreter().setLimits({});
    environment.interpreter().addFunction("begin", [&](auto) {
        begun.set_value();
        return vlCommon::Result<vlScripts::Values>();
    });
    global().unregisterWindow(one);
    global().start(std::make_unique<FakeRenderer>());
    post<ScriptSubmitMessage>("endless", "begin() while true do end");
    post<ScriptSubmitMessage>("next", "while true do end");
    begun.get_future().wait();
    global().release();
    global().join();
    EXPECT_THAT(lines().back(), testing::HasSubstr("interrupted"));
}

} // namespace
} // namespace vlEditor
