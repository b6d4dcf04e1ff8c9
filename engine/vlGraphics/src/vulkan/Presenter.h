#pragma once
#include "vulkan/GpuImage.h"

#include <vlCommon/Result.h>
#include <vlGraphics/PresentSurface.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace vlGraphics::vulkan {

/** The last step of a frame: what becomes of the back buffer. Owned by its render context; graphics
 *  thread only. */
class Presenter {
public:
    /// What the frame's submission waits for and signals besides the timeline.
    struct Sync {
        std::vector<VkSemaphoreSubmitInfo> waits;
        std::vector<VkSemaphoreSubmitInfo> signals;
    };

    virtual ~Presenter() = default;
    Presenter(const Presenter&) = delete;
    Presenter& operator=(const Presenter&) = delete;

    /// Records the end of a frame. May decide to present nothing this time.
    virtual void record(VkCommandBuffer commands, GpuImage& backBuffer, Sync& sync) = 0;
    /// The frame was submitted; the timeline will reach the value.
    virtual void submitted(std::uint64_t value) = 0;

    /// Null for a surface without presenting.
    static vlCommon::Result<std::unique_ptr<Presenter>> create(PresentSurface& surface);

protected:
    Presenter() = default;
};

} // namespace vlGraphics::vulkan
