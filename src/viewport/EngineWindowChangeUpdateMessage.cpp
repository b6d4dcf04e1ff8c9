#include "viewport/EngineWindowChangeUpdateMessage.h"

#include "core/EngineHandler.h"
#include "viewport/EngineSurfaceTable.h"

namespace vlEditor {

void EngineWindowChangeUpdateMessage::runOnGraphicsThread() {
    const auto state = EngineSurfaceTable::getInstance().find(surface);
    if (state) EngineHandler::getInstance().setUpdate(*state, update);
}

} // namespace vlEditor
