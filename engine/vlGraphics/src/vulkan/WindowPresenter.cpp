#include "vulkan/WindowPresenter.h"

#include "vulkan/Device.h"
#include "vulkan/VkText.h"
#include "vulkan/XcbConnection.h"

#include <fmt/format.h>

namespace vlGraphics::vulkan {
namespace {

bool equal(VkExtent2D a, VkExtent2D b) {
    return a.width == b.width && a.height == b.height;
}

VkOffset3D cornerOf(VkExtent2D extent) {
    return {static_cast<std::int32_t>(extent.width), static_cast<std::int32_t>(extent.height), 1};
}

VkSemaphoreSubmitInfo semaphoreInfo(VkSemaphore semaphore) {
    auto info = vulkan::vkInfo<VkSemaphoreSubmitInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO);
    info.semaphore = semaphore;
    info.stageMask = VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    return info;
}

/// Between what presenting and the copy do with a swapchain's image. The semaphores wait at the
/// transfer stage, so the first barrier begins there.
void presentBarrier(VkCommandBuffer commands, VkImage image, bool before) {
    auto barrier = vulkan::vkInfo<VkImageMemoryBarrier2>(VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2);
    barrier.srcStageMask = VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    barrier.srcAccessMask = before ? VK_ACCESS_2_NONE : VK_ACCESS_2_TRANSFER_WRITE_BIT;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_ALL_TRANSFER_BIT;
    barrier.dstAccessMask = before ? VK_ACCESS_2_TRANSFER_WRITE_BIT : VK_ACCESS_2_NONE;
    barrier.oldLayout = before ? VK_IMAGE_LAYOUT_UNDEFINED : VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL;
    barrier.newLayout =
            before ? VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL : VK_IMAGE_LAYOUT_PRESENT_SRC_KHR;
    barrier.srcQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    barrier.image = image;
    barrier.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    auto info = vulkan::vkInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.imageMemoryBarrierCount = 1;
    info.pImageMemoryBarriers = &barrier;
    vkCmdPipelineBarrier2(commands, &info);
}

} // namespace

vlCommon::Result<std::unique_ptr<Presenter>> WindowPresenter::create(PresentSurface& surface) {
    const Device& device = *Device::getInstance();
    if (!device.choice().hasSwapchain)
        return vlCommon::fail(fmt::format("'{}' cannot present to windows",
                                          device.choice().properties.deviceName));
    xcb_connection_t* connection = XcbConnection::getInstance()->get();
    if (connection == nullptr) return vlCommon::fail("Could not present: there is no X server");
    auto info = vulkan::vkInfo<VkXcbSurfaceCreateInfoKHR>(
            VK_STRUCTURE_TYPE_XCB_SURFACE_CREATE_INFO_KHR);
    info.connection = connection;
    info.window = surface.getWindow();
    VkSurfaceKHR made = VK_NULL_HANDLE;
    VkResult result = vkCreateXcbSurfaceKHR(device.instance(), &info, nullptr, &made);
    if (result != VK_SUCCESS) return tl::unexpected(check(result, "Could not present").error());
    std::unique_ptr<WindowPresenter> presenter(new WindowPresenter(made));
    VkBool32 supported = VK_FALSE;
    result = vkGetPhysicalDeviceSurfaceSupportKHR(
            device.physical(), device.queueFamily(), made, &supported);
    if (result != VK_SUCCESS || supported == VK_FALSE)
        return vlCommon::fail(fmt::format("'{}' cannot present to window {}",
                                          device.choice().properties.deviceName,
                                          surface.getWindow()));
    return presenter;
}

WindowPresenter::~WindowPresenter() {
    swapchain_.reset();
    vkDestroySurfaceKHR(Device::getInstance()->instance(), surface_, nullptr);
    XcbConnection::getInstance()->drain();
}

void WindowPresenter::giveUp(std::string_view why) {
    if (!abandoned_) logLine(why);
    abandoned_ = true;
    swapchain_.reset();
}

bool WindowPresenter::prepareSwapchain(VkExtent2D wished) {
    if (swapchain_ && differs_ && !stale_) {
        VkSurfaceCapabilitiesKHR now{};
        const VkResult result = vkGetPhysicalDeviceSurfaceCapabilitiesKHR(
                Device::getInstance()->physical(), surface_, &now);
        differs_ = false;
        stale_ = result != VK_SUCCESS || !equal(now.currentExtent, swapchain_->extent());
    }
    if (swapchain_ && !stale_) return true;
    auto made = Swapchain::create(
            surface_, wished, swapchain_ ? swapchain_->get() : VkSwapchainKHR{VK_NULL_HANDLE});
    if (!made) {
        giveUp(made.error().message);
        return false;
    }
    swapchain_ = *std::move(made);
    stale_ = false;
    differs_ = false;
    return swapchain_ != nullptr;
}

void WindowPresenter::noteResult(VkResult result) {
    if (result == VK_SUBOPTIMAL_KHR) differs_ = true;
    if (result == VK_ERROR_OUT_OF_DATE_KHR) stale_ = true;
    if (result == VK_ERROR_SURFACE_LOST_KHR) giveUp("Could not present: the window is gone");
}

void WindowPresenter::record(VkCommandBuffer commands, GpuImage& backBuffer, Sync& sync) {
    acquired_ = {};
    XcbConnection::getInstance()->drain();
    if (abandoned_) return;
    if (swapchain_ && !equal(swapchain_->extent(), backBuffer.extent())) differs_ = true;
    // A window that changed between two calls gets one more try; then the frame stays unseen.
    for (int attempt = 0; attempt < 2 && acquired_.image == VK_NULL_HANDLE; ++attempt) {
        if (!prepareSwapchain(backBuffer.extent())) return;
        acquired_ = swapchain_->acquire();
        noteResult(acquired_.result);
        if (abandoned_ || acquired_.result == VK_TIMEOUT) return;
    }
    if (acquired_.image == VK_NULL_HANDLE) return;
    copy(commands, backBuffer);
    sync.waits.push_back(semaphoreInfo(acquired_.available));
    sync.signals.push_back(semaphoreInfo(acquired_.rendered));
}

void WindowPresenter::copy(VkCommandBuffer commands, GpuImage& backBuffer) const {
    backBuffer.become(commands, ImageUse::transferSource);
    presentBarrier(commands, acquired_.image, true);
    const VkImageLayout from = layoutOf(ImageUse::transferSource);
    const VkImageLayout to = layoutOf(ImageUse::transferTarget);
    const VkImageSubresourceLayers whole{VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
    if (swapchain_->takesCopies() && equal(swapchain_->extent(), backBuffer.extent())) {
        const VkImageCopy region{whole,
                                 {0, 0, 0},
                                 whole,
                                 {0, 0, 0},
                                 {backBuffer.extent().width, backBuffer.extent().height, 1}};
        vkCmdCopyImage(commands, backBuffer.get(), from, acquired_.image, to, 1, &region);
    } else {
        const VkImageBlit region{whole,
                                 {{0, 0, 0}, cornerOf(backBuffer.extent())},
                                 whole,
                                 {{0, 0, 0}, cornerOf(swapchain_->extent())}};
        vkCmdBlitImage(commands,
                       backBuffer.get(),
                       from,
                       acquired_.image,
                       to,
                       1,
                       &region,
                       VK_FILTER_LINEAR);
    }
    presentBarrier(commands, acquired_.image, false);
}

void WindowPresenter::submitted(std::uint64_t value) {
    if (acquired_.image == VK_NULL_HANDLE || !swapchain_) return;
    swapchain_->noteWaited(value);
    const VkSwapchainKHR swapchain = swapchain_->get();
    auto info = vulkan::vkInfo<VkPresentInfoKHR>(VK_STRUCTURE_TYPE_PRESENT_INFO_KHR);
    info.waitSemaphoreCount = 1;
    info.pWaitSemaphores = &acquired_.rendered;
    info.swapchainCount = 1;
    info.pSwapchains = &swapchain;
    info.pImageIndices = &acquired_.index;
    Device& device = *Device::getInstance();
    acquired_.image = VK_NULL_HANDLE;
    noteResult(device.note(vkQueuePresentKHR(device.queue(), &info)));
}

} // namespace vlGraphics::vulkan
