#pragma once
#include "vulkan/Presenter.h"
#include "vulkan/Swapchain.h"

namespace vlGraphics::vulkan {

/** Copies the back buffer to an X11 window. A window that changes its size gets a new swapchain,
 * one that vanishes is given up with one log line. */
class WindowPresenter final : public Presenter {
public:
    static vlCommon::Result<std::unique_ptr<Presenter>> create(PresentSurface& surface);
    ~WindowPresenter() override;

    void record(VkCommandBuffer commands, GpuImage& backBuffer, Sync& sync) override;
    void submitted(std::uint64_t value) override;

private:
    explicit WindowPresenter(VkSurfaceKHR surface) : surface_(surface) {}
    bool prepareSwapchain(VkExtent2D wished);
    void copy(VkCommandBuffer commands, GpuImage& backBuffer) const;
    void noteResult(VkResult result);
    void giveUp(std::string_view why);

    VkSurfaceKHR surface_ = VK_NULL_HANDLE;
    std::unique_ptr<Swapchain> swapchain_;
    Swapchain::Acquired acquired_;
    bool stale_ = false;     ///< the window no longer takes the swapchain
    bool differs_ = false;   ///< the window may have another size
    bool abandoned_ = false; ///< the window is gone
};

} // namespace vlGraphics::vulkan
