#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Component.h>

#include <QShortcut>
#include <QStyle>
#include <QWidget>

namespace vlWinUi {

Component::Component(std::string name, ComponentType type, std::unique_ptr<Native> native)
    : name_(std::move(name)), type_(type), native_(std::move(native)) {
    native_->component = this;
    native_->widget->setObjectName(toQt(name_));
    native_->listenTo(native_->widget);
}

Component::~Component() = default;

void Component::setData(std::any data) {
    data_ = std::move(data);
}

unsigned Component::getWidth() const {
    return static_cast<unsigned>(native_->widget->width());
}

unsigned Component::getHeight() const {
    return static_cast<unsigned>(native_->widget->height());
}

Point Component::getPositionInScreen() const {
    const QPoint at = native_->widget->mapToGlobal(QPoint(0, 0));
    return {at.x(), at.y()};
}

void Component::setMinSize(unsigned width, unsigned height) {
    native_->widget->setMinimumSize(static_cast<int>(width), static_cast<int>(height));
}

void Component::setMaxSize(unsigned width, unsigned height) {
    const auto limit = [](unsigned size) {
        return size == 0 ? QWIDGETSIZE_MAX : static_cast<int>(size);
    };
    native_->widget->setMaximumSize(limit(width), limit(height));
}

void Component::setVisible(bool visible) {
    vlCommon::assertUiThread();
    native_->widget->setVisible(visible);
}

bool Component::isVisible() const {
    return native_->widget->isVisible();
}

void Component::setEnabled(bool enabled, vlMemory::StringView reason) {
    vlCommon::assertUiThread();
    native_->disabledReason = enabled ? std::string() : std::string(reason);
    native_->widget->setEnabled(enabled);
    native_->updateToolTip();
}

bool Component::isEnabled() const {
    return native_->widget->isEnabled();
}

void Component::setToolTip(vlMemory::StringView text) {
    native_->toolTip = text;
    native_->updateToolTip();
}

std::string Component::getToolTip() const {
    return native_->shownToolTip;
}

void Component::setMarked(bool marked) {
    QWidget& shown = *native_->widget;
    if (shown.property("marked").toBool() == marked) return;
    shown.setProperty("marked", marked);
    shown.style()->unpolish(&shown);
    shown.style()->polish(&shown);
    shown.update();
}

void Component::setAccessibleName(vlMemory::StringView name) {
    native_->widget->setAccessibleName(toQt(name));
}

void Component::focusWindow() {
    vlCommon::assertUiThread();
    QWidget* window = native_->widget->window();
    if (window->isVisible()) {
        if (window->isMinimized()) window->showNormal();
        window->raise();
        window->activateWindow();
    }
    native_->widget->setFocus(Qt::OtherFocusReason);
}

bool Component::hasFocus() const {
    return native_->widget->hasFocus();
}

bool Component::focusInside() {
    vlCommon::assertUiThread();
    QWidget* outer = native_->widget;
    for (QWidget* at = outer->nextInFocusChain(); at != outer; at = at->nextInFocusChain()) {
        if (!outer->isAncestorOf(at) || !at->isVisible() || !at->isEnabled()) continue;
        if ((at->focusPolicy() & Qt::TabFocus) == 0) continue;
        at->setFocus(Qt::TabFocusReason);
        return true;
    }
    return false;
}

void Component::setKeyFilter(std::function<bool(const KeyEvent&)> filter) {
    native_->keyFilter = std::move(filter);
}

void Component::setMenuKeyCallback(std::function<void()> callback) {
    native_->menuKey = std::move(callback);
}

void Component::addShortcut(vlMemory::StringView keys, std::function<void()> callback) {
    vlCommon::assertUiThread();
    auto* shortcut =
            new QShortcut(QKeySequence(toQt(keys), QKeySequence::PortableText), native_->widget);
    QObject::connect(shortcut,
                     &QShortcut::activated,
                     native_.get(),
                     [callback = std::move(callback)] { call(callback); });
}

void Component::setClickCallback(std::function<void(const ClickEvent&)> callback) {
    native_->click = std::move(callback);
}

GridLayout& Component::setLayout(GridLayout layout) {
    vlCommon::assertUiThread();
    native_->layout = std::make_unique<GridLayout>(std::move(layout));
    native_->layout->owner_ = this;
    native_->relativeLayout = nullptr;
    native_->layout->update();
    return *native_->layout;
}

GridLayout* Component::getLayout() {
    return native_->layout.get();
}

RelativeLayout& Component::setLayout(RelativeLayout layout) {
    vlCommon::assertUiThread();
    native_->relativeLayout = std::make_unique<RelativeLayout>(std::move(layout));
    native_->relativeLayout->owner_ = this;
    native_->layout = nullptr;
    native_->relativeLayout->update();
    return *native_->relativeLayout;
}

RelativeLayout* Component::getRelativeLayout() {
    return native_->relativeLayout.get();
}

Component* Component::getParent() const {
    for (const QWidget* at = native_->widget->parentWidget(); at != nullptr;
         at = at->parentWidget())
        if (Component* found = Native::componentOf(at)) return found;
    return nullptr;
}

} // namespace vlWinUi
