#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/KeyEvent.h>

#include <cstdint>
#include <span>

namespace vlWinUi {

/** A top-level window, or, once placed in a layout, a panel. A top-level window stays hidden until
 * load() or setVisible(). UI thread only. */
class Window final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::Window;

    void setText(vlMemory::StringView text) override;
    std::string getText() const override;
    /// All zero: centred, 1280 by 800 or 85 % of the screen if that is less. Kept until it is
    /// shown.
    void setRectangle(const Rectangle& rectangle);
    /// Of a top-level window, without its frame; the one that it goes back to while it is maximised
    /// or full screen.
    Rectangle getRectangle() const;
    void setMaximized(bool maximized);
    bool isMaximized() const;
    /// What does not fit scrolls, unless this is false: then the window asks those around it for
    /// the room that its content needs. True unless set.
    void setScrolling(bool scrolling);
    /// Whether load() shows it; true unless set.
    void setVisibleOnLoad(bool visible);
    /// Places a top-level window for the first time, and shows it if it is visible on load.
    void load();
    void setVisible(bool visible) override;
    /// `rgb`: 3 bytes a pixel, row by row from the top. Logged and ignored when the size does not
    /// fit.
    void setIcon(unsigned width, unsigned height, std::span<const std::uint8_t> rgb);

    void setFullscreen(bool fullscreen);
    bool isFullscreen() const;
    /// Stays in front of the given window, and is hidden and minimised with it.
    void setOwnerWindow(Window& owner);

    /// A line at the window's bottom that stays; the first call, here or below, makes the status
    /// bar. What is set many times in one turn of the event loop is shown once.
    void setStatusText(vlMemory::StringView text);
    std::string getStatusText() const;
    /// Places a component at the right end of the status bar, right of those placed before; pixels.
    void addStatusComponent(Component& component, unsigned width);

    void setResizeCallback(std::function<void(unsigned width, unsigned height)> callback);
    void setMouseLeaveCallback(std::function<void()> callback);
    /// Any key that no widget in the window took.
    void setKeyCallback(std::function<void(const KeyEvent&)> callback);

private:
    friend class ComponentFactory;
    explicit Window(std::string name);
};

} // namespace vlWinUi
