#include "render/Pipelines.h"

#include "render/VertexInput.h"
#include "vulkan/Device.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

constexpr std::uint64_t framesUntilUnused = 1024;
constexpr std::uint64_t framesBetweenSweeps = 256;
/// Settings that are being dragged make a new state each frame; beyond this all begin anew.
constexpr std::size_t mostPassStates = 256;

/// The stages of a pipeline, in the order that Vulkan is given them.
std::vector<VkPipelineShaderStageCreateInfo> stagesOf(const Program::Gpu& program) {
    std::vector<VkPipelineShaderStageCreateInfo> stages;
    for (std::size_t i = 0; i < shaderTypeCount; ++i) {
        const auto type = static_cast<SHADER_TYPE>(i);
        const bool draws = type != SHADER_TYPE::COMPUTE && type != SHADER_TYPE::RAYTRACING;
        if (!draws || program.modules[i] == VK_NULL_HANDLE) continue;
        auto info = vulkan::vkInfo<VkPipelineShaderStageCreateInfo>(
                VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO);
        info.stage = vulkan::shaderStage(type);
        info.module = program.modules[i];
        info.pName = "main";
        stages.push_back(info);
    }
    return stages;
}

VkPipelineRasterizationStateCreateInfo rasterInfo(const RasterState::Settings& settings) {
    const VkPhysicalDeviceFeatures& features = Device::getInstance()->features();
    auto info = vulkan::vkInfo<VkPipelineRasterizationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO);
    info.depthClampEnable = !settings.depthClip && features.depthClamp == VK_TRUE;
    info.polygonMode = features.fillModeNonSolid == VK_TRUE ? vulkan::polygonMode(settings.fillMode)
                                                            : VK_POLYGON_MODE_FILL;
    info.cullMode = vulkan::cullMode(settings.cullMode);
    info.frontFace = settings.frontCounterClockwise ? VK_FRONT_FACE_COUNTER_CLOCKWISE
                                                    : VK_FRONT_FACE_CLOCKWISE;
    info.depthBiasEnable = settings.depthBias != 0 || settings.slopeScaledDepthBias != 0;
    info.depthBiasConstantFactor = static_cast<float>(settings.depthBias);
    info.depthBiasClamp = features.depthBiasClamp == VK_TRUE ? settings.depthBiasClamp : 0;
    info.depthBiasSlopeFactor = settings.slopeScaledDepthBias;
    info.lineWidth = 1;
    return info;
}

VkStencilOpState stencilInfo(const DepthStencilState::Settings& settings,
                             const DepthStencilState::Face& face) {
    return {vulkan::stencilOperation(face.fail),
            vulkan::stencilOperation(face.pass),
            vulkan::stencilOperation(face.depthFail),
            vulkan::compareOperation(face.function),
            settings.stencilReadMask,
            settings.stencilWriteMask,
            0};
}

VkPipelineDepthStencilStateCreateInfo depthInfo(const PassState& state) {
    const DepthStencilState::Settings& settings = state.depthStencil;
    auto info = vulkan::vkInfo<VkPipelineDepthStencilStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO);
    const bool hasDepth = state.formats.depth != VK_FORMAT_UNDEFINED;
    info.depthTestEnable = settings.depthEnabled && hasDepth;
    info.depthWriteEnable =
            settings.depthEnabled && hasDepth && settings.depthWriteMask == DEPTH_WRITE_MASK::ALL;
    info.depthCompareOp = vulkan::compareOperation(settings.depthFunction);
    // Depth targets are D32, which has no stencil: the test passes then, as without a stencil
    // buffer.
    info.stencilTestEnable = VK_FALSE;
    info.front = stencilInfo(settings, settings.front);
    info.back = stencilInfo(settings, settings.back);
    info.maxDepthBounds = 1;
    return info;
}

bool canBlend(VkFormat format) {
    VkFormatProperties properties{};
    vkGetPhysicalDeviceFormatProperties(Device::getInstance()->physical(), format, &properties);
    return (properties.optimalTilingFeatures & VK_FORMAT_FEATURE_COLOR_ATTACHMENT_BLEND_BIT) != 0;
}

bool readsSecondSource(const BlendState::Target& target) {
    const auto second = [](BLEND factor) {
        return factor >= BLEND::SRC1_COLOR && factor <= BLEND::INV_SRC1_ALPHA;
    };
    return second(target.src) || second(target.dest) || second(target.srcAlpha) ||
           second(target.destAlpha);
}

VkPipelineColorBlendAttachmentState
blendInfo(const BlendState::Target& target, VkFormat format, bool written) {
    VkPipelineColorBlendAttachmentState info{};
    const bool sources =
            !readsSecondSource(target) || Device::getInstance()->features().dualSrcBlend == VK_TRUE;
    info.blendEnable = target.enabled && sources && canBlend(format);
    info.srcColorBlendFactor = vulkan::blendFactor(target.src);
    info.dstColorBlendFactor = vulkan::blendFactor(target.dest);
    info.colorBlendOp = vulkan::blendOperation(target.op);
    info.srcAlphaBlendFactor = vulkan::blendFactor(target.srcAlpha);
    info.dstAlphaBlendFactor = vulkan::blendFactor(target.destAlpha);
    info.alphaBlendOp = vulkan::blendOperation(target.opAlpha);
    // An output that the program does not write has no value: the target keeps its own.
    info.colorWriteMask = written ? vulkan::colorMask(target.writeMask) : 0;
    if (info.blendEnable == VK_FALSE) {
        info.srcColorBlendFactor = info.srcAlphaBlendFactor = VK_BLEND_FACTOR_ONE;
        info.dstColorBlendFactor = info.dstAlphaBlendFactor = VK_BLEND_FACTOR_ZERO;
    }
    return info;
}

std::vector<VkPipelineColorBlendAttachmentState> blendInfos(const PassState& state,
                                                            const Program::Gpu& program) {
    std::vector<VkPipelineColorBlendAttachmentState> infos;
    const bool independent = Device::getInstance()->features().independentBlend == VK_TRUE;
    for (std::uint32_t i = 0; i < state.formats.colorCount; ++i) {
        const VkFormat format = state.formats.colors[i];
        const bool written =
                format != VK_FORMAT_UNDEFINED && i < program.reflection.colorTargetCount;
        infos.push_back(i > 0 && !independent ? infos.front()
                                              : blendInfo(state.blend[i], format, written));
    }
    return infos;
}

VkPipelineRenderingCreateInfo renderingInfo(const TargetFormats& formats) {
    auto info = vulkan::vkInfo<VkPipelineRenderingCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO);
    info.colorAttachmentCount = formats.colorCount;
    info.pColorAttachmentFormats = formats.colors.data();
    info.depthAttachmentFormat = formats.depth;
    return info;
}

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

} // namespace

std::size_t Pipelines::KeyHash::operator()(const PipelineKey& key) const {
    std::uint64_t hash = key.program;
    for (const std::uint32_t part : {key.meshLayout, key.instanceLayout, key.passState})
        hash = (hash ^ part) * 0x9E3779B97F4A7C15ULL;
    return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

Pipelines::~Pipelines() {
    eraseIf([](const auto&) { return true; });
}

template <class Condition> void Pipelines::eraseIf(Condition condition) {
    std::erase_if(pipelines_, [&condition](const auto& item) {
        if (!condition(item)) return false;
        Device::getInstance()->retire(item.second.pipeline);
        return true;
    });
}

std::uint32_t Pipelines::passStateId(const PassState& state) {
    // The newest first: states of recent frames are the last that were made.
    for (std::size_t i = passStates_.size(); i-- > 0;)
        if (passStates_[i] == state) return static_cast<std::uint32_t>(i);
    passStates_.push_back(state);
    return static_cast<std::uint32_t>(passStates_.size() - 1);
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
    const PassState& state = passStates_[key.passState];
    const auto stages = stagesOf(program);
    const VertexInput input(program, mesh, instanceLayouts_[key.instanceLayout]);
    auto vertices = vulkan::vkInfo<VkPipelineVertexInputStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO);
    vertices.vertexBindingDescriptionCount = static_cast<std::uint32_t>(input.bindings.size());
    vertices.pVertexBindingDescriptions = input.bindings.data();
    vertices.vertexAttributeDescriptionCount = static_cast<std::uint32_t>(input.attributes.size());
    vertices.pVertexAttributeDescriptions = input.attributes.data();
    auto assembly = vulkan::vkInfo<VkPipelineInputAssemblyStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO);
    const bool tessellates =
            program.modules[static_cast<std::size_t>(SHADER_TYPE::HULL)] != VK_NULL_HANDLE;
    assembly.topology =
            tessellates ? VK_PRIMITIVE_TOPOLOGY_PATCH_LIST : vulkan::topology(mesh.topology);
    auto patches = vulkan::vkInfo<VkPipelineTessellationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_TESSELLATION_STATE_CREATE_INFO);
    patches.patchControlPoints = 3;
    auto viewport = vulkan::vkInfo<VkPipelineViewportStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO);
    viewport.viewportCount = 1;
    viewport.scissorCount = 1;
    const auto raster = rasterInfo(state.raster);
    auto samples = vulkan::vkInfo<VkPipelineMultisampleStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO);
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    samples.alphaToCoverageEnable = state.alphaToCoverage;
    const auto depth = depthInfo(state);
    const auto attachments = blendInfos(state, program);
    auto blend = vulkan::vkInfo<VkPipelineColorBlendStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO);
    blend.attachmentCount = static_cast<std::uint32_t>(attachments.size());
    blend.pAttachments = attachments.data();
    std::fill_n(blend.blendConstants, 4, 1.0F);
    constexpr std::array dynamics{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    auto dynamic = vulkan::vkInfo<VkPipelineDynamicStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO);
    dynamic.dynamicStateCount = static_cast<std::uint32_t>(dynamics.size());
    dynamic.pDynamicStates = dynamics.data();
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
    ++made_;
    if (result == VK_SUCCESS) return pipeline;
    vulkan::logLine(fmt::format("Some entities are not drawn, their pipeline could not be made: {}",
                                vulkan::resultText(result)));
    return VK_NULL_HANDLE;
}

void Pipelines::forget(std::uint64_t program) {
    eraseIf([program](const auto& item) { return item.first.program == program; });
}

void Pipelines::beginFrame() {
    ++frame_;
    if (passStates_.size() > mostPassStates) {
        eraseIf([](const auto&) { return true; });
        passStates_.clear();
    }
    if (frame_ % framesBetweenSweeps != 0) return;
    eraseIf([this](const auto& item) {
        return item.second.lastFrame + framesUntilUnused < frame_;
    });
}

} // namespace vlGraphics::render
