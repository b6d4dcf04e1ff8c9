#pragma once
#include "vulkan/GpuImage.h"

#include <vlCommon/Result.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vlGraphics::vulkan {

/** The images of a window, and the semaphores that go with them. Graphics thread only. */
class Swapchain {
public:
    /// Fails when the window is gone. Null (and no error) while it has no size.
    static vlCommon::Result<std::unique_ptr<Swapchain>>
    create(VkSurfaceKHR surface, VkExtent2D wished, VkSwapchainKHR old);
    /// Waits for the device.
    ~Swapchain();
    Swapchain(const Swapchain&) = delete;
    Swapchain& operator=(const Swapchain&) = delete;

    VkSwapchainKHR get() const { return swapchain_; }
    VkExtent2D extent() const { return extent_; }
    /// A copy of a BGRA8 image's bytes shows the same colours.
    bool takesCopies() const { return takesCopies_; }

    struct Acquired {
        VkResult result = VK_NOT_READY;
        std::uint32_t index = 0;
        VkImage image = VK_NULL_HANDLE;
        VkSemaphore available = VK_NULL_HANDLE;
        VkSemaphore rendered = VK_NULL_HANDLE;
    };
    /// The next image to draw into; waits a bounded time at most.
    Acquired acquire();
    /// The timeline will reach the value once the semaphore of the last acquire has been waited
    /// for.
    void noteWaited(std::uint64_t value);

private:
    Swapchain() = default;

    struct Available {
        VkSemaphore semaphore = VK_NULL_HANDLE;
        std::uint64_t value = 0; ///< of the timeline, when it can be used again
    };
    Available* freeSemaphore();

    VkSwapchainKHR swapchain_ = VK_NULL_HANDLE;
    VkExtent2D extent_{0, 0};
    bool takesCopies_ = false;
    std::vector<VkImage> images_;
    std::vector<VkSemaphore> rendered_; ///< by image
    std::vector<Available> available_;
    std::size_t lastAvailable_ = 0;
};

} // namespace vlGraphics::vulkan
