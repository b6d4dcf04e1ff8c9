#include "MenuState.h"
#include "Native.h"
#include "Text.h"
#include "WindowSheet.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ContextMenu.h>

namespace vlWinUi {
namespace {

struct ContextMenuNative final : Native {
    explicit ContextMenuNative(std::unique_ptr<Menu> made, QMenu* shown)
        : Native(shown), menu(std::move(made)) {}

    static std::unique_ptr<ContextMenuNative> make() {
        QMenu* shown = nullptr;
        auto menu = makeMenu(nullptr, {}, 0, &shown);
        wearSheet(*shown);
        return std::make_unique<ContextMenuNative>(std::move(menu), shown);
    }

    std::unique_ptr<Menu> menu;
};

} // namespace

ContextMenu::ContextMenu(std::string name)
    : Component(std::move(name), TYPE, ContextMenuNative::make()) {
}

void ContextMenu::setText(vlMemory::StringView text) {
    setAccessibleName(text);
}

std::string ContextMenu::getText() const {
    return fromQt(native().widget->accessibleName());
}

Menu& ContextMenu::getMenu() {
    return *nativeAs<ContextMenuNative>(*this).menu;
}

MenuItem& ContextMenu::addItem(vlMemory::StringView label, std::function<void()> callback) {
    return getMenu().addItem(label, std::move(callback));
}

void ContextMenu::open(Point screen) {
    vlCommon::assertUiThread();
    getMenu().open(screen);
}

void ContextMenu::openAbove(Point screen) {
    open({screen.x, screen.y - widgetAs<QMenu>(*this).sizeHint().height()});
}

void ContextMenu::close() {
    widgetAs<QMenu>(*this).hide();
}

} // namespace vlWinUi
