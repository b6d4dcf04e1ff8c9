#include "core/CoreMessages.h"

#include "core/LogMessage.h"
#include "core/RenderingScriptMessage.h"
#include "core/ScriptSubmitMessage.h"

namespace vlEditor {

void registerCoreMessages(MessageRegistry& registry) {
    registry.add<LogMessage>(MessageQueue::ui);
    registry.add<ScriptSubmitMessage>(MessageQueue::graphics);
    registry.add<RenderingScriptMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
