#include "interfaces/InterfaceMessages.h"

#include "interfaces/AddPickListEntriesMessage.h"

namespace vlEditor {

void registerInterfaceMessages(MessageRegistry& registry) {
    registry.add<AddPickListEntriesMessage>(MessageQueue::ui);
}

} // namespace vlEditor
