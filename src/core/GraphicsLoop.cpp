#include "core/GraphicsLoop.h"

#include "core/MessageOrchestrator.h"

#include <algorithm>

namespace vlEditor {

using std::chrono::ceil;
using std::chrono::milliseconds;

GraphicsLoop::GraphicsLoop(EngineHandler& handler,
                           FrameRenderer& renderer,
                           TurnClock& clock,
                           double framesPerSecond)
    : handler_(handler), renderer_(renderer), clock_(clock),
      framePeriod_(std::chrono::duration_cast<TurnClock::Duration>(
              std::chrono::duration<double>(1.0 / framesPerSecond))),
      nextFrame_(clock.now() + framePeriod_) {
}

void GraphicsLoop::run(StopToken& token) {
    while (!token.isReleased())
        pace(turn());
    renderer_.endWork();
}

std::size_t GraphicsLoop::turn() {
    MessageOrchestrator::getInstance().drainGraphics();
    renderer_.beginTurn();
    handler_.getRenderingScript().run(handler_.getScriptEnvironment());
    std::size_t drawnCount = 0;
    for (EngineHandler::Registration& entry : handler_.getWindows()) {
        if (wantsFrame(entry) && draw(entry)) ++drawnCount;
    }
    return drawnCount;
}

bool GraphicsLoop::wantsFrame(const EngineHandler::Registration& entry) const {
    if (!entry.window->isDrawable()) return false;
    return entry.update || entry.drawn != stateFor(*entry.window);
}

EngineHandler::PictureState GraphicsLoop::stateFor(const RenderWindow& window) const {
    return {renderer_.getChangeCount(), window.getRevision()};
}

bool GraphicsLoop::draw(EngineHandler::Registration& entry) {
    // Taken before the frame: what changes while it is drawn asks for another one.
    const EngineHandler::PictureState state = stateFor(*entry.window);
    if (!renderer_.tick(*entry.window)) return false;
    renderer_.beginFrame();
    renderer_.drawCompositor();
    if (entry.overlay) entry.overlay->draw();
    renderer_.endFrame();
    entry.drawn = state;
    return true;
}

void GraphicsLoop::pace(std::size_t drawnCount) {
    const TurnClock::Time start = clock_.now();
    if (drawnCount == 0) {
        const TurnClock::Time deadline = start + idleRest;
        for (auto time = start; time < deadline; time = clock_.now()) {
            clock_.sleepFor(ceil<milliseconds>(deadline - time));
        }
        nextFrame_ = clock_.now() + framePeriod_;
        return;
    }
    if (start < nextFrame_) clock_.sleepFor(nextFrame_ - start);
    // One that came late does not make the next ones hurry.
    nextFrame_ = std::max(nextFrame_, start) + framePeriod_;
}

} // namespace vlEditor
