#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Has the viewport that a person works in look through a camera by name, or through its own again
 *  for an empty one. */
class FollowCameraMessage final : public Message {
public:
    FollowCameraMessage() = default;
    explicit FollowCameraMessage(std::string_view cameraName) : camera(cameraName) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"camera", &FollowCameraMessage::camera}};
    }

    std::string camera;
};

} // namespace vlEditor
