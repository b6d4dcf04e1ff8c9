#pragma once
#include "core/EngineHandler.h"

#include <chrono>

namespace vlEditor {

/** The graphics thread's work. Each turn runs the messages that have come, then the rendering
 *  script, then draws the windows whose picture is out of date or that want to be drawn always. */
class GraphicsLoop {
public:
    /// A turn that drew nothing is followed by this rest.
    static constexpr std::chrono::milliseconds idleRest{32};

    GraphicsLoop(EngineHandler& handler,
                 FrameRenderer& renderer,
                 TurnClock& clock,
                 double framesPerSecond);

    /// Turn after turn, until the token is released; not even one if it is released already.
    void run(StopToken& token);
    /// The number of windows drawn.
    std::size_t turn();
    /// Rests as long as a turn that drew so many windows asks for.
    void pace(std::size_t drawnCount);

private:
    bool wantsFrame(const EngineHandler::Registration& entry) const;
    EngineHandler::PictureState stateFor(const RenderWindow& window) const;
    bool draw(EngineHandler::Registration& entry);

    EngineHandler& handler_;
    FrameRenderer& renderer_;
    TurnClock& clock_;
    TurnClock::Duration framePeriod_;
    TurnClock::Time nextFrame_; ///< not before this
};

} // namespace vlEditor
