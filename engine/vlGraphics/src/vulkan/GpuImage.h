#pragma once
#include "vulkan/Vma.h"

#include <vlCommon/Result.h>

#include <cstdint>
#include <string_view>
#include <utility>

namespace vlGraphics::vulkan {

/// What an image is used for at one time; it decides the layout and what a barrier waits for.
enum class ImageUse : std::uint8_t {
    undefined, ///< no content
    colorTarget,
    depthTarget,
    shaderRead,
    shaderWrite, ///< and read; who writes orders that itself
    transferSource,
    transferTarget,
    present,
};

VkImageLayout layoutOf(ImageUse use);

struct ImageDescription {
    VkExtent2D extent{1, 1};
    VkImageViewType shape = VK_IMAGE_VIEW_TYPE_2D;
    std::uint32_t layerCount = 1; ///< a cube has six
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
    std::uint32_t mipCount = 1;
    VkFormat format = VK_FORMAT_UNDEFINED;     ///< of the memory
    VkFormat viewFormat = VK_FORMAT_UNDEFINED; ///< as shaders and passes see it; may differ by sRGB
    VkImageUsageFlags usage = 0;
};

/** An image, its memory and its view, with the use it was last put to. Move-only; what it owned is
 *  retired. The use is kept in recording order, so commands are to be submitted in that order.
 *  Graphics thread only. */
class GpuImage {
public:
    GpuImage() = default;
    /// `what` names it in the error: "texture 'rust'".
    static vlCommon::Result<GpuImage> create(const ImageDescription& description,
                                             std::string_view what);
    GpuImage(GpuImage&& other) noexcept { swap(other); }
    GpuImage& operator=(GpuImage&& other) noexcept {
        GpuImage taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~GpuImage();

    explicit operator bool() const { return image_ != VK_NULL_HANDLE; }
    VkImage get() const { return image_; }
    /// Every level, as shaders see it: of depth with stencil, the depth alone.
    VkImageView view() const { return view_; }
    /// As passes draw into it, stencil included.
    VkImageView targetView() const { return targetView_ != VK_NULL_HANDLE ? targetView_ : view_; }
    const ImageDescription& description() const { return description_; }
    VkExtent2D extent() const { return description_.extent; }
    /// All that the memory holds: what barriers and clears name.
    VkImageAspectFlags aspect() const;
    /// Colour or depth: what shaders and copies read.
    VkImageAspectFlags readAspect() const;
    VkImageSubresourceRange wholeRange() const {
        return {aspect(), 0, description_.mipCount, 0, description_.layerCount};
    }
    ImageUse use() const { return use_; }

    /// Records the barrier from the last use to the next one; none where both only read alike. With
    /// `discard` the content may be lost.
    void become(VkCommandBuffer commands, ImageUse next, bool discard = false);
    /// For who has recorded barriers of its own.
    void noteUse(ImageUse use) { use_ = use; }

private:
    void swap(GpuImage& other) noexcept {
        std::swap(image_, other.image_);
        std::swap(allocation_, other.allocation_);
        std::swap(view_, other.view_);
        std::swap(targetView_, other.targetView_);
        std::swap(description_, other.description_);
        std::swap(use_, other.use_);
    }

    VkImage image_ = VK_NULL_HANDLE;
    VmaAllocation allocation_ = VK_NULL_HANDLE;
    VkImageView view_ = VK_NULL_HANDLE;
    VkImageView targetView_ = VK_NULL_HANDLE; ///< only where it differs
    ImageDescription description_;
    ImageUse use_ = ImageUse::undefined;
};

/// A barrier between two uses of some levels of an image.
void imageBarrier(VkCommandBuffer commands,
                  VkImage image,
                  VkImageSubresourceRange range,
                  ImageUse from,
                  ImageUse to);

} // namespace vlGraphics::vulkan
