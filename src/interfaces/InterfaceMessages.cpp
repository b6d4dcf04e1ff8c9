#include "interfaces/InterfaceMessages.h"

#include "interfaces/AddPickListEntriesMessage.h"
#include "interfaces/CompleteCommandMessage.h"
#include "interfaces/FollowCameraMessage.h"
#include "interfaces/history/UndoMessage.h"
#include "interfaces/preview/PreviewMessage.h"

namespace vlEditor {

void registerInterfaceMessages(MessageRegistry& registry) {
    registry.add<AddPickListEntriesMessage>(MessageQueue::ui);
    registry.add<CompleteCommandMessage>(MessageQueue::graphics);
    registry.add<FollowCameraMessage>(MessageQueue::graphics);
    registry.add<PreviewMessage>(MessageQueue::graphics);
    registry.add<UndoMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
