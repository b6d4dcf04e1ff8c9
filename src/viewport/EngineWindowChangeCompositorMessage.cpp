#include "viewport/EngineWindowChangeCompositorMessage.h"

#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowUiDataTracker.h"

#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ComponentManager.h>

namespace vlEditor {

void EngineWindowChangeCompositorMessage::runOnGraphicsThread() {
    EngineWindowEngineData* data = EngineWindowEngineDataTracker::getInstance().find(surface);
    if (data != nullptr && data->showThrough(compositor)) postToUi(*this);
}

void EngineWindowChangeCompositorMessage::runOnUiThread() {
    EngineWindowUiDataTracker::getInstance().setCompositor(surface, compositor);
    auto* combo = vlWinUi::ComponentManager::get<vlWinUi::ComboBox>(baseName + "_COMPOSITOR");
    if (combo != nullptr) combo->selectByLabel(compositor);
}

} // namespace vlEditor
