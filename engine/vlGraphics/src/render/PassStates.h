#pragma once
#include "render/Pipelines.h"

#include <vlGraphics/RenderScenePass.h>

#include <cstdint>

namespace vlGraphics::render {

/// How a scene pass draws: what its pipelines hold, and what is set while recording.
struct ScenePassState {
    PassState fixed;
    bool cutsToViewport = false; ///< the scissor; otherwise the whole target
    /// Numbers that a person drags through: pipelines would be made for each.
    struct Dragged {
        float depthBias = 0;
        float depthBiasClamp = 0;
        float slopeScaledDepthBias = 0;
        std::uint8_t stencilReadMask = 0xFF;
        std::uint8_t stencilWriteMask = 0xFF;
    };
    Dragged dragged;
    std::uint8_t stencilReference = 0;
};

/** The states of a pass, as the device and the targets allow them. What the device lacks is
 *  replaced by what comes closest, with one line to the log for each state; settings that have no
 *  effect are brought to their start, so that they make no pipelines. Graphics thread only. */
ScenePassState passStateOf(const RenderScenePass& pass, const TargetFormats& formats);

/// The factor reads the second colour of the pixel stage.
bool readsSecondSource(BLEND factor);
bool readsSecondSource(const BlendState::Target& target);
/// The same with the first colour in the second's place.
BlendState::Target withoutSecondSource(BlendState::Target target);

} // namespace vlGraphics::render
