#pragma once
#include <vlCommon/Result.h>

#include <cstdint>
#include <memory>

namespace vlGraphics {

class RenderContext;
class Texture;

/** Records and submits frames, one context after the other. Graphics thread only. */
class Renderer final {
public:
    Renderer();
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// Starts the frame of the context last given to System::tickForNewFrame.
    void beginFrame();
    /// Submits it and presents it the way its surface asks for. Never waits for the window's owner;
    /// for a surface that is handed pictures it waits for the device, so that the last picture of a
    /// burst arrives like all others.
    void endFrame();
    /// Waits until the device has finished everything, frees what waited for that, and notes it.
    void endWork();
    /// Takes the programs out of use whose loops the device had to leave in frames that have ended
    /// since. So does each frame's begin; to be called, too, while there may be no next frame.
    void noteEndedFrames();

    /// One texel of a loaded texture of 32 bits a pixel, as its bits, waiting for the device: what
    /// picking reads. Fails outside the texture, for other formats and inside a frame.
    vlCommon::Result<std::uint32_t>
    readTexel(const Texture& texture, std::uint32_t x, std::uint32_t y) const;

    /// Null outside beginFrame and endFrame.
    RenderContext* getActiveContext() const;
    /// Of the frames ended since the engine started.
    struct Counts {
        std::uint64_t frames = 0;
        std::uint64_t draws = 0;
        std::uint64_t instances = 0;
        std::uint64_t dispatches = 0;
        std::uint64_t pipelinesMade = 0;
    };
    const Counts& getCounts() const;

    struct Gpu; ///< the back end's side
    Gpu& gpu() const { return *gpu_; }

private:
    std::unique_ptr<Gpu> gpu_;
};

} // namespace vlGraphics
