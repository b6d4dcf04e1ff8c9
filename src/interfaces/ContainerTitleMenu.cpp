#include "interfaces/ContainerTitleMenu.h"

#include "interfaces/ContainerFocus.h"
#include "interfaces/InterfaceContainerManipulator.h"
#include "interfaces/ResizeContainerDialog.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;
using Manipulator = InterfaceContainerManipulator;

/// By the name: the container may have been closed while the menu stood open.
template <class F> auto with(const std::string& container, F act) {
    return [container, act] {
        if (auto* window = ComponentManager::get<vlWinUi::Window>(container)) act(*window);
    };
}

void addAdding(vlWinUi::ContextMenu& menu,
               const char* label,
               const std::string& container,
               ContainerSide side) {
    menu.addItem(label, with(container, [side](vlWinUi::Window& window) {
                     ContainerFocus::focus(Manipulator::addContainer(window, side));
                 }));
}

vlWinUi::Window* pageOf(vlWinUi::Component& container) {
    vlWinUi::Component* at = container.getParent();
    while (at != nullptr && Manipulator::isSplit(*at))
        at = at->getParent();
    return at == nullptr ? nullptr : ComponentManager::get<vlWinUi::Window>(at->getComponentName());
}

void close(vlWinUi::Window& container) {
    vlWinUi::Window* page = pageOf(container);
    ContainerFocus::leave(container);
    Manipulator::closeContainer(container);
    if (page != nullptr) ContainerFocus::focusIn(*page);
}

} // namespace

void ContainerTitleMenu::open(const std::string& container, vlWinUi::Point screen) {
    const auto* clicked = ComponentManager::get<vlWinUi::Window>(container);
    if (clicked == nullptr) return;
    auto& menu = *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>(
            "EDITOR_CONTAINER_TITLE_MENU");
    menu.setText("Container");
    menu.getMenu().clear();
    menu.addItem("Set fixed pixel width", with(container, [](vlWinUi::Window& window) {
                     ResizeContainerDialog::open(window, true);
                 }));
    menu.addItem("Set fixed pixel height", with(container, [](vlWinUi::Window& window) {
                     ResizeContainerDialog::open(window, false);
                 }));
    menu.getMenu().addSeparator();
    addAdding(menu, "Add container above", container, ContainerSide::above);
    addAdding(menu, "Add container left", container, ContainerSide::left);
    addAdding(menu, "Add container right", container, ContainerSide::right);
    addAdding(menu, "Add container under", container, ContainerSide::under);
    menu.getMenu().addSeparator();
    menu.addItem("Free fixed size", with(container, Manipulator::freeSizes))
            .setEnabled(Manipulator::hasFixedSize(*clicked), "Nothing of it has a fixed size.");
    menu.addItem("Close container", with(container, close));
    menu.open(screen);
}

void ContainerTitleMenu::openBelowTitle(const std::string& container) {
    const vlWinUi::Component* title = ComponentManager::get(container + "_TITLE");
    if (title == nullptr) return;
    const vlWinUi::Point at = title->getPositionInScreen();
    open(container, {at.x, at.y + static_cast<int>(title->getHeight())});
}

} // namespace vlEditor
