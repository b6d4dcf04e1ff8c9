#pragma once
#include "automation/Target.h"

#include <QEvent>
#include <QWindow>

namespace vlWinUi {

// Events as the window system tells them: through Qt's own delivery, which knows popups, dialogs,
// focus and shortcuts. They are dealt with before the call returns.

/// Into the native window that the widget is drawn in; `event` is one of the mouse's.
void sendMouse(const Spot& spot, Qt::MouseButton button, QEvent::Type event);
void sendMouse(QWindow& window, QPointF at, Qt::MouseButton button, QEvent::Type event);
/// Press and release, far enough in time from other clicks that they are not two of one.
void sendClick(const Spot& spot, Qt::MouseButton button);
/// Press and release.
void sendKey(QWindow& window, int qtKey, Qt::KeyboardModifiers held, const QString& text);

QWindow* windowOf(const QWidget& widget);

} // namespace vlWinUi
