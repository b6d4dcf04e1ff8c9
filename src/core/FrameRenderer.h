#pragma once
#include <cstdint>

namespace vlEditor {

class RenderWindow;

/** How a frame of a window is drawn, step by step; the loop says when. Graphics thread only. */
class FrameRenderer {
public:
    virtual ~FrameRenderer() = default;

    /// Takes over what the engine's own threads have finished. Once a turn, also when nothing is
    /// drawn.
    virtual void beginTurn() = 0;
    /// Grows with every change that could alter a picture.
    virtual std::uint64_t getChangeCount() const = 0;
    /// Makes the window the one that the next frame draws. False when there is nothing to draw
    /// into.
    virtual bool tick(const RenderWindow& window) = 0;
    virtual void beginFrame() = 0;
    virtual void drawCompositor() = 0;
    virtual void endFrame() = 0;
    /// The loop has ended: finishes what is under way.
    virtual void endWork() = 0;

protected:
    FrameRenderer() = default;
    FrameRenderer(const FrameRenderer&) = default;
    FrameRenderer& operator=(const FrameRenderer&) = default;
};

} // namespace vlEditor
