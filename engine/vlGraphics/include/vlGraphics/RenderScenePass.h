#pragma once
#include <vlGraphics/BlendState.h>
#include <vlGraphics/Camera.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/Pass.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/RenderQueue.h>

namespace vlGraphics {

/** Draws the entities of a render queue, each through its own shader. Null handles mean the
 * defaults: the context's cameras, the default render queue, opaque blending, less-than depth test,
 * solid fill. */
class RenderScenePass final : public Pass {
public:
    PASS_TYPE getType() const override { return PASS_TYPE::RENDER_SCENE; }
    std::unique_ptr<Pass> clone() const override;
    void record(PassRecorder& recorder) const override;

    Handle<RenderQueue> getRenderQueue() const { return renderQueue_; }
    void setRenderQueue(Handle<RenderQueue> queue);
    /// Draws the transparent entities instead of the opaque ones.
    bool getTransparentPass() const { return transparent_; }
    void setTransparentPass(bool value);
    Handle<Camera> getRenderCamera() const { return renderCamera_; }
    void setRenderCamera(Handle<Camera> camera);
    Handle<Camera> getCullingCamera() const { return cullingCamera_; }
    void setCullingCamera(Handle<Camera> camera);
    Handle<Camera> getLodCamera() const { return lodCamera_; }
    void setLodCamera(Handle<Camera> camera);
    Handle<BlendState> getBlendState() const { return blendState_; }
    void setBlendState(Handle<BlendState> state);
    Handle<RasterState> getRasterState() const { return rasterState_; }
    void setRasterState(Handle<RasterState> state);
    Handle<DepthStencilState> getDepthStencilState() const { return depthStencilState_; }
    void setDepthStencilState(Handle<DepthStencilState> state);
    /// What the stencil test compares with, and STENCIL_OP::REPLACE writes.
    std::uint8_t getStencilReference() const { return stencilReference_; }
    void setStencilReference(std::uint8_t value);

private:
    Handle<RenderQueue> renderQueue_;
    bool transparent_ = false;
    Handle<Camera> renderCamera_;
    Handle<Camera> cullingCamera_;
    Handle<Camera> lodCamera_;
    Handle<BlendState> blendState_;
    Handle<RasterState> rasterState_;
    Handle<DepthStencilState> depthStencilState_;
    std::uint8_t stencilReference_ = 0;
};

} // namespace vlGraphics
