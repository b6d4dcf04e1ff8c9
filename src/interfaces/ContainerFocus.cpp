#include "interfaces/ContainerFocus.h"

#include "interfaces/ContainerTitleMenu.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/InputSystem.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr std::uint32_t enterKey = 13;
constexpr std::uint32_t spaceKey = 32;
constexpr std::uint32_t downKey = 40;

/// The name, since a container may end in many ways.
std::string& currentName() {
    static std::string name;
    return name;
}

void mark(const std::string& container, bool marked) {
    for (const char* part : {"_LBAR", "_TITLE", "_RBAR"})
        if (auto* shown = ComponentManager::get(container + part)) shown->setMarked(marked);
}

void follow(const vlWinUi::Component* focused) {
    if (!InterfaceContainerCreator::hasInstance()) return;
    const auto& creator = InterfaceContainerCreator::getInstance();
    while (focused != nullptr && !creator.isContainer(focused->getComponentName()))
        focused = focused->getParent();
    if (focused == nullptr || focused->getComponentName() == currentName()) return;
    mark(currentName(), false);
    currentName() = focused->getComponentName();
    mark(currentName(), true);
}

void goOn(const vlWinUi::TabWindow& tabs, bool forward) {
    const auto selected = tabs.getSelected();
    if (!selected) return;
    const auto all = InterfaceContainerManipulator::getContainers(*tabs.getPage(*selected));
    if (all.empty()) return;
    const auto at = std::ranges::find(all, ContainerFocus::current());
    std::size_t next = 0;
    if (at != all.end()) {
        const auto index = static_cast<std::size_t>(at - all.begin());
        next = (index + (forward ? 1 : all.size() - 1)) % all.size();
    }
    ContainerFocus::focus(*all[next]);
}

} // namespace

void ContainerFocus::setUp(vlWinUi::TabWindow& tabs) {
    tabs.addShortcut("F6", [&tabs] { goOn(tabs, true); });
    tabs.addShortcut("Shift+F6", [&tabs] { goOn(tabs, false); });
    vlWinUi::InputSystem::setFocusCallback(follow);
}

void ContainerFocus::setUp(vlWinUi::Window& container,
                           vlWinUi::Static& title,
                           vlWinUi::ToolBar& leftBar) {
    const std::string name = container.getComponentName();
    container.setMenuKeyCallback([name] { ContainerTitleMenu::openBelowTitle(name); });
    title.setFocusable(true);
    title.setToolTip("Right click or menu key: sizes, further containers, close. Enter: views");
    title.setKeyFilter([&leftBar](const vlWinUi::KeyEvent& key) {
        const bool opens = key.virtualKey == enterKey || key.virtualKey == spaceKey ||
                           key.virtualKey == downKey;
        vlWinUi::Menu* views = opens ? leftBar.findMenu("View") : nullptr;
        if (views == nullptr) return false;
        const vlWinUi::Point at = leftBar.getPositionInScreen();
        views->open({at.x, at.y + static_cast<int>(leftBar.getHeight())});
        return true;
    });
}

void ContainerFocus::focus(vlWinUi::Window& container) {
    const Interface* shown = InterfaceContainerCreator::getInstance().getInterface(container);
    vlWinUi::Component* root = shown == nullptr ? nullptr : shown->getRoot();
    if (root == nullptr || !root->focusInside()) {
        vlWinUi::Component* title = ComponentManager::get(container.getComponentName() + "_TITLE");
        if (title != nullptr) title->focusWindow();
    }
    // Without a window in front nothing has the focus, but the person's next key counts here.
    follow(&container);
}

void ContainerFocus::focusIn(vlWinUi::Window& page) {
    const auto all = InterfaceContainerManipulator::getContainers(page);
    if (!all.empty()) focus(*all.front());
}

void ContainerFocus::leave(const vlWinUi::Window& container) {
    if (currentName() == container.getComponentName()) currentName().clear();
}

vlWinUi::Window* ContainerFocus::current() {
    return ComponentManager::get<vlWinUi::Window>(currentName());
}

} // namespace vlEditor
