#include "script/KindBuilder.h"
#include "script/Kinds.h"

#include <vlGraphics/BlendState.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/Viewport.h>

namespace vlKestrion {
namespace {

using vlGraphics::BlendState;
using vlGraphics::DepthStencilState;
using vlGraphics::RasterState;
using vlGraphics::Sampler;
using vlGraphics::Viewport;

using Face = DepthStencilState::Face;

/// Of target 0, which stands for all where the state is not independent.
template <class V> auto firstTarget(V (BlendState::*get)(std::uint32_t) const) {
    return [get](const BlendState& state) { return (state.*get)(0); };
}
template <class V> auto firstTarget(void (BlendState::*set)(V, std::uint32_t)) {
    return [set](BlendState& state, V value) { (state.*set)(value, 0); };
}

template <class V> auto front(V Face::*member) {
    return [member](const DepthStencilState& state) { return state.getFront().*member; };
}
template <class V> auto back(V Face::*member) {
    return [member](const DepthStencilState& state) { return state.getBack().*member; };
}

auto areaOf(float Viewport::Area::*member) {
    return [member](const Viewport& viewport) { return viewport.getArea().*member; };
}
auto changeArea(float Viewport::Area::*member) {
    return [member](Viewport& viewport, float value) {
        Viewport::Area area = viewport.getArea();
        area.*member = value;
        return viewport.setArea(area);
    };
}

} // namespace

EngineKind blendStateKind() {
    using B = BlendState;
    auto builder = resourceKind<vlGraphics::BlendStateManager>("blendState");
    builder.field("alphaToCoverage", "", &B::getAlphaToCoverage, &B::setAlphaToCoverage)
            .field("independent",
                   "each target has its own settings; those below are target 0's",
                   &B::getIndependentBlend,
                   &B::setIndependentBlend)
            .field("enabled",
                   "",
                   firstTarget(&B::getBlendEnabled),
                   firstTarget(&B::setBlendEnabled))
            .field("source", "", firstTarget(&B::getSrcBlend), firstTarget(&B::setSrcBlend))
            .field("destination", "", firstTarget(&B::getDestBlend), firstTarget(&B::setDestBlend))
            .field("operation", "", firstTarget(&B::getBlendOp), firstTarget(&B::setBlendOp))
            .field("sourceAlpha",
                   "",
                   firstTarget(&B::getSrcAlphaBlend),
                   firstTarget(&B::setSrcAlphaBlend))
            .field("destinationAlpha",
                   "",
                   firstTarget(&B::getDestAlphaBlend),
                   firstTarget(&B::setDestAlphaBlend))
            .field("operationAlpha",
                   "",
                   firstTarget(&B::getBlendOpAlpha),
                   firstTarget(&B::setBlendOpAlpha))
            .field("writeMask", "", firstTarget(&B::getWriteMask), firstTarget(&B::setWriteMask));
    return finish<vlGraphics::BlendStateManager>(builder, "blendStates");
}

EngineKind depthStencilStateKind() {
    using D = DepthStencilState;
    auto builder = resourceKind<vlGraphics::DepthStencilStateManager>("depthStencilState");
    builder.field("depthEnabled", "", &D::getDepthEnabled, &D::setDepthEnabled)
            .field("depthWriteMask", "", &D::getDepthWriteMask, &D::setDepthWriteMask)
            .field("depthFunction", "", &D::getDepthFunction, &D::setDepthFunction)
            .field("stencilEnabled", "", &D::getStencilEnabled, &D::setStencilEnabled)
            .field("stencilReadMask", "0 to 255", &D::getStencilReadMask, &D::setStencilReadMask)
            .field("stencilWriteMask", "0 to 255", &D::getStencilWriteMask, &D::setStencilWriteMask)
            .field("frontFail", "", front(&Face::fail), &D::setFrontFail)
            .field("frontDepthFail", "", front(&Face::depthFail), &D::setFrontDepthFail)
            .field("frontPass", "", front(&Face::pass), &D::setFrontPass)
            .field("frontFunction", "", front(&Face::function), &D::setFrontFunction)
            .field("backFail", "", back(&Face::fail), &D::setBackFail)
            .field("backDepthFail", "", back(&Face::depthFail), &D::setBackDepthFail)
            .field("backPass", "", back(&Face::pass), &D::setBackPass)
            .field("backFunction", "", back(&Face::function), &D::setBackFunction);
    return finish<vlGraphics::DepthStencilStateManager>(builder, "depthStencilStates");
}

EngineKind rasterStateKind() {
    using R = RasterState;
    auto builder = resourceKind<vlGraphics::RasterStateManager>("rasterState");
    builder.field("fillMode", "", &R::getFillMode, &R::setFillMode)
            .field("cullMode", "", &R::getCullMode, &R::setCullMode)
            .field("frontCounterClockwise",
                   "",
                   &R::getFrontCounterClockwise,
                   &R::setFrontCounterClockwise)
            .field("depthBias",
                   "in the depth buffer's smallest steps",
                   &R::getDepthBias,
                   &R::setDepthBias)
            .field("depthBiasClamp", "", &R::getDepthBiasClamp, &R::setDepthBiasClamp)
            .field("slopeScaledDepthBias",
                   "",
                   &R::getSlopeScaledDepthBias,
                   &R::setSlopeScaledDepthBias)
            .field("depthClip", "", &R::getDepthClip, &R::setDepthClip)
            .field("scissor", "", &R::getScissor, &R::setScissor)
            .field("multiSampling", "", &R::getMultiSampling, &R::setMultiSampling)
            .field("lineAntiAliasing", "", &R::getLineAntiAliasing, &R::setLineAntiAliasing);
    return finish<vlGraphics::RasterStateManager>(builder, "rasterStates");
}

EngineKind samplerKind() {
    using S = Sampler;
    auto builder = resourceKind<vlGraphics::SamplerManager>("sampler");
    builder.field("filter", "", &S::getFilter, &S::setFilter)
            .field("addressU", "", &S::getAddressModeU, &S::setAddressModeU)
            .field("addressV", "", &S::getAddressModeV, &S::setAddressModeV)
            .field("addressW", "", &S::getAddressModeW, &S::setAddressModeW)
            .field("anisotropy", "1 to 16", &S::getAnisotropy, &S::setAnisotropy)
            .field("lodBias", "", &S::getLodBias, &S::setLodBias)
            .field("minLod",
                   "at most maxLod",
                   &S::getMinLod,
                   [](S& sampler, float value) { sampler.setLodRange(value, sampler.getMaxLod()); })
            .field("maxLod",
                   "at least minLod",
                   &S::getMaxLod,
                   [](S& sampler, float value) { sampler.setLodRange(sampler.getMinLod(), value); })
            .field("comparison", "", &S::getComparisonFunc, &S::setComparisonFunc)
            .field("borderColor",
                   "red, green, blue, alpha",
                   &S::getBorderColor,
                   [](S& sampler, const std::array<float, 4>& color) {
                       sampler.setBorderColor(color[0], color[1], color[2], color[3]);
                   });
    return finish<vlGraphics::SamplerManager>(builder, "samplers");
}

EngineKind viewportKind() {
    using Area = Viewport::Area;
    auto builder = resourceKind<vlGraphics::ViewportManager>("viewport");
    builder.field("x", "0 to 1 from the left", areaOf(&Area::x), changeArea(&Area::x))
            .field("y", "0 to 1 from the top", areaOf(&Area::y), changeArea(&Area::y))
            .field("width", "0 to 1", areaOf(&Area::width), changeArea(&Area::width))
            .field("height", "0 to 1", areaOf(&Area::height), changeArea(&Area::height))
            .field("minDepth", "0 to 1", areaOf(&Area::minDepth), changeArea(&Area::minDepth))
            .field("maxDepth", "0 to 1", areaOf(&Area::maxDepth), changeArea(&Area::maxDepth));
    return finish<vlGraphics::ViewportManager>(builder, "viewports");
}

} // namespace vlKestrion
