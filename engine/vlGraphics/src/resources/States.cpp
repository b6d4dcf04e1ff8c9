#include "resources/EnumTexts.h"

#include <vlGraphics/BlendState.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/Viewport.h>

#include <cmath>

namespace vlGraphics {

namespace {

template <class Value> bool isAcceptable(Value value) {
    if constexpr (std::is_enum_v<Value>) {
        return isKnownValue(value);
    } else if constexpr (std::is_floating_point_v<Value>) {
        return std::isfinite(value);
    } else {
        return true;
    }
}

/// False when nothing changes.
template <class Value> bool replace(Value& held, Value value) {
    if (held == value || !isAcceptable(value)) return false;
    held = value;
    return true;
}

bool isFraction(float value) {
    return value >= 0.0F && value <= 1.0F;
}

} // namespace

template <class Value>
void BlendState::set(Value Target::*member, Value value, std::uint32_t target) {
    if (target >= targetCount) return;
    if (replace(targets_[target].*member, value)) markChanged();
}

void BlendState::setAlphaToCoverage(bool value) {
    if (replace(alphaToCoverage_, value)) markChanged();
}
void BlendState::setIndependentBlend(bool value) {
    if (replace(independentBlend_, value)) markChanged();
}
void BlendState::setBlendEnabled(bool value, std::uint32_t target) {
    set(&Target::enabled, value, target);
}
void BlendState::setSrcBlend(BLEND value, std::uint32_t target) {
    set(&Target::src, value, target);
}
void BlendState::setDestBlend(BLEND value, std::uint32_t target) {
    set(&Target::dest, value, target);
}
void BlendState::setBlendOp(BLEND_OP value, std::uint32_t target) {
    set(&Target::op, value, target);
}
void BlendState::setSrcAlphaBlend(BLEND value, std::uint32_t target) {
    set(&Target::srcAlpha, value, target);
}
void BlendState::setDestAlphaBlend(BLEND value, std::uint32_t target) {
    set(&Target::destAlpha, value, target);
}
void BlendState::setBlendOpAlpha(BLEND_OP value, std::uint32_t target) {
    set(&Target::opAlpha, value, target);
}
void BlendState::setWriteMask(COLOR_WRITE_ENABLE value, std::uint32_t target) {
    set(&Target::writeMask, value, target);
}

void BlendState::setTarget(const Target& settings, std::uint32_t target) {
    setBlendEnabled(settings.enabled, target);
    setSrcBlend(settings.src, target);
    setDestBlend(settings.dest, target);
    setBlendOp(settings.op, target);
    setSrcAlphaBlend(settings.srcAlpha, target);
    setDestAlphaBlend(settings.destAlpha, target);
    setBlendOpAlpha(settings.opAlpha, target);
    setWriteMask(settings.writeMask, target);
}

#define VL_SETTER(Class, Name, Type, member)                                                       \
    void Class::set##Name(Type value) {                                                            \
        if (replace(settings_.member, value)) markChanged();                                       \
    }
VL_SETTER(DepthStencilState, DepthEnabled, bool, depthEnabled)
VL_SETTER(DepthStencilState, DepthWriteMask, DEPTH_WRITE_MASK, depthWriteMask)
VL_SETTER(DepthStencilState, DepthFunction, COMPARISON_FUNCTION, depthFunction)
VL_SETTER(DepthStencilState, StencilEnabled, bool, stencilEnabled)
VL_SETTER(DepthStencilState, StencilReadMask, std::uint8_t, stencilReadMask)
VL_SETTER(DepthStencilState, StencilWriteMask, std::uint8_t, stencilWriteMask)
VL_SETTER(DepthStencilState, FrontFail, STENCIL_OP, front.fail)
VL_SETTER(DepthStencilState, FrontDepthFail, STENCIL_OP, front.depthFail)
VL_SETTER(DepthStencilState, FrontPass, STENCIL_OP, front.pass)
VL_SETTER(DepthStencilState, FrontFunction, COMPARISON_FUNCTION, front.function)
VL_SETTER(DepthStencilState, BackFail, STENCIL_OP, back.fail)
VL_SETTER(DepthStencilState, BackDepthFail, STENCIL_OP, back.depthFail)
VL_SETTER(DepthStencilState, BackPass, STENCIL_OP, back.pass)
VL_SETTER(DepthStencilState, BackFunction, COMPARISON_FUNCTION, back.function)

VL_SETTER(RasterState, FillMode, FILL_MODE, fillMode)
VL_SETTER(RasterState, CullMode, CULL_MODE, cullMode)
VL_SETTER(RasterState, FrontCounterClockwise, bool, frontCounterClockwise)
VL_SETTER(RasterState, DepthBias, std::int32_t, depthBias)
VL_SETTER(RasterState, DepthBiasClamp, float, depthBiasClamp)
VL_SETTER(RasterState, SlopeScaledDepthBias, float, slopeScaledDepthBias)
VL_SETTER(RasterState, DepthClip, bool, depthClip)
VL_SETTER(RasterState, Scissor, bool, scissor)
VL_SETTER(RasterState, MultiSampling, bool, multiSampling)
VL_SETTER(RasterState, LineAntiAliasing, bool, lineAntiAliasing)
#undef VL_SETTER

void DepthStencilState::setSettings(const Settings& settings) {
    setDepthEnabled(settings.depthEnabled);
    setDepthWriteMask(settings.depthWriteMask);
    setDepthFunction(settings.depthFunction);
    setStencilEnabled(settings.stencilEnabled);
    setStencilReadMask(settings.stencilReadMask);
    setStencilWriteMask(settings.stencilWriteMask);
    setFrontFail(settings.front.fail);
    setFrontDepthFail(settings.front.depthFail);
    setFrontPass(settings.front.pass);
    setFrontFunction(settings.front.function);
    setBackFail(settings.back.fail);
    setBackDepthFail(settings.back.depthFail);
    setBackPass(settings.back.pass);
    setBackFunction(settings.back.function);
}

void RasterState::setSettings(const Settings& settings) {
    setFillMode(settings.fillMode);
    setCullMode(settings.cullMode);
    setFrontCounterClockwise(settings.frontCounterClockwise);
    setDepthBias(settings.depthBias);
    setDepthBiasClamp(settings.depthBiasClamp);
    setSlopeScaledDepthBias(settings.slopeScaledDepthBias);
    setDepthClip(settings.depthClip);
    setScissor(settings.scissor);
    setMultiSampling(settings.multiSampling);
    setLineAntiAliasing(settings.lineAntiAliasing);
}

bool Viewport::setArea(const Area& area) {
    const bool fractions = isFraction(area.x) && isFraction(area.y) && isFraction(area.width) &&
                           isFraction(area.height) && isFraction(area.minDepth) &&
                           isFraction(area.maxDepth);
    if (!fractions) return false;
    if (area == area_) return true;
    area_ = area;
    markChanged();
    return true;
}

} // namespace vlGraphics
