#include "WindowNative.h"

#include "Call.h"
#include "ElidedLabel.h"
#include "KeyCodes.h"
#include "ScrollPanel.h"
#include "WindowSheet.h"

#include <vlWinUi/InputSystem.h>

#include <QAbstractButton>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr QSize DEFAULT_SIZE(1280, 800);
constexpr double SCREEN_SHARE = 0.85;
constexpr int STATUS_HEIGHT = 22;

/// Beside a button at a screen's edge, a dialog would hang out of it.
QPoint inside(QPoint at, QSize size) {
    const QScreen* screen = QGuiApplication::screenAt(at + QPoint(size.width() / 2, 10));
    if (screen == nullptr) return at;
    const QRect room = screen->availableGeometry();
    const QPoint last = room.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
    return {std::max(room.left(), std::min(at.x(), last.x())),
            std::max(room.top(), std::min(at.y(), last.y()))};
}

} // namespace

WindowNative::WindowNative() : Native(new QWidget) {
    panel = new ScrollPanel;
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(panel, 1);
}

QWidget* WindowNative::content() {
    return panel->content();
}

void WindowNative::place() {
    if (placed) return;
    placed = true;
    wearSheet(*widget);
    QWidget* front = owner;
    const QRect screen =
            (front != nullptr ? front->screen() : widget->screen())->availableGeometry();
    const QSize most(screen.size() * SCREEN_SHARE);
    QSize size(rectangle.width, rectangle.height);
    const QSize usual = DEFAULT_SIZE.boundedTo(most);
    if (size.width() <= 0) size.setWidth(usual.width());
    if (size.height() <= 0) size.setHeight(usual.height());
    const QSize needed = panel->contentMinimum().boundedTo(most);
    widget->setMinimumSize(needed.expandedTo(widget->minimumSize()));
    size = size.expandedTo(widget->minimumSize());
    const QRect around = front != nullptr && front->isVisible() ? front->geometry() : screen;
    QPoint at(rectangle.x, rectangle.y);
    // Where a screen was that is not there any more, nobody would find it.
    if (at.isNull() || QGuiApplication::screenAt(at + QPoint(size.width() / 2, 10)) == nullptr)
        at = around.center() - QPoint(size.width() / 2, size.height() / 2);
    if (front != nullptr) at = inside(at, size);
    widget->setGeometry(QRect(at, size));
    if (front == nullptr) return;
    widget->winId();
    front->winId();
    widget->windowHandle()->setTransientParent(front->windowHandle());
}

void WindowNative::setStatus(const QString& text) {
    makeStatusBar();
    statusText = text;
    showStatusSoon();
}

void WindowNative::setHint(const QString& text) {
    hint = text;
    if (statusBar != nullptr) showStatusSoon();
}

void WindowNative::addToStatusBar(QWidget& part, int width) {
    makeStatusBar();
    part.setFixedSize(width, STATUS_HEIGHT - 4);
    statusBar->layout()->addWidget(&part);
}

void WindowNative::makeStatusBar() {
    if (statusBar != nullptr) return;
    statusBar = new QWidget;
    statusBar->setObjectName("vlStatusBar");
    statusBar->setAttribute(Qt::WA_StyledBackground);
    statusBar->setFixedHeight(STATUS_HEIGHT);
    status = new ElidedLabel;
    status->setObjectName("vlStatusLine");
    auto* row = new QHBoxLayout(statusBar);
    row->setContentsMargins(8, 1, 8, 0);
    row->setSpacing(8);
    row->addWidget(status, 1);
    widget->layout()->addWidget(statusBar);
}

void WindowNative::showStatusSoon() {
    if (std::exchange(statusQueued, true)) return;
    const auto show = [this] {
        statusQueued = false;
        QString line = hint.isEmpty() ? statusText : hint;
        status->setText(line.replace('\n', ' '));
    };
    QMetaObject::invokeMethod(this, show, Qt::QueuedConnection);
}

bool WindowNative::handleKey(QKeyEvent& event) {
    const KeyEvent told = keyOf(event, event.type() == QEvent::KeyPress);
    if (told.pressed && told.virtualKey == 27 && owner != nullptr && widget->isWindow()) {
        InputSystem::requestClose(*component);
        return true;
    }
    if (told.pressed && told.virtualKey == 13) {
        for (auto* button : widget->findChildren<QAbstractButton*>()) {
            if (!button->property("defaultButton").toBool() || !button->isVisible()) continue;
            button->click();
            return true;
        }
    }
    if (!key) return false;
    call(key, told);
    return true;
}

bool WindowNative::eventFilter(QObject* watched, QEvent* event) {
    const QPointer<QObject> self = this;
    switch (event->type()) {
    case QEvent::Close:
        if (!widget->isWindow()) break;
        event->ignore();
        InputSystem::requestClose(*component);
        return true;
    case QEvent::Resize:
        call(resized,
             static_cast<unsigned>(widget->width()),
             static_cast<unsigned>(widget->height()));
        break;
    case QEvent::Leave:
        call(left);
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (handleKey(*static_cast<QKeyEvent*>(event))) return true;
        break;
    default:
        break;
    }
    return self.isNull() || Native::eventFilter(watched, event);
}

} // namespace vlWinUi
