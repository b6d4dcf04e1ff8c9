#include "render/RendererGpu.h"
#include "vulkan/Device.h"
#include "vulkan/Readback.h"
#include "vulkan/RenderContextGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Upload.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <cassert>
#include <cstring>
#include <vector>

namespace vlGraphics {

using vulkan::Device;

namespace {

vlCommon::Result<> startSlot(render::FrameSlot& slot) {
    const Device& device = *Device::getInstance();
    auto pool = vulkan::vkInfo<VkCommandPoolCreateInfo>(VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO);
    pool.flags = VK_COMMAND_POOL_CREATE_TRANSIENT_BIT;
    pool.queueFamilyIndex = device.queueFamily();
    VkResult result = vkCreateCommandPool(device.get(), &pool, nullptr, &slot.pool);
    if (result != VK_SUCCESS) return vulkan::check(result, "Could not start the renderer");
    auto info = vulkan::vkInfo<VkCommandBufferAllocateInfo>(
            VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO);
    info.commandPool = slot.pool;
    info.level = VK_COMMAND_BUFFER_LEVEL_PRIMARY;
    info.commandBufferCount = 1;
    result = vkAllocateCommandBuffers(device.get(), &info, &slot.commands);
    return vulkan::check(result, "Could not start the renderer");
}

/// Pictures that nobody sees are not drawn.
bool isDrawable(const RenderContext& context) {
    const PresentSurface& surface = context.getSurface();
    if (surface.getKind() == PresentSurface::Kind::none) return true;
    const PresentSurface::Size size = surface.getSize();
    return size.width > 0 && size.height > 0 && surface.isExposed();
}

} // namespace

vlCommon::Result<> Renderer::Gpu::start(const Configuration& configuration) {
    Device::getInstance()->setPatience(configuration.loopPatienceMs, [this] { loops.askToStop(); });
    cache = std::make_unique<vulkan::PipelineCache>(configuration.cacheFolder);
    pipelines = std::make_unique<render::Pipelines>(*cache);
    for (render::FrameSlot& one : slots)
        if (auto started = startSlot(one); !started) return started;
    return render::Fallbacks::create(fallbacks);
}

Renderer::Gpu::~Gpu() {
    Device::getInstance()->setPatience(0, {});
    for (const render::FrameSlot& one : slots)
        Device::getInstance()->retire(one.pool);
}

void Renderer::Gpu::forget(const RenderContext& context) {
    assert(active != &context);
    if (next == &context) next = nullptr;
}

Renderer::Renderer() : gpu_(std::make_unique<Gpu>()) {
}

Renderer::~Renderer() = default;

void Renderer::beginFrame() {
    assert(gpu_->active == nullptr);
    gpu_->active = std::exchange(gpu_->next, nullptr);
    Device& device = *Device::getInstance();
    if (gpu_->active == nullptr || device.isLost() || !isDrawable(*gpu_->active)) return;

    gpu_->slot = (gpu_->slot + 1) % Gpu::frameCount;
    render::FrameSlot& frame = gpu_->frame();
    device.waitFor(frame.value);
    if (device.isLost()) return;
    gpu_->loops.look();
    device.collect();
    frame.memory.reset();
    frame.descriptors.reset();
    vkResetCommandPool(device.get(), frame.pool, 0);
    auto begin =
            vulkan::vkInfo<VkCommandBufferBeginInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO);
    begin.flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT;
    if (device.note(vkBeginCommandBuffer(frame.commands, &begin)) != VK_SUCCESS) return;
    const auto constants = frame.memory.allocate(sizeof render::constantAttributes, 16);
    if (constants.data == nullptr) return;
    std::memcpy(
            constants.data, render::constantAttributes.data(), sizeof render::constantAttributes);
    gpu_->constants = constants.buffer;
    gpu_->constantsOffset = constants.offset;
    gpu_->pipelines->beginFrame();
    device.beginWork();
    device.setRecordingFrame(true);
    gpu_->recording = true;
}

void Renderer::endFrame() {
    RenderContext* context = std::exchange(gpu_->active, nullptr);
    if (!std::exchange(gpu_->recording, false)) return;
    Device& device = *Device::getInstance();
    render::FrameSlot& frame = gpu_->frame();
    RenderContext::Gpu& target = *context->gpu();
    // A picture into which nothing was ever drawn has no content to show.
    vulkan::Presenter* presenter = target.backBuffer.use() == vulkan::ImageUse::undefined
                                           ? nullptr
                                           : target.presenter.get();
    vulkan::Presenter::Sync sync;
    if (presenter != nullptr) presenter->record(frame.commands, target.backBuffer, sync);
    gpu_->loops.record(frame.commands);
    device.note(vkEndCommandBuffer(frame.commands));

    std::vector<VkCommandBuffer> commands;
    if (const VkCommandBuffer uploads = device.upload().take()) commands.push_back(uploads);
    commands.push_back(frame.commands);
    const VkResult result = device.submit(commands, sync.waits, sync.signals);
    device.endWork();
    device.setRecordingFrame(false);
    if (result != VK_SUCCESS) {
        gpu_->loops.dropped();
        if (!device.isLost())
            vulkan::logLine(vulkan::check(result, "A frame was dropped").error().message);
        return;
    }
    frame.value = device.submitted();
    gpu_->loops.submitted(frame.value);
    target.lastFrame = frame.value;
    ++gpu_->counts.frames;
    gpu_->counts.pipelinesMade = gpu_->pipelines->madeCount();
    if (presenter != nullptr) presenter->submitted(frame.value);
}

void Renderer::endWork() {
    Device& device = *Device::getInstance();
    device.upload().submit();
    device.waitIdle();
    device.collect();
    gpu_->loops.look();
}

void Renderer::noteEndedFrames() {
    gpu_->loops.look();
}

vlCommon::Result<std::uint32_t>
Renderer::readTexel(const Texture& texture, std::uint32_t x, std::uint32_t y) const {
    const std::string what = fmt::format("texel {}, {} of texture '{}'", x, y, texture.getName());
    Texture::Gpu* gpu = texture.gpu();
    if (gpu == nullptr) return vlCommon::fail(fmt::format("{}: it is not loaded", what));
    const VkExtent2D size = gpu->image.extent();
    if (x >= size.width || y >= size.height ||
        vulkan::pixelSize(gpu->image.description().format) != sizeof(std::uint32_t))
        return vlCommon::fail(fmt::format("{}: there is no such texel of 32 bits", what));
    const VkRect2D area{{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)}, {1, 1}};
    const auto pixels = vulkan::readPixels(gpu->image, area, what);
    if (!pixels) return tl::unexpected(pixels.error());
    std::uint32_t texel = 0;
    std::memcpy(&texel, pixels->mapped(), sizeof texel);
    return texel;
}

RenderContext* Renderer::getActiveContext() const {
    return gpu_->active;
}

const Renderer::Counts& Renderer::getCounts() const {
    return gpu_->counts;
}

} // namespace vlGraphics
