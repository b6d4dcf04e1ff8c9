#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** The last message about a viewport: once it has come back, nothing draws into the native window
 *  any more, and the window goes. */
class EngineWindowUnregisterMessage final : public Message {
public:
    EngineWindowUnregisterMessage() = default;
    explicit EngineWindowUnregisterMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowUnregisterMessage::surface}};
    }

    std::string surface;
};

} // namespace vlEditor
