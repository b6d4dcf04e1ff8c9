#pragma once
#include "core/FrameRenderer.h"

namespace vlEditor {

/** Draws frames with the engine. Every window given to it is an EngineSurfaceState. */
class EngineFrameRenderer final : public FrameRenderer {
public:
    void beginTurn() override;
    std::uint64_t getChangeCount() const override;
    bool tick(const RenderWindow& window) override;
    void beginFrame() override;
    void drawCompositor() override;
    void endFrame() override;
    void endWork() override;
};

} // namespace vlEditor
