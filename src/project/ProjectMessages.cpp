#include "project/ProjectMessages.h"

#include "project/LoadProjectMessage.h"

namespace vlEditor {

void registerProjectMessages(MessageRegistry& registry) {
    registry.add<LoadProjectMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
