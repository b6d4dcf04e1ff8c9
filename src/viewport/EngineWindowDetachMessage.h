#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** The window system is taking the native window away: stops presenting to it, for good. */
class EngineWindowDetachMessage final : public Message {
public:
    EngineWindowDetachMessage() = default;
    explicit EngineWindowDetachMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowDetachMessage::surface}};
    }

    std::string surface;
};

} // namespace vlEditor
