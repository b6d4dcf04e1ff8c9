#pragma once
#include "viewport/EngineSurfaceState.h"

#include <vlCommon/Result.h>
#include <vlGraphics/Handle.h>
#include <vlMemory/String.h>

#include <memory>
#include <string>

namespace vlGraphics {
class Camera;
class Compositor;
class RenderContext;
} // namespace vlGraphics

namespace vlEditor {

/** The engine's side of a viewport: its render context, its camera and its own copy of the
 *  compositor that it is seen through. Owned by EngineWindowEngineDataTracker. Graphics thread
 *  only. */
class EngineWindowEngineData {
public:
    /// Makes all of it; fails with one line, and leaves nothing behind, when the surface cannot be
    /// drawn to.
    static vlCommon::Result<std::unique_ptr<EngineWindowEngineData>>
    create(std::shared_ptr<EngineSurfaceState> surface);
    ~EngineWindowEngineData();
    EngineWindowEngineData(const EngineWindowEngineData&) = delete;
    EngineWindowEngineData& operator=(const EngineWindowEngineData&) = delete;

    const std::string& getName() const { return surface_->getName(); }
    /// Of the window's widgets.
    std::string getBaseName() const;
    EngineSurfaceState& getSurface() const { return *surface_; }
    vlGraphics::RenderContext& getContext() const { return context_; }
    /// Its own, whether or not it looks through it.
    vlGraphics::Camera* getCamera() const;
    /// Has it look through the camera of that name whenever there is one, else through its own; for
    /// an empty name always through its own.
    void follow(vlMemory::StringView camera);
    /// Before anything is drawn: what it follows may have come or gone.
    void updateCamera();
    /// The one chosen, not the copy; null when it is gone or none was chosen yet.
    vlGraphics::Compositor* getSource() const;

    /// Takes a copy of the compositor's structure. False, with nothing done, when there is no such
    /// compositor or it is the source already and has not changed.
    bool showThrough(vlMemory::StringView compositor);
    /// Gives the buffers the surface's size, where it has another one.
    vlCommon::Result<> resizeToSurface();

private:
    EngineWindowEngineData(std::shared_ptr<EngineSurfaceState> surface,
                           vlGraphics::RenderContext& context);

    std::shared_ptr<EngineSurfaceState> surface_;
    vlGraphics::RenderContext& context_;
    vlGraphics::Handle<vlGraphics::Camera> own_;
    vlGraphics::Handle<vlGraphics::Camera> followed_;
    vlGraphics::Handle<vlGraphics::Camera> used_; ///< by the context
    vlGraphics::Handle<vlGraphics::Compositor> source_;
    std::uint64_t sourceRevision_ = 0; ///< that the copy was made of
};

} // namespace vlEditor
