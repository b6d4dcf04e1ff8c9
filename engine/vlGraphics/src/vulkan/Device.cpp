#include "vulkan/Device.h"

#include "vulkan/Upload.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cassert>
#include <utility>
#include <vector>

namespace vlGraphics::vulkan {

vlCommon::Result<std::unique_ptr<Device>> Device::create(const Instance& instance) {
    vlCommon::Result<DeviceChoice> choice = chooseDevice(instance.get());
    if (!choice) return tl::unexpected(choice.error());
    std::unique_ptr<Device> made(new Device);
    made->instance_ = instance.get();
    made->choice_ = *std::move(choice);
    if (!instance.canPresent()) made->choice_.hasSwapchain = false;
    if (auto done = made->createDevice(); !done) return tl::unexpected(done.error());
    if (auto done = made->createAllocator(); !done) return tl::unexpected(done.error());
    if (auto done = made->createTimeline(); !done) return tl::unexpected(done.error());
    made->upload_ = std::make_unique<Upload>(*made);
    return made;
}

vlCommon::Result<> Device::createDevice() {
    auto features13 = vulkan::vkInfo<VkPhysicalDeviceVulkan13Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES);
    features13.dynamicRendering = VK_TRUE;
    features13.synchronization2 = VK_TRUE;
    // A pixel stage may read less than the vertex stage writes.
    features13.maintenance4 = VK_TRUE;
    auto features12 = vulkan::vkInfo<VkPhysicalDeviceVulkan12Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES);
    features12.pNext = &features13;
    features12.timelineSemaphore = VK_TRUE;
    features12.samplerMirrorClampToEdge = choice_.hasMirrorClamp ? VK_TRUE : VK_FALSE;
    auto border = vulkan::vkInfo<VkPhysicalDeviceCustomBorderColorFeaturesEXT>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_CUSTOM_BORDER_COLOR_FEATURES_EXT);
    border.customBorderColors = VK_TRUE;
    border.customBorderColorWithoutFormat = VK_TRUE;

    auto lines = vulkan::vkInfo<VkPhysicalDeviceLineRasterizationFeaturesEXT>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_LINE_RASTERIZATION_FEATURES_EXT);
    lines.smoothLines = VK_TRUE;

    std::vector<const char*> extensions;
    if (choice_.hasSwapchain) extensions.push_back(VK_KHR_SWAPCHAIN_EXTENSION_NAME);
    if (choice_.hasCustomBorderColors) {
        extensions.push_back(VK_EXT_CUSTOM_BORDER_COLOR_EXTENSION_NAME);
        features13.pNext = &border;
    }
    if (choice_.hasSmoothLines) {
        extensions.push_back(VK_EXT_LINE_RASTERIZATION_EXTENSION_NAME);
        lines.pNext = features13.pNext;
        features13.pNext = &lines;
    }

    const float priority = 1;
    auto queue =
            vulkan::vkInfo<VkDeviceQueueCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO);
    queue.queueFamilyIndex = choice_.queueFamily;
    queue.queueCount = 1;
    queue.pQueuePriorities = &priority;
    auto info = vulkan::vkInfo<VkDeviceCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO);
    info.pNext = &features12;
    info.queueCreateInfoCount = 1;
    info.pQueueCreateInfos = &queue;
    info.enabledExtensionCount = static_cast<std::uint32_t>(extensions.size());
    info.ppEnabledExtensionNames = extensions.data();
    info.pEnabledFeatures = &choice_.features;
    const VkResult result = vkCreateDevice(choice_.device, &info, nullptr, &device_);
    if (result != VK_SUCCESS)
        return check(result, fmt::format("Could not start '{}'", choice_.properties.deviceName));
    volkLoadDevice(device_);
    vkGetDeviceQueue(device_, choice_.queueFamily, 0, &queue_);
    return {};
}

vlCommon::Result<> Device::createAllocator() {
    VmaVulkanFunctions functions{};
    functions.vkGetInstanceProcAddr = vkGetInstanceProcAddr;
    functions.vkGetDeviceProcAddr = vkGetDeviceProcAddr;
    VmaAllocatorCreateInfo info{};
    info.flags = VMA_ALLOCATOR_CREATE_EXTERNALLY_SYNCHRONIZED_BIT;
    info.instance = instance_;
    info.physicalDevice = choice_.device;
    info.device = device_;
    info.pVulkanFunctions = &functions;
    info.vulkanApiVersion = VK_API_VERSION_1_3;
    info.preferredLargeHeapBlockSize = VkDeviceSize{32} << 20U;
    return check(vmaCreateAllocator(&info, &allocator_), "Could not make the device's memory pool");
}

vlCommon::Result<> Device::createTimeline() {
    auto type =
            vulkan::vkInfo<VkSemaphoreTypeCreateInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_TYPE_CREATE_INFO);
    type.semaphoreType = VK_SEMAPHORE_TYPE_TIMELINE;
    auto info = vulkan::vkInfo<VkSemaphoreCreateInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO);
    info.pNext = &type;
    return check(vkCreateSemaphore(device_, &info, nullptr, &timeline_),
                 "Could not make the device's timeline");
}

Device::~Device() {
    if (device_ == VK_NULL_HANDLE) return;
    upload_.reset();
    vkDeviceWaitIdle(device_);
    retired_.collect(device_, allocator_, UINT64_MAX);
    if (timeline_ != VK_NULL_HANDLE) vkDestroySemaphore(device_, timeline_, nullptr);
    if (allocator_ != VK_NULL_HANDLE) {
        VmaTotalStatistics statistics{};
        vmaCalculateStatistics(allocator_, &statistics);
        assert(statistics.total.statistics.allocationCount == 0);
        vmaDestroyAllocator(allocator_);
    }
    vkDestroyDevice(device_, nullptr);
}

VkResult Device::note(VkResult result) {
    if (result == VK_ERROR_DEVICE_LOST && !lost_) {
        lost_ = true;
        logLine(fmt::format("The graphics device '{}' was lost: nothing more is drawn until the "
                            "program is started again.",
                            choice_.properties.deviceName));
    }
    return result;
}

void Device::logOnce(const std::string& line) {
    constexpr std::size_t mostKept = 1024;
    if (logged_.size() >= mostKept) logged_.clear();
    if (logged_.insert(line).second) logLine(line);
}

VkResult Device::submit(std::span<const VkCommandBuffer> commands,
                        std::span<const VkSemaphoreSubmitInfo> waits,
                        std::span<const VkSemaphoreSubmitInfo> signals) {
    if (lost_) return VK_ERROR_DEVICE_LOST;
    std::vector<VkCommandBufferSubmitInfo> buffers(commands.size());
    for (std::size_t i = 0; i < commands.size(); ++i)
        buffers[i] = {VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO, nullptr, commands[i], 0};
    std::vector<VkSemaphoreSubmitInfo> allSignals(signals.begin(), signals.end());
    auto time = vulkan::vkInfo<VkSemaphoreSubmitInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO);
    time.semaphore = timeline_;
    time.value = submitted_ + 1;
    time.stageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT;
    allSignals.push_back(time);

    auto info = vulkan::vkInfo<VkSubmitInfo2>(VK_STRUCTURE_TYPE_SUBMIT_INFO_2);
    info.waitSemaphoreInfoCount = static_cast<std::uint32_t>(waits.size());
    info.pWaitSemaphoreInfos = waits.data();
    info.commandBufferInfoCount = static_cast<std::uint32_t>(buffers.size());
    info.pCommandBufferInfos = buffers.data();
    info.signalSemaphoreInfoCount = static_cast<std::uint32_t>(allSignals.size());
    info.pSignalSemaphoreInfos = allSignals.data();
    const VkResult result = note(vkQueueSubmit2(queue_, 1, &info, VK_NULL_HANDLE));
    if (result == VK_SUCCESS) ++submitted_;
    return result;
}

std::uint64_t Device::completed() const {
    if (lost_) return UINT64_MAX;
    std::uint64_t value = 0;
    const VkResult result = vkGetSemaphoreCounterValue(device_, timeline_, &value);
    return result == VK_SUCCESS ? value : 0;
}

bool Device::waitFor(std::uint64_t value, std::uint64_t timeout) {
    if (lost_ || value == 0) return true;
    auto info = vulkan::vkInfo<VkSemaphoreWaitInfo>(VK_STRUCTURE_TYPE_SEMAPHORE_WAIT_INFO);
    info.semaphoreCount = 1;
    info.pSemaphores = &timeline_;
    info.pValues = &value;
    for (;;) {
        const std::uint64_t part = std::min(timeout, patience_);
        if (note(vkWaitSemaphores(device_, &info, part)) != VK_TIMEOUT) return true;
        if (timeout != UINT64_MAX) timeout -= part;
        if (timeout == 0) return false;
        if (slow_) slow_();
    }
}

void Device::setPatience(std::uint64_t milliseconds, std::function<void()> slow) {
    constexpr std::uint64_t nanosecondsPerMs = 1'000'000;
    patience_ = slow && milliseconds > 0 ? milliseconds * nanosecondsPerMs : UINT64_MAX;
    slow_ = std::move(slow);
}

void Device::waitIdle() {
    waitFor(submitted_);
    if (!lost_) note(vkDeviceWaitIdle(device_));
}

void Device::collect() {
    if (!retired_.empty()) retired_.collect(device_, allocator_, completed());
}

} // namespace vlGraphics::vulkan
