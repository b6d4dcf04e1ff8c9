#include "interfaces/CommonWindowInit.h"

#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/RenameDialog.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>

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
    menu.addItem("Rename", withTab([](vlWinUi::TabWindow& window, std::size_t tab) {
                     RenameDialog::open(window.getTabLabel(tab),
                                        window,
                                        [&window, tab](const std::string& label) {
                                            if (label != newTabLabel && tab < window.getTabCount())
                                                window.renameTab(tab, label);
                                        });
                 }));
    menu.addItem("Close", withTab(CommonWindowInit::closeTab));
    menu.open(screen);
}

void openTabsMenu(const std::string& tabsName, vlWinUi::Point screen) {
    auto& menu =
            *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>("TAB_MANIPULATION_CONTEXT");
    menu.getMenu().clear();
    menu.addItem("Add View Container", [tabsName] {
        const auto* tabs = ComponentManager::get<vlWinUi::TabWindow>(tabsName);
        if (tabs == nullptr) return;
        const auto selected = tabs->getSelected();
        if (selected && !isNewTab(*tabs, *selected)) {
            CommonWindowInit::addContainer(*tabs->getPage(*selected));
        }
    });
    menu.open(screen);
}

} // namespace

void CommonWindowInit::setUpTabs(vlWinUi::TabWindow& tabs) {
    tabs.setTabSwitchCallback([&tabs](std::size_t, std::size_t to) {
        if (!isNewTab(tabs, to)) return true;
        createNewTab(tabs, true);
        return false;
    });
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
    vlWinUi::GridLayout layout(1, 1);
    layout.setInternalBorders(4, 4);
    layout.addComponent(InterfaceContainerCreator::getInstance().createContainer(), 0, 0);
    page.setLayout(std::move(layout));
    if (select) tabs.select(at);
    return page;
}

vlWinUi::Window& CommonWindowInit::addContainer(vlWinUi::Window& page) {
    vlWinUi::GridLayout& layout = *page.getLayout();
    const unsigned column = layout.getColumnCount();
    layout.insertColumn(column);
    vlWinUi::Window& container = InterfaceContainerCreator::getInstance().createContainer();
    layout.addComponent(container, column, 0, 1, layout.getRowCount());
    layout.update();
    return container;
}

void CommonWindowInit::closeTab(vlWinUi::TabWindow& tabs, std::size_t index) {
    if (index >= tabs.getTabCount() || isNewTab(tabs, index)) return;
    InterfaceContainerCreator::getInstance().eraseInside(*tabs.getPage(index));
    tabs.removeTab(index);
}

} // namespace vlEditor
