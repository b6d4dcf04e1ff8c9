#include "render/PassRecorder.h"
#include "render/RendererGpu.h"
#include "render/SceneDrawer.h"

#include <vlGraphics/ClearTargetsPass.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/RenderScenePass.h>
#include <vlGraphics/System.h>

namespace vlGraphics {

namespace {

void drawOperations(Renderer::Gpu& renderer, const TargetOperations& operations) {
    PassRecorder recorder(renderer, *renderer.active, operations);
    if (!recorder.isUsable()) return;
    for (std::uint32_t i = 0; i < operations.getPassCount(); ++i)
        if (const Pass* pass = operations.getPass(i)) pass->record(recorder);
}

/// Over what is there, by the source's alpha.
constexpr BlendState::Target alphaBlending{.src = BLEND::SRC_ALPHA,
                                           .dest = BLEND::INV_SRC_ALPHA,
                                           .op = BLEND_OP::ADD,
                                           .srcAlpha = BLEND::ONE,
                                           .destAlpha = BLEND::INV_SRC_ALPHA,
                                           .opAlpha = BLEND_OP::ADD,
                                           .writeMask = COLOR_WRITE_ENABLE::ALL,
                                           .enabled = true};

BlendState::Target targetOf(const BlendState& state, std::uint32_t target) {
    return {.src = state.getSrcBlend(target),
            .dest = state.getDestBlend(target),
            .op = state.getBlendOp(target),
            .srcAlpha = state.getSrcAlphaBlend(target),
            .destAlpha = state.getDestAlphaBlend(target),
            .opAlpha = state.getBlendOpAlpha(target),
            .writeMask = state.getWriteMask(target),
            .enabled = state.getBlendEnabled(target)};
}

render::PassState stateOf(const RenderScenePass& pass, const render::TargetFormats& formats) {
    render::PassState state;
    state.formats = formats;
    const BlendState* blend = BlendStateManager::getInstance()->resolve(pass.getBlendState());
    if (blend != nullptr) {
        state.alphaToCoverage = blend->getAlphaToCoverage();
        for (std::uint32_t i = 0; i < BlendState::targetCount; ++i)
            state.blend[i] = targetOf(*blend, blend->getIndependentBlend() ? i : 0);
    } else if (pass.getTransparentPass()) {
        state.blend.fill(alphaBlending);
    }
    const RasterState* raster = RasterStateManager::getInstance()->resolve(pass.getRasterState());
    if (raster != nullptr) state.raster = raster->getSettings();
    const DepthStencilState* depth =
            DepthStencilStateManager::getInstance()->resolve(pass.getDepthStencilState());
    if (depth != nullptr)
        state.depthStencil = depth->getSettings();
    else if (pass.getTransparentPass())
        state.depthStencil.depthWriteMask = DEPTH_WRITE_MASK::ZERO;
    return state;
}

RenderQueue* queueOf(const RenderScenePass& pass) {
    RenderQueueManager* queues = RenderQueueManager::getInstance();
    RenderQueue* queue = queues->resolve(pass.getRenderQueue());
    return queue != nullptr ? queue : queues->get(RenderQueueManager::DEFAULT_RENDER_QUEUE);
}

Camera& cameraOr(Handle<Camera> handle, Camera& fallback, const RenderContext& context) {
    Camera* camera = CameraManager::getInstance()->resolve(handle);
    Camera& chosen = camera != nullptr ? *camera : fallback;
    chosen.prepareForContext(context);
    return chosen;
}

} // namespace

void Compositor::draw() const {
    System* system = System::getInstance();
    if (system == nullptr || !system->getRenderer().gpu().recording) return;
    Renderer::Gpu& renderer = system->getRenderer().gpu();
    for (const auto& node : nodes_) {
        if (!node->getActive()) continue;
        for (std::uint32_t i = 0; i < node->getOperationsCount(); ++i)
            drawOperations(renderer, *node->getOperations(i));
    }
}

void ClearTargetsPass::record(PassRecorder& recorder) const {
    if (clearsColor_)
        recorder.clearColor(colorTargetIndex_, {color_.x, color_.y, color_.z, color_.w});
    if (clearsDepth_) recorder.clearDepth(depth_);
}

void RenderScenePass::record(PassRecorder& recorder) const {
    RenderQueue* queue = queueOf(*this);
    if (queue == nullptr) return;
    const RenderContext& context = recorder.context();
    const Camera& camera = cameraOr(renderCamera_, *context.getRenderCamera(), context);
    const Camera& culling = cameraOr(cullingCamera_, *context.getCullingCamera(), context);

    queue->updateTransforms();
    DrawList& list = recorder.renderer().draws;
    list.clear();
    StrategyView view;
    view.frustum = vlMaths::Frustum(culling.getViewProjectionMatrix());
    view.cameraPosition = camera.getPositionAbsolute();
    view.transparentPass = transparent_;
    queue->getRenderStrategy().collect(*queue, view, list);
    if (list.runs.empty()) return;

    PassInputs inputs;
    inputs.camera = &camera;
    inputs.targetWidth = recorder.extent().width;
    inputs.targetHeight = recorder.extent().height;
    inputs.timeMs = recorder.renderer().timeMs;
    render::SceneDrawer(recorder, *queue, list).draw(inputs, stateOf(*this, recorder.formats()));
}

} // namespace vlGraphics
