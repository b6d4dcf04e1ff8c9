#include "render/PipelineInfos.h"

#include "vulkan/Device.h"
#include "vulkan/Translate.h"

#include <algorithm>

namespace vlGraphics::render {

using vulkan::Device;

namespace {

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

bool canBlend(VkFormat format) {
    VkFormatProperties properties{};
    vkGetPhysicalDeviceFormatProperties(Device::getInstance()->physical(), format, &properties);
    return (properties.optimalTilingFeatures & VK_FORMAT_FEATURE_COLOR_ATTACHMENT_BLEND_BIT) != 0;
}

VkPipelineColorBlendAttachmentState
blendInfo(const BlendState::Target& target, VkFormat format, bool written) {
    VkPipelineColorBlendAttachmentState info{};
    info.blendEnable = target.enabled && format != VK_FORMAT_UNDEFINED && canBlend(format);
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

} // namespace

VkPipelineRasterizationStateCreateInfo rasterInfo(const RasterState::Settings& settings) {
    auto info = vulkan::vkInfo<VkPipelineRasterizationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO);
    info.depthClampEnable = !settings.depthClip;
    info.polygonMode = vulkan::polygonMode(settings.fillMode);
    info.cullMode = vulkan::cullMode(settings.cullMode);
    info.frontFace = settings.frontCounterClockwise ? VK_FRONT_FACE_COUNTER_CLOCKWISE
                                                    : VK_FRONT_FACE_CLOCKWISE;
    info.depthBiasEnable = settings.depthBias != 0;
    info.lineWidth = 1;
    return info;
}

VkPipelineRasterizationLineStateCreateInfoEXT smoothLineInfo() {
    auto info = vulkan::vkInfo<VkPipelineRasterizationLineStateCreateInfoEXT>(
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_LINE_STATE_CREATE_INFO_EXT);
    info.lineRasterizationMode = VK_LINE_RASTERIZATION_MODE_RECTANGULAR_SMOOTH_EXT;
    info.lineStippleFactor = 1;
    return info;
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
    info.stencilTestEnable = settings.stencilEnabled;
    info.front = stencilInfo(settings, settings.front);
    info.back = stencilInfo(settings, settings.back);
    info.maxDepthBounds = 1;
    return info;
}

std::vector<VkPipelineColorBlendAttachmentState> blendInfos(const PassState& state,
                                                            const Program::Gpu& program) {
    std::vector<VkPipelineColorBlendAttachmentState> infos;
    for (std::uint32_t i = 0; i < state.formats.colorCount; ++i) {
        const VkFormat format = state.formats.colors[i];
        const bool written = format != VK_FORMAT_UNDEFINED &&
                             (program.reflection.colorTargetMask >> i & 1U) != 0;
        infos.push_back(blendInfo(state.blend[i], format, written));
    }
    if (Device::getInstance()->features().independentBlend == VK_TRUE || infos.empty())
        return infos;
    // All have to be alike: blended only where all can be, written where any is.
    VkPipelineColorBlendAttachmentState all = infos.front();
    for (const VkPipelineColorBlendAttachmentState& info : infos) {
        if (info.blendEnable == VK_FALSE) all = info;
        all.colorWriteMask |= info.colorWriteMask;
    }
    std::fill(infos.begin(), infos.end(), all);
    return infos;
}

VkPipelineDynamicStateCreateInfo dynamicInfo(const TargetFormats& formats) {
    static constexpr std::array dynamics{VK_DYNAMIC_STATE_VIEWPORT,
                                         VK_DYNAMIC_STATE_SCISSOR,
                                         VK_DYNAMIC_STATE_DEPTH_BIAS,
                                         VK_DYNAMIC_STATE_STENCIL_REFERENCE,
                                         VK_DYNAMIC_STATE_STENCIL_COMPARE_MASK,
                                         VK_DYNAMIC_STATE_STENCIL_WRITE_MASK};
    constexpr std::uint32_t ofStencil = 3;
    auto info = vulkan::vkInfo<VkPipelineDynamicStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO);
    const bool hasStencil = formats.stencil != VK_FORMAT_UNDEFINED;
    info.dynamicStateCount =
            static_cast<std::uint32_t>(dynamics.size()) - (hasStencil ? 0 : ofStencil);
    info.pDynamicStates = dynamics.data();
    return info;
}

VkPipelineRenderingCreateInfo renderingInfo(const TargetFormats& formats) {
    auto info = vulkan::vkInfo<VkPipelineRenderingCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO);
    info.colorAttachmentCount = formats.colorCount;
    info.pColorAttachmentFormats = formats.colors.data();
    info.depthAttachmentFormat = formats.depth;
    info.stencilAttachmentFormat = formats.stencil;
    return info;
}

} // namespace vlGraphics::render
