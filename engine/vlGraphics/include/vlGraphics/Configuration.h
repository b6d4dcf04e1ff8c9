#pragma once
#include <vlMemory/String.h>

#include <cstdint>

namespace vlGraphics {

/** What the engine starts with. */
struct Configuration {
    /// Vulkan validation layers; their messages are logged and counted. On from the start when the
    /// environment variable VLGRAPHICS_VALIDATION is 1.
    bool validation = validationFromEnvironment();
    /// Threads that compile programs; 0 takes the processor's count.
    std::uint32_t compileThreads = 0;
    /// Where pipelines and programs are kept between runs; empty takes the user's cache folder.
    vlMemory::String cacheFolder;
    /// Compiled programs are kept between runs.
    bool keepPrograms = true;
    /// When the device takes longer for a frame, what programs are in watched loops leave them. 0
    /// waits without end.
    std::uint32_t loopPatienceMs = 10'000;
    /// Needs the extensions for presenting to X11 windows, where the driver has them.
    bool presenting = true;

    static bool validationFromEnvironment();
};

} // namespace vlGraphics
