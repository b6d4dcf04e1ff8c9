#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Makes the engine's side of a viewport, once, and tells the UI that it can be drawn from now on.
 */
class EngineWindowFinalizeMessage final : public Message {
public:
    EngineWindowFinalizeMessage() = default;
    explicit EngineWindowFinalizeMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowFinalizeMessage::surface}};
    }

    std::string surface;

    // Of the outcome.
    std::string compositor; ///< that it starts with
};

} // namespace vlEditor
