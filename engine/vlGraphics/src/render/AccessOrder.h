#pragma once
#include "vulkan/Vk.h"

namespace vlGraphics::render {

/// What a draw or a dispatch does with buffers and with textures that it writes.
struct BufferAccess {
    bool reads = false;
    bool writes = false;
};

/** Orders draws and dispatches that write buffers after those that used them before, and before
 * those that use them next. Knows of all buffers together: those that write are few. */
class AccessOrder {
public:
    bool needsBarrier(BufferAccess next) const {
        return (open_.writes && (next.reads || next.writes)) || (open_.reads && next.writes);
    }
    /// Not inside a rendering.
    void recordBarrier(VkCommandBuffer commands);
    /// Commands with that access are recorded now.
    void note(BufferAccess access) {
        open_.reads |= access.reads;
        open_.writes |= access.writes;
    }

private:
    BufferAccess open_; ///< since the last barrier; goes on from frame to frame
};

} // namespace vlGraphics::render
