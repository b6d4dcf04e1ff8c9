#pragma once
#include "vulkan/GpuBuffer.h"
#include "vulkan/Presenter.h"

namespace vlGraphics::vulkan {

/** Hands each finished picture to the surface. It waits for the frame, so that a picture is there
 * in the turn that drew it and the last one of a burst never stays behind. */
class PicturePresenter final : public Presenter {
public:
    explicit PicturePresenter(PresentSurface& surface) : surface_(surface) {}

    void record(VkCommandBuffer commands, GpuImage& backBuffer, Sync& sync) override;
    void submitted(std::uint64_t value) override;

private:
    PresentSurface& surface_;
    GpuBuffer pixels_; ///< kept from frame to frame
    VkExtent2D extent_{0, 0};
    bool recorded_ = false;
    bool failed_ = false; ///< said once
};

} // namespace vlGraphics::vulkan
