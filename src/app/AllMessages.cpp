#include "app/AllMessages.h"

#include "app/LeaveMessage.h"
#include "app/automation/AutomationMessages.h"
#include "core/CoreMessages.h"
#include "editors/AllKinds.h"
#include "interfaces/InterfaceMessages.h"
#include "project/ProjectMessages.h"
#include "scene/SceneMessages.h"
#include "viewport/ViewportMessages.h"

namespace vlEditor {

void registerAllMessages(MessageRegistry& registry) {
    registerCoreMessages(registry);
    registerInterfaceMessages(registry);
    registerSceneMessages(registry);
    registerKindMessages(registry);
    registerViewportMessages(registry);
    registerProjectMessages(registry);
    registerAutomationMessages(registry);
    registry.add<LeaveMessage>(MessageQueue::ui);
}

} // namespace vlEditor
