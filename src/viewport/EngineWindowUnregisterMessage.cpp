#include "viewport/EngineWindowUnregisterMessage.h"

#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineSurfaceTable.h"

#include <vlWinUi/ComponentManager.h>

namespace vlEditor {

void EngineWindowUnregisterMessage::runOnGraphicsThread() {
    const auto state = EngineSurfaceTable::getInstance().find(surface);
    if (state) EngineHandler::getInstance().unregisterWindow(*state);
    postToUi(*this);
}

void EngineWindowUnregisterMessage::runOnUiThread() {
    vlWinUi::ComponentManager::erase(surface);
    EngineSurfaceTable::getInstance().erase(surface);
}

} // namespace vlEditor
