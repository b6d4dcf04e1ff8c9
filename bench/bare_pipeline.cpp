#include "bare_pipeline.h"

#include <array>
#include <vector>

namespace bench {

namespace {

constexpr std::uint32_t firstMatrixLocation = 8;

VkDescriptorType typeOf(BareBinding::Kind kind) {
    switch (kind) {
    case BareBinding::Kind::texture:
        return VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE;
    case BareBinding::Kind::sampler:
        return VK_DESCRIPTOR_TYPE_SAMPLER;
    case BareBinding::Kind::constants:
        break;
    }
    return VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
}

struct VertexLayout {
    VertexLayout(std::uint32_t vertexStride, std::span<const BareAttribute> own)
        : bindings{VkVertexInputBindingDescription{0, vertexStride, VK_VERTEX_INPUT_RATE_VERTEX},
                   VkVertexInputBindingDescription{
                           1, sizeof(vlMaths::Matrix), VK_VERTEX_INPUT_RATE_INSTANCE}} {
        for (const BareAttribute& one : own)
            attributes.push_back(
                    {one.location,
                     0,
                     one.floats == 2 ? VK_FORMAT_R32G32_SFLOAT : VK_FORMAT_R32G32B32_SFLOAT,
                     one.offset});
        constexpr std::uint32_t row = 4 * sizeof(float);
        for (std::uint32_t i = 0; i < 4; ++i)
            attributes.push_back(
                    {firstMatrixLocation + i, 1, VK_FORMAT_R32G32B32A32_SFLOAT, i * row});
        info.vertexBindingDescriptionCount = static_cast<std::uint32_t>(bindings.size());
        info.pVertexBindingDescriptions = bindings.data();
        info.vertexAttributeDescriptionCount = static_cast<std::uint32_t>(attributes.size());
        info.pVertexAttributeDescriptions = attributes.data();
    }
    std::array<VkVertexInputBindingDescription, 2> bindings;
    std::vector<VkVertexInputAttributeDescription> attributes;
    VkPipelineVertexInputStateCreateInfo info = makeInfo<VkPipelineVertexInputStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO);
};

} // namespace

BarePipeline::BarePipeline(const BareDevice& device,
                           const BareProgram& program,
                           const BareInputs& inputs,
                           std::uint32_t vertexStride,
                           std::span<const BareAttribute> attributes)
    : device_(device) {
    createSet(program);
    fillSet(program, inputs);
    createPipeline(program, vertexStride, attributes);
}

BarePipeline::~BarePipeline() {
    const VolkDeviceTable& vk = device_.vk();
    vk.vkDestroyPipeline(device_.get(), pipeline_, nullptr);
    vk.vkDestroyPipelineLayout(device_.get(), layout_, nullptr);
    vk.vkDestroyDescriptorPool(device_.get(), setPool_, nullptr);
    vk.vkDestroyDescriptorSetLayout(device_.get(), setLayout_, nullptr);
}

void BarePipeline::bind(VkCommandBuffer commands) const {
    const VolkDeviceTable& vk = device_.vk();
    vk.vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline_);
    vk.vkCmdBindDescriptorSets(
            commands, VK_PIPELINE_BIND_POINT_GRAPHICS, layout_, 0, 1, &set_, 0, nullptr);
}

void BarePipeline::createSet(const BareProgram& program) {
    const VolkDeviceTable& vk = device_.vk();
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    std::vector<VkDescriptorPoolSize> sizes;
    for (const BareBinding& one : program.bindings) {
        const VkDescriptorType type = typeOf(one.kind);
        bindings.push_back({one.number, type, 1, VK_SHADER_STAGE_ALL_GRAPHICS, nullptr});
        sizes.push_back({type, 1});
    }
    auto layout = makeInfo<VkDescriptorSetLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO);
    layout.bindingCount = static_cast<std::uint32_t>(bindings.size());
    layout.pBindings = bindings.data();
    expectBare(vk.vkCreateDescriptorSetLayout(device_.get(), &layout, nullptr, &setLayout_),
               "vkCreateDescriptorSetLayout");
    auto pool = makeInfo<VkDescriptorPoolCreateInfo>(VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO);
    pool.maxSets = 1;
    pool.poolSizeCount = static_cast<std::uint32_t>(sizes.size());
    pool.pPoolSizes = sizes.data();
    expectBare(vk.vkCreateDescriptorPool(device_.get(), &pool, nullptr, &setPool_),
               "vkCreateDescriptorPool");
    auto info =
            makeInfo<VkDescriptorSetAllocateInfo>(VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO);
    info.descriptorPool = setPool_;
    info.descriptorSetCount = 1;
    info.pSetLayouts = &setLayout_;
    expectBare(vk.vkAllocateDescriptorSets(device_.get(), &info, &set_),
               "vkAllocateDescriptorSets");
    auto pipeline =
            makeInfo<VkPipelineLayoutCreateInfo>(VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO);
    pipeline.setLayoutCount = 1;
    pipeline.pSetLayouts = &setLayout_;
    expectBare(vk.vkCreatePipelineLayout(device_.get(), &pipeline, nullptr, &layout_),
               "vkCreatePipelineLayout");
}

void BarePipeline::fillSet(const BareProgram& program, const BareInputs& inputs) const {
    for (const BareBinding& one : program.bindings) {
        const VkDescriptorBufferInfo buffer{
                inputs.constants.buffer, one.number * inputs.range, inputs.range};
        const VkDescriptorImageInfo image{
                inputs.sampler, inputs.texture, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL};
        auto write = makeInfo<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
        write.dstSet = set_;
        write.dstBinding = one.number;
        write.descriptorCount = 1;
        write.descriptorType = typeOf(one.kind);
        write.pBufferInfo = &buffer;
        write.pImageInfo = &image;
        device_.vk().vkUpdateDescriptorSets(device_.get(), 1, &write, 0, nullptr);
    }
}

void BarePipeline::createPipeline(const BareProgram& program,
                                  std::uint32_t vertexStride,
                                  std::span<const BareAttribute> attributes) {
    std::array<VkPipelineShaderStageCreateInfo, 2> stages{};
    for (auto& stage : stages) {
        stage.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
        stage.pName = "main";
    }
    stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
    stages[0].module = device_.createModule(program.vertexSpirv);
    stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
    stages[1].module = device_.createModule(program.pixelSpirv);
    const VertexLayout vertices(vertexStride, attributes);
    auto assembly = makeInfo<VkPipelineInputAssemblyStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO);
    assembly.topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    auto area = makeInfo<VkPipelineViewportStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO);
    area.viewportCount = area.scissorCount = 1;
    auto raster = makeInfo<VkPipelineRasterizationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO);
    raster.cullMode = VK_CULL_MODE_BACK_BIT;
    raster.frontFace = VK_FRONT_FACE_CLOCKWISE;
    raster.lineWidth = 1;
    auto samples = makeInfo<VkPipelineMultisampleStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO);
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    auto depth = makeInfo<VkPipelineDepthStencilStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO);
    depth.depthTestEnable = depth.depthWriteEnable = VK_TRUE;
    depth.depthCompareOp = VK_COMPARE_OP_LESS;
    VkPipelineColorBlendAttachmentState opaque{};
    opaque.colorWriteMask = 0xF;
    auto blend = makeInfo<VkPipelineColorBlendStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO);
    blend.attachmentCount = 1;
    blend.pAttachments = &opaque;
    constexpr std::array dynamics{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    auto dynamic = makeInfo<VkPipelineDynamicStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO);
    dynamic.dynamicStateCount = static_cast<std::uint32_t>(dynamics.size());
    dynamic.pDynamicStates = dynamics.data();
    auto targets = makeInfo<VkPipelineRenderingCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO);
    targets.colorAttachmentCount = 1;
    targets.pColorAttachmentFormats = &bareColorFormat;
    targets.depthAttachmentFormat = bareDepthFormat;
    auto info =
            makeInfo<VkGraphicsPipelineCreateInfo>(VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO);
    info.pNext = &targets;
    info.stageCount = static_cast<std::uint32_t>(stages.size());
    info.pStages = stages.data();
    info.pVertexInputState = &vertices.info;
    info.pInputAssemblyState = &assembly;
    info.pViewportState = &area;
    info.pRasterizationState = &raster;
    info.pMultisampleState = &samples;
    info.pDepthStencilState = &depth;
    info.pColorBlendState = &blend;
    info.pDynamicState = &dynamic;
    info.layout = layout_;
    const VolkDeviceTable& vk = device_.vk();
    expectBare(vk.vkCreateGraphicsPipelines(
                       device_.get(), VK_NULL_HANDLE, 1, &info, nullptr, &pipeline_),
               "vkCreateGraphicsPipelines");
    for (const auto& stage : stages)
        vk.vkDestroyShaderModule(device_.get(), stage.module, nullptr);
}

} // namespace bench
