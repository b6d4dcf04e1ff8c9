#include "interfaces/InterfaceMessages.h"

#include "interfaces/AddPickListEntriesMessage.h"
#include "interfaces/CompleteCommandMessage.h"

namespace vlEditor {

void registerInterfaceMessages(MessageRegistry& registry) {
    registry.add<AddPickListEntriesMessage>(MessageQueue::ui);
    registry.add<CompleteCommandMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
