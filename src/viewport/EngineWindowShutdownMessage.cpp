#include "viewport/EngineWindowShutdownMessage.h"

#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/EngineWindowUiDataTracker.h"

namespace vlEditor {

void EngineWindowShutdownMessage::runOnGraphicsThread() {
    EngineWindowEngineDataTracker::getInstance().erase(surface);
    postToUi(*this);
}

void EngineWindowShutdownMessage::runOnUiThread() {
    EngineWindowUiDataTracker::getInstance().erase(surface);
}

} // namespace vlEditor
