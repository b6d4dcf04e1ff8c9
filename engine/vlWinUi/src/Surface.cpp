#include "Log.h"
#include "SurfaceNative.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Surface.h>

namespace vlWinUi {

Surface::Surface(std::string name) : Component(std::move(name), TYPE, SurfaceNative::make()) {
}

void Surface::setText(vlMemory::StringView text) {
    setAccessibleName(text);
}

std::string Surface::getText() const {
    return fromQt(native().widget->accessibleName());
}

SurfaceHandle Surface::nativeHandle() const {
    vlCommon::assertUiThread();
    const auto& native = nativeAs<SurfaceNative>(*this);
    if (native.windowGuard == nullptr) return {};
    auto* window = static_cast<QWindow*>(native.windowGuard.data());
    return {SurfaceHandle::Kind::Xcb, static_cast<std::uint32_t>(window->winId())};
}

unsigned Surface::getWidth() const {
    const auto& native = nativeAs<SurfaceNative>(*this);
    return static_cast<unsigned>(qRound(native.widget->width() * native.scale()));
}

unsigned Surface::getHeight() const {
    const auto& native = nativeAs<SurfaceNative>(*this);
    return static_cast<unsigned>(qRound(native.widget->height() * native.scale()));
}

bool Surface::isExposed() const {
    return nativeAs<SurfaceNative>(*this).exposed;
}

void Surface::presentPicture(unsigned width, unsigned height, std::span<const std::byte> bgra) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<SurfaceNative>(*this);
    const std::size_t needed = std::size_t{width} * height * 4;
    if (native.window != nullptr || needed == 0 || bgra.size() < needed) {
        logLine("surface '{}': a picture of {} by {} in {} bytes cannot be shown",
                getComponentName(),
                width,
                height,
                bgra.size());
        return;
    }
    const QImage borrowed(reinterpret_cast<const uchar*>(bgra.data()),
                          static_cast<int>(width),
                          static_cast<int>(height),
                          static_cast<qsizetype>(width) * 4,
                          QImage::Format_RGB32);
    QImage picture = borrowed.copy();
    picture.setDevicePixelRatio(native.scale());
    widgetAs<PictureWidget>(*this).show(std::move(picture));
}

void Surface::setExposeCallback(std::function<void(bool)> callback) {
    nativeAs<SurfaceNative>(*this).exposeChanged = std::move(callback);
}

void Surface::setResizeCallback(std::function<void(unsigned, unsigned)> callback) {
    nativeAs<SurfaceNative>(*this).resized = std::move(callback);
}

void Surface::setFocusCallback(std::function<void(bool)> callback) {
    nativeAs<SurfaceNative>(*this).focusChanged = std::move(callback);
}

void Surface::setMouseMoveCallback(std::function<void(const MouseMoveEvent&)> callback) {
    nativeAs<SurfaceNative>(*this).moved = std::move(callback);
}

void Surface::setMouseLeaveCallback(std::function<void()> callback) {
    nativeAs<SurfaceNative>(*this).left = std::move(callback);
}

void Surface::setWheelCallback(std::function<void(float)> callback) {
    nativeAs<SurfaceNative>(*this).wheeled = std::move(callback);
}

void Surface::setKeyCallback(std::function<void(const KeyEvent&)> callback) {
    nativeAs<SurfaceNative>(*this).key = std::move(callback);
}

void Surface::setLossCallback(std::function<void()> callback) {
    nativeAs<SurfaceNative>(*this).lost = std::move(callback);
}

} // namespace vlWinUi
