#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

namespace vlGraphics {
class Camera;
}

namespace vlEditor {

/** What a person sees the scene through, for rooms that know no viewports: that of the viewport
 *  which had the input focus last, the first one where none ever had. Graphics thread only. */
class ViewedCamera {
public:
    /// Null before start-up has connected one, and after shutdown.
    static ViewedCamera* current();
    /// Not owned; null takes it away. Whoever owns the engine.
    static void connect(ViewedCamera* camera);

    /// Null while there is no viewport. Not to be kept.
    virtual vlGraphics::Camera* getCamera() = 0;
    /// From now on the viewport shows what the camera of that name sees, as long as there is one;
    /// for an empty name what its own sees. Fails, with one line, where there is no viewport or no
    /// such camera.
    virtual vlCommon::Result<> follow(vlMemory::StringView camera) = 0;

protected:
    ViewedCamera() = default;
    ViewedCamera(const ViewedCamera&) = default;
    ViewedCamera& operator=(const ViewedCamera&) = default;
    ~ViewedCamera() = default;
};

} // namespace vlEditor
