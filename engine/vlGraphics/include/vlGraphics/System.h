#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/Configuration.h>
#include <vlGraphics/Renderer.h>

#include <memory>

namespace vlGraphics {

class RenderContext;

/** The graphics library's life: device, managers and default resources. initialize() and shutdown()
 *  belong to the thread that owns the engine then; so does everything in between. */
class System final {
public:
    /// Begins to load the drivers on a thread of its own, so that a program can start its window
    /// system meanwhile. To be followed by initialize() with the same configuration, or by
    /// shutdown(). Does nothing where validation is on: what it says wants a log.
    static void prepare(const Configuration& configuration);
    /// Fails with one line when there is no driver or no usable device; nothing stays behind then.
    static vlCommon::Result<> initialize(const Configuration& configuration);
    /// Waits for the device, destroys every context and resource and the device. May be called
    /// twice.
    static void shutdown();
    /// Null before initialize() and after shutdown().
    static System* getInstance();

    ~System();
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    /// Adopts finished programs, brings moved entities up to date, advances the clock, and makes
    /// the context the one that the renderer's next frame draws.
    void tickForNewFrame(RenderContext& context);
    Renderer& getRenderer() { return *renderer_; }

    /// "llvmpipe (LLVM 15.0.6, 256 bits), Mesa 22.3.6"
    const vlMemory::String& getDeviceDescription() const { return deviceDescription_; }
    /// Messages of the validation layers since start, warnings and errors.
    static std::uint64_t getValidationMessageCount();
    /// Milliseconds since initialize(); what time slots read. Fixed by setTime() for repeatable
    /// pictures.
    std::uint64_t getTimeMs() const;
    void setTimeMs(std::uint64_t timeMs);

private:
    System();
    vlCommon::Result<> start(const Configuration& configuration);
    struct State;
    std::unique_ptr<State> state_;
    std::unique_ptr<Renderer> renderer_;
    vlMemory::String deviceDescription_;
};

} // namespace vlGraphics
