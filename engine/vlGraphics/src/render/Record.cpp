#include "render/Dispatch.h"
#include "render/PassRecorder.h"
#include "render/PassStates.h"
#include "render/RendererGpu.h"
#include "render/SceneDrawer.h"
#include "vulkan/RenderContextGpu.h"

#include <vlGraphics/ClearTargetsPass.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/ComputePass.h>
#include <vlGraphics/RenderScenePass.h>
#include <vlGraphics/System.h>

namespace vlGraphics {

namespace {

void drawOperations(Renderer::Gpu& renderer, const TargetOperations& operations) {
    PassRecorder recorder(renderer, *renderer.active, operations);
    for (std::uint32_t i = 0; i < operations.getPassCount(); ++i)
        if (const Pass* pass = operations.getPass(i)) pass->record(recorder);
}

bool testsStencil(const Pass& pass) {
    if (pass.getType() != PASS_TYPE::RENDER_SCENE) return false;
    const DepthStencilState* state = DepthStencilStateManager::getInstance()->resolve(
            static_cast<const RenderScenePass&>(pass).getDepthStencilState());
    return state != nullptr && state->getStencilEnabled();
}

/// Some operation tests the stencil of the context's own depth buffer.
bool needsStencil(const TargetOperations& operations) {
    if (!operations.isToChainDepthBuffer()) return false;
    for (std::uint32_t i = 0; i < operations.getPassCount(); ++i)
        if (const Pass* pass = operations.getPass(i); pass != nullptr && testsStencil(*pass))
            return true;
    return false;
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

PassInputs inputsOf(PassRecorder& recorder, const Camera& camera) {
    PassInputs inputs;
    inputs.camera = &camera;
    inputs.targetWidth = recorder.extent().width;
    inputs.targetHeight = recorder.extent().height;
    inputs.timeMs = recorder.renderer().timeMs;
    return inputs;
}

} // namespace

void Compositor::draw() const {
    System* system = System::getInstance();
    if (system == nullptr || !system->getRenderer().gpu().recording) return;
    Renderer::Gpu& renderer = system->getRenderer().gpu();
    // Before anything is drawn: the depth buffer loses its content when it gets stencil.
    for (const auto& node : nodes_) {
        for (std::uint32_t i = 0; node->getActive() && i < node->getOperationsCount(); ++i)
            if (needsStencil(*node->getOperations(i))) renderer.active->gpu()->addStencil();
    }
    for (const auto& node : nodes_) {
        if (!node->getActive()) continue;
        for (std::uint32_t i = 0; i < node->getOperationsCount(); ++i)
            drawOperations(renderer, *node->getOperations(i));
    }
}

void ClearTargetsPass::record(PassRecorder& recorder) const {
    if (clearsColor_)
        recorder.clearColor(colorTargetIndex_, {color_.x, color_.y, color_.z, color_.w});
    if (clearsDepth_) recorder.clearDepth(depth_, stencil_);
}

void RenderScenePass::record(PassRecorder& recorder) const {
    if (!recorder.isUsable()) return;
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

    render::SceneDrawer(recorder, *queue, list)
            .draw(inputsOf(recorder, camera), render::passStateOf(*this, recorder.formats()));
}

void ComputePass::record(PassRecorder& recorder) const {
    const Shader* shader = ShaderManager::getInstance()->resolve(shader_);
    if (shader == nullptr || x_ == 0 || y_ == 0 || z_ == 0) return;
    const RenderContext& context = recorder.context();
    const Camera& camera = cameraOr({}, *context.getRenderCamera(), context);
    render::dispatch(*this, *shader, inputsOf(recorder, camera), recorder);
}

} // namespace vlGraphics
