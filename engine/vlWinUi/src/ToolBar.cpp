#include "MenuState.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ToolBar.h>

#include <QMenuBar>

#include <algorithm>

namespace vlWinUi {
namespace {

struct ToolBarNative final : Native {
    ToolBarNative() : Native(new QMenuBar) { bar().setNativeMenuBar(false); }
    QMenuBar& bar() { return *static_cast<QMenuBar*>(widget); }

    std::vector<std::unique_ptr<Menu>> menus;
    std::vector<std::unique_ptr<MenuItem>> items;
};

} // namespace

ToolBar::ToolBar(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ToolBarNative>()) {
}

void ToolBar::setText(vlMemory::StringView text) {
    setAccessibleName(text);
}

std::string ToolBar::getText() const {
    return fromQt(native().widget->accessibleName());
}

Menu& ToolBar::addMenu(vlMemory::StringView label, unsigned width) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ToolBarNative>(*this);
    QMenu* made = nullptr;
    native.menus.push_back(makeMenu(&native.bar(), label, width, &made));
    native.bar().addMenu(made);
    return *native.menus.back();
}

MenuItem& ToolBar::addItem(vlMemory::StringView label, std::function<void()> callback) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ToolBarNative>(*this);
    native.items.push_back(makeMenuItem(&native.bar(), label, std::move(callback)));
    return *native.items.back();
}

Menu* ToolBar::findMenu(vlMemory::StringView label) {
    auto& menus = nativeAs<ToolBarNative>(*this).menus;
    const auto found = std::ranges::find_if(
            menus, [label](const auto& menu) { return menu->getLabel() == label; });
    return found == menus.end() ? nullptr : found->get();
}

} // namespace vlWinUi
