#include "core/CoreMessages.h"

#include "core/LogMessage.h"

namespace vlEditor {

void registerCoreMessages(MessageRegistry& registry) {
    registry.add<LogMessage>(MessageQueue::ui);
}

} // namespace vlEditor
