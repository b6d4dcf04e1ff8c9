#pragma once
#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>
#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/PresentSurface.h>

#include <memory>
#include <vector>

namespace vlGraphics {

/** What a context is made for. */
class RenderContextDescriptor {
public:
    explicit RenderContextDescriptor(PresentSurface& surface) : surface_(&surface) {}
    PresentSurface& getSurface() const { return *surface_; }

private:
    PresentSurface* surface_;
};

/** A picture that is rendered again and again: back buffer (BGRA8 holding sRGB colours, off-screen;
 * shaders write linear colours and the device encodes them; exactly the surface's size), chained
 * depth buffer (D32; with 8 bits of stencil once a pass tests it), compositor, cameras, and how the
 * picture is presented. Owned by the RenderContextManager. Graphics thread only. */
class RenderContext final {
public:
    RenderContext(const RenderContext&) = delete;
    RenderContext& operator=(const RenderContext&) = delete;
    ~RenderContext();

    PresentSurface& getSurface() const { return *surface_; }
    std::uint32_t getWidth() const { return width_; }
    std::uint32_t getHeight() const { return height_; }

    /// Asks for a size; 0 by 0 is the surface's own. Takes effect with apply().
    void resize(std::uint32_t width, std::uint32_t height);
    /// Remakes the buffers when the size asked for differs. Too large a size fails and changes
    /// nothing.
    vlCommon::Result<> apply();

    /// Null: the default compositor.
    void setCompositor(Handle<Compositor> compositor);
    Handle<Compositor> getCompositor() const { return compositor_; }
    void setRenderCamera(Handle<Camera> camera);
    void setCullingCamera(Handle<Camera> camera);
    void setLodCamera(Handle<Camera> camera);
    /// Each resolves to the default camera when none is set or it is gone.
    Camera* getRenderCamera() const;
    Camera* getCullingCamera() const;
    Camera* getLodCamera() const;

    /// Reads the back buffer of the last frame, waiting for the device. BGRA8.
    vlCommon::Result<vlImages::Image> readBackBuffer() const;

    /// Stops presenting and gives the window back, at most `timeoutMs` waiting for the device.
    void detachSurface(std::uint32_t timeoutMs);

    struct Gpu; ///< the back end's side
    Gpu* gpu() const { return gpu_.get(); }

private:
    friend class RenderContextManager;
    explicit RenderContext(const RenderContextDescriptor& descriptor);

    PresentSurface* surface_;
    std::uint32_t width_ = 0;
    std::uint32_t height_ = 0;
    std::uint32_t wantedWidth_ = 0;
    std::uint32_t wantedHeight_ = 0;
    Handle<Compositor> compositor_;
    Handle<Camera> renderCamera_;
    Handle<Camera> cullingCamera_;
    Handle<Camera> lodCamera_;
    std::unique_ptr<Gpu> gpu_;
};

class RenderContextManager final : public vlCommon::MaybeSingletonClass<RenderContextManager> {
public:
    RenderContextManager();
    ~RenderContextManager();

    /// Made at the surface's size, at least 1 by 1. Fails when the surface has a context already or
    /// the window cannot be presented to.
    vlCommon::Result<RenderContext*> createRenderContext(const RenderContextDescriptor& descriptor);
    /// Null when there is none.
    RenderContext* getRenderContextOf(const PresentSurface& surface) const;
    /// Waits for the frames in flight that use it. False when there is none.
    bool eraseFor(const PresentSurface& surface);
    RenderContext* getByIndex(std::size_t index) const;

private:
    std::vector<std::unique_ptr<RenderContext>> contexts_;
};

} // namespace vlGraphics
