#include "core/CoreMessages.h"

#include "core/LogMessage.h"
#include "core/WorkerJobsMessage.h"

namespace vlEditor {

void registerCoreMessages(MessageRegistry& registry) {
    registry.add<LogMessage>(MessageQueue::ui);
    registry.add<WorkerJobsMessage>(MessageQueue::ui);
}

} // namespace vlEditor
