#include "Call.h"
#include "Native.h"
#include "Registry.h"
#include "SurfaceNative.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/InputSystem.h>

#include <QApplication>
#include <QWindow>

namespace vlWinUi {

void InputSystem::setCloseCallback(std::function<bool(Component&)> callback) {
    vlCommon::assertUiThread();
    if (Registry::slot()) Registry::slot()->close = std::move(callback);
}

void InputSystem::requestClose(Component& component) {
    vlCommon::assertUiThread();
    if (!Registry::slot()) return;
    const auto close = Registry::slot()->close;
    if (!close || !close(component)) component.setVisible(false);
}

Component* InputSystem::getFocused() {
    vlCommon::assertUiThread();
    const QWidget* at = QApplication::focusWidget();
    // A viewport's native window has the focus without any widget having it.
    if (const QWindow* window = QGuiApplication::focusWindow()) {
        auto* widget =
                qobject_cast<QWidget*>(window->property(SurfaceNative::WIDGET).value<QObject*>());
        if (widget != nullptr) at = widget;
    }
    for (; at != nullptr; at = at->parentWidget())
        if (Component* found = Native::componentOf(at)) return found;
    return nullptr;
}

void InputSystem::setFocusCallback(std::function<void(Component*)> callback) {
    vlCommon::assertUiThread();
    if (!Registry::slot()) return;
    const bool watched = static_cast<bool>(Registry::slot()->focus);
    Registry::slot()->focus = std::move(callback);
    if (watched) return;
    const auto tell = [] {
        if (Registry::slot() && Registry::slot()->focus)
            call(Registry::slot()->focus, getFocused());
    };
    QObject::connect(qApp, &QApplication::focusChanged, qApp, tell);
    QObject::connect(qApp, &QGuiApplication::focusWindowChanged, qApp, tell);
}

} // namespace vlWinUi
