#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Component.h>

#include <vector>

namespace vlWinUi {

/** Owns every component, each under its unique name. Lives from System::initialize() to
 *  System::kill(); outside of that nothing is found and nothing is made. UI thread only. */
class ComponentManager {
public:
    /// The component of that name, made if there is none. Null, with a line in the log, when the
    /// name is empty or a component of another type bears it.
    static Component* createOrRetrieve(vlMemory::StringView name, ComponentType type);
    template <class T> static T* createOrRetrieve(vlMemory::StringView name) {
        return static_cast<T*>(createOrRetrieve(name, T::TYPE));
    }

    /// Null when there is none; nothing is logged.
    static Component* get(vlMemory::StringView name);
    /// Null too when the component is of another type.
    template <class T> static T* get(vlMemory::StringView name) {
        Component* found = get(name);
        return found != nullptr && found->getType() == T::TYPE ? static_cast<T*>(found) : nullptr;
    }
    /// In the order of their making.
    static std::vector<Component*> startingWith(vlMemory::StringView prefix);

    /// False, with a line in the log, when there is no such component or the new name is taken or
    /// empty.
    static bool rename(vlMemory::StringView name, vlMemory::StringView newName);

    /// Destroys the component and all that is placed in it. A Surface inside is only taken out of
    /// view and lives on until it is erased by its own name: someone may still be drawing into its
    /// window. False when there is no such component.
    static bool erase(vlMemory::StringView name);
};

} // namespace vlWinUi
