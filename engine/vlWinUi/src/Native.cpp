#include "Native.h"

#include "Call.h"
#include "KeyCodes.h"
#include "Text.h"

#include <QContextMenuEvent>
#include <QHash>
#include <QKeyEvent>
#include <QMouseEvent>

namespace vlWinUi {
namespace {

QHash<const QObject*, Native*>& natives() {
    static QHash<const QObject*, Native*> all;
    return all;
}

std::uint32_t buttonOf(Qt::MouseButton button) {
    if (button == Qt::LeftButton) return ClickEvent::LEFT;
    if (button == Qt::RightButton) return ClickEvent::RIGHT;
    return button == Qt::MiddleButton ? ClickEvent::MIDDLE : 0;
}

bool isClick(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease ||
           type == QEvent::MouseButtonDblClick;
}

} // namespace

ClickEvent clickOf(const QMouseEvent& event, bool pressed) {
    const QPoint at = event.position().toPoint();
    const QPoint onScreen = event.globalPosition().toPoint();
    return {
            .button = buttonOf(event.button()),
            .pressed = pressed,
            .doubleClick = event.type() == QEvent::MouseButtonDblClick,
            .shift = event.modifiers().testFlag(Qt::ShiftModifier),
            .control = event.modifiers().testFlag(Qt::ControlModifier),
            .alt = event.modifiers().testFlag(Qt::AltModifier),
            .x = at.x(),
            .y = at.y(),
            .screen = {onScreen.x(), onScreen.y()},
    };
}

Native::Native(QWidget* shown) : widget(shown) {
    natives().insert(shown, this);
}

Native::~Native() {
    natives().remove(widget);
    disconnect(widget, nullptr, this, nullptr);
    widget->removeEventFilter(this);
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
}

void Native::takeOutOfView() {
    widget->hide();
    widget->setParent(nullptr);
    // Placed again it is to be seen: hiding it was ours, not the program's wish.
    widget->setAttribute(Qt::WA_WState_ExplicitShowHide, false);
}

void Native::listenTo(QWidget* part) {
    part->installEventFilter(this);
}

bool Native::isMenuKey(const QEvent& event) {
    if (event.type() == QEvent::ContextMenu)
        return static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
    if (event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier;
}

bool Native::askForMenu(const QWidget* at) {
    for (; at != nullptr; at = at->parentWidget()) {
        const Native* native = natives().value(at, nullptr);
        if (native == nullptr || !native->menuKey) continue;
        call(native->menuKey);
        return true;
    }
    return false;
}

bool Native::handleKeys(QEvent& event) {
    if (keyFilter && event.type() == QEvent::KeyPress) {
        const auto filter = keyFilter;
        const QPointer<QObject> self = this;
        if (filter(keyOf(static_cast<QKeyEvent&>(event), true)) || self.isNull()) return true;
    }
    if (!menuKey || !isMenuKey(event)) return false;
    event.accept();
    call(menuKey);
    return true;
}

bool Native::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget && handleKeys(*event)) return true;
    if (!click || !isClick(event->type())) return false;
    auto* part = static_cast<QWidget*>(watched);
    if (!part->isEnabled()) return false;
    ClickEvent told =
            clickOf(*static_cast<QMouseEvent*>(event), event->type() != QEvent::MouseButtonRelease);
    if (told.button == 0) return false;
    if (part != widget) {
        const QPoint at = part->mapTo(widget, QPoint(told.x, told.y));
        told.x = at.x();
        told.y = at.y();
    }
    const QPointer<QObject> self = this;
    call(click, told);
    return self.isNull();
}

void Native::updateToolTip() {
    const bool explain = !widget->isEnabledTo(widget->parentWidget()) && !disabledReason.empty();
    std::string shown = explain ? disabledReason : toolTip;
    if (!explain && !shownKeys.empty())
        shown = shown.empty() ? shownKeys : shown + " (" + shownKeys + ")";
    shownToolTip = std::move(shown);
    widget->setToolTip(plainToolTip(toQt(shownToolTip)));
}

Component* Native::componentOf(const QObject* widget) {
    const Native* native = natives().value(widget, nullptr);
    return native == nullptr ? nullptr : native->component;
}

} // namespace vlWinUi
