#include "interfaces/Interface.h"

#include <vlWinUi/ComponentManager.h>

namespace vlEditor {

Interface::Interface(const vlWinUi::Component& root) : rootName_(root.getComponentName()) {
}

Interface::~Interface() {
    vlWinUi::ComponentManager::erase(rootName_);
}

vlWinUi::Component* Interface::getRoot() const {
    return vlWinUi::ComponentManager::get(rootName_);
}

} // namespace vlEditor
