#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Ends the engine's side of a viewport. */
class EngineWindowShutdownMessage final : public Message {
public:
    EngineWindowShutdownMessage() = default;
    explicit EngineWindowShutdownMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowShutdownMessage::surface}};
    }

    std::string surface;
};

} // namespace vlEditor
