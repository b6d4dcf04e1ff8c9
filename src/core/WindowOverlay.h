#pragma once

namespace vlEditor {

/** Draws over the picture of one window, after its compositor and in the same frame. Graphics
 * thread only. */
class WindowOverlay {
public:
    virtual ~WindowOverlay() = default;
    virtual void draw() = 0;

protected:
    WindowOverlay() = default;
    WindowOverlay(const WindowOverlay&) = default;
    WindowOverlay& operator=(const WindowOverlay&) = default;
};

} // namespace vlEditor
