#include "render/Pipelines.h"

#include "render/PassStates.h"
#include "render/PipelineInfos.h"
#include "render/VertexInput.h"
#include "vulkan/Device.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

constexpr std::uint64_t framesUntilUnused = 1024;
constexpr std::uint64_t framesBetweenSweeps = 256;
/// A person may try one setting after the other; beyond a few, those not used of late go, and
/// beyond most all that are not in use.
constexpr std::size_t fewPassStates = 32;
constexpr std::size_t mostPassStates = 256;
constexpr std::uint64_t framesUntilOld = 64;

VkPipelineShaderStageCreateInfo stageInfo(const Program::Gpu& program, SHADER_TYPE type) {
    auto info = vulkan::vkInfo<VkPipelineShaderStageCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO);
    info.stage = vulkan::shaderStage(type);
    info.module = program.modules[static_cast<std::size_t>(type)];
    info.pName = "main";
    return info;
}

/// The stages that draw, in the order that Vulkan is given them.
std::vector<VkPipelineShaderStageCreateInfo> stagesOf(const Program::Gpu& program) {
    std::vector<VkPipelineShaderStageCreateInfo> stages;
    for (std::size_t i = 0; i < shaderTypeCount; ++i) {
        const auto type = static_cast<SHADER_TYPE>(i);
        const bool draws = type != SHADER_TYPE::COMPUTE && type != SHADER_TYPE::RAYTRACING;
        if (draws && program.has(type)) stages.push_back(stageInfo(program, type));
    }
    return stages;
}

/** A stage in another form, as long as the pipeline is being made. */
class StageModule {
public:
    explicit StageModule(const std::vector<std::uint32_t>& spirv) {
        auto info = vulkan::vkInfo<VkShaderModuleCreateInfo>(
                VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO);
        info.codeSize = spirv.size() * sizeof(std::uint32_t);
        info.pCode = spirv.data();
        const VkDevice device = Device::getInstance()->get();
        if (vkCreateShaderModule(device, &info, nullptr, &module_) != VK_SUCCESS)
            module_ = VK_NULL_HANDLE;
    }
    StageModule(const StageModule&) = delete;
    StageModule& operator=(const StageModule&) = delete;
    ~StageModule() { vkDestroyShaderModule(Device::getInstance()->get(), module_, nullptr); }

    /// False, with nothing changed, where it could not be made.
    bool replace(std::vector<VkPipelineShaderStageCreateInfo>& stages,
                 VkShaderStageFlagBits which) const {
        if (module_ == VK_NULL_HANDLE) return false;
        for (VkPipelineShaderStageCreateInfo& stage : stages)
            if (stage.stage == which) stage.module = module_;
        return true;
    }

private:
    VkShaderModule module_ = VK_NULL_HANDLE;
};

InstanceLayout layoutOf(const Shader& shader) {
    InstanceLayout layout;
    bool hasWorld = false;
    for (std::uint32_t i = 0; i < shader.getInstanceMemorySlotCount(); ++i) {
        const ShaderInstanceMemorySlot& slot = *shader.getInstanceMemorySlot(i);
        const std::uint32_t size = (slot.getByteSize() + 15) / 16 * 16;
        layout.slots.push_back({vlMemory::String(slot.getSemantic()), layout.stride, size});
        layout.stride += size;
        hasWorld |= slot.getType() == INSTANCE_SLOT_TYPE::WORLD_MATRIX;
    }
    // A program that places its entities does so whether or not its shader lists the matrix.
    if (!hasWorld) {
        layout.slots.push_back({"WORLD_MATRIX", layout.stride, 64});
        layout.stride += 64;
    }
    return layout;
}

/// Brings the module that SRC1 factors need; where the program has no second colour, the factors
/// are replaced.
std::unique_ptr<StageModule>
takeSecondSource(PassState& state,
                 const Program::Gpu& program,
                 std::vector<VkPipelineShaderStageCreateInfo>& stages) {
    if (!readsSecondSource(state.blend[0])) return nullptr;
    if (!program.secondSourcePixel.empty()) {
        auto module = std::make_unique<StageModule>(program.secondSourcePixel);
        if (module->replace(stages, VK_SHADER_STAGE_FRAGMENT_BIT)) return module;
    } else {
        Device::getInstance()->logOnce(
                fmt::format("{} '{}': a program that it is used with writes no second colour "
                            "(SV_TARGET1) for the factors SRC1: the first takes its place",
                            BlendState::kindName,
                            state.blendState.name));
    }
    state.blend[0] = withoutSecondSource(state.blend[0]);
    return nullptr;
}

std::unique_ptr<StageModule> takeEarlyTests(const PassState& state,
                                            const Program::Gpu& program,
                                            std::vector<VkPipelineShaderStageCreateInfo>& stages) {
    const bool tests = state.depthStencil.depthEnabled || state.depthStencil.stencilEnabled;
    // Coverage comes from the alpha that the stage gives: what has none writes no depth either.
    if (program.earlyPixel.empty() || !tests || state.alphaToCoverage) return nullptr;
    auto module = std::make_unique<StageModule>(program.earlyPixel);
    module->replace(stages, VK_SHADER_STAGE_FRAGMENT_BIT);
    return module;
}

std::unique_ptr<StageModule> takePointSize(const Program::Gpu& program,
                                           const Mesh::Gpu& mesh,
                                           std::vector<VkPipelineShaderStageCreateInfo>& stages) {
    if (mesh.topology != PRIMITIVE_TOPOLOGY::POINT_LIST || program.pointVertex.empty())
        return nullptr;
    auto module = std::make_unique<StageModule>(program.pointVertex);
    module->replace(stages, VK_SHADER_STAGE_VERTEX_BIT);
    return module;
}

template <class Map, class Condition> void retireIf(Map& pipelines, Condition condition) {
    std::erase_if(pipelines, [&condition](const auto& item) {
        if (!condition(item)) return false;
        Device::getInstance()->retire(item.second.pipeline);
        return true;
    });
}

} // namespace

std::size_t Pipelines::KeyHash::operator()(const PipelineKey& key) const {
    std::uint64_t hash = key.program;
    for (const std::uint32_t part : {key.meshLayout, key.instanceLayout, key.passState})
        hash = (hash ^ part) * 0x9E3779B97F4A7C15ULL;
    return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

Pipelines::~Pipelines() {
    eraseIf([](const auto&) { return true; });
    eraseComputesIf([](const auto&) { return true; });
}

template <class Condition> void Pipelines::eraseIf(Condition condition) {
    retireIf(pipelines_, condition);
}

template <class Condition> void Pipelines::eraseComputesIf(Condition condition) {
    retireIf(computes_, condition);
}

std::uint32_t Pipelines::passStateId(const PassState& state) {
    auto place = passStates_.end();
    for (auto entry = passStates_.begin(); entry != passStates_.end(); ++entry) {
        if (!entry->used) {
            place = entry;
        } else if (entry->state == state) {
            entry->lastFrame = frame_;
            return static_cast<std::uint32_t>(entry - passStates_.begin());
        }
    }
    if (place == passStates_.end()) place = passStates_.emplace(place);
    *place = {state, frame_, true};
    ++statesInUse_;
    return static_cast<std::uint32_t>(place - passStates_.begin());
}

void Pipelines::dropStates(std::uint64_t unusedFrames) {
    for (StateEntry& entry : passStates_) {
        if (!entry.used || entry.lastFrame + unusedFrames >= frame_) continue;
        entry.used = false;
        --statesInUse_;
    }
    eraseIf([this](const auto& item) { return !passStates_[item.first.passState].used; });
}

std::uint32_t Pipelines::instanceLayoutId(const Shader& shader) {
    InstanceLayout layout = layoutOf(shader);
    const auto found = std::find(instanceLayouts_.begin(), instanceLayouts_.end(), layout);
    const auto index = static_cast<std::uint32_t>(found - instanceLayouts_.begin());
    if (found == instanceLayouts_.end()) instanceLayouts_.push_back(std::move(layout));
    return index;
}

VkPipeline
Pipelines::get(const PipelineKey& key, const Program::Gpu& program, const Mesh::Gpu& mesh) {
    auto found = pipelines_.find(key);
    if (found == pipelines_.end())
        found = pipelines_.emplace(key, Entry{make(key, program, mesh), frame_}).first;
    found->second.lastFrame = frame_;
    return found->second.pipeline;
}

VkPipeline
Pipelines::make(const PipelineKey& key, const Program::Gpu& program, const Mesh::Gpu& mesh) {
    PassState state = passStates_[key.passState].state;
    const auto topology = vulkan::topologyFor(program.primitives, mesh.topology);
    if (!topology) {
        vulkan::logLine("Some entities are not drawn, their geometry stage takes other primitives "
                        "than it is given");
        return VK_NULL_HANDLE;
    }
    auto stages = stagesOf(program);
    const auto secondSource = takeSecondSource(state, program, stages);
    const auto early = secondSource ? nullptr : takeEarlyTests(state, program, stages);
    const auto pointSize = takePointSize(program, mesh, stages);
    const VertexInput input(program, mesh, instanceLayouts_[key.instanceLayout]);
    auto vertices = vulkan::vkInfo<VkPipelineVertexInputStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO);
    vertices.vertexBindingDescriptionCount = static_cast<std::uint32_t>(input.bindings.size());
    vertices.pVertexBindingDescriptions = input.bindings.data();
    vertices.vertexAttributeDescriptionCount = static_cast<std::uint32_t>(input.attributes.size());
    vertices.pVertexAttributeDescriptions = input.attributes.data();
    auto assembly = vulkan::vkInfo<VkPipelineInputAssemblyStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO);
    assembly.topology = *topology;
    const bool tessellates = *topology == VK_PRIMITIVE_TOPOLOGY_PATCH_LIST;
    auto patches = vulkan::vkInfo<VkPipelineTessellationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_TESSELLATION_STATE_CREATE_INFO);
    patches.patchControlPoints = program.primitives.patchPoints > 0
                                         ? program.primitives.patchPoints
                                         : vulkan::pointsOf(mesh.topology);
    auto viewport = vulkan::vkInfo<VkPipelineViewportStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO);
    viewport.viewportCount = 1;
    viewport.scissorCount = 1;
    auto raster = rasterInfo(state.raster);
    const auto smoothLines = smoothLineInfo();
    if (state.raster.lineAntiAliasing) raster.pNext = &smoothLines;
    auto samples = vulkan::vkInfo<VkPipelineMultisampleStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO);
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    // Without alpha there is nothing to take the coverage from.
    samples.alphaToCoverageEnable = state.alphaToCoverage && program.reflection.writesAlpha;
    const auto depth = depthInfo(state);
    const auto attachments = blendInfos(state, program);
    auto blend = vulkan::vkInfo<VkPipelineColorBlendStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO);
    blend.attachmentCount = static_cast<std::uint32_t>(attachments.size());
    blend.pAttachments = attachments.data();
    std::fill_n(blend.blendConstants, 4, 1.0F);
    const auto dynamic = dynamicInfo(state.formats);
    const auto rendering = renderingInfo(state.formats);

    auto info = vulkan::vkInfo<VkGraphicsPipelineCreateInfo>(
            VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO);
    info.pNext = &rendering;
    info.stageCount = static_cast<std::uint32_t>(stages.size());
    info.pStages = stages.data();
    info.pVertexInputState = &vertices;
    info.pInputAssemblyState = &assembly;
    info.pTessellationState = tessellates ? &patches : nullptr;
    info.pViewportState = &viewport;
    info.pRasterizationState = &raster;
    info.pMultisampleState = &samples;
    info.pDepthStencilState = &depth;
    info.pColorBlendState = &blend;
    info.pDynamicState = &dynamic;
    info.layout = program.layout;
    Device& device = *Device::getInstance();
    VkPipeline pipeline = VK_NULL_HANDLE;
    const VkResult result = device.note(
            vkCreateGraphicsPipelines(device.get(), cache_.get(), 1, &info, nullptr, &pipeline));
    return finish(result, pipeline, "Some entities are not drawn");
}

VkPipeline Pipelines::finish(VkResult result, VkPipeline pipeline, const char* what) {
    ++made_;
    if (result == VK_SUCCESS) return pipeline;
    vulkan::logLine(fmt::format(
            "{}, their pipeline could not be made: {}", what, vulkan::resultText(result)));
    return VK_NULL_HANDLE;
}

VkPipeline Pipelines::getCompute(const Program::Gpu& program) {
    auto found = computes_.find(program.serial);
    if (found == computes_.end())
        found = computes_.emplace(program.serial, Entry{makeCompute(program), frame_}).first;
    found->second.lastFrame = frame_;
    return found->second.pipeline;
}

VkPipeline Pipelines::makeCompute(const Program::Gpu& program) {
    auto info = vulkan::vkInfo<VkComputePipelineCreateInfo>(
            VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO);
    info.stage = stageInfo(program, SHADER_TYPE::COMPUTE);
    info.layout = program.layout;
    Device& device = *Device::getInstance();
    VkPipeline pipeline = VK_NULL_HANDLE;
    const VkResult result = device.note(
            vkCreateComputePipelines(device.get(), cache_.get(), 1, &info, nullptr, &pipeline));
    return finish(result, pipeline, "Some compute passes do nothing");
}

void Pipelines::forget(std::uint64_t program) {
    eraseIf([program](const auto& item) { return item.first.program == program; });
    eraseComputesIf([program](const auto& item) { return item.first == program; });
}

void Pipelines::beginFrame() {
    ++frame_;
    if (statesInUse_ > fewPassStates) dropStates(framesUntilOld);
    if (statesInUse_ > mostPassStates) dropStates(0);
    if (frame_ % framesBetweenSweeps != 0) return;
    const auto isUnused = [this](const auto& item) {
        return item.second.lastFrame + framesUntilUnused < frame_;
    };
    eraseIf(isUnused);
    eraseComputesIf(isUnused);
}

} // namespace vlGraphics::render
