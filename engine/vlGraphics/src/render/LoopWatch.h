#pragma once
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Handle.h>

#include <cstdint>
#include <vector>

namespace vlGraphics::render {

/** Looks after the programs with watched loops: takes those out of use that were stopped, and asks
 *  the device to stop them when a frame takes too long. Graphics thread only. Owned by the
 *  renderer. */
class LoopWatch {
public:
    /// The frame that is being recorded draws with the program's result in use.
    void use(const Program& program);
    /// The last of the frame's commands.
    void record(VkCommandBuffer commands) const;
    /// The frame has ended when the device's timeline has that value.
    void submitted(std::uint64_t value);
    /// The frame was not submitted.
    void dropped() { recorded_.clear(); }

    /// Judges the programs of the frames that have ended.
    void look();
    /// Of the frames that have not ended. Their programs leave what loops they are in.
    void askToStop() const;

private:
    struct Use {
        Handle<Program> program;
        std::uint64_t serial = 0;       ///< of the result in use then
        std::uint32_t* words = nullptr; ///< valid until the frame has ended
        std::uint64_t value = 0;
    };
    void judge(const Use& use) const;

    std::vector<Use> recorded_;
    std::vector<Use> running_;
};

} // namespace vlGraphics::render
