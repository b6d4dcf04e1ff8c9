#include "Call.h"
#include "TabWindowNative.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>

#include <algorithm>

namespace vlWinUi {

TabWindow::TabWindow(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<TabWindowNative>()) {
}

void TabWindow::setText(vlMemory::StringView text) {
    if (const auto selected = getSelected()) renameTab(*selected, text);
}

std::string TabWindow::getText() const {
    const auto selected = getSelected();
    return selected ? getTabLabel(*selected) : std::string();
}

Window* TabWindow::addTab(vlMemory::StringView label) {
    return insertTab(getTabCount(), label);
}

Window* TabWindow::insertTab(std::size_t index, vlMemory::StringView label) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TabWindowNative>(*this);
    const int at = static_cast<int>(std::min(index, getTabCount()));
    std::string name;
    do
        name = getComponentName() + "_TAB_" + std::to_string(native.nextPage++);
    while (ComponentManager::get(name) != nullptr);
    auto* page = ComponentManager::createOrRetrieve<Window>(name);
    page->setText(label);
    native.insert(at, page->native().widget, labelToQt(label));
    return page;
}

void TabWindow::removeTab(std::size_t index) {
    if (const Window* page = detachTab(index)) ComponentManager::erase(page->getComponentName());
}

Window* TabWindow::detachTab(std::size_t index) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TabWindowNative>(*this);
    Window* page = getPage(index);
    if (page == nullptr) return nullptr;
    const Quiet guard(native.quiet);
    const int at = static_cast<int>(index);
    // The last tab often is the one that makes new ones: prefer the neighbour before.
    if (native.pages->currentWidget() == native.pageAt(at) && native.bar->count() > 1)
        native.pages->setCurrentWidget(native.pageAt(at > 0 ? at - 1 : 1));
    page->native().takeOutOfView();
    return page;
}

void TabWindow::renameTab(std::size_t index, vlMemory::StringView label) {
    auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(index)) return;
    native.bar->setTabText(static_cast<int>(index), labelToQt(label));
    getPage(index)->setText(label);
}

void TabWindow::setTabToolTip(std::size_t index, vlMemory::StringView text) {
    nativeAs<TabWindowNative>(*this).bar->setTabToolTip(static_cast<int>(index), toQt(text));
}

void TabWindow::setTabMark(std::size_t index, bool marked, Emphasis emphasis) {
    auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(index)) return;
    native.mark(static_cast<int>(index), marked ? std::optional(emphasis) : std::nullopt);
}

bool TabWindow::isTabMarked(std::size_t index) const {
    const auto& native = nativeAs<TabWindowNative>(*this);
    return native.has(index) && native.isMarked(static_cast<int>(index));
}

void TabWindow::setArrangeable(bool arrangeable) {
    auto& native = nativeAs<TabWindowNative>(*this);
    native.arrangeable = arrangeable;
    native.bar->setTabsClosable(arrangeable);
}

void TabWindow::setPagesShown(bool shown) {
    nativeAs<TabWindowNative>(*this).pages->setVisible(shown);
}

void TabWindow::setTabFixed(std::size_t index) {
    auto& native = nativeAs<TabWindowNative>(*this);
    if (native.has(index)) native.fix(static_cast<int>(index));
}

bool TabWindow::isTabFixed(std::size_t index) const {
    const auto& native = nativeAs<TabWindowNative>(*this);
    return native.has(index) && native.isFixed(static_cast<int>(index));
}

void TabWindow::moveTab(std::size_t from, std::size_t to) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(from) || !native.has(to) || from == to) return;
    const Quiet guard(native.quiet);
    native.bar->moveTab(static_cast<int>(from), static_cast<int>(to));
    native.syncBar();
}

void TabWindow::editTab(std::size_t index) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TabWindowNative>(*this);
    if (native.has(index)) native.edit(static_cast<int>(index));
}

bool TabWindow::isEditing() const {
    return nativeAs<TabWindowNative>(*this).isEditing();
}

std::size_t TabWindow::getTabCount() const {
    return static_cast<std::size_t>(nativeAs<TabWindowNative>(*this).bar->count());
}

std::string TabWindow::getTabLabel(std::size_t index) const {
    return labelFromQt(nativeAs<TabWindowNative>(*this).bar->tabText(static_cast<int>(index)));
}

Window* TabWindow::getPage(std::size_t index) const {
    const auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(index)) return nullptr;
    return static_cast<Window*>(Native::componentOf(native.pageAt(static_cast<int>(index))));
}

std::optional<std::size_t> TabWindow::indexOf(const Window& page) const {
    const int index = nativeAs<TabWindowNative>(*this).indexOf(page.native().widget);
    if (index < 0) return std::nullopt;
    return static_cast<std::size_t>(index);
}

std::optional<std::size_t> TabWindow::indexOf(vlMemory::StringView label) const {
    for (std::size_t i = 0; i < getTabCount(); ++i)
        if (getTabLabel(i) == label) return i;
    return std::nullopt;
}

void TabWindow::select(std::size_t index) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(index)) return;
    native.pages->setCurrentWidget(native.pageAt(static_cast<int>(index)));
    native.syncBar();
}

std::optional<std::size_t> TabWindow::getSelected() const {
    const auto& native = nativeAs<TabWindowNative>(*this);
    const int index = native.indexOf(native.pages->currentWidget());
    if (index < 0) return std::nullopt;
    return static_cast<std::size_t>(index);
}

void TabWindow::cycle(bool forward) {
    vlCommon::assertUiThread();
    nativeAs<TabWindowNative>(*this).step(forward ? 1 : -1, true);
}

Rectangle TabWindow::getTabRectangle(std::size_t index) const {
    const QTabBar& bar = *nativeAs<TabWindowNative>(*this).bar;
    const QRect tab = bar.tabRect(static_cast<int>(index));
    const QPoint at = bar.mapToGlobal(tab.topLeft());
    return {at.x(), at.y(), tab.width(), tab.height()};
}

void TabWindow::setTabSwitchCallback(std::function<bool(std::size_t, std::size_t)> callback) {
    nativeAs<TabWindowNative>(*this).switching = std::move(callback);
}

void TabWindow::setTabClickCallback(
        std::function<void(std::optional<std::size_t>, const ClickEvent&)> callback) {
    nativeAs<TabWindowNative>(*this).clicked = std::move(callback);
}

void TabWindow::setTabRenameCallback(
        std::function<bool(std::size_t, const std::string&)> callback) {
    nativeAs<TabWindowNative>(*this).renamed = std::move(callback);
}

void TabWindow::setTabCloseCallback(std::function<void(std::size_t)> callback) {
    nativeAs<TabWindowNative>(*this).closed = std::move(callback);
}

} // namespace vlWinUi
