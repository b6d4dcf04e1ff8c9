#include "render/SceneDrawer.h"

#include "render/RendererGpu.h"

#include <cstring>

namespace vlGraphics::render {

namespace {

constexpr std::size_t matrixBytes = sizeof(vlMaths::Matrix);
static_assert(matrixBytes == 64);

} // namespace

SceneDrawer::SceneDrawer(PassRecorder& recorder, const RenderQueue& queue, const DrawList& list)
    : recorder_(recorder), queue_(queue), list_(list), commands_(recorder.commands()) {
}

void SceneDrawer::draw(const PassInputs& inputs, const ScenePassState& state) {
    ShaderBinder& binder = recorder_.renderer().binder;
    binder.begin(inputs, ShaderBinder::Use::draw);
    bindShaders();
    binder.settle(recorder_);
    recorder_.beginRendering();
    recorder_.setScissor(state.cutsToViewport);
    setDragged(state);
    passState_ = recorder_.renderer().pipelines->passStateId(state.fixed);
    const VkDeviceSize offset = recorder_.renderer().constantsOffset;
    vkCmdBindVertexBuffers(commands_, constantBinding, 1, &recorder_.renderer().constants, &offset);
    for (std::size_t run = 0; run < list_.runs.size();) {
        const Group group = nextGroup(run);
        if (group.instances > 0 && fillInstances(group)) drawGroup(group);
        run = group.endRun;
    }
}

void SceneDrawer::setDragged(const ScenePassState& state) const {
    const ScenePassState::Dragged& set = state.dragged;
    vkCmdSetDepthBias(commands_, set.depthBias, set.depthBiasClamp, set.slopeScaledDepthBias);
    if (recorder_.formats().stencil == VK_FORMAT_UNDEFINED) return;
    constexpr VkStencilFaceFlags both = VK_STENCIL_FACE_FRONT_AND_BACK;
    vkCmdSetStencilReference(commands_, both, state.stencilReference);
    vkCmdSetStencilCompareMask(commands_, both, set.stencilReadMask);
    vkCmdSetStencilWriteMask(commands_, both, set.stencilWriteMask);
}

void SceneDrawer::bindShaders() {
    shaders_.reserve(list_.runs.size());
    const Shader* last = nullptr;
    const BoundShader* bound = nullptr;
    for (const DrawRun& run : list_.runs) {
        if (run.shader != last) bound = &recorder_.renderer().binder.bind(*run.shader, recorder_);
        last = run.shader;
        const bool draws = bound->program != nullptr && run.mesh->gpu() != nullptr;
        shaders_.push_back(draws ? bound : nullptr);
    }
}

/// Runs whose entities' data has the same size share one piece of memory, so that draws only differ
/// by their first instance.
SceneDrawer::Group SceneDrawer::nextGroup(std::size_t first) const {
    Group group{first, first, 0};
    std::uint32_t stride = 0;
    for (; group.endRun < list_.runs.size(); ++group.endRun) {
        const BoundShader* shader = shaders_[group.endRun];
        if (shader == nullptr) continue;
        if (stride != 0 && shader->instanceStride != stride) break;
        stride = shader->instanceStride;
        group.instances += list_.runs[group.endRun].count;
    }
    return group;
}

bool SceneDrawer::fillInstances(const Group& group) {
    std::size_t run = group.firstRun;
    while (shaders_[run] == nullptr)
        ++run;
    const std::uint32_t stride = shaders_[run]->instanceStride;
    const auto slice =
            recorder_.frame().memory.allocate(VkDeviceSize{group.instances} * stride, 64);
    if (slice.data == nullptr) return false;
    vkCmdBindVertexBuffers(commands_, instanceBinding, 1, &slice.buffer, &slice.offset);
    std::byte* at = slice.data;
    for (; run < group.endRun; ++run) {
        if (shaders_[run] == nullptr) continue;
        fillEntities(*shaders_[run], list_.runs[run], at);
        at += std::size_t{list_.runs[run].count} * stride;
    }
    return true;
}

void SceneDrawer::fillEntities(const BoundShader& bound, const DrawRun& run, std::byte* at) const {
    const std::vector<vlMaths::Matrix>& worlds = queue_.arrays().worlds;
    const std::uint32_t* places = list_.order.data() + run.first;
    if (bound.onlyWorldMatrix) {
        for (std::uint32_t i = 0; i < run.count; ++i, at += matrixBytes)
            std::memcpy(at, worlds[places[i]].elements.data(), matrixBytes);
        return;
    }
    const InstanceLayout& layout =
            recorder_.renderer().pipelines->instanceLayout(bound.instanceLayout);
    for (std::uint32_t i = 0; i < run.count; ++i, at += layout.stride) {
        for (std::uint32_t slot = 0; slot < layout.slots.size(); ++slot) {
            const InstanceLayout::Slot& place = layout.slots[slot];
            const ShaderInstanceMemorySlot* source = run.shader->getInstanceMemorySlot(slot);
            const ShaderInstanceCustomSlot* custom =
                    source == nullptr ? nullptr : source->getCustom();
            if (custom == nullptr)
                std::memcpy(at + place.offset, worlds[places[i]].elements.data(), matrixBytes);
            else
                custom->fill(*queue_.entities()[places[i]], {at + place.offset, place.size});
        }
    }
}

void SceneDrawer::drawGroup(const Group& group) {
    std::uint32_t first = 0;
    std::uint64_t draws = 0;
    for (std::size_t run = group.firstRun; run < group.endRun; ++run) {
        const BoundShader* shader = shaders_[run];
        if (shader == nullptr) continue;
        const Mesh::Gpu& mesh = *list_.runs[run].mesh->gpu();
        const std::uint32_t count = list_.runs[run].count;
        if (bindFor(*shader, mesh)) {
            orderAccess(*shader);
            drawRun(mesh, count, first);
            ++draws;
        }
        first += count;
    }
    recorder_.renderer().counts.draws += draws;
    recorder_.renderer().counts.instances += group.instances;
}

/// A draw sees what earlier ones of the pass have written, at the price of a new rendering.
void SceneDrawer::orderAccess(const BoundShader& shader) {
    AccessOrder& order = recorder_.renderer().accessOrder;
    if (order.needsBarrier(shader.access)) {
        recorder_.endRendering();
        order.recordBarrier(commands_);
        recorder_.beginRendering();
    }
    order.note(shader.access);
}

bool SceneDrawer::bindFor(const BoundShader& shader, const Mesh::Gpu& mesh) {
    const PipelineKey key{shader.program->serial, mesh.layoutId, shader.instanceLayout, passState_};
    if (key != key_) {
        pipeline_ = recorder_.renderer().pipelines->get(key, *shader.program, mesh);
        key_ = key;
    }
    if (pipeline_ == VK_NULL_HANDLE) return false;
    if (pipeline_ != boundPipeline_) {
        vkCmdBindPipeline(commands_, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline_);
        boundPipeline_ = pipeline_;
    }
    if (&shader != boundShader_ && shader.setCount > 0)
        vkCmdBindDescriptorSets(commands_,
                                VK_PIPELINE_BIND_POINT_GRAPHICS,
                                shader.program->layout,
                                0,
                                shader.setCount,
                                shader.sets.data(),
                                0,
                                nullptr);
    boundShader_ = &shader;
    if (&mesh == boundMesh_) return true;
    const VkBuffer buffer = mesh.buffer.get();
    const VkDeviceSize start = 0;
    vkCmdBindVertexBuffers(commands_, meshBinding, 1, &buffer, &start);
    if (mesh.indexCount > 0)
        vkCmdBindIndexBuffer(commands_, buffer, mesh.indexOffset, VK_INDEX_TYPE_UINT32);
    boundMesh_ = &mesh;
    return true;
}

void SceneDrawer::drawRun(const Mesh::Gpu& mesh, std::uint32_t count, std::uint32_t first) {
    if (mesh.indexCount > 0)
        vkCmdDrawIndexed(commands_, mesh.indexCount, count, 0, 0, first);
    else
        vkCmdDraw(commands_, mesh.vertexCount, count, 0, first);
}

} // namespace vlGraphics::render
