#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** A viewport that is shown as pictures has a new one. */
class EngineWindowPictureMessage final : public Message {
public:
    EngineWindowPictureMessage() = default;
    explicit EngineWindowPictureMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override {}
    bool isRoutine() const override { return true; }

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowPictureMessage::surface}};
    }

    std::string surface;
};

} // namespace vlEditor
