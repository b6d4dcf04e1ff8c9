#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/ClearTargetsPass.h>
#include <vlGraphics/ComputePass.h>
#include <vlGraphics/RenderScenePass.h>

#include <cmath>

namespace vlGraphics {

namespace {

/// False when nothing changes.
template <class Value> bool replace(Value& held, const Value& value) {
    if (held == value) return false;
    held = value;
    return true;
}

} // namespace

void Pass::markChanged() {
    ChangeCount::bump();
}

void Pass::setName(vlMemory::StringView name) {
    if (name_ == name) return;
    name_ = name;
    markChanged();
}

std::unique_ptr<Pass> ClearTargetsPass::clone() const {
    return std::make_unique<ClearTargetsPass>(*this);
}
void ClearTargetsPass::setShouldClearColor(bool value) {
    if (replace(clearsColor_, value)) markChanged();
}
void ClearTargetsPass::setShouldClearDepth(bool value) {
    if (replace(clearsDepth_, value)) markChanged();
}
void ClearTargetsPass::setClearColor(const vlMaths::Vector& color) {
    if (isFinite(color) && replace(color_, color)) markChanged();
}
void ClearTargetsPass::setClearDepth(float depth) {
    if (depth >= 0 && depth <= 1 && replace(depth_, depth)) markChanged();
}
void ClearTargetsPass::setClearStencil(std::uint32_t stencil) {
    if (replace(stencil_, stencil)) markChanged();
}
void ClearTargetsPass::setColorTargetIndex(std::uint32_t index) {
    if (replace(colorTargetIndex_, index)) markChanged();
}

std::unique_ptr<Pass> ComputePass::clone() const {
    return std::make_unique<ComputePass>(*this);
}
void ComputePass::setShader(Handle<Shader> shader) {
    if (replace(shader_, shader)) markChanged();
}
void ComputePass::setX(std::uint32_t groups) {
    if (replace(x_, groups)) markChanged();
}
void ComputePass::setY(std::uint32_t groups) {
    if (replace(y_, groups)) markChanged();
}
void ComputePass::setZ(std::uint32_t groups) {
    if (replace(z_, groups)) markChanged();
}

std::unique_ptr<Pass> RenderScenePass::clone() const {
    return std::make_unique<RenderScenePass>(*this);
}
void RenderScenePass::setRenderQueue(Handle<RenderQueue> queue) {
    if (replace(renderQueue_, queue)) markChanged();
}
void RenderScenePass::setTransparentPass(bool value) {
    if (replace(transparent_, value)) markChanged();
}
void RenderScenePass::setRenderCamera(Handle<Camera> camera) {
    if (replace(renderCamera_, camera)) markChanged();
}
void RenderScenePass::setCullingCamera(Handle<Camera> camera) {
    if (replace(cullingCamera_, camera)) markChanged();
}
void RenderScenePass::setLodCamera(Handle<Camera> camera) {
    if (replace(lodCamera_, camera)) markChanged();
}
void RenderScenePass::setBlendState(Handle<BlendState> state) {
    if (replace(blendState_, state)) markChanged();
}
void RenderScenePass::setRasterState(Handle<RasterState> state) {
    if (replace(rasterState_, state)) markChanged();
}
void RenderScenePass::setDepthStencilState(Handle<DepthStencilState> state) {
    if (replace(depthStencilState_, state)) markChanged();
}
void RenderScenePass::setStencilReference(std::uint8_t value) {
    if (replace(stencilReference_, value)) markChanged();
}

} // namespace vlGraphics
