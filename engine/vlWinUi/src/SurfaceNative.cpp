#include "SurfaceNative.h"

#include "Call.h"
#include "KeyCodes.h"
#include "Registry.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPlatformSurfaceEvent>
#include <QWheelEvent>

#include <vector>

namespace vlWinUi {

/** The native window that is drawn into from outside. */
class SurfaceWindow final : public QWindow {
public:
    SurfaceWindow() { setSurfaceType(QSurface::VulkanSurface); }
};

PictureWidget::PictureWidget() {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void PictureWidget::show(QImage picture) {
    picture_ = std::move(picture);
    update();
}

void PictureWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QSize shown = picture_.size() / picture_.devicePixelRatio();
    if (shown.width() < width() || shown.height() < height()) painter.fillRect(rect(), Qt::black);
    painter.drawImage(QPoint(0, 0), picture_);
}

namespace {

std::vector<SurfaceNative*>& nativeWindows() {
    static std::vector<SurfaceNative*> all;
    return all;
}

} // namespace

void SurfaceNative::clipInside(const QWidget& scrolled) {
    for (SurfaceNative* native : nativeWindows()) {
        if (native->windowGuard == nullptr || !scrolled.isAncestorOf(native->widget)) continue;
        if (!native->widget->isVisible()) continue;
        const QRect whole = native->widget->rect();
        const QRect shown = native->widget->visibleRegion().boundingRect();
        const bool cut = shown != whole;
        // An empty region would be none at all.
        const QRect rest = shown.isEmpty() ? QRect(0, 0, 1, 1) : shown;
        if (cut || native->clipped) native->window->setMask(cut ? QRegion(rest) : QRegion());
        native->clipped = cut;
    }
}

std::unique_ptr<SurfaceNative> SurfaceNative::make() {
    // Other platforms also hand out X interfaces that lead nowhere: the name is what counts.
    if (QGuiApplication::platformName() != "xcb")
        return std::make_unique<SurfaceNative>(new PictureWidget, nullptr);
    auto* window = new SurfaceWindow;
    QWidget* container = QWidget::createWindowContainer(window);
    container->setFocusPolicy(Qt::StrongFocus);
    return std::make_unique<SurfaceNative>(container, window);
}

SurfaceNative::SurfaceNative(QWidget* shown, SurfaceWindow* drawnInto)
    : Native(shown), windowGuard(drawnInto), window(drawnInto) {
    widget->setMinimumSize(1, 1);
    if (window == nullptr) return;
    window->installEventFilter(this);
    window->setProperty(WIDGET, QVariant::fromValue(static_cast<QObject*>(widget)));
    window->create();
    nativeWindows().push_back(this);
}

SurfaceNative::~SurfaceNative() {
    std::erase(nativeWindows(), this);
    if (windowGuard != nullptr) windowGuard->removeEventFilter(this);
}

void SurfaceNative::takeOutOfView() {
    auto& parking = Registry::slot()->parking;
    if (parking == nullptr) {
        parking = std::make_unique<QWidget>();
        parking->setAttribute(Qt::WA_NativeWindow);
        parking->winId();
    }
    widget->hide();
    widget->setParent(parking.get());
    widget->setAttribute(Qt::WA_WState_ExplicitShowHide, false);
}

bool SurfaceNative::eventFilter(QObject* watched, QEvent* event) {
    const bool own = watched == (window != nullptr ? static_cast<QObject*>(window) : widget);
    if (!own) return false;
    const QPointer<QObject> self = this;
    handle(*event);
    return self.isNull();
}

void SurfaceNative::handle(QEvent& event) {
    switch (event.type()) {
    case QEvent::Resize:
        tellSize();
        break;
    case QEvent::Expose:
        tellExposed();
        break;
    case QEvent::Show:
    case QEvent::Hide:
        if (window == nullptr) tellExposed();
        break;
    case QEvent::FocusIn:
        call(focusChanged, true);
        break;
    case QEvent::FocusOut:
        call(focusChanged, false);
        break;
    case QEvent::Leave:
        call(left);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        handleMouse(static_cast<QMouseEvent&>(event));
        break;
    case QEvent::Wheel:
        call(wheeled,
             static_cast<float>(static_cast<QWheelEvent&>(event).angleDelta().y()) / 120.0F);
        break;
    case QEvent::ContextMenu:
        if (isMenuKey(event)) askForMenu(widget);
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (isMenuKey(event) && askForMenu(widget)) break;
        call(key, keyOf(static_cast<QKeyEvent&>(event), event.type() == QEvent::KeyPress));
        break;
    case QEvent::PlatformSurface:
        if (static_cast<QPlatformSurfaceEvent&>(event).surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            call(lost);
        break;
    default:
        break;
    }
}

void SurfaceNative::handleMouse(QMouseEvent& event) {
    const QPointF at = event.position() * scale();
    if (event.type() != QEvent::MouseMove) {
        if (event.type() == QEvent::MouseButtonPress) widget->setFocus(Qt::MouseFocusReason);
        ClickEvent told = clickOf(event, event.type() != QEvent::MouseButtonRelease);
        told.x = qRound(at.x());
        told.y = qRound(at.y());
        if (told.button != 0) call(click, told);
        return;
    }
    const QPoint screen = event.globalPosition().toPoint();
    call(moved,
         MouseMoveEvent{
                 .x = qRound(at.x()),
                 .y = qRound(at.y()),
                 .screen = {screen.x(), screen.y()},
                 .left = event.buttons().testFlag(Qt::LeftButton),
                 .right = event.buttons().testFlag(Qt::RightButton),
                 .middle = event.buttons().testFlag(Qt::MiddleButton),
         });
}

void SurfaceNative::tellExposed() {
    const bool now = window != nullptr ? window->isExposed() : widget->isVisible();
    // Told again while it stays exposed: a menu that closed over it has left its pixels there.
    if (!now && !exposed) return;
    exposed = now;
    call(exposeChanged, now);
}

void SurfaceNative::tellSize() {
    const QSizeF logical = window != nullptr ? window->size() : widget->size();
    const QSize now(qRound(logical.width() * scale()), qRound(logical.height() * scale()));
    if (now == size) return;
    size = now;
    call(resized, static_cast<unsigned>(now.width()), static_cast<unsigned>(now.height()));
}

} // namespace vlWinUi
