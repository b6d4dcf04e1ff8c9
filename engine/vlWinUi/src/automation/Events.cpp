#include "automation/Events.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QPointer>

#include <utility>

// Qt's own entries for tests: what a platform's plug-in calls, without its private headers.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window,
                                      const QPointF& local,
                                      const QPointF& global,
                                      Qt::MouseButtons state,
                                      Qt::MouseButton button,
                                      QEvent::Type type,
                                      Qt::KeyboardModifiers modifiers,
                                      int timestamp);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window,
                                    QEvent::Type type,
                                    int key,
                                    Qt::KeyboardModifiers modifiers,
                                    const QString& text,
                                    bool repeated,
                                    ushort count);
QT_END_NAMESPACE

namespace vlWinUi {
namespace {

int eventTime = 0;
Qt::MouseButtons heldButtons;

/// What the plug-ins of the platforms make of the menu key themselves.
void askForContextMenu() {
    QWidget* focused = QApplication::focusWidget();
    if (focused == nullptr || QApplication::activePopupWidget() != nullptr) return;
    const QPoint middle = focused->rect().center();
    QContextMenuEvent event(
            QContextMenuEvent::Keyboard, middle, focused->mapToGlobal(middle), Qt::NoModifier);
    QApplication::sendEvent(focused, &event);
}

} // namespace

QWindow* windowOf(const QWidget& widget) {
    const QWidget* at = &widget;
    while (at != nullptr && at->windowHandle() == nullptr)
        at = at->parentWidget();
    return at == nullptr ? nullptr : at->windowHandle();
}

void sendMouse(QWindow& window, QPointF at, Qt::MouseButton button, QEvent::Type event) {
    if (event == QEvent::MouseButtonPress) heldButtons |= button;
    if (event == QEvent::MouseButtonRelease) heldButtons &= ~Qt::MouseButtons(button);
    qt_handleMouseEvent(&window,
                        at,
                        window.mapToGlobal(at),
                        heldButtons,
                        event == QEvent::MouseMove ? Qt::NoButton : button,
                        event,
                        Qt::NoModifier,
                        ++eventTime);
    if (event == QEvent::MouseButtonRelease) eventTime += QApplication::doubleClickInterval() + 1;
}

void sendMouse(const Spot& spot, Qt::MouseButton button, QEvent::Type event) {
    const QWidget* at = spot.widget;
    while (at != nullptr && at->windowHandle() == nullptr)
        at = at->parentWidget();
    if (at != nullptr)
        sendMouse(*at->windowHandle(), spot.widget->mapTo(at, spot.at), button, event);
}

void sendClick(const Spot& spot, Qt::MouseButton button) {
    const QPointer<QWindow> window = windowOf(*spot.widget);
    if (window == nullptr) return;
    // The press may end the widget.
    const QPointF at = window->mapFromGlobal(QPointF(spot.widget->mapToGlobal(spot.at)));
    sendMouse(*window, at, Qt::NoButton, QEvent::MouseMove);
    if (window != nullptr) sendMouse(*window, at, button, QEvent::MouseButtonPress);
    if (window != nullptr)
        sendMouse(*window, at, button, QEvent::MouseButtonRelease);
    else
        heldButtons &= ~Qt::MouseButtons(button);
}

void sendKey(QWindow& window, int qtKey, Qt::KeyboardModifiers held, const QString& text) {
    const QPointer<QWindow> guard = &window;
    qt_handleKeyEvent(&window, QEvent::KeyPress, qtKey, held, text, false, 1);
    if (qtKey == Qt::Key_Menu) askForContextMenu();
    if (guard != nullptr)
        qt_handleKeyEvent(&window, QEvent::KeyRelease, qtKey, held, text, false, 1);
}

} // namespace vlWinUi
