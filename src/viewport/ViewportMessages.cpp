#include "viewport/ViewportMessages.h"

#include "viewport/EngineWindowChangeCompositorMessage.h"
#include "viewport/EngineWindowChangeUpdateMessage.h"
#include "viewport/EngineWindowDetachMessage.h"
#include "viewport/EngineWindowFinalizeMessage.h"
#include "viewport/EngineWindowPictureMessage.h"
#include "viewport/EngineWindowResizeMessage.h"
#include "viewport/EngineWindowShutdownMessage.h"
#include "viewport/EngineWindowTakeScreenMessage.h"
#include "viewport/EngineWindowUnregisterMessage.h"

namespace vlEditor {

void registerViewportMessages(MessageRegistry& registry) {
    registry.add<EngineWindowFinalizeMessage>(MessageQueue::graphics);
    registry.add<EngineWindowChangeCompositorMessage>(MessageQueue::graphics);
    registry.add<EngineWindowResizeMessage>(MessageQueue::graphics);
    registry.add<EngineWindowChangeUpdateMessage>(MessageQueue::graphics);
    registry.add<EngineWindowTakeScreenMessage>(MessageQueue::graphics);
    registry.add<EngineWindowShutdownMessage>(MessageQueue::graphics);
    registry.add<EngineWindowUnregisterMessage>(MessageQueue::graphics);
    registry.add<EngineWindowDetachMessage>(MessageQueue::graphics);
    registry.add<EngineWindowPictureMessage>(MessageQueue::ui);
}

} // namespace vlEditor
