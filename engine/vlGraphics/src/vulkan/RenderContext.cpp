#include "render/RendererGpu.h"
#include "vulkan/Device.h"
#include "vulkan/Readback.h"
#include "vulkan/RenderContextGpu.h"
#include "vulkan/Translate.h"

#include <vlGraphics/System.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics {

using vulkan::Device;
using vulkan::GpuImage;

namespace {

vlCommon::Result<GpuImage> makeBackBuffer(VkExtent2D extent) {
    vulkan::ImageDescription description;
    description.extent = extent;
    description.format = VK_FORMAT_B8G8R8A8_UNORM;
    description.viewFormat = VK_FORMAT_B8G8R8A8_SRGB;
    description.usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT;
    return GpuImage::create(description, "back buffer");
}

vlCommon::Result<GpuImage> makeDepthBuffer(VkExtent2D extent, VkFormat format) {
    vulkan::ImageDescription description;
    description.extent = extent;
    description.format = format;
    description.viewFormat = format;
    description.usage = VK_IMAGE_USAGE_DEPTH_STENCIL_ATTACHMENT_BIT;
    return GpuImage::create(description, "depth buffer");
}

Camera* resolveCamera(Handle<Camera> camera) {
    CameraManager* cameras = CameraManager::getInstance();
    Camera* resolved = cameras->resolve(camera);
    return resolved != nullptr ? resolved : cameras->getDefaultCamera();
}

} // namespace

void RenderContext::Gpu::addStencil() {
    const VkFormat format = Device::getInstance()->choice().stencilFormat;
    if (!depth || vulkan::hasStencil(depth.description().format)) return;
    auto made = makeDepthBuffer(depth.extent(), format);
    if (!made) {
        Device::getInstance()->logOnce(
                fmt::format("The stencil test passes everywhere: {}", made.error().message));
        return;
    }
    // What earlier operations left in the depth buffer is lost: the next frame has it right.
    if (depth.use() != vulkan::ImageUse::undefined) ChangeCount::bump();
    depth = *std::move(made);
}

RenderContext::RenderContext(const RenderContextDescriptor& descriptor)
    : surface_(&descriptor.getSurface()), gpu_(std::make_unique<Gpu>()) {
}

RenderContext::~RenderContext() = default;

void RenderContext::resize(std::uint32_t width, std::uint32_t height) {
    wantedWidth_ = width;
    wantedHeight_ = height;
}

vlCommon::Result<> RenderContext::apply() {
    const PresentSurface::Size own = surface_->getSize();
    const bool asSurface = wantedWidth_ == 0 && wantedHeight_ == 0;
    const std::uint32_t width = std::max(1U, asSurface ? own.width : wantedWidth_);
    const std::uint32_t height = std::max(1U, asSurface ? own.height : wantedHeight_);
    if (width == width_ && height == height_) return {};
    const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
    const std::uint32_t most =
            std::min({Texture::maxSize, limits.maxImageDimension2D, limits.maxFramebufferWidth});
    if (width > most || height > most)
        return vlCommon::fail(fmt::format("A picture of {} by {} pixels is too large: the device "
                                          "draws {} on a side at most",
                                          width,
                                          height,
                                          most));
    auto backBuffer = makeBackBuffer({width, height});
    if (!backBuffer) return tl::unexpected(backBuffer.error());
    const VkFormat old = gpu_->depth.description().format;
    auto depth =
            makeDepthBuffer({width, height}, vulkan::hasStencil(old) ? old : VK_FORMAT_D32_SFLOAT);
    if (!depth) return tl::unexpected(depth.error());
    gpu_->backBuffer = *std::move(backBuffer);
    gpu_->depth = *std::move(depth);
    width_ = width;
    height_ = height;
    ChangeCount::bump();
    return {};
}

void RenderContext::setCompositor(Handle<Compositor> compositor) {
    compositor_ = compositor;
    ChangeCount::bump();
}

void RenderContext::setRenderCamera(Handle<Camera> camera) {
    renderCamera_ = camera;
    ChangeCount::bump();
}

void RenderContext::setCullingCamera(Handle<Camera> camera) {
    cullingCamera_ = camera;
    ChangeCount::bump();
}

void RenderContext::setLodCamera(Handle<Camera> camera) {
    lodCamera_ = camera;
    ChangeCount::bump();
}

Camera* RenderContext::getRenderCamera() const {
    return resolveCamera(renderCamera_);
}
Camera* RenderContext::getCullingCamera() const {
    return resolveCamera(cullingCamera_);
}
Camera* RenderContext::getLodCamera() const {
    return resolveCamera(lodCamera_);
}

vlCommon::Result<vlImages::Image> RenderContext::readBackBuffer() const {
    if (gpu_->backBuffer.use() == vulkan::ImageUse::undefined)
        return vlCommon::fail("Nothing has been drawn yet");
    return vulkan::readImage(gpu_->backBuffer, "back buffer");
}

void RenderContext::detachSurface(std::uint32_t timeoutMs) {
    if (!gpu_->presenter) return;
    constexpr std::uint64_t nanosecondsPerMs = 1'000'000;
    Device::getInstance()->waitFor(gpu_->lastFrame, timeoutMs * nanosecondsPerMs);
    gpu_->presenter.reset();
}

RenderContextManager::RenderContextManager() = default;
RenderContextManager::~RenderContextManager() = default;

vlCommon::Result<RenderContext*>
RenderContextManager::createRenderContext(const RenderContextDescriptor& descriptor) {
    PresentSurface& surface = descriptor.getSurface();
    if (getRenderContextOf(surface) != nullptr)
        return vlCommon::fail("The surface has a render context already");
    std::unique_ptr<RenderContext> context(new RenderContext(descriptor));
    if (auto applied = context->apply(); !applied) return tl::unexpected(applied.error());
    auto presenter = vulkan::Presenter::create(surface);
    if (!presenter) return tl::unexpected(presenter.error());
    context->gpu()->presenter = *std::move(presenter);
    return contexts_.emplace_back(std::move(context)).get();
}

RenderContext* RenderContextManager::getRenderContextOf(const PresentSurface& surface) const {
    const auto found = std::find_if(contexts_.begin(),
                                    contexts_.end(),
                                    [&surface](const std::unique_ptr<RenderContext>& context) {
                                        return &context->getSurface() == &surface;
                                    });
    return found == contexts_.end() ? nullptr : found->get();
}

bool RenderContextManager::eraseFor(const PresentSurface& surface) {
    const auto found = std::find_if(contexts_.begin(),
                                    contexts_.end(),
                                    [&surface](const std::unique_ptr<RenderContext>& context) {
                                        return &context->getSurface() == &surface;
                                    });
    if (found == contexts_.end()) return false;
    Device::getInstance()->waitFor((*found)->gpu()->lastFrame);
    if (System* system = System::getInstance()) system->getRenderer().gpu().forget(**found);
    contexts_.erase(found);
    return true;
}

RenderContext* RenderContextManager::getByIndex(std::size_t index) const {
    return index < contexts_.size() ? contexts_[index].get() : nullptr;
}

} // namespace vlGraphics
