#include "Native.h"
#include "WinUiTest.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace vlWinUi::test {

void WinUiTest::SetUp() {
    LogManager::getInstance().setReceiver(this);
    ASSERT_TRUE(System::initialize({.headless = true}));
}

void WinUiTest::TearDown() {
    System::kill();
    LogManager::getInstance().setReceiver(nullptr);
}

void click(Component& component, int x, int y) {
    QWidget* widget = component.native().widget;
    const QPoint at(x, y);
    QWidget* child = widget->childAt(at);
    QWidget* target = child == nullptr ? widget : child;
    const QPointF local = target->mapFrom(widget, at);
    const QPointF screen = widget->mapToGlobal(at);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool down = type == QEvent::MouseButtonPress;
        QMouseEvent event(type,
                          local,
                          screen,
                          Qt::LeftButton,
                          down ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }
}

void press(Component& component, int qtKey) {
    QKeyEvent down(QEvent::KeyPress, qtKey, Qt::NoModifier);
    QApplication::sendEvent(component.native().widget, &down);
}

} // namespace vlWinUi::test
