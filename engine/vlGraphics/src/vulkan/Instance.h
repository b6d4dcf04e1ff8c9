#pragma once
#include "vulkan/Vk.h"

#include <vlCommon/Result.h>

#include <cstdint>
#include <memory>

namespace vlGraphics::vulkan {

/** The connection to the Vulkan loader, with the validation layers when they are asked for. Their
 *  warnings and errors are logged and counted, from any thread. */
class Instance {
public:
    /// Fails with one line when there is no loader, no driver, or validation is asked for and not
    /// installed.
    static vlCommon::Result<std::unique_ptr<Instance>> create(bool validation, bool presenting);
    /// Begins the same on a thread of its own; the next create() takes what came of it. Loading the
    /// drivers takes as long as starting a window system, and needs nothing of it.
    static void createAhead(bool presenting);
    /// Waits for what createAhead() has begun and drops it, if nobody took it.
    static void dropAhead();
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    VkInstance get() const { return instance_; }
    bool canPresent() const { return presents_; }
    bool isValidating() const { return messenger_ != VK_NULL_HANDLE; }

    /// Of all instances since the process started.
    static std::uint64_t validationMessageCount();

private:
    Instance() = default;
    static vlCommon::Result<std::unique_ptr<Instance>> make(bool validation, bool presenting);

    VkInstance instance_ = VK_NULL_HANDLE;
    VkDebugUtilsMessengerEXT messenger_ = VK_NULL_HANDLE;
    bool presents_ = false;
};

} // namespace vlGraphics::vulkan
