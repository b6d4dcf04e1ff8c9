#include "viewport/EngineWindowFinalizeMessage.h"

#include "core/EngineHandler.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowUiDataTracker.h"

#include <vlGraphics/Compositor.h>

namespace vlEditor {

void EngineWindowFinalizeMessage::runOnGraphicsThread() {
    auto state = EngineSurfaceTable::getInstance().find(surface);
    if (!state || state->isFinalized()) return;
    auto data = EngineWindowEngineData::create(state);
    if (!data) {
        postToUi(
                LogMessage("Could not set up viewport '" + surface + "': " + data.error().message));
        return;
    }
    EngineWindowEngineDataTracker::getInstance().insert(std::move(*data));
    state->setFinalized();
    EngineHandler::getInstance().registerWindow(*state);
    compositor = vlGraphics::CompositorManager::getInstance()->getDefaultCompositor()->getName();
    postToUi(*this);
}

void EngineWindowFinalizeMessage::runOnUiThread() {
    EngineWindowUiDataTracker::getInstance().add({surface, compositor});
}

} // namespace vlEditor
