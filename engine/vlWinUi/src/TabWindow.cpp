#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/TabWindow.h>

#include <QMouseEvent>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>

namespace vlWinUi {
namespace {

struct TabWindowNative final : Native {
    TabWindowNative();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void askForSwitch(int to);
    /// The page may also have been erased by its own name.
    void forgetPage(int index);
    /// The pages decide, the bar follows.
    void syncBar();
    bool has(std::size_t index) const { return index < static_cast<std::size_t>(pages->count()); }

    QTabBar* bar = nullptr;
    QStackedWidget* pages = nullptr;
    std::uint64_t nextPage = 0;
    std::function<bool(std::size_t, std::size_t)> switching;
    std::function<void(std::optional<std::size_t>, const ClickEvent&)> clicked;
};

TabWindowNative::TabWindowNative() : Native(new QWidget) {
    bar = new QTabBar;
    bar->setExpanding(false);
    bar->setDrawBase(false);
    bar->setFocusPolicy(Qt::TabFocus);
    bar->setElideMode(Qt::ElideRight);
    pages = new QStackedWidget;
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(pages, 1);
    listenTo(bar);
    connect(bar, &QTabBar::currentChanged, this, [this](int index) {
        if (quiet == 0 && index >= 0) askForSwitch(index);
    });
    connect(pages, &QStackedWidget::widgetRemoved, this, [this](int index) { forgetPage(index); });
}

bool TabWindowNative::eventFilter(QObject* watched, QEvent* event) {
    const bool press = event->type() == QEvent::MouseButtonPress ||
                       event->type() == QEvent::MouseButtonDblClick;
    if (watched == bar && clicked && (press || event->type() == QEvent::MouseButtonRelease)) {
        const auto& mouse = *static_cast<QMouseEvent*>(event);
        const int tab = bar->tabAt(mouse.position().toPoint());
        const QPointer<QObject> self = this;
        call(clicked,
             tab < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(tab)),
             clickOf(mouse, press));
        if (self.isNull()) return true;
    }
    return Native::eventFilter(watched, event);
}

void TabWindowNative::askForSwitch(int to) {
    const QPointer<QObject> self = this;
    const QPointer<QWidget> wanted = pages->widget(to);
    const int from = pages->currentIndex();
    if (from == to) return;
    const auto ask = switching;
    const bool allowed = !ask || ask(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
    if (self.isNull()) return;
    if (allowed && wanted != nullptr && pages->indexOf(wanted) >= 0)
        pages->setCurrentWidget(wanted);
    syncBar();
}

void TabWindowNative::forgetPage(int index) {
    const Quiet guard(quiet);
    bar->removeTab(index);
    syncBar();
}

void TabWindowNative::syncBar() {
    const Quiet guard(quiet);
    bar->setCurrentIndex(pages->currentIndex());
}

} // namespace

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
    const Quiet guard(native.quiet);
    native.bar->insertTab(at, labelToQt(label));
    native.pages->insertWidget(at, page->native().widget);
    native.syncBar();
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
    if (native.pages->currentIndex() == at && native.pages->count() > 1)
        native.pages->setCurrentIndex(at > 0 ? at - 1 : 1);
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

std::size_t TabWindow::getTabCount() const {
    return static_cast<std::size_t>(nativeAs<TabWindowNative>(*this).pages->count());
}

std::string TabWindow::getTabLabel(std::size_t index) const {
    return labelFromQt(nativeAs<TabWindowNative>(*this).bar->tabText(static_cast<int>(index)));
}

Window* TabWindow::getPage(std::size_t index) const {
    const auto& native = nativeAs<TabWindowNative>(*this);
    if (!native.has(index)) return nullptr;
    return static_cast<Window*>(Native::componentOf(native.pages->widget(static_cast<int>(index))));
}

std::optional<std::size_t> TabWindow::indexOf(const Window& page) const {
    const int index = nativeAs<TabWindowNative>(*this).pages->indexOf(page.native().widget);
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
    native.pages->setCurrentIndex(static_cast<int>(index));
    native.syncBar();
}

std::optional<std::size_t> TabWindow::getSelected() const {
    const int index = nativeAs<TabWindowNative>(*this).pages->currentIndex();
    if (index < 0) return std::nullopt;
    return static_cast<std::size_t>(index);
}

void TabWindow::setTabSwitchCallback(std::function<bool(std::size_t, std::size_t)> callback) {
    nativeAs<TabWindowNative>(*this).switching = std::move(callback);
}

void TabWindow::setTabClickCallback(
        std::function<void(std::optional<std::size_t>, const ClickEvent&)> callback) {
    nativeAs<TabWindowNative>(*this).clicked = std::move(callback);
}

} // namespace vlWinUi
