#include "vulkan/Swapchain.h"

#include "vulkan/Device.h"
#include "vulkan/VkText.h"

#include <algorithm>
#include <array>

namespace vlGraphics::vulkan {
namespace {

/// Long enough for a display's slowest rate, short enough that a stuck window only costs frames.
constexpr std::uint64_t acquireTimeout = 100'000'000; // nanoseconds

constexpr std::uint32_t unboundedExtent = 0xFFFFFFFF;

std::optional<VkSurfaceFormatKHR> chooseFormat(VkSurfaceKHR surface) {
    const VkPhysicalDevice device = Device::getInstance()->physical();
    std::uint32_t count = 0;
    vkGetPhysicalDeviceSurfaceFormatsKHR(device, surface, &count, nullptr);
    std::vector<VkSurfaceFormatKHR> formats(count);
    vkGetPhysicalDeviceSurfaceFormatsKHR(device, surface, &count, formats.data());
    // Bytes are copied as they are, so a format that would encode them anew is no choice for blits.
    for (const VkFormat wanted :
         {VK_FORMAT_B8G8R8A8_UNORM, VK_FORMAT_B8G8R8A8_SRGB, VK_FORMAT_R8G8B8A8_UNORM}) {
        const auto found =
                std::find_if(formats.begin(), formats.end(), [wanted](VkSurfaceFormatKHR format) {
                    return format.format == wanted &&
                           format.colorSpace == VK_COLOR_SPACE_SRGB_NONLINEAR_KHR;
                });
        if (found != formats.end()) return *found;
    }
    return std::nullopt;
}

/// Frames are capped by who draws them; waiting for the display would stop the other windows too.
VkPresentModeKHR chooseMode(VkSurfaceKHR surface) {
    const VkPhysicalDevice device = Device::getInstance()->physical();
    std::uint32_t count = 0;
    vkGetPhysicalDeviceSurfacePresentModesKHR(device, surface, &count, nullptr);
    std::vector<VkPresentModeKHR> modes(count);
    vkGetPhysicalDeviceSurfacePresentModesKHR(device, surface, &count, modes.data());
    const bool mailbox =
            std::find(modes.begin(), modes.end(), VK_PRESENT_MODE_MAILBOX_KHR) != modes.end();
    return mailbox ? VK_PRESENT_MODE_MAILBOX_KHR : VK_PRESENT_MODE_FIFO_KHR;
}

VkCompositeAlphaFlagBitsKHR chooseAlpha(VkCompositeAlphaFlagsKHR supported) {
    for (const VkCompositeAlphaFlagBitsKHR alpha : {VK_COMPOSITE_ALPHA_OPAQUE_BIT_KHR,
                                                    VK_COMPOSITE_ALPHA_INHERIT_BIT_KHR,
                                                    VK_COMPOSITE_ALPHA_PRE_MULTIPLIED_BIT_KHR})
        if ((supported & VkCompositeAlphaFlagsKHR{alpha}) != 0) return alpha;
    return VK_COMPOSITE_ALPHA_POST_MULTIPLIED_BIT_KHR;
}

VkSemaphore makeSemaphore() {
    const auto info =
            vulkan::vkInfo<VkSemaphoreCreateInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO);
    VkSemaphore semaphore = VK_NULL_HANDLE;
    vkCreateSemaphore(Device::getInstance()->get(), &info, nullptr, &semaphore);
    return semaphore;
}

VkSwapchainCreateInfoKHR swapchainInfo(VkSurfaceKHR surface,
                                       const VkSurfaceCapabilitiesKHR& capabilities) {
    auto info =
            vulkan::vkInfo<VkSwapchainCreateInfoKHR>(VK_STRUCTURE_TYPE_SWAPCHAIN_CREATE_INFO_KHR);
    info.surface = surface;
    info.minImageCount = std::max(3U, capabilities.minImageCount);
    if (capabilities.maxImageCount != 0)
        info.minImageCount = std::min(info.minImageCount, capabilities.maxImageCount);
    info.imageArrayLayers = 1;
    info.imageUsage = VK_IMAGE_USAGE_TRANSFER_DST_BIT;
    info.imageSharingMode = VK_SHARING_MODE_EXCLUSIVE;
    info.preTransform = capabilities.currentTransform;
    info.compositeAlpha = chooseAlpha(capabilities.supportedCompositeAlpha);
    info.presentMode = chooseMode(surface);
    info.clipped = VK_TRUE;
    return info;
}

} // namespace

vlCommon::Result<std::unique_ptr<Swapchain>>
Swapchain::create(VkSurfaceKHR surface, VkExtent2D wished, VkSwapchainKHR old) {
    Device& device = *Device::getInstance();
    VkSurfaceCapabilitiesKHR capabilities{};
    VkResult result =
            vkGetPhysicalDeviceSurfaceCapabilitiesKHR(device.physical(), surface, &capabilities);
    if (result != VK_SUCCESS)
        return tl::unexpected(check(device.note(result), "Could not present").error());
    const bool open = capabilities.currentExtent.width == unboundedExtent;
    const VkExtent2D extent = open ? wished : capabilities.currentExtent;
    if (extent.width == 0 || extent.height == 0) return nullptr;
    const auto format = chooseFormat(surface);
    if (!format || (capabilities.supportedUsageFlags & VK_IMAGE_USAGE_TRANSFER_DST_BIT) == 0)
        return vlCommon::fail("Could not present: the window takes no 8-bit colours");

    std::unique_ptr<Swapchain> made(new Swapchain);
    made->extent_ = extent;
    made->takesCopies_ = format->format != VK_FORMAT_R8G8B8A8_UNORM;
    VkSwapchainCreateInfoKHR info = swapchainInfo(surface, capabilities);
    info.imageFormat = format->format;
    info.imageColorSpace = format->colorSpace;
    info.imageExtent = extent;
    info.oldSwapchain = old;
    result = vkCreateSwapchainKHR(device.get(), &info, nullptr, &made->swapchain_);
    if (result != VK_SUCCESS)
        return tl::unexpected(check(device.note(result), "Could not present").error());

    std::uint32_t count = 0;
    vkGetSwapchainImagesKHR(device.get(), made->swapchain_, &count, nullptr);
    made->images_.resize(count);
    vkGetSwapchainImagesKHR(device.get(), made->swapchain_, &count, made->images_.data());
    for (std::uint32_t i = 0; i < count; ++i)
        made->rendered_.push_back(makeSemaphore());
    return made;
}

Swapchain::~Swapchain() {
    Device& device = *Device::getInstance();
    // Presenting is not on the timeline.
    device.waitIdle();
    for (VkSemaphore semaphore : rendered_)
        vkDestroySemaphore(device.get(), semaphore, nullptr);
    for (const Available& available : available_)
        vkDestroySemaphore(device.get(), available.semaphore, nullptr);
    if (swapchain_ != VK_NULL_HANDLE) vkDestroySwapchainKHR(device.get(), swapchain_, nullptr);
}

Swapchain::Available* Swapchain::freeSemaphore() {
    const std::uint64_t completed = Device::getInstance()->completed();
    auto found = std::find_if(available_.begin(), available_.end(), [completed](const auto& one) {
        return one.value <= completed;
    });
    if (found == available_.end()) {
        const VkSemaphore semaphore = makeSemaphore();
        if (semaphore == VK_NULL_HANDLE) return nullptr;
        available_.push_back({semaphore, 0});
        found = available_.end() - 1;
    }
    lastAvailable_ = static_cast<std::size_t>(found - available_.begin());
    return &*found;
}

Swapchain::Acquired Swapchain::acquire() {
    Acquired acquired;
    const Available* available = freeSemaphore();
    if (available == nullptr) return acquired;
    Device& device = *Device::getInstance();
    acquired.available = available->semaphore;
    acquired.result = device.note(vkAcquireNextImageKHR(device.get(),
                                                        swapchain_,
                                                        acquireTimeout,
                                                        available->semaphore,
                                                        VK_NULL_HANDLE,
                                                        &acquired.index));
    if (acquired.result == VK_SUCCESS || acquired.result == VK_SUBOPTIMAL_KHR) {
        acquired.image = images_[acquired.index];
        acquired.rendered = rendered_[acquired.index];
    }
    return acquired;
}

void Swapchain::noteWaited(std::uint64_t value) {
    available_[lastAvailable_].value = value;
}

} // namespace vlGraphics::vulkan
