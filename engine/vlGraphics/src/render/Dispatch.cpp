#include "render/Dispatch.h"

#include "render/RendererGpu.h"
#include "vulkan/Device.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

using Groups = std::array<std::uint32_t, 3>;

/// As many as the device takes along each axis, and as can be waited for together.
Groups boundedGroups(const ComputePass& pass) {
    Device& device = *Device::getInstance();
    Groups groups{pass.getX(), pass.getY(), pass.getZ()};
    std::uint64_t left = ComputePass::maxGroups;
    for (std::size_t axis = 0; axis < groups.size(); ++axis) {
        const std::uint64_t most =
                std::min<std::uint64_t>(device.limits().maxComputeWorkGroupCount[axis], left);
        if (groups[axis] > most) {
            device.logOnce(fmt::format("compute pass '{}': {} x {} x {} groups are more than can "
                                       "run: {} along {} are left",
                                       pass.getName(),
                                       pass.getX(),
                                       pass.getY(),
                                       pass.getZ(),
                                       most,
                                       "XYZ"[axis]));
            groups[axis] = static_cast<std::uint32_t>(most);
        }
        left /= groups[axis];
    }
    return groups;
}

} // namespace

void dispatch(const ComputePass& pass,
              const Shader& shader,
              const PassInputs& inputs,
              PassRecorder& recorder) {
    Renderer::Gpu& renderer = recorder.renderer();
    ShaderBinder& binder = renderer.binder;
    binder.begin(inputs, ShaderBinder::Use::dispatch);
    const BoundShader& bound = binder.bind(shader, recorder);
    if (bound.program == nullptr) return;
    const VkPipeline pipeline = renderer.pipelines->getCompute(*bound.program);
    if (pipeline == VK_NULL_HANDLE) return;
    binder.settle(recorder);
    // Where nothing had to be settled the targets may still be rendered to.
    recorder.endRendering();
    const VkCommandBuffer commands = recorder.commands();
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_COMPUTE, pipeline);
    if (bound.setCount > 0)
        vkCmdBindDescriptorSets(commands,
                                VK_PIPELINE_BIND_POINT_COMPUTE,
                                bound.program->layout,
                                0,
                                bound.setCount,
                                bound.sets.data(),
                                0,
                                nullptr);
    renderer.accessOrder.note(bound.access);
    const Groups groups = boundedGroups(pass);
    vkCmdDispatch(commands, groups[0], groups[1], groups[2]);
    ++renderer.counts.dispatches;
}

} // namespace vlGraphics::render
