#pragma once
#include "vulkan/DeviceChoice.h"
#include "vulkan/Instance.h"
#include "vulkan/RetireList.h"
#include "vulkan/Vma.h"

#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_set>

namespace vlGraphics::vulkan {

class Upload;

/** The device, its one queue, its memory and its time: every submission moves a timeline semaphore
 *  on by one, and what the device may still use is destroyed once the timeline has passed it.
 *  Graphics thread only. */
class Device final : public vlCommon::MaybeSingletonClass<Device> {
public:
    static vlCommon::Result<std::unique_ptr<Device>> create(const Instance& instance);
    /// Waits for the device and destroys what was retired; everything else must be gone before.
    ~Device();

    VkDevice get() const { return device_; }
    VkPhysicalDevice physical() const { return choice_.device; }
    VkInstance instance() const { return instance_; }
    VkQueue queue() const { return queue_; }
    std::uint32_t queueFamily() const { return choice_.queueFamily; }
    VmaAllocator allocator() const { return allocator_; }
    const DeviceChoice& choice() const { return choice_; }
    const VkPhysicalDeviceLimits& limits() const { return choice_.properties.limits; }
    const VkPhysicalDeviceFeatures& features() const { return choice_.features; }
    Upload& upload() const { return *upload_; }

    /// The result of a call that may lose the device. A loss is logged once; from then on nothing
    /// is submitted and no wait waits.
    VkResult note(VkResult result);
    bool isLost() const { return lost_; }
    /// One line to the log, the first time it comes; for faults that each frame meets again.
    void logOnce(const std::string& line);

    /// Submits, and moves the timeline on to the value that submitted() then gives.
    VkResult submit(std::span<const VkCommandBuffer> commands,
                    std::span<const VkSemaphoreSubmitInfo> waits,
                    std::span<const VkSemaphoreSubmitInfo> signals);
    std::uint64_t submitted() const { return submitted_; }
    std::uint64_t completed() const;
    /// False when the time (nanoseconds) is over first.
    bool waitFor(std::uint64_t value, std::uint64_t timeout = UINT64_MAX);
    /// Whenever a wait without an end, or a longer one, has lasted that long, `slow` is called; it
    /// may not wait itself.
    void setPatience(std::uint64_t milliseconds, std::function<void()> slow);
    /// Also waits for what presenting does with the queue.
    void waitIdle();

    /// Commands are being recorded that will be submitted later and may use what is retired now.
    void beginWork() { ++openWork_; }
    void endWork() { --openWork_; }

    /// From a frame's begin to its submission: images' uses are ahead of what was submitted.
    bool isRecordingFrame() const { return recordingFrame_; }
    void setRecordingFrame(bool value) { recordingFrame_ = value; }

    /// Destroys the handle (and frees its memory) once no submission can use it any more.
    template <class Handle> void retire(Handle handle, VmaAllocation allocation = VK_NULL_HANDLE) {
        if (handle == VK_NULL_HANDLE) return;
        retired_.add(submitted_ + openWork_, handle, allocation);
    }
    /// Destroys what the timeline has passed.
    void collect();

private:
    Device() = default;
    vlCommon::Result<> createDevice();
    vlCommon::Result<> createAllocator();
    vlCommon::Result<> createTimeline();

    VkInstance instance_ = VK_NULL_HANDLE;
    DeviceChoice choice_;
    VkDevice device_ = VK_NULL_HANDLE;
    VkQueue queue_ = VK_NULL_HANDLE;
    VmaAllocator allocator_ = VK_NULL_HANDLE;
    VkSemaphore timeline_ = VK_NULL_HANDLE;
    std::uint64_t submitted_ = 0;
    std::uint64_t openWork_ = 0;
    std::uint64_t patience_ = UINT64_MAX; ///< nanoseconds
    std::function<void()> slow_;
    bool lost_ = false;
    bool recordingFrame_ = false;
    RetireList retired_;
    std::unordered_set<std::string> logged_;
    std::unique_ptr<Upload> upload_;
};

} // namespace vlGraphics::vulkan
