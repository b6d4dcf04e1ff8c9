#pragma once
#include "vulkan/Vk.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace vlGraphics::render {

/// What a draw or a dispatch does with a buffer, or with a texture that it writes.
struct ResourceAccess {
    const void* resource = nullptr; ///< the address tells it from others, and is not followed
    bool writes = false;
};

/** Orders draws and dispatches that write buffers after those that used the same ones before, and
 *  before those that use them next. Graphics thread only. */
class AccessOrder {
public:
    bool needsBarrier(const std::vector<ResourceAccess>& next) const;
    /// Orders all that came before. Not inside a rendering.
    void recordBarrier(VkCommandBuffer commands);
    /// Commands with that access are recorded now.
    void note(const std::vector<ResourceAccess>& accesses);
    std::uint64_t barrierCount() const { return barriers_; }

private:
    /// Since the last barrier, and whether it was written; goes on from frame to frame.
    std::unordered_map<const void*, bool> open_;
    std::uint64_t barriers_ = 0;
};

} // namespace vlGraphics::render
