#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <vlMemory/Buffer.h>

#include <string>

namespace vlEditor {

/** Brings the last picture of a viewport into a JPEG file, which the UI asks for. */
class EngineWindowTakeScreenMessage final : public Message {
public:
    EngineWindowTakeScreenMessage() = default;
    explicit EngineWindowTakeScreenMessage(std::string_view surfaceValue) : surface(surfaceValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowTakeScreenMessage::surface}};
    }

    std::string surface;

    // Of the outcome.
    vlMemory::Buffer picture; ///< JPEG
};

} // namespace vlEditor
