#include "Log.h"
#include "ScrollPanel.h"
#include "Text.h"
#include "WindowNative.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Window.h>

#include <QIcon>
#include <QImage>
#include <QPixmap>

namespace vlWinUi {

Window::Window(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<WindowNative>()) {
}

void Window::setText(vlMemory::StringView text) {
    native().widget->setWindowTitle(toQt(text));
}

std::string Window::getText() const {
    return fromQt(native().widget->windowTitle());
}

void Window::setRectangle(const Rectangle& rectangle) {
    auto& native = nativeAs<WindowNative>(*this);
    native.rectangle = rectangle;
    if (!native.placed) return;
    native.placed = false;
    native.place();
}

Rectangle Window::getRectangle() const {
    const QWidget& widget = *native().widget;
    const bool filled = widget.isMaximized() || widget.isFullScreen();
    const QRect at = filled ? widget.normalGeometry() : widget.geometry();
    return {at.x(), at.y(), at.width(), at.height()};
}

void Window::setMaximized(bool maximized) {
    vlCommon::assertUiThread();
    QWidget& widget = *native().widget;
    if (widget.isWindow() && widget.isMaximized() != maximized)
        widget.setWindowState(widget.windowState() ^ Qt::WindowMaximized);
}

bool Window::isMaximized() const {
    return native().widget->isMaximized();
}

void Window::setScrolling(bool scrolling) {
    nativeAs<WindowNative>(*this).panel->setScrolling(scrolling);
}

void Window::setVisibleOnLoad(bool visible) {
    nativeAs<WindowNative>(*this).visibleOnLoad = visible;
}

void Window::load() {
    if (nativeAs<WindowNative>(*this).visibleOnLoad)
        setVisible(true);
    else if (native().widget->isWindow())
        nativeAs<WindowNative>(*this).place();
    else
        setVisible(false);
}

void Window::setVisible(bool visible) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<WindowNative>(*this);
    const bool topLevel = native.widget->isWindow();
    if (visible && topLevel) native.place();
    // Not every window manager hands the keyboard back by itself.
    const bool handsBack =
            !visible && topLevel && native.owner != nullptr && native.widget->isActiveWindow();
    native.widget->setVisible(visible);
    if (handsBack) native.owner->window()->activateWindow();
    if (!visible || !topLevel) return;
    native.widget->raise();
    native.widget->activateWindow();
}

void Window::setIcon(unsigned width, unsigned height, std::span<const std::uint8_t> rgb) {
    const std::size_t needed = std::size_t{width} * height * 3;
    if (needed == 0 || rgb.size() != needed) {
        logLine("window '{}': an icon of {} by {} needs {} bytes, not {}",
                getComponentName(),
                width,
                height,
                needed,
                rgb.size());
        return;
    }
    const QImage image(rgb.data(),
                       static_cast<int>(width),
                       static_cast<int>(height),
                       static_cast<qsizetype>(width) * 3,
                       QImage::Format_RGB888);
    native().widget->setWindowIcon(QIcon(QPixmap::fromImage(image.copy())));
}

void Window::setFullscreen(bool fullscreen) {
    vlCommon::assertUiThread();
    QWidget& widget = *native().widget;
    if (!widget.isWindow() || widget.isFullScreen() == fullscreen) return;
    widget.setWindowState(widget.windowState() ^ Qt::WindowFullScreen);
}

bool Window::isFullscreen() const {
    return native().widget->isFullScreen();
}

void Window::setOwnerWindow(Window& owner) {
    auto& native = nativeAs<WindowNative>(*this);
    native.owner = owner.native().widget;
    native.placed = false;
    native.widget->setWindowFlags(Qt::Dialog);
}

void Window::setStatusText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    nativeAs<WindowNative>(*this).setStatus(toQt(text));
}

std::string Window::getStatusText() const {
    return fromQt(nativeAs<WindowNative>(*this).statusText);
}

void Window::addStatusComponent(Component& component, unsigned width) {
    vlCommon::assertUiThread();
    nativeAs<WindowNative>(*this).addToStatusBar(*component.native().widget,
                                                 static_cast<int>(width));
}

void Window::setResizeCallback(std::function<void(unsigned, unsigned)> callback) {
    nativeAs<WindowNative>(*this).resized = std::move(callback);
}

void Window::setMouseLeaveCallback(std::function<void()> callback) {
    nativeAs<WindowNative>(*this).left = std::move(callback);
}

void Window::setKeyCallback(std::function<void(const KeyEvent&)> callback) {
    nativeAs<WindowNative>(*this).key = std::move(callback);
}

} // namespace vlWinUi
