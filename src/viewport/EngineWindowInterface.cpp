#include "viewport/EngineWindowInterface.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/PickLists.h"
#include "interfaces/ReservedNames.h"
#include "viewport/EngineWindowChangeCompositorMessage.h"
#include "viewport/EngineWindowFinalizeMessage.h"
#include "viewport/EngineWindowShutdownMessage.h"
#include "viewport/EngineWindowUnregisterMessage.h"

#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ComponentManager.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr std::string_view compositorList = "COMPOSITOR_POP_UP_LIST";

} // namespace

EngineWindowInterface::EngineWindowInterface(const vlWinUi::Component& root) : Interface(root) {
    if (PickList* list = PickLists::getInstance().find(compositorList)) list->addListener(*this);
    EngineWindowUiDataTracker::getInstance().addListener(*this);
    entriesChanged();
    auto* combo = ComponentManager::get<vlWinUi::ComboBox>(getRootName() + "_COMPOSITOR");
    combo->selectByLabel(ReservedNames::basicCompositor);
    setWidgetsEnabled(false, "The viewport is being set up.");
    postToGraphics(EngineWindowFinalizeMessage(getSurfaceName()));
    postToGraphics(EngineWindowChangeCompositorMessage(
            getSurfaceName(), ReservedNames::basicCompositor, getRootName()));
}

EngineWindowInterface::~EngineWindowInterface() {
    if (PickList* list = PickLists::getInstance().find(compositorList)) {
        list->removeListener(*this);
    }
    EngineWindowUiDataTracker::getInstance().removeListener(*this);
    postToGraphics(EngineWindowShutdownMessage(getSurfaceName()));
    postToGraphics(EngineWindowUnregisterMessage(getSurfaceName()));
}

void EngineWindowInterface::entriesChanged() {
    auto* combo = ComponentManager::get<vlWinUi::ComboBox>(getRootName() + "_COMPOSITOR");
    const PickList* list = PickLists::getInstance().find(compositorList);
    if (combo == nullptr || list == nullptr) return;
    std::vector<vlWinUi::ListEntry> entries;
    for (const std::string& name : list->getEntries())
        entries.push_back({name, {}});
    const std::string selected = combo->getText();
    combo->setEntries(std::move(entries));
    combo->selectByLabel(selected);
}

void EngineWindowInterface::windowFinalized(const std::string& surface) {
    if (surface == getSurfaceName()) setWidgetsEnabled(true);
}

void EngineWindowInterface::setWidgetsEnabled(bool enabled, vlMemory::StringView reason) {
    for (const char* part : {"_UPDATE", "_SCREEN", "_COMPOSITOR"}) {
        vlWinUi::Component* component = ComponentManager::get(getRootName() + part);
        if (component != nullptr) component->setEnabled(enabled, reason);
    }
}

} // namespace vlEditor
