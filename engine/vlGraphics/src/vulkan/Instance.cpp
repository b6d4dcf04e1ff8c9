#include "vulkan/Instance.h"

#include "vulkan/VkText.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

namespace vlGraphics::vulkan {
namespace {

constexpr const char* validationLayer = "VK_LAYER_KHRONOS_validation";

/// The layer leaks what it notes of each command buffer for it, which would drown our own leaks.
#ifdef VL_SANITIZE_ADDRESS
constexpr bool synchronizationIsChecked = false;
#else
constexpr bool synchronizationIsChecked = true;
#endif

std::atomic<std::uint64_t>& messageCount() {
    static std::atomic<std::uint64_t> count{0};
    return count;
}

VKAPI_ATTR VkBool32 VKAPI_CALL onMessage(VkDebugUtilsMessageSeverityFlagBitsEXT severity,
                                         VkDebugUtilsMessageTypeFlagsEXT,
                                         const VkDebugUtilsMessengerCallbackDataEXT* data,
                                         void*) {
    messageCount().fetch_add(1, std::memory_order_relaxed);
    const bool isError = (severity & VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT) != 0;
    std::string text = data->pMessage != nullptr ? data->pMessage : "";
    std::replace(text.begin(), text.end(), '\n', ' ');
    logLine(fmt::format("Vulkan validation {}: {}", isError ? "error" : "warning", text));
    return VK_FALSE;
}

VkDebugUtilsMessengerCreateInfoEXT messengerInfo() {
    auto info = vulkan::vkInfo<VkDebugUtilsMessengerCreateInfoEXT>(
            VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT);
    info.messageSeverity = VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT |
                           VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT;
    info.messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT |
                       VK_DEBUG_UTILS_MESSAGE_TYPE_PERFORMANCE_BIT_EXT;
    info.pfnUserCallback = onMessage;
    return info;
}

/// Leak reports need the names of what leaked, so these stay loaded for good where they are made.
void pinLibraries() {
#ifdef VL_SANITIZE_ADDRESS
    for (const char* name :
         {"libvulkan.so.1", "libvulkan_lvp.so", "libVkLayer_khronos_validation.so"})
        dlopen(name, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
#endif
}

bool hasLayer(const char* name) {
    std::uint32_t count = 0;
    vkEnumerateInstanceLayerProperties(&count, nullptr);
    std::vector<VkLayerProperties> layers(count);
    vkEnumerateInstanceLayerProperties(&count, layers.data());
    return std::any_of(layers.begin(), layers.end(), [name](const VkLayerProperties& layer) {
        return std::strcmp(layer.layerName, name) == 0;
    });
}

bool hasExtension(const char* layer, const char* name) {
    std::uint32_t count = 0;
    if (vkEnumerateInstanceExtensionProperties(layer, &count, nullptr) != VK_SUCCESS) return false;
    std::vector<VkExtensionProperties> extensions(count);
    vkEnumerateInstanceExtensionProperties(layer, &count, extensions.data());
    return std::any_of(
            extensions.begin(), extensions.end(), [name](const VkExtensionProperties& extension) {
                return std::strcmp(extension.extensionName, name) == 0;
            });
}

using Made = vlCommon::Result<std::unique_ptr<Instance>>;

/** What was begun before it was asked for. */
struct Ahead {
    ~Ahead() { static_cast<void>(take()); }
    Made take() {
        if (thread.joinable()) thread.join();
        return std::exchange(made, nullptr);
    }

    Made made = nullptr;
    std::thread thread;
};

Ahead& ahead() {
    static Ahead begun;
    return begun;
}

constexpr const char* noDriver =
        "No Vulkan driver was found: install one for the graphics card, or a software driver such "
        "as mesa-vulkan-drivers.";

vlCommon::Result<> refuse(VkResult result) {
    if (result == VK_ERROR_INCOMPATIBLE_DRIVER || result == VK_ERROR_INITIALIZATION_FAILED)
        return vlCommon::fail(noDriver);
    return check(result, "Could not start Vulkan");
}

} // namespace

vlCommon::Result<std::unique_ptr<Instance>> Instance::create(bool validation, bool presenting) {
    Made begun = ahead().take();
    const bool fits = begun && *begun && !validation;
    return fits ? std::move(begun) : make(validation, presenting);
}

void Instance::createAhead(bool presenting) {
    if (ahead().thread.joinable()) return;
    ahead().thread = std::thread([presenting] { ahead().made = make(false, presenting); });
}

void Instance::dropAhead() {
    static_cast<void>(ahead().take());
}

vlCommon::Result<std::unique_ptr<Instance>> Instance::make(bool validation, bool presenting) {
    pinLibraries();
    if (volkInitialize() != VK_SUCCESS)
        return vlCommon::fail("No Vulkan loader was found: install libvulkan1.");
    if (volkGetInstanceVersion() < VK_API_VERSION_1_3)
        return vlCommon::fail("The Vulkan loader is too old: version 1.3 is needed.");
    if (validation && !hasLayer(validationLayer))
        return vlCommon::fail("Vulkan validation was asked for, but its layer is not installed: "
                              "install vulkan-validationlayers.");

    std::unique_ptr<Instance> made(new Instance);
    std::vector<const char*> extensions;
    if (presenting) extensions = {VK_KHR_SURFACE_EXTENSION_NAME, VK_KHR_XCB_SURFACE_EXTENSION_NAME};
    made->presents_ = presenting;
    const bool syncValidation =
            validation && synchronizationIsChecked &&
            hasExtension(validationLayer, VK_EXT_VALIDATION_FEATURES_EXTENSION_NAME);
    if (validation) extensions.push_back(VK_EXT_DEBUG_UTILS_EXTENSION_NAME);
    if (syncValidation) extensions.push_back(VK_EXT_VALIDATION_FEATURES_EXTENSION_NAME);

    auto application = vulkan::vkInfo<VkApplicationInfo>(VK_STRUCTURE_TYPE_APPLICATION_INFO);
    application.pEngineName = "Vorlane";
    application.apiVersion = VK_API_VERSION_1_3;
    const VkDebugUtilsMessengerCreateInfoEXT messenger = messengerInfo();
    const VkValidationFeatureEnableEXT enable =
            VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT;
    auto features =
            vulkan::vkInfo<VkValidationFeaturesEXT>(VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT);
    features.pNext = &messenger;
    features.enabledValidationFeatureCount = 1;
    features.pEnabledValidationFeatures = &enable;

    auto info = vulkan::vkInfo<VkInstanceCreateInfo>(VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO);
    info.pApplicationInfo = &application;
    if (validation) info.pNext = &messenger;
    if (syncValidation) info.pNext = &features;
    info.enabledLayerCount = validation ? 1 : 0;
    info.ppEnabledLayerNames = &validationLayer;
    info.enabledExtensionCount = static_cast<std::uint32_t>(extensions.size());
    info.ppEnabledExtensionNames = extensions.data();
    VkResult result = vkCreateInstance(&info, nullptr, &made->instance_);
    // Not asked beforehand: every question about instances loads and unloads all drivers.
    if (result == VK_ERROR_EXTENSION_NOT_PRESENT && presenting) {
        made->presents_ = false;
        extensions.erase(extensions.begin(), extensions.begin() + 2);
        info.enabledExtensionCount = static_cast<std::uint32_t>(extensions.size());
        info.ppEnabledExtensionNames = extensions.data();
        result = vkCreateInstance(&info, nullptr, &made->instance_);
    }
    if (result != VK_SUCCESS) {
        made->instance_ = VK_NULL_HANDLE;
        return tl::unexpected(refuse(result).error());
    }
    volkLoadInstanceOnly(made->instance_);
    if (validation)
        vkCreateDebugUtilsMessengerEXT(made->instance_, &messenger, nullptr, &made->messenger_);
    return made;
}

Instance::~Instance() {
    if (messenger_ != VK_NULL_HANDLE)
        vkDestroyDebugUtilsMessengerEXT(instance_, messenger_, nullptr);
    if (instance_ != VK_NULL_HANDLE) vkDestroyInstance(instance_, nullptr);
}

std::uint64_t Instance::validationMessageCount() {
    return messageCount().load(std::memory_order_relaxed);
}

} // namespace vlGraphics::vulkan
