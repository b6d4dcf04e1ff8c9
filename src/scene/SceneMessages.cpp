#include "scene/SceneMessages.h"

#include "scene/AddSceneElementsMessage.h"

namespace vlEditor {

void registerSceneMessages(MessageRegistry& registry) {
    registry.add<AddSceneElementsMessage>(MessageQueue::ui);
}

} // namespace vlEditor
