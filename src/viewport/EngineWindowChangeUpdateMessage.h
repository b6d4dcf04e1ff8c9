#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Draws a viewport in every turn, or only when its picture is out of date. */
class EngineWindowChangeUpdateMessage final : public Message {
public:
    EngineWindowChangeUpdateMessage() = default;
    explicit EngineWindowChangeUpdateMessage(std::string_view surfaceValue, bool updateValue)
        : surface(surfaceValue), update(updateValue) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowChangeUpdateMessage::surface},
                          Member{"update", &EngineWindowChangeUpdateMessage::update}};
    }

    std::string surface;
    bool update = false;
};

} // namespace vlEditor
