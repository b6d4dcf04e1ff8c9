#include "render/PassStates.h"

#include "vulkan/Device.h"

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

/// Over what is there, by the source's alpha.
constexpr BlendState::Target alphaBlending{.src = BLEND::SRC_ALPHA,
                                           .dest = BLEND::INV_SRC_ALPHA,
                                           .op = BLEND_OP::ADD,
                                           .srcAlpha = BLEND::ONE,
                                           .destAlpha = BLEND::INV_SRC_ALPHA,
                                           .opAlpha = BLEND_OP::ADD,
                                           .writeMask = COLOR_WRITE_ENABLE::ALL,
                                           .enabled = true};

template <class State> void note(const State& state, std::string_view fault) {
    Device::getInstance()->logOnce(
            fmt::format("{} '{}': {}", State::kindName, state.getName(), fault));
}

bool takesExtreme(BLEND_OP op) {
    return op == BLEND_OP::MIN || op == BLEND_OP::MAX;
}

/// Factors count for nothing where blending is off or takes the smaller or the larger value.
BlendState::Target essentials(BlendState::Target target) {
    if (!target.enabled) return {.writeMask = target.writeMask};
    if (takesExtreme(target.op)) target.src = target.dest = BLEND::ONE;
    if (takesExtreme(target.opAlpha)) target.srcAlpha = target.destAlpha = BLEND::ONE;
    return target;
}

bool hasSeveralSettings(const BlendState& state, std::uint32_t targets) {
    for (std::uint32_t i = 1; i < std::min(targets, BlendState::targetCount); ++i)
        if (essentials(state.getTarget(i)) != essentials(state.getTarget(0))) return true;
    return false;
}

void takeBlend(const BlendState& state, PassState& into) {
    const Device& device = *Device::getInstance();
    const std::uint32_t count = into.formats.colorCount;
    bool independent = state.getIndependentBlend();
    if (independent && device.features().independentBlend == VK_FALSE) {
        independent = false;
        if (hasSeveralSettings(state, count))
            note(state,
                 "the device blends all targets alike: target 0's settings count for all of them");
    }
    into.blendState.name = state.getName();
    into.alphaToCoverage = state.getAlphaToCoverage();
    for (std::uint32_t i = 0; i < count; ++i) {
        BlendState::Target target = essentials(state.getTarget(independent ? i : 0));
        if (readsSecondSource(target) &&
            (device.features().dualSrcBlend == VK_FALSE || count > 1)) {
            note(state,
                 count > 1 ? "the factors SRC1 need a single colour target: the first colour "
                             "takes the second's place"
                           : "the device has no second source of blending: the first colour takes "
                             "its place");
            target = withoutSecondSource(target);
        }
        into.blend[i] = target;
    }
}

void takeRaster(const RasterState& state, PassState& into) {
    const Device& device = *Device::getInstance();
    RasterState::Settings raster = state.getSettings();
    // Targets have one sample a pixel, and the scissor is set while recording.
    raster.multiSampling = false;
    raster.scissor = false;
    if (raster.fillMode == FILL_MODE::WIREFRAME && device.features().fillModeNonSolid == VK_FALSE) {
        note(state, "the device draws no wire frames: faces are filled");
        raster.fillMode = FILL_MODE::SOLID;
    }
    if (!raster.depthClip && device.features().depthClamp == VK_FALSE) {
        note(state, "the device cannot leave depth unclipped: it is clipped");
        raster.depthClip = true;
    }
    const bool biases = raster.depthBias != 0 || raster.slopeScaledDepthBias != 0;
    if (!biases || into.formats.depth == VK_FORMAT_UNDEFINED) {
        raster.depthBias = 0;
        raster.slopeScaledDepthBias = raster.depthBiasClamp = 0;
    }
    if (raster.depthBiasClamp != 0 && device.features().depthBiasClamp == VK_FALSE) {
        note(state, "the device cannot clamp the depth bias: it has no limit");
        raster.depthBiasClamp = 0;
    }
    // Coverage cannot come from the line and from alpha at once.
    raster.lineAntiAliasing &= device.choice().hasSmoothLines && !into.alphaToCoverage;
    into.raster = raster;
}

void takeDepthStencil(const DepthStencilState& state, PassState& into) {
    DepthStencilState::Settings depth = state.getSettings();
    if (depth.stencilEnabled && into.formats.stencil == VK_FORMAT_UNDEFINED) {
        note(state,
             into.formats.depth == VK_FORMAT_UNDEFINED
                     ? "the stencil test passes, there is no depth target"
                     : "the stencil test passes, the depth target has no stencil");
        depth.stencilEnabled = false;
    }
    if (into.formats.depth == VK_FORMAT_UNDEFINED) depth.depthEnabled = false;
    DepthStencilState::Settings kept;
    kept.depthEnabled = depth.depthEnabled;
    if (depth.depthEnabled) {
        kept.depthWriteMask = depth.depthWriteMask;
        kept.depthFunction = depth.depthFunction;
    }
    if (depth.stencilEnabled) {
        kept.stencilEnabled = true;
        kept.stencilReadMask = depth.stencilReadMask;
        kept.stencilWriteMask = depth.stencilWriteMask;
        kept.front = depth.front;
        kept.back = depth.back;
    }
    into.depthStencil = kept;
}

/// What is left in their place says whether there are any.
ScenePassState::Dragged takeDragged(PassState& from) {
    RasterState::Settings& raster = from.raster;
    DepthStencilState::Settings& depth = from.depthStencil;
    const ScenePassState::Dragged dragged{static_cast<float>(raster.depthBias),
                                          raster.depthBiasClamp,
                                          raster.slopeScaledDepthBias,
                                          depth.stencilReadMask,
                                          depth.stencilWriteMask};
    raster.depthBias = raster.depthBias != 0 || raster.slopeScaledDepthBias != 0 ? 1 : 0;
    raster.depthBiasClamp = raster.slopeScaledDepthBias = 0;
    depth.stencilReadMask = DepthStencilState::Settings().stencilReadMask;
    depth.stencilWriteMask = DepthStencilState::Settings().stencilWriteMask;
    return dragged;
}

} // namespace

bool readsSecondSource(BLEND factor) {
    return factor >= BLEND::SRC1_COLOR && factor <= BLEND::INV_SRC1_ALPHA;
}

bool readsSecondSource(const BlendState::Target& target) {
    return readsSecondSource(target.src) || readsSecondSource(target.dest) ||
           readsSecondSource(target.srcAlpha) || readsSecondSource(target.destAlpha);
}

BlendState::Target withoutSecondSource(BlendState::Target target) {
    constexpr auto toFirst = static_cast<std::uint32_t>(BLEND::SRC1_COLOR) -
                             static_cast<std::uint32_t>(BLEND::SRC_COLOR);
    for (BLEND* factor : {&target.src, &target.dest, &target.srcAlpha, &target.destAlpha})
        if (readsSecondSource(*factor))
            *factor = static_cast<BLEND>(static_cast<std::uint32_t>(*factor) - toFirst);
    return target;
}

ScenePassState passStateOf(const RenderScenePass& pass, const TargetFormats& formats) {
    ScenePassState state;
    state.fixed.formats = formats;
    const BlendState* blend = BlendStateManager::getInstance()->resolve(pass.getBlendState());
    if (blend != nullptr)
        takeBlend(*blend, state.fixed);
    else if (pass.getTransparentPass())
        std::fill_n(state.fixed.blend.begin(), formats.colorCount, alphaBlending);
    const RasterState* raster = RasterStateManager::getInstance()->resolve(pass.getRasterState());
    if (raster != nullptr) {
        takeRaster(*raster, state.fixed);
        state.cutsToViewport = raster->getScissor();
    }
    const DepthStencilState* depth =
            DepthStencilStateManager::getInstance()->resolve(pass.getDepthStencilState());
    if (depth != nullptr)
        takeDepthStencil(*depth, state.fixed);
    else if (pass.getTransparentPass())
        state.fixed.depthStencil.depthWriteMask = DEPTH_WRITE_MASK::ZERO;
    state.dragged = takeDragged(state.fixed);
    state.stencilReference = pass.getStencilReference();
    return state;
}

} // namespace vlGraphics::render
