#include "scene/AddSceneElementsMessage.h"

#include "scene/GraphElementUiDataTracker.h"

namespace vlEditor {

void AddSceneElementsMessage::runOnUiThread() {
    GraphElementUiDataTracker::getInstance().add(elements);
}

} // namespace vlEditor
