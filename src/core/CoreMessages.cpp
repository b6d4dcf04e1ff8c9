#include "core/CoreMessages.h"

#include "core/LogMessage.h"
#include "core/RenderingScriptChangeMessage.h"
#include "core/RenderingScriptMessage.h"
#include "core/ScriptSubmitMessage.h"
#include "core/WorkerJobsMessage.h"

namespace vlEditor {

void registerCoreMessages(MessageRegistry& registry) {
    registry.add<LogMessage>(MessageQueue::ui);
    registry.add<ScriptSubmitMessage>(MessageQueue::graphics);
    registry.add<RenderingScriptMessage>(MessageQueue::graphics);
    registry.add<RenderingScriptChangeMessage>(MessageQueue::graphics);
    registry.add<WorkerJobsMessage>(MessageQueue::ui);
}

} // namespace vlEditor
