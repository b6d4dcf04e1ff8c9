#include "bare_vulkan.h"

#include "bare_pipeline.h"

#include <cstring>

namespace bench {
namespace {

constexpr std::size_t frameCount = 2;
/// Bytes of every constant buffer.
constexpr VkDeviceSize constantRange = 4096;

struct Frame {
    VkCommandPool pool = VK_NULL_HANDLE;
    VkCommandBuffer commands = VK_NULL_HANDLE;
    VkFence fence = VK_NULL_HANDLE;
    BareBuffer instances;
    bool hasOwnInstances = false;
};

struct Draw {
    VkDeviceSize vertexOffset = 0;
    VkDeviceSize indexOffset = 0;
    std::uint32_t vertexCount = 0; ///< where there are no indices
    std::uint32_t indexCount = 0;
    std::uint32_t firstInstance = 0;
    std::uint32_t instanceCount = 0;
};

class Loop final : public BareVulkan {
public:
    explicit Loop(const BareScene& scene)
        : device_(scene.deviceName), vk_(device_.vk()), extent_{scene.width, scene.height},
          vertexStride_(scene.vertexStride), attributes_(scene.attributes),
          instanceCount_(scene.instances.size()) {
        std::memcpy(clear_.color.float32, scene.clearColor.data(), sizeof clear_.color.float32);
        color_ = device_.createImage(bareColorFormat,
                                     extent_,
                                     VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT |
                                             VK_IMAGE_USAGE_TRANSFER_SRC_BIT,
                                     VK_IMAGE_ASPECT_COLOR_BIT);
        depth_ = device_.createImage(bareDepthFormat,
                                     extent_,
                                     VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT,
                                     VK_IMAGE_ASPECT_DEPTH_BIT);
        uploadScene(scene);
        for (Frame& frame : frames_)
            createFrame(frame);
        createInputs(scene);
        setProgram(scene.program);
    }
    ~Loop() override;

    void setProgram(const BareProgram& program) override {
        waitIdle();
        pipeline_.reset();
        pipeline_ = std::make_unique<BarePipeline>(
                device_, program, inputs_, vertexStride_, attributes_);
    }
    void beginFrame() override;
    std::span<vlMaths::Matrix> instances() override {
        frame().hasOwnInstances = true;
        return {reinterpret_cast<vlMaths::Matrix*>(frame().instances.mapped), instanceCount_};
    }
    void endFrame() override;
    void waitIdle() override { device_.waitIdle(); }
    std::vector<std::byte> readBack() override;

private:
    void uploadScene(const BareScene& scene);
    void createInputs(const BareScene& scene);
    void uploadTexture(std::span<const std::byte> texels);
    void createFrame(Frame& frame);
    void record(const Frame& frame);
    VkCommandBuffer beginOther();
    void beginRendering(VkCommandBuffer commands);
    Frame& frame() { return frames_[current_]; }

    BareDevice device_;
    const VolkDeviceTable& vk_;
    VkExtent2D extent_;
    std::uint32_t vertexStride_;
    std::vector<BareAttribute> attributes_;
    std::size_t instanceCount_;
    VkClearValue clear_{};
    BareImage color_;
    BareImage depth_;
    BareImage texture_;
    BareBuffer meshes_;
    BareBuffer instances_;
    BareInputs inputs_;
    std::vector<Draw> draws_;
    std::unique_ptr<BarePipeline> pipeline_;
    std::array<Frame, frameCount> frames_;
    std::size_t current_ = 0;
};

void Loop::uploadScene(const BareScene& scene) {
    VkDeviceSize size = 0;
    for (const BareMesh& mesh : scene.meshes) {
        Draw& draw = draws_.emplace_back();
        draw.vertexOffset = size;
        draw.indexOffset = size + mesh.vertices.size_bytes();
        draw.vertexCount =
                static_cast<std::uint32_t>(mesh.vertices.size_bytes() / scene.vertexStride);
        draw.indexCount = static_cast<std::uint32_t>(mesh.indices.size());
        draw.firstInstance = mesh.firstInstance;
        draw.instanceCount = mesh.instanceCount;
        size = draw.indexOffset + mesh.indices.size_bytes();
    }
    meshes_ = device_.createBuffer(
            size, VK_BUFFER_USAGE_VERTEX_BUFFER_BIT | VK_BUFFER_USAGE_INDEX_BUFFER_BIT);
    for (std::size_t i = 0; i < draws_.size(); ++i) {
        const BareMesh& mesh = scene.meshes[i];
        std::memcpy(meshes_.mapped + draws_[i].vertexOffset,
                    mesh.vertices.data(),
                    mesh.vertices.size_bytes());
        if (mesh.indices.empty()) continue;
        std::memcpy(meshes_.mapped + draws_[i].indexOffset,
                    mesh.indices.data(),
                    mesh.indices.size_bytes());
    }
    instances_ =
            device_.createBuffer(scene.instances.size_bytes(), VK_BUFFER_USAGE_VERTEX_BUFFER_BIT);
    std::memcpy(instances_.mapped, scene.instances.data(), scene.instances.size_bytes());
}

void Loop::createInputs(const BareScene& scene) {
    inputs_.range = constantRange;
    inputs_.constants = device_.createBuffer(scene.constants.size() * constantRange,
                                             VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT);
    for (std::size_t i = 0; i < scene.constants.size(); ++i) {
        const std::span<const std::byte> bytes = scene.constants[i];
        if (bytes.size() > constantRange) failBare("finding room for the constants");
        std::byte* at = inputs_.constants.mapped + i * constantRange;
        std::memset(at, 0, constantRange);
        std::memcpy(at, bytes.data(), bytes.size());
    }
    constexpr std::array<std::byte, 4> black{};
    uploadTexture(scene.texels.empty() ? std::span<const std::byte>(black) : scene.texels);
    auto sampler = makeInfo<VkSamplerCreateInfo>(VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO);
    sampler.magFilter = sampler.minFilter = VK_FILTER_LINEAR;
    sampler.mipmapMode = VK_SAMPLER_MIPMAP_MODE_LINEAR;
    sampler.maxLod = VK_LOD_CLAMP_NONE;
    expectBare(vk_.vkCreateSampler(device_.get(), &sampler, nullptr, &inputs_.sampler),
               "vkCreateSampler");
}

void Loop::uploadTexture(std::span<const std::byte> texels) {
    std::uint32_t side = 1;
    while (std::size_t{side} * side * 4 < texels.size())
        ++side;
    texture_ = device_.createImage(VK_FORMAT_R8G8B8A8_SRGB,
                                   {side, side},
                                   VK_IMAGE_USAGE_SAMPLED_BIT | VK_IMAGE_USAGE_TRANSFER_DST_BIT,
                                   VK_IMAGE_ASPECT_COLOR_BIT);
    inputs_.texture = texture_.view;
    const BareBuffer buffer = device_.createBuffer(texels.size(), VK_BUFFER_USAGE_TRANSFER_SRC_BIT);
    std::memcpy(buffer.mapped, texels.data(), texels.size());
    const VkCommandBuffer commands = beginOther();
    auto change = makeInfo<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    change.image = texture_.image;
    change.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    change.dstStageMask = VK_PIPELINE_STAGE_2_COPY_BIT;
    change.dstAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT;
    change.newLayout = VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
    device_.barrier(commands, change);
    VkBufferImageCopy copy{};
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {side, side, 1};
    vk_.vkCmdCopyBufferToImage(commands, buffer.buffer, texture_.image, change.newLayout, 1, &copy);
    change.srcStageMask = change.dstStageMask;
    change.srcAccessMask = change.dstAccessMask;
    change.dstStageMask = VK_PIPELINE_STAGE_2_FRAGMENT_SHADER_BIT;
    change.dstAccessMask = VK_ACCESS_2_SHADER_SAMPLED_READ_BIT;
    change.oldLayout = change.newLayout;
    change.newLayout = VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    device_.barrier(commands, change);
    expectBare(vk_.vkEndCommandBuffer(commands), "vkEndCommandBuffer");
    device_.submit(commands, frame().fence);
    waitIdle();
    device_.destroy(buffer);
}

void Loop::createFrame(Frame& frame) {
    auto pool = makeInfo<VkCommandPoolCreateInfo>(VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO);
    pool.flags = VK_COMMAND_POOL_CREATE_TRANSIENT_BIT;
    expectBare(vk_.vkCreateCommandPool(device_.get(), &pool, nullptr, &frame.pool),
               "vkCreateCommandPool");
    auto commands =
            makeInfo<VkCommandBufferAllocateInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO);
    commands.commandPool = frame.pool;
    commands.commandBufferCount = 1;
    expectBare(vk_.vkAllocateCommandBuffers(device_.get(), &commands, &frame.commands),
               "vkAllocateCommandBuffers");
    auto fence = makeInfo<VkFenceCreateInfo>(VK_STRUCTURE_TYPE_FENCE_CREATE_INFO);
    fence.flags = VK_FENCE_CREATE_SIGNALED_BIT;
    expectBare(vk_.vkCreateFence(device_.get(), &fence, nullptr, &frame.fence), "vkCreateFence");
    frame.instances = device_.createBuffer(instanceCount_ * sizeof(vlMaths::Matrix),
                                           VK_BUFFER_USAGE_VERTEX_BUFFER_BIT);
}

void Loop::beginFrame() {
    current_ = (current_ + 1) % frameCount;
    expectBare(vk_.vkWaitForFences(device_.get(), 1, &frame().fence, VK_TRUE, UINT64_MAX),
               "vkWaitForFences");
    expectBare(vk_.vkResetFences(device_.get(), 1, &frame().fence), "vkResetFences");
    frame().hasOwnInstances = false;
}

void Loop::endFrame() {
    expectBare(vk_.vkResetCommandPool(device_.get(), frame().pool, 0), "vkResetCommandPool");
    record(frame());
    device_.submit(frame().commands, frame().fence);
}

/// Of a frame that draws nothing.
VkCommandBuffer Loop::beginOther() {
    beginFrame();
    expectBare(vk_.vkResetCommandPool(device_.get(), frame().pool, 0), "vkResetCommandPool");
    const auto begin =
            makeInfo<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    expectBare(vk_.vkBeginCommandBuffer(frame().commands, &begin), "vkBeginCommandBuffer");
    return frame().commands;
}

void Loop::beginRendering(VkCommandBuffer commands) {
    auto toTarget = makeInfo<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    toTarget.image = color_.image;
    toTarget.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    toTarget.srcStageMask = toTarget.dstStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT;
    toTarget.srcAccessMask = toTarget.dstAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT;
    toTarget.newLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    device_.barrier(commands, toTarget);
    toTarget.image = depth_.image;
    toTarget.subresourceRange.aspectMask = VK_IMAGE_ASPECT_DEPTH_BIT;
    toTarget.srcStageMask = toTarget.dstStageMask = VK_PIPELINE_STAGE_2_EARLY_FRAGMENT_TESTS_BIT |
                                                    VK_PIPELINE_STAGE_2_LATE_FRAGMENT_TESTS_BIT;
    toTarget.srcAccessMask = VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT;
    toTarget.dstAccessMask = VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_WRITE_BIT |
                             VK_ACCESS_2_DEPTH_STENCIL_ATTACHMENT_READ_BIT;
    toTarget.newLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL;
    device_.barrier(commands, toTarget);

    auto color = makeInfo<VkRenderingAttachmentInfo>(VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO);
    color.imageView = color_.view;
    color.imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    color.loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR;
    color.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    color.clearValue = clear_;
    auto depth = color;
    depth.imageView = depth_.view;
    depth.imageLayout = VK_IMAGE_LAYOUT_DEPTH_ATTACHMENT_OPTIMAL;
    depth.clearValue.depthStencil = {1, 0};
    auto info = makeInfo<VkRenderingInfo>(VK_STRUCTURE_TYPE_RENDERING_INFO);
    info.renderArea = {{0, 0}, extent_};
    info.layerCount = info.colorAttachmentCount = 1;
    info.pColorAttachments = &color;
    info.pDepthAttachment = &depth;
    vk_.vkCmdBeginRendering(commands, &info);
}

void Loop::record(const Frame& frame) {
    const VkCommandBuffer commands = frame.commands;
    auto begin = makeInfo<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    begin.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    expectBare(vk_.vkBeginCommandBuffer(commands, &begin), "vkBeginCommandBuffer");
    beginRendering(commands);
    // A negative height turns the picture as the engine's pictures are.
    const VkViewport viewport{0,
                              static_cast<float>(extent_.height),
                              static_cast<float>(extent_.width),
                              -static_cast<float>(extent_.height),
                              0,
                              1};
    const VkRect2D scissor{{0, 0}, extent_};
    vk_.vkCmdSetViewport(commands, 0, 1, &viewport);
    vk_.vkCmdSetScissor(commands, 0, 1, &scissor);
    pipeline_->bind(commands);
    const VkDeviceSize start = 0;
    const VkBuffer instances = frame.hasOwnInstances ? frame.instances.buffer : instances_.buffer;
    vk_.vkCmdBindVertexBuffers(commands, 1, 1, &instances, &start);
    for (const Draw& draw : draws_) {
        vk_.vkCmdBindVertexBuffers(commands, 0, 1, &meshes_.buffer, &draw.vertexOffset);
        if (draw.indexCount == 0) {
            vk_.vkCmdDraw(commands, draw.vertexCount, draw.instanceCount, 0, draw.firstInstance);
            continue;
        }
        vk_.vkCmdBindIndexBuffer(commands, meshes_.buffer, draw.indexOffset, VK_INDEX_TYPE_UINT32);
        vk_.vkCmdDrawIndexed(
                commands, draw.indexCount, draw.instanceCount, 0, 0, draw.firstInstance);
    }
    vk_.vkCmdEndRendering(commands);
    expectBare(vk_.vkEndCommandBuffer(commands), "vkEndCommandBuffer");
}

std::vector<std::byte> Loop::readBack() {
    const std::size_t size = std::size_t{extent_.width} * extent_.height * 4;
    const BareBuffer buffer = device_.createBuffer(size, VK_BUFFER_USAGE_TRANSFER_DST_BIT);
    const VkCommandBuffer commands = beginOther();
    auto toSource = makeInfo<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    toSource.image = color_.image;
    toSource.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    toSource.srcStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT;
    toSource.srcAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT;
    toSource.dstStageMask = VK_PIPELINE_STAGE_2_TRANSFER_BIT;
    toSource.dstAccessMask = VK_ACCESS_2_TRANSFER_READ_BIT;
    toSource.oldLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL;
    toSource.newLayout = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    device_.barrier(commands, toSource);
    VkBufferImageCopy copy{};
    copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    copy.imageExtent = {extent_.width, extent_.height, 1};
    vk_.vkCmdCopyImageToBuffer(
            commands, color_.image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, buffer.buffer, 1, &copy);
    expectBare(vk_.vkEndCommandBuffer(commands), "vkEndCommandBuffer");
    device_.submit(commands, frame().fence);
    waitIdle();
    std::vector<std::byte> pixels(buffer.mapped, buffer.mapped + size);
    device_.destroy(buffer);
    return pixels;
}

Loop::~Loop() {
    waitIdle();
    for (const Frame& frame : frames_) {
        vk_.vkDestroyFence(device_.get(), frame.fence, nullptr);
        vk_.vkDestroyCommandPool(device_.get(), frame.pool, nullptr);
        device_.destroy(frame.instances);
    }
    pipeline_.reset();
    vk_.vkDestroySampler(device_.get(), inputs_.sampler, nullptr);
    for (const BareBuffer* buffer : {&meshes_, &instances_, &inputs_.constants})
        device_.destroy(*buffer);
    for (const BareImage* image : {&color_, &depth_, &texture_})
        device_.destroy(*image);
}

} // namespace

std::unique_ptr<BareVulkan> BareVulkan::create(const BareScene& scene) {
    return std::make_unique<Loop>(scene);
}

} // namespace bench
