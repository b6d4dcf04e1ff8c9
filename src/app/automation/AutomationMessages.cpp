#include "app/automation/AutomationMessages.h"

#include "app/automation/AutomationFramesMessage.h"
#include "app/automation/AutomationPixelMessage.h"
#include "app/automation/AutomationScriptMessage.h"
#include "app/automation/AutomationSyncMessage.h"

namespace vlEditor {

void registerAutomationMessages(MessageRegistry& registry) {
    registry.add<AutomationSyncMessage>(MessageQueue::graphics);
    registry.add<AutomationFramesMessage>(MessageQueue::graphics);
    registry.add<AutomationPixelMessage>(MessageQueue::graphics);
    registry.add<AutomationScriptMessage>(MessageQueue::graphics);
}

} // namespace vlEditor
