#pragma once
#include "vulkan/GpuBuffer.h"
#include "vulkan/GpuImage.h"

#include <vlCommon/Result.h>
#include <vlImages/Image.h>

#include <string_view>

namespace vlGraphics::vulkan {

/// Bytes of a pixel as it is copied out of an image (of depth with stencil, the depth); 0 for
/// formats that are not copied.
std::uint32_t pixelSize(VkFormat format);

/// Records the copy of a rectangle of level 0 into the start of a buffer, rows tightly packed, and
/// makes it visible to the processor. The image goes to the transfer source use.
void recordReadback(VkCommandBuffer commands, GpuImage& image, VkRect2D area, VkBuffer target);

/** The pixels of a rectangle of level 0, waiting for the device. Fails while a frame is being
 *  recorded. `what` names the image in errors. */
vlCommon::Result<GpuBuffer> readPixels(GpuImage& image, VkRect2D area, std::string_view what);

/** Level 0 as a picture, waiting for the device: 8-bit formats as they are (sRGB stays encoded),
 *  32-bit integers as the four bytes of each, everything else as floats (one channel, and depth, in
 *  red, green and blue). */
vlCommon::Result<vlImages::Image> readImage(GpuImage& image, std::string_view what);

} // namespace vlGraphics::vulkan
