#include "render/ShaderBinder.h"

#include "programs/BindingModel.h"
#include "render/DescriptorWriter.h"
#include "render/PassRecorder.h"
#include "render/RendererGpu.h"
#include "vulkan/Device.h"

#include <algorithm>

namespace vlGraphics::render {

using vulkan::Device;
using vulkan::GpuImage;
using vulkan::ImageUse;

void ShaderBinder::begin(const PassInputs& inputs, Use use) {
    inputs_ = inputs;
    use_ = use;
    bound_.clear();
    read_.clear();
    written_.clear();
    access_.clear();
    usesScratch_ = false;
}

const BoundShader& ShaderBinder::bind(const Shader& shader, PassRecorder& recorder) {
    const auto found = bound_.find(&shader);
    if (found != bound_.end()) return found->second;
    return bound_.emplace(&shader, make(shader, recorder)).first->second;
}

BoundShader ShaderBinder::make(const Shader& shader, PassRecorder& recorder) {
    BoundShader bound;
    const bool usable = use_ == Use::draw ? shader.isUsableScene() : shader.isUsableCompute();
    if (!usable) return bound;
    const Program& program = *shader.getProgram();
    bound.program = program.gpu();
    if (use_ == Use::draw) {
        Pipelines& pipelines = *recorder.renderer().pipelines;
        bound.instanceLayout = pipelines.instanceLayoutId(shader);
        const InstanceLayout& layout = pipelines.instanceLayout(bound.instanceLayout);
        bound.instanceStride = layout.stride;
        bound.onlyWorldMatrix =
                layout.slots.size() == 1 && layout.slots[0].semantic == "WORLD_MATRIX";
    }
    if (writeSets(shader, recorder, bound))
        recorder.renderer().loops.use(program);
    else
        bound.program = nullptr;
    return bound;
}

bool ShaderBinder::writeSets(const Shader& shader, PassRecorder& recorder, BoundShader& bound) {
    const Program::Gpu& program = *bound.program;
    DescriptorWriter writer(*this, bound, shader, recorder);
    for (const Program::Gpu::Set& set : program.sets) {
        const VkDescriptorSet made = recorder.frame().descriptors.allocate(set.layout);
        if (made == VK_NULL_HANDLE) return false;
        bound.sets[bound.setCount++] = made;
        for (const Program::Gpu::Binding& binding : set.bindings)
            if (!writer.add(made, binding, program.reflection.resources[binding.resource]))
                return false;
    }
    if (program.tellingStages != 0) writer.addLoopWords(bound.sets[BindingModel::loopSet], program);
    writer.write();
    access_.insert(access_.end(), bound.access.begin(), bound.access.end());
    return true;
}

void ShaderBinder::settle(PassRecorder& recorder) {
    AccessOrder& order = recorder.renderer().accessOrder;
    // Zeroing the scratch memory is a write of its own.
    const bool orders = usesScratch_ || order.needsBarrier(access_);
    if (!read_.empty() || !written_.empty() || orders) recorder.endRendering();
    if (std::any_of(read_.begin(), read_.end(), [&](const GpuImage* image) {
            return recorder.isTarget(*image);
        }))
        recorder.finishClears();
    const VkCommandBuffer commands = recorder.commands();
    for (GpuImage* image : read_)
        image->become(commands, ImageUse::shaderRead);
    for (GpuImage* image : written_)
        image->become(commands, ImageUse::shaderWrite);
    if (orders) order.recordBarrier(commands);
    if (!usesScratch_) return;
    const VkBuffer scratch = recorder.renderer().fallbacks.scratch().get();
    vkCmdFillBuffer(commands, scratch, 0, VK_WHOLE_SIZE, 0);
    order.recordBarrier(commands);
}

} // namespace vlGraphics::render
