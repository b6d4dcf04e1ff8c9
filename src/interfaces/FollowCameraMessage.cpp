#include "interfaces/FollowCameraMessage.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "interfaces/ViewedCamera.h"

namespace vlEditor {

void FollowCameraMessage::runOnGraphicsThread() {
    ViewedCamera* viewed = ViewedCamera::current();
    if (viewed == nullptr) return;
    const auto followed = viewed->follow(camera);
    if (!followed) postToUi(LogMessage(followed.error().message));
}

} // namespace vlEditor
