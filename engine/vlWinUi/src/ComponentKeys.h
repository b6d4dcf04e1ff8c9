#pragma once
#include "LayoutText.h"

#include <vlWinUi/ComponentType.h>

#include <optional>

namespace vlWinUi {

class Component;

/** What layout texts can say of each type of component: the one place that knows their keys. */
class ComponentKeys {
public:
    /// Nothing for a word that is no type that can stand in a layout.
    static std::optional<ComponentType> typeOf(vlMemory::StringView word);
    /// Whether others can be arranged inside.
    static bool isContainer(ComponentType type);
    /// Gives a new component what its object says, and logs what its type does not have.
    static void apply(LayoutText& text, const vlExport::Node& object, Component& component);
};

} // namespace vlWinUi
