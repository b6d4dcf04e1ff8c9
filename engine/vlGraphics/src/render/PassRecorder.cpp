#include "render/PassRecorder.h"

#include "render/RendererGpu.h"
#include "vulkan/RenderContextGpu.h"
#include "vulkan/TextureGpu.h"
#include "vulkan/Translate.h"

#include <algorithm>
#include <cmath>

namespace vlGraphics::render {

using vulkan::GpuImage;
using vulkan::ImageUse;

namespace {

GpuImage* targetImage(Handle<Texture> handle, RENDER_FLAG wanted) {
    const Texture* texture = TextureManager::getInstance()->resolve(handle);
    if (texture == nullptr || texture->gpu() == nullptr) return nullptr;
    const bool isDepth = vulkan::isDepthFormat(texture->gpu()->image.description().format);
    const VkImageUsageFlags usage = texture->gpu()->image.description().usage;
    const bool fits = wanted == RENDER_FLAG::DEPTH_TARGET
                              ? isDepth
                              : (usage & VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT) != 0;
    return fits ? &texture->gpu()->image : nullptr;
}

VkClearValue colorClear(VkFormat format, const std::array<float, 4>& color) {
    VkClearValue value{};
    for (std::size_t i = 0; i < color.size(); ++i) {
        if (format == VK_FORMAT_R32_UINT)
            value.color.uint32[i] = static_cast<std::uint32_t>(
                    std::clamp(static_cast<double>(color[i]), 0.0, 4294967295.0));
        else
            value.color.float32[i] = color[i];
    }
    return value;
}

VkClearValue depthClear(float depth, std::uint32_t stencil) {
    VkClearValue value{};
    value.depthStencil = {std::clamp(depth, 0.0F, 1.0F), stencil & 255U};
    return value;
}

} // namespace

PassRecorder::PassRecorder(Renderer::Gpu& renderer,
                           RenderContext& context,
                           const TargetOperations& operations)
    : renderer_(renderer), context_(context) {
    gatherTargets(operations);
    if (!usable_) extent_ = {context.getWidth(), context.getHeight()};
    setViewport(operations);
}

PassRecorder::~PassRecorder() {
    finishClears();
}

void PassRecorder::finishClears() {
    const bool clears = depth_.clear.has_value() ||
                        std::any_of(colors_.begin(), colors_.end(), [](const Target& target) {
                            return target.clear.has_value();
                        });
    if (clears) beginRendering();
    endRendering();
}

FrameSlot& PassRecorder::frame() {
    return renderer_.frame();
}

VkCommandBuffer PassRecorder::commands() {
    return renderer_.frame().commands;
}

void PassRecorder::shrinkTo(VkExtent2D extent) {
    extent_ = usable_ ? VkExtent2D{std::min(extent_.width, extent.width),
                                   std::min(extent_.height, extent.height)}
                      : extent;
    usable_ = true;
}

void PassRecorder::setColor(std::uint32_t place, GpuImage& image) {
    if (place >= colors_.size() || isTarget(image)) return;
    colors_[place].image = &image;
    formats_.colors[place] = image.description().viewFormat;
    formats_.colorCount = std::max(formats_.colorCount, place + 1);
    shrinkTo(image.extent());
}

void PassRecorder::setDepth(GpuImage& image) {
    depth_.image = &image;
    formats_.depth = image.description().viewFormat;
    if (vulkan::hasStencil(formats_.depth)) formats_.stencil = formats_.depth;
    shrinkTo(image.extent());
}

void PassRecorder::gatherTargets(const TargetOperations& operations) {
    for (std::uint32_t i = 0; const TargetDescriptor* target = operations.getColorTarget(i); ++i)
        if (GpuImage* image = targetImage(target->texture, RENDER_FLAG::COLOR_TARGET))
            setColor(target->renderIndex, *image);
    if (operations.isToBackBuffer())
        setColor(operations.getBackBufferViewIndex(), context_.gpu()->backBuffer);
    if (operations.isToChainDepthBuffer())
        setDepth(context_.gpu()->depth);
    else if (GpuImage* image = targetImage(operations.getDepthTarget(), RENDER_FLAG::DEPTH_TARGET))
        setDepth(*image);
}

void PassRecorder::setViewport(const TargetOperations& operations) {
    const Viewport* part =
            ViewportManager::getInstance()->resolve(operations.getOverloadedViewport());
    const Viewport::Area area = part == nullptr ? Viewport::Area{} : part->getArea();
    const auto width = static_cast<float>(extent_.width);
    const auto height = static_cast<float>(extent_.height);
    const float left = area.x * width;
    const float top = area.y * height;
    const float right = std::min(left + area.width * width, width);
    const float bottom = std::min(top + area.height * height, height);
    // A negative height turns the picture the right way up, winding included.
    viewport_ = {left,
                 bottom,
                 std::max(right - left, 0.001F),
                 top - bottom,
                 area.minDepth,
                 area.maxDepth};
    scissor_.offset = {static_cast<std::int32_t>(std::floor(left)),
                       static_cast<std::int32_t>(std::floor(top))};
    scissor_.extent = {static_cast<std::uint32_t>(std::ceil(right) - std::floor(left)),
                       static_cast<std::uint32_t>(std::ceil(bottom) - std::floor(top))};
}

bool PassRecorder::isTarget(const GpuImage& image) const {
    return depth_.image == &image ||
           std::any_of(colors_.begin(), colors_.end(), [&image](const Target& target) {
               return target.image == &image;
           });
}

void PassRecorder::clearColor(std::uint32_t index, const std::array<float, 4>& color) {
    if (index >= formats_.colorCount || colors_[index].image == nullptr) return;
    const VkClearValue value = colorClear(formats_.colors[index], color);
    if (rendering_)
        clearNow(VK_IMAGE_ASPECT_COLOR_BIT, index, value);
    else
        colors_[index].clear = value;
}

void PassRecorder::clearDepth(float depth, std::uint32_t stencil) {
    if (depth_.image == nullptr) return;
    if (rendering_)
        clearNow(depth_.image->aspect(), 0, depthClear(depth, stencil));
    else
        depth_.clear = depthClear(depth, stencil);
}

void PassRecorder::clearNow(VkImageAspectFlags aspect, std::uint32_t place, VkClearValue value) {
    const VkClearAttachment clear{aspect, place, value};
    const VkClearRect whole{{{0, 0}, extent_}, 0, 1};
    vkCmdClearAttachments(commands(), 1, &clear, 1, &whole);
}

VkRenderingAttachmentInfo PassRecorder::attachment(Target& target, VkClearValue empty) {
    auto info =
            vulkan::vkInfo<VkRenderingAttachmentInfo>(VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO);
    if (target.image == nullptr) return info;
    const bool isDepth = &target == &depth_;
    // What has no content yet begins with one, rather than with what the memory happens to hold.
    if (target.image->use() == ImageUse::undefined && !target.clear) target.clear = empty;
    const VkExtent2D whole = target.image->extent();
    const bool discards =
            target.clear && whole.width == extent_.width && whole.height == extent_.height;
    const ImageUse use = isDepth ? ImageUse::depthTarget : ImageUse::colorTarget;
    target.image->become(commands(), use, discards);
    info.imageView = target.image->targetView();
    info.imageLayout = layoutOf(use);
    info.loadOp = target.clear ? VK_ATTACHMENT_LOAD_OP_CLEAR : VK_ATTACHMENT_LOAD_OP_LOAD;
    info.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    info.clearValue = target.clear.value_or(VkClearValue{});
    target.clear.reset();
    return info;
}

void PassRecorder::beginRendering() {
    if (rendering_ || !usable_) return;
    std::array<VkRenderingAttachmentInfo, TargetOperations::maxColorTargets> colors{};
    for (std::uint32_t i = 0; i < formats_.colorCount; ++i)
        colors[i] = attachment(colors_[i], colorClear(formats_.colors[i], {0, 0, 0, 1}));
    const VkRenderingAttachmentInfo depth = attachment(depth_, depthClear(1, 0));
    auto info = vulkan::vkInfo<VkRenderingInfo>(VK_STRUCTURE_TYPE_RENDERING_INFO);
    info.renderArea = {{0, 0}, extent_};
    info.layerCount = 1;
    info.colorAttachmentCount = formats_.colorCount;
    info.pColorAttachments = colors.data();
    info.pDepthAttachment = depth_.image == nullptr ? nullptr : &depth;
    info.pStencilAttachment = formats_.stencil == VK_FORMAT_UNDEFINED ? nullptr : &depth;
    vkCmdBeginRendering(commands(), &info);
    vkCmdSetViewport(commands(), 0, 1, &viewport_);
    rendering_ = true;
}

void PassRecorder::setScissor(bool toViewport) {
    const VkRect2D whole{{0, 0}, extent_};
    vkCmdSetScissor(commands(), 0, 1, toViewport ? &scissor_ : &whole);
}

void PassRecorder::endRendering() {
    if (rendering_) vkCmdEndRendering(commands());
    rendering_ = false;
}

} // namespace vlGraphics::render
