#include "content/CompositorValues.h"

#include <vlGraphics/DefaultNames.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics {

namespace {

template <class Manager, class T> vlMemory::String nameOf(Handle<T> handle) {
    return vlMemory::String(Manager::getInstance()->nameOf(handle));
}

PassValues passValues(const Pass& pass) {
    PassValues values;
    values.type = pass.getType();
    values.name = pass.getName();
    if (values.type == PASS_TYPE::CLEAR_TARGETS) {
        const auto& clear = static_cast<const ClearTargetsPass&>(pass);
        values.clearsColor = clear.getShouldClearColor();
        values.clearsDepth = clear.getShouldClearDepth();
        values.color = clear.getClearColor();
        values.depth = clear.getClearDepth();
        values.stencil = clear.getClearStencil();
        values.colorTargetIndex = clear.getColorTargetIndex();
    } else if (values.type == PASS_TYPE::COMPUTE) {
        const auto& compute = static_cast<const ComputePass&>(pass);
        values.shader = nameOf<ShaderManager>(compute.getShader());
        values.x = compute.getX();
        values.y = compute.getY();
        values.z = compute.getZ();
    } else if (values.type == PASS_TYPE::RENDER_SCENE) {
        const auto& scene = static_cast<const RenderScenePass&>(pass);
        values.renderQueue = nameOf<RenderQueueManager>(scene.getRenderQueue());
        values.transparent = scene.getTransparentPass();
        values.renderCamera = nameOf<CameraManager>(scene.getRenderCamera());
        values.cullingCamera = nameOf<CameraManager>(scene.getCullingCamera());
        values.lodCamera = nameOf<CameraManager>(scene.getLodCamera());
        values.blendState = nameOf<BlendStateManager>(scene.getBlendState());
        values.rasterState = nameOf<RasterStateManager>(scene.getRasterState());
        values.depthStencilState = nameOf<DepthStencilStateManager>(scene.getDepthStencilState());
        values.stencilReference = scene.getStencilReference();
    }
    return values;
}

OperationValues operationValues(const TargetOperations& operations) {
    OperationValues values;
    values.name = operations.getName();
    values.colorTargets.resize(operations.getColorTargetCount());
    if (operations.isToBackBuffer()) {
        values.colorTargets[operations.getBackBufferViewIndex()] = DefaultNames::backBuffer;
    }
    for (std::uint32_t index = 0; const auto* target = operations.getColorTarget(index); ++index) {
        values.colorTargets[target->renderIndex] = nameOf<TextureManager>(target->texture);
    }
    values.depthTarget = operations.isToChainDepthBuffer()
                                 ? vlMemory::String(DefaultNames::depthBuffer)
                                 : nameOf<TextureManager>(operations.getDepthTarget());
    values.viewport = nameOf<ViewportManager>(operations.getOverloadedViewport());
    for (std::uint32_t index = 0; index < operations.getPassCount(); ++index) {
        const Pass* pass = operations.getPass(index);
        values.passes.push_back(pass == nullptr ? PassValues{} : passValues(*pass));
    }
    return values;
}

void makePass(TargetOperations& operations, const PassValues& values) {
    constexpr std::uint32_t atEnd = TargetOperations::atEnd;
    if (values.type == PASS_TYPE::CLEAR_TARGETS) {
        ClearTargetsPass& pass = *operations.addClearTargetsPass(atEnd);
        pass.setName(values.name);
        pass.setShouldClearColor(values.clearsColor);
        pass.setShouldClearDepth(values.clearsDepth);
        pass.setClearColor(values.color);
        pass.setClearDepth(values.depth);
        pass.setClearStencil(values.stencil);
        pass.setColorTargetIndex(values.colorTargetIndex);
    } else if (values.type == PASS_TYPE::COMPUTE) {
        ComputePass& pass = *operations.addComputePass(atEnd);
        pass.setName(values.name);
        pass.setShader(ShaderManager::getInstance()->handleOf(values.shader));
        pass.setX(values.x);
        pass.setY(values.y);
        pass.setZ(values.z);
    } else if (values.type == PASS_TYPE::RENDER_SCENE) {
        RenderScenePass& pass = *operations.addRenderScenePass(atEnd);
        const auto& cameras = CameraManager::getInstance();
        pass.setName(values.name);
        pass.setRenderQueue(RenderQueueManager::getInstance()->handleOf(values.renderQueue));
        pass.setTransparentPass(values.transparent);
        pass.setRenderCamera(cameras->handleOf(values.renderCamera));
        pass.setCullingCamera(cameras->handleOf(values.cullingCamera));
        pass.setLodCamera(cameras->handleOf(values.lodCamera));
        pass.setBlendState(BlendStateManager::getInstance()->handleOf(values.blendState));
        pass.setRasterState(RasterStateManager::getInstance()->handleOf(values.rasterState));
        pass.setDepthStencilState(
                DepthStencilStateManager::getInstance()->handleOf(values.depthStencilState));
        pass.setStencilReference(values.stencilReference);
    } else {
        operations.addPass(atEnd);
    }
}

void makeOperations(TargetOperations& operations, const OperationValues& values) {
    TextureManager& textures = *TextureManager::getInstance();
    operations.setName(values.name);
    for (const vlMemory::String& target : values.colorTargets) {
        if (target == DefaultNames::backBuffer) {
            operations.setToBackBuffer(operations.getColorTargetCount());
        } else {
            operations.addColorTarget({textures.handleOf(target), 0});
        }
    }
    if (values.depthTarget == DefaultNames::depthBuffer) {
        operations.setToChainDepthBuffer();
    } else {
        operations.setDepthTarget(textures.handleOf(values.depthTarget));
    }
    operations.setOverloadedViewport(ViewportManager::getInstance()->handleOf(values.viewport));
    for (const PassValues& pass : values.passes)
        makePass(operations, pass);
}

} // namespace

std::vector<NodeValues> compositorValues(const Compositor& compositor) {
    std::vector<NodeValues> nodes;
    for (std::uint32_t index = 0; const CompositorNode* node = compositor.getNode(index); ++index) {
        NodeValues& values = nodes.emplace_back();
        values.name = node->getName();
        values.active = node->getActive();
        for (std::uint32_t at = 0; const TargetOperations* operations = node->getOperations(at);
             ++at) {
            values.operations.push_back(operationValues(*operations));
        }
    }
    return nodes;
}

vlCommon::Result<> checkCompositorValues(const std::vector<NodeValues>& nodes) {
    for (std::size_t node = 0; node < nodes.size(); ++node) {
        for (std::size_t at = 0; at < nodes[node].operations.size(); ++at) {
            std::vector<vlMemory::String> targets = nodes[node].operations[at].colorTargets;
            const auto fault = [&](const vlMemory::String& what) {
                return vlCommon::fail(
                        fmt::format("nodes[{}].operations[{}]: 'colorTargets' {}", node, at, what));
            };
            if (targets.size() > TargetOperations::maxColorTargets) {
                return fault(fmt::format("has {} targets, where {} are possible",
                                         targets.size(),
                                         TargetOperations::maxColorTargets));
            }
            std::sort(targets.begin(), targets.end());
            const auto twice = std::adjacent_find(targets.begin(), targets.end());
            if (twice != targets.end()) return fault(fmt::format("has '{}' twice", *twice));
        }
    }
    return {};
}

std::unique_ptr<CompositorNode> makeCompositorNode(const NodeValues& values) {
    auto node = std::make_unique<CompositorNode>();
    node->setName(values.name);
    node->setActive(values.active);
    for (const OperationValues& operation : values.operations) {
        makeOperations(*node->addOperations(), operation);
    }
    return node;
}

} // namespace vlGraphics
