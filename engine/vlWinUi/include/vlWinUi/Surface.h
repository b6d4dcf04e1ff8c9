#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/KeyEvent.h>
#include <vlWinUi/MouseMoveEvent.h>
#include <vlWinUi/SurfaceHandle.h>

#include <cstddef>
#include <span>

namespace vlWinUi {

/** What a viewport draws on. Its native window lives exactly as long as the component: hiding it,
 * closing the tab that it is in or erasing what it is placed in only takes it out of view; erasing
 * it by its own name ends it, and whoever draws into it must have stopped by then. Should the
 * window system take the window away all the same, the loss callback runs first. Sizes and
 * positions are physical pixels. UI thread only; the handle is plain values that may be given to
 * any thread. */
class Surface final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Surface;

    /// A surface has no text: what is set is what screen readers call it.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    SurfaceHandle nativeHandle() const;
    unsigned getWidth() const override;
    unsigned getHeight() const override;
    /// Some of it can be seen.
    bool isExposed() const;

    /// Shows a picture one to one from the top left corner: BGRA, 4 bytes a pixel, row by row from
    /// the top. For Kind::Picture only; logged and ignored when the bytes are too few.
    void presentPicture(unsigned width, unsigned height, std::span<const std::byte> bgra);

    void setExposeCallback(std::function<void(bool exposed)> callback);
    void setResizeCallback(std::function<void(unsigned width, unsigned height)> callback);
    void setFocusCallback(std::function<void(bool focused)> callback);
    void setMouseMoveCallback(std::function<void(const MouseMoveEvent&)> callback);
    void setMouseLeaveCallback(std::function<void()> callback);
    /// In notches away from the person, and fractions of them.
    void setWheelCallback(std::function<void(float notches)> callback);
    void setKeyCallback(std::function<void(const KeyEvent&)> callback);
    /// The window is about to go without our asking.
    void setLossCallback(std::function<void()> callback);

private:
    friend class ComponentFactory;
    explicit Surface(std::string name);
};

} // namespace vlWinUi
