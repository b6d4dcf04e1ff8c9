#pragma once
#include <vlImages/Image.h>

#include <cstdint>

namespace vlGraphics {

/** Where the pictures of a render context go, as the graphics thread sees it. The owner of the
 * window implements it; every operation is called on the graphics thread while the owner changes
 * the values on another, so an implementation reads atomics and never waits. It must outlive its
 * context. */
class PresentSurface {
public:
    enum class Kind : std::uint32_t {
        none,      ///< pictures stay in the back buffer: headless
        xcbWindow, ///< a swapchain on an X11 window
        picture    ///< each finished picture is handed to present()
    };
    struct Size {
        std::uint32_t width = 0; ///< pixels; 0 while there is nothing to show
        std::uint32_t height = 0;
        friend bool operator==(const Size&, const Size&) = default;
    };

    virtual ~PresentSurface() = default;
    virtual Kind getKind() const = 0;
    /// The X11 window id, for xcbWindow.
    virtual std::uint32_t getWindow() const { return 0; }
    virtual Size getSize() const = 0;
    /// False while nobody can see it: then nothing is presented.
    virtual bool isExposed() const = 0;
    /// For picture: BGRA8. Called once a frame.
    virtual void present(vlImages::Image picture) { static_cast<void>(picture); }

protected:
    PresentSurface() = default;
    PresentSurface(const PresentSurface&) = default;
    PresentSurface& operator=(const PresentSurface&) = default;
};

} // namespace vlGraphics
