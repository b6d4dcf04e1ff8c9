#include "vulkan/PicturePresenter.h"

#include "vulkan/Device.h"
#include "vulkan/Readback.h"
#include "vulkan/VkText.h"

#include <vector>

namespace vlGraphics::vulkan {

void PicturePresenter::record(VkCommandBuffer commands, GpuImage& backBuffer, Sync&) {
    extent_ = backBuffer.extent();
    const VkDeviceSize size = VkDeviceSize{extent_.width} * extent_.height * 4;
    if (pixels_.size() != size) {
        auto buffer = GpuBuffer::create(size,
                                        VK_BUFFER_USAGE_TRANSFER_DST_BIT,
                                        BufferMemory::readback,
                                        "picture of a viewport");
        if (!buffer && !failed_) logLine(buffer.error().message);
        failed_ = !buffer;
        pixels_ = buffer ? *std::move(buffer) : GpuBuffer();
    }
    recorded_ = pixels_.get() != VK_NULL_HANDLE;
    if (recorded_) recordReadback(commands, backBuffer, {{0, 0}, extent_}, pixels_.get());
}

void PicturePresenter::submitted(std::uint64_t value) {
    Device& device = *Device::getInstance();
    if (!recorded_) return;
    recorded_ = false;
    device.waitFor(value);
    if (device.isLost()) return;
    vlImages::Image picture;
    picture.width = extent_.width;
    picture.height = extent_.height;
    picture.format = vlImages::PixelFormat::bgra8;
    picture.pixels = vlMemory::Buffer(std::vector<std::byte>(
            pixels_.mapped(), pixels_.mapped() + static_cast<std::ptrdiff_t>(pixels_.size())));
    surface_.present(std::move(picture));
}

} // namespace vlGraphics::vulkan
