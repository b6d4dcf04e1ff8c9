#include "interfaces/InterfaceContainerCreator.h"

#include "core/EditorLogger.h"
#include "interfaces/ContainerFocus.h"
#include "interfaces/ContainerTitleMenu.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/System.h>
#include <vlWinUi/ToolBar.h>

#include <algorithm>
#include <vector>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr float titleHeight = 27;
constexpr float barWidth = 64;
constexpr unsigned viewMenuWidth = 200;
/// A few letters of the title, and of an empty container a place to hit.
constexpr unsigned smallestTitle = 40;
constexpr unsigned smallestEmpty = 37;

std::string_view labelOf(ContainerType type) {
    const auto found = std::ranges::find(viewMenuEntries, type, &ViewMenuEntry::type);
    return found == viewMenuEntries.end() ? std::string_view("This view") : found->label;
}

void say(const std::string& line) {
    EditorLogger::getInstance().log(line, "Editor");
    vlWinUi::System::showHint(line);
}

void fillViewMenu(vlWinUi::Menu& menu, const std::string& container) {
    for (const ViewMenuEntry& entry : viewMenuEntries) {
        menu.addItem(entry.label, [container, type = entry.type] {
            auto* window = ComponentManager::get<vlWinUi::Window>(container);
            if (window == nullptr) return;
            InterfaceContainerCreator::getInstance().createInterface(*window, type);
        });
    }
}

/// The menu of the whole container stands on every part of its title bar that has none itself.
void openMenuOn(vlWinUi::Component& part, const std::string& container) {
    part.setClickCallback([container](const vlWinUi::ClickEvent& event) {
        if (event.button == vlWinUi::ClickEvent::RIGHT && !event.pressed)
            ContainerTitleMenu::open(container, event.screen);
    });
}

bool isInside(const vlWinUi::Component* component, const vlWinUi::Component& outer) {
    while (component != nullptr && component != &outer)
        component = component->getParent();
    return component != nullptr;
}

} // namespace

void InterfaceContainerCreator::setCreator(ContainerType type, Creator creator) {
    creators_.at(static_cast<std::size_t>(type)) = std::move(creator);
}

bool InterfaceContainerCreator::isAvailable(ContainerType type) const {
    return creators_.at(static_cast<std::size_t>(type)) != nullptr;
}

vlWinUi::Window& InterfaceContainerCreator::createContainer() {
    const std::string name = "CONTAINER_" + std::to_string(nextNumber_++);
    auto& container = *ComponentManager::createOrRetrieve<vlWinUi::Window>(name);
    auto& leftBar = *ComponentManager::createOrRetrieve<vlWinUi::ToolBar>(name + "_LBAR");
    auto& title = *ComponentManager::createOrRetrieve<vlWinUi::Static>(name + "_TITLE");
    auto& rightBar = *ComponentManager::createOrRetrieve<vlWinUi::ToolBar>(name + "_RBAR");
    leftBar.setText("View of this container");
    rightBar.setText("Actions of this view");
    auto& empty = *ComponentManager::createOrRetrieve<vlWinUi::Static>(name + "_EMPTY");
    empty.setText("Choose from \"View\" what to show here.");
    empty.setMinSize(0, smallestEmpty);
    empty.setAlignment(vlWinUi::Static::Alignment::Centre);
    title.setAlignment(vlWinUi::Static::Alignment::Centre);
    title.setEmphasised(true);
    title.setMinSize(smallestTitle, 0);
    fillViewMenu(leftBar.addMenu("View", viewMenuWidth), name);
    for (vlWinUi::Component* part :
         std::initializer_list<vlWinUi::Component*>{&leftBar, &title, &rightBar})
        openMenuOn(*part, name);
    ContainerFocus::setUp(container, title, leftBar);
    // The title bar stays where it is: what does not fit scrolls inside the view, if it may.
    container.setScrolling(false);

    // The bars are equally wide, so that the title stands in the middle.
    vlWinUi::GridLayout layout(3, 2);
    layout.setInternalBorders(0, 0);
    layout.setFixedSizeRow(0, titleHeight);
    layout.setFixedSizeColumn(0, barWidth);
    layout.setFixedSizeColumn(2, barWidth);
    layout.ignoreInternalBorder(0, 0);
    layout.addComponent(leftBar, 0, 0);
    layout.addComponent(title, 1, 0);
    layout.addComponent(rightBar, 2, 0);
    layout.addComponent(empty, 0, 1, 3, 1);
    container.setLayout(std::move(layout));
    containers_.try_emplace(name);
    return container;
}

bool InterfaceContainerCreator::createInterface(vlWinUi::Window& container, ContainerType type) {
    const auto number = static_cast<std::size_t>(type);
    const auto slot = containers_.find(container.getComponentName());
    if (number == 0 || number > typeCount || slot == containers_.end()) {
        EditorLogger::getInstance().log(
                "Trying to create an interface from an unknown container type. Aborting.",
                "Editor");
        return false;
    }
    std::unique_ptr<Interface> made = creators_[number] ? creators_[number]() : nullptr;
    if (!made) {
        say(std::string(labelOf(type)) + " is not available yet.");
        return false;
    }
    slot->second = {std::move(made), type};
    const Interface& shown = *slot->second.shown;
    vlWinUi::GridLayout& layout = *container.getLayout();
    ComponentManager::erase(container.getComponentName() + "_EMPTY");
    layout.addComponent(*shown.getRoot(), 0, 1, 3, 1);
    layout.update();
    const std::string titleName = container.getComponentName() + "_TITLE";
    ComponentManager::get(titleName)->setText(shown.title());
    return true;
}

Interface* InterfaceContainerCreator::getInterface(const vlWinUi::Window& container) const {
    const auto found = containers_.find(container.getComponentName());
    return found == containers_.end() ? nullptr : found->second.shown.get();
}

std::optional<ContainerType>
InterfaceContainerCreator::getType(const vlWinUi::Window& container) const {
    const auto found = containers_.find(container.getComponentName());
    if (found == containers_.end() || !found->second.shown) return std::nullopt;
    return found->second.type;
}

void InterfaceContainerCreator::eraseContainer(vlWinUi::Window& container) {
    const std::string name = container.getComponentName();
    containers_.erase(name);
    ComponentManager::erase(name);
}

void InterfaceContainerCreator::eraseInside(const vlWinUi::Component& component) {
    std::vector<std::string> inside;
    for (const auto& [name, content] : containers_) {
        if (isInside(ComponentManager::get(name), component)) inside.push_back(name);
    }
    for (const std::string& name : inside) {
        containers_.erase(name);
        ComponentManager::erase(name);
    }
}

void InterfaceContainerCreator::eraseAll() {
    containers_.clear();
}

} // namespace vlEditor
