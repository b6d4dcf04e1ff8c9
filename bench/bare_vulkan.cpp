#include "bare_vulkan.h"

#include <volk.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace bench {
namespace {

constexpr VkFormat colorFormat = VK_FORMAT_B8G8R8A8_SRGB;
constexpr VkFormat depthFormat = VK_FORMAT_D32_SFLOAT;
constexpr std::uint32_t vertexStride = 6 * sizeof(float);
constexpr std::uint32_t firstMatrixLocation = 8;
constexpr std::size_t frameCount = 2;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "bare Vulkan loop: %s failed\n", what);
    std::exit(1);
}

void expect(VkResult result, const char* what) {
    if (result != VK_SUCCESS) fail(what);
}

template <class Info> Info make(VkStructureType type) {
    Info info{};
    info.sType = type;
    return info;
}

/// From an instance of its own: the engine in the same program keeps the global functions.
template <class Function> Function load(VkInstance instance, const char* name) {
    const PFN_vkVoidFunction function = vkGetInstanceProcAddr(instance, name);
    if (function == nullptr) fail(name);
    return reinterpret_cast<Function>(function);
}

struct Buffer {
    VkBuffer buffer = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    std::byte* mapped = nullptr;
};

struct Image {
    VkImage image = VK_NULL_HANDLE;
    VkDeviceMemory memory = VK_NULL_HANDLE;
    VkImageView view = VK_NULL_HANDLE;
};

struct Frame {
    VkCommandPool pool = VK_NULL_HANDLE;
    VkCommandBuffer commands = VK_NULL_HANDLE;
    VkFence fence = VK_NULL_HANDLE;
    Buffer instances;
    bool hasOwnInstances = false;
};

struct Draw {
    VkDeviceSize vertexOffset = 0;
    VkDeviceSize indexOffset = 0;
    std::uint32_t indexCount = 0;
    std::uint32_t firstInstance = 0;
    std::uint32_t instanceCount = 0;
};

class Loop final : public BareVulkan {
public:
    explicit Loop(const BareScene& scene)
        : extent_{scene.width, scene.height}, instanceCount_(scene.instances.size()) {
        std::memcpy(clear_.color.float32, scene.clearColor.data(), sizeof clear_.color.float32);
        createDevice(std::string(scene.deviceName));
        constexpr VkImageUsageFlags colorUsage =
                VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT;
        color_ = createImage(colorFormat, colorUsage, VK_IMAGE_ASPECT_COLOR_BIT);
        depth_ = createImage(depthFormat,
                             VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT,
                             VK_IMAGE_ASPECT_DEPTH_BIT);
        uploadScene(scene);
        createSet(scene);
        createPipeline(scene);
        for (Frame& frame : frames_)
            createFrame(frame);
    }
    ~Loop() override;

    void beginFrame() override;
    std::span<vlMaths::Matrix> instances() override {
        frame().hasOwnInstances = true;
        return {reinterpret_cast<vlMaths::Matrix*>(frame().instances.mapped), instanceCount_};
    }
    void endFrame() override;
    void waitIdle() override { expect(vk_.vkDeviceWaitIdle(device_), "vkDeviceWaitIdle"); }
    std::vector<std::byte> readBack() override;

private:
    void createDevice(const std::string& name);
    VkPhysicalDevice findDevice(const std::string& name);
    VkDeviceMemory allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted);
    Buffer createBuffer(VkDeviceSize size, VkBufferUsageFlags usage);
    Image createImage(VkFormat format, VkImageUsageFlags usage, VkImageAspectFlags aspect);
    void uploadScene(const BareScene& scene);
    void createSet(const BareScene& scene);
    void createPipeline(const BareScene& scene);
    VkShaderModule createModule(std::span<const std::uint32_t> spirv);
    void createFrame(Frame& frame);
    void destroy(const Buffer& buffer);
    void destroy(const Image& image);
    void record(const Frame& frame);
    void beginRendering(VkCommandBuffer commands);
    void barrier(VkCommandBuffer commands, const VkImageMemoryBarrier2& barrier);
    void submit(VkCommandBuffer commands, VkFence fence);
    Frame& frame() { return frames_[current_]; }

    VkInstance instance_ = VK_NULL_HANDLE;
    PFN_vkDestroyInstance destroyInstance_ = nullptr;
    VkPhysicalDeviceMemoryProperties memories_{};
    VkDevice device_ = VK_NULL_HANDLE;
    VolkDeviceTable vk_{};
    VkQueue queue_ = VK_NULL_HANDLE;
    VkExtent2D extent_;
    std::size_t instanceCount_;
    VkClearValue clear_{};
    Image color_;
    Image depth_;
    Buffer meshes_;
    Buffer instances_;
    Buffer constants_;
    std::vector<Draw> draws_;
    VkDescriptorSetLayout setLayout_ = VK_NULL_HANDLE;
    VkDescriptorPool setPool_ = VK_NULL_HANDLE;
    VkDescriptorSet set_ = VK_NULL_HANDLE;
    VkPipelineLayout layout_ = VK_NULL_HANDLE;
    VkPipeline pipeline_ = VK_NULL_HANDLE;
    std::array<Frame, frameCount> frames_;
    std::size_t current_ = 0;
};

VkPhysicalDevice Loop::findDevice(const std::string& name) {
    const auto enumerate =
            load<PFN_vkEnumeratePhysicalDevices>(instance_, "vkEnumeratePhysicalDevices");
    const auto properties =
            load<PFN_vkGetPhysicalDeviceProperties>(instance_, "vkGetPhysicalDeviceProperties");
    std::uint32_t count = 0;
    expect(enumerate(instance_, &count, nullptr), "vkEnumeratePhysicalDevices");
    std::vector<VkPhysicalDevice> devices(count);
    expect(enumerate(instance_, &count, devices.data()), "vkEnumeratePhysicalDevices");
    for (const VkPhysicalDevice device : devices) {
        VkPhysicalDeviceProperties one{};
        properties(device, &one);
        if (name.starts_with(one.deviceName)) return device;
    }
    fail("finding the engine's device");
}

void Loop::createDevice(const std::string& name) {
    expect(volkInitialize(), "finding the Vulkan loader");
    auto application = make<VkApplicationInfo>(VK_STRUCTURE_TYPE_APPLICATION_INFO);
    application.apiVersion = VK_API_VERSION_1_3;
    auto instance = make<VkInstanceCreateInfo>(VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO);
    instance.pApplicationInfo = &application;
    expect(vkCreateInstance(&instance, nullptr, &instance_), "vkCreateInstance");
    destroyInstance_ = load<PFN_vkDestroyInstance>(instance_, "vkDestroyInstance");
    const VkPhysicalDevice physical = findDevice(name);
    load<PFN_vkGetPhysicalDeviceMemoryProperties>(instance_, "vkGetPhysicalDeviceMemoryProperties")(
            physical, &memories_);

    auto features = make<VkPhysicalDeviceVulkan13Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES);
    features.dynamicRendering = VK_TRUE;
    features.synchronization2 = VK_TRUE;
    features.maintenance4 = VK_TRUE;
    const float priority = 1;
    auto queue = make<VkDeviceQueueCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO);
    queue.queueCount = 1; // of family 0, which draws on every desktop driver
    queue.pQueuePriorities = &priority;
    auto device = make<VkDeviceCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO);
    device.pNext = &features;
    device.queueCreateInfoCount = 1;
    device.pQueueCreateInfos = &queue;
    expect(load<PFN_vkCreateDevice>(instance_,
                                    "vkCreateDevice")(physical, &device, nullptr, &device_),
           "vkCreateDevice");
    // volk's table is filled through the global function, which the engine may have set already.
    vkGetDeviceProcAddr = load<PFN_vkGetDeviceProcAddr>(instance_, "vkGetDeviceProcAddr");
    volkLoadDeviceTable(&vk_, device_);
    vk_.vkGetDeviceQueue(device_, 0, 0, &queue_);
}

VkDeviceMemory Loop::allocate(const VkMemoryRequirements& needs, VkMemoryPropertyFlags wanted) {
    for (std::uint32_t type = 0; type < memories_.memoryTypeCount; ++type) {
        const bool fits = (needs.memoryTypeBits >> type & 1U) != 0 &&
                          (memories_.memoryTypes[type].propertyFlags & wanted) == wanted;
        if (!fits) continue;
        auto info = make<VkMemoryAllocateInfo>(VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO);
        info.allocationSize = needs.size;
        info.memoryTypeIndex = type;
        VkDeviceMemory memory = VK_NULL_HANDLE;
        expect(vk_.vkAllocateMemory(device_, &info, nullptr, &memory), "vkAllocateMemory");
        return memory;
    }
    fail("finding memory");
}

Buffer Loop::createBuffer(VkDeviceSize size, VkBufferUsageFlags usage) {
    auto info = make<VkBufferCreateInfo>(VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO);
    info.size = size;
    info.usage = usage;
    Buffer made;
    expect(vk_.vkCreateBuffer(device_, &info, nullptr, &made.buffer), "vkCreateBuffer");
    VkMemoryRequirements needs{};
    vk_.vkGetBufferMemoryRequirements(device_, made.buffer, &needs);
    made.memory = allocate(
            needs, VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    expect(vk_.vkBindBufferMemory(device_, made.buffer, made.memory, 0), "vkBindBufferMemory");
    void* mapped = nullptr;
    expect(vk_.vkMapMemory(device_, made.memory, 0, VK_WHOLE_SIZE, 0, &mapped), "vkMapMemory");
    made.mapped = static_cast<std::byte*>(mapped);
    return made;
}

Image Loop::createImage(VkFormat format, VkImageUsageFlags usage, VkImageAspectFlags aspect) {
    auto info = make<VkImageCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO);
    info.imageType = VK_IMAGE_TYPE_2D;
    info.format = format;
    info.extent = {extent_.width, extent_.height, 1};
    info.mipLevels = info.arrayLayers = 1;
    info.samples = VK_SAMPLE_COUNT_1_BIT;
    info.usage = usage;
    Image made;
    expect(vk_.vkCreateImage(device_, &info, nullptr, &made.image), "vkCreateImage");
    VkMemoryRequirements needs{};
    vk_.vkGetImageMemoryRequirements(device_, made.image, &needs);
    made.memory = allocate(needs, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT);
    expect(vk_.vkBindImageMemory(device_, made.image, made.memory, 0), "vkBindImageMemory");
    auto view = make<VkImageViewCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO);
    view.image = made.image;
    view.viewType = VK_IMAGE_VIEW_TYPE_2D;
    view.format = format;
    view.subresourceRange = {aspect, 0, 1, 0, 1};
    expect(vk_.vkCreateImageView(device_, &view, nullptr, &made.view), "vkCreateImageView");
    return made;
}

void Loop::uploadScene(const BareScene& scene) {
    VkDeviceSize size = 0;
    for (const BareMesh& mesh : scene.meshes) {
        Draw& draw = draws_.emplace_back();
        draw.vertexOffset = size;
        draw.indexOffset = size + mesh.vertices.size_bytes();
        draw.indexCount = static_cast<std::uint32_t>(mesh.indices.size());
        draw.firstInstance = mesh.firstInstance;
        draw.instanceCount = mesh.instanceCount;
        size = draw.indexOffset + mesh.indices.size_bytes();
    }
    meshes_ = createBuffer(size,
                           VK_BUFFER_USAGE_VERTEX_BUFFER_BIT | VK_BUFFER_USAGE_INDEX_BUFFER_BIT);
    for (std::size_t i = 0; i < draws_.size(); ++i) {
        const BareMesh& mesh = scene.meshes[i];
        std::memcpy(meshes_.mapped + draws_[i].vertexOffset,
                    mesh.vertices.data(),
                    mesh.vertices.size_bytes());
        std::memcpy(meshes_.mapped + draws_[i].indexOffset,
                    mesh.indices.data(),
                    mesh.indices.size_bytes());
    }
    instances_ = createBuffer(scene.instances.size_bytes(), VK_BUFFER_USAGE_VERTEX_BUFFER_BIT);
    std::memcpy(instances_.mapped, scene.instances.data(), scene.instances.size_bytes());
    constants_ = createBuffer(scene.constants.size(), VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT);
    std::memcpy(constants_.mapped, scene.constants.data(), scene.constants.size());
}

void Loop::createSet(const BareScene& scene) {
    VkDescriptorSetLayoutBinding binding{};
    binding.descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    binding.descriptorCount = 1;
    binding.stageFlags = VK_SHADER_STAGE_ALL_GRAPHICS;
    auto layout = make<VkDescriptorSetLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO);
    layout.bindingCount = 1;
    layout.pBindings = &binding;
    expect(vk_.vkCreateDescriptorSetLayout(device_, &layout, nullptr, &setLayout_),
           "vkCreateDescriptorSetLayout");
    const VkDescriptorPoolSize size{VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, 1};
    auto pool = make<VkDescriptorPoolCreateInfo>(VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO);
    pool.maxSets = pool.poolSizeCount = 1;
    pool.pPoolSizes = &size;
    expect(vk_.vkCreateDescriptorPool(device_, &pool, nullptr, &setPool_),
           "vkCreateDescriptorPool");
    auto info = make<VkDescriptorSetAllocateInfo>(VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO);
    info.descriptorPool = setPool_;
    info.descriptorSetCount = 1;
    info.pSetLayouts = &setLayout_;
    expect(vk_.vkAllocateDescriptorSets(device_, &info, &set_), "vkAllocateDescriptorSets");
    const VkDescriptorBufferInfo buffer{constants_.buffer, 0, scene.constants.size()};
    auto write = make<VkWriteDescriptorSet>(VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET);
    write.dstSet = set_;
    write.descriptorCount = 1;
    write.descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    write.pBufferInfo = &buffer;
    vk_.vkUpdateDescriptorSets(device_, 1, &write, 0, nullptr);
    auto pipeline = make<VkPipelineLayoutCreateInfo>(VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO);
    pipeline.setLayoutCount = 1;
    pipeline.pSetLayouts = &setLayout_;
    expect(vk_.vkCreatePipelineLayout(device_, &pipeline, nullptr, &layout_),
           "vkCreatePipelineLayout");
}

VkShaderModule Loop::createModule(std::span<const std::uint32_t> spirv) {
    auto info = make<VkShaderModuleCreateInfo>(VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO);
    info.codeSize = spirv.size_bytes();
    info.pCode = spirv.data();
    VkShaderModule module = VK_NULL_HANDLE;
    expect(vk_.vkCreateShaderModule(device_, &info, nullptr, &module), "vkCreateShaderModule");
    return module;
}

struct VertexLayout {
    VertexLayout() {
        constexpr std::uint32_t threeFloats = 3 * sizeof(float);
        constexpr std::uint32_t row = 4 * sizeof(float);
        attributes[0] = {0, 0, VK_FORMAT_R32G32B32_SFLOAT, 0};
        attributes[1] = {1, 0, VK_FORMAT_R32G32B32_SFLOAT, threeFloats};
        for (std::uint32_t i = 0; i < 4; ++i)
            attributes[2 + i] = {
                    firstMatrixLocation + i, 1, VK_FORMAT_R32G32B32A32_SFLOAT, i * row};
        info.vertexBindingDescriptionCount = static_cast<std::uint32_t>(bindings.size());
        info.pVertexBindingDescriptions = bindings.data();
        info.vertexAttributeDescriptionCount = static_cast<std::uint32_t>(attributes.size());
        info.pVertexAttributeDescriptions = attributes.data();
    }
    std::array<VkVertexInputBindingDescription, 2> bindings{
            VkVertexInputBindingDescription{0, vertexStride, VK_VERTEX_INPUT_RATE_VERTEX},
            VkVertexInputBindingDescription{
                    1, sizeof(vlMaths::Matrix), VK_VERTEX_INPUT_RATE_INSTANCE}};
    std::array<VkVertexInputAttributeDescription, 6> attributes{};
    VkPipelineVertexInputStateCreateInfo info = make<VkPipelineVertexInputStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO);
};

void Loop::createPipeline(const BareScene& scene) {
    std::array<VkPipelineShaderStageCreateInfo, 2> stages{};
    for (auto& stage : stages) {
        stage.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
        stage.pName = "main";
    }
    stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
    stages[0].module = createModule(scene.vertexSpirv);
    stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
    stages[1].module = createModule(scene.pixelSpirv);
    const VertexLayout vertices;
    auto assembly = make<VkPipelineInputAssemblyStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO);
    assembly.topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    // A negative height turns the picture as the engine's pictures are.
    const VkViewport viewport{0,
                              static_cast<float>(extent_.height),
                              static_cast<float>(extent_.width),
                              -static_cast<float>(extent_.height),
                              0,
                              1};
    const VkRect2D scissor{{0, 0}, extent_};
    auto area = make<VkPipelineViewportStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO);
    area.viewportCount = area.scissorCount = 1;
    area.pViewports = &viewport;
    area.pScissors = &scissor;
    auto raster = make<VkPipelineRasterizationStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO);
    raster.cullMode = VK_CULL_MODE_BACK_BIT;
    raster.frontFace = VK_FRONT_FACE_CLOCKWISE;
    raster.lineWidth = 1;
    auto samples = make<VkPipelineMultisampleStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO);
    samples.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    auto depth = make<VkPipelineDepthStencilStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO);
    depth.depthTestEnable = depth.depthWriteEnable = VK_TRUE;
    depth.depthCompareOp = VK_COMPARE_OP_LESS;
    VkPipelineColorBlendAttachmentState opaque{};
    opaque.colorWriteMask = 0xF;
    auto blend = make<VkPipelineColorBlendStateCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO);
    blend.attachmentCount = 1;
    blend.pAttachments = &opaque;
    auto targets =
            make<VkPipelineRenderingCreateInfo>(VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO);
    targets.colorAttachmentCount = 1;
    targets.pColorAttachmentFormats = &colorFormat;
    targets.depthAttachmentFormat = depthFormat;
    auto info = make<VkGraphicsPipelineCreateInfo>(VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO);
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
    info.layout = layout_;
    expect(vk_.vkCreateGraphicsPipelines(device_, VK_NULL_HANDLE, 1, &info, nullptr, &pipeline_),
           "vkCreateGraphicsPipelines");
    for (const auto& stage : stages)
        vk_.vkDestroyShaderModule(device_, stage.module, nullptr);
}

void Loop::createFrame(Frame& frame) {
    auto pool = make<VkCommandPoolCreateInfo>(VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO);
    pool.flags = VK_COMMAND_POOL_CREATE_TRANSIENT_BIT;
    expect(vk_.vkCreateCommandPool(device_, &pool, nullptr, &frame.pool), "vkCreateCommandPool");
    auto commands =
            make<VkCommandBufferAllocateInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO);
    commands.commandPool = frame.pool;
    commands.commandBufferCount = 1;
    expect(vk_.vkAllocateCommandBuffers(device_, &commands, &frame.commands),
           "vkAllocateCommandBuffers");
    auto fence = make<VkFenceCreateInfo>(VK_STRUCTURE_TYPE_FENCE_CREATE_INFO);
    fence.flags = VK_FENCE_CREATE_SIGNALED_BIT;
    expect(vk_.vkCreateFence(device_, &fence, nullptr, &frame.fence), "vkCreateFence");
    frame.instances = createBuffer(instanceCount_ * sizeof(vlMaths::Matrix),
                                   VK_BUFFER_USAGE_VERTEX_BUFFER_BIT);
}

void Loop::beginFrame() {
    current_ = (current_ + 1) % frameCount;
    expect(vk_.vkWaitForFences(device_, 1, &frame().fence, VK_TRUE, UINT64_MAX), "vkWaitForFences");
    expect(vk_.vkResetFences(device_, 1, &frame().fence), "vkResetFences");
    frame().hasOwnInstances = false;
}

void Loop::endFrame() {
    expect(vk_.vkResetCommandPool(device_, frame().pool, 0), "vkResetCommandPool");
    record(frame());
    submit(frame().commands, frame().fence);
}

void Loop::barrier(VkCommandBuffer commands, const VkImageMemoryBarrier2& barrier) {
    auto info = make<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.imageMemoryBarrierCount = 1;
    info.pImageMemoryBarriers = &barrier;
    vk_.vkCmdPipelineBarrier2(commands, &info);
}

void Loop::beginRendering(VkCommandBuffer commands) {
    auto toTarget = make<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    toTarget.image = color_.image;
    toTarget.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    toTarget.srcStageMask = toTarget.dstStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT;
    toTarget.srcAccessMask = toTarget.dstAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT;
    toTarget.newLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    barrier(commands, toTarget);
    toTarget.image = depth_.image;
    toTarget.subresourceRange.aspectMask = VK_IMAGE_ASPECT_DEPTH_BIT;
    toTarget.srcStageMask = toTarget.dstStageMask = VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT |
                                                    VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT;
    toTarget.srcAccessMask = VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT;
    toTarget.dstAccessMask = VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT |
                             VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT;
    toTarget.newLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL;
    barrier(commands, toTarget);

    auto color = make<VkRenderingAttachmentInfo>(VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO);
    color.imageView = color_.view;
    color.imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    color.loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR;
    color.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    color.clearValue = clear_;
    auto depth = color;
    depth.imageView = depth_.view;
    depth.imageLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL;
    depth.clearValue.depthStencil = {1, 0};
    auto info = make<VkRenderingInfo>(VK_STRUCTURE_TYPE_RENDERING_INFO);
    info.renderArea = {{0, 0}, extent_};
    info.layerCount = info.colorAttachmentCount = 1;
    info.pColorAttachments = &color;
    info.pDepthAttachment = &depth;
    vk_.vkCmdBeginRendering(commands, &info);
}

void Loop::record(const Frame& frame) {
    const VkCommandBuffer commands = frame.commands;
    auto begin = make<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    begin.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    expect(vk_.vkBeginCommandBuffer(commands, &begin), "vkBeginCommandBuffer");
    beginRendering(commands);
    vk_.vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline_);
    vk_.vkCmdBindDescriptorSets(
            commands, VK_PIPELINE_BIND_POINT_GRAPHICS, layout_, 0, 1, &set_, 0, nullptr);
    const VkDeviceSize start = 0;
    const VkBuffer instances = frame.hasOwnInstances ? frame.instances.buffer : instances_.buffer;
    vk_.vkCmdBindVertexBuffers(commands, 1, 1, &instances, &start);
    for (const Draw& draw : draws_) {
        vk_.vkCmdBindVertexBuffers(commands, 0, 1, &meshes_.buffer, &draw.vertexOffset);
        vk_.vkCmdBindIndexBuffer(commands, meshes_.buffer, draw.indexOffset, VK_INDEX_TYPE_UINT32);
        vk_.vkCmdDrawIndexed(
                commands, draw.indexCount, draw.instanceCount, 0, 0, draw.firstInstance);
    }
    vk_.vkCmdEndRendering(commands);
    expect(vk_.vkEndCommandBuffer(commands), "vkEndCommandBuffer");
}

void Loop::submit(VkCommandBuffer commands, VkFence fence) {
    auto buffer = make<VkCommandBufferSubmitInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO);
    buffer.commandBuffer = commands;
    auto info = make<VkSubmitInfo2>(VK_STRUCTURE_TYPE_SUBMIT_INFO_2);
    info.commandBufferInfoCount = 1;
    info.pCommandBufferInfos = &buffer;
    expect(vk_.vkQueueSubmit2(queue_, 1, &info, fence), "vkQueueSubmit2");
}

std::vector<std::byte> Loop::readBack() {
    const std::size_t size = std::size_t{extent_.width} * extent_.height * 4;
    const Buffer buffer = createBuffer(size, VK_BUFFER_USAGE_TRANSFER_DST_BIT);
    beginFrame();
    const VkCommandBuffer commands = frame().commands;
    expect(vk_.vkResetCommandPool(device_, frame().pool, 0), "vkResetCommandPool");
    const auto begin = make<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    expect(vk_.vkBeginCommandBuffer(commands, &begin), "vkBeginCommandBuffer");
    auto toSource = make<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    toSource.image = color_.image;
    toSource.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    toSource.srcStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT;
    toSource.srcAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT;
    toSource.dstStageMask = VK_PIPELINE_STAGE_2_TRANSFER_BIT;
    toSource.dstAccessMask = VK_ACCESS_2_TRANSFER_READ_BIT;
    toSource.oldLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    toSource.newLayout = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    barrier(commands, toSource);
    VkBufferImageCopy copy{};
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {extent_.width, extent_.height, 1};
    vk_.vkCmdCopyImageToBuffer(
            commands, color_.image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer.buffer, 1, &copy);
    expect(vk_.vkEndCommandBuffer(commands), "vkEndCommandBuffer");
    submit(commands, frame().fence);
    waitIdle();
    std::vector<std::byte> pixels(buffer.mapped, buffer.mapped + size);
    destroy(buffer);
    return pixels;
}

void Loop::destroy(const Buffer& buffer) {
    vk_.vkDestroyBuffer(device_, buffer.buffer, nullptr);
    vk_.vkFreeMemory(device_, buffer.memory, nullptr);
}

void Loop::destroy(const Image& image) {
    vk_.vkDestroyImageView(device_, image.view, nullptr);
    vk_.vkDestroyImage(device_, image.image, nullptr);
    vk_.vkFreeMemory(device_, image.memory, nullptr);
}

Loop::~Loop() {
    waitIdle();
    for (const Frame& frame : frames_) {
        vk_.vkDestroyFence(device_, frame.fence, nullptr);
        vk_.vkDestroyCommandPool(device_, frame.pool, nullptr);
        destroy(frame.instances);
    }
    vk_.vkDestroyPipeline(device_, pipeline_, nullptr);
    vk_.vkDestroyPipelineLayout(device_, layout_, nullptr);
    vk_.vkDestroyDescriptorPool(device_, setPool_, nullptr);
    vk_.vkDestroyDescriptorSetLayout(device_, setLayout_, nullptr);
    destroy(meshes_);
    destroy(instances_);
    destroy(constants_);
    destroy(color_);
    destroy(depth_);
    vk_.vkDestroyDevice(device_, nullptr);
    destroyInstance_(instance_, nullptr);
}

} // namespace

std::unique_ptr<BareVulkan> BareVulkan::create(const BareScene& scene) {
    return std::make_unique<Loop>(scene);
}

} // namespace bench
