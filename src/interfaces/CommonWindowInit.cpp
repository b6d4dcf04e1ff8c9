#include "interfaces/CommonWindowInit.h"

#include "interfaces/ContainerFocus.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/System.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr std::string_view newTabLabel = "+";

bool isNewTab(const vlWinUi::TabWindow& tabs, std::size_t index) {
    return tabs.getTabLabel(index) == newTabLabel;
}

// The menu's items act on the tab that it was opened for, which its page names for good.
void openTabMenu(vlWinUi::TabWindow& tabs, std::size_t index, vlWinUi::Point screen) {
    auto& menu = *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>("EDITOR_TAB_MENU");
    menu.getMenu().clear();
    const auto withTab = [tabsName = tabs.getComponentName(),
                          pageName = tabs.getPage(index)->getComponentName()](auto act) {
        return [=] {
            auto* window = ComponentManager::get<vlWinUi::TabWindow>(tabsName);
            const auto* page = ComponentManager::get<vlWinUi::Window>(pageName);
            if (window == nullptr || page == nullptr) return;
            if (const auto tab = window->indexOf(*page)) act(*window, *tab);
        };
    };
    menu.addItem("Rename",
                 withTab([](vlWinUi::TabWindow& window, std::size_t tab) { window.editTab(tab); }));
    menu.addItem("Close", withTab(CommonWindowInit::closeTab));
    menu.open(screen);
}

void addBesideSelected(const vlWinUi::TabWindow& tabs) {
    const auto selected = tabs.getSelected();
    if (selected && !isNewTab(tabs, *selected))
        ContainerFocus::focus(CommonWindowInit::addContainer(*tabs.getPage(*selected)));
}

void openTabsMenu(const std::string& tabsName, vlWinUi::Point screen) {
    auto& menu =
            *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>("TAB_MANIPULATION_CONTEXT");
    menu.getMenu().clear();
    menu.addItem("Add View Container", [tabsName] {
        const auto* tabs = ComponentManager::get<vlWinUi::TabWindow>(tabsName);
        if (tabs != nullptr) addBesideSelected(*tabs);
    });
    menu.open(screen);
}

void openSelectedTabMenu(vlWinUi::TabWindow& tabs) {
    const auto selected = tabs.getSelected();
    if (!selected || isNewTab(tabs, *selected)) return;
    const vlWinUi::Rectangle tab = tabs.getTabRectangle(*selected);
    openTabMenu(tabs, *selected, {tab.x, tab.y + tab.height});
}

bool mayBeCalled(const std::string& label) {
    if (label != newTabLabel) return true;
    vlWinUi::System::showHint("A tab cannot be called \"+\": that one makes new tabs.");
    return false;
}

void newTab(vlWinUi::TabWindow& tabs) {
    ContainerFocus::focusIn(CommonWindowInit::createNewTab(tabs, true));
}

void closeSelected(vlWinUi::TabWindow& tabs) {
    if (const auto selected = tabs.getSelected()) CommonWindowInit::closeTab(tabs, *selected);
}

void moveSelected(vlWinUi::TabWindow& tabs, bool right) {
    const auto from = tabs.getSelected();
    if (!from || isNewTab(tabs, *from) || (!right && *from == 0)) return;
    const std::size_t to = right ? *from + 1 : *from - 1;
    if (to < tabs.getTabCount() && !isNewTab(tabs, to)) tabs.moveTab(*from, to);
}

void addKeys(vlWinUi::TabWindow& tabs) {
    tabs.addShortcut("Ctrl+T", [&tabs] { newTab(tabs); });
    tabs.addShortcut("Ctrl+Shift+T", [&tabs] { addBesideSelected(tabs); });
    tabs.addShortcut("Ctrl+W", [&tabs] { closeSelected(tabs); });
    tabs.addShortcut("Ctrl+Tab", [&tabs] { tabs.cycle(true); });
    tabs.addShortcut("Ctrl+Shift+Tab", [&tabs] { tabs.cycle(false); });
    tabs.addShortcut("Ctrl+Shift+PgUp", [&tabs] { moveSelected(tabs, false); });
    tabs.addShortcut("Ctrl+Shift+PgDown", [&tabs] { moveSelected(tabs, true); });
    tabs.setMenuKeyCallback([&tabs] { openSelectedTabMenu(tabs); });
    ContainerFocus::setUp(tabs);
}

} // namespace

void CommonWindowInit::setUpTabs(vlWinUi::TabWindow& tabs) {
    tabs.setTabSwitchCallback([&tabs](std::size_t, std::size_t to) {
        if (!isNewTab(tabs, to)) return true;
        newTab(tabs);
        return false;
    });
    tabs.setTabRenameCallback(
            [](std::size_t, const std::string& label) { return mayBeCalled(label); });
    tabs.setTabCloseCallback([&tabs](std::size_t index) { closeTab(tabs, index); });
    addKeys(tabs);
    tabs.setTabClickCallback(
            [&tabs](std::optional<std::size_t> index, const vlWinUi::ClickEvent& event) {
                if (event.button != vlWinUi::ClickEvent::RIGHT || event.pressed) return;
                if (!index)
                    openTabsMenu(tabs.getComponentName(), event.screen);
                else if (!isNewTab(tabs, *index))
                    openTabMenu(tabs, *index, event.screen);
            });
}

vlWinUi::Window& CommonWindowInit::createNewTab(vlWinUi::TabWindow& tabs, bool select) {
    const std::size_t at = tabs.indexOf(newTabLabel).value_or(tabs.getTabCount());
    vlWinUi::Window& page = *tabs.insertTab(at, "New Tab");
    page.setLayout(InterfaceContainerManipulator::layoutWith(
            InterfaceContainerCreator::getInstance().createContainer()));
    if (select) tabs.select(at);
    return page;
}

vlWinUi::Window& CommonWindowInit::addContainer(vlWinUi::Window& page) {
    return InterfaceContainerManipulator::addContainerAtEnd(page);
}

void CommonWindowInit::addNewTabTab(vlWinUi::TabWindow& tabs) {
    tabs.addTab(newTabLabel);
    tabs.setTabFixed(tabs.getTabCount() - 1);
    tabs.setTabToolTip(tabs.getTabCount() - 1, "New tab (Ctrl+T)");
}

void CommonWindowInit::closeTab(vlWinUi::TabWindow& tabs, std::size_t index) {
    if (index >= tabs.getTabCount() || isNewTab(tabs, index)) return;
    std::size_t others = 0;
    for (std::size_t i = 0; i < tabs.getTabCount(); ++i)
        if (i != index && !isNewTab(tabs, i)) ++others;
    // With "+" alone there would be nothing to look at; the new one comes right of this one.
    if (others == 0) createNewTab(tabs, false);
    if (tabs.getSelected() == index && index == 0) tabs.select(1);
    InterfaceContainerCreator::getInstance().eraseInside(*tabs.getPage(index));
    tabs.removeTab(index);
}

} // namespace vlEditor
