#pragma once
#include "vulkan/GpuImage.h"
#include "vulkan/TexelViews.h"

#include <vlCommon/Result.h>
#include <vlGraphics/ProgramReflection.h>

#include <cstdint>
#include <map>
#include <utility>

namespace vlGraphics::render {

/** What stands in for what a program reads or writes and nobody gave it: the engine's default
 *  texture and sampler, and where they are not loaded or of another shape, black textures of every
 *  shape, buffers of zeros, and memory to write whose content is lost. Graphics thread only. */
class Fallbacks {
public:
    static vlCommon::Result<> create(Fallbacks& made);
    Fallbacks() = default;
    Fallbacks(const Fallbacks&) = delete;
    Fallbacks& operator=(const Fallbacks&) = delete;
    ~Fallbacks();

    /// Of the shape and the kind of number that the resource has. Null where the device has no such
    /// image.
    vulkan::GpuImage* texture(const ReflectedResource& resource);
    /// To write; of the resource's shape and format. Null likewise.
    vulkan::GpuImage* writtenTexture(const ReflectedResource& resource);
    VkSampler sampler(const ReflectedResource& resource) const;

    /// Never written.
    const vulkan::GpuBuffer& zeros() const { return zeros_; }
    /// For everything written that nobody reads; to be zeroed before each pass that uses it.
    const vulkan::GpuBuffer& scratch() const { return scratch_; }
    /// Null where the device cannot see buffers in that format.
    VkBufferView zeroTexels(VkFormat format) { return zeroTexels_.get(zeros_, format); }
    VkBufferView scratchTexels(VkFormat format) { return scratchTexels_.get(scratch_, format); }

private:
    using Key = std::pair<RESOURCE_SHAPE, VkFormat>;
    using Images = std::map<Key, vulkan::GpuImage>;
    static vulkan::GpuImage* find(Images& images, Key key, VkImageUsageFlags usage);

    Images read_; ///< one texel each; without an image where it cannot be made
    Images written_;
    VkSampler nearest_ = VK_NULL_HANDLE;
    VkSampler comparing_ = VK_NULL_HANDLE;
    vulkan::GpuBuffer zeros_;
    vulkan::GpuBuffer scratch_;
    vulkan::TexelViews zeroTexels_;
    vulkan::TexelViews scratchTexels_;
};

/// The image can be bound where the resource is read.
bool fits(const vulkan::GpuImage& image, const ReflectedResource& resource);

} // namespace vlGraphics::render
