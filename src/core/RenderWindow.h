#pragma once
#include <cstdint>

namespace vlEditor {

/** A window that the graphics thread draws, as the frame loop sees it. Must outlive its
 *  registration. */
class RenderWindow {
public:
    virtual ~RenderWindow() = default;
    /// Somebody can see it, and it has an area.
    virtual bool isDrawable() const = 0;
    /// Grows whenever the window itself makes its picture out of date: exposed, resized.
    virtual std::uint64_t getRevision() const = 0;

protected:
    RenderWindow() = default;
    RenderWindow(const RenderWindow&) = default;
    RenderWindow& operator=(const RenderWindow&) = default;
};

} // namespace vlEditor
