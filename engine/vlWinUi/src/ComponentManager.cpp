#include "ComponentFactory.h"
#include "Log.h"
#include "Native.h"
#include "PlacedLayout.h"
#include "Registry.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>

#include <algorithm>

namespace vlWinUi {
namespace {

/// The names of the components inside, each before what it is inside of.
std::vector<std::string> namesInside(const Component& component) {
    std::vector<std::string> names;
    for (const QWidget* widget : component.native().widget->findChildren<QWidget*>())
        if (const Component* found = Native::componentOf(widget))
            names.push_back(found->getComponentName());
    std::ranges::reverse(names);
    return names;
}

void leaveLayout(Component& component) {
    Component* parent = component.getParent();
    if (parent == nullptr) return;
    GridLayout* grid = parent->getLayout();
    RelativeLayout* places = parent->getRelativeLayout();
    if (grid != nullptr) grid->removeComponent(component);
    if (places != nullptr) places->removeComponent(component);
    auto* shown = dynamic_cast<ComponentLayout*>(parent->native().content()->layout());
    if (shown != nullptr) shown->take(component.native().widget);
}

} // namespace

std::unique_ptr<Registry>& Registry::slot() {
    static std::unique_ptr<Registry> registry;
    return registry;
}

Component* ComponentManager::createOrRetrieve(vlMemory::StringView name, ComponentType type) {
    vlCommon::assertUiThread();
    Registry* registry = Registry::slot().get();
    if (registry == nullptr || name.empty()) {
        logLine("component '{}': {}",
                name,
                registry == nullptr ? "the widget library is not running" : "a name is needed");
        return nullptr;
    }
    if (Component* found = get(name)) {
        if (found->getType() == type) return found;
        logLine("component '{}' is a {}, not a {}", name, nameOf(found->getType()), nameOf(type));
        return nullptr;
    }
    auto& entry = registry->components[std::string(name)];
    entry = {ComponentFactory::make(type, std::string(name)), registry->nextSerial++};
    return entry.component.get();
}

Component* ComponentManager::get(vlMemory::StringView name) {
    vlCommon::assertUiThread();
    Registry* registry = Registry::slot().get();
    if (registry == nullptr) return nullptr;
    const auto found = registry->components.find(name);
    return found == registry->components.end() ? nullptr : found->second.component.get();
}

std::vector<Component*> ComponentManager::startingWith(vlMemory::StringView prefix) {
    vlCommon::assertUiThread();
    Registry* registry = Registry::slot().get();
    if (registry == nullptr) return {};
    std::vector<const Registry::Entry*> entries;
    for (auto at = registry->components.lower_bound(prefix);
         at != registry->components.end() && at->first.starts_with(prefix);
         ++at)
        entries.push_back(&at->second);
    std::ranges::sort(entries, {}, &Registry::Entry::serial);
    std::vector<Component*> components;
    for (const auto* entry : entries)
        components.push_back(entry->component.get());
    return components;
}

bool ComponentManager::rename(vlMemory::StringView name, vlMemory::StringView newName) {
    Component* component = get(name);
    if (component == nullptr) {
        logLine("component '{}' cannot be renamed to '{}': there is none", name, newName);
        return false;
    }
    if (newName.empty() || get(newName) != nullptr) {
        logLine("component '{}' cannot be renamed to '{}': {}",
                name,
                newName,
                newName.empty() ? "a name is needed" : "the name is taken");
        return false;
    }
    auto& components = Registry::slot()->components;
    const auto old = components.find(name);
    components.emplace(newName, std::move(old->second));
    components.erase(old);
    Component* parent = component->getParent();
    GridLayout* grid = parent == nullptr ? nullptr : parent->getLayout();
    RelativeLayout* places = parent == nullptr ? nullptr : parent->getRelativeLayout();
    if (grid != nullptr) grid->renameComponent(component->name_, std::string(newName));
    if (places != nullptr) places->renameComponent(component->name_, std::string(newName));
    component->name_ = newName;
    component->native().widget->setObjectName(toQt(newName));
    return true;
}

bool ComponentManager::erase(vlMemory::StringView name) {
    Component* component = get(name);
    if (component == nullptr) return false;
    leaveLayout(*component);
    auto& components = Registry::slot()->components;
    for (const std::string& inside : namesInside(*component)) {
        const auto found = components.find(inside);
        if (found == components.end()) continue;
        if (found->second.component->getType() == ComponentType::Surface) {
            found->second.component->native().takeOutOfView();
            continue;
        }
        const auto erased = std::move(found->second.component);
        components.erase(found);
    }
    const auto found = components.find(name);
    const auto erased = std::move(found->second.component);
    components.erase(found);
    return true;
}

} // namespace vlWinUi
