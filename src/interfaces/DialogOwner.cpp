#include "interfaces/DialogOwner.h"

#include <vlWinUi/ComponentManager.h>

namespace vlEditor {

void DialogOwner::set(vlWinUi::Window& dialog, const vlWinUi::Component& anchor) {
    const vlWinUi::Component* top = &anchor;
    while (const vlWinUi::Component* around = top->getParent())
        top = around;
    auto* window = vlWinUi::ComponentManager::get<vlWinUi::Window>(top->getComponentName());
    if (window != nullptr && window != &dialog) dialog.setOwnerWindow(*window);
}

} // namespace vlEditor
