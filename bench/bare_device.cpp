#include "bare_device.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace bench {

void failBare(const char* what) {
    std::fprintf(stderr, "bare Vulkan: %s failed\n", what);
    std::exit(1);
}

void expectBare(VkResult result, const char* what) {
    if (result != VK_SUCCESS) failBare(what);
}

namespace {

/// From an instance of its own: the engine in the same program keeps the global functions.
template <class Function> Function load(VkInstance instance, const char* name) {
    const PFN_vkVoidFunction function = vkGetInstanceProcAddr(instance, name);
    if (function == nullptr) failBare(name);
    return reinterpret_cast<Function>(function);
}

} // namespace

BareDevice::BareDevice(std::string_view name) {
    expectBare(volkInitialize(), "finding the Vulkan loader");
    auto application = makeInfo<VkApplicationInfo>(VK_STRUCTURE_TYPE_APPLICATION_INFO);
    application.apiVersion = VK_API_VERSION_1_3;
    auto instance = makeInfo<VkInstanceCreateInfo>(VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO);
    instance.pApplicationInfo = &application;
    expectBare(vkCreateInstance(&instance, nullptr, &instance_), "vkCreateInstance");
    destroyInstance_ = load<PFN_vkDestroyInstance>(instance_, "vkDestroyInstance");
    const VkPhysicalDevice physical = findDevice(name);
    load<PFN_vkGetPhysicalDeviceMemoryProperties>(instance_, "vkGetPhysicalDeviceMemoryProperties")(
            physical, &memories_);

    auto features = makeInfo<VkPhysicalDeviceVulkan13Features>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES);
    features.dynamicRendering = VK_TRUE;
    features.synchronization2 = VK_TRUE;
    features.maintenance4 = VK_TRUE;
    const float priority = 1;
    auto queue = makeInfo<VkDeviceQueueCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO);
    queue.queueCount = 1; // of family 0, which draws on every desktop driver
    queue.pQueuePriorities = &priority;
    auto device = makeInfo<VkDeviceCreateInfo>(VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO);
    device.pNext = &features;
    device.queueCreateInfoCount = 1;
    device.pQueueCreateInfos = &queue;
    expectBare(load<PFN_vkCreateDevice>(instance_,
                                        "vkCreateDevice")(physical, &device, nullptr, &device_),
               "vkCreateDevice");
    // volk's table is filled through the global function, which the engine may have set already.
    vkGetDeviceProcAddr = load<PFN_vkGetDeviceProcAddr>(instance_, "vkGetDeviceProcAddr");
    volkLoadDeviceTable(&vk_, device_);
    vk_.vkGetDeviceQueue(device_, 0, 0, &queue_);
}

BareDevice::~BareDevice() {
    vk_.vkDestroyDevice(device_, nullptr);
    destroyInstance_(instance_, nullptr);
}

VkPhysicalDevice BareDevice::findDevice(std::string_view name) const {
    const auto enumerate =
            load<PFN_vkEnumeratePhysicalDevices>(instance_, "vkEnumeratePhysicalDevices");
    const auto properties =
            load<PFN_vkGetPhysicalDeviceProperties>(instance_, "vkGetPhysicalDeviceProperties");
    std::uint32_t count = 0;
    expectBare(enumerate(instance_, &count, nullptr), "vkEnumeratePhysicalDevices");
    std::vector<VkPhysicalDevice> devices(count);
    expectBare(enumerate(instance_, &count, devices.data()), "vkEnumeratePhysicalDevices");
    for (const VkPhysicalDevice device : devices) {
        VkPhysicalDeviceProperties one{};
        properties(device, &one);
        if (name.starts_with(one.deviceName)) return device;
    }
    failBare("finding the engine's device");
}

VkDeviceMemory BareDevice::allocate(const VkMemoryRequirements& needs,
                                    VkMemoryPropertyFlags wanted) const {
    for (std::uint32_t type = 0; type < memories_.memoryTypeCount; ++type) {
        const bool fits = (needs.memoryTypeBits >> type & 1U) != 0 &&
                          (memories_.memoryTypes[type].propertyFlags & wanted) == wanted;
        if (!fits) continue;
        auto info = makeInfo<VkMemoryAllocateInfo>(VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO);
        info.allocationSize = needs.size;
        info.memoryTypeIndex = type;
        VkDeviceMemory memory = VK_NULL_HANDLE;
        expectBare(vk_.vkAllocateMemory(device_, &info, nullptr, &memory), "vkAllocateMemory");
        return memory;
    }
    failBare("finding memory");
}

BareBuffer BareDevice::createBuffer(VkDeviceSize size, VkBufferUsageFlags usage) const {
    auto info = makeInfo<VkBufferCreateInfo>(VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO);
    info.size = size;
    info.usage = usage;
    BareBuffer made;
    expectBare(vk_.vkCreateBuffer(device_, &info, nullptr, &made.buffer), "vkCreateBuffer");
    VkMemoryRequirements needs{};
    vk_.vkGetBufferMemoryRequirements(device_, made.buffer, &needs);
    made.memory = allocate(
            needs, VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    expectBare(vk_.vkBindBufferMemory(device_, made.buffer, made.memory, 0), "vkBindBufferMemory");
    void* mapped = nullptr;
    expectBare(vk_.vkMapMemory(device_, made.memory, 0, VK_WHOLE_SIZE, 0, &mapped), "vkMapMemory");
    made.mapped = static_cast<std::byte*>(mapped);
    return made;
}

BareImage BareDevice::createImage(VkFormat format,
                                  VkExtent2D extent,
                                  VkImageUsageFlags usage,
                                  VkImageAspectFlags aspect) const {
    auto info = makeInfo<VkImageCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO);
    info.imageType = VK_IMAGE_TYPE_2D;
    info.format = format;
    info.extent = {extent.width, extent.height, 1};
    info.mipLevels = info.arrayLayers = 1;
    info.samples = VK_SAMPLE_COUNT_1_BIT;
    info.usage = usage;
    BareImage made;
    expectBare(vk_.vkCreateImage(device_, &info, nullptr, &made.image), "vkCreateImage");
    VkMemoryRequirements needs{};
    vk_.vkGetImageMemoryRequirements(device_, made.image, &needs);
    made.memory = allocate(needs, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT);
    expectBare(vk_.vkBindImageMemory(device_, made.image, made.memory, 0), "vkBindImageMemory");
    auto view = makeInfo<VkImageViewCreateInfo>(VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO);
    view.image = made.image;
    view.viewType = VK_IMAGE_VIEW_TYPE_2D;
    view.format = format;
    view.subresourceRange = {aspect, 0, 1, 0, 1};
    expectBare(vk_.vkCreateImageView(device_, &view, nullptr, &made.view), "vkCreateImageView");
    return made;
}

VkShaderModule BareDevice::createModule(std::span<const std::uint32_t> spirv) const {
    auto info = makeInfo<VkShaderModuleCreateInfo>(VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO);
    info.codeSize = spirv.size_bytes();
    info.pCode = spirv.data();
    VkShaderModule module = VK_NULL_HANDLE;
    expectBare(vk_.vkCreateShaderModule(device_, &info, nullptr, &module), "vkCreateShaderModule");
    return module;
}

void BareDevice::destroy(const BareBuffer& buffer) const {
    vk_.vkDestroyBuffer(device_, buffer.buffer, nullptr);
    vk_.vkFreeMemory(device_, buffer.memory, nullptr);
}

void BareDevice::destroy(const BareImage& image) const {
    vk_.vkDestroyImageView(device_, image.view, nullptr);
    vk_.vkDestroyImage(device_, image.image, nullptr);
    vk_.vkFreeMemory(device_, image.memory, nullptr);
}

void BareDevice::barrier(VkCommandBuffer commands, const VkImageMemoryBarrier2& barrier) const {
    auto info = makeInfo<VkDependencyInfo>(VK_STRUCTURE_TYPE_DEPENDENCY_INFO);
    info.imageMemoryBarrierCount = 1;
    info.pImageMemoryBarriers = &barrier;
    vk_.vkCmdPipelineBarrier2(commands, &info);
}

void BareDevice::submit(VkCommandBuffer commands, VkFence fence) const {
    auto buffer = makeInfo<VkCommandBufferSubmitInfo>(VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO);
    buffer.commandBuffer = commands;
    auto info = makeInfo<VkSubmitInfo2>(VK_STRUCTURE_TYPE_SUBMIT_INFO_2);
    info.commandBufferInfoCount = 1;
    info.pCommandBufferInfos = &buffer;
    expectBare(vk_.vkQueueSubmit2(queue_, 1, &info, fence), "vkQueueSubmit2");
}

void BareDevice::waitIdle() const {
    expectBare(vk_.vkDeviceWaitIdle(device_), "vkDeviceWaitIdle");
}

} // namespace bench
